// The frame, the main loop, input routing, pausing and shutdown.
#include "ZQ/frame/ZQDirect3d.h"

#include <shellapi.h>

namespace ZQ {

namespace {
const DWORD kLostDeviceSleepMs = 50;
} // namespace

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
                const _ZQMatchOptions_tag options = KeepingOptions();
                if (FAILED(FindValidDeviceSettings(&valid, &settings, &options))) {
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

} // namespace ZQ
