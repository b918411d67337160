#include "TextureTestSupport.h"

#include <gtest/gtest.h>

using namespace twodtest;
using ZQ::ZQSprite;

namespace {

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kGreen = D3DCOLOR_XRGB(0, 255, 0), kBlue = D3DCOLOR_XRGB(0, 0, 255),
               kWhite = D3DCOLOR_XRGB(255, 255, 255), kBlack = D3DCOLOR_XRGB(0, 0, 0);

// Whether the quadrant image (32 x 32) drawn with its top-left corner at (x, y) shows those colours in the
// middles of its quadrants.
::testing::AssertionResult Shows(int x, int y, D3DCOLOR tl, D3DCOLOR tr, D3DCOLOR bl, D3DCOLOR br) {
    const D3DCOLOR seen[4] = {BackBufferPixel(x + 8, y + 8), BackBufferPixel(x + 24, y + 8),
                              BackBufferPixel(x + 8, y + 24), BackBufferPixel(x + 24, y + 24)};
    if (Near(seen[0], tl, 3) && Near(seen[1], tr, 3) && Near(seen[2], bl, 3) && Near(seen[3], br, 3))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << std::hex << "quadrants " << seen[0] << " " << seen[1] << " " << seen[2]
                                         << " " << seen[3];
}

class SpriteTest : public ::testing::Test {
protected:
    void SetUp() override {
        sprite = new ZQSprite(Device());
        sprite->Entry(Data(L"sprites.te").c_str());
    }
    void TearDown() override { delete sprite; }
    ZQSprite* sprite = nullptr;
    D3DXCOLOR white = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
};

} // namespace

TEST_F(SpriteTest, PlacementFlagsTintTurnsAndStretching) {
    D3DXVECTOR3 flagged[5] = {{10, 10, 7}, {50, 10, 0}, {90, 10, 0}, {130, 10, 0}, {170, 10, 0}};
    D3DXVECTOR3 tinted(210, 10, 0), faded(250, 10, 0), middle(200, 150, 0), a(60, 80, 0), b(160, 80, 0), c(260, 80, 0);
    D3DXCOLOR red(1.0f, 0.0f, 0.0f, 1.0f), half(1.0f, 1.0f, 1.0f, 0.5f);
    ZQ::ZQRect dest(20.0f, 120.0f, 84.0f, 152.0f);
    BeginFrame();
    for (DWORD flags = 0; flags < 5; ++flags)
        EXPECT_NE(sprite->Render(L"quad", flagged[flags], white, flags), nullptr);
    sprite->Render(L"quad", tinted, red, 0);
    sprite->Render(L"quad", faded, half, 0);
    sprite->Render(L"CENTRED", middle, white, 0);
    sprite->Render(L"centred", a, D3DX_PI, white, 0);
    sprite->Render(L"centred", b, D3DX_PI / 2, white, 0);
    sprite->Render(L"centred", c, c, D3DX_PI, white, 1);
    EXPECT_NE(sprite->Render(L"centred", dest, white, 0), nullptr);
    EndFrame();
    const D3DCOLOR dim[4] = {D3DCOLOR_XRGB(128, 0, 0), D3DCOLOR_XRGB(0, 128, 0), D3DCOLOR_XRGB(0, 0, 128),
                             D3DCOLOR_XRGB(128, 128, 128)};
    struct Case {
        const char* name;
        int x, y;
        D3DCOLOR tl, tr, bl, br;
    } cases[] = {
        {"top-left corner at the position", 10, 10, kRed, kGreen, kBlue, kWhite},
        {"1: left-right", 50, 10, kGreen, kRed, kWhite, kBlue},
        {"2: top-bottom", 90, 10, kBlue, kWhite, kRed, kGreen},
        {"3: half a turn", 130, 10, kWhite, kBlue, kGreen, kRed},
        {"4: ignored", 170, 10, kRed, kGreen, kBlue, kWhite},
        {"tinted red", 210, 10, kRed, kBlack, kBlack, kRed},
        {"half alpha", 250, 10, dim[0], dim[1], dim[2], dim[3]},
        {"origin (16, 16)", 200 - 16, 150 - 16, kRed, kGreen, kBlue, kWhite},
        {"half a turn about the position", 60 - 16, 80 - 16, kWhite, kBlue, kGreen, kRed},
        {"a quarter, counter-clockwise", 160 - 16, 80 - 16, kGreen, kWhite, kRed, kBlue},
        {"mirrored, then half a turn", 260 - 16, 80 - 16, kBlue, kWhite, kRed, kGreen},
    };
    for (const Case& q : cases)
        EXPECT_TRUE(Shows(q.x, q.y, q.tl, q.tr, q.bl, q.br)) << q.name;
    // The edges, within the half pixel of alignment. The camera's eye at 2.41 sees 0.2 % more than the
    // viewport height: the last row and column blend.
    EXPECT_TRUE(Near(BackBufferPixel(11, 11), kRed, 3));
    EXPECT_TRUE(Near(BackBufferPixel(8, 8), kBlack, 3));
    EXPECT_TRUE(Near(BackBufferPixel(39, 40), kWhite, 3));
    EXPECT_TRUE(Near(BackBufferPixel(43, 44), kBlack, 3));
    // Stretched over 64 x 32, the origin playing no part.
    EXPECT_TRUE(Near(BackBufferPixel(20 + 16, 120 + 8), kRed, 3));
    EXPECT_TRUE(Near(BackBufferPixel(20 + 48, 120 + 8), kGreen, 3));
    EXPECT_TRUE(Near(BackBufferPixel(20 + 48, 120 + 24), kWhite, 3));
}

TEST_F(SpriteTest, WipesDrawTheirFraction) {
    D3DXVECTOR3 at[6] = {{10, 10, 0}, {50, 10, 0}, {90, 10, 0}, {130, 10, 0}, {170, 10, 0}, {210, 10, 0}};
    BeginFrame();
    sprite->RenderLerp(L"quad", at[0], white, 0.5f, 1);  // left half
    sprite->RenderLerp(L"quad", at[1], white, -0.5f, 2); // right half
    sprite->RenderLerp(L"quad", at[2], white, 0.5f, 4);  // top half
    sprite->RenderLerp(L"quad", at[3], white, 0.5f, 8);  // bottom half
    sprite->RenderLerp(L"quad", at[4], white, 0.5f, 0);  // left half
    sprite->RenderLerp(L"quad", at[5], white, 7.0f, 4);  // 1: nothing
    EndFrame();
    EXPECT_TRUE(Shows(10, 10, kRed, kBlack, kBlue, kBlack));
    EXPECT_TRUE(Shows(50, 10, kBlack, kGreen, kBlack, kWhite));
    EXPECT_TRUE(Shows(90, 10, kRed, kGreen, kBlack, kBlack));
    EXPECT_TRUE(Shows(130, 10, kBlack, kBlack, kBlue, kWhite));
    EXPECT_TRUE(Shows(170, 10, kRed, kBlack, kBlue, kBlack));
    EXPECT_TRUE(Shows(210, 10, kBlack, kBlack, kBlack, kBlack));

    BeginFrame();
    sprite->RenderLerp(L"quad", at[0], white, 0.25f, 1); // a quarter
    sprite->RenderLerp(L"quad", at[1], white, 0.25f, 0); // three quarters
    sprite->RenderLerp(L"quad", at[2], white, 7.0f, 1);  // all
    EndFrame();
    EXPECT_TRUE(Near(BackBufferPixel(10 + 4, 10 + 8), kRed, 3));
    EXPECT_TRUE(Near(BackBufferPixel(10 + 12, 10 + 8), kBlack, 3));
    EXPECT_TRUE(Near(BackBufferPixel(50 + 20, 10 + 8), kGreen, 3));
    EXPECT_TRUE(Near(BackBufferPixel(50 + 28, 10 + 8), kBlack, 3));
    EXPECT_TRUE(Shows(90, 10, kRed, kGreen, kBlue, kWhite));
}

TEST_F(SpriteTest, UnknownChunksDrawNothing) {
    D3DXVECTOR3 pos(20, 20, 0);
    BeginFrame();
    EXPECT_EQ(sprite->Render(L"nothing", pos, white, 0), nullptr);
    EXPECT_EQ(sprite->Render(nullptr, pos, white, 0), nullptr);
    EXPECT_EQ(sprite->RenderLerp(L"nothing", pos, white, 0.5f, 1), nullptr);
    EndFrame();
    EXPECT_TRUE(Shows(20, 20, kBlack, kBlack, kBlack, kBlack));

    ZQSprite noDevice(nullptr);
    EXPECT_EQ(noDevice.Render(L"quad", pos, white, 0), nullptr);
}

// The shake is the quake's path along z: 0, 0.5, 0, 0.5, 0 at 0.1 s steps; exactly at the last key it still runs.
TEST_F(SpriteTest, TheShakeMovesEverythingAndStops) {
    sprite->OnFrameMove(Device(), 0.0, 0.1f, nullptr);
    EXPECT_EQ(sprite->GetTime(), 0.0f) << "idle: time stands";
    sprite->SetAction(true);
    const struct {
        float elapsed, z;
        bool running;
    } steps[] = {{0.1f, 0.5f, true}, {0.1f, 0, true}, {0.2f, 0, true}, {0.05f, 0, false}};
    for (const auto& step : steps) {
        sprite->OnFrameMove(Device(), 0.0, step.elapsed, nullptr);
        EXPECT_NEAR(sprite->GetPosition().z, step.z, 1e-5f);
        EXPECT_EQ(sprite->GetAction(), step.running);
    }
    EXPECT_EQ(sprite->GetTime(), 0.0f);
}
