#include "TextureTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using twodtest::BackBufferPixel;
using twodtest::BeginFrame;
using twodtest::Data;
using twodtest::Device;
using twodtest::EndFrame;
using twodtest::Near;
using ZQ::ZQSprite;

namespace {

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kGreen = D3DCOLOR_XRGB(0, 255, 0), kBlue = D3DCOLOR_XRGB(0, 0, 255),
               kWhite = D3DCOLOR_XRGB(255, 255, 255), kBlack = D3DCOLOR_XRGB(0, 0, 0);

// The quadrant image (32 x 32) drawn with its top-left corner at (x, y): the middles of its quadrants.
struct Quadrants {
    D3DCOLOR topLeft, topRight, bottomLeft, bottomRight;
};

Quadrants Read(int x, int y) {
    return {BackBufferPixel(x + 8, y + 8), BackBufferPixel(x + 24, y + 8), BackBufferPixel(x + 8, y + 24),
            BackBufferPixel(x + 24, y + 24)};
}

::testing::AssertionResult Shows(const Quadrants& q, D3DCOLOR tl, D3DCOLOR tr, D3DCOLOR bl, D3DCOLOR br) {
    if (Near(q.topLeft, tl, 3) && Near(q.topRight, tr, 3) && Near(q.bottomLeft, bl, 3) && Near(q.bottomRight, br, 3))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << std::hex << "quadrants " << q.topLeft << " " << q.topRight << " "
                                         << q.bottomLeft << " " << q.bottomRight;
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

TEST_F(SpriteTest, AChunkLandsWithItsOriginAtThePosition) {
    D3DXVECTOR3 corner(100.0f, 50.0f, 7.0f);
    D3DXVECTOR3 middle(200.0f, 150.0f, 0.0f);
    BeginFrame();
    ZQ::_ZQTextureChunk_tag* drawn = sprite->Render(L"quad", corner, white, 0);
    sprite->Render(L"CENTRED", middle, white, 0);
    EndFrame();
    ASSERT_NE(drawn, nullptr);
    EXPECT_EQ(drawn->texture, nullptr) << "a chunk other than the first draws from the shared texture";
    EXPECT_NE(drawn->sharedTexture, nullptr);
    EXPECT_TRUE(Shows(Read(100, 50), kRed, kGreen, kBlue, kWhite));
    EXPECT_TRUE(Shows(Read(200 - 16, 150 - 16), kRed, kGreen, kBlue, kWhite)) << "origin (16, 16)";
    // The edges, within the half pixel of alignment.
    EXPECT_TRUE(Near(BackBufferPixel(101, 51), kRed, 3));
    EXPECT_TRUE(Near(BackBufferPixel(98, 48), kBlack, 3));
    // The camera's eye at 2.41 sees 0.2 % more than the viewport height: the last row and column blend.
    EXPECT_TRUE(Near(BackBufferPixel(129, 80), kWhite, 3));
    EXPECT_TRUE(Near(BackBufferPixel(133, 84), kBlack, 3));
}

TEST_F(SpriteTest, FlagsMirrorAndTurn) {
    D3DXVECTOR3 at[5] = {{20, 20, 0}, {60, 20, 0}, {100, 20, 0}, {140, 20, 0}, {180, 20, 0}};
    BeginFrame();
    for (DWORD flags = 0; flags < 5; ++flags)
        sprite->Render(L"quad", at[flags], white, flags);
    EndFrame();
    EXPECT_TRUE(Shows(Read(20, 20), kRed, kGreen, kBlue, kWhite));
    EXPECT_TRUE(Shows(Read(60, 20), kGreen, kRed, kWhite, kBlue)) << "1: left-right";
    EXPECT_TRUE(Shows(Read(100, 20), kBlue, kWhite, kRed, kGreen)) << "2: top-bottom";
    EXPECT_TRUE(Shows(Read(140, 20), kWhite, kBlue, kGreen, kRed)) << "3: half a turn";
    EXPECT_TRUE(Shows(Read(180, 20), kRed, kGreen, kBlue, kWhite)) << "4: ignored";
}

TEST_F(SpriteTest, ColourTintsAndAlphaFades) {
    D3DXVECTOR3 left(20, 20, 0), right(80, 20, 0);
    D3DXCOLOR red(1.0f, 0.0f, 0.0f, 1.0f), half(1.0f, 1.0f, 1.0f, 0.5f);
    BeginFrame();
    sprite->Render(L"quad", left, red, 0);
    sprite->Render(L"quad", right, half, 0);
    EndFrame();
    EXPECT_TRUE(Shows(Read(20, 20), kRed, kBlack, kBlack, kRed));
    const D3DCOLOR grey = D3DCOLOR_XRGB(128, 128, 128);
    EXPECT_TRUE(Shows(Read(80, 20), D3DCOLOR_XRGB(128, 0, 0), D3DCOLOR_XRGB(0, 128, 0), D3DCOLOR_XRGB(0, 0, 128), grey));
}

TEST_F(SpriteTest, WipesDrawTheirFraction) {
    D3DXVECTOR3 at[6] = {{10, 10, 0}, {50, 10, 0}, {90, 10, 0}, {130, 10, 0}, {170, 10, 0}, {210, 10, 0}};
    BeginFrame();
    sprite->RenderLerp(L"quad", at[0], white, 0.5f, 1);   // left half
    sprite->RenderLerp(L"quad", at[1], white, -0.5f, 2);  // right half
    sprite->RenderLerp(L"quad", at[2], white, 0.5f, 4);   // top half
    sprite->RenderLerp(L"quad", at[3], white, 0.5f, 8);   // bottom half
    sprite->RenderLerp(L"quad", at[4], white, 0.5f, 0);   // left half
    sprite->RenderLerp(L"quad", at[5], white, 7.0f, 4);   // 1: nothing
    EndFrame();
    EXPECT_TRUE(Shows(Read(10, 10), kRed, kBlack, kBlue, kBlack));
    EXPECT_TRUE(Shows(Read(50, 10), kBlack, kGreen, kBlack, kWhite));
    EXPECT_TRUE(Shows(Read(90, 10), kRed, kGreen, kBlack, kBlack));
    EXPECT_TRUE(Shows(Read(130, 10), kBlack, kBlack, kBlue, kWhite));
    EXPECT_TRUE(Shows(Read(170, 10), kRed, kBlack, kBlue, kBlack));
    EXPECT_TRUE(Shows(Read(210, 10), kBlack, kBlack, kBlack, kBlack));

    BeginFrame();
    sprite->RenderLerp(L"quad", at[0], white, 0.25f, 1);  // a quarter
    sprite->RenderLerp(L"quad", at[1], white, 0.25f, 0);  // three quarters
    sprite->RenderLerp(L"quad", at[2], white, 7.0f, 1);   // all
    EndFrame();
    EXPECT_TRUE(Near(BackBufferPixel(10 + 4, 10 + 8), kRed, 3));
    EXPECT_TRUE(Near(BackBufferPixel(10 + 12, 10 + 8), kBlack, 3));
    EXPECT_TRUE(Near(BackBufferPixel(50 + 20, 10 + 8), kGreen, 3));
    EXPECT_TRUE(Near(BackBufferPixel(50 + 28, 10 + 8), kBlack, 3));
    EXPECT_TRUE(Shows(Read(90, 10), kRed, kGreen, kBlue, kWhite));
}

TEST_F(SpriteTest, TurnsAboutThePosition) {
    D3DXVECTOR3 a(60, 60, 0), b(160, 60, 0), c(260, 60, 0), centre(260, 60, 0);
    BeginFrame();
    sprite->Render(L"centred", a, D3DX_PI, white, 0);
    sprite->Render(L"centred", b, D3DX_PI / 2, white, 0);
    sprite->Render(L"centred", c, centre, D3DX_PI, white, 1);
    EndFrame();
    EXPECT_TRUE(Shows(Read(60 - 16, 60 - 16), kWhite, kBlue, kGreen, kRed)) << "half a turn";
    EXPECT_TRUE(Shows(Read(160 - 16, 60 - 16), kGreen, kWhite, kRed, kBlue)) << "a quarter, counter-clockwise";
    EXPECT_TRUE(Shows(Read(260 - 16, 60 - 16), kBlue, kWhite, kRed, kGreen)) << "mirrored, then half a turn";
}

TEST_F(SpriteTest, StretchedIntoARectangle) {
    ZQ::ZQRect dest(20.0f, 100.0f, 84.0f, 132.0f);
    BeginFrame();
    EXPECT_NE(sprite->Render(L"centred", dest, white, 0), nullptr);
    EndFrame();
    EXPECT_TRUE(Near(BackBufferPixel(20 + 16, 100 + 8), kRed, 3)) << "the origin plays no part";
    EXPECT_TRUE(Near(BackBufferPixel(20 + 48, 100 + 8), kGreen, 3));
    EXPECT_TRUE(Near(BackBufferPixel(20 + 48, 100 + 24), kWhite, 3));
}

TEST_F(SpriteTest, UnknownChunksDrawNothing) {
    D3DXVECTOR3 pos(20, 20, 0);
    BeginFrame();
    EXPECT_EQ(sprite->Render(L"nothing", pos, white, 0), nullptr);
    EXPECT_EQ(sprite->Render(nullptr, pos, white, 0), nullptr);
    EXPECT_EQ(sprite->RenderLerp(L"nothing", pos, white, 0.5f, 1), nullptr);
    EndFrame();
    EXPECT_TRUE(Shows(Read(20, 20), kBlack, kBlack, kBlack, kBlack));

    ZQSprite noDevice(nullptr);
    EXPECT_EQ(noDevice.Render(L"quad", pos, white, 0), nullptr);
}

TEST_F(SpriteTest, TheShakeMovesEverythingAndStops) {
    sprite->SetAction(true);
    sprite->OnFrameMove(Device(), 0.0, 0.1f, nullptr);
    EXPECT_FLOAT_EQ(sprite->GetPosition().z, 0.5f);
    for (int i = 0; i < 4; ++i)
        sprite->OnFrameMove(Device(), 0.0, 0.1f, nullptr);
    EXPECT_FALSE(sprite->GetAction());
    EXPECT_EQ(sprite->GetTime(), 0.0f);
}

TEST(ZQ3DCameraOnADevice, BeginAndEndSceneSetTheDeviceState) {
    IDirect3DDevice9* device = Device();
    ZQ::_3D::ZQ3DCamera camera(device, D3DXVECTOR3(0.0f, 0.0f, -5.0f));
    camera.BeginScene(0.0f);
    DWORD value = 0;
    auto state = [&](D3DRENDERSTATETYPE type) {
        device->GetRenderState(type, &value);
        return value;
    };
    EXPECT_EQ(state(D3DRS_LIGHTING), static_cast<DWORD>(TRUE));
    EXPECT_EQ(state(D3DRS_ZENABLE), static_cast<DWORD>(D3DZB_TRUE));
    EXPECT_EQ(state(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CCW));
    EXPECT_EQ(state(D3DRS_AMBIENT), 0xff505050u) << "the second ambient colour replaces the first";
    device->GetSamplerState(0, D3DSAMP_MAGFILTER, &value);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTEXF_LINEAR));
    D3DXMATRIX view;
    device->GetTransform(D3DTS_VIEW, &view);
    EXPECT_FLOAT_EQ(view._43, 5.0f);
    D3DLIGHT9 light;
    device->GetLight(0, &light);
    EXPECT_EQ(light.Type, D3DLIGHT_DIRECTIONAL);
    EXPECT_NEAR(light.Direction.y, -0.3f / std::sqrt(0.34f), 1e-5);

    camera.EndScene();
    EXPECT_EQ(state(D3DRS_LIGHTING), static_cast<DWORD>(FALSE));
    EXPECT_EQ(state(D3DRS_ZENABLE), static_cast<DWORD>(D3DZB_FALSE));
    EXPECT_EQ(state(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_NONE));
}
