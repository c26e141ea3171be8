#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "text/format_file_name.h"

using namespace quenlox;

// The first line is a format, the rest a name: the fields are parts of the name that do not overlap.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t border = std::min(input.find('\n'), size);
    const std::string_view format = input.substr(0, border), name = input.substr(border);
    const auto fields = FieldsOfFileName(name, format);
    if (!fields) return 0;
    std::size_t length = 0;
    for (const std::string_view field : *fields) {
        if (!field.empty() && (field.data() < name.data() || field.data() + field.size() > name.data() + name.size()))
            std::abort();
        length += field.size();
    }
    if (length > name.size()) std::abort();
    return 0;
}
