"""The main window: volume, menus, notification area, dropped files, title animation, and where and how it starts."""

import os

from harness import material
from harness.scenario import real_time
from harness.skin import MainWindow, TITLE

TOPMOST = 0x8  # extended window style
TRAY = "Wine System Tray"
LONG_TITLE = "とても長い曲の名前がここを右から左へゆっくりと流れていく"


def start(s, *arguments, settings="", name="program", place="X=1500\r\nY=1500\r\n"):
    folder = s.fresh_product(name)
    (folder / "Quenlox.ini").write_bytes(f"[Main]\r\n{place}{settings}".encode("cp932"))
    return s.start_product(*arguments, folder=folder), folder


def tone(s, pitch=440, seconds=40.0, name="tone"):
    return material.write_mp3(s.material / f"{name} {pitch}.mp3", material.tone(pitch, seconds), "-b", "64")


def click_icon(s, button="left"):
    """Clicks the icon in the small window that stands for the notification area here."""
    s.driver.wait_window(title=TRAY).control(class_name="__winex11_tray_icon").refreshed().click(button=button)


@real_time
def test_the_volume_follows_bar_and_wheel_and_is_heard(s):
    program, _ = start(s, tone(s))
    main = MainWindow(s)
    s.wait_sound()
    x, y, width, height = main.skin.volume_bar
    full = s.listen(0.3).level_at(440)

    def at(percent):
        s.driver.click(main.refresh().x + x + width // 2, main.window.y + y + round(height * (1 - percent / 100)))
        s.pause(0.4)
        return s.listen(0.3).level_at(440)

    main.shot("volume-full")
    levels = {percent: at(percent) for percent in (100, 50, 20, 80)}
    main.shot("volume-80")
    print("    level at", {percent: f"{level:.4f}" for percent, level in levels.items()}, f"before {full:.4f}")
    assert levels[20] < levels[50] * 0.8 < levels[80] * 0.8 < levels[100], levels
    for _ in range(6):
        s.driver.wheel(*main.middle(main.skin.label("title")), -1)
    s.pause(0.4)
    turned = s.listen(0.3).level_at(440)
    s.near(turned, levels[50], 0.02, "level after six notches down from 80")
    for _ in range(20):
        s.driver.wheel(*main.middle(main.skin.label("title")), 1)
    s.wait_until(lambda: abs(s.listen(0.3).level_at(440) - levels[100]) < 0.02, 4, "it is loud again")
    main.end(program)


def test_the_main_menu_opens_with_its_sub_menus_and_its_commands_act(s):
    program, folder = start(s, tone(s), settings="[List]\r\nX=1500\r\nY=5000\r\n")
    main = MainWindow(s)
    main.menu()
    texts = [item.text for item in s.driver.popup() if item.place[2] and not item.separator]
    s.equal(texts[:9], ["常に手前に表示(T)", "操作パネルモード(P)", "スキンの変更(S)", "タイトルアニメーション(A)", "オシロ・スペアナ表示(O)",
                        "グライコ(G)", "タグ情報(I)", "ファイル変換(C)", "バージョン情報(V)"], "menu")
    s.equal(texts[-1], "Quenloxの終了(Q)", "last item")
    s.driver.choose("スキンの変更(S)")
    s.wait_until(lambda: any(i.text == "hakuji" and i.place[2] for i in s.driver.popup()), 5, "the skins")
    s.screenshot("menu")
    s.equal([(i.text, i.checked) for i in s.driver.popup() if i.place[2]][-3:], [("Default", True), ("hakuji", False), ("obi", False)],
            "skins")
    s.driver.keys("esc")
    s.driver.keys("esc")
    s.wait_until(lambda: not s.driver.find(class_name="#32768"), 3, "the menu is closed")
    assert not main.refresh().extended_style & TOPMOST
    main.menu("常に手前に表示(T)")
    s.wait_until(lambda: main.refresh().extended_style & TOPMOST, 5, "the window is above the others")
    main.press("list")
    s.wait_until(lambda: s.driver.find(title="プレイリスト*"), 5, "the play list")
    assert s.driver.find(title="プレイリスト*").extended_style & TOPMOST, "a window shown later is above the others too"
    s.screenshot("on-top")
    main.menu("常に手前に表示(T)")
    s.wait_until(lambda: not main.refresh().extended_style & TOPMOST, 5, "the window is an ordinary one")
    assert not s.driver.find(title="プレイリスト*").extended_style & TOPMOST
    main.menu("Quenloxの終了(Q)")
    s.equal(program.wait_exit(), 0, "exit code")


@real_time
def test_the_program_lives_on_in_the_notification_area_and_comes_back(s):
    program, _ = start(s, tone(s))
    main = MainWindow(s)
    s.wait_sound()
    place = main.window.place
    main.press("mini")
    main.window.wait_closed()
    s.driver.wait_window(title=TRAY)
    s.screenshot("tray")
    s.pause(0.5)
    assert not s.listen(0.3).is_silent(), "it plays on"
    click_icon(s, "right")
    s.equal([item.text for item in s.driver.popup()], ["ﾒｲﾝ画面を表示", "Quenloxの終了"], "menu of the icon")
    s.screenshot("tray-menu")
    s.driver.choose("ﾒｲﾝ画面を表示")
    s.equal(s.driver.wait_window(title=TITLE).place, place, "place")
    s.wait_until(lambda: not s.driver.find(title=TRAY), 5, "the icon is gone")

    main.press("mini")
    main.window.wait_closed()
    click_icon(s)
    s.equal(s.driver.wait_window(title=TITLE).place, place, "place")
    main.press("mini")
    main.window.wait_closed()
    click_icon(s, "right")
    s.driver.choose("Quenloxの終了")
    s.equal(program.wait_exit(), 0, "exit code")
    assert not s.driver.find(title=TRAY), "no icon is left"


@real_time
def test_started_with_t_it_plays_from_the_notification_area(s):
    mark = s.sound_mark()
    program, _ = start(s, tone(s), "/pt")
    s.driver.wait_window(title=TRAY)
    s.wait_sound(since=mark)
    assert not s.driver.find(title=TITLE), "no window"
    click_icon(s)
    MainWindow(s).end(program)


@real_time
def test_a_dropped_file_plays_and_others_are_ignored(s):
    program, _ = start(s)
    main = MainWindow(s)
    note = s.material / "note.txt"
    note.write_text("no sound")
    s.drop_files(*main.middle(main.skin.label("title")), note)
    s.drop_files(*main.middle(main.skin.label("title")), tone(s, 660))
    s.wait_until(lambda: abs(s.listen(0.3).frequency() - 660) < 10, 8, "the dropped file is heard")
    main.shot("dropped")
    s.drop_files(*main.middle(main.skin.button("high")), tone(s, 880), tone(s, 440))
    s.wait_until(lambda: abs(s.listen(0.3).frequency() - 880) < 10, 8, "the first of several is heard")
    main.end(program)


def test_a_long_title_runs_when_it_is_told_to(s):
    program, folder = start(s, tone(s, name=LONG_TITLE), settings="[Option]\r\nAnimeMode=1\r\nAnimeTime=3\r\n")
    main = MainWindow(s)
    s.wait_sound()
    place = main.skin.label("title")
    seen = {main.look(place).tobytes()}
    main.shot("title-begin")
    for _ in range(20):
        s.pause(0.15)
        seen.add(main.look(place).tobytes())
    main.shot("title-later")
    assert len(seen) > 8, f"{len(seen)} different pictures of the title in 3 s"
    main.menu("タイトルアニメーション(A)")
    s.pause(0.4)
    still = main.look(place).tobytes()
    main.shot("title-still")
    s.pause(0.7)
    assert main.look(place).tobytes() == still, "the title stands"
    main.end(program)
    assert b"AnimeMode=0" in (folder / "Quenlox.ini").read_bytes()


def test_a_window_remembered_off_the_screen_comes_back_onto_it(s):
    for place in ("X=-30000\r\nY=-9000\r\n", "X=90000\r\nY=90000\r\n", "X=15300\r\nY=300\r\n"):
        program, _ = start(s, place=place)
        main = MainWindow(s)
        x, y, width, height = main.window.place
        assert 0 <= x <= 1024 - width and 0 <= y <= 768 - height, f"{place!r}: {main.window.place}"
        main.end(program)


@real_time
def test_it_runs_from_the_root_folder_of_a_drive(s):
    folder = s.fresh_product("root")
    (folder / "Quenlox.ini").write_bytes(b"[Main]\r\nX=1500\r\nY=1500\r\n")  # a first start shows the default skin only
    drive = s.session.prefix / "dosdevices/r:"
    drive.unlink(missing_ok=True)
    os.symlink(folder, drive)
    mark = s.sound_mark()
    program = s.start("R:\\Quenlox.exe", tone(s, 550), "/p", cwd=folder)
    main = MainWindow(s)
    s.wait_sound(since=mark)
    main.menu("スキンの変更(S)", "hakuji")
    s.wait_until(lambda: main.refresh().place[2] == 300, 5, "the other skin")
    main.end(program)
    text = (folder / "Quenlox.ini").read_bytes().decode("cp932")
    assert "SkinName=hakuji" in text, text
