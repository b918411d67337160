#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// The window properties through which the framework reaches the application's window.
/// Every operation does nothing by default: setters ignore their argument, getters return null or false.
/// The application object implements all of them except SetWindowTitle, which stays the empty default
/// (the title changes only through the window layer's own SetWindowTitle). Overrides must not throw.
class ZQ_API _ZQResponseWindow_tag {
public:
    virtual void SethWnd(HWND hWnd);
    virtual HWND GethWnd();
    virtual void SethWndFocus(HWND hWnd);
    virtual HWND GethWndFocus();
    virtual void SethWndDeviceFullScreen(HWND hWnd);
    virtual HWND GethWndDeviceFullScreen();
    virtual void SethWndDeviceWindowed(HWND hWnd);
    virtual HWND GethWndDeviceWindowed();
    virtual void SetMenu(HMENU menu);
    virtual HMENU GetMenu();
    virtual void SetWindowTitle(wchar_t* title);
    virtual wchar_t* GetWindowTitle();
    virtual void SetWindowCreated(bool created);
    virtual bool GetWindowCreated();
    virtual void SetWindowCreateCalled(bool called);
    virtual bool GetWindowCreateCalled();
    virtual void SetClipCursorWhenFullScreen(bool clip);
    virtual bool GetClipCursorWhenFullScreen();
    virtual void SetShowCursorWhenFullScreen(bool show);
    virtual bool GetShowCursorWhenFullScreen();
    virtual void SetWindowCreatedWithDefaultPositions(bool defaultPositions);
    virtual bool GetWindowCreatedWithDefaultPositions();
    virtual void SetActive(bool active);
    virtual bool GetActive();
    /// Creates the application window; the default does nothing and returns 0.
    virtual HRESULT CreateWindow(const wchar_t* title, HINSTANCE instance, HICON icon, HMENU menu, int x, int y);

protected:
    ~_ZQResponseWindow_tag() = default;
};

} // namespace ZQ
