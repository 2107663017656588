"""export_list.py HEADER DEF: the list of exports names exactly the functions that the header declares."""
import re
import sys

from inspect_file import FUNCTION_COUNT, Findings, exported_by_list

header, export_list = sys.argv[1:]
text = open(header, encoding="utf-8").read()
declared = re.findall(r"^KRV_API KrvBool (Krv\w+)\(", text, re.MULTILINE)
listed = exported_by_list(export_list)

findings = Findings()
findings.expect(len(declared) == FUNCTION_COUNT, f"the header declares {len(declared)} functions")
findings.expect(len(declared) == text.count("\nKRV_API "), "a declaration of the header is not of the usual form")
findings.expect(len(set(listed)) == len(listed), "a name is listed twice")
for name in sorted(set(declared) - set(listed)):
    findings.expect(False, f"{name} is declared but not listed")
for name in sorted(set(listed) - set(declared)):
    findings.expect(False, f"{name} is listed but not declared")
findings.report()
