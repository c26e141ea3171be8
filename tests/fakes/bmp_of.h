// The bytes of a 24-bit bitmap file that holds a picture.
#pragma once

#include <string>

#include "forms/surface.h"

namespace quenlox {

inline std::string BmpOf(const Surface& picture) {
    std::string out = "BM";
    const auto number = [&](int value, int bytes) {
        for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> 8 * i);
    };
    for (const int field : {0, 0, 54, 40, picture.width(), picture.height()}) number(field, 4);
    for (const int field : {1, 24}) number(field, 2);
    out.resize(54);
    for (int y = picture.height() - 1; y >= 0; --y) {
        for (int x = 0; x < picture.width(); ++x) {
            const Color color = Surface::ToColor(picture.at(x, y));
            for (const std::uint8_t part : {color.blue, color.green, color.red}) out += static_cast<char>(part);
        }
        out.resize(54 + (out.size() - 54 + 3) / 4 * 4);
    }
    return out;
}

}  // namespace quenlox
