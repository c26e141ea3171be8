"""The program as most scenarios begin: a fresh copy with its settings and lists, running, and its main window."""

from .skin import MainWindow


def _bytes(text):
    return text.replace("\r\n", "\n").replace("\n", "\r\n").encode("cp932")


class Product(MainWindow):
    """`arguments`: a file, switches. `folder`: of a copy that is there already, as of a product that has ended. `ini`, `m3u`:
    texts of the settings and of the list file."""

    def __init__(self, s, *arguments, folder=None, skin="default", scale=1, ini=None, m3u=None):
        self.folder = folder or s.fresh_product()
        for extension, text in (("ini", ini), ("m3u", m3u)):
            if text is not None:
                (self.folder / f"Quenlox.{extension}").write_bytes(_bytes(text))
        self.program = s.start_product(*arguments, folder=self.folder)
        super().__init__(s, skin, scale)

    def open(self, item, title):
        """Chooses from the main menu; returns the window that comes up."""
        self.menu(item)
        return self._s.driver.wait_window(title=title)

    def seek(self, share):
        """To a place in the track: 0 its beginning, 1 its end."""
        x, y, width, height = self.skin.seek_bar
        self.click((x + round(width * share), y, 1, height))

    def kept(self, extension="ini"):
        """What stands in the settings (or the list file) now."""
        data = (self.folder / f"Quenlox.{extension}").read_bytes()
        marks = {b"\xff\xfe": "utf-16", b"\xef\xbb": "utf-8-sig"}
        return data.decode(marks.get(data[:2], "cp932")).replace("\r\n", "\n")

    def end(self, program=None):
        super().end(program or self.program)
