"""A sound device that stops, vanishes or hangs while it plays: stop and close answer all the same."""

import signal
import subprocess

from harness import material
from harness.product import Product

AT_ONCE = 4  # seconds; what waits for a device that hangs takes five

def test_stop_and_close_answer_whatever_the_device_does(s):
    file = material.write_mp3(s.material / "long.mp3", material.tone(440, 120.0))

    def pactl(*arguments):
        subprocess.run(["pactl", *arguments], env=s.session.env, check=True, stdout=subprocess.DEVNULL)

    def signal_server(number):
        s.session.sound.signal(number)

    troubles = (("suspended", lambda: pactl("suspend-sink", "null", "1"), lambda: pactl("suspend-sink", "null", "0")),
                ("hangs", lambda: signal_server(signal.SIGSTOP), lambda: signal_server(signal.SIGCONT)),
                ("removed", lambda: pactl("unload-module", "module-null-sink"),
                 lambda: pactl("load-module", "module-null-sink", "sink_name=null")))

    def clock():
        return player.look(player.skin.label("time")).tobytes()

    for name, begin, end in troubles:
        for order in ("stop", "close"):
            player = Product(s, ini=f"[Main]\nFileName={s.windows_path(file)}\n")
            stopped = s.wait_still(clock, "the time stands", 0.3)
            player.press("play")
            s.wait_until(lambda: clock() != stopped, "the time moves")
            begin()
            try:
                s.pause(1.0)
                if order == "stop":
                    player.press("play")
                    s.wait_until(lambda: clock() == stopped, f"{name}: the time is back at the beginning", AT_ONCE)
                    end()
                    player.press("play")
                    s.wait_until(lambda: clock() != stopped, f"{name}: it plays again when the device is back")
                    begin()
                player.window.close()
                player.window.wait_closed(AT_ONCE)
            finally:
                end()
            player.program.wait_exit()
