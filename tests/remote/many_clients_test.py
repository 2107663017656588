#!/usr/bin/env python3
"""Many clients at once, which are killed at random on both sides: many_clients_test.py PROGRAM-DIRECTORY [SECONDS].
Each change is made once if krvcmd says so, and never twice. No process stays."""
import collections
import json
import os
import pathlib
import random
import re
import signal
import sys
import threading
import time
import unittest

from remote_machine import Desk, RemoteMachine, is_copy, name_of

CLIENTS = 32
PROGRAMS, SECONDS = "", 4.0
# How often a change may have been made, by how krvcmd ended. Without a code of the list it was not.
TIMES = {"done": (1, 1), "killed": (0, 1), "1092": (1, 1), "1093": (0, 0), "1094": (0, 1)}


def processes_with(variable):
    """The numbers of all processes that have this variable in their environment."""
    found = []
    for entry in pathlib.Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                if variable.encode() in (entry / "environ").read_bytes().split(b"\0"):
                    found.append(int(entry.name))
            except OSError:
                pass
    return found


def kill(process, number=signal.SIGKILL):
    try:
        os.kill(process, number)
    except OSError:
        pass


class ManyClients(unittest.TestCase):
    def setUp(self):
        self.machine, self.desk = RemoteMachine(PROGRAMS), Desk(PROGRAMS)
        self.addCleanup(self.machine.close)
        self.addCleanup(self.desk.close)
        self.desk.use_as_ssh(self.machine.ssh())
        for words in (["init", "--server", "vault", "--demo"], ["journal", "--server", "vault", "--on"],
                      # So that many are killed in the middle of a change.
                      ["fault", "add", "--server", "vault", "--function", "VolumeSetAspects", "--delay", "200ms"]):
            made = self.machine.local(self.desk, "krvsim", *words)
            self.assertEqual(made.status, 0, made)
        self.desk.run("krvadm", "servers", "add", "archive", self.machine.place("vault"))
        self.outcomes, self.end = {}, 0.0

    def goes_on(self):
        """For the time that is asked for; on a busy machine until enough was done."""
        now, done = time.monotonic(), sum(outcome == "done" for outcome in list(self.outcomes.values()))
        return now < self.end or (done <= CLIENTS // 2 and now < self.end + 90)

    def one_client(self, client):
        number = 0
        while self.goes_on():
            number += 1
            text = f"client{client}-change{number}"
            outcome = self.desk.run("krvcmd", "quiet", "server=archive", "name", "V@33", text)
            code = re.match(r"KRV error (\d+): ", outcome.error)
            if outcome.status == 0:
                self.outcomes[text] = "done"
            elif outcome.status < 0:
                self.outcomes[text] = "killed"
            else:
                self.outcomes[text] = code[1] if code else outcome.error

    def near(self):
        """The numbers of the krvcmd and ssh processes at the desk."""
        return [one for one in processes_with(f"HOME={self.desk.folder}")
                if name_of(one) in ("krvcmd", "ssh") and not is_copy(one)]

    def kill_some(self):
        """A process of either side now and then: krvcmd, its ssh, or the far side."""
        chance = random.Random(1)
        while self.goes_on():
            time.sleep(chance.uniform(0.05, 0.2))
            victims = self.near() if chance.random() < 0.5 else self.machine.serving()
            if victims:
                kill(chance.choice(victims))

    def times_made(self):
        """How often the journal, which is written together with each change, has each text."""
        lines = self.machine.local(self.desk, "krvsim", "journal", "--server", "vault", "--json").output
        calls = [json.loads(line) for line in lines.splitlines()]
        return collections.Counter(call["argument"] for call in calls
                                   if call["function"] == "KrvVolumeSetAspects" and call["succeeded"])

    def test_no_change_is_lost_or_made_twice_and_no_process_stays(self):
        begin = time.monotonic()
        self.end = begin + SECONDS
        threads = [threading.Thread(target=self.one_client, args=(client,)) for client in range(CLIENTS)]
        threads.append(threading.Thread(target=self.kill_some))
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        counts = collections.Counter(self.outcomes.values())
        print(f"{len(self.outcomes)} changes by {CLIENTS} clients in {time.monotonic() - begin:.0f} s: {dict(counts)}", flush=True)
        times = self.times_made()
        wrong = {text: (outcome, times[text]) for text, outcome in self.outcomes.items()
                 if not TIMES.get(outcome, (0, 0))[0] <= times[text] <= TIMES.get(outcome, (0, 0))[1]}
        self.assertEqual(wrong, {})
        self.assertGreater(counts["done"], CLIENTS // 2)
        self.assertEqual(set(times) - set(self.outcomes), set())
        self.expect_nothing_left()

    def expect_nothing_left(self):
        def left():
            return self.near() + self.machine.serving()
        deadline = time.monotonic() + 20
        while left() and time.monotonic() < deadline:
            time.sleep(0.1)
        self.assertEqual([name_of(one) for one in left()], [])
        # No lock is left either.
        begin = time.monotonic()
        done = self.machine.local(self.desk, "krvcmd", "quiet", "server=vault", "disable", "V@34")
        self.assertEqual(done.status, 0, done)
        self.assertLess(time.monotonic() - begin, 2)
        checked = self.machine.local(self.desk, "krvsim", "check", "--server", "vault")
        self.assertEqual(checked.status, 0, checked)


if __name__ == "__main__":
    PROGRAMS = str(pathlib.Path(sys.argv[1]).resolve())
    SECONDS = float(sys.argv[2]) if len(sys.argv) > 2 else SECONDS
    unittest.main(argv=sys.argv[:1])
