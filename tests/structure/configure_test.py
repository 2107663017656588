#!/usr/bin/env python3
"""A 32-bit compiler is refused with a sentence: configure_test.py CMAKE PROJECT"""
import subprocess
import sys
import tempfile

cmake, project = sys.argv[1:]
with tempfile.TemporaryDirectory() as folder:
    # Nothing is linked, so no library for 32 bits is necessary.
    done = subprocess.run([cmake, "-S", project, "-B", folder, "-G", "Ninja",
                           "-DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY", "-DCMAKE_C_FLAGS=-m32", "-DCMAKE_CXX_FLAGS=-m32"],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
text = " ".join(done.stdout.split())
if done.returncode == 0 or "krvcmd needs a 64-bit system: there is no client library for any other." not in text:
    sys.exit(f"status {done.returncode}: {done.stdout}")
