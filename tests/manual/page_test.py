#!/usr/bin/env python3
"""The manual pages are well formed and complete: page_test.py PAGE ... (as they are installed)"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

PAGES = []
KRVSIM = os.environ.get("KRVSIM_PROGRAM", "krvsim")
KRVADM = os.environ.get("KRVADM_PROGRAM", "krvadm")
PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
HEADER = PROJECT / "krvcmd/service/sdk/krv_sdk.h"
CODES = PROJECT / "krvcmd/service/sdk/codes.h"
LAYOUT_READER = PROJECT / "embedded/layout/layout_reader.cpp"


def run(program, *arguments):
    """The output and the warnings of a formatter."""
    if not shutil.which(program):
        raise AssertionError(f"{program} is missing; it comes with the package of that name")
    done = subprocess.run([program, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          env=dict(os.environ, LC_ALL="C.UTF-8"), check=False)
    return done.stdout, done.stderr


def rendered(name):
    page = next(page for page in PAGES if page.name == name)
    text, _ = run("mandoc", "-Tutf8", str(page))
    return re.sub(".\b", "", text).replace("\xa0", " ")


class ManualPages(unittest.TestCase):
    def assertShows(self, text, pattern):
        self.assertTrue(re.search(pattern, text, re.MULTILINE), f"nothing like {pattern!r} on the page")

    def assertShowsDefault(self, text, default):
        value = re.escape(default)
        self.assertRegex(" ".join(text.split()), rf'by default "?{value}(?!\w)|{value} \(the default\)')

    def test_satisfy_mandoc(self):
        for page in PAGES:
            with self.subTest(page=page.name):
                # What it says of the operating system that a page is for concerns BSD only; pages that are not
                # installed here cannot be found.
                report, errors = run("mandoc", "-Tlint", "-Wall", str(page))
                self.assertEqual(report + errors, "")

    def test_render_with_groff_without_a_warning(self):
        for page in PAGES:
            with self.subTest(page=page.name):
                text, warnings = run("groff", "-man", "-ww", "-Tutf8", str(page))
                self.assertEqual(warnings, "")
                self.assertIn("SEE ALSO", re.sub(r"\x1b\[[0-9;]*m|.\x08", "", text))

    def test_have_no_mark_left(self):
        for page in PAGES:
            with self.subTest(page=page.name):
                self.assertEqual(re.findall(r"^@.*@$|@version@", page.read_text(), re.MULTILINE), [])

    def test_refer_to_pages_that_exist(self):
        names = {page.name for page in PAGES}
        for page in PAGES:
            references = re.findall(r"^\.BR (\S+) \((\d)\)", page.read_text(), re.MULTILINE)
            for name, section in references:
                with self.subTest(page=page.name, reference=name):
                    self.assertIn(name.replace("\\-", "-") + "." + section, names)

    def test_krvcmd_explains_every_command_and_letter(self):
        text = rendered("krvcmd.1")
        for command in "help query import export scan format name service".split():
            self.assertShows(text, rf"^   {command}$")
        self.assertShows(text, r"^   enable, disable$")
        for letter in "SDMIJNLmdsaCRPFnlvftxXzyYo":
            self.assertShows(text, rf"^       {letter}  [A-Z]")
        for status in ("0", "2", "4", "6", "12", "22"):
            self.assertShows(text, rf"^       {status} +\w")

    def test_krv_sdk_describes_every_function_and_record(self):
        text = rendered("krv-sdk.3")
        header = HEADER.read_text()
        functions = re.findall(r"^KRV_API KrvBool (Krv\w+)\(", header, re.MULTILINE)
        self.assertEqual(len(functions), 31)
        for function in functions:
            with self.subTest(function=function):
                # Once with its parameters, once with its description.
                self.assertShows(text, rf"^       KrvBool {function}\(KrvCallContext\* context")
                self.assertShows(text, rf"^       {function}\n? +[A-Z]")
        for record, size in re.findall(r"^static_assert\(sizeof\((\w+)\) == (\d+)", header, re.MULTILINE):
            self.assertShows(text, rf"^   {record}, {size} bytes$")
        fields = re.findall(r"^static_assert\(offsetof\(\w+, (\w+)\) == (\d+)", header, re.MULTILINE)
        self.assertGreater(len(fields), 60)
        for field, offset in fields:
            self.assertShows(text, rf"^       {offset}: .*\b{field}\b")

    def test_krv_sdk_shows_the_table_of_codes(self):
        source = CODES.read_text()
        numbers = {name: int(number) for name, number in re.findall(
            r"constexpr uint32_t (k\w+) = (\d+);", source.partition("namespace service_code {")[2])}
        rows = re.findall(r'\{service_code::(k\w+),((?:\s*"[^"]*",?)+)\}', source)
        self.assertEqual([numbers[name] for name, _ in rows], sorted(numbers.values()))
        self.assertEqual(sorted(numbers.values()), [2, 3, 4, 7, 500, 501, 502])
        shown = " ".join(rendered("krv-sdk.3").partition("\n   Codes\n")[2].partition("\nFUNCTIONS\n")[0].split())
        for name, texts in rows:
            with self.subTest(code=name):
                text = "".join(re.findall(r'"([^"]*)"', re.sub(r'",\s*"', " ", texts))).replace("`", "")
                self.assertIn(f"{numbers[name]} {text}", shown)

    def test_krvsim_layout_explains_every_field_that_is_read(self):
        explained = rendered("krvsim-layout.5").partition("\nFIELDS\n")[2].partition("\nWORDS\n")[0]
        fields = set(re.findall(r'\breader[^;"]*"([a-z][a-z_0-9]*)"', LAYOUT_READER.read_text()))
        self.assertGreater(len(fields), 40)
        self.assertIn("next_volume", fields)
        for field in fields:
            with self.subTest(field=field):
                self.assertShows(explained, rf"^       (\w+, )*{field}\b")

    def test_krvsim_explains_every_option_of_every_command(self):
        text = rendered("krvsim.1")
        commands = re.findall(r"(?m)^  ([a-z]+) ", run(KRVSIM, "--help")[0].partition("Subcommands:")[2])
        self.assertGreater(len(commands), 8)
        commands.remove("fault")
        for command in [*commands, "fault add", "fault list", "fault clear"]:
            section = re.search(rf"\n   {command}\n(.*?)\n   ?[A-Za-z]|\n   {command}\n(.*?)\n[A-Z]", text, re.DOTALL)
            self.assertTrue(section, f"{command} is not explained")
            shown = section.group(1) or section.group(2)
            usage = run(KRVSIM, *command.split(), "--help")[0]
            options = set(re.findall(r"--[a-z][-a-z]+", usage))
            for option in options - {"--help", "--server"}:
                with self.subTest(command=command, option=option):
                    self.assertIn(option, shown)
            for option, default in re.findall(r"(--[a-z][-a-z]+) \w+=(\S+)", usage):
                if option == "--server":
                    continue
                with self.subTest(command=command, option=option, default=default):
                    item = re.search(rf"\n       {option}(?![-\w]).*?(?=\n       -|\Z)", shown, re.DOTALL).group()
                    self.assertShowsDefault(item, default)

    def test_krvadm_explains_every_option_of_every_command(self):
        text = rendered("krvadm.1")
        commands = re.findall(r"(?m)^  ([a-z]+) ", run(KRVADM, "--help")[0].partition("Subcommands:")[2])
        self.assertGreater(len(commands), 8)
        # Those of the journal are krvsim's.
        for command in set(commands) - {"journal"}:
            section = re.search(rf"\n   {command}\n(.*?)\n(?:   )?[A-Za-z]", text, re.DOTALL)
            self.assertTrue(section, f"{command} is not explained")
            usage = run(KRVADM, command, "--help")[0]
            for option in set(re.findall(r"--[a-z][-a-z]+", usage)) - {"--help"}:
                with self.subTest(command=command, option=option):
                    self.assertIn(option, section.group(1))
            for default in re.findall(r"--[a-z][-a-z]+ \w+=(\S+)", usage):
                self.assertShowsDefault(section.group(1), default)


if __name__ == "__main__":
    while len(sys.argv) > 1:
        PAGES.append(pathlib.Path(sys.argv.pop()))
    unittest.main()
