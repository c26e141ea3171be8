"""Lyrics follow the music: in their window, on the panel of a skin, after seeking, with word stamps and without any."""

import pathlib
import shutil

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import ROOT, real_time

LENGTH = 50.5  # seconds of the demonstration tune
PLACE = "[Lyrics]\nX=600\nY=4500\nW=6000\nH=3600\n"
KARAOKE = ("[00:00.00]<00:00.00>ゆっくり<00:12.00>うたう<00:24.00>うた\r\n[00:00.00]a song sung slowly\r\n"
           "[00:30.00]つぎのうた\r\n[00:30.00]the next song\r\n").encode("cp932")


def ink(picture):
    """How many pixels differ from the commonest colour."""
    colors = picture.convert("RGB").getcolors(picture.width * picture.height)
    return sum(count for count, _ in colors) - max(count for count, _ in colors)


def demo(s):
    """The tune with its Lyrics3 block alone."""
    return pathlib.Path(shutil.copy(ROOT / "demo/quenlox-demo.mp3", s.material / "demo.mp3"))


def track(s, name, words, extension="lrc", seconds=40.0):
    file = material.write_mp3(s.material / f"{name}.mp3", material.tone(440, seconds), "-b", "64")
    file.with_suffix(f".{extension}").write_bytes(words)
    return file


def lyrics_window(s):
    return s.driver.wait_window(title="歌詞")


def inside(s, window):
    """What the window shows within its frame."""
    x, y, width, height = window.place
    return s.screen().crop((x + 4, y + 24, x + width - 4, y + height - 4))


@real_time
def test_the_window_shows_the_line_that_is_sung_after_seeking_too(s):
    player = Product(s, demo(s), "/p", ini=PLACE)
    words = lyrics_window(s)
    s.equal(words.place, (40, 300, 400, 240), "place of the lyrics window")
    s.wait_sound()
    player.press("pause")
    s.wait_silence()
    looks = []
    for name, seconds in (("first", 6.5), ("sixth", 30.5), ("third", 16.0)):
        before = inside(s, words).tobytes()
        player.seek(seconds / LENGTH)
        s.wait_until(lambda: inside(s, words).tobytes() != before, f"the {name} line comes")
        s.wait_until(lambda: ink(inside(s, words)) > 500, "lines are shown")
        looks.append(s.wait_still(lambda: inside(s, words).tobytes(), "the lines rest while paused", 0.5))
        s.screenshot(f"line-{name}", words)
    s.equal(len(set(looks)), 3, "pictures of three places")
    player.press("pause")
    s.wait_until(lambda: inside(s, words).tobytes() != looks[-1], "the next line comes by itself")
    words.wait_text("小さな歌を")  # its words are the picture's name


@real_time
def test_sung_words_stand_out_and_colours_size_and_keys_work_in_the_window(s):
    Product(s, track(s, "karaoke", KARAOKE), "/p", ini=f"[Option]\nLyricsBold=1\n{PLACE}")
    words = lyrics_window(s)
    s.wait_sound()

    def blue():
        colors = inside(s, words).convert("RGB").getcolors(80000)
        return sum(count for count, (r, _, b) in colors if b > 150 and r < 60)

    s.wait_until(lambda: blue() > 40, "the first letters are sung")
    sung = blue()
    s.wait_until(lambda: blue() > sung * 1.5, "the sung part grows")
    s.screenshot("karaoke", words)
    x, y, width, height = words.place
    s.driver.click(x + width // 2, y + height - 20, count=2)
    s.wait_until(lambda: inside(s, words).convert("RGB").getpixel((380, 140)) == (0, 0, 0), "the dark colours")
    s.driver.drag(x + width - 2, y + height - 2, x + width + 120, y + height + 150)
    s.wait_until(lambda: lyrics_window(s).place[3] > height + 100, "the window is larger")
    s.driver.keys("alt+down")
    s.wait_silence()  # the keys of the main window work here


def test_long_lines_wrap_and_timing_is_set_by_keys_and_saved_into_the_file(s):
    text = "[00:00.00]長い夜が明けたら君に会いに行こう、古い地図と銀色の鍵をかばんに入れて、海の見える町まで\r\n" \
           "[00:00.00]When the long night ends I will come to you, to the town from which one sees the sea\r\n[00:20.00]つぎの行\r\n"
    file = track(s, "long", text.encode("cp932"))
    player = Product(s, file, "/p", ini=f"[Option]\nLyricsSmooth=1\n{PLACE}")
    words = lyrics_window(s)
    s.wait_until(lambda: ink(inside(s, words)) > 1500, "the line is there")
    s.screenshot("wrapped", words)
    words.click()
    for _ in range(2):
        s.driver.keys("ctrl+right")
    s.driver.wait_window(title="歌詞（0.2秒遅く）")
    s.driver.keys("ctrl+s")
    lyrics_window(s)
    s.equal(file.with_suffix(".lrc").read_bytes(), b"[offset:-200]\r\n" + text.encode("cp932"), "the file")
    s.driver.click(*words.point(), button="right")
    s.driver.choose("配色(C)", "黒地に薄青(8)")
    s.wait_until(lambda: inside(s, words).convert("RGB").getpixel((380, 190)) == (0, 0, 0), "the dark colours")
    s.screenshot("dark", words)
    s.driver.keys("shift+f10")
    s.driver.choose("行数(L)", "3行(3)")
    s.screenshot("three", words)
    player.end()
    assert "LyricsLine=3" in player.kept()


def test_without_lyrics_the_window_says_how_they_come_and_reads_them_when_told(s):
    file = material.write_mp3(s.material / "bare.mp3", material.tone(440, 20.0), "-b", "64")
    player = Product(s, file, ini=f"[Option]\nDispLyrics=0\n{PLACE}")
    player.menu("歌詞(Y)")
    words = lyrics_window(s)
    words.wait_text("歌詞はありません")
    s.screenshot("none", words)
    file.with_suffix(".lrc").write_text("[00:00]ここに来た", encoding="utf-8")
    words.click()
    s.driver.keys("shift+f10")
    s.driver.popup()
    s.driver.keys("r")
    words.wait_text("ここに来た")


def test_a_skin_with_a_lyrics_area_shows_them_there_and_no_window(s):
    player = Product(s, demo(s), "/p", skin="hakuji", ini="[Main]\nSkinName=hakuji\n")
    s.wait_until(lambda: ink(player.look(player.skin.label("lyrics"))) > 150, "the first line is on the panel")
    player.shot("hakuji")
    s.wait_until(lambda: ("歌詞", "窓をあければ 朝のひかり") in ((part.description, part.name) for part in player.window.parts()),
                 "a screen reader is told the line")
    assert s.driver.find(title="歌詞") is None, "no lyrics window"


def test_text_without_stamps_stands_whole_in_the_box_or_follows_by_itself_when_wanted(s):
    plain = "\n".join(f"{n:02d} 遠い町から届いた風に" for n in range(1, 41))
    file = track(s, "plain", plain.encode("cp932"), "txt")
    for skin in ("default", "hakuji"):
        player = Product(s, file, skin=skin, ini=f"[Main]\nSkinName={skin}\n{PLACE}")
        box = lyrics_window(s).control("Edit")
        s.wait_equal(lambda: box.text().replace("\r\n", "\n"), plain, "the text in the box")
        player.end()
    Product(s, file, "/p", ini=f"[Option]\nLyricsSelf=1\n{PLACE}")
    words = lyrics_window(s)
    first = inside(s, words).tobytes()
    s.wait_until(lambda: inside(s, words).tobytes() != first, "the text moves")
