#include "TextureTestSupport.h"

#include <gtest/gtest.h>

using namespace twodtest;
using ZQ::ZQCursor;
using ZQ::ZQFont;

namespace {

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kWhite = D3DCOLOR_XRGB(255, 255, 255), kBlack = D3DCOLOR_XRGB(0, 0, 0);

int TextHeight(ZQFont& font, int id = -1) {
    RECT r = {0, 0, 300, 200};
    return id < 0 ? font.DrawTextW(nullptr, L"Ag", -1, &r, DT_CALCRECT, 0xFFFFFFFF)
                  : font.DrawTextW(id, nullptr, L"Ag", -1, &r, DT_CALCRECT, 0xFFFFFFFF);
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

// Font 1 comes from a font file; resets of a font are the play test's concern.
TEST(Font, AReplacedIdMovesToTheEndAndRemoveKeepsTheOrder) {
    ZQFont font(Device());
    font.Entry(1, Data(L"DejaVuSans.ttf").c_str(), L"DejaVu Sans", 40, 0, 700, 1, FALSE, DEFAULT_CHARSET, 0, 0, 0);
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

namespace {

// The chunk cursor fed by the frame's mouse function, as a scene would feed it.
class CursorTest : public ::testing::Test {
protected:
    void SetUp() override {
        sprite = new ZQ::ZQSprite(Device());
        sprite->Entry(Data(L"sprites.te").c_str());
        cursor = new ZQCursor(sprite);
        ZQ::ZQRect area(0, 0, 200, 150);
        cursor->Entry(area, L"quad", L"centred", nullptr, L"chunk_c", nullptr, nullptr);
        App()->SetMouseFunc(
            [](bool down, bool l, bool r, bool m, bool s1, bool s2, int wheel, int x, int y, void* context) {
                static_cast<ZQCursor*>(context)->OnMouse(down, l, r, m, s1, s2, wheel, x, y, context);
            });
        App()->SetMouseFuncUserContext(cursor);
    }
    void TearDown() override {
        App()->SetMouseFunc(nullptr);
        delete cursor;
        delete sprite;
    }
    void Send(UINT msg, WPARAM buttons, int x, int y) {
        SendMessageW(App()->GethWnd(), msg, buttons, MAKELPARAM(x, y));
    }
    void Draw() {
        BeginFrame();
        cursor->OnFrameRender(Device(), 0.0, 0.0f, nullptr);
        EndFrame();
    }
    ZQ::ZQSprite* sprite = nullptr;
    ZQCursor* cursor = nullptr;
};

} // namespace

TEST_F(CursorTest, FollowsTheMouseAndSwitchesNamesOnButtons) {
    Send(WM_MOUSEMOVE, 0, 50, 40);
    Draw();
    EXPECT_TRUE(Near(BackBufferPixel(58, 48), kRed, 3)) << "quad's top-left quadrant at the mouse";

    Send(WM_LBUTTONDOWN, MK_LBUTTON, 50, 40);
    Draw();
    EXPECT_TRUE(Near(BackBufferPixel(58, 48), kWhite, 3)) << "the pressed name, origin at its middle";
    EXPECT_TRUE(Near(BackBufferPixel(42, 32), kRed, 3));

    Send(WM_MBUTTONDOWN, MK_LBUTTON | MK_MBUTTON | MK_RBUTTON, 50, 40);
    Draw();
    EXPECT_TRUE(Near(BackBufferPixel(58, 48), kWhite, 3)) << "left comes before right and middle";
    Send(WM_LBUTTONUP, MK_MBUTTON, 50, 40);
    Send(WM_MBUTTONDOWN, MK_MBUTTON, 50, 40);
    Draw();
    EXPECT_FALSE(Near(BackBufferPixel(58, 48), kWhite, 3)) << "middle's own name";
    EXPECT_FALSE(Near(BackBufferPixel(58, 48), kBlack, 3));

    Send(WM_MBUTTONUP, 0, 60, 40);
    Draw();
    EXPECT_TRUE(Near(BackBufferPixel(68, 48), kRed, 3)) << "a release shows the normal name";
}

TEST_F(CursorTest, ShownInsideTheAreaEdgesIncluded) {
    Send(WM_MOUSEMOVE, 0, 200, 150);
    EXPECT_TRUE(cursor->GetVisible());
    Draw();
    EXPECT_TRUE(Near(BackBufferPixel(208, 158), kRed, 3));
    Send(WM_MOUSEMOVE, 0, 201, 150);
    EXPECT_FALSE(cursor->GetVisible());
    Draw();
    EXPECT_EQ(LitPixels(RECT{190, 140, 240, 200}), 0);

    cursor->SetDisable(true);
    Send(WM_MOUSEMOVE, 0, 20, 20);
    EXPECT_FALSE(cursor->GetVisible()) << "a disabled cursor ignores the mouse";
    cursor->SetVisible(true);
    Draw();
    EXPECT_EQ(LitPixels(RECT{0, 0, 320, 240}), 0) << "and draws nothing";
}

TEST_F(CursorTest, ThePressClearsTheOverlayDrawnUnderTheCursor) {
    D3DXCOLOR half(1.0f, 1.0f, 1.0f, 0.5f);
    cursor->SetSprite(L"chunk_c", half);
    Send(WM_MOUSEMOVE, 0, 100, 60);
    Draw();
    const D3DCOLOR under = BackBufferPixel(150, 110);
    EXPECT_FALSE(Near(under, kBlack, 3)) << "the overlay beyond the cursor's own 32 pixels";
    EXPECT_TRUE(Near(BackBufferPixel(108, 68), kRed, 3)) << "the cursor over it";

    Send(WM_LBUTTONDOWN, MK_LBUTTON, 100, 60);
    Send(WM_LBUTTONUP, 0, 100, 60);
    Draw();
    EXPECT_TRUE(Near(BackBufferPixel(150, 110), kBlack, 3)) << "the press cleared the overlay for good";
}

TEST_F(CursorTest, TheAnimatedFormPlaysWhereItStartedWhateverTheMouseDoes) {
    ZQ::ZQAnimate animate(sprite);
    animate.Entry(Data(L"anim\\narrow.am").c_str());
    ZQCursor animated(&animate);
    ZQ::ZQRect area(0, 0, 200, 150);
    animated.Entry(area, L"blink", L"tinted", nullptr, nullptr, nullptr, nullptr);
    animated.OnMouse(false, false, false, false, false, false, 0, 100, 100, nullptr);
    animated.OnMouse(true, true, false, false, false, false, 0, 100, 100, nullptr);
    BeginFrame();
    animated.OnFrameRender(Device(), 0.0, 0.01f, nullptr);
    EndFrame();
    EXPECT_TRUE(Near(BackBufferPixel(8, 8), kRed, 3)) << "blink's first frame at the start position (0, 0)";
    EXPECT_EQ(LitPixels(RECT{90, 90, 150, 150}), 0) << "neither the mouse nor the press moves it";
}
