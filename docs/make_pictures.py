#!/usr/bin/python3
"""Takes the pictures of the documents from the running program: docs/make_pictures.py [NAME...]

Starts build/quenlox under Wine, plays the demonstration tune, opens every window and writes docs/pictures/*.png: each skin
in its own outline on transparent ground, each window as large as it is, the main window with numbered parts for the
guide, and all views of the panel on one sheet. With names only those groups are taken: skins, fine, parts, menu, list, lyrics,
equalizer, options, tag, convert, about, panel, views. Needs what tests/wine needs.
"""

import pathlib
import shutil
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
PICTURES = ROOT / "docs/pictures"
sys.path.insert(0, str(ROOT / "tools"))

from mutagen.id3 import ID3, TALB, TIT2, TPE1  # noqa: E402
from PIL import Image, ImageDraw, ImageFont  # noqa: E402

from wine_harness import material  # noqa: E402
from wine_harness.scenario import Scenario  # noqa: E402
from wine_harness.skin import COMMANDS, LABELS, PLAYBACK, MainWindow, Skin  # noqa: E402
from wine_session.processes import unwind_on_signals  # noqa: E402

SKINS = ("default", "hakuji", "obi")
FONT = "/usr/share/fonts/opentype/ipafont-gothic/ipagp.ttf"
CORNER = (1278, 1022)  # of the screen: a pointer there brings up no hint
SECONDS = 50.5         # length of the tune
FOLDER = "C:\\Music\\はじめの音"
# Title, artist, album, seconds; the tune stands between them.
TRACKS = (("夜明けのワルツ", "北村 灯", "港の時計", 225), ("雨粒のカノン", "北村 灯", "港の時計", 198), None,
          ("Waltz at Daybreak", "Harbour Quartet", "Northern Lights", 241), ("灯台守の歌", "Harbour Quartet", "Northern Lights", 312),
          ("紙ひこうき", "三月楽団", "青い坂道", 187), ("坂の途中で", "三月楽団", "青い坂道", 254), ("帰り道", "三月楽団", "青い坂道", 203),
          ("星のレシピ", "小野寺 理子", "台所の宇宙", 276), ("おやすみ、機械たち", "小野寺 理子", "台所の宇宙", 233))
# The words of the tune with a stamp for each word, and a translation below some of them.
LYRICS = """[00:04.80]<00:04.80>窓を<00:05.80>あければ <00:07.20>朝の<00:08.20>ひかり
[00:09.60]<00:09.60>針を<00:10.60>おとして <00:12.00>音が<00:13.00>はじまる
[00:14.40]<00:14.40>遠い町から <00:16.80>届いた<00:18.00>風に
[00:19.20]<00:19.20>小さな<00:20.40>歌を <00:21.60>そっと<00:22.80>のせよう
[00:24.00]<00:24.00>まわれ <00:25.00>まわれ <00:26.40>銀色の<00:27.60>輪
[00:24.00]Turn, turn, you silver ring
[00:28.80]<00:28.80>昨日と<00:30.00>今日を <00:31.20>つないで<00:32.40>いく
[00:33.60]<00:33.60>まわれ <00:34.60>まわれ <00:36.00>やさしい<00:37.20>音
[00:38.40]<00:38.40>君の<00:39.60>ところへ <00:40.80>届く<00:42.00>まで
"""
SETTINGS = {
    "Main": {"X": 1500, "Y": 1500, "TitleMode": 1, "ViewType": 30},
    "List": {"X": 600, "Y": 600, "SX": 13200, "SY": 7500},
    "Option": {"X": 3000, "Y": 3000, "SpeanaMode": 1, "SpeanaTime": 8, "Fft": 1, "ListType": 1, "ListTime": 1, "CurDir": FOLDER,
               "ColumnTitle": 150, "ColumnName": 120, "ColumnAlbum": 120, "ColumnTime": 66, "ColumnFile": 240, "DispLyrics": 0},
    "Equalizer": {"X": 3000, "Y": 4500},
    "Lyrics": {"X": 3000, "Y": 4500, "W": 6600, "H": 3900},
    "Tag": {"X": 3000, "Y": 4500},
}


def music(s):
    """The folder with the tracks; their sound is short, their length is that of a real one."""
    folder = s.session.prefix / "drive_c/Music/はじめの音"
    folder.mkdir(parents=True)
    second = material.write_mp3(s.material / "second.mp3", material.silence(1.0), "-b", "32", "-m", "m", "-t", "--nores").read_bytes()
    names = []
    for number, track in enumerate(TRACKS, 1):
        title, artist, album, seconds = track or ("朝のレコード", "", "", 0)
        file = folder / f"{number:02d} {title}.mp3"
        if track:
            file.write_bytes(second * seconds)
            tags = ID3()
            for frame, text in ((TIT2, title), (TPE1, artist), (TALB, album)):
                tags.add(frame(encoding=1, text=text))
            tags.save(file, v2_version=3)
        else:
            shutil.copy(ROOT / "demo/quenlox-demo.mp3", file)
            file.with_suffix(".lrc").write_text(LYRICS, "utf-8")
        names.append(f"{FOLDER}\\{file.name}")
    return names


def ini(**changes):
    sections = {name: dict(keys) for name, keys in SETTINGS.items()}
    for name, keys in changes.items():
        sections[name].update(keys)
    return "".join(f"[{name}]\r\n" + "".join(f"{key}={value}\r\n" for key, value in keys.items()) for name, keys in sections.items())


def save(name, picture):
    """As small as it can be without losing anything."""
    if picture.mode == "RGB" and (colors := picture.getcolors(256)):
        picture = picture.quantize(len(colors), dither=Image.Dither.NONE)
    picture.save(PICTURES / f"{name}.png", optimize=True)
    print(f"{name}.png  {picture.width} x {picture.height}  {(PICTURES / f'{name}.png').stat().st_size / 1024:.0f} kB", flush=True)


class Stage:
    """The program with the tune playing, and the windows it shows."""

    def __init__(self, s, tracks, skin="default", scale=1, mode=2, **changes):
        self.s = s
        folder = s.fresh_product()
        changes.setdefault("Main", {}).update(SkinName=skin, FileName=tracks[2])
        changes.setdefault("Option", {}).update(SkinZoom=scale * 100)
        (folder / "Quenlox.ini").write_bytes(ini(**changes).encode("cp932"))
        rows = "".join(name + "\r\n" for name in tracks)
        (folder / "Quenlox.m3u").write_bytes(f"#ListA\r\n{rows}".encode("cp932"))
        s.start_product(f"/pm{mode}", folder=folder)
        self.main = MainWindow(s, skin, scale)
        s.driver.wheel(*self.main.middle(self.main.skin.label("title")), -4)
        s.wait_sound()

    def seek(self, seconds):
        left, top, width, height = self.main.skin.seek_bar
        self.main.click((left + round(width * seconds / SECONDS), top + height // 2, 1, 1))
        self.rest(2.6)

    def rest(self, seconds=0.5):
        """The pointer goes away, and hints with it."""
        self.s.driver.move(*CORNER)
        self.s.pause(seconds)

    def window(self, title, class_name=None):
        return self.s.driver.wait_window(title=title, class_name=class_name)

    def shot(self, window):
        self.rest()
        x, y, width, height = window.refreshed().place
        return self.s.screen().crop((x, y, x + width, y + height))

    def shaped(self):
        """The main window in its outline."""
        picture = self.shot(self.main.refresh()).convert("RGBA")
        outline = self.main.skin.outline()
        picture.putalpha(outline.resize(picture.size, Image.NEAREST))
        return picture

    def close(self):
        self.s.end_programs()


def skins(s, tracks):
    for skin in SKINS:
        stage = Stage(s, tracks, skin)
        stage.seek(24.6)
        save(f"skin-{skin}", stage.shaped())
        stage.close()


def fine(s, tracks):
    stage = Stage(s, tracks, scale=2)
    stage.seek(24.6)
    save("main-2x", stage.shaped())
    stage.close()


def parts(s, tracks):
    stage = Stage(s, tracks, scale=2)
    stage.seek(24.6)
    window = stage.shaped()
    stage.close()
    skin = Skin("default")
    save("main-parts", numbered(window, skin))


# The numbers of the guide: what they stand for, on which side the number is (None: on the part itself), and where on the
# part its line ends, as a share of the width (of the height at the sides).
PARTS = {1: ("status", "left", .5), 2: ("time", "left", .5), 3: ("display_b", "left", .5), 4: ("length", "left", .5),
         5: ("kind", "top", .4), 6: ("mode", "top", .45), 7: ("list", "top", .5), 8: ("opt", "top", .5), 9: ("tag", "top", .5),
         10: ("conv", "top", .5), 11: ("help", "top", .5), 12: ("mini", "top", .5), 13: ("close", "top", .5),
         14: ("volume_bar", "right", .5), 15: ("title", None, .95), 16: ("artist", None, .92), 17: ("place", None, .83),
         18: ("information", None, .95), 19: ("back", "bottom", .5), 20: ("play", "bottom", .5), 21: ("pause", "bottom", .5),
         22: ("next", "bottom", .5), 23: ("seek_bar", "bottom", .632), 24: ("low", "bottom", .5), 25: ("high", "bottom", .5),
         26: ("double", "bottom", .5)}


def place_of(skin, part):
    if part in COMMANDS or part in PLAYBACK:
        return skin.button(part)
    return skin.label("list" if part == "place" else part) if part in (*LABELS, "place") else getattr(skin, part)


def numbered(window, skin):
    """The window at twice its size with numbers around it and lines that lead to what they stand for."""
    above, beside, radius, red = 60, 60, 15, (214, 58, 38, 255)
    sheet = Image.new("RGBA", (window.width + 2 * beside, window.height + 2 * above), (0, 0, 0, 0))
    sheet.alpha_composite(window, (beside, above))
    pen, font = ImageDraw.Draw(sheet), ImageFont.truetype(FONT, 20)
    for number, (part, where, along) in PARTS.items():
        x, y, width, height = (2 * n for n in place_of(skin, part))
        x, y = x + beside, y + above
        end = {"top": (x + width * along, y + 4), "bottom": (x + width * along, y + height - 4), "left": (x - 2, y + height * along),
               "right": (x + width + 2, y + height * along), None: (x + width * along, y + height / 2)}[where]
        middle = {"top": (end[0], radius + 1), "bottom": (end[0], sheet.height - radius - 2), "left": (radius + 1, end[1]),
                  "right": (sheet.width - radius - 2, end[1]), None: end}[where]
        if where:
            pen.line([middle, end], fill=red, width=2)
            pen.ellipse([end[0] - 4, end[1] - 4, end[0] + 4, end[1] + 4], fill=red)
        pen.ellipse([middle[0] - radius, middle[1] - radius, middle[0] + radius, middle[1] + radius], fill=red)
        pen.text(middle, str(number), font=font, fill="white", anchor="mm")
    return sheet


def menu(s, tracks):
    stage = Stage(s, tracks)
    stage.seek(24.6)
    window = stage.main.refresh()
    stage.main.click((250, 100, 1, 1), button="right")
    s.driver.choose("スキンの変更(S)")
    s.wait_until(lambda: any(i.text == "hakuji" and i.place[2] for i in s.driver.popup()), "the skins")
    s.pause(0.5)
    x, y, width, height = window.place
    shown = Image.new("L", s.screen().size, 0)
    shown.paste(stage.main.skin.outline(), (x, y))
    for popup in s.driver.windows():
        if popup.class_name == "#32768" and popup.visible:
            shown.paste(255, (popup.x, popup.y, popup.x + popup.width, popup.y + popup.height))
    picture = s.screen().convert("RGBA")
    picture.putalpha(shown)
    save("menu-main", picture.crop(shown.getbbox()))
    for _ in range(3):
        s.driver.keys("esc")
    stage.close()


def playlist(s, tracks):
    stage = Stage(s, tracks)
    stage.main.press("list")
    window = stage.window("プレイリスト")
    views = [c for c in window.controls() if c.class_name == "SysListView32" and c.visible]
    s.wait_until(lambda: any(len(view.items()) == len(TRACKS) for view in views), "the rows")
    s.pause(1.5)  # their texts
    save("window-list", stage.shot(window))
    window.activate()
    s.driver.keys("ctrl+4")
    save("window-list-folder", stage.shot(window))
    stage.close()


def lyrics(s, tracks):
    stage = Stage(s, tracks, Option={"DispLyrics": 1})
    window = stage.window("歌詞")
    stage.seek(23.8)
    save("window-lyrics", stage.shot(window))
    stage.close()


def from_menu(stage, item, title):
    stage.main.menu(item, at=(250, 100, 1, 1))
    return stage.window(title)


def equalizer(s, tracks):
    stage = Stage(s, tracks)
    window = from_menu(stage, "グライコ(G)", "グラフィックイコライザ")
    window.control(title="ROCK").click()
    window.control(title="ｲｺﾗｲｻﾞを有効にする").click()
    save("window-equalizer", stage.shot(window))
    stage.close()


def options(s, tracks):
    stage = Stage(s, tracks)
    window = from_menu(stage, "オプション(N)", "オプション")
    window.activate()
    for name, key in (("display", "d"), ("playback", "p"), ("lyrics", "l"), ("lists", "n")):
        s.driver.keys(f"alt+{key}")
        save(f"window-options-{name}", stage.shot(window))
    stage.close()


def tag(s, tracks):
    stage = Stage(s, tracks)
    window = from_menu(stage, "タグ情報(I)", "タグ情報*")
    save("window-tag", stage.shot(window))
    stage.close()


def convert(s, tracks):
    stage = Stage(s, tracks)
    stage.main.click(stage.main.skin.button("play"))
    window = from_menu(stage, "ファイル変換(C)", "ファイル変換")
    window = window.refreshed()
    s.drop_files(window.x + 100, window.y + 100, s.session.prefix / "drive_c/Music/はじめの音" / tracks[2].rsplit("\\", 1)[1])
    s.wait_until(lambda: window.control(title="変換開始").enabled, "a file to convert")
    save("window-convert", stage.shot(window))
    stage.close()


def about(s, tracks):
    stage = Stage(s, tracks)
    save("window-about", stage.shot(from_menu(stage, "バージョン情報(V)", "バージョン情報")))
    stage.close()


def panel_mode(s, tracks):
    stage = Stage(s, tracks, Option={"PanelMode": 1})
    stage.seek(24.6)
    save("main-panel", stage.shaped())
    stage.close()


def views(s, tracks):
    """Ten variants a row, one group below the other."""
    stage = Stage(s, tracks, mode=1, Main={"ViewType": 0})
    x, y, width, height = stage.main.skin.display_b
    gap = 4
    sheet = Image.new("RGBA", (10 * (width + gap) - gap, 6 * (height + gap) - gap), (0, 0, 0, 0))
    stage.seek(8)
    spots = iter(range(1000))
    for group in range(6):
        for variant in range(10):
            s.pause(0.5)
            sheet.paste(stage.main.look((x, y, width, height)), (variant * (width + gap), group * (height + gap)))
            # Never twice at the same spot: that would be a double click.
            stage.main.click((x + 15 + next(spots) % 2 * 50, y + height // 2, 1, 1))
        stage.main.click((x + 15 + next(spots) % 2 * 50, y + height // 2, 1, 1), button="right")
    save("panel-views", sheet)
    stage.close()


GROUPS = {"skins": skins, "fine": fine, "parts": parts, "menu": menu, "list": playlist, "lyrics": lyrics, "equalizer": equalizer, "options": options,
          "tag": tag, "convert": convert, "about": about, "panel": panel_mode, "views": views}


def main():
    unwind_on_signals()
    names = sys.argv[1:] or list(GROUPS)
    PICTURES.mkdir(exist_ok=True)
    with Scenario("pictures", screen="1280x1024") as s:
        tracks = music(s)
        for name in names:
            GROUPS[name](s, tracks)


if __name__ == "__main__":
    main()
