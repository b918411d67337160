// What the benchmark programs share: an application object with a device, a clock, file reading.
#pragma once
#include <ZQVelisto.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace bench {

class App : public ZQ::ZQVelisto {
public:
    App() : ZQVelisto(L"ZQVelisto benchmark", 640, 480) {}
    /// Init without the command line, a window and a 640 x 480 device; false when any fails.
    bool Start() {
        Init(false, false, false, false);
        return SUCCEEDED(CreateWindow(L"ZQVelisto benchmark", nullptr, nullptr, nullptr, 0, 0)) &&
               SUCCEEDED(CreateDevice(0, true, 640, 480, nullptr, nullptr, nullptr));
    }
};

inline double Now() {
    LARGE_INTEGER counter, frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(counter.QuadPart) / static_cast<double>(frequency.QuadPart);
}

inline std::vector<uint8_t> ReadFile(const wchar_t* path) {
    std::vector<uint8_t> bytes;
    if (FILE* file = _wfopen(path, L"rb")) {
        uint8_t buffer[65536];
        size_t read;
        while ((read = fread(buffer, 1, sizeof buffer, file)) > 0)
            bytes.insert(bytes.end(), buffer, buffer + read);
        fclose(file);
    }
    return bytes;
}

} // namespace bench
