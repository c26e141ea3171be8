"""Where things are in the main window with a shipped skin."""

import configparser
import pathlib

from PIL import Image

SKINS = pathlib.Path(__file__).resolve().parents[3] / "skins"
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

    def button(self, name):
        if name in PLAYBACK:
            return self._box("Button", "Button" + "ABCDEFG"[PLAYBACK.index(name)], f"cmd_{name}1.bmp")
        return self._box("Command", "Command" + "ABCDEFG"[COMMANDS.index(name)], f"btn_{name}1.bmp")

    def label(self, name):
        x, y, width, height = self._list("Label", "Label" + "ABCDEFGHI"[LABELS.index(name)])[:4]
        return (x, y, width, height) if x >= 0 else None

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
        x, y, _, _ = self.window.place
        k = self.scale
        return self._s.screen().crop((x + box[0] * k, y + box[1] * k, x + (box[0] + box[2]) * k, y + (box[1] + box[3]) * k))

    def shot(self, name):
        return self._s.screenshot(name, self.refresh())

    def menu(self, *texts, at=None):
        """Opens the main menu on the background and chooses; without texts it stays open."""
        self.click(at or self.background(), button="right")
        if texts:
            self._s.driver.choose(*texts)

    def background(self):
        """A place that is inside the window and holds no control."""
        width, height = self.skin.size
        return {"default": (width // 2, 7, 2, 2), "hakuji": (90, 20, 2, 2), "obi": (width // 2, 4, 2, 2)}[self.skin.name]

    def end(self, program):
        self.refresh().close()
        self._s.equal(program.wait_exit(), 0, "exit code")
