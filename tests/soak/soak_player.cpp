// The whole program on the fakes of the platform, with the real decoding library on a fast clock.
//
//     soak_player hours FOLDER HOURS    plays the files of a folder for so many hours of sound, in every play mode
//     soak_player folder FOLDER         adds a folder of any files through the list window and plays each of them
//
// Prints one line of JSON. Ends with 1 and a text when something that must hold does not, or when nothing moves for 20
// s.
#include <dirent.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <unordered_set>

#include "app/application.h"
#include "libraries/vbmp3/vbmp3.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_gogo.h"
#include "tests/fakes/fake_media_control.h"
#include "tests/fakes/fake_mixer.h"
#include "tests/fakes/fake_output_devices.h"
#include "tests/fakes/fake_shell.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_window_system.h"
#include "tests/soak/fast_library.h"

namespace quenlox {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration;
using std::chrono::milliseconds;

constexpr double kSpeed = 100;
constexpr milliseconds kHang{20'000};
constexpr int kMediaNext = 11;

double Seconds(Clock::duration d) { return duration<double>(d).count(); }

[[noreturn]] void Fail(const std::string& what) {
    std::printf("FAILED: %s\n", what.c_str());
    std::fflush(stdout);
    std::_Exit(1);
}

int EntriesOf(const char* folder) {
    int count = 0;
    if (DIR* dir = opendir(folder)) {
        while (readdir(dir)) ++count;
        closedir(dir);
    }
    return count;
}

long ResidentKiB() {
    std::ifstream file("/proc/self/statm");
    long size = 0, resident = 0;
    file >> size >> resident;
    return resident * 4;
}

// Tasks are posted by threads of the library; what the hosts note of changes is thrown away now and then.
class SoakWindows : public FakeWindowSystem {
  public:
    void post(std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        FakeWindowSystem::post(std::move(task));
    }
    void pumpMessages() override {
        for (;;) {
            std::function<void()> task;
            {
                const std::lock_guard lock(mutex_);
                if (tasks.empty()) return;
                task = std::move(tasks.front());
                tasks.pop_front();
            }
            task();
        }
    }
    void forget() {
        for (auto& [form, host] : hosts) {
            host->formChanges.clear();
            host->controlChanges.clear();
            host->invalidated.clear();
            host->regions.clear();
        }
    }
    template <class T>
    T* form() const {
        for (const auto& [form, host] : hosts) {
            if (auto* found = dynamic_cast<T*>(const_cast<Form*>(static_cast<const Form*>(form)))) return found;
        }
        return nullptr;
    }

  private:
    std::mutex mutex_;
};

// Looks a name up in no time where there are ten thousand.
class SoakFiles : public FakeFileSystem {
  public:
    bool fileExists(const std::string& path) override {
        return path.starts_with(kSoakFolder) ? known.contains(path) : FakeFileSystem::fileExists(path);
    }
    std::unordered_set<std::string> known;
};

struct Soak {
    std::string folder;
    std::vector<std::string> names;
    SoakWindows windows;
    FakeTextPainter painter;
    FakeDialogs dialogs;
    SoakFiles files;
    FakeMediaControl mci;
    FakeMixer mixer;
    FakeShell shell;
    FastLibrary library;
    std::shared_ptr<FakeGogo> gogo = std::make_shared<FakeGogo>();
    SeededRandom random{7};
    FakeOutputDevices devices;
    std::unique_ptr<Application> application;
    std::map<const Timer*, Clock::time_point> due;

    explicit Soak(std::string at) : folder(std::move(at)), library(folder, kSpeed) {
        files.add("C:\\Quenlox\\skin\\default\\default.tsk", "[Main]\nVer=4\nBox=1\nSize=100,50\n");
        files.add("C:\\Quenlox\\Quenlox.ini", "[List]\r\nShow=1\r\n[Option]\r\nListType=1\r\n");
        DIR* dir = opendir(folder.c_str());
        if (!dir) Fail("no folder " + folder);
        while (const dirent* entry = readdir(dir)) {
            struct stat status {};
            const std::string name = entry->d_name;
            if (stat((folder + "/" + name).c_str(), &status) == 0 && S_ISREG(status.st_mode)) names.push_back(name);
        }
        closedir(dir);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            files.all.push_back({std::string(kSoakFolder) + name, {}, false});
            files.known.insert(files.all.back().path);
        }
        application = std::make_unique<Application>(
            Services{windows, painter, dialogs, files, mci, mixer, shell, library, gogo, random, devices}, "");
        application->load();
        // The drawing is that of the unit tests; here it would only take the time of the sound.
        application->top().Timer2.setEnabled(false);
    }
    GlobalState& state() { return application->state(); }
    FormTop& top() { return application->top(); }

    // One turn of the messages: what was posted, and each timer whose time, on the fast clock, has come.
    void turn() {
        windows.pumpMessages();
        const Clock::time_point now = Clock::now();
        for (const auto& [form, host] : windows.hosts) {
            for (Control* control : form->controls()) {
                auto* timer = dynamic_cast<Timer*>(control);
                if (!timer || !timer->enabled() || !timer->onTimer) continue;
                Clock::time_point& at = due[timer];
                if (now < at) continue;
                at = now + std::chrono::microseconds(static_cast<int>(timer->interval() * 1000 / kSpeed));
                timer->onTimer();
            }
        }
        library.forgetCalls();
        mci.commands.clear();
        painter.drawn.clear();
        windows.forget();
        std::this_thread::sleep_for(milliseconds(1));
    }

    void fillList() {
        auto* list = windows.form<FormList>();
        if (!list) Fail("the list window is not there");
        list->PlayView_FilesDropped({std::string(kSoakFolder.substr(0, kSoakFolder.size() - 1))});
        const Clock::time_point limit = Clock::now() + std::chrono::minutes(30);
        while (list->busy() || list->Timer1.enabled()) {
            if (Clock::now() > limit) Fail("the list is not filled");
            list->Timer1_Timer();
        }
    }
};

int Hours(const std::string& folder, double hours) {
    Soak soak(folder);
    soak.fillList();
    const int count = static_cast<int>(soak.names.size());
    if (count < 3) Fail("too few files");
    std::mt19937 chance(11);
    const auto below = [&](int n) { return static_cast<int>(chance() % static_cast<unsigned>(n)); };
    const auto next = [&] { soak.top().Form_AppCommand(kMediaNext); };

    const Clock::time_point start = Clock::now();
    Clock::time_point moved = start;
    double heard = 0, last = 0;
    long residentWarm = 0, resident = 0;
    int filesWarm = 0, threadsWarm = 0, tracks = 0, orders = 0;
    double nextOrder = 60;
    std::string lastFile;
    std::map<std::string, int> played;
    next();
    for (double modeSince = 0; heard < hours * 3600;) {
        soak.turn();
        const double at = soak.library.heardSeconds();
        if (at > last) {
            heard += at - last;
            moved = Clock::now();
        }
        last = at;  // opening a track of another rate begins anew
        if (Clock::now() - moved > kHang) Fail("no sound moves; status " + std::to_string(soak.state().PlayerStatus));

        const GlobalState& state = soak.state();
        const int status = state.PlayerStatus;
        if (status != kPlay && status != kPause && !(status == kStop && state.PlayMode == kSingle))
            Fail("status " + std::to_string(status) + " in mode " + std::to_string(state.PlayMode) + ", " +
                 state.CurrentFile);
        const int index = state.CurrentIndex[0];
        if (index < 0 || index >= count) Fail("index " + std::to_string(index));
        if (state.CurrentFile != std::string(kSoakFolder) + soak.names[static_cast<std::size_t>(index)])
            Fail("row " + std::to_string(index) + " is not " + state.CurrentFile);
        if (state.PositionSeconds < 0 || state.PositionSeconds > state.TotalSeconds + 2)
            Fail("position " + std::to_string(state.PositionSeconds) + " of " + std::to_string(state.TotalSeconds));
        if (state.CurrentFile != lastFile) {
            ++tracks;
            ++played[state.CurrentFile];
            lastFile = state.CurrentFile;
        }
        if (status == kStop) next();
        if (heard - modeSince > 1800) {  // each mode for half an hour, in turn
            modeSince = heard;
            soak.top().PlayModeLabel_Click(1);
        }
        if (heard > nextOrder) {  // what a user does now and then
            ++orders;
            nextOrder = heard + 30 + below(300);
            switch (below(5)) {
                case 0: next(); break;
                case 1: soak.top().Form_AppCommand(kMediaNext + 1); break;
                case 2:
                    soak.top().Form_AppCommand(14);
                    for (int i = 0; i < 20; ++i) soak.turn();
                    if (soak.state().PlayerStatus == kPause) soak.top().Form_AppCommand(14);
                    moved = Clock::now();
                    break;
                case 3: soak.library.vbmp3_seek(below(state.TotalSeconds + 1)); break;
                default: soak.top().TitleLabel_DblClick();
            }
        }
        if (residentWarm == 0 && heard > std::min(3600.0, hours * 900)) {
            residentWarm = ResidentKiB();
            filesWarm = EntriesOf("/proc/self/fd");
            threadsWarm = EntriesOf("/proc/self/task");
        }
    }
    resident = ResidentKiB();
    int least = tracks, most = 0;
    for (const auto& [path, times] : played) {
        least = std::min(least, times);
        most = std::max(most, times);
    }
    if (static_cast<int>(played.size()) != count) Fail("not every file was played");
    const int open = EntriesOf("/proc/self/fd"), threads = EntriesOf("/proc/self/task");
    std::printf(
        "{\"hours\": %.2f, \"minutes_of_wall\": %.1f, \"tracks\": %d, \"orders\": %d, \"least_often\": %d, "
        "\"most_often\": %d, "
        "\"resident_kib_warm\": %ld, \"resident_kib_at_end\": %ld, \"files_warm\": %d, \"files_at_end\": %d, "
        "\"threads_warm\": %d, \"threads_at_end\": %d}\n",
        heard / 3600, Seconds(Clock::now() - start) / 60, tracks, orders, least, most, residentWarm, resident,
        filesWarm, open, threadsWarm, threads);
    soak.top().unload();
    return open > filesWarm + 2 || threads > threadsWarm ? 1 : 0;
}

int Folder(const std::string& folder) {
    Soak soak(folder);
    const int count = static_cast<int>(soak.names.size());
    const long residentBefore = ResidentKiB();
    Clock::time_point start = Clock::now();
    soak.fillList();
    const double adding = Seconds(Clock::now() - start);
    const int openBefore = EntriesOf("/proc/self/fd");

    int sounding = 0, refused = 0;
    double slowestOpen = 0, slowestPlay = 0;
    std::string slowestFile;
    start = Clock::now();
    for (int i = 0; i < count; ++i) {
        const Clock::time_point begun = Clock::now();
        soak.top().Form_AppCommand(kMediaNext);
        const double opening = Seconds(Clock::now() - begun);
        if (opening > slowestOpen) {
            slowestOpen = opening;
            slowestFile = soak.state().CurrentFile;
        }
        soak.state().PlayerStatus == kPlay ? ++sounding : ++refused;
        if (soak.state().MediaKind.playedByMediaControl()) soak.top().Form_AppCommand(13);
        while (soak.state().PlayerStatus == kPlay) {
            soak.turn();
            if (Clock::now() - begun > kHang) Fail("does not end: " + soak.state().CurrentFile);
        }
        soak.turn();
        slowestPlay = std::max(slowestPlay, Seconds(Clock::now() - begun));
    }
    const double playing = Seconds(Clock::now() - start);
    const int open = EntriesOf("/proc/self/fd");
    std::printf(
        "{\"files\": %d, \"adding_s\": %.2f, \"adding_ms_per_file\": %.3f, \"playing_s\": %.1f, "
        "\"playing_ms_per_file\": %.2f, "
        "\"sounding\": %d, \"refused\": %d, \"slowest_open_ms\": %.1f, \"slowest_open\": \"%s\", \"slowest_file_ms\": "
        "%.1f, "
        "\"resident_kib_before\": %ld, \"resident_kib_after\": %ld, \"files_before\": %d, \"files_after\": %d}\n",
        count, adding, adding * 1000 / count, playing, playing * 1000 / count, sounding, refused, slowestOpen * 1000,
        FileNameOf(slowestFile).c_str(), slowestPlay * 1000, residentBefore, ResidentKiB(), openBefore, open);
    soak.top().unload();
    return open > openBefore + 2 ? 1 : 0;
}

}  // namespace
}  // namespace quenlox

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "hours" && argc == 4) return quenlox::Hours(argv[2], std::atof(argv[3]));
    if (what == "folder" && argc == 3) return quenlox::Folder(argv[2]);
    std::fprintf(stderr, "usage: soak_player hours FOLDER HOURS | folder FOLDER\n");
    return 2;
}
