#include "libraries/vbmp3/tags/id3v2.h"

#include <algorithm>
#include <array>
#include <functional>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/id3v2_text.h"
#include "libraries/vbmp3/tags/id3v2_walk.h"
#include "libraries/vbmp3/tags/legacy_text.h"

namespace vbmp3 {
namespace {

constexpr size_t kMostText = 1 << 20;       // bytes of one text frame; longer ones are not shown
constexpr int64_t kSmallFrame = 4096;       // bytes
constexpr int64_t kMostInMemory = 4 << 20;  // bytes of small frames
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

Role RoleOf(std::string_view id) {
    for (const FrameName& name : kFrameNames)
        if (id == name.id || id == name.id2 || (id.size() == 4 && id[3] <= ' ' && id.substr(0, 3) == name.id2))
            return name.role;
    return Role::None;
}

std::string_view IdOf(Role role, int version) {
    for (const FrameName& name : kFrameNames)
        if (name.role == role) return version == 2 ? name.id2 : name.id;
    return {};
}

struct Comment {
    std::string description, text;
};

Comment ReadComment(std::span<const uint8_t> bytes) {
    if (bytes.size() < 5) return {};
    const int encoding = bytes[0];
    const auto parts = SplitId3v2Text(encoding, bytes.subspan(4), 2);
    if (parts.size() < 2) return {{}, parts.empty() ? "" : parts[0]};  // writers that forgot the description
    return {parts[0], std::string(Trimmed(parts[1]))};
}

// The year of a timestamp, 2004-05-06T07:08; other texts whole.
std::string YearOf(const std::string& text) {
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    const bool stamp = text.size() > 4 && std::all_of(text.begin(), text.begin() + 4, digit) && text[4] == '-';
    return stamp ? text.substr(0, 4) : text;
}

std::string GenreText(int encoding, std::span<const uint8_t> bytes, int& number) {
    std::string all;
    number = kNoGenre;
    for (const std::string& part : SplitId3v2Text(encoding, bytes)) {
        const Genre genre = ReadGenre(Trimmed(part));
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
    static bool wants(std::string_view id) { return RoleOf(id) != Role::None; }

    void add(std::string_view id, std::span<const uint8_t> bytes) {
        if (bytes.empty()) return;
        const Role role = RoleOf(id);
        if (role == Role::Comment) return addComment(ReadComment(bytes));
        const int encoding = bytes[0];
        if (role == Role::Genre) {
            int number = kNoGenre;
            std::string text = GenreText(encoding, bytes.subspan(1), number);
            if (fields_.genre.empty()) fields_.genre = std::move(text), fields_.genreNumber = number;
            return;
        }
        std::string text = Id3v2Text(bytes);
        const auto take = [&](std::string& field) {
            if (field.empty()) field = std::move(text);
        };
        switch (role) {
            case Role::Title: return take(fields_.title);
            case Role::Artist: return take(fields_.artist);
            case Role::BandArtist: return take(bandArtist_);
            case Role::Album: return take(fields_.album);
            case Role::Track: return take(fields_.track);
            case Role::Year: text = YearOf(text); return take(fields_.year);
            case Role::Date: text = YearOf(text); return take(date_);
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
        if (comment.description.empty() && fields_.comment.empty()) fields_.comment = std::move(comment.text);
    }

    TagFields fields_;
    std::string bandArtist_, date_;
};

int64_t SizeOf(const Id3v2Frame& frame) {
    return frame.place.empty() ? static_cast<int64_t>(frame.data.size()) : frame.place.size();
}

void AppendHead(std::vector<uint8_t>& out, const Id3v2Frame& frame, int version) {
    const auto size = static_cast<uint32_t>(SizeOf(frame));
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
}

Id3v2Frame TextFrame(Role role, int version, const std::string& text) {
    Id3v2Frame frame{std::string(IdOf(role, version)), 0, {}, {}};
    const int encoding = EncodingFor(text, version);
    frame.data.push_back(static_cast<uint8_t>(encoding));
    AppendId3v2Text(frame.data, text, encoding, false);
    return frame;
}

Id3v2Frame CommentFrame(int version, const std::string& text, std::string_view language) {
    Id3v2Frame frame{std::string(IdOf(Role::Comment, version)), 0, {}, {}};
    const int encoding = EncodingFor(text, version);
    frame.data.push_back(static_cast<uint8_t>(encoding));
    frame.data.insert(frame.data.end(), language.begin(), language.end());
    AppendId3v2Text(frame.data, "", encoding, true);
    AppendId3v2Text(frame.data, text, encoding, false);
    return frame;
}

std::vector<uint8_t> HeaderOf(const Id3v2Tag& tag) {
    const uint8_t flags = tag.unsynchronised ? 0x80 : 0;
    return {'I', 'D', '3', static_cast<uint8_t>(tag.version), 0, flags, 0, 0, 0, 0};
}

void PutSize(std::vector<uint8_t>& bytes, size_t size) {
    for (size_t i = 0; i < 4; ++i) bytes[6 + i] = static_cast<uint8_t>(size >> (21 - 7 * i) & 0x7F);
}

// Contents of a stored frame, through the same walk as in a file. Nothing when they cannot be read.
std::optional<std::vector<uint8_t>> ContentsOf(const Id3v2Tag& tag, const Id3v2Frame& frame) {
    if (SizeOf(frame) > static_cast<int64_t>(kMostText)) return std::nullopt;
    std::vector<uint8_t> bytes = HeaderOf(tag);
    AppendHead(bytes, frame, tag.version);
    const auto data = frame.place.empty()
                          ? std::span<const uint8_t>(frame.data)
                          : tag.reader->view(frame.place.begin, static_cast<size_t>(frame.place.size()));
    bytes.insert(bytes.end(), data.begin(), data.end());
    PutSize(bytes, bytes.size() - 10);
    const MemorySource source(bytes);
    HeadTailReader reader(source);
    auto walk = Id3v2Walk::open(reader, {0, static_cast<int64_t>(bytes.size())});
    FrameView view;
    if (!walk || !walk->next(view)) return std::nullopt;
    return walk->contents(view, kMostText);
}

// The comment that is shown is a frame without description; nothing for other frames.
std::optional<std::string> ShownComment(const Id3v2Tag& tag, const Id3v2Frame& frame) {
    if (RoleOf(frame.id) != Role::Comment) return std::nullopt;
    const auto contents = ContentsOf(tag, frame);
    if (!contents) return std::nullopt;
    Comment comment = ReadComment(*contents);
    if (!comment.description.empty()) return std::nullopt;
    return std::move(comment.text);
}

// Puts the frame in the place of the first of those that go, else at the end. A frame without data only takes them
// away.
void ReplaceFrames(Id3v2Tag& tag, const std::function<bool(const Id3v2Frame&)>& goes, Id3v2Frame frame) {
    std::vector<Id3v2Frame> kept;
    std::optional<size_t> place;
    for (Id3v2Frame& old : tag.frames) {
        if (!goes(old))
            kept.push_back(std::move(old));
        else if (!place)
            place = kept.size();
    }
    if (SizeOf(frame) > 0)
        kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(place.value_or(kept.size())), std::move(frame));
    tag.frames = std::move(kept);
}

// Comments that say the same in other languages go with the one that is shown, whose language the new one has.
void SetComment(Id3v2Tag& tag, const std::string& old, const std::string& text) {
    const auto goes = [&](const Id3v2Frame& frame) { return ShownComment(tag, frame) == old; };
    const auto first = std::find_if(tag.frames.begin(), tag.frames.end(), goes);
    std::string language = "eng";
    if (first != tag.frames.end())
        if (const auto contents = ContentsOf(tag, *first); contents && contents->size() >= 4)
            language.assign(contents->begin() + 1, contents->begin() + 4);
    ReplaceFrames(tag, goes, text.empty() ? Id3v2Frame{} : CommentFrame(tag.version, text, language));
}

bool HasArtist(const Id3v2Tag& tag) {
    return std::any_of(tag.frames.begin(), tag.frames.end(), [&](const Id3v2Frame& frame) {
        if (RoleOf(frame.id) != Role::Artist) return false;
        const auto contents = ContentsOf(tag, frame);
        return !contents || !Id3v2Text(*contents).empty();
    });
}

void SetText(Id3v2Tag& tag, Role role, const std::string& text) {
    const bool year = role == Role::Year;
    // The band is shown as the artist while there is none; clearing what is shown clears it too.
    const bool band = role == Role::Artist && text.empty() && !HasArtist(tag);
    Id3v2Frame frame;
    if (!text.empty()) {
        // A genre that begins with a bracket would be taken for a number.
        const bool bracket = role == Role::Genre && text.starts_with('(');
        frame = TextFrame(year && tag.version == 4 ? Role::Date : role, tag.version, bracket ? "(" + text : text);
    }
    ReplaceFrames(
        tag,
        [&](const Id3v2Frame& old) {
            const Role its = RoleOf(old.id);
            return its == role || (year && its == Role::Date) || (band && its == Role::BandArtist);
        },
        std::move(frame));
}

}  // namespace

std::string Id3v2Text(std::span<const uint8_t> bytes) {
    if (bytes.empty()) return {};
    // Beyond the four encodings the byte is taken for text when it could be, for writers that have never heard of it.
    if (bytes[0] > 3) return JoinId3v2Text(0, bytes[0] >= ' ' ? bytes : bytes.subspan(1));
    return JoinId3v2Text(bytes[0], bytes.subspan(1));
}

TagFields ReadId3v2(HeadTailReader& reader, ByteRange range) {
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

std::optional<Id3v2Tag> ParseId3v2(HeadTailReader& reader, ByteRange range) {
    auto walk = Id3v2Walk::open(reader, range);
    if (!walk || !walk->seesAll()) return std::nullopt;
    Id3v2Tag tag{walk->version(), walk->framesUnsynchronised(), {}, {}, &reader};
    FrameView view;
    for (int64_t held = 0; tag.frames.size() < kMostFrames && walk->next(view);) {
        Id3v2Frame frame{std::string(view.name()), view.flags, {}, {}};
        if (walk->inFile() && (view.size > kSmallFrame || held > kMostInMemory)) {
            frame.place = {view.offset, view.offset + view.size};
        } else {
            const auto bytes = walk->stored(view, static_cast<size_t>(view.size));
            frame.data.assign(bytes.begin(), bytes.end());
            held += view.size;
        }
        tag.frames.push_back(std::move(frame));
    }
    tag.rest = walk->unread();
    return tag;
}

TagFields FieldsOf(const Id3v2Tag& tag) {
    FieldCollector fields;
    for (const Id3v2Frame& frame : tag.frames)
        if (FieldCollector::wants(frame.id))
            if (const auto contents = ContentsOf(tag, frame)) fields.add(frame.id, *contents);
    return fields.result(tag.version);
}

TagExtras ExtrasOf(const Id3v2Tag& tag) {
    TagExtras extras;
    int comments = 0;
    for (const Id3v2Frame& frame : tag.frames) {
        const Role role = RoleOf(frame.id);
        if (frame.id == "APIC" || frame.id == "PIC")
            ++extras.pictures;
        else if (role == Role::Comment)
            extras.others += !ShownComment(tag, frame) || ++comments > 1;
        else
            extras.others += role == Role::None || role == Role::BandArtist || !ContentsOf(tag, frame);
    }
    extras.others += tag.rest.empty() ? 0 : 1;
    return extras;
}

void SetFields(Id3v2Tag& tag, const TagFields& fields, const TagFields* shown) {
    const TagFields old = FieldsOf(tag);
    const TagFields& seen = shown != nullptr ? *shown : old;
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
        if (entry.role == Role::Comment)
            SetComment(tag, old.comment, text);
        else
            SetText(tag, entry.role, text);
    }
}

std::optional<Recipe> MakeId3v2(const Id3v2Tag& tag, size_t padding) {
    if (tag.frames.empty() && tag.rest.empty()) return Recipe();
    Recipe body;
    const int64_t mostFrame = tag.version == 2 ? (1 << 24) - 1 : kMostTag;
    for (const Id3v2Frame& frame : tag.frames) {
        if (SizeOf(frame) > mostFrame) return std::nullopt;
        std::vector<uint8_t> head;
        AppendHead(head, frame, tag.version);
        body.add(head);
        body.add(frame.data);
        body.copy(frame.place);
    }
    // A frame whose size is wrong must not find more room than it had.
    body.append(tag.rest);
    if (tag.rest.empty()) body.add(std::vector<uint8_t>(padding));
    if (body.size() > kMostTag) return std::nullopt;
    std::vector<uint8_t> header = HeaderOf(tag);
    PutSize(header, static_cast<size_t>(body.size()));
    Recipe out;
    out.add(header);
    out.append(body);
    return out;
}

}  // namespace vbmp3
