"""The three skins: what they look like, held buttons, operation panel, changing while the sound goes on."""

from PIL import Image

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time
from wine_harness.skin import COMMANDS, PLAYBACK, Skin

SCREEN = "1280x1024"
NAMES = ("default", "hakuji", "obi")
PLACE = "[Main]\nX=1500\nY=1500\nTitleMode=1\n"


def start(s, skin, *switches):
    file = s.material / "夜明けの歌.mp3"
    if not file.exists():
        material.write_mp3(file, material.tone(440, 60.0), "-b", "64", "--tt", "Dawn song", "--ta", "Somebody")
    return Product(s, *switches, skin=skin, ini=f"{PLACE}SkinName={skin}\nFileName={s.windows_path(file)}\n")


def test_each_skin_shows_its_outline_and_buttons_and_a_held_one_acts_only_when_released_on_it(s):
    for name in NAMES:
        player = start(s, name)
        s.equal(player.window.place[2:], player.skin.size, f"size of {name}")
        s.driver.move(2, 2)
        player.shot(name)
        for button in (*PLAYBACK, *COMMANDS):
            s.wait_until(lambda: player.shows_button(button), f"{name}: {button}")
        # Corners lie outside the outline: the root window is what is there.
        assert s.driver.window_at(*player.window.place[:2])[1] != player.window.handle, f"{name}: the corner belongs to the window"
        for button in ("play", "next", "list"):
            x, y = player.middle(player.skin.button(button))
            s.driver.move(x, y)
            s.driver.press()
            s.wait_until(lambda: player.shows_button(button, pressed=True), f"{name}: {button} is shown pressed")
            s.driver.move(x, y + 200)
            s.driver.release()
            s.wait_until(lambda: player.shows_button(button), f"{name}: {button} is shown released")
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
            s.wait_until(lambda: player.shows((x, y, width, free), panel.crop((0, 0, width, free))), f"{name}: the panel is shown")
            player.shot(f"{name}-panel")
            s.driver.click(*player.middle((x, y, width // 7, height)))
            s.wait_sound()
        else:
            s.driver.leave_menu()
        player.end()
        s.wait_silence()


@real_time
def test_the_skin_is_changed_from_the_menu_while_the_sound_goes_on(s):
    mark = s.sound_mark()
    player = start(s, "default", "/p")
    s.wait_sound(since=mark)
    for name in ("hakuji", "obi", "Default"):
        player.menu("スキンの変更(S)", name)
        player.skin = Skin(name.lower())
        s.wait_until(lambda: player.shows_button("close"), f"the window is that of {name}")
    heard = s.captured(mark).trimmed()
    s.equal(heard.gaps(0.01), [], "gaps of 10 ms and more")
    s.near(heard.frequency(), 440, 1, "frequency in Hz")
    player.end()
    assert "SkinName=default" in player.kept(), "the chosen skin is kept"
