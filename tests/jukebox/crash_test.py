"""Nothing is lost: programs and jukeboxes that end at any moment, and two programs at once."""
import os
import random
import time

from jukebox_fixture import KRVCMD, MAIL_SLOT, SLOT, JukeboxTest, main

KILLS = int(os.environ.get("KRV_JUKEBOX_KILLS", "40"))


class Crashes(JukeboxTest):
    OPTIONS = "--slots 6 --drives 2 --mailslots 2 --discs 4"

    def discs(self):
        return sorted(self.jukebox.elements().values())

    def test_a_killed_program_loses_no_disc(self):
        self.attach()
        chance = random.Random(7)
        every = self.discs()
        for _ in range(KILLS):
            words = chance.choice([["import", "J", "Tower"], ["export", "J", "Tower"],
                                   ["scan", "J", "Tower", f"S{chance.randint(1, 6)}"]])
            process = self.start(KRVCMD, "quiet", "server=tower", *words)
            time.sleep(chance.random() * 0.3)
            process.kill()
            process.communicate()
            self.assertEqual(self.discs(), every)
        self.adm("inventory", "--server", "tower")
        self.check()
        self.assertEqual(self.discs(), every)
        # Every disc is at home: none is left in a drive.
        self.assertTrue(all(address >= MAIL_SLOT for address in self.jukebox.elements()))

    def test_a_jukebox_that_ends_at_any_moment_loses_no_disc(self):
        self.attach()
        chance = random.Random(11)
        every = self.discs()
        for _ in range(KILLS // 8):
            process = self.start(KRVCMD, "quiet", "server=tower", "scan", "J", "Tower", f"S{chance.randint(1, 4)}")
            time.sleep(chance.random() * 0.3)
            # The emulation begins with all discs where they were first.
            self.jukebox.run("restart")
            process.communicate(timeout=60)
            self.assertEqual(self.discs(), every)
        self.adm("inventory", "--server", "tower")
        self.check()
        self.assertEqual(len(self.rows("slots", "J", "Tower", "columns=s")), len(every))

    def test_two_programs_take_turns(self):
        self.attach()
        processes = [self.start(KRVCMD, "quiet", "server=tower", "export", "J", "Tower", f"S{slot}") for slot in (1, 2)]
        for process in processes:
            out, err = process.communicate(timeout=60)
            self.assertEqual(process.returncode, 0, out + err)
        self.assertEqual(sorted(disc for address, disc in self.jukebox.elements().items()
                                if address in (MAIL_SLOT, MAIL_SLOT + 1)), ["D000001", "D000002"])
        self.check()

    def test_a_jukebox_that_starts_again_is_looked_at_again(self):
        self.attach()
        self.cmd("export", "J", "Tower", "S1")
        # The emulation begins with all discs where they were first.
        self.jukebox.run("restart")
        self.assertEqual(len(self.rows("slots", "J", "Tower", "columns=s")), 4)
        self.check()


class KilledBurns(JukeboxTest):
    OPTIONS = "--slots 4 --drives 1 --mailslots 1 --blank 2 --disk-drives"

    def test_leave_a_disc_that_is_unknown_or_written(self):
        self.attach()
        chance = random.Random(13)
        for _ in range(KILLS // 4):
            process = self.start(KRVCMD, "quiet", "server=tower", "format", "J", "Tower", "S1", ".A", "label=Sales")
            time.sleep(chance.random() * 0.6)
            process.kill()
            process.communicate()
            state, = {row[1] for row in self.rows("slots", "J", "Tower", "columns=so") if row[0] == "1"}
            if state == "active":
                self.assertEqual(self.blkid("D000001")["LABEL"], "Sales")
            else:
                self.assertEqual(state, "unknown")
        self.cmd("format", "J", "Tower", "S1", ".A", "label=Last")
        self.assertEqual(self.blkid("D000001")["LABEL"], "Last")
        self.assertEqual(self.jukebox.elements(), {SLOT: "D000001", SLOT + 1: "D000002"})
        self.check()


main()
