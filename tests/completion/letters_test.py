#!/usr/bin/env python3
"""The letters that completion offers for an object of a query are those in which the program shows values."""
import itertools
import os
import pathlib
import subprocess
import tempfile
import unittest

import powershell_test

OBJECTS = ("jukeboxes", "magazines", "drives", "slots", "volumes")


class Letters(unittest.TestCase):
    def test_are_those_with_values_in_the_demonstration_farm(self):
        script = pathlib.Path(os.environ["KRVCMD_COMPLETION_DIR"], "krvcmd.bash").read_text(encoding="ascii")
        offered = {letter: objects.split() for letter, objects, _ in
                   (line.split("|", 2) for line in powershell_test.table(script, "_krvcmd_columns"))}
        self.assertEqual(len(offered), 26)
        with tempfile.TemporaryDirectory() as home:
            for name, letter in itertools.product(OBJECTS, offered):
                with self.subTest(object=name, letter=letter):
                    # 2: the last jukebox has no drives.
                    asked = subprocess.run(
                        [f"{os.environ['KRVCMD_PROGRAM_DIR']}/krvcmd", "query", name, f"columns={letter}", "notable"],
                        env={"PATH": os.environ["PATH"], "KRVSIM_HOME": home, "ASAN_OPTIONS": "detect_leaks=0"}, check=False,
                        capture_output=True, text=True)
                    self.assertIn(asked.returncode, (0, 2))
                    self.assertEqual(asked.stdout.strip() != "", name in offered[letter])


if __name__ == "__main__":
    unittest.main()
