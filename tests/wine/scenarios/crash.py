"""A crash leaves a note, a dump, the settings of before and the lists as they were saved quietly; the end of the session
of Windows leaves everything saved."""

import contextlib
import re
import subprocess

from wine_harness import material
from wine_harness.driver import DriverError
from wine_harness.product import Product
from wine_harness.scenario import ROOT

LIMIT = 240
QUERY_END, END = 0x11, 0x16  # WM_QUERYENDSESSION, WM_ENDSESSION
# how, exception code, what the note says of it
FAILURES = [("fault", "C0000005", "access violation"), ("overflow", "C00000FD", "stack overflow"),
            ("break", "80000003", "breakpoint"), ("abort", "40000015", "abort"), ("library", "C0000005", "writing 0x10")]
# What of the program is on the stack then, explained from the very build that failed.
EXPLAINED = {"abort": r"Aborted at crash_notes\.cpp:\d+", "library": r"vbmp3_getEncodeState at api_jobs\.cpp:\d+"}


def notes(s):
    return sorted(s.session.prefix.glob("drive_c/users/*/AppData/Local/Quenlox/crash/*"))


def new_notes(s, before):
    """The text and the dump of the one crash since, once both are complete."""
    new = [path for path in notes(s) if path not in before]
    return new if len(new) == 2 and "calls" in new[1].read_text("ascii") else None


def test_every_kind_of_crash_leaves_a_note_and_a_dump_and_files_whole(s):
    song = material.write_mp3(s.material / "秘密 secret.mp3", material.tone(440, 30))
    player = Product(s, folder=s.fresh_product("Mallory"), m3u=f"#ListA\n{s.windows_path(song)}\n")
    player.end()
    kept = player.kept(), player.kept("m3u")
    s.equal(notes(s), [], "notes of a program that ended well")

    for how, code, words in FAILURES:
        before = notes(s)
        player = Product(s, song, "/p", folder=player.folder)
        s.wait_sound()
        player.window.fail(how)
        player.program.wait_exit(90)
        dump, text = s.wait_until(lambda: new_notes(s, before), "the note and the dump")
        s.equal(dump.read_bytes()[:4], b"MDMP", "beginning of the dump")
        for name in ("secret", "秘密", "Mallory", "users\\", "drive_c"):
            for form in ("utf-8", "utf-16-le", "cp932"):
                assert name.encode(form) not in dump.read_bytes() + text.read_bytes(), f"{how}: {name!r} as {form}"
        note = text.read_text("ascii")
        for part in ("Quenlox 1.1.0", f"0x{code}", words, "open mp3\n", "play 1", "dump    beside this file"):
            assert part in note, f"{part!r} is missing in\n{note}"
        assert re.search(r"^time    20\d\d-\d\d-\d\d \d\d:\d\d:\d\d$", note, re.M), note
        if how in EXPLAINED:
            explained = subprocess.run([ROOT / "tools/explain_crash.py", text, "--symbols", ROOT / "build/win64"], check=True,
                                       capture_output=True, text=True).stdout
            assert re.search(EXPLAINED[how], explained), explained
        s.equal((player.kept(), player.kept("m3u")), kept, "settings and list file")

    # The next start is like any other, and of many notes the newest stay.
    old = notes(s)[0].with_name("Quenlox-20200101-000000-{}.txt")
    for number in range(4):
        old.with_name(old.name.format(number)).write_text("")
    before = notes(s)
    player = Product(s, folder=player.folder)
    s.equal([w.title for w in s.driver.windows() if w.class_name == "#32770" and w.visible], [], "message boxes")
    player.window.fail("fault")
    player.program.wait_exit(90)
    s.wait_until(lambda: new_notes(s, before), "the note")
    s.equal(len([path for path in notes(s) if path.suffix == ".txt"]), 5, "notes kept")


def test_a_changed_list_is_saved_quietly_and_outlives_a_crash(s):
    song = s.windows_path(material.write_mp3(s.material / "song.mp3", material.tone(440, 1)))
    settings, before, wanted = "[List]\nShow=1\nX=0\nY=2400\n", f"#ListA\nC:\\gone.mp3\n{song}\n", f"#ListA\n{song}\n"
    player = Product(s, ini=settings, m3u=before)
    window = s.driver.wait_window(title="プレイリスト")
    window.activate()
    window.list_view().click_item(0)
    s.driver.keys("delete")
    s.wait_equal(lambda: len(window.list_view().items()), 1, "rows")
    s.pause(10)
    s.equal(player.kept("m3u"), before, "the list file, before half a minute has passed")
    s.wait_until(lambda: player.kept("m3u") == wanted, "the list is saved quietly", 60)
    s.equal(player.kept(), settings, "settings, which are written at the end only")
    player.program.kill()
    s.equal(player.kept("m3u"), wanted, "list file")


def test_the_end_of_the_session_saves_everything_asks_nothing_and_hides_nothing(s):
    folder = s.material / "session"
    folder.mkdir()
    song = material.write_mp3(folder / "song.mp3", material.tone(440, 60), "--tt", "First")
    song.with_suffix(".lrc").write_text("[00:00]a line\n")
    long = material.endless_wave(folder / "long.wav")
    settings = "[Main]\nX=750\nY=8400\n[List]\nShow=1\nX=9900\nY=0\n[Lyrics]\nX=0\nY=0\n"
    rows = f"#ListA\n{s.windows_path(song)}\n"

    def menu(player):
        player.menu()
        s.driver.popup()
        return player.window

    def edit(player):
        window = player.open("タグ情報(I)", "タグ情報*")
        window.control("Edit", "First").set_text("Edited")
        window.close()
        s.driver.wait_window(class_name="#32770")  # it asks what becomes of the edit
        return window

    def encode(player):
        form = player.open("ファイル変換(C)", "ファイル変換")
        form.press("MP3エンコード")
        form.press("参照(S)...")
        s.file_dialog(long)
        form.press("変換開始")
        s.wait_until(lambda: list(folder.glob("*.tmp")), "the file is being made")
        return form

    cases = {"menu": menu, "list": lambda _: s.driver.wait_window(title="プレイリスト"), "lyrics": lambda _: s.driver.wait_window(title="歌詞"),
             "equalizer": lambda player: player.open("グライコ(G)", "グラフィックイコライザ"),
             "options": lambda player: player.open("オプション(N)", "オプション"), "convert": encode, "tag": edit}
    for name, bring in cases.items():
        player = Product(s, song, "/p", ini=settings, m3u=rows)
        for title in ("プレイリスト", "歌詞"):
            s.driver.wait_window(title=title)
        front = bring(player)
        for window in s.driver.windows():
            if window.process == front.process:
                s.equal((window.send(QUERY_END), window.send(END, 0)), (1, 0), "answers, as when another program refuses")
        if name == "tag":
            s.session.start("wineboot", "--end-session")
        else:
            with contextlib.suppress(DriverError):  # the process goes in the middle of it
                front.send(END, 1)
        player.program.wait_exit(10)  # the code does not count: Wine stumbles now and then over a process that ends while it plays
        for text in ("X=750\nY=8400", "Show=1", "DispLyrics=1", f"FileName={s.windows_path(song)}"):
            assert text in player.kept(), f"{name}: {text!r} is missing in\n{player.kept()}"
        s.equal(player.kept("m3u"), rows, f"{name}: list file")
        s.equal({path.name for path in folder.iterdir()}, {"long.wav", "song.lrc", "song.mp3"}, f"{name}: files")
        s.equal((player.folder / "Quenlox.log").exists(), name == "tag", f"{name}: note of lost edits")
    assert player.kept("log").endswith(f": {s.windows_path(song)}\n"), player.kept("log")
