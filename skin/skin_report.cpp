#include "skin/skin_report.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

struct Place {
    std::string key;
    Rect bounds;
};

std::string Lettered(const char* name, int n) { return name + std::string(1, static_cast<char>('A' + n)); }

std::string SizeText(int width, int height) { return std::to_string(width) + "×" + std::to_string(height); }

// Of the relative luminance, as the Web Content Accessibility Guidelines have it: 1 to 21.
double Contrast(Color a, Color b) {
    const auto light = [](Color c) {
        const auto linear = [](std::uint8_t v) {
            const double s = v / 255.0;
            return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(c.red) + 0.7152 * linear(c.green) + 0.0722 * linear(c.blue);
    };
    const double first = light(a) + 0.05, second = light(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

class Checker {
  public:
    Checker(const SkinDefinition& skin, std::string file, const IniDocument& text, SkinNotes& notes)
        : skin_(skin), file_(std::move(file)), entries_(text.entries()), notes_(notes) {}

    void check() {
        collect();
        for (const Place& place : places_) checkInside(place);
        checkOverlaps();
        checkTexts();
        checkPressed();
    }

  private:
    // `text` begins with the key that it is about.
    void note(bool error, std::string text) {
        const std::string key =
            text.substr(0, text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"));
        const auto entry = std::ranges::find_if(entries_, [&](const auto& e) { return EqualsNoCase(e.key, key); });
        notes_.push_back({error, file_, entry == entries_.end() ? 0 : entry->line, std::move(text)});
    }

    void collect() {
        const auto add = [this](std::string key, const std::optional<Point>& at,
                                const std::optional<Surface>& picture) {
            if (!at || !picture) return;
            const int times = skin_.fineness;
            places_.push_back({std::move(key), {at->x, at->y, picture->width() / times, picture->height() / times}});
        };
        for (int n = 0; n < kLabelCount; ++n) {
            if (skin_.labels[n]) places_.push_back({Lettered("Label", n), skin_.labels[n]->bounds});
        }
        if (skin_.lyrics) places_.push_back({"Lyrics", skin_.lyrics->bounds});
        for (int n = 0; n < kButtonCount; ++n)
            add(Lettered("Button", n), skin_.buttons[n], skin_.buttonPictures[n].released);
        for (int n = 0; n < kButtonCount; ++n)
            add(Lettered("Command", n), skin_.commands[n], skin_.commandPictures[n].released);
        add("DispA", skin_.displayA, skin_.panel);
        if (skin_.displayB)
            places_.push_back(
                {"DispB", {skin_.displayB->x, skin_.displayB->y, kPanelDisplay.width, kPanelDisplay.height}});
        if (skin_.displayC) places_.push_back({"DispC", skin_.displayC->bounds});
        if (skin_.displayD) places_.push_back({"DispD", skin_.displayD->bounds});
        add("Bar", skin_.bar, skin_.barPicture);
        add("Vol", skin_.volume, skin_.volumePicture);
    }

    void checkInside(const Place& place) {
        const Rect window{0, 0, skin_.size.width, skin_.size.height};
        const Rect& r = place.bounds;
        const std::string size = place.key + "（" + SizeText(r.width, r.height) + "）";
        if (r.empty()) return note(true, size + "は大きさがありません");
        if (Intersect(r, window) != r) return note(true, size + "がウィンドウからはみ出しています");
        if (!skin_.region) return;
        std::int64_t inside = 0;
        for (const Rect& part : *skin_.region) {
            const Rect both = Intersect(part, r);
            inside += std::int64_t{both.width} * both.height;
        }
        if (2 * inside < std::int64_t{r.width} * r.height) note(true, size + "の大半が輪郭の外にあります");
    }

    // The panel takes the place of the buttons, and the level stands on the bar that it belongs to.
    static bool mayOverlap(const std::string& a, const std::string& b) {
        const auto pair = [&](std::string_view x, std::string_view y) { return a.starts_with(x) && b.starts_with(y); };
        return pair("Button", "DispA") || pair("DispD", "Vol");
    }

    void checkOverlaps() {
        for (std::size_t i = 0; i < places_.size(); ++i) {
            for (std::size_t j = i + 1; j < places_.size(); ++j) {
                const auto &a = places_[i], &b = places_[j];
                if (!Intersect(a.bounds, b.bounds).empty() && !mayOverlap(a.key, b.key))
                    note(false, a.key + "と" + b.key + "が重なっています");
            }
        }
    }

    void checkTexts() {
        const auto check = [this](const std::string& key, const Rect& bounds, int points) {
            const int needed = RoundHalfToEven(points * 96 / 72.0);
            if (points <= 0) return note(true, key + "の文字の大きさが0です");
            if (bounds.height < needed)
                note(false, key + "の高さが足りません（" + std::to_string(points) + "ポイントには" +
                                std::to_string(needed) + "必要）");
        };
        for (int n = 0; n < kLabelCount; ++n) {
            if (const auto& label = skin_.labels[n]) check(Lettered("Label", n), label->bounds, label->fontField);
        }
        if (skin_.lyrics) check("Lyrics", skin_.lyrics->bounds, skin_.lyrics->fontField);
        if (!skin_.displayC) return;
        constexpr double kReadable = 3;
        const auto& labelB = skin_.labels[1];
        if (!labelB) return note(true, "DispCの文字の色はLabelBの色ですが、LabelBがありません");
        if (Contrast(labelB->color, skin_.displayC->background) < kReadable)
            note(false, "DispCの文字が背景と見分けにくい色です");
    }

    void checkPressed() {
        const auto check = [this](const char* prefix, const auto& names, const auto& pictures) {
            for (std::size_t n = 0; n < pictures.size(); ++n) {
                const auto &released = pictures[n].released, &pressed = pictures[n].pressed;
                if (!released || !pressed || released->rect() == pressed->rect()) continue;
                notes_.push_back({true, std::string(prefix) + names[n] + "2.bmp", 0, "離した画像と大きさが違います"});
            }
        };
        check("cmd_", kPlaybackButtonNames, skin_.buttonPictures);
        check("btn_", kCommandButtonNames, skin_.commandPictures);
    }

    const SkinDefinition& skin_;
    std::string file_;
    std::vector<IniDocument::Entry> entries_;
    SkinNotes& notes_;
    std::vector<Place> places_;
};

}  // namespace

SkinNotes CheckSkin(FileSystem& files, const std::string& definitionFile) {
    SkinNotes notes;
    SplitValues values;
    const SkinDefinition skin = ReadSkin(files, definitionFile, values, {}, &notes);
    const IniDocument text = IniDocument::Parse(files.read(definitionFile, kLargestDefinition).value_or(""));
    Checker(skin, FileNameOf(definitionFile), text, notes).check();
    for (const int finer : skin.finer) {
        SkinNotes ofSet;
        ReadSkin(files, definitionFile, values, Scale(100 * finer), &ofSet);
        std::ranges::copy_if(ofSet, std::back_inserter(notes),
                             [&](const SkinNote& note) { return std::ranges::find(notes, note) == notes.end(); });
    }
    return notes;
}

std::string ReportOf(const SkinNotes& notes, int most) {
    std::string text;
    int shown = 0;
    for (const SkinNote& note : notes) {
        if (++shown > most) break;
        text += (note.error ? "誤り　" : "注意　") + note.file +
                (note.line > 0 ? " " + std::to_string(note.line) + "行目" : "") + "：" + note.text + "\r";
    }
    const auto errors = std::ranges::count(notes, true, &SkinNote::error);
    if (notes.empty()) return "問題は見つかりませんでした";
    if (shown > most) text += "…\r";
    return text + "\r誤り " + std::to_string(errors) + "件、注意 " +
           std::to_string(static_cast<std::ptrdiff_t>(notes.size()) - errors) + "件";
}

}  // namespace quenlox
