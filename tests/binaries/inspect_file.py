"""Reads the output of binutils about a file and reports problems."""
import re
import subprocess
import sys

FUNCTION_COUNT = 31


def tool(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True).stdout


def readelf(option, path):
    return tool("readelf", "--wide", option, path)


def exported_by_list(path):
    """The names in a module definition file, in its order. Anything but plain names is an error."""
    lines = [line.split(";")[0].strip() for line in open(path, encoding="ascii")]
    lines = [line for line in lines if line]
    if not lines or not re.fullmatch(r'LIBRARY\s+"?krvSdk64(\.dll)?"?', lines[0]):
        sys.exit(f"{path}: does not begin with LIBRARY krvSdk64")
    if len(lines) < 2 or lines[1] != "EXPORTS":
        sys.exit(f"{path}: EXPORTS does not follow LIBRARY")
    return lines[2:]


class Findings:
    """Collects problems; Report ends the program."""

    def __init__(self):
        self._lines = []

    def expect(self, holds, text):
        if not holds:
            self._lines.append(text)

    def report(self):
        for line in self._lines:
            print(line)
        sys.exit(1 if self._lines else 0)
