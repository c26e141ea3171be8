"""Lyrics follow the music: in their window, on the panel of a skin, after seeking, from every kind of side file."""

import os
import shutil

from PIL import ImageChops

from harness import material
from harness.scenario import ROOT, real_time

DEMO = ROOT / "demo/quenlox-demo.mp3"
BAR = (174, 105, 242)          # of the default skin: left, top, width
INFORMATION = (180, 118, 440, 134)
LYRICS_AREA = (33, 114, 33 + 216, 114 + 66)  # of the skin hakuji
LENGTH = 50.5                  # seconds of the tune


def start(s, *arguments, folder=None):
    program = s.start_product(*arguments, folder=folder)
    return program, s.driver.wait_window(title="Quenlox  Ver 1.0.0")


def seek(s, window, seconds):
    x, y, _, _ = window.place
    s.driver.click(x + BAR[0] + round(BAR[2] * seconds / LENGTH), y + BAR[1] + 2)


def part(s, window, box=None):
    x, y, width, height = window.place
    box = box or (0, 0, width, height)
    return s.screen().crop((x + box[0], y + box[1], x + box[2], y + box[3]))


def ink(picture):
    """How many pixels differ from the commonest colour."""
    picture = picture.convert("RGB")
    colors = picture.getcolors(picture.width * picture.height)
    return sum(count for count, _ in colors) - max(count for count, _ in colors)


def track(s, name, words=None, extension="lrc", seconds=4.0, sound=None):
    folder = s.material / name
    folder.mkdir(exist_ok=True)
    file = material.write_mp3(folder / "曲.mp3", material.tone(440, seconds)) if sound is None else folder / "曲.mp3"
    if sound is not None:
        shutil.copy(sound, file)
    if words is not None:
        (folder / f"曲.{extension}").write_bytes(words)
    return file


def lyrics_window(s, limit=10):
    return s.driver.wait_window(title="歌詞", limit=limit)


@real_time
def test_the_window_shows_the_line_that_is_sung_after_seeking_too(s):
    s.fresh_product("demo")
    (s.dir / "demo/Quenlox.ini").write_text("[Main]\n[Lyrics]\nX=600\nY=4500\nW=6000\nH=3600\n", "cp932")
    tune = s.material / "demo.mp3"
    shutil.copy(DEMO, tune)  # with its Lyrics3 block alone
    program, window = start(s, tune, "/p", folder=s.dir / "demo")
    words = lyrics_window(s)
    s.equal(words.place, (40, 300, 400, 240), "place of the lyrics window")
    s.wait_sound()
    looks = []
    for name, seconds in (("first", 6.5), ("sixth", 30.5), ("third", 16.0)):
        seek(s, window, seconds)
        s.pause(1.2)
        looks.append(s.screenshot(f"line-{name}", words))
    assert all(ink(look) > 500 for look in looks), "every picture has lines"
    assert len({look.tobytes() for look in looks}) == 3, "three places, three pictures"
    # 16.0 has become 17.2: the line changes at 19.2 by itself.
    before = part(s, words).tobytes()
    s.wait_until(lambda: part(s, words).tobytes() != before, 6, "the next line comes")
    s.screenshot("line-fourth", words)
    s.screenshot("whole")


def test_shift_jis_and_utf8_side_files_show_the_same_and_text_stands_in_the_box(s):
    text = "[00:00.00]窓をあければ 朝のひかり\r\n[00:20.00]針をおとして\r\n"
    looks = []
    for name, coding in (("sjis", "cp932"), ("utf8", "utf-8")):
        file = track(s, name, text.encode(coding))
        program, window = start(s, file, "/p", folder=s.fresh_product(f"program-{name}"))
        words = lyrics_window(s)
        s.wait_until(lambda: ink(part(s, words, (4, 30, 296, 196))) > 200, 5, "the line is drawn")
        looks.append(part(s, words, (4, 30, 296, 196)))
        s.screenshot(f"side-{name}", words)
        s.end_programs()
    assert ImageChops.difference(looks[0], looks[1]).getbbox() is None, "both codings look the same"

    plain = "\n".join(f"{n:02d} 遠い町から届いた風に" for n in range(1, 41))
    file = track(s, "plain", plain.encode("cp932"), "txt")
    program, window = start(s, file, folder=s.fresh_product("program-plain"))
    words = lyrics_window(s)
    box = words.control(class_name="Edit")
    s.wait_until(lambda: box.text().replace("\r\n", "\n") == plain, 5, "the whole text is in the box")
    s.screenshot("plain", words)


@real_time
def test_large_and_random_side_files_do_no_harm(s):
    for name, words in (("large", "[00:01.00]あ\n".encode("cp932") * 500_000), ("random", os.urandom(300_000)),
                        ("nothing", b"")):
        file = track(s, name, words)
        mark = s.sound_mark()
        program, window = start(s, file, "/p", folder=s.fresh_product(f"program-{name}"))
        s.wait_sound(since=mark)
        s.wait_silence(limit=12)
        s.near(s.captured(mark).trimmed().length, 4.0, 0.2, f"{name}: seconds of sound")
        window.close()
        s.equal(program.wait_exit(), 0, f"{name}: exit code")


def test_a_skin_with_a_lyrics_area_shows_them_there_and_no_window(s):
    folder = s.fresh_product("hakuji")
    (folder / "Quenlox.ini").write_text("[Main]\nSkinName=hakuji\n", "cp932")
    tune = s.material / "panel.mp3"
    shutil.copy(DEMO, tune)
    program, window = start(s, tune, "/p", folder=folder)
    s.wait_until(lambda: ink(part(s, window, LYRICS_AREA)) > 150, 12, "the first line is on the panel")
    s.screenshot("hakuji", window)
    assert s.driver.find(title="歌詞") is None, "no lyrics window"


KARAOKE = ("[00:00.00]<00:00.00>ゆっくり<00:12.00>うたう<00:24.00>うた\r\n[00:00.00]a song sung slowly\r\n"
           "[00:30.00]つぎのうた\r\n[00:30.00]the next song\r\n").encode("cp932")


@real_time
def test_one_three_and_five_lines_with_karaoke_stamps_and_colours(s):
    file = track(s, "karaoke", KARAOKE, seconds=40.0)
    for lines in (1, 3, 5):
        folder = s.fresh_product(f"lines-{lines}")
        (folder / "Quenlox.ini").write_text(
            f"[Main]\n[Option]\nLyricsLine={lines}\nTimeTag={int(lines == 3)}\nLyricsBold={int(lines == 5)}\n"
            "[Lyrics]\nX=600\nY=4500\nW=6000\nH=3000\n", "cp932")
        program, window = start(s, file, "/p", folder=folder)
        words = lyrics_window(s)
        s.wait_sound()
        inner = (4, 24, 396, 196)
        blue = lambda: sum(count for count, (r, g, b) in part(s, words, inner).convert("RGB").getcolors(80000)
                           if b > 150 and r < 60)
        s.wait_until(lambda: blue() > 40, 8, "the first letters are sung")
        sung = blue()
        s.wait_until(lambda: blue() > sung * 1.5, 8, "the sung part grows")
        s.screenshot(f"lines-{lines}", words)
        if lines == 5:
            x, y, width, height = words.place
            s.driver.click(x + width // 2, y + height - 20, count=2)
            s.wait_until(lambda: part(s, words, inner).convert("RGB").getpixel((385, 165)) == (0, 0, 0), 5, "the dark colours")
            s.screenshot("dark", words)
            s.driver.drag(x + width - 2, y + height - 2, x + width + 120, y + height + 150)
            s.wait_until(lambda: lyrics_window(s).place[3] > height + 100, 5, "the window is larger")
            s.pause(0.5)
            s.screenshot("larger", lyrics_window(s))
            s.driver.keys("alt+down")
            s.wait_silence(limit=4)  # the keys of the main window work here
        s.end_programs()


def test_text_without_stamps_follows_by_itself_when_wanted_and_uses_the_window_of_a_panel_skin(s):
    plain = "\r\n".join(f"{n}番の歌詞" for n in range(1, 41)).encode("utf-8")
    file = track(s, "self", plain, "txt", seconds=20.0)
    folder = s.fresh_product("self")
    (folder / "Quenlox.ini").write_text("[Main]\n[Option]\nLyricsSelf=1\n[Lyrics]\nY=4500\n", "cp932")
    program, window = start(s, file, "/p", folder=folder)
    words = lyrics_window(s)
    first = part(s, words, (4, 30, 280, 190)).tobytes()
    s.wait_until(lambda: part(s, words, (4, 30, 280, 190)).tobytes() != first, 8, "the text moves")
    s.screenshot("self", words)
    s.end_programs()

    folder = s.fresh_product("plain-hakuji")
    (folder / "Quenlox.ini").write_text("[Main]\nSkinName=hakuji\n[Lyrics]\nX=6000\nY=4500\n", "cp932")
    start(s, file, folder=folder)
    assert "40番の歌詞" in lyrics_window(s).control(class_name="Edit").text()


def test_closing_hides_it_for_good_and_it_does_not_take_the_keyboard(s):
    folder = s.fresh_product("closing")
    tune = s.material / "closing.mp3"
    shutil.copy(DEMO, tune)
    program, window = start(s, tune, folder=folder)
    words = lyrics_window(s)
    s.equal(s.driver.foreground(), window.handle, "the window that has the keyboard")
    words.close()
    s.wait_until(lambda: s.driver.find(title="歌詞") is None, 5, "the window is hidden")
    window.close()
    s.equal(program.wait_exit(), 0, "exit code")
    assert "DispLyrics=0" in (folder / "Quenlox.ini").read_bytes().decode("cp932")
    program, window = start(s, tune, "/p", folder=folder)
    s.wait_sound()
    assert s.driver.find(title="歌詞") is None, "it stays away"
