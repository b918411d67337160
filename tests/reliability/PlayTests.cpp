// The library under long, concurrent and disturbed play: scene switches requested from several threads,
// a hundred thousand frames of a realistic screen with memory flat, device resets and window resizes.
#include "ReliabilitySupport.h"
#include "frame/FrameTestApp.h"
#include "support/BackBufferCopy.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

namespace {

// A screen that holds device objects from create to destroy and counts its callbacks; a create
// while created, or a reset while reset, is a broken pairing.
class CountingScene : public ZQ::ZQScene {
public:
    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override {
        ++creates;
        if (m_texture)
            ++broken;
        else if (device)
            device->CreateTexture(16, 16, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &m_texture, nullptr);
        return S_OK;
    }
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override {
        ++resets;
        if (m_target)
            ++broken;
        else if (device)
            device->CreateRenderTarget(16, 16, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_NONE, 0, FALSE, &m_target, nullptr);
        return S_OK;
    }
    void OnLostDevice(void*) override {
        ++losts;
        if (m_target)
            m_target->Release();
        m_target = nullptr;
    }
    void OnDestroyDevice(void*) override {
        ++destroys;
        if (m_texture)
            m_texture->Release();
        m_texture = nullptr;
    }
    void OnFrameRender(IDirect3DDevice9* device, double, float, void*) override {
        device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(0, 0, 64), 1.0f, 0);
    }
    std::atomic<int> creates{0}, resets{0}, losts{0}, destroys{0}, broken{0};

private:
    IDirect3DTexture9* m_texture = nullptr;
    IDirect3DSurface9* m_target = nullptr;
};

// A play screen as a kiosk draws it: sprites from an atlas, a looping animation, a dialog with a
// button, a text, a log and a name entry (the last three through textures of their own), and a font. Device objects
// follow the callbacks.
class PlayScene : public ZQ::ZQScene {
public:
    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override {
        ++creates;
        m_sprite.reset(new ZQ::ZQSprite(device));
        m_sprite->Entry(reliability::EnvFile(L"ZQ_TEST_DATA", L"sprites.te").c_str());
        m_animate.reset(new ZQ::ZQAnimate(m_sprite.get()));
        m_animate->Entry(reliability::EnvFile(L"ZQ_TEST_DATA", L"anim\\narrow.am").c_str());
        m_player.reset(new ZQ::ZQRenderSingle(m_animate.get()));
        m_player->Entry(L"blink", D3DXVECTOR3(200, 40, 0), true, -1, true);
        m_font.reset(new ZQ::ZQFont(device));
        m_dialog.reset(new ZQ::ZQDialog(m_sprite.get(), nullptr, nullptr));
        D3DXVECTOR3 button(120, 120, 0);
        m_dialog->AddButton(1, L"quad", L"quad", L"quad", L"quad", button, false);
        ZQ::ZQRect text(10, 200, 300, 230);
        D3DXCOLOR white(1, 1, 1, 1);
        m_dialog->AddStatic(2, m_font->Get(0), L"Credits 3", text, white, DT_LEFT);
        ZQ::ZQRect log(10, 60, 110, 110), name(10, 120, 110, 150);
        m_dialog->AddListBox(3, m_font->Get(0), log);
        m_dialog->GetListBox(3)->SetText(L"WWWW", white);
        m_dialog->AddEditBox(4, m_font->Get(0), name, white, DT_LEFT | DT_TOP);
        return S_OK;
    }
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) override {
        ++resets;
        m_font->OnResetDevice(device, backBuffer, context);
        return m_dialog->OnResetDevice(device, backBuffer, context);
    }
    void OnLostDevice(void* context) override {
        ++losts;
        if (m_dialog) {
            m_dialog->OnLostDevice(context);
            m_font->OnLostDevice(context);
        }
    }
    void OnDestroyDevice(void*) override {
        m_dialog.reset();
        m_player.reset();
        m_animate.reset();
        m_font.reset();
        m_sprite.reset();
    }
    // The frame that shuts down still moves, after the device objects are gone.
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        if (m_dialog)
            m_dialog->OnFrameMove(device, time, elapsed, context);
    }
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(0, 0, 0), 1.0f, 0);
        device->BeginScene();
        D3DXVECTOR3 at(20, 20, 0);
        D3DXCOLOR white(1, 1, 1, 1);
        m_sprite->Render(L"quad", at, white, 0);
        m_player->OnFrameRender(device, time, elapsed, context);
        m_dialog->OnFrameRender(device, time, elapsed, context);
        RECT line = {10, 170, 300, 195};
        m_font->DrawTextW(nullptr, L"Insert coin", -1, &line, DT_LEFT, 0xFFFFFFFF);
        device->EndScene();
        if (afterRender)
            afterRender(device);
    }
    int creates = 0, resets = 0, losts = 0;
    void (*afterRender)(IDirect3DDevice9*) = nullptr;

private:
    std::unique_ptr<ZQ::ZQSprite> m_sprite;
    std::unique_ptr<ZQ::ZQAnimate> m_animate;
    std::unique_ptr<ZQ::ZQRenderSingle> m_player;
    std::unique_ptr<ZQ::ZQFont> m_font;
    std::unique_ptr<ZQ::ZQDialog> m_dialog;
};

frametest::TestApp* g_app;

class PlayTest : public frametest::AppTest<> {
protected:
    void Prepare() override {
        reliability::ReportCrashes();
        g_app = app;
        app->ConstantFrameTime(true, 1.0f / 60);
    }
};

} // namespace

TEST_F(PlayTest, TenThousandSwitchesFromFourThreadsPairEveryCreateWithADestroy) {
    const wchar_t* names[] = {L"Attract", L"Menu", L"Entry", L"Play"};
    CountingScene* scenes[4];
    for (int i = 0; i < 4; ++i)
        app->Entry(names[i], scenes[i] = new CountingScene);
    app->Trans(L"Attract");
    static std::atomic<int> finished;
    finished = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&names, t] {
            for (int i = 0; i < 2500; ++i) {
                g_app->Trans(names[(i * 3 + t) % 4]);
                // Most requests should reach a frame: wait for one, briefly.
                const int frame = g_app->GetCurrentFrameNumber();
                for (int spin = 0; spin < 200 && g_app->GetCurrentFrameNumber() == frame; ++spin)
                    Sleep(0);
            }
            // The last thread to finish ends the loop from where it is: Shutdown is for any thread too.
            if (++finished == 4)
                g_app->Shutdown();
        });
    app->SetOverrideQuitAfterFrame(1000000);
    EXPECT_EQ(app->MainLoop(nullptr), S_OK);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(app->GetExitCode(), 0) << "the device was released with nothing left on it";
    int creates = 0, destroys = 0;
    for (CountingScene* scene : scenes) {
        EXPECT_EQ(scene->broken, 0);
        EXPECT_EQ(scene->creates, scene->destroys) << "every create has its destroy";
        EXPECT_EQ(scene->resets, scene->losts);
        creates += scene->creates;
        destroys += scene->destroys;
    }
    std::printf("%d scene switches in %d frames\n", creates - 1, app->GetCurrentFrameNumber());
    // How many requests reach a frame depends on the machine's load: a few hundred at least.
    EXPECT_GT(creates, 200) << "the switches happened";
}

TEST_F(PlayTest, AHundredThousandFramesWithMemoryFlat) {
    PlayScene* scene = new PlayScene;
    app->Entry(L"Play", scene);
    app->Trans(L"Play");
    static std::vector<reliability::Memory> samples;
    samples.clear();
    app->SetFrameMoveFunc([](IDirect3DDevice9*, double, float, void*) {
        if (g_app->GetCurrentFrameNumber() % 10000 == 0)
            samples.push_back(reliability::SampleMemory());
    });
    const DWORD start = GetTickCount();
    app->SetOverrideQuitAfterFrame(100000);
    EXPECT_EQ(app->MainLoop(nullptr), S_OK);
    const double seconds = (GetTickCount() - start) / 1000.0;
    EXPECT_EQ(app->GetExitCode(), 0);
    EXPECT_EQ(scene->creates, 1);
    ASSERT_GE(samples.size(), 10u);
    std::printf("%d frames in %.1f s; working set / committed MB by 10,000 frames:", app->GetCurrentFrameNumber(),
                seconds);
    for (const reliability::Memory& sample : samples)
        std::printf(" %.1f/%.1f", sample.workingSetMb, sample.committedMb);
    std::printf("\n");
    // After the first 20,000 frames (caches, the driver's pools) nothing may grow.
    EXPECT_LT(samples.back().committedMb - samples[2].committedMb, 4.0);
    EXPECT_LT(samples.back().workingSetMb - samples[2].workingSetMb, 8.0);
}

namespace {
// Lit pixels of the text line, the log and the name entry's caret.
const RECT kTextAreas[] = {{10, 170, 120, 195}, {10, 60, 110, 110}, {10, 120, 110, 150}};
D3DCOLOR g_spritePixel;
int g_lit[3];
void ReadBack(IDirect3DDevice9* device) {
    UINT width = 0;
    const std::vector<D3DCOLOR> pixels = testsupport::CopyBackBuffer(device, width);
    auto pixel = [&](LONG x, LONG y) {
        const size_t at = static_cast<size_t>(y) * width + static_cast<size_t>(x);
        return at < pixels.size() ? pixels[at] | 0xFF000000 : 0;
    };
    g_spritePixel = pixel(22, 22);
    for (int i = 0; i < 3; ++i) {
        g_lit[i] = 0;
        for (LONG y = kTextAreas[i].top; y < kTextAreas[i].bottom; ++y)
            for (LONG x = kTextAreas[i].left; x < kTextAreas[i].right; ++x)
                g_lit[i] += pixel(x, y) != 0xFF000000;
    }
}
} // namespace

TEST_F(PlayTest, ResetsAndResizesInThePlayKeepTheScreenDrawing) {
    PlayScene* scene = new PlayScene;
    app->Entry(L"Play", scene);
    app->Trans(L"Play");
    scene->afterRender = ReadBack;
    app->SetFrameMoveFunc([](IDirect3DDevice9*, double, float, void*) {
        const int frame = g_app->GetCurrentFrameNumber();
        reliability::g_doing = L"playing";
        if (frame == 20 || frame == 60) {
            reliability::g_doing = L"resetting";
            const ZQ::_ZQDeviceSettings_tag settings = g_app->GetDeviceSettings();
            g_app->ChangeDevice(&settings, g_app->GetDevice(), false, false);
        } else if (frame == 40 || frame == 80) {
            reliability::g_doing = L"resizing";
            RECT outer = {0, 0, frame == 40 ? 400 : 320, frame == 40 ? 300 : 240};
            AdjustWindowRect(&outer, static_cast<DWORD>(GetWindowLongW(g_app->GethWnd(), GWL_STYLE)), FALSE);
            SetWindowPos(g_app->GethWnd(), nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                         SWP_NOMOVE | SWP_NOZORDER);
        }
    });
    app->SetOverrideQuitAfterFrame(100);
    EXPECT_EQ(app->MainLoop(nullptr), S_OK);
    EXPECT_EQ(app->GetExitCode(), 0);
    EXPECT_EQ(scene->creates, 1) << "reset every time, never created again";
    EXPECT_EQ(scene->resets, 5) << "the first and four resets";
    EXPECT_EQ(scene->losts, 5) << "four resets and the end";
    EXPECT_EQ(g_spritePixel, D3DCOLOR_XRGB(255, 0, 0)) << "the atlas's quadrant picture after the last reset";
    EXPECT_GT(g_lit[0], 50) << "text drawn after the last reset";
    EXPECT_GT(g_lit[1], 100) << "the log";
    EXPECT_GT(g_lit[2], 5) << "the name entry's caret";
}
