#!/usr/bin/python3
"""Checks that every file includes only rooms that its own room names: tools/check_includes.py ROOMS

ROOMS is written by CMake, a line for each room: "folder: name used rooms". A room is a folder; includes are written from
the root of the tree. Prints what is wrong and ends with 1, or how many includes there are.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
OUTSIDE = {"tests", "bench", "docs", "build", "demo", "packaging", "tools", "skins", "cmake"}  # no rooms of the product
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)


def read_rooms(file):
    """{folder: (room, rooms it uses)}"""
    rooms = {}
    for line in pathlib.Path(file).read_text().splitlines():
        folder, names = line.split(":")
        room, *uses = names.split()
        rooms[folder] = room, set(uses)
    return rooms


def sources():
    for top in sorted(ROOT.iterdir()):
        if top.is_dir() and top.name not in OUTSIDE and not top.name.startswith("."):
            yield from sorted(path for path in top.rglob("*") if path.suffix in (".h", ".cpp"))


def faults(rooms):
    """What is wrong, a line each; and how many includes of other rooms were looked at."""
    wrong, seen = [], 0
    for path in sources():
        name, folder = path.relative_to(ROOT), str(path.relative_to(ROOT).parent)
        if folder not in rooms:
            wrong.append(f"{name}: its folder is no room")
            continue
        room, uses = rooms[folder]
        for target in INCLUDE.findall(path.read_text()):
            other = str(pathlib.PurePosixPath(target).parent)
            if other == folder or other == ".":
                continue
            seen += 1
            if other not in rooms:
                wrong.append(f"{name}: {target} is in no room")
            elif rooms[other][0] not in uses and path.name != "main.cpp":
                wrong.append(f"{name}: includes {target}, but {room} does not name {rooms[other][0]}")
    return wrong, seen


def circles(rooms):
    """Rooms that use each other, by whatever way."""
    uses = {room: used for room, used in rooms.values()}

    def reached(room):
        found, ahead = set(), set(uses[room])
        while ahead:
            found |= ahead
            ahead = set().union(*(uses.get(next_room, set()) for next_room in ahead)) - found
        return found

    return [f"{room} uses itself through others" for room in sorted(uses) if room in reached(room)]


def main():
    rooms = read_rooms(sys.argv[1])
    wrong, seen = faults(rooms)
    wrong += circles(rooms)
    print("\n".join(wrong) if wrong else f"{len(rooms)} rooms, {seen} includes between them, none upwards")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
