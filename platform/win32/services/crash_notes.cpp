// Writes the note of a crash. The thread that failed may have no stack left and hold any lock, so it only hands over
// what it knows and waits; a thread that has waited for this since the start does the work, with memory set aside
// then. The text comes first and is flushed, then the dump, then the calls on the stack: each may be the one that
// fails.
#include "platform/crash_notes.h"

#include <windows.h>

#include <dbghelp.h>
#include <shlobj.h>

#include <cxxabi.h>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <exception>
#include <string_view>
#include <typeinfo>

#include "crash/action_log.h"
#include "crash/crash_note.h"
#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {
namespace {

constexpr int kKeptNotes = 5;
constexpr int kCalls = 24;
constexpr DWORD kWriteLimitMs = 60'000;     // a dump takes less than a second, but many on a machine that is busy
constexpr ULONG kStackReserve = 32 * 1024;  // bytes that a handler has when the stack is full
constexpr SIZE_T kWriterStack = 256 * 1024;
constexpr DWORD kHeapCorruption = 0xC0000374, kInvalidParameter = 0xC0000417, kEndRequested = 0x40000015;
constexpr wchar_t kPrefix[] = L"Quenlox-";

// A path of fixed size; too long a one comes out empty.
struct Path {
    wchar_t text[512] = {};

    bool set(std::initializer_list<const wchar_t*> parts) noexcept {
        std::size_t used = 0;
        for (const wchar_t* part : parts) {
            const std::size_t length = std::wcslen(part);
            if (used + length >= std::size(text)) {
                text[0] = 0;
                return false;
            }
            std::wmemcpy(text + used, part, length);
            used += length;
        }
        text[used] = 0;
        return used > 0;
    }
};

class CrashNotesWin32;
// The handlers of the system are plain functions: this is how they find the one that watches.
std::atomic<CrashNotesWin32*> theWatch = nullptr;

class CrashNotesWin32 : public CrashNotes {
  public:
    CrashNotesWin32(std::string_view version, std::string_view commit)
        : version_(version), commit_(commit), mainThread_(GetCurrentThreadId()) {
        PWSTR folder = nullptr;
        if (SUCCEEDED(SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_DONT_VERIFY, nullptr, &folder))) {
            parent_.set({folder, L"\\Quenlox"});
            folder_.set({folder, L"\\Quenlox\\crash"});
        }
        CoTaskMemFree(folder);
        wanted_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        done_.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
        if (folder_.text[0] == 0 || !wanted_ || !done_) return;
        writer_.reset(CreateThread(nullptr, kWriterStack, &CrashNotesWin32::Wait, this,
                                   STACK_SIZE_PARAM_IS_A_RESERVATION, &writerId_));
        if (!writer_) return;
        ULONG reserve = kStackReserve;
        SetThreadStackGuarantee(&reserve);
        theWatch = this;
        oldFilter_ = SetUnhandledExceptionFilter(&CrashNotesWin32::Unhandled);
        // A full stack and a broken heap are seen before anything else is called: with either, the way to the filter
        // may not be passable.
        vectored_ = AddVectoredExceptionHandler(1, &CrashNotesWin32::First);
        std::set_terminate(&CrashNotesWin32::Terminated);
        std::signal(SIGABRT, &CrashNotesWin32::Aborted);  // also what a library's own terminate ends in
        _set_invalid_parameter_handler(&CrashNotesWin32::InvalidParameter);
    }

    ~CrashNotesWin32() override {
        if (!writer_) return;
        RemoveVectoredExceptionHandler(vectored_);
        SetUnhandledExceptionFilter(oldFilter_);
        std::set_terminate(&std::abort);
        std::signal(SIGABRT, SIG_DFL);
        _set_invalid_parameter_handler(nullptr);
        theWatch = nullptr;
        ending_ = true;
        SetEvent(wanted_.get());
        WaitForSingleObject(writer_.get(), INFINITE);
    }
    CrashNotesWin32(const CrashNotesWin32&) = delete;
    CrashNotesWin32& operator=(const CrashNotesWin32&) = delete;

    void follow(const ActionLog* actions) noexcept override { actions_ = actions; }

  private:
    // On the thread that failed.

    // With `endWith` other than 0 the writer ends the process with it. A thread whose stack is full may not live to do so
    // itself: waiting alone can take more of the stack than there is, and then the system ends the thread alone.
    void tell(EXCEPTION_POINTERS* exception, const char* reason, DWORD endWith = 0) noexcept {
        if (GetCurrentThreadId() == writerId_) {  // failed while writing: what there is has to do
            SetEvent(done_.get());
            return;
        }
        if (!told_.exchange(true)) {
            exception_ = exception;
            reason_ = reason;
            endWith_ = endWith;
            failedThread_ = GetCurrentThreadId();
            SetEvent(wanted_.get());
        }
        WaitForSingleObject(done_.get(), kWriteLimitMs);
    }

    static LONG CALLBACK First(EXCEPTION_POINTERS* exception) {
        const DWORD code = exception->ExceptionRecord->ExceptionCode;
        CrashNotesWin32* watch = theWatch;
        if (!watch || (code != STATUS_STACK_OVERFLOW && code != kHeapCorruption)) return EXCEPTION_CONTINUE_SEARCH;
        watch->tell(exception, "", code);
        // Nobody can go on from here, and looking for somebody who might hangs where there is no stack to look on.
        TerminateProcess(GetCurrentProcess(), code);
        return EXCEPTION_CONTINUE_SEARCH;
    }

    // The system goes on with what it does when a program fails: its own report, or a debugger.
    static LONG CALLBACK Unhandled(EXCEPTION_POINTERS* exception) {
        if (CrashNotesWin32* watch = theWatch) watch->tell(exception, "");
        return EXCEPTION_CONTINUE_SEARCH;
    }

    // A failure that is no exception of the system. Ends the process: the C library would put a box on the screen.
    [[noreturn]] static void endHere(DWORD code, const char* reason) noexcept {
        CONTEXT context{};
        RtlCaptureContext(&context);
        EXCEPTION_RECORD record{};
        record.ExceptionCode = code;
        record.ExceptionAddress = reinterpret_cast<void*>(context.Rip);
        EXCEPTION_POINTERS exception{&record, &context};
        if (CrashNotesWin32* watch = theWatch) watch->tell(&exception, reason, code);
        TerminateProcess(GetCurrentProcess(), code);
        std::_Exit(3);
    }
    static void Terminated() {
        const std::type_info* type = abi::__cxa_current_exception_type();
        endHere(kEndRequested, type ? type->name() : "no exception");
    }
    static void Aborted(int) { endHere(kEndRequested, "abort"); }
    static void InvalidParameter(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t) {
        endHere(kInvalidParameter, "");
    }

    // On the writing thread.

    static DWORD CALLBACK Wait(void* self) {
        auto* watch = static_cast<CrashNotesWin32*>(self);
        WaitForSingleObject(watch->wanted_.get(), INFINITE);
        if (watch->ending_) return 0;
        watch->write();
        if (watch->endWith_ != 0) TerminateProcess(GetCurrentProcess(), watch->endWith_);
        SetEvent(watch->done_.get());
        return 0;
    }

    void write() noexcept {
        SYSTEMTIME now{};
        GetLocalTime(&now);
        wchar_t stamp[64];
        std::swprintf(stamp, std::size(stamp), L"%04u%02u%02u-%02u%02u%02u-%lu", now.wYear, now.wMonth, now.wDay,
                      now.wHour, now.wMinute, now.wSecond, GetCurrentProcessId());
        Path note;
        if (note.set({folder_.text, L"\\", kPrefix, stamp, L".txt"})) {
            CreateDirectoryW(parent_.text, nullptr);
            CreateDirectoryW(folder_.text, nullptr);
            const HANDLE file = CreateFileW(note.text, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                            FILE_ATTRIBUTE_NORMAL, nullptr);
            if (file != INVALID_HANDLE_VALUE) {
                writeFacts(file, now);
                const bool dumped = writeDump(stamp);
                writeCalls(file, dumped);
                CloseHandle(file);
                removeOld();
            }
        }
    }

    void append(HANDLE file, const NoteText& text) noexcept {
        DWORD written = 0;
        WriteFile(file, text.view().data(), static_cast<DWORD>(text.view().size()), &written, nullptr);
        FlushFileBuffers(file);
    }

    void writeFacts(HANDLE file, const SYSTEMTIME& now) noexcept {
        const EXCEPTION_RECORD& record = *exception_->ExceptionRecord;
        CrashFacts facts;
        facts.version = version_;
        facts.commit = commit_;
        facts.year = now.wYear;
        facts.month = now.wMonth;
        facts.day = now.wDay;
        facts.hour = now.wHour;
        facts.minute = now.wMinute;
        facts.second = now.wSecond;
        facts.code = record.ExceptionCode;
        facts.reason = reason_;
        facts.place = placeOf(reinterpret_cast<DWORD64>(record.ExceptionAddress));
        facts.touchesMemory = record.ExceptionCode == STATUS_ACCESS_VIOLATION && record.NumberParameters >= 2;
        facts.writes = facts.touchesMemory && record.ExceptionInformation[0] == 1;
        facts.address = facts.touchesMemory ? record.ExceptionInformation[1] : 0;
        facts.userInterface = failedThread_ == mainThread_;
        NoteText note(buffer_);
        WriteCrashNote(note, facts, actions_);
        append(file, note);
    }

    // The name of the module is valid until the next call.
    CodePlace placeOf(DWORD64 address) noexcept {
        HMODULE module = nullptr;
        constexpr DWORD kByAddress =
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
        if (!GetModuleHandleExW(kByAddress, reinterpret_cast<const wchar_t*>(address), &module)) return {"", address};
        const DWORD length =
            GetModuleFileNameW(module, moduleFile_.text, static_cast<DWORD>(std::size(moduleFile_.text)));
        const std::wstring_view file(moduleFile_.text, length);
        std::size_t used = 0;
        for (const wchar_t c : file.substr(file.rfind(L'\\') + 1)) {
            if (used < std::size(moduleName_)) moduleName_[used++] = c > L' ' && c <= L'~' ? static_cast<char>(c) : '?';
        }
        return {{moduleName_, used}, address - reinterpret_cast<DWORD64>(module)};
    }

    bool writeDump(const wchar_t* stamp) noexcept {
        Path path;
        const HMODULE help = LoadLibraryExW(L"dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        if (!help || !path.set({folder_.text, L"\\", kPrefix, stamp, L".dmp"})) return false;
        const auto writeDump = reinterpret_cast<decltype(&MiniDumpWriteDump)>(
            reinterpret_cast<void*>(GetProcAddress(help, "MiniDumpWriteDump")));
        if (!writeDump) return false;
        const HANDLE file = CreateFileW(path.text, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        MINIDUMP_EXCEPTION_INFORMATION information{failedThread_, exception_, FALSE};
        // Of the stacks only what finding the calls needs: the rest may hold names of the user's files.
        constexpr auto kWhat = static_cast<MINIDUMP_TYPE>(MiniDumpWithThreadInfo | MiniDumpWithUnloadedModules |
                                                          MiniDumpFilterMemory | MiniDumpFilterModulePaths);
        const bool whole = writeDump(GetCurrentProcess(), GetCurrentProcessId(), file, kWhat, &information, nullptr,
                                     nullptr) != FALSE &&
                           forgetNames(file);
        CloseHandle(file);
        if (!whole) DeleteFileW(path.text);
        return whole;
    }

    // Not every system does what the two flags ask for. So of each module its file name only is left, as the folders
    // tell who the user is, and of the memory only what is an address within a module or within that memory.
    static bool forgetNames(HANDLE file) noexcept {
        const HANDLE mapping = CreateFileMappingW(file, nullptr, PAGE_READWRITE, 0, 0, nullptr);
        auto* dump = mapping ? static_cast<std::byte*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0)) : nullptr;
        if (dump) {
            const auto* modules = StreamOf<MINIDUMP_MODULE_LIST>(dump, ModuleListStream);
            const auto* memory = StreamOf<MINIDUMP_MEMORY_LIST>(dump, MemoryListStream);
            for (ULONG32 i = 0; modules && i < modules->NumberOfModules; ++i)
                forgetFolder(*reinterpret_cast<MINIDUMP_STRING*>(dump + modules->Modules[i].ModuleNameRva));
            for (ULONG32 i = 0; modules && memory && i < memory->NumberOfMemoryRanges; ++i) {
                const MINIDUMP_LOCATION_DESCRIPTOR& place = memory->MemoryRanges[i].Memory;
                for (ULONG32 at = 0; at < place.DataSize; at += sizeof(ULONG64)) {
                    ULONG64 word = 0;
                    const std::size_t size = std::min<std::size_t>(sizeof word, place.DataSize - at);
                    std::memcpy(&word, dump + place.Rva + at, size);
                    if (!IsAddress(*modules, *memory, word)) std::memset(dump + place.Rva + at, 0, size);
                }
            }
            UnmapViewOfFile(dump);
        }
        if (mapping) CloseHandle(mapping);
        return dump != nullptr;
    }

    // A part of a dump; null when the dump has none of the kind.
    template <typename Stream>
    static const Stream* StreamOf(const std::byte* dump, ULONG32 type) noexcept {
        const auto* header = reinterpret_cast<const MINIDUMP_HEADER*>(dump);
        const auto* streams = reinterpret_cast<const MINIDUMP_DIRECTORY*>(dump + header->StreamDirectoryRva);
        for (ULONG32 i = 0; i < header->NumberOfStreams; ++i) {
            if (streams[i].StreamType == type) return reinterpret_cast<const Stream*>(dump + streams[i].Location.Rva);
        }
        return nullptr;
    }

    static bool IsAddress(const MINIDUMP_MODULE_LIST& modules, const MINIDUMP_MEMORY_LIST& memory,
                          ULONG64 word) noexcept {
        for (ULONG32 i = 0; i < modules.NumberOfModules; ++i) {
            if (word - modules.Modules[i].BaseOfImage < modules.Modules[i].SizeOfImage) return true;
        }
        for (ULONG32 i = 0; i < memory.NumberOfMemoryRanges; ++i) {
            if (word - memory.MemoryRanges[i].StartOfMemoryRange < memory.MemoryRanges[i].Memory.DataSize) return true;
        }
        return false;
    }

    static void forgetFolder(MINIDUMP_STRING& name) noexcept {
        const std::size_t length = name.Length / sizeof(wchar_t);
        const std::size_t start = std::wstring_view(name.Buffer, length).rfind(L'\\') + 1;
        std::wmemmove(name.Buffer, name.Buffer + start, length - start);
        std::wmemset(name.Buffer + length - start, 0, start);
        name.Length = static_cast<ULONG32>((length - start) * sizeof(wchar_t));
    }

    // The failed thread stands still, so its stack can be walked from here.
    void writeCalls(HANDLE file, bool dumped) noexcept {
        NoteText start(buffer_);
        start.text(dumped ? "dump    beside this file" : "dump    none").line().text("calls").line();
        append(file, start);
        CONTEXT context = *exception_->ContextRecord;
        for (int call = 0; call < kCalls && context.Rip != 0; ++call) {
            NoteText text(buffer_);
            text.text("  ");
            WritePlace(text, placeOf(context.Rip));
            append(file, text.line());
            DWORD64 base = 0, frame = 0;
            void* data = nullptr;
            if (PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(context.Rip, &base, nullptr)) {
                RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &data, &frame, nullptr);
            } else {
                SIZE_T read = 0;
                DWORD64 caller = 0;
                if (!ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(context.Rsp), &caller,
                                       sizeof caller, &read))
                    break;
                context.Rip = caller;
                context.Rsp += sizeof caller;
            }
        }
    }

    // Names begin with the time, so the first in their order is the oldest.
    void removeOld() noexcept {
        for (;;) {
            Path pattern;
            if (!pattern.set({folder_.text, L"\\", kPrefix, L"*.txt"})) return;
            WIN32_FIND_DATAW found;
            const HANDLE find = FindFirstFileW(pattern.text, &found);
            if (find == INVALID_HANDLE_VALUE) return;
            wchar_t oldest[MAX_PATH] = {};
            int count = 0;
            do {
                ++count;
                if (oldest[0] == 0 || std::wcscmp(found.cFileName, oldest) < 0)
                    std::wmemcpy(oldest, found.cFileName, MAX_PATH);
            } while (FindNextFileW(find, &found));
            FindClose(find);
            if (count <= kKeptNotes) return;
            Path path;
            if (!path.set({folder_.text, L"\\", oldest}) || !DeleteFileW(path.text)) return;
            oldest[std::wcslen(oldest) - 4] = 0;  // ".txt"
            if (path.set({folder_.text, L"\\", oldest, L".dmp"})) DeleteFileW(path.text);
        }
    }

    const std::string_view version_, commit_;
    const DWORD mainThread_;
    Path parent_, folder_;
    OwnedHandle wanted_, done_, writer_;
    DWORD writerId_ = 0;
    LPTOP_LEVEL_EXCEPTION_FILTER oldFilter_ = nullptr;
    void* vectored_ = nullptr;
    std::atomic<const ActionLog*> actions_ = nullptr;
    std::atomic<bool> told_ = false, ending_ = false;
    // Set before the writer is woken.
    EXCEPTION_POINTERS* exception_ = nullptr;
    const char* reason_ = "";
    DWORD endWith_ = 0, failedThread_ = 0;
    // Used by the writer.
    Path moduleFile_;
    char moduleName_[64] = {};
    char buffer_[8192] = {};
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<CrashNotes> MakeCrashNotes(std::string_view version, std::string_view commit) {
    return std::make_unique<win32::CrashNotesWin32>(version, commit);
}

}  // namespace quenlox
