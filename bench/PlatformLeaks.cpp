// What two platform calls keep for good, without the library: the smallest programs that show the
// growth a kiosk sees under Wine, each beside the same work done without it.
//   platform_leaks [COUNT]        COM7 and COM8 the two ends of one serial line
// 1. An input-method composition on a plain window whose procedure leaves WM_IME_STARTCOMPOSITION,
//    WM_IME_COMPOSITION and WM_IME_ENDCOMPOSITION to DefWindowProc, and on one that keeps them.
// 2. Bytes received one at a time on an overlapped serial port, each awaited with WaitCommEvent, and
//    the same bytes read by polling without it.
#include "GrowthSupport.h"

#include <imm.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

int g_count = 400;

template <typename Operation> void Measure(const char* what, Operation operation) {
    bench::MeasureGrowth(what, g_count, operation);
}

void Pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool g_keepComposition = false;

LRESULT CALLBACK WindowProc(HWND window, UINT msg, WPARAM wParam, LPARAM lParam) {
    if (g_keepComposition &&
        (msg == WM_IME_STARTCOMPOSITION || msg == WM_IME_COMPOSITION || msg == WM_IME_ENDCOMPOSITION))
        return 0;
    return DefWindowProcW(window, msg, wParam, lParam);
}

// Composes さくら and commits it, as the kiosk's demo does once a visit.
void Compose(HWND window) {
    static const wchar_t kComposed[] = L"さくら";
    HIMC context = ImmGetContext(window);
    ImmSetOpenStatus(context, TRUE);
    ImmSetCompositionStringW(context, SCS_SETSTR, const_cast<wchar_t*>(kComposed),
                             sizeof kComposed - sizeof kComposed[0], nullptr, 0);
    ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0);
    ImmSetOpenStatus(context, FALSE);
    ImmReleaseContext(window, context);
    Pump();
}

void InputMethod() {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"platform_leaks";
    RegisterClassW(&windowClass);
    HWND window = CreateWindowW(L"platform_leaks", L"platform_leaks", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 320, 240,
                                nullptr, nullptr, windowClass.hInstance, nullptr);
    Pump();
    g_keepComposition = false;
    Measure("composition, default handling", [&] { Compose(window); });
    g_keepComposition = true;
    Measure("composition, kept from default handling", [&] { Compose(window); });
    DestroyWindow(window);
}

HANDLE OpenPort(const wchar_t* name) {
    HANDLE port = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OVERLAPPED, nullptr);
    if (port == INVALID_HANDLE_VALUE)
        return nullptr;
    SetupComm(port, 4096, 4096);
    PurgeComm(port, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR);
    COMMTIMEOUTS timeouts = {MAXDWORD, 0, 0, 0, 0};
    SetCommTimeouts(port, &timeouts);
    return port;
}

// One overlapped transfer, waited for.
DWORD Transfer(HANDLE port, unsigned char* bytes, DWORD count, bool write) {
    OVERLAPPED overlapped = {};
    overlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    DWORD done = 0;
    const BOOL ok =
        write ? WriteFile(port, bytes, count, &done, &overlapped) : ReadFile(port, bytes, count, &done, &overlapped);
    if (!ok && GetLastError() == ERROR_IO_PENDING)
        GetOverlappedResult(port, &overlapped, &done, TRUE);
    CloseHandle(overlapped.hEvent);
    return done;
}

// The receiving end's thread, as the library's receiver runs it: a wait for the next byte (with
// WaitCommEvent and no overlapped record, or by polling), then reads with one overlapped record while
// the input queue holds bytes.
struct Receiver {
    HANDLE port;
    bool wait;
    volatile LONG running = 1;
    HANDLE received = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    OVERLAPPED overlapped = {};

    static DWORD WINAPI Run(void* self) {
        static_cast<Receiver*>(self)->Loop();
        return 0;
    }
    void Loop() {
        unsigned char buffer[2048];
        overlapped.hEvent = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        while (running) {
            DWORD mask = EV_RXCHAR;
            if (wait)
                WaitCommEvent(port, &mask, nullptr);
            else
                Sleep(1);
            for (;;) {
                DWORD errors = 0, done = 0;
                COMSTAT status = {};
                ClearCommError(port, &errors, &status);
                if (status.cbInQue == 0)
                    break;
                if (!ReadFile(port, buffer, sizeof buffer, &done, &overlapped) && GetLastError() == ERROR_IO_PENDING)
                    GetOverlappedResult(port, &overlapped, &done, TRUE);
                if (done == 0)
                    break;
                SetEvent(received);
            }
        }
        CloseHandle(overlapped.hEvent);
    }
};

void Serial() {
    HANDLE receiving = OpenPort(L"COM7"), sending = OpenPort(L"COM8");
    if (!receiving || !sending) {
        std::printf("serial: COM7 and COM8 are not one line; skipped\n");
        return;
    }
    g_count *= 5; // bytes are quick, and each waiting thread's stack comes and goes in the figures
    for (bool wait : {true, false}) {
        SetCommMask(receiving, EV_RXCHAR);
        Receiver receiver{receiving, wait};
        HANDLE thread = CreateThread(nullptr, 0, Receiver::Run, &receiver, 0, nullptr);
        // One byte at a time, each sent once the receiver waits again.
        Measure(wait ? "serial byte awaited with WaitCommEvent" : "serial byte polled", [&] {
            Sleep(5); // the receiver is back in its wait
            unsigned char byte = 'C';
            Transfer(sending, &byte, 1, true);
            WaitForSingleObject(receiver.received, 1000);
        });
        receiver.running = 0;
        SetCommMask(receiving, 0); // wakes the wait
        WaitForSingleObject(thread, 5000);
        CloseHandle(thread);
        CloseHandle(receiver.received);
    }
    CloseHandle(sending);
    CloseHandle(receiving);
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1)
        g_count = std::max(40, std::atoi(argv[1]));
    std::printf("each operation repeated COUNT times after COUNT / 2 to warm up: bytes gained per operation,\n"
                "handles and objects gained in all\n");
    bench::PrintGrowthHeader();
    InputMethod();
    Serial();
    return 0;
}
