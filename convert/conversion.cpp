#include "convert/conversion.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "platform/vbmp3.h"
#include "state/media_formats.h"
#include "text/numbers.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// By the number of the error.
constexpr std::array<const char*, 7> kMessages{
    "変換エラー",           "デコードファイルが不正です", "エンコードファイルが不正です", "コーデックがありません",
    "gogo.dll初期化エラー", "gogo.dllエンコードエラー",   "gogo.dllファイルエラー"};

constexpr std::array kFrequencies{48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000};
constexpr std::array kBitRates{320, 256, 224, 192, 160, 128, 112, 96, 80, 64, 48, 40, 32};
constexpr int kBestQuality = 0, kSmallestQuality = 9;

// What the encoder has at this frequency: MPEG-1, 2 and 2.5.
int MostBitRate(int frequency) { return frequency >= 32000 ? 320 : frequency >= 16000 ? 160 : 64; }

std::string RightAligned(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

// What is beside a name already taken becomes "name (2).mp3" and so on.
std::string Numbered(const std::string& path, int number) {
    return FolderOf(path) + BaseNameOf(path) + " (" + std::to_string(number) + ")." + ExtensionOf(path);
}

}  // namespace

std::vector<ComboBox::Item> FrequencyItems() {
    std::vector<ComboBox::Item> items;
    for (const int hertz : kFrequencies) {
        std::string digits = std::to_string(hertz);
        digits.insert(digits.size() - 3, ",");
        items.push_back({RightAligned(digits, 7), hertz});
    }
    return items;
}

std::vector<ComboBox::Item> BitRateItems(int frequency) {
    std::vector<ComboBox::Item> items;
    for (const int rate : kBitRates) {
        if (rate <= MostBitRate(frequency)) items.push_back({RightAligned(std::to_string(rate), 4), rate});
    }
    return items;
}

int BitRateAt(int frequency, int wished) { return std::min(wished, MostBitRate(frequency)); }

std::vector<ComboBox::Item> VbrQualityItems() {
    std::vector<ComboBox::Item> items{{"(使用しない)", kNoVbr}};
    for (int quality = kBestQuality; quality <= kSmallestQuality; ++quality) {
        const char* note = quality == kBestQuality ? "－高音質" : quality == kSmallestQuality ? "－高圧縮" : "";
        items.push_back({" " + std::to_string(quality) + note, quality});
    }
    return items;
}

bool AreOffered(const EncoderSettings& settings) {
    const auto among = [](const std::vector<ComboBox::Item>& items, int data) {
        return std::ranges::find(items, data, &ComboBox::Item::data) != items.end();
    };
    return among(FrequencyItems(), settings.frequency) && among(BitRateItems(kFrequencies[0]), settings.bitRate) &&
           among(VbrQualityItems(), settings.vbrQuality);
}

std::string MessageOf(ConversionError error) { return kMessages[static_cast<std::size_t>(error)]; }

ConversionError ErrorOfJob(Operation operation, LibraryError error) {
    switch (error) {
        case LibraryError::NotFound:
        case LibraryError::Format:
            return Encodes(operation) ? ConversionError::EncodeSource : ConversionError::DecodeSource;
        case LibraryError::NoCodec: return ConversionError::NoCodec;
        default: return ConversionError::Other;
    }
}

FileDialog SourceDialog(Operation operation) {
    FileDialog dialog;
    dialog.title = Encodes(operation) ? "変換WAVEﾌｧｲﾙ名の指定" : "変換MP3ﾌｧｲﾙ名の指定";
    dialog.filterName = Encodes(operation) ? "WAVEﾌｧｲﾙ" : "MP3ﾌｧｲﾙ";
    dialog.filter = Encodes(operation) ? "*.wav" : "*.mp?;*.rmp";
    return dialog;
}

FileDialog DestinationDialog(Operation operation, const std::string& proposed) {
    FileDialog dialog;
    dialog.title = Encodes(operation) ? "保存MP3ﾌｧｲﾙ名の指定" : "保存WAVEﾌｧｲﾙ名の指定";
    dialog.filterName = Encodes(operation) ? "MP3ﾌｧｲﾙ" : "WAVEﾌｧｲﾙ";
    dialog.filter = Encodes(operation) ? "*.mp3;*.rmp" : "*.wav";
    dialog.folder = FolderOf(proposed);
    dialog.fileName = FileNameOf(proposed);
    return dialog;
}

std::vector<std::string> SourcesAmong(const std::vector<std::string>& files, Operation operation) {
    std::vector<std::string> sources;
    std::ranges::copy_if(files, std::back_inserter(sources), [&](const std::string& file) {
        const auto family = FamilyOf(LastFour(file));
        return Encodes(operation) ? family == MediaFamily::Wave
                                  : family == MediaFamily::Mpeg || family == MediaFamily::Rmp;
    });
    return sources;
}

std::string ProposedDestination(const std::string& source, Operation operation) {
    return WithExtension(source, Encodes(operation) ? "mp3" : "wav");
}

std::vector<ConversionJob> JobsFor(const std::vector<std::string>& sources, Operation operation,
                                   const std::string& folder) {
    std::vector<ConversionJob> jobs;
    std::set<std::string> taken;
    for (const std::string& source : sources) {
        std::string proposed = ProposedDestination(source, operation);
        if (!folder.empty()) proposed = JoinPath(folder, FileNameOf(proposed));
        std::string destination = proposed;
        for (int number = 2; !taken.insert(FoldCase(destination)).second; ++number)
            destination = Numbered(proposed, number);
        jobs.push_back({source, destination});
    }
    return jobs;
}

void CarryTags(Vbmp3& vbmp3, const ConversionJob& job) {
    const auto info = vbmp3.vbmp3_getFileInfo(job.source);
    if (!info || std::ranges::all_of(kTrackTexts, [&](auto text) { return (info->texts.*text).empty(); })) return;
    const bool rmp = FamilyOf(LastFour(job.destination)) == MediaFamily::Rmp;
    vbmp3.vbmp3_writeTag(job.destination, rmp ? int{kTagSi} : kTagId3v1 | kTagId3v2, info->texts);
}

double SecondsLeft(double secondsPassed, double done) {
    constexpr double kLeastSeconds = 1, kLeastDone = 0.005;
    if (secondsPassed < kLeastSeconds || done < kLeastDone || done >= 1) return -1;
    return secondsPassed * (1 - done) / done;
}

std::string TimeText(double seconds) {
    return seconds < 0 ? std::string() : MinutesAndSeconds(static_cast<std::int64_t>(seconds + 0.5));
}

}  // namespace quenlox
