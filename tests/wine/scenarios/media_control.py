"""Files that the operating system's media control interface plays: MIDI and Windows Media."""

from harness import material
from harness.scenario import real_time
from scenarios import play

MIDI = True
NOTE_ON, NOTE_OFF = 0x90, 0x80


def test_a_midi_file_plays_pauses_and_stops(s):
    file = material.write_midi(s.material / "scale.mid", notes=(60, 62, 64, 65, 67, 69, 71, 72), quarter_ms=500)
    program, window = play.start(s, file, "/p")

    def notes():
        return [value >> 8 & 127 for _, kind, value in s.midi_messages() if kind == "short" and value & 0xF0 == NOTE_ON and value >> 16]

    s.wait_until(lambda: notes()[:2] == [60, 62], 8, "the first notes are sent")
    s.screenshot("midi", window)
    play.click(s, window, play.PAUSE)
    s.pause(0.6)
    count = len(notes())
    s.pause(1.2)
    s.equal(len(notes()), count, "notes while paused")
    play.click(s, window, play.PAUSE)
    s.wait_until(lambda: len(notes()) > count, 5, "it goes on")
    play.click(s, window, play.PLAY)
    s.pause(0.6)
    count = len(notes())
    s.pause(1.2)
    s.equal(len(notes()), count, "notes after the stop")
    play.end(s, program, window)


@real_time
def test_a_wma_file_plays(s):
    mark = s.sound_mark()
    file = material.write_wma(s.material / "tone.wma", material.tone(440, 3.0))
    program, window = play.start(s, file, "/p")
    s.wait_sound(since=mark, limit=15)
    s.wait_silence(limit=10)
    s.near(s.captured(mark).trimmed().frequency(), 440, 1.0, "frequency in Hz")
    play.end(s, program, window)
