#include "ZQ/frame/ZQResponseWindow.h"

namespace ZQ {

void _ZQResponseWindow_tag::SethWnd(HWND) {}
HWND _ZQResponseWindow_tag::GethWnd() { return nullptr; }
void _ZQResponseWindow_tag::SethWndFocus(HWND) {}
HWND _ZQResponseWindow_tag::GethWndFocus() { return nullptr; }
void _ZQResponseWindow_tag::SethWndDeviceFullScreen(HWND) {}
HWND _ZQResponseWindow_tag::GethWndDeviceFullScreen() { return nullptr; }
void _ZQResponseWindow_tag::SethWndDeviceWindowed(HWND) {}
HWND _ZQResponseWindow_tag::GethWndDeviceWindowed() { return nullptr; }
void _ZQResponseWindow_tag::SetMenu(HMENU) {}
HMENU _ZQResponseWindow_tag::GetMenu() { return nullptr; }
void _ZQResponseWindow_tag::SetWindowTitle(wchar_t*) {}
wchar_t* _ZQResponseWindow_tag::GetWindowTitle() { return nullptr; }
void _ZQResponseWindow_tag::SetWindowCreated(bool) {}
bool _ZQResponseWindow_tag::GetWindowCreated() { return false; }
void _ZQResponseWindow_tag::SetWindowCreateCalled(bool) {}
bool _ZQResponseWindow_tag::GetWindowCreateCalled() { return false; }
void _ZQResponseWindow_tag::SetClipCursorWhenFullScreen(bool) {}
bool _ZQResponseWindow_tag::GetClipCursorWhenFullScreen() { return false; }
void _ZQResponseWindow_tag::SetShowCursorWhenFullScreen(bool) {}
bool _ZQResponseWindow_tag::GetShowCursorWhenFullScreen() { return false; }
void _ZQResponseWindow_tag::SetWindowCreatedWithDefaultPositions(bool) {}
bool _ZQResponseWindow_tag::GetWindowCreatedWithDefaultPositions() { return false; }
void _ZQResponseWindow_tag::SetActive(bool) {}
bool _ZQResponseWindow_tag::GetActive() { return false; }
HRESULT _ZQResponseWindow_tag::CreateWindow(const wchar_t*, HINSTANCE, HICON, HMENU, int, int) { return 0; }

} // namespace ZQ
