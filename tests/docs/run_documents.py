#!/usr/bin/env python3
"""Runs the command lines that documents show: run_documents.py [--write] PROGRAM-DIRECTORY DOCUMENT-OR-FOLDER ...

A fenced block marked `console` is a session at a prompt. Its output goes into a pipe; after `console 100`
it goes to a terminal of 100 columns:

    $ command            a command line; lines that follow with "> " belong to it
    what it prints       standard output and standard error, as a terminal shows them together;
                         blanks at a line's end do not count
    ...                  any number of lines

The blocks of one document are one session of bash, in an empty folder with a fresh farm. ssh reaches any
host through a real sshd; each has fresh farms of its own. The programs are found by name; scripts/run stands
for krvcmd. With --write the outputs in the document are replaced by what was printed (outputs with "..." stay as they are); the difference is then to be read line by line.

Command lines within the text (`krvcmd help query`) and in blocks marked `sh` have no output to compare. Each one
runs on a fresh farm of its own and has to succeed. Words in capitals stand for something (`--layout FILE`), so a
line with one is no command line, and neither is the name of one of krvsim's commands. What builds, installs or
tests is run by the tests that OTHERS names.
"""
import fcntl
import getpass
import os
import pathlib
import re
import shlex
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import tty

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "remote"))
from remote_machine import RemoteMachine  # noqa: E402

# The beginning of a command line in a document, and the test that runs it.
OTHERS = {
    "scripts/test": "the run of all tests",
    "scripts/run --jukebox ": "tests/jukebox/run_script_test.sh",
    "apt install ": "tests/packaging/install_test.sh",
    "podman run ": "tests/packaging/image_test.sh",
    "scripts/package": "tests/packaging/install_test.sh and zip_test.sh",
    "scripts/install ": "tests/packaging/install_tree_test.py",
}
# Of what a document may start: a changer without hardware.
JUKEBOX_DIR = pathlib.Path(__file__).resolve().parent.parent / "emulated_jukebox"
PROGRAMS = ("krvcmd ", "krvsim ", "scripts/run ", "LD_LIBRARY_PATH=")


class Step:
    """One command line and what the document shows below it; `first` to `last` are the shown lines' places."""

    def __init__(self, number, command, columns):
        self.number, self.command, self.columns = number, command, columns
        self.first = self.last = number
        self.shown, self.printed = [], None

    def matches(self):
        shown = [line.rstrip(" ") for line in self.shown]
        pattern = "".join(r"(?:.*\n)*" if line == "..." else re.escape(line) + "\n" for line in shown)
        return re.fullmatch(pattern, "".join(line + "\n" for line in self.printed)) is not None


def read_steps(lines):
    steps, in_block, columns = [], False, 0
    for number, line in enumerate(lines):
        if not in_block:
            opening = re.fullmatch(r"```console(?: (\d+))?", line.strip())
            in_block, columns = opening is not None, int(opening[1] or 0) if opening else 0
        elif line.strip() == "```":
            in_block = False
        elif line.startswith("$ "):
            steps.append(Step(number + 1, line[2:], columns))
        elif line.startswith("> ") and steps and not steps[-1].shown:
            steps[-1].command += "\n" + line[2:]
            steps[-1].first = steps[-1].last = number + 1
        elif steps and steps[-1].last == number:
            steps[-1].shown.append(line)
            steps[-1].last = number + 1
        else:
            sys.exit(f"line {number + 1}: a console block must begin with a command line")
    return steps


def read_mentions(lines):
    """Line numbers and command lines of which no output is shown."""
    mentions, fence = [], None
    for number, line in enumerate(lines, start=1):
        opening = re.match(r"\s*```(\w*)", line)
        if opening:
            fence = None if fence is not None else opening[1]
        elif fence == "sh":
            command = re.sub(r"\s+#.*", "", line).strip()
            if command and not command.startswith(tuple(OTHERS)):
                mentions.append((number, command))
        elif fence is None:
            for command in re.findall(r"`([^`]+)`", line):
                # scripts/run can be told to use the Windows program instead, which prints the same.
                command = command.replace("scripts/run --windows ", "scripts/run ")
                is_name = re.fullmatch(r"krvsim [a-z]+", command) or re.search(r"\b[A-Z]{4,}\b", command)
                if command.startswith(PROGRAMS) and not command.startswith(tuple(OTHERS)) and not is_name:
                    mentions.append((number, command))
    return mentions


def wrong_mentions(lines, program_dir):
    """Those that cannot be typed, or that fail: the number of the line, the command line, what it printed."""
    for number, command in read_mentions(lines):
        step = Step(number, f"{command}\necho \"ends with status $?\"", 0)
        with tempfile.TemporaryDirectory() as folder:
            run([step], program_dir, folder)
        if not step.printed or step.printed[-1] != "ends with status 0":
            yield number, command, step.printed or ["(not reached)"]


class Terminal:
    """A terminal whose output is gathered."""

    def __init__(self, columns):
        self._reading, self._writing = os.openpty()
        fcntl.ioctl(self._writing, termios.TIOCSWINSZ, struct.pack("HHHH", 50, columns, 0, 0))
        tty.setraw(self._writing)
        self.path = os.ttyname(self._writing)
        self._printed = b""
        self._thread = threading.Thread(target=self._gather)
        self._thread.start()

    def _gather(self):
        while True:
            try:
                self._printed += os.read(self._reading, 65536)
            except OSError:  # the last writer has gone
                return

    def finish(self):
        os.close(self._writing)
        self._thread.join(timeout=300)
        os.close(self._reading)
        return self._printed


class Hosts(RemoteMachine):
    """Every host that ssh reaches: one sshd, which gives each name that was asked for farms of its own."""

    def __init__(self, program_dir, home):
        self._home = home
        super().__init__(program_dir)
        host_key = (self.folder / "host.pub").read_text(encoding="utf-8")
        (self.folder / "known_hosts").write_text(f"host {host_key}", encoding="utf-8")
        program = home / "tools" / "ssh"
        # Behind "--" come the host and the two words of the command; of two values ssh takes the first.
        words = ["/usr/bin/ssh", "-F", "none", "-i", str(self.folder / "all"), "-o", "KexAlgorithms=curve25519-sha256",
                 "-o", f"UserKnownHostsFile={self.folder}/known_hosts", "-o", "HostKeyAlias=host", "-o", "HostName=127.0.0.1",
                 "-o", f"Port={self.port}", "-o", f"User={getpass.getuser()}"]
        program.write_text(f'#!/bin/bash\nexec {shlex.join(words)} -o "SetEnv=ASKED_HOST=${{*: -3:1}}" "$@"\n')
        program.chmod(0o755)

    def _write_settings(self):
        super()._write_settings()
        command = self.folder / "command"
        command.write_text(f'#!/bin/bash\nexport KRVSIM_HOME="{self._home}/hosts/$ASKED_HOST"\n'
                           'mkdir -p "$KRVSIM_HOME"\nexec $SSH_ORIGINAL_COMMAND\n')
        command.chmod(0o755)
        with self.settings.open("a", encoding="utf-8") as settings:
            settings.write(f"AcceptEnv ASKED_HOST\nForceCommand {command}\n")


def run(steps, program_dir, folder):
    """Runs all steps in one shell and files what each printed."""
    home = pathlib.Path(folder)
    (home / "work" / "scripts").mkdir(parents=True)
    shim = home / "work" / "scripts" / "run"
    shim.write_text('#!/bin/sh\nexec krvcmd "$@"\n')
    shim.chmod(0o755)

    script, terminals = "", {}
    for at, step in enumerate(steps):
        output = home / f"output.{at}"
        if step.columns:
            terminals[at] = Terminal(step.columns)
            output = terminals[at].path
        script += f"_status=$?; : >{home}/reached.{at}; (exit $_status)\n{{ {step.command}\n}} >{output} 2>&1\n"
    script += f": >{home}/reached.{len(steps)}\n"
    (home / "farm").mkdir()
    (home / "tools").mkdir()
    hosts = Hosts(program_dir, home) if any("ssh://" in step.command for step in steps) else None
    environment = dict(os.environ, KRVSIM_HOME=str(home / "farm"), HOME=str(home),
                       PATH=os.pathsep.join([str(home / "tools"), str(program_dir), str(JUKEBOX_DIR), os.environ["PATH"]]),
                       LC_ALL="C.UTF-8")
    environment.pop("XDG_CONFIG_HOME", None)
    subprocess.run(["bash", "-c", script], cwd=home / "work", env=environment, stdin=subprocess.DEVNULL,
                   timeout=300, check=False)
    if hosts:
        hosts.close()
    for settings in (home / "work").glob("*/settings"):
        subprocess.run([JUKEBOX_DIR / "emulated_jukebox", "stop", settings.parent], check=False)
    for at, step in enumerate(steps):
        printed = terminals[at].finish() if at in terminals else b""
        if (home / f"output.{at}").exists():
            printed = (home / f"output.{at}").read_bytes()
        # Whatever ends the shell, such as an open quote, keeps it from reaching the next one.
        if (home / f"reached.{at + 1}").exists():
            text = printed.decode("utf-8", "replace")
            step.printed = [line.rstrip(" ") for line in text.removesuffix("\n").split("\n")] if text else []


def check(path, program_dir, write):
    """Compares one document with what is printed; yields the numbers of command lines and of wrong ones."""
    lines = path.read_text(encoding="utf-8").splitlines()
    steps = read_steps(lines)
    with tempfile.TemporaryDirectory() as folder:
        run(steps, program_dir, folder)

    wrong = [step for step in steps if step.printed is None or not step.matches()]
    if write:
        for step in reversed(wrong):
            if "..." not in step.shown and step.printed is not None:
                lines[step.first:step.last] = step.printed
        path.write_text("\n".join(lines) + "\n", encoding="utf-8")
    for step in wrong:
        print(f"{path.name}, line {step.number}: {step.command}")
        print("--- shown", *step.shown, "--- printed", *(step.printed or ["(not reached)"]), sep="\n")
    failing = list(wrong_mentions(lines, program_dir))
    for number, command, printed in failing:
        print(f"{path.name}, line {number}: {command}", *printed, sep="\n")
    return len(steps) + len(read_mentions(lines)), len(wrong) + len(failing)


def main(arguments):
    write = arguments[:1] == ["--write"]
    program_dir, *places = (pathlib.Path(argument).resolve() for argument in arguments[write:])
    total, all_wrong = 0, 0
    for place in places:
        for path in sorted(place.rglob("*.md")) if place.is_dir() else [place]:
            count, wrong = check(path, program_dir, write)
            total, all_wrong = total + count, all_wrong + wrong
    print(f"{total} command lines, {all_wrong} do something else than the documents say")
    return 0 if total and not all_wrong else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
