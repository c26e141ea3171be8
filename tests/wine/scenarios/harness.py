"""The harness itself, with a small program of its own: input arrives, contents are read, sound is measured."""

import subprocess

from harness import material
from harness.scenario import TEST_PROGRAMS
from harness.sound import Sound

NEEDS_PRODUCT = False
MIDI = True


def start(s):
    program = s.start(TEST_PROGRAMS / "harness_check.exe")
    return program, s.driver.wait_window(class_name="QuenloxHarnessCheck")


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
             if item.depth == 1 and not item.separator], [("Play a tone", False, True), ("Nothing", True, False)])
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
    assert program.wait_exit() == 1
    assert s.driver.find(class_name="QuenloxHarnessCheck") is None
    assert s.driver.code_page() == 932


def test_layer_1_files_made_here_are_a_clean_tone(s):
    path = material.write_mp1(s.material / "tone.mp1", 440, 1.0)
    decoded = s.material / "tone.wav"
    subprocess.run(["ffmpeg", "-v", "error", "-i", path, "-ac", "2", "-ar", "44100", decoded], check=True)
    tone = Sound.from_wave(decoded).trimmed()
    s.near(tone.frequency(), 440, 0.5, "frequency in Hz")
    assert tone.gaps() == []
