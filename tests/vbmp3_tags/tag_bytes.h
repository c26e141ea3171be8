// Builds tags and containers byte by byte, so that the tests do not read what the code under test has written.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tagbytes {

inline std::string Le32(uint32_t n) {
    return {static_cast<char>(n), static_cast<char>(n >> 8), static_cast<char>(n >> 16), static_cast<char>(n >> 24)};
}
inline std::string Be32(uint32_t n) {
    return {static_cast<char>(n >> 24), static_cast<char>(n >> 16), static_cast<char>(n >> 8), static_cast<char>(n)};
}
inline std::string Synchsafe(uint32_t n) {
    return {static_cast<char>(n >> 21 & 0x7F), static_cast<char>(n >> 14 & 0x7F), static_cast<char>(n >> 7 & 0x7F),
            static_cast<char>(n & 0x7F)};
}
inline std::string Padded(std::string text, size_t length) {
    text.resize(length, '\0');
    return text;
}
inline std::span<const uint8_t> BytesOf(const std::string& s) {
    return {reinterpret_cast<const uint8_t*>(s.data()), s.size()};
}

// Frames of MPEG-1 layer 3, 128 kbit/s, 44.1 kHz, joint stereo: 417 bytes each, silence.
inline std::string MpegFrames(int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += Padded(std::string("\xFF\xFB\x90\x44", 4), 417);
    return all;
}

inline std::string Id3v1(const std::string& title, const std::string& artist = "", const std::string& album = "",
                         const std::string& year = "", const std::string& comment = "", int track = 0,
                         int genre = 255) {
    std::string tag = "TAG" + Padded(title, 30) + Padded(artist, 30) + Padded(album, 30) + Padded(year, 4);
    tag += track > 0 ? Padded(comment, 28) + '\0' + static_cast<char>(track) : Padded(comment, 30);
    return tag + static_cast<char>(genre);
}

inline std::string TagPlus() { return Padded("TAG+extended title", 227); }

inline std::string Lyrics3v1(const std::string& text) { return "LYRICSBEGIN" + text + "LYRICSEND"; }

// `fields` are already coded as id, five digits, text.
inline std::string Lyrics3v2(const std::string& fields) {
    std::string size = std::to_string(fields.size() + 11);
    return "LYRICSBEGIN" + fields + std::string(6 - size.size(), '0') + size + "LYRICS200";
}

inline std::string ApeItem(const std::string& key, const std::string& value) {
    return Le32(static_cast<uint32_t>(value.size())) + Le32(0) + key + '\0' + value;
}
inline std::string Ape(const std::string& items, uint32_t count, bool header = true) {
    const auto part = [&](uint32_t flags) {
        return "APETAGEX" + Le32(header ? 2000 : 1000) + Le32(static_cast<uint32_t>(items.size() + 32)) + Le32(count) +
               Le32(flags) + std::string(8, '\0');
    };
    return (header ? part(0xA0000000) : "") + items + part(header ? 0x80000000 : 0);
}

inline std::string Frame3(const std::string& id, const std::string& body, uint16_t flags = 0) {  // ID3v2.3
    return id + Be32(static_cast<uint32_t>(body.size())) + static_cast<char>(flags >> 8) + static_cast<char>(flags) +
           body;
}
inline std::string Frame4(const std::string& id, const std::string& body, uint16_t flags = 0) {  // ID3v2.4
    return id + Synchsafe(static_cast<uint32_t>(body.size())) + static_cast<char>(flags >> 8) +
           static_cast<char>(flags) + body;
}
inline std::string Frame2(const std::string& id, const std::string& body) {  // ID3v2.2
    return id + Be32(static_cast<uint32_t>(body.size())).substr(1) + body;
}
inline std::string Id3v2(int version, const std::string& frames, int flags = 0) {
    std::string tag = std::string("ID3") + static_cast<char>(version) + '\0' + static_cast<char>(flags) +
                      Synchsafe(static_cast<uint32_t>(frames.size())) + frames;
    if (version == 4 && (flags & 0x10) != 0) tag += "3DI" + tag.substr(3, 7);
    return tag;
}

inline std::string Unsynchronised(const std::string& body) {
    std::string out;
    for (size_t i = 0; i < body.size(); ++i) {
        out += body[i];
        const bool last = i + 1 == body.size();
        if (body[i] == '\xFF' && (last || body[i + 1] == '\0' || (body[i + 1] & 0xE0) == 0xE0)) out += '\0';
    }
    return out;
}

inline std::string Chunk(const std::string& id, const std::string& body, bool pad = true) {
    return id + Le32(static_cast<uint32_t>(body.size())) + body +
           (pad && body.size() % 2 != 0 ? std::string(1, '\0') : "");
}
inline std::string Riff(const std::string& form, const std::string& chunks) {
    return "RIFF" + Le32(static_cast<uint32_t>(chunks.size() + 4)) + form + chunks;
}
inline std::string FmtBody(int tag = 1, int channels = 2, int rate = 44100, int bits = 16) {
    const int align = channels * bits / 8;
    return std::string{static_cast<char>(tag), static_cast<char>(tag >> 8), static_cast<char>(channels), 0} +
           Le32(static_cast<uint32_t>(rate)) + Le32(static_cast<uint32_t>(rate * align)) +
           std::string{static_cast<char>(align), 0, static_cast<char>(bits), 0};
}

}  // namespace tagbytes
