// Viewports and render targets, read back by pixels: split screens, an inset, a texture drawn into, resets.
#include "twod/TextureTestSupport.h"

#include <gtest/gtest.h>

using namespace twodtest;
using namespace ZQ;

namespace {

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kGreen = D3DCOLOR_XRGB(0, 255, 0), kBlue = D3DCOLOR_XRGB(0, 0, 255),
               kWhite = D3DCOLOR_XRGB(255, 255, 255), kBlack = D3DCOLOR_XRGB(0, 0, 0),
               kPurple = D3DCOLOR_XRGB(96, 0, 96), kTeal = D3DCOLOR_XRGB(0, 96, 96);

// The middles of the quadrants of a 32 x 32 square at (x, y): the "quad" chunk is red, green / blue, white.
::testing::AssertionResult QuadAt(int x, int y, D3DCOLOR tl = kRed, D3DCOLOR tr = kGreen, D3DCOLOR bl = kBlue,
                                  D3DCOLOR br = kWhite) {
    const D3DCOLOR want[4] = {tl, tr, bl, br};
    for (int i = 0; i < 4; ++i)
        if (!Near(BackBufferPixel(x + 8 + i % 2 * 16, y + 8 + i / 2 * 16), want[i], 3))
            return ::testing::AssertionFailure() << "quadrant " << i << " of the square at " << x << ", " << y;
    return ::testing::AssertionSuccess();
}

struct Pane {
    int x, y, width, height;
    D3DCOLOR clear;
};

// Pixels of the pane's middle row (across) or column that are not its clear colour.
int Drawn(const Pane& pane, bool across) {
    int count = 0;
    for (int i = 0; i < (across ? pane.width : pane.height); ++i)
        count += !Near(across ? BackBufferPixel(pane.x + i, pane.y + pane.height / 2)
                              : BackBufferPixel(pane.x + pane.width / 2, pane.y + i),
                       pane.clear, 8);
    return count;
}

class Views : public ::testing::Test {
protected:
    void SetUp() override {
        sprite = new ZQSprite(Device());
        sprite->Entry(Data(L"sprites.te").c_str());
        D3DXCreateBox(Device(), 1.0f, 1.0f, 1.0f, &box, nullptr);
    }
    void TearDown() override {
        if (box)
            box->Release();
        delete sprite;
    }
    // A unit box 5 ahead of a camera at the origin: a dark square, whatever the viewport's shape.
    void DrawBox() {
        _3D::ZQ3DCamera camera(Device());
        camera.BeginScene(0.0f);
        D3DXMATRIX world;
        Device()->SetTransform(D3DTS_WORLD, D3DXMatrixTranslation(&world, 0.0f, 0.0f, 5.0f));
        box->DrawSubset(0);
        camera.EndScene();
    }
    ZQSprite* sprite = nullptr;
    ID3DXMesh* box = nullptr;
    D3DXCOLOR white = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    D3DXVECTOR3 corner = D3DXVECTOR3(0.0f, 0.0f, 0.0f);
};

} // namespace

TEST_F(Views, EachPaneDrawsAtItsOwnCornerAndTheFullViewportComesBack) {
    const struct {
        const char* layout;
        Pane panes[2];
    } layouts[] = {
        {"split screen", {{0, 0, 160, 240, kPurple}, {160, 0, 160, 240, kTeal}}},
        {"picture in picture", {{0, 0, 320, 240, kPurple}, {200, 130, 110, 100, kTeal}}},
    };
    ASSERT_NE(box, nullptr);
    for (const auto& layout : layouts) {
        SCOPED_TRACE(layout.layout);
        BeginFrame();
        for (const Pane& pane : layout.panes) {
            ZQViewport viewport(pane.x, pane.y, pane.width, pane.height);
            ASSERT_TRUE(viewport.Begin(Device()));
            sprite->ReadViewport();
            Device()->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, pane.clear, 1.0f, 0);
            DrawBox();
            sprite->Render(L"quad", corner, white, 0);
            viewport.End();
        }
        sprite->ReadViewport();
        D3DXVECTOR3 after(100.0f, 180.0f, 0.0f);
        sprite->Render(L"quad", after, white, 0);
        EndFrame();
        for (const Pane& pane : layout.panes) {
            EXPECT_TRUE(QuadAt(pane.x, pane.y)) << "the sprite's (0, 0) is the pane's corner";
            EXPECT_TRUE(Near(BackBufferPixel(pane.x + 40, pane.y + 40), pane.clear, 3)) << "the pane's own clear";
            // The camera takes the pane's aspect: the box stays square in a tall pane.
            EXPECT_GT(Drawn(pane, false), pane.height / 5);
            EXPECT_NEAR(Drawn(pane, true), Drawn(pane, false), 2) << "pane at " << pane.x << ", " << pane.y;
        }
        EXPECT_TRUE(QuadAt(100, 180)) << "drawn after End, in the whole back buffer";
    }
}

TEST_F(Views, ATargetTakesDrawingAndDrawsAsAChunkWithEveryEffect) {
    ZQRenderTarget target(Device(), 64, 64);
    sprite->EntryShared(L"target", target.GetChunk());
    BeginFrame();
    ASSERT_TRUE(target.Begin());
    EXPECT_FALSE(target.Begin()) << "already begun";
    sprite->ReadViewport();
    Device()->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, kPurple, 1.0f, 0);
    D3DXVECTOR3 inside(16.0f, 16.0f, 0.0f);
    sprite->Render(L"quad", inside, white, 0);
    target.End();
    sprite->ReadViewport();
    D3DXVECTOR3 plain(0, 100, 0), tinted(80, 100, 0), wiped(160, 100, 0);
    D3DXCOLOR red(1.0f, 0.0f, 0.0f, 1.0f), half(1.0f, 1.0f, 1.0f, 0.5f);
    ZQRect turned(240.0f, 100.0f, 304.0f, 164.0f);
    sprite->Render(L"target", plain, white, 0);
    sprite->Render(L"target", tinted, red, 0);
    sprite->RenderLerp(L"TARGET", wiped, white, 0.5f, 1);
    sprite->Render(L"target", turned, D3DX_PI, half, 0);
    EndFrame();
    EXPECT_TRUE(Near(BackBufferPixel(20, 20), kBlack, 3)) << "nothing reached the back buffer while begun";
    EXPECT_TRUE(Near(BackBufferPixel(4, 104), kPurple, 3));
    EXPECT_TRUE(QuadAt(16, 116));
    EXPECT_TRUE(Near(BackBufferPixel(84, 104), D3DCOLOR_XRGB(96, 0, 0), 3));
    EXPECT_TRUE(QuadAt(96, 116, kRed, kBlack, kBlack, kRed)) << "tinted red";
    EXPECT_TRUE(QuadAt(176, 116, kRed, kBlack, kBlue, kBlack)) << "the left half";
    const D3DCOLOR grey = D3DCOLOR_XRGB(128, 128, 128);
    EXPECT_TRUE(QuadAt(256, 116, grey, D3DCOLOR_XRGB(0, 0, 128), D3DCOLOR_XRGB(0, 128, 0), D3DCOLOR_XRGB(128, 0, 0)))
        << "half a turn, half faded";
}

TEST_F(Views, ATargetIsMadeAgainAtEachResetAndFollowsTheBackBuffer) {
    ZQRenderTarget target(Device());
    sprite->EntryShared(L"target", target.GetChunk());
    ZQVelisto* app = App();
    app->SetDeviceLostFunc([](void* context) { static_cast<ZQRenderTarget*>(context)->OnLostDevice(context); });
    app->SetDeviceLostFuncUserContext(&target);
    app->SetDeviceResetFunc([](IDirect3DDevice9* device, const D3DSURFACE_DESC* desc, void* context) {
        return static_cast<ZQRenderTarget*>(context)->OnResetDevice(device, desc, context);
    });
    app->SetDeviceResetFuncUserContext(&target);
    const int widths[] = {320, 400, 320};
    for (int i = 0; i < 3; ++i) {
        const int width = widths[i];
        EXPECT_EQ(target.GetWidth(), static_cast<UINT>(width)) << "reset " << i;
        EXPECT_EQ(target.GetHeight(), static_cast<UINT>(width * 3 / 4));
        sprite->ReadViewport();
        BeginFrame();
        ASSERT_TRUE(target.Begin());
        Device()->Clear(0, nullptr, D3DCLEAR_TARGET, kTeal, 1.0f, 0);
        D3DXVECTOR3 inside(40.0f, 40.0f, 0.0f);
        sprite->Render(L"quad", inside, white, 0);
        target.End();
        ZQRect quarter(100.0f, 20.0f, 100.0f + width / 4, 20.0f + width * 3 / 16);
        sprite->Render(L"target", quarter, white, 0);
        EndFrame();
        EXPECT_TRUE(Near(BackBufferPixel(102, 22), kTeal, 3)) << "drawn at a quarter of its size, reset " << i;
        EXPECT_TRUE(Near(BackBufferPixel(100 + 12, 20 + 12), kRed, 3));
        if (i < 2)
            Resize(widths[i + 1], widths[i + 1] * 3 / 4);
    }
    app->SetDeviceLostFunc(nullptr);
    app->SetDeviceResetFunc(nullptr);
}
