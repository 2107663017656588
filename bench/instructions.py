"""Reads callgrind's dumps of count_instructions: instructions.py FOLDER. Prints instructions per operation."""
import pathlib
import re
import sys

TIMES = 1000
TRIGGER = re.compile(r"^desc: Trigger: Client Request: (.*)$", re.MULTILINE)
TOTAL = re.compile(r"^(?:summary|totals): (\d+)", re.MULTILINE)


def main():
    counts = {}
    for path in pathlib.Path(sys.argv[1]).glob("dump.*"):
        text = path.read_text()
        trigger, total = TRIGGER.search(text), TOTAL.search(text)
        if trigger and total:
            counts[trigger.group(1)] = int(total.group(1)) / TIMES
    if not counts:
        sys.exit("instructions.py: no counts found")
    print("Instructions of one operation, as callgrind counts them (g++ of Debian 12, release build).")
    print("Written by scripts/bench --instructions. Print is of 1001 rows, shown per row.\n")
    for name in sorted(counts):
        print(f"{name:34} {counts[name]:10.1f}")


if __name__ == "__main__":
    main()
