"""The sound device is taken away and given back while the real program plays."""

import subprocess
import time

from wine_harness import material

from . import product

BUILDS = {"win64": ("stage", "wine_programs")}


def pactl(s, *arguments):
    return subprocess.run(["pactl", *arguments], env=s.session.env, capture_output=True, text=True, timeout=10, check=True).stdout


def sink(s):
    return pactl(s, "list", "short", "sinks").split()[1]


def answers(window, limit=5.0):
    """Seconds that the program takes to answer; the driver gives up after five."""
    begin = time.monotonic()
    window.send(0)  # WM_NULL
    return time.monotonic() - begin


def can_play(s, window):
    """Stop, then play: whether sound comes within some seconds, and how long each call takes at most."""
    slowest = 0.0
    for key in (product.STOP, product.PLAY):
        begin = time.monotonic()
        product.command(window, key)
        slowest = max(slowest, time.monotonic() - begin)
    mark = s.sound_mark()
    try:
        s.wait_sound(limit=8, since=mark)
        return True, slowest
    except TimeoutError:
        return False, slowest


def run(quick):
    rounds = 1 if quick else 5
    faults, slowest = [], 0.0
    seen = {"suspend": 0, "unload": 0}
    with product.session("device") as s:
        song = material.write_mp3(s.material / "song.mp3", material.tone(440, 600))
        folder = product.with_lists(s, "program", [s.windows_path(song)])
        program, window = product.start(s, folder, song, "/p")
        s.wait_sound()

        def check(what):
            nonlocal slowest
            if not program.running():
                faults.append(f"{what}: the program has ended")
                return False
            try:
                slowest = max(slowest, answers(window))
            except Exception as error:
                faults.append(f"{what}: no answer ({error})")
                return False
            return True

        def again(what):
            nonlocal slowest
            if not check(what):
                return
            try:
                plays, took = can_play(s, window)
                slowest = max(slowest, took)
                if plays:
                    seen[what] += 1
                else:
                    faults.append(f"{what}: no sound after stop and play")
            except Exception as error:
                faults.append(f"{what}: {error}")

        for _ in range(rounds):
            name = sink(s)
            pactl(s, "suspend-sink", name, "1")
            time.sleep(3)
            check("suspended")
            product.command(window, product.NEXT)  # a change while the device stands still
            check("next while suspended")
            pactl(s, "suspend-sink", name, "0")
            time.sleep(1)
            again("suspend")
        for _ in range(rounds):
            name = sink(s)
            modules = [line.split("\t") for line in pactl(s, "list", "short", "modules").splitlines()]
            number, _, arguments = next(m for m in modules if m[1] == "module-null-sink")[:3]
            pactl(s, "unload-module", number)
            time.sleep(4)
            check("unloaded")
            product.command(window, product.STOP)
            product.command(window, product.PLAY)
            check("play without a device")
            pactl(s, "load-module", "module-null-sink", *arguments.split())
            # The recorder of the session was that of the old device.
            s._sound_file = s.session.runtime / f"sound-{time.monotonic_ns()}.raw"
            s.session.sound.record(s._sound_file)
            time.sleep(3)
            again("unload")
        s.screenshot("after")
        window.close()
        try:
            code = program.wait_exit(20)
            if code != 0:
                faults.append(f"exit code {code}")
        except subprocess.TimeoutExpired:
            faults.append("does not end")
    return {"rounds": rounds, "plays_again_after_suspend": seen["suspend"], "plays_again_after_unload": seen["unload"],
            "slowest_answer_ms": round(slowest * 1000, 1)}, faults
