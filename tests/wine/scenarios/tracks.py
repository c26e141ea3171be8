"""A play list is played: order and gaps in every play mode, what is missing, kinds in turn, and the list file."""

from harness import material
from harness.scenario import real_time

MIDI = True
LIMIT = 180
TITLE = "Quenlox  Ver *"
PITCHES = {"a": 440, "b": 660, "c": 880}  # Hz
SECONDS = 1.5


def tones(s, seconds=SECONDS):
    return [material.write_mp3(s.material / f"{name}{seconds:g}.mp3", material.tone(pitch, seconds)) for name, pitch in PITCHES.items()]


def with_list(s, name, files, current=0, settings=""):
    """A fresh copy of the program whose list A holds the files and that remembers one of them."""
    folder = s.fresh_product(name)
    paths = [file if isinstance(file, str) else s.windows_path(file) for file in files]
    (folder / "Quenlox.m3u").write_bytes("".join(f"{line}\r\n" for line in ["#ListA", *paths]).encode("cp932"))
    (folder / "Quenlox.ini").write_bytes(f"[Main]\r\nX=1500\r\nY=1500\r\nFileName={paths[current]}\r\n{settings}".encode("cp932"))
    return folder


def play(s, folder, switches):
    program = s.start_product(switches, folder=folder)
    return program, s.driver.wait_window(title=TITLE)


def end(s, program):
    s.driver.find(title=TITLE).close()
    s.equal(program.wait_exit(), 0, "exit code")


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


def longest_gap(sound):
    """The longest silence inside, in milliseconds."""
    return max([length * 1000 for _, length in sound.gaps(0.002)], default=0.0)


def hear(s, mark, seconds):
    """The sound of so many seconds from its beginning behind the mark."""
    s.wait_sound(since=mark)
    begin = s.captured(mark).bounds()[0]
    s.wait_until(lambda: s.captured(mark).length > begin + seconds, seconds + 20, "the sound is captured")
    return s.captured(mark).part(begin, begin + seconds)


@real_time
def test_program_plays_the_list_in_a_loop_without_an_audible_gap(s):
    mark = s.sound_mark()
    program, window = play(s, with_list(s, "program_mode", tones(s)), "/pm2")
    heard = hear(s, mark, 5.5 * SECONDS)
    s.screenshot("program", window)
    end(s, program)
    s.equal(order(heard)[:5], "abcab", "order")
    gap = longest_gap(heard)
    print(f"    gap between tracks in PROGRAM: {gap:.1f} ms")
    assert gap < 30, f"{gap} ms between tracks"


@real_time
def test_random_plays_each_once_in_a_pass_and_leaves_out_one_position_of_the_first(s):
    mark = s.sound_mark()
    program, _ = play(s, with_list(s, "random_mode", tones(s)), "/pm3")
    # The remembered file first; then two of the first order, whose first position is left out; then whole passes.
    heard = hear(s, mark, (1 + 2 + 3 + 3) * SECONDS)
    end(s, program)
    played = order(heard)
    assert len(played) >= 8 and played[0] == "a", played
    assert len(set(played[1:3])) == 2, f"the rest of the first pass has two different tracks: {played}"
    s.equal("".join(sorted(played[3:6])), "abc", f"a pass has each track once, of {played}")
    print(f"    RANDOM played {played}, longest gap {longest_gap(heard):.1f} ms")
    assert longest_gap(heard) < 30, longest_gap(heard)


@real_time
def test_repeat_repeats_and_single_stops(s):
    files = tones(s)
    mark = s.sound_mark()
    program, _ = play(s, with_list(s, "repeat_mode", files, current=1), "/pm1")
    heard = hear(s, mark, 3.3 * SECONDS)
    end(s, program)
    s.equal(set(order(heard)), {"b"}, "tracks heard")
    print(f"    gap between repeats: {longest_gap(heard):.1f} ms")

    s.wait_silence()
    mark = s.sound_mark()
    program, _ = play(s, with_list(s, "single_mode", files, current=2), "/pm0")
    s.wait_sound(since=mark)
    s.wait_silence(seconds=1.5)
    s.equal(order(s.captured(mark).trimmed()), "c", "tracks heard")
    end(s, program)


@real_time
def test_a_missing_file_in_the_list_is_passed_or_stops_and_harms_nothing(s):
    a, b, _ = tones(s)
    missing = s.windows_path(s.material / "not there.mp3")
    folder = with_list(s, "passes", [a, missing, b], settings="[Option]\r\nDelList=1\r\n")
    mark = s.sound_mark()
    program, _ = play(s, folder, "/pm2")
    heard = hear(s, mark, 3.3 * SECONDS)
    end(s, program)
    s.equal(order(heard)[:3], "aba", "with the option to take missing files out of the list")
    s.equal((folder / "Quenlox.m3u").read_bytes().decode("cp932").splitlines(), ["#ListA", s.windows_path(a), s.windows_path(b)],
            "list file")

    folder = with_list(s, "stops", [a, missing, b])
    kept = (folder / "Quenlox.m3u").read_bytes()
    mark = s.sound_mark()
    program, window = play(s, folder, "/pm2")
    s.wait_sound(since=mark)
    s.wait_silence(seconds=2.5, limit=15)
    s.screenshot("missing", window)
    s.equal(order(s.captured(mark).trimmed()), "a", "tracks heard")
    window.activate()
    s.driver.keys("alt+right")
    s.wait_until(lambda: abs(s.listen(0.3).frequency() - PITCHES["b"]) < 15, 6, "the track behind the missing one is heard")
    end(s, program)
    s.equal((folder / "Quenlox.m3u").read_bytes(), kept, "list file")


@real_time
def test_midi_between_two_mp3_takes_its_turn(s):
    a, b, _ = tones(s)
    tune = material.write_midi(s.material / "tune.mid", (60, 64, 67), quarter_ms=300)
    sent = len(s.midi_messages())
    mark = s.sound_mark()
    program, _ = play(s, with_list(s, "midi", [a, tune, b]), "/pm2")
    s.wait_sound(since=mark)
    s.wait_until(lambda: abs(s.listen(0.3).frequency() - PITCHES["b"]) < 15, 20, "the track behind the MIDI file is heard")
    s.listen(0.5)  # long enough to be counted
    end(s, program)
    notes = [value >> 8 & 0xFF for _, kind, value in s.midi_messages()[sent:] if kind == "short" and value & 0xF0 == 0x90 and value >> 16]
    s.equal(notes[:3], [60, 64, 67], "notes")
    heard = s.captured(mark).trimmed()
    s.equal(order(heard)[:2], "ab", "tracks heard")
    print(f"    MP3, MIDI of 0.9 s, MP3: silence of {longest_gap(heard) / 1000:.2f} s between the tones")


@real_time
def test_alt_with_the_arrows_starts_stops_and_steps_once_for_each_press(s):
    mark = s.sound_mark()
    program, window = play(s, with_list(s, "keys", tones(s, 20.0)), "/pm2")

    def heard(name):
        s.wait_until(lambda: abs(s.listen(0.3).frequency() - PITCHES[name]) < 15, 8, f"track {name} is heard")

    s.wait_sound(since=mark)
    heard("a")
    window.activate()
    for key, track in (("alt+right", "b"), ("alt+right", "c"), ("alt+right", "a"), ("alt+left", "c"), ("alt+left", "b")):
        s.driver.keys(key)
        heard(track)
    s.driver.keys("alt+down")
    s.wait_silence(limit=4)
    s.driver.keys("alt+up")
    heard("b")
    end(s, program)


def test_the_list_file_stays_byte_for_byte_when_nothing_was_changed(s):
    a, b, _ = tones(s)
    folder = with_list(s, "untouched", [a, b])
    # No line end at the last line, comments, blanks, a path that does not exist, and line ends of both kinds.
    content = f"#ListA\r\n{s.windows_path(a)}\n# a remark\r\n\r\n#ListC\n C:\\old\\gone.mp3 \r\n{s.windows_path(b)}".encode("cp932")
    (folder / "Quenlox.m3u").write_bytes(content)
    changed = (folder / "Quenlox.m3u").stat().st_mtime_ns
    program, window = play(s, folder, "/pm2")
    s.wait_sound()
    window.activate()
    s.driver.keys("alt+right")
    s.pause(1)
    end(s, program)
    s.equal((folder / "Quenlox.m3u").read_bytes(), content, "list file")
    s.equal((folder / "Quenlox.m3u").stat().st_mtime_ns, changed, "time of the list file")
