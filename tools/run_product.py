#!/usr/bin/python3
"""Starts the product in build/quenlox under Wine: tools/run_product.py FILE | --prepare

On the user's display it runs until it is closed. Without a display it plays on a virtual one for some seconds, leaves
build/quenlox.png and ends. A machine without a sound server gets a silent one for the time. --prepare only makes what Wine
needs on a machine where it never ran.
"""

import os
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

from wine_session import WineSession  # noqa: E402
from wine_session.prefix import cache_dir, ready_prefix  # noqa: E402
from wine_session.processes import stop, unwind_on_signals, wait_until  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[1]
PRODUCT = ROOT / "build/quenlox"
PICTURE = ROOT / "build/quenlox.png"
PLAYED = 8.0  # seconds shown when there is no display
MARGIN = 12  # pixels around what the picture shows


def has_sound_server():
    try:
        return subprocess.run(["pactl", "info"], capture_output=True, timeout=5).returncode == 0
    except (OSError, subprocess.TimeoutExpired):
        return False


def cropped(picture):
    """The part of the screen that is not its empty black ground."""
    box = picture.getbbox()
    if box is None:
        return picture
    left, top, right, bottom = box
    return picture.crop((max(0, left - MARGIN), max(0, top - MARGIN), min(picture.width, right + MARGIN),
                         min(picture.height, bottom + MARGIN)))


def show_and_end(session, process):
    """Lets the program play, takes the picture, and closes it as a user would."""
    wait_until(lambda: process.poll() is not None or session.display.picture().getbbox(), 30, "the window appears")
    end = time.monotonic() + PLAYED
    while process.poll() is None and time.monotonic() < end:
        time.sleep(0.1)
    if process.poll() is not None:
        print(f"Quenlox ended by itself with code {process.returncode}.", file=sys.stderr)
        return 1
    cropped(session.display.picture()).save(PICTURE)
    print(f"No display: played {PLAYED:g} s on a virtual one; the picture is in {PICTURE.relative_to(ROOT)}")
    session.start("taskkill", "/IM", "Quenlox.exe").wait(10)
    try:
        return process.wait(10)
    except subprocess.TimeoutExpired:
        print("Quenlox did not close when asked to.", file=sys.stderr)
        stop(process)
        return 1


def main():
    unwind_on_signals()
    if sys.argv[1] == "--prepare":
        ready_prefix()
        return 0
    file = pathlib.Path(sys.argv[1])
    if not file.exists():
        sys.exit(f"there is no {file}")
    display = os.environ.get("DISPLAY")
    # The user's windows may be many and last; what nobody watches gets a prefix for the time.
    prefix = cache_dir() / f"run-{ready_prefix().name}" if display else None
    with WineSession(prefix=prefix, display=display, own_sound=not has_sound_server()) as session:
        process = session.start(PRODUCT / "Quenlox.exe", session.windows_path(file), cwd=PRODUCT)
        if display:
            return process.wait()
        return show_and_end(session, process)


sys.exit(main())
