// Finds out what a row shows of its media file: from its tags, from the text of a MIDI file, or from the file's name.
// Reads the file; called when a row's texts are first needed. Failures give placeholders.
//
// Asking a server that is switched off, or a drive that has gone, can take Windows half a minute, and a list may hold
// hundreds of its files. So after one such wait the files of that place count as missing for a while.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quenlox {

class FileSystem;
struct Options;
class Vbmp3;
struct GlobalState;

inline constexpr std::string_view kNoTitle = "- no title -";
inline constexpr std::string_view kNoName = "- no name -";
inline constexpr std::string_view kUnknownName = "-----------";
inline constexpr std::string_view kUnknownText = "----";

// Minutes and two-digit seconds, "3:05"; "----" for a length that is not known (below 0).
std::string PlayTimeText(std::int32_t seconds);
// "1,234,567"; for numbers of at least 0.
std::string WithThousands(std::int64_t number);

class EntryReader {
  public:
    using Clock = std::chrono::steady_clock;

    EntryReader(GlobalState& state, const Options& options, FileSystem& files, Vbmp3& vbmp3,
                std::function<Clock::time_point()> now = Clock::now)
        : state_(state), options_(options), files_(files), vbmp3_(vbmp3), now_(std::move(now)) {}

    struct Texts {
        std::string title;
        std::string name;
        std::string album;
        std::int32_t seconds = -1;  // -1: not known
    };
    Texts read(const std::string& path);
    // What there is to know of the file, in lines: name, folder, size (none: it is not there), kind, length, texts of its
    // tags.
    std::string describe(const std::string& path, std::optional<std::uint64_t> size);

  private:
    bool readTags(const std::string& path, Texts& texts);
    bool estimates() const;

    GlobalState& state_;
    const Options& options_;
    FileSystem& files_;
    Vbmp3& vbmp3_;
    std::function<Clock::time_point()> now_;
    std::map<std::string, Clock::time_point> deadUntil_;  // by drive or share
};

}  // namespace quenlox
