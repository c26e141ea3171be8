"""Hakuji, white porcelain: a moon jar with cobalt painting, lyrics in its middle, seven round keys below."""

import math

from kit import ICON_BOX, PLAYBACK, circle, commands, draw_level, icon, mix, num, picture, polygon, rounded

COMMENT = ("Quenlox skin: hakuji (white porcelain)",)
WIDTH, HEIGHT = 300, 392
BACK_COLOUR = (116, 126, 140)

RIM, INK, COBALT, DEEP = "#747e8c", "#26303c", "#2a4fa0", "#17306c"
TEXT, SOFT, BLUE = (34, 42, 54), (74, 85, 100), (32, 66, 146)

LABELS = (
    (44, 72, 212, 17, 12, *TEXT),
    (36, 241, 232, 13, 9, *SOFT),
    (34, 193, 96, 28, 20, *BLUE),
    (134, 205, 38, 13, 9, *SOFT),
    (70, 53, 50, 13, 9, *BLUE),
    (172, 53, 62, 13, 9, *SOFT),
    (130, 53, 32, 13, 9, *SOFT),
    (-1, 0, 0, 0, 0, 0, 0, 0),  # display C has the place in the list
    (44, 91, 212, 13, 9, *SOFT),
)
LYRICS = (33, 114, 216, 66, 11, 30, 44, 76, 176, 52, 40)
LYRICS_BACK = (250, 249, 245)
DISPLAY_B = (181, 192)
DISPLAY_C = (76, 338, 148, 13, 228, 231, 233)
DISPLAY_D = (263, 116, 8, 62, 214, 219, 224)
BAR = (24, 228, 252, 10)
VOLUME = (257, 114, 20, 66)
PANEL = (24, 256, 252, 82)
PANEL_SHOWN = True
SCOPE = ((12, 20, 42), (150, 184, 246))

ROUND = {"play": (150, 284, 27), "back": (94, 284, 20), "next": (206, 284, 20), "pause": (48, 280, 16),
         "double": (252, 280, 16), "low": (106, 321, 13), "high": (194, 321, 13)}
BUTTONS = {n: (x - r - 1, y - r - 1, 2 * r + 2, 2 * r + 2) for n, (x, y, r) in ROUND.items()}
BUTTONS.update(commands(87, 25, 364, 25, 20, mini=(128, 16), close=(150, 16), small=(22, 20)))

TOP, BOTTOM, MIDDLE = 3.5, 388.5, 150


def smooth_max(a, b, k):
    h = max(0.0, 1 - abs(a - b) / k)
    return max(a, b) + h * h * k / 4


def half_width(y):
    """Profile of the jar: the lip, the body and the foot, run together as clay is."""
    body = max(0.0, 1 - abs((y - 200) / 170) ** 2.7) ** (1 / 2.7) * 147
    neck = 46 + 13 * math.exp(-(y - TOP) / 9) if y < 60 else 0
    foot = 68 + 9 * math.exp((y - BOTTOM) / 9) if y > 330 else 0
    w = smooth_max(smooth_max(body, neck, 26), foot, 22)
    for edge, r in ((y - TOP, 5), (BOTTOM - y, 5)):
        if edge < r:
            w -= r - math.sqrt(max(0.0, r * r - (r - edge) ** 2))
    return w


def outline():
    steps = int((BOTTOM - TOP) * 2)
    ys = [TOP + (BOTTOM - TOP) * i / steps for i in range(steps + 1)]
    right = [(MIDDLE + half_width(y), y) for y in ys]
    return polygon(right + [(2 * MIDDLE - x, y) for x, y in reversed(right)])


def ring_line(c, y, width, opacity, sag):
    """A brush line around the jar, sagging a little as seen from above."""
    w = half_width(y)
    c.path(f"M{num(MIDDLE - w)} {num(y - sag)}Q{MIDDLE} {num(y + sag)} {num(MIDDLE + w)} {num(y - sag)}",
           stroke=COBALT, stroke_width=width, opacity=opacity)


def blossom(c, cx, cy, r, turn, opacity):
    for i in range(5):
        t = math.radians(turn + 72 * i)
        c.path(circle(cx + r * 0.62 * math.cos(t), cy + r * 0.62 * math.sin(t), r * 0.5), COBALT, opacity=opacity * 0.62)
        c.path(circle(cx + r * 0.62 * math.cos(t), cy + r * 0.62 * math.sin(t), r * 0.5), stroke=COBALT,
               stroke_width=0.7, opacity=opacity)
    c.path(circle(cx, cy, r * 0.24), "#fdfcf8")
    c.path(circle(cx, cy, r * 0.13), COBALT, opacity=opacity)


def draw_branch(c):
    """Plum branch, painted where no text stands."""
    for d, w in (("M14 262C26 286 30 300 60 326", 2.4), ("M28 292C34 300 32 310 36 320", 1.4), ("M44 314C56 316 62 312 70 304", 1.3)):
        c.path(d, stroke=COBALT, stroke_width=w, stroke_linecap="round", opacity=0.45)
    for x, y, r, turn in ((71, 302, 5.6, 10), (37, 321, 4.6, 30), (62, 328, 6.4, -14)):
        blossom(c, x, y, r, turn, 0.6)
    for x, y, r in ((24, 281, 2.0), (54, 309, 1.8), (79, 318, 1.6)):
        c.path(circle(x, y, r), COBALT, opacity=0.5)


def draw_back(c):
    d = outline()
    c.path(f"M0 0H{WIDTH}V{HEIGHT}H0Z", RIM)
    c.path(d, c.linear(0, 20, 0, 390, (0, "#f6f6f3"), (0.4, "#fbfaf7"), (0.75, "#eceef0"), (1, "#d5dadf")))
    c.open(clip_path=c.clip(d))
    c.path(d, c.radial(128, 150, 190, (0, "#ffffff", 0.9), (0.6, "#ffffff", 0.2), (1, "#ffffff", 0)))
    c.path(f"M-60-60H{WIDTH + 60}V{HEIGHT + 60}H-60Z" + d, "#5c6b80", fill_rule="evenodd", filter=c.blur(15), opacity=0.62,
           transform="translate(-3 -4)")
    c.path(f"M-60-60H{WIDTH + 60}V{HEIGHT + 60}H-60Z" + d, "#46566c", fill_rule="evenodd", filter=c.blur(4), opacity=0.35)
    c.path("M80 8C74 60 20 70 16 190C14 120 40 60 84 40Z", "#ffffff", opacity=0.55, filter=c.blur(4))
    c.path(circle(MIDDLE, 2, 62), "#ffffff", opacity=0.5, filter=c.blur(8))
    for y, w, o, sag in ((10, 2.4, 0.85, 1.5), (14, 0.8, 0.6, 1.5), (41, 0.9, 0.55, 2.5), (45, 2.0, 0.8, 2.5),
                         (361, 0.8, 0.5, -3), (358, 1.7, 0.75, -3), (387, 2.6, 0.85, -1)):
        ring_line(c, y, w, o, sag)
    draw_branch(c)
    c.path(d, stroke="#ffffff", stroke_width=4, opacity=0.35, filter=c.blur(0.8))
    c.path(d, stroke=RIM, stroke_width=1.8, opacity=0.9)
    c.close()
    draw_insets(c)


def inset(c, d, fill, depth=0.5):
    c.path(d, stroke="#ffffff", stroke_width=1.8, opacity=0.95, transform="translate(0 0.9)")
    c.path(d, fill)
    c.inner_shadow(d, "#3c4c66", depth, 2.2, 0, 1.4)
    c.path(d, stroke="#6c7a8e", stroke_width=0.7, opacity=0.7)


def draw_insets(c):
    inset(c, rounded(26, 109, 228, 76, 10), "#faf9f5")
    inset(c, rounded(259.5, 112, 15, 70, 7.5), "#d6dbe0")
    inset(c, rounded(178, 189.5, 91, 35, 6), "#0c142a", 0.9)
    inset(c, rounded(26, 230, 248, 6, 3), "#d3d9df", 0.75)
    inset(c, rounded(70, 336, 160, 17, 8.5), "#e4e7e9", 0.5)


def draw_sockets(c):
    for x, y, r in ROUND.values():
        c.path(circle(x, y, r), "#c9cfd6")
        c.inner_shadow(circle(x, y, r), "#33415a", 0.7, 2.4, 0, 1.6)


def draw_key(c, name, pressed):
    x, y, r = ROUND[name]
    glazed = name == "play"
    d = circle(x, y, r)
    c.path(d, stroke="#ffffff", stroke_width=1.6, opacity=0.9, transform="translate(0 0.8)")
    c.path(d, "#9aa5b3")
    cap = circle(x, y, r - 1)
    if pressed:
        c.path(cap, c.linear(0, y - r, 0, y + r, (0, DEEP), (1, mix(COBALT, "#ffffff", 0.12))))
        c.inner_shadow(cap, "#050d24", 0.9, r / 8 + 1, 0, r / 9 + 0.6)
        icon(c, name, x, y + 1, "#a9c6ff", r / 20 if r > 16 else 0.92, opacity="0.8", filter=c.blur(2, ICON_BOX))
        icon(c, name, x, y + 1, "#ffffff", r / 20 if r > 16 else 0.92)
        return
    if glazed:
        c.path(cap, c.radial(x, y + r * 0.6, r * 1.7, (0, "#4a78d2"), (0.55, COBALT), (1, DEEP)))
    else:
        c.path(cap, c.linear(0, y - r, 0, y + r, (0, "#ffffff"), (0.5, "#f4f5f5"), (1, "#cfd5db")))
    c.open(clip_path=c.clip(cap))
    if glazed:
        c.path(f"M{num(x - r)} {num(y - 1)}Q{x} {num(y + 7)} {num(x + r)} {num(y - 1)}V{num(y - r)}H{num(x - r)}Z",
               c.linear(0, y - r, 0, y + 4, (0, "#a9c4ff", 0.75), (1, "#7fa4f0", 0.08)))
    else:
        c.path(circle(x, y - r * 0.4, r * 0.7), "#ffffff", filter=c.blur(r / 4), opacity=0.9)
    c.path(cap, stroke="#ffffff", stroke_width=1.4, opacity=0.75 if not glazed else 0.35)
    c.close()
    c.path(d, stroke="#5d6a7d", stroke_width=0.8, opacity=0.85)
    size = r / 20 if r > 16 else 0.92
    if glazed:
        icon(c, name, x, y + 0.9, "#0c1f4c", size, opacity="0.6")
    icon(c, name, x, y, "#ffffff" if glazed else DEEP, size)


def draw_command(c, name, pressed):
    x, y, w, h = BUTTONS[name]
    cx, cy = x + w / 2, y + h / 2
    if pressed:
        d = circle(cx, cy, 9.3)
        c.path(d, c.linear(0, y, 0, y + h, (0, DEEP), (1, COBALT)))
        c.inner_shadow(d, "#050d24", 0.8, 1.6, 0, 1.2)
        icon(c, name, cx, cy + 0.8, "#ffffff", 0.86)
        return
    icon(c, name, cx, cy + 1, "#ffffff", 0.9, opacity="0.9")
    icon(c, name, cx, cy, mix(DEEP, INK, 0.4), 0.9)


def draw_panel(c):
    """Display A: one glazed tray with seven painted signs."""
    x, y, w, h = PANEL
    draw_back(c)
    c.focus = PANEL
    d = rounded(x + 3, y + 17, w - 6, 46, 17)
    c.path(d, stroke="#ffffff", stroke_width=2.4, opacity=0.95, transform="translate(0 1.2)")
    c.path(d, c.linear(0, y + 17, 0, y + 63, (0, DEEP), (0.6, COBALT), (1, "#4473cc")))
    c.inner_shadow(d, "#050d24", 0.85, 3, 0, 2)
    c.open(clip_path=c.clip(d))
    c.path(rounded(x + 9, y + 18.5, w - 18, 17, 9), c.linear(0, y + 18, 0, y + 36, (0, "#8fb2ff", 0.5), (1, "#8fb2ff", 0.05)))
    c.close()
    c.path(d, stroke="#5d6a7d", stroke_width=0.8)
    step = w / 7
    for i, name in enumerate(PLAYBACK):
        if i:
            c.path(f"M{num(x + step * i)} {y + 30}V{y + 50}", stroke="#ffffff", stroke_width=0.8, opacity=0.3)
        cx = x + step * (i + 0.5) + (2.5 if i == 0 else -2.5 if i == 6 else 0)
        icon(c, name, cx, y + 41, "#0c1f4c", 1, opacity="0.6")
        icon(c, name, cx, y + 40, "#ffffff", 1)


def draw_filled(c):
    d = rounded(26.5, 230.5, 247, 5, 2.5)
    c.path(d, c.linear(26, 0, 274, 0, (0, "#7fa3e6"), (0.5, COBALT), (1, DEEP)))
    c.path(rounded(28, 231.2, 244, 1.4, 0.7), "#ffffff", opacity=0.45)


def draw_ground(c):
    draw_back(c)
    draw_sockets(c)


def draw(layer):
    return picture(layer, (WIDTH, HEIGHT), BUTTONS,
                   lambda c, name, pressed: (draw_key if name in ROUND else draw_command)(c, name, pressed),
                   mask=lambda c: c.path(outline(), "#ffffff"), back=draw_ground, filled=draw_filled, panel=draw_panel,
                   level=lambda c: draw_level(c, DISPLAY_D, DEEP, "#6d94e2", COBALT, "#c9dbff", 0.4))
