"""Measures krvcmd beside other tools; scripts/bench builds and calls it: run.py BUILD-DIRECTORY [--quick] [NAME ...]

Each group of contestants runs in turns (A B C A B C ...), bound to one processor. Shown are the median, the
smallest and the largest CPU time of all runs, the largest peak memory, and both as ratios to krvcmd's. Every
contestant's rows are checked to be krvcmd's rows in krvcmd's order before it is measured, and the floor's
calls to be krvcmd's calls.
"""
import argparse
import collections
import os
import pathlib
import shutil
import sqlite3
import statistics
import subprocess
import sys

import picture

HERE = pathlib.Path(__file__).resolve().parent
COLUMNS = ["id", "location", "status", "type", "directory", "file_system", "used", "total", "label", "volume_type"]
LETTERS = "ILotnfzylv"
GIB = 1024 ** 3
PICTURE = HERE.parent / "docs" / "performance.svg"

Result = collections.namedtuple("Result", "cpu low high peak runs")  # milliseconds, KiB


class Bench:
    def __init__(self, build, quick):
        self.build = build
        self.quick = quick
        self.data = build / "data"
        self.results = {}
        shutil.rmtree(self.data, ignore_errors=True)
        self.data.mkdir()

    def program(self, name):
        return str(self.build / "bin" / name)

    def script(self, statement):
        """The words before a command that give it the library of no cost, which answers as told."""
        path = self.data / ("script-" + statement.replace(" ", "-").replace("=", ""))
        path.write_text(statement + "\n")
        return [f"LD_LIBRARY_PATH={self.build}/free", f"KRVFAKE_SCRIPT={path}"]

    def output(self, words, **more_environment):
        """Standard output of a command whose first words may be NAME=VALUE."""
        environment = dict(os.environ, **more_environment)
        words = list(words)
        while "=" in words[0]:
            name, value = words.pop(0).split("=", 1)
            environment[name] = value
        return subprocess.run(words, env=environment, stdout=subprocess.PIPE, check=True).stdout

    def measure(self, title, contestants, runs):
        """contestants: (name, words) ..., krvcmd first."""
        command = [self.program("measure"), str(runs), "DISCARD", str(self.data / "output")]
        for _, words in contestants:
            command += ["--", *words]
        ran = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if ran.returncode != 0:
            sys.exit(f"bench: nothing could be measured: {ran.stderr}")
        costs = [[] for _ in contestants]
        for line in ran.stdout.splitlines():
            index, cpu, peak, status = map(int, line.split())
            if status != 0:
                sys.exit(f"bench: {' '.join(contestants[index][1])} ended with status {status}: {ran.stderr}")
            costs[index].append((cpu / 1000, peak))
        group = {}
        for (name, _), runs_of_one in zip(contestants, costs):
            cpu = [cost[0] for cost in runs_of_one]
            group[name] = Result(statistics.median(cpu), min(cpu), max(cpu), max(cost[1] for cost in runs_of_one),
                                 len(cpu))
        self.results[title] = group
        print_group(title, group)

    # ---- The groups

    def start_up(self):
        empty = self.script("record off")
        krvcmd = self.program("krvcmd")
        self.measure("start-up", [
            ("krvcmd help", [*empty, krvcmd, "help"]),
            ("krvcmd, empty query", [*empty, krvcmd, "quiet", "query", "volumes"]),
            ("krvcmd help, embedded service", [krvcmd, "help"]),
            ("empty C++ program", [self.program("empty_program")]),
            ("true", ["true"]),
            ("lsscsi --version", ["lsscsi", "--version"]),
            ("sqlite3 :memory: 'select 1'", ["sqlite3", ":memory:", "select 1"]),
            ("column --version", ["column", "--version"]),
        ], 21 if self.quick else 101)

    def sizes(self):
        return [1_000, 10_000, 100_000] if self.quick else [1_000, 10_000, 100_000, 1_000_000]

    def runs(self):
        return 3 if self.quick else 7

    def farm(self, count, more=""):
        return self.script(f"generate jukeboxes=10 magazines=10 slots={max(count // 100, 1)} volumes={count} "
                           f"locations=1 directories=1{more}")

    def check_calls(self, krvcmd_words, floor_words):
        """Both make the same calls of the library (on a small farm)."""
        library = self.farm(1_000)
        calls = []
        for number, words in enumerate((krvcmd_words, floor_words)):
            log = self.data / f"calls-{number}"
            self.output([*library, *words], KRVFAKE_LOG=str(log))
            calls.append(log.read_bytes())
        if calls[0] != calls[1]:
            sys.exit("bench: the floor does not make krvcmd's calls")

    def floor(self, what, krvcmd_words, text, *more):
        """The floor that writes what krvcmd wrote."""
        path = self.data / f"text-{what}-{len(text)}"
        path.write_bytes(text)
        self.check_calls(krvcmd_words(1_000), [self.program("floor"), what, *more_of(more, 1_000), str(path)])
        return lambda count: [self.program("floor"), what, *more_of(more, count), str(path)]

    def rows(self, library, count):
        """The rows as other tools take them: a file with tabs and a database."""
        file = self.data / f"rows-{count}.tsv"
        path = self.data / f"rows-{count}.db"
        if path.exists():
            return file, path
        krvcmd = self.program("krvcmd")
        text = self.output([*library, krvcmd, "quiet", "query", "volumes", "notable", "separator=\t", "sort=",
                            f"columns={LETTERS}msa"])
        rows = [line.split("\t") for line in text.decode().splitlines()]
        file.write_text("".join("\t".join(row[:len(COLUMNS)]) + "\n" for row in rows))
        with sqlite3.connect(path) as database:
            database.execute(f"create table volume ({', '.join(COLUMNS)}, magazine integer, slot integer, side, "
                             "label_number integer)")
            database.executemany(f"insert into volume values ({', '.join('?' * (len(COLUMNS) + 4))})",
                                 ([*row, int(row[8].split('-')[1])] for row in rows))
        return file, path

    def check_rows(self, library, words, expected):
        output = self.output([*library, *words])
        if row_ids(output) != row_ids(expected):
            sys.exit(f"bench: other rows, or in another order: {' '.join(words)}")

    def volumes(self):
        krvcmd = [self.program("krvcmd"), "quiet", "query", "volumes"]
        for count in self.sizes():
            library = self.farm(count)
            file, database = self.rows(library, count)
            select = f"select {', '.join(COLUMNS)} from volume order by "
            sqlite = ["sqlite3", "-header", "-column", str(database)]

            text = self.output([*library, *krvcmd, "sort=l"])
            floor = self.floor("volumes", lambda _: [*krvcmd, "sort=l"], text)
            tab = "\t"
            contestants = [
                ("krvcmd", [*library, *krvcmd, "sort=l"]),
                ("floor", [*library, *floor(count)]),
                ("sqlite3 -column", [*sqlite, select + "label_number"]),
                ("sort | column -t", ["LC_ALL=C", "sh", "-c",
                                      f"sort -t '{tab}' -k 9.7,9n '{file}' | column -t -s '{tab}'"]),
                ("program on libsmartcols", [*library, self.program("smartcols_table")]),
            ]
            for _, words in contestants:
                self.check_rows([], words, text)
            self.measure(f"volumes by label, {count:,} rows", contestants, self.runs())

            text = self.output([*library, *krvcmd])
            floor = self.floor("volumes", lambda _: krvcmd, text)
            contestants = [
                ("krvcmd", [*library, *krvcmd]),
                ("floor", [*library, *floor(count)]),
                ("sqlite3 -column", [*sqlite, select + "magazine, slot, side, label_number"]),
            ]
            for _, words in contestants:
                self.check_rows([], words, text)
            self.measure(f"volumes, {count:,} rows", contestants, self.runs())
        if not self.quick:
            picture.draw(self.lines("volumes by label, {:,} rows"), PICTURE)

    def lines(self, title):
        """The name of each contestant, krvcmd first, with its (rows, seconds) of each size."""
        groups = [(count, self.results[title.format(count)]) for count in self.sizes()]
        return [(name, [(count, group[name].cpu / 1000) for count, group in groups]) for name in groups[0][1]]

    def varied(self):
        """Capacities and file systems change from row to row."""
        krvcmd = [self.program("krvcmd"), "quiet", "query", "volumes", "sort=l"]
        for count in [size for size in self.sizes() if size >= 100_000]:
            library = self.farm(count, " varied=1")
            floor = self.floor("volumes", lambda _: krvcmd, self.output([*library, *krvcmd]))
            self.measure(f"varied volumes by label, {count:,} rows", [
                ("krvcmd", [*library, *krvcmd]),
                ("floor", [*library, *floor(count)]),
            ], self.runs())

    def huge(self):
        """Only when named: it needs 5 GiB of memory and twice that on the disk."""
        krvcmd = [self.program("krvcmd"), "quiet", "query", "volumes", "sort=l"]
        self.measure("volumes by label, 10,000,000 rows", [("krvcmd", [*self.farm(10_000_000), *krvcmd])], 1)

    def unformatted(self):
        krvcmd = [self.program("krvcmd"), "quiet", "query", "volumes", "notable", "sort=l", "separator=,"]
        for count in [size for size in self.sizes() if size >= 100_000]:
            library = self.farm(count)
            file, database = self.rows(library, count)
            text = self.output([*library, *krvcmd])
            floor = self.floor("volumes", lambda _: krvcmd, text)
            tab = "\t"
            contestants = [
                ("krvcmd", [*library, *krvcmd]),
                ("floor", [*library, *floor(count)]),
                ("sqlite3 -separator ,", ["sqlite3", "-separator", ",", str(database),
                                          f"select {', '.join(COLUMNS)} from volume order by label_number"]),
                ("sort", ["LC_ALL=C", "sh", "-c", f"sort -t '{tab}' -k 9.7,9n '{file}'"]),
            ]
            for _, words in contestants:
                self.check_rows([], words, text)
            self.measure(f"unformatted volumes, {count:,} rows", contestants, self.runs())

    def slots(self):
        count = 100_000 if self.quick else 1_000_000
        library = self.script(f"generate jukeboxes=1 magazines=100 slots={count // 100} volumes={count}")
        krvcmd = [self.program("krvcmd"), "quiet", "query", "slots", "J@1"]
        text = self.output([*library, *krvcmd])
        floor = self.floor("slots", lambda _: krvcmd, text, lambda _: "1")
        self.measure(f"walk of {count:,} slots", [
            ("krvcmd", [*library, *krvcmd]),
            ("floor", [*library, *floor(count)]),
        ], self.runs())

    def enable(self):
        count = 100_000
        library = self.farm(count)
        # The largest list that one argument can be is shorter than 100,000 single IDs.
        krvcmd = lambda last: [self.program("krvcmd"), "quiet", "enable", f"V@1-{last // 2},{last // 2 + 1}-{last}"]
        floor = self.floor("enable", krvcmd, b"", str)
        self.measure(f"enable of {count:,} volumes", [
            ("krvcmd", [*library, *krvcmd(count)]),
            ("floor", [*library, *floor(count)]),
        ], self.runs())

    def service(self):
        krvcmd = self.program("krvcmd")
        for count in [size for size in self.sizes() if 1_000 < size <= 100_000]:
            home = self.data / f"service-{count}"
            home.mkdir()
            place = [f"KRVSIM_HOME={home}"]
            self.output([*place, krvcmd, "quiet", "query", "jukeboxes"])  # creates the farm
            (file,) = [path for path in home.iterdir() if not path.name.endswith(("-wal", "-shm"))]
            fill = (HERE / "service_farm.sql").read_text().replace(":count", str(count))
            with sqlite3.connect(file) as database:
                database.executescript(fill)
            database.close()
            words = [krvcmd, "quiet", "query", "volumes", "sort=l"]
            text = self.output([*place, *words])
            floor = self.floor("volumes", lambda _: words, text)
            select = (HERE / "peers" / "service_table.sql").read_text()
            contestants = [
                ("krvcmd", [*place, *words]),
                ("floor", [*place, *floor(count)]),
                ("sqlite3 -column", ["sqlite3", "-readonly", "-header", "-column", str(file), select]),
            ]
            for _, contestant in contestants:
                self.check_rows([], contestant, text)
            self.measure(f"volumes of the embedded service, {count:,} rows", contestants, self.runs())


def more_of(more, count):
    return [make(count) for make in more]


def row_ids(output):
    """The volume IDs in the first column, in order."""
    ids = []
    for line in output.splitlines():
        first = line.replace(b"|", b" ").replace(b",", b" ").split(maxsplit=1)
        if first and first[0].isdigit():
            ids.append(int(first[0]))
    return ids


WIDTH = 32


def print_group(title, group):
    first = next(iter(group.values()))
    print(f"\n{title} ({first.runs} runs)")
    for name, result in group.items():
        print(f"  {name:{WIDTH}} {result.cpu:10.2f} {result.low:10.2f} {result.high:10.2f} {result.cpu / first.cpu:8.2f}"
              f" {result.peak / 1024:10.1f} {result.peak / first.peak:8.2f}", flush=True)


def print_targets(results):
    def line(text, value, limit):
        print(f"  {text:60} {value:10.2f} {limit:10.2f}  {'met' if value <= limit else 'MISSED'}")

    print(f"\n{'targets':62} {'measured':>10} {'at most':>10}")
    start = results.get("start-up")
    if start:
        line("krvcmd help beyond true, ms", start["krvcmd help"].cpu - start["true"].cpu, 0.7)
        line("krvcmd help beyond true, embedded service, ms",
             start["krvcmd help, embedded service"].cpu - start["true"].cpu, 0.7)
    base = start["krvcmd, empty query"].peak if start else 0
    for order in ("volumes by label", "volumes", "varied volumes by label"):
        group = results.get(f"{order}, 100,000 rows")
        if not group:
            continue
        cpu = group["krvcmd"].cpu
        for peer, limit in (("sqlite3 -column", 0.6), ("sort | column -t", 0.4), ("program on libsmartcols", 0.25),
                            ("floor", 4)):
            if peer in group:
                line(f"{order}: CPU of krvcmd / {peer}", cpu / group[peer].cpu, limit)
        if base:
            line(f"{order}: bytes of peak memory per row beyond start-up",
                 (group["krvcmd"].peak - base) * 1024 / 100_000, 450)
        million = results.get(f"{order}, 1,000,000 rows")
        if million:
            line(f"{order}: CPU for 1,000,000 rows / for 100,000", million["krvcmd"].cpu / cpu, 11)
    service = results.get("volumes of the embedded service, 100,000 rows")
    if service:
        line("embedded service: CPU of krvcmd / sqlite3 -column",
             service["krvcmd"].cpu / service["sqlite3 -column"].cpu, 0.7)
    for title, limit in (("walk of 1,000,000 slots", 0.5), ("volumes by label, 10,000,000 rows", 5)):
        if title in results:
            line(f"{title}: peak memory, GiB", results[title]["krvcmd"].peak * 1024 / GIB, limit)


def main():
    names = ["start-up", "volumes", "varied", "unformatted", "slots", "enable", "service"]
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("--quick", action="store_true", help="3 runs, at most 100,000 rows")
    parser.add_argument("names", nargs="*", metavar="NAME", help=f"only these: {' '.join(names)} huge")
    arguments = parser.parse_intermixed_args()
    for name in arguments.names:
        if name not in [*names, "huge"]:
            parser.error(f"there is no '{name}'; there are: {' '.join(names)} huge")
    bench = Bench(arguments.build.resolve(), arguments.quick)
    print(f"{'':{WIDTH + 2}} {'CPU ms':>10} {'min':>10} {'max':>10} {'ratio':>8} {'peak MiB':>10} {'ratio':>8}")
    for name in arguments.names or names:
        getattr(bench, name.replace("-", "_"))()
    print_targets(bench.results)


if __name__ == "__main__":
    main()
