// Time to load one long spline path: the ZQSpline constructor over a file of 10,000 keys, and a
// position read at every key afterwards (each a segment search).
//   spline_load_bench PATHS.spl [ROUNDS]
// The file holds one path "long" of 10,000 keys, words 7 and 2 (zqanim, see bench/run.sh).
#include "BenchSupport.h"

#include <algorithm>
#include <cstdio>

int wmain(int argc, wchar_t** argv) {
    const int rounds = bench::Count(argc, argv, 1, 5, "spline_load_bench PATHS.spl [ROUNDS]");
    if (!rounds)
        return 2;
    for (int round = 1; round <= rounds; ++round) {
        const double start = bench::Now();
        ZQ::ZQSpline paths(argv[1], 7, 2);
        const double loaded = bench::Now();
        ZQ::_3D::ZQ3DSpline* spline = paths.GetSpline(L"long");
        if (!spline) {
            std::printf("no path \"long\" in the file\n");
            return 1;
        }
        float sum = 0.0f;
        for (int key = 0; key < spline->GetKeyCount(); ++key)
            sum += spline->GetPosition(spline->GetTable(key)->time).x;
        const double read = bench::Now();
        std::printf("round %d: %d keys loaded in %.1f ms, a position at each key in %.1f ms (%g)\n", round,
                    spline->GetKeyCount(), (loaded - start) * 1e3, (read - loaded) * 1e3, sum);
    }
    return 0;
}
