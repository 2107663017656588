#!/usr/bin/env python3
"""What `cmake --install` puts where: install_tree_test.py CMAKE BUILD-DIRECTORY LIBRARY-DIRECTORY"""
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

from installed_files import DEVELOPMENT, PROGRAM, jukebox, simulator

LIBRARY_DIR, BUILD_DIR, CMAKE = sys.argv.pop(), sys.argv.pop(), sys.argv.pop()
PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent

SIMULATOR, JUKEBOX = simulator(LIBRARY_DIR), jukebox(LIBRARY_DIR)


class InstallTree(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.prefix = pathlib.Path(self.folder.name, "a prefix")

    def install(self, *arguments):
        """The files that are installed, relative to the prefix."""
        subprocess.run([CMAKE, "--install", BUILD_DIR, "--prefix", str(self.prefix), *arguments], check=True,
                       stdout=subprocess.DEVNULL)
        return {path.relative_to(self.prefix).as_posix() for path in self.prefix.rglob("*") if path.is_file()}

    def run_installed(self, program, *words):
        """Exit status and output of an installed program, with a farm of its own."""
        home = self.prefix / "farm"
        home.mkdir(exist_ok=True)
        environment = dict(os.environ, KRVSIM_HOME=str(home))
        environment.pop("LD_LIBRARY_PATH", None)
        done = subprocess.run([self.prefix / "bin" / program, *words], env=environment, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout

    def test_program(self):
        self.assertEqual(self.install("--component", "krvcmd"), PROGRAM)

    def test_development_files(self):
        self.assertEqual(self.install("--component", "development"), DEVELOPMENT)

    def test_simulator(self):
        self.assertEqual(self.install("--component", "simulator"), SIMULATOR)

    def test_jukebox(self):
        self.assertEqual(self.install("--component", "jukebox"), JUKEBOX)

    @unittest.skipIf("KRVCMD_SANITIZE" in os.environ, "a library built with sanitizers needs programs that are")
    def test_programs_are_compiled_and_linked_as_the_development_files_say(self):
        self.install()
        example = self.prefix / "share/doc/krvcmd-dev/examples/krv-sdk-example.c"
        flags = subprocess.run(["pkg-config", "--cflags", "--libs", "krv-sdk"], stdout=subprocess.PIPE, text=True, check=True,
                               env=dict(os.environ, PKG_CONFIG_PATH=str(self.prefix / "lib/pkgconfig"))).stdout
        subprocess.run(["gcc", str(example), "-o", str(self.prefix / "by-pkg-config"), *shlex.split(flags)], check=True)
        source = self.prefix / "source"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(example C)\nfind_package(krv-sdk 1 REQUIRED)\n"
            f"add_executable(by-cmake [==[{example}]==])\ntarget_link_libraries(by-cmake PRIVATE krv::sdk)\n")
        for words in ([CMAKE, "-S", source, "-B", source / "build", "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={self.prefix}"],
                      [CMAKE, "--build", source / "build"]):
            subprocess.run(words, check=True, stdout=subprocess.DEVNULL)
        for program in (self.prefix / "by-pkg-config", source / "build/by-cmake"):
            used = subprocess.run(["readelf", "--dynamic", str(program)], stdout=subprocess.PIPE, text=True, check=True).stdout
            self.assertIn("[libkrvSdk64.so]", used)

    def test_everything_works_from_where_it_is_installed(self):
        self.assertEqual(self.install(), PROGRAM | SIMULATOR | JUKEBOX | DEVELOPMENT)
        self.assertEqual(self.run_installed("krvcmd", "query", "volumes", "V", "@33", "columns=Il", "notable"),
                         (0, "33|Sales 2004\n"))
        status, text = self.run_installed("krvsim", "check")
        self.assertEqual((status, text.splitlines()[0]), (0, 'The farm of server "." is sound.'))

    def test_the_line_of_the_readme_installs(self):
        """The script runs as it is; only what it builds is replaced by the build under test."""
        line = re.search(r"(?m)^(scripts/install .*)$", (PROJECT / "README.md").read_text()).group(1)
        home = pathlib.Path(self.folder.name)
        self.prefix = home / ".local"
        scripts = home / "scripts"
        (scripts / "lib").mkdir(parents=True)
        for name in ("install", "lib/packages.sh"):
            shutil.copy(PROJECT / "scripts" / name, scripts / name)
        stubs = {scripts / "run": "#!/bin/sh\n",
                 home / "bin/cmake": '#!/bin/sh\n[ "$1" = --build ] && { shift 2; echo "$@" >"$HOME/built"; exit; }\n'
                                     'shift 2; exec "$CMAKE" --install "$BUILD" "$@"\n'}
        for path, text in stubs.items():
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
            path.chmod(0o755)
        environment = dict(os.environ, HOME=str(home), CMAKE=CMAKE, BUILD=BUILD_DIR,
                           PATH=f"{home}/bin{os.pathsep}{os.environ['PATH']}")
        subprocess.run(["bash", "-c", line], cwd=home, env=environment, check=True, stdout=subprocess.DEVNULL)
        self.assertEqual((home / "built").read_text(),
                         "--target krvcmd krvSdk64 krvsim krvadm krvJukebox64 krvcmd_manual krvcmd_completion -- --quiet\n")
        self.assertEqual({path.relative_to(self.prefix).as_posix() for path in self.prefix.rglob("*") if path.is_file()},
                         PROGRAM | SIMULATOR | JUKEBOX | DEVELOPMENT)
        self.assertEqual(self.run_installed("krvcmd", "query", "drives", "D", "1", "J@8", "notable", "columns=d")[0], 0)

    def test_guides_lead_to_files_that_are_installed(self):
        self.install()
        for guide in self.prefix.glob("share/doc/krvcmd/*.md"):
            for target in re.findall(r"\]\(([^)#:]+)\)", guide.read_text()):
                self.assertTrue((guide.parent / target).exists(), f"{guide.name} leads to {target}")

    def test_no_file_names_the_building_machine(self):
        self.install()
        for path in self.prefix.rglob("*"):
            if path.is_file() and path.suffix != ".so" and path.name not in ("krvcmd", "krvsim", "krvadm"):
                self.assertNotIn(BUILD_DIR.encode(), path.read_bytes(), path)


if __name__ == "__main__":
    unittest.main()
