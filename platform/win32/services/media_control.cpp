#include "platform/media_control.h"

#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

#include <mmsystem.h>

namespace quenlox::win32 {
namespace {

constexpr UINT kReplyLength = 1024;

class MediaControlWin32 : public MediaControl {
  public:
    int sendString(const std::string& command, std::string* reply) override {
        wchar_t text[kReplyLength] = {};
        const auto error = static_cast<int>(mciSendStringW(Wide(command).c_str(), text, kReplyLength - 1, nullptr));
        if (reply) *reply = Narrow(text);
        return error;
    }
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<MediaControl> MakeMediaControl() { return std::make_unique<win32::MediaControlWin32>(); }

}  // namespace quenlox
