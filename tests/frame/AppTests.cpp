#include "FrameTestApp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using frametest::g_log;
using frametest::TestApp;
using ZQ::ZQScene;
using Log = std::vector<std::string>;

namespace {

int g_moveContext, g_renderContext, g_keyboardContext, g_mouseContext, g_msgContext;
double g_lastTime;
TestApp* g_app;

std::string Where(void* context, void* expected) {
    return context == expected ? "" : "!ctx";
}

class Scene : public ZQScene {
public:
    explicit Scene(std::string name) : m_name(std::move(name)) {}
    HRESULT OnCreateDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) override { return Log("create"); }
    HRESULT OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) override { return Log("reset"); }
    void OnLostDevice(void*) override { Log("lost"); }
    void OnDestroyDevice(void*) override { Log("destroy"); }
    void OnFrameMove(IDirect3DDevice9*, double, float, void* context) override {
        Log("move" + Where(context, &g_moveContext));
    }
    void OnNetwork(IDirect3DDevice9*, double, float, void* context) override {
        Log("network" + Where(context, &g_moveContext));
    }
    void OnFrameRender(IDirect3DDevice9*, double, float, void* context) override {
        // The frame hands the scene the frame-move context, deliberately.
        Log("render" + Where(context, &g_moveContext));
    }
    void OnKeyboard(UINT key, bool down, bool alt, void* context) override {
        Log("key " + std::to_string(key) + (down ? " down" : " up") + (alt ? " alt" : "") +
            Where(context, &g_keyboardContext));
    }
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context) override {
        Log(std::string("mouse ") + (down ? "D" : "-") + (left ? "L" : "-") + (right ? "R" : "-") +
            (middle ? "M" : "-") + (side1 ? "1" : "-") + (side2 ? "2" : "-") + " " + std::to_string(wheel) + " " +
            std::to_string(x) + "," + std::to_string(y) + Where(context, &g_mouseContext));
    }

private:
    HRESULT Log(const std::string& what) {
        g_log.push_back(m_name + "." + what);
        return S_OK;
    }
    std::string m_name;
};

// InsideDeviceCallback holds during the created and reset callbacks only; the log marks a breach.
HRESULT CALLBACK Created(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    g_log.push_back(g_app->GetInsideDeviceCallback() ? "fn.created" : "fn.created (outside)");
    return S_OK;
}
HRESULT CALLBACK Reset(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    g_log.push_back(g_app->GetInsideDeviceCallback() ? "fn.reset" : "fn.reset (outside)");
    return S_OK;
}
void CALLBACK Lost(void*) {
    g_log.push_back(g_app->GetInsideDeviceCallback() ? "fn.lost (inside)" : "fn.lost");
}
void CALLBACK Destroyed(void*) {
    g_log.push_back(g_app->GetInsideDeviceCallback() ? "fn.destroyed (inside)" : "fn.destroyed");
}
void CALLBACK Render(IDirect3DDevice9*, double, float, void* context) {
    g_log.push_back("fn.render" + Where(context, &g_renderContext));
}

class FrameTest : public frametest::AppTest<> {
protected:
    void Prepare() override {
        g_app = app;
        app->SetDeviceCreatedFunc(Created);
        app->SetDeviceResetFunc(Reset);
        app->SetDeviceLostFunc(Lost);
        app->SetDeviceDestroyedFunc(Destroyed);
        app->SetFrameMoveFuncUserContext(&g_moveContext);
        app->SetFrameRenderFuncUserContext(&g_renderContext);
        app->SetKeyboardFuncUserContext(&g_keyboardContext);
        app->SetMouseFuncUserContext(&g_mouseContext);
        app->SetWindowMsgFuncUserContext(&g_msgContext);
        app->Entry(L"A", new Scene("A"));
        app->Entry(L"B", new Scene("B"));
    }
    Log Take() {
        Log taken;
        taken.swap(g_log);
        return taken;
    }
};

} // namespace

TEST_F(FrameTest, CallbackOrderFromStartToShutdown) {
    app->SetFrameMoveFunc([](IDirect3DDevice9* device, double time, float, void*) {
        g_lastTime = time;
        const int frame = g_app->GetCurrentFrameNumber() + 1;
        g_log.push_back("fn.move" + std::string(device ? "" : " (no device)"));
        if (frame == 2)
            g_app->Trans(L"b");
        if (frame == 4)
            g_app->Shutdown();
    });
    app->SetFrameRenderFunc(Render);
    EXPECT_EQ(Take(), (Log{"fn.created", "fn.reset"})) << "no scene hears of the first device";
    app->Trans(L"A");
    const double before = ZQ::ZQTimer().GetAbsoluteTime();
    EXPECT_EQ(app->MainLoop(nullptr), S_OK);
    EXPECT_GE(g_lastTime, before) << "frame time is the timer's absolute time, not the time since Init";
    EXPECT_EQ(app->GetTime(), g_lastTime);
    const Log frameA = {"A.move", "fn.move", "A.network", "fn.render", "A.render"};
    const Log frameB = {"B.move", "fn.move", "B.network", "fn.render", "B.render"};
    Log expected = {"A.create", "A.reset"};
    expected.insert(expected.end(), frameA.begin(), frameA.end());
    expected.insert(expected.end(), frameA.begin(), frameA.end());
    for (const char* step : {"A.lost", "A.destroy", "B.create", "B.reset"})
        expected.push_back(step);
    expected.insert(expected.end(), frameB.begin(), frameB.end());
    expected.insert(expected.end(), frameB.begin(), frameB.end());
    // The fifth frame shuts down, then still moves without a device.
    for (const char* step :
         {"fn.lost", "B.lost", "fn.destroyed", "B.destroy", "B.move", "fn.move (no device)", "B.network"})
        expected.push_back(step);
    EXPECT_EQ(Take(), expected);
    EXPECT_EQ(app->GetExitCode(), 0);
    EXPECT_EQ(app->GethWnd(), nullptr) << "the window was closed";

    delete app;
    app = nullptr;
    EXPECT_EQ(Take(), (Log{"A.lost", "A.destroy", "B.lost", "B.destroy"}));
}

TEST_F(FrameTest, NetworkRunsWhileRenderingIsPaused) {
    app->SetFrameRenderFunc(Render);
    app->SetOverrideQuitAfterFrame(2);
    app->Trans(L"A");
    app->Pause(false, true);
    EXPECT_TRUE(app->IsRenderingPaused());
    EXPECT_FALSE(app->IsTimePaused());
    Take();
    app->MainLoop(nullptr);
    const Log log = Take();
    EXPECT_EQ(std::count(log.begin(), log.end(), "A.move"), 4);
    EXPECT_EQ(std::count(log.begin(), log.end(), "A.network"), 4);
    // A paint message may repaint the paused window (with the render context: "A.render!ctx").
    EXPECT_EQ(std::count(log.begin(), log.end(), "A.render"), 0);
}

TEST_F(FrameTest, MainLoopRefusals) {
    app->SetFrameMoveFunc([](IDirect3DDevice9*, double, float, void*) {
        if (g_app->GetCurrentFrameNumber() != 0)
            return;
        g_log.push_back(g_app->MainLoop(nullptr) == E_FAIL ? "refused" : "ran");
        g_log.push_back("exit " + std::to_string(g_app->GetExitCode()));
        g_app->Shutdown();
    });
    app->SetExitCode(11);
    Take();
    EXPECT_EQ(app->MainLoop(nullptr), S_OK);
    EXPECT_EQ(Take(), (Log{"refused", "exit 1", "fn.lost", "fn.destroyed"})) << "inside the loop; 11 becomes 1";
    EXPECT_EQ(app->GetExitCode(), 0) << "the shutdown stores 0";

    app->SetExitCode(5);
    app->SetInsideDeviceCallback(true);
    EXPECT_EQ(app->MainLoop(nullptr), E_FAIL);
    EXPECT_EQ(app->GetExitCode(), 5) << "only 0 and 11 are replaced";
    app->SetInsideDeviceCallback(false);
}

TEST(FrameRefusals, MainLoopAfterAFailedDeviceCreation) {
    frametest::DrainMessages();
    TestApp app(L"ZQVelisto refusal test");
    app.Init(false, false, false, false);
    app.SetShowMsgBoxOnError(false);
    ASSERT_EQ(app.CreateWindow(L"ZQVelisto refusal test", nullptr, nullptr, nullptr, 0, 0), S_OK);
    const HRESULT hr =
        app.CreateDevice(0, true, 320, 240, [](D3DCAPS9*, D3DFORMAT, D3DFORMAT, bool, void*) { return false; });
    EXPECT_EQ(hr, ZQ::ZQ_E_NO_COMPATIBLE_DEVICES);
    EXPECT_EQ(app.GetExitCode(), 3);
    EXPECT_EQ(app.MainLoop(nullptr), E_FAIL);
    EXPECT_EQ(app.GetExitCode(), 3);
    EXPECT_EQ(app.CreateWindow(L"ZQVelisto refusal test", nullptr, nullptr, nullptr, 0, 0), S_OK)
        << "a second CreateWindow creates nothing";
}

TEST(FrameErrors, EachCodeHasItsExitCode) {
    TestApp app;
    app.SetShowMsgBoxOnError(false);
    for (int i = 0; i < 9; ++i) {
        app.DisplayErrorMessage(static_cast<HRESULT>(0x80040901 + i));
        EXPECT_EQ(app.GetExitCode(), i + 2) << std::hex << 0x80040901 + i;
    }
    app.DisplayErrorMessage(E_OUTOFMEMORY);
    EXPECT_EQ(app.GetExitCode(), 1);
}

TEST_F(FrameTest, InputReachesTheFunctionThenTheScene) {
    app->SetKeyboardFunc([](UINT key, bool down, bool alt, void*) {
        g_log.push_back("fn.key " + std::to_string(key) + (down ? " down" : " up") + (alt ? " alt" : ""));
    });
    app->SetMouseFunc([](bool down, bool, bool right, bool, bool, bool, int wheel, int x, int y, void*) {
        g_log.push_back(std::string("fn.mouse ") + (down ? "D" : "-") + (right ? "R" : "-") + " " +
                        std::to_string(wheel) + " " + std::to_string(x) + "," + std::to_string(y));
    });
    app->Trans(L"A");
    app->Dispatcher(app->GetDevice(), nullptr, nullptr);
    Take();
    HWND hWnd = app->GethWnd();
    ASSERT_NE(hWnd, nullptr);

    SendMessageW(hWnd, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(10, 20));
    EXPECT_TRUE(app->IsButtonDown(ZQ::ZQMouse::Right));
    SendMessageW(hWnd, WM_XBUTTONDOWN, MAKEWPARAM(MK_XBUTTON2 | MK_MBUTTON, XBUTTON2), MAKELPARAM(1, 2));
    SendMessageW(hWnd, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(3, 4));
    POINT origin = {0, 0};
    ClientToScreen(hWnd, &origin);
    SendMessageW(hWnd, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-240)), MAKELPARAM(origin.x + 5, origin.y + 6));
    EXPECT_EQ(Take(),
              (Log{"fn.mouse DR 0 10,20", "A.mouse D-R--- 0 10,20", "fn.mouse D- 0 1,2", "A.mouse D--M-2 0 1,2",
                   "fn.mouse -- 0 3,4", "A.mouse -L---- 0 3,4", "fn.mouse -- -240 5,6", "A.mouse ------ -240 5,6"}));

    SendMessageW(hWnd, WM_SYSKEYDOWN, 'K', 1 << 29);
    EXPECT_TRUE(app->IsKeyDown('K'));
    SendMessageW(hWnd, WM_KEYUP, 'K', 0);
    EXPECT_FALSE(app->IsKeyDown('K'));
    SendMessageW(hWnd, WM_KEYDOWN, 0x100 + 'Q', 0);
    EXPECT_TRUE(app->IsKeyDown('Q')) << "codes fold into 256 entries";
    EXPECT_EQ(Take(), (Log{"fn.key 75 down alt", "A.key 75 down alt", "fn.key 75 up", "A.key 75 up", "fn.key 337 down",
                           "A.key 337 down"}));

    // The window-message function sees every message first and may keep it from the window procedure.
    app->SetWindowMsgFunc([](HWND, UINT msg, WPARAM, LPARAM, bool* noFurtherProcessing, void*) -> LRESULT {
        *noFurtherProcessing = msg == WM_USER + 7;
        return *noFurtherProcessing ? 1234 : 0;
    });
    EXPECT_EQ(SendMessageW(hWnd, WM_USER + 7, 0, 0), 1234);
    EXPECT_EQ(SendMessageW(hWnd, WM_USER + 8, 0, 0), 0);
}

TEST_F(FrameTest, TimersFireRepeatAndCanBeRemoved) {
    static int fired[3];
    fired[0] = fired[1] = fired[2] = 0;
    UINT first = 0, second = 0, third = 0;
    auto count = [](UINT id, void* context) {
        ++fired[reinterpret_cast<intptr_t>(context)];
        if (reinterpret_cast<intptr_t>(context) == 2)
            g_app->RemoveTimer(id);
    };
    EXPECT_EQ(app->AddTimer(count, 0.25f, &first, reinterpret_cast<void*>(0)), S_OK);
    EXPECT_EQ(app->AddTimer(count, 0.15f, &second, reinterpret_cast<void*>(1)), S_OK);
    EXPECT_EQ(app->AddTimer(count, 0.0f, &third, reinterpret_cast<void*>(2)), S_OK);
    EXPECT_NE(first, second);
    EXPECT_EQ(app->ChangeTimer(second, 0.35f), S_OK);
    EXPECT_EQ(app->ChangeTimer(999, 1.0f), E_INVALIDARG);
    EXPECT_EQ(app->AddTimer(nullptr, 1.0f), E_INVALIDARG);
    app->ConstantFrameTime(true, 0.1f);
    app->SetOverrideQuitAfterFrame(9);
    app->MainLoop(nullptr);
    // Timers are serviced in eleven frames of 0.1 s: 1.1 s of frame time (the last frame ends in the shutdown).
    EXPECT_EQ(fired[0], 4) << "every 0.25 s of frame time: at 0.3, 0.5, 0.8 and 1.0 s";
    EXPECT_EQ(fired[1], 3) << "every 0.35 s once changed: at 0.4, 0.7 and 1.1 s";
    EXPECT_EQ(fired[2], 1) << "removed from inside its own callback";
    EXPECT_EQ(app->RemoveTimer(third), E_INVALIDARG);
    EXPECT_EQ(app->RemoveTimer(first), S_OK);
}

// A timer fires once for each period of frame time, keeping its phase; a frame longer than the period
// fires it once.
struct TimerCase {
    float frame;
    int frames;
    float periods[3];
    int fires[3];
};

class TimerPhase : public FrameTest, public ::testing::WithParamInterface<TimerCase> {};

TEST_P(TimerPhase, ATimerFiresOnceForEachPeriodOfFrameTime) {
    static int fired[3];
    const TimerCase& c = GetParam();
    for (int k = 0; k < 3; ++k) {
        fired[k] = 0;
        ASSERT_EQ(app->AddTimer([](UINT, void* context) { ++fired[reinterpret_cast<intptr_t>(context)]; }, c.periods[k],
                                nullptr, reinterpret_cast<void*>(static_cast<intptr_t>(k))),
                  S_OK);
    }
    app->ConstantFrameTime(true, c.frame);
    // The frame that quits and the one that shuts down service the timers as well.
    app->SetOverrideQuitAfterFrame(c.frames - 2);
    app->MainLoop(nullptr);
    for (int k = 0; k < 3; ++k)
        EXPECT_EQ(fired[k], c.fires[k]) << "period " << c.periods[k] << " s, frames of " << c.frame << " s";
}

INSTANTIATE_TEST_SUITE_P(FrameTimes, TimerPhase,
                         ::testing::Values(
                             // 1 s: 0.1 and 0.04 divide by the frame time, 0.03 does not.
                             TimerCase{0.02f, 50, {0.1f, 0.04f, 0.03f}, {10, 25, 33}},
                             // 2 s: 0.125 divides, 0.1 does not, 0.05 is shorter than a frame (once a frame).
                             TimerCase{0.0625f, 32, {0.125f, 0.1f, 0.05f}, {16, 20, 32}}));

TEST(FrameWindow, ASecondInstanceWithTheSameTitleIsRefused) {
    const wchar_t* title = L"ZQVelisto single instance";
    {
        frametest::DrainMessages();
        TestApp app(title);
        app.Init(false, false, false, false);
        ASSERT_EQ(app.CreateWindow(title, nullptr, nullptr, nullptr, 0, 0), S_OK);
        std::string out;
        EXPECT_EQ(frametest::RunChild(std::wstring(L"window \"") + title + L"\"", &out), 1);
        EXPECT_NE(out.find("another instance with the title \"ZQVelisto single instance\" runs"), std::string::npos)
            << out;
        EXPECT_EQ(frametest::RunChild(L"window \"ZQVelisto other title\""), 0);
    }
    frametest::DrainMessages();
    EXPECT_EQ(frametest::RunChild(std::wstring(L"window \"") + title + L"\""), 0) << "free again once closed";
}

TEST(FrameWindow, CommandLineSizeAndPositionActOnTheDeviceNotTheWindow) {
    frametest::DrainMessages();
    const wchar_t* title = L"ZQVelisto placement test";
    TestApp app(title);
    app.Init(false, false, false, false);
    app.SetShowMsgBoxOnError(false);
    app.SetOverrideWidth(400);
    app.SetOverrideHeight(300);
    app.SetOverrideStartX(30);
    app.SetOverrideStartY(40);
    ASSERT_EQ(app.CreateWindow(title, nullptr, nullptr, nullptr, 10, 20), S_OK);
    HWND hWnd = app.GethWnd();
    RECT client, frame, wanted = {0, 0, 320, 240};
    AdjustWindowRect(&wanted, WS_OVERLAPPEDWINDOW, FALSE);
    GetWindowRect(hWnd, &frame);
    EXPECT_EQ(frame.right - frame.left, wanted.right - wanted.left) << "the constructor's size";
    EXPECT_EQ(frame.bottom - frame.top, wanted.bottom - wanted.top);
    EXPECT_EQ(frame.left, 10);
    EXPECT_EQ(frame.top, 20);

    ASSERT_EQ(app.CreateDevice(0, true, 320, 240, nullptr, nullptr, nullptr), S_OK);
    GetClientRect(hWnd, &client);
    GetWindowRect(hWnd, &frame);
    EXPECT_EQ(app.GetBackBufferSurfaceDesc()->Width, 400u);
    EXPECT_EQ(client.right, 400);
    EXPECT_EQ(client.bottom, 300);
    EXPECT_EQ(frame.left, 30);
    EXPECT_EQ(frame.top, 40);
}

TEST_F(FrameTest, APaintWhilePausedRepaintsWithTheRenderContext) {
    app->SetFrameRenderFunc(Render);
    app->Trans(L"A");
    app->Dispatcher(app->GetDevice(), nullptr, nullptr);
    HWND hWnd = app->GethWnd();
    UpdateWindow(hWnd);
    Take();
    InvalidateRect(hWnd, nullptr, FALSE);
    UpdateWindow(hWnd);
    EXPECT_TRUE(Take().empty()) << "while running, frames do the painting";

    app->Pause(true, true);
    InvalidateRect(hWnd, nullptr, FALSE);
    UpdateWindow(hWnd);
    EXPECT_EQ(Take(), (Log{"fn.render", "A.render!ctx"}));
    app->Pause(false, false);
}
