"""The real program as the soaks use it."""

import contextlib
import os
import pathlib

from wine_harness.scenario import Scenario

TITLE = "Quenlox  Ver 1.0.0"
WM_APPCOMMAND = 0x319
NEXT, PREVIOUS, STOP, PLAY = 11, 12, 13, 14


@contextlib.contextmanager
def session(name, midi=False):
    with Scenario(f"soak-{name}", midi=midi) as s:
        yield s


def with_lists(s, name, paths, settings=""):
    """A fresh copy of the program whose list A holds the paths; `settings` are lines of the settings file."""
    folder = s.fresh_product(name)
    (folder / "Quenlox.m3u").write_bytes("".join(f"{line}\r\n" for line in ["#ListA", *paths]).encode("cp932"))
    (folder / "Quenlox.ini").write_bytes(settings.encode("cp932"))
    return folder


def start(s, folder, *arguments):
    program = s.start_product(*arguments, folder=folder)
    return program, s.driver.wait_window(title=TITLE, limit=60)


def command(window, what):
    """A media key; returns when the program has done what it asks for."""
    window.send(WM_APPCOMMAND, 0, what << 16)


def setting(folder, key):
    lines = (folder / "Quenlox.ini").read_bytes().decode("cp932").splitlines()
    return next((line.split("=", 1)[1] for line in lines if line.startswith(key + "=")), None)


def resources(program, window):
    """What its process holds: counts, and the working set in bytes."""
    process = pathlib.Path(f"/proc/{program.id}")
    pages = int((process / "statm").read_text().split()[1])
    return {**window.resources(), "threads": len(list((process / "task").iterdir())), "working_set": pages * os.sysconf("SC_PAGE_SIZE")}


def growth(before, after):
    return {key: f"{before[key]} -> {after[key]}" for key in before}
