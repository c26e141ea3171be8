"""The play-list window: filled from folders, files and M3U files, sorted, rearranged, exported, and played from."""

from wine_harness import material
from wine_harness.driver import LIST_CLASS
from wine_harness.product import Product
from wine_harness.scenario import real_time

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


def start(s, folder, lists=None):
    player = Product(s, m3u=lists, ini=f"[List]\nX=0\nY=2400\nSX={SIZE[0] * TWIPS}\nSY={SIZE[1] * TWIPS}\nShow=1\n"
                                      f"[Option]\nListType=1\nCurDir={s.windows_path(folder)}\n")
    window = s.driver.wait_window(title="プレイリスト")
    window.activate()
    return player, window


def view(window):
    return window.control(LIST_CLASS, where=lambda c: c.visible and not c.style & NO_HEADER)


def names(window):
    return [row[4].rsplit("\\", 1)[-1] for row in view(window).items()]


def kept_names(player):
    """The markers and the names of the files in the list file."""
    return [line.rsplit("\\", 1)[-1] for line in player.kept("m3u").splitlines()]


def browser(window):
    """(folders, files) of the browser."""
    boxes = [c for c in window.controls() if c.class_name == LIST_CLASS and c.visible and c.style & NO_HEADER]
    return next(b for b in boxes if b.style & SINGLE), next(b for b in boxes if not b.style & SINGLE)


def lines(box):
    return [row[0] for row in box.items()]


def paths(s, folder, *files):
    return "".join(s.windows_path(folder / f) + "\n" for f in files)


def header(window, column):
    """Clicks on a column's header."""
    list_view = view(window)
    list_view.click(sum(width for _, width in list_view.columns()[:column]) + 12, 12)


def test_all_files_of_the_browser_are_added_and_the_rows_show_their_tags(s):
    folder = music(s)
    player, window = start(s, folder)
    folders, files = browser(window)
    s.wait_equal(lambda: lines(files), ["a.mp3", "b.mp3", "c.mp3", "list.m3u", "scale.mid", "日本の曲.wav"], "files")
    s.wait_equal(lambda: [lines(folders)[row] for row in folders.selected_items()], ["music"], "folder")
    s.screenshot("browser", window)

    files.click(30, 10, button="right")
    s.driver.choose("全追加", "リストA")
    # The three files, the entries of the M3U file, of which one is there, and two files without a tag.
    s.wait_equal(lambda: [(row[0], row[3]) for row in view(window).items()],
                 [("apple", "0:03"), ("Zebra", "0:01"), ("Mango", "0:02"), ("apple", "0:03"), ("b", "----"),
                  ("a much longer line", "----"), ("- no title -", "----"), ("- no title -", "0:01")], "titles and times")
    s.equal(view(window).items()[0][:4], ["apple", "Carl", "Fruit", "0:03"], "the tags")
    s.screenshot("added", window)
    player.end()
    s.equal(kept_names(player), ["#ListA", "a.mp3", "b.mp3", "c.mp3", "a.mp3", "b.mp3", "a much longer line.mp3", "scale.mid", "日本の曲.wav"],
            "list file")


@real_time
def test_headers_sort_and_a_double_click_plays_while_the_list_file_stays_as_it_was(s):
    folder = music(s)
    content = "#ListA\n" + paths(s, folder, "b.mp3", "a.mp3", "c.mp3")
    player, window = start(s, folder, content)
    s.wait_equal(lambda: lines(view(window)), ["Zebra", "apple", "Mango"], "titles")
    for column, order in ((0, "acb"), (1, "bca"), (2, "abc"), (3, "bca"), (4, "abc"), (4, "cba")):
        header(window, column)
        s.wait_equal(lambda: "".join(n[0] for n in names(window)), order, f"order by column {column}")
    mark = s.sound_mark()
    view(window).click_item(1, count=2)
    s.wait_sound(since=mark)
    s.screenshot("playing", window)
    s.wait_silence()
    s.near(s.captured(mark).trimmed().frequency(), 500, 3, "frequency of the second row")
    player.end()
    assert "b.mp3" in player.kept(), "the file that was played is remembered"
    s.equal(player.kept("m3u"), content, "list file")


def test_rows_are_moved_dragged_deleted_and_exported(s):
    folder = music(s)
    player, window = start(s, folder, "#ListA\n" + paths(s, folder, "a.mp3", "b.mp3", "c.mp3", "日本の曲.wav", "scale.mid"))
    s.wait_equal(lambda: len(names(window)), 5, "rows")

    def after(key, rows, selected):
        s.driver.keys(key)
        s.wait_equal(lambda: (names(window), view(window).selected_items()), (rows, selected), f"rows and selected ones after {key}")

    view(window).click_item(1)
    after("shift+down", ["a.mp3", "b.mp3", "c.mp3", "日本の曲.wav", "scale.mid"], [1, 2])
    s.screenshot("moved", window)
    for _ in range(2):  # it stays at the top
        after("alt+up", ["b.mp3", "c.mp3", "a.mp3", "日本の曲.wav", "scale.mid"], [0, 1])
    x, y, _, height = map(int, s.driver.ask("itemplace", view(window).handle, 2)[0])
    s.driver.drag(x + 30, y + height * 3 // 2, x + 30, y + 2)
    s.wait_equal(lambda: (names(window), view(window).selected_items()),
                 (["b.mp3", "c.mp3", "日本の曲.wav", "a.mp3", "scale.mid"], [2]), "rows and selected ones after dragging")
    view(window).click_item(4)
    s.wait_equal(view(window).selected_items, [4], "selected rows")
    s.driver.keys("delete")
    left = ["b.mp3", "c.mp3", "日本の曲.wav", "a.mp3"]
    s.wait_equal(lambda: names(window), left, "rows")
    after("ctrl+z", [*left, "scale.mid"], [4])
    s.screenshot("taken back", window)
    after("ctrl+y", left, [])

    view(window).click_item(0, button="right")
    s.driver.choose("保存")
    exported = s.dir / "exported.M3U"
    s.file_dialog(exported)
    s.wait_until(exported.exists, "the file is written")
    s.equal(exported.read_text("cp932"), paths(s, folder, *left), "exported rows")
    player.end()
    s.equal(kept_names(player)[1:], left, "list file")


@real_time
def test_rows_are_played_next_in_the_order_they_were_chosen_and_one_is_the_last(s):
    folder = music(s)
    player, window = start(s, folder, "#ListA\n" + paths(s, folder, "a.mp3", "b.mp3", "c.mp3"))

    def titles(*expected):
        s.wait_equal(lambda: lines(view(window)), list(expected), "titles")

    for row in (2, 1):
        view(window).click_item(row)
        s.driver.keys("ctrl+q")
    titles("apple", "[2] Zebra", "[1] Mango")
    s.screenshot("queue", window)
    header(window, 0)
    titles("apple", "[1] Mango", "[2] Zebra")
    mark = s.sound_mark()
    view(window).click_item(0, count=2)
    s.wait_tone(900)
    titles("apple", "Mango", "[1] Zebra")
    s.wait_silence()
    pieces = s.captured(mark).trimmed()
    s.near(pieces.length, 6.3, 0.4, "seconds of all three")
    s.near(pieces.part(5.4, 5.9).frequency(), 500, 5, "frequency at the end")

    for row in (1, 2):
        view(window).click_item(row)
        s.driver.keys("ctrl+q")
    mark = s.sound_mark()
    view(window).click_item(0, count=2)
    s.driver.keys("ctrl+t")
    titles("■ apple", "[1] Mango", "[2] Zebra")
    s.wait_sound(since=mark)
    s.wait_silence()
    titles("apple", "[1] Mango", "[2] Zebra")
    s.near(s.captured(mark).trimmed().length, 3.0, 0.2, "seconds of the track that was the last")


def test_rows_go_to_another_place_another_list_and_back(s):
    folder = music(s)
    player, window = start(s, folder, "#ListA\n" + paths(s, folder, "a.mp3", "b.mp3", "c.mp3"))

    def after(what, *rows):
        s.wait_equal(lambda: [n[0] for n in names(window)], [*rows], f"rows after {what}")

    view(window).click_item(1)
    s.driver.keys("ctrl+x")
    after("cutting", "a", "c")
    s.wait_equal(view(window).selected_items, [1], "the row behind it")
    view(window).click_item(0)
    s.driver.keys("ctrl+v")
    after("pasting", "b", "a", "c")
    x, y, width, height = map(int, s.driver.ask("itemplace", view(window).handle, 1)[0])
    s.driver.move(20, 20)  # off the rows, whose tip would lie there
    s.wait_until(lambda: not s.driver.find(class_name="tooltips_class32"), "the tip goes")
    s.drop_files(x + 40, y + height - 2, folder / "scale.mid")
    after("a drop between rows", "b", "a", "s", "c")
    s.wait_equal(view(window).selected_items, [2], "the row that was dropped")
    s.driver.keys("ctrl+z")
    after("taking the drop back", "b", "a", "c")
    files = browser(window)[1]
    fx, fy, _, fheight = map(int, s.driver.ask("itemplace", files.handle, lines(files).index("scale.mid"))[0])
    s.driver.drag(fx + 20, fy + fheight // 2, x + 40, y + height - 2)
    after("a drag from the browser", "b", "a", "s", "c")
    # Out of the window, where others could take it, and back.
    s.driver.move(x + 40, y - height // 2)
    s.driver.press()
    for at in ((x + 40, y), (1015, y), (1015, y + 9), (x + 60, y), (x + 40, y + height * 3 - 2)):
        s.driver.move(*at)
        s.pause(0.2)
    s.driver.release()
    after("a way through the outside", "a", "s", "c", "b")
    s.driver.keys("ctrl+z")
    after("taking it back", "b", "a", "s", "c")
    tabs = window.control("SysTabControl32")
    s.driver.drag(x + 40, y + height * 3 // 2, tabs.x + 80, tabs.y + 8)
    after("dragging to a tab", "b", "a", "s", "c")
    s.screenshot("sent", window)
    s.driver.keys("ctrl+2")
    after("choosing the other list", "s")
    s.driver.keys("ctrl+z")
    after("taking the sending back")
    player.end()


def test_lists_are_imported_dropped_and_searched_by_typing(s):
    folder = music(s)
    player, window = start(s, folder)
    window.click(30, 33)  # the first menu of the bar
    s.driver.choose("M3Uファイルを読み込む(M)...")
    s.file_dialog(folder / "list.m3u")
    entries = ["a.mp3", "b.mp3", "a much longer line.mp3"]
    s.wait_equal(lambda: names(window), entries, "rows")
    s.drop_files(*view(window).point(), folder / "list.m3u", folder / "c.mp3")
    s.wait_equal(lambda: names(window), [*entries, *entries, "c.mp3"], "rows")
    s.wait_equal(lambda: view(window).items()[6][0], "Mango", "title")
    view(window).click_item(0)
    s.driver.type("man")
    s.wait_equal(view(window).selected_items, [6], "the row of the typed title")
    s.driver.keys("ctrl+f")
    s.driver.type("bert MANGO")
    s.wait_equal(lambda: names(window), ["c.mp3"], "rows with both words")
    s.screenshot("found", window)
    mark = s.sound_mark()
    s.driver.keys("enter")
    s.wait_sound(since=mark)
    s.driver.keys("esc")
    s.wait_equal(lambda: len(names(window)), 7, "rows of the list")
    player.end()
    s.equal(kept_names(player), ["#ListA", *entries, *entries, "c.mp3"], "list file")


def test_a_hundred_thousand_rows_are_selected_sorted_and_deleted(s):
    count = 100000
    content = "#ListA\n" + "".join(f"Z:\\none\\{i:06}\\{count - i:06}.mp3\n" for i in range(count))
    player, window = start(s, music(s), content)
    list_view = view(window)
    s.equal(list_view.send(GET_COUNT), count, "rows")
    list_view.send(ENSURE_VISIBLE, count - 1, 0)
    list_view.click_item(count - 3)
    s.driver.keys("ctrl+a")
    s.wait_until(lambda: list_view.send(GET_SELECTED) == count, "all are selected")
    list_view.send(ENSURE_VISIBLE, count // 2, 0)
    list_view.click_item(count // 2)
    s.wait_until(lambda: list_view.send(GET_SELECTED) == 1, "one is selected")
    s.driver.keys("shift+end")
    s.wait_until(lambda: list_view.send(GET_SELECTED) == count // 2, "half of them are selected")
    s.driver.keys("delete")
    s.wait_until(lambda: list_view.send(GET_COUNT) == count // 2, "half of them have gone")
    header(window, 4)
    header(window, 4)
    s.wait_until(lambda: list_view.items(0, 1)[0][4].endswith("\\050001.mp3"), "the last path comes first")
    player.end()
    s.equal(len(kept_names(player)), count // 2 + 1, "lines of the list file")
