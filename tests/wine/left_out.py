"""left_out.py HOST WINDOWS: the two builds' lists of compilations. Prints why each test file of the one is not in the
other, and fails for one that does not say so in its head ("Not on Windows: ..."), or says so without being left out."""
import json
import os
import re
import sys

MARK = "// Not on Windows: "
# Programs of this machine that run the Windows program.
RUNNERS = ("tests/e2e/", "tests/wine/")


def sources(file):
    """The file, or the files that CMake compiles together in it."""
    if not re.search(r"/unity_\d+_cxx\.cxx$", file):
        return [file]
    with open(file, encoding="utf-8") as together:
        return re.findall(r'^#include "(.*)"$', together.read(), re.MULTILINE)


def test_files(path):
    with open(path, encoding="utf-8") as commands:
        files = {os.path.relpath(os.path.realpath(file), project)
                 for entry in json.load(commands) for file in sources(entry["file"])}
    tests = {file for file in files if file.startswith("tests/") and file.endswith("_test.cpp")}
    return {file for file in tests if not file.startswith(RUNNERS)}


def reason(file):
    """What the first comment of the file says, in one line; None when that is something else."""
    with open(os.path.join(project, file), encoding="utf-8") as lines:
        text = lines.readline()
        if not text.startswith(MARK):
            return None
        words = [text[len(MARK):].strip()]
        for line in lines:
            if not line.startswith("// "):
                return " ".join(words)
            words.append(line[3:].strip())
    return None


project = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
host, windows = (test_files(path) for path in sys.argv[1:])
wrong = [] if host and windows else ["no test files found"]
for file in sorted(host - windows):
    why = reason(file)
    if why is None:
        wrong.append(f"{file} is left out and does not say why")
    else:
        print(f"Not on Windows: {file}: {why}")
wrong += [f"{file} says why it is left out, but is not" for file in sorted(windows) if reason(file) is not None]
print("\n".join(wrong))
sys.exit(1 if wrong else 0)
