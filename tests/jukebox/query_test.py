"""What krvcmd says of a real jukebox is what the changer says at that moment."""
from jukebox_fixture import KRVCMD, KRVSIM, MAIL_SLOT, SLOT, JukeboxTest, main


class Queries(JukeboxTest):
    def test_show_the_slots_of_the_changer(self):
        printed = self.attach()
        self.assertEqual(printed, 'Server "tower" has jukebox "Tower": 1 magazine, 8 slots, 2 mail slots, 2 drives.\n')
        self.assertEqual(self.rows("slots", "J", "Tower", "columns=so"),
                         [["1", "unknown"], ["2", "unknown"], ["3", "unknown"]])
        self.check()

    def test_find_discs_that_were_moved_by_hand(self):
        self.attach()
        self.cmd("scan", "J", "Tower", "S1")
        volume, = self.rows("volumes", "J", "Tower", "columns=IL")
        self.assertEqual(volume[1], r"Tower\1.A")
        self.jukebox.run("remove", SLOT)
        self.jukebox.run("insert", SLOT + 5, "D000001")
        self.assertEqual(self.rows("volumes", "J", "Tower", "columns=IL"), [[volume[0], r"Tower\6.A"]])
        self.check()

    def test_keep_volumes_that_are_taken_out_and_know_them_when_they_come_back(self):
        self.attach()
        self.cmd("scan", "J", "Tower", "S1")
        before = self.rows("volumes", "V", "@1", "columns=Ilo")
        self.jukebox.run("remove", SLOT)
        away, = self.rows("volumes", "V", "@1", "columns=Ilo")
        self.assertEqual(away[2], "offline")
        self.jukebox.run("insert", SLOT + 7, "D000001")
        self.assertEqual(self.rows("volumes", "V", "@1", "columns=Ilo"), before)

    def test_fail_when_the_changer_does_not_answer(self):
        self.attach()
        self.jukebox.run("kill")
        failed = self.run_program(KRVCMD, "quiet", "server=tower", "query", "slots", "J", "Tower")
        self.assertEqual(failed.returncode, 1240 & 0xFF)
        self.assertIn("The changer of jukebox \"Tower\"", failed.stdout + failed.stderr)
        self.jukebox.run("restart")
        self.assertEqual(len(self.rows("slots", "J", "Tower", "columns=s")), 3)

    def test_tell_magazines(self):
        self.attach("--magazines", "2x4")
        self.assertEqual(len(self.rows("magazines", "J", "Tower", "columns=m")), 2)
        self.jukebox.run("insert", SLOT + 4, "blank")
        self.assertEqual(self.rows("slots", "J", "Tower", "M2", "columns=s"), [["1"]])

    def test_are_no_matter_of_the_simulation(self):
        self.attach()
        for words in (["fault", "add", "--function", "any", "--code", "5"], ["load", "-J", "Tower", "--type", "CD-R"],
                      ["unload"], ["init", "--force"], ["generate", "--force"]):
            refused = self.run_program(KRVSIM, *words, "--server", "tower")
            self.assertEqual(refused.returncode, 1, refused.stdout + refused.stderr)
            self.assertIn("attached to real jukeboxes", refused.stderr)
        self.check()

    def test_see_what_was_put_into_the_mail_slot(self):
        self.attach()
        self.jukebox.run("insert", MAIL_SLOT, "blank")
        self.assertIn("mail slot 1: medium D000004", self.adm("status", "--server", "tower"))


main()
