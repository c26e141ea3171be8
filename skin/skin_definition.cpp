#include "skin/skin_definition.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "forms/bmp.h"
#include "skin/region_file.h"
#include "text/paths.h"

namespace quenlox {
namespace {

constexpr std::uint64_t kLargestRegionFile = 1u << 20, kBmpHeaders = 64u << 10;

class ListReader {
  public:
    ListReader(const IniDocument& file, SplitValues& values) : file_(file), values_(values) {}

    // Reads the list of a key; field(n) then gives its n-th number, counted from 1.
    void read(const char* section, const std::string& key, const char* whenMissing) {
        SplitNumbers(ReadIniString(file_, section, key, whenMissing), values_);
    }
    int field(int n) const { return values_(n); }
    bool absent() const { return field(1) < 0; }
    Point point() const {
        return {std::clamp(field(1), 0, kLongestSide), std::clamp(field(2), -kLongestSide, kLongestSide)};
    }
    Rect rect() const {
        return {point().x, point().y, std::clamp(field(3), 0, kLongestSide), std::clamp(field(4), 0, kLongestSide)};
    }
    int fontSize() const { return std::clamp(field(5), 0, kLargestType); }
    Color color(int first) const {
        const auto component = [&](int n) { return static_cast<std::uint8_t>(std::clamp(field(n), 0, 255)); };
        return {component(first), component(first + 1), component(first + 2)};
    }

  private:
    const IniDocument& file_;
    SplitValues& values_;
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

SkinDefinition ReadDefinition(const IniDocument& file, SplitValues& values) {
    SkinDefinition skin;
    ListReader list(file, values);
    skin.version = file.integer("Main", "Ver", 0);
    list.read("Main", "Size", "60,30");
    skin.size = WindowSize(list.field(1), list.field(2));
    list.read("Main", "RGB", "0,0,0");
    skin.background = list.color(1);
    skin.box = file.integer("Main", "Box", 0) == 1;

    for (int n = 0; n < kLabelCount; ++n) {
        list.read("Label", Lettered("Label", n), "-1,0,0,0,0,0,0,0");
        if (!list.absent()) skin.labels[n] = {list.rect(), list.fontSize(), list.color(6)};
    }
    list.read("Label", "Lyrics", "-1,0,0,0,0,0,0,0,0,0,0");
    if (!list.absent()) {
        skin.lyrics = {Intersect(list.rect(), {0, 0, skin.size.width, skin.size.height}),
                       list.fontSize(),
                       list.color(6),
                       list.color(9),
                       {}};
        list.read("Label", "Lyrics2", "0,0,0,0,0,0,0");
        skin.lyrics->background = list.color(1);
    }
    for (int n = 0; n < kButtonCount; ++n) {
        list.read("Button", Lettered("Button", n), "-1,0");
        if (!list.absent()) skin.buttons[n] = list.point();
    }
    list.read("Disp", "DispA", "-1,0");
    if (!list.absent()) skin.displayA = list.point();
    for (int n = 0; n < kButtonCount; ++n) {
        list.read("Command", Lettered("Command", n), "-1,0");
        if (!list.absent()) skin.commands[n] = list.point();
    }
    list.read("Disp", "DispB", "-1,0");
    if (!list.absent()) skin.displayB = list.point();
    list.read("Disp", "DispC", "-1,0,0,0,0,0,0");
    if (!list.absent()) skin.displayC = {list.rect(), list.color(5)};
    list.read("Disp", "DispD", "-1,0,0,0,0,0,0");
    if (!list.absent()) skin.displayD = {list.rect(), list.color(5)};

    // The places of the bars came after the other keys; only a key that stands there is read, so that the store of an
    // older package is what it always was.
    const auto place = [&](const char* key, std::optional<Point>& at, bool& hidden) {
        if (file.text("Disp", key, "").empty()) return;
        list.read("Disp", key, "");
        hidden = list.absent();
        if (!hidden) at = list.point();
    };
    place("Bar", skin.bar, skin.barHidden);
    place("Vol", skin.volume, skin.volumeHidden);
    return skin;
}

namespace {

// Reads the pictures of one set.
class PictureReader {
  public:
    PictureReader(FileSystem& files, std::string folder, int fineness)
        : files_(files), folder_(std::move(folder)), fineness_(fineness) {}

    // False when a picture that the first set has is too large in this one.
    bool read(SkinDefinition& skin) {
        skin.back = picture("main_back", kMostWindowPixels);
        skin.barPicture = part("main_bar", kMostBarPixels);
        skin.volumePicture = part("main_vol", kMostBarPixels);
        skin.levelPicture = part("main_level", kMostBarPixels);
        if (!skin.levelPicture) skin.levelPicture = skin.volumePicture;
        skin.panel = part("main_panel", kMostBarPixels);
        for (int n = 0; n < kButtonCount; ++n) {
            skin.buttonPictures[n] = buttonPictures(std::string("cmd_") + kPlaybackButtonNames[n]);
            skin.commandPictures[n] = buttonPictures(std::string("btn_") + kCommandButtonNames[n]);
        }
        return !tooLarge_;
    }

  private:
    std::optional<Surface> file(const std::string& name, int mostPixels) const {
        const auto bytes = files_.read(folder_ + name + ".bmp", kBmpHeaders + sizeof(Surface::Pixel) * mostPixels);
        return bytes ? ReadBmp(*bytes, mostPixels) : std::nullopt;
    }

    std::optional<Surface> picture(const std::string& name, int mostPixels) {
        std::optional<Surface> first = file(name, mostPixels);
        if (!first || fineness_ == 1) return first;
        const Size size{first->width() * fineness_, first->height() * fineness_};
        if (std::int64_t{size.width} * size.height > mostPixels) {
            tooLarge_ = true;
            return {};
        }
        std::optional<Surface> finer = file(name + "@" + std::to_string(fineness_) + "x", mostPixels);
        if (finer && Size{finer->width(), finer->height()} == size) return finer;
        Surface enlarged(size.width, size.height);
        enlarged.enlarge(*first, {}, {fineness_, 1}, enlarged.rect());
        return enlarged;
    }

    std::optional<Surface> part(const std::string& name, int mostPixels) {
        std::optional<Surface> read = picture(name, std::min(mostPixels, left_));
        if (read) left_ -= read->width() * read->height();
        return read;
    }

    SkinDefinition::ButtonPictures buttonPictures(const std::string& name) {
        return {part(name + "1", kMostButtonPixels), part(name + "2", kMostButtonPixels)};
    }

    FileSystem& files_;
    std::string folder_;
    int fineness_;
    int left_ = kMostPartPixels;
    bool tooLarge_ = false;
};

}  // namespace

SkinDefinition ReadSkin(FileSystem& files, const std::string& definitionFile, SplitValues& values, Scale scale) {
    SkinDefinition skin =
        ReadDefinition(IniDocument::Parse(files.read(definitionFile, kLargestDefinition).value_or("")), values);
    const std::string folder = FolderOf(definitionFile);
    for (int fineness = 2; fineness <= kFinest; ++fineness) {
        const bool fits = std::int64_t{skin.size.width} * skin.size.height * fineness * fineness <= kMostWindowPixels;
        const std::string name = folder + "main_back@" + std::to_string(fineness) + "x.bmp";
        if (fits && files.fileExists(name)) skin.finer.push_back(fineness);
    }
    skin.fineness = FinenessFor(skin.finer, scale);
    if (!PictureReader(files, folder, skin.fineness).read(skin)) {
        skin.fineness = 1;
        skin.finer.clear();
        PictureReader(files, folder, 1).read(skin);
    }
    if (!skin.box) {
        const std::string regionFile = WithExtension(definitionFile, "rgn");
        skin.regionFileMissing = !files.fileExists(regionFile);
        const auto bytes = files.read(regionFile, kLargestRegionFile);
        if (bytes) skin.region = ReadRegionFile(*bytes, skin.size);
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
