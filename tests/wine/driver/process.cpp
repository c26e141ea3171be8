#include "tests/wine/driver/process.h"

#include <psapi.h>
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

size_t ThreadsOf(DWORD id) {
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    size_t count = 0;
    for (BOOL more = Thread32First(snapshot.get(), &entry); more; more = Thread32Next(snapshot.get(), &entry)) count += entry.th32OwnerProcessID == id;
    return count;
}

}  // namespace

Row Resources(HWND window) {
    DWORD id = 0, handles = 0;
    const Handle process = ProcessOf(window, id);
    PROCESS_MEMORY_COUNTERS_EX memory{};
    GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
    GetProcessHandleCount(process.get(), &handles);
    return {std::to_string(memory.WorkingSetSize), std::to_string(memory.PrivateUsage), std::to_string(handles),
            std::to_string(GetGuiResources(process.get(), GR_GDIOBJECTS)), std::to_string(GetGuiResources(process.get(), GR_USEROBJECTS)),
            std::to_string(ThreadsOf(id))};
}

void Fail(HWND window, const std::string& how) {
    DWORD id = 0;
    const Handle process = ProcessOf(window, id);
    void* start = nullptr;
    if (how == "fault") {
        start = reinterpret_cast<void*>(0x10);
    } else if (how == "abort") {
        // System libraries lie at one address in all processes.
        start = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "abort"));
    } else {
        // A breakpoint; or a function with 2 KiB of variables that calls itself without end.
        const std::string code = how == "break" ? std::string("\xCC\xC3") : std::string("\x48\x81\xEC\x00\x08\x00\x00\xE8\xF4\xFF\xFF\xFF", 12);
        start = VirtualAllocEx(process.get(), nullptr, code.size(), MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
        if (!start || !WriteProcessMemory(process.get(), start, code.data(), code.size(), nullptr)) throw Failure("no memory in the other process");
    }
    const Handle thread(CreateRemoteThread(process.get(), nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(start), nullptr, 0, nullptr));
    if (!thread) throw Failure("no thread in the other process, error " + std::to_string(GetLastError()));
}

}  // namespace driver
