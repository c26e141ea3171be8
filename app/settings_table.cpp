#include "app/settings_table.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>

#include "convert/conversion_run.h"
#include "equalizer/form_gra.h"
#include "lyrics/form_lyrics.h"
#include "options/form_opt.h"
#include "platform/file_system.h"
#include "playlist/form_list.h"
#include "skin/main_window_handlers.h"
#include "state/global_state.h"
#include "tags/form_tag.h"
#include "text/strings.h"

namespace quenlox {
namespace {

using Windows = SettingsWindows;
using Text = std::optional<std::string>;

std::string Number(std::int64_t value) { return std::to_string(value); }

template <int GlobalState::*member>
constexpr SettingsKey StateNumber(const char* section, const char* key) {
    return {section, key, [](const Windows& w, const StoredSetting& stored) { w.state.*member = stored.number(); },
            [](const Windows& w) -> Text { return Number(w.state.*member); }};
}

// A mode of 0 and 1 that `handler` toggles and shows, as the user's click does: it is put to the other one first.
template <int GlobalState::*member, auto handler>
constexpr SettingsKey Toggled(const char* section, const char* key) {
    return {section, key,
            [](const Windows& w, const StoredSetting& stored) {
                w.state.*member = stored.number() == 0;
                handler(w);
            },
            [](const Windows& w) -> Text { return Number(w.state.*member != 0); }};
}

// A mode that `handler` steps forward and shows: it is put one step back first, down to `lowest`.
template <auto member, auto handler, std::int32_t lowest>
constexpr SettingsKey Stepped(const char* section, const char* key) {
    return {section, key,
            [](const Windows& w, const StoredSetting& stored) {
                const std::int32_t number = stored.number();
                member(w) = number > lowest ? number - 1 : number;
                handler(w);
            },
            [](const Windows& w) -> Text { return Number(member(w)); }};
}

// Place and size of a window; `window` is the member of SettingsWindows.
template <auto window>
constexpr SettingsKey Left(const char* section) {
    return {section, "X",
            [](const Windows& w, const StoredSetting& stored) { window(w).move(stored.number(), window(w).top()); },
            [](const Windows& w) -> Text { return Number(window(w).left()); }};
}
template <auto window>
constexpr SettingsKey Top(const char* section) {
    return {section, "Y",
            [](const Windows& w, const StoredSetting& stored) { window(w).move(window(w).left(), stored.number()); },
            [](const Windows& w) -> Text { return Number(window(w).top()); }};
}
template <auto window, std::int32_t whenMissing>
constexpr SettingsKey Width(const char* section, const char* key) {
    return {section, key,
            [](const Windows& w, const StoredSetting& stored) {
                window(w).setSize(stored.number(whenMissing), window(w).height());
            },
            [](const Windows& w) -> Text { return Number(window(w).width()); }};
}
template <auto window, std::int32_t whenMissing>
constexpr SettingsKey Height(const char* section, const char* key) {
    return {section, key,
            [](const Windows& w, const StoredSetting& stored) {
                window(w).setSize(window(w).width(), stored.number(whenMissing));
            },
            [](const Windows& w) -> Text { return Number(window(w).height()); }};
}
constexpr auto kList = [](const Windows& w) -> FormList& { return w.list; };
constexpr auto kOpt = [](const Windows& w) -> FormOpt& { return w.opt; };
constexpr auto kGra = [](const Windows& w) -> FormGra& { return w.gra; };
constexpr auto kLyrics = [](const Windows& w) -> FormLyrics& { return w.lyrics; };
constexpr auto kTag = [](const Windows& w) -> FormTag& { return w.tag; };

template <int column>
constexpr SettingsKey ColumnWidth(const char* key) {
    return {"Option", key,
            [](const Windows& w, const StoredSetting& stored) {
                w.list.setColumnWidth(column, stored.number(FormList::kStartWidths[column]));
            },
            [](const Windows& w) -> Text {
                if (!w.list.columnsShown() || (column == FormList::kTimeColumn && !w.list.timeColumnShown())) {
                    return std::nullopt;
                }
                return Number(w.list.columnWidth(column));
            }};
}

// The name and the gains of an entry, in the form of the file: five presets, and the sliders behind them.
constexpr int kSliders = FormGra::kPresets;

void ReadEqualizerEntry(const Windows& w, int entry, std::string_view text) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view gains = comma < text.size() ? text.substr(comma + 1) : std::string_view{};
    SplitNumbers(gains, w.splitValues);
    EqualizerGains read;
    for (int band = 0; band < FormGra::kBands; ++band) read[static_cast<std::size_t>(band)] = w.splitValues(band + 1);
    if (entry == kSliders) {
        for (std::int32_t& gain : read) gain = FormGra::sliderOf(std::clamp(gain, -kMostGain, kMostGain)) * -10;
        w.gra.restore(read);
    } else {
        w.gra.geLabel[entry].setCaption(std::string(TrimBlanks(text.substr(0, comma))));
        std::ranges::copy(read, w.state.EqPresetTable[static_cast<std::size_t>(entry)].begin());
    }
}

std::string EqualizerEntry(const Windows& w, int entry) {
    if (entry == kSliders) return PatternText({"Custom", w.gra.sliderGains()});
    EqualizerPattern pattern{std::string(TrimBlanks(w.gra.geLabel[entry].caption())), {}};
    std::ranges::copy(w.state.EqPresetTable[static_cast<std::size_t>(entry)], pattern.gains.begin());
    return PatternText(pattern);
}

// The tenths by which the gains differ from the whole decibels of the sliders.
void ReadFineGains(const Windows& w, std::string_view text) {
    SplitValues tenths;  // of its own: skins rely on what the bands have left
    SplitNumbers(text, tenths);
    EqualizerGains gains = w.gra.sliderGains();
    for (int band = 0; band < FormGra::kBands; ++band)
        gains[static_cast<std::size_t>(band)] += std::clamp(tenths(band + 1), -5, 5);
    w.gra.restore(gains);
    w.gra.markPreset();
}

std::string FineGains(const Windows& w) {
    EqualizerGains fine = w.gra.gains();
    std::ranges::transform(fine, w.gra.sliderGains(), fine.begin(), std::minus());
    return PatternText({"", fine}).substr(1);
}

std::string EqualizerDefault(int entry) {
    return PatternText(FactoryPatterns()[static_cast<std::size_t>(entry == kSliders ? 0 : entry)]);
}

template <int entry>
constexpr SettingsKey Equalizer(const char* key) {
    return {"Equalizer", key,
            [](const Windows& w, const StoredSetting& stored) {
                ReadEqualizerEntry(w, entry, stored.text(EqualizerDefault(entry)));
            },
            [](const Windows& w) -> Text { return EqualizerEntry(w, entry); }};
}

// A choice of the encoder; what the window does not offer is left out.
template <int EncoderSettings::*choice>
constexpr SettingsKey EncoderChoice(const char* key) {
    return {"Convert", key,
            [](const Windows& w, const StoredSetting& stored) {
                EncoderSettings settings = w.conversion.settings();
                settings.*choice = stored.number(settings.*choice);
                if (AreOffered(settings)) w.conversion.setSettings(settings);
            },
            [](const Windows& w) -> Text { return Number(w.conversion.settings().*choice); }};
}

constexpr int kLeftButton = 1;
constexpr int kTimeLabel = 2;

constexpr auto kPlayMode = [](const Windows& w) -> int& { return w.state.PlayMode; };
constexpr auto kStepPlayMode = [](const Windows& w) { w.top.PlayModeLabel_Click(kLeftButton); };
constexpr auto kToggleTitle = [](const Windows& w) { w.top.TitleLabel_DblClick(); };
constexpr auto kToggleTime = [](const Windows& w) { w.top.TimeLabel_Click(kTimeLabel, kLeftButton); };
constexpr auto kColors = [](const Windows& w) -> int& { return w.state.LyricsColors[0]; };
constexpr auto kStepColors = [](const Windows& w) { w.lyrics.Picture7_DblClick(); };

// Up to the drive of the options.
constexpr SettingsKey kFirstKeys[] = {
    {"Main", "X",
     [](const Windows& w, const StoredSetting& stored) { w.top.moveTo(stored.number(), w.top.topTwips()); },
     [](const Windows& w) -> Text { return Number(w.top.leftTwips()); }},
    {"Main", "Y",
     [](const Windows& w, const StoredSetting& stored) { w.top.moveTo(w.top.leftTwips(), stored.number()); },
     [](const Windows& w) -> Text { return Number(w.top.topTwips()); }},
    Stepped<kPlayMode, kStepPlayMode, std::numeric_limits<std::int32_t>::min()>("Main", "PlayMode"),
    StateNumber<&GlobalState::ViewType>("Main", "ViewType"),
    {"Main", "FileName", [](const Windows& w, const StoredSetting& stored) { w.remember(stored.text()); },
     [](const Windows& w) -> Text { return w.state.CurrentFile; }},
    {"Main", "SkinName", [](const Windows& w, const StoredSetting& stored) { w.state.SkinName = stored.text(); },
     [](const Windows& w) -> Text { return w.state.SkinName; }},
    Toggled<&GlobalState::TitleMode, kToggleTitle>("Main", "TitleMode"),
    Toggled<&GlobalState::TimeMode, kToggleTime>("Main", "TimeMode"),
    {"Main", "TopMost",
     [](const Windows& w, const StoredSetting& stored) { w.top.setAlwaysOnTop(stored.number() != 0); },
     [](const Windows& w) -> Text { return Number(w.top.alwaysOnTop()); }},

    Left<kList>("List"),
    Top<kList>("List"),
    Width<kList, 5175>("List", "SX"),
    Height<kList, 6015>("List", "SY"),
    {"List", "Show", [](const Windows& w, const StoredSetting& stored) { w.state.ListShown = stored.number() == 1; },
     [](const Windows& w) -> Text { return Number(w.state.ListShown); }},

    ColumnWidth<0>("ColumnTitle"),
    ColumnWidth<1>("ColumnName"),
    ColumnWidth<2>("ColumnAlbum"),
    ColumnWidth<3>("ColumnTime"),
    ColumnWidth<4>("ColumnFile"),
    {"Option", "ListNo",
     [](const Windows& w, const StoredSetting& stored) {
         const std::int32_t list = stored.number();
         w.state.ListNo = list >= 0 && list < FormList::kViews ? list : 0;
     },
     [](const Windows& w) -> Text { return Number(w.state.ListNo); }},
    {"Option", "CurDir",
     [](const Windows& w, const StoredSetting& stored) {
         w.state.CurrentFolder = stored.text(w.files.programFolder());
     },
     [](const Windows& w) -> Text { return w.state.CurrentFolder; }},
};

// Up to all other options.
constexpr SettingsKey kOptionWindow[] = {Left<kOpt>("Option"), Top<kOpt>("Option")};

constexpr SettingsKey kLastKeys[] = {
    Left<kGra>("Equalizer"),
    Top<kGra>("Equalizer"),
    Equalizer<0>("0Eq"),
    Equalizer<1>("1Eq"),
    Equalizer<2>("2Eq"),
    Equalizer<3>("3Eq"),
    Equalizer<4>("4Eq"),
    Equalizer<kSliders>("5Eq"),
    // Behind the sliders, so that the decoding library is told once.
    {"Equalizer", "EqMode",
     [](const Windows& w, const StoredSetting& stored) { w.gra.Check4.setValue(stored.number()); },
     [](const Windows& w) -> Text { return Number(w.gra.Check4.value()); }},
    {"Equalizer", "Fine",
     [](const Windows& w, const StoredSetting& stored) { ReadFineGains(w, stored.text("0,0,0,0,0,0,0,0,0,0")); },
     [](const Windows& w) -> Text { return FineGains(w); }},

    Left<kLyrics>("Lyrics"),
    Top<kLyrics>("Lyrics"),
    Width<kLyrics, 4500>("Lyrics", "W"),
    Height<kLyrics, 3000>("Lyrics", "H"),
    Stepped<kColors, kStepColors, 0>("Lyrics", "Color"),

    Left<kTag>("Tag"),
    Top<kTag>("Tag"),

    {"Convert", "Kind",
     [](const Windows& w, const StoredSetting& stored) {
         const std::int32_t kind = stored.number();
         if (kind >= 0 && kind <= static_cast<int>(Operation::Encode)) w.conversion.setOperation(Operation{kind});
     },
     [](const Windows& w) -> Text { return Number(static_cast<int>(w.conversion.operation())); }},
    {"Convert", "Folder",
     [](const Windows& w, const StoredSetting& stored) { w.conversion.setPlace(true, stored.text()); },
     [](const Windows& w) -> Text { return w.conversion.folder(); }},
    {"Convert", "Beside",
     [](const Windows& w, const StoredSetting& stored) {
         const bool beside = stored.number(1) != 0 || w.conversion.folder().empty();
         w.conversion.setPlace(beside, w.conversion.folder());
     },
     [](const Windows& w) -> Text { return Number(w.conversion.besideSource()); }},
    EncoderChoice<&EncoderSettings::frequency>("Frequency"),
    EncoderChoice<&EncoderSettings::bitRate>("BitRate"),
    EncoderChoice<&EncoderSettings::vbrQuality>("Vbr"),
};

const std::array<SettingsGroup, 3> kGroups{
    {{kFirstKeys, OptionRows().first(1)}, {kOptionWindow, OptionRows().subspan(1)}, {kLastKeys, {}}}};

}  // namespace

std::span<const SettingsGroup> SettingsGroups() { return kGroups; }

}  // namespace quenlox
