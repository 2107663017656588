"""Prints what gcov counted for krvcmd/: coverage_report.py BUILD-DIRECTORY REASONS

REASONS is a text file; a line of it is FILE: TEXT-OF-THE-LINE # REASON, for a line that no test can reach.
"""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
FOLDER = "krvcmd/"


def gcov(data_file):
    """What gcov says of one object file, or nothing."""
    run = subprocess.run(
        ["gcov", "--json-format", "--stdout", "--branch-probabilities", str(data_file)],
        cwd=data_file.parent, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    for document in run.stdout.splitlines():
        yield json.loads(document)


def own_path(name, directory):
    path = pathlib.Path(name)
    path = path if path.is_absolute() else pathlib.Path(directory) / path
    try:
        return path.resolve().relative_to(ROOT).as_posix()
    except ValueError:
        return ""


class Counts:
    """Executions of lines and branches, summed over everything that they were compiled into."""

    def __init__(self):
        self.lines = collections.defaultdict(collections.Counter)
        self.branches = collections.defaultdict(collections.Counter)

    def add(self, path, line):
        number = line["line_number"]
        self.lines[path][number] += line["count"]
        # Where a call may throw, the compiler makes a branch that no one wrote.
        written = [branch for branch in line["branches"] if not branch["throw"]]
        for index, branch in enumerate(written):
            self.branches[path][number, index] += branch["count"]


def collect(build):
    counts = Counts()
    for data_file in sorted(build.rglob("*.gcda")):
        for document in gcov(data_file):
            for source in document["files"]:
                path = own_path(source["file"], document["current_working_directory"])
                if not path.startswith(FOLDER):
                    continue
                for line in source["lines"]:
                    counts.add(path, line)
    return counts


def read_reasons(path):
    reasons = {}
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines() if path.exists() else [], 1):
        if not line.strip() or line.startswith("#"):
            continue
        place, mark, reason = line.rpartition(" # ")
        name, colon, text = place.partition(": ")
        if not mark or not colon or not reason.strip():
            sys.exit(f"{path}:{number}: not FILE: TEXT # REASON")
        reasons[name, text.strip()] = number
    return reasons


def share(counter):
    reached = sum(1 for count in counter.values() if count > 0)
    return reached, len(counter)


def row(title, lines, branches):
    def text(reached, total):
        return f"{reached:>6} / {total:<6} {100 * reached / total if total else 100:6.1f} %"
    print(f"{title:<42}{text(*share(lines))}   {text(*share(branches))}")


def merged(counters, paths):
    return {(path, key): count for path in paths for key, count in counters[path].items()}


def print_table(counts):
    print(f"{'':<42}{'lines':<24}   branches")
    folders = sorted({path.rsplit("/", 1)[0] for path in counts.lines})
    for folder in folders:
        paths = [path for path in counts.lines if path.rsplit("/", 1)[0] == folder]
        row(folder, merged(counts.lines, paths), merged(counts.branches, paths))
    row("all", merged(counts.lines, counts.lines), merged(counts.branches, counts.lines))


def print_uncovered(counts, reasons):
    """How many lines want a test or a reason."""
    wanting = 0
    unused = dict(reasons)
    for path in sorted(counts.lines):
        text = (ROOT / path).read_text(encoding="utf-8").splitlines()
        for number in sorted(counts.lines[path]):
            if counts.lines[path][number] > 0:
                continue
            key = (path, text[number - 1].strip())
            if key in reasons:
                unused.pop(key, None)
                continue
            wanting += 1
            print(f"{path}:{number}: not reached: {text[number - 1].strip()}")
    for (path, text), number in unused.items():
        wanting += 1
        print(f"reason without a line, no. {number}: {path}: {text}")
    return wanting


def print_half_branches(counts):
    for path in sorted(counts.branches):
        numbers = {number for (number, _), count in counts.branches[path].items()
                   if count == 0 and counts.lines[path][number] > 0}
        if numbers:
            print(f"{path}: one side only: {', '.join(map(str, sorted(numbers)))}")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    counts = collect(pathlib.Path(sys.argv[1]).resolve())
    if not counts.lines:
        sys.exit("coverage_report.py: nothing was counted")
    print_half_branches(counts)
    wanting = print_uncovered(counts, read_reasons(pathlib.Path(sys.argv[2])))
    print_table(counts)
    print(f"{wanting} lines want a test or a reason")
    sys.exit(1 if wanting else 0)


if __name__ == "__main__":
    main()
