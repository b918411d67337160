// What the sound tests share: their files, a window, and the analysis of what was played.
#pragma once
#include "support/Files.h"

#include <ZQVelisto.h>

#include <string>
#include <vector>

namespace soundtest {

/// The path (Windows form) of a file made for the tests, or of a new file there.
std::wstring Data(const wchar_t* name);
using testsupport::ReadAll;
using testsupport::WriteAll;
/// A hidden window for the cooperative level.
HWND Window();

/// The tone found in 16-bit samples (one channel, every step-th value): where the level first and
/// last exceeds a threshold, its peak and its frequency from zero crossings.
struct Tone {
    double seconds = 0, peak = 0, frequency = 0;
};
Tone FindTone(const short* samples, size_t count, size_t step, double rate);
/// A buffer's play position.
DWORD Position(IDirectSoundBuffer* buffer);

} // namespace soundtest
