#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/frame/ZQDirect3d.h"

namespace ZQ {

/// The window layer of the application object: registers "Direct3DWindowClass", creates (or adopts)
/// the window, keeps its handles and flags, and owns the window procedure that routes every message
/// to the framework, the keyboard and mouse state and the current scene.
class ZQ_API ZQWindow : public ZQDirect3d {
public:
    ZQWindow(int width, int height);
    virtual ~ZQWindow();

    /// Creates the window; E_FAIL inside a device callback, for a second instance with the same
    /// title (a named mutex) or after a failed Init. A second call returns 0 and creates nothing.
    HRESULT CreateWindow(const wchar_t* title, HINSTANCE instance, HICON icon, HMENU menu, int x, int y) override;
    /// Adopts windows the host made; E_INVALIDARG unless all three are given.
    HRESULT SetWindow(HWND focus, HWND deviceFullScreen, HWND deviceWindowed, bool handleMessages);
    /// Closes the application window (as the user would).
    void CloseWindow();
    /// Copies the title into the 256-character title buffer. It hides the response interface's
    /// SetWindowTitle(wchar_t*) on purpose: that one stays the empty default.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Woverloaded-virtual"
#endif
    void SetWindowTitle(const wchar_t* title);
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
    static LRESULT CALLBACK WndProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam);

    void SethWnd(HWND hWnd) override;
    HWND GethWnd() override;
    void SethWndFocus(HWND hWnd) override;
    HWND GethWndFocus() override;
    void SethWndDeviceFullScreen(HWND hWnd) override;
    HWND GethWndDeviceFullScreen() override;
    void SethWndDeviceWindowed(HWND hWnd) override;
    HWND GethWndDeviceWindowed() override;
    void SetMenu(HMENU menu) override;
    HMENU GetMenu() override;
    wchar_t* GetWindowTitle() override;
    void SetWindowCreated(bool created) override;
    bool GetWindowCreated() override;
    void SetWindowCreateCalled(bool called) override;
    bool GetWindowCreateCalled() override;
    void SetClipCursorWhenFullScreen(bool clip) override;
    bool GetClipCursorWhenFullScreen() override;
    void SetShowCursorWhenFullScreen(bool show) override;
    bool GetShowCursorWhenFullScreen() override;
    void SetWindowCreatedWithDefaultPositions(bool defaultPositions) override;
    bool GetWindowCreatedWithDefaultPositions() override;
    void SetActive(bool active) override;
    bool GetActive() override;

    void SethInstance(HINSTANCE instance);
    HINSTANCE GethInstance();
    void SetCallDefWindowProc(bool call);
    bool GetCallDefWindowProc();
    void SetMinimized(bool minimized);
    bool GetMinimized();
    void SetMaximized(bool maximized);
    bool GetMaximized();
    void SetInSizeMove(bool inSizeMove);
    bool GetInSizeMove();
    void SetMinimizedWhileFullScreen(bool minimized);
    bool GetMinimizedWhileFullScreen();

    static ZQWindow* m_pWindow;

private:
    LRESULT HandleMessage(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam);
    void OnActivateApp(bool active);
    void CheckForWindowSizeChange();
    void HandleHotkey(WPARAM key, LPARAM lParam);

    HINSTANCE m_instance;
    HWND m_hWnd;
    HWND m_hWndFocus;
    HWND m_hWndDeviceFullScreen;
    HWND m_hWndDeviceWindowed;
    int m_width;
    int m_height;
    HMENU m_menu;
    HANDLE m_instanceMutex;
    bool m_windowCreated;
    bool m_windowCreateCalled;
    bool m_clipCursorWhenFullScreen;
    bool m_showCursorWhenFullScreen;
    bool m_windowCreatedWithDefaultPositions;
    bool m_active;
    bool m_callDefWindowProc;
    bool m_minimized;
    bool m_maximized;
    bool m_inSizeMove;
    bool m_minimizedWhileFullScreen;
    wchar_t* m_title;
    CRITICAL_SECTION m_windowLock;
};

} // namespace ZQ
