"""windows_hardening.py OBJDUMP FILE ...: addresses are random over the whole range, data is not executable."""
import sys

from inspect_file import Findings, tool

findings = Findings()
for path in sys.argv[2:]:
    headers = tool(sys.argv[1], "-p", path)
    for flag in ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"):
        findings.expect(flag in headers, f"{path}: without {flag}")
    # An image can only be moved with its relocations.
    findings.expect("relocations stripped" not in headers, f"{path}: relocations were stripped")
findings.report()
