// Builds tags and containers byte by byte, so that the tests do not read what the code under test has written.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tagbytes {

inline std::string le32(uint32_t n) {
    return {static_cast<char>(n), static_cast<char>(n >> 8), static_cast<char>(n >> 16), static_cast<char>(n >> 24)};
}
inline std::string be32(uint32_t n) {
    return {static_cast<char>(n >> 24), static_cast<char>(n >> 16), static_cast<char>(n >> 8), static_cast<char>(n)};
}
inline std::string synchsafe(uint32_t n) {
    return {static_cast<char>(n >> 21 & 0x7F), static_cast<char>(n >> 14 & 0x7F), static_cast<char>(n >> 7 & 0x7F),
            static_cast<char>(n & 0x7F)};
}
inline std::string padded(std::string text, size_t length) {
    text.resize(length, '\0');
    return text;
}
inline std::span<const uint8_t> bytes(const std::string& s) {
    return {reinterpret_cast<const uint8_t*>(s.data()), s.size()};
}

// Frames of MPEG-1 layer 3, 128 kbit/s, 44.1 kHz, joint stereo: 417 bytes each, silence.
inline std::string mpegFrames(int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += padded(std::string("\xFF\xFB\x90\x44", 4), 417);
    return all;
}

inline std::string id3v1(const std::string& title, const std::string& artist = "", const std::string& album = "",
                         const std::string& year = "", const std::string& comment = "", int track = 0,
                         int genre = 255) {
    std::string tag = "TAG" + padded(title, 30) + padded(artist, 30) + padded(album, 30) + padded(year, 4);
    tag += track > 0 ? padded(comment, 28) + '\0' + static_cast<char>(track) : padded(comment, 30);
    return tag + static_cast<char>(genre);
}

inline std::string tagPlus() { return padded("TAG+extended title", 227); }

inline std::string lyrics3v1(const std::string& text) { return "LYRICSBEGIN" + text + "LYRICSEND"; }

// `fields` are already coded as id, five digits, text.
inline std::string lyrics3v2(const std::string& fields) {
    std::string size = std::to_string(fields.size() + 11);
    return "LYRICSBEGIN" + fields + std::string(6 - size.size(), '0') + size + "LYRICS200";
}

inline std::string apeItem(const std::string& key, const std::string& value) {
    return le32(static_cast<uint32_t>(value.size())) + le32(0) + key + '\0' + value;
}
inline std::string ape(const std::string& items, uint32_t count, bool header = true) {
    const auto part = [&](uint32_t flags) {
        return "APETAGEX" + le32(header ? 2000 : 1000) + le32(static_cast<uint32_t>(items.size() + 32)) + le32(count) +
               le32(flags) + std::string(8, '\0');
    };
    return (header ? part(0xA0000000) : "") + items + part(header ? 0x80000000 : 0);
}

inline std::string frame3(const std::string& id, const std::string& body, uint16_t flags = 0) {  // ID3v2.3
    return id + be32(static_cast<uint32_t>(body.size())) + static_cast<char>(flags >> 8) + static_cast<char>(flags) +
           body;
}
inline std::string frame4(const std::string& id, const std::string& body, uint16_t flags = 0) {  // ID3v2.4
    return id + synchsafe(static_cast<uint32_t>(body.size())) + static_cast<char>(flags >> 8) +
           static_cast<char>(flags) + body;
}
inline std::string frame2(const std::string& id, const std::string& body) {  // ID3v2.2
    return id + be32(static_cast<uint32_t>(body.size())).substr(1) + body;
}
inline std::string id3v2(int version, const std::string& frames, int flags = 0) {
    std::string tag = std::string("ID3") + static_cast<char>(version) + '\0' + static_cast<char>(flags) +
                      synchsafe(static_cast<uint32_t>(frames.size())) + frames;
    if (version == 4 && (flags & 0x10) != 0) tag += "3DI" + tag.substr(3, 7);
    return tag;
}

inline std::string unsynchronised(const std::string& body) {
    std::string out;
    for (size_t i = 0; i < body.size(); ++i) {
        out += body[i];
        const bool last = i + 1 == body.size();
        if (body[i] == '\xFF' && (last || body[i + 1] == '\0' || (body[i + 1] & 0xE0) == 0xE0)) out += '\0';
    }
    return out;
}

inline std::string chunk(const std::string& id, const std::string& body, bool pad = true) {
    return id + le32(static_cast<uint32_t>(body.size())) + body +
           (pad && body.size() % 2 != 0 ? std::string(1, '\0') : "");
}
inline std::string riff(const std::string& form, const std::string& chunks) {
    return "RIFF" + le32(static_cast<uint32_t>(chunks.size() + 4)) + form + chunks;
}
inline std::string waveFormat(int tag = 1, int channels = 2, int rate = 44100, int bits = 16) {
    const int align = channels * bits / 8;
    return std::string{static_cast<char>(tag), static_cast<char>(tag >> 8), static_cast<char>(channels), 0} +
           le32(static_cast<uint32_t>(rate)) + le32(static_cast<uint32_t>(rate * align)) +
           std::string{static_cast<char>(align), 0, static_cast<char>(bits), 0};
}

}  // namespace tagbytes
