#include "playlist/add_job.h"

#include <utility>

#include "platform/file_system.h"
#include "playlist/playlists.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// Links make folders that hold themselves.
constexpr int kDeepestTree = 32;

std::string Quoted(const std::string& path) { return "「" + FileNameOf(path) + "」"; }

}  // namespace

// The names of a folder; those of the folders in it are also kept.
class AddJob::Tree : public FolderReader {
  public:
    Tree(std::unique_ptr<FolderReader> names, std::vector<std::string>& folders)
        : names_(std::move(names)), folders_(folders) {}
    bool next(std::string& name, bool& isFolder) override {
        if (!names_->next(name, isFolder)) return false;
        if (isFolder) folders_.push_back(name);
        return true;
    }

  private:
    std::unique_ptr<FolderReader> names_;
    std::vector<std::string>& folders_;
};

bool IsM3U(const std::string& path) {
    return FoldCase(LastCharacters(path, 3)) == "m3u" || FoldCase(LastCharacters(path, 5)) == ".m3u8";
}

AddJob::AddJob(Playlists& lists, FileSystem& files) : lists_(lists), files_(files) {}

AddJob::~AddJob() = default;

void AddJob::push(Item item) {
    touched_.insert(item.list);
    items_.push_back(std::move(item));
}

void AddJob::addPath(const std::string& path, int list) { push({Kind::Path, path, {}, list}); }

void AddJob::addFile(const std::string& path, int list) { push({Kind::File, path, {}, list}); }

void AddJob::addM3U(const std::string& folder, const std::string& name, int list) {
    push({Kind::M3U, folder, name, list});
}

void AddJob::addTree(const std::string& folder, int list) { push({Kind::Tree, folder, {}, list}); }

// True while there is more of the folder.
bool AddJob::readFolder(const Item& item, const std::function<bool()>& keepGoing) {
    if (!folder_) {
        inside_.clear();
        folder_ = std::make_unique<Tree>(files_.readFolder(item.path), inside_);
        rowsBefore_ = rows();
    }
    if (lists_.AddFolder(item.path, *folder_, item.list, keepGoing)) return true;
    folder_.reset();
    if (item.kind == Kind::Tree && item.depth < kDeepestTree) {
        // Behind the first item, which is this one.
        std::vector<Item> inside;
        for (const std::string& name : inside_)
            inside.push_back({Kind::Tree, JoinPath(item.path, name), {}, item.list, item.depth + 1});
        items_.insert(items_.begin() + 1, inside.begin(), inside.end());
    } else if (item.kind == Kind::Path && rows() == rowsBefore_) {
        trouble_ = Quoted(item.path) + (inside_.empty() ? "に再生できるファイルはありません"
                                                        : "の直下に再生できるファイルはありません。下の階層はメニューの"
                                                          "［リスト］→［フォルダを下の階層ごと追加］で追加できます");
    }
    return false;
}

// True while the user is to be asked first.
bool AddJob::importM3U(const std::string& folder, const std::string& name, int list) {
    question_ = lists_.ServersOfM3U(folder, name);
    std::erase_if(question_, [&](const auto& server) { return agreed_.contains(server) || refused_.contains(server); });
    if (!question_.empty()) return true;
    const bool read = lists_.ImportM3U(folder, name, list, [&, own = ServerOf(folder)](std::string_view path) {
        const std::string server = ServerOf(path);
        return server.empty() || server == own || agreed_.contains(server);
    });
    if (!read) trouble_ = Quoted(name) + "を読み込めません";
    return false;
}

void AddJob::answer(bool agreed) { (agreed ? agreed_ : refused_).merge(std::exchange(question_, {})); }

// True while there is more of the item.
bool AddJob::perform(const Item& item, const std::function<bool()>& keepGoing) {
    if (item.kind == Kind::M3U) {
        return importM3U(item.path, item.name, item.list);
    } else if (item.kind == Kind::File) {
        lists_.AddEntry(item.path, item.list);
    } else if (folder_ || item.kind == Kind::Tree || files_.folderExists(item.path)) {
        return readFolder(item, keepGoing);
    } else if (IsM3U(item.path)) {
        return importM3U(FolderOf(item.path), FileNameOf(item.path), item.list);
    } else {
        lists_.AddEntry(item.path, item.list);
    }
    return false;
}

bool AddJob::step(std::chrono::microseconds budget) {
    if (!question_.empty()) return true;
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + budget;
    const auto timeLeft = [end] { return Clock::now() < end; };
    const int rowsBefore = rows();
    {
        const Playlists::Batch batch(lists_);
        lists_.goOnWith(step_);
        while (!items_.empty() && !perform(items_.front(), timeLeft)) {
            items_.pop_front();
            ++done_;
            if (!timeLeft()) break;
        }
    }
    // Whatever ends the program before all is added writes what is there by then.
    if (rows() != rowsBefore) lists_.markChanged();
    if (active()) return true;
    finish();
    return false;
}

int AddJob::rows() const {
    int rows = 0;
    for (int list = 0; list < Playlists::kPersistedLists; ++list) rows += lists_.count(list);
    return rows;
}

void AddJob::cancel() {
    if (!active()) return;
    items_.clear();
    question_.clear();
    folder_.reset();
    finish();
}

void AddJob::finish() {
    for (const int list : std::exchange(touched_, {})) lists_.BuildShuffleOrder(list);
    lists_.markChanged();
    refused_.clear();
    done_ = 0;
}

std::optional<int> AddJob::permille() const {
    const std::size_t all = done_ + items_.size();
    if (all == 1 && folder_) return std::nullopt;
    return all == 0 ? 0 : static_cast<int>(done_ * 1000 / all);
}

}  // namespace quenlox
