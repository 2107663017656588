#!/usr/bin/env python3
"""The bill of materials tells what is in the shipped files: bill_of_materials_test.py NM BILL VERSION FILE ...

NM lists the symbols of the files, which are not stripped. The libraries that a file needs at run time and the symbols of
those that are compiled in must be those that the bill names for it, no fewer and no more.
"""
import json
import pathlib
import re
import subprocess
import sys
import unittest

NM, BILL, VERSION, *FILES = sys.argv[1:]
del sys.argv[1:]
FILES = {pathlib.Path(path).name: path for path in FILES}
ON_WINDOWS = any(name.endswith(".exe") for name in FILES)

# How a shared library is named in a file that needs it.
SHARED = {
    "glibc": r"libc\.so\.\d+|libm\.so\.\d+|ld-linux.*",
    "libstdcxx": r"libstdc\+\+\.so\.\d+",
    "libgcc": r"libgcc_s\.so\.\d+",
    "sqlite": r"libsqlite3\.so\.\d+",
    "libiscsi": r"libiscsi\.so\.\d+",
    "libblkid": r"libblkid\.so\.\d+",
}
# Symbols of a library that is compiled in.
COMPILED_IN = {
    "tomlplusplus": r"\btoml::",
    "cli11": r"\bCLI::",
    "nlohmann-json": r"\bnlohmann::",
    "sqlite": r"(?m) [Tt] sqlite3_open_v2$",
    "libstdcxx": r"(?m) [Tt] std::terminate\(\)$",
    "libgcc": r"(?m) [Tt] _Unwind_Resume$",
    "mingw-w64": r"(?m) [Tt] __mingw_\w+$",
}
# The package of Debian that a version can be compared with. One whose package is not installed is not compared.
PACKAGES = {"glibc": "libc6-dev", "sqlite": "libsqlite3-dev", "tomlplusplus": "libtomlplusplus-dev", "cli11": "libcli11-dev",
            "nlohmann-json": "nlohmann-json3-dev", "libiscsi": "libiscsi-dev", "libblkid": "libblkid-dev",
            "mingw-w64": "mingw-w64-x86-64-dev"}


def output(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False).stdout


def installed_version(package):
    """The upstream version, or nothing."""
    try:
        version = output("dpkg-query", "-W", "-f", "${Version}", package)
    except FileNotFoundError:
        return ""
    return version.split(":")[-1].split("-")[0]


class BillOfMaterials(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.bill = json.loads(pathlib.Path(BILL).read_text(encoding="utf-8"))
        cls.product = cls.bill["metadata"]["component"]
        cls.files = {entry["name"]: entry["bom-ref"] for entry in cls.product["components"]}
        cls.libraries = {entry["bom-ref"]: entry for entry in cls.bill["components"]}
        cls.depends = {entry["ref"]: entry["dependsOn"] for entry in cls.bill["dependencies"]}

    def linkage(self, ref):
        return {entry["name"]: entry["value"] for entry in self.libraries[ref]["properties"]}["krvcmd:linkage"]

    def listed(self, file, linkages):
        return {self.libraries[ref]["name"] for ref in self.depends[self.files[file]] if self.linkage(ref) in linkages}

    def test_is_a_bill_in_the_format_of_cyclonedx(self):
        self.assertEqual((self.bill["bomFormat"], self.bill["specVersion"], self.bill["version"]), ("CycloneDX", "1.4", 1))
        self.assertEqual((self.product["name"], self.product["version"]), ("krvcmd", VERSION))
        names = [self.product["bom-ref"], *self.files.values(), *self.libraries]
        self.assertEqual(len(set(names)), len(names))
        for ref, others in self.depends.items():
            self.assertIn(ref, names)
            self.assertLessEqual(set(others), set(names))
            self.assertEqual(len(set(others)), len(others))
        for entry in self.libraries.values():
            self.assertEqual(entry["type"], "library")
            self.assertTrue(entry["licenses"][0]["expression"])

    def test_lists_the_shipped_files_and_only_libraries_that_one_of_them_uses(self):
        self.assertEqual(set(self.files), set(FILES))
        self.assertEqual(set(self.depends), set(self.files.values()))
        self.assertEqual({ref for refs in self.depends.values() for ref in refs}, set(self.libraries))

    @unittest.skipIf(ON_WINDOWS, "only libraries of Windows itself are needed; tests of the binaries check it")
    def test_the_shared_libraries_of_a_file_are_those_that_it_needs(self):
        for file, path in FILES.items():
            needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "--wide", "--dynamic", path)))
            needed.discard("libkrvSdk64.so")
            found = {name for name, pattern in SHARED.items() if any(re.fullmatch(pattern, library) for library in needed)}
            unknown = {library for library in needed if not any(re.fullmatch(pattern, library) for pattern in SHARED.values())}
            with self.subTest(file=file):
                self.assertEqual(unknown, set())
                self.assertEqual(self.listed(file, {"shared"}), found)

    def test_the_symbols_in_a_file_are_those_of_the_libraries_that_are_compiled_in(self):
        for file, path in FILES.items():
            symbols = output(NM, "--demangle", "--defined-only", path)
            found = {name for name, pattern in COMPILED_IN.items() if re.search(pattern, symbols)}
            with self.subTest(file=file):
                self.assertTrue(symbols)
                self.assertEqual(self.listed(file, {"static", "header"}), found)

    def test_each_library_has_the_version_of_the_package_that_it_comes_from(self):
        for ref, entry in self.libraries.items():
            name = entry["name"]
            with self.subTest(library=ref):
                self.assertRegex(entry["version"], r"^\d+(\.\d+)*$")
                installed = installed_version(PACKAGES[name]) if name in PACKAGES else ""
                if installed and not (ON_WINDOWS and name == "sqlite"):
                    self.assertRegex(installed, rf"^{re.escape(entry['version'])}(?![0-9])")


if __name__ == "__main__":
    unittest.main()
