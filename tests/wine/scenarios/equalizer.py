"""The equalizer window: what its presets do to the sound, switching without a click, and its controls."""

import numpy

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time

BANDS = (60, 170, 310, 600, 1000, 3000, 6000, 12000, 14000, 16000)
ROCK = (2.0, 5.0, 0.0, -2.0, 3.0, 1.0, -2.0, 5.0, 3.0, 1.0)
STEP = 0.6  # seconds of each
TITLE = "グラフィックイコライザ"
SWITCH = "ｲｺﾗｲｻﾞを有効にする"
SETTINGS = "[Equalizer]\nX=3000\nY=3000\n"


def open_equalizer(player):
    window = player.open("グライコ(G)", TITLE)
    window.activate()
    return window


def sliders(window):
    return sorted((c for c in window.controls() if c.class_name == "msctls_trackbar32"), key=lambda c: c.x)


def gains(window):
    return [-slider.scroll()[0] for slider in sliders(window)]


def band_levels(s, file, settings):
    mark = s.sound_mark()
    player = Product(s, file, "/p", ini=settings)
    s.wait_sound(since=mark)
    s.wait_silence()
    heard = s.captured(mark).trimmed()
    player.end()
    s.near(heard.length, len(BANDS) * STEP, 0.2, "length in seconds")
    return [heard.part(i * STEP + 0.2, i * STEP + 0.5).level_at(f) for i, f in enumerate(BANDS)]


@real_time
def test_a_preset_raises_and_lowers_its_bands_by_what_it_says(s):
    file = material.write_mp3(s.material / "bands.mp3", material.steps(BANDS, STEP, level=0.2), "-b", "320", "--lowpass", "20")
    rock = ",".join(str(int(g * 10)) for g in ROCK)
    plain = band_levels(s, file, "[Equalizer]\nEqMode=0\n")
    shaped = band_levels(s, file, f"[Equalizer]\n5Eq=Custom,{rock}\nEqMode=1\n")
    raised = [20 * numpy.log10(b / a) for a, b in zip(plain, shaped)]
    for band, heard, wanted in zip(BANDS, raised, ROCK):
        s.near(heard, wanted, 1.0, f"gain at {band} Hz in dB")


@real_time
def test_choosing_a_preset_and_switching_while_it_plays_is_heard_and_gives_no_click(s):
    file = material.write_mp3(s.material / "tone.mp3", material.tone(170, 40.0, level=0.2))
    player = Product(s, file, "/p", ini=SETTINGS)
    window = open_equalizer(player)
    s.wait_sound()
    plain = s.listen(0.6).level_at(170)
    window.control(title="ROCK").click()
    s.wait_equal(lambda: gains(window), [int(g) for g in ROCK], "sliders")
    s.near(s.listen(0.6).level_at(170), plain, 0.01, "level while it is switched off")

    mark = s.sound_mark()
    switch = window.control(title=SWITCH)
    for wanted in (5.0, 0.0) * 3:
        switch.click()
        s.wait_until(lambda: abs(20 * numpy.log10(s.listen(0.4).level_at(170) / plain) - wanted) < 1.0, f"the tone is heard with {wanted} dB")
    heard = s.captured(mark).mono()
    # The steepest step of the louder of the two tones.
    music = 2 * numpy.pi * 170 / 44100 * plain * 10 ** (5.5 / 20)
    s.near(max(numpy.abs(numpy.diff(heard)).max() - music, 0), 0, 0.002, "sample step above that of the music")
    player.end()


def test_sliders_answer_to_keys_wheel_and_double_click_and_the_curve_to_the_mouse(s):
    player = Product(s, ini=SETTINGS)
    window = open_equalizer(player)
    s.equal(window.place[:2], (200, 200), "the place that was kept")
    window.control(title="BGM").click()
    s.wait_equal(lambda: gains(window), [-7, -2, -3, 4, -2, 3, -3, 0, -5, -7], "sliders")
    window.press(SWITCH)
    s.wait_until(window.control(title=SWITCH).checked, "it is switched on")
    bars = sliders(window)
    bars[0].click(bars[0].width // 2, bars[0].height - 8)
    s.driver.keys("home")
    s.wait_until(lambda: gains(window)[0] == 12, "Home is the top, +12 dB")
    s.driver.keys("down")
    s.wait_until(lambda: gains(window)[0] == 11, "one step down")
    x, y = bars[0].point()
    s.driver.wheel(x, y, -2)
    s.wait_until(lambda: gains(window)[0] == 9, "two notches down")
    window.control("Static", "+9")
    s.driver.keys("ctrl+up")
    window.control("Static", "+9.1")
    s.driver.keys("home")
    s.driver.click(bars[0].x + bars[0].width // 2, bars[0].y + 10, count=2)
    s.wait_until(lambda: gains(window)[0] == 0, "a double click on the knob is 0 dB")

    curve = window.control("Quenlox.Picture")
    x = bars[4].x + bars[4].width // 2
    s.driver.drag(x, curve.y + curve.height // 2, x, curve.y + 3)
    s.wait_until(lambda: gains(window)[4] == 12, "the knob of the curve is dragged to the top")
    player.end()


def test_a_pattern_goes_into_a_file_into_another_place_and_the_first_one_comes_back(s):
    player = Product(s, ini=f"{SETTINGS}5Eq=Custom,{','.join(str(int(g * 10)) for g in ROCK)}\n")
    window = open_equalizer(player)
    s.wait_until(window.control(title="ROCK").checked, "the preset in force is marked")
    s.screenshot("equalizer", window)
    file = s.material / "夜.qeq"
    window.press("パターン登録")
    s.driver.choose("ファイルに保存(S)", "BGM(5)")
    s.file_dialog(file)
    s.wait_until(file.exists, "the file")
    window.press("パターン登録")
    s.driver.choose("ファイルから読み込み(L)", "FLAT(1)")
    s.file_dialog(file)
    bgm = [-7, -2, -3, 4, -2, 3, -3, 0, -5, -7]
    s.wait_equal(lambda: gains(window), bgm, "sliders")
    window.press("パターン登録")
    s.driver.choose("初期設定に戻す(R)", "FLAT(1)")
    s.answer("「BGM」を初期設定の「FLAT」に戻しますか", button=6)
    window.control(title="FLAT").click()
    s.wait_equal(lambda: gains(window), [0] * 10, "sliders")
    player.end()
