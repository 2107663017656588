#!/usr/bin/env python3
"""What `cmake --install` puts where: install_tree_test.py CMAKE BUILD-DIRECTORY LIBRARY-DIRECTORY"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

LIBRARY_DIR, BUILD_DIR, CMAKE = sys.argv.pop(), sys.argv.pop(), sys.argv.pop()

PROGRAM = {
    "bin/krvcmd",
    "share/bash-completion/completions/krvcmd",
    "share/zsh/site-functions/_krvcmd",
    "share/fish/vendor_completions.d/krvcmd.fish",
    "share/krvcmd/completion/krvcmd.ps1",
    "share/man/man1/krvcmd.1",
    "share/doc/krvcmd/guide.md",
    "share/doc/krvcmd/fleet.md",
}
DEVELOPMENT = {"include/krv_sdk.h", "share/man/man3/krv-sdk.3", "share/doc/krvcmd-dev/examples/krv-sdk-example.c"}
SIMULATOR = {
    f"{LIBRARY_DIR}/libkrvSdk64.so",
    "share/doc/krvcmd-simulator/simulated-service.md",
    "share/doc/krvcmd-simulator/examples/demonstration.toml",
}


class InstallTree(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.prefix = pathlib.Path(self.folder.name, "a prefix")

    def install(self, *arguments):
        """The files that are installed, relative to the prefix."""
        subprocess.run([CMAKE, "--install", BUILD_DIR, "--prefix", str(self.prefix), *arguments], check=True,
                       stdout=subprocess.DEVNULL)
        return {path.relative_to(self.prefix).as_posix() for path in self.prefix.rglob("*") if path.is_file()}

    def test_program(self):
        self.assertEqual(self.install("--component", "krvcmd"), PROGRAM)

    def test_development_files(self):
        self.assertEqual(self.install("--component", "development"), DEVELOPMENT)

    def test_simulator(self):
        files = self.install("--component", "simulator")
        self.assertLessEqual(SIMULATOR, files)
        # Besides, only the tool and its pages.
        for file in files - SIMULATOR:
            self.assertTrue(re.search(r"(^|/)krvsim", file), file)

    def test_everything_works_from_where_it_is_installed(self):
        files = self.install()
        self.assertLessEqual(PROGRAM | SIMULATOR | DEVELOPMENT, files)
        environment = dict(os.environ, KRVSIM_HOME=str(self.prefix / "farm"))
        environment.pop("LD_LIBRARY_PATH", None)
        done = subprocess.run([self.prefix / "bin/krvcmd", "query", "volumes", "V", "@33", "columns=Il", "notable"],
                              env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (0, "33|Sales 2004\n"))

    def test_no_file_names_the_building_machine(self):
        self.install()
        for path in self.prefix.rglob("*"):
            if path.is_file() and path.suffix != ".so" and path.name not in ("krvcmd", "krvsim"):
                self.assertNotIn(BUILD_DIR.encode(), path.read_bytes(), path)


if __name__ == "__main__":
    unittest.main()
