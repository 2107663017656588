#!/usr/bin/env python3
"""A test runs again when something that it uses has changed: unchanged_tests_test.py PROJECT COMPILER"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

COMPILER = sys.argv.pop()
PROJECT = pathlib.Path(sys.argv.pop())
SCRIPTS = ("unchanged_tests.py", "report_tests.py", "wine")

# Prints what the file says, like a test of GoogleTest, and fails if it says "bad".
READER = """#include <stdio.h>
#include <string.h>
int main(void) {{
    char word[16] = "";
    FILE* file = fopen("{data}", "r");
    if (file != NULL) fscanf(file, "%15s", word);
    printf("[==========] Running 2 tests from 1 test suite.\\n[       OK ] A.A (0 ms)\\n%s\\n",
           strcmp(word, "bad") != 0 ? "[       OK ] A.B (0 ms)" : "[  FAILED  ] A.B (0 ms)");
    return strcmp(word, "bad") == 0;
}}
"""
# Runs the other program.
CALLER = """#include <unistd.h>
int main(void) {{ return execl("{program}", "reader", (char*)0); }}
"""


class UnchangedTests(unittest.TestCase):
    """Three tests: reader reads data/word, caller runs reader, script is a script that does nothing."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = pathlib.Path(folder.name).resolve() / "a project"
        self.build = self.project / "build"
        for path in ("scripts/lib", "data", "build"):
            (self.project / path).mkdir(parents=True)
        for name in SCRIPTS:
            shutil.copy(PROJECT / "scripts/lib" / name, self.project / "scripts/lib" / name)
        (self.project / "CMakePresets.json").write_text("{}")
        (self.project / "data/word").write_text("good")
        self.compile("reader", READER.format(data=self.project / "data/word"))
        self.compile("caller", CALLER.format(program=self.build / "reader"))
        self.add_tests()
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))

    def compile(self, name, text):
        source = self.project / f"{name}.c"
        source.write_text(text)
        subprocess.run([COMPILER, "-O0", "-w", str(source), "-o", str(self.build / name)], check=True)

    def add_tests(self, environment="A=1"):
        (self.build / "CTestTestfile.cmake").write_text(
            f'add_test(reader "{self.build}/reader")\n'
            f'set_tests_properties(reader PROPERTIES ENVIRONMENT "{environment}")\n'
            f'add_test(caller "{self.build}/caller")\n'
            'add_test(script sh -c true)\n')

    def unchanged_tests(self, *words):
        return subprocess.run([str(self.project / "scripts/lib/unchanged_tests.py"), *words], cwd=self.build,
                              stdout=subprocess.PIPE, text=True, check=True).stdout.strip()

    def run_tests(self):
        """The names of the tests that run, and how many cases of others passed before."""
        exclude = self.unchanged_tests("find", ".")
        done = subprocess.run(["ctest", *(["-E", exclude] if exclude else [])], cwd=self.build, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True, check=False)
        (self.build / "output").write_text(done.stdout)
        left_out = self.unchanged_tests("record", ".", "output", "Testing/Temporary/LastTest.log")
        return sorted(re.findall(r"Test +#\d+: (\w+)", done.stdout)), int(left_out)

    def test_what_passed_is_left_out_and_its_cases_are_counted(self):
        self.assertEqual(self.run_tests(), (["script"], 4))

    def test_a_changed_file_that_a_program_names_runs_it_again_and_what_runs_that_program(self):
        (self.project / "data/word").write_text("fine")
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))
        self.assertEqual(self.run_tests(), (["script"], 4))

    def test_so_does_a_new_file_beside_it(self):
        (self.project / "data/other").write_text("")
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))

    def test_but_a_new_static_library_changes_nothing(self):
        (self.project / "data/lib.a").write_text("")
        self.assertEqual(self.run_tests(), (["script"], 4))

    def test_a_changed_program_runs_again(self):
        self.compile("caller", "int main(void) { return 0; }")
        self.assertEqual(self.run_tests(), (["caller", "script"], 2))

    def test_so_does_a_test_with_another_environment(self):
        self.add_tests(environment="A=2")
        self.assertEqual(self.run_tests(), (["reader", "script"], 2))

    def test_and_every_test_if_the_presets_have_changed(self):
        (self.project / "CMakePresets.json").write_text("{ }")
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))

    def test_what_failed_runs_again_until_it_passes(self):
        (self.project / "data/word").write_text("bad")
        for _ in range(2):
            self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))
        (self.project / "data/word").write_text("good")
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))
        self.assertEqual(self.run_tests(), (["script"], 4))

    def test_what_passed_long_ago_does_not_count_after_a_failure(self):
        (self.project / "data/word").write_text("bad")
        self.run_tests()
        (self.project / "data/word").write_text("good")
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))

    def test_a_program_that_names_the_whole_build_always_runs(self):
        self.compile("caller", f'#include <unistd.h>\nint main(void) {{ return chdir("{self.build}"); }}\n')
        self.run_tests()
        self.assertEqual(self.run_tests(), (["caller", "script"], 2))

    def test_a_build_without_records_runs_every_test(self):
        (self.build / "passed.json").unlink()
        self.assertEqual(self.run_tests(), (["caller", "reader", "script"], 0))


if __name__ == "__main__":
    unittest.main()
