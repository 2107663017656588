#!/usr/bin/env python3
"""Completion for PowerShell.

Where PowerShell is installed, it completes some words. No Debian package contains it, so the script is also
checked without it: it is taken apart into tokens by PowerShell's rules for quotes, comments and brackets, so that
nothing is left open, and its tables are compared with those of the bash script, which is tested on a
terminal.
"""
import os
import pathlib
import re
import shutil
import subprocess
import unittest

PAIRS = {"(": ")", "{": "}", "[": "]"}


class Unreadable(Exception):
    pass


def strings_of(text):
    """The single-quoted strings of a script; Unreadable when a quote or a bracket is open or out of place."""
    strings, brackets, at = [], [], 0
    while at < len(text):
        char = text[at]
        if char == "#":
            at = text.find("\n", at)
            if at < 0:
                break
        elif char == "`":
            at += 1
        elif char == "'":
            match = re.compile(r"'((?:[^'\n]|'')*)'").match(text, at)
            if not match:
                raise Unreadable(f"open quote at {text[at:at + 40]!r}")
            strings.append(match.group(1).replace("''", "'"))
            at = match.end() - 1
        elif char == '"':
            match = re.compile(r'"(?:[^"`\n]|`.|"")*"').match(text, at)
            if not match:
                raise Unreadable(f"open quote at {text[at:at + 40]!r}")
            at = match.end() - 1
        elif char in PAIRS:
            brackets.append(PAIRS[char])
        elif char in PAIRS.values() and (not brackets or brackets.pop() != char):
            raise Unreadable(f"bracket out of place at {text[at:at + 40]!r}")
        at += 1
    if brackets:
        raise Unreadable("open bracket at the end")
    return strings


def table(text, name):
    """The quoted lines of a table in the bash or the PowerShell script."""
    body = re.search(rf"^ *\$?{name} ?= ?@?\(\n(.*?)^ *\)$", text, re.MULTILINE | re.DOTALL).group(1)
    return [line.strip()[1:-1] for line in body.splitlines()]


class PowerShellCompletion(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = pathlib.Path(os.environ["KRVCMD_COMPLETION_DIR"])
        cls.script = (folder / "krvcmd.ps1").read_text(encoding="ascii")
        cls.bash = (folder / "krvcmd.bash").read_text(encoding="ascii")

    def test_leaves_no_quote_and_no_bracket_open(self):
        self.assertGreater(len(strings_of(self.script)), 100)

    def test_the_reader_of_this_test_notices_what_is_open(self):
        for broken in ("'a", '"a', "f(", "f)", "({)}", "'it's'", "@('a'\n"):
            with self.subTest(broken=broken), self.assertRaises(Unreadable):
                strings_of(broken)
        self.assertEqual(strings_of("'it''s' # isn't\n\"`\" '\" ('b')"), ["it's", "b"])

    def test_has_the_tables_of_the_other_shells(self):
        for name, bash_name in (("grammarLines", "_krvcmd_grammar"), ("columnLines", "_krvcmd_columns"),
                                ("topics", "_krvcmd_topics")):
            with self.subTest(table=name):
                lines = table(self.script, name)
                self.assertGreater(len(lines), 8)
                self.assertEqual(lines, table(self.bash, bash_name))

    def test_reads_names_in_the_character_set_that_krvcmd_writes(self):
        # Without it the console's code page would apply, in which other letters have the bytes of the names.
        set_at = self.script.index("$start.StandardOutputEncoding = ")
        self.assertLess(set_at, self.script.index("[System.Diagnostics.Process]::Start($start)"))

    def test_compares_keywords_and_letters_with_regard_to_case(self):
        # -eq, -contains, -like, -match and hash tables disregard it; they are used where case cannot matter.
        code = re.sub(r"#[^\n]*", "", self.script)
        for operator in re.findall(r"-(?:not)?(?:contains|like|in)\b", code):
            self.fail(f"{operator} disregards case")
        self.assertIn("-ccontains", code)
        self.assertEqual(re.findall(r"(\$row\.Level|\$row\.Keyword|\$letters) -(?:eq|ne) (?!'')", code), [])


class PowerShellCompletionOfTheTools(unittest.TestCase):
    def test_leaves_no_quote_and_no_bracket_open_and_has_the_table_of_the_other_shells(self):
        folder = pathlib.Path(os.environ["KRVCMD_COMPLETION_DIR"])
        for tool in ("krvsim", "krvadm"):
            with self.subTest(tool=tool):
                script = (folder / f"{tool}.ps1").read_text(encoding="ascii")
                bash = (folder / f"{tool}.bash").read_text(encoding="ascii")
                self.assertGreater(len(strings_of(script)), 60)
                lines = [line.replace("''", "'") for line in table(script, "rowLines")]
                self.assertGreater(len(lines), 30)
                self.assertEqual(lines, [line.replace("'\\''", "'") for line in table(bash, f"_{tool}_rows")])


@unittest.skipUnless(shutil.which("pwsh"), "PowerShell (pwsh) is not installed on this machine")
class InPowerShell(unittest.TestCase):
    """Completions of a line whose end is the cursor, by PowerShell itself."""

    def complete(self, line):
        folder = pathlib.Path(os.environ["KRVCMD_COMPLETION_DIR"])
        quoted = line.replace("'", "''")
        command = (f". '{folder / 'krvcmd.ps1'}'; "
                   f"(TabExpansion2 -inputScript '{quoted}' -cursorColumn {len(line)})"
                   ".CompletionMatches | ForEach-Object { $_.CompletionText }")
        shell = subprocess.run(["pwsh", "-NoProfile", "-NonInteractive", "-Command", command],
                               capture_output=True, text=True, check=True)
        return shell.stdout.split()

    def test_completes_a_keyword(self):
        self.assertEqual(self.complete("krvcmd exp"), ["export"])

    def test_completes_parameters_and_topics(self):
        self.assertEqual(self.complete("krvcmd query volumes sep"), ["separator="])
        self.assertEqual(self.complete("krvcmd help s"), ["service", "scan"])


if __name__ == "__main__":
    unittest.main()
