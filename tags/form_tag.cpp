#include "tags/form_tag.h"

#include <algorithm>

#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "platform/vbmp3.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "tags/tag_limits.h"
#include "text/format_file_name.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, FormTag::kFields> kFieldCaptions{"タイトル", "アーティスト", "アルバム", "ジャンル",
                                                                   "年",       "トラック",     "コメント"};
constexpr std::array<char, FormTag::kFields> kFieldKeys{'T', 'A', 'L', 'G', 'Y', 'K', 'M'};
constexpr int kGenres = 192;
constexpr const char *kApplyCaption = "実行(&D)", *kStopCaption = "中止(&D)";
constexpr const char *kToRmp = "RMPに変換(&V)...", *kToMp3 = "MP3に変換(&V)...";
constexpr int kLabelWidth = 60, kFieldWidth = 230, kListWidth = 165;
constexpr std::array<const char*, 3> kViewExtensions{".mp3", ".rmp", ".wav"};

}  // namespace

FormTag::FormTag(GlobalState& state, OptionStore& options, Vbmp3& vbmp3, FileSystem& files, Dialogs& dialogs)
    : Form("FormTag", Kind::Dialog), state_(state), options_(options), vbmp3_(vbmp3), files_(files), dialogs_(dialogs) {
    setCaption("タグ情報");
    makeControls();
    showView();
}

void FormTag::makeControls() {
    std::vector<ComboBox::Item> fields;
    for (std::size_t i = 0; i < kFields; ++i) {
        LabelField[i].setCaption(std::string(kFieldCaptions[i]) + "(&" + kFieldKeys[i] + ")");
        fields.push_back({kFieldCaptions[i], static_cast<int>(i)});
    }
    LabelFile.shows = Label::Shows::Path;
    LabelState.shows = Label::Shows::Text;
    TabView.setCaption("タグの種類");
    LabelApply.setCaption("項目(&F)");
    ComboField.setItems(std::move(fields));
    ComboField.onClick = [this] { ComboAction_Click(); };
    ComboField.setListIndex(Album);
    for (TextBox* box : {&TextTitle, &TextArtist, &TextAlbum, &TextYear, &TextTrack, &TextComment}) {
        box->onChange = [this] { fieldEdited(); };
    }
    ComboGenre.onEdit = ComboGenre.onClick = [this] { fieldEdited(); };
    CheckV2.setCaption("ID3v&2（長さ・文字の制限なし）");
    CheckV1.setCaption("ID3v&1（短い項目だけ）");
    CheckV2.setTooltip("チェックを外して保存すると、このタグを削除します");
    CheckV1.setTooltip(
        "タイトル・アーティスト・アルバムは全角15文字、コメントは全角14文字まで。"
        "チェックを外して保存すると、このタグを削除します");
    CheckApe.setCaption("AP&Eタグを残す");
    CheckApe.setTooltip("APEタグの内容は書き換えません。チェックを外して保存すると、このタグを削除します");
    CheckV2.onClick = CheckV1.onClick = CheckApe.onClick = [this] { fieldEdited(); };
    TabView.onClick = [this] { TabView_Click(); };
    const auto button = [](CommandButton& made, const char* caption, std::function<void()> onClick) {
        made.setCaption(caption);
        made.onClick = std::move(onClick);
    };
    button(cmdSave, "保存(&S)", [this] { save(); });
    cmdSave.isDefault = true;
    button(cmdRevert, "元に戻す(&U)", [this] { showFile(file_); });
    button(cmdConvert, kToRmp, [this] { cmdConvert_Click(); });
    button(cmdRename, "名前の変更(&N)", [this] { cmdRename_Click(); });
    makeMany();
    button(cmdPrevious, "◀ 前(&B)", [this] { step(-1); });
    button(cmdNext, "次(&X) ▶", [this] { step(1); });
    button(cmdCurrent, "開いている曲(&R)", [this] { fill(); });
    button(cmdTake, "プレイリストの選択を取込(&J)", [this] { takeSelected(); });
    button(cmdApply, kApplyCaption, [this] { cmdApply_Click(); });
    cmdApply.setTooltip("左の一覧のファイルすべてのタグを書き換えます");
    button(cmdUndo, "書き込みを取消(&Z)", [this] { cmdUndo_Click(); });
    cmdUndo.setTooltip("最後に書き込んだタグを、書き込む前の内容に戻します（画面を閉じるまで）");
    button(cmdClose, "閉じる(&C)", [this] { unload(); });
    FrameName.setCaption("ファイル名(&H)");
    FrameSelected.setCaption("左の一覧のファイルすべて");
    TextFileName.onChange = [this] {
        if (!showing_) nameTyped_ = !TextFileName.text().empty();
    };
}

Layout FormTag::layout() {
    const auto row = [this](Field field, Control& box) {
        return Row({Item(LabelField[static_cast<std::size_t>(field)], kLabelWidth), Item(box, 0, 0, 1)});
    };
    Layout numbers =
        Row({Item(LabelField[Genre], kLabelWidth), Item(ComboGenre, 0, 0, 1), Space(2, 0), Item(LabelField[Year]),
             Item(TextYear, 30), Space(2, 0), Item(LabelField[Track]), Item(TextTrack, 30)});
    Layout fields =
        Column({row(Title, TextTitle), row(Artist, TextArtist), row(Album, TextAlbum), numbers,
                row(Comment, TextComment), Row({Space(kLabelWidth, 0), Item(CheckV2, 130), Item(CheckV1, 0, 0, 1)}),
                Row({Space(kLabelWidth, 0), Item(CheckApe, 0, 0, 1)}), Item(LabelLimit, kLabelWidth + kFieldWidth, 18),
                Row({Item(cmdSave), Item(cmdRevert), Space(0, 0, 1), Item(cmdConvert, 64)})});
    Layout name = Row({Item(TextFileName, 0, 0, 1), Item(cmdRename)});
    Layout steps = Row({Item(cmdPrevious), Item(cmdNext), Item(cmdCurrent), Item(LabelPlace, 0, 0, 1)});
    Layout many =
        Column({Row({Item(LabelAction, 40), Item(ComboAction, 90), Item(LabelApply), Item(ComboField, 0, 0, 1)}),
                Row({Item(LabelWith, 40), Item(ComboWith, 90), Item(cmdApply), Item(cmdUndo), Space(0, 0, 1)}),
                Item(Progress, 0, 8)});
    Layout one = Column({Item(LabelFile, kLabelWidth + kFieldWidth), Item(TabView), fields, Group(FrameName, name),
                         steps, Group(FrameSelected, many)});
    Layout list = Column({Item(FileView, kListWidth, 0, 1), Item(cmdTake)});
    return Column({Row({list, one}), Row({Item(LabelState, 0, 0, 1), Item(cmdClose)})});
}

void FormTag::fillGenres() {
    std::vector<ComboBox::Item> items;
    for (int number = 0; number < kGenres; ++number) {
        if (std::string name = vbmp3_.vbmp3_getGenre(number); !name.empty()) items.push_back({std::move(name), number});
    }
    ComboGenre.setItems(std::move(items));
}

std::string FormTag::text(Field field) const {
    const TextBox* const boxes[] = {&TextTitle, &TextArtist, &TextAlbum, nullptr, &TextYear, &TextTrack, &TextComment};
    return field == Genre ? ComboGenre.text() : boxes[field]->text();
}

void FormTag::setText(Field field, const std::string& text) {
    TextBox* const boxes[] = {&TextTitle, &TextArtist, &TextAlbum, nullptr, &TextYear, &TextTrack, &TextComment};
    if (field == Genre) {
        ComboGenre.setText(text);
    } else {
        boxes[field]->setText(text);
    }
}

bool FormTag::edit(const std::string& path) {
    if (path == file_ && edited_) return true;
    if (working_ || !mayLeave()) return false;
    showFile(path);
    return true;
}

void FormTag::fill() { edit(state_.CurrentFile); }

void FormTag::currentFileOpened() {
    if (writing_ || working_ || !visible()) return;
    if (follows_ && !edited_) return showFile(state_.CurrentFile);
    if (follows_ && file_ != state_.CurrentFile) say("保存していない変更があります");
    showButtons();
}

void FormTag::formatChanged() {
    if (!file_.empty()) proposeName();
}

void FormTag::offerToSave() {
    if (edited_ && dialogs_.confirm("タグの変更を保存しますか？", caption())) save();
    edited_ = false;
}

// Asks what becomes of unsaved edits; false: the user wants to stay.
bool FormTag::mayLeave() {
    if (!edited_) return true;
    const auto answer = dialogs_.confirmOrCancel("タグの変更を保存しますか？\n" + FileNameOf(file_), caption());
    if (!answer) return false;
    if (*answer) return save();
    edited_ = false;
    return true;
}

void FormTag::showFile(const std::string& path) {
    file_ = path;
    follows_ = path == state_.CurrentFile;
    nameTyped_ = false;
    fileType_.reset();
    if (!path.empty() && files_.fileExists(path)) {
        if (const auto type = vbmp3_.vbmp3_getFileType(path)) fileType_ = *type;
    }
    LabelFile.setCaption(path.empty() ? "ファイルがありません" : path);
    LabelFile.setTooltip(path);
    showing_ = true;
    if (fileType_) TabView.setValue(fileType_->rmp ? kSiView : fileType_->mpeg ? kId3View : kInfoView);
    view_ = TabView.value();
    showing_ = false;
    showView();
}

void FormTag::TabView_Click() {
    if (showing_) return;
    const int wanted = TabView.value();
    if (edited_) {
        // The question is about what the other view shows.
        showing_ = true;
        TabView.setValue(view_);
        const bool leave = mayLeave();
        if (leave) TabView.setValue(wanted);
        showing_ = false;
        if (!leave) return;
    }
    view_ = wanted;
    showView();
}

// The library tells a WAVE that holds MPEG audio apart by nothing but its tags.
bool FormTag::isWave() const { return fileType_ && !fileType_->rmp && (!fileType_->mpeg || LastFour(file_) == ".wav"); }

std::string FormTag::whyNotEditable() const {
    if (!fileType_) return "タグのないファイルです";
    if (view_ == kSiView) return "SIはRMPファイルだけにあります";
    if (view_ == kInfoView) return "INFOはWAVEファイルだけにあります";
    return fileType_->rmp ? "このRMPファイルにはID3タグがありません" : "WAVEファイルのタグはINFOで編集します";
}

void FormTag::showView() {
    const bool id3 = view_ == kId3View;
    const bool rmp = fileType_ && fileType_->rmp;
    const bool mpeg = fileType_ && !rmp && fileType_->mpeg;
    TrackTexts texts;
    present_ = 0;
    if (fileType_) texts = ReadFields(vbmp3_, file_, id3 ? kId3Kinds | kTagApe : int{kTagSi}, present_);
    const bool read = present_ != 0;
    editable_ = id3 ? mpeg || (rmp && read) : view_ == kSiView ? rmp : isWave();
    showing_ = true;
    for (int field = 0; field < kFields; ++field) setText(static_cast<Field>(field), texts.*TextOfField(field));
    // A file without any tag gets both kinds, which every player reads one of.
    const int ticked = present_ & kId3Kinds ? present_ & kId3Kinds : kId3Kinds;
    CheckV1.setValue(ticked & kTagId3v1 ? 1 : 0);
    CheckV2.setValue(ticked & kTagId3v2 ? 1 : 0);
    CheckApe.setValue(1);
    showing_ = false;
    edited_ = false;
    for (Control* control : std::initializer_list<Control*>{&TextTitle, &TextArtist, &TextAlbum, &ComboGenre, &TextYear,
                                                            &TextTrack, &TextComment, &CheckV1, &CheckV2, &CheckApe}) {
        control->setEnabled(editable_);
    }
    CheckV1.setVisible(id3);
    CheckV2.setVisible(id3);
    CheckApe.setVisible(id3 && present_ & kTagApe);
    proposeName();
    showLimits();
    showButtons();
    if (file_.empty()) {
        say("");
    } else if (editable_) {
        say(read ? "" : "このファイルにはまだタグがありません");
    } else {
        say(whyNotEditable());
    }
}

// The extension is that of the view. A file that can have no tag keeps its name, and so does a WAVE that has none yet;
// what the user has typed stays.
void FormTag::proposeName() {
    if (nameTyped_) return;
    std::string name = FileNameOf(file_);
    if (editable_ && !(view_ == kInfoView && text(Title).empty() && text(Artist).empty())) {
        name = FormatFileName(options_->RenameFormat, text(Title), text(Artist), text(Album), text(Genre)) +
               kViewExtensions[static_cast<std::size_t>(view_)];
    }
    showing_ = true;
    TextFileName.setText(name);
    showing_ = false;
}

void FormTag::fieldEdited() {
    if (showing_) return;
    edited_ = true;
    say("");
    proposeName();
    showLimits();
    showButtons();
}

// The fields whose texts ID3v1 cannot hold whole, when it is to be written.
std::string FormTag::tooLongFields() const {
    std::string cut;
    if (view_ != kId3View || !CheckV1.checked()) return cut;
    for (int i = 0; i < kFields; ++i) {
        const auto field = static_cast<Field>(i);
        if (FitsId3v1(i, text(field), !text(Track).empty())) continue;
        cut += (cut.empty() ? "" : "・") + std::string(kFieldCaptions[static_cast<std::size_t>(i)]);
    }
    return cut.empty() ? cut : "ID3v1に収まらない項目: " + cut;
}

void FormTag::showLimits() { LabelLimit.setCaption(editable_ ? tooLongFields() : std::string()); }

void FormTag::showButtons() {
    setCaption(edited_ ? "タグ情報 *" : "タグ情報");
    const bool rmp = fileType_ && fileType_->rmp;
    const bool idle = !working_, many = idle && !paths_.empty();
    cmdSave.setEnabled(idle && editable_ && edited_);
    cmdRevert.setEnabled(idle && edited_);
    cmdConvert.setCaption(rmp ? kToMp3 : kToRmp);
    cmdConvert.setEnabled(idle && (rmp || (fileType_ && fileType_->mpeg)));
    cmdRename.setEnabled(idle && !file_.empty());
    TextFileName.setEnabled(!file_.empty());
    cmdTake.setEnabled(idle);
    cmdPrevious.setEnabled(many);
    cmdNext.setEnabled(many);
    cmdApply.setCaption(idle ? kApplyCaption : kStopCaption);
    cmdApply.setEnabled(!paths_.empty());
    cmdUndo.setEnabled(idle && !history_.empty());
    cmdCurrent.setEnabled(idle && file_ != state_.CurrentFile);
    Progress.setVisible(working_);
    showPlace();
}

void FormTag::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    cancelled_ = true;
    if (working_ || !mayLeave()) return;
    history_.clear();  // while it is open what was written can be taken back
    hide();
}

}  // namespace quenlox
