#include "playlist/entry_reader.h"

#include <algorithm>
#include <optional>

#include "platform/file_system.h"
#include "platform/vbmp3.h"
#include "playlist/name_estimate.h"
#include "state/global_state.h"
#include "state/options.h"
#include "text/encoding.h"
#include "text/midi_text.h"
#include "text/numbers.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// Larger than any real MIDI file; what claims to be one beyond this is not read for its title.
constexpr std::uint64_t kLargestMidi = 16u << 20;

constexpr std::size_t kLongestComment = 600;  // bytes of it that a box shows

// A disk that has to start turning takes as long, but then it is there.
constexpr std::chrono::seconds kLongWait{1}, kDeadTime{60};

bool IsMidi(const std::string& path) {
    return std::string_view(".mid.rmi").find(LastFour(path)) != std::string_view::npos;
}

}  // namespace

std::string PlayTimeText(std::int32_t seconds) {
    if (seconds < 0) return std::string(kUnknownText);
    return std::to_string(seconds / 60) + ":" + TwoDigits(seconds % 60);
}

std::string WithThousands(std::int64_t number) {
    std::string text = std::to_string(number);
    for (int at = static_cast<int>(text.size()) - 3; at > 0; at -= 3) text.insert(static_cast<std::size_t>(at), ",");
    return text;
}

bool EntryReader::estimates() const { return state_.ListType == 0 && options_.EstimateFromFileName; }

// False when nothing could be learnt of the file.
bool EntryReader::readTags(const std::string& path, Texts& texts) {
    if (IsMidi(path)) {
        const std::optional<std::string> bytes = files_.read(path, kLargestMidi);
        texts.title = bytes ? TrimAtNull(MidiTitle(*bytes)) : std::string{};
        return bytes.has_value();
    }
    const auto info = vbmp3_.vbmp3_getFileInfo(path);
    if (!info) return false;
    texts.title = info->texts.title;
    texts.name = info->texts.artist;
    texts.album = info->texts.album;
    texts.seconds = std::max(info->seconds, 0);
    return true;
}

std::string EntryReader::describe(const std::string& path, std::optional<std::uint64_t> size) {
    std::string lines;
    const auto line = [&lines](std::string_view name, std::string_view text) {
        if (!text.empty()) lines.append(lines.empty() ? "" : "\n").append(name).append("：").append(text);
    };
    line("ファイル名", FileNameOf(path));
    line("フォルダ", FolderOf(path));
    line("サイズ", size ? WithThousands(static_cast<std::int64_t>(*size)) + "バイト" : "");
    const auto info = vbmp3_.vbmp3_getFileInfo(path);
    if (info) {
        line("形式", info->format + (info->type.rmp ? "（RMP）" : ""));
        line("演奏時間", PlayTimeText(info->seconds));
        const TrackTexts& texts = info->texts;
        line("曲名", texts.title);
        line("アーティスト名", texts.artist);
        line("アルバム名", texts.album);
        line("年", texts.year);
        line("ジャンル", texts.genre);
        line("トラック", texts.track);
        line("コメント", CutUtf8(texts.comment, kLongestComment));
    } else if (!IsMidi(path) || !size) {
        lines.append("\n\n").append(TextOf(size ? info.error() : LibraryError::NotFound));
    }
    return lines;
}

EntryReader::Texts EntryReader::read(const std::string& path) {
    Texts texts;
    // What the library does not know of shows the name of its file.
    texts.title = IsMidi(path) ? std::string{} : BaseNameOf(path);
    texts.name = kUnknownName;
    texts.album = kUnknownText;
    const std::string root = FoldCase(VolumeOf(path));
    const Clock::time_point begin = now_();
    const auto dead = deadUntil_.find(root);
    if (dead == deadUntil_.end() || dead->second <= begin) {
        if (!readTags(path, texts) && now_() - begin >= kLongWait && !files_.folderExists(root + "\\")) {
            deadUntil_[root] = now_() + kDeadTime;
        }
    }
    if (estimates()) {
        if (auto estimate = EstimateFromFileName(path, options_.RenameFormat)) {
            texts.title = std::move(estimate->title);
            texts.name = std::move(estimate->artist);
            texts.album = std::move(estimate->album);
        }
    }
    if (texts.title.empty()) texts.title = kNoTitle;
    if (texts.name.empty()) texts.name = kNoName;
    return texts;
}

}  // namespace quenlox
