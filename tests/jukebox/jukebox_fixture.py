"""An emulated jukebox, and the programs on a state folder of their own."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import element_status

KRVCMD, KRVADM, KRVSIM, SCRIPT = sys.argv[1:5]
SLOT, MAIL_SLOT, DRIVE = 1024, 768, 256  # first element addresses


class Jukebox:
    def __init__(self, options):
        self.folder = tempfile.mkdtemp(prefix="jukebox-")
        self.address = self.run("start", *options.split())

    def run(self, command, *words):
        done = subprocess.run([SCRIPT, command, self.folder, *map(str, words)], text=True, capture_output=True)
        if done.returncode != 0:
            raise RuntimeError(f"emulated_jukebox {command}: {done.stderr}")
        return done.stdout.strip()

    def disc(self, name):
        return os.path.join(self.folder, "discs", name)

    def elements(self):
        return element_status.elements(self.address)

    def stop(self):
        self.run("stop")
        shutil.rmtree(self.folder, ignore_errors=True)


class JukeboxTest(unittest.TestCase):
    OPTIONS = "--slots 8 --drives 2 --mailslots 2 --discs 3"

    def setUp(self):
        self.jukebox = Jukebox(self.OPTIONS)
        self.addCleanup(self.jukebox.stop)
        self.home = tempfile.mkdtemp(prefix="krvcmd-state-")
        self.addCleanup(shutil.rmtree, self.home, ignore_errors=True)
        self.environment = {**os.environ, "KRVSIM_HOME": self.home, "LC_ALL": "C.UTF-8"}

    def start(self, program, *words):
        return subprocess.Popen([program, *map(str, words)], env=self.environment, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def run_program(self, program, *words):
        return subprocess.run([program, *map(str, words)], env=self.environment, text=True, capture_output=True,
                              timeout=120)

    def adm(self, *words):
        """What krvadm prints; it must succeed."""
        done = self.run_program(KRVADM, *words)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def attach(self, *words):
        return self.adm("attach", "--server", "tower", "--changer", self.jukebox.address, "--name", "Tower", *words)

    def cmd(self, *words, status=0):
        """What krvcmd prints about server "tower"."""
        done = self.run_program(KRVCMD, "quiet", "server=tower", *words)
        self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return done.stdout

    def rows(self, *words):
        """The rows of a query as lists of cells."""
        lines = self.cmd("query", *words, "notable", "sep=|").splitlines()
        return [[cell.strip() for cell in line.split("|")] for line in lines if line]

    def check(self):
        self.assertIn("agrees with its jukeboxes", self.adm("check", "--server", "tower"))

    def blkid(self, disc):
        """Type and label of a disc's file, by blkid."""
        done = subprocess.run(["blkid", "-p", self.jukebox.disc(disc)], text=True, capture_output=True,
                              env={**os.environ, "PATH": os.environ["PATH"] + ":/usr/sbin:/sbin"})
        return dict(re.findall(r'(\w+)="([^"]*)"', done.stdout))


def main():
    unittest.main(argv=sys.argv[:1] + sys.argv[5:], verbosity=2)


__all__ = ["Jukebox", "JukeboxTest", "main", "KRVCMD", "KRVADM", "KRVSIM", "SLOT", "MAIL_SLOT", "DRIVE"]
