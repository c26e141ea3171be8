"""A sound device that stops, vanishes or hangs while it plays: stop and close answer all the same. And one of several."""

import signal
import subprocess

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time
from wine_harness.sound import Sound

AT_ONCE = 4  # seconds; what waits for a device that hangs takes five


@real_time
def test_the_device_is_found_by_its_name_and_the_volume_bar_is_that_of_the_one_that_plays(s):
    def run(*command):
        return subprocess.run(command, env=s.session.env, stdout=subprocess.PIPE).stdout

    def recorder(sink, seconds):
        return (f"parec -d {sink}.monitor --raw --format=s16le --rate=44100 --channels=2 --latency-msec=20 2>&- |"
                f" head -c {44100 * 4 * seconds}")

    def level(sink):
        return Sound.from_raw(run("sh", "-c", recorder(sink, 1))).part(0.5, 1).level_at(440)

    module = run("pactl", "load-module", "module-null-sink", "sink_name=second", "sink_properties=device.description=Second")
    file = material.write_mp3(s.material / "tone.mp3", material.tone(440, 60.0))
    player = Product(s, file, "/p", ini="[Option]\nY=3000\nOutputDevice=0\nOutputDeviceName=Second\n")
    s.wait_until(lambda: level("second") > 0.3, "it is heard on the device of that name")
    s.equal(level("null"), 0.0, "level of the other")
    x, y, width, height = player.skin.volume_bar

    def bar_moves(sink):
        full = level(sink)
        for percent in (50, 0, 100):
            player.click((x, y + min(height * (100 - percent) // 100, height - 1), width, 1))
            s.wait_until(lambda: abs(level(sink) - full * percent / 100) < 0.03, f"{sink} is heard at {percent} %")

    bar_moves("second")
    form = player.open("オプション(N)", "オプション")
    form.activate()
    s.driver.keys("alt+p")
    combo = form.control("ComboBox", where=lambda box: box.visible and "Second" in box.lines())
    combo.click()
    heard = [subprocess.Popen(recorder(sink, 4), shell=True, env=s.session.env, stdout=subprocess.PIPE)
             for sink in ("second", "null")]
    s.pause(1.0)
    for key in ("up", "enter"):
        s.driver.keys(key)
    s.wait_equal(combo.selected_line, "Null Output", "device")
    left, came = (Sound.from_raw(process.communicate()[0]).bounds() for process in heard)
    print(f"   silent for {(came[0] - left[1]) * 1000:.0f} ms while the device changed")
    s.equal(came[0] - left[1] < 0.5, True, f"it goes on within half a second: left at {left[1]}, came at {came[0]}")
    s.wait_until(lambda: level("null") > 0.3, "it is heard on the other one")
    bar_moves("null")
    player.end()
    assert "OutputDevice=1\nOutputDeviceName=Null Output\n" in player.kept(), player.kept()
    run("pactl", "unload-module", module.decode().strip())

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
