"""The picture on the architecture page shows the folders and arrows of the build: picture_test.py TARGET-LIST SCRIPT

TARGET-LIST is what configuring a build writes (cmake/TargetList.cmake), SCRIPT is scripts/check_includes, which reads it.
"""
import importlib.machinery
import importlib.util
import pathlib
import re
import sys
import tempfile
import unittest

loader = importlib.machinery.SourceFileLoader("check_includes", sys.argv.pop())
check_includes = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_includes", loader))
loader.exec_module(check_includes)
TARGET_LIST = pathlib.Path(sys.argv.pop())
PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent

# Programs of the tests link whatever they test, so the picture shows neither their arrows nor folders below these.
WITHOUT_ARROWS = ("tests", "bench")


def read_picture(page):
    """The folders shown, and the arrows as pairs of folders."""
    picture = page.partition("```\n")[2].partition("```\n")[0]
    shown, arrows, above = [], set(), ""
    for line in picture.splitlines():
        name = re.match(r"( *)([\w/]+)/(?: |$)", line)
        text, _, targets = line.partition(" -> ")
        if name:
            folder = name[2] if not name[1] else f"{top}/{name[2]}"
            top = folder.split("/")[0]
            shown.append(folder)
            above = folder
            text = text[name.end():]
        # Folders that need no line of their own.
        shown += [f"{above}/{inner}" for inner in re.findall(r"(?<![\w/.])(\w+)/(?![\w])", text)]
        arrows |= {(above, target) for target in targets.split(", ") if target}
    return shown, {(folder, resolve(folder, target, shown)) for folder, target in arrows}


def resolve(folder, target, shown):
    """A target's name is relative to the folder beside it, to the top folder or to the project."""
    beside, top = folder.rpartition("/")[0], folder.split("/")[0]
    for candidate in (f"{beside}/{target}", f"{top}/{target}", target):
        if candidate in shown:
            return candidate
    return target


def arrows_of_build(lines):
    """The links between folders, without those that a longer way of links implies."""
    targets = check_includes.Targets(lines)
    links = {}
    for name, folder in targets.folders.items():
        if folder.split("/")[0] not in WITHOUT_ARROWS and folder != ".":
            others = {targets.folders[other] for other in targets.links[name] | targets.handed_on[name]}
            links.setdefault(folder, set()).update(others - {folder, "."})

    def reach(folder):
        reached, waiting = set(), [folder]
        while waiting:
            for other in links.get(waiting.pop(), ()):
                if other not in reached:
                    reached.add(other)
                    waiting.append(other)
        return reached

    return {(folder, other) for folder, others in links.items() for other in others
            if not any(other in reach(between) for between in others)}


def folders_of_build(lines):
    """The folders with targets; of the tests those directly below tests/."""
    folders = set(check_includes.Targets(lines).folders.values()) - {"."}
    return {"/".join(folder.split("/")[:2]) if folder.startswith("tests/") else folder for folder in folders}


def findings(root, page, lines):
    shown, arrows = read_picture(page)
    yield from (f"{folder}/ is shown twice" for folder in sorted(set(shown)) if shown.count(folder) > 1)
    yield from (f"{folder}/ is shown and does not exist" for folder in shown if not (root / folder).is_dir())
    tops = {path.name for path in root.iterdir() if path.is_dir() and not path.name.startswith(".")} - {"build"}
    tests = {f"tests/{path.name}" for path in (root / "tests").glob("[!_]*/")} if (root / "tests").is_dir() else set()
    for folder in sorted((folders_of_build(lines) | tops | {name for name in tests if (root / name).is_dir()}) - set(shown)):
        yield f"{folder}/ is not shown"
    built = arrows_of_build(lines)
    yield from (f"{one} -> {other} is shown; the build has no such arrow" for one, other in sorted(arrows - built))
    yield from (f"{one} -> {other} is not shown" for one, other in sorted(built - arrows))


LINES = """\
program|program|driver base|
program/front/driver|driver|base sdk|base $<LINK_ONLY:sdk>
program/front/base|base||
program/service/sdk|sdk|base|base
tests/unit/front|front_tests|driver|
""".splitlines()
PAGE = """\
# Page
```
program/          main              -> front/driver
  front/driver/   one run           -> service/sdk
  front/base/     status
  service/sdk/    the header        -> front/base
tests/            unit/ and e2e/
```
"""


class Picture(unittest.TestCase):
    def findings(self, page=PAGE, lines=LINES, folders=()):
        with tempfile.TemporaryDirectory() as root:
            for folder in ("program/front/driver", "program/front/base", "program/service/sdk", "tests/unit/front",
                           "tests/e2e", "build", *folders):
                pathlib.Path(root, folder).mkdir(parents=True)
            return list(findings(pathlib.Path(root), page, lines))

    def test_shows_the_folders_and_arrows_of_the_build(self):
        page = (PROJECT / "docs/ARCHITECTURE.md").read_text(encoding="utf-8")
        lines = TARGET_LIST.read_text(encoding="utf-8").splitlines()
        self.assertEqual("\n".join(findings(PROJECT, page, lines)), "")

    def test_a_true_picture_has_no_findings(self):
        self.assertEqual(self.findings(), [])

    def test_a_shown_folder_exists(self):
        self.assertEqual(self.findings(PAGE.replace("unit/ and", "unit/, gone/ and")),
                         ["tests/gone/ is shown and does not exist"])

    def test_each_folder_with_a_target_is_shown(self):
        self.assertEqual(self.findings(lines=[*LINES, "program/front/new|new||"]), ["program/front/new/ is not shown"])

    def test_each_top_folder_and_each_folder_of_tests_is_shown(self):
        self.assertEqual(self.findings(folders=("new", "tests/fuzz")), ["new/ is not shown", "tests/fuzz/ is not shown"])

    def test_an_arrow_must_be_in_the_build(self):
        self.assertEqual(self.findings(PAGE.replace("status", "status  -> service/sdk")),
                         ["program/front/base -> program/service/sdk is shown; the build has no such arrow"])

    def test_an_arrow_of_the_build_must_be_shown(self):
        self.assertEqual(self.findings(PAGE.replace("-> front/base", "")),
                         ["program/service/sdk -> program/front/base is not shown"])

    def test_an_arrow_that_others_imply_is_left_out(self):
        self.assertEqual(self.findings(PAGE.replace("-> service/sdk", "-> service/sdk, base")),
                         ["program/front/driver -> program/front/base is shown; the build has no such arrow"])


if __name__ == "__main__":
    unittest.main()
