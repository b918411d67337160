// Init: the one-time start-up, and the command-line options it reads.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/frame/ZQMediaSearch.h"

#include <commctrl.h>
#include <shellapi.h>

#include <cwchar>

namespace ZQ {

namespace {
const UINT kD3DSdkVersion = 32;
const UINT kD3DXSdkVersion = 41;

// Reads a system accessibility record into the keyboard's saved one.
template <typename Record> void SaveSystemRecord(Record* record, UINT getAction) {
    if (!record)
        return;
    record->cbSize = sizeof(Record);
    SystemParametersInfoW(getAction, sizeof(Record), record, 0);
}
} // namespace

HRESULT ZQDirect3d::Init(bool parseCommandLine, bool, bool, bool) {
    SetInitCalled(true);
    SetOverrideForceVsync(1);

    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    SaveSystemRecord(GetStartupStickyKeys(), SPI_GETSTICKYKEYS);
    SaveSystemRecord(GetStartupToggleKeys(), SPI_GETTOGGLEKEYS);
    SaveSystemRecord(GetStartupFilterKeys(), SPI_GETFILTERKEYS);

    // One-millisecond timer resolution, from the system's own multimedia library.
    wchar_t winmm[MAX_PATH];
    const UINT length = GetSystemDirectoryW(winmm, MAX_PATH);
    if (length > 0 && length < MAX_PATH - 12) {
        wcscat(winmm, L"\\winmm.dll");
        if (HMODULE library = LoadLibraryW(winmm)) {
            typedef UINT(WINAPI * TimeBeginPeriod)(UINT);
            if (TimeBeginPeriod begin =
                    reinterpret_cast<TimeBeginPeriod>(reinterpret_cast<void*>(GetProcAddress(library, "timeBeginPeriod"))))
                begin(1);
            FreeLibrary(library);
        }
    }

    if (parseCommandLine)
        ParseCommandLine();

    if (!D3DXCheckVersion(kD3DSdkVersion, kD3DXSdkVersion)) {
        DisplayErrorMessage(ZQ_E_INCORRECT_VERSION);
        return ZQ_E_INCORRECT_VERSION;
    }
    if (!GetD3D()) {
        IDirect3D9* d3d = Direct3DCreate9(kD3DSdkVersion);
        if (!d3d) {
            DisplayErrorMessage(ZQ_E_NO_DIRECT3D);
            return ZQ_E_NO_DIRECT3D;
        }
        SetD3D(d3d);
    }
    if (ZQTimer* timer = GetTimer())
        timer->Reset();
    SetInited(true);
    return S_OK;
}

HRESULT ZQDirect3d::EnsureInited() {
    if (GetInited())
        return S_OK;
    // An Init that was called and failed is not tried again.
    return GetInitCalled() ? E_FAIL : Init(true, true, true, true);
}

void ZQDirect3d::ParseCommandLine() {
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!arguments)
        return;
    wchar_t value[257];
    for (int i = 1; i < count; ++i) {
        wchar_t* cursor = arguments[i];
        if (*cursor != L'/' && *cursor != L'-')
            continue;
        ++cursor;
        // Each option restarts from the text after the leading character.
        wchar_t* const start = cursor;
        auto option = [&](const wchar_t* name) {
            cursor = start;
            return ZQIsNextArg(cursor, name);
        };
        auto withValue = [&](const wchar_t* name) { return option(name) && ZQCmdParam(cursor, value); };
        if (withValue(L"adapter"))
            SetOverrideAdapterOrdinal(_wtoi(value));
        else if (option(L"windowed"))
            SetOverrideWindowed(true);
        else if (option(L"fullscreen"))
            SetOverrideFullScreen(true);
        else if (option(L"forcehal"))
            SetOverrideForceHAL(true);
        else if (option(L"forceref"))
            SetOverrideForceREF(true);
        else if (option(L"forcepurehwvp"))
            SetOverrideForcePureHWVP(true);
        else if (option(L"forcehwvp"))
            SetOverrideForceHWVP(true);
        else if (option(L"forceswvp"))
            SetOverrideForceSWVP(true);
        else if (withValue(L"forcevsync"))
            SetOverrideForceVsync(_wtoi(value));
        else if (withValue(L"width"))
            SetOverrideWidth(_wtoi(value));
        else if (withValue(L"height"))
            SetOverrideHeight(_wtoi(value));
        else if (withValue(L"startx"))
            SetOverrideStartX(_wtoi(value));
        else if (withValue(L"starty"))
            SetOverrideStartY(_wtoi(value));
        else if (option(L"constantframetime")) {
            const float timePerFrame = ZQCmdParam(cursor, value) ? static_cast<float>(wcstod(value, nullptr)) : 0.0333f;
            SetOverrideConstantFrameTime(true);
            SetOverrideConstantTimePerFrame(timePerFrame);
            SetConstantFrameTime(true);
            SetTimePerFrame(timePerFrame);
        } else if (withValue(L"quitafterframe"))
            SetOverrideQuitAfterFrame(_wtoi(value));
        else if (option(L"noerrormsgboxes"))
            SetShowMsgBoxOnError(false);
        else if (option(L"nostats"))
            SetNoStats(true);
        else if (option(L"relaunchmce"))
            SetOverrideRelaunchMCE(true);
        else if (option(L"automation"))
            SetAutomation(true);
    }
    LocalFree(arguments);
}

} // namespace ZQ
