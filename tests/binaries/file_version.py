"""file_version.py VERSION FILE ...: each file tells the version that it belongs to."""
import pathlib
import sys

from inspect_file import Findings


def windows_property(name, value):
    """How the version resource stores it: both as UTF-16, the value at the next multiple of four."""
    return [f"{name}\0{fill}{value}\0".encode("utf-16-le") for fill in ("", "\0")]


version, *paths = sys.argv[1:]
findings = Findings()
for path in map(pathlib.Path, paths):
    content = path.read_bytes()
    name = path.stem.removeprefix("lib")
    if content.startswith(b"MZ"):
        told = all(any(entry in content for entry in windows_property(*wanted))
                   for wanted in (("FileVersion", version), ("ProductVersion", version), ("InternalName", name)))
    else:
        told = f"{name} {version}\0".encode() in content
    findings.expect(told, f"{path}: does not tell the version {version}")
findings.report()
