#include "libraries/vbmp3/tags/id3v2.h"

#include <algorithm>
#include <array>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/id3v2_text.h"
#include "libraries/vbmp3/tags/id3v2_walk.h"
#include "libraries/vbmp3/tags/legacy_text.h"

namespace vbmp3 {
namespace {

constexpr size_t kMostText = 1 << 20;  // bytes of one text frame; longer ones are not shown
constexpr size_t kMostFrame = 64 << 20;
constexpr size_t kMostFrames = 100000;
constexpr uint32_t kMostTag = (1 << 28) - 1;  // what seven bits a byte can say

enum class Role { None, Title, Artist, BandArtist, Album, Comment, Year, Date, Genre, Track };

struct FrameName {
    Role role;
    std::string_view id2, id;
};
constexpr FrameName kFrameNames[] = {
    {Role::Title, "TT2", "TIT2"}, {Role::Artist, "TP1", "TPE1"},  {Role::BandArtist, "TP2", "TPE2"},
    {Role::Album, "TAL", "TALB"}, {Role::Comment, "COM", "COMM"}, {Role::Year, "TYE", "TYER"},
    {Role::Date, "", "TDRC"},     {Role::Genre, "TCO", "TCON"},   {Role::Track, "TRK", "TRCK"},
};

Role roleOf(std::string_view id) {
    for (const FrameName& name : kFrameNames)
        if (id == name.id || id == name.id2 || (id.size() == 4 && id[3] <= ' ' && id.substr(0, 3) == name.id2))
            return name.role;
    return Role::None;
}

std::string_view idOf(Role role, int version) {
    for (const FrameName& name : kFrameNames)
        if (name.role == role) return version == 2 ? name.id2 : name.id;
    return {};
}

struct Comment {
    std::string description, text;
};

Comment readComment(std::span<const uint8_t> bytes) {
    if (bytes.size() < 5) return {};
    const int encoding = bytes[0];
    const auto parts = splitId3v2Text(encoding, bytes.subspan(4), 2);
    if (parts.size() < 2) return {{}, parts.empty() ? "" : parts[0]};  // writers that forgot the description
    return {parts[0], std::string(trimmed(parts[1]))};
}

// Notes that programs leave for themselves in comments.
bool isProgramNote(const Comment& comment) {
    return comment.description.starts_with("iTun") || comment.description.starts_with("MusicMatch");
}

// The year of a timestamp, 2004-05-06T07:08; other texts whole.
std::string yearOf(const std::string& text) {
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    const bool stamp = text.size() > 4 && std::all_of(text.begin(), text.begin() + 4, digit) && text[4] == '-';
    return stamp ? text.substr(0, 4) : text;
}

std::string genreText(int encoding, std::span<const uint8_t> bytes, int& number) {
    std::string all;
    number = kNoGenre;
    for (const std::string& part : splitId3v2Text(encoding, bytes)) {
        const Genre genre = readGenre(trimmed(part));
        if (genre.name.empty()) continue;
        if (all.empty()) number = genre.number;
        all += (all.empty() ? "" : " / ") + genre.name;
    }
    return all;
}

// Gathers the fields as frames come by; of several that could serve a field the best is kept.
class FieldCollector {
  public:
    // True when the frame's contents are wanted.
    static bool wants(std::string_view id) { return roleOf(id) != Role::None; }

    void add(std::string_view id, std::span<const uint8_t> bytes) {
        if (bytes.empty()) return;
        const Role role = roleOf(id);
        if (role == Role::Comment) return addComment(readComment(bytes));
        const int encoding = bytes[0];
        if (role == Role::Genre) {
            int number = kNoGenre;
            std::string text = genreText(encoding, bytes.subspan(1), number);
            if (fields_.genre.empty()) fields_.genre = std::move(text), fields_.genreNumber = number;
            return;
        }
        std::string text = id3v2Text(bytes);
        const auto take = [&](std::string& field) {
            if (field.empty()) field = std::move(text);
        };
        switch (role) {
            case Role::Title: return take(fields_.title);
            case Role::Artist: return take(fields_.artist);
            case Role::BandArtist: return take(bandArtist_);
            case Role::Album: return take(fields_.album);
            case Role::Track: return take(fields_.track);
            case Role::Year: text = yearOf(text); return take(fields_.year);
            case Role::Date: text = yearOf(text); return take(date_);
            default: return;
        }
    }

    TagFields result(int version) {
        if (fields_.artist.empty()) fields_.artist = std::move(bandArtist_);
        if (!date_.empty() && (version == 4 || fields_.year.empty())) fields_.year = std::move(date_);
        return std::move(fields_);
    }

  private:
    void addComment(Comment comment) {
        if (comment.text.empty() || isProgramNote(comment)) return;
        const bool plain = comment.description.empty();
        if (fields_.comment.empty() || (plain && !plainComment_)) {
            fields_.comment = std::move(comment.text);
            plainComment_ = plain;
        }
    }

    TagFields fields_;
    std::string bandArtist_, date_;
    bool plainComment_ = false;
};

void appendFrame(std::vector<uint8_t>& out, const Id3v2Frame& frame, int version) {
    const auto size = static_cast<uint32_t>(frame.data.size());
    out.insert(out.end(), frame.id.begin(), frame.id.end());
    if (version == 2) {
        out.insert(out.end(),
                   {static_cast<uint8_t>(size >> 16), static_cast<uint8_t>(size >> 8), static_cast<uint8_t>(size)});
    } else {
        const int bits = version == 4 ? 7 : 8;
        const uint32_t mask = version == 4 ? 0x7F : 0xFF;
        for (int shift = 3 * bits; shift >= 0; shift -= bits) out.push_back(static_cast<uint8_t>(size >> shift & mask));
        out.insert(out.end(), {static_cast<uint8_t>(frame.flags >> 8), static_cast<uint8_t>(frame.flags)});
    }
    out.insert(out.end(), frame.data.begin(), frame.data.end());
}

Id3v2Frame textFrame(Role role, int version, const std::string& text) {
    Id3v2Frame frame{std::string(idOf(role, version)), 0, {}};
    const int encoding = encodingFor(text, version);
    frame.data.push_back(static_cast<uint8_t>(encoding));
    appendId3v2Text(frame.data, text, encoding, false);
    return frame;
}

Id3v2Frame commentFrame(int version, const std::string& text) {
    Id3v2Frame frame{std::string(idOf(Role::Comment, version)), 0, {}};
    const int encoding = encodingFor(text, version);
    frame.data = {static_cast<uint8_t>(encoding), 'e', 'n', 'g'};
    appendId3v2Text(frame.data, "", encoding, true);
    appendId3v2Text(frame.data, text, encoding, false);
    return frame;
}

// Contents of a stored frame, through the same walk as in a file.
std::vector<uint8_t> contentsOf(const Id3v2Tag& tag, const Id3v2Frame& frame) {
    std::vector<uint8_t> bytes = {'I', 'D', '3', static_cast<uint8_t>(tag.version), 0, 0, 0x7F, 0x7F, 0x7F, 0x7F};
    appendFrame(bytes, frame, tag.version);
    const MemorySource source(bytes);
    HeadTailReader reader(source);
    auto walk = Id3v2Walk::open(reader, {0, static_cast<int64_t>(bytes.size())});
    FrameView view;
    if (!walk || !walk->next(view)) return {};
    return walk->contents(view, kMostText).value_or(std::vector<uint8_t>{});
}

// The comments without description are the one that is shown, in however many languages; only where there are none is
// it one with a description.
void removeShownComment(Id3v2Tag& tag, const std::string& text) {
    const auto commentOf = [&](const Id3v2Frame& frame) {
        return roleOf(frame.id) == Role::Comment ? std::optional(readComment(contentsOf(tag, frame))) : std::nullopt;
    };
    const size_t removed = std::erase_if(tag.frames, [&](const Id3v2Frame& frame) {
        const auto comment = commentOf(frame);
        return comment && comment->description.empty();
    });
    if (removed > 0) return;
    const auto found = std::find_if(tag.frames.begin(), tag.frames.end(), [&](const Id3v2Frame& frame) {
        const auto comment = commentOf(frame);
        return comment && !isProgramNote(*comment) && comment->text == text;
    });
    if (found != tag.frames.end()) tag.frames.erase(found);
}

}  // namespace

std::string id3v2Text(std::span<const uint8_t> bytes) {
    if (bytes.empty()) return {};
    // Beyond the four encodings the byte is taken for text when it could be, for writers that have never heard of it.
    if (bytes[0] > 3) return joinId3v2Text(0, bytes[0] >= ' ' ? bytes : bytes.subspan(1));
    return joinId3v2Text(bytes[0], bytes.subspan(1));
}

TagFields readId3v2(HeadTailReader& reader, ByteRange range) {
    auto walk = Id3v2Walk::open(reader, range);
    if (!walk) return {};
    FieldCollector fields;
    FrameView frame;
    for (size_t n = 0; n < kMostFrames && walk->next(frame); ++n) {
        if (!FieldCollector::wants(frame.name())) continue;
        if (const auto contents = walk->contents(frame, kMostText)) fields.add(frame.name(), *contents);
    }
    return fields.result(walk->version());
}

std::optional<Id3v2Tag> parseId3v2(HeadTailReader& reader, ByteRange range) {
    if (range.size() > static_cast<int64_t>(kMostFrame)) return std::nullopt;
    auto walk = Id3v2Walk::open(reader, range);
    if (!walk) return std::nullopt;
    Id3v2Tag tag{walk->version(), {}};
    FrameView view;
    while (tag.frames.size() < kMostFrames && walk->next(view)) {
        Id3v2Frame frame{std::string(view.name()), walk->flagsAlone(view), {}};
        const auto bytes = walk->stored(view, kMostFrame);
        frame.data.assign(bytes.begin(), bytes.end());
        tag.frames.push_back(std::move(frame));
    }
    return tag;
}

TagFields fieldsOf(const Id3v2Tag& tag) {
    FieldCollector fields;
    for (const Id3v2Frame& frame : tag.frames)
        if (FieldCollector::wants(frame.id)) fields.add(frame.id, contentsOf(tag, frame));
    return fields.result(tag.version);
}

void setFields(Id3v2Tag& tag, const TagFields& fields, const TagFields* shown) {
    const TagFields old = fieldsOf(tag);
    const TagFields& seen = shown != nullptr ? *shown : old;
    const auto remove = [&](Role role) {
        if (role == Role::Comment)
            removeShownComment(tag, old.comment);
        else
            std::erase_if(tag.frames, [&](const Id3v2Frame& frame) { return roleOf(frame.id) == role; });
    };
    struct Entry {
        std::string TagFields::*field;
        Role role;
    };
    constexpr Entry kEntries[] = {
        {&TagFields::title, Role::Title},     {&TagFields::artist, Role::Artist}, {&TagFields::album, Role::Album},
        {&TagFields::track, Role::Track},     {&TagFields::genre, Role::Genre},   {&TagFields::year, Role::Year},
        {&TagFields::comment, Role::Comment},
    };
    for (const Entry& entry : kEntries) {
        const std::string& text = fields.*(entry.field);
        if (text == seen.*(entry.field)) continue;
        remove(entry.role);
        if (entry.role == Role::Year) remove(Role::Date);
        // The band is shown as the artist while there is none; clearing what is shown clears it too.
        if (entry.role == Role::Artist && text.empty()) remove(Role::BandArtist);
        if (text.empty()) continue;
        if (entry.role == Role::Comment) {
            tag.frames.push_back(commentFrame(tag.version, text));
        } else if (entry.role == Role::Genre) {
            // A text that begins with a bracket would be taken for a number.
            tag.frames.push_back(textFrame(Role::Genre, tag.version, text.starts_with('(') ? "(" + text : text));
        } else {
            const bool date = entry.role == Role::Year && tag.version == 4;
            tag.frames.push_back(textFrame(date ? Role::Date : entry.role, tag.version, text));
        }
    }
}

std::optional<std::vector<uint8_t>> makeId3v2(const Id3v2Tag& tag, size_t padding) {
    std::vector<uint8_t> out;
    if (tag.frames.empty()) return out;
    out = {'I', 'D', '3', static_cast<uint8_t>(tag.version), 0, 0, 0, 0, 0, 0};
    const size_t mostFrame = tag.version == 2 ? (1 << 24) - 1 : kMostTag;
    for (const Id3v2Frame& frame : tag.frames) {
        if (frame.data.size() > mostFrame || out.size() + frame.data.size() > kMostTag) return std::nullopt;
        appendFrame(out, frame, tag.version);
    }
    out.resize(out.size() + padding);
    const size_t size = out.size() - 10;
    if (size > kMostTag) return std::nullopt;
    for (int i = 0; i < 4; ++i) out[6 + i] = static_cast<uint8_t>(size >> (21 - 7 * i) & 0x7F);
    return out;
}

}  // namespace vbmp3
