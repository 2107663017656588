"""krvcmd on the embedded service, with a demonstration farm of its own that nobody has touched."""
import os
import pathlib
import subprocess
import tempfile

BANNER = "Carvoline - command line interface\nCopyright (c) Ostrel 2003-2026\n\n"
SUCCESS = "Operation completed successfully.\n"
INVALID = "Error: Invalid command line parameter. Specify help to get further information.\n"


class Outcome:
    """How one run ended."""

    def __init__(self, done):
        self.status, self.output, self.error = done.returncode, done.stdout, done.stderr


class NewFarm:
    """Use it in a `with`: all servers have the demonstration farm, and are gone afterwards."""

    def __init__(self, program):
        self._program = str(pathlib.Path(program).resolve())

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory()
        self._environment = dict(os.environ, KRVSIM_HOME=self._folder.name, LC_ALL="C.UTF-8")
        self._environment.pop("LD_LIBRARY_PATH", None)
        return self

    def __exit__(self, *_):
        self._folder.cleanup()

    def run(self, *words):
        """Runs krvcmd; its output goes into pipes."""
        return Outcome(subprocess.run([self._program, *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                      stderr=subprocess.PIPE, encoding="utf-8", env=self._environment, timeout=60,
                                      check=False))
