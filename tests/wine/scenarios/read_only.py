"""A program folder that nobody may write to: settings are kept in the user's own folder. Files that are read only."""

from wine_harness.product import Product
FILE_RIGHTS_COUNT = True
PLACE = (100, 50)


def user_folder(s):
    user = next(p for p in (s.session.prefix / "drive_c/users").iterdir() if p.name != "Public")
    return user / "AppData/Roaming/Quenlox"


def moved(s, folder, place):
    """Starts the program, which must stand at a place, moves its window and closes it; returns the new place."""
    player = Product(s, folder=folder, skin="obi")  # the skin that was delivered as the chosen one
    s.equal(player.window.place[:2], place, "place of the window")
    x, y, width, _ = player.window.place
    s.driver.drag(x + width // 2, y + 4, x + width // 2 + 20, y + 44)
    s.wait_equal(lambda: player.refresh().place[:2], (x + 20, y + 40), "place of the moved window")
    player.end()
    return x + 20, y + 40


def test_settings_go_to_the_user_and_begin_with_those_that_were_delivered(s):
    folder = s.fresh_product("read only")
    (folder / "Quenlox.ini").write_text(f"[Main]\r\nX={PLACE[0] * 15}\r\nY={PLACE[1] * 15}\r\nSkinName=obi\r\nMine=1\r\n", newline="")
    (folder / "Quenlox.m3u").write_text("#ListA\r\nC:\\tune.mp3\r\n", newline="")
    before = {p: p.read_bytes() for p in folder.iterdir() if p.is_file()}
    folder.chmod(0o555)
    try:
        place = moved(s, folder, PLACE)
        own = user_folder(s) / "Quenlox.ini"
        text = own.read_text("cp932")
        for line in (f"X={place[0] * 15}", "SkinName=obi", "Mine=1"):
            assert line in text.splitlines(), text
        moved(s, folder, place)  # the user's own counts from now on
        s.equal({p.name for p in user_folder(s).iterdir()}, {"Quenlox.ini"}, "what the user's folder holds")
        s.equal({p: p.read_bytes() for p in folder.iterdir() if p.is_file()}, before, "files beside the program")
    finally:
        folder.chmod(0o755)


def test_what_cannot_be_written_at_the_end_is_said_and_can_be_tried_again(s):
    player = Product(s, ini="[Main]\nX=750\n[Option]\nSaveCheck=1\n", m3u="#ListA\nC:\\gone.mp3\n")
    window = player.open("プレイリスト(L)", "プレイリスト")
    window.control("SysListView32").click(20, 30)
    s.driver.keys("delete")
    kept = {name: player.folder / f"Quenlox.{name}" for name in ("ini", "m3u")}
    for file in kept.values():
        file.chmod(0o444)
    player.refresh().close()
    texts = "Quenlox.ini", "読み取り専用", "もう一度保存しますか"
    s.driver.wait_window(title="Quenlox", class_name="#32770")
    s.screenshot("not-saved")
    s.answer(*texts, button=6)
    kept["ini"].chmod(0o644)
    s.answer(*texts, button=6)
    s.answer("Quenlox.m3u", "もう一度保存しますか", button=7)
    s.answer("プレイリストを別のファイルに保存しますか", button=6)
    s.file_dialog(s.material / "saved.m3u")
    s.equal(player.program.wait_exit(), 0, "exit code")
    assert "ListNo=" in player.kept(), "the settings are written"
    assert "gone" in player.kept("m3u") and (s.material / "saved.m3u").read_bytes() == b""
