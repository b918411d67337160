// The start-up of a program of the other ABI that has a wWinMain instead of main: its command line,
// its global constructors run first, and a local static that two threads reach at once is made once.
#include <ZQVelisto.h>

#include <cwchar>

namespace {

int g_constructed = 0;
volatile LONG g_made = 0;

struct Global {
    Global() { ++g_constructed; }
};
Global g_global;

// Slow to make, so that the second thread arrives while the first is still inside.
int MadeOnce() {
    static const int value = [] {
        InterlockedIncrement(&g_made);
        Sleep(200);
        return 42;
    }();
    return value;
}

DWORD WINAPI Reach(void* result) {
    *static_cast<int*>(result) = MadeOnce();
    return 0;
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int) {
    int results[2] = {0, 0};
    HANDLE threads[2] = {CreateThread(nullptr, 0, Reach, &results[0], 0, nullptr),
                         CreateThread(nullptr, 0, Reach, &results[1], 0, nullptr)};
    WaitForMultipleObjects(2, threads, TRUE, 10000);
    CloseHandle(threads[0]);
    CloseHandle(threads[1]);
    ZQ::ZQString line(L"%ls", commandLine);
    const bool ok = instance == GetModuleHandleW(nullptr) && line == L"entry check" && g_constructed == 1 &&
                    g_made == 1 && results[0] == 42 && results[1] == 42;
    return ok ? 0 : 1;
}
