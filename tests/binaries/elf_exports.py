"""elf_exports.py DEF LIBRARY PROGRAM: the library exports exactly the listed functions; the program imports no others.

A program that contains the C++ library exports nothing: its copy would replace the one that the client library uses.
"""
import re
import sys

from inspect_file import Findings, exported_by_list, readelf


def dynamic_symbols(path, defined):
    names = set()
    for line in readelf("--dyn-syms", path).splitlines():
        words = line.split()
        # Num: Value Size Type Bind Vis Ndx Name
        if len(words) >= 8 and words[0].rstrip(":").isdigit() and (words[6] != "UND") == defined:
            names.add(words[7].split("@")[0])
    return names


export_list, library, program = sys.argv[1:]
listed = set(exported_by_list(export_list))
exported = dynamic_symbols(library, defined=True)
wanted = {name for name in dynamic_symbols(program, defined=False) if name.startswith("Krv")}

findings = Findings()
findings.expect(exported == listed, f"exported but not listed: {sorted(exported - listed)}, "
                                    f"listed but not exported: {sorted(listed - exported)}")
findings.expect(wanted, "the program asks for no function of the library")
findings.expect(wanted <= listed, f"the program asks for {sorted(wanted - listed)}")
contains_cxx_library = not re.search(r"\(NEEDED\).*\[libstdc\+\+\.", readelf("--dynamic", program))
if contains_cxx_library:
    own = dynamic_symbols(program, defined=True)
    findings.expect(not own, f"the program exports {sorted(own)}")
findings.report()
