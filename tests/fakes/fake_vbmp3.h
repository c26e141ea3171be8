// A decoding library without sound. Tests say which files it knows and what state it is in, and read what it was asked.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/vbmp3.h"

namespace quenlox {

inline constexpr FileType kMpegFile{.mpeg = true}, kRmpFile{.mpeg = true, .rmp = true}, kWaveFile{.wave = true};

class FakeVbmp3 : public Vbmp3 {
  public:
    // Calls that change something, in order: "open C:\\a.mp3", "pitch 130", "equalizer", "equalizer off".
    std::vector<std::string> calls;
    std::map<std::string, TrackInfo> files;
    LibraryError error = LibraryError::None;  // of what is to fail; Format where it names none
    bool playWorks = true;
    bool deviceThere = true;
    PlayReport playing;
    std::int64_t positionMs = 0;
    std::string openFile;
    std::string nextFile;
    std::function<void(LibraryEvent)> listener;
    std::optional<std::array<std::int32_t, 10>> equalizer;
    int pitch = 100;
    std::vector<std::int16_t> waveLeft, waveRight;  // what vbmp3_getWave gives, repeated; empty: silence
    std::vector<std::int32_t> spectrum;
    std::optional<std::string> lyrics3Data, lyrics3Info;
    std::vector<std::string> lyricsFiles;  // those that vbmp3_setLyricsFile accepts
    std::string lyricsFile;                // the one accepted last
    bool timeTag = false;
    LyricsLines lines;
    JobReport job;
    bool jobsWork = true;
    std::map<std::pair<std::string, int>, TrackTexts> tags;
    std::map<std::pair<std::string, int>, TagExtras> tagExtras;
    bool tagWritesWork = true;

    // A file of the given type, length and texts.
    TrackInfo& addFile(const std::string& path, FileType type = kMpegFile, int length = 60, std::string title = {},
                       std::string artist = {}, std::string album = {}) {
        TrackInfo& info = files[path] = {};
        info.type = type;
        info.seconds = length;
        if (type.mpeg) {
            info.mpegVersion = 10;
            info.layer = 3;
            info.sampleRate = 44100;
            info.bitRate = 128000;
        }
        info.texts.title = std::move(title);
        info.texts.artist = std::move(artist);
        info.texts.album = std::move(album);
        info.format = type.wave ? "WAVE_FORMAT_PCM" : "MPEG1 Layer3 44100Hz 128kbit/s Stereo";
        return info;
    }
    int count(const std::string& call) const { return static_cast<int>(std::count(calls.begin(), calls.end(), call)); }

    LibraryError vbmp3_init() override { return note("init", true); }
    void vbmp3_free() override { calls.push_back("free"); }
    std::string vbmp3_getVersion() override { return "1.0.0"; }

    LibraryResult<FileType> vbmp3_getFileType(const std::string& path) override {
        const auto found = files.find(path);
        if (found == files.end()) return LibraryError::Format;
        return found->second.type;
    }
    LibraryResult<TrackInfo> vbmp3_getFileInfo(const std::string& path) override {
        const auto found = files.find(path);
        if (found == files.end()) return why();
        return found->second;
    }
    std::string vbmp3_getGenre(int number) override {
        return number < 0 || number > 191 ? std::string() : "Genre " + std::to_string(number);
    }

    LibraryResult<TrackInfo> vbmp3_open(const std::string& path) override {
        calls.push_back("open " + path);
        auto info = vbmp3_getFileInfo(path);
        if (info) {
            openFile = path;
            playing.state = PlayReport::State::Stopped;
        }
        return info;
    }
    std::function<void()> onClose;
    void vbmp3_close() override {
        calls.push_back("close");
        if (onClose) onClose();
        openFile.clear();
        nextFile.clear();
        playing.state = PlayReport::State::Stopped;
    }
    LibraryError vbmp3_play() override {
        if (playWorks) playing.state = PlayReport::State::Playing;
        return note("play", playWorks);
    }
    void vbmp3_stop() override { move("stop", PlayReport::State::Stopped); }
    void vbmp3_pause() override { move("pause", PlayReport::State::Paused); }
    void vbmp3_restart() override { move("restart", PlayReport::State::Playing); }
    void vbmp3_seek(double to) override {
        calls.push_back("seek " + std::to_string(to));
        positionMs = static_cast<std::int64_t>(to * 1000);
        playing.seconds = static_cast<std::int32_t>(to);
    }
    PlayReport vbmp3_getState() override { return playing; }
    std::int64_t vbmp3_getPositionMs() override { return positionMs; }
    LibraryError vbmp3_setNextFile(const std::string& path) override {
        const bool known = path.empty() || files.contains(path);
        nextFile = known ? path : std::string();
        return note("next " + path, known);
    }
    void vbmp3_setListener(std::function<void(LibraryEvent event)> to) override { listener = std::move(to); }
    LibraryError vbmp3_setOutput(int device, int bufferMs) override {
        return note("output " + std::to_string(device) + " " + std::to_string(bufferMs), true);
    }
    bool vbmp3_hasOutputDevice() override { return deviceThere; }

    void vbmp3_setEqualizer(const std::array<std::int32_t, 10>* gains) override {
        calls.push_back(gains ? "equalizer" : "equalizer off");
        equalizer = gains ? std::optional(*gains) : std::nullopt;
    }
    void vbmp3_reload() override { calls.push_back("reload"); }
    void vbmp3_setPitch(int percent) override {
        calls.push_back("pitch " + std::to_string(percent));
        pitch = percent;
    }
    void vbmp3_setStepPitch(int factor, int base) override {
        calls.push_back("step " + std::to_string(factor) + " " + std::to_string(base));
    }
    void vbmp3_setQuality(int quality) override { calls.push_back("quality " + std::to_string(quality)); }
    void vbmp3_getWave(std::span<std::int16_t> left, std::span<std::int16_t> right) override {
        fill(left, waveLeft);
        fill(right, waveRight);
    }
    void vbmp3_getSpectrum(std::span<std::int32_t> levels) override { fill(levels, spectrum); }

    std::optional<std::string> vbmp3_readLyrics3Data() override {
        calls.push_back("readLyrics3");
        return lyrics3Data;
    }
    std::optional<std::string> vbmp3_getFileLyrics3InfoVB(const std::string&) override { return lyrics3Info; }
    bool vbmp3_setLyricsFile(const std::string& path) override {
        calls.push_back("lyricsFile " + path);
        const bool known = std::find(lyricsFiles.begin(), lyricsFiles.end(), path) != lyricsFiles.end();
        if (known) lyricsFile = path;
        return known;
    }
    bool vbmp3_checkTimeTag() override { return timeTag; }
    LyricsLines vbmp3_getLyrics2() override { return lines.total > 0 ? lines : LyricsLines{}; }
    void vbmp3_clearLyrics() override { calls.push_back("clearLyrics"); }
    void vbmp3_setKaraokeUse(bool use) override { calls.push_back("karaoke " + std::to_string(use)); }
    void vbmp3_setNotTagLyricsLine(int count) override { calls.push_back("notTagLyricsLine " + std::to_string(count)); }
    void vbmp3_useAtMarkTag(bool use) override { calls.push_back("atMarkTag " + std::to_string(use)); }
    void vbmp3_setSeekPlay(bool use) override { calls.push_back("seekPlay " + std::to_string(use)); }
    void vbmp3_setLyricsShift(int milliseconds) override {
        calls.push_back("lyricsShift " + std::to_string(milliseconds));
    }

    LibraryError vbmp3_decodeWave(const std::string& from, const std::string& to) override {
        return note("decode " + from + " > " + to, jobsWork);
    }
    LibraryError vbmp3_playDecodeWave(const std::string& from, const std::string& to) override {
        return note("playDecode " + from + " > " + to, jobsWork);
    }
    LibraryError vbmp3_encodeOpen(const std::string& from) override { return note("encodeOpen " + from, jobsWork); }
    LibraryError vbmp3_encodeStart(const std::string& to) override { return note("encodeStart " + to, jobsWork); }
    void vbmp3_encodeStop() override { calls.push_back("encodeStop"); }
    JobReport vbmp3_getEncodeState() override { return job; }

    std::function<LibraryError(const std::string&, const std::function<bool(double)>&)> decoding;  // on its thread
    LibraryError vbmp3_decodeFile(const std::string& from, const std::string&, int,
                                  const std::function<bool(double done)>& progress) override {
        return decoding ? decoding(from, progress) : LibraryError::None;
    }

    LibraryResult<TrackTexts> vbmp3_readTag(const std::string& path, int kind) override {
        const auto found = tags.find({path, kind});
        if (found == tags.end()) return LibraryError::None;
        return found->second;
    }
    TagExtras vbmp3_countTagExtras(const std::string& path, int kind) override { return tagExtras[{path, kind}]; }
    LibraryError vbmp3_writeTag(const std::string& path, int kinds, const TrackTexts& texts) override {
        for (const int kind : {kTagId3v1, kTagId3v2, kTagSi}) {
            if (tagWritesWork && kinds & kind) tags[{path, kind}] = texts;
        }
        return note("writeTag " + path + " " + std::to_string(kinds), tagWritesWork);
    }
    LibraryError vbmp3_removeTag(const std::string& path, int kinds) override {
        for (const int kind : {kTagId3v1, kTagId3v2, kTagSi, kTagApe}) {
            if (tagWritesWork && kinds & kind) tags.erase({path, kind});
        }
        return note("removeTag " + path + " " + std::to_string(kinds), tagWritesWork);
    }
    LibraryError vbmp3_convertToRmp(const std::string& from, const std::string& to) override {
        return note("toRmp " + from + " > " + to, jobsWork);
    }
    LibraryError vbmp3_convertToMp3(const std::string& from, const std::string& to) override {
        return note("toMp3 " + from + " > " + to, jobsWork);
    }

  private:
    LibraryError why() const { return error == LibraryError::None ? LibraryError::Format : error; }
    LibraryError note(std::string call, bool works) {
        calls.push_back(std::move(call));
        return works ? LibraryError::None : why();
    }
    void move(const char* call, PlayReport::State to) {
        calls.emplace_back(call);
        playing.state = to;
    }
    template <class T>
    static void fill(std::span<T> to, const std::vector<T>& from) {
        for (std::size_t i = 0; !from.empty() && i < to.size(); ++i) to[i] = from[i % from.size()];
    }
};

}  // namespace quenlox
