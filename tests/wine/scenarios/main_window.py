"""The main window: volume, menus, notification area, dropped files, and how it starts."""

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time
from wine_harness.skin import MainWindow

PLACE = "[Main]\nX=1500\nY=1500\n"
TOPMOST = 0x8  # extended window style


def tone(s, pitch=440):
    return material.write_mp3(s.material / f"tone {pitch}.mp3", material.tone(pitch, 60.0), "-b", "64")


@real_time
def test_the_volume_follows_bar_and_wheel_and_is_heard(s):
    main = Product(s, tone(s), ini=PLACE)
    s.wait_sound()
    x, y, width, height = main.skin.volume_bar
    full = s.listen(0.3).level_at(440)

    def becomes(percent):
        s.wait_until(lambda: abs(s.listen(0.3).level_at(440) - full * percent / 100) < 0.02, f"the tone is heard at {percent} %")

    middle = main.middle((x, y, width, height))
    for beyond, percent in ((0, 50), (-height, 100), (height, 0)):
        s.driver.drag(*middle, middle[0], middle[1] + beyond)
        becomes(percent)
    for percent in (100, 0, 80):
        main.click((x, y + min(round(height * (1 - percent / 100)), height - 1), width, 1))
        becomes(percent)
    for notches, percent in ((-6, 50), (20, 100)):
        for _ in range(abs(notches)):
            s.driver.wheel(*main.middle(main.skin.label("title")), notches // abs(notches))
        becomes(percent)
    main.end()


def test_the_main_menu_opens_with_its_sub_menus_and_its_commands_act(s):
    main = Product(s, tone(s), ini=PLACE + "[List]\nX=1500\nY=5000\n")
    main.menu()
    texts = [item.text for item in s.driver.popup() if item.place[2] and not item.separator]
    s.equal(texts[:9], ["常に手前に表示(T)", "操作パネルモード(P)", "スキンの変更(S)", "タイトルアニメーション(A)", "オシロ・スペアナ表示(O)",
                        "グライコ(G)", "タグ情報(I)", "ファイル変換(C)", "バージョン情報(V)"], "menu")
    s.equal(texts[-1], "Quenloxの終了(Q)", "last item")
    s.driver.choose("スキンの変更(S)")
    s.wait_equal(lambda: [(i.text, i.checked) for i in s.driver.popup() if i.place[2] and not i.separator][-5:-2],
                 [("Default", True), ("hakuji", False), ("obi", False)], "skins")
    s.screenshot("menu")
    s.driver.leave_menu()

    def on_top(window):
        return bool(window.refreshed().extended_style & TOPMOST)
    assert not on_top(main.window)
    main.menu("常に手前に表示(T)")
    s.wait_until(lambda: on_top(main.window), "the window is above the others")
    main.press("list")
    lists = s.driver.wait_window(title="プレイリスト")
    s.wait_until(lambda: on_top(lists), "a window shown later is above the others too")
    s.screenshot("on-top")
    main.menu("常に手前に表示(T)")
    s.wait_until(lambda: not on_top(main.window) and not on_top(lists), "both are ordinary windows")
    main.menu("Quenloxの終了(Q)")
    s.equal(main.program.wait_exit(), 0, "exit code")


@real_time
def test_the_program_lives_on_in_the_notification_area_and_comes_back(s):
    main = Product(s, tone(s), ini=PLACE)
    s.wait_sound()
    place = main.window.place

    def hide():
        main.press("mini")
        main.window.wait_closed()
        s.wait_until(s.tray, "an icon")
    hide()
    assert not s.listen(0.8).part(0.5).is_silent(), "it plays on"
    s.click_icon("right")
    s.equal([item.text for item in s.driver.popup() if not item.separator],
            ["ﾒｲﾝ画面を表示", "停止(P)", "一時停止(U)", "前の曲(B)", "次の曲(N)", "Quenloxの終了"], "menu of the icon")
    s.driver.choose("ﾒｲﾝ画面を表示")
    s.wait_equal(lambda: main.refresh().place, place, "place")
    s.wait_until(lambda: not s.tray(), "the icon is gone")
    hide()
    s.click_icon()
    s.wait_equal(lambda: main.refresh().place, place, "place")
    hide()
    s.click_icon("right")
    s.driver.choose("Quenloxの終了")
    s.equal(main.program.wait_exit(), 0, "exit code")
    s.wait_until(lambda: not s.tray(), "no icon is left")


@real_time
def test_the_list_comes_up_without_the_keyboard_and_with_t_nothing_but_the_icon(s):
    songs = tone(s), tone(s, 660)
    rows = "#ListA\n" + "".join(f"{s.windows_path(song)}\n" for song in reversed(songs))
    main = Product(s, songs[0], ini=PLACE + "[List]\nShow=1\nX=1500\nY=5000\n", m3u=rows)
    lists = s.driver.wait_window(title="プレイリスト")
    s.wait_tone(440)
    s.screenshot("start-with-list")
    s.driver.keys("alt+right")
    s.wait_tone(660)
    main.end()
    program = s.start_product("/pt", folder=main.folder)
    s.wait_until(s.tray, "an icon")
    s.wait_tone(660)
    s.equal([str(w) for w in s.driver.windows() if w.visible and w.class_name.startswith("Quenlox")], [], "windows")
    s.click_icon()
    back = MainWindow(s)
    s.equal(s.driver.wait_window(title="プレイリスト").place, lists.place, "place of the list")
    s.driver.keys("alt+left")
    s.wait_tone(440)
    back.end(program)
    assert "Show=1" in main.kept()


@real_time
def test_a_dropped_file_plays_and_others_are_ignored(s):
    main = Product(s, ini=PLACE)
    note = s.material / "note.txt"
    note.write_text("no sound")
    s.drop_files(*main.middle(main.skin.label("title")), note)
    s.drop_files(*main.middle(main.skin.label("title")), tone(s, 660))
    s.wait_tone(660)
    s.drop_files(*main.middle(main.skin.button("high")), tone(s, 880), tone(s, 440))
    s.wait_tone(880)
    main.end()
