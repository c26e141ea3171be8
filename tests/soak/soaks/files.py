"""Sound files for the soaks: whole ones of every kind, and what becomes of them."""

import random

from harness import material

WHOLE = 12  # how many whole() makes


def whole(folder, seconds=1.0):
    """A file of every kind that the decoding library plays, of about this length."""
    folder.mkdir(parents=True, exist_ok=True)
    tone = material.tone
    files = [
        material.write_mp3(folder / "cbr.mp3", tone(440, seconds), "-b", "128", "--tt", "一", "--ta", "Anna", "--id3v2-only"),
        material.write_mp3(folder / "vbr.mp3", tone(500, seconds), "-V", "4", "--tt", "two", "--ta", "Bert", "--id3v1-only"),
        material.write_mp3(folder / "mono.mp3", tone(600, seconds), "-b", "64", "-m", "m"),
        material.write_mp3(folder / "low.mp3", tone(300, seconds, rate=22050), "-b", "32", rate=22050),
        material.write_mp3(folder / "high.mp3", tone(300, seconds, rate=48000), "-b", "320", rate=48000),
        material.write_mp2(folder / "layer2.mp2", tone(440, seconds)),
        material.write_mp1(folder / "layer1.mp1", 440, seconds),
        material.write_wave(folder / "cd.wav", tone(440, seconds)),
        material.write_wave(folder / "bytes.wav", tone(440, seconds, rate=8000), rate=8000, bits=8),
        material.write_wave(folder / "24.wav", tone(440, seconds), bits=24),
    ]
    files.append(material.write_rmp(folder / "rmp.rmp", files[0], {"INAM": "表"}))
    files.append(material.write_rmp(folder / "rmp2.rmp", files[2]))
    return files


def damaged(data, chance):
    """The bytes of a file after one to three mishaps."""
    data = bytearray(data)
    for _ in range(chance.randint(1, 3)):
        size = max(len(data), 1)
        at = chance.randrange(size)
        length = chance.choice((1, 4, 40, 400, 4000))
        kind = chance.randrange(6)
        if kind < 2:  # bytes changed, in the whole or in the head
            for _ in range(min(len(data), chance.choice((1, 10, 200)))):
                data[chance.randrange(len(data) if kind == 0 else min(64, len(data)))] = chance.choice((0, 0xFF, 0x80, chance.randrange(256)))
        elif kind == 2:  # a hole of zeros
            data[at:at + length] = bytes(min(length, size - at))
        elif kind == 3:  # a piece is missing, or all from there on
            del data[at:chance.choice((at + length, size))]
        elif kind == 4:  # a piece of noise comes in
            data[at:at] = chance.randbytes(length)
        else:  # the end once more in front
            data[0:0] = data[-length:]
    return bytes(data)


def ends_wine(data):
    """A WAVE file whose damaged head names a rate that no device has: the library refuses it, the media control interface is
    asked, and there Wine's sound driver ends the process by an assertion of its sound library. Windows refuses it."""
    at = data[:200].find(b"fmt ")
    return at >= 0 and not 1000 <= int.from_bytes(data[at + 12:at + 16], "little") <= 700000


def damaged_folder(folder, count, originals):
    """`count` damaged files made of others, some under the extension of another kind."""
    chance = random.Random(1)
    folder.mkdir(parents=True)
    contents = [(file.suffix, file.read_bytes()) for file in originals]
    suffixes = [".mp3", ".mp2", ".mp1", ".mpg", ".rmp", ".wav"]
    number = 0
    while number < count:
        suffix, data = chance.choice(contents)
        data = damaged(data, chance)
        if not ends_wine(data):
            (folder / f"{number:05} 曲{chance.choice(suffixes) if chance.random() < 0.1 else suffix}").write_bytes(data)
            number += 1
    return sorted(folder.iterdir())
