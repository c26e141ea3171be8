// Bytes taken for texts, and texts taken for file names: always UTF-8, and what is written is what is read.
#include <cstdint>
#include <cstdlib>

#include "playlist/name_estimate.h"
#include "text/encoding.h"
#include "text/format_file_name.h"

using namespace quenlox;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = DecodeText(bytes);
    if (!IsValidUtf8(text) || !IsValidUtf8(DecodeLegacyField(bytes))) std::abort();
    if (DecodeText(EncodeText(text)) != text || Utf16ToUtf8(Utf8ToUtf16(text)) != text) std::abort();
    if (const auto shiftJis = Utf8ToShiftJis(text); shiftJis && ShiftJisToUtf8(*shiftJis) != text) std::abort();
    for (std::size_t end = 0; end <= std::min<std::size_t>(text.size(), 64); ++end) {
        const std::string_view cut = CutUtf8(text, end);
        if (!IsValidUtf8(cut) || cut.size() > end || cut.size() + 3 < std::min(end, text.size())) std::abort();
    }
    const std::string format = text.substr(0, text.find('\n')),
                      name = text.substr(std::min(format.size() + 1, text.size()));
    if (const auto estimate = EstimateFromFileName(name, format)) {
        const auto& [title, artist, album] = *estimate;
        if (title.size() + artist.size() + album.size() > name.size()) std::abort();
        if (!IsValidUtf8(title + artist + album + FormatFileName(format, title, artist, album, name))) std::abort();
    }
    return 0;
}
