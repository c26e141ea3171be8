"""A sound device that stops, vanishes or hangs while it plays: stop and close answer all the same."""

import signal
import subprocess
import time

from harness import material
from harness.product import Product


def test_stop_and_close_answer_whatever_the_device_does(s):
    file = material.write_mp3(s.material / "long.mp3", material.tone(440, 60.0))

    def pactl(*arguments):
        subprocess.run(["pactl", *arguments], env=s.session.env, check=True, stdout=subprocess.DEVNULL)

    def signal_server(number):
        s.session.sound.signal(number)

    troubles = (("suspended", lambda: pactl("suspend-sink", "null", "1"), lambda: pactl("suspend-sink", "null", "0")),
                ("hangs", lambda: signal_server(signal.SIGSTOP), lambda: signal_server(signal.SIGCONT)),
                ("removed", lambda: pactl("unload-module", "module-null-sink"),
                 lambda: pactl("load-module", "module-null-sink", "sink_name=null")))
    for name, begin, end in troubles:
        for order in ("stop", "close"):
            player = Product(s, file, "/p", name=f"{name} {order}")
            stopped = player.look(player.skin.label("time")).tobytes()
            s.wait_until(lambda: player.look(player.skin.label("time")).tobytes() != stopped, 8, "the time moves")
            begin()
            try:
                s.pause(1.0)
                since = time.monotonic()
                if order == "stop":
                    player.press("play")
                    s.wait_until(lambda: player.look(player.skin.label("time")).tobytes() == stopped, 2,
                                 f"{name}: the time is back at the beginning")
                    print(f"{name}: stop after {time.monotonic() - since:.2f} s")
                    since = time.monotonic()
                player.window.close()
                player.window.wait_closed(2)
                print(f"{name}: {order}, closed after {time.monotonic() - since:.2f} s")
            finally:
                end()
            player.program.wait_exit()
