// A private-profile (INI) file as Windows understands it, held in memory: read once, asked and changed by section and
// key, written once. Order, comments, blank lines and unknown keys are kept. Names compare without case; of sections
// and keys that stand twice the first counts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

class IniDocument {
  public:
    IniDocument() = default;
    // Any bytes: Shift-JIS, UTF-8, or with the byte-order mark of UTF-8 or UTF-16.
    static IniDocument Parse(std::string_view bytes);

    // The value without the blanks around it and without one pair of quotes around the whole, inside which blanks stay.
    // Nothing when the key is missing.
    std::optional<std::string> find(std::string_view section, std::string_view key) const;
    std::string text(std::string_view section, std::string_view key, std::string_view whenMissing) const;
    // An empty value counts as missing.
    std::int32_t integer(std::string_view section, std::string_view key, std::int32_t whenMissing) const;

    // Changes a key in its place; a new one goes behind the last key of its section, a new section to the end. A value
    // that reading would alter (blanks or quotes at both ends) is put into quotes; line breaks become blanks.
    void set(std::string_view section, std::string_view key, std::string_view value);

    std::vector<std::string> sections() const;
    std::vector<std::string> keys(std::string_view section) const;

    // Every line that is neither blank nor a comment, in order. Of one that begins a section, and of one that is no key,
    // `key` is empty.
    struct Entry {
        int line;  // from 1
        std::string section, key;
        bool header;
    };
    std::vector<Entry> entries() const;

    // Lines end with CR LF. Shift-JIS, and UTF-16LE with its mark when a character does not fit that: the wide profile
    // calls of Windows read both.
    std::string serialise() const;

  private:
    struct Line {
        std::string raw;
        std::string foldedKey;  // empty for a line that is no key
        std::string key;
        std::string value;
    };
    struct Section {
        std::string header;  // the line as written; the lines before the first section have none
        std::string name;
        std::string foldedName;
        std::vector<Line> lines;
    };

    static Line ParseLine(std::string_view raw);
    const Section* findSection(std::string_view name) const;
    const Line* findLine(std::string_view section, std::string_view key) const;

    std::vector<Section> sections_{Section{}};  // the first holds what stands before every header
};

// How settings and skins read and write their values.
std::int32_t ReadIniInt(const IniDocument& file, std::string_view section, std::string_view key,
                        std::int32_t whenMissing);
// At most 127 characters, counted in UTF-16 units; a character of two units is left out when only half of it fits.
std::string ReadIniString(const IniDocument& file, std::string_view section, std::string_view key,
                          std::string_view whenMissing);
// The value loses the blanks at both ends.
void WriteIniString(IniDocument& file, std::string_view section, std::string_view key, std::string_view value);

}  // namespace quenlox
