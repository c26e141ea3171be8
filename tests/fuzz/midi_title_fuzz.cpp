#include <cstdint>
#include <cstdlib>

#include "text/midi_text.h"
#include "text/encoding.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!quenlox::IsValidUtf8(quenlox::MidiTitle({reinterpret_cast<const char*>(data), size}))) std::abort();
    return 0;
}
