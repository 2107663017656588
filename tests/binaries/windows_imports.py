"""windows_imports.py OBJDUMP DEF FILE ...: only the system's own libraries, and krvcmd.exe each function of the client
library by name."""
import os
import re
import sys

from inspect_file import Findings, exported_by_list, tool

# Libraries that come with Windows. Each program is a single file.
SYSTEM = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "shell32.dll"}
CLIENT_LIBRARY = "krvsdk64.dll"


def imports(objdump, path):
    """The imported names of each library."""
    result, library = {}, None
    for line in tool(objdump, "-p", path).splitlines():
        name = re.match(r"\s*DLL Name: (\S+)", line)
        member = re.match(r"\s*[0-9a-f]+\s+(<none>|\d+)\s+(\S+)", line)
        if name:
            library = result.setdefault(name.group(1).lower(), [])
        elif not line.strip():
            library = None
        elif member and library is not None:
            library.append(member.group(2))
    return result


objdump, export_list, *files = sys.argv[1:]
listed = exported_by_list(export_list)
findings = Findings()
for path in files:
    found = imports(objdump, path)
    asks_service = os.path.basename(path) == "krvcmd.exe"
    findings.expect(found, f"{path}: no imports found")
    findings.expect(set(found) - {CLIENT_LIBRARY} <= SYSTEM, f"{path}: imports {sorted(found)}")
    findings.expect((CLIENT_LIBRARY in found) == asks_service, f"{path}: imports {sorted(found)}")
    if asks_service:
        asked = found.get(CLIENT_LIBRARY, [])
        findings.expect(sorted(asked) == sorted(listed), f"{path}: asks the client library for {sorted(asked)}")
findings.report()
