#!/usr/bin/env python3
"""Each row of docs/dependencies.md is true: dependencies_test.py PROJECT BUILD KRVCMD LIBRARY KRVSIM KRVADM MODULE

The build's files tell what is linked and included, dpkg what is installed, the scripts what they install. Ends with 77 on
a system without dpkg.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

SKIPPED = 77
# Comes with the compiler.
TOOLCHAIN = re.compile(r"libc6-dev|linux-libc-dev|libstdc\+\+-\d+-dev|libgcc-\d+-dev|libclang-common-\d+-dev")
# The headers of each shipped file come from the sources in these folders.
# Real changers are the subject of krvadm and of the module alone.
OF_KRVADM_ALONE = ("tools/krvadm/", "embedded/attached/")
FOLDERS = {"krvcmd": ("krvcmd/",), "krvSdk64": ("embedded/",), "krvsim": ("tools/", "embedded/"),
           "krvadm": ("tools/common/", "embedded/layout/", *OF_KRVADM_ALONE), "krvJukebox64": ("embedded/attached/",)}
# What the package's copyright file says where the page names the licence.
LICENCES = {
    "LGPL-2.1-or-later": r"LGPL-2\.1|Lesser General Public\s+License",
    "GPL-3.0 with the GCC Runtime Library Exception": r"(?s)GPL.*Runtime Library Exception|GCC RUNTIME LIBRARY EXCEPTION",
    "public domain": r"(?i)public.domain",
    "MIT": r"MIT|Expat",
    "BSD-3-Clause": r"(?i)BSD-3-clause|Neither the name",
}


def output(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False,
                          env=dict(os.environ, LC_ALL="C")).stdout


def installed_version(package):
    """The upstream version, or nothing."""
    state, _, version = output("dpkg-query", "-W", "-f", "${db:Status-Status} ${Version}", package).partition(" ")
    return version.partition(":")[2] or version if state == "installed" else ""


def packages_of(paths):
    """The packages that own the files. A merged /usr gives a file two names; dpkg knows one of them."""
    names = {path: os.path.realpath(path) for path in paths}
    lines = output("dpkg-query", "-S", *sorted({name for real in names.values() for name in (real, real.removeprefix("/usr"))}))
    owners = {path: owner.split(":")[0].split(",")[0] for owner, _, path in (line.rpartition(": ") for line in lines.splitlines())}
    return {path: owners.get(real) or owners.get(real.removeprefix("/usr"), f"no package ({real})") for path, real in names.items()}


def read_table(page, heading):
    rows = page.partition(f"## {heading}\n")[2].partition("\n## ")[0]
    cells = [[cell.strip() for cell in line.strip("|").split("|")] for line in rows.splitlines() if line.startswith("|")]
    return cells[2:]


def packages_in(cell):
    return re.findall(r"`([^`]+)`", cell)


def shared_libraries(path):
    """The packages of the libraries that the file names itself."""
    needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "--wide", "--dynamic", path)))
    found = dict(re.findall(r"^\s*(\S+) => (\S+) \(", output("ldd", path), re.MULTILINE))
    return set(packages_of({found[name] for name in needed if name in found and "krvSdk64" not in name}).values())


def is_linked_dynamically(row, build):
    """The C++ library is in krvcmd unless the build says otherwise."""
    static = "KRVCMD_STATIC_CXX_LIBRARY:BOOL=ON\n" in (pathlib.Path(build) / "CMakeCache.txt").read_text(encoding="utf-8")
    return "shared library" in row[4] or ("dynamically" in row[4] and not static)


def included_packages(build):
    """For each object file of the build the packages of its headers from outside the project."""
    headers = {}
    for record in output("ninja", "-C", build, "-t", "deps").split("\n\n"):
        head, *files = record.splitlines() or [""]
        if head.startswith(tuple(folder for folders in FOLDERS.values() for folder in folders)):
            headers[head.split(":")[0]] = {name.strip() for name in files if name.strip().startswith("/usr/include/")}
    owners = packages_of(set().union(*headers.values()))
    return {target: {owners[name] for name in names} for target, names in headers.items()}


class Dependencies(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        page = (PROJECT / "docs/dependencies.md").read_text(encoding="utf-8")
        cls.shipped = read_table(page, "In the shipped files")
        cls.tools = read_table(page, "For building, testing and packaging only")

    def test_has_rows(self):
        self.assertGreater(len(self.shipped), 5)
        self.assertGreater(len(self.tools), 15)
        for row in [*self.shipped, *self.tools]:
            self.assertTrue(packages_in(row[0]), row)

    def test_each_shared_library_has_a_row_and_each_such_row_is_linked(self):
        for name, path in FILES.items():
            rows = {package for row in self.shipped if is_linked_dynamically(row, BUILD) and name in packages_in(row[3])
                    for package in packages_in(row[0]) if not package.endswith("-dev")}
            linked = shared_libraries(path)
            with self.subTest(file=name):
                self.assertTrue(linked)
                self.assertEqual(linked, rows)

    def test_each_included_header_has_a_row_and_each_such_row_is_included(self):
        included = included_packages(BUILD)
        for name, folders in FOLDERS.items():
            others = () if name in ("krvadm", "krvJukebox64") else OF_KRVADM_ALONE
            found = {package for target, packages in included.items() if target.startswith(folders) and not target.startswith(others)
                     for package in packages if not TOOLCHAIN.fullmatch(package)}
            rows = {package for row in self.shipped if name in packages_in(row[3]) and "on Windows" not in row[3]
                    for package in packages_in(row[0]) if package.endswith("-dev")}
            with self.subTest(file=name):
                self.assertEqual(found, rows)

    def test_versions_are_those_of_the_installed_packages(self):
        release = pathlib.Path("/etc/os-release").read_text()
        exact = re.search(r'^ID=debian$', release, re.MULTILINE) and re.search(r'^VERSION_ID="12"$', release, re.MULTILINE)
        compared = 0
        for row in [*self.shipped, *self.tools]:
            for package in packages_in(row[0]):
                version = installed_version(package)
                if not version:
                    continue
                compared += 1
                with self.subTest(package=package):
                    if exact and not row[1].endswith("+"):
                        self.assertRegex(version, rf"^{re.escape(row[1])}(?![0-9])")
                    else:
                        self.assertEqual(subprocess.run(["dpkg", "--compare-versions", version, "ge", row[1].rstrip("+")],
                                                        check=False).returncode, 0, version)
        self.assertGreater(compared, 10)

    def test_licences_are_those_of_the_packages(self):
        for row in self.shipped:
            for package in packages_in(row[0]):
                if installed_version(package):
                    text = pathlib.Path(f"/usr/share/doc/{package}/copyright").read_text(encoding="utf-8", errors="replace")
                    licence = next(name for name in LICENCES if row[2].startswith(name))
                    with self.subTest(package=package):
                        self.assertRegex(text, LICENCES[licence])

    def test_each_package_that_a_script_installs_has_a_row_and_each_row_is_installed_by_one(self):
        scripts = [path for path in (PROJECT / "scripts").rglob("*") if path.is_file() and path.suffix != ".pyc"]
        needs = {match[1] for path in scripts for match in
                 re.finditer(r"^(?:command|header|file|package) +\S+ +(\S+)$", path.read_text(), re.MULTILINE)}
        rows = {package for row in [*self.shipped, *self.tools] for package in packages_in(row[0])}
        # These come with the packages that the scripts name.
        implied = {"libc6", "libstdc++6", "libgcc-s1", "libsqlite3-0", "libiscsi7", "libblkid1", "mingw-w64-x86-64-dev"}
        self.assertEqual(needs, rows - implied)


if __name__ == "__main__":
    if not shutil.which("dpkg-query"):
        print("no dpkg on this system")
        sys.exit(SKIPPED)
    FILES = dict(zip(("krvJukebox64", "krvadm", "krvsim", "krvSdk64", "krvcmd"), [sys.argv.pop() for _ in range(5)]))
    BUILD, PROJECT = sys.argv.pop(), pathlib.Path(sys.argv.pop())
    unittest.main()
