"""Obi, the sash: a long flat band of peacock silk with woven waves, a golden knot that holds the keys, a cord as seek bar."""

import math

from kit import Canvas, circle, icon, mix, num, rounded

COMMENT = ("Quenlox skin: obi (sash)",)
WIDTH, HEIGHT = 736, 76
BACK_COLOUR = (4, 22, 25)

RIM, GOLD, CORAL, NIGHT = "#041619", "#e2bf78", "#e25a3c", "#0b2b2e"
TEXT, SOFT, LIGHT = (248, 240, 220), (196, 206, 190), (240, 208, 138)

ABSENT = (-1, 0, 0, 0, 0, 0, 0, 0)
LABELS = (
    (428, 15, 186, 17, 12, *TEXT),
    (428, 34, 200, 13, 9, *SOFT),
    (142, 14, 88, 27, 19, *LIGHT),
    (198, 43, 36, 13, 9, *SOFT),
    (142, 43, 50, 13, 9, *LIGHT),
    (634, 49, 62, 13, 9, *SOFT),
    ABSENT,
    (634, 34, 62, 13, 9, *SOFT),
    ABSENT,
)
LYRICS = LYRICS_BACK = DISPLAY_C = None
DISPLAY_B = (46, 20)
DISPLAY_D = (29, 19, 7, 38, 5, 22, 25)
BAR = (424, 51, 204, 10)
VOLUME = (22, 16, 20, 44)
PANEL = (244, 4, 176, 68)
PANEL_SHOWN = False
SCOPE = ((3, 14, 16), (240, 208, 138))

TOP, BOTTOM = 9, 67
KNOT = (242, 3, 178, 70)
KEYS = {"back": (251, 9, 36, 34), "play": (287, 9, 52, 34), "pause": (339, 9, 36, 34), "next": (375, 9, 36, 34),
        "low": (276, 46, 37, 21), "high": (313, 46, 37, 21), "double": (350, 46, 37, 21)}
BUTTONS = dict(KEYS)
BUTTONS.update({n: (624 + 20 * i, 13, 20, 18) for i, n in enumerate(("list", "opt", "tag", "conv"))})
BUTTONS.update({n: (x, y, 20, 18) for n, x, y in (("help", 704, 13), ("mini", 700, 30), ("close", 695, 47))})


def band():
    """The sash: both ends cut aslant, as a folded end falls."""
    return (f"M26.5 {TOP}H727Q733 {TOP} 731 {TOP + 6}L714.5 {BOTTOM - 4}Q713 {BOTTOM} 708 {BOTTOM}H9Q3 {BOTTOM} 5 {BOTTOM - 6}"
            f"L21.5 {TOP + 4}Q23 {TOP} 27 {TOP}Z")


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
    fade = [rounded(0, 0, 138, HEIGHT, 0), rounded(600, 0, 136, HEIGHT, 0)]
    for part, (x1, x2) in zip(fade, ((16, 150), (736, 592))):
        waves(c, part, GOLD, 0.6)
        c.path(part, c.linear(x1, 0, x2, 0, (0, "#0f4344", 0.1), (0.45, "#0f4344", 0.82), (0.9, "#0f4344", 1)))
    c.path(rounded(134, 0, 470, HEIGHT, 0), "#0f4344")
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
    pane(c, rounded(43.5, 17.5, 90, 35, 4), "#030e10")
    pane(c, rounded(26.5, 17, 12, 42, 4), "#051619")
    groove = rounded(426, 53, 200, 6, 3)
    c.path(groove, "#041619")
    c.inner_shadow(groove, "#000000", 0.9, 1, 0, 0.8)
    c.path(groove, stroke="#ffffff", stroke_width=0.8, opacity=0.2, transform="translate(0 0.8)")
    c.path("M46 58.5H132", stroke=GOLD, stroke_width=0.5, opacity=0.5)


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
    for part in (rounded(249.5, 7.5, 163, 37, 9), rounded(274.5, 44.5, 114, 24, 8)):
        c.path(part, stroke="#fff6dd", stroke_width=1.2, opacity=0.6, transform="translate(0 0.8)")
    for part in (rounded(249.5, 7.5, 163, 37, 9), rounded(274.5, 44.5, 114, 24, 8)):
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
        icon(c, name, cx, cy, "#ffb59c" if red else GOLD, size, opacity="0.85", filter=c.blur(2))
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
        icon(c, name, cx, cy + 0.8, GOLD, 0.82, opacity="0.8", filter=c.blur(1.6))
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
    for i, name in enumerate(("play", "pause", "back", "next", "low", "high", "double")):
        icon(c, name, x + w / 7 * (i + 0.5), y + h / 2, mix(GOLD, "#ffffff", 0.3), 1)


def draw(layers):
    c = Canvas(WIDTH, HEIGHT)
    if "mask" in layers:
        c.path(band(), "#ffffff")
        c.path(knot(), "#ffffff")
    if "back" in layers:
        draw_back(c)
    for state in ("released", "pressed"):
        if state in layers:
            for name in KEYS:
                draw_key(c, name, state == "pressed")
            for name in ("list", "opt", "tag", "conv", "help", "mini", "close"):
                draw_command(c, name, state == "pressed")
    if "filled" in layers:
        draw_cord(c)
    if "level" in layers:
        x, y, w, h = DISPLAY_D[:4]
        c.path(rounded(x, y, w, h, 0), c.linear(x, 0, x + w, 0, (0, "#a8452e"), (0.4, "#ff9a7b"), (1, CORAL)))
        c.path(rounded(x, y, w, 2, 0), "#ffe9d8")
    if "panel" in layers:
        draw_panel(c)
    return c.svg()


def draw_cord(c):
    """The part played is the cord of the sash: twisted, coral."""
    d = rounded(426.5, 53, 199, 6, 3)
    c.path(d, c.linear(0, 53, 0, 59, (0, "#ffb196"), (0.45, CORAL), (1, "#8c2c18")))
    c.open(clip_path=c.clip(d))
    for i in range(42):
        x = 424 + i * 5
        c.path(f"M{x} 60Q{x + 1.5} 56 {x + 5} 52", stroke="#7a2413", stroke_width=0.9, opacity=0.65)
        c.path(f"M{num(x + 1)} 60Q{num(x + 2.5)} 56 {num(x + 6)} 52", stroke="#ffd9c8", stroke_width=0.6, opacity=0.5)
    c.close()
