#include "ZQ/frame/ZQWindow.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/frame/ZQVelisto.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQGameControllers.h"
#include "ZQ/frame/ZQMediaSearch.h"

#include <shellapi.h>

#include <cwchar>

namespace ZQ {

ZQWindow* ZQWindow::m_pWindow = nullptr;

namespace {
const wchar_t kWindowClass[] = L"Direct3DWindowClass";
const int kTitleChars = 256;
const int kMinTrackSize = 200;
} // namespace

ZQWindow::ZQWindow(int width, int height)
    : m_instance(nullptr), m_hWnd(nullptr), m_hWndFocus(nullptr), m_hWndDeviceFullScreen(nullptr),
      m_hWndDeviceWindowed(nullptr), m_width(width), m_height(height), m_menu(nullptr), m_instanceMutex(nullptr),
      m_windowCreated(false), m_windowCreateCalled(false), m_clipCursorWhenFullScreen(true),
      m_showCursorWhenFullScreen(true), m_windowCreatedWithDefaultPositions(false), m_active(true),
      m_callDefWindowProc(true), m_minimized(false), m_maximized(false), m_inSizeMove(false),
      m_minimizedWhileFullScreen(false), m_title(new wchar_t[kTitleChars]()) {
    InitializeCriticalSection(&m_windowLock);
    m_pWindow = this;
}

ZQWindow::~ZQWindow() {
    // The device goes before the window it renders to.
    Cleanup3DEnvironment(true);
    if (HWND hWnd = GethWnd())
        DestroyWindow(hWnd);
    if (m_pWindow == this)
        m_pWindow = nullptr;
    if (m_instanceMutex)
        CloseHandle(m_instanceMutex);
    delete[] m_title;
    DeleteCriticalSection(&m_windowLock);
}

#define ZQ_WINDOW_ACCESSORS(type, name, field)                                                                       \
    void ZQWindow::Set##name(type value) {                                                                            \
        ZQLock lock(&m_windowLock);                                                                                   \
        field = value;                                                                                                \
    }                                                                                                                 \
    type ZQWindow::Get##name() {                                                                                      \
        ZQLock lock(&m_windowLock);                                                                                   \
        return field;                                                                                                 \
    }
ZQ_WINDOW_ACCESSORS(HWND, hWnd, m_hWnd)
ZQ_WINDOW_ACCESSORS(HWND, hWndFocus, m_hWndFocus)
ZQ_WINDOW_ACCESSORS(HWND, hWndDeviceFullScreen, m_hWndDeviceFullScreen)
ZQ_WINDOW_ACCESSORS(HWND, hWndDeviceWindowed, m_hWndDeviceWindowed)
ZQ_WINDOW_ACCESSORS(HMENU, Menu, m_menu)
ZQ_WINDOW_ACCESSORS(HINSTANCE, hInstance, m_instance)
ZQ_WINDOW_ACCESSORS(bool, WindowCreated, m_windowCreated)
ZQ_WINDOW_ACCESSORS(bool, WindowCreateCalled, m_windowCreateCalled)
ZQ_WINDOW_ACCESSORS(bool, ClipCursorWhenFullScreen, m_clipCursorWhenFullScreen)
ZQ_WINDOW_ACCESSORS(bool, ShowCursorWhenFullScreen, m_showCursorWhenFullScreen)
ZQ_WINDOW_ACCESSORS(bool, WindowCreatedWithDefaultPositions, m_windowCreatedWithDefaultPositions)
ZQ_WINDOW_ACCESSORS(bool, Active, m_active)
ZQ_WINDOW_ACCESSORS(bool, CallDefWindowProc, m_callDefWindowProc)
ZQ_WINDOW_ACCESSORS(bool, Minimized, m_minimized)
ZQ_WINDOW_ACCESSORS(bool, Maximized, m_maximized)
ZQ_WINDOW_ACCESSORS(bool, InSizeMove, m_inSizeMove)
ZQ_WINDOW_ACCESSORS(bool, MinimizedWhileFullScreen, m_minimizedWhileFullScreen)
#undef ZQ_WINDOW_ACCESSORS

wchar_t* ZQWindow::GetWindowTitle() {
    ZQLock lock(&m_windowLock);
    return m_title;
}

void ZQWindow::SetWindowTitle(const wchar_t* title) {
    ZQLock lock(&m_windowLock);
    std::wmemset(m_title, 0, kTitleChars);
    // Cut to the buffer rather than run past it.
    if (title)
        std::wcsncpy(m_title, title, kTitleChars - 1);
}

HRESULT ZQWindow::CreateWindow(const wchar_t* title, HINSTANCE instance, HICON icon, HMENU menu, int x, int y) {
    if (GetInsideDeviceCallback())
        return E_FAIL;
    if (!title)
        title = L"";
    // A second call creates nothing; checked first, since this process already holds the title's mutex.
    if (GethWndFocus())
        return S_OK;

    // One instance per window title.
    // Only a name that exists already refuses; a title that makes no valid name (a backslash in it)
    // goes on without the guard.
    SetLastError(0);
    HANDLE mutex = CreateMutexW(nullptr, TRUE, title);
    if (mutex && GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        ZQMessage(L"CreateWindow: another instance with the title \"%ls\" runs; refused", title);
        return E_FAIL;
    }
    if (mutex) {
        ReleaseMutex(mutex);
        ZQLock lock(&m_windowLock);
        if (m_instanceMutex)
            CloseHandle(m_instanceMutex);
        m_instanceMutex = mutex;
    }
    SetWindowCreateCalled(true);

    const HRESULT inited = EnsureInited();
    if (FAILED(inited))
        return inited;
    if (GethWndFocus())
        return S_OK;

    if (!instance)
        instance = GetModuleHandleW(nullptr);
    SethInstance(instance);
    if (!icon) {
        wchar_t iconPath[MAX_PATH];
        if (SUCCEEDED(ZQFindDXSDKMediaFileCch(iconPath, MAX_PATH, L"ZQVelisto.ico")))
            icon = ExtractIconW(instance, iconPath, 0);
    }

    WNDCLASSW windowClass = {};
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = WndProc;
    windowClass.hInstance = instance;
    windowClass.hIcon = icon;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kWindowClass;
    if (!RegisterClassW(&windowClass)) {
        const DWORD error = GetLastError();
        if (error != ERROR_CLASS_ALREADY_EXISTS)
            return HRESULT_FROM_WIN32(error);
    }

    int width, height;
    {
        ZQLock lock(&m_windowLock);
        width = m_width;
        height = m_height;
    }
    // The command line's size and position act on the device settings (CreateDevice), not here.
    SetWindowCreatedWithDefaultPositions(x == static_cast<int>(CW_USEDEFAULT) || y == static_cast<int>(CW_USEDEFAULT));
    RECT frame = {0, 0, width, height};
    AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, menu != nullptr);

    SetWindowTitle(title);
    HWND hWnd = CreateWindowExW(WS_EX_STATICEDGE, kWindowClass, title, WS_OVERLAPPEDWINDOW, x, y,
                                frame.right - frame.left, frame.bottom - frame.top, nullptr, menu, instance, nullptr);
    if (!hWnd)
        return HRESULT_FROM_WIN32(GetLastError());
    SetMenu(menu);
    SetWindowCreated(true);
    SethWnd(hWnd);
    SethWndFocus(hWnd);
    SethWndDeviceFullScreen(hWnd);
    SethWndDeviceWindowed(hWnd);
    return S_OK;
}

HRESULT ZQWindow::SetWindow(HWND focus, HWND deviceFullScreen, HWND deviceWindowed, bool handleMessages) {
    if (GetInsideDeviceCallback())
        return E_FAIL;
    SetWindowCreateCalled(true);
    if (!focus || !deviceFullScreen || !deviceWindowed)
        return E_INVALIDARG;
    if (handleMessages) {
        SetLastError(0);
        if (!SetWindowLongPtrW(focus, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WndProc)) && GetLastError() != 0)
            return HRESULT_FROM_WIN32(GetLastError());
    }
    const HRESULT inited = EnsureInited();
    if (FAILED(inited))
        return inited;
    {
        ZQLock lock(&m_windowLock);
        std::wmemset(m_title, 0, kTitleChars);
        GetWindowTextW(focus, m_title, kTitleChars - 1);
    }
    SethInstance(reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(focus, GWLP_HINSTANCE)));
    SetWindowCreatedWithDefaultPositions(false);
    SetWindowCreated(true);
    SethWnd(focus);
    SethWndFocus(focus);
    SethWndDeviceFullScreen(deviceFullScreen);
    SethWndDeviceWindowed(deviceWindowed);
    return S_OK;
}

void ZQWindow::CloseWindow() {
    if (HWND hWnd = GethWnd())
        SendMessageW(hWnd, WM_CLOSE, 0, 0);
}

LRESULT CALLBACK ZQWindow::WndProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    ZQWindow* window = m_pWindow;
    if (!window)
        return DefWindowProcW(hWnd, msg, wParam, lParam);
    return window->HandleMessage(hWnd, msg, wParam, lParam);
}

LRESULT ZQWindow::HandleMessage(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    RouteInput(hWnd, msg, wParam, lParam);

    if ((msg == WM_KEYDOWN || msg == WM_SYSKEYDOWN) && !(HIWORD(lParam) & KF_REPEAT))
        HandleHotkey(wParam, lParam);

    bool noFurtherProcessing = false;
    LRESULT result = 0;
    void* context = GetWindowMsgFuncUserContext();
    if (ZQCallbackMsgProc msgProc = GetWindowMsgFunc())
        result = msgProc(hWnd, msg, wParam, lParam, &noFurtherProcessing, context);
    if (ZQScene* scene = GetCurrent())
        scene->OnMsgProc(hWnd, msg, wParam, lParam, &noFurtherProcessing, context);
    if (noFurtherProcessing)
        return result;

    switch (msg) {
    case WM_PAINT:
        RenderPausedFrame();
        break;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize.x = kMinTrackSize;
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize.y = kMinTrackSize;
        break;
    case WM_SIZE:
        if (wParam == SIZE_MINIMIZED) {
            Pause(true, true);
            SetMinimized(true);
            SetMaximized(false);
        } else {
            if (GetMinimized())
                Pause(false, false);
            SetMinimized(false);
            SetMaximized(wParam == SIZE_MAXIMIZED);
            if (!GetInSizeMove())
                CheckForWindowSizeChange();
        }
        break;
    case WM_ENTERSIZEMOVE:
        Pause(true, true);
        SetInSizeMove(true);
        break;
    case WM_EXITSIZEMOVE:
        Pause(false, false);
        SetInSizeMove(false);
        CheckForWindowSizeChange();
        break;
    case WM_ACTIVATEAPP:
        OnActivateApp(wParam != FALSE);
        break;
    case WM_SETCURSOR:
        if (!IsWindowed() && !GetShowCursorWhenFullScreen()) {
            SetCursor(nullptr);
            return TRUE;
        }
        break;
    case WM_SYSCOMMAND:
        // No moving, sizing, maximising or screen saver in full screen.
        switch (wParam & 0xFFF0) {
        case SC_MOVE:
        case SC_SIZE:
        case SC_MAXIMIZE:
        case SC_KEYMENU:
        case SC_MONITORPOWER:
        case SC_SCREENSAVE:
            if (!IsWindowed())
                return 0;
            break;
        default:
            break;
        }
        break;
    case WM_CLOSE: {
        HMENU menu = ::GetMenu(hWnd);
        if (menu)
            DestroyMenu(menu);
        DestroyWindow(hWnd);
        UnregisterClassW(kWindowClass, nullptr);
        SethWnd(nullptr);
        SethWndDeviceFullScreen(nullptr);
        SethWndDeviceWindowed(nullptr);
        return 0;
    }
    case WM_DESTROY:
        PostQuitMessage(0);
        break;
    default:
        break;
    }
    if (!GetCallDefWindowProc())
        return 0;
    return DefWindowProcW(hWnd, msg, wParam, lParam);
}

void ZQWindow::HandleHotkey(WPARAM key, LPARAM lParam) {
    if (GetHandleAltEnter() && key == VK_RETURN && (HIWORD(lParam) & KF_ALTDOWN)) {
        Pause(true, true);
        ToggleFullScreen();
        Pause(false, false);
        return;
    }
    if (!GetHandleDefaultHotkeys())
        return;
    switch (key) {
    case VK_ESCAPE:
        if (HWND hWnd = GethWnd())
            SendMessageW(hWnd, WM_CLOSE, 0, 0);
        break;
    case VK_F3:
        Pause(true, true);
        ToggleREF();
        Pause(false, false);
        break;
    case VK_F8: {
        const bool wireframe = !GetWireframeMode();
        SetWireframeMode(wireframe);
        if (IDirect3DDevice9* device = GetD3DDevice())
            device->SetRenderState(D3DRS_FILLMODE, wireframe ? D3DFILL_WIREFRAME : D3DFILL_SOLID);
        break;
    }
    default:
        break;
    }
}

// Every activation runs the sequence, the first one included (the window starts active).
void ZQWindow::OnActivateApp(bool active) {
    if (active) {
        SetActive(true);
        if (GetMinimizedWhileFullScreen()) {
            Pause(false, false);
            SetMinimizedWhileFullScreen(false);
        }
        AllowShortcutKeys(IsWindowed() ? GetAllowShortcutKeysWhenWindowed() : GetAllowShortcutKeysWhenFullscreen());
    } else if (!active && GetActive()) {
        SetActive(false);
        ZQStopRumbleOnAllControllers();
        if (!IsWindowed()) {
            ClipCursor(nullptr);
            Pause(true, true);
            SetMinimizedWhileFullScreen(true);
        }
        AllowShortcutKeys(true);
    }
}

void ZQWindow::CheckForWindowSizeChange() {
    IDirect3DDevice9* device = GetD3DDevice();
    HWND hWnd = GethWndDeviceWindowed();
    if (!device || !hWnd || GetIgnoreSizeChange() || !IsWindowed())
        return;
    RECT client;
    if (!GetClientRect(hWnd, &client) || client.right <= 0 || client.bottom <= 0)
        return;
    _ZQDeviceSettings_tag settings = GetDeviceSettings();
    if (settings.pp.BackBufferWidth == static_cast<UINT>(client.right) &&
        settings.pp.BackBufferHeight == static_cast<UINT>(client.bottom))
        return;
    settings.pp.BackBufferWidth = static_cast<UINT>(client.right);
    settings.pp.BackBufferHeight = static_cast<UINT>(client.bottom);
    ChangeDevice(&settings, device, false, false);
}

ZQVelisto::ZQVelisto(const wchar_t* title, int width, int height) : ZQWindow(width, height) {
    SetWindowTitle(title);
}

ZQVelisto::~ZQVelisto() = default;

void ZQVelisto::Create() {}

void ZQVelisto::Init() {}

} // namespace ZQ
