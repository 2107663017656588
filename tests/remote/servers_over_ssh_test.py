#!/usr/bin/env python3
"""Servers on other machines, through a real sshd: servers_over_ssh_test.py PROGRAM-DIRECTORY LIBRARY."""
import os
import pathlib
import shlex
import signal
import subprocess
import sys
import time
import unittest

from remote_machine import RemoteTest

LIBRARY = ""
ODD_NAMES = ["-oProxyCommand=touch hacked", "a b", 'say "yes"', "it's", "$(touch hacked)", "`touch hacked`", "a;b|c&d",
             "ünïcode"]


class Fixture(RemoteTest):
    def local(self, *words):
        return self.machine.local(self.desk, *words)

    def make_farm(self, server):
        made = self.local("krvsim", "init", "--server", server, "--demo", "--force")
        self.assertEqual(made.status, 0, made)

    def add(self, name, place):
        added = self.desk.run("krvadm", "servers", "add", "--", name, place)
        self.assertEqual(added.status, 0, added)

    def expect_same(self, *words, server="vault", name="archive"):
        """A command on the other machine ends and prints as on that machine itself."""
        here = self.local("krvcmd", f"server={server}", *words)
        there = self.desk.run("krvcmd", f"server={name}", *words)
        for part in ("status", "output"):
            self.assertEqual(getattr(there, part), getattr(here, part), (words, here, there))
        self.assertEqual(there.error.replace(name, server), here.error, words)
        return there


class ServersOverSsh(Fixture):
    def setUp(self):
        super().setUp()
        self.make_farm("vault")
        self.add("archive", self.machine.place("vault"))

    def test_queries_print_what_they_print_there(self):
        for words in (["query", "jukeboxes"], ["query", "volumes"], ["query", "volumes", "V", "@33"],
                      ["query", "slots", "J@8"], ["query", "slots", "J@11", "M1"], ["query", "drives", "J@8"],
                      ["query", "magazines", "J@31"], ["query", "volumes", "J@8"], ["query", "volumes", "V@99999"],
                      ["query", "slots", "J@777"]):
            self.expect_same(*words)

    def test_changes_are_made_there_and_refused_as_there(self):
        self.assertEqual(self.expect_same("disable", "V", "@33").status, 0)
        self.assertIn("disabled", self.local("krvcmd", "server=vault", "query", "volumes", "V@33").output)
        self.assertEqual(self.expect_same("enable", "V", "@33,34").status, 0)
        self.assertNotEqual(self.expect_same("enable", "V", "@33,99999,34").status, 0)
        self.expect_same("name", "J@8", "new=Tower one")
        self.assertEqual(self.desk.run("krvcmd", "server=archive", "export", "J@11", "M1", "S1").status, 0)
        self.assertIn("KRV error 501: ", self.expect_same("export", "J@11", "M1", "S1").error)
        self.expect_same("scan", "J@11", "M1")

    def test_a_fault_of_the_farm_ends_a_list_where_it_does_there(self):
        added = self.local("krvsim", "fault", "add", "--server", "vault", "--function", "VolumeActivate", "--volume", "34",
                           "--code", "556", "--text", "stuck", "--times", "2")
        self.assertEqual(added.status, 0, added)
        self.assertIn("KRV error 556: stuck", self.expect_same("enable", "V", "@33,34,35").error)

    def test_the_service_is_stopped_and_started_there(self):
        self.assertEqual(self.desk.run("krvcmd", "server=archive", "service", "stop").status, 0)
        self.assertIn("KRV error 1011", self.expect_same("query", "jukeboxes").error)
        self.assertEqual(self.desk.run("krvcmd", "server=archive", "service", "start").status, 0)
        self.assertEqual(self.expect_same("query", "jukeboxes").status, 0)

    def test_a_farm_with_faults_fails_call_by_call(self):
        added = self.local("krvsim", "fault", "add", "--server", "vault", "--function", "VolumeDetail", "--volume", "34",
                           "--code", "555", "--text", "worn out")
        if added.status:
            self.skipTest(str(added))
        self.assertIn("KRV error 555", self.expect_same("query", "volumes").error)

    def test_no_name_becomes_an_option_or_a_word_for_a_shell(self):
        for name in ODD_NAMES:
            self.add(name, self.machine.place("vault"))
            self.expect_same("query", "jukeboxes", name=name)
        listed = self.desk.run("krvadm", "servers").output
        for name in ODD_NAMES:
            self.assertIn(name, listed)
            self.assertEqual(self.desk.run("krvadm", "servers", "remove", "--", name).status, 0)
        self.assertEqual(list(self.desk.folder.rglob("hacked")) + list(pathlib.Path(".").glob("hacked")), [])
        for name in ("a\nb", "", "x" * 65, "tab\there"):
            self.assertEqual(self.desk.run("krvadm", "servers", "add", "--", name, "ssh://h").status, 2, name)
        for place in ("ssh://-oProxyCommand=x", "ssh://a b", "ssh://$(x)", "ssh://a\nb", "a", "ssh://a/%zz"):
            self.assertEqual(self.desk.run("krvadm", "servers", "add", "--", "new", place).status, 2, place)

    def test_the_list_of_servers_keeps_what_others_wrote(self):
        file = self.desk.folder / "config" / "krvcmd" / "servers.toml"
        file.write_text('# ours\n[[server]]\nplace = "ssh://a"\nname = "one"\n\n# the second\n[[server]]\n'
                        'name = "two"\nplace = "ssh://b/x"\n', encoding="utf-8")
        self.add("three", "ssh://c")
        self.assertEqual(self.desk.run("krvadm", "servers", "remove", "one").status, 0)
        self.assertEqual(file.read_text(encoding="utf-8"),
                         '# ours\n# the second\n[[server]]\nname = "two"\nplace = "ssh://b/x"\n\n'
                         '[[server]]\nname = "three"\nplace = "ssh://c"\n')
        self.assertEqual(self.desk.run("krvadm", "servers", "remove", "one").status, 1)
        self.assertEqual(self.desk.run("krvadm", "servers", "add", "two", "ssh://c").status, 1)
        self.assertEqual(self.desk.run("krvadm", "servers", "add", "my_server", "ssh://c").status, 1)
        file.write_text("[[server]]\nname = 3\n", encoding="utf-8")
        refused = self.desk.run("krvcmd", "server=two", "query", "jukeboxes")
        self.assertIn("KRV error 1096", refused.error)
        file.write_text("[[server]]\nname = ü\n", encoding="utf-8")
        refused = self.desk.run("krvcmd", "server=two", "query", "jukeboxes")
        self.assertIn("servers.toml:2: unexpected non-ASCII character", refused.error)
        self.assertEqual(self.desk.run("krvcmd", "query", "jukeboxes").status, 0)

    def test_what_a_key_may_do_depends_on_the_key(self):
        self.make_farm("cellar")
        self.add("cellar-there", self.machine.place("cellar"))
        self.desk.use_as_ssh(self.machine.ssh("looks"))
        self.assertEqual(self.expect_same("query", "volumes").status, 0)
        for words in (["disable", "V", "@33"], ["service", "stop"], ["service", "start"], ["scan", "J@11", "M1", "S1"]):
            refused = self.desk.run("krvcmd", "server=archive", *words)
            self.assertIn("KRV error 1095: ", refused.error, refused)
        self.add("demonstration", self.machine.place("my_server"))
        self.assertIn("KRV error 1010: ", self.desk.run("krvcmd", "server=demonstration", "query", "drives").error)
        self.assertFalse((self.machine.farms / "server-my_server.db").exists())
        self.desk.use_as_ssh(self.machine.ssh("vault"))
        self.assertEqual(self.expect_same("query", "volumes").status, 0)
        self.assertIn('KRV error 1010: Server "cellar" is not known.',
                      self.desk.run("krvcmd", "server=cellar-there", "query", "volumes").error)
        self.add("whichever", self.machine.place())
        self.expect_same("disable", "V", "@34", name="whichever")

    def test_krvsim_reads_such_servers(self):
        library = ["--library", LIBRARY, "--from", "archive"]
        cloned = self.desk.run("krvsim", "clone", *library, "--to", "copy")
        self.assertEqual(cloned.status, 0, cloned)
        there = self.desk.run("krvsim", "dump", *library)
        self.assertEqual(there.status, 0, there)
        here = self.local("krvsim", "dump", "--library", LIBRARY, "--from", "vault")
        self.assertEqual(there.output.replace('"archive"', '"vault"'), here.output)

        same = self.desk.run("krvsim", "diff", "copy", *library)
        self.assertEqual((same.status, same.output), (0, ""), same)
        self.assertEqual(self.local("krvcmd", "server=vault", "disable", "V@33").status, 0)
        different = self.desk.run("krvsim", "diff", "copy", *library)
        self.assertEqual(different.status, 1, different)
        self.assertIn("33", different.output)

    def test_krvsim_rehearses_on_a_copy_of_such_a_server(self):
        ran = self.desk.run("krvsim", "run", "--from-library", LIBRARY, "--from", "archive", "--not-isolated", "--",
                            "krvcmd", "quiet", "disable", "V@33")
        self.assertEqual(ran.status, 0, ran)
        self.assertIn("disabled", ran.output + ran.error)
        state = self.local("krvcmd", "quiet", "server=vault", "query", "volumes", "V@33", "notable", "columns=o")
        self.assertEqual(state.output, "active\n", state)

    def test_servers_tells_which_ones_answer(self):
        self.add("nowhere", "ssh://127.0.0.1:1/x")
        listed = self.desk.run("krvadm", "servers")
        self.assertEqual(listed.status, 0, listed)
        rows = {line.split()[0]: line for line in listed.output.splitlines()}
        self.assertRegex(rows["archive"], r"ssh +ssh://127.0.0.1:\d+/vault +1\.0\.0 +answers")
        self.assertRegex(rows["nowhere"], r"ssh +ssh://127.0.0.1:1/x +- .*Connection refused")
        self.assertRegex(rows["."], r"local")

    def test_no_process_and_no_lock_stays(self):
        process = self.desk.start("krvsim", "dump", "--library", LIBRARY, "--from", "archive")
        process.send_signal(signal.SIGKILL)
        process.communicate()
        deadline = time.monotonic() + 10
        while self.machine.serving() and time.monotonic() < deadline:
            time.sleep(0.1)
        self.assertEqual(self.machine.serving(), [])
        self.assertEqual(self.local("krvcmd", "server=vault", "disable", "V@33").status, 0)


class Failures(Fixture):
    def query(self, place, **changes):
        self.desk.environment.update(changes)
        self.desk.run("krvadm", "servers", "remove", "archive")
        self.add("archive", place)
        return self.desk.run("krvcmd", "quiet", "server=archive", "query", "jukeboxes")

    def expect(self, outcome, code, *texts, seconds=15):
        self.assertEqual(outcome.status, code & 0xFF, outcome)
        self.assertTrue(outcome.error.startswith(f"KRV error {code}: "), outcome)
        self.assertEqual(outcome.error.count("\n"), 1, outcome)
        for text in texts:
            self.assertIn(text, outcome.error)
        self.assertLess(outcome.seconds, seconds)

    def test_each_failure_of_ssh_has_a_code_and_what_ssh_said(self):
        self.expect(self.query("ssh://no.such.host.invalid"), 1081, '"no.such.host.invalid"', "resolve hostname")
        self.expect(self.query("ssh://127.0.0.1:1"), 1082, "Connection refused")
        self.desk.use_as_ssh(self.machine.ssh("stranger"))
        self.expect(self.query(self.machine.place()), 1084, "Permission denied")
        self.desk.use_as_ssh(self.machine.ssh().replace(f"{self.machine.folder}/known_hosts", "/dev/null"))
        self.expect(self.query(self.machine.place()), 1083, "Host key verification failed")

    def test_a_wanted_password_is_refused_and_never_asked_for(self):
        self.desk.use_as_ssh(self.machine.ssh("stranger"))
        self.expect(self.query(self.machine.place()), 1084, "Permission denied (publickey,password)")
        # Nor on a terminal, or in a window.
        line = shlex.join([f"{self.PROGRAMS}/krvcmd", "quiet", "server=archive", "query", "jukeboxes"])
        done = subprocess.run(["script", "--quiet", "--return", "--command", line, "/dev/null"], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, encoding="utf-8", timeout=30, check=False,
                              env=dict(self.desk.environment, DISPLAY=":9", SSH_ASKPASS="/bin/false"))
        self.assertEqual(done.returncode, 1084 & 0xFF, done)
        self.assertRegex(done.stdout, r"\AKRV error 1084: [^\n]*Permission denied[^\n]*\n\Z")

    def test_what_ssh_says_fills_no_pipe_and_stays_out_of_the_output(self):
        self.make_farm("vault")
        self.add("archive", self.machine.place("vault"))
        self.desk.use_as_ssh(self.machine.ssh().replace("exec ", "yes nonsense | head -c 1000000 >&2\nexec ", 1))
        outcome = self.desk.run("krvcmd", "quiet", "server=archive", "query", "jukeboxes", "J@8")
        self.assertEqual((outcome.status, outcome.error), (0, ""), outcome)

    def test_a_machine_without_krvadm_is_told(self):
        bare = self.machine.ssh().rstrip("\n").removesuffix('"$@"') + '$(echo "$@" | sed "s/krvadm serve/no_krvadm/")\n'
        self.desk.use_as_ssh(bare)
        self.expect(self.query(self.machine.place()), 1085, "not found")

    def test_without_ssh_it_is_told(self):
        self.add("archive", "ssh://archive")
        outcome = self.desk.run("krvcmd", "quiet", "server=archive", "query", "jukeboxes", PATH="/nowhere")
        self.expect(outcome, 1080, "No such file")

    def script(self, name):
        words = ["/usr/bin/python3", str(pathlib.Path(__file__).with_name("scripted_ssh.py")), name,
                 str(self.desk.folder), self.PROGRAMS, str(self.machine.farms)]
        self.desk.use_as_ssh(f'#!/bin/sh\nexec {shlex.join(words)} "$@"\n')

    def test_releases_that_do_not_understand_each_other_say_which_to_update(self):
        self.make_farm("vault")
        self.script("newer")
        self.expect(self.query("ssh://far/vault"), 1089, "This machine's krvcmd must be updated", "9.1.2")
        self.script("older")
        self.expect(self.query("ssh://far/vault"), 1088, "archive\" must be updated", "0.9.9")
        self.script("both")
        self.assertEqual(self.query("ssh://far/vault").status, 0)

    def test_what_is_not_the_protocol_is_refused(self):
        self.script("noise")
        self.expect(self.query("ssh://far"), 1087, "Welcome to archive!")
        self.script("bomb")
        self.expect(self.query("ssh://far"), 1087, "nested too deeply")

    def test_silence_ends(self):
        self.add("archive", "ssh://far")
        self.script("deaf")
        self.expect(self.desk.run("krvcmd", "quiet", "server=archive", "query", "jukeboxes"), 1091,
                    "15 seconds", seconds=20)

    def test_a_lost_change_is_known_or_in_doubt_and_never_made_twice(self):
        self.add("archive", "ssh://far/vault")
        disabled = lambda: "disabled" in self.local("krvcmd", "server=vault", "query", "volumes", "V@33").output
        for script, code, is_made in (("lose-before", 1093, False), ("lose-after", 1092, True),
                                      ("lose-for-good", 1094, True)):
            self.make_farm("vault")
            (self.desk.folder / "lost").unlink(missing_ok=True)
            self.script(script)
            outcome = self.desk.run("krvcmd", "quiet", "server=archive", "disable", "V@33")
            self.expect(outcome, code, "the line was cut")
            self.assertEqual(disabled(), is_made, script)

    def test_a_change_that_was_made_is_made_whatever_else_the_answer_says(self):
        self.make_farm("vault")
        self.add("archive", "ssh://far/vault")
        self.script("nonsense-ahead")
        self.assertEqual(self.desk.run("krvcmd", "quiet", "server=archive", "disable", "V@33").status, 0)
        self.expect(self.desk.run("krvcmd", "quiet", "server=archive", "disable", "V@34,273"), 1087)
        rows = self.local("krvcmd", "quiet", "server=vault", "query", "volumes", "V@33,34,273", "notable", "columns=o")
        self.assertEqual(rows.output.split(), ["disabled", "disabled", "active"])

    def test_a_lost_start_of_the_service_is_known_too(self):
        self.add("archive", "ssh://far/vault")
        for script, code, is_made in (("lose-before", 1093, False), ("lose-after", 1092, True),
                                      ("lose-for-good", 1094, True)):
            self.make_farm("vault")
            self.assertEqual(self.local("krvcmd", "quiet", "server=vault", "service", "stop").status, 0)
            (self.desk.folder / "lost").unlink(missing_ok=True)
            self.script(script)
            outcome = self.desk.run("krvcmd", "quiet", "server=archive", "service", "start")
            self.expect(outcome, code, "the line was cut")
            runs = self.local("krvcmd", "quiet", "server=vault", "query", "jukeboxes").status == 0
            self.assertEqual(runs, is_made, script)

    def test_a_stopped_server_is_given_up(self):
        self.make_farm("vault")
        self.local("krvsim", "fault", "add", "--server", "vault", "--function", "GetJukebox", "--delay", "4000ms")
        self.add("archive", self.machine.place("vault"))
        process = self.desk.start("krvcmd", "quiet", "server=archive", "query", "jukeboxes", "J@8")
        deadline = time.monotonic() + 10
        while not self.machine.serving() and time.monotonic() < deadline:
            time.sleep(0.05)
        time.sleep(0.5)
        for number in self.machine.serving():
            os.kill(number, signal.SIGSTOP)
        begin = time.monotonic()
        _, error = process.communicate(timeout=40)
        self.assertTrue(error.startswith("KRV error 1091: "), error)
        self.assertLess(time.monotonic() - begin, 22)
        for number in self.machine.serving():
            os.kill(number, signal.SIGKILL)

    def test_a_killed_server_is_told(self):
        self.make_farm("vault")
        self.local("krvsim", "fault", "add", "--server", "vault", "--function", "GetJukebox", "--delay", "8000ms")
        self.add("archive", self.machine.place("vault"))
        process = self.desk.start("krvcmd", "quiet", "server=archive", "query", "jukeboxes", "J@8")
        deadline = time.monotonic() + 10
        while not self.machine.serving() and time.monotonic() < deadline:
            time.sleep(0.05)
        time.sleep(0.5)
        for number in self.machine.serving():
            os.kill(number, signal.SIGKILL)
        _, error = process.communicate(timeout=20)
        self.assertTrue(error.startswith("KRV error 1090: "), error)

    def test_an_interrupt_lets_the_call_finish_and_ends_ssh(self):
        self.make_farm("vault")
        self.local("krvsim", "fault", "add", "--server", "vault", "--function", "VolumeDeactivate", "--delay", "2500ms")
        self.add("archive", self.machine.place("vault"))
        process = subprocess.Popen([f"{self.PROGRAMS}/krvcmd", "quiet", "server=archive", "disable", "V@33,34"],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   encoding="utf-8", env=self.desk.environment, start_new_session=True)
        deadline = time.monotonic() + 10
        while not self.machine.serving() and time.monotonic() < deadline:
            time.sleep(0.05)
        time.sleep(1)
        os.killpg(process.pid, signal.SIGINT)
        _, error = process.communicate(timeout=20)
        self.assertEqual(process.returncode, 4, error)
        rows = self.local("krvcmd", "quiet", "server=vault", "query", "volumes", "V@33,34", "notable", "columns=o").output
        self.assertIn(rows.split(), (["disabled", "active"], ["active", "active"]), rows)
        time.sleep(0.5)
        self.assertEqual(self.machine.serving(), [])


if __name__ == "__main__":
    RemoteTest.PROGRAMS = str(pathlib.Path(sys.argv[1]).resolve())
    LIBRARY = str(pathlib.Path(sys.argv[2]).resolve())
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
