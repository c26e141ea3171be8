"""The tag editor: editing while the file plays, renaming, one field for many, and failures."""

import contextlib
import pathlib
import shutil

from mutagen.id3 import ID3

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time

TITLE = "タグ情報*"
STEPS = (300, 500, 700, 900, 1100, 1300, 1500, 1700, 1900, 2100)


def open_editor(s, player):
    window = player.open("タグ情報(I)", TITLE)
    s.driver.drag(window.x + 60, window.y + 10, 210, 200)
    s.wait_equal(lambda: window.refreshed().place[:2], (150, 190), "place of the window")
    return window.refreshed()


def field(window, caption):
    """The box in the row of a label or a button, the nearest to it."""
    label = window.control(title=caption)
    row = [c for c in window.controls() if c.class_name == "Edit" and c.y <= label.y + label.height // 2 <= c.y + c.height]
    return min(row, key=lambda c: abs(c.x - label.x))


def name_box(window):
    return field(window, "名前の変更")


def song(s, name, title="First", seconds=2.0):
    return material.write_mp3(s.material / name, material.tone(440, seconds), "--tt", title, "--ta", "Anna")


def audio(path):
    """The bytes of an MP3 file without its tags."""
    data = pathlib.Path(path).read_bytes()
    if data[:3] == b"ID3":
        size = data[6] << 21 | data[7] << 14 | data[8] << 7 | data[9]
        data = data[10 + size:]
    return data[:-128] if data[-128:-125] == b"TAG" else data


def is_open(file):
    """Whether any process has the file open."""
    for link in pathlib.Path("/proc").glob("[0-9]*/fd/*"):
        with contextlib.suppress(OSError):
            if link.readlink() == file:
                return True
    return False


@real_time
def test_what_is_edited_while_it_plays_is_saved_and_the_sound_goes_on(s):
    file = material.write_mp3(s.material / "steps.mp3", material.steps(STEPS, 2.0), "--tt", "First", "--ta", "Anna")
    before = audio(file)
    player = Product(s, file, "/p")
    window = open_editor(s, player)
    s.wait_equal(lambda: field(window, "タイトル").text(), "First", "title")
    s.equal(name_box(window).text(), "(Anna) First.mp3", "proposed name")
    s.wait_sound()
    s.wait_until(lambda: s.listen(0.3).frequency() > 650, "the third tone")
    field(window, "タイトル").set_text("夜明けの歌 😀")
    comment = "とても長い注釈、" * 210
    field(window, "コメント").set_text(comment)
    s.wait_equal(lambda: name_box(window).text(), "(Anna) 夜明けの歌 😀.mp3", "proposed name")
    mark = s.sound_mark()
    window.press("保存")
    window.wait_text("保存しました")
    s.wait_sound()
    assert s.listen(0.5).frequency() > 650, "the sound goes on where it was"
    heard = s.captured(mark)
    assert all(f > 650 or f < 50 for _, f in heard.frequencies(0.1)), heard.frequencies(0.1)
    tags = ID3(file)
    s.equal(str(tags["TIT2"]), "夜明けの歌 😀", "title in the file")
    s.equal(str(tags["TPE1"]), "Anna", "artist in the file")
    s.equal(str(tags.getall("COMM")[0]), comment, "comment of 5 040 bytes in the file")
    s.equal(audio(file), before, "sound in the file")
    player.end()


def test_renaming_takes_the_lists_along_and_what_fails_is_said(s):
    file = song(s, "before.mp3")
    taken = song(s, "taken.mp3", "Other")
    listed = s.windows_path(file)
    player = Product(s, file, m3u="".join(f"#List{letter}\n{listed}\n" for letter in "ABC"))
    window = open_editor(s, player)
    for name, message in (("  ", "ファイル名が不正です"), ("() x.mp3", "ファイル名が不正です"),
                          ("a?b.mp3", "ファイル名変換エラー"), ("taken.mp3", "ファイル名変換エラー")):
        name_box(window).set_text(name)
        window.press("名前の変更")
        s.answer(message)
        assert file.exists() and taken.exists(), name
    name_box(window).set_text("改名した曲 é.mp3")
    window.press("名前の変更")
    window.wait_text("名前を変更しました")
    renamed = file.with_name("改名した曲 é.mp3")
    assert renamed.exists() and not file.exists()
    player.end()
    text = player.kept("m3u")
    s.equal(text.count("改名した曲"), 2, "rows with the new name")
    s.equal(text.count("before.mp3"), 1, "rows with the old name, of list C")


def test_a_file_that_cannot_be_written_stays_whole_and_the_reason_is_said(s):
    file = song(s, "guarded.mp3")
    original = file.read_bytes()
    player = Product(s, file)
    window = open_editor(s, player)
    file.chmod(0o444)
    field(window, "タイトル").set_text("Changed")
    window.press("保存")
    s.answer("読み取り専用か、ほかのプログラムで使用中です")
    s.equal(file.read_bytes(), original, "the file")
    s.equal(field(window, "タイトル").text(), "Changed", "what was typed")
    file.chmod(0o644)

    window.press("閉じる")
    s.answer("タグの変更を保存しますか", button=2)  # cancel
    window.press("閉じる")
    s.answer("タグの変更を保存しますか", button=7)  # no
    window.wait_closed()
    s.equal(file.read_bytes(), original, "the file")
    player.end()


def test_one_field_goes_to_every_selected_row_of_the_play_list(s):
    # The first one plays, and the library has opened the second, which follows it.
    files = [song(s, f"many{i}.mp3", f"Title {i}", 120.0) for i in range(3)]
    player = Product(s, m3u="\n".join(["#ListA", *map(s.windows_path, files), ""]), ini="[Main]\nPlayMode=2\n[List]\nX=0\nY=4500\nShow=1\n")
    view = s.driver.wait_window(title="プレイリスト").list_view()
    s.wait_equal(lambda: len(view.items()), 3, "rows")
    view.click_item(0, count=2)
    s.driver.keys("ctrl+a")
    s.wait_equal(view.selected_items, [0, 1, 2], "selected rows")
    window = open_editor(s, player)
    window.press("次 ▶")
    s.wait_equal(lambda: field(window, "タイトル").text(), "Title 1", "the second row")
    s.wait_until(lambda: is_open(files[1]), "it is handed over")
    field(window, "コメント").set_text("次の曲")
    window.press("保存")
    window.wait_text("保存しました")
    field(window, "アルバム").set_text("全集")
    window.press("実行")
    s.answer("3曲", button=6)  # yes
    window.wait_text("3曲に書き込みました")
    s.screenshot("many", window)
    for i, file in enumerate(files):
        s.equal((str(ID3(file)["TALB"]), str(ID3(file)["TIT2"])), ("全集", f"Title {i}"), file.name)
    player.end()


def test_many_files_are_changed_until_it_is_stopped_and_all_of_it_is_taken_back(s):
    folder = s.material / "many"
    folder.mkdir()
    first = material.write_mp3(folder / "00 R&B.mp3", material.tone(440, 2.0))
    files = [first, *(folder / f"{i:02} song.mp3" for i in range(1, 400))]
    for file in files[1:]:
        shutil.copy(first, file)
    before = first.read_bytes()

    def changed():
        return sum(file.read_bytes() != before for file in files)
    player = Product(s, first)
    window = open_editor(s, player)
    view = window.list_view()
    s.drop_files(*view.point(), *files)
    s.wait_equal(lambda: len(view.items()), 400, "rows")
    field(window, "アルバム").set_text("全集")
    window.press("実行")
    s.answer("400曲", button=6)
    window.press("中止")
    window.wait_text("中止しました")
    s.screenshot("stopped", window)
    some = changed()
    assert 0 < some < 400, some
    window.press("実行")
    s.answer("400曲", button=6)
    window.wait_text("400曲に書き込みました", limit=90)
    s.equal({str(ID3(file)["TALB"]) for file in files}, {"全集"}, "albums")
    s.screenshot("all", window)
    for left in (some, 0):
        window.press("書き込みを取消")
        window.wait_text("元のタグを戻しました", limit=90)
        s.wait_equal(changed, left, "files that are not as they were")
    player.end()
