"""elf_hardening.py FILE ...: an error in handling foreign data ends the program instead of being exploitable."""
import re
import sys

from inspect_file import Findings, readelf, tool

findings = Findings()
for path in sys.argv[1:]:
    header, segments = readelf("--file-header", path), readelf("--program-headers", path)
    dynamic, symbols = readelf("--dynamic", path), readelf("--dyn-syms", path)
    flags = " ".join(re.findall(r"\((?:FLAGS|FLAGS_1)\)(.*)", dynamic))
    stack = re.search(r"GNU_STACK +\S+ +\S+ +\S+ +\S+ +\S+ +(\w+)", segments)

    findings.expect(re.search(r"Type: +DYN ", header), f"{path}: not position-independent")
    if "Position-Independent Executable file" in header or "INTERP" in segments:
        findings.expect("PIE" in flags, f"{path}: not a position-independent executable")
    findings.expect("GNU_RELRO" in segments, f"{path}: relocations stay writable")
    findings.expect("NOW" in flags, f"{path}: functions are bound late, so their table stays writable")
    findings.expect(stack and "E" not in stack.group(1), f"{path}: the stack is executable")
    findings.expect("__stack_chk_fail" in symbols, f"{path}: no stack protector")
    fortified = re.findall(r"__(?!stack)\w+_chk\b", symbols)
    findings.expect(fortified, f"{path}: no fortified function of the C library in use")
    if "X86-64" in header:
        function = "KrvSessionCreate" if path.endswith(".so") else "main"
        code = tool("objdump", f"--disassemble={function}", path)
        findings.expect("endbr64" in code, f"{path}: indirect jumps may lead anywhere")
findings.report()
