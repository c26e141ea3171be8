#!/usr/bin/python3
"""Composes, synthesises, encodes and tags the demonstration tune: demo/make_demo.py

Writes quenlox-demo.mp3 (ID3v2.3, Lyrics3 v2 with time tags, ID3v1) and quenlox-demo.lrc beside this script. Both are kept
in the repository, so this runs only when the tune is changed. The same script gives the same sound.
"""

import pathlib
import subprocess
import wave

import numpy as np

from instruments import RATE, add, bass, bell, brush, electric_piano, flute, kick, pad, reverb
from tags import id3v1, id3v2, lyrics3

HERE = pathlib.Path(__file__).resolve().parent
TITLE, ARTIST, ALBUM, YEAR, GENRE = "朝のレコード", "Quenlox プロジェクト", "はじめの音", "2026", 33  # instrumental

BEAT = 0.6  # seconds
BAR = 4 * BEAT
TAIL = 2.5  # seconds for the last notes to ring out

# One chord to a bar: bass note, then the notes of the chord, as MIDI numbers.
D, A, A_CIS = (38, 62, 66, 69), (33, 61, 64, 69), (37, 61, 64, 69)
BM, FISM, G = (35, 62, 66, 71), (30, 61, 66, 69), (31, 62, 67, 71)
EM, GM = (28, 64, 67, 71), (31, 62, 67, 70)
CHORDS = [D, A_CIS, D, A, BM, FISM, G, D, EM, A, G, A, FISM, BM, G, A, D, D, GM, D]

# From the third bar on; (note, beats), 0 rests.
MELODY = [
    (69, 1), (74, 1), (76, .5), (78, 1.5), (76, 2), (73, 1), (69, 1),
    (74, 1), (76, .5), (78, .5), (74, 2), (73, 2.5), (69, .5), (71, .5), (73, .5),
    (74, 1.5), (71, .5), (74, 1), (79, 1), (78, 2), (74, 1), (69, 1),
    (76, 1.5), (78, .5), (79, 1), (78, 1), (76, 3), (0, 1),
    (83, 1.5), (81, .5), (79, 1), (78, 1), (76, 1), (78, .5), (79, .5), (81, 2),
    (81, 1.5), (78, .5), (73, 1), (76, 1), (78, 1), (76, .5), (74, .5), (71, 2),
    (71, .5), (73, .5), (74, 1), (76, 1), (78, 1), (79, 1.5), (78, .5), (76, 1), (73, 1),
    (74, 3), (78, 1), (81, 3), (0, 1),
    (82, 1), (79, 1), (74, 2), (78, 4),
]

# A line to two bars, from the third bar on.
WORDS = [
    "窓をあければ 朝のひかり",
    "針をおとして 音がはじまる",
    "遠い町から 届いた風に",
    "小さな歌を そっとのせよう",
    "まわれ まわれ 銀色の輪",
    "昨日と今日を つないでいく",
    "まわれ まわれ やさしい音",
    "君のところへ 届くまで",
]


def timed_words():
    """[(seconds, line)]; an empty line clears the display when the song is over."""
    return [((2 + 2 * i) * BAR, line) for i, line in enumerate(WORDS)] + [((2 + 2 * len(WORDS)) * BAR, "")]


def perform():
    """The whole tune, float array of shape (frames, 2), before mastering."""
    length = int((len(CHORDS) * BAR + TAIL) * RATE)
    dry, wet = np.zeros((length, 2)), np.zeros((length, 2))
    rng = np.random.default_rng(7)

    for number, (root, *chord) in enumerate(CHORDS):
        start, last = number * BAR, number == len(CHORDS) - 1
        for i, note in enumerate(chord):
            add(wet, start, pad(note, BAR + (TAIL if last else 0.5)), 0.05, 0.3 + 0.2 * i)
        # The piano breaks the chord up and down in quavers; the last one is rolled and left to ring.
        pattern = [0, 1, 2, 1, 0, 1, 2, 1] if not last else [0, 1, 2]
        for i, step in enumerate(pattern):
            note = chord[step] + (12 if i == 2 and number % 2 else 0)
            at = start + i * (BEAT / 2 if not last else 0.09)
            sound = electric_piano(note, 1.6 if not last else 4.0, 0.8 if i % 4 else 1.0)
            add(wet, at, sound, 0.11, 0.62 - 0.08 * step)
        if number >= 2:
            for beat, size in ((0, 1.5), (2, 1.0), (3, 1.0)) if not last else ((0, 4.0),):
                add(dry, start + beat * BEAT, bass(root + (12 if root < 31 else 0), size * BEAT), 0.22, 0.5)
        if 4 <= number < 18:
            for beat in range(4):
                add(wet, start + beat * BEAT, brush(rng, accent=beat % 2 == 1), 0.07 if beat % 2 else 0.035, 0.42)
                add(wet, start + (beat + 0.5) * BEAT, brush(rng, accent=False), 0.025, 0.58)
            add(dry, start, kick(), 0.22, 0.5)
            add(dry, start + 2 * BEAT, kick(), 0.16, 0.5)
        if 10 <= number < 18 and number % 2 == 0:
            add(wet, start, bell(chord[2] + 24, 2.5), 0.035, 0.75)

    at = 2 * BAR
    for note, beats in MELODY:
        if note:
            add(wet, at, flute(note, beats * BEAT + 0.06, rng), 0.17, 0.47)
        at += beats * BEAT
    return dry + wet + 0.22 * reverb(wet, seconds=1.8)


def mastered(sound):
    """Brought to -15 dB on average, peaks rounded off below full scale, the tail faded out."""
    sound = sound * (10 ** (-15 / 20) / np.sqrt(np.mean(sound ** 2)))
    sound = 0.9 * np.tanh(sound / 0.9)
    fade = int(1.5 * RATE)
    sound[-fade:] *= (np.cos(np.linspace(0, np.pi, fade))[:, None] + 1) / 2
    return sound


def encode(sound):
    source, target = HERE / "quenlox-demo.wav", HERE / "quenlox-demo.mp3"
    with wave.open(str(source), "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes((sound * 32767).astype("<i2").tobytes())
    subprocess.run(["lame", "--quiet", "-q", "2", "-b", "128", "--noreplaygain", str(source), str(target)], check=True)
    source.unlink()
    return target


def main():
    target = encode(mastered(perform()))
    frames = target.read_bytes()
    texts = {"TIT2": TITLE, "TPE1": ARTIST, "TALB": ALBUM, "TYER": YEAR, "TCON": f"({GENRE})", "TRCK": "1"}
    target.write_bytes(id3v2(texts) + frames + lyrics3(timed_words(), TITLE, ARTIST, ALBUM) +
                       id3v1(TITLE, ARTIST, ALBUM, YEAR, GENRE, track=1))

    lines = [f"[ti:{TITLE}]", f"[ar:{ARTIST}]", f"[al:{ALBUM}]"]
    lines += [f"[{int(at // 60):02d}:{at % 60:05.2f}]{line}" for at, line in timed_words()]
    target.with_suffix(".lrc").write_bytes(("\r\n".join(lines) + "\r\n").encode("utf-8"))
    print(f"{target.name}: {target.stat().st_size} bytes")


if __name__ == "__main__":
    main()
