"""windows_exports.py OBJDUMP DEF DLL: the library exports exactly the listed functions, undecorated."""
import re
import sys

from inspect_file import Findings, exported_by_list, tool

objdump, export_list, library = sys.argv[1:]
table = tool(objdump, "-p", library).split("[Ordinal/Name Pointer] Table", 1)
exported = re.findall(r"^\s*\[ *\d+\] (\S+)$", table[1].split("\n\n")[0], re.MULTILINE) if len(table) == 2 else []
listed = exported_by_list(export_list)

findings = Findings()
findings.expect(sorted(exported) == sorted(listed), f"exports {exported}")
findings.report()
