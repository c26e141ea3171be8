"""The converter: encoding, decoding, decoding while playing, cancelling, and files that cannot be converted."""

import os
import struct
import subprocess
import wave

from harness import material
from harness.scenario import real_time

LIMIT = 180

CONVERT, CLOSE = (375, 32), (456, 32)  # buttons of the default skin
START, CANCEL = "変換開始", "中止"


def start(s):
    program = s.start_product(folder=s.fresh_product())
    window = s.driver.wait_window(title="Quenlox  Ver 1.0.0")
    x, y, _, _ = window.place
    s.driver.click(x + CONVERT[0], y + CONVERT[1])
    return program, window, s.driver.wait_window(title="ファイル変換")


def end(s, program, window):
    x, y, _, _ = window.place
    s.driver.click(x + CLOSE[0], y + CLOSE[1])
    s.equal(program.wait_exit(), 0, "exit code")


def press(form, title):
    form.control(title=title, class_name="Button").click()


def choose(s, form, operation, source, destination=None):
    press(form, operation)
    press(form, "参照(S)...")
    s.file_dialog(source)
    if destination:
        press(form, "参照(D)...")
        s.file_dialog(destination)


def shows(form, text):
    return any(text in c.title for c in form.controls() if c.visible)


def wait_for(s, form, text, limit=60):
    s.wait_until(lambda: shows(form, text), limit, f"the converter shows {text}")


def decoded(path):
    """Length in frames and the loudest sample of what another decoder makes of a file."""
    wav = path.with_suffix(".check.wav")
    subprocess.run(["mpg123", "-q", "-w", wav, path], check=True)
    with wave.open(str(wav)) as sound:
        return sound.getnframes()


def test_a_wave_becomes_an_mp3_of_the_same_length(s):
    source = material.write_wave(s.material / "音.wav", material.tone(440, 20.0))
    program, window, form = start(s)
    s.screenshot("opened")
    choose(s, form, "MP3エンコード", source)
    s.screenshot("ready")
    press(form, START)
    wait_for(s, form, "変換が終わりました")
    s.screenshot("encoded")
    s.equal(decoded(s.material / "音.mp3"), 20 * 44100, "frames of the new file")
    assert not form.control(title=START).enabled, "nothing is left to be converted"
    end(s, program, window)


def test_an_mp3_becomes_a_wave_in_the_background(s):
    source = material.write_mp3(s.material / "tone.mp3", material.tone(500, 20.0))
    program, window, form = start(s)
    choose(s, form, "WAVEデコード", source, s.material / "出力.wav")
    press(form, START)
    wait_for(s, form, "変換が終わりました")
    with wave.open(str(s.material / "出力.wav")) as sound:
        s.equal((sound.getframerate(), sound.getnframes()), (44100, 20 * 44100), "rate and frames")
    s.screenshot("decoded")
    end(s, program, window)


@real_time
def test_while_playing_the_sound_is_heard_and_written(s):
    source = material.write_mp3(s.material / "heard.mp3", material.tone(700, 4.0))
    source.with_suffix(".wav").unlink(missing_ok=True)
    program, window, form = start(s)
    mark = s.sound_mark()
    choose(s, form, "再生しながらデコード", source)
    press(form, START)
    s.wait_sound(since=mark)
    s.screenshot("heard_and_written")
    wait_for(s, form, "変換が終わりました", 20)
    heard = s.captured(mark).trimmed()
    s.near(heard.frequency(), 700, 2, "frequency in Hz")
    s.near(heard.length, 4.0, 0.3, "length heard")
    with wave.open(str(s.material / "heard.wav")) as sound:
        s.equal(sound.getnframes(), 4 * 44100, "frames written")
    end(s, program, window)


def test_a_cancel_half_way_leaves_nothing_and_the_program_usable(s):
    folder = s.material / "cancel"
    folder.mkdir()
    source = folder / "long.wav"  # longer than a RIFF can tell, silent and without a place on the disk
    head = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 0xFFFFFFFF, b"WAVE", b"fmt ", 16, 1, 2, 44100, 176400, 4, 16, b"data", 0xFFFFFFFF)
    source.write_bytes(head)
    os.truncate(source, 5 << 30)
    program, window, form = start(s)
    choose(s, form, "MP3エンコード", source)
    press(form, START)
    s.wait_until(lambda: any(p.suffix == ".tmp" for p in folder.iterdir()), 20, "the encode has begun")
    s.screenshot("encoding")
    press(form, CANCEL)
    wait_for(s, form, "中止しました", 5)
    s.screenshot("cancelled")
    s.equal([p.name for p in folder.iterdir()], ["long.wav"], "files after the cancel")
    assert form.control(title=START).enabled, "it can be started again"
    press(form, START)
    wait_for(s, form, "残り")
    press(form, CANCEL)
    wait_for(s, form, "中止しました", 5)
    end(s, program, window)


def test_what_cannot_be_converted_is_said(s):
    bad = s.material / "bad.wav"
    bad.write_bytes(b"no sound at all" * 100)
    program, window, form = start(s)
    choose(s, form, "MP3エンコード", bad)
    press(form, START)
    dialog = s.driver.wait_window(class_name="#32770", title="Quenlox")
    assert any(c.title == "gogo.dllファイルエラー" for c in dialog.controls()), s.driver.tree()
    s.screenshot("refused")
    dialog.command(1)
    dialog.wait_closed()
    assert not (s.material / "bad.mp3").exists()
    bad.rename(s.material / "bad.mp3")
    choose(s, form, "WAVEデコード", s.material / "bad.mp3")
    press(form, START)
    dialog = s.driver.wait_window(class_name="#32770", title="Quenlox")
    assert any(c.title == "デコードファイルが不正です" for c in dialog.controls()), s.driver.tree()
    s.screenshot("refused_decode")
    dialog.command(1)
    dialog.wait_closed()
    end(s, program, window)


def test_a_full_disk_is_said_and_leaves_nothing(s):
    small = s.material / "small"
    small.mkdir()
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=200k", "quenlox-test", small], check=True)
    try:
        source = material.write_wave(s.material / "full.wav", material.tone(440, 60.0))
        tone = material.write_mp3(s.material / "full.mp3", material.tone(440, 60.0))
        program, window, form = start(s)
        for operation, file, name, message in (("MP3エンコード", source, "a.mp3", "gogo.dllエンコードエラー"),
                                               ("WAVEデコード", tone, "a.wav", "変換エラー")):
            choose(s, form, operation, file, small / name)
            press(form, START)
            dialog = s.driver.wait_window(class_name="#32770", title="Quenlox", limit=60)
            assert any(c.title == message for c in dialog.controls()), s.driver.tree()
            s.screenshot("disk_full_" + name[-3:])
            dialog.command(1)
            dialog.wait_closed()
            assert shows(form, "保存先に書き込めません")
            s.equal(list(small.iterdir()), [], "files on the full disk")
        end(s, program, window)
    finally:
        subprocess.run(["umount", "-l", small], check=True)


def test_without_the_encoder_library_its_settings_are_out_of_reach(s):
    folder = s.fresh_product("bare")
    (folder / "gogo.dll").unlink()
    program = s.start_product(folder=folder)
    window = s.driver.wait_window(title="Quenlox  Ver 1.0.0")
    x, y, _, _ = window.place
    s.driver.click(x + CONVERT[0], y + CONVERT[1])
    form = s.driver.wait_window(title="ファイル変換")
    press(form, "MP3エンコード")
    wait_for(s, form, "GOGO.DLLがないため")
    assert all(not c.enabled for c in form.controls() if c.class_name.lower() == "combobox")
    s.screenshot("without_gogo")
    end(s, program, window)
