#!/usr/bin/env python3
"""krvsim run: run_test.py KRVSIM KRVCMD SPY-LIBRARY

The spy library leaves the file "called" beside itself when a program calls it. Tests of a command that is closed
off are skipped where the machine cannot do that.
"""
import json
import os
import pathlib
import pty
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree

KRVSIM, KRVCMD, SPY = (pathlib.Path(word).resolve() for word in sys.argv[1:4])


def can_close_off():
    if not shutil.which("bwrap"):
        return False
    return subprocess.run(["bwrap", "--dev-bind", "/", "/", "true"], stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False).returncode == 0


CLOSED_OFF = can_close_off()


class Rehearsals(unittest.TestCase):
    isolation = [] if CLOSED_OFF else ["--not-isolated"]

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="krvsim-run-test-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.home = self.folder / "farms"
        self.temporary = self.folder / "temporary"
        self.temporary.mkdir()
        self.environment = dict(os.environ, KRVSIM_HOME=str(self.home), TMPDIR=str(self.temporary),
                                PATH=f"{KRVCMD.parent}:{os.environ['PATH']}")
        self.environment.pop("LD_LIBRARY_PATH", None)
        self.krvsim("init")
        self.before = self.krvsim("dump").stdout

    def krvsim(self, *words, status=0, **more):
        done = subprocess.run([KRVSIM, *words], env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, encoding="utf-8", errors="replace", check=False, **more)
        self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return done

    def run_on_copy(self, *words, status=0, **more):
        """Whatever the command does, the farm stays as it was, and no temporary file is left."""
        done = self.krvsim("run", *self.isolation, *words, status=status, **more)
        self.assertEqual(self.krvsim("dump").stdout, self.before)
        self.assertEqual(list(self.temporary.iterdir()), [])
        return done

    def script(self, text):
        file = self.folder / "script.sh"
        file.write_text("#!/bin/sh\n" + text)
        file.chmod(0o755)
        return str(file)

    def profile(self, move):
        """Moves take this many seconds, everything else takes no time."""
        file = self.folder / "profile.toml"
        file.write_text(f'format = 1\nname = "test"\nmove = {move}\n')
        return str(file)

    def page_data(self, file):
        return json.loads(re.search(r'id="data">(.*?)</script>', file.read_text(encoding="utf-8"), re.DOTALL)[1])

    def spy(self):
        folder = self.folder / "real" / "lib"
        folder.mkdir(parents=True)
        shutil.copy(SPY, folder / "libkrvSdk64.so")
        return folder


class ARun(Rehearsals):
    def test_shows_what_the_command_changed(self):
        done = self.run_on_copy("--", "krvcmd", "quiet", "export", "V", "@33")
        self.assertEqual(done.stdout, "")
        self.assertEqual(done.stderr.splitlines()[:3], [
            "Jukebox MyBox (@8)",
            "  Magazine 1",
            "    - exported  slot 3 -> export station: Sales 2004 (volume 33), Sales 2003 (volume 34)"])
        self.assertIn("1 change: 1 exported; exit status 0.", done.stderr)

    def test_without_changes_says_so(self):
        done = self.run_on_copy("--", "true")
        self.assertEqual(done.stderr, 'Rehearsed on a copy of server ".": 0 calls, 0 failed, no changes; '
                                      "exit status 0.\n")

    def test_ends_with_the_status_of_the_command(self):
        self.run_on_copy("--", "sh", "-c", "exit 37", status=37)
        self.run_on_copy("--", "sh", "-c", "kill -9 $$", status=128 + 9)

    def test_fails_with_70_without_such_a_program(self):
        done = self.krvsim("run", *self.isolation, "--", "no-such-program", status=70)
        self.assertEqual(done.stderr, "krvsim: no-such-program: there is no such program\n")

    def test_leaves_input_and_output_alone(self):
        done = self.run_on_copy("--", "sh", "-c", "cat; echo wrong >&2", input="a\nb\n")
        self.assertEqual(done.stdout, "a\nb\n")
        self.assertTrue(done.stderr.startswith("wrong\n"), done.stderr)

    def test_passes_words_on_as_they_are(self):
        done = self.run_on_copy("--", "printf", "%s|", "--keep", "", "a b", "--", "run", "$x")
        self.assertEqual(done.stdout, "--keep||a b|--|run|$x|")

    def test_passes_signals_on(self):
        script = self.script("trap 'echo got TERM; exit 5' TERM\necho ready\nwhile :; do sleep 0.05; done\n")
        process = subprocess.Popen([KRVSIM, "run", *self.isolation, "--", script], env=self.environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.assertEqual(process.stdout.readline(), "ready\n")
        time.sleep(0.1)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.stdout.read(), "got TERM\n")
        process.stdout.close()
        self.assertEqual(process.wait(), 5)

    def test_leaves_an_interrupt_of_the_terminal_to_the_command(self):
        script = self.script("trap 'echo got INT; exit 6' INT\necho ready\nwhile :; do sleep 0.05; done\n")
        process = subprocess.Popen([KRVSIM, "run", *self.isolation, "--", script], env=self.environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   start_new_session=True)
        self.assertEqual(process.stdout.readline(), "ready\n")
        time.sleep(0.1)
        os.killpg(process.pid, signal.SIGINT)
        out, err = process.communicate()
        self.assertTrue(out.startswith("got INT\n"), out)
        self.assertEqual(process.returncode, 6, err)

    def test_keeps_the_copy_on_request(self):
        self.krvsim("run", *self.isolation, "--keep", "kept", "--", "krvcmd", "quiet", "export", "V", "@33")
        self.assertEqual(self.krvsim("dump").stdout, self.before)
        self.assertIn("1 change: 1 exported.", self.krvsim("diff", ".", "kept", status=1).stdout)
        self.krvsim("run", *self.isolation, "--keep", "kept", "--", "true", status=70)

    def test_copies_through_a_client_library(self):
        library = KRVSIM.parent.parent / "lib" / "libkrvSdk64.so"
        done = self.run_on_copy("--from-library", str(library), "--from", "my_server", "--",
                                "krvcmd", "quiet", "export", "V", "@33")
        self.assertIn("1 change: 1 exported; exit status 0.", done.stderr)

    def test_has_media_that_wait(self):
        done = self.run_on_copy("--waiting", "MyBox: 2 DVD-RAM Incoming", "--",
                                "sh", "-c", "krvcmd quiet import J MyBox repeat=2")
        self.assertIn("Incoming 1", done.stderr)
        self.assertIn("2 changes: 2 imported; exit status 0.", done.stderr)
        self.krvsim("run", *self.isolation, "--waiting", "MyBox: 2 Floppy", "--", "true", status=2)

    def test_makes_calls_fail(self):
        door = "MediaExport nth 1 code 7 text \"The door is open.\""
        done = self.run_on_copy("--fault", door, "--", "krvcmd", "quiet", "export", "V", "@33", status=7)
        self.assertIn("KRV error 7: The door is open.\n", done.stderr)
        done = self.run_on_copy("--fault", "door-open", "--", "krvcmd", "quiet", "export", "V", "@33", status=7)
        self.assertIn("KRV error 7: The door of the jukebox is open.\n", done.stderr)
        file = self.folder / "faults"
        file.write_text("# none\n\nMediaExport code 8\nMediaExpert code 8\nMediaScan slot x\n")
        done = self.krvsim("run", *self.isolation, "--fault", str(file), "--", "true", status=70)
        self.assertEqual(done.stderr, f'krvsim: {file}:4: "MediaExpert" is not a function\n'
                                      f'krvsim: {file}:5: "x" is not the number of a slot\n')

    def test_checks_expectations(self):
        file = self.folder / "expected"
        file.write_text('volume 33 offline\nslot MyBox 1 3 empty\ncalls export 1\nchanges 1\nstatus 0\n')
        words = ["--expect", str(file), "--", "krvcmd", "quiet", "export", "V", "@33"]
        self.run_on_copy(*words)
        file.write_text('# wrong\nvolume 33 active\nslot MyBox 1 3 full\ncalls export 2\nstatus 0\n')
        done = self.run_on_copy(*words, status=71)
        self.assertEqual(done.stderr.splitlines()[-3:], [
            f"krvsim: {file}:2: volume 33 active: it is offline",
            f"krvsim: {file}:3: slot MyBox 1 3 full: it is empty",
            f"krvsim: {file}:4: calls export 2: there were 1"])

    def test_writes_reports(self):
        expected = self.folder / "expected"
        expected.write_text('volume 33 label "<&>"\nstatus 0\n')
        for name in ("report.xml", "report.json"):
            self.run_on_copy("--expect", str(expected), "--report", str(self.folder / name), "--",
                             "krvcmd", "quiet", "export", "V", "@33", status=71)
        suite = xml.etree.ElementTree.parse(self.folder / "report.xml").getroot()[0]
        self.assertEqual((suite.get("name"), suite.get("tests"), suite.get("failures")),
                         ("krvcmd quiet export V @33", "2", "1"))
        self.assertEqual(suite[0].get("name"), 'volume 33 label "<&>"')
        self.assertEqual(suite[0][0].get("message"), 'it is "Sales 2004"')
        report = json.loads((self.folder / "report.json").read_text())
        self.assertEqual(report["status"], 0)
        self.assertEqual(report["plan"]["counts"], {"exported": 1})
        self.assertEqual([each["holds"] for each in report["expectations"]], [False, True])
        self.krvsim("run", *self.isolation, "--report", "report.txt", "--", "true", status=2)

    def test_writes_xml_without_characters_that_xml_does_not_allow(self):
        file, report = self.folder / "expected", self.folder / "report.xml"
        file.write_text('volume 33 label "a\ufffeb\uffffc]]>\ud7ff\U0010fffe"\n', encoding="utf-8")
        self.run_on_copy("--expect", str(file), "--report", str(report), "--", "echo", "\x01\x0b\ufffe", "\udcff",
                         "<&\"'>", status=71)
        suite = xml.etree.ElementTree.parse(report).getroot()[0]
        self.assertEqual(suite.get("name"), "echo ??? 0xff <&\"'>")
        self.assertEqual(suite[1].get("name"), 'volume 33 label "a?b?c]]>\ud7ff\U0010fffe"')

    def test_tells_how_long_real_jukeboxes_would_take(self):
        words = ["--profile", self.profile(600), "--", "krvcmd", "quiet", "export", "V", "@33"]
        done = self.run_on_copy(*words)
        self.assertEqual(done.stderr.splitlines()[-1], "about 10 min in jukebox MyBox, of which 10 min moving")
        report = self.folder / "report.json"
        self.run_on_copy("--report", str(report), *words)
        self.assertEqual(json.loads(report.read_text())["simulated"], {
            "duration_s": 600, "late": False,
            "jukeboxes": [{"jukebox": 8, "name": "MyBox", "duration_s": 600, "moving_s": 600}]})

    def test_warns_of_a_deadline(self):
        words = ["--profile", self.profile(600), "--start", "05:55"]
        export = ["--", "krvcmd", "quiet", "export", "V", "@33"]
        done = self.run_on_copy(*words, "--deadline", "06:00", *export)
        self.assertEqual(done.stderr.splitlines()[-1],
                         "Started at 05:55, it ends about 5 min after the deadline 06:00.")
        done = self.run_on_copy(*words, "--deadline", "06:10", *export)
        self.assertEqual(done.stderr.splitlines()[-1], "about 10 min in jukebox MyBox, of which 10 min moving")

    def test_waits_only_for_real_time(self):
        words = ["--profile", self.profile(1), "--", "krvcmd", "quiet", "export", "V", "@33"]
        start = time.monotonic()
        self.run_on_copy("--real-time", *words)
        self.assertGreaterEqual(time.monotonic() - start, 1)
        self.krvsim("real-time", "--on", "--profile", self.profile(1000))
        self.run_on_copy("--", "krvcmd", "quiet", "export", "V", "@33", timeout=500)

    def test_warns_of_servers_without_a_copy(self):
        done = self.run_on_copy("--", "krvcmd", "server=my_server", "quiet", "export", "V", "@33")
        self.assertIn('krvsim: warning: the command used server "my_server", which has no copy\n', done.stderr)


class ThePage(Rehearsals):
    def setUp(self):
        super().setUp()
        self.page = self.folder / "report.html"

    def run_with_page(self, *words, **more):
        return self.run_on_copy("--report", str(self.page), *words, **more)

    def test_has_both_farms_the_plan_the_calls_and_how_it_ended(self):
        expected = self.folder / "expected"
        expected.write_text("volume 33 active\ncalls export 1\n")
        self.run_with_page("--profile", self.profile(600), "--start", "05:55", "--deadline", "06:00", "--expect",
                           str(expected), "--", "krvcmd", "quiet", "export", "V", "@33", status=71)
        data = self.page_data(self.page)
        states = [next(volume for volume in data[time]["volumes"] if volume["id"] == 33)["state"]
                  for time in ("before", "after")]
        self.assertEqual(states, ["active", "offline"])
        self.assertEqual(data["plan"]["count"], "1 change: 1 exported")
        moved = [call for call in data["calls"] if call["duration"] > 0]
        self.assertEqual([(call["function"], call["duration"], call["moving"]) for call in moved],
                         [("KrvMediaExport", 600_000_000, 600_000_000)])
        self.assertEqual(data["remarks"], [
            "krvcmd quiet export V @33",
            f"exit status 0; {len(data['calls'])} calls, 0 failed",
            "about 10 min in jukebox MyBox, of which 10 min moving",
            "Started at 05:55, it ends about 5 min after the deadline 06:00.",
            "expected: volume 33 active, but it is offline",
            "expected: calls export 1, and it is so"])

    def test_names_the_failures_that_the_command_swallowed(self):
        script = self.script("krvcmd quiet export V @33\ntrue\n")
        self.run_with_page("--each-fault", "--function", "MediaExport", "--", script)
        self.assertEqual(self.page_data(self.page)["remarks"][-1],
                         "swallowed: the failure of call 1 of KrvMediaExport, jukebox 8, magazine 1, slot 3; "
                         "no changes")

    def test_has_the_output_which_stays_as_it_is(self):
        done = self.run_with_page("--", "sh", "-c", "echo one; echo two >&2; cat; [ ! -t 1 ]", input="three\n")
        self.assertEqual(done.stdout, "one\nthree\n")
        self.assertTrue(done.stderr.startswith("two\nRehearsed"), done.stderr)
        self.assertEqual(sorted(self.page_data(self.page)["output"].split()), ["one", "three", "two"])

    def test_keeps_the_order_of_streams_that_are_one(self):
        subprocess.run([KRVSIM, "run", *self.isolation, "--report", self.page, "--", "sh", "-c",
                        "for n in 1 2 3 4; do echo out $n; echo err $n >&2; done"], env=self.environment, check=True,
                       stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(self.page_data(self.page)["output"],
                         "".join(f"out {number}\nerr {number}\n" for number in (1, 2, 3, 4)))

    def test_has_output_as_text_to_read(self):
        self.run_with_page("--", "printf", r"\033[1;31mred\033[0m\033]0;title\007!\r\n1\r2\n\001\377\tK\303\266ln")
        self.assertEqual(self.page_data(self.page)["output"], "red!\n1\n2\n?\ufffd\tKöln")

    def test_has_the_beginning_of_a_very_long_output(self):
        done = self.run_with_page("--", "sh", "-c", "head -c 3000000 /dev/zero | tr '\\0' x")
        self.assertEqual(len(done.stdout), 3_000_000)
        self.assertEqual(self.page_data(self.page)["output"],
                         "x" * 1_048_576 + "\n(1951424 more bytes)\n")

    def test_leaves_a_terminal_a_terminal(self):
        script = self.script("[ -t 1 ] && [ -t 2 ] || exit 9\nstty size <&1\necho error >&2\n")
        terminal, inner = pty.openpty()
        os.set_inheritable(inner, True)
        process = subprocess.Popen(["sh", "-c", 'stty rows 33 cols 99; exec "$@"', "sh", KRVSIM, "run", *self.isolation,
                                    "--report", self.page, "--", script],
                                   env=self.environment, stdin=inner, stdout=inner, stderr=inner)
        os.close(inner)
        shown = b""
        while True:
            try:
                block = os.read(terminal, 4096)
            except OSError:
                break
            shown += block
        os.close(terminal)
        self.assertEqual(process.wait(), 0, shown)
        self.assertTrue(shown.startswith(b"33 99\r\nerror\r\nRehearsed"), shown)
        self.assertEqual(self.page_data(self.page)["output"], "33 99\nerror\n")

    def test_ends_the_command_when_nobody_reads_its_output(self):
        process = subprocess.Popen([KRVSIM, "run", *self.isolation, "--report", self.page, "--", "yes"],
                                   env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.assertEqual(process.stdout.read(2), b"y\n")
        process.stdout.close()
        self.assertEqual(process.wait(60), 128 + signal.SIGPIPE)

    def test_does_not_wait_for_what_the_command_leaves_behind(self):
        started = time.monotonic()
        self.run_with_page("--", "sh", "-c", "sleep 300 2>/dev/null & echo $!")
        self.assertLess(time.monotonic() - started, 200)
        os.kill(int(self.page_data(self.page)["output"]), signal.SIGKILL)


class EachFault(Rehearsals):
    def test_reports_the_failures_that_the_command_swallowed(self):
        script = self.script("krvcmd quiet export V @33\nkrvcmd quiet export V @9 || exit 9\n")
        done = self.run_on_copy("--each-fault", "--function", "MediaExport", "--", script)
        lines = [line.split() for line in done.stderr.splitlines() if line.startswith("KrvMediaExport")]
        self.assertEqual([line[:2] for line in lines], [["KrvMediaExport", "1"], ["KrvMediaExport", "2"]])
        self.assertIn("swallowed", lines[0])
        self.assertIn("noticed", lines[1])
        self.assertIn("9", lines[1])
        self.assertTrue(done.stderr.endswith("2 calls made to fail; 1 of the failures swallowed.\n"), done.stderr)

    def test_makes_every_call_fail_once(self):
        report = self.folder / "report.json"
        self.run_on_copy("--each-fault", "--code", "77", "--report", str(report), "--",
                         "krvcmd", "quiet", "export", "V", "@33")
        content = json.loads(report.read_text())
        self.assertEqual(len(content["faults"]), content["calls"]["all"])
        self.assertTrue(all(run["reached"] for run in content["faults"]))
        failing = [run for run in content["faults"] if run["function"] == "KrvMediaExport"]
        self.assertEqual([(run["status"], run["swallowed"], run["plan"]["equal"]) for run in failing],
                         [(77, False, True)])


@unittest.skipUnless(CLOSED_OFF, "this machine cannot close a command off")
class ACommandThatIsClosedOff(Rehearsals):
    """Another library is installed where the command finds it, and the default folder has another farm."""
    EXPORTED = "1 change: 1 exported; exit status 0."

    def assertMeetsTheCopy(self, script, *words, **variables):
        folder = self.spy()
        self.environment.update(variables)
        done = self.run_on_copy(*words, "--", self.script(script.replace("SPY", str(folder))))
        self.assertIn(self.EXPORTED, done.stderr)
        self.assertFalse((folder / "called").exists(), "the other library was called")

    def test_meets_the_copy_without_an_environment(self):
        self.assertMeetsTheCopy(f"env -i {KRVCMD} quiet export V @33\n")

    def test_meets_the_copy_with_another_home_folder(self):
        (self.folder / "home").mkdir()
        self.assertMeetsTheCopy(f"env -u KRVSIM_HOME HOME={self.folder}/home {KRVCMD} quiet export V @33\n")

    def test_meets_the_copy_with_another_folder_of_farms(self):
        self.krvsim("init", "--server", "other")
        self.assertMeetsTheCopy(f"KRVSIM_HOME={self.home} krvcmd quiet export V @33\n")

    def test_meets_the_copy_with_a_library_of_its_own(self):
        self.assertMeetsTheCopy(f"LD_LIBRARY_PATH=SPY {KRVCMD} quiet export V @33\n")

    @unittest.skipIf("KRVCMD_SANITIZE" in os.environ, "the shell cannot load a library built with sanitizers")
    def test_meets_the_copy_with_a_library_that_is_loaded_first(self):
        self.assertMeetsTheCopy("LD_PRELOAD=SPY/libkrvSdk64.so krvcmd quiet export V @33\n")

    def test_meets_the_copy_with_a_krvcmd_beside_the_other_library(self):
        program = self.folder / "real" / "bin" / "krvcmd"
        program.parent.mkdir(parents=True)
        shutil.copy(KRVCMD, program)
        self.assertMeetsTheCopy(f"env -i {program} quiet export V @33\n")

    def test_meets_the_copy_with_an_installation_whose_place_is_in_a_variable(self):
        program = self.folder / "real" / "bin" / "krvcmd"
        program.parent.mkdir(parents=True)
        shutil.copy(KRVCMD, program)
        self.assertMeetsTheCopy(f'ROOT={self.folder}/real\nenv -i "$ROOT/bin/krvcmd" quiet export V @33\n')

    def test_meets_the_copy_or_fails_with_another_user(self):
        if not shutil.which("sudo"):
            self.skipTest("sudo is not installed")
        folder = self.spy()
        done = subprocess.run([KRVSIM, "run", "--", self.script(f"sudo -n {KRVCMD} quiet export V @33\n")],
                              env=dict(self.environment, LD_LIBRARY_PATH=str(folder)), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, check=False)
        self.assertTrue(done.returncode != 0 or self.EXPORTED in done.stderr, done.stderr)
        self.assertFalse((folder / "called").exists(), "the other library was called")
        self.assertEqual(self.krvsim("dump").stdout, self.before)


class ACommandThatIsNotClosedOff(Rehearsals):
    isolation = ["--not-isolated"]

    def test_meets_the_copy_by_its_environment(self):
        done = self.run_on_copy("--", "krvcmd", "quiet", "export", "V", "@33")
        self.assertIn("1 change: 1 exported; exit status 0.", done.stderr)

    def test_fails_the_rehearsal_with_another_library(self):
        folder = self.spy()
        done = self.run_on_copy("--", "env", f"LD_LIBRARY_PATH={folder}", "krvcmd", "quiet", "export", "V", "@33",
                                status=70)
        self.assertTrue(done.stderr.endswith(
            f"krvsim: krvcmd was to run with another client library, {folder}/libkrvSdk64.so\n"), done.stderr)
        self.assertFalse((folder / "called").exists(), "the other library was called")

    def test_must_be_asked_for_where_nothing_can_be_closed_off(self):
        # No program of the name bwrap on the PATH.
        self.environment["PATH"] = str(self.temporary)
        done = subprocess.run([KRVSIM, "run", "--", "/bin/true"], env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual(done.returncode, 70)
        self.assertEqual(done.stderr, "krvsim: the command cannot be closed off: bubblewrap (the program bwrap) is "
                                      "not installed; --not-isolated relies on its environment alone\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
