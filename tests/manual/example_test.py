#!/usr/bin/env python3
"""The C program that krv-sdk(3) shows does what it says: example_test.py PROGRAM FAKE-LIBRARY-DIRECTORY"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

LIBRARY_DIR, PROGRAM = sys.argv.pop(), sys.argv.pop()


class Example(unittest.TestCase):
    def run_on(self, script):
        """Exit status, output and recorded calls."""
        with tempfile.TemporaryDirectory() as folder:
            farm, calls = pathlib.Path(folder, "farm"), pathlib.Path(folder, "calls")
            farm.write_text(script)
            done = subprocess.run([PROGRAM], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, env=dict(
                os.environ, LD_LIBRARY_PATH=LIBRARY_DIR, KRVFAKE_SCRIPT=str(farm), KRVFAKE_LOG=str(calls)))
            return done.returncode, done.stdout, calls.read_text()

    def test_prints_the_names_of_all_jukeboxes(self):
        status, output, calls = self.run_on('jukebox 8 name="Tower"\njukebox 11 name="My Box"\n')
        self.assertEqual((status, output), (0, "8 Tower\n11 My Box\n"))
        # The library records an error for every wrong argument.
        self.assertNotIn("ERROR", calls)
        self.assertTrue(calls.endswith("KrvSessionClose\n"))

    def test_prints_what_the_library_says_of_a_failure(self):
        status, output, _ = self.run_on('fail KrvSessionCreate code=17 text="Nobody there."\n')
        self.assertEqual((status, output), (1, "17: Nobody there.\n"))


if __name__ == "__main__":
    unittest.main()
