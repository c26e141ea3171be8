#include "tools/wine_driver/protocol.h"

#include <windows.h>

#include <cstdlib>

namespace driver {
namespace {

std::string Escaped(std::string_view field) {
    if (field == ".") return "\\.";  // alone on a line it would end the answer
    std::string out;
    for (const char c : field) {
        const size_t special = std::string_view("\\\t\r\n").find(c);
        if (special == std::string_view::npos) {
            out += c;
        } else {
            out += {'\\', "\\trn"[special]};
        }
    }
    return out;
}

}  // namespace

Request::Request(std::string_view line) {
    fields_.emplace_back();
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '\t') {
            fields_.emplace_back();
        } else if (c == '\\' && i + 1 < line.size()) {
            const char escaped = line[++i];
            fields_.back() += escaped == 't' ? '\t' : escaped == 'r' ? '\r' : escaped == 'n' ? '\n' : escaped;
        } else if (c != '\r' && c != '\n') {
            fields_.back() += c;
        }
    }
}

const std::string& Request::text(size_t index) const {
    if (index >= fields_.size()) throw Failure("too few fields for " + fields_[0]);
    return fields_[index];
}

int64_t Request::number(size_t index) const {
    const std::string& field = text(index);
    char* end = nullptr;
    const int64_t value = std::strtoll(field.c_str(), &end, 0);
    if (field.empty() || *end) throw Failure("not a number: " + field);
    return value;
}

std::string FormatAnswer(const Rows& rows) {
    std::string out = "ok\n";
    for (const Row& row : rows) {
        for (const std::string& field : row) out += Escaped(field) + '\t';
        out.back() = '\n';
    }
    return out + ".\n";
}

std::string FormatFailure(const std::string& text) { return "error\t" + Escaped(text) + "\n.\n"; }

std::string ToUtf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    std::string out(WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, out.data(), static_cast<int>(out.size()), nullptr, nullptr);
    return out;
}

std::wstring ToWide(std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring out(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, out.data(), static_cast<int>(out.size()));
    return out;
}

}  // namespace driver
