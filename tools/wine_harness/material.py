"""Sound files that the scenarios play, made afresh with exactly known contents."""

import os
import pathlib
import struct
import subprocess
import wave

import numpy

RATE = 44100


def tone(frequency=440.0, seconds=2.0, level=0.4, rate=RATE):
    """A steady sine, float array of shape (frames, 2)."""
    t = numpy.arange(int(seconds * rate)) / rate
    return numpy.repeat((level * numpy.sin(2 * numpy.pi * frequency * t))[:, None], 2, axis=1)


def silence(seconds, rate=RATE):
    return numpy.zeros((int(seconds * rate), 2))


def steps(frequencies, seconds=1.0, level=0.4, rate=RATE):
    """Tones one after the other without a gap: where one is in the sound tells the position."""
    return numpy.concatenate([tone(f, seconds, level, rate) for f in frequencies])


def write_wave(path, samples, rate=RATE, bits=16, channels=2):
    """PCM; 8 bits are unsigned as WAVE has them."""
    samples = samples[:, :channels] if channels <= 2 else numpy.repeat(samples[:, :1], channels, axis=1)
    scale = 2 ** (bits - 1)
    values = numpy.clip(numpy.round(samples * scale), -scale, scale - 1).astype("<i4")
    if bits == 8:
        data = (values + 128).astype("u1").tobytes()
    else:
        data = values.reshape(-1, 1).view("u1").reshape(-1, 4)[:, :bits // 8].tobytes()
    with wave.open(str(path), "wb") as file:
        file.setnchannels(channels)
        file.setsampwidth(bits // 8)
        file.setframerate(rate)
        file.writeframes(data)
    return pathlib.Path(path)


def endless_wave(path):
    """Longer than a RIFF can tell, silent and without a place on the disk: what takes a while to convert."""
    most = 0xFFFFFFFF
    path.write_bytes(struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", most, b"WAVE", b"fmt ", 16, 1, 2, RATE, RATE * 4, 4, 16, b"data", most))
    os.truncate(path, 5 << 30)
    return path


def _encoded(path, samples, command, rate=RATE):
    """Runs `command` with the sound as WAVE in the file that replaces "IN"; "OUT" is the target."""
    path = pathlib.Path(path)
    source = path.with_name(path.name + ".source.wav")
    write_wave(source, samples, rate)
    try:
        done = subprocess.run([{"IN": str(source), "OUT": str(path)}.get(a, a) for a in command],
                              stdin=subprocess.DEVNULL, capture_output=True, text=True)
        if done.returncode:
            raise RuntimeError(f"{command[0]} failed: {done.stderr[-500:]}")
    finally:
        source.unlink()
    return path


def write_mp3(path, samples, *options, rate=RATE):
    """MPEG layer 3 by lame; options as lame takes them, 128 kbit/s when there are none."""
    return _encoded(path, samples, ["lame", "--quiet", *(options or ("-b", "128")), "IN", "OUT"], rate)


def _ffmpeg(path, samples, *options, rate=RATE):
    return _encoded(path, samples, ["ffmpeg", "-v", "error", "-y", "-i", "IN", *options, "OUT"], rate)


def write_mp2(path, samples, rate=RATE):
    """MPEG layer 2, 192 kbit/s."""
    return _ffmpeg(path, samples, "-c:a", "mp2", "-b:a", "192k", "-f", "mp2", rate=rate)


def write_wma(path, samples, rate=RATE):
    return _ffmpeg(path, samples, "-c:a", "wmav2", "-b:a", "128k", "-f", "asf", rate=rate)


def write_rmp(path, mp3, info=None):
    """RIFF form RMP3 around the frames of an MP3 file; `info`: texts of a LIST INFO chunk, {"INAM": "title"}."""
    def chunk(name, data):
        return name + struct.pack("<I", len(data)) + data + b"\0" * (len(data) % 2)

    body = b"RMP3" + chunk(b"data", pathlib.Path(mp3).read_bytes())
    if info:
        fields = b"".join(chunk(name.encode(), text.encode("cp932") + b"\0") for name, text in info.items())
        body += chunk(b"LIST", b"INFO" + fields)
    pathlib.Path(path).write_bytes(chunk(b"RIFF", body))
    return pathlib.Path(path)


def write_midi(path, notes=(60, 62, 64, 65, 67), quarter_ms=500):
    """A format 0 file that plays one quarter note after the other on channel 1."""
    def variable(value):
        out = [value & 0x7F]
        while value := value >> 7:
            out.insert(0, value & 0x7F | 0x80)
        return bytes(out)

    division = 96
    events = b"\0\xff\x51\x03" + (quarter_ms * 1000).to_bytes(3, "big") + b"\0\xc0\0"
    for note in notes:
        events += b"\0\x90" + bytes((note, 100)) + variable(division) + b"\x80" + bytes((note, 0))
    events += b"\0\xff\x2f\0"
    pathlib.Path(path).write_bytes(b"MThd" + struct.pack(">IHHH", 6, 0, 1, division) + b"MTrk" +
                                   struct.pack(">I", len(events)) + events)
    return pathlib.Path(path)


def write_mp1(path, frequency=440.0, seconds=2.0, level=0.4, rate=RATE):
    """MPEG-1 layer 1, 384 kbit/s stereo, one steady tone between 100 and 600 Hz.

    No free encoder makes layer 1. A tone that lies well inside the lowest of the 32 sub-bands is, in that band's own
    samples, a tone of the same frequency at 1/32 of the rate; writing these needs no analysis filter.
    """
    if not 100 <= frequency <= 600:
        raise ValueError("the tone has to lie inside the first sub-band")
    bits, slots = 15, 384000 * 12 // rate  # bits per sample; a slot is 4 bytes
    header = 0xFFFF0000 | 12 << 12 | {44100: 0, 48000: 1, 32000: 2}[rate] << 10  # layer 1, no CRC, 384 kbit/s, stereo
    frames = int(seconds * rate / 384)
    t = numpy.arange(frames * 12) / (rate / 32)
    # 2^bits - 1 steps, offset binary with the first bit inverted
    fraction = level * numpy.sin(2 * numpy.pi * frequency * t) * (2 ** bits - 1) / 2 ** bits
    codes = numpy.clip(numpy.floor(fraction * 2 ** (bits - 1)) + 2 ** (bits - 1), 0, 2 ** bits - 2).astype(int)
    out = bytearray()
    for frame in codes.reshape(frames, 12):
        fields = [(header, 32)] + [(bits - 1, 4)] * 2 + [(0, 4)] * 62  # allocation: both channels of sub-band 0 only
        fields += [(3, 6)] * 2  # scale factor 1.0
        fields += [(int(code), bits) for code in frame for _ in range(2)]
        value = length = 0
        for field, size in fields:
            value, length = value << size | field, length + size
        total = slots * 32
        out += (value << (total - length)).to_bytes(total // 8, "big")
    pathlib.Path(path).write_bytes(bytes(out))
    return pathlib.Path(path)
