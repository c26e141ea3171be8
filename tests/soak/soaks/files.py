"""Sound files for the soaks: whole ones of every kind, and what becomes of them."""

import random

from wine_harness import material

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
        kind = chance.randrange(7)
        if kind == 0:  # cut off
            del data[at:]
        elif kind == 1:  # bytes changed here and there
            for _ in range(chance.choice((1, 10, 200))):
                if data:
                    data[chance.randrange(len(data))] = chance.randrange(256)
        elif kind == 2:  # a hole of zeros
            data[at:at + length] = bytes(min(length, size - at))
        elif kind == 3:  # a piece is missing
            del data[at:at + length]
        elif kind == 4:  # a piece of noise comes in
            data[at:at] = chance.randbytes(length)
        elif kind == 5:  # the head is damaged
            for _ in range(4):
                if data:
                    data[chance.randrange(min(64, len(data)))] = chance.choice((0, 0xFF, 0x80, chance.randrange(256)))
        else:  # the end once more in front
            data[0:0] = data[-length:]
    return bytes(data)


def damaged_folder(folder, count, seed=1):
    """`count` files, nearly all of them damaged, some empty, some under the extension of another kind."""
    chance = random.Random(seed)
    folder.mkdir(parents=True, exist_ok=True)
    originals = whole(folder.parent / (folder.name + " originals"), 0.4)
    contents = [(file.suffix, file.read_bytes()) for file in originals]
    suffixes = [".mp3", ".mp2", ".mp1", ".mpg", ".rmp", ".wav"]
    for number in range(count):
        suffix, data = chance.choice(contents)
        if chance.random() < 0.1:
            suffix = chance.choice(suffixes)
        data = b"" if chance.random() < 0.01 else data if chance.random() < 0.05 else damaged(data, chance)
        (folder / f"{number:05} 曲{suffix}").write_bytes(data)
    return folder
