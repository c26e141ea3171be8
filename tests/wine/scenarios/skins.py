"""The three skins: what they look like, held buttons, operation panel, scaling, changing while the sound goes on, faults."""

import shutil

from PIL import Image

from harness import material
from harness.product import Product
from harness.scenario import real_time
from harness.skin import COMMANDS, PLAYBACK, MainWindow, Skin

SCREEN = "1280x1024"
NAMES = ("default", "hakuji", "obi")
PLACE = "[Main]\nX=1500\nY=1500\nTitleMode=1\n"


def start(s, skin, *switches, more="", scale=1):
    file = s.material / "夜明けの歌.mp3"
    if not file.exists():
        material.write_mp3(file, material.tone(440, 60.0), "-b", "64", "--tt", "Dawn song", "--ta", "Somebody")
    return Product(s, *switches, name=f"with_{skin}", skin=skin, scale=scale,
                   ini=f"{PLACE}SkinName={skin}\nFileName={s.windows_path(file)}\n{more}")


def test_each_skin_shows_its_outline_and_buttons_and_a_held_one_acts_only_when_released_on_it(s):
    for name in NAMES:
        player = start(s, name)
        s.equal(player.window.place[2:], player.skin.size, f"size of {name}")
        s.driver.move(2, 2)
        player.shot(name)
        for button in (*PLAYBACK, *COMMANDS):
            assert player.shows_button(button), f"{name}: {button}"
        # Corners lie outside the outline: the root window is what is there.
        assert s.driver.window_at(*player.window.place[:2])[1] != player.window.handle, f"{name}: the corner belongs to the window"
        for button in ("play", "next", "list"):
            x, y = player.middle(player.skin.button(button))
            s.driver.move(x, y)
            s.driver.press()
            s.wait_until(lambda: player.shows_button(button, pressed=True), 3, f"{name}: {button} is shown pressed")
            s.driver.move(x, y + 200)
            s.driver.release()
            s.wait_until(lambda: player.shows_button(button), 3, f"{name}: {button} is shown released")
        assert s.listen(0.5).is_silent(), f"{name}: a button released elsewhere has played"
        assert not s.driver.find(title="プレイリスト"), "a button released elsewhere has opened its window"

        player.menu()
        item = next(i for i in s.driver.popup() if i.text.startswith("操作パネルモード"))
        s.equal(item.enabled, player.skin.panel is not None, f"{name}: the panel can be chosen")
        if item.enabled:
            s.driver.choose(item.text)
            panel = Image.open(player.skin.package / "main_panel.bmp")
            x, y, width, height = player.skin.panel
            free = height * 2 // 3  # display C of hakuji lies over the lowest part
            s.wait_until(lambda: player.shows((x, y, width, free), panel.crop((0, 0, width, free))), 3, f"{name}: the panel is shown")
            player.shot(f"{name}-panel")
            s.driver.click(*player.middle((x, y, width // 7, height)))
            s.wait_sound()
        else:
            s.driver.keys("esc")
        player.end()
        s.wait_silence()


def test_a_skin_is_shown_at_twice_its_size_and_its_hits_with_it(s):
    player = start(s, "hakuji", more="[Option]\nSkinScale=2\n", scale=2)
    s.equal(player.window.place[2:], tuple(2 * side for side in player.skin.size), "size")
    player.press("play")
    s.wait_sound()
    assert player.shows_button("pause"), "pause at twice its size"
    player.shot("twice")
    player.end()


@real_time
def test_the_skin_is_changed_from_the_menu_while_the_sound_goes_on(s):
    mark = s.sound_mark()
    player = start(s, "default", "/p")
    s.wait_sound(since=mark)
    for name in ("hakuji", "obi", "Default"):
        player.menu("スキンの変更(S)", name)
        player.skin = Skin(name.lower())
        s.wait_until(lambda: player.refresh().place[2:] == player.skin.size, 5, f"the window has the size of {name}")
        s.pause(0.5)
    heard = s.captured(mark).trimmed()
    s.equal(heard.gaps(), [], "gaps")
    s.near(heard.frequency(), 440, 1, "frequency in Hz")
    player.end()
    assert "SkinName=default" in player.kept(), "the chosen skin is kept"


def test_a_broken_package_is_told_and_the_default_one_stands_in(s):
    folder = s.fresh_product("broken")
    (folder / "Quenlox.ini").write_text(f"{PLACE}SkinName=broken\n")
    broken = folder / "skin/broken"
    shutil.copytree(folder / "skin/hakuji", broken)
    (broken / "hakuji.tsk").rename(broken / "broken.tsk")
    (broken / "hakuji.rgn").unlink()
    for message, skin in (("Skinの矩形データが見つかりません", "hakuji"), ("Skinのバージョンが異なります", "default")):
        program = s.start_product(folder=folder)
        s.answer(message)
        main = MainWindow(s, skin)
        main.shot(f"told-{skin}")
        s.equal(main.window.place[2:], main.skin.size, f"size of {skin}")
        main.end(program)
        (broken / "broken.tsk").write_bytes(b"[Main]\r\nVer=3\r\n")
