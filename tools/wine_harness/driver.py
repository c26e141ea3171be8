"""The Python end of the driver program (tools/wine_driver): windows, controls, mouse and keyboard inside Wine."""

import dataclasses
import queue
import re
import subprocess
import threading
import time

from wine_session.processes import wait_until

WM_CLOSE, WM_COMMAND, BM_GETCHECK = 0x10, 0x111, 0xF0
TIP_CLASS, MENU_CLASS, LIST_CLASS = "tooltips_class32", "#32768", "SysListView32"
DOUBLE_CLICK = 0.6  # seconds; the system's is half a second
LIMIT = 30.0  # seconds that waiting takes at most when a test names no limit: much, for a busy machine


class DriverError(RuntimeError):
    """The driver refused a request; the text says why."""


def _escaped(value):
    return re.sub(r"[\\\t\r\n]", lambda found: "\\" + {"\t": "t", "\r": "r", "\n": "n"}.get(found[0], found[0]), str(value))


def _fields(line):
    return [re.sub(r"\\(.)", lambda found: {"t": "\t", "r": "\r", "n": "\n"}.get(found[1], found[1]), field) for field in line.split("\t")]


@dataclasses.dataclass(frozen=True)
class MenuItem:
    """One line of a menu. `place` is on the screen, (x, y, width, height); all zero while it is not shown."""
    depth: int
    position: int
    id: int
    state: int
    place: tuple
    caption: str  # with "&", and "|" between caption and shortcut

    checked = property(lambda self: bool(self.state & 8))
    enabled = property(lambda self: not self.state & 3)
    separator = property(lambda self: bool(self.state & 0x800))
    submenu = property(lambda self: bool(self.state & 0x10))

    @property
    def text(self):
        return self.caption.split("|")[0].replace("&", "")


@dataclasses.dataclass(frozen=True)
class Part:
    """What a window tells assistive programs of one thing in it. `place` is on the screen, (x, y, width, height)."""
    window: "Window"
    number: int
    role: int
    state: int
    place: tuple
    name: str
    value: str
    description: str
    action: str
    shortcut: str

    BUTTON, SLIDER, TEXT, PICTURE = 43, 51, 41, 40
    enabled = property(lambda self: not self.state & 1)
    pressed = property(lambda self: bool(self.state & 8))

    def act(self):
        self.window.ask("partact", self.number)

    def set_value(self, text):
        self.window.ask("partvalue", self.number, text)

    def beside(self, direction):
        """The number of the part after (5) or before (6) it."""
        return int(self.window.ask("partbeside", self.number, direction)[0][0])


class Driver:
    def __init__(self, session, program):
        self._process = session.start(program, stdin=subprocess.PIPE, stdout=subprocess.PIPE, cwd=program.parent)
        self._lines = queue.Queue()
        self._last_click = 0.0
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self._process.stdout:
            self._lines.put(line.decode("utf-8").rstrip("\r\n"))
        self._lines.put(None)

    def ask(self, *request):
        """Sends one request and returns its rows, lists of texts."""
        self._process.stdin.write(("\t".join(map(_escaped, request)) + "\n").encode("utf-8"))
        self._process.stdin.flush()
        answer = []
        while True:
            try:
                line = self._lines.get(timeout=60)
            except queue.Empty:
                raise DriverError(f"no answer to {request}") from None
            if line is None:
                raise DriverError(f"the driver ended during {request}")
            if line == ".":
                break
            answer.append(_fields(line))
        if answer[0][0] != "ok":
            raise DriverError(f"{request}: {answer[0][-1]}")
        return answer[1:]

    def close(self):
        self._process.stdin.close()
        try:
            self._process.wait(3)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()

    # Windows

    def windows(self):
        """All top-level windows, front to back."""
        return [Window(self, row, top_level=True) for row in self.ask("windows")]

    def find(self, title=None, class_name=None, process=None, visible=True):
        """The first top-level window that fits, or None. `title` is compared whole, but a * at its begin or end stands for
        anything. The tip of a button bears the name of the window that the button opens: tips are found by class only."""
        for window in self.windows():
            if (visible and not window.visible) or window.class_name != (class_name or window.class_name):
                continue
            if window.class_name == TIP_CLASS and not class_name:
                continue
            if process is not None and window.process != process:
                continue
            if title is None or _fits(window.title, title):
                return window
        return None

    def wait_window(self, title=None, class_name=None, limit=LIMIT, **more):
        return wait_until(lambda: self.find(title, class_name, **more), limit, f"a window {title or ''} {class_name or ''}")

    def tree(self):
        """All windows with their controls, as text for people."""
        out = []
        for window in self.windows():
            out += [str(window), *(f"    {control}" for control in window.controls())]
        return "\n".join(out) + "\n"

    def foreground(self):
        return int(self.ask("foreground")[0][0])

    def focus(self):
        """The handle of the window that has the keyboard, 0 for none."""
        return int(self.ask("focus")[0][0])

    def window_at(self, x, y):
        """(innermost window, its top-level window) at a point of the screen, as handles; regions are respected."""
        return tuple(map(int, self.ask("at", x, y)[0]))

    # Mouse, keyboard, menus: screen coordinates in pixels

    def move(self, x, y):
        self.ask("move", x, y)

    def click(self, x, y, button="left", count=1):
        """Clicks that follow one another are a double click only when `count` says so."""
        time.sleep(max(0.0, self._last_click + DOUBLE_CLICK - time.monotonic()))
        self.ask("click", x, y, button, count)
        self._last_click = time.monotonic()

    def press(self, button="left"):
        self.ask("press", button, 1)

    def release(self, button="left"):
        self.ask("press", button, 0)

    def drag(self, x1, y1, x2, y2, button="left", steps=8):
        self.ask("drag", x1, y1, x2, y2, button, steps)

    def wheel(self, x, y, notches):
        self.ask("wheel", x, y, notches)

    def keys(self, combination):
        """"ctrl+s", "alt+left", "f5", "delete", "a" or a virtual key as "0x5D"."""
        self.ask("keys", combination)

    def type(self, text):
        self.ask("type", text)

    def popup(self):
        """The items of the menu that is open, those of its sub menus behind their parent; waits until there is one."""
        def text():
            try:
                return self.ask("popup")[0][0]
            except DriverError:
                return None
        return _menu_items(wait_until(text, LIMIT, "an open menu"))

    def choose(self, *texts):
        """Chooses from the menu that is open by clicking; several texts lead through sub menus. Returns when the menu has gone,
        or the sub menu of the last text may open."""
        for text in texts:
            # A sub menu that is open is listed behind the menu it belongs to, as a menu of its own.
            item = wait_until(lambda: [i for i in self.popup() if i.text == text and i.place[2] > 0], LIMIT, f"menu item {text}")[-1]
            x, y, width, height = item.place
            self.click(x + min(20, width // 2), y + height // 2)
        if not item.submenu:
            wait_until(lambda: not self.menus(), LIMIT, "the menu closes")

    def menus(self):
        return [window for window in self.windows() if window.class_name == MENU_CLASS and window.visible]

    def leave_menu(self):
        """Closes the menu that is open, with its sub menus, by the key for it."""
        while open_before := len(self.menus()):
            self.keys("esc")
            wait_until(lambda: len(self.menus()) < open_before, LIMIT, "the menu closes")

    def running(self, name):
        """How many processes of a program there are, as Wine's server sees it."""
        return int(self.ask("running", name)[0][0])

    def code_page(self):
        return int(self.ask("codepage")[0][0])


def _fits(title, pattern):
    core = pattern.strip("*")
    open_begin, open_end = pattern.startswith("*"), pattern.endswith("*")
    return (core in title and (open_begin or title.startswith(core)) and (open_end or title.endswith(core))
            and (open_begin or open_end or title == core))


def _plain(caption):
    """The caption as it is seen, and without its access key: "閉じる(C)" and "閉じる"."""
    return caption.replace("&", ""), re.sub(r"\(&.\)", "", caption).replace("&", "")


def _menu_items(text):
    rows = [line.split("\t") for line in text.splitlines()]
    return [MenuItem(*map(int, row[:4]), tuple(map(int, row[4:8])), row[8]) for row in rows]


class Window:
    """A window or control as it was when it was looked up; `refreshed()` looks again."""

    def __init__(self, driver, row, top_level):
        self._driver, self._top_level = driver, top_level
        numbers = [int(field) for i, field in enumerate(row) if i not in (3, 13)]
        (self.handle, self.parent, self.process, self.id, self.x, self.y, self.width, self.height, visible, enabled,
         self.style, self.extended_style) = numbers
        self.class_name, self.title = row[3], row[13]
        self.visible, self.enabled = bool(visible), bool(enabled)

    def __str__(self):
        return (f"{self.handle:#x} {self.class_name} id {self.id} {self.width}x{self.height}+{self.x}+{self.y}"
                f"{'' if self.visible else ' hidden'}{'' if self.enabled else ' disabled'} {self.title!r}")

    @property
    def place(self):
        """(x, y, width, height) on the screen, pixels."""
        return self.x, self.y, self.width, self.height

    @property
    def plain(self):
        """The caption without its access key."""
        return _plain(self.title)[1]

    def refreshed(self):
        """The same window as it is now; None when it is gone."""
        if self._top_level:
            return next((w for w in self._driver.windows() if w.handle == self.handle), None)
        rows = self._driver.ask("descendants", self.parent)
        return next((Window(self._driver, r, False) for r in rows if int(r[0]) == self.handle), None)

    def ask(self, verb, *more):
        return self._driver.ask(verb, self.handle, *more)

    def accessible(self):
        """What it tells assistive programs of itself."""
        row = self.ask("accessible")[0]
        return Part(self, *map(int, row[:3]), tuple(map(int, row[3:7])), *row[7:])

    def parts(self):
        """What it tells assistive programs of things that are no windows of their own."""
        return [Part(self, *map(int, row[:3]), tuple(map(int, row[3:7])), *row[7:]) for row in self.ask("parts")]

    def part(self, name):
        return next(part for part in self.parts() if part.name == name)

    def part_at(self, x, y):
        """The number of the part at a point of the screen, 0 for the window itself, -1 outside it."""
        return int(self.ask("partat", x, y)[0][0])

    def text(self):
        return self._driver.ask("text", self.handle)[0][0]

    def set_text(self, text):
        self._driver.ask("settext", self.handle, text)

    # Finding controls

    def controls(self):
        return [Window(self._driver, row, False) for row in self._driver.ask("descendants", self.handle)]

    def control(self, class_name=None, title=None, where=lambda control: True):
        """The first descendant that fits, waited for. `title` may leave out the access key that follows a Japanese caption."""
        def found():
            return next((c for c in self.controls() if (class_name is None or c.class_name.lower() == class_name.lower())
                         and (title is None or title in _plain(c.title)) and where(c)), None)
        return wait_until(found, LIMIT, f"control {class_name or ''} {title or ''} in {self.title!r}")

    def list_view(self):
        """The first list view that is seen."""
        return self.control(LIST_CLASS, where=lambda control: control.visible)

    def press(self, title):
        """Clicks a button when it can be pressed."""
        self.control("Button", title, lambda control: control.visible and control.enabled).click()

    def wait_text(self, text, limit=LIMIT):
        """Waits until something in it shows the text."""
        wait_until(lambda: any(text in c.title for c in self.controls() if c.visible), limit, f"{self.title!r} shows {text!r}")

    # Acting; dx and dy count from the left top corner of the window, the middle when not given

    def point(self, dx=None, dy=None):
        return (self.x + (self.width // 2 if dx is None else dx), self.y + (self.height // 2 if dy is None else dy))

    def click(self, dx=None, dy=None, button="left", count=1):
        self._driver.click(*self.point(dx, dy), button, count)

    def activate(self):
        """Brings it to the front; waits until it is."""
        self._driver.ask("activate", self.handle)
        wait_until(lambda: self._driver.foreground() == self.handle, LIMIT, f"{self.title!r} comes to the front")

    def close(self):
        """Asks it to close, as its close button does."""
        self.post(WM_CLOSE)

    def wait_closed(self, limit=LIMIT):
        wait_until(lambda: (w := self.refreshed()) is None or not w.visible, limit, f"{self.title!r} closes")

    def send(self, message, w=0, l=0):
        return int(self._driver.ask("send", self.handle, message, w, l)[0][0])

    def post(self, message, w=0, l=0):
        self._driver.ask("post", self.handle, message, w, l)

    def command(self, id):
        """Posts a menu or button command."""
        self.post(WM_COMMAND, id)

    # The process behind it

    def resources(self):
        """Counts of its process: handles, gdi, windows."""
        windows = sum(1 + len(window.controls()) for window in self._driver.windows() if window.process == self.process)
        handles, gdi = map(int, self._driver.ask("resources", self.handle)[0])
        return {"handles": handles, "gdi": gdi, "windows": windows}

    def fail(self, how):
        """Makes a thread of its process fail: by "fault", "library" (a bad pointer), "break", "overflow" (of the stack), "abort"."""
        self._driver.ask("fail", self.handle, how)

    # Contents

    def checked(self):
        return self.send(BM_GETCHECK) == 1

    def items(self, first=0, count=1000):
        """A list view's rows: lists of the texts of their columns."""
        return [row[3:] for row in self._driver.ask("listview", self.handle, first, count)]

    def selected_items(self):
        """Indices of the selected rows of a list view."""
        return [i for i, row in enumerate(self._driver.ask("listview", self.handle)) if row[0] == "1"]

    def columns(self):
        """(title, width in pixels) of each column of a list view."""
        return [(title, int(width)) for title, width in self._driver.ask("columns", self.handle)]

    def click_item(self, index, button="left", count=1):
        x, y, _, height = map(int, self._driver.ask("itemplace", self.handle, index)[0])
        self._driver.click(x + 8, y + height // 2, button, count)

    def lines(self):
        """The texts of a combo box."""
        return [text for _, text in self._driver.ask("combobox", self.handle)]

    def selected_line(self):
        return next((text for on, text in self._driver.ask("combobox", self.handle) if on == "1"), None)

    def scroll(self):
        """(position, minimum, maximum) of a track bar."""
        return tuple(map(int, self._driver.ask("scroll", self.handle)[0]))
