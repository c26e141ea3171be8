#include "skin/skin_definition.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "forms/bmp.h"
#include "skin/region_file.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::uint64_t kLargestRegionFile = 1u << 20, kBmpHeaders = 64u << 10;

class ListReader {
  public:
    ListReader(const IniDocument& file, SplitValues& values, SkinNotes* notes)
        : file_(file), values_(values), notes_(notes) {}

    // Reads the list of a key, which needs so many fields; field(n) then gives its n-th number, counted from 1.
    void read(const char* section, const std::string& key, const char* whenMissing, int needed) {
        section_ = section;
        key_ = key;
        know(section, key);
        const std::string text = ReadIniString(file_, section, key, whenMissing);
        SplitNumbers(text, values_);
        if (notes_ && file_.find(section, key)) tellFields(text, needed);
    }
    int integer(const char* section, const char* key) {
        know(section, key);
        return file_.integer(section, key, 0);
    }
    bool given(const char* section, const char* key) {
        know(section, key);
        return !file_.text(section, key, "").empty();
    }
    int field(int n) const { return values_(n); }
    bool absent() const { return field(1) < 0; }
    Point point() const { return {within(1, 0, kLongestSide), within(2, -kLongestSide, kLongestSide)}; }
    Rect rect() const { return {point().x, point().y, within(3, 0, kLongestSide), within(4, 0, kLongestSide)}; }
    int fontSize() const { return within(5, 0, kLargestType); }
    Color color(int first) const {
        const auto component = [&](int n) { return static_cast<std::uint8_t>(within(n, 0, 255)); };
        return {component(first), component(first + 1), component(first + 2)};
    }

    void tell(bool error, std::string text) const {
        if (!notes_) return;
        int line = 0;
        for (const auto& entry : file_.entries()) {
            if (line == 0 && EqualsNoCase(entry.section, section_) && EqualsNoCase(entry.key, key_)) line = entry.line;
        }
        SkinNote note{error, {}, line, key_ + "：" + std::move(text)};
        if (std::ranges::find(*notes_, note) == notes_->end()) notes_->push_back(std::move(note));
    }
    // Lines that were never asked for, and those behind the first of their name.
    void tellUnknown() const {
        if (!notes_) return;
        std::vector<std::string> sections, keys;
        bool counts = true;
        for (const auto& entry : file_.entries()) {
            const auto add = [&](std::string text) { notes_->push_back({true, {}, entry.line, std::move(text)}); };
            const std::string name = FoldCase(entry.section) + "|" + FoldCase(entry.key);
            if (entry.header) {
                counts = std::ranges::find(sections, name) == sections.end();
                sections.push_back(name);
                const bool known =
                    std::ranges::any_of(known_, [&](const std::string& k) { return k.starts_with(name); });
                if (!known) add("[" + entry.section + "] は使われません");
                if (!counts) add("[" + entry.section + "] は2度目なので読まれません");
                counts = counts && known;
            } else if (entry.key.empty() || entry.section.empty()) {
                add("読めない行です");
            } else if (counts && std::ranges::find(known_, name) == known_.end()) {
                add(entry.key + " は使われません");
            } else if (counts && std::ranges::find(keys, name) != keys.end()) {
                add(entry.key + " は2度目なので読まれません");
            } else {
                keys.push_back(name);
            }
        }
    }

  private:
    void know(const std::string& section, const std::string& key) {
        if (notes_) known_.push_back(FoldCase(section) + "|" + FoldCase(key));
    }

    int within(int n, int least, int most) const {
        const int inside = std::clamp(field(n), least, most);
        if (inside != field(n))
            tell(true, std::to_string(n) + "番目の " + std::to_string(field(n)) + " は " + std::to_string(inside) +
                           " になります");
        return inside;
    }

    void tellFields(std::string_view text, int needed) const {
        if (file_.text(section_, key_, "").size() > text.size()) tell(true, "長すぎるので途中で切られます");
        int count = 0;
        for (bool more = !text.empty(); more; ++count) {
            const std::size_t comma = text.find(',');
            const std::string part(TrimBlanks(text.substr(0, comma)));
            const std::string digits = part.substr(part.starts_with('-') || part.starts_with('+') ? 1 : 0);
            if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
                tell(true, std::to_string(count + 1) + "番目の「" + part + "」は " +
                               std::to_string(NumericInteger(part)) + " と読まれます");
            }
            more = comma != std::string_view::npos;
            if (more) text.remove_prefix(comma + 1);
        }
        // The last of what the lyrics have was never used.
        const int most = key_ == "Lyrics2" ? 7 : needed;
        if (count > most) tell(false, std::to_string(needed) + "個より後の数は使われません");
        const bool hidden = needed > 1 && section_ != "Main" && key_ != "Lyrics2" && absent();
        if (count > 0 && count < needed && !hidden) {
            std::string rest;
            for (int n = count + 1; n <= needed; ++n) rest += (rest.empty() ? "" : ",") + std::to_string(field(n));
            tell(false, "足りない数は前の行から " + rest + " になります");
        }
    }

    const IniDocument& file_;
    SplitValues& values_;
    SkinNotes* notes_;
    std::string section_, key_;
    std::vector<std::string> known_;
};

Size WindowSize(int width, int height) {
    width = std::clamp(width, 1, kLongestSide);
    return {width, std::clamp(height, 1, std::min(kLongestSide, kMostWindowPixels / width))};
}

std::string Lettered(const char* name, int n) { return name + std::string(1, static_cast<char>('A' + n)); }

std::optional<Rect> LabelsTogether(const SkinDefinition& skin) {
    Rect all;
    for (const auto& label : skin.labels) {
        if (label) all = Unite(all, label->bounds);
    }
    return all.empty() ? std::nullopt : std::optional(all);
}

Point MovedInside(Point at, Size picture, Size window) {
    return {std::max(0, std::min(at.x, window.width - picture.width)),
            std::max(0, std::min(at.y, window.height - picture.height))};
}

}  // namespace

SkinDefinition ReadDefinition(const IniDocument& file, SplitValues& values, SkinNotes* notes) {
    SkinDefinition skin;
    ListReader list(file, values, notes);
    skin.version = list.integer("Main", "Ver");
    list.read("Main", "Size", "60,30", 2);
    skin.size = WindowSize(list.field(1), list.field(2));
    if (skin.size != Size{list.field(1), list.field(2)}) {
        list.tell(true, std::to_string(skin.size.width) + "×" + std::to_string(skin.size.height) + " になります");
    }
    list.read("Main", "RGB", "0,0,0", 3);
    skin.background = list.color(1);
    skin.box = list.integer("Main", "Box") == 1;
    skin.alpha = list.integer("Main", "Alpha") == 1;

    for (int n = 0; n < kLabelCount; ++n) {
        list.read("Label", Lettered("Label", n), "-1,0,0,0,0,0,0,0", 8);
        if (!list.absent()) skin.labels[n] = {list.rect(), list.fontSize(), list.color(6)};
    }
    list.read("Label", "Lyrics", "-1,0,0,0,0,0,0,0,0,0,0", 11);
    if (list.absent()) {
        list.given("Label", "Lyrics2");
    } else {
        skin.lyrics = {Intersect(list.rect(), {0, 0, skin.size.width, skin.size.height}),
                       list.fontSize(),
                       list.color(6),
                       list.color(9),
                       {}};
        list.read("Label", "Lyrics2", "0,0,0,0,0,0,0", 3);
        skin.lyrics->background = list.color(1);
    }
    const auto place = [&](const char* section, const std::string& key, std::optional<Point>& at) {
        list.read(section, key, "-1,0", 2);
        if (!list.absent()) at = list.point();
    };
    for (int n = 0; n < kButtonCount; ++n) place("Button", Lettered("Button", n), skin.buttons[n]);
    place("Disp", "DispA", skin.displayA);
    for (int n = 0; n < kButtonCount; ++n) place("Command", Lettered("Command", n), skin.commands[n]);
    place("Disp", "DispB", skin.displayB);
    for (const auto& [key, display] : {std::pair{"DispC", &skin.displayC}, {"DispD", &skin.displayD}}) {
        list.read("Disp", key, "-1,0,0,0,0,0,0", 7);
        if (!list.absent()) *display = {list.rect(), list.color(5)};
    }

    // The places of the bars came after the other keys; only a key that stands there is read, so that the store of an
    // older package is what it always was.
    const auto bar = [&](const char* key, std::optional<Point>& at, bool& hidden) {
        if (!list.given("Disp", key)) return;
        list.read("Disp", key, "", 2);
        hidden = list.absent();
        if (!hidden) at = list.point();
    };
    bar("Bar", skin.bar, skin.barHidden);
    bar("Vol", skin.volume, skin.volumeHidden);
    list.tellUnknown();
    return skin;
}

namespace {

// Reads the pictures of one set.
class PictureReader {
  public:
    PictureReader(FileSystem& files, std::string folder, int fineness, SkinNotes* notes)
        : files_(files), folder_(std::move(folder)), fineness_(fineness), notes_(notes) {}

    // False when a picture that the first set has is too large in this one.
    bool read(SkinDefinition& skin) {
        wanted_ = true;
        skin.back = picture("main_back", kMostWindowPixels);
        if (skin.alpha) {
            read_ = ReadBmpOpacity;
            skin.opacity = picture("main_back", kMostWindowPixels);
            read_ = ReadBmp;
        }
        skin.barPicture = part("main_bar", kMostBarPixels, !skin.barHidden);
        skin.volumePicture = part("main_vol", kMostBarPixels, !skin.volumeHidden);
        skin.levelPicture = part("main_level", kMostBarPixels, false);
        if (!skin.levelPicture) skin.levelPicture = skin.volumePicture;
        skin.panel = part("main_panel", kMostBarPixels, skin.displayA.has_value());
        for (int n = 0; n < kButtonCount; ++n) {
            const auto read = [this](const std::string& name, bool wanted) -> SkinDefinition::ButtonPictures {
                return {part(name + "1", kMostButtonPixels, wanted), part(name + "2", kMostButtonPixels, wanted)};
            };
            skin.buttonPictures[n] = read(std::string("cmd_") + kPlaybackButtonNames[n], skin.buttons[n].has_value());
            skin.commandPictures[n] = read(std::string("btn_") + kCommandButtonNames[n], skin.commands[n].has_value());
        }
        return !tooLarge_;
    }

  private:
    void tell(const std::string& name, const char* text) const {
        if (notes_) notes_->push_back({true, name + ".bmp", 0, text});
    }

    std::optional<Surface> file(const std::string& name, int mostPixels) const {
        const auto bytes = files_.read(folder_ + name + ".bmp", kBmpHeaders + sizeof(Surface::Pixel) * mostPixels);
        std::optional<Surface> read = bytes ? read_(*bytes, mostPixels) : std::nullopt;
        if (read || !notes_) return read;
        if (files_.fileExists(folder_ + name + ".bmp")) {
            tell(name,
                 read_ == ReadBmp ? "読めないか、大きすぎる画像です" : "32ビットの画像ではないのでAlphaは効きません");
        } else if (wanted_) {
            tell(name, "ありません");
        }
        return read;
    }

    std::optional<Surface> picture(const std::string& name, int mostPixels) {
        std::optional<Surface> first = file(name, mostPixels);
        if (!first || fineness_ == 1) return first;
        const Size size{first->width() * fineness_, first->height() * fineness_};
        if (std::int64_t{size.width} * size.height > mostPixels) {
            tooLarge_ = true;
            return {};
        }
        const std::string finerName = name + "@" + std::to_string(fineness_) + "x";
        wanted_ = false;
        std::optional<Surface> finer = file(finerName, mostPixels);
        if (finer && Size{finer->width(), finer->height()} == size) return finer;
        if (finer) tell(finerName, "元の画像の整数倍の大きさではないので使われません");
        Surface enlarged(size.width, size.height);
        enlarged.enlarge(*first, {}, {fineness_, 1}, enlarged.rect());
        return enlarged;
    }

    std::optional<Surface> part(const std::string& name, int mostPixels, bool wanted) {
        wanted_ = wanted;
        std::optional<Surface> read = picture(name, std::min(mostPixels * fineness_, left_));
        if (read) left_ -= read->width() * read->height();
        return read;
    }

    FileSystem& files_;
    std::string folder_;
    int fineness_;
    SkinNotes* notes_;
    std::optional<Surface> (*read_)(std::string_view, std::int64_t) = ReadBmp;
    int left_ = kMostPartPixels * fineness_;
    bool wanted_ = true;  // the picture that is being read has a place
    bool tooLarge_ = false;
};

}  // namespace

SkinDefinition ReadSkin(FileSystem& files, const std::string& definitionFile, SplitValues& values, Scale scale,
                        SkinNotes* notes) {
    const auto tell = [notes](bool error, const std::string& file, const char* text) {
        if (notes) notes->push_back({error, FileNameOf(file), 0, text});
    };
    SkinDefinition skin =
        ReadDefinition(IniDocument::Parse(files.read(definitionFile, kLargestDefinition).value_or("")), values, notes);
    if (notes) {
        for (SkinNote& note : *notes) note.file = FileNameOf(definitionFile);
    }
    if (skin.version < kOldestSkinVersion) tell(true, definitionFile, "Verが4より小さいので読み込まれません");
    const std::string folder = FolderOf(definitionFile);
    for (int fineness = 2; fineness <= kFinest; ++fineness) {
        const bool fits = std::int64_t{skin.size.width} * skin.size.height * fineness * fineness <= kMostWindowPixels;
        const std::string name = folder + "main_back@" + std::to_string(fineness) + "x.bmp";
        if (fits && files.fileExists(name)) skin.finer.push_back(fineness);
    }
    skin.fineness = FinenessFor(skin.finer, scale);
    if (!PictureReader(files, folder, skin.fineness, notes).read(skin)) {
        skin.fineness = 1;
        skin.finer.clear();
        PictureReader(files, folder, 1, notes).read(skin);
    }
    if (!skin.box) {
        const std::string regionFile = WithExtension(definitionFile, "rgn");
        skin.regionFileMissing = !files.fileExists(regionFile);
        const auto bytes = files.read(regionFile, kLargestRegionFile);
        if (bytes) skin.region = ReadRegionFile(*bytes, skin.size);
        if (!skin.region) tell(true, regionFile, skin.regionFileMissing ? "ありません" : "矩形データではありません");
        if (skin.region && skin.region->empty()) tell(false, regionFile, "矩形がないのでウィンドウが見えません");
    }
    return skin;
}

int FinenessFor(std::span<const int> finer, Scale scale) {
    int fineness = 1;
    for (const int next : finer) {
        if (scale.percent() > 100 * fineness) fineness = next;
    }
    return fineness;
}

Scale FittingScale(Scale wanted, Size window) {
    const double pixels = std::max(1.0, static_cast<double>(window.width) * window.height);
    return Scale(std::min(wanted.percent(), static_cast<int>(100 * std::sqrt(kMostScreenPixels / pixels))));
}

Point PlaceOfBar(const SkinDefinition& skin, Size picture) {
    if (skin.bar) return *skin.bar;
    const auto labels = LabelsTogether(skin);
    const Point at = labels ? Point{labels->left, labels->bottom()} : Point{0, skin.size.height};
    return MovedInside(at, picture, skin.size);
}

Point PlaceOfVolume(const SkinDefinition& skin, Size picture) {
    if (skin.volume) return *skin.volume;
    const auto labels = LabelsTogether(skin);
    const Point at = labels ? Point{labels->right(), labels->top} : Point{skin.size.width, 0};
    return MovedInside(at, picture, skin.size);
}

}  // namespace quenlox
