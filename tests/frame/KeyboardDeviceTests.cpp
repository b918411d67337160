#include "FrameTestApp.h"

#include <gtest/gtest.h>

using frametest::g_log;
using frametest::TestApp;

namespace {

class KeyboardApp : public TestApp {
public:
    using ZQKeyboard::AllowShortcutKeys;
    using ZQKeyboard::GetKeyboardHook;
    using ZQKeyboard::SetAllowShortcutKeysWhenWindowed;
};

LRESULT HookEvent(WPARAM message, DWORD key) {
    KBDLLHOOKSTRUCT event = {};
    event.vkCode = key;
    return ZQ::ZQKeyboard::LowLevelKeyboardProc(HC_ACTION, message, reinterpret_cast<LPARAM>(&event));
}

} // namespace

// Disallowed, the shortcut keys are swallowed by a hook and the hot keys of features that are off are cleared.
TEST(ZQKeyboard, DisallowingHooksTheWindowsKeysAndClearsTheHotKeysOfFeaturesThatAreOff) {
    KeyboardApp app;
    STICKYKEYS sticky = {sizeof sticky, SKF_HOTKEYACTIVE | SKF_CONFIRMHOTKEY};
    TOGGLEKEYS toggle = {sizeof toggle, TKF_TOGGLEKEYSON | TKF_HOTKEYACTIVE | TKF_CONFIRMHOTKEY};
    app.SetStartupStickyKeys(&sticky);
    app.SetStartupToggleKeys(&toggle);
    app.AllowShortcutKeys(false);
    EXPECT_EQ(app.GetStartupStickyKeys()->dwFlags, 0u) << "the saved record itself loses the two bits";
    EXPECT_EQ(app.GetStartupToggleKeys()->dwFlags,
              static_cast<DWORD>(TKF_TOGGLEKEYSON | TKF_HOTKEYACTIVE | TKF_CONFIRMHOTKEY))
        << "a feature that is on keeps its hot keys";
    EXPECT_NE(app.GetKeyboardHook(), nullptr);
    EXPECT_EQ(HookEvent(WM_KEYDOWN, VK_LWIN), 1);
    EXPECT_EQ(HookEvent(WM_KEYUP, VK_RWIN), 1);
    EXPECT_EQ(HookEvent(WM_SYSKEYDOWN, VK_LWIN), 0) << "with Alt held the key passes";
    EXPECT_EQ(HookEvent(WM_KEYDOWN, VK_TAB), 0);
    EXPECT_EQ(HookEvent(WM_KEYDOWN, VK_ESCAPE), 0);

    app.AllowShortcutKeys(true);
    EXPECT_EQ(app.GetKeyboardHook(), nullptr);
    EXPECT_EQ(HookEvent(WM_KEYDOWN, VK_LWIN), 0);
}

namespace {
class DeviceTest : public frametest::AppTest<KeyboardApp> {
protected:
    void Prepare() override {
        app->SetDeviceResetFunc([](IDirect3DDevice9*, const D3DSURFACE_DESC* backBuffer, void*) {
            g_log.push_back("reset " + std::to_string(backBuffer->Width) + "x" + std::to_string(backBuffer->Height));
            return S_OK;
        });
        app->SetDeviceLostFunc([](void*) { g_log.push_back("lost"); });
    }
};
} // namespace

TEST_F(DeviceTest, ResizingTheWindowResetsTheDeviceIntoTheHostsRecord) {
    D3DSURFACE_DESC* own = app->GetBackBufferSurfaceDesc();
    D3DSURFACE_DESC mine = {};
    app->SetBackBufferSurfaceDesc(&mine);
    g_log.clear();
    HWND hWnd = app->GethWnd();
    RECT frame = {0, 0, 400, 300};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(hWnd, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(hWnd, GWL_EXSTYLE)));
    SetWindowPos(hWnd, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(g_log, (std::vector<std::string>{"lost", "reset 400x300"}));
    EXPECT_EQ(mine.Width, 400u) << "the reset wrote into the record the host set";
    app->SetBackBufferSurfaceDesc(own);
}

TEST_F(DeviceTest, ALostDeviceIsRecoveredOnTheNextFrame) {
    app->SetDeviceLost(true);
    app->SetOverrideQuitAfterFrame(1);
    app->MainLoop(nullptr);
    EXPECT_FALSE(app->GetDeviceLost());
    EXPECT_EQ(app->GetCurrentFrameNumber(), 2);
}

// Windowed, the Windows keys are blocked only while active and only when the host asks.
TEST_F(DeviceTest, ActivationFollowsTheShortcutKeySettings) {
    HWND hWnd = app->GethWnd();
    app->SetAllowShortcutKeysWhenWindowed(false);
    SendMessageW(hWnd, WM_ACTIVATEAPP, TRUE, 0);
    EXPECT_NE(app->GetKeyboardHook(), nullptr) << "the first activation, with no deactivation before it, blocks";
    SendMessageW(hWnd, WM_ACTIVATEAPP, FALSE, 0);
    EXPECT_FALSE(app->IsActive());
    EXPECT_EQ(app->GetKeyboardHook(), nullptr) << "allowed while inactive";
    SendMessageW(hWnd, WM_ACTIVATEAPP, TRUE, 0);
    EXPECT_NE(app->GetKeyboardHook(), nullptr) << "blocked once active again";
    app->SetAllowShortcutKeysWhenWindowed(true);
    SendMessageW(hWnd, WM_ACTIVATEAPP, TRUE, 0);
    EXPECT_EQ(app->GetKeyboardHook(), nullptr) << "allowed again, as by default";
}

TEST_F(DeviceTest, StatisticsTexts) {
    const std::wstring settings = app->GetFrameStats(false);
    EXPECT_EQ(settings.rfind(L" Vsync On (320x240), ", 0), 0u) << std::string(settings.begin(), settings.end());
    EXPECT_NE(std::wstring(app->GetDeviceStats()).find(L"HAL"), std::wstring::npos);
    app->UpdateFrameStats();
    Sleep(1100);
    app->UpdateFrameStats();
    EXPECT_GT(app->GetFPS(), 0.0f);
    const std::wstring withFps = app->GetFrameStats(true);
    EXPECT_NE(withFps.find(L" fps Vsync On"), std::wstring::npos);

    // Every format has its name: a host-set settings record with formats beyond the common ones.
    struct FormatCase {
        D3DFORMAT backBuffer, adapter, depth;
        const wchar_t* text;
    };
    const FormatCase cases[] = {
        {D3DFMT_A16B16G16R16F, D3DFMT_X8R8G8B8, D3DFMT_D24FS8, L"backbuf A16B16G16R16F, adapter X8R8G8B8 (D24FS8)"},
        {D3DFMT_A2B10G10R10, D3DFMT_A2B10G10R10, D3DFMT_D32F_LOCKABLE, L", A2B10G10R10 (D32F_LOCKABLE)"},
    };
    ZQ::_ZQDeviceSettings_tag* live = app->GetCurrentDeviceSettings();
    ZQ::_ZQDeviceSettings_tag formats = *live;
    app->SetCurrentDeviceSettings(&formats);
    for (const FormatCase& c : cases) {
        formats.pp.BackBufferFormat = c.backBuffer;
        formats.AdapterFormat = c.adapter;
        formats.pp.EnableAutoDepthStencil = TRUE;
        formats.pp.AutoDepthStencilFormat = c.depth;
        app->UpdateStaticFrameStats();
        const std::wstring text = app->GetStaticFrameStats();
        EXPECT_NE(text.find(c.text), std::wstring::npos) << std::string(text.begin(), text.end());
    }
    app->SetCurrentDeviceSettings(live);

    app->SetNoStats(true);
    app->SetFPS(0.0f);
    Sleep(1100);
    app->UpdateFrameStats();
    EXPECT_EQ(app->GetFPS(), 0.0f) << "NoStats leaves the figures alone";
}
