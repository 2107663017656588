"""Another machine, as far as ssh can tell: an sshd of its own on a free port of this one, with its own farms."""
import os
import pathlib
import shlex
import signal
import socket
import subprocess
import tempfile
import time
import unittest

SSHD = "/usr/sbin/sshd"


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def name_of(process):
    """The name of the program that a process runs; empty when it has ended."""
    try:
        return pathlib.Path(f"/proc/{process}/comm").read_text(encoding="utf-8").strip()
    except OSError:
        return ""


def is_copy(process):
    """Whether its parent runs the same program. LeakSanitizer looks at a process from a copy of it: whoever
    kills the copy makes the process wait forever."""
    try:
        status = pathlib.Path(f"/proc/{process}/status").read_text(encoding="utf-8")
    except OSError:
        return False
    parent = next(line.split()[1] for line in status.splitlines() if line.startswith("PPid:"))
    return name_of(parent) == name_of(process)


class Outcome:
    """How one run ended."""

    def __init__(self, done, seconds):
        self.status, self.output, self.error, self.seconds = done.returncode, done.stdout, done.stderr, seconds

    def __repr__(self):
        return f"status {self.status} after {self.seconds:.1f} s\n{self.output}\n{self.error}"


class Desk:
    """The administrator's machine: krvcmd, krvadm and krvsim with a folder of settings and farms of its own."""

    def __init__(self, programs):
        self.programs = pathlib.Path(programs).resolve()
        self._folder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._folder.name)
        (self.folder / "farms").mkdir()
        self.tools = self.folder / "tools"
        self.tools.mkdir()
        self.environment = dict(os.environ, KRVSIM_HOME=str(self.folder / "farms"), LC_ALL="C.UTF-8",
                                XDG_CONFIG_HOME=str(self.folder / "config"), HOME=str(self.folder),
                                PATH=f"{self.tools}:{self.programs}:/usr/bin:/bin")
        self.environment.pop("LD_LIBRARY_PATH", None)
        self.environment.pop("SSH_AUTH_SOCK", None)

    def close(self):
        self._folder.cleanup()

    def use_as_ssh(self, text):
        """Puts a program named ssh in front of the system's; its text begins with "#!"."""
        program = self.tools / "ssh"
        program.write_text(text, encoding="utf-8")
        program.chmod(0o755)

    def start(self, *words, **changes):
        return subprocess.Popen([str(self.programs / words[0]), *words[1:]], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", errors="replace",
                                env=dict(self.environment, **changes))

    def run(self, *words, **changes):
        begin = time.monotonic()
        with self.start(*words, **changes) as process:
            try:
                output, error = process.communicate(timeout=120)
            except subprocess.TimeoutExpired:
                process.kill()
                raise
        done = subprocess.CompletedProcess(words, process.returncode, output, error)
        return Outcome(done, time.monotonic() - begin)


class RemoteMachine:
    """An sshd with keys and a configuration of its own. Each login may do what `command` says for its key."""

    def __init__(self, programs):
        self.programs = pathlib.Path(programs).resolve()
        self._folder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._folder.name)
        self.farms = self.folder / "farms"
        self.farms.mkdir()
        self.port = free_port()
        self.keys = {}
        self._authorized = ""
        self._make_key("host")
        for name, command in [("all", None), ("looks", "krvadm serve --read-only"),
                              ("vault", "krvadm serve --only vault"), ("stranger", "")]:
            self.add_key(name, command)
        self._write_settings()
        self._start()

    def _make_key(self, name):
        subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", str(self.folder / name)], check=True)
        return (self.folder / f"{name}.pub").read_text(encoding="utf-8").strip()

    def add_key(self, name, command):
        """A key whose login runs the command whatever it asks for; None: what it asks for; "": no login."""
        public = self._make_key(name)
        if command != "":
            forced = "" if command is None else f'restrict,command="{command}" '
            self._authorized += f"{forced}{public}\n"
        (self.folder / "authorized_keys").write_text(self._authorized, encoding="utf-8")

    def _write_settings(self):
        path = f"{self.programs}:/usr/bin:/bin"
        # The start-up files of the user who runs the tests do not belong to this machine, and may take their time.
        home = self.folder / "home"
        home.mkdir()
        self.settings = self.folder / "sshd_config"
        self.settings.write_text(
            f"Port {self.port}\nListenAddress 127.0.0.1\nHostKey {self.folder}/host\nPidFile none\n"
            f"AuthorizedKeysFile {self.folder}/authorized_keys\nStrictModes no\nUsePAM no\n"
            "PasswordAuthentication yes\nKbdInteractiveAuthentication no\nPermitRootLogin yes\n"
            "MaxStartups 200\nMaxSessions 200\nClientAliveInterval 5\nClientAliveCountMax 3\n"
            f"SetEnv KRVSIM_HOME={self.farms} HOME={home} PATH={path}\n", encoding="utf-8")
        (self.folder / "known_hosts").write_text(
            f"[127.0.0.1]:{self.port} {(self.folder / 'host.pub').read_text(encoding='utf-8')}", encoding="utf-8")

    def _start(self):
        if os.geteuid() == 0:
            pathlib.Path("/run/sshd").mkdir(exist_ok=True)
        self._log = open(self.folder / "log", "w", encoding="utf-8")
        self._sshd = subprocess.Popen([SSHD, "-D", "-e", "-f", str(self.settings)], stdin=subprocess.DEVNULL,
                                      stdout=self._log, stderr=self._log)
        for _ in range(200):
            with socket.socket() as probe:
                if probe.connect_ex(("127.0.0.1", self.port)) == 0:
                    return
            time.sleep(0.05)
        raise RuntimeError("sshd does not start: " + (self.folder / "log").read_text(encoding="utf-8"))

    def close(self):
        self._sshd.send_signal(signal.SIGTERM)
        self._sshd.wait()
        self._log.close()
        self._folder.cleanup()

    def ssh(self, key="all", port=None):
        """The text of an ssh that knows this machine and logs in with the key."""
        # The default way to agree on a key takes ten times as much time of the processor as all the rest.
        words = ["/usr/bin/ssh", "-F", "none", "-o", "KexAlgorithms=curve25519-sha256", "-i", str(self.folder / key),
                 "-o", "IdentitiesOnly=yes", "-o", f"UserKnownHostsFile={self.folder}/known_hosts", "-o", "GlobalKnownHostsFile=none",
                 "-o", "HostKeyAlias=machine" if port else "ServerAliveInterval=5"]
        if port:
            host = (self.folder / "host.pub").read_text(encoding="utf-8")
            with open(self.folder / "known_hosts", "a", encoding="utf-8") as known:
                known.write(f"machine {host}")
        return f'#!/bin/sh\nexec {shlex.join(words)} "$@"\n'

    def place(self, server="", port=None):
        return f"ssh://127.0.0.1:{port or self.port}" + (f"/{server}" if server else "")

    def local(self, desk, *words):
        """Runs a program on this machine's own farms."""
        return desk.run(*words, KRVSIM_HOME=str(self.farms))

    def serving(self):
        """The process numbers of the krvadm that serve this machine's farms."""
        numbers = []
        for entry in pathlib.Path("/proc").iterdir():
            if not entry.name.isdigit():
                continue
            try:
                words = (entry / "cmdline").read_bytes().split(b"\0")
                environment = (entry / "environ").read_bytes().split(b"\0")
            except OSError:
                continue
            if words[:2] == [b"krvadm", b"serve"] and f"KRVSIM_HOME={self.farms}".encode() in environment:
                numbers.append(int(entry.name))
        return [number for number in numbers if not is_copy(number)]


class RemoteTest(unittest.TestCase):
    """A desk, and another machine that it reaches by ssh."""

    PROGRAMS = ""  # the folder of the programs; the test's main sets it

    @classmethod
    def setUpClass(cls):
        cls.machine = RemoteMachine(cls.PROGRAMS)

    @classmethod
    def tearDownClass(cls):
        cls.machine.close()

    def setUp(self):
        self.desk = Desk(self.PROGRAMS)
        self.addCleanup(self.desk.close)
        self.desk.use_as_ssh(self.machine.ssh())
