"""Composes a package as the program shows it: released and pressed, with sample texts, and its region beside it."""

import io
import struct

import numpy
from PIL import Image, ImageDraw, ImageFont

FONT = "/usr/share/fonts/opentype/ipafont-gothic/ipagp.ttf"
SAMPLES = ("夜明けのワルツ / Waltz at Daybreak", "MPEG1 Layer3 44.1kHz 128kbps+L", "02:47", "03:45", " PLAY↑", "PROGRAM",
           "MP3", "A 3/120", "北村 灯 with the Harbour Quartet")
LARGEST = 120 * 1024
LYRIC = "窓をあけたら 朝の色\nWe danced until the lamps grew pale"
PLAYBACK = ("play", "pause", "back", "next", "low", "high", "double")
COMMANDS = ("list", "opt", "tag", "conv", "help", "mini", "close")


def picture(data):
    return Image.open(io.BytesIO(data)).convert("RGB")


def region_mask(data, size):
    mask = Image.new("L", size, 0)
    for i in range(struct.unpack_from("<I", data, 8)[0]):
        left, top, right, bottom = struct.unpack_from("<4i", data, 32 + 16 * i)
        mask.paste(255, (left, top, right, bottom))
    return mask


def wrapped(words, font, width):
    lines = []
    for paragraph in words.split("\n"):
        lines.append("")
        for word in paragraph.split(" ") if "\n" in words else [paragraph]:
            longer = (lines[-1] + " " + word).strip() if lines[-1] else word
            if lines[-1] and font.getlength(longer) > width:
                lines.append(word)
            else:
                lines[-1] = longer
    return lines


def text(image, x, y, w, h, points, colour, words):
    tile = image.crop((x, y, x + w, y + h))
    font = ImageFont.truetype(FONT, round(points * 96 / 72))
    pen, lines = ImageDraw.Draw(tile), wrapped(words, font, w)
    line = sum(font.getmetrics())
    top = (h - line * len(lines)) / 2
    for i, t in enumerate(lines):
        pen.text((0, round(top + i * line)), t, font=font, fill=tuple(colour))
    image.paste(tile, (x, y))


def compose(skin, files, pressed, panel, played=0.62, volume=70):
    window = picture(files["main_back.bmp"])
    bar = picture(files["main_bar.bmp"])
    window.paste(bar.crop((0, 0, round(bar.width * played), bar.height)), skin.BAR[:2])
    window.paste(picture(files["main_vol.bmp"]), skin.VOLUME[:2])
    x, y, w, h = skin.DISPLAY_D[:4]
    window.paste(tuple(skin.DISPLAY_D[4:]), (x, y, x + w, y + h))
    part = round(h * volume / 100)
    window.paste(picture(files["main_level.bmp"]).crop((0, 0, w, part)), (x, y + round(h * (1 - volume / 100))))
    for prefix, group in (("cmd", PLAYBACK), ("btn", COMMANDS)):
        for n in group:
            if not (panel and prefix == "cmd"):
                window.paste(picture(files[f"{prefix}_{n}{2 if pressed else 1}.bmp"]), skin.BUTTONS[n][:2])
    if panel:
        window.paste(picture(files["main_panel.bmp"]), skin.PANEL[:2])
    x, y = skin.DISPLAY_B
    wave = Image.new("RGB", (85, 30), skin.SCOPE[0])
    pen = ImageDraw.Draw(wave)
    for i in range(17):
        tall = int(4 + 24 * abs(numpy.sin(i * 0.9) * numpy.cos(i * 0.31)) * (1 - i / 26))
        pen.rectangle((i * 5, 30 - tall, i * 5 + 3, 29), skin.SCOPE[1])
    window.paste(wave, (x, y))
    for label, words in zip(skin.LABELS, SAMPLES):
        if label[0] >= 0:
            text(window, *label[:5], label[5:8], words)
    if skin.DISPLAY_C:
        x, y, w, h = skin.DISPLAY_C[:4]
        window.paste(tuple(skin.DISPLAY_C[4:]), (x, y, x + w, y + h))
        text(window, x + 3, y, w - 3, h, 9, skin.LABELS[1][5:8], "128kbps  A 3/120  21:40")
    if skin.LYRICS:
        x, y, w, h = skin.LYRICS[:4]
        window.paste(tuple(skin.LYRICS_BACK), (x, y, x + w, y + h))
        text(window, *skin.LYRICS[:5], skin.LYRICS[5:8], LYRIC)
    return window


def write(skin, files, name, path):
    """Saves the sheet: released on a light desk, pressed (in operation panel mode where there is one) on a dark desk."""
    margin = 14
    cells = [(compose(skin, files, False, False), (222, 226, 231)), (compose(skin, files, True, False), (222, 226, 231))]
    if skin.PANEL_SHOWN:
        cells.append((compose(skin, files, False, True, 0.2, 100), (38, 42, 48)))
    outline = region_mask(files[f"{name}.rgn"], (skin.WIDTH, skin.HEIGHT))
    cells.append((Image.new("RGB", outline.size, (255, 255, 255)), (0, 0, 0)))
    across = 1 if skin.WIDTH > 520 else 2 if skin.WIDTH > skin.HEIGHT else len(cells)
    w, h = skin.WIDTH + 2 * margin, skin.HEIGHT + 2 * margin
    sheet = Image.new("RGB", (w * across, h * -(-len(cells) // across)), (222, 226, 231))
    for i, (window, desk) in enumerate(cells):
        cell = Image.new("RGB", (w, h), desk)
        cell.paste(window, (margin, margin), outline)
        sheet.paste(cell, (i % across * w, i // across * h))
    buffer = io.BytesIO()
    sheet.save(buffer, "PNG", optimize=True)
    if buffer.tell() > LARGEST:
        buffer = io.BytesIO()
        sheet.quantize(256, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.FLOYDSTEINBERG).save(
            buffer, "PNG", optimize=True)
    with open(path, "wb") as f:
        f.write(buffer.getvalue())
