// What the benchmark programs share: the command line, an application object with a device, a clock,
// waiting for the device, medians and file reading.
#pragma once
#include <ZQVelisto.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace bench {

/// The count after the first `given` arguments (at least 1), or fallback when there is none; 0, after
/// printing the usage, when fewer than `given` arguments came.
inline int Count(int argc, wchar_t** argv, int given, int fallback, const char* usage) {
    if (argc <= given) {
        std::printf("usage: %s\n", usage);
        return 0;
    }
    return argc > given + 1 ? std::max(1, _wtoi(argv[given + 1])) : fallback;
}

/// The application object with a window and a 640 x 480 device, made after reading the command line as
/// Count does; ends the program with 2 after the usage, or with 1 when the device cannot be made.
class App : public ZQ::ZQVelisto {
public:
    App(int argc, wchar_t** argv, int given, int fallback, const char* usage)
        : ZQVelisto(L"ZQVelisto benchmark", 640, 480), count(Count(argc, argv, given, fallback, usage)) {
        if (!count)
            std::exit(2);
        Init(false, false, false, false);
        if (FAILED(CreateWindow(L"ZQVelisto benchmark", nullptr, nullptr, nullptr, 0, 0)) ||
            FAILED(CreateDevice(0, true, 640, 480, nullptr, nullptr, nullptr)))
            std::exit(1);
    }

    const int count; ///< frames or rounds
};

inline double Now() {
    LARGE_INTEGER counter, frequency;
    QueryPerformanceCounter(&counter);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(counter.QuadPart) / static_cast<double>(frequency.QuadPart);
}

/// Waits for the device to finish, so that a frame's time includes its drawing.
inline void Finish(IDirect3DDevice9* device) {
    IDirect3DQuery9* query = nullptr;
    if (FAILED(device->CreateQuery(D3DQUERYTYPE_EVENT, &query)))
        return;
    query->Issue(D3DISSUE_END);
    while (query->GetData(nullptr, 0, D3DGETDATA_FLUSH) == S_FALSE) {
    }
    query->Release();
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
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
