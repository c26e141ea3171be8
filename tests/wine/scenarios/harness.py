"""The harness itself, with a small program of its own: input arrives, contents are read, sound is measured."""

import subprocess

from harness import material
from harness.scenario import TEST_PROGRAMS, real_time
from harness.sound import Sound

NEEDS_PRODUCT = False
MIDI = True


def start(s):
    program = s.start(TEST_PROGRAMS / "harness_check.exe")
    return program, s.driver.wait_window(class_name="QuenloxHarnessCheck")


@real_time
def test_a_click_arrives_and_the_tone_it_starts_is_measured(s):
    _, window = start(s)
    assert window.title == "検査 harness check"
    mark = s.sound_mark()
    window.control(101).click()
    s.wait_until(lambda: window.control(102).title == "1 clicks", what="the click is counted")
    s.wait_sound(since=mark)
    s.screenshot("window", window)
    s.wait_silence(limit=6)
    tone = s.captured(mark).trimmed()
    s.near(tone.frequency(), 440, 0.5, "frequency in Hz")
    s.near(tone.length, 2.0, 0.05, "length in seconds")
    assert tone.gaps() == [], f"gaps in the tone: {tone.describe()}"
    s.near(tone.level_at(440), 8000 / 32768, 0.01, "amplitude")


def test_keys_menus_and_lists_of_another_process_can_be_used(s):
    _, window = start(s)
    s.equal([(item.text, item.checked, item.enabled) for item in window.menu()
             if item.depth == 1 and not item.separator],
            [("Play a tone", False, True), ("Nothing", True, False), ("Open...", False, True), ("Play the file", False, True)])
    s.equal(window.control(103).columns(), [("Title", 120), ("Artist", 120)])
    s.equal(window.control(103).items(), [["A song", "Somebody"], ["ソナタ第五番", "十人の表現"]])
    window.control(103).click_item(1)
    s.wait_until(lambda: window.control(103).selected_items() == [1], what="the second row is selected")
    window.control(104).click()
    s.driver.type("音 & tone")
    s.wait_until(lambda: window.control(104).text() == "音 & tone", what="the text is typed")
    s.driver.keys("back")
    s.wait_until(lambda: window.control(104).text() == "音 & ton", what="a character is taken back")
    window.click(320, 270, button="right")
    s.driver.choose("Play a tone")
    s.wait_until(lambda: window.control(102).title == "1 clicks", what="the menu's command arrives")


def test_the_exit_code_and_the_end_of_a_program_are_seen(s):
    program, window = start(s)
    window.command(201)
    s.wait_until(lambda: window.control(102).title == "1 clicks")
    window.close()
    s.equal(program.wait_exit(), 1, "exit code")
    assert s.driver.find(class_name="QuenloxHarnessCheck") is None
    assert s.driver.code_page() == 932


def test_layer_1_files_made_here_are_a_clean_tone(s):
    path = material.write_mp1(s.material / "tone.mp1", 440, 1.0)
    decoded = s.material / "tone.wav"
    subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-ac", "2", "-ar", "44100", decoded], check=True)
    tone = Sound.from_wave(decoded).trimmed()
    s.near(tone.frequency(), 440, 0.5, "frequency in Hz")
    assert tone.gaps() == []


def test_files_chosen_in_a_dialog_and_dropped_arrive_with_japanese_names(s):
    _, window = start(s)
    first = material.write_wave(s.material / "春の歌.wav", material.tone(440, 0.5))
    second = material.write_wave(s.material / "表 & 裏.wav", material.tone(440, 0.5))
    edit = window.control(104)
    window.command(203)
    s.file_dialog(first)
    s.wait_until(lambda: edit.text() == s.windows_path(first), what="the chosen name is shown")
    s.drop_files(*window.point(), first, second)
    dropped = s.windows_path(first) + "|" + s.windows_path(second)
    s.wait_until(lambda: edit.text() == dropped, what="the dropped names are shown")


@real_time
def test_the_media_control_interface_plays_windows_media_and_midi(s):
    _, window = start(s)
    mark = s.sound_mark()
    window.control(104).set_text(s.windows_path(material.write_wma(s.material / "tone.wma", material.tone(523.25, 1.5))))
    window.command(204)
    s.wait_until(lambda: window.control(102).title == "mci 0", what="the WMA file is opened")
    s.wait_sound(since=mark)
    s.wait_silence()
    s.near(s.captured(mark).trimmed().frequency(), 523.25, 1, "frequency in Hz")

    notes = (60, 64, 67)
    window.control(104).set_text(s.windows_path(material.write_midi(s.material / "tune.mid", notes, quarter_ms=200)))
    window.command(204)
    def played():
        return [value >> 8 & 0xFF for _, kind, value in s.midi_messages() if kind == "short" and value & 0xF0 == 0x90]

    s.wait_until(lambda: played()[-3:] == list(notes), what="the MIDI device has received the notes")
