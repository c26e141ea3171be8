#include "text/ini_document.h"

#include <algorithm>

#include "text/encoding.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::size_t kLongestValue = 127;

// The profile calls drop tabs and other control characters like blanks.
std::string_view TrimSpace(std::string_view text) {
    const auto isSpace = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

std::string_view WithoutQuotes(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string OneLine(std::string_view value) {
    std::string line(value.substr(0, value.find('\0')));
    std::ranges::replace(line, '\r', ' ');
    std::ranges::replace(line, '\n', ' ');
    return line;
}

}  // namespace

IniDocument::Line IniDocument::ParseLine(std::string_view raw) {
    Line line{std::string(raw), {}, {}, {}};
    const std::string_view content = TrimSpace(raw);
    if (content.empty() || content.front() == ';') return line;
    const std::size_t equals = content.find('=');
    if (equals == std::string_view::npos) return line;
    line.key = TrimSpace(content.substr(0, equals));
    line.foldedKey = FoldCase(line.key);
    line.value = WithoutQuotes(TrimSpace(content.substr(equals + 1)));
    return line;
}

IniDocument IniDocument::Parse(std::string_view bytes) {
    IniDocument document;
    const std::string text = DecodeText(bytes);
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find_first_of("\r\n");
        const std::string_view raw = rest.substr(0, end);
        if (end == std::string_view::npos) {
            rest = {};
        } else {
            rest.remove_prefix(rest.substr(end, 2) == "\r\n" ? end + 2 : end + 1);
        }
        const std::string_view content = TrimSpace(raw);
        const std::size_t bracket = content.find(']');
        if (!content.empty() && content.front() == '[' && bracket != std::string_view::npos) {
            const std::string_view name = TrimSpace(content.substr(1, bracket - 1));
            document.sections_.push_back({std::string(raw), std::string(name), FoldCase(name), {}});
        } else {
            document.sections_.back().lines.push_back(ParseLine(raw));
        }
    }
    return document;
}

const IniDocument::Section* IniDocument::findSection(std::string_view name) const {
    const std::string folded = FoldCase(TrimSpace(name));
    const auto found = std::ranges::find(sections_.begin() + 1, sections_.end(), folded, &Section::foldedName);
    return found == sections_.end() ? nullptr : &*found;
}

const IniDocument::Line* IniDocument::findLine(std::string_view section, std::string_view key) const {
    const Section* in = findSection(section);
    const std::string folded = FoldCase(TrimSpace(key));
    if (!in || folded.empty()) return nullptr;
    const auto found = std::ranges::find(in->lines, folded, &Line::foldedKey);
    return found == in->lines.end() ? nullptr : &*found;
}

std::optional<std::string> IniDocument::find(std::string_view section, std::string_view key) const {
    const Line* line = findLine(section, key);
    return line ? std::optional(line->value) : std::nullopt;
}

std::string IniDocument::text(std::string_view section, std::string_view key, std::string_view whenMissing) const {
    const Line* line = findLine(section, key);
    return line ? line->value : std::string(whenMissing);
}

std::int32_t IniDocument::integer(std::string_view section, std::string_view key, std::int32_t whenMissing) const {
    const Line* line = findLine(section, key);
    return line && !line->value.empty() ? ProfileInteger(line->value) : whenMissing;
}

void IniDocument::set(std::string_view section, std::string_view key, std::string_view value) {
    std::string written = OneLine(value);
    if (const Line* line = findLine(section, key)) {
        if (line->value == written) return;
        key = line->key;
    }
    const std::string name(TrimSpace(key));
    if (WithoutQuotes(TrimSpace(written)) != written) written = '"' + written + '"';
    Line fresh = ParseLine(name + "=" + written);
    if (fresh.foldedKey != FoldCase(name)) return;  // such a key could never be read back

    if (Line* line = const_cast<Line*>(findLine(section, key))) {
        *line = std::move(fresh);
        return;
    }
    auto* in = const_cast<Section*>(findSection(section));
    if (!in) {
        const std::string header(TrimSpace(section));
        sections_.push_back({"[" + header + "]", header, FoldCase(header), {}});
        in = &sections_.back();
    }
    // Blank lines at the end part this section from the next one and stay there.
    auto last =
        std::find_if(in->lines.rbegin(), in->lines.rend(), [](const Line& l) { return !TrimSpace(l.raw).empty(); });
    in->lines.insert(last.base(), std::move(fresh));
}

std::vector<std::string> IniDocument::sections() const {
    std::vector<std::string> names;
    for (auto section = sections_.begin() + 1; section != sections_.end(); ++section) names.push_back(section->name);
    return names;
}

std::vector<std::string> IniDocument::keys(std::string_view section) const {
    std::vector<std::string> names;
    if (const Section* in = findSection(section)) {
        for (const Line& line : in->lines) {
            if (!line.foldedKey.empty()) names.push_back(line.key);
        }
    }
    return names;
}

std::vector<IniDocument::Entry> IniDocument::entries() const {
    std::vector<Entry> all;
    int number = 0;
    for (const Section& section : sections_) {
        if (&section != &sections_.front()) all.push_back({++number, section.name, {}, true});
        for (const Line& line : section.lines) {
            ++number;
            const std::string_view content = TrimSpace(line.raw);
            if (!content.empty() && content.front() != ';') all.push_back({number, section.name, line.key, false});
        }
    }
    return all;
}

std::string IniDocument::serialise() const {
    std::string text;
    for (const Section& section : sections_) {
        if (&section != &sections_.front()) text.append(section.header).append("\r\n");
        for (const Line& line : section.lines) text.append(line.raw).append("\r\n");
    }
    return EncodeText(text);
}

std::int32_t ReadIniInt(const IniDocument& file, std::string_view section, std::string_view key,
                        std::int32_t whenMissing) {
    return file.integer(section, key, whenMissing);
}

std::string ReadIniString(const IniDocument& file, std::string_view section, std::string_view key,
                          std::string_view whenMissing) {
    const std::string text = file.text(section, key, whenMissing);
    return std::string(CutUtf16Units(std::string_view(text).substr(0, text.find('\0')), kLongestValue));
}

void WriteIniString(IniDocument& file, std::string_view section, std::string_view key, std::string_view value) {
    file.set(section, key, TrimBlanks(value));
}

}  // namespace quenlox
