// vbmp3.dll behind the program's own interface. Records of fixed lengths, their sizes and their trimming end here.
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "libraries/vbmp3/vbmp3.h"
#include "platform/vbmp3.h"
#include "platform/win32/platform.h"
#include "platform/win32/services/library.h"
#include "text/encoding.h"
#include "text/strings.h"

namespace quenlox::win32 {
namespace {

// What the library exports, with the types and the names of its header.
struct Exports {
#define QUENLOX_POINTER(name) decltype(::name)* name = nullptr;
    VBMP3_FUNCTIONS(QUENLOX_POINTER)
#undef QUENLOX_POINTER

    explicit Exports(Library& library) {
#define QUENLOX_RESOLVE(name) library.resolve(name, #name);
        VBMP3_FUNCTIONS(QUENLOX_RESOLVE)
#undef QUENLOX_RESOLVE
    }
};

constexpr std::array<std::pair<int, LibraryError>, 16> kErrors{
    {{VBMP3_OK, LibraryError::None},
     {VBMP3_ERROR_NOT_FOUND, LibraryError::NotFound},
     {VBMP3_ERROR_FORMAT, LibraryError::Format},
     {VBMP3_ERROR_NOT_OPEN, LibraryError::NotOpen},
     {VBMP3_ERROR_MEMORY, LibraryError::Memory},
     {VBMP3_ERROR_WRITE, LibraryError::Write},
     {VBMP3_ERROR_SAME_FILE, LibraryError::SameFile},
     {VBMP3_ERROR_NO_CODEC, LibraryError::NoCodec},
     {VBMP3_ERROR_BUSY, LibraryError::Busy},
     {VBMP3_ERROR_ARGUMENT, LibraryError::Argument},
     {VBMP3_ERROR_LOCKED, LibraryError::Locked},
     {VBMP3_ERROR_SUPERSEDED, LibraryError::Superseded},
     {VBMP3_ERROR_NOT_INITIALISED, LibraryError::NotInitialised},
     {VBMP3_ERROR_SIZE, LibraryError::Argument},
     {VBMP3_ERROR_DEVICE_BUSY, LibraryError::DeviceBusy},
     {VBMP3_ERROR_TAG, LibraryError::Tag}}};

LibraryError ErrorOf(int number) {
    const auto found = std::ranges::find(kErrors, number, &std::pair<int, LibraryError>::first);
    return found == kErrors.end() ? LibraryError::Other : found->second;
}

template <std::size_t size>
std::string TextOf(const char (&field)[size]) {
    return TrimAtNull({field, size});
}

// A text that fills its field may go on beyond it.
template <std::size_t size>
bool IsFull(const char (&field)[size]) {
    constexpr std::size_t kLongestCharacter = 4;
    return strnlen(field, size) + kLongestCharacter >= size;
}

template <class Record>
Record Sized() {
    Record record{};
    record.size = sizeof record;
    return record;
}

FileType TypeOf(int flags) {
    const auto has = [flags](int flag) { return (flags & flag) != 0; };
    return {has(VBMP3_TYPE_MPEG),  has(VBMP3_TYPE_RMP),   has(VBMP3_TYPE_WAVE),
            has(VBMP3_TYPE_ID3V1), has(VBMP3_TYPE_ID3V2), has(VBMP3_TYPE_LYRICS)};
}

TrackInfo InfoOf(const vbmp3_FileInfo& record) {
    TrackInfo info;
    info.type = TypeOf(record.fileType);
    info.seconds = record.seconds;
    info.sampleRate = record.sampleRate;
    info.bitRate = record.bitRate;
    info.variableBitRate = record.variableBitRate != 0;
    info.mpegVersion = record.mpegVersion;
    info.layer = record.layer;
    info.format = TextOf(record.format);
    info.texts = {TextOf(record.title), TextOf(record.artist), TextOf(record.album), TextOf(record.comment),
                  TextOf(record.year),  TextOf(record.genre),  TextOf(record.track), record.genreNumber};
    return info;
}

bool HasFullField(const vbmp3_FileInfo& record) {
    return IsFull(record.title) || IsFull(record.artist) || IsFull(record.album) || IsFull(record.comment) ||
           IsFull(record.year) || IsFull(record.genre) || IsFull(record.track);
}

class Vbmp3Library : public Vbmp3 {
  public:
    explicit Vbmp3Library(const std::string& folder) : library_(folder, "vbmp3.dll"), dll_(library_) {}
    ~Vbmp3Library() override {
        // Its threads must not outlive the code they run.
        if (initialised_) dll_.vbmp3_free();
    }
    Vbmp3Library(const Vbmp3Library&) = delete;
    Vbmp3Library& operator=(const Vbmp3Library&) = delete;
    bool complete() const { return library_.complete(); }

    LibraryError vbmp3_init() override {
        initialised_ = dll_.vbmp3_init() != 0;
        return result(initialised_);
    }
    void vbmp3_free() override {
        if (std::exchange(initialised_, false)) dll_.vbmp3_free();
    }
    std::string vbmp3_getVersion() override {
        char text[64] = {};
        dll_.vbmp3_getVersion(text, sizeof text);
        return TextOf(text);
    }

    LibraryResult<FileType> vbmp3_getFileType(const std::string& path) override {
        const int flags = dll_.vbmp3_getFileType(path.c_str());
        if (flags < 0) return ErrorOf(-flags);
        return TypeOf(flags);
    }
    LibraryResult<TrackInfo> vbmp3_getFileInfo(const std::string& path) override {
        return info(dll_.vbmp3_getFileInfo, path);
    }
    std::string vbmp3_getGenre(int number) override {
        char text[128] = {};
        return dll_.vbmp3_getGenre(number, text, sizeof text) ? TextOf(text) : std::string();
    }

    LibraryResult<TrackInfo> vbmp3_open(const std::string& path) override { return info(dll_.vbmp3_open, path); }
    void vbmp3_close() override { dll_.vbmp3_close(); }
    LibraryError vbmp3_play() override { return result(dll_.vbmp3_play()); }
    void vbmp3_stop() override { dll_.vbmp3_stop(); }
    void vbmp3_pause() override { dll_.vbmp3_pause(); }
    void vbmp3_restart() override { dll_.vbmp3_restart(); }
    void vbmp3_seek(double seconds) override { dll_.vbmp3_seek(seconds); }
    PlayReport vbmp3_getState() override {
        PlayReport report;
        report.state = static_cast<PlayReport::State>(dll_.vbmp3_getState(&report.seconds));
        return report;
    }
    std::int64_t vbmp3_getPositionMs() override { return dll_.vbmp3_getPositionMs(); }
    LibraryError vbmp3_setNextFile(const std::string& path) override {
        return result(dll_.vbmp3_setNextFile(path.c_str()));
    }
    void vbmp3_setListener(std::function<void(LibraryEvent)> listener) override {
        // No call is running once the old listener has been taken back, so it may then go.
        dll_.vbmp3_setListener(nullptr, nullptr);
        listener_ = std::move(listener);
        if (listener_) dll_.vbmp3_setListener(&Vbmp3Library::heard, this);
    }
    LibraryError vbmp3_setOutput(int device, int bufferMs) override {
        return result(dll_.vbmp3_setOutput(device, bufferMs));
    }
    bool vbmp3_hasOutputDevice() override { return dll_.vbmp3_hasOutputDevice() != 0; }

    void vbmp3_setEqualizer(const std::array<std::int32_t, 10>* gains) override {
        dll_.vbmp3_setEqualizer(gains ? gains->data() : nullptr);
    }
    void vbmp3_reload() override { dll_.vbmp3_reload(); }
    void vbmp3_setPitch(int percent) override { dll_.vbmp3_setPitch(percent); }
    void vbmp3_setStepPitch(int factor, int base) override { dll_.vbmp3_setStepPitch(factor, base); }
    void vbmp3_setQuality(int quality) override { dll_.vbmp3_setQuality(quality); }
    void vbmp3_getWave(std::span<std::int16_t> left, std::span<std::int16_t> right) override {
        dll_.vbmp3_getWave(left.data(), right.data(), static_cast<std::int32_t>(std::min(left.size(), right.size())));
    }
    void vbmp3_getSpectrum(std::span<std::int32_t> levels) override {
        dll_.vbmp3_getSpectrum(levels.data(), static_cast<std::int32_t>(levels.size()));
    }

    std::optional<std::string> vbmp3_readLyrics3Data() override {
        std::string text(VBMP3_LYRICS_TEXT, '\0');
        if (!dll_.vbmp3_readLyrics3Data(nullptr, text.data())) return std::nullopt;
        return TrimAtNull(text);
    }
    std::optional<std::string> vbmp3_getFileLyrics3InfoVB(const std::string& path) override {
        const auto record = std::make_unique<vbmp3_Lyrics3Info>(Sized<vbmp3_Lyrics3Info>());
        if (!dll_.vbmp3_getFileLyrics3InfoVB(path.c_str(), record.get())) return std::nullopt;
        if (record->textNeeded <= sizeof record->lyrics) return TextOf(record->lyrics);
        std::string whole(record->textNeeded, '\0');
        record->text = whole.data();
        record->textSize = record->textNeeded;
        if (!dll_.vbmp3_getFileLyrics3InfoVB(path.c_str(), record.get())) return std::nullopt;
        return TrimAtNull(whole);
    }
    bool vbmp3_setLyricsFile(const std::string& path) override { return dll_.vbmp3_setLyricsFile(path.c_str()) != 0; }
    bool vbmp3_checkTimeTag() override { return dll_.vbmp3_checkTimeTag() > 0; }
    LyricsLines vbmp3_getLyrics2() override {
        LyricsLines lines;
        auto record = Sized<vbmp3_LyricsLines>();
        if (!dll_.vbmp3_getLyrics2(&record)) return lines;
        lines.current = record.current;
        lines.total = record.total;
        lines.progress = record.progress;
        lines.progressBytes = record.progressBytes;
        std::ranges::copy(record.stampMs, lines.stampMs.begin());
        for (int row = 0; row < VBMP3_LYRICS_ROWS; ++row) {
            std::string& text = lines.rows[static_cast<std::size_t>(row)];
            const auto& field = record.rows[row];
            text.assign(field, strnlen(field, sizeof field));
            if (IsFull(field)) text = wholeRow(row);
        }
        // The record counts in the part of the row that it shows.
        const std::string& sung = lines.rows[LyricsLines::kCurrentRow];
        if (lines.progressBytes >= 0 && IsFull(record.rows[LyricsLines::kCurrentRow])) {
            const std::size_t bytes = sung.size() * static_cast<std::size_t>(lines.progress) / 1000;
            lines.progressBytes = static_cast<int>(CutUtf8(sung, bytes).size());
        }
        return lines;
    }
    void vbmp3_clearLyrics() override { dll_.vbmp3_clearLyrics(); }
    void vbmp3_setKaraokeUse(bool use) override { dll_.vbmp3_setKaraokeUse(use); }
    void vbmp3_setNotTagLyricsLine(int lines) override { dll_.vbmp3_setNotTagLyricsLine(lines); }
    void vbmp3_useAtMarkTag(bool use) override { dll_.vbmp3_useAtMarkTag(use); }
    void vbmp3_setSeekPlay(bool use) override { dll_.vbmp3_setSeekPlay(use); }
    void vbmp3_setLyricsShift(int milliseconds) override { dll_.vbmp3_setLyricsShift(milliseconds); }

    LibraryError vbmp3_decodeWave(const std::string& source, const std::string& destination) override {
        return result(dll_.vbmp3_decodeWave(source.c_str(), destination.c_str()));
    }
    LibraryError vbmp3_playDecodeWave(const std::string& source, const std::string& destination) override {
        return result(dll_.vbmp3_playDecodeWave(source.c_str(), destination.c_str()));
    }
    LibraryError vbmp3_encodeOpen(const std::string& source) override {
        return result(dll_.vbmp3_encodeOpen(source.c_str()));
    }
    LibraryError vbmp3_encodeStart(const std::string& destination) override {
        return result(dll_.vbmp3_encodeStart(destination.c_str()));
    }
    void vbmp3_encodeStop() override { dll_.vbmp3_encodeStop(); }
    JobReport vbmp3_getEncodeState() override {
        JobReport report;
        std::int32_t permille = 0;
        report.state = static_cast<JobReport::State>(dll_.vbmp3_getEncodeState(&permille));
        report.permille = permille;
        if (report.state == JobReport::State::Failed) report.error = lastError();
        return report;
    }

    LibraryError vbmp3_decodeFile(const std::string& source, const std::string& destination, int cores,
                                  const std::function<bool(double done)>& progress) override {
        const auto told = [](std::int32_t permille, void* context) -> std::int32_t {
            try {
                return (*static_cast<const std::function<bool(double done)>*>(context))(permille / 1000.0);
            } catch (...) {
                return 0;  // not through the library
            }
        };
        void* const context = const_cast<std::function<bool(double done)>*>(&progress);
        return result(dll_.vbmp3_decodeFile(source.c_str(), destination.c_str(), cores, told, context));
    }

    LibraryResult<TrackTexts> vbmp3_readTag(const std::string& path, int kind) override {
        auto record = Sized<vbmp3_TagTexts>();
        std::vector<char> buffer(4096);
        for (;;) {
            record.buffer = buffer.data();
            record.bufferSize = static_cast<std::uint32_t>(buffer.size());
            if (dll_.vbmp3_readTagTexts(path.c_str(), kind, &record)) break;
            // The file may change between the calls, so that one more may be needed.
            if (dll_.vbmp3_getLastErrorNo() != VBMP3_ERROR_SIZE) return lastError();
            buffer.resize(record.needed);
        }
        TrackTexts texts;
        for (std::size_t i = 0; i < kTrackTexts.size(); ++i) texts.*kTrackTexts[i] = TrimAtNull(record.texts[i]);
        texts.genreNumber = record.genreNumber;
        return texts;
    }
    TagExtras vbmp3_countTagExtras(const std::string& path, int kinds) override {
        TagExtras extras;
        std::int32_t pictures = 0, others = 0;
        if (dll_.vbmp3_countTagExtras(path.c_str(), kinds, &pictures, &others)) extras = {pictures, others};
        return extras;
    }
    LibraryError vbmp3_writeTag(const std::string& path, int kinds, const TrackTexts& texts) override {
        auto record = Sized<vbmp3_TagTexts>();
        for (std::size_t i = 0; i < kTrackTexts.size(); ++i) record.texts[i] = (texts.*kTrackTexts[i]).c_str();
        record.genreNumber = texts.genreNumber;
        return result(dll_.vbmp3_writeTagTexts(path.c_str(), kinds, &record));
    }
    LibraryError vbmp3_removeTag(const std::string& path, int kinds) override {
        return result(dll_.vbmp3_removeTag(path.c_str(), kinds));
    }
    LibraryError vbmp3_convertToRmp(const std::string& source, const std::string& destination) override {
        return result(dll_.vbmp3_convertToRmp(source.c_str(), destination.c_str()));
    }
    LibraryError vbmp3_convertToMp3(const std::string& source, const std::string& destination) override {
        return result(dll_.vbmp3_convertToMp3(source.c_str(), destination.c_str()));
    }

  private:
    static void heard(std::int32_t event, void* self) {
        try {
            static_cast<Vbmp3Library*>(self)->listener_(static_cast<LibraryEvent>(event - VBMP3_EVENT_END_OF_TRACK));
        } catch (...) {
            // Not through the library's thread.
        }
    }

    LibraryError lastError() { return ErrorOf(dll_.vbmp3_getLastErrorNo()); }
    LibraryError result(int done) { return done != 0 ? LibraryError::None : lastError(); }

    LibraryResult<TrackInfo> info(decltype(::vbmp3_getFileInfo)* call, const std::string& path) {
        auto record = Sized<vbmp3_FileInfo>();
        if (!call(path.c_str(), &record)) return lastError();
        TrackInfo info = InfoOf(record);
        if (HasFullField(record)) {
            if (auto whole = vbmp3_readTag(path, 0)) info.texts = *whole;
        }
        return info;
    }

    std::string wholeRow(int row) {
        std::string text(dll_.vbmp3_getLyricsText(row, nullptr, 0), '\0');
        dll_.vbmp3_getLyricsText(row, text.data(), static_cast<std::uint32_t>(text.size()));
        return text.c_str();
    }

    Library library_;
    Exports dll_;
    bool initialised_ = false;
    std::function<void(LibraryEvent)> listener_;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<Vbmp3> LoadVbmp3(const std::string& folder) {
    auto library = std::make_unique<win32::Vbmp3Library>(folder);
    if (!library->complete()) return nullptr;
    return library;
}

}  // namespace quenlox
