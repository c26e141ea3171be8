"""With Western regional settings (code page 1252) Japanese names and texts are the same."""

from wine_harness import material
from wine_harness.product import Product

LOCALE = "en_US"


def test_japanese_names_and_texts_are_played_listed_and_kept(s):
    s.equal(s.driver.code_page(), 1252, "code page")
    file = material.write_wave(s.material / "春の歌.wav", material.tone(550, 20.0))
    path = s.windows_path(file)
    player = Product(s, "/p", ini=f"[Main]\nX=1500\nY=1500\nFileName={path}\n[List]\nX=1500\nY=5000\nShow=1\n", m3u=f"#ListA\n{path}\n")
    s.wait_tone(550)
    window = s.driver.wait_window(title="プレイリスト")
    s.wait_equal(lambda: window.list_view().items()[0][4], path, "path in the list")
    player.end()
    assert f"FileName={path}\n" in player.kept(), player.kept()
