#include "libraries/vbmp3/tags/recipe.h"

#include <algorithm>

namespace vbmp3 {
namespace {
constexpr int64_t kBlock = 256 * 1024;
}

void Recipe::copy(ByteRange source) {
    if (source.empty()) return;
    size_ += source.size();
    if (!pieces_.empty() && pieces_.back().bytes.empty() && pieces_.back().source.end == source.begin)
        pieces_.back().source.end = source.end;
    else
        pieces_.push_back({source, {}});
}

void Recipe::add(std::span<const uint8_t> bytes) {
    if (bytes.empty()) return;
    size_ += static_cast<int64_t>(bytes.size());
    if (pieces_.empty() || pieces_.back().bytes.empty()) pieces_.emplace_back();
    pieces_.back().bytes.insert(pieces_.back().bytes.end(), bytes.begin(), bytes.end());
}

void Recipe::add(std::string_view text) { add({reinterpret_cast<const uint8_t*>(text.data()), text.size()}); }

void Recipe::append(const Recipe& other) {
    for (const Piece& piece : other.pieces_) {
        if (piece.bytes.empty())
            copy(piece.source);
        else
            add(piece.bytes);
    }
}

void Recipe::addLittleEndian32(uint32_t number) {
    const uint8_t bytes[] = {static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8),
                             static_cast<uint8_t>(number >> 16), static_cast<uint8_t>(number >> 24)};
    add(bytes);
}

bool Recipe::carryOut(const ByteSource& source, const std::function<bool(std::span<const uint8_t>)>& sink) const {
    std::vector<uint8_t> block;
    for (const Piece& piece : pieces_) {
        if (!piece.bytes.empty()) {
            if (!sink(piece.bytes)) return false;
            continue;
        }
        for (int64_t at = piece.source.begin; at < piece.source.end;) {
            const auto length = static_cast<size_t>(std::min(kBlock, piece.source.end - at));
            block.resize(length);
            if (source.readAt(at, block.data(), length) != length || !sink(block)) return false;
            at += static_cast<int64_t>(length);
        }
    }
    return true;
}

}  // namespace vbmp3
