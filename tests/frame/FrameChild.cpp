// Helper process of the frame tests.
//   frame_child.exe cmdline <options...>   prints the overrides that Init read from the command line
//   frame_child.exe window <title>         exits 0 when CreateWindow succeeds, 1 when it is refused
//   frame_child.exe run <options...>       runs the main loop and prints the frames it saw
//   frame_child.exe registry <key>         writes a number, a text and bytes under the key
//   frame_child.exe device <options...>    creates a device as the command line asks; prints its settings
// Each prints the library's messages as "message: ..." lines.
#include <ZQVelisto.h>

#include <cstdio>
#include <cwchar>

#include <shellapi.h>

namespace {
class ChildApp : public ZQ::ZQVelisto {
public:
    explicit ChildApp(const wchar_t* title) : ZQVelisto(title, 64, 64) {}
};
} // namespace

int main() {
    // What the library says goes to the output, for the parent to read.
    ZQ::ZQSetMessageFunc([](const wchar_t* message, void*) { std::printf("message: %ls\n", message); }, nullptr);
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count < 2)
        return 2;
    if (std::wcscmp(arguments[1], L"window") == 0 && count >= 3) {
        ChildApp app(arguments[2]);
        app.SetShowMsgBoxOnError(false);
        return FAILED(app.CreateWindow(arguments[2], nullptr, nullptr, nullptr, 0, 0)) ? 1 : 0;
    }
    if (std::wcscmp(arguments[1], L"registry") == 0 && count >= 3) {
        ZQ::ZQRegistry settings(arguments[2]);
        const unsigned char bytes[3] = {1, 2, 3};
        const bool written = settings.SetNumber(L"Volume", 7) == S_OK &&
                             settings.SetText(L"Name", L"Kiosk \u3055\u304f\u3089") == S_OK &&
                             settings.SetBytes(L"Bytes", bytes, sizeof bytes) == S_OK;
        return written ? 0 : 1;
    }
    if (std::wcscmp(arguments[1], L"run") == 0) {
        static int moves = 0;
        ChildApp app(L"ZQVelisto main-loop child");
        if (FAILED(app.Init(true, true, true, true)) ||
            FAILED(app.CreateWindow(L"ZQVelisto main-loop child", nullptr, nullptr, nullptr, 0, 0)) ||
            FAILED(app.CreateDevice(0, true, 64, 64, nullptr, nullptr, nullptr)))
            return 3;
        app.SetFrameMoveFunc([](IDirect3DDevice9*, double, float, void*) { ++moves; });
        const HRESULT hr = app.MainLoop(nullptr);
        std::printf("loop=%ld frames=%d moves=%d exit=%d\n", static_cast<long>(hr), app.GetCurrentFrameNumber(), moves,
                    app.GetExitCode());
        return 0;
    }
    if (std::wcscmp(arguments[1], L"device") == 0) {
        ChildApp app(L"ZQVelisto device child");
        HRESULT hr = app.Init(true, false, false, false);
        app.SetShowMsgBoxOnError(false);
        if (SUCCEEDED(hr))
            hr = app.CreateDevice(0, true, 64, 64, nullptr, nullptr, nullptr);
        const ZQ::_ZQDeviceSettings_tag settings = app.GetDeviceSettings();
        std::printf("device=%08lx windowed=%d size=%ux%u format=%ls type=%d vp=%lx exit=%d\n", static_cast<long>(hr),
                    settings.pp.Windowed, settings.pp.BackBufferWidth, settings.pp.BackBufferHeight,
                    ZQ::ZQD3DFormatName(settings.pp.BackBufferFormat), static_cast<int>(settings.DeviceType),
                    settings.BehaviorFlags & ~D3DCREATE_MULTITHREADED, app.GetExitCode());
        return 0;
    }
    if (std::wcscmp(arguments[1], L"cmdline") == 0) {
        ChildApp app(L"ZQVelisto command-line child");
        app.Init(true, true, true, true);
        std::printf("adapter=%d windowed=%d fullscreen=%d hal=%d ref=%d purehwvp=%d hwvp=%d swvp=%d vsync=%d "
                    "width=%d height=%d startx=%d starty=%d constant=%d timeperframe=%.4f quitafterframe=%d "
                    "msgboxes=%d nostats=%d mce=%d automation=%d\n",
                    app.GetOverrideAdapterOrdinal(), app.GetOverrideWindowed(), app.GetOverrideFullScreen(),
                    app.GetOverrideForceHAL(), app.GetOverrideForceREF(), app.GetOverrideForcePureHWVP(),
                    app.GetOverrideForceHWVP(), app.GetOverrideForceSWVP(), app.GetOverrideForceVsync(),
                    app.GetOverrideWidth(), app.GetOverrideHeight(), app.GetOverrideStartX(), app.GetOverrideStartY(),
                    app.GetConstantFrameTime(), app.GetTimePerFrame(), app.GetOverrideQuitAfterFrame(),
                    app.GetShowMsgBoxOnError(), app.GetNoStats(), app.GetOverrideRelaunchMCE(), app.GetAutomation());
        return 0;
    }
    return 2;
}
