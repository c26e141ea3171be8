// gogo.dll behind the program's own interface. Texts go to it in UTF-8.

#include "platform/gogo.h"
#include "platform/win32/platform.h"
#include "platform/win32/services/library.h"

namespace quenlox::win32 {
namespace {

constexpr int kNoLibrary = -1;

class GogoLibrary : public Gogo {
  public:
    explicit GogoLibrary(const std::string& folder) : library_(folder, "gogo.dll") {
        library_.resolve(getUnitStates_, "MPGE_getUnitStatesVB");
        library_.resolve(initializeWork_, "MPGE_initializeWorkVB");
        library_.resolve(setConfigure_, "MPGE_setConfigureVB");
        library_.resolve(detectConfigure_, "MPGE_detectConfigureVB");
        library_.resolve(getConfigure_, "MPGE_getConfigureVB");
        library_.resolve(processFrame_, "MPGE_processFrameVB");
        library_.resolve(closeCoder_, "MPGE_closeCoderVB");
        library_.resolve(endCoder_, "MPGE_endCoderVB");
        complete_ = library_.complete();
        library_.resolve(getVersion_, "MPGE_getVersionVB");  // for the eye only; its lack does no harm
    }

    bool available() override {
        std::int32_t state = 0;
        return MPGE_getUnitStatesVB(state) == 0;
    }
    int MPGE_getUnitStatesVB(std::int32_t& state) override { return complete_ ? getUnitStates_(&state) : kNoLibrary; }
    int MPGE_initializeWorkVB() override { return complete_ ? initializeWork_() : kNoLibrary; }
    int MPGE_setConfigureVB(std::int32_t item, std::int32_t value, const std::string& text) override {
        return complete_ ? setConfigure_(item, value, text.c_str()) : kNoLibrary;
    }
    int MPGE_detectConfigureVB() override { return complete_ ? detectConfigure_() : kNoLibrary; }
    int MPGE_getConfigureVB(std::int32_t item, std::int32_t& value) override {
        return complete_ ? getConfigure_(item, &value) : kNoLibrary;
    }
    int MPGE_processFrameVB() override { return complete_ ? processFrame_() : kNoLibrary; }
    int MPGE_closeCoderVB() override { return complete_ ? closeCoder_() : kNoLibrary; }
    int MPGE_endCoderVB() override { return complete_ ? endCoder_() : kNoLibrary; }
    std::string version() override {
        if (!complete_ || !getVersion_) return {};
        char text[64] = {};
        getVersion_(text, sizeof text);
        return {text, strnlen(text, sizeof text)};
    }

  private:
    Library library_;
    bool complete_ = false;
    decltype(::MPGE_getUnitStatesVB)* getUnitStates_ = nullptr;
    decltype(::MPGE_initializeWorkVB)* initializeWork_ = nullptr;
    decltype(::MPGE_setConfigureVB)* setConfigure_ = nullptr;
    decltype(::MPGE_detectConfigureVB)* detectConfigure_ = nullptr;
    decltype(::MPGE_getConfigureVB)* getConfigure_ = nullptr;
    decltype(::MPGE_processFrameVB)* processFrame_ = nullptr;
    decltype(::MPGE_closeCoderVB)* closeCoder_ = nullptr;
    decltype(::MPGE_endCoderVB)* endCoder_ = nullptr;
    decltype(::MPGE_getVersionVB)* getVersion_ = nullptr;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<Gogo> LoadGogo(const std::string& folder) { return std::make_unique<win32::GogoLibrary>(folder); }

}  // namespace quenlox
