// An MP3 encoder as a codec of Windows, for as long as the object lives and for this process alone: machines without
// one, and Wine, have none. It takes 44100 Hz in stereo at up to 128 kbit/s, and whole frames until the last piece.
#pragma once

#include <windows.h>

#include <mmreg.h>
#include <mmsystem.h>
#include <msacm.h>

namespace vbmp3::test {

class TestCodec {
  public:
    TestCodec();
    ~TestCodec();
    TestCodec(const TestCodec&) = delete;
    TestCodec& operator=(const TestCodec&) = delete;
    bool installed() const { return id_ != nullptr; }

  private:
    HACMDRIVERID id_ = nullptr;
};

}  // namespace vbmp3::test
