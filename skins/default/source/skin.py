"""The default skin: a graphite slab that grows out of a round instrument, with apricot light."""

import math

from kit import ICON_BOX, PLAYBACK, arc, circle, commands, draw_level, icon, mix, num, picture, rounded, sheen_ring

COMMENT = ("Quenlox default skin",)
WIDTH, HEIGHT = 476, 164
BACK_COLOUR = (13, 16, 20)

RIM = "#0d1014"
GLOW = "#ffb26b"
TEXT, SOFT, DIM = (240, 236, 228), (178, 186, 196), (132, 142, 154)
WARM = (255, 190, 128)

# x, y, width, height, points, colour
LABELS = (
    (179, 49, 236, 17, 12, *TEXT),
    (179, 85, 238, 13, 9, *DIM),
    (43, 47, 88, 31, 22, *WARM),
    (64, 118, 38, 13, 9, *DIM),
    (64, 30, 48, 13, 9, *WARM),
    (220, 26, 62, 13, 9, 214, 220, 228),
    (182, 26, 32, 13, 9, *WARM),
    (353, 69, 64, 13, 9, *DIM),
    (179, 69, 168, 13, 9, *SOFT),
)
LYRICS = LYRICS_BACK = DISPLAY_C = None
DISPLAY_B = (40, 83)
DISPLAY_D = (441, 53, 8, 66, 8, 10, 13)
BAR = (174, 105, 246, 9)
VOLUME = (432, 53, 30, 66)
PANEL = (172, 115, 250, 32)
PANEL_SHOWN = True
SCOPE = ((6, 8, 11), (255, 178, 107))

KEYS = {"back": (174, 34), "play": (208, 50), "pause": (258, 34), "next": (292, 34),
        "low": (332, 29), "high": (361, 29), "double": (390, 30)}
BUTTONS = {n: (x, 116, w, 30) for n, (x, w) in KEYS.items()}
BUTTONS.update(commands(289, 26, 22, 26, 20, mini=(426, 22), close=(446, 22), small=(20, 20)))

LENS = (82, 82)


def outline():
    """The slab and the disc, joined by hollow fillets."""
    cx, cy, r = *LENS, 80
    top, bottom, right, fillet = 15, 149, 474, 22
    joints = []
    for y, side in ((top, -1), (bottom, 1)):
        fy = y + side * fillet
        fx = cx + math.sqrt((r + fillet) ** 2 - (fy - cy) ** 2)
        joints.append((fx, y, cx + (fx - cx) * r / (r + fillet), cy + (fy - cy) * r / (r + fillet)))
    (tx, ty, tjx, tjy), (bx, by, bjx, bjy) = joints
    return (f"M{num(tjx)} {num(tjy)}A{fillet} {fillet} 0 0 0 {num(tx)} {ty}H{right - 30}A30 30 0 0 1 {right} {ty + 30}"
            f"V{by - 46}A46 46 0 0 1 {right - 46} {by}H{num(bx)}A{fillet} {fillet} 0 0 0 {num(bjx)} {num(bjy)}"
            f"A{r} {r} 0 1 1 {num(tjx)} {num(tjy)}Z")


def screen():
    """The display glass; its left side follows the disc."""
    cx, cy, r = *LENS, 88
    top, bottom, right = 45, 102, 423
    x1, x2 = (cx + math.sqrt(r * r - (y - cy) ** 2) for y in (top, bottom))
    return (f"M{num(x1 + 3)} {top}H{right - 7}A7 7 0 0 1 {right} {top + 7}V{bottom - 7}A7 7 0 0 1 {right - 7} {bottom}"
            f"H{num(x2 + 3)}A{r} {r} 0 0 0 {num(x1 + 3)} {top}Z")


def draw_back(c):
    d = outline()
    c.path(f"M0 0H{WIDTH}V{HEIGHT}H0Z", RIM)
    c.path(d, c.linear(0, 12, 0, 152, (0, "#4a525e"), (0.12, "#3a414c"), (0.55, "#282e37"), (1, "#191d24")))
    c.open(clip_path=c.clip(d))
    c.path("M150-30H480V40Q320 64 150 34Z", c.linear(0, 0, 0, 60, (0, "#ffffff", 0.13), (1, "#ffffff", 0.02)),
           filter=c.blur(5))
    c.path(d, stroke=c.linear(0, 2, 0, 162, (0, "#ffffff", 0.55), (0.3, "#ffffff", 0.12), (0.6, "#ffffff", 0),
                              (1, "#ffffff", 0.10)), stroke_width=3.6)
    c.path(d, stroke=RIM, stroke_width=2)
    c.close()
    draw_lens(c)
    draw_screen(c)
    draw_trays(c)


def draw_lens(c):
    cx, cy = LENS
    c.open(clip_path=c.clip(outline()))
    c.drop_shadow(circle(cx, cy, 79), "#000000", 0.75, 5, 3, 2)
    c.close()
    sheen_ring(c, cx, cy, 79.3, 60, "#2a3038", "#7b8694", 2, -62)
    shade = c.linear(0, 2, 0, 162, (0, "#ffffff", 0.30), (0.35, "#ffffff", 0), (0.65, "#000000", 0), (1, "#000000", 0.5))
    c.path(circle(cx, cy, 79.3) + circle(cx, cy, 60), shade, fill_rule="evenodd")
    c.path(circle(cx, cy, 78.8), stroke=c.linear(0, 2, 0, 162, (0, "#ffffff", 0.6), (0.5, "#ffffff", 0.08),
                                                 (1, "#000000", 0.4)), stroke_width=1)
    c.path(circle(cx, cy, 79.5), stroke=RIM, stroke_width=1)
    c.path(circle(cx, cy, 71.5), "#0a0c10")
    c.path(circle(cx, cy, 71.5), stroke=c.linear(0, 10, 0, 154, (0, "#000000", 0.6), (1, "#ffffff", 0.35)), stroke_width=1)
    for i in range(60):
        t = 2 * math.pi * i / 60
        r0, major = (66.2 if i % 5 == 0 else 67.6), i % 5 == 0
        c.path(f"M{num(cx + r0 * math.cos(t))} {num(cy + r0 * math.sin(t))}"
               f"L{num(cx + 69.4 * math.cos(t))} {num(cy + 69.4 * math.sin(t))}", stroke="#f5d9bd" if major else "#8d99a8",
               stroke_width=1.1 if major else 0.7, opacity=0.8 if major else 0.45)
    c.path(circle(cx, cy, 64), c.radial(cx, cy + 26, 92, (0, "#1d242d"), (0.55, "#11161c"), (1, "#080a0d")))
    ring = arc(cx, cy, 64, 128, 412)
    c.path(ring, stroke=GLOW, stroke_width=4, stroke_linecap="round", opacity=0.5, filter=c.blur(3))
    c.path(ring, stroke=c.linear(20, 140, 144, 30, (0, "#e07a3c"), (0.5, GLOW), (1, "#ffe0bd")), stroke_width=1.6,
           stroke_linecap="round")
    glass = circle(cx, cy, 62.5)
    c.inner_shadow(glass, "#000000", 0.8, 4, 0, 3)
    c.path(rounded(38, 81, 89, 34, 4), "#07090c")
    c.inner_shadow(rounded(38, 81, 89, 34, 4), "#000000", 1, 1.5, 0, 1)
    c.path(rounded(38.5, 81.5, 88, 33, 3.6), stroke=c.linear(0, 81, 0, 115, (0, "#000000", 0.8), (1, "#ffffff", 0.16)))
    c.open(clip_path=c.clip(glass))
    c.path(f"M10 0H154V34C120 52 60 40 10 92Z", c.linear(40, 10, 92, 84, (0, "#ffffff", 0.17), (1, "#ffffff", 0.0)))
    c.close()
    c.path(rounded(40, 83, 85, 30, 0), "#06080b")


def draw_screen(c):
    d = screen()
    c.path(d, stroke="#ffffff", stroke_width=1.6, opacity=0.14, transform="translate(0 0.9)")
    c.path(d, c.linear(0, 45, 0, 102, (0, "#0b0e12"), (1, "#141a21")))
    c.inner_shadow(d, "#000000", 0.9, 3, 0, 2)
    c.open(clip_path=c.clip(d))
    c.path("M150 45H423V62C340 74 250 70 150 66Z", c.linear(0, 45, 0, 72, (0, "#ffffff", 0.07), (1, "#ffffff", 0.02)))
    c.close()
    c.path(d, stroke="#05070a", stroke_width=1)


def draw_trays(c):
    groove = rounded(175, 107, 244, 5, 2.5)
    c.path(groove, "#0a0d11")
    c.inner_shadow(groove, "#000000", 0.9, 1, 0, 1)
    c.path(groove, stroke="#ffffff", stroke_width=0.8, opacity=0.13, transform="translate(0 0.7)")
    for x, w in ((173, 154), (331, 90)):
        tray = rounded(x, 115.5, w, 31, 8)
        c.path(tray, "#12161b")
        c.inner_shadow(tray, "#000000", 0.9, 1.6, 0, 1)
        c.path(tray, stroke="#ffffff", stroke_width=1, opacity=0.12, transform="translate(0 0.8)")
    well = rounded(438, 50, 14, 72, 6)
    c.path(well, "#080a0d")
    c.path(well, stroke="#ffffff", stroke_width=1, opacity=0.16, transform="translate(0 0.8)")
    c.inner_shadow(well, "#000000", 0.9, 1.4, 0, 1)
    for i in range(9):
        y = 53.5 + i * 8.125
        c.path(f"M455 {num(y)}h{4 if i % 4 == 0 else 2.4}", stroke="#aeb8c4", stroke_width=0.9, opacity=0.7)
    c.path("M436 129.4h2.4l3.3-2.8v8.8l-3.3-2.8h-2.4z", "#aeb8c4")
    c.path("M444 128.9a3 3 0 0 1 0 4.2M446.3 127.2a5.4 5.4 0 0 1 0 7.6", stroke="#aeb8c4", stroke_width=1, stroke_linecap="round")


def key_shape(name):
    x, y, w, h = BUTTONS[name]
    first, last = name in ("back", "low"), name in ("next", "double")
    return rounded(x + 1, y + 1, w - 2, h - 2, (6.5 if first else 2, 6.5 if last else 2, 6.5 if last else 2, 6.5 if first else 2))


def draw_key(c, name, pressed):
    x, y, w, h = BUTTONS[name]
    d = key_shape(name)
    warm = name == "play"
    if pressed:
        colours = ("#a85a22", "#cf7a38", "#e8964f") if warm else ("#14181e", "#1b2027", "#232a32")
    else:
        colours = ("#ffd9b0", "#ffb26b", "#ea8f47") if warm else ("#59626f", "#424a55", "#2f353e")
    c.path(d, c.linear(0, y, 0, y + h, (0, colours[0]), (0.5, colours[1]), (1, colours[2])))
    c.open(clip_path=c.clip(d))
    if pressed:
        c.inner_shadow(d, "#000000", 0.85 if not warm else 0.5, 2, 0, 2)
        if not warm:
            c.path(circle(x + w / 2, y + h / 2 + 1, 11), GLOW, opacity=0.28, filter=c.blur(5))
    else:
        c.path(d, stroke="#ffffff", stroke_width=1.6, opacity=0.5 if warm else 0.28, transform="translate(0 0.6)",
               stroke_dasharray=None)
        c.path(rounded(x, y + h / 2, w, h / 2, 0), "#000000", opacity=0.07)
        c.path(rounded(x, y + h - 2.2, w, 2.2, 0), "#000000", opacity=0.25)
    c.close()
    c.path(d, stroke="#090b0e", stroke_width=0.8)
    cx, cy = x + w / 2, y + h / 2 + (1 if pressed else 0)
    size = 1.15 if warm else 1.0
    if warm:
        icon(c, name, cx, cy + 0.9, "#5f2d0b" if pressed else "#ffe9d2", size, opacity="0.6")
        icon(c, name, cx, cy, "#3a1d08" if not pressed else "#fff1e0", size)
    elif pressed:
        icon(c, name, cx, cy, GLOW, size, opacity="0.9", filter=c.blur(2, ICON_BOX))
        icon(c, name, cx, cy, "#ffdcb8", size)
    else:
        icon(c, name, cx, cy - 0.9, "#14181d", size, opacity="0.7")
        icon(c, name, cx, cy, "#eef1f5", size)


def draw_command(c, name, pressed):
    x, y, w, h = BUTTONS[name]
    cx, cy = x + w / 2, y + h / 2
    window_key = name in ("mini", "close")
    d = circle(cx, cy, 8.2) if window_key else rounded(x + 2, y + 1.5, w - 4, h - 3, 8.4)
    if pressed:
        c.path(d, "#15191f")
        c.inner_shadow(d, "#000000", 0.9, 1.6, 0, 1.4)
        c.path(d, stroke="#ffffff", stroke_width=0.8, opacity=0.15, transform="translate(0 0.6)")
        icon(c, name, cx, cy + 0.8, GLOW, 0.86, opacity="0.9", filter=c.blur(1.6, ICON_BOX))
        icon(c, name, cx, cy + 0.8, "#ffd3a6", 0.86)
        return
    c.drop_shadow(d, "#000000", 0.5, 0.9, 0, 1)
    c.path(d, c.linear(0, y, 0, y + h, (0, "#5f6875"), (1, "#363d47")))
    c.path(d, stroke=c.linear(0, y + 1, 0, y + h, (0, "#ffffff", 0.45), (0.5, "#ffffff", 0.08), (1, "#000000", 0.25)),
           stroke_width=0.9)
    icon(c, name, cx, cy - 0.8, "#14181d", 0.86, opacity="0.6")
    icon(c, name, cx, cy, "#dfe5ec", 0.86)


def draw_panel(c):
    """Display A: seven touch fields on dark glass."""
    x, y, w, h = PANEL
    d = rounded(x + 0.5, y + 0.5, w - 1, h - 1, 9)
    c.path(rounded(x, y, w, h, 0), "#20252d")
    c.path(d, c.linear(0, y, 0, y + h, (0, "#0a0d11"), (1, "#171d25")))
    c.inner_shadow(d, "#000000", 0.9, 2, 0, 1.5)
    c.path(d, stroke="#ffffff", stroke_width=1, opacity=0.15, transform="translate(0 0.7)")
    step = w / 7
    for i, name in enumerate(PLAYBACK):
        cx, cy = x + step * (i + 0.5), y + h / 2
        if i:
            c.path(f"M{num(x + step * i)} {y + 8}V{y + h - 8}", stroke="#ffffff", stroke_width=0.8, opacity=0.12)
        icon(c, name, cx, cy, GLOW, 0.95, opacity="0.8", filter=c.blur(2.4, ICON_BOX))
        icon(c, name, cx, cy, mix(GLOW, "#ffffff", 0.45), 0.95)


def draw_filled(c):
    d = rounded(176, 108, 242, 3, 1.5)
    c.path(d, GLOW, filter=c.blur(1.6), opacity=0.75)
    c.path(d, c.linear(176, 0, 418, 0, (0, "#e98845"), (0.6, GLOW), (1, "#ffe2c2")))


def draw(layer):
    return picture(layer, (WIDTH, HEIGHT), BUTTONS,
                   lambda c, name, pressed: (draw_key if name in KEYS else draw_command)(c, name, pressed),
                   mask=lambda c: c.path(outline(), "#ffffff"), back=draw_back, filled=draw_filled, panel=draw_panel,
                   level=lambda c: draw_level(c, DISPLAY_D, "#d9773a", "#ffc48b", "#c96a30", "#fff0de", 0.45))
