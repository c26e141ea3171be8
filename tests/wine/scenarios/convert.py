"""The converter: encoding, decoding, decoding while playing, and cancelling."""

import itertools
import subprocess
import wave

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time
from wine_harness.sound import Sound

LIMIT = 180
SCREEN = "1400x1024"
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
    source = material.endless_wave(folder / "long.wav")
    other = material.write_mp3(s.material / "other.mp3", material.tone(440, 5.0))
    player, form = start(s, ini="[List]\nX=15000\nShow=1\n", m3u=f"#ListA\n{s.windows_path(other)}\n")
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


def test_many_files_go_on_side_by_side_and_what_was_chosen_is_there_again(s):
    tones = {f"R&B {tone}": tone for tone in (300, 500, 700, 900, 1100, 1300)}
    folder = s.material / "many" / ("長い名前のフォルダ " * 8).strip()
    folder.mkdir(parents=True)
    sources = [material.write_mp3(folder / f"{name}.mp3", material.tone(tone, 20.0)) for name, tone in tones.items()]
    player, form = start(s, ini="[Convert]\nKind=2\n")
    view = form.list_view()

    def states():
        return [row[1] for row in view.items()]
    s.drop_files(*view.point(), sources[0])  # another kind of file than the one chosen last
    s.wait_equal(lambda: form.control(title="WAVEデコード").checked(), True, "the kind has changed")
    s.screenshot("one file", form)
    s.drop_files(*view.point(), *sources)
    s.wait_equal(lambda: len(view.items()), 6, "rows")
    form.press(START)
    form.wait_text("変換が終わりました", limit=60)
    s.equal(states(), ["完了"] * 6, "states")
    s.screenshot("many files", form)
    for name, tone in tones.items():
        with wave.open(str(folder / f"{name}.wav")) as sound:
            s.equal(sound.getnframes(), 20 * 44100, name)
            s.near(Sound.from_raw(sound.readframes(44100)).frequency(), tone, 1, name)

    # And back, with one that is given up and one that cannot be converted.
    endless = material.endless_wave(folder / "endless.wav")
    broken = folder / "broken.wav"
    broken.write_bytes(b"RIFF no sound")
    s.drop_files(*view.point(), endless, broken, *(folder / f"{name}.wav" for name in tones))
    s.wait_equal(lambda: len(view.items()), 8, "rows")
    form.press(START)
    s.answer("上書きしますか", button=6)
    s.wait_until(lambda: states()[2:4] == ["完了"] * 2, "others have ended beside it")
    view.click_item(0)
    s.screenshot("under way", form)
    form.press("選択を中止")
    s.answer("gogo.dllファイルエラー")
    s.equal(states()[0], "中止", "the one that was given up")
    assert states()[1].startswith("失敗") and states()[2:] == ["完了"] * 6, states()
    s.equal(sorted(p.suffix for p in folder.iterdir()), [".mp3"] * 6 + [".wav"] * 8, "files")
    for name, tone in tones.items():
        heard = s.material / "heard.wav"
        subprocess.run(["mpg123", "-q", "-w", heard, folder / f"{name}.mp3"], check=True)
        with wave.open(str(heard)) as sound:
            s.near(Sound.from_raw(sound.readframes(44100)).frequency(), tone, 1, name)
    player.end()
    again, form = start(s, folder=player.folder)
    s.equal(form.control(title="MP3エンコード").checked(), True, "the kind of the last time")
    again.end()


def test_without_the_encoder_library_its_settings_are_out_of_reach(s):
    folder = s.fresh_product("bare")
    (folder / "gogo.dll").unlink()
    _, form = start(s, folder)
    form.press("MP3エンコード")
    form.wait_text("GOGO.DLLがないため")
    assert all(not c.enabled for c in form.controls() if c.class_name.lower() == "combobox")
