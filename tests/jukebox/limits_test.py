"""How long devices may take: each jukebox has limits of its own."""
from jukebox_fixture import KRVADM, JukeboxTest, main

DEFAULTS = {"move": "300", "inventory": "1800", "eject": "120", "ready": "180", "look": "30", "read": "90",
            "write": "120", "flush": "600", "close": "3600", "blank": "10800", "format": "21600", "standstill": "1800"}


class Limits(JukeboxTest):
    OPTIONS = "--slots 2 --drives 1 --discs 1"

    def limits(self, *words):
        """What krvadm shows: a dictionary from the name of each limit to its seconds."""
        lines = self.adm("limits", "--server", "tower", *words).splitlines()
        self.assertEqual(lines[0], "Jukebox Tower (@1)")
        self.assertEqual(lines[1].split()[:3], ["Limit", "Seconds", "Default"])
        rows = [line.split() for line in lines[2:]]
        self.assertEqual({row[0]: row[2] for row in rows}, DEFAULTS)
        return {row[0]: row[1] for row in rows}

    def refused(self, *words):
        done = self.run_program(KRVADM, *words)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        return done.stderr

    def test_are_the_default_ones_unless_others_are_given(self):
        self.attach()
        self.assertEqual(self.limits(), DEFAULTS)
        self.assertIn("\n  Limits      as usual\n", self.adm("status", "--server", "tower"))

    def test_are_given_with_the_jukebox(self):
        self.attach("--limit", "move=600", "--limit", "write=240")
        self.assertEqual(self.limits(), {**DEFAULTS, "move": "600", "write": "240"})
        self.assertIn("\n  Limits      move 600 s, write 240 s\n", self.adm("status", "--server", "tower"))
        self.cmd("scan", "J", "Tower", "S1")

    def test_are_changed_later(self):
        self.attach("--limit", "move=600")
        self.assertEqual(self.limits("ready=20", "move=default"), {**DEFAULTS, "ready": "20"})
        self.assertEqual(self.limits("-J", "Tower"), {**DEFAULTS, "ready": "20"})
        self.cmd("scan", "J", "Tower", "S1")

    def test_end_with_the_jukebox(self):
        self.attach("--limit", "move=600")
        self.adm("detach", "--server", "tower")
        self.attach()
        self.assertEqual(self.limits(), DEFAULTS)

    def test_are_numbers_of_seconds_under_names_that_are_known(self):
        self.attach()
        end = "\n"
        for change in ("move=0", "move=86401", "move=-1", "move=", "move=5m", "move=99999999999999999999"):
            self.assertEqual(self.refused("limits", "--server", "tower", "look=60", change),
                             'krvadm: the time limit "move" is a number of seconds from 1 to 86400, or the word '
                             'default' + end)
        self.assertEqual(self.refused("limits", "--server", "tower", "look=60", "jump=5"),
                         'krvadm: there is no time limit "jump"; there are move, inventory, eject, ready, look, '
                         'read, write, flush, close, blank, format, standstill' + end)
        self.assertEqual(self.refused("limits", "--server", "tower", "move"),
                         'krvadm: "move" is not of the form NAME=SECONDS' + end)
        self.assertIn('there is no time limit "jump"',
                      self.refused("attach", "--server", "other", "--changer", self.jukebox.address, "--limit",
                                   "jump=5"))
        self.assertEqual(self.limits(), DEFAULTS)


main()
