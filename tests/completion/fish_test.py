#!/usr/bin/env python3
"""Completion in fish, on a terminal."""
import functools
import os
import subprocess
import unittest

import completion_cases
import krvadm_cases
import krvsim_cases
import terminal


class Fish(terminal.Shell):
    def __init__(self, environment):
        scripts = os.environ["KRVCMD_COMPLETION_DIR"]
        super().__init__(["fish", "--no-config"], environment, [
            f"function fish_prompt; echo -n '{terminal.PROMPT}'; end; function fish_title; end; set -g fish_greeting; set -g fish_autosuggestion_enabled 0",
            f"source {scripts}/krvcmd.fish; source {scripts}/krvsim.fish; source {scripts}/krvadm.fish",
        ])

    def offered(self, typed):
        """fish lists its candidates for a line on request."""
        self.clear()
        quoted = typed.replace("\\", "\\\\").replace("'", "\\'")
        self.terminal.type(f"complete -C '{quoted}' | string replace \\t ' -- '; echo end of list")
        self.terminal.press("Enter")
        lines, _ = self.terminal.wait_for(lambda lines, at: "end of list" in lines and
                                          lines[at].rstrip() == terminal.PROMPT.rstrip(), f"completion of '{typed}'")
        listed = (line.partition(" -- ") for line in lines[1:lines.index("end of list")])
        return {word: text for word, _, text in listed}


class FishCompletion(completion_cases.CompletionCases, unittest.TestCase):
    start = Fish

    @staticmethod
    @functools.cache
    def hides_dots():
        """Whether this fish hides candidates that begin with a dot until a dot is typed; since version 4 it does not."""
        done = subprocess.run(["fish", "--no-config", "-c", "complete -c probe -f -a '.a b'; complete -C 'probe '"],
                              stdout=subprocess.PIPE, text=True, check=True)
        if done.stdout.split() not in (["b"], [".a", "b"]):
            raise AssertionError(f"fish offers {done.stdout.split()}")
        return ".a" not in done.stdout

    @classmethod
    def can_offer(cls, typed, word):
        return not word.startswith(".") or typed.split(" ")[-1].startswith(".") or not cls.hides_dots()


class FishCompletionOfKrvsim(krvsim_cases.KrvsimCases, unittest.TestCase):
    start = Fish


class FishCompletionOfKrvadm(krvadm_cases.KrvadmCases, unittest.TestCase):
    start = Fish


if __name__ == "__main__":
    unittest.main()
