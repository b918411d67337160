// Init: the one-time start-up, and the command-line options it reads.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQDiagnostics.h"
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
        if (*cursor != L'/' && *cursor != L'-') {
            ZQMessage(L"Init: argument \"%ls\" is not an option (they start with - or /); ignored", arguments[i]);
            continue;
        }
        ++cursor;
        // Each option restarts from the text after the leading character.
        wchar_t* const start = cursor;
        auto option = [&](const wchar_t* name) {
            cursor = start;
            return ZQIsNextArg(cursor, name);
        };
        auto withValue = [&](const wchar_t* name) { return option(name) && ZQCmdParam(cursor, value); };
        // Read as the runtime reads it (text that is not a number gives 0), and said when it is not one.
        auto number = [&]() {
            const wchar_t* end = value;
            if (*end == L'+' || *end == L'-')
                ++end;
            const wchar_t* digits = end;
            while (*end >= L'0' && *end <= L'9')
                ++end;
            if (end == digits || *end)
                ZQMessage(L"Init: argument \"%ls\": \"%ls\" is not a whole number; read as %d", arguments[i], value,
                          _wtoi(value));
            return _wtoi(value);
        };
        if (withValue(L"adapter"))
            SetOverrideAdapterOrdinal(number());
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
            SetOverrideForceVsync(number());
        else if (withValue(L"width"))
            SetOverrideWidth(number());
        else if (withValue(L"height"))
            SetOverrideHeight(number());
        else if (withValue(L"startx"))
            SetOverrideStartX(number());
        else if (withValue(L"starty"))
            SetOverrideStartY(number());
        else if (option(L"constantframetime")) {
            float timePerFrame = 0.0333f;
            if (ZQCmdParam(cursor, value)) {
                wchar_t* end = nullptr;
                timePerFrame = static_cast<float>(wcstod(value, &end));
                if (end == value || *end)
                    ZQMessage(L"Init: argument \"%ls\": \"%ls\" is not a number of seconds; read as %g", arguments[i],
                              value, timePerFrame);
            }
            SetOverrideConstantFrameTime(true);
            SetOverrideConstantTimePerFrame(timePerFrame);
            SetConstantFrameTime(true);
            SetTimePerFrame(timePerFrame);
        } else if (withValue(L"quitafterframe"))
            SetOverrideQuitAfterFrame(number());
        else if (option(L"noerrormsgboxes"))
            SetShowMsgBoxOnError(false);
        else if (option(L"nostats"))
            SetNoStats(true);
        else if (option(L"relaunchmce"))
            SetOverrideRelaunchMCE(true);
        else if (option(L"automation"))
            SetAutomation(true);
        else
            ZQMessage(L"Init: argument \"%ls\" is not an option of the library (or lacks its \":value\"); ignored",
                      arguments[i]);
    }
    LocalFree(arguments);
}

} // namespace ZQ
