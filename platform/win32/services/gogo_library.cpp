// gogo.dll behind the program's own interface. Texts go to it in UTF-8.
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "libraries/gogo/gogo.h"
#include "platform/gogo.h"
#include "platform/win32/platform.h"
#include "platform/win32/services/library.h"

namespace quenlox::win32 {
namespace {

constexpr std::array<std::pair<int, LibraryError>, 9> kErrors{{{GOGO_OK, LibraryError::None},
                                                               {GOGO_ERROR_STATE, LibraryError::NotInitialised},
                                                               {GOGO_ERROR_ARGUMENT, LibraryError::Argument},
                                                               {GOGO_ERROR_SOURCE, LibraryError::NotFound},
                                                               {GOGO_ERROR_FORMAT, LibraryError::NotWave},
                                                               {GOGO_ERROR_DESTINATION, LibraryError::Write},
                                                               {GOGO_ERROR_SAME_FILE, LibraryError::SameFile},
                                                               {GOGO_ERROR_MEMORY, LibraryError::Memory},
                                                               {GOGO_ERROR_ENCODER, LibraryError::Settings}}};

LibraryError ErrorOf(int result) {
    const auto found = std::ranges::find(kErrors, result, &std::pair<int, LibraryError>::first);
    return found == kErrors.end() ? LibraryError::Other : found->second;
}

class GogoLibrary : public Gogo {
  public:
    explicit GogoLibrary(const std::string& folder) : library_(folder, "gogo.dll") {
#define QUENLOX_RESOLVE(name) library_.resolve(dll_.name, #name);
        GOGO_FUNCTIONS(QUENLOX_RESOLVE)
#undef QUENLOX_RESOLVE
        there_ = library_.complete();
    }

    bool available() override { return MPGE_getUnitStatesVB() > 0; }
    std::string version() override {
        char text[64] = {};
        return there_ && dll_.MPGE_getVersionVB(text, sizeof text) == GOGO_OK ? text : "";
    }
    int MPGE_getUnitStatesVB() override {
        std::int32_t cores = 0;
        return there_ && dll_.MPGE_getUnitStatesVB(&cores) == GOGO_OK ? cores : 0;
    }
    LibraryError MPGE_initializeWorkVB() override { return ErrorOf(there_ ? dll_.MPGE_initializeWorkVB() : kAbsent); }
    LibraryError MPGE_setConfigureVB(GogoItem item, std::int32_t value) override { return set(item, value, ""); }
    LibraryError MPGE_setConfigureVB(GogoItem item, const std::string& text) override { return set(item, 0, text); }
    LibraryError MPGE_detectConfigureVB() override { return ErrorOf(there_ ? dll_.MPGE_detectConfigureVB() : kAbsent); }
    std::optional<std::int32_t> MPGE_getConfigureVB(GogoItem item) override {
        std::int32_t value = 0;
        const bool known = there_ && dll_.MPGE_getConfigureVB(static_cast<std::int32_t>(item), &value) == GOGO_OK;
        return known ? std::optional(value) : std::nullopt;
    }
    GogoFrame MPGE_processFrameVB() override {
        const int result = there_ ? dll_.MPGE_processFrameVB() : kAbsent;
        if (result == GOGO_FINISHED) return {true};
        return {false, ErrorOf(result)};
    }
    void MPGE_closeCoderVB() override {
        if (there_) dll_.MPGE_closeCoderVB();
    }
    void MPGE_endCoderVB() override {
        if (there_) dll_.MPGE_endCoderVB();
    }

  private:
    static constexpr int kAbsent = GOGO_ERROR_STATE;

    LibraryError set(GogoItem item, std::int32_t value, const std::string& text) {
        if (!there_) return ErrorOf(kAbsent);
        return ErrorOf(dll_.MPGE_setConfigureVB(static_cast<std::int32_t>(item), value, text.c_str()));
    }

    // What the library exports, with the types and the names of its header.
    struct Exports {
#define QUENLOX_POINTER(name) decltype(::name)* name = nullptr;
        GOGO_FUNCTIONS(QUENLOX_POINTER)
#undef QUENLOX_POINTER
    };

    Library library_;
    Exports dll_;
    bool there_ = false;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<Gogo> LoadGogo(const std::string& folder) { return std::make_unique<win32::GogoLibrary>(folder); }

}  // namespace quenlox
