#include "equalizer/presets.h"

#include <charconv>

#include "text/ini_document.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr const char* kSection = "Equalizer";
constexpr const char* kKey = "Pattern";
constexpr std::size_t kNameUnits = 60;  // a pattern with its ten gains must fit a line of the settings file

// The whole field is a number within the range.
std::optional<std::int32_t> GainOf(std::string_view field) {
    field = TrimBlanks(field);
    std::int32_t gain = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), gain);
    if (error != std::errc() || end != field.data() + field.size()) return std::nullopt;
    if (gain < -kMostGain || gain > kMostGain) return std::nullopt;
    return gain;
}

}  // namespace

std::span<const EqualizerPattern> FactoryPatterns() {
    static const std::array<EqualizerPattern, 5> patterns{{
        {"FLAT", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {"ROCK", {20, 50, 0, -20, 30, 10, -20, 50, 30, 10}},
        {"POPS", {-30, 0, 40, 0, 0, -30, 60, 40, 0, -30}},
        {"LIGHT", {-20, -40, 0, 0, -20, 40, 50, 10, 40, 20}},
        {"BGM", {-70, -20, -30, 40, -20, 30, -30, 0, -50, -70}},
    }};
    return patterns;
}

std::string PatternText(const EqualizerPattern& pattern) {
    std::string text = pattern.name;
    for (const std::int32_t gain : pattern.gains) text += "," + std::to_string(gain);
    return text;
}

std::string PatternName(std::string_view wanted) {
    std::string name = ReplaceAll(TrimAtNull(wanted), ",", "、");
    std::erase_if(name, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    return std::string(TrimBlanks(CutUtf16Units(name, kNameUnits)));
}

std::string WritePatternFile(const EqualizerPattern& pattern) {
    IniDocument file;
    file.set(kSection, kKey, PatternText(pattern));
    return file.serialise();
}

std::optional<EqualizerPattern> ReadPatternFile(std::string_view bytes) {
    const auto text = IniDocument::Parse(bytes).find(kSection, kKey);
    if (!text) return std::nullopt;
    std::string_view rest = *text;
    const auto next = [&rest] {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view field = rest.substr(0, comma);
        rest.remove_prefix(std::min(comma + 1, rest.size()));
        return field;
    };
    EqualizerPattern pattern;
    pattern.name = PatternName(next());
    for (std::int32_t& gain : pattern.gains) {
        const auto read = GainOf(next());
        if (!read) return std::nullopt;
        gain = *read;
    }
    if (pattern.name.empty() || !rest.empty()) return std::nullopt;
    return pattern;
}

}  // namespace quenlox
