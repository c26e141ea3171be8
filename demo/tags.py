"""The tags that the demonstration tune carries, as bytes."""

import struct


def id3v2(texts):
    """An ID3v2.3 tag of text frames {identifier: text}; Japanese as UTF-16 with a byte-order mark, the rest Latin-1."""
    frames = b""
    for identifier, text in texts.items():
        body = b"\0" + text.encode("latin-1") if text.isascii() else b"\1" + text.encode("utf-16")
        frames += identifier.encode() + struct.pack(">IH", len(body), 0) + body
    frames += bytes(256)  # room for editing without rewriting the file
    size = len(frames)
    synchsafe = bytes((size >> shift) & 0x7F for shift in (21, 14, 7, 0))
    return b"ID3\3\0\0" + synchsafe + frames


def _sjis_cut(text, size):
    """Shift-JIS of at most `size` bytes, never half a character."""
    data = text.encode("cp932")
    while len(data) > size:
        text = text[:-1]
        data = text.encode("cp932")
    return data


def id3v1(title, artist, album, year, genre, track):
    """The 128 bytes of ID3v1.1, texts in Shift-JIS."""
    return (b"TAG" + _sjis_cut(title, 30).ljust(30, b"\0") + _sjis_cut(artist, 30).ljust(30, b"\0") +
            _sjis_cut(album, 30).ljust(30, b"\0") + year.encode().ljust(4, b"\0") + bytes(28) +
            bytes((0, track, genre)))


def lyrics3(lines, title, artist, album):
    """A Lyrics3 v2 block; [(seconds, line)] become [mm:ss] time tags. It has to stand right before an ID3v1 tag.

    Layout: LYRICSBEGIN, fields of identifier, five digits of length and contents (IND comes first: lyrics present, time
    tags present), then six digits of the size of all that and LYRICS200.
    """
    def field(identifier, data):
        return identifier + b"%05d" % len(data) + data

    text = "\r\n".join(f"[{int(at // 60):02d}:{int(at % 60):02d}]{line}" for at, line in lines)
    body = b"LYRICSBEGIN" + field(b"IND", b"11")
    body += field(b"EAL", album.encode("cp932")) + field(b"EAR", artist.encode("cp932"))
    body += field(b"ETT", title.encode("cp932")) + field(b"LYR", text.encode("cp932"))
    return body + b"%06d" % len(body) + b"LYRICS200"
