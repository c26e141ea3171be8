"""A play list is played: without gaps, with what is missing, and kinds in turn."""

from wine_harness import material
from wine_harness.product import Product
from wine_harness.scenario import real_time

MIDI = True
LIMIT = 180
PITCHES = {"a": 440, "b": 660, "c": 880}  # Hz
SECONDS = 1.5


def tones(s):
    return [material.write_mp3(s.material / f"{name}.mp3", material.tone(pitch, SECONDS)) for name, pitch in PITCHES.items()]


def play(s, files, switches, settings=""):
    """The program with the files in list A and the first of them remembered."""
    paths = [file if isinstance(file, str) else s.windows_path(file) for file in files]
    return Product(s, switches, m3u="\n".join(["#ListA", *paths, ""]),
                   ini=f"[Main]\nX=1500\nY=1500\nFileName={paths[0]}\n{settings}")


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


def hear(s, mark, seconds):
    """The sound of so many seconds from its beginning behind the mark."""
    s.wait_sound(since=mark)
    begin = s.captured(mark).bounds()[0]
    s.wait_until(lambda: s.captured(mark).length > begin + seconds, "the sound is captured", seconds + 30)
    return s.captured(mark).part(begin, begin + seconds)


@real_time
def test_program_plays_the_list_in_a_loop_without_an_audible_gap(s):
    def heard():
        s.wait_silence()
        mark = s.sound_mark()
        player = play(s, tones(s), "/pm2")
        sound = hear(s, mark, 5.5 * SECONDS)
        player.end()
        s.equal(order(sound)[:5], "abcab", "order")
        return sound
    s.equal(s.lasting_gaps(heard, 0.03), [], "gaps of 30 ms and more")


@real_time
def test_what_cannot_be_played_is_passed_over_and_taken_out_or_kept_as_chosen(s):
    a, b, _ = tones(s)
    missing, elsewhere = s.windows_path(s.material / "not there.mp3"), "Q:\\music\\on a drive that is gone.mp3"
    damaged = s.material / "damaged.mp3"
    damaged.write_bytes(b"no sound at all" * 100)
    files = [a, missing, damaged, elsewhere, b]
    for settings, kept in (("", range(5)), ("DelList=1\n", (0, 3, 4))):
        mark = s.sound_mark()
        player = play(s, files, "/pm2", settings=f"[Option]\n{settings}[List]\nShow=1\n")
        before = player.kept("m3u").splitlines()
        heard = hear(s, mark, 3.3 * SECONDS)
        player.shot("passed over" + settings[:7])
        player.end()
        s.equal(order(heard)[:3], "aba", "tracks heard")
        s.equal(player.kept("m3u").splitlines()[:1 + len(kept)], before[:1] + [before[1 + row] for row in kept], "list file")
        s.wait_silence()

    mark = s.sound_mark()
    player = play(s, files, "/pm2", settings="[Option]\nPassOver=0\n")
    s.wait_sound(since=mark)
    s.wait_silence(seconds=2.5)
    s.equal(order(s.captured(mark).trimmed()), "a", "tracks heard")
    player.shot("stopped at a missing file")
    player.window.activate()
    for _ in range(3):
        s.driver.keys("alt+right")
    s.wait_tone(PITCHES["b"])
    player.end()


@real_time
def test_midi_between_two_mp3_takes_its_turn(s):
    a, b, _ = tones(s)
    sent = len(s.midi_messages())
    mark = s.sound_mark()
    player = play(s, [a, material.write_midi(s.material / "tune.mid", (60, 64, 67), quarter_ms=300), b], "/pm2")
    s.wait_sound(since=mark)
    s.wait_tone(PITCHES["b"])
    s.listen(0.5)  # long enough to be counted
    player.end()
    s.equal(s.midi_notes(sent)[:3], [60, 64, 67], "notes")
    heard = s.captured(mark).trimmed()
    s.equal(order(heard)[:2], "ab", "tracks heard")
