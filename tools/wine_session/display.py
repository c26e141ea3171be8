"""A private virtual display."""

import os
import select
import subprocess

from . import processes


class VirtualDisplay:
    """An Xvfb on a display number that it picks itself, so that runs side by side never meet."""

    def __init__(self, size="1024x768", log=subprocess.DEVNULL):
        reader, writer = os.pipe()
        self._process = processes.start(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdout=log, stderr=log, stdin=subprocess.DEVNULL)
        os.close(writer)
        number = b""
        while not number.endswith(b"\n"):
            readable, _, _ = select.select([reader], [], [], 20)
            piece = os.read(reader, 16) if readable else b""
            if not piece:
                os.close(reader)
                self.close()
                raise processes.StartFailure("Xvfb did not start")
            number += piece
        os.close(reader)
        self.name = ":" + number.decode().strip()

    def picture(self):
        """What the screen shows, as a PIL image in RGB."""
        from PIL import ImageGrab
        return ImageGrab.grab(xdisplay=self.name).convert("RGB")

    def close(self):
        processes.stop(self._process)
