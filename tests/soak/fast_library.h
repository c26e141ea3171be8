// The decoding library on a clock that runs many times as fast as the wall's, behind the program's own interface. Paths
// below C:\soak\ are files of a real folder. What the soak has no use for is that of the fake.
#pragma once

#include <algorithm>
#include <string>

#include "libraries/vbmp3/dsp/sound_settings.h"
#include "libraries/vbmp3/player/player.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {

inline constexpr std::string_view kSoakFolder = "C:\\soak\\";

class FastLibrary : public FakeVbmp3 {
  public:
    FastLibrary(std::string folder, double speed)
        : folder_(std::move(folder)), player_(sound_, {[speed] { return vbmp3::makeClockOutput(speed); }, [] { return 0; }}) {
        // The thread that fills the output wakes every 20 ms: at a hundredfold speed that is two seconds of sound.
        player_.setOutput({-1, 2000});
    }
    ~FastLibrary() override { player_.setListener(nullptr); }

    double heardSeconds() { return static_cast<double>(player_.snapshot().outputFrame) / 44100; }
    void forgetCalls() { calls.clear(); }

    int vbmp3_getLastErrorNo() override { return error_; }
    int vbmp3_getFileType(const std::string& path) override { return ::vbmp3_getFileType(host(path).c_str()); }
    bool vbmp3_getFileInfo(const std::string& path, vbmp3_FileInfo& info) override {
        info = {};
        info.size = sizeof info;
        return ::vbmp3_getFileInfo(host(path).c_str(), &info) != 0;
    }
    bool vbmp3_open(const std::string& path, vbmp3_FileInfo& info) override {
        return done(player_.open(host(path))) && (vbmp3_getFileInfo(path, info), true);
    }
    void vbmp3_close() override { player_.close(); }
    bool vbmp3_play() override { return done(player_.play()); }
    void vbmp3_stop() override { player_.stop(); }
    void vbmp3_pause() override { player_.pause(); }
    void vbmp3_restart() override { player_.restart(); }
    void vbmp3_seek(double to) override { player_.seek(to); }
    int vbmp3_getState(std::int32_t& at) override {
        const auto snapshot = player_.snapshot();
        at = static_cast<std::int32_t>(std::min(snapshot.seconds, 2e9));
        return snapshot.state;
    }
    std::int64_t vbmp3_getPositionMs() override { return static_cast<std::int64_t>(player_.snapshot().seconds * 1000); }
    bool vbmp3_setNextFile(const std::string& path) override { return done(player_.setNext(path.empty() ? "" : host(path))); }
    void vbmp3_setListener(std::function<void(int)> heard) override { player_.setListener(std::move(heard)); }
    bool vbmp3_setOutput(int, int) override { return true; }
    bool vbmp3_hasOutputDevice() override { return player_.hasDevice(); }

  private:
    std::string host(const std::string& path) const {
        return path.starts_with(kSoakFolder) ? folder_ + "/" + path.substr(kSoakFolder.size()) : path;
    }
    bool done(int number) {
        error_ = number;
        return number == VBMP3_OK;
    }

    std::string folder_;
    vbmp3::SoundSettings sound_;
    vbmp3::Player player_;
    int error_ = VBMP3_OK;
};

}  // namespace quenlox
