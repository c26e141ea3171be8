"""The three skins: what they look like, held buttons, operation panel, scaling, changing while the sound goes on, faults."""

import shutil

from PIL import Image

from harness import material
from harness.scenario import real_time
from harness.skin import COMMANDS, MainWindow, PLAYBACK, Skin

SCREEN = "1280x1024"
NAMES = ("default", "hakuji", "obi")


def tone(s, seconds=30.0):
    file = s.material / "夜明けの歌.mp3"
    return file if file.exists() else material.write_mp3(file, material.tone(440, seconds), "-b", "128", "--tt", "Dawn song", "--ta", "Somebody")


def with_skin(s, skin, more=""):
    folder = s.fresh_product(f"with_{skin}")
    (folder / "Quenlox.ini").write_bytes(f"[Main]\r\nX=1500\r\nY=1500\r\nTitleMode=1\r\nSkinName={skin}\r\n"
                                         f"FileName={s.windows_path(tone(s))}\r\n{more}".encode("cp932"))
    return folder


def start(s, skin, *switches, more="", scale=1):
    program = s.start_product(*switches, folder=with_skin(s, skin, more))
    return program, MainWindow(s, skin, scale)


def test_each_skin_is_shown_with_its_outline_buttons_and_texts(s):
    for name in NAMES:
        program, main = start(s, name, "/p")
        s.equal(main.window.place[2:], main.skin.size, f"size of {name}")
        s.wait_sound()
        main.shot(name)
        for button in (*PLAYBACK, *COMMANDS):
            assert main.shows_button(button), f"{name}: {button}"
        # Corners lie outside the outline: the root window is what is there.
        x, y, width, height = main.window.place
        s.equal(s.driver.window_at(x, y)[1] == main.window.handle, False, f"{name}: the corner belongs to the window")
        main.end(program)


def test_a_held_button_shows_its_pressed_picture_and_acts_only_when_released_on_it(s):
    for name in NAMES:
        program, main = start(s, name)
        for button in ("play", "next", "list"):
            x, y = main.middle(main.skin.button(button))
            s.driver.move(x, y)
            s.driver.press()
            s.wait_until(lambda: main.shows_button(button, pressed=True), 3, f"{name}: {button} is shown pressed")
            main.shot(f"{name}-{button}-held")
            s.driver.move(x, y + 200)
            s.driver.release()
            s.wait_until(lambda: main.shows_button(button), 3, f"{name}: {button} is shown released")
        s.pause(0.4)
        assert s.listen(0.3).is_silent(), f"{name}: a button released elsewhere has played"
        s.equal([w.title for w in s.driver.windows() if w.visible and w.title == "プレイリスト"], [], "windows opened")
        main.end(program)


def test_the_operation_panel_takes_the_place_of_the_buttons_where_a_skin_has_one(s):
    for name in NAMES:
        program, main = start(s, name)
        main.menu()
        item = next(i for i in s.driver.popup() if i.text.startswith("操作パネルモード"))
        s.equal(item.enabled, main.skin.panel is not None, f"{name}: the panel can be chosen")
        if not item.enabled:
            s.driver.keys("esc")
            main.end(program)
            continue
        s.driver.choose(item.text)
        panel = Image.open(main.skin.package / "main_panel.bmp")
        x, y, width, height = main.skin.panel
        free = height * 2 // 3  # display C of hakuji lies over the lowest part
        s.wait_until(lambda: main.shows((x, y, width, free), panel.crop((0, 0, width, free))), 3, f"{name}: the panel is shown")
        main.shot(f"{name}-panel")
        s.driver.click(*main.middle((x, y, width // 7, height)))
        s.wait_sound()
        main.shot(f"{name}-panel-playing")
        main.end(program)


def test_a_skin_is_shown_at_twice_its_size_and_its_hits_with_it(s):
    for name in NAMES[:2]:
        program, main = start(s, name, more="[Option]\r\nSkinScale=2\r\n", scale=2)
        s.equal(main.window.place[2:], tuple(2 * side for side in main.skin.size), "size")
        main.press("play")
        s.wait_sound()
        assert main.shows_button("pause"), "pause at twice its size"
        main.shot(f"{name}-twice")
        main.end(program)


@real_time
def test_the_skin_is_changed_from_the_menu_while_the_sound_goes_on(s):
    mark = s.sound_mark()
    program, main = start(s, "default", "/p")
    s.wait_sound(since=mark)
    for name in ("hakuji", "obi", "Default"):
        main.menu("スキンの変更(S)", name)
        main.skin = Skin(name.lower())
        s.wait_until(lambda: main.refresh().place[2:] == main.skin.size, 5, f"the window has the size of {name}")
        s.pause(0.5)
        main.shot(f"changed-to-{name}")
    heard = s.captured(mark).trimmed()
    s.equal(heard.gaps(), [], "gaps")
    s.near(heard.frequency(), 440, 1, "frequency in Hz")
    main.end(program)
    ini = (s.dir / "with_default/Quenlox.ini").read_bytes().decode("cp932")
    assert "SkinName=default" in ini, "the chosen skin is kept"


def test_a_broken_package_is_told_and_the_default_one_stands_in(s):
    folder = with_skin(s, "broken")
    broken = folder / "skin/broken"
    shutil.copytree(folder / "skin/hakuji", broken)
    (broken / "hakuji.tsk").rename(broken / "broken.tsk")
    (broken / "hakuji.rgn").unlink()
    program = s.start_product(folder=folder)
    dialog = s.driver.wait_window(class_name="#32770")
    s.screenshot("region-missing")
    texts = " ".join(control.title for control in dialog.controls())
    assert "Skinの矩形データが見つかりません" in texts, texts
    dialog.command(1)
    main = MainWindow(s, "hakuji")
    main.shot("without-region")
    main.end(program)

    (broken / "broken.tsk").write_bytes(b"[Main]\r\nVer=3\r\n")
    program = s.start_product(folder=folder)
    dialog = s.driver.wait_window(class_name="#32770")
    s.screenshot("too-old")
    dialog.command(1)
    main = MainWindow(s, "default")
    s.equal(main.window.place[2:], main.skin.size, "size of the default skin")
    main.end(program)
