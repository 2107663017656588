#!/usr/bin/env python3
"""The packages for RPM have what they should and run: rpm_test.py FOLDER-OF-PACKAGES

The packages are unpacked, not installed, because the system of this machine does not belong to rpm.
"""
import glob
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

FOLDER = sys.argv.pop()
LIBRARY_FOLDER = "usr/lib64/krvcmd"


def output(*words, **options):
    return subprocess.run(words, stdout=subprocess.PIPE, text=True, check=True, **options).stdout


def package_file(name):
    found = glob.glob(f"{FOLDER}/{name}-[0-9]*.rpm")
    found = [path for path in found if not path.endswith(".src.rpm")]
    if len(found) != 1:
        sys.exit(f"{found} in {FOLDER} for {name}; scripts/package rpm builds the packages")
    return found[0]


def query(name, *options):
    return set(output("rpm", "--query", "--package", *options, package_file(name)).split("\n")) - {""}


class Rpm(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.root = pathlib.Path(folder.name)
        for name in ("krvcmd", "krvcmd-simulator", "krvcmd-jukebox", "krvcmd-devel"):
            content = subprocess.run(["rpm2cpio", package_file(name)], stdout=subprocess.PIPE, check=True).stdout
            subprocess.run(["cpio", "--extract", "--make-directories", "--quiet"], input=content, cwd=cls.root, check=True)

    def run_installed(self, program, *words):
        environment = dict(os.environ, KRVSIM_HOME=str(self.root), LD_LIBRARY_PATH=str(self.root / LIBRARY_FOLDER))
        done = subprocess.run([self.root / "usr/bin" / program, *words], env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout

    def test_krvcmd_needs_a_client_library_and_no_certain_one(self):
        needs = query("krvcmd", "--requires")
        self.assertIn("libkrvSdk64.so()(64bit)", needs)
        self.assertFalse({entry for entry in needs if entry.startswith("krvcmd")})
        self.assertIn("libkrvSdk64.so()(64bit)", query("krvcmd-simulator", "--provides"))
        self.assertIn("krvcmd-simulator", query("krvcmd", "--recommends"))

    def test_the_simulated_library_is_in_a_folder_that_the_loader_searches_last(self):
        self.assertIn(f"/{LIBRARY_FOLDER}/libkrvSdk64.so", query("krvcmd-simulator", "--list"))
        self.assertEqual((self.root / "etc/ld.so.conf.d/zz-krvcmd-simulator.conf").read_text(), f"/{LIBRARY_FOLDER}\n")

    def test_each_package_with_a_program_has_licence_notices_and_bill_of_materials(self):
        for name in ("krvcmd", "krvcmd-simulator", "krvcmd-jukebox"):
            names = {pathlib.Path(path).name for path in query(name, "--list")}
            with self.subTest(package=name):
                self.assertLessEqual({"LICENSE", "THIRD-PARTY-NOTICES.md", "krvcmd.cdx.json"}, names)

    def test_no_file_is_in_two_packages(self):
        owners = {}
        for name in ("krvcmd", "krvcmd-simulator", "krvcmd-jukebox", "krvcmd-devel"):
            for path in query(name, "--list"):
                # rpm's own links for debuggers share folders.
                if not path.startswith("/usr/lib/.build-id"):
                    self.assertNotIn(path, set(owners), name)
                    owners[path] = name

    def test_the_state_folder_belongs_to_the_group(self):
        listing = output("rpm", "--query", "--package", "--list", "--verbose", package_file("krvcmd-jukebox"))
        self.assertTrue(re.search(r"(?m)^drwxrws--- +\d+ +root +krvcmd .* /var/lib/krvcmd$", listing), listing)
        self.assertIn("groupadd", output("rpm", "--query", "--package", "--scripts", package_file("krvcmd-jukebox")))

    def test_the_programs_run(self):
        self.assertEqual(self.run_installed("krvcmd", "query", "volumes", "V", "@33", "columns=Il", "notable"),
                         (0, "33|Sales 2004\n"))
        status, text = self.run_installed("krvsim", "check")
        self.assertEqual((status, text.splitlines()[0]), (0, 'The farm of server "." is sound.'))
        self.assertEqual(self.run_installed("krvadm", "--version")[0], 0)


if __name__ == "__main__":
    unittest.main()
