// The line protocol between the end-to-end tests and this driver: one request per line, fields separated by tabs,
// UTF-8. An answer is a line "ok" or "error<TAB>text", then its rows, then a line with a single full stop. Backslash,
// tab and line ends inside a field are written as \\ \t \r \n, a field that is a full stop as "\.". Window handles are
// decimal numbers.
#pragma once

#include <concepts>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace driver {

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

// A row of numbers, handles and texts.
inline std::string FieldOf(std::string text) { return text; }
inline std::string FieldOf(const void* handle) { return std::to_string(reinterpret_cast<intptr_t>(handle)); }
std::string FieldOf(std::integral auto number) { return std::to_string(number); }
template <class... Values>
Row RowOf(const Values&... values) {
    return {FieldOf(values)...};
}

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The fields of one request; a missing or malformed one throws Failure.
class Request {
  public:
    explicit Request(std::string_view line);

    const std::string& verb() const { return text(0); }
    size_t size() const { return fields_.size(); }
    const std::string& text(size_t index) const;
    int64_t number(size_t index) const;
    int64_t number(size_t index, int64_t otherwise) const { return index < size() ? number(index) : otherwise; }

  private:
    Row fields_;
};

std::string FormatAnswer(const Rows& rows);
std::string FormatFailure(const std::string& text);

std::string ToUtf8(std::wstring_view text);
std::wstring ToWide(std::string_view text);

}  // namespace driver
