"""A query of 80,000 calls takes at most three times the CPU time when the journal is on.

journal_cost.py KRVCMD KRVSIM
"""
import os
import subprocess
import sys
import tempfile

LIMIT = 3
RUNS = 5
ROUNDS = 3


def cpu_time(words):
    """The least CPU time of some runs in seconds."""
    times = []
    for _ in range(RUNS):
        process = subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            sys.exit(f"{words}: status {process.returncode}")
        times.append(usage.ru_utime + usage.ru_stime)
    return min(times)


def main():
    krvcmd, krvsim = sys.argv[1:]

    def manage(*words):
        return subprocess.run([krvsim, *words], check=True, capture_output=True, text=True).stdout

    with tempfile.TemporaryDirectory() as folder:
        os.environ["KRVSIM_HOME"] = folder
        manage("generate", "--slots", "8400", "--fill", "100")
        query = [krvcmd, "query", "slots"]
        for _ in range(ROUNDS):
            manage("journal", "--off")
            without = cpu_time(query)
            manage("journal", "--on", "--limit", "1000000")
            ratio = cpu_time(query) / without
            print(f"{without:.3f} s without the journal, {ratio:.2f} times that with it")
            if ratio <= LIMIT:
                break
        calls = len(manage("journal", "--json").splitlines()) // RUNS
        print(f"{calls} calls in each run")
        return 0 if ratio <= LIMIT and calls > 80_000 else 1


if __name__ == "__main__":
    sys.exit(main())
