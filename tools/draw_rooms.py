#!/usr/bin/python3
"""Draws the rooms and what they use as docs/rooms.svg: tools/draw_rooms.py build/native/rooms.txt [--check]

A room stands above all that it uses; a line that another path says already is left out. The number is that of the lines of
code (neither blank nor comment alone). --check ends with 1 when the rooms in the picture or their lines of use are not those
of today; the numbers may be older.
"""

import pathlib
import re
import sys

from check_includes import ROOT, read_rooms

PICTURE = ROOT / "docs/rooms.svg"
BOX, GAP, LEVEL, MARGIN = (118, 40), 14, 96, 16
CODE = re.compile(r"^\s*(//.*)?$")
COLORS = {"libraries": "#dfe9f5", "platform": "#e8e8e8", "app": "#f8dcd4"}


def lines_of(folder):
    files = (path for path in (ROOT / folder).iterdir() if path.suffix in (".h", ".cpp", ".inc"))
    return sum(not CODE.match(line) for path in files for line in path.read_text().splitlines())


def direct_uses(uses):
    """{room: rooms that it uses and that none of its others uses already}"""

    def below(room):
        return set().union(*({other} | below(other) for other in uses[room]))

    return {room: {other for other in used if not any(other in below(third) for third in used if third != other)}
            for room, used in uses.items()}


def levels(uses):
    level = {}

    def of(room):
        if room not in level:
            level[room] = 1 + max((of(other) for other in uses[room]), default=-1)
        return level[room]

    for room in uses:
        of(room)
    return level


def places(uses, level):
    """{room: (x, y)}; within a level a room stands near those that use it."""
    rows = [[room for room in uses if level[room] == n] for n in range(max(level.values()) + 1)]
    x = {}
    for row in reversed(rows):
        above = {room: [x[other] for other in x if room in uses[other]] for room in row}
        row.sort(key=lambda room: sum(above[room]) / len(above[room]) if above[room] else 0)
        for i, room in enumerate(row):
            x[room] = (i - (len(row) - 1) / 2) * (BOX[0] + GAP)
    left = min(x.values())
    top = max(level.values())
    return {room: (x[room] - left + MARGIN, (top - level[room]) * LEVEL + MARGIN) for room in uses}


def draw(folders, uses):
    level = levels(uses)
    place = places(direct_uses(uses), level)
    width = max(x for x, _ in place.values()) + BOX[0] + MARGIN
    height = max(y for _, y in place.values()) + BOX[1] + MARGIN
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:.0f} {height:.0f}" font-family="sans-serif" '
           f'text-anchor="middle"><rect width="100%" height="100%" fill="#fff"/>']
    for room, used in direct_uses(uses).items():
        for other in sorted(used):
            (x, y), (u, v) = place[room], place[other]
            out.append(f'<path class="{room}-{other}" d="M{x + BOX[0] / 2:.0f},{y + BOX[1]:.0f} C{x + BOX[0] / 2:.0f},'
                       f'{y + BOX[1] + 30:.0f} {u + BOX[0] / 2:.0f},{v - 30:.0f} {u + BOX[0] / 2:.0f},{v:.0f}" '
                       'fill="none" stroke="#8a93a0"/>')
    for room, (x, y) in place.items():
        color = COLORS.get(folders[room].split("/")[0], "#eef3e6")
        out.append(f'<rect x="{x:.0f}" y="{y:.0f}" width="{BOX[0]}" height="{BOX[1]}" rx="5" fill="{color}" '
                   'stroke="#5b6470"/>')
        out.append(f'<text x="{x + BOX[0] / 2:.0f}" y="{y + 18:.0f}" font-size="13">{room}</text>')
        out.append(f'<text x="{x + BOX[0] / 2:.0f}" y="{y + 33:.0f}" font-size="10" fill="#5b6470">'
                   f'{lines_of(folders[room])}</text>')
    return "\n".join(out + ["</svg>"]) + "\n"


def main():
    rooms = read_rooms(sys.argv[1])
    folders = {room: folder for folder, (room, _) in rooms.items()}
    uses = {room: {other for other in used if other in folders and other != room} for room, used in rooms.values()}
    drawn = draw(folders, uses)
    if sys.argv[2:] != ["--check"]:
        PICTURE.write_text(drawn)
        return
    said = PICTURE.read_text() if PICTURE.exists() else ""
    what = re.compile(r'class="[^"]+"|font-size="13">[^<]+')
    if what.findall(said) != what.findall(drawn):
        print("docs/rooms.svg shows other rooms; run tools/draw_rooms.py build/native/rooms.txt")
        sys.exit(1)


if __name__ == "__main__":
    main()
