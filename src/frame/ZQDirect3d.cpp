// Device framework: state accessors, Init, device creation/reset/loss, the frame, timers,
// error report and statistics texts.
//
// Sections: state accessors - Init and command line - devices - frame and main loop - timers -
// errors - statistics
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQMediaSearch.h"

#include <commctrl.h>
#include <shellapi.h>

#include <cstdio>
#include <cwchar>

namespace ZQ {

ZQDirect3d* ZQDirect3d::m_pDirect3d = nullptr;

namespace {
const UINT kD3DSdkVersion = 32;
const UINT kD3DXSdkVersion = 41;
const DWORD kLostDeviceSleepMs = 50;

// Reads a system accessibility record into the keyboard's saved one.
template <typename Record> void SaveSystemRecord(Record* record, UINT getAction) {
    if (!record)
        return;
    record->cbSize = sizeof(Record);
    SystemParametersInfoW(getAction, sizeof(Record), record, 0);
}
} // namespace

ZQDirect3d::ZQDirect3d()
    : m_ownWindowedPlacement(), m_ownBackBufferSurfaceDesc(), m_ownCaps(), m_ownDeviceSettings(),
      m_ownEnumeration(nullptr), m_frameStats(), m_nextTimerId(1) {
    InitializeCriticalSection(&m_stateLock);
    m_ownWindowedPlacement.length = sizeof m_ownWindowedPlacement;
    m_WindowedPlacement = &m_ownWindowedPlacement;
    m_BackBufferSurfaceDesc = &m_ownBackBufferSurfaceDesc;
    m_Caps = &m_ownCaps;
    m_Timer = &m_ownTimer;
    m_TimerList = &m_ownTimerList;
    m_pDirect3d = this;
}

ZQDirect3d::~ZQDirect3d() {
    Cleanup3DEnvironment(true);
    ReleaseD3D();
    delete m_ownEnumeration;
    if (m_pDirect3d == this)
        m_pDirect3d = nullptr;
    DeleteCriticalSection(&m_stateLock);
}

// ---------------------------------------------------------------------------------------------------------------
// State accessors: one field per lock hold.

#define ZQ_DEFINE_ACCESSORS(type, name, initial)                                                                     \
    type ZQDirect3d::Get##name() {                                                                                    \
        ZQLock lock(&m_stateLock);                                                                                    \
        return m_##name;                                                                                              \
    }                                                                                                                 \
    void ZQDirect3d::Set##name(type value) {                                                                          \
        ZQLock lock(&m_stateLock);                                                                                    \
        m_##name = value;                                                                                             \
    }
ZQ_DIRECT3D_STATE(ZQ_DEFINE_ACCESSORS)
#undef ZQ_DEFINE_ACCESSORS

D3DSURFACE_DESC ZQDirect3d::BackBufferCopy() {
    ZQLock lock(&m_stateLock);
    D3DSURFACE_DESC desc = {};
    if (m_BackBufferSurfaceDesc)
        desc = *m_BackBufferSurfaceDesc;
    return desc;
}

_ZQDeviceSettings_tag ZQDirect3d::GetDeviceSettings() {
    ZQLock lock(&m_stateLock);
    _ZQDeviceSettings_tag settings = {};
    if (m_CurrentDeviceSettings)
        settings = *m_CurrentDeviceSettings;
    return settings;
}

bool ZQDirect3d::IsWindowed() {
    ZQLock lock(&m_stateLock);
    return !m_CurrentDeviceSettings || m_CurrentDeviceSettings->pp.Windowed;
}

ZQD3DEnumeration* ZQDirect3d::PrepareEnumerationObject(bool enumerate) {
    IDirect3D9* d3d = GetD3D();
    if (!d3d)
        return nullptr;
    ZQD3DEnumeration* enumeration = GetD3DEnumeration();
    if (!enumeration) {
        {
            ZQLock lock(&m_stateLock);
            if (!m_ownEnumeration)
                m_ownEnumeration = new ZQD3DEnumeration;
            enumeration = m_ownEnumeration;
        }
        SetD3DEnumeration(enumeration);
    }
    if (enumerate || !enumeration->HasEnumerated())
        enumeration->Enumerate(d3d);
    return enumeration;
}

bool ZQDirect3d::IsActive() {
    return GetActive();
}

bool ZQDirect3d::IsRenderingPaused() {
    return GetPauseRenderingCount() > 0;
}

bool ZQDirect3d::IsTimePaused() {
    return GetPauseTimeCount() > 0;
}

// ---------------------------------------------------------------------------------------------------------------
// Init and command line

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

// ---------------------------------------------------------------------------------------------------------------
// Devices

HRESULT ZQDirect3d::CreateDevice(UINT adapter, bool windowed, int width, int height,
                                 ZQCallbackIsDeviceAcceptable isDeviceAcceptable,
                                 ZQCallbackModifyDeviceSettings modifyDeviceSettings, void* context) {
    if (GetInsideDeviceCallback())
        return E_FAIL;
    SetIsDeviceAcceptableFunc(isDeviceAcceptable);
    SetModifyDeviceSettingsFunc(modifyDeviceSettings);
    SetIsDeviceAcceptableFuncUserContext(context);
    SetModifyDeviceSettingsFuncUserContext(context);
    SetDeviceCreateCalled(true);

    const HRESULT inited = EnsureInited();
    if (FAILED(inited))
        return inited;
    if (!GetWindowCreated()) {
        if (GetWindowCreateCalled())
            return E_FAIL;
        const HRESULT hr = CreateWindow(L"Direct3D Window", nullptr, nullptr, nullptr, CW_USEDEFAULT, CW_USEDEFAULT);
        if (FAILED(hr))
            return hr;
    }

    _ZQDeviceSettings_tag wanted = {};
    wanted.AdapterOrdinal = GetOverrideAdapterOrdinal() >= 0 ? static_cast<UINT>(GetOverrideAdapterOrdinal()) : adapter;
    if (GetOverrideWindowed())
        windowed = true;
    if (GetOverrideFullScreen())
        windowed = false;
    wanted.pp.Windowed = windowed;
    wanted.pp.BackBufferWidth = static_cast<UINT>(GetOverrideWidth() > 0 ? GetOverrideWidth() : (width > 0 ? width : 0));
    wanted.pp.BackBufferHeight =
        static_cast<UINT>(GetOverrideHeight() > 0 ? GetOverrideHeight() : (height > 0 ? height : 0));
    wanted.DeviceType = GetOverrideForceREF() ? D3DDEVTYPE_REF : D3DDEVTYPE_HAL;
    if (GetOverrideForcePureHWVP())
        wanted.BehaviorFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE;
    else if (GetOverrideForceHWVP())
        wanted.BehaviorFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING;
    else if (GetOverrideForceSWVP())
        wanted.BehaviorFlags = D3DCREATE_SOFTWARE_VERTEXPROCESSING;

    _ZQDeviceSettings_tag valid;
    HRESULT hr = FindValidDeviceSettings(&valid, &wanted);
    if (FAILED(hr)) {
        DisplayErrorMessage(hr);
        return hr;
    }
    hr = ChangeDevice(&valid, nullptr, false, true);
    // The command line's start position moves the window the device renders to.
    HWND hWnd = GethWndDeviceWindowed();
    const int startX = GetOverrideStartX(), startY = GetOverrideStartY();
    if (SUCCEEDED(hr) && hWnd && IsWindowed() && (startX != -1 || startY != -1)) {
        RECT frame;
        GetWindowRect(hWnd, &frame);
        SetWindowPos(hWnd, nullptr, startX != -1 ? startX : frame.left, startY != -1 ? startY : frame.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return hr;
}

HRESULT ZQDirect3d::ChangeDevice(const _ZQDeviceSettings_tag* settings, IDirect3DDevice9* device, bool forceRecreate,
                                 bool) {
    if (!settings || GetInsideDeviceCallback())
        return E_FAIL;
    _ZQDeviceSettings_tag next = *settings;
    if (ZQCallbackModifyDeviceSettings modify = GetModifyDeviceSettingsFunc()) {
        D3DCAPS9 caps = {};
        if (IDirect3D9* d3d = GetD3D())
            d3d->GetDeviceCaps(next.AdapterOrdinal, next.DeviceType, &caps);
        if (!modify(&next, &caps, GetModifyDeviceSettingsFuncUserContext()))
            return E_ABORT;
    }
    next.pp.hDeviceWindow = next.pp.Windowed ? GethWndDeviceWindowed() : GethWndDeviceFullScreen();

    Pause(true, true);
    SetIgnoreSizeChange(true);
    const _ZQDeviceSettings_tag previous = GetDeviceSettings();
    const bool wasDevice = GetD3DDevice() != nullptr;
    HWND hWnd = GethWndDeviceWindowed();
    if (hWnd && wasDevice && previous.pp.Windowed && !next.pp.Windowed) {
        // Remember the window for the way back from full screen.
        WINDOWPLACEMENT placement = {};
        placement.length = sizeof placement;
        GetWindowPlacement(hWnd, &placement);
        {
            ZQLock lock(&m_stateLock);
            if (m_WindowedPlacement)
                *m_WindowedPlacement = placement;
        }
        SetWindowedStyleAtModeChange(static_cast<DWORD>(GetWindowLongW(hWnd, GWL_STYLE)));
        SetWindowBackBufferWidthAtModeChange(previous.pp.BackBufferWidth);
        SetWindowBackBufferHeightAtModeChange(previous.pp.BackBufferHeight);
    }
    if (hWnd && !next.pp.Windowed)
        SetWindowLongW(hWnd, GWL_STYLE, WS_POPUP | WS_SYSMENU);

    HRESULT hr = E_FAIL;
    const bool canReset = device && !forceRecreate && previous.AdapterOrdinal == next.AdapterOrdinal &&
                          previous.DeviceType == next.DeviceType && previous.BehaviorFlags == next.BehaviorFlags;
    if (canReset) {
        {
            ZQLock lock(&m_stateLock);
            if (m_CurrentDeviceSettings)
                *m_CurrentDeviceSettings = next;
        }
        hr = Reset3DEnvironment();
        if (hr == D3DERR_DEVICELOST) {
            SetDeviceLost(true);
            hr = S_OK;
        } else if (FAILED(hr)) {
            Cleanup3DEnvironment(false);
            hr = Create3DEnvironment(next);
        }
    } else {
        Cleanup3DEnvironment(false);
        hr = Create3DEnvironment(next);
    }

    if (hWnd && next.pp.Windowed) {
        if (wasDevice && !previous.pp.Windowed) {
            WINDOWPLACEMENT placement = {};
            {
                ZQLock lock(&m_stateLock);
                if (m_WindowedPlacement)
                    placement = *m_WindowedPlacement;
            }
            SetWindowLongW(hWnd, GWL_STYLE, static_cast<LONG>(GetWindowedStyleAtModeChange()));
            if (placement.length == sizeof placement)
                SetWindowPlacement(hWnd, &placement);
        }
        AdjustWindowToBackBuffer(next);
    }
    if (hWnd && !IsWindowVisible(hWnd))
        ShowWindow(hWnd, SW_SHOW);
    SetIgnoreSizeChange(false);
    Pause(false, false);
    return hr;
}

void ZQDirect3d::AdjustWindowToBackBuffer(const _ZQDeviceSettings_tag& settings) {
    HWND hWnd = GethWndDeviceWindowed();
    RECT client;
    if (!hWnd || !GetClientRect(hWnd, &client))
        return;
    if (static_cast<UINT>(client.right) == settings.pp.BackBufferWidth &&
        static_cast<UINT>(client.bottom) == settings.pp.BackBufferHeight)
        return;
    RECT frame = {0, 0, static_cast<LONG>(settings.pp.BackBufferWidth), static_cast<LONG>(settings.pp.BackBufferHeight)};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(hWnd, GWL_STYLE)), ::GetMenu(hWnd) != nullptr,
                       static_cast<DWORD>(GetWindowLongW(hWnd, GWL_EXSTYLE)));
    SetWindowPos(hWnd, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HRESULT ZQDirect3d::Create3DEnvironment(const _ZQDeviceSettings_tag& settings) {
    IDirect3D9* d3d = GetD3D();
    if (!d3d)
        return ZQ_E_NO_DIRECT3D;
    _ZQDeviceSettings_tag created = settings;
    IDirect3DDevice9* device = nullptr;
    HRESULT hr = d3d->CreateDevice(created.AdapterOrdinal, created.DeviceType, GethWndFocus(), created.BehaviorFlags,
                                   &created.pp, &device);
    {
        ZQLock lock(&m_stateLock);
        if (!m_CurrentDeviceSettings)
            m_CurrentDeviceSettings = &m_ownDeviceSettings;
        *m_CurrentDeviceSettings = created;
    }
    if (hr == D3DERR_DEVICELOST) {
        SetDeviceLost(true);
        return S_OK;
    }
    if (FAILED(hr)) {
        DisplayErrorMessage(ZQ_E_CREATING_DEVICE);
        return ZQ_E_CREATING_DEVICE;
    }
    SetD3DDevice(device);
    SetDeviceCreated(true);
    {
        ZQLock lock(&m_stateLock);
        if (m_Caps)
            device->GetDeviceCaps(m_Caps);
    }
    UpdateBackBufferDescription(device);
    UpdateDeviceStats();

    hr = RunCreatedCallbacks();
    if (SUCCEEDED(hr))
        hr = RunResetCallbacks();
    if (FAILED(hr) && hr != E_FAIL)
        DisplayErrorMessage(hr);
    return hr;
}

HRESULT ZQDirect3d::Reset3DEnvironment() {
    IDirect3DDevice9* device = GetD3DDevice();
    if (!device)
        return E_FAIL;
    if (GetDeviceObjectsReset())
        RunLostCallbacks();
    D3DPRESENT_PARAMETERS pp = GetDeviceSettings().pp;
    const HRESULT reset = device->Reset(&pp);
    if (FAILED(reset))
        return reset == D3DERR_DEVICELOST ? D3DERR_DEVICELOST : ZQ_E_RESETTING_DEVICE;
    UpdateBackBufferDescription(device);
    return RunResetCallbacks();
}

void ZQDirect3d::UpdateBackBufferDescription(IDirect3DDevice9* device) {
    IDirect3DSurface9* backBuffer = nullptr;
    if (SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer))) {
        {
            ZQLock lock(&m_stateLock);
            if (m_BackBufferSurfaceDesc)
                backBuffer->GetDesc(m_BackBufferSurfaceDesc);
        }
        backBuffer->Release();
    }
    UpdateStaticFrameStats();
}

void ZQDirect3d::ReleaseD3D() {
    if (IDirect3D9* d3d = GetD3D()) {
        SetD3D(nullptr);
        d3d->Release();
    }
}

bool ZQDirect3d::DeviceGone() {
    return GetD3DDevice() == nullptr;
}

// The created and reset events: the registered function, then the current scene (whose result is
// ignored), with InsideDeviceCallback set around both (and only around these two events).
HRESULT ZQDirect3d::RunDeviceCallbacks(ZQCallbackDeviceCreated function, void* context,
                                       HRESULT (ZQScene::*sceneCallback)(IDirect3DDevice9*, const D3DSURFACE_DESC*,
                                                                         void*),
                                       HRESULT objectsFailure) {
    IDirect3DDevice9* device = GetD3DDevice();
    const D3DSURFACE_DESC backBuffer = BackBufferCopy();
    SetInsideDeviceCallback(true);
    HRESULT hr = S_OK;
    if (function)
        hr = function(device, &backBuffer, context);
    if (ZQScene* scene = GetCurrent())
        (scene->*sceneCallback)(device, &backBuffer, context);
    SetInsideDeviceCallback(false);
    if (DeviceGone())
        return E_FAIL;
    if (FAILED(hr))
        return hr == ZQ_E_MEDIA_NOT_FOUND ? hr : objectsFailure;
    return S_OK;
}

HRESULT ZQDirect3d::RunCreatedCallbacks() {
    const HRESULT hr = RunDeviceCallbacks(GetDeviceCreatedFunc(), GetDeviceCreatedFuncUserContext(),
                                          &ZQScene::OnCreateDevice, ZQ_E_CREATING_DEVICE_OBJECTS);
    if (SUCCEEDED(hr))
        SetDeviceObjectsCreated(true);
    return hr;
}

HRESULT ZQDirect3d::RunResetCallbacks() {
    const HRESULT hr = RunDeviceCallbacks(GetDeviceResetFunc(), GetDeviceResetFuncUserContext(),
                                          &ZQScene::OnResetDevice, ZQ_E_RESETTING_DEVICE_OBJECTS);
    if (SUCCEEDED(hr))
        SetDeviceObjectsReset(true);
    return hr;
}

void ZQDirect3d::RunLostCallbacks() {
    void* context = GetDeviceLostFuncUserContext();
    if (ZQCallbackDeviceLost lost = GetDeviceLostFunc())
        lost(context);
    if (ZQScene* scene = GetCurrent())
        scene->OnLostDevice(context);
    SetDeviceObjectsReset(false);
}

void ZQDirect3d::RunDestroyedCallbacks() {
    void* context = GetDeviceDestroyedFuncUserContext();
    if (ZQCallbackDeviceDestroyed destroyed = GetDeviceDestroyedFunc())
        destroyed(context);
    if (ZQScene* scene = GetCurrent())
        scene->OnDestroyDevice(context);
    SetDeviceObjectsCreated(false);
}

void ZQDirect3d::Cleanup3DEnvironment(bool releaseSettings) {
    IDirect3DDevice9* device = GetD3DDevice();
    if (device) {
        if (GetDeviceObjectsReset())
            RunLostCallbacks();
        if (GetDeviceObjectsCreated())
            RunDestroyedCallbacks();
        SetD3DDevice(nullptr);
        SetDeviceCreated(false);
        if (device->Release() > 0)
            DisplayErrorMessage(ZQ_E_NONZERO_REFCOUNT);
    }
    if (releaseSettings)
        SetCurrentDeviceSettings(nullptr);
}

HRESULT ZQDirect3d::ToggleFullScreen() {
    _ZQDeviceSettings_tag wanted = GetDeviceSettings();
    if (!GetD3DDevice())
        return E_FAIL;
    Pause(true, true);
    const bool toWindowed = !wanted.pp.Windowed;
    if (toWindowed) {
        SetFullScreenBackBufferWidthAtModeChange(wanted.pp.BackBufferWidth);
        SetFullScreenBackBufferHeightAtModeChange(wanted.pp.BackBufferHeight);
        wanted.pp.BackBufferWidth = GetWindowBackBufferWidthAtModeChange();
        wanted.pp.BackBufferHeight = GetWindowBackBufferHeightAtModeChange();
    } else {
        wanted.pp.BackBufferWidth = GetFullScreenBackBufferWidthAtModeChange();
        wanted.pp.BackBufferHeight = GetFullScreenBackBufferHeightAtModeChange();
    }
    wanted.pp.Windowed = toWindowed;
    _ZQDeviceSettings_tag valid;
    HRESULT hr = FindValidDeviceSettings(&valid, &wanted);
    if (SUCCEEDED(hr))
        hr = ChangeDevice(&valid, GetD3DDevice(), false, false);
    Pause(false, false);
    return hr;
}

HRESULT ZQDirect3d::ToggleREF() {
    _ZQDeviceSettings_tag wanted = GetDeviceSettings();
    if (!GetD3DDevice())
        return E_FAIL;
    wanted.DeviceType = wanted.DeviceType == D3DDEVTYPE_HAL ? D3DDEVTYPE_REF : D3DDEVTYPE_HAL;
    _ZQDeviceSettings_tag valid;
    HRESULT hr = FindValidDeviceSettings(&valid, &wanted);
    if (SUCCEEDED(hr))
        hr = ChangeDevice(&valid, nullptr, true, false);
    return hr;
}

// ---------------------------------------------------------------------------------------------------------------
// Frame and main loop

HRESULT ZQDirect3d::MainLoop(HACCEL accelerators) {
    auto refuse = [this](HRESULT hr) {
        const int exitCode = GetExitCode();
        if (exitCode == 0 || exitCode == 11)
            SetExitCode(1);
        return hr;
    };
    if (GetInsideDeviceCallback() || GetInsideMainloop())
        return refuse(E_FAIL);
    SetInsideMainloop(true);

    if (!GetDeviceCreated()) {
        if (GetDeviceCreateCalled()) {
            SetInsideMainloop(false);
            return refuse(E_FAIL);
        }
        const HRESULT hr = CreateDevice(0, true, 0, 0, nullptr, nullptr, nullptr);
        if (FAILED(hr)) {
            SetInsideMainloop(false);
            return refuse(hr);
        }
    }
    if (!GetInited() || !GetWindowCreated() || !GetDeviceCreated()) {
        SetInsideMainloop(false);
        return refuse(E_FAIL);
    }

    HWND hWnd = GethWnd();
    MSG msg = {};
    msg.message = WM_NULL;
    PeekMessageW(&msg, nullptr, 0, 0, PM_NOREMOVE);
    while (msg.message != WM_QUIT) {
        if (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (accelerators && hWnd && TranslateAcceleratorW(hWnd, accelerators, &msg))
                continue;
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        } else {
            const D3DSURFACE_DESC backBuffer = BackBufferCopy();
            Dispatcher(GetD3DDevice(), &backBuffer, nullptr);
            Render3DEnvironment();
        }
    }
    if (accelerators)
        DestroyAcceleratorTable(accelerators);
    SetInsideMainloop(false);
    return S_OK;
}

void ZQDirect3d::Render3DEnvironment() {
    if (GetDeviceLost() || IsRenderingPaused() || !IsActive())
        Sleep(kLostDeviceSleepMs);

    IDirect3DDevice9* device = GetD3DDevice();
    if (!device) {
        if (GetDeviceLost()) {
            const _ZQDeviceSettings_tag settings = GetDeviceSettings();
            ChangeDevice(&settings, nullptr, true, false);
        }
        return;
    }

    if (GetDeviceLost() && !IsRenderingPaused()) {
        HRESULT hr = device->TestCooperativeLevel();
        if (FAILED(hr)) {
            if (hr == D3DERR_DEVICELOST)
                return;
            _ZQDeviceSettings_tag settings = GetDeviceSettings();
            D3DDISPLAYMODE desktop = {};
            if (settings.pp.Windowed && GetD3D() &&
                SUCCEEDED(GetD3D()->GetAdapterDisplayMode(settings.AdapterOrdinal, &desktop)) &&
                desktop.Format != settings.AdapterFormat) {
                // The desktop changed format: find settings for it, keeping adapter, type and vertex processing.
                settings.AdapterFormat = desktop.Format;
                PrepareEnumerationObject(true);
                _ZQDeviceSettings_tag valid;
                if (FAILED(FindValidDeviceSettings(&valid, &settings))) {
                    DisplayErrorMessage(ZQ_E_NO_COMPATIBLE_DEVICES);
                    Shutdown(GetExitCode());
                    return;
                }
                ChangeDevice(&valid, nullptr, true, false);
                return;
            }
            hr = Reset3DEnvironment();
            if (FAILED(hr)) {
                if (hr == D3DERR_DEVICELOST)
                    return;
                if (hr == ZQ_E_RESETTING_DEVICE_OBJECTS || hr == ZQ_E_MEDIA_NOT_FOUND) {
                    DisplayErrorMessage(hr);
                    Shutdown(GetExitCode());
                    return;
                }
                if (FAILED(ChangeDevice(&settings, nullptr, true, false))) {
                    Shutdown(GetExitCode());
                    return;
                }
            }
        }
        SetDeviceLost(false);
    }

    // Frame time is the timer's absolute time, not the time since Init.
    double time = 0.0;
    float elapsed = 0.0f;
    if (ZQTimer* timer = GetTimer()) {
        time = timer->GetAbsoluteTime();
        elapsed = static_cast<float>(timer->GetElapsedTime());
    }
    if (GetConstantFrameTime()) {
        elapsed = GetTimePerFrame();
        time = GetTime() + elapsed;
    }
    SetTime(time);
    SetElapsedTime(elapsed);

    if (GetShutdown()) {
        SetShutdown(false);
        Shutdown(0);
    }
    HandleTimers();

    device = GetD3DDevice();
    void* moveContext = GetFrameMoveFuncUserContext();
    ZQScene* scene = GetCurrent();
    if (scene)
        scene->OnFrameMove(device, time, elapsed, moveContext);
    if (ZQCallbackFrameMove frameMove = GetFrameMoveFunc())
        frameMove(device, time, elapsed, moveContext);
    if (scene)
        scene->OnNetwork(device, time, elapsed, moveContext);
    if (!GetD3DDevice())
        return;

    if (!IsRenderingPaused()) {
        if (ZQCallbackFrameRender frameRender = GetFrameRenderFunc())
            frameRender(device, time, elapsed, GetFrameRenderFuncUserContext());
        // The scene renders with the frame-move context, deliberately.
        if (scene)
            scene->OnFrameRender(device, time, elapsed, moveContext);
        if (!GetD3DDevice())
            return;
        const HRESULT hr = device->Present(nullptr, nullptr, nullptr, nullptr);
        if (hr == D3DERR_DEVICELOST || hr == D3DERR_DRIVERINTERNALERROR)
            SetDeviceLost(true);
    }

    const int frame = GetCurrentFrameNumber() + 1;
    SetCurrentFrameNumber(frame);
    const int quitAfter = GetOverrideQuitAfterFrame();
    if (quitAfter != 0 && frame > quitAfter)
        Shutdown();
}

void ZQDirect3d::RenderPausedFrame() {
    IDirect3DDevice9* device = GetD3DDevice();
    if (!device || !IsRenderingPaused() || !GetDeviceObjectsCreated() || !GetDeviceObjectsReset())
        return;
    const double time = GetTime();
    const float elapsed = GetElapsedTime();
    void* context = GetFrameRenderFuncUserContext();
    if (ZQCallbackFrameRender frameRender = GetFrameRenderFunc())
        frameRender(device, time, elapsed, context);
    if (ZQScene* scene = GetCurrent())
        scene->OnFrameRender(device, time, elapsed, context);
    if (!GetD3DDevice())
        return;
    if (device->Present(nullptr, nullptr, nullptr, nullptr) == D3DERR_DEVICELOST)
        SetDeviceLost(true);
}

void ZQDirect3d::RouteInput(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    switch (msg) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYUP: {
        const bool down = msg == WM_KEYDOWN || msg == WM_SYSKEYDOWN;
        const bool alt = (HIWORD(lParam) & KF_ALTDOWN) != 0;
        const UINT key = static_cast<UINT>(wParam);
        RecordKey(key, down);
        void* context = GetKeyboardFuncUserContext();
        if (ZQCallbackKeyboard keyboard = GetKeyboardFunc())
            keyboard(key, down, alt, context);
        if (ZQScene* scene = GetCurrent())
            scene->OnKeyboard(key, down, alt, context);
        return;
    }
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_RBUTTONDBLCLK:
    case WM_XBUTTONDOWN:
    case WM_XBUTTONUP:
    case WM_XBUTTONDBLCLK:
    case WM_MOUSEWHEEL:
    case WM_MOUSEMOVE: {
        POINT position = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        int wheelDelta = 0;
        if (msg == WM_MOUSEWHEEL) {
            ScreenToClient(hWnd, &position);
            wheelDelta = static_cast<short>(HIWORD(wParam));
        }
        const WORD keys = LOWORD(wParam);
        RecordButtons(keys);
        const bool buttonDown =
            msg == WM_LBUTTONDOWN || msg == WM_RBUTTONDOWN || msg == WM_MBUTTONDOWN || msg == WM_XBUTTONDOWN;
        const bool left = (keys & MK_LBUTTON) != 0, right = (keys & MK_RBUTTON) != 0;
        const bool middle = (keys & MK_MBUTTON) != 0, side1 = (keys & MK_XBUTTON1) != 0;
        const bool side2 = (keys & MK_XBUTTON2) != 0;
        void* context = GetMouseFuncUserContext();
        if (ZQCallbackMouse mouse = GetMouseFunc())
            mouse(buttonDown, left, right, middle, side1, side2, wheelDelta, position.x, position.y, context);
        if (ZQScene* scene = GetCurrent())
            scene->OnMouse(buttonDown, left, right, middle, side1, side2, wheelDelta, position.x, position.y, context);
        return;
    }
    default:
        return;
    }
}

void ZQDirect3d::Pause(bool pauseTime, bool pauseRendering) {
    int timeCount = GetPauseTimeCount() + (pauseTime ? 1 : -1);
    int renderingCount = GetPauseRenderingCount() + (pauseRendering ? 1 : -1);
    timeCount = timeCount < 0 ? 0 : timeCount;
    renderingCount = renderingCount < 0 ? 0 : renderingCount;
    SetPauseTimeCount(timeCount);
    SetPauseRenderingCount(renderingCount);
    if (ZQTimer* timer = GetTimer()) {
        if (timeCount > 0)
            timer->Stop();
        else
            timer->Start();
    }
    SetTimePaused(timeCount > 0);
    SetRenderingPaused(renderingCount > 0);
}

void ZQDirect3d::ConstantFrameTime(bool enabled, float timePerFrame) {
    if (GetOverrideConstantFrameTime()) {
        enabled = true;
        timePerFrame = GetOverrideConstantTimePerFrame();
    }
    SetConstantFrameTime(enabled);
    SetTimePerFrame(timePerFrame);
}

void ZQDirect3d::Shutdown() {
    SetShutdown(true);
}

void ZQDirect3d::Shutdown(int exitCode) {
    if (HWND hWnd = GethWnd())
        SendMessageW(hWnd, WM_CLOSE, 0, 0);
    SetExitCode(exitCode);
    Cleanup3DEnvironment(true);
    AllowShortcutKeys(true);
    ReleaseD3D();
    if (GetOverrideRelaunchMCE()) {
        wchar_t shell[MAX_PATH];
        const DWORD length = ExpandEnvironmentStringsW(L"%SystemRoot%\\ehome\\ehshell.exe", shell, MAX_PATH);
        if (length > 0 && length <= MAX_PATH && GetFileAttributesW(shell) != INVALID_FILE_ATTRIBUTES)
            ShellExecuteW(nullptr, L"open", shell, nullptr, nullptr, SW_SHOWNORMAL);
    }
}

// ---------------------------------------------------------------------------------------------------------------
// Timers: removal only disables an entry, so that a callback may remove timers while the list is walked;
// disabled entries are dropped when the next timer is added.

HRESULT ZQDirect3d::AddTimer(ZQCallbackTimer callback, float timeoutInSecs, UINT* id, void* context) {
    if (!callback || timeoutInSecs < 0.0f)
        return E_INVALIDARG;
    ZQLock lock(&m_stateLock);
    ZQTimerArray* list = m_TimerList;
    if (!list)
        return E_FAIL;
    for (int i = list->GetSize() - 1; i >= 0; --i)
        if (!(*list)[i].enabled)
            list->Remove(i);
    const _ZQTimerList_tag timer = {callback, context, timeoutInSecs, timeoutInSecs, true, m_nextTimerId};
    const HRESULT hr = list->Add(timer);
    if (FAILED(hr))
        return hr;
    if (id)
        *id = m_nextTimerId;
    ++m_nextTimerId;
    return S_OK;
}

HRESULT ZQDirect3d::ChangeTimer(UINT id, float timeoutInSecs) {
    if (timeoutInSecs < 0.0f)
        return E_INVALIDARG;
    ZQLock lock(&m_stateLock);
    for (int i = 0; m_TimerList && i < m_TimerList->GetSize(); ++i) {
        _ZQTimerList_tag& timer = (*m_TimerList)[i];
        if (timer.enabled && timer.id == id) {
            timer.timeoutInSecs = timeoutInSecs;
            timer.countdown = timeoutInSecs;
            return S_OK;
        }
    }
    return E_INVALIDARG;
}

HRESULT ZQDirect3d::RemoveTimer(UINT id) {
    ZQLock lock(&m_stateLock);
    for (int i = 0; m_TimerList && i < m_TimerList->GetSize(); ++i) {
        _ZQTimerList_tag& timer = (*m_TimerList)[i];
        if (timer.enabled && timer.id == id) {
            timer.enabled = false;
            return S_OK;
        }
    }
    return E_INVALIDARG;
}

void ZQDirect3d::HandleTimers() {
    const float elapsed = GetElapsedTime();
    for (int i = 0;; ++i) {
        _ZQTimerList_tag fired;
        {
            ZQLock lock(&m_stateLock);
            if (!m_TimerList || i >= m_TimerList->GetSize())
                return;
            _ZQTimerList_tag& timer = (*m_TimerList)[i];
            if (!timer.enabled)
                continue;
            timer.countdown -= elapsed;
            if (timer.countdown >= 0.0f)
                continue;
            timer.countdown = timer.timeoutInSecs;
            fired = timer;
        }
        fired.callback(fired.id, fired.context);
    }
}

// ---------------------------------------------------------------------------------------------------------------
// Errors

void ZQDirect3d::DisplayErrorMessage(HRESULT code) {
    struct Error {
        HRESULT code;
        int exitCode;
        const wchar_t* text;
    };
    static const Error kErrors[] = {
        {ZQ_E_NO_DIRECT3D, 2,
         L"Could not initialize Direct3D. You may want to check that the latest version of DirectX is correctly "
         L"installed on your system.  Also make sure that this program was compiled with header files that match "
         L"the installed DirectX DLLs."},
        {ZQ_E_NO_COMPATIBLE_DEVICES, 3, L"Could not find any compatible Direct3D devices."},
        {ZQ_E_MEDIA_NOT_FOUND, 4, L"Could not find required media. Ensure that the DirectX SDK is correctly installed."},
        {ZQ_E_NONZERO_REFCOUNT, 5,
         L"The D3D device has a non-zero reference count, meaning some objects were not released."},
        {ZQ_E_CREATING_DEVICE, 6, L"Failed creating the Direct3D device."},
        {ZQ_E_RESETTING_DEVICE, 7, L"Failed resetting the Direct3D device."},
        {ZQ_E_CREATING_DEVICE_OBJECTS, 8, L"Failed creating Direct3D device objects."},
        {ZQ_E_RESETTING_DEVICE_OBJECTS, 9, L"Failed resetting Direct3D device objects."},
        {ZQ_E_INCORRECT_VERSION, 10, L"Incorrect version of Direct3D and/or D3DX."},
    };
    const Error* error = nullptr;
    for (const Error& candidate : kErrors)
        if (candidate.code == code)
            error = &candidate;
    if (!error) {
        SetExitCode(1);
        return;
    }
    SetExitCode(error->exitCode);
    if (!GetShowMsgBoxOnError())
        return;
    wchar_t text[512];
    const wchar_t* source = error->text;
    if (code == ZQ_E_NO_COMPATIBLE_DEVICES && GetSystemMetrics(SM_REMOTESESSION))
        source = L"Direct3D does not work over a remote session.";
    wcsncpy(text, source, 511);
    text[511] = 0;
    const wchar_t* title = GetWindowTitle();
    MessageBoxW(GethWnd(), text, title && *title ? title : L"DirectX Application", MB_ICONERROR | MB_OK);
}

// ---------------------------------------------------------------------------------------------------------------
// Statistics

namespace {
// Every format by its name without the "D3DFMT_" prefix.
struct FormatNameEntry {
    D3DFORMAT format;
    const wchar_t* name;
};
#define ZQ_WIDE(text) L##text
#define ZQ_FORMAT(name) {D3DFMT_##name, ZQ_WIDE(#name)},
const FormatNameEntry kFormatNames[] = {
    ZQ_FORMAT(UNKNOWN) ZQ_FORMAT(R8G8B8) ZQ_FORMAT(A8R8G8B8) ZQ_FORMAT(X8R8G8B8) ZQ_FORMAT(R5G6B5)
    ZQ_FORMAT(X1R5G5B5) ZQ_FORMAT(A1R5G5B5) ZQ_FORMAT(A4R4G4B4) ZQ_FORMAT(R3G3B2) ZQ_FORMAT(A8) ZQ_FORMAT(A8R3G3B2)
    ZQ_FORMAT(X4R4G4B4) ZQ_FORMAT(A2B10G10R10) ZQ_FORMAT(A8B8G8R8) ZQ_FORMAT(X8B8G8R8) ZQ_FORMAT(G16R16)
    ZQ_FORMAT(A2R10G10B10) ZQ_FORMAT(A16B16G16R16) ZQ_FORMAT(A8P8) ZQ_FORMAT(P8) ZQ_FORMAT(L8) ZQ_FORMAT(A8L8)
    ZQ_FORMAT(A4L4) ZQ_FORMAT(V8U8) ZQ_FORMAT(L6V5U5) ZQ_FORMAT(X8L8V8U8) ZQ_FORMAT(Q8W8V8U8) ZQ_FORMAT(V16U16)
    ZQ_FORMAT(A2W10V10U10) ZQ_FORMAT(UYVY) ZQ_FORMAT(YUY2) ZQ_FORMAT(DXT1) ZQ_FORMAT(DXT2) ZQ_FORMAT(DXT3)
    ZQ_FORMAT(DXT4) ZQ_FORMAT(DXT5) ZQ_FORMAT(MULTI2_ARGB8) ZQ_FORMAT(G8R8_G8B8) ZQ_FORMAT(R8G8_B8G8)
    ZQ_FORMAT(D16_LOCKABLE) ZQ_FORMAT(D32) ZQ_FORMAT(D15S1) ZQ_FORMAT(D24S8) ZQ_FORMAT(D24X8) ZQ_FORMAT(D24X4S4)
    ZQ_FORMAT(D16) ZQ_FORMAT(L16) ZQ_FORMAT(D32F_LOCKABLE) ZQ_FORMAT(D24FS8) ZQ_FORMAT(D32_LOCKABLE)
    ZQ_FORMAT(S8_LOCKABLE) ZQ_FORMAT(VERTEXDATA) ZQ_FORMAT(INDEX16) ZQ_FORMAT(INDEX32) ZQ_FORMAT(Q16W16V16U16)
    ZQ_FORMAT(R16F) ZQ_FORMAT(G16R16F) ZQ_FORMAT(A16B16G16R16F) ZQ_FORMAT(R32F) ZQ_FORMAT(G32R32F)
    ZQ_FORMAT(A32B32G32R32F) ZQ_FORMAT(CxV8U8) ZQ_FORMAT(A1) ZQ_FORMAT(A2B10G10R10_XR_BIAS) ZQ_FORMAT(BINARYBUFFER)
};
#undef ZQ_FORMAT
#undef ZQ_WIDE

const wchar_t* FormatName(D3DFORMAT format) {
    for (const FormatNameEntry& entry : kFormatNames)
        if (entry.format == format)
            return entry.name;
    return L"Unknown format";
}
} // namespace

void ZQDirect3d::UpdateFrameStats() {
    if (GetNoStats())
        return;
    const DWORD frames = GetLastStatsUpdateFrames() + 1;
    SetLastStatsUpdateFrames(frames);
    ZQTimer* timer = GetTimer();
    if (!timer)
        return;
    const double now = timer->GetAbsoluteTime();
    const double since = now - GetLastStatsUpdateTime();
    if (since <= 1.0)
        return;
    const float fps = static_cast<float>(frames / since);
    SetFPS(fps);
    SetLastStatsUpdateTime(now);
    SetLastStatsUpdateFrames(0);
    ZQLock lock(&m_stateLock);
    _snwprintf(m_FPSStats, 64, L"%0.2f fps", fps);
    m_FPSStats[63] = 0;
}

const wchar_t* ZQDirect3d::GetFrameStats(bool showFPS) {
    ZQLock lock(&m_stateLock);
    _snwprintf(m_frameStats, 256, L"%ls %ls", showFPS ? m_FPSStats : L"", m_StaticFrameStats);
    m_frameStats[255] = 0;
    return m_frameStats;
}

void ZQDirect3d::UpdateStaticFrameStats() {
    if (GetNoStats())
        return;
    const _ZQDeviceSettings_tag settings = GetDeviceSettings();
    const D3DPRESENT_PARAMETERS& pp = settings.pp;
    wchar_t formats[100];
    if (pp.BackBufferFormat == settings.AdapterFormat)
        _snwprintf(formats, 100, L"%ls", FormatName(settings.AdapterFormat));
    else
        _snwprintf(formats, 100, L"backbuf %ls, adapter %ls", FormatName(pp.BackBufferFormat),
                   FormatName(settings.AdapterFormat));
    formats[99] = 0;
    wchar_t depth[32] = L"";
    if (pp.EnableAutoDepthStencil)
        _snwprintf(depth, 32, L" (%ls)", FormatName(pp.AutoDepthStencilFormat));
    depth[31] = 0;
    wchar_t multisample[40] = L"";
    if (pp.MultiSampleType == D3DMULTISAMPLE_NONMASKABLE)
        wcscpy(multisample, L" (Nonmaskable Multisample)");
    else if (pp.MultiSampleType != D3DMULTISAMPLE_NONE)
        _snwprintf(multisample, 40, L" (%dx Multisample)", static_cast<int>(pp.MultiSampleType));
    multisample[39] = 0;
    const bool vsync = pp.PresentationInterval != D3DPRESENT_INTERVAL_IMMEDIATE;
    ZQLock lock(&m_stateLock);
    _snwprintf(m_StaticFrameStats, 256, L"Vsync %ls (%dx%d), %ls%ls%ls", vsync ? L"On" : L"Off",
               static_cast<int>(pp.BackBufferWidth), static_cast<int>(pp.BackBufferHeight), formats, depth,
               multisample);
    m_StaticFrameStats[255] = 0;
}

#define ZQ_DEFINE_TEXT_ACCESSORS(name, capacity)                                                                    \
    wchar_t* ZQDirect3d::Get##name() {                                                                                \
        ZQLock lock(&m_stateLock);                                                                                    \
        return m_##name;                                                                                              \
    }                                                                                                                 \
    void ZQDirect3d::Set##name(const wchar_t* text) {                                                                 \
        ZQLock lock(&m_stateLock);                                                                                    \
        if (text == m_##name)                                                                                         \
            return;                                                                                                   \
        m_##name[0] = 0;                                                                                              \
        if (text)                                                                                                     \
            wcsncpy(m_##name, text, capacity - 1);                                                                    \
        m_##name[capacity - 1] = 0;                                                                                   \
    }
ZQ_DIRECT3D_TEXTS(ZQ_DEFINE_TEXT_ACCESSORS)
#undef ZQ_DEFINE_TEXT_ACCESSORS

void ZQDirect3d::UpdateDeviceStats() {
    const _ZQDeviceSettings_tag settings = GetDeviceSettings();
    D3DCAPS9 caps = {};
    {
        ZQLock lock(&m_stateLock);
        if (m_Caps)
            caps = *m_Caps;
    }
    const wchar_t* type = settings.DeviceType == D3DDEVTYPE_HAL   ? L"HAL"
                          : settings.DeviceType == D3DDEVTYPE_REF ? L"REF"
                                                                  : L"SW";
    const DWORD behavior = settings.BehaviorFlags;
    const bool hardwareTnL = (caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT) != 0;
    const wchar_t* processing = L" (sw vp)";
    if (behavior & D3DCREATE_HARDWARE_VERTEXPROCESSING)
        processing = (behavior & D3DCREATE_PUREDEVICE) ? (hardwareTnL ? L" (pure hw vp)" : L" (simulated pure hw vp)")
                                                       : (hardwareTnL ? L" (hw vp)" : L" (simulated hw vp)");
    else if (behavior & D3DCREATE_MIXED_VERTEXPROCESSING)
        processing = hardwareTnL ? L" (mixed vp)" : L" (simulated mixed vp)";
    D3DADAPTER_IDENTIFIER9 identifier = {};
    if (IDirect3D9* d3d = GetD3D())
        d3d->GetAdapterIdentifier(settings.AdapterOrdinal, 0, &identifier);
    ZQLock lock(&m_stateLock);
    _snwprintf(m_DeviceStats, 256, L"%ls%ls: %hs", type, processing, identifier.Description);
    m_DeviceStats[255] = 0;
}

} // namespace ZQ
