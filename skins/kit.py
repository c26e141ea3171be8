"""Drawing kit of the skins: builds one SVG text out of layers, with the icons that every skin shares.

A skin's source file draws with a `Canvas`; render.py turns the SVG into pixels. All lengths are window pixels.
Identifiers are counted per canvas, so the same calls always give the same text.
"""

import math


def num(v):
    """A coordinate as short text with three decimals at most, never in exponent form."""
    s = f"{v:.3f}".rstrip("0").rstrip(".")
    return "0" if s in ("-0", "") else s


class Canvas:
    """Collects definitions (gradients, filters, clips) and shapes of one picture of the window."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.defs, self.body, self._count = [], [], 0
        self.focus = (0, 0, width, height)  # what blurs are limited to; a small focus draws much faster

    def _id(self):
        self._count += 1
        return f"i{self._count}"

    def _define(self, text):
        name = self._id()
        self.defs.append(text.format(id=name))
        return f"url(#{name})"

    def linear(self, x1, y1, x2, y2, *stops):
        """Linear gradient between two points; a stop is (offset 0..1, colour[, opacity])."""
        return self._define(f'<linearGradient id="{{id}}" gradientUnits="userSpaceOnUse" x1="{num(x1)}" y1="{num(y1)}" '
                            f'x2="{num(x2)}" y2="{num(y2)}">{stop_list(stops)}</linearGradient>')

    def radial(self, cx, cy, r, *stops, fx=None, fy=None):
        focus = "" if fx is None else f' fx="{num(fx)}" fy="{num(fy)}"'
        return self._define(f'<radialGradient id="{{id}}" gradientUnits="userSpaceOnUse" cx="{num(cx)}" cy="{num(cy)}" '
                            f'r="{num(r)}"{focus}>{stop_list(stops)}</radialGradient>')

    def blur(self, deviation, box=None):
        """Blur for what is drawn inside the box (x, y, width, height; the focus when not given)."""
        x, y, w, h = box or self.focus
        reach = 3 * deviation + 2
        return self._define(f'<filter id="{{id}}" filterUnits="userSpaceOnUse" x="{num(x - reach)}" y="{num(y - reach)}" '
                            f'width="{num(w + 2 * reach)}" height="{num(h + 2 * reach)}">'
                            f'<feGaussianBlur stdDeviation="{num(deviation)}"/></filter>')

    def clip(self, d, rule="nonzero"):
        return self._define(f'<clipPath id="{{id}}"><path d="{d}" clip-rule="{rule}"/></clipPath>')

    def path(self, d, fill="none", **attributes):
        """One path. Attribute names are written with "_" for "-"."""
        extra = "".join(f' {k.replace("_", "-")}="{num(v) if isinstance(v, (int, float)) else v}"'
                        for k, v in attributes.items() if v is not None)
        self.body.append(f'<path d="{d}" fill="{fill}"{extra}/>')

    def open(self, **attributes):
        extra = "".join(f' {k.replace("_", "-")}="{v}"' for k, v in attributes.items())
        self.body.append(f"<g{extra}>")

    def close(self):
        self.body.append("</g>")

    def inner_shadow(self, d, colour, opacity, deviation, dx=0.0, dy=1.0):
        """Shadow that the rim of the shape throws into it."""
        frame = f"M-99-99H{self.width + 99}V{self.height + 99}H-99Z"
        self.open(clip_path=self.clip(d))
        self.path(frame + d, colour, fill_rule="evenodd", filter=self.blur(deviation), opacity=opacity,
                  transform=f"translate({num(dx)} {num(dy)})")
        self.close()

    def drop_shadow(self, d, colour, opacity, deviation, dx=0.0, dy=1.5):
        self.path(d, colour, filter=self.blur(deviation), opacity=opacity, transform=f"translate({num(dx)} {num(dy)})")

    def svg(self):
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{self.width}" height="{self.height}" '
                f'viewBox="0 0 {self.width} {self.height}"><defs>' + "".join(self.defs) + "</defs>" +
                "\n".join(self.body) + "</svg>")


def stop_list(stops):
    return "".join(f'<stop offset="{num(s[0])}" stop-color="{s[1]}"' +
                   (f' stop-opacity="{num(s[2])}"' if len(s) > 2 else "") + "/>" for s in stops)


def mix(a, b, t):
    """Colour between two "#rrggbb" colours, t = 0 gives a."""
    pa, pb = (tuple(int(c[i:i + 2], 16) for i in (1, 3, 5)) for c in (a, b))
    return "#" + "".join(f"{round(x + (y - x) * t):02x}" for x, y in zip(pa, pb))


def rounded(x, y, w, h, r):
    """Rounded rectangle; r is one radius or four (top left, top right, bottom right, bottom left)."""
    a, b, c, d = r if isinstance(r, tuple) else (r, r, r, r)
    return (f"M{num(x + a)} {num(y)}H{num(x + w - b)}A{num(b)} {num(b)} 0 0 1 {num(x + w)} {num(y + b)}"
            f"V{num(y + h - c)}A{num(c)} {num(c)} 0 0 1 {num(x + w - c)} {num(y + h)}"
            f"H{num(x + d)}A{num(d)} {num(d)} 0 0 1 {num(x)} {num(y + h - d)}"
            f"V{num(y + a)}A{num(a)} {num(a)} 0 0 1 {num(x + a)} {num(y)}Z")


def circle(cx, cy, r):
    return (f"M{num(cx - r)} {num(cy)}A{num(r)} {num(r)} 0 1 1 {num(cx + r)} {num(cy)}"
            f"A{num(r)} {num(r)} 0 1 1 {num(cx - r)} {num(cy)}Z")


def arc(cx, cy, r, start, end):
    """Open arc from angle start to end, degrees, clockwise from three o'clock."""
    p = [(cx + r * math.cos(math.radians(t)), cy + r * math.sin(math.radians(t))) for t in (start, end)]
    large = 1 if (end - start) % 360 > 180 else 0
    return (f"M{num(p[0][0])} {num(p[0][1])}A{num(r)} {num(r)} 0 {large} 1 {num(p[1][0])} {num(p[1][1])}")


def sheen_ring(canvas, cx, cy, outer, inner, dark, light, turns, phase):
    """Ring of turned metal: brightness follows the angle, as a lathe leaves it. Wedges overlap, so no seams show."""
    steps = 240
    canvas.open(clip_path=canvas.clip(circle(cx, cy, outer) + circle(cx, cy, inner), "evenodd"))
    for i in range(steps):
        a0, a1 = 2 * math.pi * i / steps, 2 * math.pi * (i + 1.6) / steps
        mid = 2 * math.pi * (i + 0.5) / steps
        t = (0.5 + 0.5 * math.cos(turns * (mid - math.radians(phase)))) ** 2
        far = outer + 1
        canvas.path(f"M{num(cx)} {num(cy)}L{num(cx + far * math.cos(a0))} {num(cy + far * math.sin(a0))}"
                    f"L{num(cx + far * math.cos(a1))} {num(cy + far * math.sin(a1))}Z", mix(dark, light, t))
    canvas.close()


PLAYBACK = ("play", "pause", "back", "next", "low", "high", "double")


def commands(x, step, y, width, height, mini, close, small):
    """The places of the command buttons: five in a row, and those of the window with a width of their own."""
    places = {n: (x + step * i, y, width, height) for i, n in enumerate(("list", "opt", "tag", "conv", "help"))}
    places.update({n: (*at, *small) for n, at in (("mini", mini), ("close", close))})
    return places


def draw_level(c, place, side, middle, far, cap, ridge):
    """Display D at full volume: a rounded column with a bright cap, which is the first line of the picture."""
    x, y, w, h = place[:4]
    c.path(rounded(x, y, w, h, 0), c.linear(x, 0, x + w, 0, (0, side), (ridge, middle), (1, far)))
    c.path(rounded(x, y, w, 2, 0), cap)


def picture(layer, size, buttons, key, **painters):
    """One layer of a window as SVG. `key(canvas, name, pressed)` draws a button, painters[layer](canvas) another layer."""
    c = Canvas(*size)
    if layer in ("released", "pressed"):
        for name in buttons:
            c.focus = buttons[name]
            key(c, name, layer == "pressed")
    elif layer in painters:
        painters[layer](c)
    return c.svg()


# Icons: (filled path, stroked path, stroke width), centred on 0, 0, at most 16 pixels across.
ICON_BOX = (-12, -12, 24, 24)
ICONS = {
    "play": ("M-9.5-6L0 0L-9.5 6ZM2.6-3.4H9.4V3.4H2.6Z", "", 0),
    "pause": ("M-5-5.5H-1.6V5.5H-5ZM1.6-5.5H5V5.5H1.6Z", "", 0),
    "back": ("M5.5-5.5V5.5L-2.5 0ZM-5.5-5.5H-3V5.5H-5.5Z", "", 0),
    "next": ("M-5.5-5.5V5.5L2.5 0ZM3-5.5H5.5V5.5H3Z", "", 0),
    "low": ("", "M-3-7.5V6C0 4.6 3.6 2 3.6-0.6C3.6-3.2-0.4-3.2-3-0.4", 1.7),
    "high": ("", "M-2.3-7V7.4M2.3-7.4V7M-5.4-1.6L5.4-3.8M-5.4 3.8L5.4 1.6", 1.6),
    "double": ("", "M-5.5-4.8L-0.7 0L-5.5 4.8M1-4.8L5.8 0L1 4.8", 2.1),
    "list": ("M-6-5.2H-4V-3.2H-6ZM-6-1H-4V1H-6ZM-6 3.2H-4V5.2H-6Z", "M-2.2-4.2H6M-2.2 0H6M-2.2 4.2H6", 1.5),
    "opt": (circle(-2.2, -4.2, 1.9) + circle(2.4, 0, 1.9) + circle(-1, 4.2, 1.9),
            "M-6-4.2H6M-6 0H6M-6 4.2H6", 1.2),
    "tag": ("", "M-5.8-5.2H-0.4L5.8 1L1 5.8L-5.8-0.6ZM-3.3-2.7H-2.9", 1.5),
    "conv": ("", "M-6-2.6H5M2-5.6L5-2.6L2 0.4M6 2.8H-5M-2-0.2L-5 2.8L-2 5.8", 1.5),
    "help": (circle(0, 5.2, 1.2), "M-3-3.2C-3-7.2 3.2-7.2 3.2-3.4C3.2-1 0-0.8 0 2", 1.7),
    "mini": ("", "M-4.5 3.4H4.5", 1.8),
    "close": ("", "M-3.8-3.8L3.8 3.8M3.8-3.8L-3.8 3.8", 1.8),
}


def icon(canvas, name, cx, cy, colour, scale=1.0, **attributes):
    fill, stroke, width = ICONS[name]
    canvas.open(transform=f"translate({num(cx)} {num(cy)}) scale({num(scale)})", **attributes)
    if fill:
        canvas.path(fill, colour)
    if stroke:
        canvas.path(stroke, "none", stroke=colour, stroke_width=width, stroke_linecap="round", stroke_linejoin="round")
    canvas.close()


def polygon(points):
    return "M" + "L".join(f"{num(x)} {num(y)}" for x, y in points) + "Z"
