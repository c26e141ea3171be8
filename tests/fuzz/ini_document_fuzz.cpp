#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "text/ini_document.h"

using quenlox::IniDocument;

// Whatever a file holds, what is set reads back, and writing it out and reading it again changes no value.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    IniDocument file = IniDocument::Parse({reinterpret_cast<const char*>(data), size});
    const IniDocument again = IniDocument::Parse(file.serialise());
    for (const std::string& section : file.sections()) {
        for (const std::string& key : file.keys(section)) {
            const auto value = file.find(section, key);
            if (value != again.find(section, key)) std::abort();
            IniDocument other;
            other.set("S", "K", *value);
            other.set("S", "L", "after");
            other = IniDocument::Parse(other.serialise());
            if (other.find("s", "k") != value->substr(0, value->find('\0')) || other.find("s", "l") != "after")
                std::abort();
        }
    }
    file.set("Main", "X", "1");
    if (IniDocument::Parse(file.serialise()).integer("Main", "X", 0) != 1) std::abort();
    return 0;
}
