#!/usr/bin/env python3
"""krvcmd builds alone, for another client library: without_simulator_test.py CMAKE PROJECT LIBRARY-FOLDER BUILD-FOLDER

LIBRARY-FOLDER has a client library for it. BUILD-FOLDER stays, so that the next run compiles only what has changed.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from installed_files import DEVELOPMENT, PROGRAM

BUILD_FOLDER, LIBRARY_FOLDER, PROJECT, CMAKE = (sys.argv.pop() for _ in range(4))
# Found or not, none of them is used.
NO_LIBRARIES = [f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in ("SQLite3", "CLI11", "nlohmann_json", "GTest")]
NOT_FOUND_BY_THE_LOADER = 127


def run(*words, **variables):
    environment = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
    return subprocess.run(words, env=dict(environment, **variables), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)


class WithoutSimulator(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.build, cls.prefix = pathlib.Path(BUILD_FOLDER), pathlib.Path(folder.name, "prefix")
        cls.farm = folder.name
        for words in (("--fresh", "-S", PROJECT, "-B", cls.build, "-G", "Ninja", "-DKRVCMD_BUILD_SIMULATOR=OFF",
                       "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", "-DCMAKE_UNITY_BUILD=ON", *NO_LIBRARIES),
                      ("--build", cls.build, "--", "-j2"), ("--install", cls.build, "--prefix", cls.prefix)):
            done = run(CMAKE, *words)
            if done.returncode != 0:
                raise AssertionError(done.stdout)

    def test_installs_krvcmd_and_the_files_for_development_and_nothing_else(self):
        files = {path.relative_to(self.prefix).as_posix() for path in self.prefix.rglob("*") if path.is_file()}
        self.assertEqual(files, PROGRAM | DEVELOPMENT)

    def test_needs_a_client_library_to_start(self):
        for program in (self.build / "bin/krvcmd", self.prefix / "bin/krvcmd"):
            done = run(program, "help")
            self.assertEqual(done.returncode, NOT_FOUND_BY_THE_LOADER)
            self.assertIn("libkrvSdk64.so", done.stdout)

    def test_works_with_any_client_library(self):
        done = run(self.prefix / "bin/krvcmd", "query", "volumes", "V", "@33", "columns=Il", "notable",
                   LD_LIBRARY_PATH=LIBRARY_FOLDER, KRVSIM_HOME=self.farm)
        self.assertEqual((done.returncode, done.stdout), (0, "33|Sales 2004\n"))


if __name__ == "__main__":
    unittest.main()
