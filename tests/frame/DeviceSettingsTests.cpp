// Settings matching against what Wine's adapter really offers, the command line's forced values,
// and multisampling seen in the pixels of a diagonal edge.
#include "FrameTestApp.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ZQ::_ZQDeviceSettings_tag;
using ZQ::_ZQMatchOptions_tag;

std::wstring g_messages;

class DeviceSettingsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        frametest::DrainMessages();
        app = new frametest::TestApp;
        ASSERT_EQ(app->Start(), S_OK);
        app->GetD3D()->GetAdapterDisplayMode(0, &desktop);
        ZQ::ZQSetMessageFunc([](const wchar_t* text, void*) { g_messages += std::wstring(text) + L"\n"; }, nullptr);
    }
    static void TearDownTestSuite() {
        ZQ::ZQSetMessageFunc(nullptr, nullptr);
        delete app;
        frametest::DrainMessages();
    }
    void SetUp() override { g_messages.clear(); }

    static frametest::TestApp* app;
    static D3DDISPLAYMODE desktop;
};
frametest::TestApp* DeviceSettingsTest::app = nullptr;
D3DDISPLAYMODE DeviceSettingsTest::desktop = {};

struct MatchCase {
    const char* name;
    void (*ask)(_ZQDeviceSettings_tag& wanted, _ZQMatchOptions_tag& options);
    HRESULT result;
    void (*check)(const _ZQDeviceSettings_tag& found, const D3DDISPLAYMODE& desktop);
    const wchar_t* said; ///< part of a message the search must send, or null for none at all
};

void FullScreen(_ZQDeviceSettings_tag& wanted, UINT width, UINT height) {
    wanted.pp.Windowed = FALSE;
    wanted.pp.BackBufferWidth = width;
    wanted.pp.BackBufferHeight = height;
}

const MatchCase kMatches[] = {
    {"windowed defaults: desktop format, size kept, depth buffer, vsync, no multisampling",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag&) {
         w.pp.Windowed = TRUE;
         w.pp.BackBufferWidth = 200;
         w.pp.BackBufferHeight = 100;
     },
     S_OK,
     [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE& d) {
         EXPECT_TRUE(f.pp.Windowed);
         EXPECT_EQ(f.AdapterFormat, d.Format);
         EXPECT_EQ(f.pp.BackBufferFormat, d.Format) << "not a back buffer of another format";
         EXPECT_EQ(f.pp.BackBufferWidth * 1000 + f.pp.BackBufferHeight, 200100u);
         EXPECT_EQ(f.DeviceType, D3DDEVTYPE_HAL);
         EXPECT_EQ(f.BehaviorFlags, DWORD(D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_MULTITHREADED));
         EXPECT_EQ(f.pp.AutoDepthStencilFormat, D3DFMT_D24S8);
         EXPECT_EQ(f.pp.MultiSampleType, D3DMULTISAMPLE_NONE);
         EXPECT_EQ(f.pp.PresentationInterval, D3DPRESENT_INTERVAL_DEFAULT);
     },
     nullptr},
    {"full screen without a size takes the desktop's mode",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag&) { FullScreen(w, 0, 0); }, S_OK,
     [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE& d) {
         EXPECT_FALSE(f.pp.Windowed);
         EXPECT_EQ(f.pp.BackBufferWidth, d.Width);
         EXPECT_EQ(f.pp.BackBufferHeight, d.Height);
         EXPECT_EQ(f.pp.FullScreen_RefreshRateInHz, d.RefreshRate);
         EXPECT_EQ(f.pp.BackBufferFormat, D3DFMT_X8R8G8B8);
     },
     nullptr},
    {"a full-screen size that is no mode: the closest, said",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag&) { FullScreen(w, 800, 600); }, S_OK,
     [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE& d) { EXPECT_EQ(f.pp.BackBufferWidth, d.Width); },
     L"800 x 600 is not a display mode of adapter 0"},
    {"the same size kept exactly: no device",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag& o) {
         FullScreen(w, 800, 600);
         o.Resolution = ZQ::ZQ_MATCH_PRESERVE;
     },
     ZQ::ZQ_E_NO_COMPATIBLE_DEVICES, nullptr, L"no device offers a full-screen mode of 800 x 600"},
    {"a 16-bit display format kept full screen, its back buffer following",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag& o) {
         FullScreen(w, 0, 0);
         w.AdapterFormat = D3DFMT_R5G6B5;
         o.AdapterFormat = ZQ::ZQ_MATCH_PRESERVE;
     },
     S_OK,
     [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE&) {
         EXPECT_EQ(f.AdapterFormat, D3DFMT_R5G6B5);
         EXPECT_EQ(f.pp.BackBufferFormat, D3DFMT_R5G6B5);
         EXPECT_EQ(f.pp.AutoDepthStencilFormat, D3DFMT_D24S8);
     },
     nullptr},
    {"a 16-bit back buffer in a 32-bit window is no combination",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag& o) {
         w.pp.Windowed = TRUE;
         w.pp.BackBufferFormat = D3DFMT_A1R5G5B5;
         o.BackBufferFormat = ZQ::ZQ_MATCH_PRESERVE;
     },
     ZQ::ZQ_E_NO_COMPATIBLE_DEVICES, nullptr, L"no device offers back-buffer format A1R5G5B5"},
    {"the most samples up to the eight asked for",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag& o) {
         w.pp.Windowed = TRUE;
         w.pp.MultiSampleType = D3DMULTISAMPLE_8_SAMPLES;
         w.pp.MultiSampleQuality = 3;
         o.MultiSample = ZQ::ZQ_MATCH_CLOSEST;
     },
     S_OK,
     [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE&) {
         EXPECT_EQ(f.pp.MultiSampleType, D3DMULTISAMPLE_4_SAMPLES);
         EXPECT_EQ(f.pp.MultiSampleQuality, 0u);
         EXPECT_EQ(f.pp.SwapEffect, D3DSWAPEFFECT_DISCARD);
     },
     L"multisample type 8 at quality 3 is not offered; type 4 at quality 0 is used"},
    {"two samples kept exactly are not offered",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag& o) {
         w.pp.Windowed = TRUE;
         w.pp.MultiSampleType = D3DMULTISAMPLE_2_SAMPLES;
         o.MultiSample = ZQ::ZQ_MATCH_PRESERVE;
     },
     ZQ::ZQ_E_NO_COMPATIBLE_DEVICES, nullptr, L"no device offers multisample type 2 at quality 0"},
    {"reference device, pure device, no vsync and a 16-bit depth buffer, all kept",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag& o) {
         w.pp.Windowed = TRUE;
         w.DeviceType = D3DDEVTYPE_REF;
         w.BehaviorFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE;
         w.pp.PresentationInterval = D3DPRESENT_INTERVAL_IMMEDIATE;
         w.pp.EnableAutoDepthStencil = TRUE;
         w.pp.AutoDepthStencilFormat = D3DFMT_D16;
         o.DeviceType = o.VertexProcessing = o.PresentInterval = o.DepthStencilFormat = ZQ::ZQ_MATCH_PRESERVE;
     },
     S_OK,
     [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE&) {
         EXPECT_EQ(f.DeviceType, D3DDEVTYPE_REF);
         EXPECT_EQ(f.BehaviorFlags & D3DCREATE_PUREDEVICE, DWORD(D3DCREATE_PUREDEVICE));
         EXPECT_EQ(f.pp.PresentationInterval, D3DPRESENT_INTERVAL_IMMEDIATE);
         EXPECT_EQ(f.pp.AutoDepthStencilFormat, D3DFMT_D16);
     },
     nullptr},
    {"an adapter that does not exist: adapter 0, said",
     [](_ZQDeviceSettings_tag& w, _ZQMatchOptions_tag&) {
         w.pp.Windowed = TRUE;
         w.AdapterOrdinal = 5;
     },
     S_OK, [](const _ZQDeviceSettings_tag& f, const D3DDISPLAYMODE&) { EXPECT_EQ(f.AdapterOrdinal, 0u); },
     L"adapter 5 does not exist"},
};

} // namespace

TEST_F(DeviceSettingsTest, MatchesWhatTheAdapterOffers) {
    for (const MatchCase& c : kMatches) {
        SCOPED_TRACE(c.name);
        _ZQDeviceSettings_tag wanted = {}, found = {};
        _ZQMatchOptions_tag options;
        c.ask(wanted, options);
        g_messages.clear();
        EXPECT_EQ(app->FindValidDeviceSettings(&found, &wanted, &options), c.result);
        if (c.check && c.result == S_OK)
            c.check(found, desktop);
        if (c.said)
            EXPECT_NE(g_messages.find(c.said), std::wstring::npos) << std::string(g_messages.begin(), g_messages.end());
        else
            EXPECT_EQ(g_messages, L"");
    }
    // The acceptance function sees every combination and can refuse them all.
    int asked = 0;
    app->SetIsDeviceAcceptableFunc([](D3DCAPS9*, D3DFORMAT, D3DFORMAT, bool, void* context) {
        ++*static_cast<int*>(context);
        return false;
    });
    app->SetIsDeviceAcceptableFuncUserContext(&asked);
    _ZQDeviceSettings_tag wanted = {}, found = {};
    wanted.pp.Windowed = TRUE;
    EXPECT_EQ(app->FindValidDeviceSettings(&found, &wanted), ZQ::ZQ_E_NO_COMPATIBLE_DEVICES);
    app->SetIsDeviceAcceptableFunc(nullptr);
    EXPECT_GT(asked, 1);
    EXPECT_NE(g_messages.find(L"no device offers settings the acceptance function accepts"), std::wstring::npos);
}

// A white triangle's diagonal edge on black: multisampled, the edge has pixels between the two.
TEST_F(DeviceSettingsTest, MultisamplingSmoothsADiagonalEdge) {
    auto greysOnTheEdge = [](IDirect3DDevice9* device) {
        struct Vertex {
            float x, y, z, rhw;
            D3DCOLOR color;
        };
        const Vertex triangle[] = {{0, 0, 0, 1, 0xFFFFFFFF}, {320, 0, 0, 1, 0xFFFFFFFF}, {0, 230, 0, 1, 0xFFFFFFFF}};
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFF000000, 1.0f, 0);
        device->BeginScene();
        device->SetFVF(D3DFVF_XYZRHW | D3DFVF_DIFFUSE);
        device->SetTexture(0, nullptr);
        device->SetRenderState(D3DRS_LIGHTING, FALSE);
        device->DrawPrimitiveUP(D3DPT_TRIANGLELIST, 1, triangle, sizeof(Vertex));
        device->EndScene();
        // Read back through the screenshot call, which resolves a multisampled back buffer.
        wchar_t path[MAX_PATH];
        GetTempPathW(MAX_PATH, path);
        wcscat_s(path, MAX_PATH, L"zq-edge.png");
        int greys = -1;
        IDirect3DSurface9* surface = nullptr;
        D3DLOCKED_RECT locked;
        if (SUCCEEDED(ZQ::ZQSaveBackBuffer(device, path)) &&
            SUCCEEDED(device->CreateOffscreenPlainSurface(320, 240, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM, &surface,
                                                          nullptr)) &&
            SUCCEEDED(D3DXLoadSurfaceFromFileW(surface, nullptr, nullptr, path, nullptr, D3DX_FILTER_NONE, 0,
                                               nullptr)) &&
            SUCCEEDED(surface->LockRect(&locked, nullptr, D3DLOCK_READONLY))) {
            greys = 0;
            for (int y = 0; y < 240; ++y)
                for (int x = 0; x < 320; ++x) {
                    const D3DCOLOR c = static_cast<const D3DCOLOR*>(locked.pBits)[y * locked.Pitch / 4 + x] & 0xFF;
                    greys += c > 0x20 && c < 0xE0;
                }
            surface->UnlockRect();
        }
        if (surface)
            surface->Release();
        DeleteFileW(path);
        return greys;
    };

    EXPECT_EQ(greysOnTheEdge(app->GetD3DDevice()), 0) << "one sample a pixel: every pixel black or white";

    _ZQDeviceSettings_tag wanted = app->GetDeviceSettings(), found = {};
    wanted.pp.MultiSampleType = D3DMULTISAMPLE_4_SAMPLES;
    _ZQMatchOptions_tag options;
    options.MultiSample = ZQ::ZQ_MATCH_PRESERVE;
    ASSERT_EQ(app->FindValidDeviceSettings(&found, &wanted, &options), S_OK);
    ASSERT_EQ(app->ChangeDevice(&found, app->GetD3DDevice(), false, false), S_OK);
    EXPECT_EQ(app->GetDeviceSettings().pp.MultiSampleType, D3DMULTISAMPLE_4_SAMPLES);
    EXPECT_GT(greysOnTheEdge(app->GetD3DDevice()), 100) << "the edge is blended along its length";
    EXPECT_NE(std::wstring(app->GetStaticFrameStats()).find(L"(4x Multisample)"), std::wstring::npos);
}

// What the command line forces is what the device gets, or no device at all.
TEST(DeviceCommandLine, ForcedValuesAreKeptOrTheDeviceIsRefused) {
    struct Case {
        const wchar_t* arguments;
        const char* expected;
    } const cases[] = {
        {L"device -forceref -forceswvp -width:300 -height:200", "device=00000000 windowed=1 size=300x200 "
                                                                "format=X8R8G8B8 type=2 vp=20 "},
        {L"device -fullscreen", "device=00000000 windowed=0 size=1280x1024 "},
        {L"device -fullscreen -width:800 -height:600", "device=80040902 "},
        {L"device -adapter:3", "device=80040902 "},
    };
    for (const Case& c : cases) {
        std::string out;
        ASSERT_EQ(frametest::RunChild(c.arguments, &out), 0);
        EXPECT_NE(out.find(c.expected), std::string::npos) << out;
    }
}
