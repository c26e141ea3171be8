#!/usr/bin/python3
"""Makes what is outside the program of its table of formats (state/media_formats.inc): the installer's associations and the
table in the guide.
usage: tools/media_formats.py [--check]      --check: ends with 1 when one of them is not what the table gives"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
TABLE = ROOT / "state/media_formats.inc"
INSTALLER = ROOT / "packaging/installer/formats.nsh"
GUIDE = ROOT / "packaging/help/Quenlox.html"
FAMILY = re.compile(r"^MEDIA_FAMILY\((.*?)\)$", re.DOTALL | re.MULTILINE)
FORMAT = re.compile(r"^MEDIA_FORMAT\((\w+), (\w+), (true|false)\)$", re.MULTILINE)
PLAYED_BY = {
    "Library": "Quenlox自身が再生します。イコライザ、音程・速度、オシロ・スペアナが使えます。",
    "MediaControl": "Windowsの機能で再生します。",
}


def read():
    """(families, formats): dictionaries by name, and (extension, family, offered) in their order."""
    text = TABLE.read_text()
    families = {}
    for row in FAMILY.findall(text):
        name, _, _, _, player, english, japanese, guide = (part.strip().strip('"') for part in row.split(","))
        families[name] = {"player": player, "english": english, "japanese": japanese, "guide": guide}
    return families, [(extension, family, offered == "true") for extension, family, offered in FORMAT.findall(text)]


def installer(families, formats):
    offered = [(extension, family) for extension, family, offers in formats if offers]
    lines = ["; Made by tools/media_formats.py from the program's table of formats.", "!macro EachKind DO"]
    lines += [f"  !insertmacro ${{DO}} {family.lower()}" for family in families]
    lines += ["!macroend", "", "!macro EachExtension DO"]
    lines += [f"  !insertmacro ${{DO}} {extension} {family.lower()}" for extension, family in offered]
    lines += ["!macroend", ""]
    for name, family in families.items():
        extensions = ", ".join(extension for extension, of in offered if of == name)
        lines.append(f'!insertmacro Text Kind_{name.lower()} "{family["english"]} ({extensions})" '
                     f'"{family["japanese"]} ({extensions})"')
    return "\n".join(lines) + "\n"


def guide(families, formats):
    rows, last = [], None
    for name, family in families.items():
        extensions = "、".join(extension for extension, of, _ in formats if of == name)
        row = f"<tr><td>{family['guide']}</td><td>{extensions}</td>"
        if family["player"] != last:
            span = sum(other["player"] == family["player"] for other in families.values())
            row += f'<td rowspan="{span}">{PLAYED_BY[family["player"]]}</td>'
        last = family["player"]
        rows.append(row + "</tr>")
    begin, end = "<tr><th>種類</th><th>拡張子</th><th>再生のしかた</th></tr>\n", "\n</table>"
    before, rest = GUIDE.read_text().split(begin, 1)
    return before + begin + "\n".join(rows) + end + rest.split(end, 1)[1]


def main():
    table = read()
    status = 0
    for path, text in ((INSTALLER, installer(*table)), (GUIDE, guide(*table))):
        if sys.argv[1:] != ["--check"]:
            path.write_text(text)
        elif not path.exists() or path.read_text() != text:
            print(f"{path.relative_to(ROOT)}: not what state/media_formats.inc gives; run tools/media_formats.py")
            status = 1
    sys.exit(status)


if __name__ == "__main__":
    main()
