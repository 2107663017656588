"""Runs the programs in address spaces from too small for the dynamic loader to large enough, in small steps.

Without memory for it, the C++ runtime has none for exceptions either, and a failed allocation ends the process.
small_address_space.py KRVCMD FOLDER-OF-SCRIPTED-LIBRARY KRVSIM
"""
import os
import resource
import subprocess
import sys
import tempfile

KIB = 1024
STEP = 8 * KIB
RANGE = 1536 * KIB
LARGEST = 256 * 1024 * KIB

# What the dynamic loader prints; it ends with the signal 11 itself where it has no memory for thread-local data.
NOT_LOADED = (127, "error while loading shared libraries")
NO_MEMORY_IN_LOADER = (127, "out of memory\n")
NO_MEMORY = (12, "OS error 12: Cannot allocate memory\n")
NO_MEMORY_IN_LIBRARY = (1003 % 256, "KRV error 1003: There is not enough memory for the call of Krv")
NO_MEMORY_IN_TOOL = (1, "krvsim: not enough memory\n")


class Command:
    def __init__(self, words, environment, failures):
        self.words = words
        self.environment = environment
        self.failures = failures

    def run(self, limit, **more_environment):
        def set_limits():
            resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        ended = subprocess.run(self.words, env={**os.environ, **self.environment, **more_environment},
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                               preexec_fn=set_limits, check=False)
        return ended.returncode, ended.stderr.decode(errors="replace")

    def is_loaded(self, limit):
        """Whether the dynamic loader, which only lists the libraries here, has enough for itself."""
        return self.run(limit, LD_TRACE_LOADED_OBJECTS="1")[0] == 0

    def smallest_loaded(self):
        low, high = KIB, LARGEST
        while high - low > STEP:
            middle = (low + high) // 2
            if self.is_loaded(middle):
                high = middle
            else:
                low = middle
        return high

    def problems(self):
        failed = 0
        usual_status = self.run(LARGEST)[0]
        first = self.smallest_loaded()
        for limit in range(first, first + RANGE, STEP):
            status, errors = self.run(limit)
            if status == usual_status:
                continue
            expected = (NOT_LOADED, NO_MEMORY_IN_LOADER, *self.failures)
            if any(status == code and text in errors for code, text in expected):
                failed += 1
            else:
                yield f"{limit // KIB} KiB: {self.words}: status {status}, {errors!r}"
        if failed == 0:
            yield f"{self.words}: no address space was too small"
        if status != usual_status:
            yield f"{self.words}: no address space was large enough"


def main():
    krvcmd, scripted_library, krvsim = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        scripted = {"LD_LIBRARY_PATH": scripted_library, "KRVFAKE_SCRIPT": os.path.join(folder, "script")}
        embedded = {"KRVSIM_HOME": folder}
        with open(scripted["KRVFAKE_SCRIPT"], "w", encoding="ascii") as script:
            script.write("generate jukeboxes=1 magazines=1 slots=3 volumes=3\nrecord off\n")
        subprocess.run([krvsim, "init"], env={**os.environ, **embedded}, stdout=subprocess.DEVNULL, check=True)
        commands = [
            Command([krvcmd, "help"], scripted, [NO_MEMORY]),
            Command([krvcmd, "query", "volumes"], scripted, [NO_MEMORY]),
            Command([krvcmd, "no such command"], scripted, [NO_MEMORY]),
            Command([krvcmd, "query", "volumes"], embedded, [NO_MEMORY, NO_MEMORY_IN_LIBRARY]),
            Command([krvsim, "servers"], embedded, [NO_MEMORY_IN_TOOL]),
        ]
        problems = [problem for command in commands for problem in command.problems()]
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
