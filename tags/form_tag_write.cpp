// What the tag editor does to files: saving, renaming, wrapping, and one field for many.
#include <algorithm>
#include <cstring>

#include "state/global_state.h"
#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "platform/vbmp3.h"
#include "playback/transport.h"
#include "tags/form_tag.h"
#include "text/encoding.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kId3Kinds = VBMP3_TAG_ID3V1 | VBMP3_TAG_ID3V2;
constexpr int kNoGenre = 255;

std::string Reason(int error) {
    switch (error) {
        case VBMP3_ERROR_NOT_FOUND: return "ファイルが見つかりません";
        case VBMP3_ERROR_FORMAT: return "対応していない形式のファイルです";
        case VBMP3_ERROR_MEMORY: return "メモリが足りません";
        case VBMP3_ERROR_WRITE: return "ディスクに書き込めません";
        case VBMP3_ERROR_SAME_FILE: return "変換元と同じファイルです";
        case VBMP3_ERROR_BUSY: return "ほかの変換が実行中です";
        case VBMP3_ERROR_LOCKED: return "読み取り専用か、ほかのプログラムが使用中です";
        default: return "エラー番号 " + std::to_string(error);
    }
}

template <std::size_t N>
void Put(char (&field)[N], const std::string& text) {
    const std::string_view cut = CutUtf8(text, N - 1);
    std::memset(field, 0, N);
    std::memcpy(field, cut.data(), cut.size());
}

void PutField(vbmp3_Tag& tag, int field, const std::string& text, int genreNumber) {
    switch (field) {
        case FormTag::Title: return Put(tag.title, text);
        case FormTag::Artist: return Put(tag.artist, text);
        case FormTag::Album: return Put(tag.album, text);
        case FormTag::Year: return Put(tag.year, text);
        case FormTag::Track: return Put(tag.track, text);
        case FormTag::Comment: return Put(tag.comment, text);
        default:
            Put(tag.genre, text);
            tag.genreNumber = genreNumber;
    }
}

}  // namespace

// The richest tag there is, and what only the other one knows.
bool FormTag::readFields(const std::string& path, int kinds, vbmp3_Tag& tag, int& present) const {
    tag = {};
    tag.size = sizeof tag;
    tag.genreNumber = kNoGenre;
    present = 0;
    for (const int kind : {VBMP3_TAG_ID3V2, VBMP3_TAG_ID3V1, VBMP3_TAG_SI}) {
        if (!(kinds & kind)) continue;
        vbmp3_Tag read{};
        read.size = sizeof read;
        if (!vbmp3_.vbmp3_readTag(path, kind, read)) continue;
        if (present == 0) {
            tag = read;
        } else {
            const auto fillIn = [](auto& field, const auto& other) {
                if (field[0] == 0) std::memcpy(field, other, sizeof field);
            };
            if (tag.genre[0] == 0) tag.genreNumber = read.genreNumber;
            fillIn(tag.title, read.title);
            fillIn(tag.artist, read.artist);
            fillIn(tag.album, read.album);
            fillIn(tag.genre, read.genre);
            fillIn(tag.year, read.year);
            fillIn(tag.track, read.track);
            fillIn(tag.comment, read.comment);
        }
        present |= kind;
    }
    return present != 0;
}

vbmp3_Tag FormTag::fieldsShown() const {
    vbmp3_Tag tag{};
    tag.size = sizeof tag;
    for (int field = 0; field < kFields; ++field) PutField(tag, field, text(static_cast<Field>(field)), kNoGenre);
    const std::string genre = ComboGenre.text();
    for (const ComboBox::Item& item : ComboGenre.items()) {
        if (EqualsNoCase(item.text, genre)) tag.genreNumber = item.data;
    }
    return tag;
}

// Writes some kinds of tags and takes others away. The player lets go of the file for that time.
bool FormTag::writeFile(const std::string& path, int write, int remove, const vbmp3_Tag& tag, int& error) {
    writing_ = true;
    const auto released = hooks_.transport->letGoOf(path);
    error = released ? VBMP3_OK : VBMP3_ERROR_BUSY;
    bool done = released.has_value();
    if (done && write != 0) done = vbmp3_.vbmp3_writeTag(path, write, tag);
    if (done && remove != 0) done = vbmp3_.vbmp3_removeTag(path, remove);
    if (!done && released) error = vbmp3_.vbmp3_getLastErrorNo();
    if (released) hooks_.transport->takeUp(*released);
    writing_ = false;
    if (done && hooks_.tagWritten) hooks_.tagWritten(path);
    return done;
}

void FormTag::tell(const std::string& what, int error) {
    dialogs_.message(what + "\r\n" + Reason(error), MessageIcon::Stop, caption());
}

bool FormTag::save() {
    if (!editable_ || file_.empty()) return false;
    int write = VBMP3_TAG_SI, remove = 0;
    if (TabView.value() == kId3View) {
        write = (CheckV1.checked() ? VBMP3_TAG_ID3V1 : 0) | (CheckV2.checked() ? VBMP3_TAG_ID3V2 : 0);
        remove = present_ & kId3Kinds & ~write;
        if (write == 0 && remove != 0 &&
            !dialogs_.confirm("タグをすべて削除します。よろしいですか？\n" + FileNameOf(file_), caption())) {
            return false;
        }
    }
    state_.Actions.noteFile("save tag", file_);
    int error = VBMP3_OK;
    if (!writeFile(file_, write, remove, fieldsShown(), error)) {
        tell("タグを書き込めませんでした", error);
        return false;
    }
    // The name that the user may have typed stays.
    const std::string name = TextFileName.text();
    const int view = TabView.value();
    showFile(file_);
    if (TabView.value() != view) TabView.setValue(view);
    if (editable_) TextFileName.setText(name);
    say("保存しました");
    return true;
}

void FormTag::cmdRename_Click() {
    if (file_.empty()) return;
    state_.Actions.note("rename");
    const std::string name = TextFileName.text();
    // A name that will be refused is not worth the question about unsaved edits.
    if (IsAcceptableFileName(name)) {
        if (!mayLeave()) return;
    }
    std::string renamed;
    writing_ = true;
    const RenameResult result =
        RenameFile(files_, dialogs_, *hooks_.transport, file_, name, hooks_.followers, renamed);
    writing_ = false;
    if (result != RenameResult::Done) return showButtons();
    showFile(renamed);
    TextFileName.setText(FileNameOf(renamed));
    say("名前を変更しました");
}

void FormTag::cmdConvert_Click() {
    if (file_.empty() || !mayLeave()) return;
    const bool toMp3 = fileType_ & VBMP3_TYPE_RMP;
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
    const auto released =
        EqualsNoCase(*target, file_) ? Transport::LetGo{} : hooks_.transport->letGoOf(*target);
    bool done = released.has_value();
    if (done) done = toMp3 ? vbmp3_.vbmp3_convertToMp3(file_, *target) : vbmp3_.vbmp3_convertToRmp(file_, *target);
    const int error = done ? VBMP3_OK : released ? vbmp3_.vbmp3_getLastErrorNo() : int{VBMP3_ERROR_BUSY};
    if (released) hooks_.transport->takeUp(*released);
    writing_ = false;
    if (!done) return tell("変換できませんでした", error);
    if (hooks_.tagWritten) hooks_.tagWritten(*target);
    if (hooks_.followers.browser) hooks_.followers.browser();
    say(FileNameOf(*target) + " に変換しました");
}

// What the file holds now in `field`; what the user has typed into the others stays.
void FormTag::showAgain(Field field) {
    std::array<std::string, kFields> typed;
    for (int i = 0; i < kFields; ++i) typed[static_cast<std::size_t>(i)] = text(static_cast<Field>(i));
    const int v1 = CheckV1.value(), v2 = CheckV2.value();
    const bool edits = edited_;
    showFile(file_);
    if (!edits) return;
    for (int i = 0; i < kFields; ++i) {
        if (i != field) setText(static_cast<Field>(i), typed[static_cast<std::size_t>(i)]);
    }
    CheckV1.setValue(v1);
    CheckV2.setValue(v2);
}

void FormTag::cmdApply_Click() {
    const auto selected = hooks_.selectedPaths ? hooks_.selectedPaths() : std::vector<std::string>();
    if (selected.empty() || ComboField.listIndex() < 0) return;
    const auto field = static_cast<Field>(ComboField.listIndex());
    const std::string value = text(field);
    if (!dialogs_.confirm("選択した" + std::to_string(selected.size()) + "曲の「" + ComboField.text() + "」を「" + value +
                              "」にします。よろしいですか？", caption())) {
        return;
    }
    const int genre = fieldsShown().genreNumber;
    std::vector<std::string> paths = selected;
    std::ranges::sort(paths);
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    std::size_t failed = 0;
    int firstError = VBMP3_OK;
    for (const std::string& path : paths) {
        const int type = vbmp3_.vbmp3_getFileType(path);
        int error = type < 0 ? -type : VBMP3_OK;
        const int kinds = type >= 0 && type & VBMP3_TYPE_RMP ? VBMP3_TAG_SI : kId3Kinds;
        bool done = type >= 0 && type & (VBMP3_TYPE_RMP | VBMP3_TYPE_MPEG);
        if (!done && type >= 0) error = VBMP3_ERROR_FORMAT;
        if (done) {
            // Each kind keeps its other fields, those of the short one being short.
            vbmp3_Tag tag{};
            int present = 0;
            readFields(path, kinds, tag, present);
            PutField(tag, field, value, genre);
            done = writeFile(path, present != 0 ? present : kinds, 0, tag, error);
        }
        if (!done && failed++ == 0) firstError = error;
    }
    if (std::ranges::find(paths, file_) != paths.end()) showAgain(field);
    if (failed == 0) return say(std::to_string(paths.size()) + "曲に書き込みました");
    tell(std::to_string(paths.size()) + "曲のうち" + std::to_string(failed) + "曲に書き込めませんでした", firstError);
}

}  // namespace quenlox
