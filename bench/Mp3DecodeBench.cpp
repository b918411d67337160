// Seconds of MP3 decoded per second of wall time: a whole piece decoded into a sound buffer by
// ZQSound::Entry (the media reader with the library's own clock), round after round.
#include "BenchSupport.h"

#include <algorithm>

int wmain(int argc, wchar_t** argv) {
    if (argc < 2) {
        std::printf("usage: mp3_decode_bench FILE.mp3 [ROUNDS]\n");
        return 2;
    }
    const int rounds = argc > 2 ? _wtoi(argv[2]) : 3;
    HWND window = CreateWindowExW(0, L"STATIC", L"mp3 bench", 0, 0, 0, 16, 16, nullptr, nullptr, nullptr, nullptr);
    ZQ::ZQSound board(window, DSSCL_PRIORITY);
    std::vector<double> rates;
    double seconds = 0;
    for (int round = 0; round < rounds; ++round) {
        wchar_t name[32];
        _snwprintf(name, 32, L"piece%d", round);
        const double start = bench::Now();
        board.Entry(name, argv[1]);
        const double wall = bench::Now() - start;
        IDirectSoundBuffer* buffer = board.Trans(name);
        if (!buffer) {
            std::printf("the piece could not be decoded\n");
            return 1;
        }
        DSBCAPS caps = {};
        caps.dwSize = sizeof caps;
        buffer->GetCaps(&caps);
        seconds = caps.dwBufferBytes / 88200.0; // stereo, 16 bits, 22,050 Hz
        rates.push_back(seconds / wall);
        std::printf("round %d: %.1f s of sound in %.3f s\n", round + 1, seconds, wall);
    }
    std::sort(rates.begin(), rates.end());
    std::printf("ZQSound::Entry of an MP3 (%.1f s): median %.0f seconds decoded per second\n", seconds,
                rates[rates.size() / 2]);
    return 0;
}
