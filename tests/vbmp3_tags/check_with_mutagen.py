#!/usr/bin/python3
"""Reads the files of write_samples with mutagen, and the RIFF files with a reader of its own: what this library writes
must be what others read."""
import glob
import os
import struct
import sys

import mutagen.id3

folder = sys.argv[1]
LONG_TITLE = ("長い題" * 50).encode()[:510].decode()
LONG_COMMENT = ("長い説明" * 100).encode()[:1020].decode()
SAMPLES = {
    "plain": ("Title", "Artist", "Album", "A comment", "1999", "Rock", "5"),
    "japanese": ("夜曲", "歌手 太郎", "日本語のアルバム", "説明文", "2001", "JPop", "12"),
    "emoji": ("夜曲🎵", "한국", "Ä🙂", "行一\n行二", "2020", "演歌", "3/12"),
    "long": (LONG_TITLE, "Artist", "Album", LONG_COMMENT, "1999", "Rock", "5"),
}
sound = open(os.path.join(folder, "sound"), "rb").read()
failures = []


def check(what, got, wanted):
    if got != wanted:
        failures.append(f"{what}: {got!r} instead of {wanted!r}")


def id3_fields(path):
    # Without translation the frames of 2.3 come back as they stand there.
    tag = mutagen.id3.ID3(path, translate=False, load_v1=False)
    def text(*names):
        for name in names:
            if name in tag:
                return str(tag[name])
        return ""
    comments = tag.getall("COMM") + tag.getall("COM")
    genre = [g for frame in tag.getall("TCON") + tag.getall("TCO") for g in frame.genres]
    return tag, (text("TIT2", "TT2"), text("TPE1", "TP1"), text("TALB", "TAL"), str(comments[0]) if comments else "",
                 text("TYER", "TDRC", "TYE"), genre[0] if genre else "", text("TRCK", "TRK"))


def decoded(data):
    """A text of ID3v1 or INFO: Shift-JIS, or UTF-8 where Shift-JIS lacks a character."""
    data = data.split(b"\0")[0].rstrip()
    if data.startswith(b"\xef\xbb\xbf"):
        return data[3:].decode()
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return data.decode("cp932")


def check_v1(what, block, fields):
    title, artist, album, comment, year, genre, track = fields
    check(what + " mark", block[:3], b"TAG")
    for name, part, wanted in (("title", block[3:33], title), ("artist", block[33:63], artist),
                               ("album", block[63:93], album), ("comment", block[97:125], comment), ("year", block[93:97], year)):
        got = decoded(part)
        whole = len(wanted.encode("cp932", "ignore")) <= len(part) - 2 and "🎵" not in wanted
        check(f"{what} {name}", got, wanted if whole else wanted[:len(got)])
        if not got:
            failures.append(f"{what} {name}: empty")
    check(what + " track", block[126], int(track.split("/")[0]))
    check(what + " genre", block[127], {"Rock": 17, "JPop": 146}.get(genre, 255))


def chunks(data, at, end):
    while at + 8 <= end:
        name, size = data[at:at + 4], struct.unpack("<I", data[at + 4:at + 8])[0]
        assert at + 8 + size <= end, (name, size)
        yield name, data[at + 8:at + 8 + size]
        at += 8 + size + size % 2


def check_rmp(path, fields):
    data = open(path, "rb").read()
    check(path + " size", struct.unpack("<I", data[4:8])[0], len(data) - 8)
    top = dict(chunks(data, 12, len(data)))
    check(path + " sound", sound in top[b"data"], True)
    info = dict(chunks(top[b"LIST"], 4, len(top[b"LIST"])))
    names = (b"INAM", b"IART", b"IPRD", b"ICMT", b"ICRD", b"IGNR", b"ITRK")
    for name, wanted in zip(names, fields):
        check(f"{path} {name.decode()}", decoded(info[name]), wanted)
    check(path + " IID3", data[-128:], info[b"IID3"])
    check_v1(path + " IID3", data[-128:], fields)


for sample, fields in SAMPLES.items():
    for kind, version in (("v22", (2, 2, 0)), ("v23", (2, 3, 0)), ("v23picture", (2, 3, 0)), ("v24", (2, 4, 0))):
        path = os.path.join(folder, f"{sample}-{kind}.mp3")
        tag, got = id3_fields(path)
        check(path + " version", tag.version, version)
        check(path, got, fields)
        data = open(path, "rb").read()
        check(path + " sound", data[tag.size:tag.size + len(sound)], sound)
        if kind in ("v23picture", "v24"):
            check(path + " picture", tag.getall("APIC")[0].data, b"\x89" * 5000)
            check(path + " other", str(tag["TXXX:key"]), "value")
        if kind == "v22":
            check(path + " picture", (tag.getall("APIC") + tag.getall("PIC"))[0].data, b"\x89" * 5000)
        if kind == "v23picture":
            check_v1(path, data[-128:], fields)
    path = os.path.join(folder, f"{sample}-v1.mp3")
    check_v1(path, open(path, "rb").read()[-128:], fields)
    check_rmp(os.path.join(folder, f"{sample}-si.rmp"), fields)
    path = os.path.join(folder, f"{sample}-fromsi.mp3")
    check(path + " sound", sound in open(path, "rb").read(), True)
    if sample in ("emoji", "long"):
        check(path, id3_fields(path)[1], fields)
    for path in glob.glob(os.path.join(folder, f"{sample}-*.back.mp3")):
        first, back = open(path[:-len(".back.mp3")], "rb").read(), open(path, "rb").read()
        check(path, back[:len(first)], first)
        check(path + " tail", back[len(first):len(first) + 3], b"" if first[-128:-125] == b"TAG" else b"TAG")

print("\n".join(failures) or f"{len(os.listdir(folder))} files read as written")
sys.exit(1 if failures else 0)
