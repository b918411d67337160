#pragma once

namespace ZQ {

/// Runs loading work whose allocations a file decides; false when memory ran out, so that the file
/// is dropped rather than the program. A build without C++ exceptions (the MSVC-ABI DLL) cannot catch
/// that: there a failed allocation ends the program, which is one more reason why every size a file
/// declares is bounded by the bytes it holds before anything is allocated.
template <typename Work> bool ZQSurvivesOutOfMemory(Work&& work) {
#if defined(__cpp_exceptions) || defined(_CPPUNWIND)
    try {
        work();
    } catch (...) {
        return false;
    }
#else
    work();
#endif
    return true;
}

} // namespace ZQ
