"""A crash leaves a note, a dump, the settings of before and the lists as they were saved quietly."""

import re

from harness import material

LIMIT = 240
TITLE = "Quenlox  Ver 1.0.0"
# how, exception code, what the note says of it
FAILURES = [("fault", "C0000005", "access violation"), ("overflow", "C00000FD", "stack overflow"),
            ("break", "80000003", "breakpoint"), ("abort", "40000015", "abort")]


def notes(s):
    return sorted(s.session.prefix.glob("drive_c/users/*/AppData/Local/Quenlox/crash/*"))


def new_notes(s, before):
    """The text and the dump of the one crash since, once both are complete."""
    new = [path for path in notes(s) if path not in before]
    return new if len(new) == 2 and "calls" in new[1].read_text("ascii") else None


def test_every_kind_of_crash_leaves_a_note_and_a_dump_and_files_whole(s):
    folder = s.fresh_product("crashing")
    song = material.write_mp3(s.material / "秘密 secret.mp3", material.tone(440, 30))
    listed = f"#ListA\r\n{s.windows_path(song)}\r\n".encode("cp932")
    (folder / "Quenlox.m3u").write_bytes(listed)
    program = s.start_product(folder=folder)
    s.driver.wait_window(title=TITLE).close()
    program.wait_exit()
    settings = (folder / "Quenlox.ini").read_bytes()
    s.equal(notes(s), [], "notes of a program that ended well")

    for how, code, words in FAILURES:
        before = notes(s)
        program = s.start_product(song, "/p", folder=folder)
        window = s.driver.wait_window(title=TITLE)
        s.wait_sound()
        window.fail(how)
        program.wait_exit(30)
        dump, text = s.wait_until(lambda: new_notes(s, before), 5, "the note and the dump")
        s.equal(dump.read_bytes()[:4], b"MDMP", "beginning of the dump")
        note = text.read_text("ascii")
        print("    " + note.replace("\n", "\n    ") if how == "fault" else f"    {how}: dump of {dump.stat().st_size} bytes")
        for part in ("Quenlox 1.0.0 ended", f"0x{code}", words, "open mp3\n", "play 1", "dump    beside this file"):
            assert part in note, f"{part!r} is missing in\n{note}"
        assert re.search(r"^time    20\d\d-\d\d-\d\d \d\d:\d\d:\d\d$", note, re.M), note
        assert "secret" not in note, "the note names a file"
        s.equal((folder / "Quenlox.m3u").read_bytes(), listed, "list file")
        s.equal((folder / "Quenlox.ini").read_bytes(), settings, "settings")

    # The next start is like any other, and of many notes the newest stay.
    old = notes(s)[0].with_name("Quenlox-20200101-000000-{}.txt")
    for number in range(4):
        old.with_name(old.name.format(number)).write_text("")
    before = notes(s)
    program = s.start_product(folder=folder)
    window = s.driver.wait_window(title=TITLE)
    s.equal([w.title for w in s.driver.windows() if w.class_name == "#32770" and w.visible], [], "message boxes")
    window.fail("fault")
    program.wait_exit(30)
    s.wait_until(lambda: new_notes(s, before), 5, "the note")
    s.equal(len([path for path in notes(s) if path.suffix == ".txt"]), 5, "notes kept")


def test_a_changed_list_is_saved_quietly_and_outlives_a_crash(s):
    folder = s.fresh_product("quiet")
    song = s.windows_path(material.write_mp3(s.material / "song.mp3", material.tone(440, 1)))
    (folder / "Quenlox.m3u").write_bytes(f"#ListA\r\nC:\\gone.mp3\r\n{song}\r\n".encode("cp932"))
    (folder / "Quenlox.ini").write_bytes(b"[List]\r\nShow=1\r\nX=0\r\nY=2400\r\n")
    settings = (folder / "Quenlox.ini").read_bytes()
    program = s.start_product(folder=folder)
    window = s.driver.wait_window(title="プレイリスト")
    view = next(c for c in window.controls() if c.class_name == "SysListView32" and c.visible)
    window.activate()
    view.click_item(0)
    s.driver.keys("delete")
    wanted = f"#ListA\r\n{song}\r\n".encode("cp932")
    s.pause(10)
    assert (folder / "Quenlox.m3u").read_bytes() != wanted, "saved before half a minute has passed"
    s.wait_until(lambda: (folder / "Quenlox.m3u").read_bytes() == wanted, 40, "the list is saved quietly")
    s.equal((folder / "Quenlox.ini").read_bytes(), settings, "settings, which are written at the end only")
    program.kill()
    s.equal((folder / "Quenlox.m3u").read_bytes(), wanted, "list file")
