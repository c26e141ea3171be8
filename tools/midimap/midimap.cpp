// A MIDI device for the end-to-end tests, put in the place of Wine's MIDI mapper: the test machine has none, and
// without one a sequence never moves. Takes every message and writes it to the file that QUENLOX_MIDI_LOG names, one
// line each: milliseconds since the device was first used, what arrived (open, close, short, long, reset, volume), its
// value in hex.
#include <windows.h>

#include <mmsystem.h>

#include <mmddk.h>

#include <cstdio>
#include <cstring>
#include <mutex>

namespace {

class Log {
  public:
    void write(const char* what, unsigned long value) {
        std::lock_guard lock(mutex_);
        if (!file_) open();
        if (!file_) return;
        std::fprintf(file_, "%llu %s %lx\n", GetTickCount64() - start_, what, value);
        std::fflush(file_);
    }

  private:
    void open() {
        wchar_t name[MAX_PATH];
        const DWORD length = GetEnvironmentVariableW(L"QUENLOX_MIDI_LOG", name, MAX_PATH);
        if (length == 0 || length >= MAX_PATH) return;
        file_ = _wfopen(name, L"ab");
        start_ = GetTickCount64();
    }

    std::mutex mutex_;
    std::FILE* file_ = nullptr;
    ULONGLONG start_ = 0;
};

Log& TheLog() {
    static Log log;
    return log;
}

DWORD Capabilities(void* target, DWORD_PTR size) {
    MIDIOUTCAPSW caps = {};
    caps.wTechnology = MOD_MAPPER;
    lstrcpyW(caps.szPname, L"Test MIDI device");
    caps.wChannelMask = 0xFFFF;
    caps.dwSupport = MIDICAPS_VOLUME;
    std::memcpy(target, &caps, size < sizeof caps ? size : sizeof caps);
    return MMSYSERR_NOERROR;
}

bool IsHousekeeping(UINT message) {
    return message == DRVM_INIT || message == DRVM_EXIT || message == DRVM_ENABLE || message == DRVM_DISABLE;
}

}  // namespace

extern "C" LRESULT CALLBACK DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM a, LPARAM b) {
    const bool comesOrGoes = message == DRV_LOAD || message == DRV_FREE || message == DRV_OPEN || message == DRV_CLOSE ||
                             message == DRV_ENABLE || message == DRV_DISABLE;
    return comesOrGoes ? 1 : DefDriverProc(id, driver, message, a, b);
}

extern "C" DWORD WINAPI modMessage(UINT, UINT message, DWORD_PTR user, DWORD_PTR a, DWORD_PTR b) {
    if (IsHousekeeping(message)) return MMSYSERR_NOERROR;
    switch (message) {
        case MODM_OPEN:
            TheLog().write("open", 0);
            *reinterpret_cast<DWORD_PTR*>(user) = 1;
            return MMSYSERR_NOERROR;
        case MODM_CLOSE:
            TheLog().write("close", 0);
            return MMSYSERR_NOERROR;
        case MODM_DATA:
            TheLog().write("short", static_cast<unsigned long>(a));
            return MMSYSERR_NOERROR;
        case MODM_LONGDATA: {
            auto& header = *reinterpret_cast<MIDIHDR*>(a);
            TheLog().write("long", header.dwBufferLength);
            header.dwFlags = (header.dwFlags & ~static_cast<DWORD>(MHDR_INQUEUE)) | MHDR_DONE;
            return MMSYSERR_NOERROR;
        }
        case MODM_PREPARE:
            reinterpret_cast<MIDIHDR*>(a)->dwFlags |= MHDR_PREPARED;
            return MMSYSERR_NOERROR;
        case MODM_UNPREPARE:
            reinterpret_cast<MIDIHDR*>(a)->dwFlags &= ~static_cast<DWORD>(MHDR_PREPARED);
            return MMSYSERR_NOERROR;
        case MODM_RESET:
            TheLog().write("reset", 0);
            return MMSYSERR_NOERROR;
        case MODM_GETNUMDEVS:
            return 1;
        case MODM_SETVOLUME:
            TheLog().write("volume", static_cast<unsigned long>(a));
            return MMSYSERR_NOERROR;
        case MODM_GETVOLUME:
            *reinterpret_cast<DWORD*>(a) = 0xFFFFFFFF;
            return MMSYSERR_NOERROR;
        case MODM_GETDEVCAPS:
            return Capabilities(reinterpret_cast<void*>(a), b);
        default:
            return MMSYSERR_NOTSUPPORTED;
    }
}

extern "C" DWORD WINAPI midMessage(UINT, UINT message, DWORD_PTR, DWORD_PTR, DWORD_PTR) {
    return IsHousekeeping(message) ? MMSYSERR_NOERROR : MMSYSERR_NOTSUPPORTED;
}
