// What a kiosk that runs for months watches of itself: its memory, kernel handles and GDI and USER
// objects, as the system's task manager counts them. Header-only, so that a benchmark can take it too.
//
// Where the system leaves a counter at 0 (Wine: private bytes, the handle count and the GUI object
// counts are stubs there), the same figure is counted another way: private bytes as the committed
// private regions of the address space, handles from the system's handle list, GDI objects from the
// shared GDI handle table, USER objects as the process's windows.
#pragma once
#include <windows.h>
#include <psapi.h>
#include <winternl.h>

#include <vector>

namespace kiosk {

struct ProcessCounters {
    unsigned long long workingSetKb = 0, privateKb = 0;
    unsigned long handles = 0, gdiObjects = 0, userObjects = 0;
};

namespace detail {

inline unsigned long long CommittedPrivateBytes() {
    unsigned long long total = 0;
    MEMORY_BASIC_INFORMATION region;
    for (char* at = nullptr; VirtualQuery(at, &region, sizeof region) == sizeof region;) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE)
            total += region.RegionSize;
        char* next = static_cast<char*>(region.BaseAddress) + region.RegionSize;
        if (next <= at)
            break;
        at = next;
    }
    return total;
}

template <typename Function> Function SystemFunction(const wchar_t* module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(module), name)));
}

template <typename Function> Function NtFunction(const char* name) {
    return SystemFunction<Function>(L"ntdll.dll", name);
}

// PROCESS_MEMORY_COUNTERS_EX, GetProcessHandleCount and the GR_ constants, which not every SDK's
// headers declare (Wine's, used by the MSVC-ABI build, have none of them).
struct MemoryCounters {
    DWORD cb, pageFaultCount;
    SIZE_T peakWorkingSetSize, workingSetSize, quotaPeakPagedPoolUsage, quotaPagedPoolUsage, quotaPeakNonPagedPoolUsage,
        quotaNonPagedPoolUsage, pagefileUsage, peakPagefileUsage, privateUsage;
};
const DWORD kGdiObjects = 0, kUserObjects = 1;

// SystemHandleInformation (16): every open handle of every process, 16-bit process ids.
inline unsigned long CountKernelHandles() {
    struct Entry {
        USHORT process, backTrace;
        UCHAR type, flags;
        USHORT handle;
        void* object;
        ACCESS_MASK access;
    };
    struct List {
        ULONG count;
        Entry entries[1];
    };
    using Query = NTSTATUS(NTAPI*)(ULONG, void*, ULONG, ULONG*);
    const auto query = NtFunction<Query>("NtQuerySystemInformation");
    if (!query)
        return 0;
    std::vector<char> buffer(256 * 1024);
    const NTSTATUS kLengthMismatch = static_cast<NTSTATUS>(0xC0000004L);
    NTSTATUS status;
    ULONG length = 0;
    while ((status = query(16, buffer.data(), static_cast<ULONG>(buffer.size()), &length)) == kLengthMismatch &&
           buffer.size() < (64u << 20))
        buffer.resize(buffer.size() * 2);
    if (status != 0)
        return 0;
    const auto* list = reinterpret_cast<const List*>(buffer.data());
    const size_t room = (buffer.size() - offsetof(List, entries)) / sizeof(Entry);
    const USHORT self = static_cast<USHORT>(GetCurrentProcessId());
    unsigned long count = 0;
    for (size_t i = 0; i < list->count && i < room; ++i)
        count += list->entries[i].process == self;
    return count;
}

// The shared GDI handle table the process environment block points to: 24-byte cells of kernel
// address, owner process id, count, uniqueness, type and user address; a cell in use has a type.
// Wine's table is the process's own and leaves the owner 0.
inline unsigned long CountGdiObjects() {
    struct Cell {
        ULONG64 object;
        USHORT process, count, unique;
        UCHAR type, flags;
        ULONG64 user;
    };
    static_assert(sizeof(Cell) == 24, "GDI table cell");
    using Query = NTSTATUS(NTAPI*)(HANDLE, PROCESSINFOCLASS, void*, ULONG, ULONG*);
    const auto query = NtFunction<Query>("NtQueryInformationProcess");
    PROCESS_BASIC_INFORMATION basic = {};
    if (!query || query(GetCurrentProcess(), ProcessBasicInformation, &basic, sizeof basic, nullptr) != 0)
        return 0;
    const auto* peb = reinterpret_cast<const BYTE*>(basic.PebBaseAddress);
    const auto* table = *reinterpret_cast<const Cell* const*>(peb + 0xF8); // GdiSharedHandleTable
    if (!table)
        return 0;
    const USHORT self = static_cast<USHORT>(GetCurrentProcessId());
    unsigned long count = 0;
    for (size_t i = 0; i < 0x10000; ++i)
        count += table[i].type != 0 && (table[i].process == self || table[i].process == 0);
    return count;
}

inline BOOL CALLBACK CountWindow(HWND window, LPARAM counter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) {
        ++*reinterpret_cast<unsigned long*>(counter);
        EnumChildWindows(window, CountWindow, counter);
    }
    return TRUE;
}

inline unsigned long CountWindows() {
    unsigned long count = 0;
    EnumWindows(CountWindow, reinterpret_cast<LPARAM>(&count));
    for (HWND window = nullptr; (window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
        CountWindow(window, reinterpret_cast<LPARAM>(&count));
    return count;
}

} // namespace detail

inline ProcessCounters SampleProcessCounters() {
    ProcessCounters counters;
    const HANDLE self = GetCurrentProcess();
    detail::MemoryCounters memory = {};
    memory.cb = sizeof memory;
    if (K32GetProcessMemoryInfo(self, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory)) {
        counters.workingSetKb = memory.workingSetSize / 1024;
        counters.privateKb = memory.privateUsage / 1024;
    }
    if (counters.privateKb == 0)
        counters.privateKb = detail::CommittedPrivateBytes() / 1024;
    using HandleCount = BOOL(WINAPI*)(HANDLE, DWORD*);
    const auto handleCount = detail::SystemFunction<HandleCount>(L"kernel32.dll", "GetProcessHandleCount");
    DWORD handles = 0;
    if (handleCount && handleCount(self, &handles) && handles > 0)
        counters.handles = handles;
    else
        counters.handles = detail::CountKernelHandles();
    counters.gdiObjects = GetGuiResources(self, detail::kGdiObjects);
    if (counters.gdiObjects == 0)
        counters.gdiObjects = detail::CountGdiObjects();
    counters.userObjects = GetGuiResources(self, detail::kUserObjects);
    if (counters.userObjects == 0)
        counters.userObjects = detail::CountWindows();
    return counters;
}

} // namespace kiosk
