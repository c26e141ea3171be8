#!/usr/bin/python3
"""Prints functions and lines for the addresses of a crash note: tools/explain_crash.py NOTE [--symbols ZIP_OR_FOLDER]

The symbols are those of the very build that the note names: Quenlox-VERSION-symbols.zip of its release, by default looked
for in build/packages, or build/win64 of the commit.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
TOOLS = "x86_64-w64-mingw32-"


def image_base(module):
    header = subprocess.run([TOOLS + "objdump", "-p", module], check=True, capture_output=True, text=True).stdout
    return int(re.search(r"^ImageBase\s+([0-9a-f]+)", header, re.M)[1], 16)


def lines_at(module, offset):
    """["function at file:line", ...], from what was inlined outwards."""
    command = [TOOLS + "addr2line", "-e", module, "-f", "-C", "-i", "-s", hex(image_base(module) + offset)]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()
    return [f"{function} at {place}" for function, place in zip(output[::2], output[1::2])]


def explain(note, modules):
    calls = None  # read so far
    for line in note.splitlines():
        print(line)
        place = re.fullmatch(r"(?:place )?  +(\S+)\+0x([0-9A-F]+)", line)
        if place and place[1] in modules:
            # Of a call the note has the address to return to; the call stands before it. The first one is the fault itself.
            for where in lines_at(modules[place[1]], int(place[2], 16) - (1 if calls else 0)):
                print(f"      {where}")
        calls = 0 if line == "calls" else calls + 1 if calls is not None else None


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("note", type=pathlib.Path)
    parser.add_argument("--symbols", type=pathlib.Path)
    options = parser.parse_args()
    note = options.note.read_text("ascii")
    version = re.match(r"Quenlox (\S+) ended", note)
    commit = re.search(r"^commit  (\S+)$", note, re.M)
    if not version or not commit:
        sys.exit(f"{options.note} is no crash note")
    symbols = options.symbols or ROOT / f"build/packages/Quenlox-{version[1]}-symbols.zip"
    if not symbols.exists():
        sys.exit(f"no symbols of {version[1]} ({commit[1]}): {symbols} is not there")
    with tempfile.TemporaryDirectory() as folder:
        if symbols.is_file():
            with zipfile.ZipFile(symbols) as archive:
                archive.extractall(folder)
            symbols = next(pathlib.Path(folder).iterdir())
        modules = {path.name: path for ending in ("exe", "dll") for path in symbols.rglob(f"*.{ending}")}
        built = (symbols / "version.txt").read_text().split()
        if built[:2] != [version[1], commit[1]]:
            sys.exit(f"the note is of {version[1]} ({commit[1]}), the symbols are of {built[0]} ({built[1]})")
        explain(note, modules)


if __name__ == "__main__":
    main()
