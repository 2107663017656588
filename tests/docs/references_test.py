#!/usr/bin/env python3
"""Links and file names in the documents lead somewhere: references_test.py PROJECT-FOLDER"""
import pathlib
import re
import sys
import unittest

PROJECT = pathlib.Path(sys.argv.pop())
DOCUMENTS = sorted([*PROJECT.glob("*.md"), *PROJECT.glob("docs/*.md"), *PROJECT.glob("tests/*/README.md")])
FOLDERS = "(?:bench|cmake|docs|embedded|krvcmd|packaging|scripts|tests|tools)"


def links(text):
    """The targets of links and pictures within the project."""
    targets = re.findall(r"\]\(([^)#\s]+)[^)]*\)", text) + re.findall(r'(?:src|href)="([^"#]+)"', text)
    return [target for target in targets if not re.match(r"\w+:", target)]


def file_names(text):
    """File names in the text's code, from the top of the project."""
    return [name.rstrip("/") for name in re.findall(rf"`({FOLDERS}/[\w./-]+)", text) if "*" not in name]


class References(unittest.TestCase):
    def test_links_lead_to_files(self):
        count = 0
        for document in DOCUMENTS:
            for target in links(document.read_text(encoding="utf-8")):
                count += 1
                with self.subTest(document=document.name, link=target):
                    self.assertTrue((document.parent / target).exists())
        self.assertGreater(count, 10)

    def test_named_files_exist(self):
        count = 0
        for document in DOCUMENTS:
            for name in file_names(document.read_text(encoding="utf-8")):
                count += 1
                with self.subTest(document=document.name, name=name):
                    # The sources of a module are named without their ending.
                    self.assertTrue((PROJECT / name).exists() or (PROJECT / (name + ".h")).exists() or
                                    (PROJECT / "krvcmd" / name).exists())
        self.assertGreater(count, 10)

    def test_every_document_can_be_reached_from_the_first_one(self):
        known, waiting = set(), [PROJECT / "README.md"]
        while waiting:
            document = waiting.pop().resolve()
            if document not in known and document.exists():
                known.add(document)
                if document.suffix == ".md":
                    waiting += [document.parent / target for target in links(document.read_text(encoding="utf-8"))]
        for document in [*PROJECT.glob("*.md"), *PROJECT.glob("docs/*.md"), PROJECT / "docs/terminal.svg"]:
            self.assertIn(document.resolve(), known)

    def test_what_it_looks_for(self):
        self.assertEqual(links("[a](b.md) ![c](d/e.svg) [f](https://g) [h](i.md#j) <img src=\"k.png\">"),
                         ["b.md", "d/e.svg", "i.md", "k.png"])
        self.assertEqual(file_names("`scripts/test release`, `docs/guide.md`, `query`"), ["scripts/test", "docs/guide.md"])


if __name__ == "__main__":
    unittest.main()
