"""scripts/check_includes notices each way in which the structure can be broken: check_includes_test.py SCRIPT"""
import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

# main -> driver -> commands -> (access -> base) and privately text; the fake library stands beside.
TARGETS = """\
krvcmd|krvcmd|driver|
krvcmd/frontend/base|base|options|options
krvcmd/frontend/driver|driver|commands base|base $<LINK_ONLY:commands>
krvcmd/commands|commands|access text|access $<LINK_ONLY:text>
krvcmd/console/text|text||
krvcmd/service/access|access|sdk base|sdk base
krvcmd/service/sdk|sdk||
tests/unit|unit_tests|commands|
""".splitlines()

SOUND = {
    "krvcmd/main.cpp": '#include "krvcmd/frontend/driver/driver.h"\n',
    "krvcmd/frontend/base/status.h": "#include <string>\n",
    "krvcmd/frontend/driver/driver.h": '#include "krvcmd/frontend/base/status.h"\n',
    "krvcmd/frontend/driver/driver.cpp": '#include "krvcmd/commands/scan.h"\n#include "krvcmd/service/sdk/krv_sdk.h"\n',
    "krvcmd/commands/scan.h": '#include "krvcmd/service/access/calls.h"\n',
    "krvcmd/commands/scan.cpp": '#include "krvcmd/commands/scan.h"\n#include "krvcmd/console/text/wrap.h"\n'
                                '// KrvMediaScan(0)\nauto text = "KrvMediaScan(";\n',
    "krvcmd/console/text/wrap.h": "",
    "krvcmd/console/text/width_posix.cpp": "#include <sys/ioctl.h>\n#include <unistd.h>\n",
    "krvcmd/service/access/calls.h": '#include "krvcmd/service/sdk/krv_sdk.h"\n',
    "krvcmd/service/access/calls.cpp": "void Scan() { KrvMediaScan(0); }\n",
    "krvcmd/service/sdk/krv_sdk.h": "#if defined(_WIN32)\n#endif\nKRV_API KrvBool KrvMediaScan(KrvCallContext* context);\n",
    "tests/unit/support/text.h": "",
    "tests/unit/scan_test.cpp": '#include "krvcmd/commands/scan.h"\n#include "tests/unit/support/text.h"\n#include <unistd.h>\n',
}

loader = importlib.machinery.SourceFileLoader("check_includes", sys.argv.pop(1))
check_includes = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_includes", loader))
loader.exec_module(check_includes)


class CheckIncludes(unittest.TestCase):
    def findings(self, changes, targets=TARGETS):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**SOUND, **changes}.items():
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return check_includes.check(pathlib.Path(folder), targets)

    def test_a_sound_program_has_no_findings(self):
        self.assertEqual(self.findings({}), [])

    def test_an_empty_folder_is_not_sound(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(len(check_includes.check(pathlib.Path(folder), TARGETS)), 1)

    def test_each_breach_is_found_once(self):
        breaches = {
            "a folder knows nothing of those that link it":
                ("krvcmd/service/access/a.cpp", '#include "krvcmd/commands/scan.h"\n'),
            "what a linked target links privately is not handed on":
                ("krvcmd/frontend/driver/a.cpp", '#include "krvcmd/console/text/wrap.h"\n'),
            "main knows only what it links": ("krvcmd/main.cpp", '#include "krvcmd/commands/scan.h"\n'),
            "tests include only what they link": ("tests/unit/a.cpp", '#include "krvcmd/console/text/wrap.h"\n'),
            "what is included exists": ("krvcmd/commands/a.cpp", '#include "krvcmd/commands/gone.h"\n'),
            "commands do not call the library": ("krvcmd/commands/a.cpp", "int a = KrvMediaScan (0);\n"),
            "system calls have their files": ("krvcmd/service/access/a.cpp", "#include <unistd.h>\n"),
            "source files are compiled, not included":
                ("krvcmd/commands/a.cpp", '#include "krvcmd/commands/scan.cpp"\n'),
            "a name from another namespace is used":
                ("krvcmd/commands/a.cpp", "using std::set;\nusing std::map;\nmap a;  // no set\n"),
            "an alias of a namespace is used":
                ("krvcmd/commands/a.cpp", "namespace fs = std::filesystem;\nnamespace io = std::io;\nio::file a;\n"),
            "system questions have their files": ("krvcmd/console/text/a.h", "#ifdef _WIN32\n#endif\n"),
        }
        for what, (name, text) in breaches.items():
            with self.subTest(what):
                self.assertEqual(len(self.findings({name: text})), 1, self.findings({name: text}))

    def test_targets_that_link_each_other_are_found(self):
        circle = [line.replace("sdk||", "sdk|access|access") for line in TARGETS]
        self.assertEqual(self.findings({}, circle), ["krvcmd/service/access and krvcmd/service/sdk link each other"])


if __name__ == "__main__":
    unittest.main()
