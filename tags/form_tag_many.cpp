// The list of the tag editor: the files that are changed alike, one after another on another thread, and what takes
// that back.
#include <algorithm>
#include <memory>

#include "forms/keys.h"
#include "forms/window_host.h"
#include "platform/dialogs.h"
#include "playback/transport.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "tags/form_tag.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

// By TagAction.
constexpr const char* kActions[] = {"欄の内容を書き込む", "トラック番号を付ける", "大文字にする",  "小文字にする",
                                    "単語の頭を大文字に", "項目を入れ替える",     "ファイル名から"};
constexpr const char *kOtherField = "相手(&Q)", *kFirstNumber = "開始(&Q)", *kFormat = "書式(&Q)";
constexpr const char* kFormatTip =
    "*T タイトル、*N アーティスト、*B アルバム、*G ジャンル、*K トラック、*Y 年、*- 読み飛ばす";

}  // namespace

void FormTag::makeMany() {
    FileView.setCaption("まとめて書き換えるファイル");
    FileView.emptyText = "ファイルをドロップするか、\nプレイリストで曲を選んで\n取り込んでください";
    FileView.manySelected = false;
    FileView.setColumns({{"ファイル", 162}, {"結果", 100}});
    FileView.textOf = [this](int row, int column) {
        const auto at = static_cast<std::size_t>(row);
        return column == 0 ? FileNameOf(paths_[at]) : states_[at];
    };
    FileView.tipOf = [this](int row) { return paths_[static_cast<std::size_t>(row)]; };
    FileView.onSelectionChange = [this] { FileView_SelectionChange(); };
    FileView.onKeyDown = [this](int key, int) {
        const int row = FileView.focusedRow();
        if (key != kKeyDelete || working_ || !FileView.selected(row)) return;
        std::vector<std::string> left = paths_;
        left.erase(left.begin() + row);
        setFiles(std::move(left));
    };
    std::vector<ComboBox::Item> actions;
    for (const char* action : kActions) actions.push_back({action, static_cast<int>(actions.size())});
    LabelAction.setCaption("操作(&W)");
    ComboAction.setItems(std::move(actions));
    ComboAction.onClick = [this] { ComboAction_Click(); };
    ComboAction.setListIndex(0);
}

// What the chosen action needs beside the field.
void FormTag::ComboAction_Click() {
    const auto action = static_cast<TagAction>(ComboAction.listIndex());
    const bool swaps = action == TagAction::Swap, numbers = action == TagAction::Number;
    const bool named = action == TagAction::FromName, needed = swaps || numbers || named;
    std::vector<ComboBox::Item> items;
    if (swaps) items = ComboField.items();
    if (numbers) items = {{"1"}, {"01"}, {"1/"}};
    if (named) items = {{options_->RenameFormat}, {"*K *T"}, {"*K - *T"}, {"*N - *T"}, {"*N - *B - *K - *T"}};
    LabelWith.setCaption(swaps ? kOtherField : numbers ? kFirstNumber : kFormat);
    ComboWith.setTooltip(named ? kFormatTip : numbers ? "「1/」とすると、1/12のように曲数も付けます" : "");
    if (items != ComboWith.items()) {
        ComboWith.setItems(std::move(items));
        ComboWith.setText(swaps ? ComboField.items()[Artist].text : needed ? ComboWith.items().front().text : "");
    }
    LabelWith.setEnabled(needed);
    ComboWith.setEnabled(needed);
    LabelApply.setEnabled(!numbers && !named);
    ComboField.setEnabled(!numbers && !named);
}

// The files.

void FormTag::setFiles(std::vector<std::string> paths) {
    paths_.clear();
    for (std::string& path : paths) {
        const bool known = std::ranges::find(paths_, path) != paths_.end();
        if (!known) paths_.push_back(std::move(path));
    }
    states_.assign(paths_.size(), {});
    FileView.setRowCount(static_cast<int>(paths_.size()));
    FileView.refreshAll();
    showButtons();
}

void FormTag::takeSelected() {
    if (!working_ && hooks_.selectedPaths) setFiles(hooks_.selectedPaths());
}

// With what is selected in the play list, unless files have been dropped.
void FormTag::Form_Shown() {
    if (paths_.empty()) takeSelected();
}

void FormTag::Form_FilesDropped(const std::vector<std::string>& files, Point) {
    if (working_ || files.empty() || !mayLeave()) return;
    std::vector<std::string> sorted = files;
    std::ranges::sort(sorted, [](const auto& a, const auto& b) { return CompareNoCase(a, b) < 0; });
    setFiles(std::move(sorted));
    showFile(paths_.front());
}

// The file of the row is shown; the row of the shown file when the user wants to stay there.
void FormTag::FileView_SelectionChange() {
    const auto chosen = std::ranges::find(FileView.selection(), true) - FileView.selection().begin();
    if (showing_ || working_ || chosen == std::ssize(paths_)) return;
    const std::string path = paths_[static_cast<std::size_t>(chosen)];
    if (path != file_ && mayLeave()) return showFile(path);
    showPlace();
}

void FormTag::showPlace() {
    const auto at = std::ranges::find(paths_, file_) - paths_.begin();
    const bool inside = at < std::ssize(paths_);
    LabelPlace.setCaption((inside ? std::to_string(at + 1) : std::string("-")) + " / " + std::to_string(paths_.size()));
    showing_ = true;
    FileView.selectAll(false);
    if (inside) {
        FileView.setSelected(static_cast<int>(at), true);
        FileView.setFocusedRow(static_cast<int>(at));
        FileView.ensureVisible(static_cast<int>(at));
    }
    showing_ = false;
}

void FormTag::step(int by) {
    if (working_ || paths_.empty() || !mayLeave()) return showButtons();
    const auto count = static_cast<int>(paths_.size());
    const auto at = std::ranges::find(paths_, file_);
    int next = by > 0 ? 0 : count - 1;
    if (at != paths_.end()) next = (static_cast<int>(at - paths_.begin()) + by + count) % count;
    showFile(paths_[static_cast<std::size_t>(next)]);
}

// What is done with them.

TagChange FormTag::chosenChange() const {
    TagChange change;
    change.action = static_cast<TagAction>(std::max(ComboAction.listIndex(), 0));
    change.field = TextOfField(std::max(ComboField.listIndex(), 0));
    change.value = ComboWith.text();
    if (change.action == TagAction::SetField) change.value = fieldsShown().*change.field;
    for (const ComboBox::Item& item : ComboField.items()) {
        if (change.action == TagAction::Swap && item.text == change.value) change.other = TextOfField(item.data);
    }
    return change;
}

std::string FormTag::questionOf(const TagChange& change) const {
    const std::string files = std::to_string(paths_.size()) + "曲の", field = "「" + ComboField.text() + "」";
    switch (change.action) {
        case TagAction::SetField:
            return change.value.empty() ? files + field + "を空にします。"
                                        : files + field + "を「" + change.value + "」にします。";
        case TagAction::Number: return files + "トラック番号を、一覧の順に" + change.value + "から付けます。";
        case TagAction::Swap: return files + field + "と「" + change.value + "」を入れ替えます。";
        case TagAction::FromName: return files + "タグを、ファイル名から書式「" + change.value + "」で書き込みます。";
        default: return files + field + "を、" + ComboAction.text() + "。";
    }
}

// One file after another; messages are handled meanwhile. Written files are noted with what they had.
FormTag::Outcome FormTag::workThrough(const std::vector<std::string>& paths, const Work& work,
                                      std::vector<TagsBefore>& written) {
    Outcome outcome;
    working_ = true;
    cancelled_ = false;
    showButtons();
    for (std::size_t i = 0; i < paths.size() && !cancelled_ && !state_.ShuttingDown; ++i) {
        const auto before = std::make_shared<std::optional<TagsBefore>>();
        const LibraryError error =
            writeFile(paths[i], [&vbmp3 = vbmp3_, work, i, before] { return work(vbmp3, i, *before); });
        const bool unfit = error == LibraryError::Argument;
        outcome.passed += unfit;
        outcome.done += error == LibraryError::None;
        if (error != LibraryError::None && !unfit && outcome.failed++ == 0) outcome.firstError = error;
        if (error == LibraryError::None && *before) written.push_back(std::move(**before));
        if (const auto row = std::ranges::find(paths_, paths[i]); row != paths_.end()) {
            std::string& said = states_[static_cast<std::size_t>(row - paths_.begin())];
            said = error == LibraryError::None ? "完了"
                   : unfit                     ? "書式に合いません"
                                               : "失敗: " + std::string(TextOf(error));
        }
        Progress.setValue(static_cast<int>((i + 1) * 1000 / paths.size()));
        say(std::to_string(i + 1) + " / " + std::to_string(paths.size()) + "曲");
        FileView.refreshAll();
    }
    working_ = false;
    Progress.setValue(0);
    return outcome;
}

void FormTag::tellOutcome(const Outcome& outcome, std::size_t count, const std::string& what) {
    const std::string of = std::to_string(count) + "曲";
    if (cancelled_) {
        say("中止しました（" + of + "のうち" + std::to_string(outcome.done) + "曲に" + what + "）");
    } else if (outcome.passed > 0) {
        say(std::to_string(outcome.done) + "曲に" + what + "（" + std::to_string(outcome.passed) +
            "曲は書式に合いません）");
    } else {
        say(std::to_string(outcome.done) + "曲に" + what);
    }
    if (outcome.failed > 0)
        tell(of + "のうち" + std::to_string(outcome.failed) + "曲に書き込めませんでした", outcome.firstError);
}

void FormTag::cmdApply_Click() {
    if (working_) {
        cancelled_ = true;
        return;
    }
    const TagChange change = chosenChange();
    const bool sets = change.action == TagAction::SetField;
    if (paths_.empty() || (!sets && !mayLeave())) return;
    if (!dialogs_.confirmLoss(questionOf(change) + "よろしいですか？", caption())) return;
    state_.Actions.note("change tags", static_cast<std::int64_t>(paths_.size()));
    std::vector<TagsBefore> written;
    const std::vector<std::string> paths = paths_;
    const Outcome outcome = workThrough(
        paths,
        [change, paths](Vbmp3& vbmp3, std::size_t i, std::optional<TagsBefore>& before) {
            return ChangeTags(vbmp3, change, paths[i], i, paths.size(), before);
        },
        written);
    if (state_.ShuttingDown) return;
    if (!written.empty()) history_.push_back(std::move(written));
    if (std::ranges::find(paths, file_) != paths.end())
        sets ? showAgain(static_cast<Field>(ComboField.listIndex())) : showFile(file_);
    showButtons();
    tellOutcome(outcome, paths.size(), "書き込みました");
}

void FormTag::cmdUndo_Click() {
    if (working_ || history_.empty() || !mayLeave()) return;
    const auto batch = std::move(history_.back());
    history_.pop_back();
    std::vector<std::string> paths;
    for (const TagsBefore& before : batch) paths.push_back(before.path);
    std::vector<TagsBefore> undone;
    const Outcome outcome = workThrough(
        paths,
        [batch](Vbmp3& vbmp3, std::size_t i, std::optional<TagsBefore>& before) {
            before = batch[i];
            return RestoreTags(vbmp3, batch[i]);
        },
        undone);
    if (state_.ShuttingDown) return;
    // What could not be taken back can be tried again.
    std::vector<TagsBefore> left;
    std::ranges::copy_if(batch, std::back_inserter(left), [&](const TagsBefore& before) {
        return std::ranges::find(undone, before.path, &TagsBefore::path) == undone.end();
    });
    if (!left.empty()) history_.push_back(std::move(left));
    showFile(file_);
    tellOutcome(outcome, paths.size(), "元のタグを戻しました");
}

}  // namespace quenlox
