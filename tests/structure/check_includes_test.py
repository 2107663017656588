"""scripts/check_includes notices each way in which the structure can be broken: check_includes_test.py SCRIPT"""
import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

SOUND = {
    "krvcmd/main.cpp": '#include "krvcmd/frontend/driver.h"\n',
    "krvcmd/console/table.cpp": '#include "krvcmd/console/table.h"\n#include "krvcmd/frontend/status.h"\n',
    "krvcmd/console/table.h": "",
    "krvcmd/frontend/status.cpp": '#include "krvcmd/frontend/status.h"\n#include <string>\n',
    "krvcmd/frontend/parser.cpp": '#include "krvcmd/console/table.h"\n',
    "krvcmd/frontend/driver.cpp": '#include "krvcmd/commands/command_factory.h"\n',
    "krvcmd/service/krv_sdk.h": "#if defined(_WIN32)\n#endif\nKRV_API KrvBool KrvMediaScan(KrvCallContext* context);\n",
    "krvcmd/service/media.cpp": "void Scan() { KrvMediaScan(0); }\n",
    "krvcmd/commands/command_factory.cpp": '#include "krvcmd/commands/command.h"\n#include "krvcmd/commands/scan.h"\n',
    "krvcmd/commands/scan.cpp": '#include "krvcmd/commands/scan.h"\n// KrvMediaScan(0)\nauto text = "KrvMediaScan(";\n',
    "krvcmd/console/platform/width_posix.cpp": "#include <sys/ioctl.h>\n#include <unistd.h>\n",
    "simulator/library.cpp": '#include "krvcmd/service/krv_sdk.h"\n',
    "tests/test.cpp": '#include "krvcmd/commands/scan.h"\n',
}

loader = importlib.machinery.SourceFileLoader("check_includes", sys.argv.pop(1))
check_includes = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_includes", loader))
loader.exec_module(check_includes)


class CheckIncludes(unittest.TestCase):
    def findings(self, changes):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**SOUND, **changes}.items():
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            return check_includes.check(pathlib.Path(folder))

    def test_a_sound_program_has_no_findings(self):
        self.assertEqual(self.findings({}), [])

    def test_an_empty_folder_is_not_sound(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(len(check_includes.check(pathlib.Path(folder))), 1)

    def test_each_breach_is_found_once(self):
        breaches = {
            "the console knows no command": ("krvcmd/console/a.cpp", '#include "krvcmd/commands/command.h"\n'),
            "the console knows nothing of the front end": ("krvcmd/console/a.cpp", '#include "krvcmd/frontend/parser.h"\n'),
            "the parser knows no service": ("krvcmd/frontend/parser.cpp", '#include "krvcmd/service/krv_sdk.h"\n'),
            "the status knows nothing": ("krvcmd/frontend/status.h", '#include "krvcmd/frontend/parser.h"\n'),
            "the driver knows no single command": ("krvcmd/frontend/driver.cpp", '#include "krvcmd/commands/scan.h"\n'),
            "commands do not know each other": ("krvcmd/commands/erase.cpp", '#include "krvcmd/commands/scan.h"\n'),
            "the service layer knows no command": ("krvcmd/service/a.h", '#include "krvcmd/commands/command.h"\n'),
            "the simulator knows only the interface": ("simulator/a.h", '#include "krvcmd/frontend/status.h"\n'),
            "main knows only the driver": ("krvcmd/main.cpp", '#include "krvcmd/commands/scan.h"\n'),
            "commands do not call the library": ("krvcmd/commands/scan.cpp", "int a = KrvMediaScan (0);\n"),
            "system calls have their folder": ("krvcmd/service/a.cpp", "#include <unistd.h>\n"),
            "system questions have their folder": ("krvcmd/console/a.h", "#ifdef _WIN32\n#endif\n"),
            "a new folder needs a rule": ("krvcmd/extra/a.h", ""),
        }
        for what, (name, text) in breaches.items():
            with self.subTest(what):
                self.assertEqual(len(self.findings({name: text})), 1, self.findings({name: text}))


if __name__ == "__main__":
    unittest.main()
