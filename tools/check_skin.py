#!/usr/bin/env python3
"""Says what is wrong in a skin package (docs/skins.md is the format).

    check_skin.py FOLDER

Prints one line for each finding and ends with 0 when there is no error (warnings do not count), 1 when there is one,
2 when there is no such folder. Needs nothing but Python 3.
"""

import difflib
import os
import re
import struct
import sys

PLAYBACK = ("play", "pause", "back", "next", "low", "high", "double")
COMMANDS = ("list", "opt", "tag", "conv", "help", "mini", "close")
LETTERS = "ABCDEFGHI"
MOST_RECTANGLES = 4001
LONGEST_VALUE = 127  # UTF-16 units
FIELDS = 12
LONGEST_SIDE = 4096
# Pixels; a window or picture of more is cut or passed over.
MOST_WINDOW, MOST_BAR, MOST_BUTTON, MOST_PARTS = 1 << 21, 1 << 17, 1 << 16, 1 << 19

# section -> key -> how many fields its list needs (0: one integer)
KEYS = {
    "Main": {"Ver": 0, "Size": 2, "RGB": 3, "Box": 0},
    "Label": {**{f"Label{c}": 8 for c in LETTERS}, "Lyrics": 11, "Lyrics2": 3},
    "Button": {f"Button{c}": 2 for c in LETTERS[:7]},
    "Command": {f"Command{c}": 2 for c in LETTERS[:7]},
    "Disp": {"DispA": 2, "DispB": 2, "DispC": 7, "DispD": 7, "Bar": 2, "Vol": 2},
}
# What each list may have beyond what it needs.
UNUSED = {"Lyrics2": 4}
# Fields 1 to ... of a list whose key is missing, in the order in which the loader reads the lists.
READ_ORDER = ([("Main", "Size", (60, 30)), ("Main", "RGB", (0, 0, 0))] +
              [("Label", f"Label{c}", (-1,) + (0,) * 7) for c in LETTERS] +
              [("Label", "Lyrics", (-1,) + (0,) * 10), ("Label", "Lyrics2", (0,) * 7)] +
              [("Button", f"Button{c}", (-1, 0)) for c in LETTERS[:7]] + [("Disp", "DispA", (-1, 0))] +
              [("Command", f"Command{c}", (-1, 0)) for c in LETTERS[:7]] +
              [("Disp", "DispB", (-1, 0)), ("Disp", "DispC", (-1,) + (0,) * 6), ("Disp", "DispD", (-1,) + (0,) * 6),
               ("Disp", "Bar", None), ("Disp", "Vol", None)])
# Where the fields of a colour begin.
COLOURS = {"RGB": (1,), "Lyrics": (6, 9), "Lyrics2": (1,), "DispC": (5,), "DispD": (5,), **{f"Label{c}": (6,) for c in LETTERS}}


class Findings:
    def __init__(self):
        self.errors, self.warnings = [], []

    def error(self, where, what):
        self.errors.append(f"error: {where}: {what}")

    def warning(self, where, what):
        self.warnings.append(f"warning: {where}: {what}")


def leading_number(text):
    """The loader's reading of a field: the longest decimal number in front, rounded half to even; 0 without one."""
    m = re.match(r"[ \t]*([+-]?(\d+\.?\d*|\.\d+)([eEdD][+-]?\d+)?)", text)
    if not m:
        return 0
    value = float(re.sub("[dD]", "e", m.group(1)))
    return round(value) if abs(value) < 1e9 else 0


def decode(data):
    if data.startswith((b"\xff\xfe", b"\xfe\xff")):
        return data.decode("utf-16", "replace")
    for coding in ("utf-8-sig", "cp932"):
        try:
            return data.decode(coding)
        except UnicodeDecodeError:
            pass
    return data.decode("latin-1")


def read_definition(path, found):
    """section -> key -> value, with the names as this format writes them. The first of two equal keys counts."""
    name = os.path.basename(path)
    with open(path, "rb") as f:
        lines = decode(f.read()).splitlines()
    values = {s: {} for s in KEYS}
    sections = {s.lower(): s for s in KEYS}
    section, seen = None, set()
    for number, line in enumerate(lines, 1):
        where, line = f"{name}, line {number}", line.strip()
        if not line or line.startswith(";"):
            continue
        if line.startswith("["):
            title = line[1:line.index("]")].strip() if "]" in line else line[1:]
            if "]" not in line:
                found.error(where, "section line without ]")
            section = sections.get(title.lower(), "")
            if not section:
                found.error(where, f"unknown section [{title}]" + suggestion(title, KEYS))
            elif section in seen:
                found.error(where, f"section [{title}] is there twice; only the first is read")
                section = ""
            seen.add(section)
            continue
        key, equals, value = (part.strip() for part in line.partition("="))
        if not equals:
            found.error(where, "neither a section nor a key nor a comment")
        elif section is None:
            found.error(where, f'"{key}" stands before any section')
        elif section:
            take(found, values, where, section, key, value)
    return values


def suggestion(name, known):
    near = difflib.get_close_matches(name.lower(), [k.lower() for k in known], 1)
    return f" (meant: {next(k for k in known if k.lower() == near[0])}?)" if near else ""


def take(found, values, where, section, key, value):
    known = {k.lower(): k for k in KEYS[section]}.get(key.lower())
    if known is None:
        home = [s for s in KEYS if key.lower() in (k.lower() for k in KEYS[s])]
        found.error(where, f'"{key}" belongs into [{home[0]}]' if home else
                    f'unknown key "{key}" in [{section}]' + suggestion(key, KEYS[section]))
    elif known in values[section]:
        found.error(where, f"{known} is there twice; only the first is read")
    else:
        if len(value) >= 2 and value[0] == value[-1] and value[0] in "\"'":
            value = value[1:-1]
        if len(value.encode("utf-16-le")) // 2 > LONGEST_VALUE:
            found.error(where, f"{known} is longer than {LONGEST_VALUE} characters and is cut")
        values[section][known] = value[:LONGEST_VALUE]


def parse_list(found, where, key, text, needed):
    """The fields that the text itself gives."""
    parts = text.split(",")
    if parts[0].strip() == "" and len(parts) > 1:
        found.error(where, f"{key} begins with a comma")
    if parts[-1].strip() == "" and len(parts) > 1:
        parts.pop()
    for i, part in enumerate(parts, 1):
        if not re.fullmatch(r"[ \t]*[+-]?\d+[ \t]*", part):
            found.error(where, f'{key}: field {i} is "{part.strip()}", which counts as {leading_number(part)}')
    if len(parts) > FIELDS:
        found.error(where, f"{key} has {len(parts)} fields, at most {FIELDS} are read")
    elif len(parts) > needed + UNUSED.get(key, 0):
        found.warning(where, f"{key} has {len(parts)} fields, {needed} are used")
    return [leading_number(p) for p in parts[:FIELDS]]


def read_lists(found, name, values):
    """key -> fields as the loader has them, the carried-over ones included. Bar and Vol only when given."""
    store, lists = [0] * FIELDS, {}
    for section, key, default in READ_ORDER:
        if key == "Lyrics2" and lists["Lyrics"][0] < 0:
            continue
        needed, text = KEYS[section][key], values[section].get(key)
        if text is None or (default is None and not text):
            if default is None:
                continue
            fields = list(default)
        else:
            fields = parse_list(found, name, key, text, needed) if text else []
            absent = key not in ("Size", "RGB", "Lyrics2") and fields and fields[0] < 0
            if len(fields) < needed and not absent:
                rest = ",".join(str(v) for v in store[len(fields):needed])
                found.warning(name, f"{key} has {len(fields)} fields of {needed}; the others carry over: {rest}")
        store[:len(fields)] = fields
        lists[key] = store[:needed]
    return lists


def check_colours(found, name, lists):
    for key, starts in COLOURS.items():
        fields = lists.get(key)
        if fields and not (key not in ("RGB", "Lyrics2") and fields[0] < 0):
            for s in starts:
                if not all(0 <= v <= 255 for v in fields[s - 1:s + 2]):
                    found.error(name, f"{key}: colour {fields[s - 1:s + 2]} is not within 0 to 255")


def read_bmp(path):
    """(width, height) of a picture, or what is wrong with it."""
    size = os.path.getsize(path)
    with open(path, "rb") as f:
        head = f.read(54 + 84)
    if len(head) < 26 or head[:2] != b"BM":
        return "not a Windows bitmap"
    offset, header = struct.unpack_from("<II", head, 10)
    if header == 12:
        width, height, planes, bits = struct.unpack_from("<HHHH", head, 18)
        coding, kinds = 0, (1, 4, 8, 24)
    elif header in (40, 52, 56, 64, 108, 124) and len(head) >= 54:
        width, height, planes, bits, coding = struct.unpack_from("<iiHHI", head, 18)
        kinds = {0: (1, 4, 8, 16, 24, 32), 1: (8,), 2: (4,), 3: (16, 32)}.get(coding)
    else:
        return f"header of {header} bytes is no bitmap header"
    if kinds is None:
        return f"coding {coding} is not read"
    if bits not in kinds:
        return f"{bits} bits with coding {coding} is no kind of bitmap"
    if planes != 1:
        return f"{planes} planes instead of 1"
    if width <= 0 or height == 0:
        return f"size of {width} x {height}"
    if height < 0 and coding in (1, 2):
        return "run-length coded and top-down at once"
    rows = (width * bits + 31) // 32 * 4 * abs(height) if coding in (0, 3) else 2
    if offset < 14 + header or offset + rows > size:
        return f"cut off: {size} bytes, {offset + rows} are needed"
    return width, abs(height)


def check_pictures(found, folder, entries):
    """lower-cased name without extension -> (width, height), for the pictures that can be read."""
    sizes = {}
    required = ["main_back", "main_bar", "main_vol", "main_panel"]
    pairs = [("cmd_" + n, i) for n in PLAYBACK for i in "12"] + [("btn_" + n, i) for n in COMMANDS for i in "12"]
    for name in required + [a + b for a, b in pairs] + ["main_level"]:
        entry = entries.get(name + ".bmp")
        if entry is None:
            if name != "main_level":
                found.error(name + ".bmp", "missing")
            continue
        result = read_bmp(os.path.join(folder, entry))
        if isinstance(result, str):
            found.error(entry, result)
            continue
        most = MOST_WINDOW if name == "main_back" else MOST_BAR if name.startswith("main_") else MOST_BUTTON
        if result[0] * result[1] > most:
            found.error(entry, f"{result[0]} x {result[1]} pixels, and at most {most} pixels are read")
        else:
            sizes[name] = result
    parts = sum(width * height for name, (width, height) in sizes.items() if name != "main_back")
    if parts > MOST_PARTS:
        found.error(folder, f"all pictures but main_back.bmp have {parts} pixels together, and at most {MOST_PARTS} are read")
    for stem in {a for a, _ in pairs}:
        one, two = sizes.get(stem + "1"), sizes.get(stem + "2")
        if one and two and one != two:
            found.error(stem + "2.bmp", f"{two[0]} x {two[1]}, but {stem}1.bmp is {one[0]} x {one[1]}")
    known = [n + ".bmp" for n in required + ["main_level"]] + [a + b + ".bmp" for a, b in pairs]
    for low, entry in sorted(entries.items()):
        finer = re.fullmatch(r"(.+)@([23])x\.bmp", low)
        if finer and finer[1] + ".bmp" in known:
            size, result = sizes.get(finer[1]), read_bmp(os.path.join(folder, entry))
            times = int(finer[2])
            if isinstance(result, str):
                found.error(entry, result)
            elif size and result != (times * size[0], times * size[1]):
                found.error(entry, f"{result[0]} x {result[1]}, but {times} times {finer[1]}.bmp is {times * size[0]} x {times * size[1]}")
        elif low.endswith(".bmp") and low not in known:
            found.warning(entry, "no picture of this name is used" + suggestion(low, known))
    return sizes


def rectangles_of(lists, sizes):
    """Element -> (x, y, width, height) of what the skin shows; elements without a readable picture are left out."""
    places = {}
    for i, names, prefix, key in ((7, PLAYBACK, "cmd_", "Button"), (7, COMMANDS, "btn_", "Command")):
        for n, c in zip(names, LETTERS[:i]):
            places[key + c] = (lists[key + c], sizes.get(prefix + n + "1"))
    for key, size in (("DispA", sizes.get("main_panel")), ("DispB", (85, 30)), ("Bar", sizes.get("main_bar")),
                      ("Vol", sizes.get("main_vol"))):
        if key in lists:
            places[key] = (lists[key], size)
    for key in [f"Label{c}" for c in LETTERS] + ["Lyrics", "DispC", "DispD"]:
        places[key] = (lists[key], tuple(lists[key][2:4]))
    return {k: (*f[:2], *size) for k, (f, size) in places.items() if size and f[0] >= 0}


def check_places(found, name, lists, sizes, inside):
    width, height = lists["Size"]
    places = rectangles_of(lists, sizes)
    for key, (x, y, w, h) in places.items():
        if w <= 0 or h <= 0:
            found.error(name, f"{key} is {w} x {h} pixels large")
        elif y < 0 or x + w > width or y + h > height:
            found.error(name, f"{key} ({x},{y}, {w} x {h}) is not wholly inside the window of {width} x {height}")
        elif inside and 2 * sum(sum(inside[r][x:x + w]) for r in range(y, y + h)) < w * h:
            found.error(name, f"{key} ({x},{y}, {w} x {h}) lies mostly outside the outline")
    for key in [f"Label{c}" for c in LETTERS] + ["Lyrics"]:
        points, tall = lists[key][4], lists[key][3]
        if lists[key][0] >= 0 and points <= 0:
            found.error(name, f"{key} has a font size of {points}")
        elif lists[key][0] >= 0 and tall < round(points * 96 / 72):
            found.warning(name, f"{key}: {points} points need {round(points * 96 / 72)} pixels of height, it has {tall}")
    keys = [k for k in places if k.startswith(("Button", "Command"))]
    for i, a in enumerate(keys):
        for b in keys[i + 1:]:
            (ax, ay, aw, ah), (bx, by, bw, bh) = places[a], places[b]
            if ax < bx + bw and bx < ax + aw and ay < by + bh and by < ay + ah:
                found.warning(name, f"{a} and {b} overlap")
    back = sizes.get("main_back")
    if back and (back[0] < width or back[1] < height):
        found.warning("main_back.bmp", f"{back[0]} x {back[1]} does not fill the window of {width} x {height}")
    level = "main_level" if "main_level" in sizes else "main_vol"
    if "DispD" in places and level in sizes:
        w, h = places["DispD"][2:]
        if sizes[level][0] < w or sizes[level][1] < h:
            found.warning(level + ".bmp", f"smaller than display D, which is {w} x {h}")


def check_region(found, path, size):
    """Rows of 0 and 1, where the window is; None when the file cannot be used."""
    name = os.path.basename(path)
    with open(path, "rb") as f:
        data = f.read(32 + 16 * (MOST_RECTANGLES + 1))
    length = os.path.getsize(path)
    if length < 32:
        found.error(name, f"{length} bytes; the header alone has 32")
        return None
    header, kind, count, bytes_given, *bounds = struct.unpack_from("<4I4i", data)
    if header != 32 or kind != 1:
        found.error(name, f"header size {header} and type {kind} instead of 32 and 1")
        return None
    if bytes_given != 16 * count:
        found.error(name, f"{count} rectangles are {16 * count} bytes, but the header says {bytes_given}")
    if count > MOST_RECTANGLES:
        found.error(name, f"{count} rectangles; at most {MOST_RECTANGLES} are read")
    if count == 0:
        found.error(name, "no rectangle: the window would be invisible")
        return None
    if length < 32 + 16 * count:
        found.error(name, f"cut off: {length} bytes, {32 + 16 * count} are needed")
        return None
    if length > 32 + 16 * count:
        found.warning(name, f"{length - 32 - 16 * count} bytes after the last rectangle")
    boxes = [struct.unpack_from("<4i", data, 32 + 16 * i) for i in range(min(count, MOST_RECTANGLES))]
    return fill(found, name, boxes, bounds, size)


def fill(found, name, boxes, bounds, size):
    width, height = size
    inside = [bytearray(width) for _ in range(height)]
    before = None
    for i, box in enumerate(boxes):
        left, top, right, bottom = box
        if left >= right or top >= bottom:
            found.error(name, f"rectangle {i} {box} is empty")
            return None
        if left < 0 or top < 0 or right > width or bottom > height:
            found.error(name, f"rectangle {i} {box} is not inside the window of {width} x {height}")
            return None
        if before:
            same_band = (top, bottom) == (before[1], before[3])
            if not (left >= before[2] if same_band else top >= before[3]):
                found.error(name, f"rectangle {i} {box} is out of order or overlaps the one before it {before}")
                return None
        for y in range(top, bottom):
            inside[y][left:right] = b"\1" * (right - left)
        before = box
    true = [f(b[i] for b in boxes) for i, f in enumerate((min, min, max, max))]
    if true != bounds:
        found.error(name, f"bounds are {bounds}, the rectangles reach {true}")
    return inside


def check(folder):
    found = Findings()
    entries = {e.lower(): e for e in sorted(os.listdir(folder))}
    definitions = [e for low, e in entries.items() if low.endswith(".tsk")]
    sizes = check_pictures(found, folder, entries)
    if not definitions:
        found.error("*.tsk", "no definition file")
        return found
    name = definitions[0]
    if len(definitions) > 1:
        found.warning(name, "more than one definition file; which one is used is not certain: " + ", ".join(definitions))
    values = read_definition(os.path.join(folder, name), found)
    version = leading_number(values["Main"].get("Ver", "0"))
    if version < 4:
        found.error(name, f"[Main] Ver is {version}; below 4 the skin is refused")
    box = values["Main"].get("Box", "0")
    if box not in ("0", "1"):
        found.warning(name, f'Box is "{box}"; only 1 means a rectangle')
    lists = read_lists(found, name, values)
    check_colours(found, name, lists)
    width, height = lists["Size"]
    if not (0 < width <= LONGEST_SIDE and 0 < height <= LONGEST_SIDE and width * height <= MOST_WINDOW):
        found.error(name, f"a window of {width} x {height} cannot be shown")
        return found
    inside = None
    if leading_number(box) != 1:
        region = name[:name.rindex(".") + 1] + "rgn"
        if region.lower() in entries:
            inside = check_region(found, os.path.join(folder, entries[region.lower()]), (width, height))
        else:
            found.error(region, "missing, and Box is not 1")
    check_places(found, name, lists, sizes, inside)
    return found


def main(arguments):
    if len(arguments) != 1 or arguments[0].startswith("-"):
        print(__doc__)
        return 2
    folder = arguments[0]
    if not os.path.isdir(folder):
        print(f"{folder}: no such folder")
        return 2
    sys.stdout.reconfigure(errors="backslashreplace")
    found = check(folder)
    for line in found.errors + found.warnings:
        print(line)
    print(f"{len(found.errors)} errors, {len(found.warnings)} warnings")
    return 1 if found.errors else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
