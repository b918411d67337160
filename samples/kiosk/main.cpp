// The sample kiosk: an attract loop, a menu, a name entry and a round of play, with coins from a
// coin acceptor on COM7, music and clicks, and its own cursor. The artwork, animations, path and
// sounds are made by the build beside the program.
//
//   kiosk.exe [-windowed] [-demo] [-screenshots:DIR] [-soak:N] [-visits:N] [-coinport:NAME]
//             [-quitafterframe:N] [-constantframetime:S]
//
// -demo plays a customer's visit by script (see KioskApp::DemoStep); -screenshots:DIR does too and
// saves one PNG of each screen there, printing each path. -soak:N plays the demo quietly and prints
// the process's memory, handle and GDI/USER object counts every N visits (scripts/soak.sh reads them);
// -visits:N ends the kiosk after N visits; -coinport:NAME names the coin acceptor's port (COM7, or
// "none" for free play).
#include "Kiosk.h"

#include <cstdio>
#include <cwchar>
#include <initializer_list>

namespace {

// What the library says (a file it dropped, an option it ignored) goes to the output. Init does not know
// the kiosk's own options and says so; those lines are left out.
void CALLBACK PrintMessage(const wchar_t* message, void*) {
    for (const wchar_t* own : {L"\"-demo\"", L"\"-screenshots:", L"\"-soak:", L"\"-visits:", L"\"-coinport:"})
        if (std::wcsstr(message, L"Init: argument ") == message && std::wcsstr(message, own))
            return;
    std::printf("message: %ls\n", message);
}

} // namespace

int main() {
    ZQ::ZQSetMessageFunc(PrintMessage, nullptr);
    KioskApp app;
    app.ReadOptions();
    if (FAILED(app.Init(true, true, true, true)))
        return app.GetExitCode();
    if (FAILED(app.CreateWindow(L"ZQVelisto sample kiosk", nullptr, nullptr, nullptr, CW_USEDEFAULT, CW_USEDEFAULT))) {
        std::printf("the kiosk could not open its window (is it running already?)\n");
        return 1;
    }
    if (FAILED(app.CreateDevice(0, true, 640, 480, nullptr, nullptr, nullptr)))
        return app.GetExitCode();
    app.Start();
    app.MainLoop(nullptr);
    std::printf("the kiosk ran %d frames\n", app.GetCurrentFrameNumber());
    return app.GetExitCode();
}
