"""The package checker on packages that ship and on broken ones that are made up here."""

import os
import struct
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
CHECKER = os.path.join(ROOT, "tools", "check_skin.py")
SHIPPED = ("default", "hakuji", "obi")
PLAYBACK = ("play", "pause", "back", "next", "low", "high", "double")
COMMANDS = ("list", "opt", "tag", "conv", "help", "mini", "close")


def run(folder):
    done = subprocess.run([sys.executable, CHECKER, folder], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
    return done.returncode, done.stdout.decode("utf-8", "replace")


def bmp(width, height, bits=24, coding=0, header=40, pixels=None):
    rows = (width * bits + 31) // 32 * 4 * abs(height) if pixels is None else pixels
    palette = 0 if bits > 8 else 4 << bits
    offset = 14 + header + palette
    if header == 12:
        info = struct.pack("<IHHHH", 12, width, height, 1, bits)
    else:
        info = struct.pack("<IiiHHIIiiII", header, width, height, 1, bits, coding, rows, 0, 0, 0, 0) + bytes(header - 40)
    return struct.pack("<2sIHHI", b"BM", offset + rows, 0, 0, offset) + info + bytes(palette + rows)


def rgn(*boxes, header=32, kind=1, count=None, size=None, bounds=None):
    count = len(boxes) if count is None else count
    bounds = bounds or [f(b[i] for b in boxes) for i, f in enumerate((min, min, max, max))]
    return struct.pack("<4I4i", header, kind, count, 16 * count if size is None else size, *bounds) + b"".join(
        struct.pack("<4i", *b) for b in boxes)


def sound_package():
    """A package without fault, as file name -> bytes: 300 x 100, keys of 10 x 10 in two rows."""
    lines = ["[Main]", "Ver=4", "Size=300,100", "RGB=1,2,3", "Box=0", "[Label]"]
    lines += [f"Label{c}={10 + 30 * i},5,28,14,9,255,255,255" for i, c in enumerate("ABCDEFGHI")]
    lines += ["Lyrics=-1,0,0,0,0,0,0,0,0,0,0", "[Button]"] + [f"Button{c}={10 + 20 * i},30" for i, c in enumerate("ABCDEFG")]
    lines += ["[Command]"] + [f"Command{c}={10 + 20 * i},50" for i, c in enumerate("ABCDEFG")]
    lines += ["[Disp]", "DispA=10,30", "DispB=200,30", "DispC=-1,0,0,0,0,0,0", "DispD=170,30,8,40,0,0,0", "Bar=10,80", "Vol=165,30"]
    files = {"x.tsk": "\r\n".join(lines).encode(), "x.rgn": rgn((2, 0, 298, 1), (0, 1, 300, 100)),
             "main_back.bmp": bmp(300, 100), "main_bar.bmp": bmp(100, 8), "main_vol.bmp": bmp(20, 40),
             "main_panel.bmp": bmp(140, 10)}
    for name in [f"cmd_{n}{i}" for n in PLAYBACK for i in "12"] + [f"btn_{n}{i}" for n in COMMANDS for i in "12"]:
        files[name + ".bmp"] = bmp(10, 10)
    return files


def line(old, new):
    """A change of the definition file; both texts are whole lines, an empty new one takes the line away."""
    def change(files):
        text = files["x.tsk"].decode()
        assert old in text.split("\r\n"), old
        files["x.tsk"] = "\r\n".join(new if t == old else t for t in text.split("\r\n")).encode("cp932")
    return change


def put(name, data):
    return lambda files: files.update({name: data})


def drop(name):
    return lambda files: files.pop(name)


SLIVERS = [(0, y, 1 + y % 2, y + 1) for y in range(100)]

ERRORS = (
    (drop("x.tsk"), "no definition file"),
    (line("Ver=4", "Ver=3"), "Ver is 3"),
    (line("LabelA=10,5,28,14,9,255,255,255", "LablA=1,1"), 'unknown key "LablA" in [Label] (meant: LabelA?)'),
    (line("Bar=10,80", "ButtonA=1,1"), '"ButtonA" belongs into [Button]'),
    (line("[Disp]", "[Dsp]"), "unknown section [Dsp] (meant: Disp?)"),
    (line("[Disp]", "[Main]"), "[Main] is there twice"),
    (line("Bar=10,80", "Vol=1,2"), "Vol is there twice"),
    (line("[Main]", "Ver=4"), "before any section"),
    (line("Bar=10,80", "a bar at ten"), "neither a section nor a key nor a comment"),
    (line("Bar=10,80", "Bar=ten,80"), 'field 1 is "ten", which counts as 0'),
    (line("Bar=10,80", "Bar=10.5,80"), 'field 1 is "10.5", which counts as 10'),
    (line("Bar=10,80", "Bar=,80"), "begins with a comma"),
    (line("Bar=10,80", "Bar=" + ",".join(["10"] * 20)), "has 20 fields, at most 12"),
    (line("Bar=10,80", "Bar=10,80" + " " * 130 + "1"), "longer than 127"),
    (line("RGB=1,2,3", "RGB=1,2,256"), "RGB: colour [1, 2, 256]"),
    (line("LabelB=40,5,28,14,9,255,255,255", "LabelB=40,5,28,14,0,255,255,255"), "LabelB has a font size of 0"),
    (line("LabelB=40,5,28,14,9,255,255,255", "LabelB=40,5,0,14,9,255,255,255"), "LabelB is 0 x 14"),
    (line("ButtonA=10,30", "ButtonA=295,30"), "ButtonA (295,30, 10 x 10) is not wholly inside"),
    (line("Bar=10,80", "Bar=10,93"), "Bar (10,93, 100 x 8) is not wholly inside"),
    (line("Size=300,100", "Size=0,100"), "a window of 0 x 100"),
    (line("Size=300,100", "Size=2000000000,2000000000"), "cannot be shown"),
    (drop("main_panel.bmp"), "main_panel.bmp: missing"),
    (put("cmd_play2.bmp", bmp(10, 11)), "10 x 11, but cmd_play1.bmp is 10 x 10"),
    (put("cmd_play1.bmp", b"\x89PNG\r\n" + bytes(60)), "not a Windows bitmap"),
    (put("cmd_play1.bmp", bmp(10, 10)[:200]), "cut off"),
    (put("cmd_play1.bmp", bmp(30000, 30000, pixels=16)), "cut off"),
    (put("cmd_play1.bmp", bmp(10, 10, bits=2)), "2 bits with coding 0"),
    (put("cmd_play1.bmp", bmp(10, 10, bits=24, coding=4)), "coding 4 is not read"),
    (put("cmd_play1.bmp", bmp(10, -10, bits=8, coding=1, pixels=2)), "run-length coded and top-down"),
    (put("cmd_play1.bmp", bmp(0, 10)), "size of 0 x 10"),
    (drop("x.rgn"), "x.rgn: missing, and Box is not 1"),
    (put("x.rgn", bytes(31)), "31 bytes; the header alone has 32"),
    (put("x.rgn", rgn((0, 0, 300, 100), kind=2)), "type 2"),
    (put("x.rgn", rgn((0, 0, 300, 100), size=15)), "the header says 15"),
    (put("x.rgn", rgn((0, 0, 300, 100), count=0)), "no rectangle"),
    (put("x.rgn", rgn((0, 0, 300, 100), count=5)), "cut off"),
    (put("x.rgn", rgn((0, 0, 300, 100), count=0x0fffffff)), "at most 4001 are read"),
    (put("x.rgn", rgn(*(SLIVERS * 41))), "4100 rectangles; at most 4001"),
    (put("x.rgn", rgn((0, 0, 301, 100))), "is not inside the window of 300 x 100"),
    (put("x.rgn", rgn((10, 0, 10, 100))), "is empty"),
    (put("x.rgn", rgn((0, 50, 300, 100), (0, 0, 300, 50))), "out of order"),
    (put("x.rgn", rgn((0, 0, 300, 60), (0, 50, 300, 100))), "overlaps the one before"),
    (put("x.rgn", rgn((0, 0, 300, 100), bounds=(0, 0, 299, 100))), "bounds are [0, 0, 299, 100]"),
    (put("x.rgn", rgn((0, 0, 300, 48))), "CommandA (10,50, 10 x 10) lies mostly outside the outline"),
)

WARNINGS = (
    (line("LabelC=70,5,28,14,9,255,255,255", "LabelC=70,5"), "LabelC has 2 fields of 8; the others carry over: 28,14,9,255,255,255"),
    (line("Bar=10,80", "Bar=10,80,7"), "Bar has 3 fields, 2 are used"),
    (line("LabelA=10,5,28,14,9,255,255,255", "LabelA=10,5,28,11,9,255,255,255"), "9 points need 12 pixels"),
    (line("ButtonA=10,30", "ButtonA=25,30"), "ButtonA and ButtonB overlap"),
    (line("Box=0", "Box=2"), 'Box is "2"'),
    (put("cmd_plya1.bmp", bmp(10, 10)), "no picture of this name is used (meant: cmd_play1.bmp?)"),
    (put("y.tsk", b"[Main]\r\nVer=4\r\n"), "more than one definition file"),
    (put("main_back.bmp", bmp(299, 100)), "does not fill the window"),
    (put("main_level.bmp", bmp(8, 39)), "smaller than display D, which is 8 x 40"),
    (put("x.rgn", rgn((0, 0, 300, 100)) + b"end"), "3 bytes after the last rectangle"),
)

NOTHING_WRONG = (
    line("Bar=10,80", ""),
    line("Bar=10,80", "Bar=-1"),
    line("LabelA=10,5,28,14,9,255,255,255", "labela = \"10, 5, 28, 14, 9, 255, 255, 255\""),
    line("Bar=10,80", "; 作者のメモ\r\nBar=10,80"),
    lambda files: (line("Box=0", "Box=1")(files), drop("x.rgn")(files)),
    lambda files: put("CMD_PLAY1.BMP", files.pop("cmd_play1.bmp"))(files),
    put("cmd_play1.bmp", bmp(10, 10, bits=1)), put("cmd_play1.bmp", bmp(10, 10, bits=4)),
    put("cmd_play1.bmp", bmp(10, 10, bits=8)), put("cmd_play1.bmp", bmp(10, 10, bits=16)),
    put("cmd_play1.bmp", bmp(10, -10, bits=32)), put("cmd_play1.bmp", bmp(10, 10, bits=8, coding=1, pixels=40)),
    put("cmd_play1.bmp", bmp(10, 10, bits=4, coding=2, pixels=40)), put("cmd_play1.bmp", bmp(10, 10, header=12)),
    put("cmd_play1.bmp", bmp(10, 10, bits=32, coding=3, header=108)), put("read me.txt", b"by me"),
)


class CheckSkin(unittest.TestCase):
    def findings(self, change):
        files = sound_package()
        change(files)
        with tempfile.TemporaryDirectory() as folder:
            for name, data in files.items():
                with open(os.path.join(folder, name), "wb") as f:
                    f.write(data)
            return run(folder)

    def test_each_fault_is_named_and_fails_the_check(self):
        for change, message in ERRORS:
            with self.subTest(message):
                code, text = self.findings(change)
                self.assertTrue(any(message in t for t in text.splitlines() if t.startswith("error: ")), text)
                self.assertEqual(1, code)

    def test_doubtful_things_are_named_and_pass(self):
        for change, message in WARNINGS:
            with self.subTest(message):
                code, text = self.findings(change)
                self.assertTrue(any(message in t for t in text.splitlines() if t.startswith("warning: ")), text)
                self.assertEqual(0, code, text)

    def test_what_the_format_allows_is_not_complained_about(self):
        for i, change in enumerate(NOTHING_WRONG):
            with self.subTest(i):
                self.assertEqual((0, "0 errors, 0 warnings\n"), self.findings(change))

    def test_random_bytes_in_any_file_are_findings_and_no_crash(self):
        noise = bytes((i * 7919 + i // 251) % 256 for i in range(4000))
        for name in ("x.tsk", "x.rgn", "main_back.bmp", "main_vol.bmp"):
            with self.subTest(name):
                code, text = self.findings(put(name, noise))
                self.assertEqual(1, code, text)
                self.assertNotIn("Traceback", text)

    def test_packages_that_ship_have_no_finding(self):
        for name in SHIPPED:
            with self.subTest(name):
                self.assertEqual((0, "0 errors, 0 warnings\n"), run(os.path.join(ROOT, "skins", name, "package")))

    def test_a_folder_that_is_not_there_is_a_failure_of_its_own(self):
        self.assertEqual(2, run(os.path.join(ROOT, "skins", "nowhere"))[0])

    def test_the_example_of_the_documentation_is_the_shipped_definition(self):
        with open(os.path.join(ROOT, "docs", "skins.md"), encoding="utf-8") as f:
            page = f.read()
        with open(os.path.join(ROOT, "skins", "hakuji", "package", "hakuji.tsk"), encoding="ascii") as f:
            shown = "".join("    " + t if t.strip() else "\n" for t in f)
        self.assertIn(shown, page)


if __name__ == "__main__":
    unittest.main()
