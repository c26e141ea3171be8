// What the tag editor does to files: saving, renaming, wrapping, and one field for many.
#include <algorithm>
#include <memory>

#include "forms/window_host.h"
#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "platform/vbmp3.h"
#include "playback/transport.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "tags/form_tag.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {

std::string TrackTexts::*FormTag::TextOfField(int field) {
    constexpr std::string TrackTexts::*kTexts[] = {&TrackTexts::title,  &TrackTexts::artist, &TrackTexts::album,
                                                   &TrackTexts::genre,  &TrackTexts::year,   &TrackTexts::track,
                                                   &TrackTexts::comment};
    return kTexts[field];
}

TrackTexts FormTag::fieldsShown() const {
    TrackTexts texts;
    for (int field = 0; field < kFields; ++field) texts.*TextOfField(field) = text(static_cast<Field>(field));
    for (const ComboBox::Item& item : ComboGenre.items()) {
        if (EqualsNoCase(item.text, texts.genre)) texts.genreNumber = item.data;
    }
    return texts;
}

// The player lets go of the file while `write` writes it, on another thread.
LibraryError FormTag::writeFile(const std::string& path, const std::function<LibraryError()>& write) {
    const auto result = std::make_shared<LibraryError>(LibraryError::Busy);
    writing_ = true;
    const auto released = hooks_.transport->letGoOf(path);
    if (released) {
        hooks_.windows->runAside([result, write] { *result = write(); }, [this] { return !state_.ShuttingDown; });
        if (!state_.ShuttingDown) hooks_.transport->takeUp(*released);
    }
    writing_ = false;
    if (*result == LibraryError::None && hooks_.tagWritten) hooks_.tagWritten(path);
    return *result;
}

void FormTag::tell(const std::string& what, LibraryError error) {
    dialogs_.message(what + "\r\n" + std::string(TextOf(error)), MessageIcon::Stop, caption());
}

// The question about what goes with the tags that are taken off; empty when nothing does that is not kept elsewhere.
std::string FormTag::lossOf(int remove, bool all) const {
    TagExtras extras;
    for (const int kind : {kTagId3v2, kTagApe}) {
        if (!(remove & kind)) continue;
        const TagExtras its = vbmp3_.vbmp3_countTagExtras(file_, kind);
        extras.pictures += its.pictures;
        extras.others += its.others;
    }
    std::string lost;
    if (extras.pictures > 0) lost += "画像 " + std::to_string(extras.pictures) + "枚\n";
    if (extras.others > 0) lost += "そのほかの項目 " + std::to_string(extras.others) + "個\n";
    if (const std::string cut = tooLongFields(); remove & kTagId3v2 && !all && !cut.empty()) lost += cut + "\n";
    if (lost.empty() && !all) return {};
    const std::string what = all ? "タグをすべて" : remove & kTagId3v2 ? "ID3v2タグを" : "APEタグを";
    return what + "削除します。よろしいですか？\n" + FileNameOf(file_) +
           (lost.empty() ? "" : "\n\n次の内容が失われます：\n" + lost);
}

bool FormTag::save() {
    if (!editable_ || file_.empty()) return false;
    int write = kTagSi, remove = 0;
    if (view_ == kId3View) {
        write = (CheckV1.checked() ? kTagId3v1 : 0) | (CheckV2.checked() ? kTagId3v2 : 0);
        const int keep = write | (CheckApe.checked() ? kTagApe : 0);
        remove = present_ & ~keep;
        const bool all = remove != 0 && write == 0 && !(present_ & keep);
        const std::string question = remove != 0 ? lossOf(remove, all) : std::string();
        if (!question.empty() && !dialogs_.confirmLoss(question, caption())) return false;
    }
    state_.Actions.noteFile("save tag", file_);
    working_ = true;
    showButtons();
    std::vector<TagsBefore> before{ReadTags(vbmp3_, file_)};
    const auto writeBoth = [&vbmp3 = vbmp3_, path = file_, write, remove, texts = fieldsShown()] {
        const auto error = write != 0 ? vbmp3.vbmp3_writeTag(path, write, texts) : LibraryError::None;
        return error == LibraryError::None && remove != 0 ? vbmp3.vbmp3_removeTag(path, remove) : error;
    };
    const LibraryError error = writeFile(file_, writeBoth);
    working_ = false;
    if (error != LibraryError::None) {
        showButtons();
        tell("タグを書き込めませんでした", error);
        return false;
    }
    history_.push_back(std::move(before));
    // The name that the user may have typed stays.
    const std::string name = TextFileName.text();
    const bool typed = nameTyped_;
    const int view = TabView.value();
    showFile(file_);
    if (TabView.value() != view) TabView.setValue(view);
    if (editable_ && typed) TextFileName.setText(name);
    nameTyped_ = typed;
    say("保存しました");
    return true;
}

void FormTag::cmdRename_Click() {
    if (file_.empty()) return;
    state_.Actions.note("rename");
    const std::string name = TextFileName.text();
    // A name that will be refused is not worth the question about unsaved edits.
    const bool acceptable = IsAcceptableFileName(name);
    if (acceptable && !mayLeave()) return;
    RenameFollowers followers = hooks_.followers;
    std::vector<std::string> sideFiles;
    if (acceptable && !LeadsElsewhere(name) && BaseNameOf(TrimBlanks(name)) != BaseNameOf(file_)) {
        sideFiles = SideFilesOf(files_, file_, options_->LyricsFolder, options_->PictureFolder);
    }
    int left = 0;
    if (!sideFiles.empty() && takesSideFiles(sideFiles)) {
        followers.sideFiles = [&](const std::string&, const std::string& to) {
            left = RenameSideFiles(files_, sideFiles, to);
        };
    }
    std::string renamed;
    writing_ = true;
    const RenameResult result = RenameFile(files_, dialogs_, *hooks_.transport, file_, name, followers, renamed);
    writing_ = false;
    if (result != RenameResult::Done) return showButtons();
    renamedInList(file_, renamed);
    showFile(renamed);
    TextFileName.setText(FileNameOf(renamed));
    say(left == 0 ? "名前を変更しました" : "名前を変更しました（変更できなかった歌詞などのファイルがあります）");
}

// Asked once: the answer becomes the option.
bool FormTag::takesSideFiles(const std::vector<std::string>& found) {
    if (options_->RenameSideFiles == kAskSideFiles) {
        std::string question =
            "同じ名前の歌詞などのファイルも、いっしょに名前を変更しますか？\n次からは同じようにします。\n";
        for (const std::string& path : found) question += "\n" + FileNameOf(path);
        const bool take = dialogs_.confirm(question, caption());
        options_.set(&Options::RenameSideFiles, take ? kTakeSideFiles : kLeaveSideFiles);
    }
    return options_->RenameSideFiles == kTakeSideFiles;
}

void FormTag::cmdConvert_Click() {
    if (file_.empty() || !mayLeave()) return;
    const bool toMp3 = fileType_ && fileType_->rmp;
    FileDialog dialog;
    dialog.title = toMp3 ? "MP3に変換" : "RMPに変換";
    dialog.filterName = toMp3 ? "MP3ﾌｧｲﾙ" : "RMPﾌｧｲﾙ";
    dialog.filter = toMp3 ? "*.mp3" : "*.rmp";
    dialog.folder = FolderOf(file_);
    dialog.fileName = FileNameOf(WithExtension(file_, toMp3 ? "mp3" : "rmp"));
    auto target = dialogs_.saveFile(dialog);
    if (!target) return;
    if (ExtensionOf(*target).empty()) *target = WithExtension(*target, toMp3 ? "mp3" : "rmp");
    // The target may be the file that plays.
    writing_ = true;
    // A file cannot become itself: the library says so, and what plays need not be closed for that.
    const auto released = EqualsNoCase(*target, file_) ? Transport::LetGo{} : hooks_.transport->letGoOf(*target);
    const LibraryError error = !released ? LibraryError::Busy
                               : toMp3   ? vbmp3_.vbmp3_convertToMp3(file_, *target)
                                         : vbmp3_.vbmp3_convertToRmp(file_, *target);
    if (released) hooks_.transport->takeUp(*released);
    writing_ = false;
    if (error != LibraryError::None) return tell("変換できませんでした", error);
    if (hooks_.tagWritten) hooks_.tagWritten(*target);
    if (hooks_.followers.browser) hooks_.followers.browser();
    say(FileNameOf(*target) + " に変換しました");
}

// What the file holds now in `field`; what the user has typed into the others stays.
void FormTag::showAgain(Field field) {
    std::array<std::string, kFields> typed;
    for (int i = 0; i < kFields; ++i) typed[static_cast<std::size_t>(i)] = text(static_cast<Field>(i));
    const int v1 = CheckV1.value(), v2 = CheckV2.value(), ape = CheckApe.value();
    const bool edits = edited_;
    showFile(file_);
    if (!edits) return;
    for (int i = 0; i < kFields; ++i) {
        if (i != field) setText(static_cast<Field>(i), typed[static_cast<std::size_t>(i)]);
    }
    CheckV1.setValue(v1);
    CheckV2.setValue(v2);
    CheckApe.setValue(ape);
}

// The list and what can be taken back know the file by its new name.
void FormTag::renamedInList(const std::string& from, const std::string& to) {
    std::ranges::replace(paths_, from, to);
    for (auto& batch : history_) {
        for (TagsBefore& before : batch) {
            if (before.path == from) before.path = to;
        }
    }
    FileView.refreshAll();
}

}  // namespace quenlox
