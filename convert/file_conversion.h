// One file that is converted on a thread of its own, so that no menu, message box or held title bar keeps it waiting:
// an encode with gogo.dll, or a decode to WAVE. Several live side by side. Made, asked and destroyed on the
// user-interface thread. Its thread touches the libraries and the report, nothing else: destroyed, this object waits
// for nothing, and a thread that hangs in a file is left behind.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "convert/conversion.h"

namespace quenlox {

class Gogo;
class Vbmp3;
class WindowSystem;

class FileConversion {
  public:
    struct Report {
        double done = 0;        // 0 to 1
        bool begun = false;     // the encoder has been initialised
        bool over = false;      // nothing of it goes on
        bool encoded = false;   // what the encoder writes is complete and in its place
        bool finished = false;  // the file is complete and in its place; else cancelled or failed
        ConversionError error = ConversionError::Other;  // when it failed
        LibraryError reason{};                           // of the operation that failed
    };
    struct Task {
        Operation operation = Operation::Decode;  // Decode or Encode
        ConversionJob job;
        std::string encoded;  // where the encoder writes; when that is not the destination, it is wrapped as that
        EncoderSettings settings;
        int cores = 0;  // at most; 0 all of them
    };
    // Both must outlive the thread.
    struct Libraries {
        std::shared_ptr<Gogo> gogo;
        Vbmp3& vbmp3;
    };

    // Begins. `reported` is called on the user-interface thread some times a second and at the end, as long as this
    // object lives. Without a thread for it the report is one of a failure.
    FileConversion(const Libraries& libraries, Task task, WindowSystem& windows, std::function<void()> reported);
    ~FileConversion();
    FileConversion(const FileConversion&) = delete;
    FileConversion& operator=(const FileConversion&) = delete;

    void cancel();  // after the frame under way; the last one is the end all the same
    Report report() const;
    bool waitUntilOver(std::chrono::steady_clock::time_point limit);  // false: it is not

  private:
    struct Shared;
    static void work(const std::shared_ptr<Shared>& self) noexcept;
    static void encode(const std::shared_ptr<Shared>& self, Report& report);
    static void encodeFrames(const std::shared_ptr<Shared>& self, Report& report);
    static void decode(const std::shared_ptr<Shared>& self, Report& report);
    static void publish(const std::shared_ptr<Shared>& self, const Report& report) noexcept;

    std::shared_ptr<Shared> shared_;
};

}  // namespace quenlox
