"""What a scenario's tests work with: one Wine session with its display, sound and files."""

import pathlib
import shutil
import time

from wine_session import WineSession
from wine_session.processes import stop, wait_until

from .driver import LIMIT, Driver
from .drop import drop_files
from .sound import Sound

ROOT = pathlib.Path(__file__).resolve().parents[2]
PRODUCT = ROOT / "build/quenlox"
WINE_PROGRAMS = ROOT / "build/win64/tools"
ARTEFACTS = ROOT / "build/wine"
# The small window that stands for the notification area where no desktop has one: title and class, which only some Wines set.
TRAYS = ("Wine System Tray", "Shell_TrayWnd")


def real_time(function):
    """Marks a test that measures captured sound. On a busy machine the sound itself may be torn, so a failure counts only
    when it happens three times; a fault of the program happens always."""
    function.attempts = 3
    return function


def _is_tray(window):
    return window.title == TRAYS[0] or window.class_name == TRAYS[1]


class Program:
    """A running Windows program."""

    def __init__(self, process, name):
        self._process, self.name, self.id = process, name, process.pid

    def running(self):
        return self._process.poll() is None

    def wait_exit(self, limit=LIMIT):
        """Its exit code, modulo 256."""
        return self._process.wait(limit)

    def kill(self):
        """Ends it at once, as a crash or a power cut would."""
        stop(self._process, 1)


class Scenario:
    """Context of one scenario file: `name` names it and its folder below build/wine.

    locale: "ja_JP" (code page 932) or "en_US" (1252); midi: a MIDI device that logs; screen: size of the display.
    """

    def __init__(self, name, locale="ja_JP", midi=False, screen="1024x768"):
        self.name = name
        self.dir = ARTEFACTS / name
        self._midi = midi
        self._programs = []
        shutil.rmtree(self.dir, ignore_errors=True)
        self.material = self.dir / "material"
        self.material.mkdir(parents=True)
        self.session = WineSession(locale=locale, screen=screen, log=self.dir, overrides="midimap=n" if midi else "")

    def __enter__(self):
        self.session.__enter__()
        try:
            self._sound_file = self.session.runtime / "sound.raw"
            self.session.sound.record(self._sound_file)
            if self._midi:
                self._install_midi_device()
            self.driver = Driver(self.session, WINE_PROGRAMS / "driver.exe")
            self._system_processes = {window.process for window in self.driver.windows()}
        except BaseException:
            self.session.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.end_programs()
        self.driver.close()
        self.captured().save(self.dir / "sound.wav")
        self.session.__exit__()

    # Programs

    def fresh_product(self, name="program"):
        """A copy of the built product in the scenario's folder, with no settings yet; returns the folder."""
        folder = self.dir / name
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(PRODUCT, folder, ignore=shutil.ignore_patterns("Quenlox.ini", "Quenlox.m3u"))
        return folder

    def start_product(self, *arguments, folder=None, **options):
        """Starts Quenlox.exe of `folder` (default: the first call's fresh copy). Paths among the arguments are converted."""
        folder = folder or self.dir / "program"
        if not folder.exists():
            self.fresh_product(folder.name)
        return self.start(folder / "Quenlox.exe", *arguments, cwd=folder, **options)

    def start(self, program, *arguments, **options):
        # Wine's server may learn of an end later than this process; a program that asks it would find the one before it.
        name = str(program).replace("\\", "/").rsplit("/", 1)[-1]
        alive = sum(other.name == name and other.running() for other in self._programs)
        wait_until(lambda: self.driver.running(name) <= alive, LIMIT, f"the {name} before has ended")
        arguments = [self.session.windows_path(a) if isinstance(a, pathlib.Path) else a for a in arguments]
        running = Program(self.session.start(program, *arguments, **options), name)
        self._programs.append(running)
        return running

    def end_programs(self):
        """Kills what is still running; the harness does so after each test. Returns when the windows have gone too."""
        if any(program.running() for program in self._programs):
            before = self._other_processes()
            for program in self._programs:
                program.kill()
            try:
                wait_until(lambda: not before & self._other_processes())
            except TimeoutError:
                pass  # not a program of ours
        self._programs.clear()

    def _other_processes(self):
        return {window.process for window in self.driver.windows() if not _is_tray(window)} - self._system_processes

    def tray(self):
        """The notification area while it has an icon, or None."""
        return next((window for window in self.driver.windows() if window.visible and _is_tray(window)), None)

    def click_icon(self, button="left"):
        """Clicks the icon in the notification area, as soon as there is one."""
        def icon():
            icons = self.tray().controls() if self.tray() else []
            return next((icon for icon in icons if icon.class_name.endswith("_tray_icon") and icon.visible), None)
        self.wait_until(icon, "an icon in the notification area").click(button=button)

    def windows_path(self, path):
        return self.session.windows_path(path)

    # Looking and listening

    def screen(self):
        """What the screen shows, a PIL image; screen()-coordinates are those of the driver."""
        return self.session.display.picture()

    def screenshot(self, name, window=None):
        """Saves the screen, or what it shows of one window, as <scenario>/<name>.png; returns the PIL image."""
        picture = self.screen()
        if window is not None:
            x, y, width, height = window.place
            picture = picture.crop((x, y, x + width, y + height))
        picture.save(self.dir / f"{name}.png")
        return picture

    def sound_mark(self):
        """A point in the capture, now; the sound card's delay (up to 0.1 s) is not taken off."""
        return self._sound_file.stat().st_size // 4 * 4

    def captured(self, since=0, until=None):
        """What was heard between two marks; up to now without the second."""
        with open(self._sound_file, "rb") as file:
            file.seek(since)
            return Sound.from_raw(file.read(-1 if until is None else until - since))

    def listen(self, seconds):
        """What is heard during the next seconds."""
        mark = self.sound_mark()
        self.wait_until(lambda: self.sound_mark() - mark >= seconds * 44100 * 4, "sound arrives", seconds + LIMIT)
        return self.captured(mark)

    def wait_sound(self, limit=LIMIT, since=None):
        """Waits until something is heard after the mark `since` (now by default)."""
        mark = self.sound_mark() if since is None else since

        def heard():
            nonlocal mark
            before, mark = mark, self.sound_mark()
            return not self.captured(before, mark).is_silent()
        self.wait_until(heard, "sound is heard", limit)

    def wait_silence(self, seconds=0.3, limit=LIMIT):
        """Waits until nothing has been heard for `seconds`."""
        size = int(seconds * 44100) * 4
        mark = self.sound_mark()
        try:
            self.wait_until(lambda: self.sound_mark() - mark >= size and self.captured(self.sound_mark() - size).is_silent(),
                            "it is silent", limit)
        except TimeoutError as error:
            heard = self.captured(mark)
            raise TimeoutError(f"{error}; {heard.length:.2f} s arrived, sound in {heard.bounds()}") from None

    def wait_tone(self, frequency):
        """Waits until a tone is what is heard."""
        self.wait_until(lambda: abs(self.listen(0.3).frequency() - frequency) < 12, f"a tone of {frequency} Hz is heard")

    @staticmethod
    def lasting_gaps(hear, shortest=0.005):
        """The gaps that each of three hearings has in the same place: a busy machine tears the sound here and there, a fault
        of the program always there."""
        lasting = hear().gaps(shortest)
        for _ in range(2):
            now = hear().gaps(shortest) if lasting else []
            lasting = [gap for gap in lasting if any(abs(gap[0] - other[0]) < 0.1 for other in now)]
        return lasting

    # Waiting

    @staticmethod
    def wait_until(condition, what, limit=LIMIT):
        """Polls until `condition` gives something true, which it returns; TimeoutError after `limit` seconds."""
        return wait_until(condition, limit, what)

    @staticmethod
    def wait_equal(get, expected, what):
        """Waits until `get` gives what is expected."""
        try:
            wait_until(lambda: get() == expected, LIMIT)
        except TimeoutError:
            raise AssertionError(f"{what}: {get()!r}, expected {expected!r}") from None

    @staticmethod
    def wait_still(look, what, seconds=1.0):
        """Waits until what `look` gives has been the same for so long; returns it."""
        seen, since = look(), time.monotonic()

        def still():
            nonlocal seen, since
            now = look()
            if now != seen:
                seen, since = now, time.monotonic()
            return time.monotonic() - since >= seconds
        wait_until(still, LIMIT, what)
        return seen

    # Dialogs, dropping, MIDI

    def file_dialog(self, path):
        """Answers the open or save dialog of the system with a file of this machine."""
        # The list of files is made last; a dialog that is answered earlier never closes.
        dialog = self._dialog(lambda controls: any(c.class_name == "SHELLDLL_DefView" for c in controls), "a file dialog, complete")
        edit = dialog.control("Edit", where=lambda control: control.id == 0x47C)
        wanted = self.session.windows_path(path)
        edit.set_text(wanted)
        self.wait_equal(edit.text, wanted, "the name in the box")
        dialog.command(1)
        dialog.wait_closed()

    def answer(self, *texts, button=1):
        """Presses a button (1 OK, 2 cancel, 6 yes, 7 no) of the message that holds the texts."""
        def held(controls):
            shown = " ".join(control.title for control in controls)
            return all(text in shown for text in texts)
        dialog = self._dialog(held, f"a message with {texts}")
        dialog.command(button)
        dialog.wait_closed()

    def _dialog(self, fits, what):
        """The dialog of the system whose controls fit, waited for: another may still be going."""
        def found():
            return next((w for w in self.driver.windows() if w.class_name == "#32770" and w.visible and fits(w.controls())), None)
        return self.wait_until(found, what)

    def drop_files(self, x, y, *files):
        """Drops files at a point of the screen, as a file manager would."""
        drop_files(self.session.display.name, x, y, [pathlib.Path(f).resolve() for f in files])

    def _install_midi_device(self):
        target = self.session.prefix / "drive_c/windows/system32/midimap.dll"
        target.unlink(missing_ok=True)  # a link to the cached prefix: never written through
        shutil.copy(WINE_PROGRAMS / "midimap.dll", target)
        self.session.env["QUENLOX_MIDI_LOG"] = self.session.windows_path(self.dir / "midi.log")

    def midi_messages(self):
        """[(milliseconds, kind, value)] that the MIDI device has received; a short message's lowest byte is its status."""
        log = self.dir / "midi.log"
        if not log.exists():
            return []
        rows = [line.split() for line in log.read_text().splitlines()]
        return [(int(ms), kind, int(value, 16)) for ms, kind, value in rows]

    def midi_notes(self, since=0):
        """The numbers of the notes that it was told to begin, from the message `since` on."""
        return [value >> 8 & 127 for _, kind, value in self.midi_messages()[since:] if kind == "short" and value & 0xF0 == 0x90 and value >> 16]

    # Checks beyond plain assert

    @staticmethod
    def equal(actual, expected, what="value"):
        assert actual == expected, f"{what}: {actual!r}, expected {expected!r}"

    @staticmethod
    def near(value, target, tolerance, what):
        assert abs(value - target) <= tolerance, f"{what}: {value:.4g}, expected {target:g} within {tolerance:g}"

    def pause(self, seconds):
        """Lets time pass where passing time is what is tested; to wait for something, use wait_until."""
        time.sleep(seconds)
