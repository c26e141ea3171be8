"""A folder of damaged files is added and played through."""

import concurrent.futures
import shutil
import time

from wine_harness.scenario import ROOT
from wine_session.processes import wait_until

from . import files, product
from .hours import player

PARTS = 4
BUILDS = {"native": ("soak_player",), "win64": ("stage", "wine_programs")}


def view(window):
    return next(c for c in window.controls() if c.class_name == "SysListView32" and c.visible)


def ends_wine(file):
    """A WAVE file whose damaged head names a rate that no device has: the library refuses it, the media control interface is
    asked, and there Wine's sound driver ends the process by an assertion of its sound library. Windows refuses it."""
    head = file.read_bytes()[:200]
    at = head.find(b"fmt ")
    return at >= 0 and not 1000 <= int.from_bytes(head[at + 12:at + 16], "little") <= 700000


def in_the_product(folder, count):
    faults = []
    with product.session("folder") as s:
        program_folder = product.with_lists(s, "program", [], "[List]\r\nShow=1\r\nX=0\r\nY=2400\r\nSX=12000\r\nSY=6000\r\n[Option]\r\nListType=1\r\n")
        program, window = product.start(s, program_folder)
        lists = s.driver.wait_window(title="プレイリスト")
        begin = time.monotonic()
        s.drop_files(*view(lists).point(), folder)
        status = next(c for c in lists.controls() if c.title.endswith("曲") or "曲　" in c.title)
        wanted = f"{count:,}曲"
        wait_until(lambda: status.text().startswith(wanted) and "読込" not in status.text(), 300, f"{wanted}: {status.text()}")
        adding = time.monotonic() - begin
        s.screenshot("added")
        before, slowest = product.resources(program, window), 0.0
        begin = time.monotonic()
        for _ in range(count):
            at = time.monotonic()
            product.command(window, product.NEXT)
            slowest = max(slowest, time.monotonic() - at)
        playing = time.monotonic() - begin
        s.screenshot("played")
        product.command(window, product.STOP)
        after = product.resources(program, window)
        window.close()
        code = program.wait_exit(30)
        if code != 0:
            faults.append(f"exit code {code}")
        listed = (program_folder / "Quenlox.m3u").read_bytes().decode("cp932").splitlines()
        if len(listed) != count + 1:
            faults.append(f"{len(listed) - 1} rows in the list file")
    return {"product_files": count, "product_adding_ms_per_file": round(adding * 1000 / count, 2),
            "product_opening_ms_per_file": round(playing * 1000 / count, 1), "product_slowest_ms": round(slowest * 1000, 1),
            **{"product_" + key: value for key, value in product.growth(before, after).items()}}, faults


def natively(folder):
    """Most of the time of a file is waiting for threads, so the folder is played in parts side by side."""
    parts = [ROOT / f"build/soak/{folder.name} part {number}" for number in range(PARTS)]
    for part in parts:
        shutil.rmtree(part, ignore_errors=True)
        part.mkdir()
    for number, file in enumerate(sorted(folder.iterdir())):
        (parts[number % PARTS] / file.name).symlink_to(file)
    with concurrent.futures.ThreadPoolExecutor(PARTS) as pool:
        results = list(pool.map(lambda part: player("folder", part, limit=7200), parts))
    faults = [fault for _, part_faults in results for fault in part_faults]
    every = [numbers for numbers, _ in results if numbers]
    if not every:
        return {}, faults
    joined = {key: sum(numbers[key] for numbers in every) for key in ("files", "sounding", "refused")}
    joined |= {key: max(numbers[key] for numbers in every)
               for key in ("adding_ms_per_file", "playing_ms_per_file", "playing_s", "slowest_open_ms", "slowest_file_ms",
                           "resident_kib_before", "resident_kib_after", "files_before", "files_after")}
    return joined, faults


def run(quick):
    count, sample = (300, 100) if quick else (10000, 1000)
    folder = ROOT / f"build/soak/damaged {count}"
    if not folder.exists():
        files.damaged_folder(folder, count)
    numbers, faults = natively(folder)
    part = ROOT / f"build/soak/damaged {sample}"
    if not part.exists():
        part.mkdir()
        for file in [file for file in sorted(folder.iterdir()) if not ends_wine(file)][:sample]:
            shutil.copy(file, part)
    more, other = in_the_product(part, sample)
    return numbers | more, faults + other
