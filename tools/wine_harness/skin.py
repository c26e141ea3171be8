"""Where things are in the main window with a shipped skin."""

import configparser
import pathlib
import struct

from PIL import Image, ImageChops

SKINS = pathlib.Path(__file__).resolve().parents[2] / "skins"
PLAYBACK = ("play", "pause", "back", "next", "low", "high", "double")
COMMANDS = ("list", "opt", "tag", "conv", "help", "mini", "close")
LABELS = ("title", "information", "time", "length", "status", "mode", "kind", "list", "artist")
TITLE = "Quenlox  Ver *"


class Skin:
    """A package; places are (left, top, width, height) in pixels of the picture, None for what the skin does not have."""

    def __init__(self, name):
        self.name = name
        self.package = SKINS / name / "package"
        self._definition = configparser.ConfigParser(comment_prefixes=(";",))
        self._definition.read(self.package / f"{name}.tsk", encoding="cp932")
        self.size = tuple(self._list("Main", "Size"))

    def _list(self, section, key):
        return [int(field) for field in self._definition.get(section, key).split(",")]

    def _box(self, section, key, picture):
        x, y = self._list(section, key)[:2]
        return (x, y, *Image.open(self.package / picture).size) if x >= 0 else None

    def button_picture(self, name, pressed=False, fineness=1):
        prefix, ending = "cmd" if name in PLAYBACK else "btn", "" if fineness == 1 else f"@{fineness}x"
        return Image.open(self.package / f"{prefix}_{name}{2 if pressed else 1}{ending}.bmp")

    def button(self, name):
        if name in PLAYBACK:
            return self._box("Button", "Button" + "ABCDEFG"[PLAYBACK.index(name)], f"cmd_{name}1.bmp")
        return self._box("Command", "Command" + "ABCDEFG"[COMMANDS.index(name)], f"btn_{name}1.bmp")

    def label(self, name):
        x, y, width, height = self._list("Label", "Lyrics" if name == "lyrics" else "Label" + "ABCDEFGHI"[LABELS.index(name)])[:4]
        return (x, y, width, height) if x >= 0 else None

    def outline(self):
        """The window's shape, white in a black picture."""
        data = (self.package / f"{self.name}.rgn").read_bytes()
        mask = Image.new("L", self.size, 0)
        for place in range(32, 32 + 16 * struct.unpack_from("<I", data, 8)[0], 16):
            mask.paste(255, struct.unpack_from("<4i", data, place))
        return mask

    def background(self):
        """A place inside the window that holds no control."""
        free = self.outline()
        boxes = [self.button(name) for name in (*PLAYBACK, *COMMANDS)] + [self.label(name) for name in LABELS]
        boxes += [self.label("lyrics"), self.seek_bar, self.volume_bar, self.panel, self.display_b]
        for x, y, width, height in filter(None, boxes):
            free.paste(0, (x - 3, y - 3, x + width + 3, y + height + 3))
        return next((x, y, 2, 2) for y in range(self.size[1]) for x in range(self.size[0] // 4, self.size[0])
                    if free.crop((x - 3, y - 3, x + 4, y + 4)).getextrema()[0] == 255)

    @property
    def seek_bar(self):
        return self._box("Disp", "Bar", "main_bar.bmp")

    @property
    def volume_bar(self):
        return self._box("Disp", "Vol", "main_vol.bmp")

    @property
    def panel(self):
        return self._box("Disp", "DispA", "main_panel.bmp")

    @property
    def display_b(self):
        x, y = self._list("Disp", "DispB")
        return (x, y, 85, 30) if x >= 0 else None


class MainWindow:
    """The main window of a running program, with the skin that it shows."""

    def __init__(self, s, skin="default", scale=1):
        self._s, self.skin, self.scale = s, Skin(skin), scale
        self.window = s.driver.wait_window(title=TITLE)
        s.wait_until(lambda: self.shows_button("close"), "the main window is drawn")

    def refresh(self):
        self.window = self._s.driver.wait_window(title=TITLE)
        return self.window

    def middle(self, box):
        """The screen coordinates of the middle of a place."""
        x, y, _, _ = self.refresh().place
        return x + (box[0] + box[2] // 2) * self.scale, y + (box[1] + box[3] // 2) * self.scale

    def click(self, box, button="left", count=1):
        self._s.driver.click(*self.middle(box), button, count)

    def press(self, name):
        self.click(self.skin.button(name))

    def look(self, box):
        """What the window shows there, a PIL image."""
        x, y, _, _ = self.refresh().place
        k = self.scale
        return self._s.screen().crop((x + box[0] * k, y + box[1] * k, x + (box[0] + box[2]) * k, y + (box[1] + box[3]) * k))

    def shot(self, name):
        return self._s.screenshot(name, self.refresh())

    def menu(self, *texts, at=None):
        """Opens the main menu on the background and chooses; without texts it stays open."""
        self.click(at or self.skin.background(), button="right")
        if texts:
            self._s.driver.choose(*texts)

    def shows(self, place, picture):
        """Whether the window shows this picture there; what lies outside the outline does not count."""
        x, y, width, height = place
        mask = self.skin.outline().crop((x, y, x + width, y + height)).convert("RGB")
        seen = self.look(place).convert("RGB")
        mask = mask.resize(seen.size, Image.NEAREST)
        expected = ImageChops.multiply(picture.convert("RGB"), mask)
        return seen.size == expected.size and not ImageChops.difference(ImageChops.multiply(seen, mask), expected).getbbox()

    def shows_button(self, name, pressed=False):
        return self.shows(self.skin.button(name), self.skin.button_picture(name, pressed, self.scale))

    def end(self, program):
        self.refresh().close()
        self._s.equal(program.wait_exit(), 0, "exit code")
