#!/usr/bin/env python3
"""The Windows programs and servers on other machines: servers_from_windows_test.py LINUX-PROGRAMS WINE KRVCMD KRVADM SSH. The
three Windows programs are krvcmd.exe, krvadm.exe and a program that stands for ssh.exe and reaches this machine's krvadm serve."""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest

LINUX, WINE, KRVCMD, KRVADM, SSH = "", "", "", "", ""


def on_drive(path):
    """Wine shows the root folder as drive Z."""
    return "Z:" + str(path).replace("/", "\\")


class FarSide:
    """A port behind which every connection gets a krvadm serve of its own."""

    def __init__(self, environment, rights):
        self._environment, self._rights = environment, rights
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        self.serving = []
        self._thread = threading.Thread(target=self._accept, daemon=True)
        self._thread.start()

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            with connection:
                self.serving.append(subprocess.Popen([f"{LINUX}/krvadm", "serve", *self._rights], stdin=connection,
                                                     stdout=connection, env=self._environment))

    def close(self):
        # Closing alone would leave the thread waiting, and the next listener may get the same number.
        self._listener.shutdown(socket.SHUT_RDWR)
        self._thread.join()
        self._listener.close()
        for process in self.serving:
            process.wait(timeout=20)


class ServersFromWindows(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in ("farms", "own", "tools", "settings/krvcmd"):
            (self.folder / name).mkdir(parents=True)
        shutil.copy(SSH, self.folder / "tools" / "ssh.exe")
        self.linux = dict(os.environ, KRVSIM_HOME=str(self.folder / "farms"), LC_ALL="C.UTF-8")
        self.windows = dict(os.environ, KRVSIM_HOME=on_drive(self.folder / "own"), LC_ALL="C.UTF-8",
                            WINEPATH=on_drive(self.folder / "tools"))
        self.run_linux("krvsim", "init", "--server", "vault", "--demo")
        self.name = f"archive{os.getpid()}"
        added = self.run_windows(KRVADM, "servers", "add", self.name, "ssh://far/vault")
        self.assertEqual(added[0], 0, added)
        self.addCleanup(self.run_windows, KRVADM, "servers", "remove", self.name)

    def far_side(self, *rights):
        far = FarSide(self.linux, rights)
        self.addCleanup(far.close)
        self.windows["SSH_STAND_IN_PORT"] = str(far.port)
        return far

    def run_linux(self, program, *words):
        done = subprocess.run([f"{LINUX}/{program}", *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, encoding="utf-8", env=self.linux, timeout=60, check=False)
        return done.returncode, done.stdout, done.stderr

    def start_windows(self, program, *words):
        return subprocess.Popen([WINE, program, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, encoding="utf-8", env=self.windows)

    def run_windows(self, program, *words):
        with self.start_windows(program, *words) as process:
            output, error = process.communicate(timeout=120)
        return process.returncode, output, error

    def ask(self, *words):
        return self.run_windows(KRVCMD, "quiet", f"server={self.name}", *words)

    def test_krvcmd_prints_and_changes_what_it_does_there(self):
        self.far_side()
        for words in (["query", "volumes"], ["query", "slots", "J@11"], ["disable", "V", "@33"],
                      ["query", "volumes", "V@33"], ["enable", "V", "@33,99999,34"]):
            here = self.run_linux("krvcmd", "quiet", "server=vault", *words)
            self.assertEqual(self.ask(*words), here, words)

    def test_rights_are_those_of_the_far_side(self):
        self.far_side("--read-only")
        status, _, error = self.ask("disable", "V", "@33")
        self.assertEqual(status, 1095 & 0xFF)
        self.assertTrue(error.startswith("KRV error 1095: "), error)

    def test_failures_have_their_codes(self):
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0))  # and does not listen
            self.windows["SSH_STAND_IN_PORT"] = str(unused.getsockname()[1])
            _, _, error = self.ask("query", "jukeboxes")
        self.assertTrue(error.startswith("KRV error 1082: "), error)
        self.assertIn("Connection refused", error)
        (self.folder / "tools" / "ssh.exe").unlink()
        _, _, error = self.ask("query", "jukeboxes")
        self.assertTrue(error.startswith("KRV error 1080: "), error)

    def test_a_far_side_that_is_killed_is_told(self):
        far = self.far_side()
        self.run_linux("krvsim", "fault", "add", "--server", "vault", "--function", "GetJukebox", "--delay", "20s")
        with self.start_windows(KRVCMD, "quiet", f"server={self.name}", "query", "jukeboxes", "J@8") as process:
            deadline = time.monotonic() + 60
            while not far.serving and time.monotonic() < deadline:
                time.sleep(0.05)
            time.sleep(1)
            far.serving[0].send_signal(signal.SIGKILL)
            _, error = process.communicate(timeout=30)
        self.assertTrue(error.startswith("KRV error 1090: "), error)

    def test_krvadm_lists_servers_and_leaves_changers_to_linux(self):
        self.far_side()
        status, output, _ = self.run_windows(KRVADM, "servers")
        self.assertEqual(status, 0)
        self.assertRegex(output, rf"{self.name} +ssh +ssh://far/vault +1\.0\.0 +answers")
        for words in (["discover"], ["attach", "--server", "x", "--changer", "y"], ["status"]):
            status, _, error = self.run_windows(KRVADM, *words)
            self.assertEqual((status, error.strip()), (1, "krvadm: real jukeboxes are driven on Linux only; run this "
                                                          "command on the machine that has them"))

    def test_a_windows_machine_answers_too(self):
        here = self.run_windows(KRVCMD, "quiet", "server=my_server", "query", "volumes")
        self.assertEqual(here[0], 0, here)
        ssh = self.folder / "ssh"
        ssh.write_text(f'#!/bin/sh\nexport KRVSIM_HOME="{self.windows["KRVSIM_HOME"]}"\n'.replace("\\", "\\\\")
                       + f"exec {WINE} {KRVADM} serve\n")
        ssh.chmod(0o755)
        self.linux.update(PATH=f"{self.folder}:{os.environ['PATH']}", XDG_CONFIG_HOME=str(self.folder / "settings"))
        self.assertEqual(self.run_linux("krvadm", "servers", "add", "windows", "ssh://far/my_server")[0], 0)
        self.assertEqual(self.run_linux("krvcmd", "quiet", "server=windows", "query", "volumes"), here)
        self.assertEqual(self.run_linux("krvcmd", "quiet", "server=windows", "disable", "V@33")[0], 0)
        self.assertIn("disabled", self.run_windows(KRVCMD, "quiet", "server=my_server", "query", "volumes", "V@33")[1])


if __name__ == "__main__":
    LINUX, WINE, KRVCMD, KRVADM, SSH = (str(pathlib.Path(word).resolve()) for word in sys.argv[1:6])
    unittest.main(argv=sys.argv[:1] + sys.argv[6:])
