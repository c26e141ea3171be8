#include "state/option_table.h"

#include <algorithm>
#include <cassert>
#include <limits>

namespace quenlox {
namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

constexpr OptionRow Check(const char* key, OnOff Options::*field) { return {"Option", key, field}; }
constexpr OptionRow Text(const char* key, std::string Options::*field, const char* section = "Option") {
    return {section, key, field};
}
constexpr OptionRow Number(const char* key, std::int32_t Options::*field, std::int32_t minimum, std::int32_t maximum,
                           std::int32_t unit = 1) {
    return {"Option", key, field, minimum, maximum, false, unit};
}
constexpr OptionRow Choice(const char* key, std::int32_t Options::*field, std::int32_t last) {
    return {"Option", key, field, 0, last, true};
}

// A new one goes to the end.
constexpr OptionRow kRows[] = {
    Text("defCdDrv", &Options::DefaultCdDrive),
    Check("AnimeMode", &Options::TitleAnimation),
    Number("AnimeTime", &Options::TitleAnimationSpeed, 0, 10),
    Check("SpeanaMode", &Options::SpectrumShown),
    Number("SpeanaTime", &Options::SpectrumSpeed, 0, 10),
    Number("SpeanaIntro", &Options::SpectrumIntro, 0, 60, 2),
    Choice("Fft", &Options::SpectrumBands, 2),
    Choice("Quality", &Options::Quality, 2),
    Number("HiPitch", &Options::HighPitch, 101, 200),
    Number("LowPitch", &Options::LowPitch, 50, 99),
    Check("IntroPlay", &Options::IntroPlay),
    Number("IntroTime", &Options::IntroSeconds, 1, 60),
    Choice("Volume", &Options::VolumeDrives, kSourcesToo),
    Check("DispLyrics", &Options::LyricsShown),
    Check("LyricsSelf", &Options::LyricsSelf),
    Number("LyricsTime", &Options::LyricsTime, kLyricsOnTime - 50, kLyricsOnTime + 50),
    Number("LyricsLine", &Options::LyricsLine, kLowest, kHighest),
    Text("Font", &Options::LyricsFont, "Lyrics"),
    Check("LyricsMain", &Options::Lyrics3First),
    Check("TimeTag", &Options::TimeTagShown),
    Text("LyricsDir", &Options::LyricsFolder),
    Text("BmpDir", &Options::PictureFolder),
    Check("PanelMode", &Options::OperationPanel),
    Check("ReName", &Options::EstimateFromFileName),
    Text("ReNameS", &Options::RenameFormat),
    Check("ListType", &Options::TagLists),
    Check("ListTypeS", &Options::ListColumns),
    Check("DelList", &Options::DeleteFromList),
    Check("ListTime", &Options::ListTimeColumn),
    Number("StepPitch", &Options::StepPitch, 2, 16),
    Check("Gapless", &Options::GaplessNext),
    Check("PassOver", &Options::PassOverUnplayable),
    Number("OutputDevice", &Options::OutputDevice, kDefaultDevice, kHighest),
    Text("OutputDeviceName", &Options::OutputDeviceName),
    Number("OutputBuffer", &Options::OutputBuffer, 50, 2000),
    Check("LyricsBold", &Options::LyricsBold),
    Check("LyricsColor2", &Options::LyricsSecondColor),
    Choice("ReNameFiles", &Options::RenameSideFiles, kLeaveSideFiles),
    Check("SaveCheck", &Options::TellUnsaved),
    Number("SkinZoom", &Options::SkinZoom, kZoomOfMonitor, 400),
    Check("LyricsSmooth", &Options::LyricsSmooth),
};

// A value as the file has it; each takes the value of a fresh start and gives the one read.
struct StoredValue {
    const IniDocument& file;
    const OptionRow& row;

    OnOff read(OnOff fresh) const { return OnOff::Of(ReadIniInt(file, row.section, row.key, fresh.number())); }
    std::int32_t read(std::int32_t fresh) const {
        const std::int32_t number = ReadIniInt(file, row.section, row.key, fresh * row.unit) / row.unit;
        const std::int32_t inside = std::clamp(number, row.minimum, row.maximum);
        return row.choice && inside != number ? fresh : inside;
    }
    std::string read(const std::string& fresh) const { return ReadIniString(file, row.section, row.key, fresh); }
};

std::string Stored(const OptionRow&, OnOff value) { return std::to_string(value.number()); }
std::string Stored(const OptionRow& row, std::int32_t value) { return std::to_string(value * row.unit); }
std::string Stored(const OptionRow&, const std::string& value) { return value; }

}  // namespace

std::span<const OptionRow> OptionRows() { return kRows; }

const OptionRow& RowOf(OptionField field) {
    const auto found = std::ranges::find(kRows, field, &OptionRow::field);
    assert(found != std::end(kRows));
    return *found;
}

Options ReadOptions(const IniDocument& file) {
    Options options;
    for (const OptionRow& row : kRows) {
        std::visit([&](auto field) { options.*field = StoredValue{file, row}.read(options.*field); }, row.field);
    }
    // Before, there were whole factors; 1 stood in every file, whether somebody had chosen it or not.
    const std::int32_t factor = ReadIniInt(file, "Option", "SkinScale", 1);
    if (file.text("Option", "SkinZoom", "").empty() && factor > 1) options.SkinZoom = std::min(factor, 4) * 100;
    return options;
}

void WriteOption(const OptionRow& row, const Options& options, IniDocument& file) {
    std::visit([&](auto field) { WriteIniString(file, row.section, row.key, Stored(row, options.*field)); }, row.field);
}

}  // namespace quenlox
