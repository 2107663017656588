#!/usr/bin/env python3
"""krvcmd for 64-bit ARM does what it does here: arm64_test.py ARM64-BUILD NATIVE-BUILD

The build is that of the preset arm64. Its programs run under qemu.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

NATIVE, FOREIGN = (pathlib.Path(sys.argv.pop()).resolve() for _ in range(2))
PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
COMPILER_ROOT = "/usr/aarch64-linux-gnu"
ROOT = f"{PROJECT}/build/arm64-root"
LIBRARIES = f"{ROOT}/usr/lib/aarch64-linux-gnu:{ROOT}/lib/aarch64-linux-gnu:{COMPILER_ROOT}/lib"
SHIPPED = ("bin/krvcmd", "bin/krvsim", "bin/krvadm", "lib/libkrvSdk64.so", "lib/libkrvJukebox64.so")


def run(program, *words):
    """Exit status, standard output and standard error, with a farm of its own."""
    with tempfile.TemporaryDirectory() as home:
        done = subprocess.run([*program, *words], env=dict(os.environ, KRVSIM_HOME=home), stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    return done.returncode, done.stdout, done.stderr


def run_foreign(program, *words):
    return run(["qemu-aarch64", "-L", COMPILER_ROOT, "-E", f"LD_LIBRARY_PATH={LIBRARIES}", str(FOREIGN / "bin" / program)],
               *words)


class Arm64(unittest.TestCase):
    def test_all_shipped_files_are_for_this_processor(self):
        for name in SHIPPED:
            header = subprocess.run(["readelf", "--file-header", FOREIGN / name], stdout=subprocess.PIPE, text=True,
                                    check=True).stdout
            self.assertRegex(header, r"Machine: +AArch64", name)

    def test_krvcmd_prints_the_same(self):
        for words in (("help",), ("help", "query"), ("query", "volumes"), ("query", "slots", "J@29", "sort=-s"), ("qu",),
                      ("query", "jukeboxes", "J", "Nowhere")):
            with self.subTest(words=words):
                here = run([NATIVE / "bin/krvcmd"], *words)
                self.assertNotEqual(here[1] + here[2], "")
                self.assertEqual(run_foreign("krvcmd", *words), here)

    def test_help_succeeds(self):
        status, text, _ = run_foreign("krvcmd", "help")
        self.assertEqual(status, 0)
        self.assertTrue(re.search(r"(?m)^ *import\b", text), text)

    def test_the_tools_start(self):
        for tool in ("krvsim", "krvadm"):
            status, text, _ = run_foreign(tool, "--version")
            self.assertEqual(status, 0)
            self.assertTrue(text.startswith(f"{tool} "), text)


if __name__ == "__main__":
    unittest.main()
