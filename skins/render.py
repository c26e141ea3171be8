#!/usr/bin/python3
"""Renders the skin packages that ship from their sources: NAME/source/skin.py -> NAME/package/.

    render.py [--check] [--preview FOLDER] [NAME ...]

Needs numpy, Pillow and rsvg-convert. Every picture is drawn larger than it is wanted and averaged down, and comes in
three sets: NAME.bmp, and NAME@2x.bmp and NAME@3x.bmp for finer screens. The same sources give the same bytes. --check writes nothing and ends with 1 when a package is not what its sources give (77 when the
installed rsvg-convert is another version than the packages were made with, for then edges may round differently).
--preview also writes skin-NAME.png, the composed window in both states with sample texts.
"""

import argparse
import importlib.util
import io
import os
import struct
import subprocess
import sys

import numpy
from PIL import Image

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)

from kit import PLAYBACK  # noqa: E402

ZOOM = {1: 4, 2: 4, 3: 6}  # at which each set is drawn, by its pixels for one of the window
RENDERED_WITH = "2.54.7"
NAMES = ("default", "hakuji", "obi")
COMMANDS = ("list", "opt", "tag", "conv", "help", "mini", "close")


def rasterise(svg, width, height, zoom):
    """Pixels of an SVG text at `zoom` times its size: height x width x 4, red, green, blue, opacity, 0..255."""
    png = subprocess.run(["rsvg-convert", "--zoom", str(zoom), "--format", "png"],
                         input=svg.encode(), stdout=subprocess.PIPE, check=True).stdout
    big = numpy.asarray(Image.open(io.BytesIO(png)).convert("RGBA"), dtype=numpy.uint32)
    if big.shape[:2] != (height * zoom, width * zoom):
        raise ValueError(f"picture of {big.shape[1]} x {big.shape[0]} pixels, wanted {width * zoom} x {height * zoom}")
    return big


def over(back, layer):
    opacity = layer[:, :, 3:]
    return (layer[:, :, :3] * opacity + back * (255 - opacity) + 127) // 255


def average(big, side):
    height, width = big.shape[0] // side, big.shape[1] // side
    sums = sum(big[y::side, x::side] for y in range(side) for x in range(side))
    return ((sums[:height, :width] + side * side // 2) // (side * side)).astype(numpy.uint8)


def bmp_bytes(pixels):
    """A 24-bit uncompressed bottom-up Windows bitmap."""
    height, width = pixels.shape[:2]
    pad = bytes(-width * 3 % 4)
    rows = b"".join(pixels[y, :, ::-1].tobytes() + pad for y in range(height - 1, -1, -1))
    header = struct.pack("<2sIHHIIiiHHIIiiII", b"BM", 54 + len(rows), 0, 0, 54, 40, width, height, 1, 24, 0,
                         len(rows), 3780, 3780, 0, 0)
    return header + rows


def region_rectangles(mask):
    """Rectangles (left, top, right, bottom) of a mask in the order Windows keeps them: bands from the top down, in
    each band from left to right; rows with the same runs share one band."""
    rectangles, band, top = [], [], 0
    for y in range(mask.shape[0] + 1):
        runs = []
        if y < mask.shape[0]:
            edges = numpy.flatnonzero(numpy.diff(numpy.concatenate(([0], mask[y].astype(numpy.int8), [0]))))
            runs = [(int(a), int(b)) for a, b in zip(edges[::2], edges[1::2])]
        if runs != band:
            rectangles += [(a, top, b, y) for a, b in band]
            band, top = runs, y
    return rectangles


def region_bytes(mask):
    """The RGNDATA structure of a mask."""
    r = region_rectangles(mask)
    bound = (min(a[0] for a in r), min(a[1] for a in r), max(a[2] for a in r), max(a[3] for a in r))
    return struct.pack("<4I4i", 32, 1, len(r), 16 * len(r), *bound) + b"".join(struct.pack("<4i", *a) for a in r)


def numbers(values):
    return ",".join(str(v) for v in values)


def definition_bytes(skin):
    """The definition file: ASCII, CRLF, keys in the order in which the loader reads them."""
    out = ["; " + line for line in skin.COMMENT] + ["[Main]", "Ver=4", f"Size={skin.WIDTH},{skin.HEIGHT}",
                                                    f"RGB={numbers(skin.BACK_COLOUR)}", "Box=0", "", "[Label]"]
    out += [f"Label{chr(65 + i)}={numbers(v)}" for i, v in enumerate(skin.LABELS)]
    if skin.LYRICS:
        out += [f"Lyrics={numbers(skin.LYRICS)}", f"Lyrics2={numbers(skin.LYRICS_BACK)},0,0,0,0"]
    else:
        out += ["Lyrics=-1,0,0,0,0,0,0,0,0,0,0"]
    out += ["", "[Button]"] + [f"Button{chr(65 + i)}={numbers(skin.BUTTONS[n][:2])}" for i, n in enumerate(PLAYBACK)]
    out += ["", "[Command]"] + [f"Command{chr(65 + i)}={numbers(skin.BUTTONS[n][:2])}" for i, n in enumerate(COMMANDS)]
    out += ["", "[Disp]", f"DispA={numbers(skin.PANEL[:2]) if skin.PANEL_SHOWN else '-1,0'}",
            f"DispB={numbers(skin.DISPLAY_B)}",
            f"DispC={numbers(skin.DISPLAY_C) if skin.DISPLAY_C else '-1,0,0,0,0,0,0'}",
            f"DispD={numbers(skin.DISPLAY_D)}", f"Bar={numbers(skin.BAR[:2])}", f"Vol={numbers(skin.VOLUME[:2])}"]
    return ("\r\n".join(out) + "\r\n").encode("ascii")


def load(name):
    path = os.path.join(HERE, name, "source", "skin.py")
    unit = importlib.util.spec_from_file_location(f"skin_{name}", path)
    module = importlib.util.module_from_spec(unit)
    unit.loader.exec_module(module)
    return module


def render(name, skin):
    """All files of a package, name -> bytes."""
    mask = average(rasterise(skin.draw("mask"), skin.WIDTH, skin.HEIGHT, ZOOM[1]), ZOOM[1])[:, :, 3] >= 128
    files = {f"{name}.tsk": definition_bytes(skin), f"{name}.rgn": region_bytes(mask)}
    for fineness in ZOOM:
        files.update(pictures(skin, fineness))
    return files


def pictures(skin, fineness):
    """The pictures of one set, which has `fineness` pixels for one of the window; name -> bytes."""
    def layer(which):
        return rasterise(skin.draw(which), skin.WIDTH, skin.HEIGHT, ZOOM[fineness])

    def cut(picture, rectangle):
        x, y, w, h = (side * fineness for side in rectangle[:4])
        return picture[y:y + h, x:x + w]

    ground = layer("back")[:, :, :3]
    side = ZOOM[fineness] // fineness
    back = average(ground, side)
    released, pressed, filled, panel, full = (average(over(ground, layer(which)), side)
                                              for which in ("released", "pressed", "filled", "panel", "level"))
    made = {"main_back": back, "main_bar": cut(filled, skin.BAR), "main_vol": cut(back, skin.VOLUME),
            "main_level": cut(full, skin.DISPLAY_D), "main_panel": cut(panel, skin.PANEL)}
    for prefix, group in (("cmd", PLAYBACK), ("btn", COMMANDS)):
        for n in group:
            made[f"{prefix}_{n}1"] = cut(released, skin.BUTTONS[n])
            made[f"{prefix}_{n}2"] = cut(pressed, skin.BUTTONS[n])
    ending = f"@{fineness}x.bmp" if fineness > 1 else ".bmp"
    return {n + ending: bmp_bytes(pixels) for n, pixels in made.items()}


def differences(folder, files):
    there = set(os.listdir(folder)) if os.path.isdir(folder) else set()
    found = [f"{n}: not made by the sources" for n in sorted(there - set(files))]
    for n, data in sorted(files.items()):
        if n not in there:
            found.append(f"{n}: missing")
        else:
            with open(os.path.join(folder, n), "rb") as f:
                if f.read() != data:
                    found.append(f"{n}: differs from its source")
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--preview", metavar="FOLDER")
    parser.add_argument("names", nargs="*", metavar="NAME")
    wanted = parser.parse_args()
    installed = subprocess.run(["rsvg-convert", "--version"], stdout=subprocess.PIPE, check=True, text=True).stdout.split()
    if RENDERED_WITH not in installed:
        print(f"packages are made with rsvg-convert {RENDERED_WITH}, here is {' '.join(installed)}", file=sys.stderr)
        if wanted.check:
            return 77
    wrong = []
    for name in wanted.names or NAMES:
        skin = load(name)
        files = render(name, skin)
        folder = os.path.join(HERE, name, "package")
        if wanted.check:
            wrong += [f"{name}/package/{text}" for text in differences(folder, files)]
            continue
        os.makedirs(folder, exist_ok=True)
        for stale in set(os.listdir(folder)) - set(files):
            os.remove(os.path.join(folder, stale))
        for n, data in files.items():
            with open(os.path.join(folder, n), "wb") as f:
                f.write(data)
        if wanted.preview:
            import preview
            preview.write(skin, files, name, os.path.join(wanted.preview, f"skin-{name}.png"))
        print(f"{name}: {len(files)} files")
    for text in wrong:
        print(text)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
