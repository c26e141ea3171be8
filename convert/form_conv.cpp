#include "convert/form_conv.h"

#include <algorithm>

#include "app/global_state.h"
#include "platform/file_system.h"
#include "platform/gogo.h"
#include "platform/vbmp3.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr const char* kStartCaption = "変換開始";
constexpr const char* kCancelCaption = "中止";
constexpr const char* kBitRateCaption = "ビットレート";
constexpr const char* kLeastBitRateCaption = "最低ビットレート";
constexpr const char* kGogoCaption = "GOGO.DLL";
constexpr const char* kGogoMissing = "GOGO.DLLがないため、Windowsのコーデックで変換します";

constexpr int kDefaultFrequency = 44100;
constexpr int kDefaultBitRate = 128;

// Pending events are handled at least this often while frames are encoded: often enough for a cancel to act at once,
// seldom enough not to cost time.
constexpr std::chrono::milliseconds kPumpEvery{15};

// Job states of the library.
enum JobState : int { kNoJob = 0, kJobRuns = 1, kJobDone = 2, kJobFailed = 3 };

bool IsMpeg(int fileType) { return fileType >= 0 && (fileType & (VBMP3_TYPE_MPEG | VBMP3_TYPE_RMP)) != 0; }

void ChooseData(ComboBox& box, int data) {
    const auto found = std::ranges::find(box.items(), data, &ComboBox::Item::data);
    box.setListIndex(static_cast<int>(found - box.items().begin()));
}

}  // namespace

ControlArray<OptionButton> FormConv::optionsOf(FormConv& form) {
    ControlArray<OptionButton> options;
    options.fill(form, "DecOption", 0, 2);
    return options;
}

FormConv::FormConv(GlobalState& state, Vbmp3& vbmp3, Gogo& gogo, Dialogs& dialogs, FileSystem& files,
                   WindowSystem& windows)
    : Form("FormConv", Kind::Dialog),
      state_(state),
      vbmp3_(vbmp3),
      gogo_(gogo),
      dialogs_(dialogs),
      files_(files),
      windows_(windows) {
    setCaption("ファイル変換");
    FrameOperation.setCaption("変換の種類");
    DecOption[0].setCaption("WAVEデコード");
    DecOption[1].setCaption("再生しながらデコード");
    DecOption[2].setCaption("MP3エンコード");
    for (int i = 0; i <= 2; ++i) DecOption[i].onClick = [this, i] { DecOption_Click(i); };
    Label1.setCaption("変換元");
    Command2.setCaption("参照(&S)...");
    Command2.onClick = [this] { Command2_Click(); };
    Label2.setCaption("保存先");
    Command3.setCaption("参照(&D)...");
    Command3.onClick = [this] { Command3_Click(); };
    Frame1.setCaption("エンコード設定");
    LabelFrequency.setCaption("サンプル周波数");
    LabelHertz.setCaption("Hz");
    LabelBitRate.setCaption(kBitRateCaption);
    LabelKbits.setCaption("kbit/s");
    LabelVbr.setCaption("VBRクオリティ");
    Combo4.setItems(FrequencyItems());
    Combo3.setItems(BitRateItems());
    Combo5.setItems(VbrQualityItems());
    Combo5.onClick = [this] { Combo5_Click(); };
    ChooseData(Combo4, kDefaultFrequency);
    ChooseData(Combo3, kDefaultBitRate);
    Combo5.setListIndex(0);
    Command4.setCaption(kStartCaption);
    Command4.onClick = [this] { Command4_Click(); };
    Command4.isDefault = true;
    Command1.setCaption("閉じる");
    Command1.onClick = [this] { Command1_Click(); };
    DecOption[0].setValue(true);
    Form_Load();
}

void FormConv::Form_Load() {
    LabelGogo.setCaption(gogo_.available() ? kGogoCaption : kGogoMissing);
    showControls();
}

Operation FormConv::operation() const {
    if (DecOption[2].value()) return Operation::Encode;
    return DecOption[1].value() ? Operation::PlayDecode : Operation::Decode;
}

void FormConv::DecOption_Click(int) {
    // What was chosen for decoding cannot be encoded.
    if (Encodes(operation()) != Encodes(chosenFor_)) setSources({});
    chosenFor_ = operation();
    showControls();
}

void FormConv::Combo5_Click() {
    LabelBitRate.setCaption(Combo5.listIndex() > 0 ? kLeastBitRateCaption : kBitRateCaption);
}

void FormConv::Command2_Click() {
    const std::vector<std::string> chosen = dialogs_.openFiles(SourceDialog(operation()));
    if (!chosen.empty() && !running()) setSources(chosen);
}

void FormConv::Form_FilesDropped(const std::vector<std::string>& files, Point) {
    if (running()) return;
    std::vector<std::string> chosen;
    for (const std::string& file : files) {
        const std::string extension = LastFour(file);
        const bool fits =
            Encodes(operation()) ? extension == ".wav" : extension.starts_with(".mp") || extension == ".rmp";
        if (fits) chosen.push_back(file);
    }
    if (!chosen.empty()) setSources(std::move(chosen));
}

void FormConv::Command3_Click() {
    if (sources_.size() > 1) {
        const auto folder = dialogs_.chooseFolder("保存先フォルダの指定", FolderOf(jobs_.front().destination));
        if (!folder || running()) return;
        jobs_ = JobsFor(sources_, operation(), *folder);
        replaceAgreed_ = false;
    } else {
        const std::string proposed = jobs_.empty() ? std::string() : jobs_.front().destination;
        const auto chosen = dialogs_.saveFile(DestinationDialog(operation(), proposed));
        if (!chosen || running()) return;
        if (jobs_.empty()) jobs_.push_back({});
        jobs_.front().destination = *chosen;
        replaceAgreed_ = true;
    }
    setDestinations();
}

void FormConv::setSources(std::vector<std::string> sources) {
    sources_ = std::move(sources);
    jobs_ = JobsFor(sources_, operation(), {});
    replaceAgreed_ = false;
    Label3.setCaption(sources_.empty() ? std::string()
                      : sources_.size() == 1
                          ? sources_.front()
                          : FileNameOf(sources_.front()) + "  ほか" + std::to_string(sources_.size() - 1) + "個");
    std::string all;
    for (const std::string& source : sources_) all += (all.empty() ? "" : "\n") + source;
    Label3.setTooltip(all);
    setDestinations();
}

void FormConv::setDestinations() {
    Label4.setCaption(jobs_.empty()       ? std::string()
                      : jobs_.size() == 1 ? jobs_.front().destination
                                          : FolderOf(jobs_.front().destination));
    Label4.setTooltip(Label4.caption());
    showControls();
}

void FormConv::showControls() {
    const bool idle = !running();
    const bool settings = idle && Encodes(operation()) && gogo_.available();
    for (int i = 0; i <= 2; ++i) DecOption[i].setEnabled(idle);
    Command2.setEnabled(idle);
    Command3.setEnabled(idle);
    Frame1.setEnabled(settings);
    for (Control* control :
         {static_cast<Control*>(&Combo3), static_cast<Control*>(&Combo4), static_cast<Control*>(&Combo5),
          static_cast<Control*>(&LabelFrequency), static_cast<Control*>(&LabelBitRate),
          static_cast<Control*>(&LabelVbr), static_cast<Control*>(&LabelHertz), static_cast<Control*>(&LabelKbits)}) {
        control->setEnabled(settings);
    }
    Command4.setCaption(idle ? kStartCaption : kCancelCaption);
    const bool complete = !jobs_.empty() && !jobs_.front().source.empty() && !jobs_.front().destination.empty();
    // A cancelled encode has to come back from its last frame before another run may start.
    Command4.setEnabled(!idle || (complete && !encoding_));
}

void FormConv::Command4_Click() {
    if (Command4.caption() != kStartCaption) {
        cancel();
        return;
    }
    if (!jobs_.empty() && mayReplace()) start();
}

void FormConv::Command1_Click() { unload(); }

void FormConv::Form_Unload(bool& refuse) {
    if (state_.ShuttingDown) {
        if (running()) cancel();
        return;
    }
    refuse = true;  // it is only hidden, and comes again as it was
    if (running()) {
        if (!dialogs_.confirm("変換を中止しますか？")) return;
        if (running()) cancel();
    }
    hide();
}

// What the save dialog has not asked about is asked here.
bool FormConv::mayReplace() {
    if (replaceAgreed_) return true;
    const auto there =
        std::ranges::count_if(jobs_, [&](const ConversionJob& job) { return files_.fileExists(job.destination); });
    if (there == 0) return true;
    return dialogs_.confirm(jobs_.size() == 1
                                ? FileNameOf(jobs_.front().destination) + " は既にあります。\n上書きしますか？"
                                : std::to_string(there) + "個のファイルが既にあります。\n上書きしますか？");
}

void FormConv::start() {
    runs_ = operation();
    state_.Actions.note("convert", static_cast<std::int64_t>(jobs_.size()));
    count_ = jobs_.size();
    done_ = 0;
    started_ = std::chrono::steady_clock::now();
    if (hooks_.stopPlayback) hooks_.stopPlayback();
    if (hooks_.letGo) {
        for (const ConversionJob& job : jobs_) hooks_.letGo(job.destination);
    }
    if (Encodes(runs_) && gogo_.available()) {
        encodeAll();
    } else {
        startNext();
    }
}

void FormConv::setStatus(int status) {
    state_.PlayerStatus = static_cast<PlayStatus>(status);
    if (hooks_.showStatus) hooks_.showStatus();
}

// Jobs of the library.

void FormConv::startNext() {
    run_ = runs_ == Operation::PlayDecode ? Run::PlayedJob : Run::Job;
    showControls();
    showProgress(0);
    startJob();
}

void FormConv::startJob() {
    const ConversionJob job = jobs_.front();
    bool started = false;
    switch (runs_) {
        case Operation::Decode:
            started =
                IsMpeg(vbmp3_.vbmp3_getFileType(job.source)) && vbmp3_.vbmp3_decodeWave(job.source, job.destination);
            break;
        case Operation::PlayDecode:
            // Opened first, so that the main window shows what is heard.
            state_.CurrentFile = job.source;
            if (hooks_.openFile) hooks_.openFile();
            started = IsMpeg(vbmp3_.vbmp3_getFileType(job.source)) &&
                      vbmp3_.vbmp3_playDecodeWave(job.source, job.destination);
            break;
        case Operation::Encode:
            started = vbmp3_.vbmp3_encodeOpen(job.source) && vbmp3_.vbmp3_encodeStart(job.destination);
            break;
    }
    if (!started) {
        const int lastError = vbmp3_.vbmp3_getLastErrorNo();
        const bool notSound = !Encodes(runs_) && !IsMpeg(vbmp3_.vbmp3_getFileType(job.source));
        const int number = notSound ? int{VBMP3_ERROR_FORMAT} : lastError;
        fail(ErrorOfJob(runs_, number), ReasonOfJob(number));
        return;
    }
    setStatus(Encodes(runs_) ? kEncode : kDecode);
    if (hooks_.setPolling) hooks_.setPolling(true);
}

void FormConv::Timer7_Timer() {
    if (run_ != Run::Job && run_ != Run::PlayedJob) return;
    if (state_.PlayerStatus != (Encodes(runs_) ? kEncode : kDecode)) {
        // Stopped from the main window, or something else is played by now.
        vbmp3_.vbmp3_encodeStop();
        endRun();
        return;
    }
    std::int32_t permille = 0;
    switch (vbmp3_.vbmp3_getEncodeState(permille)) {
        case kJobRuns: showProgress(permille / 1000.0); break;
        case kJobDone:
            // What is still to be heard is awaited.
            if (run_ == Run::Job) jobDone();
            break;
        default: {
            const int number = vbmp3_.vbmp3_getLastErrorNo();
            fail(ErrorOfJob(runs_, number), ReasonOfJob(number));
        }
    }
}

void FormConv::decodeEnded() {
    if (run_ != Run::PlayedJob) return;
    setStatus(kDecode);  // the track's end has stopped the playback, not the run
    std::int32_t permille = 0;
    const int job = vbmp3_.vbmp3_getEncodeState(permille);
    if (job == kJobDone) {
        jobDone();
    } else if (job != kJobRuns) {
        const int number = vbmp3_.vbmp3_getLastErrorNo();
        fail(ErrorOfJob(runs_, number), ReasonOfJob(number));
    }
}

void FormConv::jobDone() {
    const ConversionJob job = jobs_.front();
    finishFile(job);
    if (jobs_.empty()) {
        finishRun(job.destination);
    } else {
        startNext();
    }
}

// Encoding with gogo.dll.

void FormConv::encodeAll() {
    run_ = Run::Encoder;
    showControls();
    ConversionJob job;
    bool goesOn = true;
    while (goesOn && !jobs_.empty()) {
        job = jobs_.front();
        goesOn = encodeWithGogo(job);
        if (goesOn) finishFile(job);
    }
    if (goesOn) finishRun(job.destination);
}

// False when the run is over, by an error or by the user.
bool FormConv::encodeWithGogo(const ConversionJob& job) {
    // An RMP is an MP3 that is wrapped afterwards.
    const bool rmp = EqualsNoCase(ExtensionOf(job.destination), "rmp");
    std::string encoded = job.destination;
    while (rmp && (encoded == job.destination || files_.fileExists(encoded))) encoded += ".mp3";
    encoding_ = true;
    auto error = ConversionError::GogoStart;
    int result = gogo_.MPGE_initializeWorkVB();
    bool finished = false, cancelled = false;
    if (result == 0) {
        setStatus(kEncode);
        showProgress(0);
        gogo_.MPGE_setConfigureVB(kGogoSource, 0, job.source);
        gogo_.MPGE_setConfigureVB(kGogoDestination, 0, encoded);
        gogo_.MPGE_setConfigureVB(kGogoFrequency, Combo4.data(), {});
        gogo_.MPGE_setConfigureVB(kGogoMode, kGogoModeValue, {});
        if (Combo5.listIndex() > 0) gogo_.MPGE_setConfigureVB(kGogoVbrQuality, Combo5.data(), {});
        gogo_.MPGE_setConfigureVB(kGogoBitRate, Combo3.data(), {});
        error = ConversionError::GogoFile;
        result = gogo_.MPGE_detectConfigureVB();
        if (result == 0) {
            encoderProgress_ = 0;
            gogo_.MPGE_getConfigureVB(kGogoFrames, encoderProgress_);
            error = ConversionError::GogoEncode;
            result = encodeFrames();
            finished = result == 1;
            cancelled = result == 0;
        }
    }
    gogo_.MPGE_closeCoderVB();
    gogo_.MPGE_endCoderVB();
    encoding_ = false;
    if (finished && rmp) {
        finished = vbmp3_.vbmp3_convertToRmp(encoded, job.destination);
        const int number = vbmp3_.vbmp3_getLastErrorNo();
        files_.remove(encoded);
        if (!finished) {
            fail(ConversionError::Other, ReasonOfJob(number));
            return false;
        }
    }
    if (finished) return true;
    if (cancelled) {
        if (running()) {
            endRun();  // by another window
        } else {
            showControls();
        }
    } else {
        fail(error, ReasonOfGogo(result));
    }
    return false;
}

// 1 finished, 0 the state has changed, else the encoder's error.
int FormConv::encodeFrames() {
    using Clock = std::chrono::steady_clock;
    Clock::time_point nextPump = Clock::now();
    for (std::int64_t frame = 1;; ++frame) {
        const int result = gogo_.MPGE_processFrameVB();
        if (const auto now = Clock::now(); now >= nextPump || result != 0) {
            showProgress(encoderProgress_ > 0 ? static_cast<double>(frame) / encoderProgress_ : 0);
            windows_.pumpMessages();
            nextPump = Clock::now() + kPumpEvery;
        }
        // A file that is complete stays, even when the cancel came with its last frame.
        if (result == 1 && state_.PlayerStatus == kEncode) return 1;
        if (state_.PlayerStatus != kEncode) return 0;
        if (result != 0) return result;
    }
}

// The ends of a file and of a run.

void FormConv::finishFile(const ConversionJob& job) {
    if (Encodes(runs_)) carryTags(job);
    ++done_;
    jobs_.erase(jobs_.begin());
    if (!sources_.empty()) sources_.erase(sources_.begin());
}

void FormConv::carryTags(const ConversionJob& job) {
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    if (!vbmp3_.vbmp3_getFileInfo(job.source, info)) return;
    const auto tag = TagOf(info);
    if (!tag) return;
    const bool rmp = EqualsNoCase(ExtensionOf(job.destination), "rmp");
    vbmp3_.vbmp3_writeTag(job.destination, rmp ? VBMP3_TAG_SI : VBMP3_TAG_ID3V1 | VBMP3_TAG_ID3V2, *tag);
}

void FormConv::finishRun(const std::string& lastDestination) {
    Progress.setValue(1000);
    run_ = Run::None;
    if (hooks_.setPolling) hooks_.setPolling(false);
    state_.CurrentFile = lastDestination;
    setSources({});
    LabelProgress.setCaption(count_ > 1 ? std::to_string(count_) + "個の変換が終わりました" : "変換が終わりました");
    if (hooks_.openFile) hooks_.openFile();
    setStatus(kStop);
    if (hooks_.refreshBrowserFiles) hooks_.refreshBrowserFiles();
}

void FormConv::fail(ConversionError error, const std::string& reason) {
    run_ = Run::None;
    if (hooks_.setPolling) hooks_.setPolling(false);
    if (hooks_.stopPlayback) hooks_.stopPlayback();
    setStatus(kError);
    state_.CurrentFile.clear();
    const std::string name = jobs_.empty() ? std::string() : FileNameOf(jobs_.front().source);
    LabelProgress.setCaption(reason.empty() ? name : name + ": " + reason);
    Progress.setValue(0);
    showControls();
    dialogs_.message(MessageOf(error), MessageIcon::Stop);
}

void FormConv::cancel() {
    const Run was = run_;
    state_.PlayerStatus = kStop;
    run_ = Run::None;
    if (was == Run::Job || was == Run::PlayedJob) vbmp3_.vbmp3_encodeStop();
    if (hooks_.setPolling) hooks_.setPolling(false);
    if (hooks_.stopPlayback) hooks_.stopPlayback();
    setStatus(kStop);
    endRun();
    LabelProgress.setCaption("中止しました");
}

void FormConv::endRun() {
    run_ = Run::None;
    if (hooks_.setPolling) hooks_.setPolling(false);
    Progress.setValue(0);
    LabelProgress.setCaption({});
    setDestinations();
}

void FormConv::showProgress(double doneOfFile) {
    const double done = std::min(
        1.0, (static_cast<double>(done_) + doneOfFile) / static_cast<double>(std::max<std::size_t>(count_, 1)));
    Progress.setValue(static_cast<int>(done * 1000));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - started_;
    std::string text = count_ > 1 ? std::to_string(done_ + 1) + "/" + std::to_string(count_) + "  " : std::string();
    if (!jobs_.empty()) text += FileNameOf(jobs_.front().source);
    if (const std::string left = TimeLeft(passed.count(), done); !left.empty()) text += "  " + left;
    LabelProgress.setCaption(text);
}

Layout FormConv::layout() {
    constexpr int kCaption = 64, kChoice = 84, kPath = 220, kButton = 60;
    return Column(
        {Group(FrameOperation, Row({Item(DecOption[0]), Item(DecOption[1]), Item(DecOption[2])})),
         Row({Item(Label1, 30), Item(Label3, kPath, 0, 1), Item(Command2, kButton, 14)}),
         Row({Item(Label2, 30), Item(Label4, kPath, 0, 1), Item(Command3, kButton, 14)}),
         Group(Frame1, Column({Item(LabelGogo, 220),
                               Row({Item(LabelFrequency, kCaption), Item(Combo4, kChoice), Item(LabelHertz, 30)}),
                               Row({Item(LabelBitRate, kCaption), Item(Combo3, kChoice), Item(LabelKbits, 30)}),
                               Row({Item(LabelVbr, kCaption), Item(Combo5, kChoice)})})),
         Item(Progress, 0, 10), Item(LabelProgress, 0, 10),
         Row({Space(0, 0, 1), Item(Command4, kButton, 14), Item(Command1, kButton, 14)})});
}

}  // namespace quenlox
