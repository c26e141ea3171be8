// vbmp3.dll behind the program's own interface: every operation that it exports is found by name when it is loaded.
#include <algorithm>
#include <cstring>

#include "platform/vbmp3.h"
#include "platform/win32/platform.h"
#include "platform/win32/services/library.h"

namespace quenlox::win32 {
namespace {

// What the library exports, with the types of its header.
struct Exports {
    decltype(::vbmp3_init)* vbmp3_init = nullptr;
    decltype(::vbmp3_free)* vbmp3_free = nullptr;
    decltype(::vbmp3_getLastErrorNo)* vbmp3_getLastErrorNo = nullptr;
    decltype(::vbmp3_getVersion)* vbmp3_getVersion = nullptr;
    decltype(::vbmp3_getFileType)* vbmp3_getFileType = nullptr;
    decltype(::vbmp3_getFileInfo)* vbmp3_getFileInfo = nullptr;
    decltype(::vbmp3_getGenre)* vbmp3_getGenre = nullptr;
    decltype(::vbmp3_open)* vbmp3_open = nullptr;
    decltype(::vbmp3_close)* vbmp3_close = nullptr;
    decltype(::vbmp3_play)* vbmp3_play = nullptr;
    decltype(::vbmp3_stop)* vbmp3_stop = nullptr;
    decltype(::vbmp3_pause)* vbmp3_pause = nullptr;
    decltype(::vbmp3_restart)* vbmp3_restart = nullptr;
    decltype(::vbmp3_seek)* vbmp3_seek = nullptr;
    decltype(::vbmp3_getState)* vbmp3_getState = nullptr;
    decltype(::vbmp3_getPositionMs)* vbmp3_getPositionMs = nullptr;
    decltype(::vbmp3_setNextFile)* vbmp3_setNextFile = nullptr;
    decltype(::vbmp3_setListener)* vbmp3_setListener = nullptr;
    decltype(::vbmp3_setOutput)* vbmp3_setOutput = nullptr;
    decltype(::vbmp3_hasOutputDevice)* vbmp3_hasOutputDevice = nullptr;
    decltype(::vbmp3_setEqualizer)* vbmp3_setEqualizer = nullptr;
    decltype(::vbmp3_reload)* vbmp3_reload = nullptr;
    decltype(::vbmp3_setPitch)* vbmp3_setPitch = nullptr;
    decltype(::vbmp3_setStepPitch)* vbmp3_setStepPitch = nullptr;
    decltype(::vbmp3_setQuality)* vbmp3_setQuality = nullptr;
    decltype(::vbmp3_getWave)* vbmp3_getWave = nullptr;
    decltype(::vbmp3_getSpectrum)* vbmp3_getSpectrum = nullptr;
    decltype(::vbmp3_readLyrics3Data)* vbmp3_readLyrics3Data = nullptr;
    decltype(::vbmp3_getFileLyrics3InfoVB)* vbmp3_getFileLyrics3InfoVB = nullptr;
    decltype(::vbmp3_setLyricsFile)* vbmp3_setLyricsFile = nullptr;
    decltype(::vbmp3_checkTimeTag)* vbmp3_checkTimeTag = nullptr;
    decltype(::vbmp3_getLyrics2)* vbmp3_getLyrics2 = nullptr;
    decltype(::vbmp3_clearLyrics)* vbmp3_clearLyrics = nullptr;
    decltype(::vbmp3_setKaraokeUse)* vbmp3_setKaraokeUse = nullptr;
    decltype(::vbmp3_setNotTagLyricsLine)* vbmp3_setNotTagLyricsLine = nullptr;
    decltype(::vbmp3_useAtMarkTag)* vbmp3_useAtMarkTag = nullptr;
    decltype(::vbmp3_setSeekPlay)* vbmp3_setSeekPlay = nullptr;
    decltype(::vbmp3_setLyricsShift)* vbmp3_setLyricsShift = nullptr;
    decltype(::vbmp3_decodeWave)* vbmp3_decodeWave = nullptr;
    decltype(::vbmp3_playDecodeWave)* vbmp3_playDecodeWave = nullptr;
    decltype(::vbmp3_encodeOpen)* vbmp3_encodeOpen = nullptr;
    decltype(::vbmp3_encodeStart)* vbmp3_encodeStart = nullptr;
    decltype(::vbmp3_encodeStop)* vbmp3_encodeStop = nullptr;
    decltype(::vbmp3_getEncodeState)* vbmp3_getEncodeState = nullptr;
    decltype(::vbmp3_readTag)* vbmp3_readTag = nullptr;
    decltype(::vbmp3_writeTag)* vbmp3_writeTag = nullptr;
    decltype(::vbmp3_removeTag)* vbmp3_removeTag = nullptr;
    decltype(::vbmp3_convertToRmp)* vbmp3_convertToRmp = nullptr;
    decltype(::vbmp3_convertToMp3)* vbmp3_convertToMp3 = nullptr;

    void resolve(Library& library) {
        library.resolve(vbmp3_init, "vbmp3_init");
        library.resolve(vbmp3_free, "vbmp3_free");
        library.resolve(vbmp3_getLastErrorNo, "vbmp3_getLastErrorNo");
        library.resolve(vbmp3_getVersion, "vbmp3_getVersion");
        library.resolve(vbmp3_getFileType, "vbmp3_getFileType");
        library.resolve(vbmp3_getFileInfo, "vbmp3_getFileInfo");
        library.resolve(vbmp3_getGenre, "vbmp3_getGenre");
        library.resolve(vbmp3_open, "vbmp3_open");
        library.resolve(vbmp3_close, "vbmp3_close");
        library.resolve(vbmp3_play, "vbmp3_play");
        library.resolve(vbmp3_stop, "vbmp3_stop");
        library.resolve(vbmp3_pause, "vbmp3_pause");
        library.resolve(vbmp3_restart, "vbmp3_restart");
        library.resolve(vbmp3_seek, "vbmp3_seek");
        library.resolve(vbmp3_getState, "vbmp3_getState");
        library.resolve(vbmp3_getPositionMs, "vbmp3_getPositionMs");
        library.resolve(vbmp3_setNextFile, "vbmp3_setNextFile");
        library.resolve(vbmp3_setListener, "vbmp3_setListener");
        library.resolve(vbmp3_setOutput, "vbmp3_setOutput");
        library.resolve(vbmp3_hasOutputDevice, "vbmp3_hasOutputDevice");
        library.resolve(vbmp3_setEqualizer, "vbmp3_setEqualizer");
        library.resolve(vbmp3_reload, "vbmp3_reload");
        library.resolve(vbmp3_setPitch, "vbmp3_setPitch");
        library.resolve(vbmp3_setStepPitch, "vbmp3_setStepPitch");
        library.resolve(vbmp3_setQuality, "vbmp3_setQuality");
        library.resolve(vbmp3_getWave, "vbmp3_getWave");
        library.resolve(vbmp3_getSpectrum, "vbmp3_getSpectrum");
        library.resolve(vbmp3_readLyrics3Data, "vbmp3_readLyrics3Data");
        library.resolve(vbmp3_getFileLyrics3InfoVB, "vbmp3_getFileLyrics3InfoVB");
        library.resolve(vbmp3_setLyricsFile, "vbmp3_setLyricsFile");
        library.resolve(vbmp3_checkTimeTag, "vbmp3_checkTimeTag");
        library.resolve(vbmp3_getLyrics2, "vbmp3_getLyrics2");
        library.resolve(vbmp3_clearLyrics, "vbmp3_clearLyrics");
        library.resolve(vbmp3_setKaraokeUse, "vbmp3_setKaraokeUse");
        library.resolve(vbmp3_setNotTagLyricsLine, "vbmp3_setNotTagLyricsLine");
        library.resolve(vbmp3_useAtMarkTag, "vbmp3_useAtMarkTag");
        library.resolve(vbmp3_setSeekPlay, "vbmp3_setSeekPlay");
        library.resolve(vbmp3_setLyricsShift, "vbmp3_setLyricsShift");
        library.resolve(vbmp3_decodeWave, "vbmp3_decodeWave");
        library.resolve(vbmp3_playDecodeWave, "vbmp3_playDecodeWave");
        library.resolve(vbmp3_encodeOpen, "vbmp3_encodeOpen");
        library.resolve(vbmp3_encodeStart, "vbmp3_encodeStart");
        library.resolve(vbmp3_encodeStop, "vbmp3_encodeStop");
        library.resolve(vbmp3_getEncodeState, "vbmp3_getEncodeState");
        library.resolve(vbmp3_readTag, "vbmp3_readTag");
        library.resolve(vbmp3_writeTag, "vbmp3_writeTag");
        library.resolve(vbmp3_removeTag, "vbmp3_removeTag");
        library.resolve(vbmp3_convertToRmp, "vbmp3_convertToRmp");
        library.resolve(vbmp3_convertToMp3, "vbmp3_convertToMp3");
    }
};

// A text of fixed length ends at its NUL, if it has one; blanks around it are dropped.
std::string TextOf(const char* field, std::size_t length) {
    std::string text(field, strnlen(field, length));
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

template <std::size_t Length>
void Trim(char (&field)[Length]) {
    const std::string text = TextOf(field, Length);
    std::memset(field, 0, Length);
    std::memcpy(field, text.data(), std::min(text.size(), Length - 1));
}

void Trim(vbmp3_FileInfo& info) {
    Trim(info.format);
    Trim(info.title);
    Trim(info.artist);
    Trim(info.album);
    Trim(info.comment);
    Trim(info.year);
    Trim(info.genre);
    Trim(info.track);
}

void Trim(vbmp3_Tag& tag) {
    Trim(tag.title);
    Trim(tag.artist);
    Trim(tag.album);
    Trim(tag.comment);
    Trim(tag.year);
    Trim(tag.genre);
    Trim(tag.track);
}

class Vbmp3Library : public Vbmp3 {
  public:
    explicit Vbmp3Library(const std::string& folder) : library_(folder, "vbmp3.dll") { dll_.resolve(library_); }
    ~Vbmp3Library() override {
        // Its threads must not outlive the code they run.
        if (initialised_) dll_.vbmp3_free();
    }
    Vbmp3Library(const Vbmp3Library&) = delete;
    Vbmp3Library& operator=(const Vbmp3Library&) = delete;
    bool complete() const { return library_.complete(); }

    bool vbmp3_init() override { return initialised_ = dll_.vbmp3_init() != 0; }
    void vbmp3_free() override {
        if (std::exchange(initialised_, false)) dll_.vbmp3_free();
    }
    int vbmp3_getLastErrorNo() override { return dll_.vbmp3_getLastErrorNo(); }
    std::string vbmp3_getVersion() override {
        char text[64] = {};
        dll_.vbmp3_getVersion(text, sizeof text);
        return TextOf(text, sizeof text);
    }

    int vbmp3_getFileType(const std::string& path) override { return dll_.vbmp3_getFileType(path.c_str()); }
    bool vbmp3_getFileInfo(const std::string& path, vbmp3_FileInfo& info) override {
        info = {};
        info.size = sizeof info;
        const bool done = dll_.vbmp3_getFileInfo(path.c_str(), &info) != 0;
        Trim(info);
        return done;
    }
    std::string vbmp3_getGenre(int number) override {
        char text[128] = {};
        return dll_.vbmp3_getGenre(number, text, sizeof text) ? TextOf(text, sizeof text) : std::string();
    }

    bool vbmp3_open(const std::string& path, vbmp3_FileInfo& info) override {
        info = {};
        info.size = sizeof info;
        const bool done = dll_.vbmp3_open(path.c_str(), &info) != 0;
        Trim(info);
        return done;
    }
    void vbmp3_close() override { dll_.vbmp3_close(); }
    bool vbmp3_play() override { return dll_.vbmp3_play() != 0; }
    void vbmp3_stop() override { dll_.vbmp3_stop(); }
    void vbmp3_pause() override { dll_.vbmp3_pause(); }
    void vbmp3_restart() override { dll_.vbmp3_restart(); }
    void vbmp3_seek(double seconds) override { dll_.vbmp3_seek(seconds); }
    int vbmp3_getState(std::int32_t& seconds) override { return dll_.vbmp3_getState(&seconds); }
    std::int64_t vbmp3_getPositionMs() override { return dll_.vbmp3_getPositionMs(); }
    bool vbmp3_setNextFile(const std::string& path) override {
        return dll_.vbmp3_setNextFile(path.empty() ? nullptr : path.c_str()) != 0;
    }
    void vbmp3_setListener(std::function<void(int)> listener) override {
        // No call is running once the old listener has been taken back, so it may then go.
        dll_.vbmp3_setListener(nullptr, nullptr);
        listener_ = std::move(listener);
        if (listener_) dll_.vbmp3_setListener(&Vbmp3Library::heard, this);
    }
    bool vbmp3_setOutput(int device, int bufferMs) override { return dll_.vbmp3_setOutput(device, bufferMs) != 0; }
    bool vbmp3_hasOutputDevice() override { return dll_.vbmp3_hasOutputDevice() != 0; }

    void vbmp3_setEqualizer(const std::array<std::int32_t, 10>* gains) override {
        dll_.vbmp3_setEqualizer(gains ? gains->data() : nullptr);
    }
    void vbmp3_reload() override { dll_.vbmp3_reload(); }
    void vbmp3_setPitch(int percent) override { dll_.vbmp3_setPitch(percent); }
    void vbmp3_setStepPitch(int factor, int base) override { dll_.vbmp3_setStepPitch(factor, base); }
    void vbmp3_setQuality(int quality) override { dll_.vbmp3_setQuality(quality); }
    bool vbmp3_getWave(std::span<std::int16_t> left, std::span<std::int16_t> right) override {
        return dll_.vbmp3_getWave(left.data(), right.data(),
                                  static_cast<std::int32_t>(std::min(left.size(), right.size()))) != 0;
    }
    bool vbmp3_getSpectrum(std::span<std::int32_t> levels) override {
        return dll_.vbmp3_getSpectrum(levels.data(), static_cast<std::int32_t>(levels.size())) != 0;
    }

    bool vbmp3_readLyrics3Data(std::string& raw, std::string& text) override {
        std::string rawField(VBMP3_LYRICS_TEXT, '\0'), textField(VBMP3_LYRICS_TEXT, '\0');
        if (!dll_.vbmp3_readLyrics3Data(rawField.data(), textField.data())) return false;
        raw = TextOf(rawField.data(), rawField.size());
        text = TextOf(textField.data(), textField.size());
        return true;
    }
    bool vbmp3_getFileLyrics3InfoVB(const std::string& path, vbmp3_Lyrics3Info& info) override {
        info = {};
        info.size = sizeof info;
        if (!dll_.vbmp3_getFileLyrics3InfoVB(path.c_str(), &info)) return false;
        Trim(info.title);
        Trim(info.artist);
        Trim(info.album);
        Trim(info.author);
        return true;
    }
    bool vbmp3_setLyricsFile(const std::string& path) override { return dll_.vbmp3_setLyricsFile(path.c_str()) != 0; }
    int vbmp3_checkTimeTag() override { return dll_.vbmp3_checkTimeTag(); }
    bool vbmp3_getLyrics2(vbmp3_LyricsLines& lines) override {
        lines = {};
        lines.size = sizeof lines;
        return dll_.vbmp3_getLyrics2(&lines) != 0;
    }
    void vbmp3_clearLyrics() override { dll_.vbmp3_clearLyrics(); }
    void vbmp3_setKaraokeUse(int use) override { dll_.vbmp3_setKaraokeUse(use); }
    void vbmp3_setNotTagLyricsLine(int lines) override { dll_.vbmp3_setNotTagLyricsLine(lines); }
    void vbmp3_useAtMarkTag(int use) override { dll_.vbmp3_useAtMarkTag(use); }
    void vbmp3_setSeekPlay(int use) override { dll_.vbmp3_setSeekPlay(use); }
    void vbmp3_setLyricsShift(int milliseconds) override { dll_.vbmp3_setLyricsShift(milliseconds); }

    bool vbmp3_decodeWave(const std::string& source, const std::string& destination) override {
        return dll_.vbmp3_decodeWave(source.c_str(), destination.c_str()) != 0;
    }
    bool vbmp3_playDecodeWave(const std::string& source, const std::string& destination) override {
        return dll_.vbmp3_playDecodeWave(source.c_str(), destination.c_str()) != 0;
    }
    bool vbmp3_encodeOpen(const std::string& source) override { return dll_.vbmp3_encodeOpen(source.c_str()) != 0; }
    bool vbmp3_encodeStart(const std::string& destination) override {
        return dll_.vbmp3_encodeStart(destination.c_str()) != 0;
    }
    void vbmp3_encodeStop() override { dll_.vbmp3_encodeStop(); }
    int vbmp3_getEncodeState(std::int32_t& permille) override { return dll_.vbmp3_getEncodeState(&permille); }

    bool vbmp3_readTag(const std::string& path, int kind, vbmp3_Tag& tag) override {
        tag = {};
        tag.size = sizeof tag;
        const bool done = dll_.vbmp3_readTag(path.c_str(), kind, &tag) != 0;
        Trim(tag);
        return done;
    }
    bool vbmp3_writeTag(const std::string& path, int kinds, const vbmp3_Tag& tag) override {
        return dll_.vbmp3_writeTag(path.c_str(), kinds, &tag) != 0;
    }
    bool vbmp3_removeTag(const std::string& path, int kinds) override {
        return dll_.vbmp3_removeTag(path.c_str(), kinds) != 0;
    }
    bool vbmp3_convertToRmp(const std::string& source, const std::string& destination) override {
        return dll_.vbmp3_convertToRmp(source.c_str(), destination.c_str()) != 0;
    }
    bool vbmp3_convertToMp3(const std::string& source, const std::string& destination) override {
        return dll_.vbmp3_convertToMp3(source.c_str(), destination.c_str()) != 0;
    }

  private:
    static void heard(std::int32_t event, void* self) {
        try {
            static_cast<Vbmp3Library*>(self)->listener_(event);
        } catch (...) {
            // Not through the library's thread.
        }
    }

    Library library_;
    Exports dll_;
    bool initialised_ = false;
    std::function<void(int)> listener_;
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
