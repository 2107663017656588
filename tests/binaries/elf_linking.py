"""elf_linking.py PROGRAM LIBRARY: the program finds the library by name beside itself, after LD_LIBRARY_PATH."""
import re
import sys

from inspect_file import Findings, readelf


def dynamic(path, tag):
    return re.findall(rf"\({tag}\).*\[(.*)\]", readelf("--dynamic", path))


program, library = sys.argv[1:]
findings = Findings()
findings.expect(dynamic(library, "SONAME") == ["libkrvSdk64.so"], f"soname: {dynamic(library, 'SONAME')}")
findings.expect("libkrvSdk64.so" in dynamic(program, "NEEDED"), f"needed: {dynamic(program, 'NEEDED')}")
findings.expect(dynamic(program, "RUNPATH") == ["$ORIGIN/../lib"], f"runpath: {dynamic(program, 'RUNPATH')}")
# An RPATH would win over LD_LIBRARY_PATH.
findings.expect(dynamic(program, "RPATH") == [], f"rpath: {dynamic(program, 'RPATH')}")
findings.report()
