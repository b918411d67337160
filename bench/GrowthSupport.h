// What the leak-hunting programs share: an operation repeated after a warm-up, and one row of what the
// process gained per operation. Needs nothing of the library.
#pragma once
#include "../samples/kiosk/ProcessCounters.h"

#include <cstdio>

namespace bench {

inline void PrintGrowthHeader() {
    std::printf("%-44s %6s %8s %8s %7s %7s %7s\n", "gained per operation", "count", "private", "working", "handles",
                "GDI", "USER");
}

/// Runs operation count / 2 times to warm up, then count times, and prints the private bytes and
/// working set gained per operation and the handles and GDI/USER objects gained in all.
template <typename Operation> void MeasureGrowth(const char* what, int count, Operation operation) {
    for (int i = 0; i < count / 2; ++i)
        operation();
    const kiosk::ProcessCounters before = kiosk::SampleProcessCounters();
    for (int i = 0; i < count; ++i)
        operation();
    const kiosk::ProcessCounters after = kiosk::SampleProcessCounters();
    auto each = [count](unsigned long long from, unsigned long long to) {
        return (static_cast<double>(to) - static_cast<double>(from)) * 1024.0 / count;
    };
    auto gained = [](unsigned long from, unsigned long to) { return static_cast<long>(to) - static_cast<long>(from); };
    std::printf("%-44s %6d %8.0f %8.0f %+7ld %+7ld %+7ld\n", what, count, each(before.privateKb, after.privateKb),
                each(before.workingSetKb, after.workingSetKb), gained(before.handles, after.handles),
                gained(before.gdiObjects, after.gdiObjects), gained(before.userObjects, after.userObjects));
    std::fflush(stdout);
}

} // namespace bench
