"""A program folder that nobody may write to: settings are kept in the user's own folder."""

import struct

FILE_RIGHTS_COUNT = True
TITLE = "Quenlox  Ver *"
MODE = (240, 32)  # the play mode in the skin obi's main window, pixels


def user_folder(s):
    user = next(p for p in (s.session.prefix / "drive_c/users").iterdir() if p.name != "Public")
    return user / "AppData/Roaming/Quenlox"


def one_run(s, folder, place):
    """Starts the program and closes it where it then is; returns its window's size."""
    program = s.start_product(folder=folder)
    window = s.driver.wait_window(title=TITLE)
    s.wait_until(lambda: s.driver.find(title=TITLE).place[:2] == place, 5, f"the window at {place}")
    size = window.place[2:]
    x, y = place
    s.driver.drag(x + size[0] // 2, y + 4, x + size[0] // 2 + 60, y + 44)
    s.wait_until(lambda: s.driver.find(title=TITLE).place[:2] != place, 5, "the window is moved")
    moved = s.driver.find(title=TITLE).place[:2]
    s.driver.find(title=TITLE).close()
    s.equal(program.wait_exit(), 0, "exit code")
    return size, moved


def test_settings_go_to_the_user_and_begin_with_those_that_were_delivered(s):
    folder = s.fresh_product("read only")
    (folder / "Quenlox.ini").write_text("[Main]\r\nX=1500\r\nY=750\r\nSkinName=obi\r\nMine=1\r\n", newline="")
    (folder / "Quenlox.m3u").write_text("#ListA\r\nC:\\tune.mp3\r\n", newline="")
    before = {p: p.read_bytes() for p in folder.iterdir() if p.is_file()}
    folder.chmod(0o555)
    try:
        size, moved = one_run(s, folder, (100, 50))
        picture = (folder / "skin/obi/main_back.bmp").read_bytes()
        s.equal(size, struct.unpack_from("<ii", picture, 18), "the size of the skin that was delivered as the chosen one")
        own = user_folder(s) / "Quenlox.ini"
        text = own.read_text("cp932")
        for line in (f"X={moved[0] * 15}", "SkinName=obi", "Mine=1"):
            assert line in text.splitlines(), text
        one_run(s, folder, moved)  # the user's own counts from now on
        s.equal({p.name for p in user_folder(s).iterdir()}, {"Quenlox.ini"}, "what the user's folder holds")
        s.equal({p: p.read_bytes() for p in folder.iterdir() if p.is_file()}, before, "files beside the program")
    finally:
        folder.chmod(0o755)
