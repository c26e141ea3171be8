"""The play-list window: filled from folders, files and M3U files, sorted, rearranged, exported, and played from."""

from harness import material
from harness.scenario import real_time
from harness.watch import Watch

SIZE = (1000, 600)
TWIPS = 15
NO_HEADER, SINGLE = 0x4000, 0x4  # styles of list views
GET_COUNT, GET_SELECTED, ENSURE_VISIBLE = 0x1004, 0x1032, 0x1013


def music(s, name="music"):
    """Five short files whose titles, artists and lengths stand in different orders, an M3U file and one that is none."""
    folder = s.material / name
    folder.mkdir(exist_ok=True)
    tracks = [("b.mp3", 500, 1.2, "Zebra", "Anna", "Live"), ("a.mp3", 700, 3.0, "apple", "Carl", "Fruit"),
              ("c.mp3", 900, 2.1, "Mango", "Bert", "Tree")]
    for file, frequency, seconds, title, artist, album in tracks:
        if not (folder / file).exists():
            material.write_mp3(folder / file, material.tone(frequency, seconds), "--tt", title, "--ta", artist, "--tl", album)
    material.write_wave(folder / "日本の曲.wav", material.tone(300, 1.0))
    material.write_midi(folder / "scale.mid", notes=(60, 62))
    (folder / "list.m3u").write_bytes("#EXTM3U\r\n./a.mp3\r\nmusic/b.mp3\r\na much longer line.mp3\r\n".encode("cp932"))
    (folder / "readme.txt").write_text("no media file")
    return folder


def start(s, folder, lists=None, fresh="program"):
    program_folder = s.fresh_product(fresh)
    (program_folder / "Quenlox.ini").write_bytes(
        f"[List]\r\nX=0\r\nY=2400\r\nSX={SIZE[0] * TWIPS}\r\nSY={SIZE[1] * TWIPS}\r\nShow=1\r\n"
        f"[Option]\r\nListType=1\r\nCurDir={s.windows_path(folder)}\r\n".encode("cp932"))
    if lists is not None:
        (program_folder / "Quenlox.m3u").write_bytes(lists.encode("cp932"))
    program = s.start_product(folder=program_folder)
    top = s.driver.wait_window(title="Quenlox  Ver 1.0.0")
    window = s.driver.wait_window(title="プレイリスト")
    window.activate()
    return program, top, window


def view(window):
    return next(c for c in window.controls() if c.class_name == "SysListView32" and c.visible and not c.style & NO_HEADER)


def names(window):
    return [row[4].rsplit("\\", 1)[-1] for row in view(window).items()]


def lists_on_disk(s, folder="program"):
    return (s.dir / folder / "Quenlox.m3u").read_bytes().decode("cp932").split("\r\n")


def end(s, program, top):
    top.close()
    s.equal(program.wait_exit(), 0, "exit code")


def browser(window):
    """(drives, filter, folders, files) of the browser."""
    boxes = [c for c in window.controls() if c.class_name == "SysListView32" and c.visible and c.style & NO_HEADER]
    combos = [c for c in window.controls() if c.class_name == "ComboBox" and c.visible]
    return combos[0], combos[1], next(b for b in boxes if b.style & SINGLE), next(b for b in boxes if not b.style & SINGLE)


def lines(box):
    return [row[0] for row in box.items()]


def test_all_files_of_the_browser_are_added_and_the_rows_show_their_tags(s):
    folder = music(s)
    program, top, window = start(s, folder)
    _, _, folders, files = browser(window)
    s.wait_until(lambda: lines(files) == ["a.mp3", "b.mp3", "c.mp3", "list.m3u", "scale.mid", "日本の曲.wav"], 5, "the files")
    s.equal(lines(folders)[folders.selected_items()[0]], "music", "folder")
    s.screenshot("browser", window)

    files.click(30, 10, button="right")
    s.driver.choose("全追加")
    s.driver.choose("リストA")
    s.wait_until(lambda: len(view(window).items()) == 8, 5, "the rows")
    s.wait_until(lambda: view(window).items()[0][:4] == ["apple", "Carl", "Fruit", "0:03"], 5, "the tags")
    rows = view(window).items()
    s.equal(rows[3][0], "apple", "title of the first entry of the M3U file")
    s.equal([r[0] for r in rows if r[4].endswith(".wav")], ["- no title -"], "title of a file without tag")
    s.equal([r[3] for r in rows if r[4].endswith("longer line.mp3")], ["----"], "time of a file that is not there")
    s.screenshot("added", window)
    end(s, program, top)
    written = lists_on_disk(s)
    s.equal(written[0], "#ListA", "marker")
    s.equal(len(written), 10, "lines")
    s.equal([line.rsplit("\\", 1)[-1] for line in written[1:5]], ["a.mp3", "b.mp3", "c.mp3", "a.mp3"], "files")


def menu_command(window, text):
    return next(item.id for item in window.menu() if item.text.startswith(text))


def paths(s, folder, *files):
    return "".join(s.windows_path(folder / f) + "\r\n" for f in files)


def header(window, column):
    """Clicks on a column's header."""
    list_view = view(window)
    left = sum(width for _, width in list_view.columns()[:column])
    list_view.click(left + 12, 12)


def test_headers_sort_and_the_list_file_stays_as_it_was(s):
    folder = music(s)
    content = "#ListA\r\n" + paths(s, folder, "b.mp3", "a.mp3", "c.mp3")
    program, top, window = start(s, folder, content)
    s.wait_until(lambda: [r[0] for r in view(window).items()] == ["Zebra", "apple", "Mango"], 5, "titles")
    for column, order in ((0, "acb"), (1, "bca"), (2, "abc"), (3, "bca"), (4, "abc"), (4, "cba")):
        s.pause(0.6)  # two clicks, not a double click
        header(window, column)
        s.wait_until(lambda: "".join(n[0] for n in names(window)) == order, 5, f"order {order} by column {column}")
    s.screenshot("sorted", window)
    end(s, program, top)
    s.equal((s.dir / "program" / "Quenlox.m3u").read_bytes().decode("cp932"), content, "list file")


def test_rows_are_moved_deleted_and_exported(s):
    folder = music(s)
    program, top, window = start(s, folder, "#ListA\r\n" + paths(s, folder, "a.mp3", "b.mp3", "c.mp3", "日本の曲.wav", "scale.mid"))
    s.wait_until(lambda: len(view(window).items()) == 5, 5, "rows")
    view(window).click_item(1)
    s.driver.keys("shift+down")
    s.equal(view(window).selected_items(), [1, 2], "selected rows")
    s.driver.keys("alt+down")
    s.wait_until(lambda: names(window) == ["a.mp3", "日本の曲.wav", "b.mp3", "c.mp3", "scale.mid"], 5, "the block has moved down")
    s.equal(view(window).selected_items(), [2, 3], "selected rows")
    s.screenshot("moved", window)
    for _ in range(3):
        s.driver.keys("alt+up")
    s.wait_until(lambda: names(window)[:2] == ["b.mp3", "c.mp3"], 5, "the block is at the top")

    x, y, _, _ = view(window).place
    view(window).click_item(4)
    s.equal(view(window).selected_items(), [4], "selected rows")
    s.driver.keys("delete")
    s.wait_until(lambda: len(view(window).items()) == 4, 5, "the row has gone")

    view(window).click_item(0, button="right")
    s.driver.choose("保存")
    s.file_dialog(s.dir / "exported.M3U")
    exported = s.dir / "exported.M3U"
    s.wait_until(exported.exists, 5, "the file is written")
    s.equal(exported.read_bytes().decode("cp932"), paths(s, folder, "b.mp3", "c.mp3", "a.mp3", "日本の曲.wav"), "exported rows")

    view(window).click_item(0, button="right")
    s.driver.choose("並替")
    s.driver.choose("ランダム")
    s.wait_until(lambda: view(window).selected_items() == [], 5, "nothing is selected")
    s.equal(sorted(names(window)), ["a.mp3", "b.mp3", "c.mp3", "日本の曲.wav"], "rows in any order")
    order = names(window)
    s.driver.keys("ctrl+a")
    s.equal(len(view(window).selected_items()), 4, "all selected")
    end(s, program, top)
    s.equal([line.rsplit("\\", 1)[-1] for line in lists_on_disk(s)[1:-1]], order, "list file")


def test_lists_are_imported_searched_by_typing_and_cleared(s):
    folder = music(s)
    program, top, window = start(s, folder)
    window.command(menu_command(window, "M3Uファイルを読み込む"))
    s.file_dialog(folder / "list.m3u")
    s.wait_until(lambda: names(window) == ["a.mp3", "b.mp3", "a much longer line.mp3"], 5, "the entries of the list")
    s.drop_files(*view(window).point(), folder / "list.m3u", folder / "c.mp3")
    s.wait_until(lambda: len(view(window).items()) == 7, 5, "the dropped ones behind them")
    s.wait_until(lambda: view(window).items()[6][0] == "Mango", 5, "titles")
    view(window).click_item(0)
    s.driver.type("man")
    s.wait_until(lambda: view(window).selected_items() == [6], 5, "the row of the typed title")
    end(s, program, top)
    s.equal([line.rsplit("\\", 1)[-1] for line in lists_on_disk(s)[1:4]], ["a.mp3", "b.mp3", "a much longer line.mp3"], "list file")

    program, top, window = start(s, folder, (s.dir / "program/Quenlox.m3u").read_bytes().decode("cp932"))
    s.wait_until(lambda: len(view(window).items()) == 7, 5, "the rows are there again")
    view(window).click_item(0, button="right")
    s.driver.choose("初期化")
    s.wait_until(lambda: view(window).items() == [], 5, "no rows")
    s.screenshot("empty", window)
    end(s, program, top)
    s.equal((s.dir / "program/Quenlox.m3u").read_bytes(), b"", "list file")


def test_a_folder_of_fifty_thousand_files_is_shown_and_added_in_slices(s):
    huge = s.material / "huge"
    huge.mkdir(exist_ok=True)
    for i in range(50000):
        (huge / f"{i:05} 曲.mp3").touch()
    program, top, window = start(s, s.material)
    watch = Watch(window)
    _, _, folders, files = browser(window)
    s.wait_until(lambda: "huge" in lines(folders), 5, "the folders")
    folders.click_item(lines(folders).index("huge"), count=2)
    watch.until(lambda: files.send(GET_COUNT) == 50000, 60, "50 000 files in the browser")
    s.drop_files(*view(window).point(), *[huge] * 24)
    watch.until(lambda: 0 < view(window).send(GET_COUNT), 60, "the first ones are added")
    next(c for c in window.controls() if c.title == "中止" and c.visible).click()
    watch.until(lambda: not any(c.title == "中止" and c.visible for c in window.controls()), 30, "cancelled")
    added = view(window).send(GET_COUNT)
    assert 0 < added < 1200000, f"{added} rows"
    files.click(30, 10)
    s.driver.keys("ctrl+a")
    watch.until(lambda: files.send(GET_SELECTED) == 50000, 10, "all files are selected")
    files.click(30, 10, button="right")
    s.driver.choose("全追加")
    s.driver.choose("リストC")
    s.driver.keys("ctrl+3")
    watch.until(lambda: view(window).send(GET_COUNT) == 50000, 60, "all of them are in list C")
    end(s, program, top)
    s.equal(len(lists_on_disk(s)), added + 50000 + 3, "lines of the list file")


def test_files_folders_and_lists_are_dropped_on_a_list(s):
    folder = music(s)
    program, top, window = start(s, folder)
    window.click(SIZE[0] // 2, 60)
    s.driver.keys("ctrl+2")
    s.wait_until(lambda: view(window).visible, 5, "list B")
    list_view = view(window)
    s.drop_files(*list_view.point(), folder / "c.mp3", folder, folder / "list.m3u")
    s.wait_until(lambda: len(view(window).items()) == 9, 5, "rows")
    s.equal(names(window)[0], "c.mp3", "first")
    s.equal(sorted(names(window)[1:6]), ["a.mp3", "b.mp3", "c.mp3", "scale.mid", "日本の曲.wav"], "the folder")
    s.screenshot("dropped", window)
    end(s, program, top)
    s.equal(lists_on_disk(s)[0], "#ListB", "marker")


def test_rows_are_dragged_to_another_place(s):
    folder = music(s)
    program, top, window = start(s, folder, "#ListA\r\n" + paths(s, folder, "a.mp3", "b.mp3", "c.mp3", "scale.mid"))
    s.wait_until(lambda: len(view(window).items()) == 4, 5, "rows")
    list_view = view(window)
    rows = [list(map(int, s.driver.ask("itemplace", list_view.handle, row)[0])) for row in range(4)]
    middle = [y + height // 2 for _, y, _, height in rows]
    x = rows[0][0] + 30
    s.driver.drag(x, middle[0], x, middle[2] + rows[2][3] // 2 + 2)
    s.wait_until(lambda: names(window) == ["b.mp3", "c.mp3", "a.mp3", "scale.mid"], 5, "the row has moved")
    s.equal(view(window).selected_items(), [2], "selected rows")
    end(s, program, top)


@real_time
def test_a_double_click_plays_the_row_and_the_next_ones_follow(s):
    folder = music(s)
    program, top, window = start(s, folder, "#ListA\r\n" + paths(s, folder, "a.mp3", "b.mp3", "c.mp3"))
    s.wait_until(lambda: len(view(window).items()) == 3, 5, "rows")
    mark = s.sound_mark()
    view(window).click_item(1, count=2)
    s.wait_sound(since=mark)
    s.screenshot("playing", window)
    s.wait_silence(limit=8)
    s.near(s.captured(mark).trimmed().frequency(), 500, 3, "frequency of the second row")
    end(s, program, top)
    settings = (s.dir / "program" / "Quenlox.ini").read_bytes().decode("cp932")
    assert "b.mp3" in settings, "the file that was played is remembered"


def test_the_window_keeps_its_columns_and_closing_hides_it(s):
    folder = music(s)
    program, top, window = start(s, folder, "#ListA\r\n" + paths(s, folder, "a.mp3"))
    list_view = view(window)
    widths = [width for _, width in list_view.columns()]
    s.equal(widths, [162, 113, 162, 40, 300], "widths of a fresh start")
    x, y, _, _ = list_view.place
    s.driver.drag(x + 163, y + 12, x + 203, y + 12)
    s.wait_until(lambda: view(window).columns()[0][1] > 180, 5, "the column is wider")
    wider = view(window).columns()[0][1]
    s.driver.keys("ctrl+3")
    s.wait_until(lambda: view(window).columns()[0][1] == wider, 5, "list C has the same columns")
    window.close()
    window.wait_closed()
    assert program.running(), "only the window closes"
    end(s, program, top)
    settings = (s.dir / "program" / "Quenlox.ini").read_bytes().decode("cp932")
    for line in (f"ColumnTitle={wider}", "ListNo=2", "Show=0"):
        assert line in settings, line


def test_a_hundred_thousand_rows_are_selected_sorted_and_deleted(s):
    count = 100000
    content = "#ListA\r\n" + "".join(f"Z:\\none\\{i:06}\\{count - i:06}.mp3\r\n" for i in range(count))
    program, top, window = start(s, music(s), content)
    list_view = view(window)
    s.equal(list_view.send(GET_COUNT), count, "rows")
    list_view.send(ENSURE_VISIBLE, count - 1, 0)
    list_view.click_item(count - 3)
    s.driver.keys("ctrl+a")
    s.wait_until(lambda: list_view.send(GET_SELECTED) == count, 5, "all are selected")
    list_view.send(ENSURE_VISIBLE, count // 2, 0)
    list_view.click_item(count // 2)
    s.wait_until(lambda: list_view.send(GET_SELECTED) == 1, 5, "one is selected")
    s.driver.keys("shift+end")
    s.wait_until(lambda: list_view.send(GET_SELECTED) == count // 2, 5, "half of them are selected")
    s.driver.keys("delete")
    s.wait_until(lambda: list_view.send(GET_COUNT) == count // 2, 5, "half of them have gone")
    header(window, 4)
    s.pause(0.6)  # two clicks, not a double click
    header(window, 4)
    s.wait_until(lambda: list_view.items(0, 1)[0][4].endswith("\\050001.mp3"), 5, "the last path comes first")
    end(s, program, top)
    s.equal(len(lists_on_disk(s)), count // 2 + 2, "lines of the list file")
