#!/usr/bin/env python3
"""The report of a run of ctest counts every case and shows what failed: report_tests_test.py PROJECT"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

REPORT = pathlib.Path(sys.argv.pop(1)) / "scripts/lib/report_tests.py"

RUN = "Running main() from gtest_main.cc\n[==========] Running 3 tests from 1 test suite.\n"
GOOD = "[ RUN      ] Clock.Ticks\ntick\n[       OK ] Clock.Ticks (0 ms)\n"
BAD = "[ RUN      ] Clock.Stops\nclock_test.cpp:7: Failure\n[  FAILED  ] Clock.Stops (0 ms)\n"
CRASHING = "[ RUN      ] Clock.Rings\nabout to ring\n"


def python_tests(ending):
    return f"......\n{'-' * 70}\nRan 6 tests in 0.001s\n\n{ending}\n"


class Ctest(unittest.TestCase):
    """ctest runs tests that print texts and end with a status."""

    def report(self, *tests, **properties):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            lines = []
            for number, (text, status) in enumerate(tests):
                (folder / f"text{number}").write_text(text)
                lines.append(f'add_test(test{number} sh -c "cat text{number}; exit {status}")')
                lines += [f"set_tests_properties(test{number} PROPERTIES {key} {value})" for key, value in properties.items()]
            (folder / "CTestTestfile.cmake").write_text("\n".join(lines))
            output = subprocess.run(["ctest", "--output-on-failure"], cwd=folder, stdout=subprocess.PIPE,
                                    stderr=subprocess.STDOUT, check=False).stdout
            (folder / "output").write_bytes(output)
            return subprocess.run([str(REPORT), "output", "Testing/Temporary/LastTest.log"], cwd=folder,
                                  stdout=subprocess.PIPE, text=True, check=True).stdout.splitlines()

    def expect_count(self, passed, failed, *tests, **properties):
        self.assertEqual(self.report(*tests, **properties)[-1], f"{passed} passed, {failed} failed")

    def test_each_case_of_google_test_counts(self):
        self.expect_count(3, 0, (RUN + GOOD * 3, 0))
        self.expect_count(2, 1, (RUN + GOOD + BAD + GOOD, 1))

    def test_skipped_cases_count_as_neither(self):
        skipped = "[  SKIPPED ] Clock.Waits (0 ms)\n"
        self.expect_count(2, 0, (RUN + GOOD * 2 + skipped + "[  SKIPPED ] 1 test, listed below:\n" + skipped, 0))
        self.expect_count(5, 0, (python_tests("OK (skipped=1)"), 0))
        self.expect_count(0, 0, ("", 77), SKIP_RETURN_CODE=77)

    def test_cases_that_are_not_reached_have_failed(self):
        self.expect_count(1, 2, (RUN + GOOD + CRASHING, 1))

    def test_a_program_that_fails_after_its_cases_is_one_failure(self):
        self.expect_count(3, 1, (RUN + GOOD * 3 + "LeakSanitizer: detected memory leaks\n", 1))
        self.expect_count(6, 1, (python_tests("OK"), 1))

    def test_each_case_of_unittest_counts(self):
        self.expect_count(6, 0, (python_tests("OK"), 0))
        self.expect_count(3, 3, (python_tests("FAILED (failures=2, errors=1)"), 1))

    def test_any_other_program_is_one_case(self):
        self.expect_count(1, 2, ("done\n", 0), ("wrong\n", 1), ("", 1))

    def test_cases_that_failed_are_shown_and_others_are_not(self):
        report = self.report((RUN + GOOD + BAD + CRASHING, 1), (RUN + GOOD * 3, 0))
        self.assertNotIn("tick", report)
        self.assertNotIn("[ RUN      ] Clock.Ticks", report)
        for line in ("[ RUN      ] Clock.Stops", "clock_test.cpp:7: Failure", "[  FAILED  ] Clock.Stops (0 ms)",
                     "[ RUN      ] Clock.Rings", "about to ring", "\t  1 - test0 (Failed)"):
            self.assertIn(line, report)
        self.assertFalse([line for line in report if "test1" in line])


if __name__ == "__main__":
    unittest.main()
