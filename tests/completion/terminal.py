"""A shell on a terminal of its own, driven key by key (tmux keeps the terminal)."""
import os
import pathlib
import shlex
import shutil
import subprocess
import tempfile
import time

PATIENCE = 20  # seconds; answers normally come within a fraction of one
PROMPT = "ready> "
SENTINEL = "~"


class Terminal:
    WIDTH, HEIGHT = 180, 70

    def __init__(self, command, environment):
        # The socket has a short name: a path to a socket may have 107 characters at most.
        self._folder = tempfile.mkdtemp(prefix="krv", dir="/tmp")
        self._socket = os.path.join(self._folder, "tmux")
        words = shlex.join(["env", "-i", *(f"{name}={value}" for name, value in environment.items()), *command])
        self._tmux("-f", os.devnull, "new-session", "-d", "-x", str(self.WIDTH), "-y", str(self.HEIGHT), words)

    def _tmux(self, *arguments):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("TMUX")}
        done = subprocess.run(["tmux", "-S", self._socket, *arguments], stdout=subprocess.PIPE, text=True, timeout=30,
                              env=dict(environment, LC_ALL="C.UTF-8"), check=True)
        return done.stdout

    def close(self):
        subprocess.run(["tmux", "-S", self._socket, "kill-server"], stderr=subprocess.DEVNULL, check=False)
        shutil.rmtree(self._folder, ignore_errors=True)

    def type(self, text):
        self._tmux("send-keys", "-l", "--", text)

    def press(self, *keys):
        self._tmux("send-keys", *keys)

    def screen(self):
        """The lines shown, and the number of the one with the cursor."""
        lines = self._tmux("capture-pane", "-p").split("\n")
        return lines, int(self._tmux("display-message", "-p", "#{cursor_y}"))

    def wait_for(self, is_there, what, seconds=PATIENCE):
        """The screen as soon as is_there(lines, cursor line) holds."""
        end = time.monotonic() + seconds
        while True:
            lines, at = self.screen()
            if is_there(lines, at):
                return lines, at
            if time.monotonic() > end:
                raise AssertionError(f"{what} did not come; the terminal shows:\n" + "\n".join(lines).rstrip())
            time.sleep(0.02)


class Shell:
    """Base of the shells' tests; a derived class knows how to start its shell and how it lists candidates."""

    def __init__(self, command, environment, preparations):
        self.terminal = Terminal(command, environment)
        self.terminal.wait_for(lambda lines, at: lines[at].strip() != "", "the shell's first prompt")
        for line in preparations:
            self.terminal.type(line)
            self.terminal.press("Enter")
        self.run("true")

    def close(self):
        self.terminal.close()

    def _wait_for_empty_prompt(self):
        return self.terminal.wait_for(lambda lines, at: lines[at].rstrip() == PROMPT.rstrip(), "an empty prompt")

    def clear(self):
        """Clears the screen: an empty prompt in the first line."""
        for seconds in (PATIENCE / 10, PATIENCE / 5, PATIENCE):
            self.terminal.press("C-c")
            self._wait_for_empty_prompt()
            self.terminal.type("clear")
            self.terminal.press("Enter")
            try:
                self.terminal.wait_for(
                    lambda lines, at: lines[0].rstrip() == PROMPT.rstrip() and not "".join(lines[1:]).strip(),
                    "a clear screen", seconds)
                return
            except AssertionError:
                # A busy shell discards input until it has handled the interruption.
                if seconds == PATIENCE:
                    raise

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
