#!/usr/bin/env python3
"""The scripts explain themselves, and scripts/run tells its own failures from those of krvcmd: scripts_test.py PROJECT"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(sys.argv.pop(1))
OWN_FAILURE = 125


def run(*words, **options):
    return subprocess.run(words, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False, **options)


class Help(unittest.TestCase):
    def test_each_script_has_one(self):
        scripts = [path for path in (PROJECT / "scripts").iterdir() if path.is_file()]
        self.assertGreater(len(scripts), 10)
        for script in scripts:
            with self.subTest(script=script.name):
                done = run(str(script), "--help")
                self.assertEqual(done.returncode, 0, done.stdout)
                self.assertIn(script.name, done.stdout)


class Run(unittest.TestCase):
    """The script in a project of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = pathlib.Path(folder.name)
        shutil.copytree(PROJECT / "scripts", self.project / "scripts")
        self.tools = self.project / "tools"
        self.tools.mkdir()
        for tool in ("bash", "dirname", "sed", "grep", "mkdir", "flock", "head", "sort"):
            (self.tools / tool).symlink_to(shutil.which(tool))

    def add_tool(self, name, text):
        path = self.tools / name
        path.write_text(f"#!/bin/sh\n{text}\n")
        path.chmod(0o755)

    def run_script(self, *words):
        return run(shutil.which("bash"), str(self.project / "scripts/run"), *words,
                   env={"PATH": str(self.tools), "HOME": os.environ.get("HOME", "/")})

    def make_build(self, program):
        folder = self.project / "build/release/bin"
        folder.mkdir(parents=True)
        (folder.parent / "build.ninja").touch()
        self.add_tool("ninja", "echo 'ninja: no work to do.'")
        if program:
            (folder / "krvcmd").write_text(f"#!/bin/sh\n{program}\n")
            (folder / "krvcmd").chmod(0o755)

    def test_passes_the_status_of_krvcmd_on(self):
        self.make_build("echo $1; exit 6")
        done = self.run_script("query")
        self.assertEqual((done.returncode, done.stdout), (6, "query\n"))

    def test_a_machine_without_the_tools_is_its_own_failure(self):
        done = self.run_script("query")
        self.assertEqual(done.returncode, OWN_FAILURE, done.stdout)
        self.assertIn("Missing on this machine", done.stdout)

    def test_a_program_that_cannot_be_started_is_its_own_failure(self):
        self.make_build(program=None)
        done = self.run_script("query")
        self.assertEqual(done.returncode, OWN_FAILURE, done.stdout)
        self.assertIn("No such file or directory", done.stdout)

    def test_a_project_that_lacks_files_is_its_own_failure(self):
        for missing in ("scripts/lib/packages.sh", "scripts/lib/build.sh"):
            with self.subTest(missing=missing):
                (self.project / missing).unlink()
                done = self.run_script("query")
                self.assertEqual(done.returncode, OWN_FAILURE, done.stdout)
                self.assertIn("No such file or directory", done.stdout)

    def test_a_path_without_any_tool_is_its_own_failure(self):
        for tool in self.tools.iterdir():
            tool.unlink()
        self.assertEqual(self.run_script("query").returncode, OWN_FAILURE)

    def test_no_words_are_its_own_failure(self):
        self.assertEqual(self.run_script().returncode, OWN_FAILURE)


if __name__ == "__main__":
    unittest.main()
