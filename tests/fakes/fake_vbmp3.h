// A decoding library without sound. Tests say which files it knows and what state it is in, and read what it was asked.
#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "platform/vbmp3.h"
#include "text/encoding.h"

namespace quenlox {

class FakeVbmp3 : public Vbmp3 {
  public:
    // Calls that change something, in order: "open C:\\a.mp3", "pitch 130", "equalizer", "equalizer off".
    std::vector<std::string> calls;
    std::map<std::string, vbmp3_FileInfo> files;
    bool ready = true;
    int error = VBMP3_OK;
    bool playWorks = true;
    bool deviceThere = true;
    int state = 0;                // of vbmp3_getState
    std::int32_t seconds = 0;
    std::int64_t positionMs = 0;
    std::string openFile;
    std::string nextFile;
    std::function<void(int)> listener;
    std::optional<std::array<std::int32_t, 10>> equalizer;
    int pitch = 100;
    std::vector<std::int16_t> waveLeft, waveRight;   // what vbmp3_getWave gives, repeated; empty: it fails
    std::vector<std::int32_t> spectrum;
    std::string lyrics3Raw, lyrics3Text;             // raw empty: none
    vbmp3_Lyrics3Info lyrics3Info{};
    std::vector<std::string> lyricsFiles;            // those that vbmp3_setLyricsFile accepts
    std::string lyricsFile;                          // the one accepted last
    int timeTag = 0;
    vbmp3_LyricsLines lines{};
    int encodeState = 0;
    std::int32_t encodePermille = 0;
    bool jobsWork = true;
    std::map<std::pair<std::string, int>, vbmp3_Tag> tags;
    bool tagWritesWork = true;

    // A file with the given type flags, length and title.
    vbmp3_FileInfo& addFile(const std::string& path, int type = VBMP3_TYPE_MPEG, int length = 60, const std::string& title = {},
                            const std::string& artist = {}, const std::string& album = {}) {
        vbmp3_FileInfo& info = files[path] = {};
        info.size = sizeof info;
        info.fileType = type;
        info.seconds = length;
        info.genreNumber = 255;
        if (type & (VBMP3_TYPE_MPEG | VBMP3_TYPE_RMP)) {
            info.mpegVersion = 10;
            info.layer = 3;
            info.sampleRate = 44100;
            info.bitRate = 128000;
        }
        set(info.title, title);
        set(info.artist, artist);
        set(info.album, album);
        set(info.format, type & VBMP3_TYPE_WAVE ? "WAVE_FORMAT_PCM" : "MPEG1 Layer3 44100Hz 128kbit/s Stereo");
        return info;
    }
    template <std::size_t N>
    static void set(char (&field)[N], const std::string& text) {
        const std::string_view cut = CutUtf8(text, N - 1);
        std::memset(field, 0, N);
        std::memcpy(field, cut.data(), cut.size());
    }
    int count(const std::string& call) const { return static_cast<int>(std::count(calls.begin(), calls.end(), call)); }

    bool vbmp3_init() override { return note("init", ready); }
    void vbmp3_free() override { calls.push_back("free"); }
    int vbmp3_getLastErrorNo() override { return error; }
    std::string vbmp3_getVersion() override { return "1.0.0"; }

    int vbmp3_getFileType(const std::string& path) override {
        const auto found = files.find(path);
        return found == files.end() ? -VBMP3_ERROR_FORMAT : found->second.fileType;
    }
    bool vbmp3_getFileInfo(const std::string& path, vbmp3_FileInfo& info) override {
        const auto found = files.find(path);
        if (found != files.end()) info = found->second;
        return found != files.end();
    }
    std::string vbmp3_getGenre(int number) override {
        return number < 0 || number > 191 ? std::string() : "Genre " + std::to_string(number);
    }

    bool vbmp3_open(const std::string& path, vbmp3_FileInfo& info) override {
        calls.push_back("open " + path);
        if (!vbmp3_getFileInfo(path, info)) {
            if (error == VBMP3_OK) error = VBMP3_ERROR_FORMAT;
            return false;
        }
        openFile = path;
        state = 0;
        return true;
    }
    std::function<void()> onClose;
    void vbmp3_close() override {
        calls.push_back("close");
        if (onClose) onClose();
        openFile.clear();
        nextFile.clear();
        state = 0;
    }
    bool vbmp3_play() override {
        calls.push_back("play");
        if (playWorks) state = 1;
        return playWorks;
    }
    void vbmp3_stop() override {
        calls.push_back("stop");
        state = 0;
    }
    void vbmp3_pause() override {
        calls.push_back("pause");
        state = 2;
    }
    void vbmp3_restart() override {
        calls.push_back("restart");
        state = 1;
    }
    void vbmp3_seek(double to) override {
        calls.push_back("seek " + std::to_string(to));
        positionMs = static_cast<std::int64_t>(to * 1000);
        seconds = static_cast<std::int32_t>(to);
    }
    int vbmp3_getState(std::int32_t& position) override {
        position = seconds;
        return state;
    }
    std::int64_t vbmp3_getPositionMs() override { return positionMs; }
    bool vbmp3_setNextFile(const std::string& path) override {
        calls.push_back("next " + path);
        const bool known = path.empty() || files.contains(path);
        nextFile = known ? path : std::string();
        return known;
    }
    void vbmp3_setListener(std::function<void(int event)> to) override { listener = std::move(to); }
    bool vbmp3_setOutput(int device, int bufferMs) override {
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
    bool vbmp3_getWave(std::span<std::int16_t> left, std::span<std::int16_t> right) override {
        return fill(left, waveLeft) && fill(right, waveRight);
    }
    bool vbmp3_getSpectrum(std::span<std::int32_t> levels) override { return fill(levels, spectrum); }

    bool vbmp3_readLyrics3Data(std::string& raw, std::string& text) override {
        raw = lyrics3Raw;
        text = lyrics3Text;
        return note("readLyrics3", !lyrics3Raw.empty());
    }
    bool vbmp3_getFileLyrics3InfoVB(const std::string&, vbmp3_Lyrics3Info& info) override {
        info = lyrics3Info;
        return lyrics3Info.version != 0;
    }
    bool vbmp3_setLyricsFile(const std::string& path) override {
        const bool known = std::find(lyricsFiles.begin(), lyricsFiles.end(), path) != lyricsFiles.end();
        if (known) lyricsFile = path;
        return note("lyricsFile " + path, known);
    }
    int vbmp3_checkTimeTag() override { return timeTag; }
    bool vbmp3_getLyrics2(vbmp3_LyricsLines& into) override {
        into = lines;
        return lines.total > 0;
    }
    void vbmp3_clearLyrics() override { calls.push_back("clearLyrics"); }
    void vbmp3_setKaraokeUse(int use) override { calls.push_back("karaoke " + std::to_string(use)); }
    void vbmp3_setNotTagLyricsLine(int count) override { calls.push_back("notTagLyricsLine " + std::to_string(count)); }
    void vbmp3_useAtMarkTag(int use) override { calls.push_back("atMarkTag " + std::to_string(use)); }
    void vbmp3_setSeekPlay(int use) override { calls.push_back("seekPlay " + std::to_string(use)); }
    void vbmp3_setLyricsShift(int milliseconds) override { calls.push_back("lyricsShift " + std::to_string(milliseconds)); }

    bool vbmp3_decodeWave(const std::string& from, const std::string& to) override {
        return note("decode " + from + " > " + to, jobsWork);
    }
    bool vbmp3_playDecodeWave(const std::string& from, const std::string& to) override {
        return note("playDecode " + from + " > " + to, jobsWork);
    }
    bool vbmp3_encodeOpen(const std::string& from) override { return note("encodeOpen " + from, jobsWork); }
    bool vbmp3_encodeStart(const std::string& to) override { return note("encodeStart " + to, jobsWork); }
    void vbmp3_encodeStop() override { calls.push_back("encodeStop"); }
    int vbmp3_getEncodeState(std::int32_t& permille) override {
        permille = encodePermille;
        return encodeState;
    }

    bool vbmp3_readTag(const std::string& path, int kind, vbmp3_Tag& tag) override {
        const auto found = tags.find({path, kind});
        tag = found == tags.end() ? vbmp3_Tag{} : found->second;
        tag.size = sizeof tag;
        return found != tags.end();
    }
    bool vbmp3_writeTag(const std::string& path, int kinds, const vbmp3_Tag& tag) override {
        for (const int kind : {VBMP3_TAG_ID3V1, VBMP3_TAG_ID3V2, VBMP3_TAG_SI}) {
            if (tagWritesWork && kinds & kind) tags[{path, kind}] = tag;
        }
        return note("writeTag " + path + " " + std::to_string(kinds), tagWritesWork);
    }
    bool vbmp3_removeTag(const std::string& path, int kinds) override {
        for (const int kind : {VBMP3_TAG_ID3V1, VBMP3_TAG_ID3V2, VBMP3_TAG_SI}) {
            if (tagWritesWork && kinds & kind) tags.erase({path, kind});
        }
        return note("removeTag " + path + " " + std::to_string(kinds), tagWritesWork);
    }
    bool vbmp3_convertToRmp(const std::string& from, const std::string& to) override {
        return note("toRmp " + from + " > " + to, jobsWork);
    }
    bool vbmp3_convertToMp3(const std::string& from, const std::string& to) override {
        return note("toMp3 " + from + " > " + to, jobsWork);
    }

  private:
    bool note(std::string call, bool result) {
        calls.push_back(std::move(call));
        return result;
    }
    template <class T>
    static bool fill(std::span<T> to, const std::vector<T>& from) {
        for (std::size_t i = 0; !from.empty() && i < to.size(); ++i) to[i] = from[i % from.size()];
        return !from.empty();
    }
};

}  // namespace quenlox
