"""Several administrators of one machine share its real jukeboxes: the state folder of the group.

The folder is on the machine under test only: the programs run where /var/lib is another folder.
"""
import os
import shutil
import subprocess
import tempfile
import unittest

from jukebox_fixture import KRVADM, KRVCMD, KRVSIM, MAIL_SLOT, SLOT, JukeboxTest, main

SHARED = "/var/lib/krvcmd"
# The programs as everybody may run them, whoever owns the folder that they were built in.
BUILD, PROGRAMS = os.path.dirname(os.path.dirname(os.path.abspath(KRVCMD))), "/var/lib/programs"
GROUP = 64321  # has no name on any machine
MEMBER, SECOND_MEMBER, STRANGER = 64322, 64323, 64324


def can_close_off():
    return os.getuid() == 0 and shutil.which("bwrap") and shutil.which("setpriv") and subprocess.run(
        ["bwrap", "--dev-bind", "/", "/", "true"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        check=False).returncode == 0


@unittest.skipUnless(can_close_off(), "needs root, bwrap and setpriv")
class SharedState(JukeboxTest):
    def setUp(self):
        super().setUp()
        self.shared = tempfile.mkdtemp(prefix="krvcmd-shared-")
        self.addCleanup(shutil.rmtree, self.shared, ignore_errors=True)
        self.open_to_the_group(0o2771)
        del self.environment["KRVSIM_HOME"]
        for name in ("XDG_STATE_HOME", "XDG_CONFIG_HOME"):
            self.environment.pop(name, None)
        # Everybody has a home folder of their own.
        os.chmod(self.home, 0o755)
        for user in (MEMBER, SECOND_MEMBER, STRANGER):
            os.mkdir(self.home_of(user))
            os.chown(self.home_of(user), user, user)

    def open_to_the_group(self, mode):
        os.chown(self.shared, 0, GROUP)
        os.chmod(self.shared, mode)

    def home_of(self, user):
        return os.path.join(self.home, str(user))

    def run_as(self, user, program, *words, **environment):
        groups = ["--clear-groups"] if user == STRANGER else [f"--groups={GROUP}"]
        return subprocess.run(
            ["bwrap", "--dev-bind", "/", "/", "--tmpfs", "/var/lib", "--bind", self.shared, SHARED, "--ro-bind", BUILD,
             PROGRAMS, "--", "setpriv", f"--reuid={user}", f"--regid={user}", *groups,
             os.path.join(PROGRAMS, "bin", os.path.basename(program)), *map(str, words)],
            env={**self.environment, "HOME": self.home_of(user), **environment}, text=True, capture_output=True,
            timeout=120, check=False)

    def works(self, user, program, *words, **environment):
        done = self.run_as(user, program, *words, **environment)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout

    def attach_as(self, user, server="tower"):
        return self.works(user, KRVADM, "attach", "--server", server, "--changer", self.jukebox.address,
                          "--name", "Tower")

    def test_is_used_by_every_member(self):
        self.attach_as(MEMBER)
        self.assertIn("server-tower.db", os.listdir(self.shared))
        for name in os.listdir(self.shared):
            status = os.stat(os.path.join(self.shared, name))
            self.assertEqual((status.st_mode & 0o777, status.st_gid), (0o660, GROUP), name)
        self.works(SECOND_MEMBER, KRVCMD, "quiet", "server=tower", "export", "J", "Tower", "S2")
        self.assertEqual(self.jukebox.elements()[MAIL_SLOT], "D000002")
        self.works(MEMBER, KRVCMD, "quiet", "server=tower", "import", "J", "Tower", "S5")
        self.assertEqual(self.jukebox.elements()[SLOT + 4], "D000002")
        self.assertIn("agrees with its jukeboxes", self.works(SECOND_MEMBER, KRVADM, "check", "--server", "tower"))

    def test_tells_a_stranger_who_may_use_it(self):
        self.attach_as(MEMBER)
        refused = self.run_as(STRANGER, KRVCMD, "quiet", "server=tower", "query", "jukeboxes")
        self.assertEqual(refused.stdout + refused.stderr,
                         f'KRV error 1061: The farm file "{SHARED}/server-tower.db" cannot be opened: only members of '
                         f'the group "{GROUP}" may use it; have yourself added to it and log in again.\n')
        self.assertEqual(refused.returncode, 1061 & 0xFF)

    def test_tells_a_stranger_who_may_attach(self):
        refused = self.run_as(STRANGER, KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address)
        self.assertEqual((refused.returncode, refused.stderr),
                         (1, f'krvadm: The folder for the farms, "{SHARED}", cannot be used: only members of the group '
                             f'"{GROUP}" may use it; have yourself added to it and log in again.\n'))
        self.assertEqual(os.listdir(self.shared), [])

    def test_leaves_a_stranger_simulated_farms(self):
        self.attach_as(MEMBER)
        self.works(STRANGER, KRVCMD, "quiet", "query", "jukeboxes")
        self.works(STRANGER, KRVSIM, "init", "--server", "rehearsal")
        self.works(STRANGER, KRVCMD, "quiet", "server=rehearsal", "query", "jukeboxes")
        listed = self.works(STRANGER, KRVSIM, "servers")
        self.assertIn("rehearsal", listed)
        self.assertNotIn("tower", listed)
        self.assertEqual([name for name in os.listdir(self.shared) if "tower" not in name], [])

    def test_that_strangers_cannot_look_into_is_named_where_a_server_is_not_known(self):
        self.open_to_the_group(0o2770)
        self.works(STRANGER, KRVCMD, "quiet", "query", "jukeboxes")
        refused = self.run_as(STRANGER, KRVCMD, "quiet", "server=tower", "query", "jukeboxes")
        self.assertEqual(refused.stdout + refused.stderr,
                         f'KRV error 1060: The folder for the farms, "{SHARED}", cannot be used: only members of the '
                         f'group "{GROUP}" may use it; have yourself added to it and log in again.\n')

    def test_comes_before_the_folder_of_the_user(self):
        self.works(SECOND_MEMBER, KRVSIM, "init", "--server", "tower")
        self.attach_as(MEMBER)
        self.assertIn("Tower", self.works(SECOND_MEMBER, KRVCMD, "quiet", "server=tower", "query", "jukeboxes"))
        refused = self.run_as(SECOND_MEMBER, KRVSIM, "init", "--server", "tower", "--force")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("attached to real jukeboxes", refused.stderr)
        self.assertEqual(self.works(MEMBER, KRVSIM, "servers").count("tower"), 1)

    def test_has_no_server_with_the_name_of_a_simulated_one_of_the_same_user(self):
        self.works(MEMBER, KRVSIM, "init", "--server", "tower")
        refused = self.run_as(MEMBER, KRVADM, "attach", "--server", "tower", "--changer", self.jukebox.address)
        self.assertEqual((refused.returncode, refused.stderr),
                         (1, 'krvadm: server "tower" has a simulated farm; choose another server\n'))
        self.assertEqual(os.listdir(self.shared), [])

    def test_does_not_count_where_another_folder_is_chosen(self):
        self.attach_as(MEMBER)
        chosen = {"KRVSIM_HOME": self.home_of(MEMBER)}
        unknown = self.run_as(MEMBER, KRVCMD, "quiet", "server=tower", "query", "jukeboxes", **chosen)
        self.assertIn('Server "tower" is not known', unknown.stdout + unknown.stderr)
        self.works(MEMBER, KRVADM, "attach", "--server", "other", "--changer", self.jukebox.address, **chosen)
        self.assertIn("server-other.db", os.listdir(self.home_of(MEMBER)))
        self.assertNotIn("server-other.db", os.listdir(self.shared))

    def test_is_rehearsed_on_a_private_copy(self):
        self.attach_as(MEMBER)
        self.works(MEMBER, KRVCMD, "quiet", "server=tower", "scan", "J", "Tower", "S1-3")
        folder = self.works(MEMBER, KRVSIM, "library").strip()
        self.works(MEMBER, KRVSIM, "clone", "--library", os.path.join(folder, "libkrvSdk64.so"), "--from", "tower",
                   "--to", "copy")
        self.assertNotIn("server-copy.db", os.listdir(self.shared))
        before = self.jukebox.elements()
        self.works(MEMBER, KRVCMD, "quiet", "server=copy", "export", "J", "Tower", "S1")
        self.assertEqual(self.jukebox.elements(), before)


main()
