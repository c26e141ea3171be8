"""One environment for Windows programs, set up on entry and ended without a trace on exit."""

import fcntl
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

    prefix: folder of a prefix to keep and reuse, which several sessions may do at a time; None takes a fresh copy that
        is removed at the end.
    display: name of an existing X display; None starts a virtual one of `screen` size, without a window manager.
    own_sound: starts a silent sound server; otherwise programs find the user's.
    log: folder for the output of the helper programs; None discards it.
    """

    def __init__(self, prefix=None, locale="ja_JP", display=None, screen="1024x768", own_sound=True, log=None,
                 overrides=""):
        self._options = (prefix, locale, display, screen, own_sound, overrides)
        self._log_dir = log
        self._open = []
        self._lock = None
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
        self._open.append(lambda: self._last_user() and processes.collect_orphans(known))
        self.runtime = pathlib.Path(tempfile.mkdtemp(prefix="quenlox-"))
        self._open.append(lambda: shutil.rmtree(self.runtime, ignore_errors=True))
        self.prefix = self._own_prefix() if prefix is None else _kept_prefix(pathlib.Path(prefix))
        self._lock = open(self.prefix / "session.lock", "w")
        fcntl.flock(self._lock, fcntl.LOCK_SH)

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
        self._start_wine(managed=display is not None)

    def _own_prefix(self):
        """A fresh copy that goes with the session."""
        sessions = prefixes.cache_dir() / "sessions"
        sessions.mkdir(exist_ok=True)
        _remove_abandoned(sessions)
        prefix = sessions / str(os.getpid())
        shutil.rmtree(prefix, ignore_errors=True)
        self._open.append(lambda: shutil.rmtree(prefix, ignore_errors=True))
        return prefixes.clone_prefix(prefix)

    def _start_wine(self, managed):
        self._wine_log = self._log("wine")
        self._open.append(self._end_wine)
        # A server that stays some seconds after the last program makes every later start quick, and goes even if nobody is
        # left to end it. The command fails when another session has one already.
        subprocess.run(["wineserver", "-p5"], env=self.env, stderr=subprocess.DEVNULL, preexec_fn=processes.prefer)
        # Without a window manager Wine has to draw the title bars itself.
        prefixes.import_registry(
            {r"HKEY_CURRENT_USER\Software\Wine\X11 Driver": {"Managed": "Y" if managed else "N"}}, self.env)

    def _last_user(self):
        """True when no other session uses the prefix; none can begin to from then on until this process ends."""
        if self._lock is None:  # not begun
            return True
        try:
            fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            return True
        except BlockingIOError:
            return False

    def _end_wine(self):
        if not self._last_user():
            return
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


def _kept_prefix(prefix):
    if not prefix.is_dir():
        unfinished = prefix.with_name(f"{prefix.name}.{os.getpid()}")
        prefixes.clone_prefix(unfinished)
        try:
            unfinished.rename(prefix)
        except OSError:  # another session was quicker
            shutil.rmtree(unfinished, ignore_errors=True)
    return prefix


def _remove_abandoned(sessions):
    for folder in sessions.iterdir():
        if not folder.name.isdigit() or not os.path.exists(f"/proc/{folder.name}"):
            shutil.rmtree(folder, ignore_errors=True)
