"""The player plays: every kind of file through the decoding library, buttons, seek bar, and what is kept."""

from harness import material
from harness.scenario import real_time

# Places in the default skin, pixels of the window.
TIME = (43, 47, 43 + 88, 47 + 31)
STATUS = (64, 30, 64 + 48, 30 + 13)
PLAY, PAUSE, NEXT = (232, 128), (273, 128), (307, 128)
CLOSE = (456, 32)
BAR = (174, 105, 242)  # left, top, width


def start(s, *arguments):
    program = s.start_product(*arguments)
    return program, s.driver.wait_window(title="Quenlox  Ver 1.0.0")


def look(s, window, box):
    """What a part of the window shows now, as bytes."""
    x, y, _, _ = window.place
    return s.screen().crop((x + box[0], y + box[1], x + box[2], y + box[3])).tobytes()


def click(s, window, place):
    x, y, _, _ = window.place
    s.driver.click(x + place[0], y + place[1])


def end(s, program, window):
    click(s, window, CLOSE)
    s.equal(program.wait_exit(), 0, "exit code")


def plays_whole(s, file, frequency=440, seconds=3.0):
    mark = s.sound_mark()
    program, window = start(s, file, "/p")
    s.wait_sound(since=mark)
    s.wait_silence(limit=seconds + 8)
    heard = s.captured(mark).trimmed()
    s.near(heard.frequency(), frequency, 1.0, f"{file.suffix}: frequency in Hz")
    s.near(heard.length, seconds, 0.15, f"{file.suffix}: length in seconds")
    s.equal(heard.gaps(), [], f"{file.suffix}: gaps")
    end(s, program, window)


@real_time
def test_an_mp3_given_on_the_command_line_plays_without_a_gap(s):
    plays_whole(s, material.write_mp3(s.material / "tone.mp3", material.tone(440, 3.0)))


@real_time
def test_layers_one_and_two_rmp_and_wave_play_as_well(s):
    tone = material.tone(440, 2.0)
    mp3 = material.write_mp3(s.material / "inner.mp3", tone)
    for file in (material.write_mp1(s.material / "one.mp1", seconds=2.0), material.write_mp2(s.material / "two.mp2", tone),
                 material.write_rmp(s.material / "three.rmp", mp3), material.write_wave(s.material / "four.wav", tone)):
        plays_whole(s, file, seconds=2.0)


@real_time
def test_file_names_of_every_script_play(s):
    file = material.write_wave(s.material / "夜明け 😀 é #1 100%.wav", material.tone(440, 1.5))
    plays_whole(s, file, seconds=1.5)


@real_time
def test_time_runs_pause_holds_seeking_moves_and_stop_stops(s):
    file = material.write_mp3(s.material / "steps.mp3", material.steps([300, 500, 700, 900, 1100, 1300, 1500, 1700], 2.0))
    program, window = start(s, file, "/p")
    s.wait_sound()
    first = look(s, window, TIME)
    s.wait_until(lambda: look(s, window, TIME) != first, 5, "the time moves")
    s.screenshot("playing", window)

    click(s, window, PAUSE)
    s.wait_silence(limit=3)
    # A second may end between the press and the picture; from then on the time stands.
    s.pause(1.2)
    held = look(s, window, TIME)
    s.screenshot("paused", window)
    s.pause(2.2)
    assert look(s, window, TIME) == held, "the time stands while paused"
    click(s, window, PAUSE)
    s.wait_sound()

    click(s, window, (BAR[0] + BAR[2] * 13 // 16, BAR[1] + 2))
    s.wait_until(lambda: abs(s.listen(0.4).frequency() - 1500) < 10, 4, "the part at 13/16 of the track is heard")
    s.screenshot("sought", window)

    click(s, window, PLAY)
    s.wait_silence(limit=3)
    s.wait_until(lambda: look(s, window, TIME) == first, 3, "the time is back at the beginning")
    end(s, program, window)


def test_what_is_set_is_there_again_at_the_next_start(s):
    folder = s.fresh_product("kept")
    file = material.write_wave(s.material / "kept.wav", material.tone(440, 1.0))
    program = s.start_product(file, folder=folder)
    window = s.driver.wait_window(title="Quenlox  Ver 1.0.0")
    click(s, window, (240, 32))  # the play mode: SINGLE to REPEAT
    s.driver.drag(window.place[0] + 300, window.place[1] + 20, window.place[0] + 420, window.place[1] + 120)
    s.wait_until(lambda: s.driver.find(title="Quenlox  Ver 1.0.0").place[:2] != (0, 0), 5, "the window is moved")
    moved = s.driver.find(title="Quenlox  Ver 1.0.0").place[:2]
    end(s, program, s.driver.find(title="Quenlox  Ver 1.0.0"))

    text = (folder / "Quenlox.ini").read_bytes().decode("cp932")
    for key in ("PlayMode=1", f"X={moved[0] * 15}", f"Y={moved[1] * 15}", "0Eq=FLAT,0,0,0,0,0,0,0,0,0,0", "ReNameS=(*N) *T",
                "[Lyrics]", "Font=ＭＳ Ｐゴシック", "[Tag]"):
        assert key in text, f"{key} is missing in\n{text}"
    before = text
    program = s.start_product(folder=folder)
    window = s.driver.wait_window(title="Quenlox  Ver 1.0.0")
    s.equal(window.place[:2], moved, "place of the window")
    end(s, program, window)
    s.equal((folder / "Quenlox.ini").read_bytes().decode("cp932"), before, "the settings after a second round")


def test_a_second_start_ends_silently_and_a_missing_library_is_said(s):
    program, window = start(s)
    s.equal(s.start_product().wait_exit(), 0, "exit code of the second")
    s.equal(len([w for w in s.driver.windows() if w.title.startswith("Quenlox")]), 1, "windows")
    end(s, program, window)

    folder = s.fresh_product("bare")
    (folder / "vbmp3.dll").unlink()
    program = s.start_product(folder=folder)
    dialog = s.driver.wait_window(class_name="#32770")
    texts = " ".join(c.title for c in dialog.controls())
    assert "VBMP3.DLLが見つかりません" in texts and "終了します" in texts, texts
    dialog.command(1)
    program.wait_exit()
    assert not (folder / "Quenlox.ini").exists()


def test_files_that_are_no_sound_do_no_harm(s):
    for name, content in (("empty.mp3", b""), ("text.mp3", b"no sound at all\n" * 500), ("riff.wav", b"RIFF\xff\xff\xff\xffWAVEfmt "),
                          ("noise.mp3", bytes((i * 7919 >> 3) & 255 for i in range(100000)))):
        file = s.material / name
        file.write_bytes(content)
        program, window = start(s, file, "/p")
        s.pause(1.5)
        assert program.running(), name
        end(s, program, window)
