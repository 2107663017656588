"""What krvcmd says of a real jukebox is what the changer says at that moment."""
import json
import os

from jukebox_fixture import DRIVE, KRVADM, KRVCMD, KRVSIM, MAIL_SLOT, SLOT, JukeboxTest, main


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
                      ["unload"], ["init", "--force"], ["generate", "--force"], ["real-time", "--on"],
                      ["snapshot", "before"], ["remove", "--farm"]):
            refused = self.run_program(KRVSIM, *words, "--server", "tower")
            self.assertEqual(refused.returncode, 1, refused.stdout + refused.stderr)
            self.assertIn("attached to real jukeboxes", refused.stderr)
        self.check()

    def test_are_copied_for_the_simulation(self):
        self.attach()
        self.cmd("scan", "J", "Tower", "S1-3")
        library = os.path.join(self.run_program(KRVSIM, "library").stdout.strip(), "libkrvSdk64.so")
        clone = self.run_program(KRVSIM, "clone", "--library", library, "--from", "tower", "--to", "copy")
        self.assertEqual(clone.returncode, 0, clone.stderr)
        self.assertEqual(self.run_program(KRVSIM, "diff", "tower", "copy").stdout, "")
        before = self.jukebox.elements()
        moved = self.run_program(KRVCMD, "quiet", "server=copy", "export", "J", "Tower", "S1")
        self.assertEqual(moved.returncode, 0, moved.stderr)
        self.assertEqual(self.jukebox.elements(), before)

    def test_see_what_was_put_into_the_mail_slot(self):
        self.attach()
        self.jukebox.run("insert", MAIL_SLOT, "blank")
        self.assertIn("mail slot 1: medium D000004", self.adm("status", "--server", "tower"))


class Attachments(JukeboxTest):
    def test_end_without_losing_the_volumes(self):
        self.attach()
        self.cmd("scan", "J", "Tower", "S1-3")
        volumes = self.rows("volumes", "V", "@1-3", "columns=Il")
        self.assertEqual(self.adm("detach", "--server", "tower"),
                         "Detached 1 jukebox; the volumes stay in the catalogue.\n")
        self.assertEqual(self.rows("jukeboxes", "columns=I"), [])
        self.assertEqual([row[0] for row in self.rows("volumes", "V", "@1-3", "columns=o")], ["offline"] * 3)
        self.attach()
        self.assertEqual(self.rows("volumes", "V", "@1-3", "columns=Il"), volumes)
        self.assertEqual([row[0] for row in self.rows("volumes", "V", "@1-3", "columns=o")], ["active"] * 3)
        self.check()

    def test_need_another_server_than_a_simulated_one(self):
        self.assertEqual(self.run_program(KRVSIM, "init", "--server", "tower").returncode, 0)
        refused = self.run_program(KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address)
        self.assertEqual(refused.returncode, 1)
        self.assertIn('server "tower" has a simulated farm; choose another server', refused.stderr)

    def test_are_made_once(self):
        self.attach()
        again = self.run_program(KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address,
                                 "--name", "Second")
        self.assertEqual(again.returncode, 1)
        self.assertIn("is attached already", again.stderr)
        self.assertEqual([row[0] for row in self.rows("jukeboxes", "columns=N")], ["Tower"])


class DrivesThatNothingTellsApart(JukeboxTest):
    def setUp(self):
        super().setUp()
        base = self.jukebox.address.rsplit("/", 1)[0]
        self.drives = [f"{base}/1", f"{base}/2"]
        for lun in (1, 2):
            self.update(lun, "scsi_sn=SAME")
        # The first element has the second drive.
        self.update(3, f"element_type=4,address={DRIVE},tid=1,lun=2")
        self.update(3, f"element_type=4,address={DRIVE + 1},tid=1,lun=1")

    def update(self, lun, parameters):
        self.jukebox.run("tgtadm", "--mode", "logicalunit", "--op", "update", "--tid", 1, "--lun", lun, "--params",
                         parameters)

    def test_are_not_guessed(self):
        done = self.run_program(KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address, "--name",
                                "Tower")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("it is not known which device drive 1 is", done.stderr)

    def test_are_found_by_loading_a_disc(self):
        before = self.jukebox.elements()
        portal = self.jukebox.address.split("/")[2]
        found = json.loads(self.adm("discover", "--load", "--json", "--portal", portal))
        self.assertEqual([(drive["element"], drive["knownBy"], [device["address"] for device in drive["devices"]])
                          for drive in found["changers"][0]["drives"]],
                         [(DRIVE, "loading a disc", self.drives[1:]), (DRIVE + 1, "loading a disc", self.drives[:1])])
        self.assertEqual(self.jukebox.elements(), before)
        self.attach("--load")
        self.assertEqual(self.jukebox.elements(), before)
        self.cmd("scan", "J", "Tower", "S1-3")
        self.assertEqual([row[0] for row in self.rows("slots", "J", "Tower", "columns=o")], ["active"] * 3)
        self.check()


class Passwords(JukeboxTest):
    OPTIONS = JukeboxTest.OPTIONS + " --user archive --secret correct-horse-battery"
    SECRET = "correct-horse-battery"

    def write_credentials(self, secret, mode=0o600):
        file = os.path.join(self.home, "credentials")
        with open(file, "w", encoding="ascii") as out:
            out.write(f"user = archive\nsecret = {secret}\n")
        os.chmod(file, mode)
        return file

    def refused(self, file):
        """What krvadm says of an attachment that fails."""
        done = self.run_program(KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address,
                                "--credentials", file)
        self.assertEqual(done.returncode, 1, done.stdout)
        return done.stderr

    def test_open_the_jukebox_and_stay_in_their_file(self):
        self.attach("--credentials", self.write_credentials(self.SECRET))
        self.cmd("scan", "J", "Tower", "S1")
        self.check()
        for folder, _, names in os.walk(self.home):
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    self.assertEqual(self.SECRET.encode() in file.read(), name == "credentials", name)

    def test_are_needed(self):
        done = self.run_program(KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address)
        self.assertEqual(done.returncode, 1, done.stdout)

    def test_that_are_wrong_are_refused_and_not_shown(self):
        said = self.refused(self.write_credentials("a-wrong-secret-of-it"))
        self.assertNotIn("a-wrong-secret-of-it", said)
        self.assertIn("does not accept the user or the secret", said)

    def test_that_changed_later_stop_the_service(self):
        self.attach("--credentials", self.write_credentials(self.SECRET))
        self.write_credentials("a-wrong-secret-of-it")
        failed = self.run_program(KRVCMD, "quiet", "server=tower", "query", "slots", "J", "Tower")
        self.assertNotEqual(failed.returncode, 0)
        self.assertNotIn("a-wrong-secret-of-it", failed.stdout + failed.stderr)

    def test_are_not_taken_from_a_file_that_everybody_may_read(self):
        self.assertIn("every user may read or change", self.refused(self.write_credentials(self.SECRET, 0o644)))


main()
