#include "convert/form_conv.h"

#include <algorithm>
#include <initializer_list>

#include "state/global_state.h"
#include "text/paths.h"

namespace quenlox {
namespace {

constexpr const char* kStartCaption = "変換開始(&T)";
constexpr const char* kCancelCaption = "中止(&T)";
constexpr const char* kBitRateCaption = "ビットレート(&B)";
constexpr const char* kLeastBitRateCaption = "最低ビットレート(&B)";
constexpr const char* kGogoCaption = "GOGO.DLL";
constexpr const char* kGogoMissing = "GOGO.DLLがないため、Windowsのコーデックで変換します";

void ChooseData(ComboBox& box, int data) {
    const auto found = std::ranges::find(box.items(), data, &ComboBox::Item::data);
    box.setListIndex(static_cast<int>(found - box.items().begin()));
}

}  // namespace

FormConv::FormConv(ConversionRun& run, const GlobalState& state, Dialogs& dialogs)
    : Form("FormConv", Kind::Dialog), run_(run), state_(state), dialogs_(dialogs) {
    setCaption("ファイル変換");
    DecOption.fill(*this, "DecOption", 0, 2);
    FrameOperation.setCaption("変換の種類");
    DecOption[0].setCaption("&WAVEデコード");
    DecOption[1].setCaption("再生しながらデコード(&P)");
    DecOption[2].setCaption("&MP3エンコード");
    for (int i = 0; i <= 2; ++i) DecOption[i].onClick = [this, i] { DecOption_Click(i); };
    Label1.setCaption("変換元");
    Command2.setCaption("参照(&S)...");
    Command2.onClick = [this] { Command2_Click(); };
    Label2.setCaption("保存先");
    Command3.setCaption("参照(&D)...");
    Command3.onClick = [this] { Command3_Click(); };
    Frame1.setCaption("エンコード設定");
    LabelFrequency.setCaption("サンプル周波数(&F)");
    LabelHertz.setCaption("Hz");
    LabelBitRate.setCaption(kBitRateCaption);
    LabelKbits.setCaption("kbit/s");
    LabelVbr.setCaption("&VBRクオリティ");
    Combo4.setItems(FrequencyItems());
    Combo5.setItems(VbrQualityItems());
    ChooseData(Combo4, run_.settings().frequency);
    ChooseData(Combo5, run_.settings().vbrQuality);
    showBitRates();
    Combo3.onClick = [this] { Combo3_Click(); };
    Combo4.onClick = [this] { Combo4_Click(); };
    Combo5.onClick = [this] { Combo5_Click(); };
    Command4.onClick = [this] { Command4_Click(); };
    Command4.isDefault = true;
    Command1.setCaption("閉じる(&C)");
    Command1.onClick = [this] { Command1_Click(); };
    DecOption[static_cast<int>(run_.operation())].setValue(true);
    run_.onChanged = [this] { showRun(); };
    run_.onFailed = [this] { dialogs_.message(MessageOf(run_.error()), MessageIcon::Stop); };
    Form_Load();
}

FormConv::~FormConv() {
    run_.onChanged = run_.onFailed = [] {};
}

void FormConv::Form_Load() {
    LabelGogo.setCaption(run_.encoderThere() ? kGogoCaption : kGogoMissing);
    showRun();
}

// What the user chooses.

void FormConv::DecOption_Click(int index) { run_.setOperation(static_cast<Operation>(index)); }

void FormConv::settingsChosen(int bitRate) { run_.setSettings({Combo4.data(), bitRate, Combo5.data()}); }

void FormConv::Combo3_Click() {
    const EncoderSettings& settings = run_.settings();
    // What the frequency has lowered is no other wish.
    if (Combo3.data() == BitRateAt(settings.frequency, settings.bitRate)) return;
    settingsChosen(Combo3.data());
    showBitRates();
}

void FormConv::Combo4_Click() {
    settingsChosen(run_.settings().bitRate);
    showBitRates();
}

void FormConv::Combo5_Click() {
    LabelBitRate.setCaption(Combo5.listIndex() > 0 ? kLeastBitRateCaption : kBitRateCaption);
    settingsChosen(run_.settings().bitRate);
}

void FormConv::Command2_Click() {
    const std::vector<std::string> chosen = dialogs_.openFiles(SourceDialog(run_.operation()));
    if (!chosen.empty()) run_.setSources(chosen);
}

void FormConv::Form_FilesDropped(const std::vector<std::string>& files, Point) {
    const std::vector<std::string> chosen = SourcesAmong(files, run_.operation());
    if (!chosen.empty()) run_.setSources(chosen);
}

void FormConv::Command3_Click() {
    const std::string proposed = run_.jobs().empty() ? std::string() : run_.jobs().front().destination;
    if (run_.jobs().size() > 1) {
        if (const auto folder = dialogs_.chooseFolder("保存先フォルダの指定", FolderOf(proposed)))
            run_.setDestinationFolder(*folder);
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
    return dialogs_.confirm(what + "既にあります。\n上書きしますか？");
}

void FormConv::Command1_Click() { unload(); }

void FormConv::Form_Unload(bool& refuse) {
    if (state_.ShuttingDown) {
        run_.abandon();
        return;
    }
    refuse = true;  // it is only hidden, and comes again as it was
    if (run_.running() && !dialogs_.confirm("変換を中止しますか？")) return;
    run_.cancel();
    hide();
}

// What the user sees.

void FormConv::showBitRates() {
    const EncoderSettings& settings = run_.settings();
    const int rate = BitRateAt(settings.frequency, settings.bitRate);
    std::vector<ComboBox::Item> items = BitRateItems(settings.frequency);
    if (items != Combo3.items()) Combo3.setItems(std::move(items));
    ChooseData(Combo3, rate);
    LabelLowered.setCaption(rate == settings.bitRate ? "" : "この周波数では " + std::to_string(rate) + " までです");
}

void FormConv::showRun() {
    const bool idle = !run_.running();
    const bool settings = idle && Encodes(run_.operation()) && run_.encoderThere();
    for (int i = 0; i <= 2; ++i) DecOption[i].setEnabled(idle);
    Command2.setEnabled(idle);
    Command3.setEnabled(idle);
    for (Control* control :
         std::initializer_list<Control*>{&Frame1, &LabelFrequency, &Combo4, &LabelHertz, &LabelBitRate, &Combo3,
                                         &LabelKbits, &LabelLowered, &LabelVbr, &Combo5}) {
        control->setEnabled(settings);
    }
    Command4.setCaption(idle ? kStartCaption : kCancelCaption);
    Command4.setEnabled(!idle || run_.canStart());
    Progress.setValue(run_.progress().permille);
    LabelProgress.setCaption(progressText());
    showFiles();
}

void FormConv::showFiles() {
    std::string all;
    std::size_t sources = 0;
    for (const ConversionJob& job : run_.jobs()) {
        if (job.source.empty()) continue;
        ++sources;
        all += (all.empty() ? "" : "\n") + job.source;
    }
    const bool several = sources > 1;
    const ConversionJob first = run_.jobs().empty() ? ConversionJob() : run_.jobs().front();
    Label3.setCaption(several ? FileNameOf(first.source) + "  ほか" + std::to_string(sources - 1) + "個"
                              : first.source);
    Label3.setTooltip(all);
    Label4.setCaption(several ? FolderOf(first.destination) : first.destination);
    Label4.setTooltip(Label4.caption());
}

std::string FormConv::progressText() const {
    const ConversionRun::Progress& progress = run_.progress();
    const bool several = progress.files > 1;
    if (run_.running()) {
        const std::string place = std::to_string(progress.done + 1) + "/" + std::to_string(progress.files) + "  ";
        return (several ? place : "") + FileNameOf(run_.jobs().front().source) + (progress.left.empty() ? "" : "  ") +
               progress.left;
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
         Group(Frame1, Column({Item(LabelGogo, 220),
                               Row({Item(LabelFrequency, kCaption), Item(Combo4, kChoice), Item(LabelHertz, 30)}),
                               Row({Item(LabelBitRate, kCaption), Item(Combo3, kChoice), Item(LabelKbits, 30),
                                    Item(LabelLowered, 100)}),
                               Row({Item(LabelVbr, kCaption), Item(Combo5, kChoice)})})),
         Item(Progress, 0, 10), Item(LabelProgress, 0, 10),
         Row({Space(0, 0, 1), Item(Command4, kButton, 14), Item(Command1, kButton, 14)})});
}

}  // namespace quenlox
