"""What completion must offer, whatever the shell."""
import os
import pathlib
import tempfile
import time

import terminal

HERE = pathlib.Path(__file__).resolve().parent

COMMANDS = ["help", "?", "service", "import", "export", "scan", "format", "enable", "disable", "name", "query"]
OBJECTS = ["jukeboxes", "magazines", "drives", "slots", "volumes"]
# The calls that change nothing.
LOOKS = {"KrvSessionCreate", "KrvSessionClose", "KrvGetNextJukebox", "KrvGetJukebox", "KrvGetMagazine", "KrvGetNextVolume",
         "KrvVolumeDetail", "KrvVolumeAspects", "KrvVolumeLocations", "KrvGetSide"}
QUERY = ["J", "M", "S", ".A", ".B", "D", "V", "columns=", "sort=", "width=", "notable", "separator=", *OBJECTS]
IDS_AND_NAMES = ["@8", "@11", "@12", "@13", "@14", "@15", "Tower", "My Box", "My Big Box", "it's $5", "100%s", "a|b"]


def without(words, *left_out):
    return [word for word in words if word not in left_out]


# The typed line and the candidates.
OFFERED = [
    # Options and commands come first; an option is offered once.
    ("krvcmd ", ["quiet", "server=", *COMMANDS]),
    ("krvcmd quiet ", ["server=", *COMMANDS]),
    ("krvcmd qui ", ["server=", *COMMANDS]),
    ("krvcmd -quiet /server x ", COMMANDS),
    ("krvcmd server=x quiet ", COMMANDS),
    ("krvcmd q", ["quiet", "query"]),
    ("krvcmd se", ["server=", "service"]),
    # Each command has its own parameters, and no option.
    ("krvcmd service ", ["start", "stop", "restart"]),
    ("krvcmd import ", ["J", "M", "S", "repeat="]),
    ("krvcmd export ", ["J", "M", "S", "V", "repeat="]),
    ("krvcmd scan ", ["J", "M", "S", "V"]),
    ("krvcmd format ", ["J", "M", "S", ".A", ".B", "V", "label=", "erase", "certify", "sequential", "finalize"]),
    ("krvcmd enable ", ["J", "M", "D", "S", "V"]),
    ("krvcmd disable ", ["J", "M", "D", "S", "V"]),
    ("krvcmd name ", ["J", "V"]),
    ("krvcmd query ", QUERY),
    ("krvcmd help ", without(COMMANDS, "help", "?")),
    ("krvcmd help s", ["service", "scan"]),
    # Abbreviations and attached values count as their keywords.
    ("krvcmd imp J@8 ", ["M", "S", "repeat="]),
    ("krvcmd imp J @8 re=3 ", ["M", "S"]),
    ("krvcmd que vol col=ILl ", without(QUERY, "columns=", *OBJECTS)),
    # Only what can still follow.
    ("krvcmd query J @8 ", without(QUERY, "J", "V")),
    ("krvcmd query J=My ", without(QUERY, "J", "V")),
    ("krvcmd query 'J=My Box' ", without(QUERY, "J", "V")),
    ("krvcmd query J @8 M 1 ", without(QUERY, "J", "V", "M", "D")),
    ("krvcmd query J @8 M1 S2 ", without(QUERY, "J", "V", "M", "S", "D")),
    ("krvcmd query S2 .A ", without(QUERY, "V", "S", "D", ".A", ".B")),
    ("krvcmd query J @8 D1 ", without(QUERY, "J", "V", "M", "S", "D", ".A", ".B")),
    ("krvcmd query V @33 ", without(QUERY, "J", "V", "M", "S", "D", ".A", ".B")),
    ("krvcmd query notable ", without(QUERY, "notable", "width=")),
    ("krvcmd query slots ", without(QUERY, *OBJECTS)),
    ("krvcmd export V @33 ", []),
    ("krvcmd export J @8 repeat=2 ", ["M", "S"]),
    ("krvcmd format J @8 erase ", ["M", "S", ".A", ".B"]),
    ("krvcmd format J @8 label=x ", ["M", "S", ".A", ".B", "certify", "sequential"]),
    ("krvcmd format J @8 certify ", ["M", "S", ".A", ".B", "label=", "sequential"]),
    ("krvcmd service start ", []),
    ("krvcmd name J @8 ", []),
    ("krvcmd name new-name ", ["J", "V"]),
    ("krvcmd help query ", []),
    # A list or a range leaves no room for a narrower part of the address.
    ("krvcmd query J @8 S 1,2 ", without(QUERY, "J", "V", "S", "D", ".A", ".B")),
    ("krvcmd query J @8 S1-3 ", without(QUERY, "J", "V", "S", "D", ".A", ".B")),
    ("krvcmd query J @8 M1/3 ", without(QUERY, "J", "V", "M", "S", "D", ".A", ".B")),
    ("krvcmd scan J @8,11 ", []),
    ("krvcmd scan J 8,11 ", ["M", "S"]),
    # Nothing after words that the program would refuse.
    ("krvcmd q ", []),
    ("krvcmd delete ", []),
    ("krvcmd Query ", []),
    ("krvcmd query s ", []),
    ("krvcmd quiet=1 ", []),
    ("krvcmd query slots5 ", []),
    ("krvcmd query -sep=, ", []),
    # Only beginnings of words, not what their explanations contain.
    ("krvcmd media", []),
    ("krvcmd query information", []),
    ("krvcmd query J Box", []),
    ("krvcmd query V Sales", []),
    # The dash forms of keywords that have one.
    ("krvcmd -", ["-quiet", "-server", "-?"]),
    ("krvcmd query /", ["/notable", "/separator", *("/" + word for word in OBJECTS)]),
    ("krvcmd query J @8 S1 .", [".A", ".B"]),
    # Values.
    ("krvcmd query J ", IDS_AND_NAMES),
    ("krvcmd query J @1", ["@11", "@12", "@13", "@14", "@15"]),
    ("krvcmd query J My", ["My Box", "My Big Box"]),
    ("krvcmd query J@1", ["J@11", "J@12", "J@13", "J@14", "J@15"]),
    ("krvcmd query J=My", ["J=My Box", "J=My Big Box"]),
    ("krvcmd query volumes V ", ["@33", "@34", "@273"]),
    ("krvcmd export V@3", ["V@33", "V@34"]),
    ("krvcmd scan J Tower M ", ["1", "2"]),
    ("krvcmd scan J=Tower S ", [str(number) for number in range(1, 16)]),
    ("krvcmd scan J @8 M1 S ", ["1", "2", "3"]),
    ("krvcmd scan J@8 M 2 S1", ["S1", "S10", "S11", "S12"]),
    ("krvcmd disable J@8 D ", ["1", "2"]),
    ("krvcmd disable J 'My Box' D ", []),
    ("krvcmd disable J Nowhere D ", []),
    ("krvcmd scan J Tower M 3 S ", []),
    ("krvcmd scan M ", []),
    ("krvcmd query label ", []),
    ("krvcmd format label ", []),
    ("krvcmd import repeat ", []),
    ("krvcmd server ", []),
]

LETTERS = "SDMIJNLmdsaCRPFnlvftxXzyYo"

# The typed line and the words of the program after completion.
COMPLETED = [
    ("krvcmd que", ["krvcmd", "query"]),
    ("krvcmd query vo", ["krvcmd", "query", "volumes"]),
    ("krvcmd query col", ["krvcmd", "query", "columns="]),
    ("krvcmd -qu", ["krvcmd", "-quiet"]),
    ("krvcmd query /sl", ["krvcmd", "query", "/slots"]),
    ("krvcmd query J Tow", ["krvcmd", "query", "J", "Tower"]),
    ("krvcmd query J=Tow", ["krvcmd", "query", "J=Tower"]),
    ("krvcmd query J@8", ["krvcmd", "query", "J@8"]),
    ("krvcmd query J @12", ["krvcmd", "query", "J", "@12"]),
    ("krvcmd query V", ["krvcmd", "query", "V"]),
    ("krvcmd query V @2", ["krvcmd", "query", "V", "@273"]),
    ("krvcmd disable J@8 D2", ["krvcmd", "disable", "J@8", "D2"]),
    # Names are quoted for the shell.
    ("krvcmd query J My\\ Bo", ["krvcmd", "query", "J", "My Box"]),
    ("krvcmd query J 'My Bo", ["krvcmd", "query", "J", "My Box"]),
    ('krvcmd query J "My Bo', ["krvcmd", "query", "J", "My Box"]),
    ("krvcmd query J=My\\ Bo", ["krvcmd", "query", "J=My Box"]),
    ('krvcmd query "J=My Bo', ["krvcmd", "query", "J=My Box"]),
    ("krvcmd query J it", ["krvcmd", "query", "J", "it's $5"]),
    ('krvcmd query J "it', ["krvcmd", "query", "J", "it's $5"]),
    ("krvcmd query J 10", ["krvcmd", "query", "J", "100%s"]),
    ("krvcmd query J a", ["krvcmd", "query", "J", "a|b"]),
]


class CompletionCases:
    """Mixed into the test of each shell, which gives start() and offered()."""

    @classmethod
    def setUpClass(cls):
        cls.program_dir, cls.library_dir, cls.scripts = (os.environ[name] for name in (
            "KRVCMD_PROGRAM_DIR", "KRVCMD_FAKE_LIBRARY_DIR", "KRVCMD_COMPLETION_DIR"))
        cls.home = tempfile.TemporaryDirectory()
        cls.shell = cls.start_on(HERE / "farm.script")

    @classmethod
    def tearDownClass(cls):
        cls.shell.close()
        cls.home.cleanup()

    @classmethod
    def start_on(cls, script):
        return cls.start(terminal.environment(cls.program_dir, cls.library_dir, script, cls.home.name))

    @classmethod
    def can_offer(cls, typed, word):
        """False for a word that this shell never shows in such a place."""
        return True

    def test_offers_what_can_follow(self):
        for typed, expected in OFFERED:
            with self.subTest(typed=typed):
                expected = [word for word in expected if self.can_offer(typed, word)]
                self.assertEqual(sorted(self.shell.offered(typed)), sorted(expected))

    def test_completes_to_the_words_that_the_program_must_get(self):
        for typed, expected in COMPLETED:
            with self.subTest(typed=typed):
                self.assertEqual(self.shell.words(typed), expected)

    def test_explains_keywords_and_jukeboxes(self):
        self.assertEqual(self.shell.offered("krvcmd service "),
                         {"start": "start service", "stop": "stop service", "restart": "restart service"})
        self.assertEqual(self.shell.offered("krvcmd query J My"), {"My Box": "jukebox @11", "My Big Box": "jukebox @12"})
        self.assertEqual(self.shell.offered("krvcmd query J @11 @1"), {})
        self.assertEqual(self.shell.offered("krvcmd query J @1")["@11"], "My Box")
        self.assertEqual(self.shell.offered("krvcmd export V "), {"@33": "Sales 2004", "@34": "it's $5", "@273": "a|b"})
        self.assertEqual(self.shell.offered("krvcmd scan J@8 M "), {"1": "magazine 1", "2": "magazine 2"})

    def test_offers_the_objects_of_a_query_first(self):
        self.assertEqual(list(self.shell.offered("krvcmd query "))[:5], OBJECTS)

    def test_only_looks_at_the_service(self):
        calls = pathlib.Path(self.home.name, "calls")
        calls.unlink(missing_ok=True)
        for typed in ("J ", "V ", "J @8 M ", "J @8 S ", "J @8 M1 S ", "J @8 D "):
            self.assertTrue(self.shell.offered(f"krvcmd query {typed}"), typed)
        made = {line.split()[0] for line in calls.read_text().splitlines()}
        self.assertIn("KrvSessionCreate", made)
        self.assertEqual(made - LOOKS, set())

    def test_offers_every_column_letter_with_its_description(self):
        for start in ("columns=", "col=", "sort=", "columns ", "-sep , columns="):
            with self.subTest(start=start):
                offered = self.letters(f"krvcmd query {start}")
                self.assertEqual(set(offered) - {"-", "+"}, set(LETTERS))
                self.assertEqual("-" in offered, "sort" in start)
                self.assertEqual(offered["I"], "Unique identifier of the volume.")
                self.assertEqual(offered["X"], "Used capacity in bytes without dimension.")

    def test_offers_the_letters_that_the_object_of_the_query_has(self):
        for words, expected in (("jukeboxes", "JNoFDMSPRC"), ("magazines", "JNmSo"), ("drives", "JNdoPRC"),
                                ("slots", "JNmsoatLIyYxXzlfvn"), ("J@8 vol", "LIyYxXzlfovnmsat")):
            with self.subTest(words=words):
                self.assertEqual(set(self.letters(f"krvcmd query {words} columns=")), set(expected))
        self.assertEqual(set(self.letters("krvcmd query magazines sort=N")), set("JmSo+-"))

    def test_offers_the_letters_that_are_not_chosen_yet(self):
        self.assertEqual(set(self.letters("krvcmd query columns=ILl")), set(LETTERS) - set("ILl"))
        self.assertEqual(set(self.letters("krvcmd query sort=-l")), set(LETTERS) - set("l") | set("+-"))
        self.assertEqual(set(self.letters("krvcmd query sort=l-")), set(LETTERS) - set("l"))

    def letters(self, typed):
        """The letters offered after the typed line, with their explanations."""
        return {word[-1]: text for word, text in self.shell.offered(typed).items()}

    def test_asks_the_server_that_the_line_names(self):
        calls = pathlib.Path(self.home.name, "calls")
        for option in ("server='sales server'", 'server "sales server"', "-ser sales\\ server"):
            with self.subTest(option=option):
                calls.unlink(missing_ok=True)
                self.assertEqual(set(self.shell.offered(f"krvcmd {option} query J My")), {"My Box", "My Big Box"})
                self.assertIn('KrvSessionCreate server="sales server"\n', calls.read_text())
        calls.unlink(missing_ok=True)
        self.shell.offered("krvcmd query J My")
        self.assertIn('KrvSessionCreate server="."\n', calls.read_text())
        self.assertNotIn("ERROR", calls.read_text())

    def test_gives_up_on_a_service_that_does_not_answer(self):
        shell = self.start_on(HERE / "silent.script")
        try:
            for typed in ("J ", "V ", "J @8 S "):
                with self.subTest(typed=typed):
                    begin = time.monotonic()
                    self.assertEqual(shell.offered(f"krvcmd query {typed}"), {})
                    taken = time.monotonic() - begin
                    # One second for the service; the rest is for the terminal on a busy machine. The service
                    # itself would answer after 20 seconds.
                    self.assertGreater(taken, 0.9)
                    self.assertLess(taken, 6)
        finally:
            shell.close()
