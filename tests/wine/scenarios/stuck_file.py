"""A file that does not answer, as on a server that has gone: every button does, and the end keeps settings and lists."""

import subprocess
import time

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import ROOT

SOURCE = ROOT / "tools/wine_harness/stuck_reads.c"
AT_ONCE = 1.0  # seconds


def test_no_button_and_not_the_end_waits_for_a_file_that_does_not_answer(s):
    shim = s.dir / "stuck_reads.so"
    subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-o", shim, SOURCE, "-ldl"], check=True)
    s.session.env["LD_PRELOAD"] = str(shim)
    first = material.write_mp3(s.material / "first.mp3", material.tone(440, 60.0))
    stuck = material.write_mp3(s.material / "stuck.mp3", material.tone(880, 60.0))
    gate = s.material / "stuck.mp3.gate"
    rows = "".join(s.windows_path(path) + "\n" for path in (first, stuck))
    player = Product(s, ini=f"[Main]\nPlayMode=2\nFileName={s.windows_path(first)}\n[Option]\nGapless=0\n",
                     m3u="#ListA\n" + rows)
    slowest = 0

    def answers(seconds=1.0):
        nonlocal slowest
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            asked = time.monotonic()
            player.window.send(0)
            slowest = max(slowest, time.monotonic() - asked)

    player.press("play")
    s.wait_tone(440)
    gate.touch()
    player.press("next")
    answers()
    player.shot("being opened")
    player.press("play")  # stops it
    answers()
    player.shot("stopped")
    player.press("play")
    answers()
    gate.unlink()
    s.wait_tone(880)
    gate.touch()
    player.seek(0.8)
    answers()
    player.press("play")
    answers()
    player.press("play")
    answers()
    player.press("back")
    s.wait_tone(440)
    player.press("next")
    answers()
    asked = time.monotonic()
    player.window.close()
    player.program.wait_exit()
    ended = time.monotonic() - asked
    print(f"   slowest answer {slowest * 1000:.0f} ms, ended after {ended * 1000:.0f} ms")
    s.equal(slowest < AT_ONCE, True, f"every answer at once (the slowest took {slowest:.2f} s)")
    s.equal(ended < 3 * AT_ONCE, True, f"the end at once (it took {ended:.2f} s)")
    s.equal("stuck.mp3" in player.kept("ini"), True, "the settings have the last file")
