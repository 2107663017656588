#!/usr/bin/env python3
"""Runs the command lines that manual pages show: run_manual.py [--write] PROGRAM-DIRECTORY PAGE ...

What stands between .EX and .EE and begins with "$ " is a session at a prompt, as in the documents; see
tests/docs/run_documents.py. Blocks without such a line are shown for reading only. Command lines within the
text (.B krvcmd que vol) have to succeed, each on a farm of its own.
"""
import pathlib
import re
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "docs"))
import run_documents  # noqa: E402

ESCAPES = {"\\e": "\\", "\\-": "-", "\\(aq": "'", "\\(ga": "`", "\\(ha": "^", "\\(ti": "~", "\\&": ""}


def plain(line):
    """A line of an example as it is shown."""
    text, at = "", 0
    while at < len(line):
        escape = next((name for name in ESCAPES if line.startswith(name, at)), None)
        if escape is None and line[at] == "\\":
            raise ValueError(f"an escape that has no place in an example: {line}")
        text += ESCAPES[escape] if escape else line[at]
        at += len(escape) if escape else 1
    return text


def escaped(text):
    """What is shown, as it must be written in an example."""
    line = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq").replace("`", "\\(ga")
    line = line.replace("^", "\\(ha").replace("~", "\\(ti")
    return "\\&" + line if line.startswith(".") else line


def as_document(lines):
    """The page with its examples marked and written as in a document; line for line."""
    document, start = [], None
    for number, line in enumerate(lines):
        if line == ".EX":
            start = number
            document.append("```console")
        elif line == ".EE":
            document.append("```")
            if start + 1 == number or not document[start + 1].startswith("$ "):
                document[start:number] = [""] * (number - start)
                document[number] = ""
            start = None
        else:
            document.append(line if start is None else plain(line))
    return document


def mentioned(lines):
    """The page's text as a document whose code is what the page shows in bold: line for line."""
    program = "(?:krvcmd|krvsim)"
    shown = re.compile(rf'^\.B ({program} .+)$|^\.(?:BR|RB) .*?"({program} [^"]+)".*$')
    return [shown.sub(lambda match: f"`{plain(match[1] or match[2])}`", line) for line in lines]


def check(page, program_dir, write):
    lines = page.read_text(encoding="utf-8").splitlines()
    mentions = run_documents.read_mentions(mentioned(lines))
    failing = list(run_documents.wrong_mentions(mentioned(lines), program_dir))
    for number, command, printed in failing:
        print(f"{page.name}, line {number}: {command}", *printed, sep="\n")
    steps = run_documents.read_steps(as_document(lines))
    with tempfile.TemporaryDirectory() as folder:
        run_documents.run(steps, program_dir, folder)
    wrong = [step for step in steps if step.printed is None or not step.matches()]
    if write:
        for step in reversed(wrong):
            lines[step.first:step.last] = [escaped(line) for line in step.printed]
        page.write_text("\n".join(lines) + "\n", encoding="utf-8")
    for step in wrong:
        print(f"{page.name}, line {step.number}: {step.command}")
        print("--- shown", *step.shown, "--- printed", *(step.printed or ["(not reached)"]), sep="\n")
    return len(steps) + len(mentions), len(wrong) + len(failing)


def main(arguments):
    write = arguments[:1] == ["--write"]
    program_dir, *pages = (pathlib.Path(argument).resolve() for argument in arguments[write:])
    counts = [check(page, program_dir, write) for page in pages]
    total, wrong = (sum(numbers) for numbers in zip(*counts))
    print(f"{total} command lines, {wrong} do something else than the pages say")
    return 0 if total and not wrong else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
