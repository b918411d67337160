// Settings matching against what Wine's adapter really offers, the command line's forced values,
// and multisampling seen in the pixels of a diagonal edge.
#include "FrameTestApp.h"
#include "support/BackBufferCopy.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <cstdio>
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
        ZQ::ZQSetMessageFunc([](const wchar_t* text, void*) { g_messages += std::wstring(text) + L"\n"; }, nullptr);
    }
    static void TearDownTestSuite() {
        ZQ::ZQSetMessageFunc(nullptr, nullptr);
        delete app;
        frametest::DrainMessages();
    }
    void SetUp() override { g_messages.clear(); }

    static frametest::TestApp* app;
};
frametest::TestApp* DeviceSettingsTest::app = nullptr;

// The settings found, as one line: window state, size and refresh, adapter and back-buffer formats,
// depth buffer, samples.quality, device type, vertex processing, presentation interval.
std::string Describe(const _ZQDeviceSettings_tag& f) {
    char line[200];
    std::snprintf(line, sizeof line, "%s %ux%u@%u %ls %ls %ls ms%d.%lu type%d vp%lx i%x",
                  f.pp.Windowed ? "window" : "full", f.pp.BackBufferWidth, f.pp.BackBufferHeight,
                  f.pp.FullScreen_RefreshRateInHz, ZQ::ZQD3DFormatName(f.AdapterFormat),
                  ZQ::ZQD3DFormatName(f.pp.BackBufferFormat), ZQ::ZQD3DFormatName(f.pp.AutoDepthStencilFormat),
                  static_cast<int>(f.pp.MultiSampleType), f.pp.MultiSampleQuality, static_cast<int>(f.DeviceType),
                  f.BehaviorFlags & ~D3DCREATE_MULTITHREADED, f.pp.PresentationInterval);
    return line;
}

using Ask = void (*)(_ZQDeviceSettings_tag& wanted, _ZQMatchOptions_tag& options);
const ZQ::ZQMatchType kKeep = ZQ::ZQ_MATCH_PRESERVE;

// Wine's adapter on the test's Xvfb: one 1280 x 1024 mode in X8R8G8B8 and R5G6B5, four samples at most.
const struct MatchCase {
    const char* name;
    Ask ask;
    const char* found;   ///< Describe of the settings found, or null when no device may be found
    const wchar_t* said; ///< part of a message the search must send, or null for none at all
} kMatches[] = {
    {"windowed defaults: the desktop's format, the size asked for, D24S8, vsync",
     [](auto& w, auto&) { w.pp.BackBufferWidth = 200, w.pp.BackBufferHeight = 100; },
     "window 200x100@0 X8R8G8B8 X8R8G8B8 D24S8 ms0.0 type1 vp40 i0", nullptr},
    {"full screen without a size: the desktop's mode", [](auto& w, auto&) { w.pp.Windowed = FALSE; },
     "full 1280x1024@0 X8R8G8B8 X8R8G8B8 D24S8 ms0.0 type1 vp40 i0", nullptr},
    {"a full-screen size that is no mode: the closest, said",
     [](auto& w, auto&) { w.pp.Windowed = FALSE, w.pp.BackBufferWidth = 800, w.pp.BackBufferHeight = 600; },
     "full 1280x1024", L"800 x 600 is not a display mode of adapter 0; the closest, 1280 x 1024, is used"},
    {"the same size kept exactly: no device",
     [](auto& w, auto& o) {
         w.pp.Windowed = FALSE, w.pp.BackBufferWidth = 800, w.pp.BackBufferHeight = 600, o.Resolution = kKeep;
     },
     nullptr, L"no device offers a full-screen mode of 800 x 600"},
    {"a 16-bit display format kept full screen, its back buffer following",
     [](auto& w, auto& o) { w.pp.Windowed = FALSE, w.AdapterFormat = D3DFMT_R5G6B5, o.AdapterFormat = kKeep; },
     "full 1280x1024@0 R5G6B5 R5G6B5 D24S8", nullptr},
    {"a back buffer the window's format cannot have",
     [](auto& w, auto& o) { w.pp.BackBufferFormat = D3DFMT_A1R5G5B5, o.BackBufferFormat = kKeep; }, nullptr,
     L"no device offers back-buffer format A1R5G5B5"},
    {"the most samples up to the eight asked for",
     [](auto& w, auto& o) {
         w.pp.MultiSampleType = D3DMULTISAMPLE_8_SAMPLES, w.pp.MultiSampleQuality = 3;
         o.MultiSample = ZQ::ZQ_MATCH_CLOSEST;
     },
     "window 320x240@0 X8R8G8B8 X8R8G8B8 D24S8 ms4.0", L"type 8 at quality 3 is not offered; type 4 at quality 0"},
    {"two samples kept exactly are not offered",
     [](auto& w, auto& o) { w.pp.MultiSampleType = D3DMULTISAMPLE_2_SAMPLES, o.MultiSample = kKeep; }, nullptr,
     L"no device offers multisample type 2 at quality 0"},
    {"reference device, pure device, no vsync and a 16-bit depth buffer, all kept",
     [](auto& w, auto& o) {
         w.DeviceType = D3DDEVTYPE_REF, w.BehaviorFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE;
         w.pp.PresentationInterval = D3DPRESENT_INTERVAL_IMMEDIATE;
         w.pp.EnableAutoDepthStencil = TRUE, w.pp.AutoDepthStencilFormat = D3DFMT_D16;
         o.DeviceType = o.VertexProcessing = o.PresentInterval = o.DepthStencilFormat = kKeep;
     },
     "window 320x240@0 X8R8G8B8 X8R8G8B8 D16 ms0.0 type2 vp50 i80000000", nullptr},
    {"an adapter that does not exist: adapter 0, said", [](auto& w, auto&) { w.AdapterOrdinal = 5; }, "window 320x240",
     L"adapter 5 does not exist"},
};

} // namespace

TEST_F(DeviceSettingsTest, MatchesWhatTheAdapterOffers) {
    for (const MatchCase& c : kMatches) {
        SCOPED_TRACE(c.name);
        _ZQDeviceSettings_tag wanted = {}, found = {};
        wanted.pp.Windowed = TRUE;
        _ZQMatchOptions_tag options;
        c.ask(wanted, options);
        g_messages.clear();
        const HRESULT hr = app->FindValidDeviceSettings(&found, &wanted, &options);
        EXPECT_EQ(hr, c.found ? S_OK : ZQ::ZQ_E_NO_COMPATIBLE_DEVICES);
        if (c.found && SUCCEEDED(hr)) {
            EXPECT_EQ(Describe(found).rfind(c.found, 0), 0u) << Describe(found);
        }
        const std::string said(g_messages.begin(), g_messages.end());
        if (c.said)
            EXPECT_NE(g_messages.find(c.said), std::wstring::npos) << said;
        else
            EXPECT_EQ(said, "");
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
        const std::wstring path = testsupport::TempPath(L"zq-edge.png");
        int greys = 0;
        if (SUCCEEDED(ZQ::ZQSaveBackBuffer(device, path.c_str())))
            for (D3DCOLOR c : testsupport::ReadPng(device, path.c_str(), 320, 240))
                greys += (c & 0xFF) > 0x20 && (c & 0xFF) < 0xE0;
        DeleteFileW(path.c_str());
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
