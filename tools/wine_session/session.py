"""One environment for Windows programs, set up on entry and ended without a trace on exit."""

import os
import pathlib
import shutil
import subprocess
import tempfile

from . import prefix as prefixes
from . import processes
from .display import VirtualDisplay
from .sound_server import SilentSoundServer


class WineSession:
    """Wine with a prefix, a display and a sound server.

    prefix: folder of a prefix to keep and reuse; None takes a fresh copy that is removed at the end.
    display: name of an existing X display; None starts a virtual one of `screen` size, without a window manager.
    own_sound: starts a silent sound server; otherwise programs find the user's.
    log: folder for the output of the helper programs; None discards it.
    """

    def __init__(self, prefix=None, locale="ja_JP", display=None, screen="1024x768", own_sound=True, log=None,
                 overrides=""):
        self._options = (prefix, locale, display, screen, own_sound, overrides)
        self._log_dir = log
        self._open = []
        self.display = self.sound = None

    def __enter__(self):
        try:
            self._start(*self._options)
        except BaseException:
            self.__exit__()
            raise
        return self

    def _log(self, name):
        if self._log_dir is None:
            return subprocess.DEVNULL
        file = open(pathlib.Path(self._log_dir) / f"{name}.log", "wb")
        self._open.append(file.close)
        return file

    def _start(self, prefix, locale, display, screen, own_sound, overrides):
        processes.adopt_orphans()
        known = set(processes.children())
        self._open.append(lambda: processes.collect_orphans(known))
        self.runtime = pathlib.Path(tempfile.mkdtemp(prefix="quenlox-"))
        self._open.append(lambda: shutil.rmtree(self.runtime, ignore_errors=True))
        if prefix is None:
            sessions = prefixes.cache_dir() / "sessions"
            sessions.mkdir(exist_ok=True)
            _remove_abandoned(sessions)
            self.prefix = sessions / str(os.getpid())
            shutil.rmtree(self.prefix, ignore_errors=True)
            self._open.append(lambda: shutil.rmtree(self.prefix, ignore_errors=True))
            prefixes.clone_prefix(self.prefix)
        else:
            self.prefix = pathlib.Path(prefix)
            if not self.prefix.is_dir():
                prefixes.clone_prefix(self.prefix)
        self.env = prefixes.base_environment(self.prefix, locale)
        if overrides:
            self.env["WINEDLLOVERRIDES"] += ";" + overrides

        if display is None:
            self.display = VirtualDisplay(screen, self._log("xvfb"))
            self._open.append(self.display.close)
        self.env["DISPLAY"] = display or self.display.name
        if own_sound:
            self.sound = SilentSoundServer(self.runtime, self._log("pulseaudio"))
            self._open.append(self.sound.close)
            self.env.update(self.sound.env)

        self._wine_log = self._log("wine")
        self._open.append(self._end_wine)
        # A server that stays makes every later start quick. It keeps the settings read below for the whole session.
        subprocess.run(["wineserver", "-p"], env=self.env, check=True, stderr=subprocess.DEVNULL)
        # Without a window manager Wine has to draw the title bars itself.
        managed = "N" if display is None else "Y"
        prefixes.import_registry({r"HKEY_CURRENT_USER\Software\Wine\X11 Driver": {"Managed": managed}}, self.env)

    def _end_wine(self):
        subprocess.run(["wineserver", "-k"], env=self.env, stderr=subprocess.DEVNULL)
        try:
            subprocess.run(["wineserver", "-w"], env=self.env, stderr=subprocess.DEVNULL, timeout=10)
        except subprocess.TimeoutExpired:
            subprocess.run(["wineserver", "-k9"], env=self.env, stderr=subprocess.DEVNULL)

    def start(self, program, *arguments, **options):
        """Starts a Windows program and returns its process; `program` is a path of this machine."""
        options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", self._wine_log)
        options.setdefault("stderr", self._wine_log)
        return processes.start(["wine", str(program), *map(str, arguments)], env=self.env, **options)

    @staticmethod
    def windows_path(path):
        """The name by which a program under Wine knows a file of this machine."""
        return "Z:" + str(pathlib.Path(path).resolve()).replace("/", "\\")

    def __exit__(self, *_):
        while self._open:
            self._open.pop()()


def _remove_abandoned(sessions):
    for folder in sessions.iterdir():
        if not folder.name.isdigit() or not os.path.exists(f"/proc/{folder.name}"):
            shutil.rmtree(folder, ignore_errors=True)
