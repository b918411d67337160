// The reliability tests' probes (the process's memory as the system counts it, a report of a crash) and the
// paths of their files.
#pragma once
#include "support/Files.h"

#include <ZQVelisto.h>

#include <psapi.h>

#include <atomic>
#include <cstdio>
#include <string>

namespace reliability {

using testsupport::EnvFile;

struct Memory {
    double workingSetMb, committedMb, peakCommittedMb;
};

inline Memory SampleMemory() {
    PROCESS_MEMORY_COUNTERS_EX counters = {};
    counters.cb = sizeof counters;
    K32GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                            sizeof counters);
    const double mb = 1024.0 * 1024.0;
    return {counters.WorkingSetSize / mb, counters.PagefileUsage / mb, counters.PeakPagefileUsage / mb};
}

/// What the test is doing, named in a crash report.
inline std::atomic<const wchar_t*> g_doing{L""};

/// Ends the process on an unhandled exception, naming the module and offset where it happened and g_doing.
inline void ReportCrashes() {
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS* exception) -> LONG {
        wchar_t module[MAX_PATH] = L"?";
        HMODULE where = nullptr;
        void* address = exception->ExceptionRecord->ExceptionAddress;
        if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                               static_cast<LPCWSTR>(address), &where))
            GetModuleFileNameW(where, module, MAX_PATH);
        std::fprintf(stderr, "exception %08lx in %ls (+0x%llx) while %ls\n", exception->ExceptionRecord->ExceptionCode,
                     module,
                     static_cast<unsigned long long>(static_cast<char*>(address) - reinterpret_cast<char*>(where)),
                     g_doing.load());
        std::fflush(stderr);
        TerminateProcess(GetCurrentProcess(), 3);
        return EXCEPTION_EXECUTE_HANDLER;
    });
}

} // namespace reliability
