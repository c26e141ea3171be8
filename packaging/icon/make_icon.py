#!/usr/bin/python3
"""Renders quenlox.svg in every size that Windows asks for and packs the pictures into quenlox.ico; also makes the picture
at the side of the installer's last page.

usage: packaging/icon/make_icon.py        (needs rsvg-convert and Pillow)

Small sizes are stored as bitmaps with an alpha channel and a mask, which every program that reads icons understands;
large ones, which only the shell asks for, as PNG.
"""
import io
import pathlib
import struct
import subprocess

from PIL import Image, ImageOps

HERE = pathlib.Path(__file__).parent
SIZES = (16, 20, 24, 30, 32, 36, 40, 48, 60, 64, 72, 80, 96, 128, 256)
SMALLEST_PNG = 72
SIDE = (164, 314)  # pixels, as the installer wants it


def render(size):
    # Four times as large and then reduced: small sizes come out clearer than from the renderer itself.
    factor = 4 if size < 128 else 1
    png = subprocess.run(["rsvg-convert", "-w", str(size * factor), "-h", str(size * factor), HERE / "quenlox.svg"],
                         check=True, capture_output=True).stdout
    picture = Image.open(io.BytesIO(png)).convert("RGBA")
    return picture.resize((size, size), Image.LANCZOS) if factor > 1 else picture


def as_bitmap(picture):
    size = picture.width
    rows = [picture.crop((0, y, size, y + 1)).tobytes("raw", "BGRA") for y in reversed(range(size))]
    mask_row = (size + 31) // 32 * 4
    mask = bytearray()
    for y in reversed(range(size)):
        bits = bytearray(mask_row)
        for x in range(size):
            if picture.getpixel((x, y))[3] == 0:
                bits[x // 8] |= 0x80 >> x % 8
        mask += bits
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    return header + b"".join(rows) + bytes(mask)


def as_png(picture):
    out = io.BytesIO()
    picture.save(out, "PNG", optimize=True)
    return out.getvalue()


def side_picture():
    """The icon on the dark blue of its own ground."""
    ground = Image.linear_gradient("L").resize(SIDE)
    picture = ImageOps.colorize(ground, "#3b4f86", "#0e1430", mid="#1d2850")
    icon = render(96)
    picture.paste(icon, ((SIDE[0] - 96) // 2, 60), icon)
    return picture


def main():
    images = []
    for size in SIZES:
        picture = render(size)
        images.append((size, as_png(picture) if size >= SMALLEST_PNG else as_bitmap(picture)))
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, data in images:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    (HERE / "quenlox.ico").write_bytes(directory + b"".join(data for _, data in images))
    side_picture().quantize(128).save(HERE.parent / "installer/side.bmp")


if __name__ == "__main__":
    main()
