#!/usr/bin/env python3
"""doxygen makes the reference of the C header without a warning: reference_test.py PROJECT-FOLDER"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

PROJECT = pathlib.Path(sys.argv.pop(1))


def run_doxygen(output, header=None):
    """Runs on the project's settings, with the output (and perhaps the header) elsewhere."""
    if not shutil.which("doxygen"):
        raise AssertionError("doxygen is missing; it comes with the package of that name")
    settings = (PROJECT / "docs/Doxyfile").read_text() + f"\nOUTPUT_DIRECTORY={output}\nGENERATE_XML=YES\n"
    if header:
        settings += f"INPUT={header}\n"
    return subprocess.run(["doxygen", "-"], input=settings, cwd=PROJECT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, check=False)


class Reference(unittest.TestCase):
    def test_is_made_without_a_warning(self):
        with tempfile.TemporaryDirectory() as output:
            done = run_doxygen(output)
            self.assertEqual((done.returncode, done.stdout), (0, ""))
            tree = xml.etree.ElementTree.parse(pathlib.Path(output, "xml/krv__sdk_8h.xml"))
            functions = tree.findall(".//memberdef[@kind='function']")
            self.assertEqual(len(functions), 31)
            for function in functions:
                described = "".join(function.find("briefdescription").itertext()).strip()
                self.assertTrue(described, function.findtext("name"))
            self.assertTrue(pathlib.Path(output, "html/index.html").exists())

    def test_a_field_without_a_description_is_noticed(self):
        header = (PROJECT / "krvcmd/service/sdk/krv_sdk.h").read_text()
        comment = " /**< at most 51 bytes and the NUL */"
        self.assertIn(comment, header)
        with tempfile.TemporaryDirectory() as output:
            undocumented = pathlib.Path(output, "krv_sdk.h")
            undocumented.write_text(header.replace(comment, ""))
            done = run_doxygen(output, undocumented)
            self.assertNotEqual(done.returncode, 0)
            self.assertIn("name", done.stdout)


if __name__ == "__main__":
    unittest.main()
