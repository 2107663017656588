#!/usr/bin/env python3
"""Completion in zsh, on a terminal."""
import os
import re
import shlex
import unittest

import completion_cases
import krvadm_cases
import krvsim_cases
import terminal


class Zsh(terminal.Shell):
    def __init__(self, environment):
        super().__init__(["zsh", "-f"], environment, [
            f"PS1='{terminal.PROMPT}'; unset zle_bracketed_paste; bindkey -e",
            f"fpath=({os.environ['KRVCMD_COMPLETION_DIR']} $fpath)",
            "autoload -Uz compinit && compinit -u -D",
            # All candidates at once, each on a line of its own.
            "setopt nolistambiguous noautomenu; LISTMAX=0",
        ])

    def offered(self, typed):
        lines, at = self.type_and_complete(typed)
        listed = [line.rstrip() for line in lines[at + 1:] if line.strip()]
        if listed:
            return {terminal.whole_word(typed, word): text for line in listed for word, text in self._candidates(line)}
        line = lines[at].rstrip().removeprefix(terminal.PROMPT).removesuffix(terminal.SENTINEL).rstrip()
        return {} if line == typed.rstrip() else {shlex.split(line)[-1]: None}

    @staticmethod
    def _candidates(line):
        """`word  -- explanation`; words with the same explanation share a line.
        Some have none."""
        if " -- " not in line:
            return [(word, None) for word in re.split("  +", line.strip())]
        words, explanation = re.fullmatch(r"(.*?) +-- (.*)", line).groups()
        return [(word, explanation) for word in re.split("  +", words)]


class ZshCompletion(completion_cases.CompletionCases, unittest.TestCase):
    start = Zsh


class ZshCompletionOfKrvsim(krvsim_cases.KrvsimCases, unittest.TestCase):
    start = Zsh


class ZshCompletionOfKrvadm(krvadm_cases.KrvadmCases, unittest.TestCase):
    start = Zsh


if __name__ == "__main__":
    unittest.main()
