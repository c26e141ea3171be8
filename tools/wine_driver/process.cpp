#include "tools/wine_driver/process.h"

#include <tlhelp32.h>

#include <memory>

namespace driver {
namespace {

struct Closer {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, Closer>;

Handle ProcessOf(HWND window, DWORD& id) {
    GetWindowThreadProcessId(window, &id);
    Handle process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, id));
    if (!process) throw Failure("the process cannot be opened, error " + std::to_string(GetLastError()));
    return process;
}

template <class Function>
Function NtFunction(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

// Wine tells no handles of another process by GetProcessHandleCount; the list of all handles of the system has them.
size_t HandlesOf(DWORD id) {
    struct Entry {
        void* object;
        ULONG_PTR process, handle;
        ULONG access;
        USHORT trace, type;
        ULONG attributes, reserved;
    };
    struct Head {
        ULONG_PTR count, reserved;
    };
    const auto query = NtFunction<LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*)>("NtQuerySystemInformation");
    std::string buffer(1 << 22, '\0');
    if (query(64, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr) != 0)
        return 0;  // SystemExtendedHandleInformation
    const auto* head = reinterpret_cast<const Head*>(buffer.data());
    const auto* entries = reinterpret_cast<const Entry*>(head + 1);
    size_t count = 0;
    for (ULONG_PTR i = 0; i < head->count; ++i) count += entries[i].process == id;
    return count;
}

// GetGuiResources counts nothing under Wine; the table of GDI objects that every process carries does.
size_t GdiObjectsOf(HANDLE process) {
    if (const DWORD count = GetGuiResources(process, GR_GDIOBJECTS)) return count;
    constexpr size_t kTableAt = 0xF8, kEntries = 16384, kEntrySize = 24, kTypeAt = 12;
    struct {
        LONG status;
        char* environment;
        ULONG_PTR rest[4];
    } basic{};
    const auto query = NtFunction<LONG(WINAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*)>("NtQueryInformationProcess");
    char* table = nullptr;
    std::string entries(kEntries * kEntrySize, '\0');
    if (query(process, 0, &basic, sizeof basic, nullptr) != 0 ||
        !ReadProcessMemory(process, basic.environment + kTableAt, &table, sizeof table, nullptr) ||
        !ReadProcessMemory(process, table, entries.data(), entries.size(), nullptr))
        return 0;
    size_t count = 0;
    for (size_t i = 0; i < kEntries; ++i) count += (entries[i * kEntrySize + kTypeAt] & 0x1F) != 0;
    return count;
}

}  // namespace

size_t Running(const std::wstring& name) {
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    size_t count = 0;
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more; more = Process32NextW(snapshot.get(), &entry))
        count += name == entry.szExeFile;
    return count;
}

Row Resources(HWND window) {
    DWORD id = 0;
    const Handle process = ProcessOf(window, id);
    return RowOf(HandlesOf(id), GdiObjectsOf(process.get()));
}

// Where an exported function lies in another process.
void* FunctionIn(DWORD id, const wchar_t* module, const char* function) {
    const Handle modules(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, id));
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Module32FirstW(modules.get(), &entry); more; more = Module32NextW(modules.get(), &entry)) {
        if (std::wcscmp(entry.szModule, module) != 0) continue;
        const HMODULE here = LoadLibraryExW(entry.szExePath, nullptr, DONT_RESOLVE_DLL_REFERENCES);
        const auto at = here ? reinterpret_cast<const BYTE*>(GetProcAddress(here, function)) : nullptr;
        if (at) return entry.modBaseAddr + (at - reinterpret_cast<const BYTE*>(here));
    }
    throw Failure("no such function in the other process");
}

void Fail(HWND window, const std::string& how) {
    DWORD id = 0;
    const Handle process = ProcessOf(window, id);
    void *start = nullptr, *argument = nullptr;
    if (how == "library") {
        start = FunctionIn(id, L"vbmp3.dll", "vbmp3_getEncodeState");
        argument = reinterpret_cast<void*>(0x10);
    } else if (how == "fault") {
        start = reinterpret_cast<void*>(0x10);
    } else if (how == "abort") {
        // System libraries lie at one address in all processes.
        start = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "abort"));
    } else {
        // A breakpoint; or a function with 2 KiB of variables that calls itself without end.
        const std::string code = how == "break" ? std::string("\xCC\xC3")
                                                : std::string("\x48\x81\xEC\x00\x08\x00\x00\xE8\xF4\xFF\xFF\xFF", 12);
        start = VirtualAllocEx(process.get(), nullptr, code.size(), MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
        if (!start || !WriteProcessMemory(process.get(), start, code.data(), code.size(), nullptr))
            throw Failure("no memory in the other process");
    }
    const Handle thread(CreateRemoteThread(process.get(), nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(start),
                                           argument, 0, nullptr));
    if (!thread) throw Failure("no thread in the other process, error " + std::to_string(GetLastError()));
}

}  // namespace driver
