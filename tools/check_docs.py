#!/usr/bin/python3
"""Checks that what docs/architecture.md says of places is true: every `Name` in `file` stands in that file, and every path
exists; and that the example of docs/skins.md is what ships. Prints what is wrong and ends with 1, or how many places there
are."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
PLACE = re.compile(r"`([A-Za-z_:]+)`(?: and `([A-Za-z_:]+)`)?\s+in\s+`([a-z0-9_/]+\.(?:cpp|h))`")
PATH = re.compile(r"`([a-z0-9_]+(?:/[A-Za-z0-9_.*]+)+)`")


def main():
    text = (ROOT / "docs/architecture.md").read_text()
    wrong, places = [], 0
    for *names, file in PLACE.findall(text):
        source = ROOT / file
        code = source.read_text() if source.exists() else ""
        for name in filter(None, names):
            places += 1
            if not re.search(rf"\b{re.escape(name)}\b", code):
                wrong.append(f"{file} has no {name}")
    for path in sorted(set(PATH.findall(text))):
        places += 1
        if not path.startswith("build/") and not list(ROOT.glob(path.rstrip("/"))):
            wrong.append(f"there is no {path}")
    example = (ROOT / "skins/hakuji/package/hakuji.tsk").read_text()
    if "".join("    " + line if line.strip() else "\n" for line in example.splitlines(True)) not in (ROOT / "docs/skins.md").read_text():
        wrong.append("the example of docs/skins.md is not skins/hakuji/package/hakuji.tsk")
    print("\n".join(wrong) if wrong else f"{places} places")
    sys.exit(1 if wrong or places == 0 else 0)


if __name__ == "__main__":
    main()
