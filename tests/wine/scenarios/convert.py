"""The converter: encoding, decoding, decoding while playing, and cancelling."""

import itertools
import os
import struct
import subprocess
import wave

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time

LIMIT = 180
START, CANCEL = "変換開始", "中止"
PBM_GETPOS = 0x408


def start(s, folder=None, **texts):
    player = Product(s, folder=folder, **texts)
    player.press("conv")
    return player, s.driver.wait_window(title="ファイル変換")


def choose(s, form, operation, source, destination=None):
    form.press(operation)
    form.press("参照(S)...")
    s.file_dialog(source)
    if destination:
        form.press("参照(D)...")
        s.file_dialog(destination)


def frames(path):
    """Length of a WAVE file."""
    with wave.open(str(path)) as sound:
        return sound.getnframes()


def test_a_wave_becomes_an_mp3_of_the_same_length_and_that_a_wave_again(s):
    source = material.write_wave(s.material / "音.wav", material.tone(440, 20.0))
    player, form = start(s)
    choose(s, form, "MP3エンコード", source)
    form.press(START)
    form.wait_text("変換が終わりました", limit=60)
    s.wait_until(lambda: not form.control(title=START).enabled, "nothing is left to be converted")
    subprocess.run(["mpg123", "-q", "-w", s.material / "check.wav", s.material / "音.mp3"], check=True)
    s.equal(frames(s.material / "check.wav"), 20 * 44100, "frames that another decoder finds")
    choose(s, form, "MP3エンコード", source)  # once more: the player has the first one open
    form.press(START)
    s.answer("上書きしますか", button=6)
    form.wait_text("変換が終わりました", limit=60)
    choose(s, form, "WAVEデコード", s.material / "音.mp3", s.material / "出力.wav")
    form.press(START)
    s.wait_until((s.material / "出力.wav").exists, "the file is decoded")
    s.equal(frames(s.material / "出力.wav"), 20 * 44100, "frames")
    player.end()


@real_time
def test_while_playing_the_sound_is_heard_and_written(s):
    source = material.write_mp3(s.material / "heard.mp3", material.tone(700, 4.0))
    source.with_suffix(".wav").unlink(missing_ok=True)
    player, form = start(s)
    mark = s.sound_mark()
    choose(s, form, "再生しながらデコード", source)
    form.press(START)
    s.wait_sound(since=mark)
    form.wait_text("変換が終わりました")
    heard = s.captured(mark).trimmed()
    s.near(heard.frequency(), 700, 2, "frequency in Hz")
    s.near(heard.length, 4.0, 0.3, "length heard")
    s.equal(frames(s.material / "heard.wav"), 4 * 44100, "frames written")
    player.end()


def test_an_encode_goes_on_under_a_held_title_bar_and_leaves_nothing_when_it_is_cut_short(s):
    folder = s.material / "cancel"
    folder.mkdir()
    source = folder / "long.wav"  # longer than a RIFF can tell, silent and without a place on the disk
    source.write_bytes(struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 0xFFFFFFFF, b"WAVE", b"fmt ", 16, 1, 2, 44100, 176400, 4, 16, b"data", 0xFFFFFFFF))
    os.truncate(source, 5 << 30)
    other = material.write_mp3(s.material / "other.mp3", material.tone(440, 5.0))
    player, form = start(s, ini="[List]\nX=7500\nShow=1\n", m3u=f"#ListA\n{s.windows_path(other)}\n")
    choose(s, form, "MP3エンコード", source)
    form.press(START)
    bar = form.control("msctls_progress32")
    form.wait_text("残り")
    assert any(p.suffix == ".tmp" for p in folder.iterdir())

    def goes_on(while_what):
        before = bar.send(PBM_GETPOS)
        s.wait_until(lambda: bar.send(PBM_GETPOS) > before, f"the encode goes on while {while_what}")
    x, y = form.point(dy=12)
    s.driver.move(x, y)
    s.driver.press()
    steps = itertools.count(1)
    s.wait_until(lambda: s.driver.move(x + next(steps), y) or form.refreshed().x != form.x, "the window is held")
    goes_on("the title bar is held")
    s.driver.release()
    form.refreshed().click(12, 12)
    s.wait_until(s.driver.menus, "its menu is open")
    goes_on("its menu is open")
    s.driver.leave_menu()
    s.drop_files(*player.window.point(), other)
    s.answer("ファイル変換中は再生できません")
    lists = s.driver.wait_window(title="プレイリスト")
    lists.list_view().click_item(0, count=2)
    lists.wait_text("ファイル変換中は再生できません")
    s.screenshot("an encode that goes on")
    goes_on("a file was dropped and a row clicked")
    form.press(CANCEL)
    form.wait_text("中止しました")
    s.wait_equal(lambda: [p.name for p in folder.iterdir()], ["long.wav"], "files after the cancel")
    form.press(START)
    form.wait_text("残り")
    player.end()  # nothing is asked
    s.equal([p.name for p in folder.iterdir()], ["long.wav"], "files after the end of the program")


def test_without_the_encoder_library_its_settings_are_out_of_reach(s):
    folder = s.fresh_product("bare")
    (folder / "gogo.dll").unlink()
    _, form = start(s, folder)
    form.press("MP3エンコード")
    form.wait_text("GOGO.DLLがないため")
    assert all(not c.enabled for c in form.controls() if c.class_name.lower() == "combobox")
