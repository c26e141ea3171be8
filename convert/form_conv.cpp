#include "convert/form_conv.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>

#include "forms/keys.h"
#include "platform/file_manager.h"
#include "state/global_state.h"
#include "text/paths.h"

namespace quenlox {
namespace {

constexpr const char* kStartCaption = "変換開始(&T)";
constexpr const char* kCancelCaption = "中止(&T)";
constexpr const char* kBitRateCaption = "ビットレート(&B)";
constexpr const char* kLeastBitRateCaption = "最低ビットレート(&B)";
constexpr const char* kGogoCaption = "GOGO.DLL";
constexpr const char *kDropCaption = "選択を外す(&R)", *kStopCaption = "選択を中止(&R)";
constexpr const char* kGogoMissing = "GOGO.DLLがないため、Windowsのコーデックで変換します";

enum FileColumn { kNameColumn, kStateColumn, kSizeColumn, kLeftColumn };
constexpr std::size_t kPathsInTip = 20;

// "12.3 MB", in units of 1024 as Explorer shows them.
std::string SizeText(std::uint64_t bytes) {
    constexpr std::array<const char*, 4> kUnits{"KB", "MB", "GB", "TB"};
    double size = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    for (; size >= 1000 && unit + 1 < kUnits.size(); ++unit) size /= 1024;
    char text[32];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", size, kUnits[unit]);
    return text;
}

void ChooseData(ComboBox& box, int data) {
    const auto found = std::ranges::find(box.items(), data, &ComboBox::Item::data);
    box.setListIndex(static_cast<int>(found - box.items().begin()));
}

}  // namespace

FormConv::FormConv(ConversionRun& run, const GlobalState& state, Dialogs& dialogs, FileManager& fileManager)
    : Form("FormConv", Kind::Dialog), run_(run), state_(state), dialogs_(dialogs), fileManager_(fileManager) {
    setCaption("ファイル変換");
    DecOption.fill(*this, "DecOption", 0, 2);
    FrameOperation.setCaption("変換の種類");
    DecOption[0].setCaption("&WAVEデコード");
    DecOption[1].setCaption("再生しながらデコード(&P)");
    DecOption[2].setCaption("&MP3エンコード");
    for (int i = 0; i <= 2; ++i) DecOption[i].onClick = [this, i] { DecOption_Click(i); };
    Label3.shows = Label4.shows = Label::Shows::Path;
    LabelProgress.shows = Label::Shows::Text;
    Label1.setCaption("変換元");
    Command2.setCaption("参照(&S)...");
    Command2.onClick = [this] { Command2_Click(); };
    Label2.setCaption("保存先");
    Command3.setCaption("参照(&D)...");
    Command3.onClick = [this] { Command3_Click(); };
    CheckBeside.setCaption("変換元と同じフォルダに保存(&O)");
    CheckBeside.setTooltip("チェックを外すと、指定したフォルダにまとめて保存します");
    CheckBeside.onClick = [this] { CheckBeside_Click(); };
    makeFileView();
    cmdDrop.onClick = [this] { cmdDrop_Click(); };
    Frame1.setCaption("エンコード設定");
    LabelFrequency.setCaption("サンプル周波数(&F)");
    LabelHertz.setCaption("Hz");
    LabelBitRate.setCaption(kBitRateCaption);
    LabelKbits.setCaption("kbit/s");
    LabelVbr.setCaption("&VBRクオリティ");
    Combo4.setItems(FrequencyItems());
    Combo5.setItems(VbrQualityItems());
    Combo3.onClick = [this] { Combo3_Click(); };
    Combo4.onClick = [this] { Combo4_Click(); };
    Combo5.onClick = [this] { Combo5_Click(); };
    Command4.onClick = [this] { Command4_Click(); };
    Command4.isDefault = true;
    Command1.setCaption("閉じる(&C)");
    Command1.onClick = [this] { Command1_Click(); };
    run_.onChanged = [this] { showRun(); };
    run_.onProgress = [this] { showProgress(); };
    run_.onFailed = [this] { dialogs_.message(MessageOf(run_.error()), MessageIcon::Stop); };
    Form_Load();
}

FormConv::~FormConv() {
    run_.onChanged = run_.onProgress = run_.onFailed = [] {};
}

void FormConv::makeFileView() {
    FileView.setCaption("変換するファイル");
    FileView.emptyText = "ファイルをドロップするか、［参照］で選んでください";
    FileView.setColumns({{"ファイル", 290}, {"状態", 110}, {"サイズ", 70, true}, {"残り時間", 70, true}});
    FileView.textOf = [this](int row, int column) { return cellOf(row, column); };
    FileView.tipOf = [this](int row) {
        const ConversionRun::File& file = run_.files()[static_cast<std::size_t>(row)];
        const bool failed = file.state == ConversionRun::State::Failed;
        return file.job.source + (failed ? "\n" + stateOf(file) : std::string());
    };
    FileView.dimmed = [this](int row) {
        return run_.files()[static_cast<std::size_t>(row)].state == ConversionRun::State::Cancelled;
    };
    FileView.onSelectionChange = [this] { showRun(); };
    FileView.onKeyDown = [this](int key, int) {
        if (key == kKeyDelete) cmdDrop_Click();
    };
}

void FormConv::Form_Load() {
    LabelGogo.setCaption(run_.encoderThere() ? kGogoCaption : kGogoMissing);
    showRun();
}

// What the user chooses.

void FormConv::DecOption_Click(int index) {
    if (!showing_) run_.setOperation(static_cast<Operation>(index));
}

void FormConv::settingsChosen(int bitRate) {
    if (!showing_) run_.setSettings({Combo4.data(), bitRate, Combo5.data()});
}

void FormConv::Combo3_Click() {
    const EncoderSettings& settings = run_.settings();
    // What the frequency has lowered is no other wish.
    if (Combo3.data() == BitRateAt(settings.frequency, settings.bitRate)) return;
    settingsChosen(Combo3.data());
}

void FormConv::Combo4_Click() { settingsChosen(run_.settings().bitRate); }

void FormConv::Combo5_Click() {
    LabelBitRate.setCaption(Combo5.listIndex() > 0 ? kLeastBitRateCaption : kBitRateCaption);
    settingsChosen(run_.settings().bitRate);
}

void FormConv::Command2_Click() {
    const std::vector<std::string> chosen = dialogs_.openFiles(SourceDialog(run_.operation()));
    if (!chosen.empty()) run_.setSources(chosen);
}

// Files that only the other kind of conversion takes choose that.
void FormConv::Form_FilesDropped(const std::vector<std::string>& files, Point) {
    if (run_.running()) return say("変換中は追加できません");
    const Operation other = Encodes(run_.operation()) ? Operation::Decode : Operation::Encode;
    for (const Operation operation : {run_.operation(), other}) {
        const std::vector<std::string> chosen = SourcesAmong(files, operation);
        if (chosen.empty()) continue;
        if (operation != run_.operation()) run_.setOperation(operation);
        return run_.setSources(chosen);
    }
    say("変換できるファイルがありません");
}

void FormConv::chooseFolder() {
    const auto jobs = run_.jobs();
    const std::string near = jobs.empty() ? std::string() : FolderOf(jobs.front().destination);
    const auto folder = dialogs_.chooseFolder("保存先フォルダの指定", near.empty() ? run_.folder() : near);
    if (folder) run_.setPlace(false, *folder);
}

// Without a folder yet it is asked for.
void FormConv::CheckBeside_Click() {
    if (showing_) return;
    if (CheckBeside.checked() || !run_.folder().empty()) {
        run_.setPlace(CheckBeside.checked(), run_.folder());
    } else {
        chooseFolder();
        showRun();
    }
}

void FormConv::cmdDrop_Click() {
    const std::vector<bool> chosen = FileView.selection();
    if (!run_.running()) {
        FileView.selectAll(false);
        return run_.removeFiles(chosen);
    }
    for (std::size_t file = 0; file < chosen.size(); ++file) {
        if (chosen[file]) run_.cancelFile(file);
    }
}

void FormConv::Command3_Click() {
    const auto jobs = run_.jobs();
    const std::string proposed = jobs.empty() ? std::string() : jobs.front().destination;
    if (jobs.size() > 1) {
        chooseFolder();
    } else if (const auto chosen = dialogs_.saveFile(DestinationDialog(run_.operation(), proposed))) {
        run_.setDestination(*chosen);
    }
}

void FormConv::Command4_Click() {
    if (run_.running()) {
        run_.cancel();
    } else if (run_.canStart() && mayReplace()) {
        run_.start();
    }
}

// What the save dialog has not asked about is asked here.
bool FormConv::mayReplace() {
    const std::vector<std::string> there = run_.replaced();
    if (there.empty()) return true;
    const std::string what =
        run_.jobs().size() == 1 ? FileNameOf(there.front()) + " は" : std::to_string(there.size()) + "個のファイルが";
    return dialogs_.confirmLoss(what + "既にあります。\n上書きしますか？");
}

void FormConv::Command1_Click() { unload(); }

void FormConv::Form_Unload(bool& refuse) {
    if (state_.ShuttingDown) {
        run_.abandon();
        return;
    }
    refuse = true;  // it is only hidden, and comes again as it was
    if (run_.running() && !dialogs_.confirmLoss("変換を中止しますか？")) return;
    run_.cancel();
    hide();
}

// What the user sees.

void FormConv::showSettings() {
    DecOption[static_cast<int>(run_.operation())].setValue(true);
    CheckBeside.setValue(run_.besideSource());
    ChooseData(Combo4, run_.settings().frequency);
    ChooseData(Combo5, run_.settings().vbrQuality);
    LabelBitRate.setCaption(Combo5.listIndex() > 0 ? kLeastBitRateCaption : kBitRateCaption);
    showBitRates();
}

void FormConv::showBitRates() {
    const EncoderSettings& settings = run_.settings();
    const int rate = BitRateAt(settings.frequency, settings.bitRate);
    std::vector<ComboBox::Item> items = BitRateItems(settings.frequency);
    if (items != Combo3.items()) Combo3.setItems(std::move(items));
    ChooseData(Combo3, rate);
    LabelLowered.setCaption(rate == settings.bitRate ? "" : "この周波数では " + std::to_string(rate) + " までです");
}

void FormConv::showRun() {
    if (showing_) return;
    showing_ = true;
    showSettings();
    showing_ = false;
    const bool idle = !run_.running();
    const bool settings = idle && Encodes(run_.operation()) && run_.encoderThere();
    for (int i = 0; i <= 2; ++i) DecOption[i].setEnabled(idle);
    Command2.setEnabled(idle);
    Command3.setEnabled(idle);
    CheckBeside.setEnabled(idle);
    for (Control* control :
         std::initializer_list<Control*>{&Frame1, &LabelFrequency, &Combo4, &LabelHertz, &LabelBitRate, &Combo3,
                                         &LabelKbits, &LabelLowered, &LabelVbr, &Combo5}) {
        control->setEnabled(settings);
    }
    Command4.setCaption(idle ? kStartCaption : kCancelCaption);
    Command4.setEnabled(!idle || run_.canStart());
    const int count = static_cast<int>(run_.files().size());
    if (FileView.rowCount() != count) FileView.setRowCount(count);
    cmdDrop.setCaption(idle ? kDropCaption : kStopCaption);
    cmdDrop.setEnabled(FileView.selectedCount() > 0);
    showFiles();
    showProgress();
}

void FormConv::showProgress() {
    Progress.setValue(run_.progress().permille);
    say(progressText());
    FileView.refreshAll();
}

void FormConv::say(const std::string& text) {
    LabelProgress.setCaption(text);
    LabelProgress.setTooltip(run_.running() ? std::string() : text);
}

void FormConv::showFiles() {
    const auto jobs = run_.jobs();
    std::string all;
    std::size_t sources = 0;
    for (const ConversionJob& job : jobs) {
        if (job.source.empty() || ++sources > kPathsInTip) continue;
        all += (all.empty() ? "" : "\n") + job.source;
    }
    if (sources > kPathsInTip) all += "\n…";
    const bool several = sources > 1;
    const ConversionJob first = jobs.empty() ? ConversionJob() : jobs.front();
    Label3.setCaption(several ? FileNameOf(first.source) + "  ほか" + std::to_string(sources - 1) + "個"
                              : first.source);
    Label3.setTooltip(all);
    Label4.setCaption(several ? FolderOf(first.destination) : first.destination);
    Label4.setTooltip(Label4.caption());
}

std::string FormConv::cellOf(int row, int column) const {
    const ConversionRun::File& file = run_.files()[static_cast<std::size_t>(row)];
    if (column == kNameColumn) return FileNameOf(file.job.source);
    if (column == kStateColumn) return stateOf(file);
    if (column == kLeftColumn) return file.left;
    if (file.job.source.empty()) return {};
    const auto [size, isNew] = sizes_.try_emplace(file.job.source);
    if (isNew) size->second = fileManager_.sizeOf(file.job.source).value_or(0);
    return size->second > 0 ? SizeText(size->second) : std::string();
}

std::string FormConv::stateOf(const ConversionRun::File& file) const {
    switch (file.state) {
        case ConversionRun::State::Waiting: return run_.running() ? "待機中" : "";
        case ConversionRun::State::Running: return std::to_string(file.permille / 10) + "%";
        case ConversionRun::State::Made: return "完了";
        case ConversionRun::State::Cancelled: return "中止";
        case ConversionRun::State::Failed: return file.reason.empty() ? "失敗" : "失敗: " + file.reason;
    }
    return {};
}

std::string FormConv::progressText() const {
    const ConversionRun::Progress& progress = run_.progress();
    const bool several = progress.files > 1;
    if (run_.running()) {
        std::string text = several ? std::to_string(progress.done) + " / " + std::to_string(progress.files) + "個"
                                   : FileNameOf(run_.files().front().job.source);
        if (!progress.left.empty()) text += "  残り " + progress.left;
        return text;
    }
    switch (run_.outcome()) {
        case ConversionRun::Outcome::Made:
            return several ? std::to_string(progress.files) + "個の変換が終わりました" : "変換が終わりました";
        case ConversionRun::Outcome::Cancelled: return "中止しました";
        case ConversionRun::Outcome::Failed: return run_.reason();
        default: return {};
    }
}

Layout FormConv::layout() {
    constexpr int kCaption = 64, kChoice = 84, kPath = 220, kButton = 60;
    return Column(
        {Group(FrameOperation, Row({Item(DecOption[0]), Item(DecOption[1]), Item(DecOption[2])})),
         Row({Item(Label1, 30), Item(Label3, kPath, 0, 1), Item(Command2, kButton, 14)}),
         Row({Item(Label2, 30), Item(Label4, kPath, 0, 1), Item(Command3, kButton, 14)}),
         Row({Space(30, 0), Item(CheckBeside)}), Item(FileView, 0, 76),
         Group(Frame1, Column({Item(LabelGogo, 220),
                               Row({Item(LabelFrequency, kCaption), Item(Combo4, kChoice), Item(LabelHertz, 30)}),
                               Row({Item(LabelBitRate, kCaption), Item(Combo3, kChoice), Item(LabelKbits, 30),
                                    Item(LabelLowered, 100)}),
                               Row({Item(LabelVbr, kCaption), Item(Combo5, kChoice)})})),
         Item(Progress, 0, 10), Item(LabelProgress, 0, 10),
         Row({Item(cmdDrop, kButton, 14), Space(0, 0, 1), Item(Command4, kButton, 14), Item(Command1, kButton, 14)})});
}

}  // namespace quenlox
