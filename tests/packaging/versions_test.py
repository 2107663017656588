#!/usr/bin/env python3
"""Every place that tells the version tells the same one: versions_test.py PROJECT VERSION BUILD"""
import pathlib
import re
import subprocess
import sys
import unittest

BUILD, VERSION, PROJECT = pathlib.Path(sys.argv.pop()), sys.argv.pop(), pathlib.Path(sys.argv.pop())


def read(path):
    return (PROJECT / path).read_text(encoding="utf-8")


class Versions(unittest.TestCase):
    def test_the_newest_entry_of_the_changelog(self):
        self.assertEqual(re.search(r"(?m)^## (\d+\.\d+\.\d+)", read("CHANGELOG.md"))[1], VERSION)

    def test_the_newest_entry_of_the_packages_changelog(self):
        self.assertEqual(re.match(r"krvcmd \((.*?)\)", read("debian/changelog"))[1], VERSION)

    def test_the_rpm_package_and_the_newest_entry_of_its_changelog(self):
        spec = read("packaging/rpm/krvcmd.spec")
        self.assertEqual(re.search(r"(?m)^Version: *(\S+)$", spec)[1], VERSION)
        self.assertEqual(re.search(r"(?m)^%changelog\n\* .* - (\S+)-1$", spec)[1], VERSION)

    def test_the_names_of_files_in_the_documents(self):
        shown = re.findall(r"krvcmd(?:-[a-z]+)?[_-](\d+\.\d+\.\d+)", read("README.md"))
        self.assertGreaterEqual(len(shown), 2)
        self.assertEqual(set(shown), {VERSION})

    def test_the_end_of_the_manual_page(self):
        page = (BUILD / "man/krvcmd.1").read_text(encoding="utf-8")
        end = page.partition(".SH VERSION\n")[2]
        self.assertIn(f"This page describes krvcmd {VERSION}.\n", end)
        self.assertEqual(re.findall(r"(?m)^\.SH (.*)$", end), ["SEE ALSO"])

    def test_the_tools_say_it(self):
        for tool in ("krvsim", "krvadm"):
            said = subprocess.run([BUILD / "bin" / tool, "--version"], stdout=subprocess.PIPE, text=True, check=True).stdout
            self.assertEqual(said, f"{tool} {VERSION}\n")

    def test_the_program_file_contains_it(self):
        found = subprocess.run(["strings", BUILD / "bin/krvcmd"], stdout=subprocess.PIPE, text=True, check=True).stdout
        self.assertEqual(re.findall(r"(?m)^krvcmd \d+\.\d+\.\d+$", found), [f"krvcmd {VERSION}"])


if __name__ == "__main__":
    unittest.main()
