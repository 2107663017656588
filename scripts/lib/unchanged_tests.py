#!/usr/bin/env -S python3 -B
"""Finds the tests of ctest that need not run again:

    scripts/lib/unchanged_tests.py find BUILD CTEST-OPTION ...
        prints a regular expression with the names of those among the tests that the options choose; nothing if there are none
    scripts/lib/unchanged_tests.py record BUILD OUTPUT LAST-TEST-LOG
        afterwards: remembers what passed, and prints how many cases were left out

A test is left out if it passed and everything that it uses is as it was then: its command and environment, its program, and
each file and folder of the project whose path stands in one of these, and so on for the programs among them. Tests are
compiled without optimisation, so a path stands in its program as one text. A test whose command is a script always runs:
what a script uses, it does not tell. So does a test that uses a folder that contains the build.

BUILD/passed.json has the records, BUILD/inputs.json what `find` saw. A build without records runs every test.
"""
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import report_tests

PROJECT = pathlib.Path(__file__).resolve().parents[2]
# What starts a Windows program.
WINE = PROJECT / "scripts/lib/wine"
# What every test uses: the environment of presets, and the system's libraries, whose versions are those of the packages.
USED_BY_ALL = {PROJECT / "CMakePresets.json", WINE, pathlib.Path("/var/lib/dpkg/status")}


def output(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout


class Program:
    """A program or a shared library of Linux or Windows."""

    def __init__(self, path):
        self._path = path

    @staticmethod
    def is_one(path):
        if not path.is_file():
            return False
        with open(path, "rb") as file:
            return file.read(4).startswith((b"\x7fELF", b"MZ"))

    def texts(self):
        """Its bytes, without debug information, whose names of folders are not used when it runs."""
        with tempfile.NamedTemporaryFile() as stripped:
            output("objcopy", "--strip-debug", str(self._path), stripped.name)
            return pathlib.Path(stripped.name).read_bytes()

    def libraries(self):
        """Lines that name the shared libraries that it loads when it starts, perhaps with others."""
        if self._path.suffix in (".exe", ".dll"):
            return "\n".join(map(str, self._path.parent.glob("*.dll"))).encode()
        return output("ldd", str(self._path))


class Inputs:
    """What the tests of a build use. Each file is read once."""

    def __init__(self, project, build):
        self._build = build
        # The Linux programs that run those for Windows are in another build.
        self._all_builds = project / "build"
        self._paths = re.compile(re.escape(os.fsencode(project)) + rb"(?:/[\w.+-]+)+")
        self._digests = {}
        self._named = {}

    def key(self, test):
        """A digest of everything that the test uses; None if that is not known."""
        properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
        command, environment = test.get("command", []), properties.get("ENVIRONMENT", [])
        program = pathlib.Path(next((word for word in command if word != str(WINE)), ""))
        if not self._is_built(program):
            return None
        words = json.dumps([command, environment])
        try:
            used = self._all_used_by(program, *self._named_in(words.encode()))
        except subprocess.CalledProcessError:
            return None
        if any(self._build.is_relative_to(path) for path in used):
            return None
        parts = [words, *(f"{path} {self._digest(path)}" for path in sorted(used | USED_BY_ALL))]
        return hashlib.sha256("\n".join(parts).encode()).hexdigest()

    def _is_built(self, path):
        return path.is_relative_to(self._all_builds) and Program.is_one(path)

    def _named_in(self, content):
        return {pathlib.Path(os.fsdecode(match)) for match in self._paths.findall(content)}

    def _all_used_by(self, *paths):
        """The paths, and what the programs among them use."""
        used, waiting = set(), list(paths)
        while waiting:
            path = waiting.pop()
            if path in used:
                continue
            used.add(path)
            if self._is_built(path):
                waiting += self._used_by_program(path)
            elif path.is_file():
                # A script or a file of data, with those beside it.
                waiting.append(path.parent)
        return used

    def _used_by_program(self, path):
        if path not in self._named:
            program = Program(path)
            self._named[path] = self._named_in(program.texts()) | self._named_in(program.libraries())
        return self._named[path]

    def _digest(self, path):
        if path not in self._digests:
            self._digests[path] = self._digest_of_folder(path) if path.is_dir() else self._digest_of_file(path)
        return self._digests[path]

    def _digest_of_folder(self, path):
        # Static libraries are for the linker, and are beside the shared ones.
        files = (file for file in path.rglob("*") if file.is_file() and file.suffix != ".a" and "__pycache__" not in file.parts)
        return hashlib.sha256("".join(f"{file} {self._digest(file)}\n" for file in sorted(files)).encode()).hexdigest()

    @staticmethod
    def _digest_of_file(path):
        return hashlib.sha256(path.read_bytes()).hexdigest() if path.is_file() else "missing"


def read_json(path):
    try:
        return json.loads(path.read_text(encoding="utf-8"))
    except (OSError, ValueError):
        return {}


def find(project, build, options):
    tests = json.loads(output("ctest", *options, "--show-only=json-v1"))["tests"]
    inputs = Inputs(project, build)
    keys = {test["name"]: key for test in tests if (key := inputs.key(test))}
    (build / "inputs.json").write_text(json.dumps(keys), encoding="utf-8")
    passed = read_json(build / "passed.json")
    names = [name for name, key in keys.items() if passed.get(name, {}).get("key") == key]
    if names:
        print("^(" + "|".join(re.escape(name) for name in names) + ")$")


def record(build, ctest_output, log):
    keys, passed = read_json(build / "inputs.json"), read_json(build / "passed.json")
    ran = report_tests.count_by_test(ctest_output, log)
    left_out = sum(entry["cases"] for name, entry in passed.items() if name not in ran and keys.get(name) == entry["key"])
    for name, (cases, failures) in ran.items():
        passed.pop(name, None)
        if failures == 0 and name in keys:
            passed[name] = {"key": keys[name], "cases": cases}
    (build / "passed.json").write_text(json.dumps(passed, indent=1), encoding="utf-8")
    print(left_out)


if __name__ == "__main__":
    verb, build_folder, *words = sys.argv[1:]
    if verb == "find":
        find(PROJECT, pathlib.Path(build_folder).resolve(), words)
    else:
        record(pathlib.Path(build_folder).resolve(), *(report_tests.read(path) for path in words))
