"""What completion of krvadm must offer, whatever the shell."""
import os
import pathlib
import subprocess
import tempfile
import time

import terminal

COMMANDS = ["discover", "attach", "detach", "status", "limits", "inventory", "check", "journal", "library", "serve", "servers"]

# The typed line and the candidates. There are two servers here, "." and "second", and "away" on another machine.
OFFERED = [
    ("krvadm ", COMMANDS),
    ("krvadm st", ["status"]),
    ("krvadm servers ", ["add", "remove"]),
    ("krvadm servers --", ["--offline", "--help"]),
    ("krvadm attach --", ["--server", "--changer", "--drive", "--load", "--magazines", "--name", "--limit", "--credentials",
                          "--help"]),
    ("krvadm attach --changer x --c", ["--credentials"]),
    ("krvadm attach --drive x --d", ["--drive"]),
    ("krvadm attach --l", ["--load", "--limit"]),
    # Values.
    ("krvadm status --server s", ["second"]),
    ("krvadm check --server a", ["away"]),
    ("krvadm serve --only se", ["second"]),
    ("krvadm servers remove a", ["away"]),
    ("krvadm journal --profile la", ["large"]),
    ("krvadm attach --name ", []),
    # Nothing after words that krvadm would refuse.
    ("krvadm stats ", []),
    ("krvadm attach --bogus --", []),
    # Only beginnings of words, not what their explanations contain.
    ("krvadm changer", []),
]


class KrvadmCases:
    """Mixed into the test of each shell, which gives start() and, where the shell shows them, explanations."""
    explains = True

    @classmethod
    def setUpClass(cls):
        cls.home = tempfile.TemporaryDirectory()
        home = pathlib.Path(cls.home.name)
        program_dir = os.environ["KRVCMD_PROGRAM_DIR"]
        environment = terminal.environment(program_dir, os.environ["KRVCMD_FAKE_LIBRARY_DIR"], "/dev/null", home)
        environment["KRVSIM_HOME"] = str(home / "farms")
        # Whoever asked the other machine would wait for this ssh.
        (home / "bin").mkdir()
        (home / "bin" / "ssh").write_text(f"#!/bin/sh\necho asked >>'{home}/asked'\nexec sleep 30\n")
        (home / "bin" / "ssh").chmod(0o755)
        environment["PATH"] = f"{home}/bin:{environment['PATH']}"
        for words in (["krvsim", "init"], ["krvsim", "init", "--server", "second"],
                      ["krvadm", "servers", "add", "away", "ssh://nowhere.example"]):
            subprocess.run([f"{program_dir}/{words[0]}", *words[1:]], env=environment, check=True, stdout=subprocess.DEVNULL)
        cls.file = home / "key-of-the-target"
        cls.file.touch()
        cls.shell = cls.start(environment)

    @classmethod
    def tearDownClass(cls):
        cls.shell.close()
        cls.home.cleanup()

    def test_offers_what_can_follow(self):
        for typed, expected in OFFERED:
            with self.subTest(typed=typed):
                self.assertEqual(sorted(self.shell.offered(typed)), sorted(expected))

    def test_asks_no_other_machine(self):
        begin = time.monotonic()
        self.assertIn("away", self.shell.offered("krvadm check --server "))
        self.assertLess(time.monotonic() - begin, 6)
        self.assertFalse(pathlib.Path(self.home.name, "asked").exists())

    def test_completes_to_the_words_that_krvadm_must_get(self):
        for typed, expected in [
                ("krvadm disc", ["krvadm", "discover"]),
                ("krvadm servers rem", ["krvadm", "servers", "remove"]),
                ("krvadm detach --ser", ["krvadm", "detach", "--server"]),
                (f"krvadm attach --credentials {self.home.name}/key", ["krvadm", "attach", "--credentials", str(self.file)])]:
            with self.subTest(typed=typed):
                self.assertEqual(self.shell.words(typed), expected)

    def test_explains_commands_and_options(self):
        if not self.explains:
            self.skipTest("this shell shows no explanations")
        self.assertEqual(self.shell.offered("krvadm servers "), {
            "add": "Make a server on another machine known.", "remove": "Forget a server."})
        self.assertEqual(self.shell.offered("krvadm detach --")["--jukebox"], "only this jukebox, by name or as @ID")
