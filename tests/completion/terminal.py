"""A shell on a terminal of its own, driven key by key (tmux keeps the terminal)."""
import os
import pathlib
import select
import shlex
import shutil
import subprocess
import tempfile
import time

PATIENCE = 60  # seconds; answers normally come within a fraction of one
PROMPT = "ready> "
SENTINEL = "~"


class Terminal:
    """Reads what tmux reports as a control client, so that a change on the screen ends a wait at once."""
    WIDTH, HEIGHT = 180, 70

    def __init__(self, command, environment):
        # The socket has a short name: a path to a socket may have 107 characters at most.
        self._folder = tempfile.mkdtemp(prefix="krv", dir="/tmp")
        words = shlex.join(["env", "-i", *(f"{name}={value}" for name, value in environment.items()), *command])
        outside = {name: value for name, value in os.environ.items() if not name.startswith("TMUX")}
        self._client = subprocess.Popen(
            ["tmux", "-S", os.path.join(self._folder, "tmux"), "-f", os.devnull, "-C", "new-session", "-x", str(self.WIDTH),
             "-y", str(self.HEIGHT), words],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=dict(outside, LC_ALL="C.UTF-8"))
        self._unread = b""
        self._has_changed = False
        self._read_answer(time.monotonic() + PATIENCE)
        self._ask(f"refresh-client -C {self.WIDTH}x{self.HEIGHT}")

    def _read_line(self, end):
        """The next line from tmux; nothing if none has come by then."""
        while b"\n" not in self._unread:
            if not select.select([self._client.stdout], [], [], max(0, end - time.monotonic()))[0]:
                return None
            block = os.read(self._client.stdout.fileno(), 1 << 16)
            if not block:
                raise AssertionError("the terminal has ended")
            self._unread += block
        line, _, self._unread = self._unread.partition(b"\n")
        self._has_changed |= line.startswith(b"%output ")
        return line.decode("utf-8", "replace")

    def _read_answer(self, end):
        """The lines between %begin and %end."""
        lines = None
        while True:
            line = self._read_line(end)
            if line is None:
                raise AssertionError("tmux does not answer")
            if line.startswith("%begin "):
                lines = []
            elif lines is not None and line.startswith("%end "):
                return lines
            elif lines is not None and line.startswith("%error "):
                raise AssertionError("\n".join(lines))
            elif lines is not None:
                lines.append(line)

    def _ask(self, command):
        self._client.stdin.write(command.encode() + b"\n")
        self._client.stdin.flush()
        return self._read_answer(time.monotonic() + PATIENCE)

    def close(self):
        # What tmux still reports is read: a client whose output is closed does not end.
        try:
            self._client.communicate(b"kill-server\n", PATIENCE)
        except subprocess.TimeoutExpired:
            self._client.kill()
            self._client.communicate()
        shutil.rmtree(self._folder, ignore_errors=True)

    def type(self, text):
        self._ask("send-keys -H " + text.encode().hex(" "))

    def press(self, *keys):
        self._ask("send-keys " + " ".join(keys))

    def screen(self):
        """The lines shown, and the number of the one with the cursor."""
        lines = self._ask("capture-pane -p")
        return lines, int(self._ask("display-message -p '#{cursor_y}'")[0])

    def title(self):
        """The title that the last program gave to the terminal."""
        return "".join(self._ask("display-message -p '#{pane_title}'"))

    def wait_for(self, is_there, what, seconds=PATIENCE):
        """The screen as soon as is_there(lines, cursor line) holds."""
        end = time.monotonic() + seconds
        while True:
            self._has_changed = False
            lines, at = self.screen()
            if is_there(lines, at):
                return lines, at
            while not self._has_changed:
                if self._read_line(end) is None:
                    raise AssertionError(f"{what} did not come; the terminal shows:\n" + "\n".join(lines).rstrip())


class Shell:
    """Base of the shells' tests; a derived class knows how to start its shell and how it lists candidates."""

    def __init__(self, command, environment, preparations):
        self._cleared = 0
        self.terminal = Terminal(command, environment)
        self.terminal.wait_for(lambda lines, at: lines[at].strip() != "", "the shell's first prompt")
        for line in preparations:
            self.terminal.type(line)
            self.terminal.press("Enter")
        self.run("true")

    def close(self):
        self.terminal.close()

    def clear(self):
        """Clears the screen: an empty prompt in the first line."""
        self._cleared += 1
        self.terminal.press("C-e", "C-u")
        # The title tells that this line has run, and that the prompt is not that of an earlier one.
        self.terminal.type(f"clear; printf '\\033]2;cleared {self._cleared}\\007'")
        self.terminal.press("Enter")
        self.terminal.wait_for(
            lambda lines, at: lines[0].rstrip() == PROMPT.rstrip() and not "".join(lines[1:]).strip() and
            self.terminal.title() == f"cleared {self._cleared}", "a clear screen")

    def run(self, command):
        self.terminal.type(command)
        self.terminal.press("Enter")
        self.terminal.wait_for(lambda lines, at: lines[at].rstrip() == PROMPT.rstrip() and
                               any(line.rstrip().endswith(command) for line in lines[:at]), f"the end of '{command}'")

    def type_and_complete(self, typed):
        """The screen after the completion of the typed line; a sentinel is typed after it."""
        self.clear()
        self.terminal.type(typed)
        self.terminal.press("Tab")
        self.terminal.type(SENTINEL)
        return self.terminal.wait_for(lambda lines, at: lines[at].rstrip().endswith(SENTINEL), f"completion of '{typed}'")

    def completed(self, typed):
        """The command line at the prompt after the completion of the typed line."""
        lines, at = self.type_and_complete(typed)
        return lines[at].rstrip().removeprefix(PROMPT).removesuffix(SENTINEL)

    def words(self, typed):
        """The words that the program gets when the typed line is completed and entered."""
        self.clear()
        self.terminal.type(typed)
        self.terminal.press("Tab")
        self.terminal.press("C-a")
        # A program that shows its words replaces krvcmd.
        self.terminal.type("printf '<%s>\\n' ")
        self.terminal.press("C-e")
        self.terminal.press("Enter")
        lines, at = self.terminal.wait_for(
            lambda lines, at: at > 0 and lines[at].rstrip() == PROMPT.rstrip() and any(l[:1] == "<" for l in lines),
            f"the words of '{typed}'")
        return [line.rstrip()[1:-1] for line in lines[:at] if line.startswith("<")]


def whole_word(typed, text):
    """The word that a candidate stands for, where a shell lists only the end of it: the word at the
    cursor up to where the candidate overlaps it, and the candidate."""
    word = shlex.split(typed + "x")[-1][:-1]
    overlap = next(at for at in range(len(word) + 1) if text.startswith(word[at:]))
    return word[:overlap] + text


def environment(program_dir, library_dir, script, home):
    """A bare environment with the program on the path, on top of the scripted client library."""
    return {
        "PATH": f"{program_dir}:/usr/local/bin:/usr/bin:/bin",
        "LD_LIBRARY_PATH": str(library_dir),
        "KRVFAKE_SCRIPT": str(script),
        "KRVFAKE_LOG": str(pathlib.Path(home) / "calls"),
        "HOME": str(home),
        "TERM": "screen-256color",
        "LC_ALL": "C.UTF-8",
        "ASAN_OPTIONS": "detect_leaks=0",
    }
