#include "SoundTestSupport.h"

#include <cstdlib>
#include <algorithm>

namespace soundtest {

std::wstring Data(const wchar_t* name) {
    return testsupport::EnvFile(L"ZQ_TEST_SOUNDS", name);
}

HWND Window() {
    static HWND window = CreateWindowExW(0, L"STATIC", L"sound tests", 0, 0, 0, 16, 16, nullptr, nullptr,
                                         GetModuleHandleW(nullptr), nullptr);
    return window;
}

Tone FindTone(const short* samples, size_t count, size_t step, double rate) {
    const int threshold = 1000;
    size_t first = count, last = 0;
    for (size_t i = 0; i < count; ++i)
        if (std::abs(samples[i * step]) > threshold) {
            first = std::min(first, i);
            last = i;
        }
    Tone tone;
    if (first >= last)
        return tone;
    size_t crossings = 0, firstCrossing = 0, lastCrossing = 0;
    for (size_t i = first + 1; i <= last; ++i) {
        tone.peak = std::max(tone.peak, static_cast<double>(samples[i * step]));
        if (samples[(i - 1) * step] < 0 && samples[i * step] >= 0) {
            if (crossings++ == 0)
                firstCrossing = i;
            lastCrossing = i;
        }
    }
    tone.seconds = (last - first + 1) / rate;
    if (crossings > 1)
        tone.frequency = (crossings - 1) * rate / (lastCrossing - firstCrossing);
    return tone;
}

DWORD Position(IDirectSoundBuffer* buffer) {
    DWORD play = 0, write = 0;
    buffer->GetCurrentPosition(&play, &write);
    return play;
}

} // namespace soundtest
