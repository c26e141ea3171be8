// Finds out what a row shows of its media file: from its tags, from the text of a MIDI file, or from the file's name.
// Reads the file; called when a row's texts are first needed. Failures give placeholders.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quenlox {

class FileSystem;
class OptionSettings;
class Vbmp3;
struct GlobalState;

inline constexpr std::string_view kNoTitle = "- no title -";
inline constexpr std::string_view kNoName = "- no name -";
inline constexpr std::string_view kUnknownName = "-----------";
inline constexpr std::string_view kUnknownText = "----";

// Minutes and two-digit seconds, "3:05"; "----" for a length that is not known (below 0).
std::string PlayTimeText(std::int32_t seconds);

class EntryReader {
  public:
    EntryReader(GlobalState& state, const OptionSettings& options, FileSystem& files, Vbmp3& vbmp3)
        : state_(state), options_(options), files_(files), vbmp3_(vbmp3) {}

    struct Texts {
        std::string title;
        std::string name;
        std::string album;
        std::int32_t seconds = -1;  // -1: not known
    };
    Texts read(const std::string& path);

  private:
    bool estimates() const;

    GlobalState& state_;
    const OptionSettings& options_;
    FileSystem& files_;
    Vbmp3& vbmp3_;
};

}  // namespace quenlox
