"""Obi, the sash: a long flat band of peacock silk with woven waves, a golden knot that holds the keys, a cord as seek bar."""

import math

from kit import ICON_BOX, PLAYBACK, circle, commands, draw_level, icon, mix, num, picture, rounded

COMMENT = ("Quenlox skin: obi (sash)",)
WIDTH, HEIGHT = 812, 84
BACK_COLOUR = (4, 22, 25)

RIM, GOLD, CORAL, NIGHT = "#041619", "#e2bf78", "#e25a3c", "#0b2b2e"
TEXT, SOFT, LIGHT = (248, 240, 220), (196, 206, 190), (240, 208, 138)

ABSENT = (-1, 0, 0, 0, 0, 0, 0, 0)
LABELS = (
    (464, 19, 182, 17, 12, *TEXT),
    (464, 39, 207, 13, 9, *SOFT),
    (172, 17, 92, 27, 19, *LIGHT),
    (228, 47, 36, 13, 9, *SOFT),
    (172, 47, 50, 13, 9, *LIGHT),
    (676, 54, 62, 13, 9, *SOFT),
    ABSENT,
    (676, 39, 62, 13, 9, *LIGHT),
    ABSENT,
)
LYRICS = LYRICS_BACK = DISPLAY_C = None
DISPLAY_B = (76, 27)
DISPLAY_D = (57, 25, 7, 34, 5, 22, 25)
BAR = (460, 56, 204, 10)
VOLUME = (50, 25, 21, 34)
PANEL = (272, 8, 178, 68)
PANEL_SHOWN = False
SCOPE = ((3, 14, 16), (240, 208, 138))

TOP, BOTTOM = 12, 72
KNOT = (272, 3, 178, 78)
KEYS = {"back": (281, 10, 36, 37), "play": (317, 10, 52, 37), "pause": (369, 10, 36, 37), "next": (405, 10, 36, 37),
        "low": (298, 51, 42, 23), "high": (340, 51, 42, 23), "double": (382, 51, 42, 23)}
BUTTONS = dict(KEYS)
BUTTONS.update(commands(655, 21, 18, 20, 19, mini=(739, 44), close=(760, 44), small=(20, 19)))


def band():
    """The sash: both ends cut aslant, as a folded end falls."""
    a, b = TOP, BOTTOM
    return (f"M32 {a}H{WIDTH - 9}Q{WIDTH - 2} {a} {WIDTH - 4.5} {a + 6}L{WIDTH - 24} {b - 5}Q{WIDTH - 26} {b} {WIDTH - 32} {b}"
            f"H9Q2 {b} 4.5 {b - 6}L24 {a + 5}Q26 {a} 32 {a}Z")


def knot():
    """The knot is a little waisted where the cord passes."""
    x, y, w, h = KNOT
    m = y + h / 2
    return (f"M{x + 9} {y}H{x + w - 9}Q{x + w} {y} {x + w} {y + 9}Q{num(x + w - 5)} {m} {x + w} {y + h - 9}"
            f"Q{x + w} {y + h} {x + w - 9} {y + h}H{x + 9}Q{x} {y + h} {x} {y + h - 9}Q{num(x + 5)} {m} {x} {y + 9}Q{x} {y} {x + 9} {y}Z")


def waves(c, clip, colour, opacity, r=9.0):
    """Seigaiha: rows of overlapping concentric arcs, from the top down so that each row covers the one above."""
    c.open(clip_path=c.clip(clip), opacity=num(opacity))
    row, y = 0, -r
    while y < HEIGHT + r:
        x = -r + (r if row % 2 else 0)
        while x < WIDTH + r:
            c.path(circle(x, y + r, r), "#0e4346")
            for k in (0.96, 0.66, 0.36):
                c.path(circle(x, y + r, r * k), stroke=colour, stroke_width=0.75)
            x += 2 * r
        y += r / 2
        row += 1
    c.close()


def draw_back(c):
    d = band()
    c.path(f"M0 0H{WIDTH}V{HEIGHT}H0Z", RIM)
    silk = c.linear(0, TOP, 0, BOTTOM, (0, "#1d6463"), (0.25, "#14504f"), (0.7, "#0c393b"), (1, "#07282b"))
    c.path(d, silk)
    c.open(clip_path=c.clip(d))
    fade = [rounded(0, 0, 168, HEIGHT, 0), rounded(640, 0, 172, HEIGHT, 0)]
    for part, (x1, x2) in zip(fade, ((0, 166), (812, 642))):
        waves(c, part, GOLD, 0.9)
        c.path(part, c.linear(x1, 0, x2, 0, (0.06, "#0f4344", 0), (0.26, "#0f4344", 0.45), (0.5, "#0f4344", 0.85), (1, "#0f4344", 1)))
    c.path(rounded(167, 0, 474, HEIGHT, 0), "#0f4344")
    c.path(d, c.linear(0, TOP, 0, BOTTOM, (0, "#ffffff", 0.16), (0.3, "#ffffff", 0.04), (0.55, "#000000", 0.06), (1, "#000000", 0.42)))
    for y, w, o in ((TOP + 2.6, 1.0, 0.9), (TOP + 4.4, 0.5, 0.5), (BOTTOM - 2.6, 1.0, 0.8), (BOTTOM - 4.4, 0.5, 0.45)):
        c.path(f"M0 {num(y)}H{WIDTH}", stroke=GOLD, stroke_width=w, opacity=o)
    c.path(d, stroke=c.linear(0, TOP, 0, BOTTOM, (0, "#ffffff", 0.5), (0.4, "#ffffff", 0.05), (1, "#000000", 0.3)), stroke_width=3)
    c.path(d, stroke=RIM, stroke_width=1.8)
    c.close()
    draw_panes(c)
    draw_knot(c)


def pane(c, d, fill):
    c.path(d, stroke="#ffffff", stroke_width=1.4, opacity=0.2, transform="translate(0 0.8)")
    c.path(d, fill)
    c.inner_shadow(d, "#000000", 0.85, 1.8, 0, 1.2)
    c.path(d, stroke=GOLD, stroke_width=0.6, opacity=0.55)


def draw_panes(c):
    pane(c, rounded(73.5, 24.5, 90, 35, 4), "#030e10")
    pane(c, rounded(54.5, 22.5, 12, 39, 4), "#051619")
    groove = rounded(462, 58, 200, 6, 3)
    c.path(groove, "#041619")
    c.inner_shadow(groove, "#000000", 0.9, 1, 0, 0.8)
    c.path(groove, stroke="#ffffff", stroke_width=0.8, opacity=0.2, transform="translate(0 0.8)")


def draw_knot(c):
    x, y, w, h = KNOT
    d = knot()
    c.open(clip_path=c.clip(band() + d))
    c.drop_shadow(d, "#000000", 0.8, 4.5, 0, 1)
    c.close()
    c.path(d, c.linear(0, y, 0, y + h, (0, "#fff1cd"), (0.14, "#efd49a"), (0.5, "#d9b36a"), (0.8, "#b98d45"), (1, "#8d682c")))
    c.open(clip_path=c.clip(d))
    for i in range(-8, 24):
        c.path(f"M{x + i * 9} {y + h}L{x + i * 9 + 40} {y}", stroke="#ffffff", stroke_width=0.7, opacity=0.13)
    for cx in (x + 2, x + w - 2):
        c.path(f"M{cx - 16} {y - 4}Q{cx} {y + h / 2} {cx - 16} {y + h + 4}H{cx + 16}Q{cx} {y + h / 2} {cx + 16} {y - 4}Z",
               "#5f4214", opacity=0.4, filter=c.blur(5))
    c.path(d, stroke="#ffffff", stroke_width=3, opacity=0.5, filter=c.blur(0.7))
    c.path(d, stroke="#3a2708", stroke_width=2)
    c.close()
    for part in (rounded(279.5, 8.5, 163, 40, 9), rounded(296.5, 49.5, 129, 26, 8)):
        c.path(part, stroke="#fff6dd", stroke_width=1.2, opacity=0.6, transform="translate(0 0.8)")
    for part in (rounded(279.5, 8.5, 163, 40, 9), rounded(296.5, 49.5, 129, 26, 8)):
        c.path(part, "#3b2a0f")
        c.inner_shadow(part, "#000000", 0.7, 1.5, 0, 1)


def key_shape(name):
    x, y, w, h = KEYS[name]
    a = 7 if name in ("back", "low") else 2
    b = 7 if name in ("next", "double") else 2
    return rounded(x + 1, y + 1, w - 2, h - 2, (a, b, b, a))


def draw_key(c, name, pressed):
    x, y, w, h = KEYS[name]
    d = key_shape(name)
    red = name == "play"
    if red:
        colours = ("#8f2a18", "#b33c24", "#d24e32") if pressed else ("#ff9d7c", "#e8603f", "#b83c22")
    else:
        colours = ("#06201f", "#0c3233", "#134546") if pressed else ("#fff8e6", "#f1e0b6", "#d3b478")
    c.path(d, c.linear(0, y, 0, y + h, (0, colours[0]), (0.5, colours[1]), (1, colours[2])))
    if pressed:
        c.inner_shadow(d, "#000000", 0.8, 2, 0, 1.8)
    else:
        c.open(clip_path=c.clip(d))
        c.path(d, stroke="#ffffff", stroke_width=1.8, opacity=0.65 if not red else 0.4, transform="translate(0 0.6)")
        c.path(rounded(x, y + h - 2.4, w, 2.4, 0), "#3a2708", opacity=0.3)
        c.close()
    c.path(d, stroke="#2a1c06", stroke_width=0.8)
    cx, cy, size = x + w / 2, y + h / 2 + (1 if pressed else 0), 0.84 if h < 30 else 1.2 if red else 1.05
    if pressed:
        icon(c, name, cx, cy, "#ffb59c" if red else GOLD, size, opacity="0.85", filter=c.blur(2, ICON_BOX))
        icon(c, name, cx, cy, "#fff4ea" if red else "#ffe6b0", size)
    else:
        icon(c, name, cx, cy + 0.9, "#7c2412" if red else "#fffdf4", size, opacity="0.7")
        icon(c, name, cx, cy, "#fff6ee" if red else "#17403f", size)


def draw_command(c, name, pressed):
    x, y, w, h = BUTTONS[name]
    cx, cy = x + w / 2, y + h / 2
    d = rounded(x + 1.5, y + 1, w - 3, h - 2, 5)
    if pressed:
        c.path(d, "#041517")
        c.inner_shadow(d, "#000000", 0.9, 1.6, 0, 1.2)
        c.path(d, stroke=GOLD, stroke_width=0.7, opacity=0.7)
        icon(c, name, cx, cy + 0.8, GOLD, 0.82, opacity="0.8", filter=c.blur(1.6, ICON_BOX))
        icon(c, name, cx, cy + 0.8, "#ffeec6", 0.82)
        return
    c.path(d, c.linear(0, y, 0, y + h, (0, "#2a7472"), (1, "#0e3d3f")))
    c.path(d, stroke=c.linear(0, y, 0, y + h, (0, "#f3dca6", 0.75), (1, "#f3dca6", 0.2)), stroke_width=0.7)
    icon(c, name, cx, cy + 0.8, "#031214", 0.82, opacity="0.7")
    icon(c, name, cx, cy, "#f6e7c2", 0.82)


def draw_panel(c):
    """Not used by the layout, but every package has the picture: the seven signs on the bare knot."""
    x, y, w, h = PANEL
    c.path(rounded(x, y, w, h, 0), NIGHT)
    for i, name in enumerate(PLAYBACK):
        icon(c, name, x + w / 7 * (i + 0.5), y + h / 2, mix(GOLD, "#ffffff", 0.3), 1)


def draw_mask(c):
    c.path(band(), "#ffffff")
    c.path(knot(), "#ffffff")


def draw(layer):
    return picture(layer, (WIDTH, HEIGHT), BUTTONS,
                   lambda c, name, pressed: (draw_key if name in KEYS else draw_command)(c, name, pressed),
                   mask=draw_mask, back=draw_back, filled=draw_cord, panel=draw_panel,
                   level=lambda c: draw_level(c, DISPLAY_D, "#a8452e", "#ff9a7b", CORAL, "#ffe9d8", 0.4))


def draw_cord(c):
    """The part played is the cord of the sash: twisted, coral."""
    d = rounded(462.5, 58, 199, 6, 3)
    c.path(d, c.linear(0, 58, 0, 64, (0, "#ffb196"), (0.45, CORAL), (1, "#8c2c18")))
    c.open(clip_path=c.clip(d))
    for i in range(42):
        x = 460 + i * 5
        c.path(f"M{x} 65Q{x + 1.5} 61 {x + 5} 57", stroke="#7a2413", stroke_width=0.9, opacity=0.65)
        c.path(f"M{num(x + 1)} 65Q{num(x + 2.5)} 61 {num(x + 6)} 57", stroke="#ffd9c8", stroke_width=0.6, opacity=0.5)
    c.close()
