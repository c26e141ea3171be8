"""The options window, what acts at once, the about window, and the panel while music plays."""

import shutil

from PIL import Image

from harness import material
from harness.scenario import ROOT

LIMIT = 180

OPTIONS, CLOSE = (321, 32), (456, 32)  # buttons of the default skin
PANEL = (40, 83, 85, 30)
TABS = {"display": 28, "playback": 82, "lyrics": 136, "lists": 200}  # and where each is clicked


def start(s, *arguments, folder=None):
    program = s.start_product(*arguments, folder=folder or s.fresh_product())
    return program, s.driver.wait_window(title="Quenlox  Ver 1.0.0")


def click(s, window, place, button="left", count=1):
    x, y, _, _ = window.place
    s.driver.click(x + place[0], y + place[1], button, count)


def end(s, program, window):
    click(s, window, CLOSE)
    s.equal(program.wait_exit(), 0, "exit code")


def open_options(s, window):
    click(s, window, (300, 60), button="right")
    s.driver.choose("オプション(N)")
    return s.driver.wait_window(title="オプション")


def panel(s, window):
    x, y, _, _ = window.place
    return s.screen().crop((x + PANEL[0], y + PANEL[1], x + PANEL[0] + PANEL[2], y + PANEL[1] + PANEL[3]))


def press(form, title):
    form.control(title=title, class_name="Button").click()


def test_every_tab_shows_its_controls(s):
    program, window = start(s)
    form = open_options(s, window)
    tabs = form.control(class_name="SysTabControl32")
    seen = []
    for name, at in TABS.items():
        tabs.click(at, 10)
        s.pause(0.6)
        s.screenshot(f"options-{name}", form)
        seen.append({c.title for c in form.controls() if c.visible})
    for texts, wanted in zip(seen, ("オシロ・スペアナを表示する", "イントロ再生", "歌詞ウィンドウを表示する",
                                    "ﾌﾟﾚｲﾘｽﾄをﾀｸﾞ情報取得ﾓｰﾄﾞにする(要再起動)")):
        assert wanted in texts, f"{wanted} is missing in {texts}"
    press(form, "閉じる")
    form.wait_closed()
    end(s, program, window)


def test_the_panel_moves_with_the_sound_and_clicks_change_its_view(s):
    tune = material.write_wave(s.material / "tune.wav", material.steps([220, 330, 440, 660, 880, 1100] * 5, 1.0))
    folder = s.fresh_product("panel")
    (folder / "Quenlox.ini").write_bytes(b"[Option]\r\nSpeanaMode=1\r\nSpeanaTime=8\r\n")
    program, window = start(s, tune, "/p", folder=folder)
    s.wait_sound()
    s.wait_until(lambda: panel(s, window).getcolors(4096) and len(panel(s, window).getcolors(4096)) > 3, 5, "the panel shows the wave")
    for group in range(6):
        for variant in range(3):
            first = panel(s, window).tobytes()
            s.wait_until(lambda: panel(s, window).tobytes() != first, 5, f"view {group}{variant} moves")
            s.screenshot(f"panel-{group}{variant}", window)
            s.pause(0.6)  # or two clicks would be a double click
            click(s, window, (PANEL[0] + 40, PANEL[1] + 15))
        s.pause(0.6)
        click(s, window, (PANEL[0] + 40, PANEL[1] + 15), button="right")
    s.pause(0.6)
    click(s, window, (PANEL[0] + 40, PANEL[1] + 15))
    click(s, window, (232, 128))  # stop
    s.wait_silence(limit=5)
    s.pause(4)
    still = panel(s, window).tobytes()
    s.pause(1)
    assert panel(s, window).tobytes() == still, "the panel rests when nothing is heard"
    end(s, program, window)
    text = (folder / "Quenlox.ini").read_bytes().decode("cp932")
    assert "ViewType=1" in text, text


def test_an_option_acts_at_once_and_is_kept(s):
    folder = s.fresh_product("acts")
    # Beside the options window, not under it.
    (folder / "Quenlox.ini").write_bytes(b"[Main]\r\nX=750\r\nY=7200\r\n")
    program, window = start(s, folder=folder)
    width = window.place[2]
    form = open_options(s, window)
    before = panel(s, window).tobytes()
    press(form, "オシロ・スペアナを表示する")
    s.wait_until(lambda: panel(s, window).tobytes() != before, 5, "the panel appears")
    combo = form.control(class_name="ComboBox")
    combo.click()
    s.driver.keys("down")
    s.driver.keys("enter")
    s.wait_until(lambda: s.driver.find(title="Quenlox  Ver 1.0.0").place[2] == 2 * width, 5, "the skin is twice as large")
    s.screenshot("doubled", s.driver.find(title="Quenlox  Ver 1.0.0"))
    combo.click()
    s.driver.keys("up")
    s.driver.keys("enter")
    s.wait_until(lambda: s.driver.find(title="Quenlox  Ver 1.0.0").place[2] == width, 5, "and small again")
    press(form, "閉じる")
    form.wait_closed()
    end(s, program, s.driver.find(title="Quenlox  Ver 1.0.0"))
    assert "SpeanaMode=1" in (folder / "Quenlox.ini").read_bytes().decode("cp932")


def test_what_is_chosen_for_the_lyrics_is_seen_in_their_window_at_once(s):
    folder = s.fresh_product("lyrics")
    (folder / "Quenlox.ini").write_bytes(b"[Option]\r\nX=9000\r\n[Lyrics]\r\nX=150\r\nY=4500\r\nW=6000\r\nH=3600\r\n")
    tune = s.material / "夜" / "demo.mp3"
    pictures, words = s.material / "pic", s.material / "words"
    for each in (tune.parent, pictures, words):
        each.mkdir(exist_ok=True)
    shutil.copy(ROOT / "demo/quenlox-demo.mp3", tune)
    (words / "demo.lrc").write_text("[00:00]別の歌詞\n", "utf-8")
    gradient = Image.linear_gradient("L").resize((320, 240))
    Image.merge("RGB", (gradient, gradient.rotate(90), gradient.rotate(180))).save(pictures / "夜.bmp")
    program, window = start(s, tune, "/p", folder=folder)
    lyrics = s.driver.wait_window(title="歌詞")
    form = open_options(s, window)
    form.control(class_name="SysTabControl32").click(TABS["lyrics"], 10)
    s.pause(0.6)

    def look():
        x, y, width, height = lyrics.place
        return s.screen().crop((x + 4, y + 30, x + width - 4, y + height - 4))

    def changes(what, act):
        # The line that is sung changes by itself, too, but not into the same picture twice within this time.
        before = look().tobytes()
        act()
        s.wait_until(lambda: look().tobytes() != before, 1.5, f"{what} is seen")
        s.screenshot(f"lyrics-{what}", lyrics)

    for what in ("1行", "5行", "太字で表示する", "タイムタグも表示する"):
        changes(what, lambda: press(form, what))
    # The boxes from the top: font, lyrics folder, picture folder.
    font, sources, behind = sorted((c for c in form.controls() if c.class_name == "Edit" and c.visible), key=lambda c: c.y)

    def type_into(box, text):
        box.click()
        box.set_text(text)
        s.driver.keys("tab")

    changes("background", lambda: type_into(behind, s.windows_path(pictures)))
    colors = look().resize((8, 8)).getcolors(64)
    assert len(colors) > 40, f"the picture lies behind the lines: {len(colors)} colours"
    changes("folder", lambda: type_into(sources, s.windows_path(words)))
    changes("font", lambda: type_into(font, "IPAGothic"))
    s.screenshot("lyrics-options", form)
    press(form, "閉じる")
    form.wait_closed()
    end(s, program, window)


def test_the_about_window_names_the_versions(s):
    program, window = start(s)
    click(s, window, (300, 60), button="right")
    s.driver.choose("バージョン情報(V)")
    form = s.driver.wait_window(title="バージョン情報")
    s.pause(0.5)
    s.screenshot("about", form)
    texts = [c.title for c in form.controls()]
    for wanted in ("Ver 1.0.0", "VBMP3.dll", "gogo.dll"):
        assert any(wanted in t for t in texts), f"{wanted} is missing in {texts}"
    press(form, "閉じる")
    form.wait_closed()
    end(s, program, window)
