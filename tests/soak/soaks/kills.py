"""Programs are killed at random moments while they write lists and settings."""

import os
import random
import re
import shutil
import signal
import subprocess
import time

from wine_harness.scenario import ROOT
from wine_session.processes import wait_until

from . import product

BUILDS = {"win64": ("stage", "wine_programs", "soak_saver")}
ROWS = 3000


def leftovers(folder):
    return [path.name for path in folder.iterdir() if ".~" in path.name]


def kill(process):
    os.kill(process.pid, signal.SIGKILL)
    process.wait()


def fault_of_saver(folder, rows):
    """What is wrong with the files of soak_saver, None when nothing is: each must be of one write, and whole."""
    lines = (folder / "Quenlox.m3u").read_bytes().decode("cp932").split("\r\n")
    number = lines[1].split("\\")[2]
    expected = [line for name in "ABC" for line in [f"#List{name}", *(f"C:\\音楽\\{number}\\{row}.mp3" for row in range(rows))]]
    if lines != [*expected, ""]:
        return f"the list file has {len(lines)} lines, the last is {lines[-2:]}"
    lines = (folder / "Quenlox.ini").read_bytes().decode("ascii").split("\r\n")
    values = {line.split("=")[1] for line in lines[1:-1]}
    if len(lines) != 203 or not lines[-2].startswith("End=") or len(values) != 1:
        return f"the settings file has {len(lines)} lines and the values {sorted(values)[:5]}"
    return None


def kill_savers(s, count, chance):
    """Kills of a program that does nothing but write, as the real one does."""
    folder = s.dir / "saver"
    folder.mkdir()
    saver = shutil.copy(ROOT / "build/win64/tests/soak/soak_saver.exe", folder)
    faults, left = [], 0
    for _ in range(count):
        process = s.session.start(saver, ROWS, stdout=subprocess.PIPE)
        process.stdout.readline()
        time.sleep(chance.uniform(0, 0.15))
        kill(process)
        rest = process.stdout.read().decode().strip()
        fault = fault_of_saver(folder, ROWS)
        if fault or rest:
            faults.append(fault or rest)
        left = max(left, len(leftovers(folder)))
    return faults, left


def changed(s, folder, rows):
    """The running program after the first of its rows has been deleted."""
    program, window = product.start(s, folder)
    lists = s.driver.wait_window(title="プレイリスト", limit=30)
    view = next(c for c in lists.controls() if c.class_name == "SysListView32" and c.visible)
    lists.activate()
    view.click_item(0)
    s.driver.keys("delete")
    status = next(c for c in lists.controls() if "曲　" in c.title)
    wait_until(lambda: status.text().startswith(f"{rows - 1:,}曲"), 10, f"{rows - 1} rows")
    return program, window


def kill_products(s, count, chance):
    """Kills of the real program at and after the moment when its window is closed."""
    paths = [f"C:\\music\\{row}.mp3" for row in range(20000)]
    folder = product.with_lists(s, "program", paths, "[List]\r\nShow=1\r\nX=0\r\nY=2400\r\n")
    program, window = changed(s, folder, len(paths))
    begin = time.monotonic()
    window.close()
    program.wait_exit(20)
    closing = time.monotonic() - begin
    paths = paths[1:]
    settings_keys = re.sub(rb"=.*", b"", (folder / "Quenlox.ini").read_bytes())
    faults, old, new, left = [], 0, 0, 0
    while old + new < count and len(faults) < 5:
        program, window = changed(s, folder, len(paths))
        window.close()
        time.sleep(chance.uniform(0, 1.2 * closing))
        kill(program._process)
        time.sleep(0.2)  # until the server has let go of its files
        now = (folder / "Quenlox.m3u").read_bytes().decode("cp932").split("\r\n")
        if now == ["#ListA", *paths, ""]:
            old += 1
        elif now == ["#ListA", *paths[1:], ""]:
            new += 1
            paths = paths[1:]
        else:
            faults.append(f"the list file has {len(now)} lines instead of {len(paths) + 2} or one less")
        settings = re.sub(rb"=.*", b"", (folder / "Quenlox.ini").read_bytes())
        if settings != settings_keys:
            faults.append(f"the settings file has {len(settings)} bytes of names instead of {len(settings_keys)}")
        left = max(left, len(leftovers(folder)))
    return faults, old, new, left, closing


def run(quick):
    savers, products = (20, 3) if quick else (220, 40)
    chance = random.Random(9)
    with product.session("kills") as s:
        faults, left = kill_savers(s, savers, chance)
        more, old, new, left_by_product, closing = kill_products(s, products, chance)
    return {"savers_killed": savers, "programs_killed": products, "found_old_list": old, "found_new_list": new,
            "closing_ms": round(closing * 1000), "temporary_files_left_by_savers": left, "temporary_files_left_by_program": left_by_product}, faults + more
