"""Every ordinary window by the keyboard alone: where Tab goes, what is told of each stop, access keys, Enter, Escape and F1."""

from wine_harness.product import Product

LIMIT = 240
SCREEN = "1280x1024"
WS_TABSTOP, GROUP_BOX = 0x10000, 7
BUTTONS = {0: "button", 1: "button", 3: "check", 9: "option"}  # by the type in the style of a window
KINDS = {"Edit": "text", "ComboBox": "combo", "msctls_trackbar32": "slider", "SysListView32": "list", "SysTabControl32": "tabs",
         "ToolbarWindow32": "bar"}
BANDS = ("60Hz", "170Hz", "310Hz", "600Hz", "1kHz", "3kHz", "6kHz", "12kHz", "14kHz", "16kHz")
# What Tab stops at, in its order: kind, name.
OPTIONS = {
    "D": "combo 表示倍率|check 操作パネルモード|check タイトルアニメーション|slider 動く速さ|check オシロ・スペアナを表示する|slider 動く速さ|"
         "slider 表示の自動切替|option 21",
    "P": "slider 音程を上げる|slider 音程を下げる|slider 速度変更|option 標準|check イントロ再生|slider イントロの長さ|"
         "check 曲間をあけずに次の曲を再生する|check 再生できない曲を飛ばす|combo CDドライブ|combo デバイス|slider バッファ|option マスター音量だけ",
    "L": "check 歌詞ウィンドウを表示する|option 5行|text フォント|button 選択...|check タイムタグも表示する|check 太字で表示する|check スキンの第2歌詞色を使う|"
         "check 歌詞をなめらかに送る|check タイムタグのない歌詞も曲に合わせて送る|slider 表示のタイミング|check 歌詞ファイルよりLyrics3を優先する|text 歌詞フォルダ|button 参照...|"
         "text 画像フォルダ|button 参照...",
    "N": "check ﾌﾟﾚｲﾘｽﾄをﾀｸﾞ情報取得ﾓｰﾄﾞにする(要再起動)|check ファイル名表示でも項目に分ける|check 演奏時間を表示する|"
         "check 再生できないファイルをリストから外す|check 終了時に保存できなければ知らせる|text ﾌｧｲﾙ名変換の標準書式|"
         "check ﾌｧｲﾙ名変換の標準書式でﾀｸﾞ情報を推定|combo 同じ名前の歌詞など",
}


def kind(control):
    return BUTTONS[control.style & 0xF] if control.class_name == "Button" else KINDS[control.class_name]


def name(control, controls):
    """As Windows finds it: a button's own text, else that of the label or frame which comes before it without a stop between."""
    if control.class_name == "Button":
        return control.plain
    behind = controls[:[c.handle for c in controls].index(control.handle)]
    for other in reversed([c for c in behind if c.visible and c.parent == control.parent]):
        if other.class_name == "Static" or (other.class_name == "Button" and other.style & 0xF == GROUP_BOX):
            return other.plain
        if other.style & WS_TABSTOP:
            break
    return ""


def stops(s, window, most=40):
    """One round of Tab: (kind, name) of each stop, from where the keyboard is."""
    controls = window.controls()
    at = {c.handle: c for c in controls}
    first, seen = s.driver.focus(), []
    while len(seen) < most:
        control = at[s.driver.focus()]
        # The text of a combo box that can be edited is a window in it.
        seen.append(control if control.parent == window.handle else at[control.parent])
        before = s.driver.focus()
        s.driver.keys("tab")
        s.wait_until(lambda: s.driver.focus() != before, f"Tab leads on from {seen[-1]}")
        if s.driver.focus() == first:
            return [f"{kind(c)} {name(c, controls)}" for c in seen]
    raise AssertionError(f"no way round: {seen}")


def rest(table):
    return [stop for stop in table.split("|") if stop]


def test_tab_goes_through_every_page_of_the_options_as_they_are_read(s):
    player = Product(s, ini="[Option]\nAnimeMode=1\nSpeanaMode=1\nIntroPlay=1\n")  # what belongs to them is passed over else
    window = player.open("オプション(N)", "オプション")
    window.activate()
    for key, table in OPTIONS.items():
        s.driver.keys(f"alt+{key.lower()}")
        tabs = window.control("SysTabControl32")
        s.wait_equal(s.driver.focus, tabs.handle, f"Alt+{key} leads to the tabs")
        s.equal(stops(s, window), ["tabs オプションの種類", *rest(table), "button 初期設定に戻す", "button 閉じる"], f"stops of page {key}")
        s.screenshot(f"options-{key}", window)
    s.driver.keys("esc")
    window.wait_closed()
    player.end()


def test_the_equalizer_is_played_with_keys_alone(s):
    player = Product(s, ini="[Equalizer]\nX=3000\nY=3000\n")
    window = player.open("グライコ(G)", "グラフィックイコライザ")
    window.activate()
    s.driver.keys("alt+e")
    s.equal(stops(s, window), ["check ｲｺﾗｲｻﾞを有効にする", *(f"slider {band}  0dB" for band in BANDS), "option FLAT",
                               "button ランダム", "button パターン登録", "button 閉じる"], "stops")
    s.driver.keys("alt+p")
    rock = window.control("Button", "ROCK")
    s.driver.keys("down")
    s.wait_until(lambda: s.driver.focus() == rock.handle and rock.checked(), "the arrow chooses the second preset")
    s.wait_until(lambda: "slider 170Hz  +5dB" in stops(s, window), "the names tell the values")
    told = window.control("msctls_trackbar32").accessible()
    s.equal(told.name, "60Hz  +2dB", "what is told of the first slider")
    s.screenshot("equalizer", window)
    s.driver.keys("enter")
    window.wait_closed()
    player.end()


def test_the_other_windows_are_gone_through_in_their_order(s):
    player = Product(s, ini="[List]\nX=0\nY=4500\nShow=1\n")
    for item, title, key, table in (
            ("タグ情報(I)", "タグ情報*", "alt+i", "tabs タグの種類|combo 操作|combo 項目|button 閉じる|"
             "list まとめて書き換えるファイル|button プレイリストの選択を取込"),
            ("ファイル変換(C)", "ファイル変換", "alt+p", "option 再生しながらデコード|button 参照...|button 参照...|"
             "check 変換元と同じフォルダに保存|list 変換するファイル|button 閉じる"),
            ("バージョン情報(V)", "バージョン情報", "", "button ライセンス|button ヘルプ|button 閉じる")):
        window = player.open(item, title)
        window.activate()
        if key:
            s.driver.keys(key)
        s.wait_until(lambda: s.driver.focus() in [c.handle for c in window.controls()], f"{title}: something has the keyboard")
        s.equal(stops(s, window), rest(table), title)
        s.driver.keys("esc")
        window.wait_closed()
    window = s.driver.wait_window(title="プレイリスト")
    window.activate()
    s.wait_equal(s.driver.focus, window.list_view().handle, "what has the keyboard in a window that came up behind another")
    s.driver.keys("alt+i")
    s.wait_until(lambda: window.control("Edit").handle == s.driver.focus(), "the search field has the keyboard")
    s.equal(stops(s, window), rest("text 検索|list リストA|combo ドライブ|list フォルダ|combo ファイルの種類|list ファイル|bar ツールバー|"
                                   "tabs リストの切替"), "stops of the list window")
    window.post(0x112, 0xF020)  # minimises it
    s.wait_until(lambda: window.refreshed().style & 0x20000000, "it is minimised")
    player.press("list")
    s.wait_until(lambda: not window.refreshed().style & 0x20000000, "one press brings it back")
    player.end()


def luminance(color):
    """Relative, as contrast is counted (WCAG 2.1)."""
    parts = [c / 255 / 12.92 if c <= 10 else ((c / 255 + 0.055) / 1.055) ** 2.4 for c in color]
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]


def contrast(picture):
    """Of what is written to what lies behind it, which is the colour of most pixels."""
    colors = sorted(picture.convert("RGB").getcolors(1 << 20), reverse=True)
    behind = luminance(colors[0][1])
    return max((max(behind, other) + 0.05) / (min(behind, other) + 0.05) for other in (luminance(c) for _, c in colors))


def set_apps(s, light):
    """What Windows' settings call the mode of apps."""
    s.session.start("reg", "add", r"HKCU\Software\Microsoft\Windows\CurrentVersion\Themes\Personalize", "/v", "AppsUseLightTheme",
                    "/t", "REG_DWORD", "/d", str(light), "/f").wait(60)


def ground(s, window):
    return s.screen().getpixel((window.x + window.width - 8, window.y + window.height - 8))


def test_windows_are_dark_when_apps_are_and_follow_the_setting_at_once(s):
    set_apps(s, 0)
    player = Product(s)
    try:
        for item, title in (("オプション(N)", "オプション"), ("グライコ(G)", "グラフィックイコライザ"), ("タグ情報(I)", "タグ情報*"),
                            ("ファイル変換(C)", "ファイル変換"), ("バージョン情報(V)", "バージョン情報")):
            window = player.open(item, title)
            window.activate()
            s.wait_until(lambda: max(ground(s, window)) < 64, f"{title} is dark")
            screen = s.screenshot(f"dark-{window.title.strip()}", None)
            for c in window.controls():
                if c.visible and c.enabled and c.plain and c.width and c.class_name in ("Static", "Button", "Edit"):
                    height = 16 if c.class_name == "Button" and c.style & 0xF == GROUP_BOX else c.height
                    ratio = contrast(screen.crop((c.x, c.y, c.x + c.width, c.y + height)))
                    assert ratio >= 4.5, f"{title}: contrast {ratio:.1f} of {c.plain!r}"
            set_apps(s, 1)
            window.send(0x1A)  # WM_SETTINGCHANGE
            s.wait_until(lambda: min(ground(s, window)) > 192, f"{title} is light at once")
            set_apps(s, 0)
            window.send(0x1A)
            s.wait_until(lambda: max(ground(s, window)) < 64, f"{title} is dark again")
            window.close()
            window.wait_closed()
    finally:
        set_apps(s, 1)
    player.end()
