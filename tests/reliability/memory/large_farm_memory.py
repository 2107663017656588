"""Measures the memory of krvsim and krvcmd on a farm of 50,000 slots, a twentieth of what they are made for.

large_farm_memory.py KRVCMD KRVSIM
"""
import os
import subprocess
import sys
import tempfile

SLOTS = 50_000
MIB = 1024 * 1024
# What the programs take without a farm, and what the C library keeps of freed memory.
BASE = 18 * MIB
# A layout of 1,000,000 slots may take 1 GiB, their query half of that.
LIMIT_OF_INIT = BASE + 1024 * MIB // 20
LIMIT_OF_QUERY = BASE + 512 * MIB // 20


def peak_memory(words, output):
    """Runs the words with the output going to a file; returns the peak of their memory in bytes."""
    with open(output, "wb") as file:
        process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=file)
        _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{words}: status {process.returncode}")
    return usage.ru_maxrss * 1024


def main():
    krvcmd, krvsim = sys.argv[1:]
    problems = []
    with tempfile.TemporaryDirectory() as folder:
        os.environ["KRVSIM_HOME"] = folder
        rows = os.path.join(folder, "rows")
        layout = os.path.join(folder, "layout.toml")
        peak_memory([krvsim, "generate", "--magazines", "10", "--slots", str(SLOTS // 10), "--fill", "100"], rows)
        peak_memory([krvsim, "dump"], layout)
        for limit, words in ((LIMIT_OF_INIT, [krvsim, "init", "--force", "--layout", layout]),
                             (LIMIT_OF_QUERY, [krvcmd, "query", "slots"]),
                             (LIMIT_OF_QUERY, [krvcmd, "query", "volumes"]),
                             (LIMIT_OF_QUERY, [krvcmd, "query", "slots", "notable"])):
            peak = peak_memory(words, rows)
            print(f"{peak / MIB:.1f} MiB of {limit / MIB:.1f}: {' '.join(words[1:3])}")
            if peak > limit:
                problems.append(" ".join(words))
        with open(rows, "rb") as file:
            if sum(1 for _ in file) < SLOTS * 9 // 10:
                problems.append("the farm is not large")
    print("too much memory: " + "; ".join(problems) if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
