"""Programs are killed at random moments while they write lists and settings."""

import os
import random
import shutil
import signal
import subprocess
import time

from harness.scenario import ROOT

from . import product

BUILDS = {"win64": ("stage", "wine_test_programs", "soak_saver")}
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


def run(quick):
    count = 20 if quick else 220
    with product.session("kills") as s:
        faults, left = kill_savers(s, count, random.Random(9))
    return {"savers_killed": count, "temporary_files_left": left}, faults
