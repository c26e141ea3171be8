#!/usr/bin/python3
"""Processor time of the running program under Wine, the time from its start to the first sound, and how soon the play
list answers with 100 000 rows.

    bench/running_program.py [SECONDS]     each state is watched for 20 seconds when nothing is said

Needs build/quenlox and the Windows programs of tools. The share is that of one core; Wine's own server is told apart,
since a part of what it does is done for the program. Wine's sound driver runs in threads of the program's process; they
are told apart too, because Windows has nothing like them.
"""

import os
import pathlib
import statistics
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from wine_harness import material  # noqa: E402
from wine_harness.scenario import Scenario  # noqa: E402
from wine_session.processes import unwind_on_signals  # noqa: E402

STARTS = 7
ROWS = 100000
# Name, settings of section Option ({words} is a folder of lyrics), switches.
STATES = (("stopped", "SpeanaMode=0\r\nAnimeMode=0", "/m0"),
          ("stopped, panel shown", "SpeanaMode=1\r\nAnimeMode=0", "/m0"),
          ("playing", "SpeanaMode=0\r\nAnimeMode=0", "/p"),
          ("playing, panel and running title", "SpeanaMode=1\r\nAnimeMode=1", "/p"),
          ("playing, lyrics with a line every three seconds", "SpeanaMode=0\r\nLyricsDir={words}", "/p"),
          ("the same, coming up smoothly", "SpeanaMode=0\r\nLyricsDir={words}\r\nLyricsSmooth=1", "/p"),
          ("playing in the notification area", "SpeanaMode=1\r\nAnimeMode=1", "/pt"))


def processes(folder):
    """{name: process id} of the program in `folder` and of the server of its session."""
    found = {}
    for entry in pathlib.Path("/proc").iterdir():
        try:
            line = (entry / "cmdline").read_bytes().decode("utf-8", "replace")
            environment = (entry / "environ").read_bytes() if entry.name.isdigit() else b""
        except OSError:
            continue
        if "Quenlox.exe" in line and os.fsencode(str(folder)) in line.encode() + environment:
            found["program"] = int(entry.name)
    return found


def ticks(process):
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])


def server_of(process):
    """The wineserver with the same prefix."""
    prefix = next(v for v in pathlib.Path(f"/proc/{process}/environ").read_bytes().split(b"\0") if v.startswith(b"WINEPREFIX="))
    for entry in pathlib.Path("/proc").iterdir():
        try:
            if b"wineserver" in (entry / "cmdline").read_bytes().split(b"\0")[0] and prefix in (entry / "environ").read_bytes().split(b"\0"):
                return int(entry.name)
        except OSError:
            continue
    return None


def thread_ticks(process):
    """(the program's own threads, those of Wine's sound driver)"""
    own = driver = 0
    for thread in pathlib.Path(f"/proc/{process}/task").iterdir():
        used = ticks(f"{process}/task/{thread.name}")
        if (thread / "comm").read_text().startswith("wine"):
            driver += used
        else:
            own += used
    return own, driver


def start(s, file, settings, switches):
    folder = s.fresh_product()
    (folder / "Quenlox.ini").write_bytes(f"[Main]\r\nX=1500\r\nY=1500\r\nFileName={s.windows_path(file)}\r\n"
                                         f"[Option]\r\n{settings}\r\n".encode("cp932"))
    return folder, s.start_product(switches, folder=folder)


def main():
    seconds = float(sys.argv[1]) if len(sys.argv) > 1 else 20.0
    unwind_on_signals()
    with Scenario("running_program") as s:
        long = material.write_mp3(s.material / "a long name of a track that has to run through its place.mp3", material.tone(440, 600.0))
        words = s.material / "words"
        words.mkdir()
        (words / long.with_suffix(".lrc").name).write_text(
            "".join(f"[{n // 20:02}:{n % 20 * 3:02}.00]線路のむこうの町から届いた小さな歌 {n}\n" for n in range(200)), encoding="utf-8")
        for name, settings, switches in STATES:
            folder, _ = start(s, long, settings.format(words=s.windows_path(words)), switches)
            s.wait_until(lambda: processes(folder), "the process")
            time.sleep(4)  # what a start costs is another figure
            program = processes(folder)["program"]
            server = server_of(program)
            def all_ticks():
                return (*thread_ticks(program), ticks(server) if server else 0)

            before, begin = all_ticks(), time.monotonic()
            time.sleep(seconds)
            passed = (time.monotonic() - begin) * os.sysconf("SC_CLK_TCK") / 100
            own, driver, of_server = ((now - then) / passed for now, then in zip(all_ticks(), before))
            print(f"{name}: {own:.2f} % of a core, Wine's sound driver {driver:.2f} %, Wine's server {of_server:.2f} %", flush=True)
            s.end_programs()
        waits = []
        for _ in range(STARTS):
            s.wait_silence()
            mark = s.sound_mark()
            start(s, long, "SpeanaMode=0", "/p")
            s.wait_sound(since=mark)
            waits.append(s.captured(mark).bounds()[0])
            s.end_programs()
        print(f"from the start to the first sound, median of {STARTS}: {statistics.median(waits) * 1000:.0f} ms", flush=True)
        long_list(s)


def long_list(s):
    """From the key or click until the window answers again."""
    get_count, get_selected, ensure_visible = 0x1004, 0x1032, 0x1013
    folder = s.fresh_product()
    (folder / "Quenlox.ini").write_bytes(b"[Main]\r\nX=9000\r\nY=9000\r\n[List]\r\nX=600\r\nY=600\r\nSX=13200\r\nSY=7500\r\nShow=1\r\n[Option]\r\nListTypeS=1\r\n")
    (folder / "Quenlox.m3u").write_bytes(b"".join(b"Z:\\none\\%06d\\%06d.mp3\r\n" % (i, ROWS - i) for i in range(ROWS)))
    begin = time.monotonic()
    s.start_product(folder=folder)
    window = s.driver.wait_window(title="プレイリスト")
    lists = (c for c in window.controls() if c.class_name == "SysListView32" and c.visible)
    view = max(lists, key=lambda c: c.place[2] * c.place[3])  # beside those of the browser

    def until(what, condition, aim=" (aim 0.3 s)"):
        s.wait_until(condition, what)
        print(f"{what}: {(time.monotonic() - begin) * 1000:.0f} ms{aim}", flush=True)

    until(f"{ROWS} rows: window open, with the start of the program", lambda: view.send(get_count) == ROWS, "")
    time.sleep(1)
    begin = time.monotonic()
    view.send(ensure_visible, ROWS - 1, 0)
    until("scrolled to the end", lambda: True)
    view.click_item(ROWS - 3)
    time.sleep(0.6)
    begin = time.monotonic()
    s.driver.keys("ctrl+a")
    until("all selected", lambda: view.send(get_selected) == ROWS)
    view.send(ensure_visible, ROWS // 2, 0)
    begin = time.monotonic()
    view.click_item(ROWS // 2)
    until("released by a click", lambda: view.send(get_selected) == 1)
    begin = time.monotonic()
    s.driver.keys("shift+end")
    until("half selected", lambda: view.send(get_selected) == ROWS // 2)
    begin = time.monotonic()
    s.driver.keys("delete")
    until("half deleted", lambda: view.send(get_count) == ROWS // 2)
    header = (view.place[0] + 500, view.place[1] + 12)  # of the path column
    s.driver.click(*header)
    time.sleep(0.6)
    begin = time.monotonic()
    s.driver.click(*header)
    until("sorted by a header", lambda: view.items(0, 1)[0][4].endswith(f"{ROWS // 2 + 1:06}.mp3"))


main()
