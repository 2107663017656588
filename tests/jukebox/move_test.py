"""Import, export and scan in a real jukebox; what they say is compared with the elements and with the discs' files."""
from jukebox_fixture import KRVCMD, MAIL_SLOT, SLOT, JukeboxTest, main


class Moves(JukeboxTest):
    def test_import_takes_from_the_mail_slots(self):
        self.attach()
        disc = self.jukebox.run("insert", MAIL_SLOT + 1, "blank")
        self.cmd("import", "J", "Tower")
        held = self.jukebox.elements()
        self.assertEqual(held[SLOT + 3], disc)
        self.assertNotIn(MAIL_SLOT + 1, held)
        self.check()

    def test_import_goes_to_the_slot_that_is_named(self):
        self.attach()
        disc = self.jukebox.run("insert", MAIL_SLOT, "blank")
        self.cmd("import", "J", "Tower", "S7")
        self.assertEqual(self.jukebox.elements()[SLOT + 6], disc)

    def test_import_refuses_a_full_slot_and_moves_nothing(self):
        self.attach()
        self.jukebox.run("insert", MAIL_SLOT, "blank")
        before = self.jukebox.elements()
        self.cmd("import", "J", "Tower", "S1", status=502 & 0xFF)
        self.assertEqual(self.jukebox.elements(), before)

    def test_import_without_a_disc_is_code_501(self):
        self.attach()
        failed = self.run_program(KRVCMD, "quiet", "server=tower", "import", "J", "Tower", "S8")
        self.assertIn("501", failed.stdout + failed.stderr)

    def test_export_puts_into_the_mail_slots_until_they_are_full(self):
        self.attach()
        self.cmd("export", "J", "Tower", "S2")
        self.cmd("export", "J", "Tower", "S1")
        held = self.jukebox.elements()
        self.assertEqual((held[MAIL_SLOT], held[MAIL_SLOT + 1]), ("D000002", "D000001"))
        full = self.run_program(KRVCMD, "quiet", "server=tower", "export", "J", "Tower", "S3")
        self.assertEqual(full.returncode, 1208 & 0xFF)
        self.assertIn('Every mail slot of jukebox "Tower" is full', full.stdout + full.stderr)
        self.assertEqual(self.jukebox.elements(), held)
        self.jukebox.run("remove", MAIL_SLOT)
        self.cmd("export", "J", "Tower", "S3")
        self.assertEqual(self.jukebox.elements()[MAIL_SLOT], "D000003")
        self.check()

    def test_an_exported_disc_can_be_imported_again(self):
        self.attach()
        self.cmd("export", "J", "Tower", "S2")
        self.cmd("import", "J", "Tower", "S5")
        self.assertEqual(self.jukebox.elements()[SLOT + 4], "D000002")
        self.check()

    def test_scan_reads_the_disc_and_brings_it_home(self):
        self.attach()
        before = self.jukebox.elements()
        self.cmd("scan", "J", "Tower", "S1-3")
        self.assertEqual(self.jukebox.elements(), before)
        labels = [row[0] for row in self.rows("volumes", "J", "Tower", "columns=l", "sort=I")]
        self.assertEqual(labels, [self.blkid(f"D00000{number}")["LABEL"] for number in (1, 2, 3)])
        self.assertEqual([row[0] for row in self.rows("slots", "J", "Tower", "columns=o")][:3], ["active"] * 3)
        self.check()

    def test_scan_keeps_the_volume_that_it_knows(self):
        self.attach()
        self.cmd("scan", "J", "Tower", "S1")
        before = self.rows("volumes", "J", "Tower", "columns=Il")
        self.cmd("scan", "J", "Tower", "S1")
        self.assertEqual(self.rows("volumes", "J", "Tower", "columns=Il"), before)

    def test_scan_of_an_empty_slot_is_code_501(self):
        self.attach()
        self.cmd("scan", "J", "Tower", "S8", status=501 & 0xFF)

    def test_a_disabled_jukebox_moves_nothing(self):
        self.attach()
        self.cmd("disable", "J", "Tower")
        before = self.jukebox.elements()
        self.cmd("export", "J", "Tower", "S1", status=1200 & 0xFF)
        self.assertEqual(self.jukebox.elements(), before)


class WithoutMailSlots(JukeboxTest):
    OPTIONS = "--slots 4 --drives 1 --discs 1"

    def test_says_so(self):
        self.attach()
        for command in ("import", "export"):
            refused = self.run_program(KRVCMD, "quiet", "server=tower", command, "J", "Tower", "S1")
            self.assertEqual(refused.returncode, 1209 & 0xFF, command)
            self.assertIn('Jukebox "Tower" has no mail slots', refused.stdout + refused.stderr)
        self.assertEqual(self.jukebox.elements(), {SLOT: "D000001"})


class Writing(JukeboxTest):
    OPTIONS = "--slots 4 --drives 1 --mailslots 1 --discs 1 --blank 1"

    def test_format_writes_a_file_system(self):
        self.attach()
        self.cmd("format", "J", "Tower", "S2", ".A", "label=Sales 2026")
        found = self.blkid("D000002")
        self.assertEqual((found["TYPE"], found["LABEL"]), ("udf", "Sales 2026"))
        self.assertEqual(self.rows("volumes", "J", "Tower", "columns=l"), [["Sales 2026"]])
        self.assertEqual(self.jukebox.elements(), {SLOT: "D000001", SLOT + 1: "D000002"})
        self.check()

    def test_finalize_closes_a_disc(self):
        self.attach()
        self.cmd("format", "J", "Tower", "S2", ".A", "label=Sales", "sequential")
        self.cmd("format", "J", "Tower", "S2", "finalize")
        self.assertEqual(self.blkid("D000002")["LABEL"], "Sales")
        again = self.run_program(KRVCMD, "quiet", "server=tower", "format", "J", "Tower", "S2", ".A", "label=x")
        self.assertIn("closed", again.stdout + again.stderr)
        self.assertEqual(self.blkid("D000002")["LABEL"], "Sales")
        self.check()

    def test_format_refuses_a_disc_that_is_written_already(self):
        self.attach()
        with open(self.jukebox.disc("D000001"), "rb") as file:
            before = file.read()
        failed = self.run_program(KRVCMD, "quiet", "server=tower", "format", "J", "Tower", "S1", ".A", "label=x")
        self.assertNotEqual(failed.returncode, 0)
        with open(self.jukebox.disc("D000001"), "rb") as file:
            self.assertEqual(file.read(), before)


class Rewritable(JukeboxTest):
    OPTIONS = "--slots 4 --drives 1 --mailslots 1 --blank 2 --disk-drives"

    def test_erase_leaves_no_file_system(self):
        self.attach()
        self.cmd("format", "J", "Tower", "S1", ".A", "label=Sales")
        self.assertEqual(self.blkid("D000001")["LABEL"], "Sales")
        self.cmd("format", "J", "Tower", "S1", "erase")
        self.assertEqual(self.blkid("D000001"), {})
        self.assertEqual(self.rows("volumes", "J", "Tower", "columns=I"), [])
        self.check()

    def test_format_replaces_a_file_system(self):
        self.attach()
        self.cmd("format", "J", "Tower", "S1", ".A", "label=Sales")
        self.cmd("format", "J", "Tower", "S1", ".A", "label=Again")
        self.assertEqual(self.blkid("D000001")["LABEL"], "Again")
        self.assertEqual(len(self.rows("volumes", "J", "Tower", "columns=I")), 1)
        self.check()


main()
