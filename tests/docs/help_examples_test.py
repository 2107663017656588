#!/usr/bin/env python3
"""Whoever types an example of the help texts gets what it promises: help_examples_test.py KRVCMD

The lines are read from what help prints. Each one runs on a demonstration farm of its own.
"""
import re
import shlex
import sys
import unittest

from new_farm import BANNER, INVALID, SUCCESS, NewFarm

PROGRAM = sys.argv.pop()


def help_text(*topic):
    with NewFarm(PROGRAM) as farm:
        return farm.run("help", *topic).output


def commands():
    """The commands that the general help lists, which stand four blanks from the edge."""
    return re.findall(r"(?m)^ {4}([a-z?]+): ", help_text().partition("\ncommands:\n")[2])


def examples(command):
    """The lines below "example:", which are the last of a help text."""
    lines = help_text(command).partition("\nexample:\n")[2].splitlines()
    return [line.strip() for line in lines if line.strip()]


class HelpExamples(unittest.TestCase):
    def test_every_command_but_help_has_examples(self):
        self.assertEqual(commands(), ["help", "?", "service", "import", "export", "scan", "format", "enable", "disable",
                                      "name", "query"])
        counts = {command: len(examples(command)) for command in commands()}
        # "help help" explains everything, and that has addresses for examples, not command lines.
        self.assertEqual(counts, {"help": 0, "?": 0, "service": 3, "import": 3, "export": 4, "scan": 4, "format": 1,
                                  "enable": 1, "disable": 1, "name": 2, "query": 5})

    def test_every_example_succeeds(self):
        incomplete = []
        for command in commands():
            for line in examples(command):
                program, *words = shlex.split(line)
                self.assertEqual(program, "krvcmd")
                with self.subTest(example=line), NewFarm(PROGRAM) as farm:
                    outcome = farm.run(*words)
                    if command not in words:
                        incomplete.append(line)
                        self.assertEqual((outcome.status, outcome.output, outcome.error), (22, BANNER, INVALID))
                        continue
                    silent = "quiet" in words
                    self.assertEqual((outcome.status, outcome.error), (0, "" if silent else SUCCESS))
                    self.assertEqual(outcome.output.startswith(BANNER), not silent)
                    # Rows, but for the commands that have none to show.
                    self.assertEqual(outcome.output.count("\n") > 4, command == "query")
        # Two examples of "service" lack the word service, and have always done so.
        self.assertEqual(incomplete, ['krvcmd quiet server=my_server restart',
                                      'krvcmd quiet server="sales server" stop'])

    def test_every_address_of_the_general_help_names_something(self):
        lines = help_text().partition("\nExamples:\n")[2].partition("\n\n")[0].splitlines()
        self.assertEqual(len(lines), 4)
        for line in lines:
            with self.subTest(address=line), NewFarm(PROGRAM) as farm:
                outcome = farm.run("query", "volumes", *shlex.split(line))
                self.assertEqual((outcome.status, outcome.error), (0, SUCCESS))
                self.assertRegex(outcome.output, r"\n +\d+ \| ")


if __name__ == "__main__":
    unittest.main()
