#!/usr/bin/env python3
"""clang-tidy reads a file again when something that it depends on has changed: run_tidy_test.py PROJECT"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

RUN_TIDY = pathlib.Path(sys.argv.pop(1)) / "scripts/lib/run_tidy"

# Finds each "BAD" in a file or in the headers beside it, and keeps a list of the files that it read.
STAND_IN = """#!/bin/sh
[ "$1" != --version ] || { echo "version $VERSION"; exit; }
for word; do case $word in --extra-arg=/*) included=${word#--extra-arg=} ;; esac; done
echo "$word" >>"$READ"
ls "${word%/*}"/*.h >"$included"
! grep -n BAD "$word" "${word%/*}"/*.h
"""


class RunTidy(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        (self.folder / "clang-tidy").write_text(STAND_IN)
        (self.folder / "clang-tidy").chmod(0o755)
        for name in ("build", "one", "two"):
            (self.folder / name).mkdir()
        self.write("one/a.cpp", "a")
        self.write("one/a.h", "header")
        self.write("two/b.cpp", "b")
        self.write("two/b.h", "header")
        self.write(".clang-tidy", "Checks: all")
        self.compile_with("c++")
        self.version = "1"
        self.assertEqual(self.read(), ["a.cpp", "b.cpp"])

    def write(self, name, text):
        (self.folder / name).write_text(text)

    def compile_with(self, compiler):
        self.write("build/compile_commands.json", json.dumps(
            [{"directory": str(self.folder), "file": str(self.folder / name), "command": f"{compiler} -c {name}"}
             for name in ("one/a.cpp", "two/b.cpp")]))

    def run_tidy(self, *options):
        environment = dict(os.environ, PATH=f"{self.folder}:{os.environ['PATH']}", READ=str(self.folder / "read"),
                           VERSION=self.version)
        self.write("read", "")
        return subprocess.run([str(RUN_TIDY), str(self.folder / "build"), *options, "--", r"/(one|two)/"], env=environment,
                              stdout=subprocess.PIPE, text=True, check=False)

    def read(self, *options, succeeds=True):
        """The names of the files that clang-tidy reads."""
        done = self.run_tidy(*options)
        self.assertEqual(done.returncode == 0, succeeds, done.stdout)
        return sorted(os.path.basename(line) for line in (self.folder / "read").read_text().splitlines())

    def test_files_that_passed_are_left_out(self):
        self.assertEqual(self.read(), [])

    def test_a_changed_file_or_header_is_read_again(self):
        self.write("one/a.cpp", "changed")
        self.assertEqual(self.read(), ["a.cpp"])
        self.write("two/b.h", "changed")
        self.assertEqual(self.read(), ["b.cpp"])
        (self.folder / "two/b.h").rename(self.folder / "two/c.h")
        self.assertEqual(self.read(), ["b.cpp"])

    def test_all_files_are_read_again_when_the_rules_change(self):
        both = ["a.cpp", "b.cpp"]
        self.write(".clang-tidy", "Checks: some")
        self.assertEqual(self.read(), both)
        self.assertEqual(self.read("-checks=none"), both)
        self.compile_with("clang++")
        self.assertEqual(self.read("-checks=none"), both)
        self.version = "2"
        self.assertEqual(self.read("-checks=none"), both)

    def test_a_file_with_findings_fails_until_it_is_mended(self):
        self.write("one/a.cpp", "BAD")
        for _ in range(2):
            self.assertEqual(self.read(succeeds=False), ["a.cpp"])
        self.assertIn("a.cpp:1:BAD", self.run_tidy().stdout)
        self.write("one/a.cpp", "a")
        self.assertEqual(self.read(), ["a.cpp"])

    def test_no_file_at_all_is_a_failure(self):
        self.write("build/compile_commands.json", "[]")
        self.assertEqual(self.read(succeeds=False), [])


if __name__ == "__main__":
    unittest.main()
