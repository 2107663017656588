"""What completion of krvsim must offer, whatever the shell."""
import os
import pathlib
import subprocess
import tempfile

import terminal

COMMANDS = ["init", "dump", "generate", "clone", "load", "unload", "fault", "journal", "real-time", "check", "servers", "run",
            "diff", "expect", "library", "snapshot", "snapshots", "restore", "remove"]

# The typed line and the candidates. There are two servers, "." and "second", which has the snapshot "kept".
OFFERED = [
    ("krvsim ", COMMANDS),
    ("krvsim re", ["real-time", "restore", "remove"]),
    ("krvsim fault ", ["add", "list", "clear"]),
    ("krvsim fault --server x ", []),
    ("krvsim snapshots --", ["--server", "--help"]),
    ("krvsim run --f", ["--fault", "--from", "--from-library", "--function"]),
    ("krvsim run --real-time --re", ["--report"]),
    # Some options may be repeated.
    ("krvsim run --fault door-open --fa", ["--fault"]),
    ("krvsim run --waiting x --wa", ["--waiting"]),
    ("krvsim run --server . --se", []),
    ("krvsim run --each-fault --", ["--server", "--from-library", "--from", "--verbose", "--partial-ok", "--keep", "--fault",
                                    "--waiting", "--code", "--function", "--real-time", "--profile", "--deadline", "--start",
                                    "--expect", "--report", "--not-isolated", "--help"]),
    # Values.
    ("krvsim dump --format ", ["toml", "json", "html"]),
    ("krvsim run --profile la", ["large"]),
    ("krvsim run --fault d", ["door-open", "drive-dead", "disc-unreadable"]),
    ("krvsim journal --server s", ["second"]),
    ("krvsim diff s", ["second"]),
    ("krvsim restore --server second k", ["kept"]),
    ("krvsim restore k", []),
    ("krvsim run --deadline ", []),
    ("krvsim load -J ", []),
    # Nothing after words that krvsim would refuse.
    ("krvsim rehearse ", []),
    ("krvsim run --bogus --", []),
    # Only beginnings of words, not what their explanations contain.
    ("krvsim farm", []),
    ("krvsim run --ault", []),
]


class KrvsimCases:
    """Mixed into the test of each shell, which gives start() and, where the shell shows them, explanations."""
    explains = True

    @classmethod
    def setUpClass(cls):
        cls.home = tempfile.TemporaryDirectory()
        program_dir = os.environ["KRVCMD_PROGRAM_DIR"]
        environment = terminal.environment(program_dir, os.environ["KRVCMD_FAKE_LIBRARY_DIR"], "/dev/null", cls.home.name)
        environment["KRVSIM_HOME"] = str(pathlib.Path(cls.home.name, "farms"))
        for words in (["init"], ["init", "--server", "second"], ["snapshot", "--server", "second", "kept"]):
            subprocess.run([f"{program_dir}/krvsim", *words], env=environment, check=True, stdout=subprocess.DEVNULL)
        cls.file = pathlib.Path(cls.home.name, "expected-volumes")
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

    def test_completes_to_the_words_that_krvsim_must_get(self):
        for typed, expected in [
                ("krvsim ser", ["krvsim", "servers"]),
                ("krvsim fault cl", ["krvsim", "fault", "clear"]),
                ("krvsim run --rep", ["krvsim", "run", "--report"]),
                ("krvsim journal --server sec", ["krvsim", "journal", "--server", "second"]),
                (f"krvsim run --expect {self.home.name}/exp", ["krvsim", "run", "--expect", str(self.file)]),
                (f"krvsim expect {self.home.name}/exp", ["krvsim", "expect", str(self.file)]),
                (f"krvsim run -- cat {self.home.name}/exp", ["krvsim", "run", "--", "cat", str(self.file)])]:
            with self.subTest(typed=typed):
                self.assertEqual([word.rstrip("/") for word in self.shell.words(typed)], expected)

    def test_explains_commands_and_options(self):
        if not self.explains:
            self.skipTest("this shell shows no explanations")
        self.assertEqual(self.shell.offered("krvsim fault "), {
            "add": "Add a fault.", "list": "List the faults of a server.",
            "clear": "Clear the faults with these numbers; without numbers, all of them."})
        self.assertEqual(self.shell.offered("krvsim run --keep x --e")["--expect"], "file of expectations")
