"""The options window, the about window, and the panel while music plays."""

from wine_harness import material
from wine_harness.product import Product

LIMIT = 180
TABS = {"display": "d", "playback": "p", "lyrics": "l", "lists": "n"}  # and the access key of each


def open_options(player):
    return player.open("オプション(N)", "オプション")


def close(form):
    form.press("閉じる")
    form.wait_closed()


def panel(player):
    return player.look(player.skin.display_b)


def test_every_tab_shows_its_controls_and_the_about_window_the_versions(s):
    player = Product(s)
    form = open_options(player)
    form.activate()
    for (name, key), text in zip(TABS.items(), ("オシロ・スペアナを表示する", "イントロ再生", "歌詞ウィンドウを表示する",
                                               "ﾌﾟﾚｲﾘｽﾄをﾀｸﾞ情報取得ﾓｰﾄﾞにする(要再起動)")):
        s.driver.keys(f"alt+{key}")
        form.wait_text(text)
        s.screenshot(f"options-{name}", form)
    close(form)
    about = player.open("バージョン情報(V)", "バージョン情報")
    for text in ("Ver 1.1.0", "VBMP3.dll", "gogo.dll"):
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
    for keys, scale in (("down down", 1.5), ("down", 2), ("home", 1)):  # automatic is 1 on this monitor
        combo.click()
        for key in (*keys.split(), "enter"):
            s.driver.keys(key)
        s.wait_equal(lambda: player.refresh().place[2], round(scale * width), "width of the skin")
        player.shot(f"scale-{scale}")
    close(form)
    player.end()
    assert "SpeanaMode=1" in player.kept()
