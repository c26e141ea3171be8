#include "app/settings_table.h"

#include <algorithm>
#include <array>
#include <limits>

#include "state/global_state.h"
#include "skin/main_window_handlers.h"
#include "equalizer/form_gra.h"
#include "lyrics/form_lyrics.h"
#include "options/form_opt.h"
#include "playlist/form_list.h"
#include "tags/form_tag.h"
#include "text/strings.h"

namespace quenlox {
namespace {

using Windows = SettingsWindows;
using Text = std::optional<std::string>;

std::string Number(std::int64_t value) { return std::to_string(value); }

std::int32_t OneBack(std::int32_t value) { return value == std::numeric_limits<std::int32_t>::min() ? value : value - 1; }

constexpr SettingsKey NumberKey(LoadStep step, const char* section, const char* key, std::int32_t whenMissing,
                                SettingsKey::ReadNumber read, SettingsKey::Write write) {
    return {step, section, key, whenMissing, "", read, nullptr, write};
}

constexpr SettingsKey TextKey(LoadStep step, const char* section, const char* key, const char* whenMissing,
                              SettingsKey::ReadText read, SettingsKey::Write write) {
    return {step, section, key, 0, whenMissing, nullptr, read, write};
}

template <int GlobalState::*member>
constexpr SettingsKey StateNumber(LoadStep step, const char* section, const char* key) {
    return NumberKey(step, section, key, 0, [](const Windows& w, std::int32_t n) { w.state.*member = n; },
                     [](const Windows& w) -> Text { return Number(w.state.*member); });
}

template <std::string GlobalState::*member>
constexpr SettingsKey StateText(LoadStep step, const char* section, const char* key, const char* whenMissing = "") {
    return TextKey(step, section, key, whenMissing, [](const Windows& w, const std::string& t) { w.state.*member = t; },
                   [](const Windows& w) -> Text { return w.state.*member; });
}

// Place and size of a window; `window` is the member of SettingsWindows.
template <auto window>
constexpr SettingsKey Left(LoadStep step, const char* section) {
    return NumberKey(step, section, "X", 0, [](const Windows& w, std::int32_t n) { window(w).move(n, window(w).top()); },
                     [](const Windows& w) -> Text { return Number(window(w).left()); });
}
template <auto window>
constexpr SettingsKey Top(LoadStep step, const char* section) {
    return NumberKey(step, section, "Y", 0, [](const Windows& w, std::int32_t n) { window(w).move(window(w).left(), n); },
                     [](const Windows& w) -> Text { return Number(window(w).top()); });
}
template <auto window>
constexpr SettingsKey Width(LoadStep step, const char* section, const char* key, std::int32_t whenMissing) {
    return NumberKey(step, section, key, whenMissing,
                     [](const Windows& w, std::int32_t n) { window(w).setSize(n, window(w).height()); },
                     [](const Windows& w) -> Text { return Number(window(w).width()); });
}
template <auto window>
constexpr SettingsKey Height(LoadStep step, const char* section, const char* key, std::int32_t whenMissing) {
    return NumberKey(step, section, key, whenMissing,
                     [](const Windows& w, std::int32_t n) { window(w).setSize(window(w).width(), n); },
                     [](const Windows& w) -> Text { return Number(window(w).height()); });
}
constexpr auto kList = [](const Windows& w) -> FormList& { return w.list; };
constexpr auto kOpt = [](const Windows& w) -> FormOpt& { return w.opt; };
constexpr auto kGra = [](const Windows& w) -> FormGra& { return w.gra; };
constexpr auto kLyrics = [](const Windows& w) -> FormLyrics& { return w.lyrics; };
constexpr auto kTag = [](const Windows& w) -> FormTag& { return w.tag; };

template <CheckBox FormOpt::*box>
constexpr SettingsKey Check(const char* key, std::int32_t whenMissing = 0, LoadStep step = LoadStep::Options) {
    return NumberKey(step, "Option", key, whenMissing,
                     [](const Windows& w, std::int32_t n) { (w.opt.*box).setValue(n); },
                     [](const Windows& w) -> Text { return Number((w.opt.*box).value()); });
}
// The slider holds the stored number divided by `factor`.
template <ScrollBar FormOpt::*bar, int factor = 1>
constexpr SettingsKey Slider(const char* key, std::int32_t whenMissing = 0) {
    return NumberKey(LoadStep::Options, "Option", key, whenMissing,
                     [](const Windows& w, std::int32_t n) { (w.opt.*bar).setValue(n / factor); },
                     [](const Windows& w) -> Text { return Number((w.opt.*bar).value() * factor); });
}
template <ControlArray<OptionButton> FormOpt::*options>
constexpr SettingsKey Choice(const char* key) {
    return NumberKey(LoadStep::Options, "Option", key, 0,
                     [](const Windows& w, std::int32_t n) { FormOpt::choose(w.opt.*options, n); },
                     [](const Windows& w) -> Text { return Number(FormOpt::chosen(w.opt.*options)); });
}
template <TextBox FormOpt::*box>
constexpr SettingsKey Box(const char* key, const char* whenMissing = "", const char* section = "Option") {
    return TextKey(LoadStep::Options, section, key, whenMissing,
                   [](const Windows& w, const std::string& t) { (w.opt.*box).setText(t); },
                   [](const Windows& w) -> Text { return (w.opt.*box).text(); });
}

bool Collapsed(const Windows& w) { return w.state.ListType == 0 && !w.opt.listColumns(); }

template <int column>
constexpr SettingsKey ColumnWidth(const char* key) {
    return NumberKey(
        LoadStep::Columns, "Option", key, FormList::kStartWidths[column],
        [](const Windows& w, std::int32_t n) {
            if (Collapsed(w)) n = FormList::kSingleColumn[column];
            if (column == FormList::kTimeColumn && !w.opt.listTimeColumn()) n = 0;
            for (int view = 0; view < FormList::kViews; ++view) w.list.PlayView[view].setColumnWidth(column, n);
        },
        [](const Windows& w) -> Text {
            if (Collapsed(w) || (column == FormList::kTimeColumn && !w.opt.listTimeColumn())) return std::nullopt;
            const auto widths = w.list.columnWidths(std::clamp(w.state.ListNo, 0, FormList::kViews - 1));
            // The columns were chosen in this run, and the lists still show the single one.
            if (widths == FormList::kSingleColumn) return std::nullopt;
            return Number(widths[column]);
        });
}

std::string EqualizerEntry(const Windows& w, int entry) {
    const bool preset = entry < FormGra::kPresets;
    std::string text = preset ? std::string(TrimBlanks(w.gra.geLabel[entry].caption())) : "Custom";
    for (int band = 0; band < FormGra::kBands; ++band) {
        const int gain = preset ? w.state.EqPresetTable[static_cast<std::size_t>(entry)][static_cast<std::size_t>(band)]
                                : w.gra.VScroll[band].value() * -10;
        text += "," + Number(gain);
    }
    return text;
}
// Read as one run, see SettingsFile::loadEqualizer.
template <int entry>
constexpr SettingsKey Equalizer(const char* key) {
    return {LoadStep::Equalizer, "Equalizer", key, 0, "", nullptr, nullptr,
            [](const Windows& w) -> Text { return EqualizerEntry(w, entry); }};
}

constexpr std::array<const char*, kEqualizerEntries> kEqualizerDefaults{
    "FLAT,0,0,0,0,0,0,0,0,0,0",
    "ROCK,20,50,0,-20,30,10,-20,50,30,10",
    "POPS,-30,0,40,0,0,-30,60,40,0,-30",
    "LIGHT,-20,-40,0,0,-20,40,50,10,40,20",
    "BGM,-70,-20,-30,40,-20,30,-30,0,-50,-70",
    "FLAT,0,0,0,0,0,0,0,0,0,0",
};

constexpr int kLeftButton = 1;
constexpr int kTimeLabel = 2;

constexpr SettingsKey kKeys[] = {
    NumberKey(LoadStep::MainWindow, "Main", "X", 0,
              [](const Windows& w, std::int32_t n) { w.top.moveTo(n, w.top.topTwips()); },
              [](const Windows& w) -> Text { return Number(w.top.leftTwips()); }),
    NumberKey(LoadStep::MainWindow, "Main", "Y", 0,
              [](const Windows& w, std::int32_t n) { w.top.moveTo(w.top.leftTwips(), n); },
              [](const Windows& w) -> Text { return Number(w.top.topTwips()); }),
    NumberKey(LoadStep::MainWindow, "Main", "PlayMode", 0,
              [](const Windows& w, std::int32_t n) {
                  w.state.PlayMode = OneBack(n);
                  w.top.PlayModeLabel_Click(kLeftButton);
              },
              [](const Windows& w) -> Text { return Number(w.state.PlayMode); }),
    StateNumber<&GlobalState::ViewType>(LoadStep::CurrentFile, "Main", "ViewType"),
    TextKey(LoadStep::CurrentFile, "Main", "FileName", "",
            [](const Windows& w, const std::string& file) { w.remember(file); },
            [](const Windows& w) -> Text { return w.state.CurrentFile; }),
    StateText<&GlobalState::SkinName>(LoadStep::CurrentFile, "Main", "SkinName"),
    NumberKey(LoadStep::Modes, "Main", "TitleMode", 0,
              [](const Windows& w, std::int32_t n) {
                  w.state.TitleMode = n == 0;
                  w.top.TitleLabel_DblClick();
              },
              [](const Windows& w) -> Text { return Number(w.state.TitleMode != 0); }),
    NumberKey(LoadStep::Modes, "Main", "TimeMode", 0,
              [](const Windows& w, std::int32_t n) {
                  w.state.TimeMode = n == 0;
                  w.top.TimeLabel_Click(kTimeLabel, kLeftButton);
              },
              [](const Windows& w) -> Text { return Number(w.state.TimeMode != 0); }),

    Left<kList>(LoadStep::ListWindow, "List"),
    Top<kList>(LoadStep::ListWindow, "List"),
    Width<kList>(LoadStep::ListWindow, "List", "SX", 5175),
    Height<kList>(LoadStep::ListWindow, "List", "SY", 6015),
    NumberKey(LoadStep::ListWindow, "List", "Show", 0,
              [](const Windows& w, std::int32_t n) { w.state.ListShown = n == 1; },
              [](const Windows& w) -> Text { return Number(w.state.ListShown); }),

    ColumnWidth<0>("ColumnTitle"),
    ColumnWidth<1>("ColumnName"),
    ColumnWidth<2>("ColumnAlbum"),
    ColumnWidth<3>("ColumnTime"),
    ColumnWidth<4>("ColumnFile"),
    NumberKey(LoadStep::Lists, "Option", "ListNo", 0,
              [](const Windows& w, std::int32_t n) { w.state.ListNo = n >= 0 && n < FormList::kViews ? n : 0; },
              [](const Windows& w) -> Text { return Number(w.state.ListNo); }),
    StateText<&GlobalState::CurrentFolder>(LoadStep::Lists, "Option", "CurDir", nullptr),
    StateText<&GlobalState::DefaultCdDrive>(LoadStep::Lists, "Option", "defCdDrv"),
    Left<kOpt>(LoadStep::Options, "Option"),
    Top<kOpt>(LoadStep::Options, "Option"),
    Check<&FormOpt::CheckAnime>("AnimeMode"),
    Slider<&FormOpt::HScrollAnime>("AnimeTime"),
    Check<&FormOpt::CheckSpeana>("SpeanaMode"),
    Slider<&FormOpt::HScrollSpeana>("SpeanaTime"),
    Slider<&FormOpt::HScrollSpeanaIntro, 2>("SpeanaIntro"),
    Choice<&FormOpt::FftOption>("Fft"),
    Choice<&FormOpt::QualityOption>("Quality"),
    Slider<&FormOpt::HScrollHiPitch>("HiPitch", 130),
    Slider<&FormOpt::HScrollLowPitch>("LowPitch", 80),
    Check<&FormOpt::CheckIntro>("IntroPlay"),
    Slider<&FormOpt::HScrollIntro>("IntroTime", 10),
    Choice<&FormOpt::VolumeOption>("Volume"),
    Check<&FormOpt::CheckLyrics>("DispLyrics", 1),
    Check<&FormOpt::CheckLyricsSelf>("LyricsSelf"),
    Slider<&FormOpt::HScrollLyricsTime>("LyricsTime", 1),
    NumberKey(LoadStep::Options, "Option", "LyricsLine", 5,
              [](const Windows& w, std::int32_t n) {
                  w.state.LyricsLine = n;
                  FormOpt::choose(w.opt.LyricsOption, n);
              },
              [](const Windows& w) -> Text { return Number(w.state.LyricsLine); }),
    Box<&FormOpt::TextLyricsFont>("Font", "ＭＳ Ｐゴシック", "Lyrics"),
    Check<&FormOpt::CheckLyricsMain>("LyricsMain"),
    Check<&FormOpt::CheckTimeTag>("TimeTag"),
    Box<&FormOpt::TextLyricsDir>("LyricsDir"),
    Box<&FormOpt::TextBmpDir>("BmpDir"),
    Check<&FormOpt::CheckPanel>("PanelMode"),
    Check<&FormOpt::CheckReName>("ReName"),
    Box<&FormOpt::TextReName>("ReNameS", "(*N) *T"),
    NumberKey(LoadStep::ListType, "Option", "ListType", 0,
              [](const Windows& w, std::int32_t n) {
                  w.state.ListType = n;
                  w.opt.CheckListType.setValue(n);
              },
              [](const Windows& w) -> Text { return Number(w.opt.CheckListType.value()); }),
    Check<&FormOpt::CheckListTypeS>("ListTypeS", 0, LoadStep::ListType),
    Check<&FormOpt::CheckDelList>("DelList"),

    Left<kGra>(LoadStep::Equalizer, "Equalizer"),
    Top<kGra>(LoadStep::Equalizer, "Equalizer"),
    Equalizer<0>("0Eq"),
    Equalizer<1>("1Eq"),
    Equalizer<2>("2Eq"),
    Equalizer<3>("3Eq"),
    Equalizer<4>("4Eq"),
    Equalizer<5>("5Eq"),
    // Read behind the sliders, so that the decoding library is told once.
    NumberKey(LoadStep::Equalizer, "Equalizer", "EqMode", 0,
              [](const Windows& w, std::int32_t n) { w.gra.Check4.setValue(n); },
              [](const Windows& w) -> Text { return Number(w.gra.Check4.value()); }),

    Left<kLyrics>(LoadStep::Lyrics, "Lyrics"),
    Top<kLyrics>(LoadStep::Lyrics, "Lyrics"),
    Width<kLyrics>(LoadStep::Lyrics, "Lyrics", "W", 4500),
    Height<kLyrics>(LoadStep::Lyrics, "Lyrics", "H", 3000),
    NumberKey(LoadStep::Lyrics, "Lyrics", "Color", 0,
              [](const Windows& w, std::int32_t n) {
                  w.state.LyricsColors[0] = n >= 1 ? n - 1 : n;
                  w.lyrics.Picture7_DblClick();
              },
              [](const Windows& w) -> Text { return Number(w.state.LyricsColors[0]); }),

    Left<kTag>(LoadStep::Tag, "Tag"),
    Top<kTag>(LoadStep::Tag, "Tag"),

    NumberKey(LoadStep::Modes, "Main", "TopMost", 0, [](const Windows& w, std::int32_t n) { w.top.setAlwaysOnTop(n != 0); },
              [](const Windows& w) -> Text { return Number(w.top.alwaysOnTop()); }),
    Check<&FormOpt::CheckListTime>("ListTime", 1, LoadStep::ListType),
    Slider<&FormOpt::HScrollStepPitch>("StepPitch", 6),
    Check<&FormOpt::CheckGapless>("Gapless", 1),
    Check<&FormOpt::CheckPassOver>("PassOver", 1),
    NumberKey(LoadStep::Options, "Option", "SkinScale", 1,
              [](const Windows& w, std::int32_t n) { w.opt.setSkinScale(n); },
              [](const Windows& w) -> Text { return Number(w.opt.skinScale()); }),
    NumberKey(LoadStep::Options, "Option", "OutputDevice", -1,
              [](const Windows& w, std::int32_t n) { w.opt.setOutputDevice(n); },
              [](const Windows& w) -> Text { return Number(w.opt.outputDevice()); }),
    TextKey(LoadStep::Options, "Option", "OutputDeviceName", "",
            [](const Windows& w, const std::string& t) { w.opt.setOutputDeviceName(t); },
            [](const Windows& w) -> Text { return w.opt.outputDeviceName(); }),
    Slider<&FormOpt::HScrollBuffer>("OutputBuffer", 250),
    Check<&FormOpt::CheckLyricsBold>("LyricsBold"),
    Check<&FormOpt::CheckLyricsSecond>("LyricsColor2"),
};

}  // namespace

std::span<const SettingsKey> SettingsKeys() { return kKeys; }

const char* DefaultEqualizerEntry(int entry) { return kEqualizerDefaults[static_cast<std::size_t>(entry)]; }

}  // namespace quenlox
