#!/usr/bin/env python3
"""Few ways there and back: distance_test.py PROGRAM-DIRECTORY [--measure] [CLASS ...]

With --measure, 100,000 volumes at a distance.
"""
import os
import pathlib
import shlex
import statistics
import subprocess
import sys
import time
import unittest

from delaying_relay import DelayingRelay
from remote_machine import RemoteTest

ROUND_TRIP = 0.05  # seconds


class Fixture(RemoteTest):
    def local(self, *words):
        done = self.machine.local(self.desk, *words)
        self.assertEqual(done.status, 0, done)
        return done

    def make_farm(self, *words):
        self.local("krvsim", "generate", "--server", "vault", "--force", *words)

    def add(self, place):
        self.assertEqual(self.desk.run("krvadm", "servers", "add", "archive", place).status, 0)


class RoundTrips(Fixture):
    """Each call that is sent waits for its answer, so their number is the number of ways there and back."""

    def setUp(self):
        super().setUp()
        self.make_farm("--jukeboxes", "2", "--slots", "1200", "--fill", "100")
        self.add(self.machine.place("vault"))
        self.log = self.desk.folder / "calls"
        self.desk.use_as_ssh(self.machine.ssh())
        (self.desk.tools / "ssh").rename(self.desk.tools / "real_ssh")
        words = ["/usr/bin/python3", str(pathlib.Path(__file__).with_name("counting_ssh.py")), str(self.log),
                 str(self.desk.tools / "real_ssh")]
        self.desk.use_as_ssh(f'#!/bin/sh\nexec {shlex.join(words)} "$@"\n')

    def calls(self, *words):
        """The calls that a command sends, without opening and closing the session; it prints as on the machine itself."""
        self.log.unlink(missing_ok=True)
        there = self.desk.run("krvcmd", "quiet", "server=archive", *words)
        here = self.machine.local(self.desk, "krvcmd", "quiet", "server=vault", *words)
        self.assertEqual((there.status, there.output, there.error.replace("archive", "vault")),
                         (here.status, here.output, here.error), words)
        calls = self.log.read_text(encoding="utf-8").split()
        self.assertEqual((calls[0], calls[-1]), ("KrvSessionCreate", "KrvSessionClose"))
        return calls[1:-1]

    def test_a_single_look_up_takes_three_round_trips_at_most(self):
        for words in (["V", "@33"], ["V", "@1"]):
            calls = self.calls("query", "volumes", *words)
            self.assertLessEqual(len(calls) + 1, 3, calls)  # and the one that opens the session
        calls = self.calls("query", "slots", "J@1", "M1", "S7")
        self.assertLessEqual(len(calls) + 1, 3, calls)

    def test_a_walk_takes_more_at_a_time_the_longer_it_is(self):
        # The first 128, the next 1,024 and the rest; what is asked for early is used.
        self.assertEqual(self.calls("query", "volumes"), ["KrvGetNextVolume"] * 3)
        self.assertLessEqual(len(self.calls("query", "slots", "J@1")), 6)

    def test_a_change_during_a_walk_is_seen_by_the_rest_of_it(self):
        self.machine.local(self.desk, "krvcmd", "quiet", "server=vault", "enable", "V@1500")
        walked = self.desk.run("walk_and_change", "archive", "1500")
        self.assertEqual(walked.status, 0, walked)
        states = {"0": "active", "1": "disabled", "2": "offline"}
        met = [(volume, states[state]) for volume, state in (line.split() for line in walked.output.splitlines())]
        listed = self.machine.local(self.desk, "krvcmd", "quiet", "server=vault", "query", "volumes", "sort=I", "notable",
                                    "columns=Io", "separator= ")
        self.assertEqual(met, [tuple(line.split()) for line in listed.output.splitlines()])
        self.assertIn(("1500", "disabled"), met)
        # The third row was asked for before the change and dropped.
        calls = self.log.read_text(encoding="utf-8").split()
        self.assertEqual(calls[1:6], ["KrvGetNextVolume"] * 3 + ["KrvVolumeDeactivate", "KrvGetNextVolume"])

    def test_a_list_of_volumes_takes_one_round_trip_for_each_change(self):
        for command, function in (("disable", "KrvVolumeDeactivate"), ("enable", "KrvVolumeActivate")):
            self.assertEqual(self.calls(command, "V", "@1-1000"), [function] * 1000)

    def test_slots_are_looked_at_on_the_way_back_of_a_change(self):
        calls = self.calls("disable", "J@1", "S1-100")
        looks = [call for call in calls if call != "KrvVolumeDeactivate"]
        self.assertGreater(len(calls) - len(looks), 80)
        self.assertLessEqual(len(looks), 3, looks)
        calls = self.calls("scan", "J@1", "S1-100")
        looks = [call for call in calls if call != "KrvMediaScan"]
        self.assertEqual(len(calls) - len(looks), 100)
        self.assertLessEqual(len(looks), 3, looks)

    def test_volumes_are_looked_at_on_the_way_back_of_a_change(self):
        calls = self.calls("scan", "V", "@1-100")
        looks = [call for call in calls if call != "KrvMediaScan"]
        self.assertEqual(len(calls) - len(looks), 100)
        self.assertLessEqual(len(looks), 3, looks)

    def test_the_first_failure_of_a_list_ends_it_as_there(self):
        calls = self.calls("enable", "V", "@1-5,99999,6-10")
        self.assertEqual(calls, ["KrvVolumeActivate"] * 6)

    def test_each_call_counts_while_there_is_a_journal(self):
        self.local("krvsim", "journal", "--server", "vault", "--on")
        self.assertGreater(len(self.calls("query", "volumes", "V", "@1-20")), 60)


def cbor(value):
    """The value as CBOR: a dictionary, a list, a text, bytes or a number from 0 to 65535."""
    if isinstance(value, int):
        return bytes([value]) if value < 24 else b"\x19" + value.to_bytes(2, "big")
    kind, size = {bytes: 0x40, str: 0x60, list: 0x80, dict: 0xa0}[type(value)], len(value)
    head = bytes([kind | size]) if size < 24 else bytes([kind | 24, size])
    if isinstance(value, (bytes, str)):
        return head + (value if isinstance(value, bytes) else value.encode())
    items = value if isinstance(value, list) else [part for pair in value.items() for part in pair]
    return head + b"".join(cbor(item) for item in items)


class FarSide:
    """The far side of a connection, asked without ssh."""

    def __init__(self, machine):
        environment = dict(os.environ, KRVSIM_HOME=str(machine.farms))
        self.process = subprocess.Popen([str(machine.programs / "krvadm"), "serve"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, env=environment)
        self.send({"krvcmd": [1, 1], "release": "1.0.0", "features": ["ahead"]})
        self.receive()
        self.ask("KrvSessionCreate", [b"vault", b"test"])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()

    def send(self, message):
        body = cbor(message)
        self.process.stdin.write(len(body).to_bytes(4, "big") + body)
        self.process.stdin.flush()

    def receive(self):
        return self.process.stdout.read(int.from_bytes(self.process.stdout.read(4), "big"))

    def ask(self, call, arguments, ahead=0):
        """The bytes of the answer."""
        self.send({"n": 1, "call": call, "with": arguments, "ahead": ahead})
        return self.receive()

    def row(self, previous):
        return self.ask("KrvGetNextVolume", [previous], 100)


class RowsOfVolumes(Fixture):
    """While one row is on its way, the far side makes the next one."""

    def setUp(self):
        super().setUp()
        self.make_farm("--slots", "400", "--fill", "100")

    def row_alone(self, previous):
        """As a far side sends it that was asked for no other row."""
        with FarSide(self.machine) as alone:
            return alone.row(previous)

    def test_rows_are_the_same_in_any_order(self):
        with FarSide(self.machine) as walk:
            for previous in (0, 100, 200, 200, 0, 50, 150, 250):
                self.assertEqual(walk.row(previous), self.row_alone(previous), previous)

    def test_a_row_made_before_a_change_is_made_again(self):
        before = self.row_alone(100)
        with FarSide(self.machine) as walk:
            walk.row(0)
            time.sleep(0.5)  # the next row is made
            self.local("krvcmd", "quiet", "server=vault", "disable", "V@150")
            changed = walk.row(100)
        self.assertNotEqual(changed, before)
        self.assertEqual(changed, self.row_alone(100))

    def test_a_row_made_before_a_change_of_the_caller_is_made_again(self):
        before = self.row_alone(100)
        with FarSide(self.machine) as walk:
            walk.row(0)
            walk.ask("KrvVolumeDeactivate", [150])
            changed = walk.row(100)
        self.assertNotEqual(changed, before)
        self.assertEqual(changed, self.row_alone(100))

    def test_nothing_made_before_the_journal_was_switched_on_is_sent(self):
        with FarSide(self.machine) as walk:
            walk.row(0)
            time.sleep(0.5)
            self.local("krvsim", "journal", "--server", "vault", "--on")
            self.assertEqual(walk.row(100), self.row_alone(100))
            self.assertNotIn(b"volumes", walk.row(100))


class Distance(Fixture):
    def measure(self, volumes, runs):
        """Seconds that a query of all volumes takes here and at a distance, and that a run takes which only connects."""
        slots = 1000
        self.make_farm("--jukeboxes", str(volumes // slots), "--slots", str(slots), "--fill", "100")
        relay = DelayingRelay(self.machine.port, ROUND_TRIP / 2)
        self.addCleanup(relay.close)
        self.desk.use_as_ssh(self.machine.ssh(port=relay.port))
        self.add(self.machine.place("vault", relay.port))
        here, there, connecting = [], [], []
        for _ in range(runs):
            local = self.local("krvcmd", "server=vault", "query", "volumes", "notable")
            here.append(local.seconds)
            remote = self.desk.run("krvcmd", "server=archive", "query", "volumes", "notable")
            there.append(remote.seconds)
            self.assertEqual((remote.status, remote.output), (local.status, local.output))
            self.assertGreater(local.output.count("\n"), 0.9 * volumes)  # a few sides have none
            begin = time.monotonic()
            self.assertEqual(self.desk.run("krvadm", "servers").status, 0)
            connecting.append(time.monotonic() - begin)
        return tuple(statistics.median(times) for times in (here, there, connecting))

    def expect_fast(self, volumes, connects):
        here, there, connecting = self.measure(volumes, 3)
        limit = 3 * here + 10 * ROUND_TRIP + (0 if connects else connecting)
        print(f"{volumes} volumes at {ROUND_TRIP * 1000:.0f} ms: {there:.2f} s, of which {connecting:.2f} s to connect; "
              f"{here:.2f} s on the machine itself; limit {limit:.2f} s", flush=True)
        self.assertLess(there, limit)

    def test_few_volumes_are_listed_as_fast_as_there(self):
        self.expect_fast(2_000, connects=False)

    @unittest.skipUnless("--measure" in sys.argv, "takes minutes")
    def test_many_volumes_take_three_times_as_long_at_most(self):
        self.expect_fast(100_000, connects=True)


if __name__ == "__main__":
    RemoteTest.PROGRAMS = str(pathlib.Path(sys.argv[1]).resolve())
    unittest.main(argv=sys.argv[:1] + [word for word in sys.argv[2:] if word != "--measure"])
