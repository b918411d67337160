#include "TextureTestSupport.h"

#include <gtest/gtest.h>

using twodtest::App;
using twodtest::BackBufferPixel;
using twodtest::BeginFrame;
using twodtest::Data;
using twodtest::Device;
using twodtest::EndFrame;
using twodtest::Near;
using ZQ::ZQFont;

namespace {

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kWhite = D3DCOLOR_XRGB(255, 255, 255),
               kBlack = D3DCOLOR_XRGB(0, 0, 0);

// Pixels of the back buffer copy inside r that are not black.
int LitPixels(const RECT& r) {
    int lit = 0;
    for (int y = r.top; y < r.bottom; ++y)
        for (int x = r.left; x < r.right; ++x)
            lit += (BackBufferPixel(x, y) & 0xFFFFFF) != 0;
    return lit;
}

int TextHeight(ZQFont& font, int id = -1) {
    RECT r = {0, 0, 300, 200};
    return id < 0 ? font.DrawTextW(nullptr, L"Ag", -1, &r, DT_CALCRECT, 0xFFFFFFFF)
                  : font.DrawTextW(id, nullptr, L"Ag", -1, &r, DT_CALCRECT, 0xFFFFFFFF);
}

void Resize(int width, int height) {
    HWND hWnd = App()->GethWnd();
    RECT frame = {0, 0, width, height};
    AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(hWnd, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongW(hWnd, GWL_EXSTYLE)));
    SetWindowPos(hWnd, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

TEST(Font, TheDefaultFontAndTheAnswersForAnAbsentId) {
    ZQFont font(Device());
    EXPECT_EQ(font.height(0), 20);
    EXPECT_EQ(font.weight(0), 700u);
    EXPECT_EQ(font.width(0), 8u);
    EXPECT_NE(font.Get(0), nullptr);
    EXPECT_EQ(font.height(5), -1);
    EXPECT_EQ(font.width(5), 0u);
    EXPECT_EQ(font.weight(5), 0u);
    EXPECT_EQ(font.Get(5), nullptr);
    RECT r = {0, 0, 10, 10};
    EXPECT_EQ(font.DrawTextW(5, nullptr, L"x", -1, &r, 0, 0xFFFFFFFF), -1);

    ZQFont noDevice(nullptr);
    EXPECT_EQ(noDevice.height(0), -1) << "no default font without a device";
    EXPECT_EQ(noDevice.DrawTextW(nullptr, L"x", -1, &r, 0, 0xFFFFFFFF), -1);
}

TEST(Font, AReplacedIdMovesToTheEndAndRemoveKeepsTheOrder) {
    ZQFont font(Device());
    font.Entry(1, L"Arial", 40, 0, 400, 1, FALSE, DEFAULT_CHARSET, 0, 0, 0);
    font.Entry(0, L"Arial", 12, 0, 400, 1, FALSE, DEFAULT_CHARSET, 0, 0, 0);
    EXPECT_EQ(font.height(0), 12);
    EXPECT_EQ(font.height(1), 40);
    const int first = TextHeight(font);
    EXPECT_EQ(first, TextHeight(font, 1)) << "the list's first font is now font 1";
    EXPECT_LT(TextHeight(font, 0), first);

    font.Remove(7);
    EXPECT_EQ(TextHeight(font), first);
    font.Remove(1);
    EXPECT_EQ(font.Get(1), nullptr);
    EXPECT_EQ(TextHeight(font), TextHeight(font, 0));
    font.Remove(0);
    RECT r = {0, 0, 10, 10};
    EXPECT_EQ(font.DrawTextW(nullptr, L"x", -1, &r, 0, 0xFFFFFFFF), -1) << "an empty list";
}

TEST(Font, AFontFromAFileDrawsVisibleTextBeforeAndAfterADeviceReset) {
    ZQFont font(Device());
    font.Entry(3, Data(L"DejaVuSans.ttf").c_str(), L"DejaVu Sans", 32, 0, 700, 1, FALSE, DEFAULT_CHARSET, 0, 0,
               0);
    ASSERT_NE(font.Get(3), nullptr);
    ZQ::ZQVelisto* app = App();
    app->SetDeviceLostFunc([](void* context) { static_cast<ZQFont*>(context)->OnLostDevice(context); });
    app->SetDeviceLostFuncUserContext(&font);
    app->SetDeviceResetFunc([](IDirect3DDevice9* device, const D3DSURFACE_DESC* desc, void* context) {
        return static_cast<ZQFont*>(context)->OnResetDevice(device, desc, context);
    });
    app->SetDeviceResetFuncUserContext(&font);

    RECT box = {20, 20, 300, 80};
    for (int size : {400, 320}) {
        BeginFrame();
        RECT r = box;
        EXPECT_GT(font.DrawTextW(3, nullptr, L"Tickets", -1, &r, DT_LEFT | DT_TOP, 0xFFFFFFFF), 0);
        EndFrame();
        EXPECT_GT(LitPixels(box), 200) << "text drawn before a reset to " << size;
        EXPECT_EQ(LitPixels(RECT{0, 100, 320, 240}), 0);
        Resize(size, size * 3 / 4);
    }
    app->SetDeviceLostFunc(nullptr);
    app->SetDeviceResetFunc(nullptr);
    ASSERT_EQ(app->GetBackBufferSurfaceDesc().Width, 320u);
    BeginFrame();
    RECT r = box;
    font.DrawTextW(3, nullptr, L"Tickets", -1, &r, DT_LEFT | DT_TOP, 0xFFFFFFFF);
    EndFrame();
    EXPECT_GT(LitPixels(box), 200) << "text drawn after two resets";
}

