#include "playlist/add_job.h"

#include <utility>

#include "platform/file_system.h"
#include "playlist/playlists.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

using Clock = std::chrono::steady_clock;

// How long a folder is listed before messages are handled in between.
constexpr std::chrono::milliseconds kBreath{80};

}  // namespace

bool IsM3U(const std::string& path) {
    return FoldCase(LastCharacters(path, 3)) == "m3u" || FoldCase(LastCharacters(path, 5)) == ".m3u8";
}

AddJob::AddJob(Playlists& lists, FileSystem& files, std::function<void()> breathe)
    : lists_(lists), files_(files), breathe_(std::move(breathe)) {}

void AddJob::push(Item item) {
    touched_.insert(item.list);
    items_.push_back(std::move(item));
}

void AddJob::addPath(const std::string& path, int list) { push({Kind::Path, path, {}, list}); }

void AddJob::addFile(const std::string& path, int list) { push({Kind::File, path, {}, list}); }

void AddJob::addM3U(const std::string& folder, const std::string& name, int list) {
    push({Kind::M3U, folder, name, list});
}

void AddJob::perform(const Item& item) {
    if (item.kind == Kind::M3U) {
        lists_.ImportM3U(item.path, item.name, item.list);
    } else if (item.kind == Kind::File) {
        lists_.AddEntry(item.path, item.list);
    } else if (files_.folderExists(item.path)) {
        Clock::time_point breath = Clock::now() + kBreath;
        lists_.AddFolder(item.path, item.list, [&] {
            if (Clock::now() >= breath) {
                breathe_();
                breath = Clock::now() + kBreath;
            }
            return !cancelled_;
        });
    } else if (IsM3U(item.path)) {
        lists_.ImportM3U(FolderOf(item.path), FileNameOf(item.path), item.list);
    } else {
        lists_.AddEntry(item.path, item.list);
    }
}

bool AddJob::step(std::chrono::microseconds budget) {
    if (inStep_) return true;  // asked from within breathe
    const Clock::time_point end = Clock::now() + budget;
    inStep_ = true;
    {
        const Playlists::Batch batch(lists_);
        while (!items_.empty() && !cancelled_) {
            const Item item = std::move(items_.front());
            items_.pop_front();
            ++done_;
            perform(item);
            if (Clock::now() >= end) break;
        }
    }
    inStep_ = false;
    if (cancelled_) items_.clear();
    if (!items_.empty()) return true;
    finish();
    return false;
}

void AddJob::cancel() {
    if (!active()) return;
    cancelled_ = true;
    step({});
}

void AddJob::finish() {
    for (const int list : std::exchange(touched_, {})) lists_.BuildShuffleOrder(list);
    lists_.markChanged();
    done_ = 0;
    cancelled_ = false;
}

int AddJob::permille() const {
    const std::size_t all = done_ + items_.size();
    return all == 0 ? 0 : static_cast<int>(done_ * 1000 / all);
}

}  // namespace quenlox
