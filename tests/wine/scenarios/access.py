"""What the main window tells assistive programs, and media and menu keys."""

from wine_harness import material
from wine_harness.driver import Part
from wine_harness.product import Product
from wine_harness.skin import COMMANDS, LABELS, PLAYBACK

SCREEN = "1280x1024"
NAMES = ("再生／停止", "一時停止", "前の曲", "次の曲", "音程を下げる", "音程を上げる", "速度変更",
         "プレイリスト", "オプション", "タグ情報", "ファイル変換", "ヘルプ", "通知領域に入れる", "終了")


def start(s, scale=1):
    song = material.write_mp3(s.material / "夜明けの歌.mp3", material.tone(440, 120.0), "-b", "64")
    return Product(s, scale=scale, ini=f"[Main]\nX=1500\nY=1500\nFileName={s.windows_path(song)}\n[Option]\nSkinZoom={scale}00\n")


def test_every_thing_in_the_window_has_its_name_role_and_place(s):
    for scale in (1, 2):
        main = start(s, scale)
        parts = main.window.parts()
        buttons = {part.name: part for part in parts if part.role == Part.BUTTON}
        s.equal(set(buttons), set(NAMES), "buttons")
        x, y, _, _ = main.window.place
        for name, key in zip(NAMES, (*PLAYBACK, *COMMANDS)):
            left, top, width, height = (side * scale for side in main.skin.button(key))
            s.equal(buttons[name].place, (x + left, y + top, width, height), f"place of {name}")
            s.equal(main.window.part_at(*main.middle(main.skin.button(key))), buttons[name].number, f"what is at {name}")
        assert all(part.action and part.enabled and not part.pressed for part in buttons.values()), buttons
        s.equal(main.window.part("再生位置").role, Part.SLIDER, "seek bar")
        s.equal((main.window.part("音量").role, main.window.part("音量").value), (Part.SLIDER, "100%"), "volume")
        texts = {part.description: part.name for part in parts if part.role == Part.TEXT and part.description}
        s.equal([texts[key] for key in ("曲名", "状態", "再生モード")], ["夜明けの歌.mp3", "STOP", "SINGLE"], "texts")
        s.equal(len(texts), sum(main.skin.label(name) is not None for name in LABELS), "labels")
        s.equal(main.window.part_at(x - 5, y), -1, "what is beside the window")
        s.equal([parts[0].beside(5), parts[1].beside(6), parts[-1].beside(5)], [2, 1, 0], "neighbours")
        main.end()


def test_actions_and_values_reach_the_player(s):
    main = start(s)

    def status():
        return next(part.name for part in main.window.parts() if part.description == "状態")

    main.window.part("再生／停止").act()
    s.wait_until(lambda: status() == "PLAY", "it plays")
    s.wait_sound()
    main.window.part("音程を上げる").act()
    s.wait_until(lambda: status() == " PLAY↑" and main.window.part("音程を上げる").pressed, "higher, and the button says so")
    main.window.part("再生位置").set_value("50%")
    s.wait_until(lambda: 49 <= int(main.window.part("再生位置").value[:-1]) <= 60, "the middle of the track")
    main.window.part("音量").set_value("30")
    s.wait_until(lambda: main.window.part("音量").value == "30%", "volume")
    main.window.part("SINGLE").act()
    s.wait_until(lambda: any(part.name == "REPEAT" for part in main.window.parts()), "the next mode")
    main.window.part("再生／停止").act()
    s.wait_until(lambda: status() == "STOP", "it stops")
    main.menu("操作パネルモード(P)")
    panel = tuple(a + b for a, b in zip(main.window.place[:2], main.skin.panel))
    s.wait_equal(lambda: main.window.part("再生／停止").place[:2], panel, "the first button is the first column of the panel")
    main.window.part("再生／停止").act()
    s.wait_until(lambda: status() == "PLAY", "it plays from the panel")
    main.window.part("終了").act()
    s.equal(main.program.wait_exit(), 0, "exit code")


def test_media_keys_and_the_menu_key_act_in_every_window(s):
    main = start(s)
    main.press("list")
    lists = s.driver.wait_window(title="プレイリスト")
    for window, command, sounds in ((main.window, 14, True), (lists, 14, False), (main.window, 46, True), (lists, 13, False)):
        window.send(0x319, window.handle, command << 16)  # WM_APPCOMMAND
        s.wait_sound() if sounds else s.wait_silence()
    main.refresh().activate()
    s.driver.keys("shift+f10")
    assert any(item.text == "常に手前に表示(T)" for item in s.driver.popup())
    s.screenshot("menu-by-key")
    s.driver.leave_menu()
    main.end()
