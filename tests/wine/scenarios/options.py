"""The options window, what acts at once, the about window, and the panel while music plays."""

import shutil

from PIL import Image

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import ROOT

LIMIT = 180
TABS = {"display": 28, "playback": 82, "lyrics": 136, "lists": 200}  # and where each is clicked


def open_options(player, tab="display"):
    form = player.open("オプション(N)", "オプション")
    form.control("SysTabControl32").click(TABS[tab], 10)
    return form


def close(form):
    form.press("閉じる")
    form.wait_closed()


def panel(player):
    return player.look(player.skin.display_b)


def test_every_tab_shows_its_controls_and_the_about_window_the_versions(s):
    player = Product(s)
    form = open_options(player)
    for (name, at), text in zip(TABS.items(), ("オシロ・スペアナを表示する", "イントロ再生", "歌詞ウィンドウを表示する",
                                               "ﾌﾟﾚｲﾘｽﾄをﾀｸﾞ情報取得ﾓｰﾄﾞにする(要再起動)")):
        form.control("SysTabControl32").click(at, 10)
        form.wait_text(text)
        s.screenshot(f"options-{name}", form)
    close(form)
    about = player.open("バージョン情報(V)", "バージョン情報")
    for text in ("Ver 1.0.0", "VBMP3.dll", "gogo.dll"):
        about.wait_text(text)
    s.screenshot("about", about)
    close(about)
    player.end()


def test_the_panel_moves_with_the_sound_and_clicks_change_its_view(s):
    tune = material.write_wave(s.material / "tune.wav", material.steps([220, 330, 440, 660, 880, 1100] * 10, 1.0))
    player = Product(s, tune, "/p", ini="[Option]\nSpeanaMode=1\nSpeanaTime=8\n")
    s.wait_sound()
    s.wait_until(lambda: len(panel(player).getcolors(4096)) > 3, "the panel shows the wave")
    for group in range(6):
        for variant in range(3):
            first = panel(player).tobytes()
            s.wait_until(lambda: panel(player).tobytes() != first, f"view {group}{variant} moves")
            player.shot(f"panel-{group}{variant}")
            player.click(player.skin.display_b)
        player.click(player.skin.display_b, button="right")
    player.click(player.skin.display_b)
    player.press("play")
    s.wait_silence()
    s.wait_still(lambda: panel(player).tobytes(), "the panel rests when nothing is heard")
    player.end()
    assert "ViewType=1" in player.kept(), player.kept()


def test_an_option_acts_at_once_and_is_kept(s):
    player = Product(s, ini="[Main]\nX=750\nY=7200\n")  # beside the options window, not under it
    width = player.window.place[2]
    form = open_options(player)
    before = panel(player).tobytes()
    form.press("オシロ・スペアナを表示する")
    s.wait_until(lambda: panel(player).tobytes() != before, "the panel appears")
    combo = form.control("ComboBox")
    for key, scale in (("down", 2), ("up", 1)):
        combo.click()
        s.driver.keys(key)
        s.driver.keys("enter")
        s.wait_equal(lambda: player.refresh().place[2], scale * width, "width of the skin")
        player.shot(f"scale-{scale}")
    close(form)
    player.end()
    assert "SpeanaMode=1" in player.kept()


def test_what_is_chosen_for_the_lyrics_is_seen_in_their_window_at_once(s):
    tune = s.material / "夜" / "demo.mp3"
    pictures, words = s.material / "pic", s.material / "words"
    for each in (tune.parent, pictures, words):
        each.mkdir(exist_ok=True)
    shutil.copy(ROOT / "demo/quenlox-demo.mp3", tune)
    (words / "demo.lrc").write_text("[00:00]別の歌詞\n", "utf-8")
    gradient = Image.linear_gradient("L").resize((320, 240))
    Image.merge("RGB", (gradient, gradient.rotate(90), gradient.rotate(180))).save(pictures / "夜.bmp")
    player = Product(s, tune, "/p", ini="[Option]\nX=9000\n[Lyrics]\nX=150\nY=4500\nW=6000\nH=3600\n")
    lyrics = s.driver.wait_window(title="歌詞")
    s.wait_sound()
    player.seek(0.5)
    player.press("pause")  # or the line that is sung would change by itself
    s.wait_silence()
    form = open_options(player, "lyrics")
    form.wait_text("歌詞ウィンドウを表示する")

    def look():
        x, y, width, height = lyrics.place
        return s.screen().crop((x + 4, y + 30, x + width - 4, y + height - 4))

    def changes(what, act):
        before = s.wait_still(lambda: look().tobytes(), "the lines stand", 0.5)
        act()
        s.wait_until(lambda: look().tobytes() != before, f"{what} is seen")
        s.screenshot(f"lyrics-{what}", lyrics)

    for what in ("1行", "5行", "太字で表示する", "タイムタグも表示する"):
        changes(what, lambda: form.press(what))
    # The boxes from the top: font, lyrics folder, picture folder.
    font, sources, behind = sorted((c for c in form.controls() if c.class_name == "Edit" and c.visible), key=lambda c: c.y)

    def type_into(box, text):
        box.click()
        box.set_text(text)
        s.driver.keys("tab")

    changes("background", lambda: type_into(behind, s.windows_path(pictures)))
    s.wait_until(lambda: len(look().resize((8, 8)).getcolors(64)) > 40, "the picture lies behind the lines")
    changes("folder", lambda: type_into(sources, s.windows_path(words)))
    changes("font", lambda: type_into(font, "IPAGothic"))
    close(form)
    player.end()
