"""Nothing is lost: programs and jukeboxes that end at any moment, and two programs at once."""
import os
import random
import signal
import time

from jukebox_fixture import KRVCMD, MAIL_SLOT, SLOT, JukeboxTest, main

# How often programs are killed before they have ended, in all.
KILLS = int(os.environ.get("KRV_JUKEBOX_KILLS", "40"))
BURNS = KILLS // 5
RESTARTS = max(KILLS // 10, 4)


def tell(text):
    print(text, flush=True)


class KilledPrograms(JukeboxTest):
    def kill_within(self, seconds, *words):
        """Kills krvcmd at some moment within so many seconds; whether it had not ended by then."""
        process = self.start(KRVCMD, "quiet", "server=tower", *words)
        time.sleep(seconds)
        process.kill()
        process.communicate()
        return process.returncode == -signal.SIGKILL

    def duration_of(self, *words):
        begin = time.monotonic()
        self.cmd(*words)
        return time.monotonic() - begin


class Crashes(KilledPrograms):
    OPTIONS = "--slots 6 --drives 2 --mailslots 2 --discs 4"

    def discs(self):
        return sorted(self.jukebox.elements().values())

    def set_right(self, discs):
        """After the next call the catalogue agrees, and no disc is left in a drive."""
        self.adm("inventory", "--server", "tower")
        self.check()
        self.assertEqual(self.discs(), discs)
        self.assertTrue(all(address >= MAIL_SLOT for address in self.jukebox.elements()))

    def test_a_killed_program_loses_no_disc(self):
        self.attach()
        chance = random.Random(7)
        every = self.discs()
        longest = self.duration_of("scan", "J", "Tower", "S1")
        killed = {"import": 0, "export": 0, "scan": 0}
        runs = 0
        while sum(killed.values()) < KILLS - BURNS - RESTARTS:
            command = chance.choice(sorted(killed))
            place = [f"S{chance.randint(1, 6)}"] if command == "scan" else []
            killed[command] += self.kill_within(chance.random() * longest, command, "J", "Tower", *place)
            runs += 1
            self.assertEqual(self.discs(), every)
            if runs % 20 == 0:
                self.set_right(every)
        self.set_right(every)
        tell(f"killed {killed} of {runs} runs")

    def test_a_jukebox_that_ends_at_any_moment_loses_no_disc(self):
        self.attach()
        chance = random.Random(11)
        every = self.discs()
        for number in range(RESTARTS):
            process = self.start(KRVCMD, "quiet", "server=tower", "scan", "J", "Tower", f"S{chance.randint(1, 4)}")
            time.sleep(chance.random() * 0.3)
            # Every other time the program ends as well. The emulation begins with all discs where they were first.
            if number % 2:
                process.kill()
            self.jukebox.run("restart")
            process.communicate(timeout=60)
            self.assertEqual(self.discs(), every)
        self.set_right(every)
        self.assertEqual(len(self.rows("slots", "J", "Tower", "columns=s")), len(every))
        tell(f"{RESTARTS} jukeboxes ended within a scan")

    def test_an_interrupted_program_finishes_the_move_in_progress(self):
        self.attach()
        chance = random.Random(17)
        every = self.discs()
        interrupted, runs, longest = 0, 0, 0.4
        while runs < 12 or (interrupted == 0 and runs < 200):
            runs += 1
            process = self.start(KRVCMD, "quiet", "server=tower", "scan", "J", "Tower", "S1-4")
            time.sleep(chance.random() * longest)
            process.send_signal(signal.SIGINT)
            process.communicate(timeout=60)
            self.assertIn(process.returncode, (0, 4, -signal.SIGINT))
            interrupted += process.returncode == 4
            # A run that had ended, or had hardly begun, tells how fast this machine is.
            longest *= {0: 0.8, -signal.SIGINT: 1.2}.get(process.returncode, 1)
            # The disc is at home already, not only after the next call.
            self.assertEqual(self.discs(), every)
            self.assertTrue(all(address >= MAIL_SLOT for address in self.jukebox.elements()))
            self.check()
        self.assertGreater(interrupted, 0)

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


class KilledBurns(KilledPrograms):
    OPTIONS = "--slots 4 --drives 1 --mailslots 1 --blank 2 --disk-drives"

    def test_leave_a_disc_that_is_unknown_or_written(self):
        self.attach()
        chance = random.Random(13)
        burn = ["format", "J", "Tower", "S1", ".A", "label=Sales"]
        longest = self.duration_of(*burn)
        killed = runs = 0
        while killed < BURNS - BURNS // 4:
            killed += self.kill_within(chance.random() * longest, *burn)
            runs += 1
            state, = {row[1] for row in self.rows("slots", "J", "Tower", "columns=so") if row[0] == "1"}
            if state == "active":
                self.assertEqual(self.blkid("D000001")["LABEL"], "Sales")
            else:
                self.assertEqual(state, "unknown")
        self.cmd("format", "J", "Tower", "S1", ".A", "label=Last")
        self.assertEqual(self.blkid("D000001")["LABEL"], "Last")
        self.assertEqual(self.jukebox.elements(), {SLOT: "D000001", SLOT + 1: "D000002"})
        self.check()
        tell(f"killed {killed} of {runs} burns of a rewritable disc")


class KilledBurnsOfWriteOnceDiscs(KilledPrograms):
    KILLS = max(BURNS // 4, 2)
    DISCS = 2 * KILLS + 4
    OPTIONS = f"--slots {DISCS} --drives 1 --blank {DISCS}"

    def test_leave_a_disc_that_is_unknown_or_written_or_still_blank(self):
        self.attach()
        chance = random.Random(19)

        def burn(slot):
            return ["format", "J", "Tower", f"S{slot}", ".A", f"label=Sales {slot}"]

        longest = self.duration_of(*burn(1))
        killed, slot = 0, 1
        while killed < self.KILLS and slot < self.DISCS:
            slot += 1
            killed += self.kill_within(chance.random() * 0.8 * longest, *burn(slot))
        self.adm("inventory", "--server", "tower")
        self.check()
        self.assertEqual(sorted(self.jukebox.elements().items()),
                         [(SLOT + number, f"D{number + 1:06}") for number in range(self.DISCS)])
        states = {int(row[0]): row[1] for row in self.rows("slots", "J", "Tower", "columns=so")}
        for number in range(1, self.DISCS + 1):
            disc = f"D{number:06}"
            if states.get(number) == "active":
                self.assertEqual(self.blkid(disc)["LABEL"], f"Sales {number}")
            elif number not in states:
                # A query of slots leaves out those with a blank disc.
                self.assertEqual(os.path.getsize(self.jukebox.disc(disc)), 0)
            else:
                self.assertEqual(states[number], "unknown")
        tell(f"killed {killed} of {slot - 1} burns of write-once discs")


main()
