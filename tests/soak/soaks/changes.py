"""2000 track changes over good and bad files in the real program."""

import random
import time

from wine_harness import material

from . import files, product

BUILDS = {"win64": ("stage", "wine_programs")}
WARM = 200  # changes before the first count: caches are filled then


def make_files(s):
    good = files.whole(s.material / "good", 1.5)
    good.append(material.write_midi(s.material / "tune.mid", quarter_ms=100))
    bad = s.material / "bad"
    bad.mkdir()
    chance = random.Random(3)
    whole = good[0].read_bytes()
    for name, data in {"cut.mp3": whole[:len(whole) // 3], "empty.mp3": b"", "empty.wav": b"", "junk.mp3": chance.randbytes(40000),
                       "text.rmp": b"no sound\n" * 900, "head.wav": b"RIFF\xff\xff\xff\xffWAVEfmt ", "junk.mid": chance.randbytes(900),
                       "one frame.mp3": whole[:418], "empty.mid": b""}.items():
        (bad / name).write_bytes(data)
    (bad / "folder.mp3").mkdir()
    paths = [*good, *sorted(bad.iterdir()), s.material / "missing.mp3", s.material / "missing.mid"]
    chance.shuffle(paths)
    return [s.windows_path(path) for path in paths]


def run(quick):
    count = 200 if quick else 2000
    faults = []
    with product.session("changes", midi=True) as s:
        paths = make_files(s)
        # In the mode SINGLE only the key steps, and it passes nothing over, so that the row at the end tells how many
        # steps were made.
        folder = product.with_lists(s, "program", paths, "[Main]\r\nPlayMode=0\r\n[Option]\r\nPassOver=0\r\n")
        program, window = product.start(s, folder)
        chance = random.Random(5)
        slowest, times, before = 0.0, [], None
        for number in range(count):
            if number == min(WARM, count // 2):
                before = product.resources(program, window)
            begin = time.monotonic()
            product.command(window, product.NEXT)
            times.append(time.monotonic() - begin)
            slowest = max(slowest, times[-1])
            time.sleep(chance.choice((0, 0, 0.02, 0.1)))  # some tracks are heard, most only begin
        product.command(window, product.STOP)
        time.sleep(1)
        after = product.resources(program, window)
        window.close()
        code = program.wait_exit(20)
        expected = paths[(count - 1) % len(paths)]
        if code != 0:
            faults.append(f"exit code {code}")
        if product.setting(folder, "FileName") != expected:
            faults.append(f"at the end {product.setting(folder, 'FileName')}, expected {expected}")
        for key, allowed in (("handles", 5), ("gdi", 5), ("windows", 0), ("threads", 2), ("working_set", 8 << 20)):
            if after[key] > before[key] + allowed:
                faults.append(f"{key}: {before[key]} -> {after[key]}")
    times.sort()
    return {"changes": count, "files": len(paths), "median_ms": round(times[len(times) // 2] * 1000, 1),
            "slowest_ms": round(slowest * 1000, 1), **product.growth(before, after)}, faults
