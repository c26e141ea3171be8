#!/usr/bin/env python3
"""Writes text/cp932_table.inc: the double-byte half of Windows code page 932, taken from Python's cp932 codec.

Rows are lead bytes 0x81-0x9F and 0xE0-0xFC, columns trail bytes 0x40-0x7E and 0x80-0xFC (188 columns); 0 marks an
unassigned code.
"""
import pathlib

leads = [*range(0x81, 0xA0), *range(0xE0, 0xFD)]
trails = [*range(0x40, 0x7F), *range(0x80, 0xFD)]


def decode(lead, trail):
    try:
        text = bytes((lead, trail)).decode("cp932")
    except UnicodeDecodeError:
        return 0
    return ord(text) if len(text) == 1 else 0


rows = [[decode(lead, trail) for trail in trails] for lead in leads]
# User-defined area F040-F9FC maps to the private use area U+E000-E757, as Windows has it.
for r, lead in enumerate(leads):
    if 0xF0 <= lead <= 0xF9:
        rows[r] = [0xE000 + (lead - 0xF0) * 188 + c for c in range(188)]

out = ["// Made by tools/make_cp932_table.py; do not edit.", "// clang-format off"]
out.append("constexpr char16_t kDoubleByte[60][188] = {")
for row in rows:
    out.append("{")
    for i in range(0, 188, 16):
        out.append(",".join(f"{v:#x}" for v in row[i : i + 16]) + ",")
    out.append("},")
out.append("};")
pathlib.Path(__file__).parent.parent.joinpath("text/cp932_table.inc").write_text("\n".join(out) + "\n")
