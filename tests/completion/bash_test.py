#!/usr/bin/env python3
"""Completion in bash, on a terminal."""
import os
import re
import shlex
import unittest

import completion_cases
import krvadm_cases
import krvsim_cases
import terminal


class Bash(terminal.Shell):
    def __init__(self, environment):
        scripts = os.environ["KRVCMD_COMPLETION_DIR"]
        super().__init__(["bash", "--norc", "--noprofile"], environment, [
            f"PS1='{terminal.PROMPT}' HISTFILE=",
            # Every candidate on a line of its own, all of them at once.
            "bind 'set show-all-if-ambiguous on'; bind 'set completion-display-width 1'",
            "bind 'set completion-query-items -1'; bind 'set page-completions off'",
            "bind 'set enable-bracketed-paste off'",
            f". {scripts}/krvcmd.bash; . {scripts}/krvsim.bash; . {scripts}/krvadm.bash",
        ])

    def offered(self, typed):
        lines, at = self.type_and_complete(typed)
        if at > 0:
            return dict(self._candidate(line, typed) for line in lines[1:at])
        line = lines[0].rstrip().removeprefix(terminal.PROMPT).removesuffix(terminal.SENTINEL).rstrip()
        return {} if line == typed.rstrip() else {shlex.split(line)[-1]: None}

    @staticmethod
    def _candidate(line, typed):
        """`word  (explanation)`, the word quoted."""
        text, explanation = re.fullmatch(r"(.*?)(?:  +\((.*)\))?", line.rstrip()).groups()
        return terminal.whole_word(typed, re.sub(r"\\(.)", r"\1", text)), explanation


class BashCompletion(completion_cases.CompletionCases, unittest.TestCase):
    start = Bash


class BashCompletionOfKrvsim(krvsim_cases.KrvsimCases, unittest.TestCase):
    start = Bash
    explains = False


class BashCompletionOfKrvadm(krvadm_cases.KrvadmCases, unittest.TestCase):
    start = Bash
    explains = False


if __name__ == "__main__":
    unittest.main()
