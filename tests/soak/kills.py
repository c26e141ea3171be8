#!/usr/bin/python3
"""Kills the real program while it saves settings, lists and tags: tests/soak/kills.py [--quick N] [--seed N]

Every kill hits at a random moment between the order to save and a little after the file stands in its place, most of them
while the temporary file is there. Afterwards the file is the old or the new one, whole, the sound untouched; in the end one
save of each kind in peace leaves no temporary file. Needs the stage and the driver, as tests/wine/run does.
"""

import argparse
import os
import pathlib
import random
import signal
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))

from mutagen.id3 import APIC, COMM, ID3, TIT2  # noqa: E402
from wine_harness import material  # noqa: E402
from wine_harness.driver import LIST_CLASS  # noqa: E402
from wine_harness.scenario import Scenario  # noqa: E402
from wine_session.processes import prefer, unwind_on_signals  # noqa: E402

KEY_DOWN, KEY_UP, END, DELETE, COUNT, CLICK = 0x100, 0x101, 0x23, 0x2E, 0x1004, 0xF5


class Kind:
    """What is saved: prepare() leads up to the order and says in `wanted` which state() the file shall have then."""

    def __init__(self, s):
        self.s, self.kills, self.inside = s, 0, 0
        self.lead, self.length = 0.2, 0.01  # seconds to the temporary file, and on to what is about the end of the save
        self.folder = s.fresh_product(type(self).__name__)

    def start(self, *arguments):
        self.program = self.s.start_product(*arguments, folder=self.folder)
        return self.s.driver.wait_window(title="Quenlox  Ver *")

    def temporaries(self):
        return sum(name.startswith(self.target.name + ".~") for name in os.listdir(self.target.parent))

    def save_in_peace(self):
        self.prepare()
        self.order()
        self.s.wait_until(lambda: self.state() == self.wanted and not self.temporaries(), "what is saved in peace")
        self.s.end_programs()

    def save_and_kill(self, dice):
        self.prepare()
        before, left, stamp = self.state(), self.temporaries(), self.target.stat().st_mtime_ns
        self.order()
        began = time.monotonic()
        if dice.random() < 0.2:
            time.sleep(dice.uniform(0, self.lead))
        else:
            while self.temporaries() == left and self.target.stat().st_mtime_ns == stamp and time.monotonic() - began < 10:
                time.sleep(0.0001)
            self.lead += 0.2 * (time.monotonic() - began - self.lead)
            time.sleep(dice.uniform(0, self.length))
        os.kill(self.program.id, signal.SIGKILL)
        self.program.wait_exit()
        inside, after = self.temporaries() > left, self.state()
        self.length = min(1.0, max(0.0005, self.length * (1.1 if inside or after == before else 0.7)))
        assert after in (before, self.wanted), f"{self.target} is neither the old nor the new one: {after!r:.300}"
        self.kills, self.inside = self.kills + 1, self.inside + inside


class Settings(Kind):
    def __init__(self, s):
        super().__init__(s)
        self.target = self.folder / "Quenlox.ini"
        others = b"".join(b"key%d=%d\r\n" % (i, i) for i in range(30000))  # unknown ones are kept
        self.target.write_bytes(b"[Main]\r\nPlayMode=0\r\n[Others]\r\n" + others)
        self.start().close()
        self.program.wait_exit()

    def state(self):
        before, _, after = self.target.read_bytes().partition(b"PlayMode=")
        return int(after[:1]), before + after[1:]

    def prepare(self):
        mode, rest = self.state()
        self.wanted = (mode + 1) % 4, rest
        self.order = self.start(f"/m{self.wanted[0]}").close


class Lists(Kind):
    def __init__(self, s):
        super().__init__(s)
        self.target = self.folder / "Quenlox.m3u"
        self.target.write_bytes(("#ListA\r\n" + "".join(f"C:\\音楽\\{i:05}.mp3\r\n" for i in range(20000))).encode("cp932"))
        (self.folder / "Quenlox.ini").write_bytes(b"[List]\r\nShow=1\r\n")

    def state(self):
        return self.target.read_bytes().decode("cp932").split("\r\n")[:-1]

    def prepare(self):
        self.wanted = self.state()[:-1]
        self.order = self.start().close
        window = self.s.driver.wait_window(title="プレイリスト")
        rows = window.control(LIST_CLASS, where=lambda c: c.visible and c.send(COUNT) == len(self.wanted))
        for key in (END, DELETE):
            rows.post(KEY_DOWN, key)
            rows.post(KEY_UP, key)
        self.s.wait_until(lambda: rows.send(COUNT) == len(self.wanted) - 1, "a row less")


class Tags(Kind):
    def __init__(self, s):
        super().__init__(s)
        self.target = material.write_mp3(s.material / "song.mp3", material.tone(440, 120.0), "-b", "320")
        tags = ID3()
        for frame in (TIT2(3, ["0"]), COMM(3, "jpn", "", ["注釈"]), APIC(3, "image/png", 3, "", random.Random(1).randbytes(1 << 20))):
            tags.add(frame)
        tags.save(self.target, v1=2)

    def state(self):
        data, tags = self.target.read_bytes(), ID3(self.target, load_v1=False)
        sound = data[10 + (data[6] << 21 | data[7] << 14 | data[8] << 7 | data[9]):-128]
        return str(tags["TIT2"]), sound, tags["APIC:"].data, str(tags["COMM::jpn"])

    def prepare(self):
        title, *rest = self.state()
        self.wanted = (str(int(title) + 1), *rest)
        self.start(self.target).part("タグ情報").act()
        window = self.s.driver.wait_window(title="タグ情報*")
        window.control("Edit", title).set_text(self.wanted[0])
        save = window.control("Button", "保存", lambda control: control.visible and control.enabled)
        self.order = lambda: save.post(CLICK)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--quick", type=int, default=1000, metavar="N", help="kills, 1000 by default")
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 16))
    options = parser.parse_args()
    unwind_on_signals()
    prefer()  # as the program: else it has done its saving before this script is up again
    dice = random.Random(options.seed)
    with Scenario("kills") as s:
        kinds = [Settings(s), Lists(s), Tags(s)]
        for number in range(options.quick):
            kinds[number % 3].save_and_kill(dice)
            if number % 50 == 49:
                print(", ".join(f"{type(k).__name__} {k.inside} of {k.kills} inside" for k in kinds), flush=True)
        for kind in kinds:
            kind.save_in_peace()
    inside = sum(kind.inside for kind in kinds)
    print(f"seed {options.seed}: {options.quick} of {options.quick} whole, {inside} killed inside the saving")


main()
