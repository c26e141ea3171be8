#!/usr/bin/python3
"""Writes the seeds of the fuzz targets file_layout, id3v2 and riff_info into corpus/. Run it after changing it; the seeds
are kept under version control with the finds of past runs (find-*)."""
import os
import struct

here = os.path.dirname(os.path.abspath(__file__))


def put(target, name, data):
    folder = os.path.join(here, "corpus", target)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "seed-" + name), "wb") as out:
        out.write(data)


def safe(n):
    return bytes(n >> s & 0x7F for s in (21, 14, 7, 0))


def frame(version, name, body, flags=0):
    if version == 2:
        return name + struct.pack(">I", len(body))[1:] + body
    size = safe(len(body)) if version == 4 else struct.pack(">I", len(body))
    return name + size + struct.pack(">H", flags) + body


def id3v2(version, body, flags=0):
    tag = b"ID3" + bytes((version, 0, flags)) + safe(len(body)) + body
    return tag + (b"3DI" + tag[3:10] if flags & 0x10 else b"")


def chunk(name, body):
    return name + struct.pack("<I", len(body)) + body + b"\0" * (len(body) % 2)


def riff(form, body):
    return b"RIFF" + struct.pack("<I", len(body) + 4) + form + body


def ape(items):
    def part(flags):
        return b"APETAGEX" + struct.pack("<IIII", 2000, len(items) + 32, 1, flags) + b"\0" * 8
    return part(0xA0000000) + items + part(0x80000000)


sound = (b"\xFF\xFB\x10\x44" + b"\0" * 100) * 3
v1 = b"TAG" + b"title".ljust(30, b"\0") + b"\x96\xE9".ljust(91, b"\0") + b"\0\0\x05\x11"
v22 = id3v2(2, frame(2, b"TT2", b"\0title") + frame(2, b"COM", b"\0eng\0c") + frame(2, b"TCO", b"\0(17)"))
v23 = id3v2(3, frame(3, b"TIT2", b"\1\xFF\xFE\x1C\x59") + frame(3, b"APIC", b"\0image/png\0\3\0xx") + frame(3, b"TPE1", b"gx", 0x20))
v23x = id3v2(3, struct.pack(">IHI", 6, 0, 0) + frame(3, b"TALB", b"\0album"), 0x40)
v23u = id3v2(3, frame(3, b"TIT2", b"\1\xFF\0\xFE\x1C\x59".replace(b"\xFF\0", b"\xFF")).replace(b"\xFF\xFE", b"\xFF\0\xFE"), 0x80)
v24 = id3v2(4, frame(4, b"TIT2", b"\3a\0b") + frame(4, b"TDRC", b"\0002001-02-03") + frame(4, b"TPE1", safe(3) + b"\1\xFF\0\xFE", 3), 0x10)
v24x = id3v2(4, safe(6) + b"\1\0" + frame(4, b"TRCK", b"\0005/7"), 0x40)
lyrics2 = b"LYRICSBEGININD0000200LYR00005[0:1]"
lyrics2 += b"%06dLYRICS200" % len(lyrics2)
lyrics1 = b"LYRICSBEGIN[00:01]a\r\nLYRICSEND"
items = struct.pack("<II", 3, 0) + b"Title\0abc"
info = b"INFO" + chunk(b"INAM", b"\x96\xE9\0") + chunk(b"IART", b"artist") + chunk(b"ISFT", b"x") + chunk(b"IID3", v1)
rmp = riff(b"RMP3", chunk(b"data", v23 + sound + lyrics2) + chunk(b"LIST", info))
wave = riff(b"WAVE", chunk(b"fmt ", struct.pack("<HHIIHH", 1, 2, 44100, 176400, 4, 16)) + chunk(b"data", b"\1" * 64) + chunk(b"LIST", info))
mp3wave = riff(b"WAVE", chunk(b"fmt ", struct.pack("<HHIIHH", 0x55, 2, 44100, 16000, 1, 0)) + chunk(b"data", sound + v1) + chunk(b"id3 ", v23))

for name, tag in (("v22", v22), ("v23", v23), ("v23-extended", v23x), ("v23-unsynchronised", v23u), ("v24", v24), ("v24-extended", v24x)):
    put("id3v2", name, tag)
    put("file_layout", name, tag + sound + v1)
put("file_layout", "tails", v23 + sound + v24 + ape(items) + lyrics2 + b"TAG+".ljust(227, b"x") + v1)
put("file_layout", "lyrics1", sound + lyrics1 + v1)
put("file_layout", "ape-head", ape(items) + sound + ape(items))
for name, data in (("rmp", rmp), ("wave", wave), ("mp3-in-wave", mp3wave), ("rmp-between-tags", v23 + rmp + lyrics2 + v1),
                   ("open", wave[:4] + b"\xFF" * 4 + wave[8:36] + b"data\xFF\xFF\xFF\xFFxxxx")):
    put("file_layout", name, data)
    put("riff_info", name, data)
put("riff_info", "mp3", v23 + sound + lyrics2 + v1)
