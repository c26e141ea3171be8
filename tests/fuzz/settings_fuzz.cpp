// The settings file and the command line, which stands behind a NUL: the whole program starts with them and ends. Every
// number is in its range, and what the end has written is what the next run writes too.
#include <cstdint>
#include <cstdlib>

#include "state/option_table.h"
#include "tests/fakes/fake_services.h"

using namespace quenlox;

namespace {

constexpr const char* kFile = "C:\\Quenlox\\Quenlox.ini";

// The settings that a run leaves which began with `settings`.
std::string SavedBy(const std::string& settings, const std::string& commandLine) {
    FakeServices services;
    services.files.add(kFile, settings);
    services.vbmp3.addFile("C:\\a.mp3");
    Application run(services.all(), commandLine);
    run.load();
    for (const OptionRow& row : OptionRows()) {
        const auto* field = std::get_if<std::int32_t Options::*>(&row.field);
        if (field && run.options().**field != std::clamp(run.options().**field, row.minimum, row.maximum)) std::abort();
    }
    if (run.state().PlayMode < kSingle || run.state().PlayMode > kRandom) std::abort();
    for (int tick = 0; tick < 3; ++tick) run.top().Timer1.onTimer();
    run.top().unload();
    return services.files.bytesOf(kFile);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size), settings = input.substr(0, input.find('\0'));
    // A path that is longer than what is read of a value is cut by the first reading.
    const std::string saved = SavedBy(SavedBy(settings, input.substr(std::min(settings.size() + 1, size))), "");
    if (saved.empty() || SavedBy(saved, "") != saved) std::abort();
    return 0;
}
