"""The player plays: every kind of file, names of every script, lists, buttons, seek bar, and what is kept."""

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time

MIDI = True
PITCHES = {"a": 440, "b": 660, "c": 880}  # Hz, of the tracks of a list
SECONDS = 1.5


def plays_whole(s, file, frequency=440, seconds=2.0):
    mark = s.sound_mark()
    player = Product(s, file, "/p")
    s.wait_sound(since=mark)
    s.wait_silence()
    heard = s.captured(mark).trimmed()
    player.end()
    s.near(heard.frequency(), frequency, 1.0, f"{file.suffix}: frequency in Hz")
    if file.suffix != ".wma":  # how that begins and ends is the affair of the system
        s.near(heard.length, seconds, 0.15, f"{file.suffix}: length in seconds")
    return heard


def tones(s):
    return [material.write_mp3(s.material / f"{name}.mp3", material.tone(pitch, SECONDS)) for name, pitch in PITCHES.items()]


def play_list(s, files):
    """The program with the files in list A and the first of them remembered, in the mode PROGRAM."""
    paths = [s.windows_path(file) for file in files]
    return Product(s, "/pm2", m3u="\n".join(["#ListA", *paths, ""]), ini=f"[Main]\nFileName={paths[0]}\n")


def order(sound, step=0.05):
    """The tones in the order in which they are heard, as a text like "abc". A tone counts when it holds for 0.2 s; the same
    tone twice in a row counts by its length."""
    names = []
    for _, frequency in sound.frequencies(step):
        near = [name for name, pitch in PITCHES.items() if abs(frequency - pitch) < 15]
        names.append(near[0] if near else " ")
    text, run = "", ""
    for name in [*names, "\0"]:
        if run and name != run[0]:
            if run[0] != " " and len(run) * step >= 0.2:
                text += run[0] * max(1, round(len(run) * step / SECONDS))
            run = ""
        run += name
    return text


@real_time
def test_every_kind_of_file_plays_from_its_beginning_to_its_end_without_a_gap(s):
    tone = material.tone(440, 2.0)
    mp3 = material.write_mp3(s.material / "layer three.mp3", tone)
    for file in (mp3, material.write_mp1(s.material / "one.mp1", seconds=2.0), material.write_mp2(s.material / "two.mp2", tone),
                 material.write_rmp(s.material / "wrapped.rmp", mp3), material.write_wma(s.material / "media.wma", tone),
                 material.write_wave(s.material / "夜明け 😀 é #1 100%.wav", tone)):
        s.equal(s.lasting_gaps(lambda: plays_whole(s, file)), [], f"{file.suffix}: gaps")


def test_a_midi_file_plays_pauses_and_stops(s):
    player = Product(s, material.write_midi(s.material / "scale.mid", notes=(60, 62, 64, 65, 67, 69, 71, 72) * 10, quarter_ms=500), "/p")
    s.wait_until(lambda: s.midi_notes()[:2] == [60, 62], "the first notes are sent")

    def count():
        return len(s.midi_notes())
    player.press("pause")
    held = s.wait_still(count, "the notes pause", 1.2)
    player.press("pause")
    s.wait_until(lambda: count() > held, "it goes on")
    player.press("play")
    s.wait_still(count, "the notes stop", 1.2)
    player.end()
    assert count() < 60, "the notes were stopped and had not come to their end"


@real_time
def test_time_runs_pause_holds_seeking_moves_and_stop_stops(s):
    pitches = (300, 500, 700, 900, 1100, 1300, 1500, 1700)
    file = material.write_mp3(s.material / "steps.mp3", material.steps(pitches, 10.0), "-b", "64")
    player = Product(s, ini=f"[Main]\nFileName={s.windows_path(file)}\n")

    def time():
        return player.look(player.skin.label("time")).tobytes()

    first = s.wait_still(time, "the time stands before it plays", 0.3)
    player.press("play")
    s.wait_until(lambda: time() != first, "the time moves")
    player.press("pause")
    s.wait_silence()
    s.wait_still(time, "the time stands while paused", 2.2)
    player.press("pause")
    s.wait_sound()
    player.seek(13 / 16)
    s.wait_tone(1500)
    player.press("play")
    s.wait_silence()
    s.wait_until(lambda: time() == first, "the time is back at the beginning")
    player.end()


def test_what_is_set_is_there_again_at_the_next_start(s):
    player = Product(s, material.write_wave(s.material / "kept.wav", material.tone(440, 1.0)))
    player.click(player.skin.label("mode"))  # SINGLE to REPEAT
    moved = tuple(a + b for a, b in zip(player.window.place, (120, 100)))
    s.driver.drag(300, 20, 420, 120)
    s.wait_equal(lambda: player.refresh().place[:2], moved, "place of the window")
    player.press("close")
    s.equal(player.program.wait_exit(), 0, "exit code")
    before = player.kept()
    for key in ("PlayMode=1", f"X={moved[0] * 15}", f"Y={moved[1] * 15}", "0Eq=FLAT,0,0,0,0,0,0,0,0,0,0", "ReNameS=(*N) *T",
                "[Lyrics]", "Font=ＭＳ Ｐゴシック", "[Tag]"):
        assert key in before, f"{key} is missing in\n{before}"
    player = Product(s, folder=player.folder)
    s.equal(player.window.place[:2], moved, "place of the window")
    player.end()
    s.equal(player.kept(), before, "the settings after a second round")


def test_a_second_start_ends_silently_and_a_missing_library_is_said(s):
    player = Product(s)
    s.equal(s.start_product().wait_exit(), 0, "exit code of the second")
    s.equal(len([w for w in s.driver.windows() if w.title.startswith("Quenlox")]), 1, "windows")
    player.end()

    folder = s.fresh_product("bare")
    (folder / "vbmp3.dll").unlink()
    program = s.start_product(folder=folder)
    s.answer("VBMP3.DLLが見つかりません", "終了します")
    program.wait_exit()
    assert not (folder / "Quenlox.ini").exists()


def test_files_that_are_no_sound_do_no_harm(s):
    for name, content in (("empty.mp3", b""), ("text.mp3", b"no sound at all\n" * 500), ("riff.wav", b"RIFF\xff\xff\xff\xffWAVEfmt "),
                          ("noise.mp3", bytes((i * 7919 >> 3) & 255 for i in range(100000)))):
        (s.material / name).write_bytes(content)
        player = Product(s, s.material / name, "/p")
        s.pause(0.8)
        player.end()


@real_time
def test_a_list_is_played_in_a_loop_without_an_audible_gap(s):
    def heard():
        s.wait_silence()
        mark = s.sound_mark()
        player = play_list(s, tones(s))
        s.wait_sound(since=mark)
        begin, end = s.captured(mark).bounds()[0], 5.5 * SECONDS
        s.wait_until(lambda: s.captured(mark).length > begin + end, "the sound is captured")
        sound = s.captured(mark).part(begin, begin + end)
        player.end()
        s.equal(order(sound)[:5], "abcab", "order")
        return sound
    s.equal(s.lasting_gaps(heard, 0.03), [], "gaps of 30 ms and more")


@real_time
def test_midi_between_two_mp3_takes_its_turn(s):
    a, b, _ = tones(s)
    sent = len(s.midi_messages())
    mark = s.sound_mark()
    player = play_list(s, [a, material.write_midi(s.material / "tune.mid", (60, 64, 67), quarter_ms=300), b])
    s.wait_sound(since=mark)
    s.wait_tone(PITCHES["b"])
    s.listen(0.5)  # long enough to be counted
    player.end()
    s.equal(s.midi_notes(sent)[:3], [60, 64, 67], "notes")
    heard = s.captured(mark).trimmed()
    s.equal(order(heard)[:2], "ab", "tracks heard")
