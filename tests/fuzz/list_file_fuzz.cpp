// List files and M3U files of any content: what is read can be written and reads back the same.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "playlist/list_file.h"
#include "text/encoding.h"

using namespace quenlox;

namespace {

using Rows = std::vector<std::pair<int, std::string>>;

Rows ReadLists(std::string_view bytes, const CodePage& codePage = {}) {
    Rows rows;
    ParseListFile(
        bytes,
        [&](int list, std::string_view path) {
            if (list < 0 || list > 2 || path.empty()) std::abort();
            rows.emplace_back(list, path);
        },
        codePage);
    std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const Rows rows = ReadLists(bytes);
    ListText written;
    int list = -1;
    for (const auto& [number, path] : rows) {
        if (number != list) written.beginList(list = number);
        written.append(path);
    }
    const CodePage western = [](std::string_view text) { return std::optional(Latin1ToUtf8(text)); };
    if (ReadLists(written.bytes()) != rows || ReadLists(written.bytes(western), western) != rows) std::abort();

    ParseM3U(bytes, "C:\\Music\\", [&](std::string_view path) {
        const bool relative = path.starts_with("C:\\Music\\");
        if (path.find_first_of("\r\n/") != std::string_view::npos) std::abort();
        if (!relative && path[1] != ':' && !path.starts_with("\\\\")) std::abort();
    });
    return 0;
}
