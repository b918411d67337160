#include "FrameTestApp.h"

namespace frametest {

std::vector<std::string> g_log;

HRESULT TestApp::Start(const wchar_t* title) {
    HRESULT hr = Init(false, false, false, false);
    SetShowMsgBoxOnError(false);
    if (SUCCEEDED(hr))
        hr = CreateWindow(title, nullptr, nullptr, nullptr, 0, 0);
    if (SUCCEEDED(hr))
        hr = CreateDevice(0, true, 320, 240, nullptr, nullptr, nullptr);
    return hr;
}

void DrainMessages() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    }
}

int RunChild(const std::wstring& arguments, std::string* output) {
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    std::wstring path(exe);
    path = path.substr(0, path.rfind(L'\\') + 1) + L"frame_child.exe";
    std::wstring commandLine = L"\"" + path + L"\" " + arguments;

    SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
    HANDLE readPipe = nullptr, writePipe = nullptr;
    CreatePipe(&readPipe, &writePipe, &inherit, 0);
    SetHandleInformation(readPipe, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writePipe;
    startup.hStdError = writePipe;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process)) {
        CloseHandle(readPipe);
        CloseHandle(writePipe);
        return -1;
    }
    CloseHandle(writePipe);
    std::string text;
    char buffer[512];
    DWORD read = 0;
    while (ReadFile(readPipe, buffer, sizeof buffer, &read, nullptr) && read > 0)
        text.append(buffer, read);
    CloseHandle(readPipe);
    DWORD exitCode = static_cast<DWORD>(-1);
    if (WaitForSingleObject(process.hProcess, 30000) == WAIT_OBJECT_0)
        GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    if (output)
        *output = text;
    return static_cast<int>(exitCode);
}

} // namespace frametest
