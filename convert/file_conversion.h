// One encode with gogo.dll on a thread of its own, so that no menu, message box or held title bar keeps it waiting.
// Made, asked and destroyed on the user-interface thread. Its thread touches the encoder and the report, nothing else,
// and owns what it needs: destroyed, this object waits for nothing, and a thread that hangs in the encoder is left
// behind.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "convert/conversion.h"

namespace quenlox {

class Gogo;
class WindowSystem;

class GogoEncode {
  public:
    struct Report {
        std::int64_t frame = 0;   // done so far
        std::int32_t frames = 0;  // of the whole file, 0 unknown
        bool begun = false;       // the encoder has been initialised
        bool over = false;        // the coder is closed and ended: another encode may begin
        bool finished = false;    // the file is complete and in its place; else cancelled or failed
        ConversionError error = ConversionError::GogoStart;  // when it failed
        LibraryError reason{};                               // of the operation that failed
    };

    // Begins. `reported` is called on the user-interface thread some times a second and at the end, as long as this
    // object lives. Without a thread for it the report is one of a failure.
    GogoEncode(std::shared_ptr<Gogo> gogo, ConversionJob job, const EncoderSettings& settings, WindowSystem& windows,
               std::function<void()> reported);
    ~GogoEncode();
    GogoEncode(const GogoEncode&) = delete;
    GogoEncode& operator=(const GogoEncode&) = delete;

    void cancel();  // after the frame under way; the last one is the end all the same
    Report report() const;
    bool waitUntilOver(std::chrono::milliseconds limit);  // false: it is not

  private:
    struct Shared;
    static void work(const std::shared_ptr<Shared>& self) noexcept;
    static void encode(const std::shared_ptr<Shared>& self, Report& report);
    static void publish(const std::shared_ptr<Shared>& self, const Report& report) noexcept;

    std::shared_ptr<Shared> shared_;
};

}  // namespace quenlox
