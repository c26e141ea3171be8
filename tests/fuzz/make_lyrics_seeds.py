#!/usr/bin/env python3
"""Writes the first inputs of the fuzz targets for lyrics below tests/fuzz/corpus. What a run has found lies beside them."""
import pathlib

corpus = pathlib.Path(__file__).parent / "corpus"


def field(name, data):
    return name + b"%05d" % len(data) + data


def sylt(encoding, stamps, kind, entries, end=b"\0"):
    body = b"".join(text + end + ms.to_bytes(4, "big") for text, ms in entries)
    return bytes([encoding]) + b"jpn" + bytes([stamps, kind]) + end + body


def lyrics3(*fields):
    block = b"LYRICSBEGIN" + b"".join(fields)
    return block + b"%06dLYRICS200" % len(block)


lrc = ("[ti:曲]\r\n[ar:歌手]\r\n[offset:-250]\r\n題\r\n[00:01.00][01:01.00]さくら さくら\r\n[00:01.00]Cherry blossoms\r\n"
       "[00:05.50]<00:05.50>や<00:06.00>よ<00:06.5>い<00:07>\r\n[00:09]\r\n[01:02:03.4]end\r\n")
kra = "@Title=曲\r\n@Offset=+100\r\n@Ruby1=桜,さくら\r\n[00:01:00]さ[00:01:50]く[00:02:00]ら[00:02:50]\r\n(間奏)[00:10:00][00:11:00]あ\r\n"
seeds = {
    "lrc": {
        "utf8.lrc": lrc.encode(),
        "utf8_mark.lrc": b"\xef\xbb\xbf" + lrc.encode(),
        "shift_jis.lrc": lrc.encode("cp932"),
        "utf16.lrc": b"\xff\xfe" + lrc.encode("utf-16-le"),
        "utf16_unmarked.lrc": lrc.encode("utf-16-be"),
        "plain.txt": b"line\n\nline [00:01] inside\n\x1a",
        "many_stamps.lrc": b"[00:01]" * 300 + b"x",
        "odd_stamps.lrc": b"[00:60][1:2][-1:00][00:01.0005][00:01:02:03]<00:01>[99999:59.999]\n[offset:99999999999]\n",
    },
    "kra": {"utf8.kra": kra.encode(), "shift_jis.kra": kra.encode("cp932"), "backwards.kra": b"[00:09:00]a[00:01:00]b"},
    "lyrics3": {
        "one": b"LYRICSBEGIN[00:01]\x82\xa0\r\n[00:02]b\r\nLYRICSEND",
        "two": lyrics3(field(b"IND", b"110"), field(b"ETT", b"\x8b\xc8"), field(b"LYR", b"[00:01]a\r\nb")),
        "length_too_large": b"LYRICSBEGINLYR99999ab000018LYRICS200",
    },
    "sylt": {
        "latin1": sylt(0, 2, 1, [(b"\x82\xa0", 0), (b"\x82\xa2", 1000)]),
        "utf16": sylt(1, 2, 1, [(b"\xff\xfe\x42\x30", 0), (b"\x0a\0\x44\x30", 1000)], b"\0\0"),
        "utf16_big_endian": sylt(2, 1, 0, [(b"\x30\x42", 10), (b"\x30\x44", 20)], b"\0\0"),
        "utf8_syllables": sylt(3, 2, 2, [(b"Hel", 0), (b"lo", 500), (b"\nyou", 900), (b"end\n", 4294967295)]),
        "unsynchronised": b"\x03jpn\0[00:01]a\n[00:02]b",
    },
}
for target, files in seeds.items():
    (corpus / target).mkdir(parents=True, exist_ok=True)
    for name, data in files.items():
        (corpus / target / name).write_bytes(data)
