#!/usr/bin/env python3
"""Shows the result of a run of ctest: scripts/lib/report_tests.py OUTPUT LAST-TEST-LOG

Prints ctest's output without what passed. The last line counts the cases: "812 passed, 0 failed". A case is one test of
GoogleTest or of Python's unittest; any other test of ctest is one case. The cases that a program does not reach have failed.
"""
import re
import sys

PASSED_TEST = re.compile(r" *Start +\d+: .*| *\d+/\d+ Test +#\d+: .* Passed +[0-9.]+ sec *")
FRAME_OF_GOOGLE_TEST = re.compile(r"\[[-=]{10}\].*|Running main\(\) from .*|Note: Google Test filter = .*")

# "12/34 Test #5: NAME ......***Skipped   0.01 sec" in OUTPUT; the line of a second run has no "12/34".
RESULT = re.compile(r"^ *(?:\d+/\d+)? +Test +#\d+: (.*?) \.+(?: +|\*\*\*)(\w+)", re.MULTILINE)
# In LAST-TEST-LOG, which has the output of each test.
BEGIN = re.compile(r"^\d+/\d+ Testing: (.*)\n", re.MULTILINE)


def without_passed_cases(lines):
    """Leaves out what cases of GoogleTest print when they pass."""
    case = []
    for line in lines:
        if line.startswith("[ RUN      ]"):
            yield from case
            case = [line]
        elif line.startswith("[       OK ]"):
            case = []
        elif case and line.startswith("[  FAILED  ]"):
            yield from [*case, line]
            case = []
        elif case:
            case.append(line)
        else:
            yield line
    yield from case


def shown(output):
    lines = (line for line in output.splitlines() if not PASSED_TEST.fullmatch(line))
    return [line for line in without_passed_cases(lines) if not FRAME_OF_GOOGLE_TEST.fullmatch(line)]


def last_number(pattern, text):
    found = re.findall(pattern, text, re.MULTILINE)
    return int(found[-1]) if found else None


def count_cases(text, has_passed):
    """The numbers of passed and failed cases of one test of ctest."""
    total = last_number(r"^\[==========\] Running (\d+) tests? from ", text)
    if total is not None:
        passed = len(re.findall(r"^\[       OK \] ", text, re.MULTILINE))
        skipped = last_number(r"^\[  SKIPPED \] (\d+) tests?, listed below", text) or 0
    else:
        total = last_number(r"^Ran (\d+) tests? in ", text)
        ending = re.findall(r"^(?:OK|FAILED)(?: \((.*)\))?$", text, re.MULTILINE)
        numbers = dict(re.findall(r"(\w+)=(\d+)", ending[-1])) if ending else {}
        skipped = int(numbers.get("skipped", 0))
        # One test may fail several times.
        passed = max(0, (total or 0) - skipped - sum(int(numbers.get(kind, 0)) for kind in ("failures", "errors")))
    if total is None:
        return (1, 0) if has_passed else (0, 1)
    failed = total - passed - skipped
    if not has_passed and failed <= 0:
        # What failed is the end of the program, for example a leak.
        return passed, 1
    return passed, failed


def count_by_test(output, log):
    """The numbers of passed and failed cases of each test of ctest. Of a test that ran twice, the second run counts."""
    beginnings = list(BEGIN.finditer(log))
    texts = {begin.group(1): log[begin.end():following.start() if following else len(log)]
             for begin, following in zip(beginnings, [*beginnings[1:], None])}
    return {name: count_cases(texts.get(name, ""), result == "Passed")
            for name, result in dict(RESULT.findall(output)).items() if result != "Skipped"}


def count(output, log):
    """The numbers of passed and failed cases of a whole run."""
    cases = count_by_test(output, log).values()
    return sum(passed for passed, _ in cases), sum(failed for _, failed in cases)


def read(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return file.read()


if __name__ == "__main__":
    ctest_output = read(sys.argv[1])
    print("\n".join(shown(ctest_output)))
    print("{} passed, {} failed".format(*count(ctest_output, read(sys.argv[2]))))
