// A DLL built with the project's start-up, for its edge paths: a global object whose constructor and
// destructor, and a DllMain whose calls, are written to the file ZQ_STARTUP_LOG names. With
// ZQ_STARTUP_FAIL set, DllMain refuses the attach.
#include <windows.h>

namespace {

void Log(const char* text) {
    wchar_t path[MAX_PATH];
    if (!GetEnvironmentVariableW(L"ZQ_STARTUP_LOG", path, MAX_PATH))
        return;
    HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return;
    DWORD written = 0;
    WriteFile(file, text, lstrlenA(text), &written, nullptr);
    CloseHandle(file);
}

struct Global {
    Global() { Log("construct "); }
    ~Global() { Log("destruct "); }
} g_global;

} // namespace

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        Log("attach ");
        return GetEnvironmentVariableW(L"ZQ_STARTUP_FAIL", nullptr, 0) == 0;
    }
    if (reason == DLL_PROCESS_DETACH)
        Log("detach ");
    return TRUE;
}
