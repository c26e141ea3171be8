#!/usr/bin/python3
"""Seeds of skin_definition, region_file and bmp: what the shipped packages hold, and one small picture of every kind."""

import pathlib
import shutil
import struct

HERE = pathlib.Path(__file__).resolve().parent
CORPUS = HERE / "corpus"


def bitmap(bits, data, width=5, height=3, compression=0, colours=0, masks=b"", header=40):
    """A Windows bitmap file; `data` are the rows as they stand in the file."""
    if header == 12:
        info = struct.pack("<IHHHH", 12, width, height, 1, bits) + bytes(i % 256 for i in range(3 * colours))
    else:
        info = struct.pack("<IiiHHIIiiII", header, width, height, 1, bits, compression, len(data), 0, 0, colours, 0)
        info += b"\0" * (header - 40) + masks + bytes(i % 256 for i in range(4 * colours))
    return struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(data), 0, 0, 14 + len(info)) + info + data


def rows(bits, width=5, height=3):
    size = (width * bits + 31) // 32 * 4
    return bytes(i * 37 % 256 for i in range(size * height))


def main():
    for name in ("skin_definition", "region_file", "bmp"):
        (CORPUS / name).mkdir(parents=True, exist_ok=True)
    for skin in ("default", "hakuji", "obi"):
        package = HERE.parents[1] / "skins" / skin / "package"
        shutil.copyfile(package / f"{skin}.tsk", CORPUS / "skin_definition" / skin)
        shutil.copyfile(package / f"{skin}.rgn", CORPUS / "region_file" / skin)
    (CORPUS / "region_file/announces_too_many").write_bytes(struct.pack("<8I", 32, 1, 2**32 - 1, 16, 0, 0, 9, 9) + struct.pack("<4i", 0, 0, -5, 9))
    pictures = {f"bits{bits}": bitmap(bits, rows(bits), colours=2**bits if bits <= 8 else 0) for bits in (1, 4, 8, 16, 24, 32)}
    pictures |= {"top_down": bitmap(24, rows(24), height=-3),
                 "fields16": bitmap(16, rows(16), compression=3, masks=struct.pack("<3I", 0xF800, 0x7E0, 0x1F)),
                 "fields32_v5": bitmap(32, rows(32), compression=3, header=124),
                 "rle8": bitmap(8, b"\5\1\0\0\0\3\1\2\3\0\2\2\0\0\0\2\1\0\3\4\0\1", compression=1, colours=16),
                 "rle4": bitmap(4, b"\5\x12\0\0\0\5\x12\x34\x50\0\0\0\5\x21\0\1", compression=2, colours=16),
                 "os2": bitmap(8, rows(8), colours=256, header=12),
                 "huge": bitmap(32, b"", width=2**31 - 1, height=2**31 - 1)}
    for name, data in pictures.items():
        (CORPUS / "bmp" / name).write_bytes(data)


main()
