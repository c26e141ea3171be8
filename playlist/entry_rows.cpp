#include "playlist/entry_rows.h"

#include <array>
#include <cstring>
#include <utility>

#include "text/encoding.h"

namespace quenlox {
namespace {

// Below this much waste a store is not worth copying.
constexpr std::size_t kWorthCompacting = 1u << 20;

using PathLength = std::uint32_t;
using TextLengths = std::array<std::uint16_t, 3>;

std::size_t PathSize(const char* packed) {
    PathLength length = 0;
    std::memcpy(&length, packed, sizeof length);
    return sizeof length + length;
}

TextLengths LengthsOf(const char* packed) {
    TextLengths lengths;
    std::memcpy(lengths.data(), packed, sizeof lengths);
    return lengths;
}

std::size_t TextsSize(const char* packed) {
    const TextLengths lengths = LengthsOf(packed);
    return sizeof lengths + lengths[0] + lengths[1] + lengths[2];
}

const char* Copy(TextStore& store, const char* packed, std::size_t size) {
    char* const place = store.allocate(size);
    std::memcpy(place, packed, size);
    return place;
}

}  // namespace

std::string_view EntryRows::path(int row) const {
    const char* const packed = at(row).path;
    return {packed + sizeof(PathLength), PathSize(packed) - sizeof(PathLength)};
}

EntryTexts EntryRows::texts(int row) const {
    const char* const packed = at(row).texts;
    const TextLengths lengths = LengthsOf(packed);
    const char* text = packed + sizeof lengths;
    EntryTexts texts;
    texts.title = {text, lengths[0]};
    texts.name = {text + lengths[0], lengths[1]};
    texts.album = {text + lengths[0] + lengths[1], lengths[2]};
    texts.seconds = at(row).seconds;
    return texts;
}

void EntryRows::append(std::string_view path) {
    rows_.emplace_back();
    ++unknown_;
    setPath(count() - 1, path);
}

void EntryRows::append(const EntryRows& from, int row) {
    append(from.path(row));
    if (from.known(row)) setTexts(count() - 1, from.texts(row));
}

void EntryRows::setPath(int row, std::string_view path) {
    Row& changed = at(row);
    if (changed.path) live_ -= PathSize(changed.path);
    const auto length = static_cast<PathLength>(path.size());
    char* const place = store_.allocate(sizeof length + length);
    std::memcpy(place, &length, sizeof length);
    std::memcpy(place + sizeof length, path.data(), length);
    changed.path = place;
    live_ += sizeof length + length;
}

void EntryRows::setTexts(int row, const EntryTexts& texts) {
    Row& changed = at(row);
    if (changed.texts) {
        live_ -= TextsSize(changed.texts);
    } else {
        --unknown_;
    }
    std::array<std::string_view, 3> parts{texts.title, texts.name, texts.album};
    TextLengths lengths;
    std::size_t size = sizeof lengths;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        parts[i] = CutUtf8(parts[i], 0xFFFF);
        lengths[i] = static_cast<std::uint16_t>(parts[i].size());
        size += parts[i].size();
    }
    char* place = store_.allocate(size);
    changed.texts = place;
    changed.seconds = texts.seconds;
    std::memcpy(place, lengths.data(), sizeof lengths);
    place += sizeof lengths;
    for (const std::string_view part : parts) {
        if (!part.empty()) std::memcpy(place, part.data(), part.size());
        place += part.size();
    }
    live_ += size;
}

void EntryRows::forgetTexts() {
    for (Row& row : rows_) {
        if (row.texts) live_ -= TextsSize(row.texts);
        row.texts = nullptr;
        row.seconds = EntryTexts::kNoLength;
    }
    unknown_ = count();
    compact();
}

void EntryRows::forgetTexts(int row) {
    Row& forgotten = at(row);
    forgotten.seconds = EntryTexts::kNoLength;
    if (!forgotten.texts) return;
    live_ -= TextsSize(forgotten.texts);
    forgotten.texts = nullptr;
    ++unknown_;
}

void EntryRows::clear() {
    std::vector<Row>().swap(rows_);
    store_.clear();
    live_ = 0;
    unknown_ = 0;
}

void EntryRows::permute(const std::vector<std::int32_t>& order) {
    std::vector<Row> rows;
    rows.reserve(rows_.size());
    for (const std::int32_t row : order) rows.push_back(at(row));
    rows_ = std::move(rows);
}

void EntryRows::remove(const std::vector<bool>& which) {
    std::size_t kept = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const Row& seen = rows_[row];
        if (!which[row]) {
            rows_[kept++] = seen;
            continue;
        }
        live_ -= PathSize(seen.path);
        if (seen.texts) {
            live_ -= TextsSize(seen.texts);
        } else {
            --unknown_;
        }
    }
    rows_.resize(kept);
    if (kept == 0) clear();
    if (store_.allocated() - live_ > live_ + kWorthCompacting) compact();
}

void EntryRows::compact() {
    TextStore fresh;
    for (Row& row : rows_) {
        row.path = Copy(fresh, row.path, PathSize(row.path));
        if (row.texts) row.texts = Copy(fresh, row.texts, TextsSize(row.texts));
    }
    rows_.shrink_to_fit();
    store_ = std::move(fresh);
}

}  // namespace quenlox
