// Device creation, reset, loss and destruction, and the switches between devices.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQFormats.h"

namespace ZQ {

HRESULT ZQDirect3d::CreateDevice(UINT adapter, bool windowed, int width, int height,
                                 ZQCallbackIsDeviceAcceptable isDeviceAcceptable,
                                 ZQCallbackModifyDeviceSettings modifyDeviceSettings, void* context) {
    _ZQDeviceSettings_tag wanted = {};
    wanted.AdapterOrdinal = adapter;
    wanted.DeviceType = D3DDEVTYPE_HAL;
    wanted.pp.Windowed = windowed;
    wanted.pp.BackBufferWidth = static_cast<UINT>(width > 0 ? width : 0);
    wanted.pp.BackBufferHeight = static_cast<UINT>(height > 0 ? height : 0);
    return CreateDeviceMatching(wanted, _ZQMatchOptions_tag(), isDeviceAcceptable, modifyDeviceSettings, context);
}

HRESULT ZQDirect3d::CreateDeviceFromSettings(const _ZQDeviceSettings_tag* wanted, const _ZQMatchOptions_tag* options,
                                             ZQCallbackIsDeviceAcceptable isDeviceAcceptable,
                                             ZQCallbackModifyDeviceSettings modifyDeviceSettings, void* context) {
    if (!wanted)
        return E_INVALIDARG;
    return CreateDeviceMatching(*wanted, options ? *options : _ZQMatchOptions_tag(), isDeviceAcceptable,
                                modifyDeviceSettings, context);
}

void ZQDirect3d::ApplyCommandLine(_ZQDeviceSettings_tag* wanted, _ZQMatchOptions_tag* options) {
    if (GetOverrideAdapterOrdinal() >= 0) {
        wanted->AdapterOrdinal = static_cast<UINT>(GetOverrideAdapterOrdinal());
        options->AdapterOrdinal = ZQ_MATCH_PRESERVE;
    }
    if (GetOverrideWindowed() || GetOverrideFullScreen()) {
        wanted->pp.Windowed = !GetOverrideFullScreen();
        options->Windowed = ZQ_MATCH_PRESERVE;
    }
    if (GetOverrideWidth() > 0) {
        wanted->pp.BackBufferWidth = static_cast<UINT>(GetOverrideWidth());
        options->Resolution = ZQ_MATCH_PRESERVE;
    }
    if (GetOverrideHeight() > 0) {
        wanted->pp.BackBufferHeight = static_cast<UINT>(GetOverrideHeight());
        options->Resolution = ZQ_MATCH_PRESERVE;
    }
    // One of the two sizes forced: the other is the one asked for, or the desktop's.
    if (options->Resolution == ZQ_MATCH_PRESERVE && (!wanted->pp.BackBufferWidth || !wanted->pp.BackBufferHeight))
        options->Resolution = ZQ_MATCH_CLOSEST;
    if (GetOverrideForceREF() || GetOverrideForceHAL()) {
        wanted->DeviceType = GetOverrideForceREF() ? D3DDEVTYPE_REF : D3DDEVTYPE_HAL;
        options->DeviceType = ZQ_MATCH_PRESERVE;
    }
    const DWORD forced = GetOverrideForcePureHWVP() ? D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE
                         : GetOverrideForceHWVP()   ? D3DCREATE_HARDWARE_VERTEXPROCESSING
                         : GetOverrideForceSWVP()   ? D3DCREATE_SOFTWARE_VERTEXPROCESSING
                                                    : 0;
    if (forced) {
        wanted->BehaviorFlags = forced;
        options->VertexProcessing = ZQ_MATCH_PRESERVE;
    }
    // Vertical sync is on unless the command line turns it off.
    if (GetOverrideForceVsync() == 0) {
        wanted->pp.PresentationInterval = D3DPRESENT_INTERVAL_IMMEDIATE;
        options->PresentInterval = ZQ_MATCH_PRESERVE;
    }
}

HRESULT ZQDirect3d::CreateDeviceMatching(_ZQDeviceSettings_tag wanted, _ZQMatchOptions_tag options,
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

    ApplyCommandLine(&wanted, &options);
    _ZQDeviceSettings_tag valid;
    HRESULT hr = FindValidDeviceSettings(&valid, &wanted, &options);
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
        ZQMessage(L"Device: CreateDevice failed with %ls: %ls", ZQResultName(hr), ZQResultDescription(hr));
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
    if (reset == D3DERR_DEVICELOST)
        return D3DERR_DEVICELOST;
    if (FAILED(reset)) {
        ZQMessage(L"Device: Reset failed with %ls: %ls", ZQResultName(reset), ZQResultDescription(reset));
        return ZQ_E_RESETTING_DEVICE;
    }
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
    const _ZQMatchOptions_tag options = KeepingOptions();
    HRESULT hr = FindValidDeviceSettings(&valid, &wanted, &options);
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
    const _ZQMatchOptions_tag options = KeepingOptions();
    HRESULT hr = FindValidDeviceSettings(&valid, &wanted, &options);
    if (SUCCEEDED(hr))
        hr = ChangeDevice(&valid, nullptr, true, false);
    return hr;
}

} // namespace ZQ
