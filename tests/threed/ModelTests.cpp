// Models from .x files through the DLL: poses at given times against hand-computed matrices, both
// forms of a file, the format's awkward cases, pixels of drawn and skinned models, picking, resets,
// threads and hostile files. The models are written by make_test_models.
#include "twod/TextureTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

using namespace twodtest;
using ZQ::_3D::ZQ3DCamera;
using ZQ::_3D::ZQ3DObject;
using ZQ::_3D::ZQ3DRenderMulti;
using ZQ::_3D::ZQ3DRenderSingle;

namespace {

const float kRoot = 0.70710678f;
const D3DXVECTOR3 kOrigin(0, 0, 0);

// Draws the players, advanced by elapsed, under a camera at the origin looking along +z; then, after the
// camera has ended, after.
template <typename... Players> void DrawThen(const std::function<void()>& after, float elapsed, Players&... players) {
    Device()->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0, 1.0f, 0);
    Device()->BeginScene();
    ZQ3DCamera camera(Device());
    camera.BeginScene(0.0f);
    (players.OnFrameRender(Device(), 0.0, elapsed, nullptr), ...);
    camera.EndScene();
    if (after)
        after();
    EndFrame();
}
template <typename... Players> void Draw(float elapsed, Players&... players) {
    DrawThen(nullptr, elapsed, players...);
}

// Where a world point lands on the screen, under the camera Draw uses.
POINT Screen(const D3DXVECTOR3& world) {
    D3DVIEWPORT9 viewport;
    D3DXMATRIX view, projection, identity;
    Device()->GetViewport(&viewport);
    Device()->GetTransform(D3DTS_VIEW, &view);
    Device()->GetTransform(D3DTS_PROJECTION, &projection);
    D3DXMatrixIdentity(&identity);
    D3DXVECTOR3 out;
    D3DXVec3Project(&out, &world, &viewport, &projection, &view, &identity);
    return POINT{static_cast<LONG>(out.x), static_cast<LONG>(out.y)};
}

// Advanced without drawing: a null device draws nothing.
void Advance(ZQ3DRenderSingle& player, float seconds) {
    player.OnFrameRender(nullptr, 0.0, seconds, nullptr);
}

// The translation row of a frame's world matrix.
D3DXVECTOR3 Origin(ZQ3DRenderSingle& player, const wchar_t* frame) {
    D3DXMATRIX m;
    EXPECT_TRUE(player.GetFrameMatrix(frame, &m)) << frame;
    return D3DXVECTOR3(m._41, m._42, m._43);
}

void ExpectNear(const D3DXVECTOR3& actual, const D3DXVECTOR3& expected, const std::string& what) {
    EXPECT_NEAR(actual.x, expected.x, 1e-4f) << what;
    EXPECT_NEAR(actual.y, expected.y, 1e-4f) << what;
    EXPECT_NEAR(actual.z, expected.z, 1e-4f) << what;
}

// The forearm's place and size, the pose a user sees.
void ExpectForearm(ZQ3DRenderSingle& arm, const D3DXVECTOR3& place, float scale, const char* what) {
    ExpectNear(Origin(arm, L"Forearm"), place, what);
    D3DXMATRIX m;
    arm.GetFrameMatrix(L"forearm", &m);
    EXPECT_NEAR(D3DXVec3Length(reinterpret_cast<D3DXVECTOR3*>(&m._11)), scale, 1e-4f) << what;
}

// One store for the program, with every model the tests draw.
class Models : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        store = new ZQ3DObject(Device());
        for (const wchar_t* name :
             {L"box", L"textured-box", L"arm", L"arm-bin", L"skin", L"skin-bin", L"box-bin64", L"long-names", L"wide"})
            ASSERT_TRUE(store->Entry(name, Data(std::wstring(name) + L".x").c_str())) << name;
    }
    static void TearDownTestSuite() { delete store; }

    static ZQ3DObject* store;
};

ZQ3DObject* Models::store = nullptr;

} // namespace

// arm.x: Arm at (1, 0, 0) with Forearm 2 above it. "Wave" (100 ticks a second, 1 s) turns Arm 90° about z
// while moving it to (3, 0, 0) and swells Forearm to twice its size at 0.5 s; "Slide" (2 s) moves Arm up
// by 4 through matrix keys; "Late" has its keys written out of order.
TEST_F(Models, PosesAtTimesMatchHandComputedMatrices) {
    const float s45 = kRoot * 2.0f; // the forearm's offset of 2 turned by 45°: (-s45, s45)
    const float s22 = 2 * std::sin(0.3926991f), c22 = 2 * std::cos(0.3926991f);
    // blendTo: played with a blend of 1 s after seconds, then seconds more.
    const struct {
        const char* what;
        const wchar_t* animation;
        int loops;
        float speed, seconds;
        const wchar_t* blendTo;
        D3DXVECTOR3 forearm;
        float scale;
    } cases[] = {
        {"rest pose", nullptr, 0, 1, 0, nullptr, {1, 2, 0}, 1},
        {"rotation, position and scale keys halfway", L"Wave", 1, 1, 0.5f, nullptr, {2 - s45, s45, 0}, 2},
        {"played once: the last key's pose is held", L"Wave", 1, 1, 5, nullptr, {1, 0, 0}, 1},
        {"looped: 1.25 s is 0.25 s", L"Wave", -1, 1, 1.25f, nullptr, {1.5f - s22, c22, 0}, 1.5f},
        {"speed 2: 0.25 s is 0.5 s", L"Wave", 1, 2, 0.25f, nullptr, {2 - s45, s45, 0}, 2},
        {"matrix keys", L"Slide", 1, 1, 1, nullptr, {1, 4, 0}, 1},
        {"keys out of order are sorted", L"Late", 1, 1, 0.5f, nullptr, {3, 2, 0}, 1},
        // Wave ends (R90, at (3, 0, 0)) while Slide reaches (1, 1, 0); halfway: R45 at (2, 0.5, 0).
        {"blend halfway from Wave, which keeps running", L"Wave", 1, 1, 0.5f, L"Slide", {2 - s45, 0.5f + s45, 0}, 1},
    };
    for (const wchar_t* model : {L"ARM", L"arm-bin"})
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << model);
            ZQ3DRenderSingle arm(store);
            ASSERT_TRUE(arm.Entry(model, kOrigin)) << "names are case-insensitive";
            if (c.animation) {
                arm.Play(c.animation, c.loops, 0);
                arm.SetSpeed(c.speed);
                Advance(arm, c.seconds);
            }
            if (c.blendTo) {
                arm.Play(c.blendTo, -1, 1.0f);
                Advance(arm, c.seconds);
            }
            ExpectForearm(arm, c.forearm, c.scale, c.what);
        }
    ZQ3DRenderSingle placed(store);
    placed.Entry(L"arm", kOrigin);
    placed.SetMove(D3DXVECTOR3(0, 0, 10));
    placed.SetRotation(D3DX_PI / 2, 0, 0);
    placed.SetScale(2);
    ExpectForearm(placed, {0, 4, 8}, 2, "placement: moved, turned a quarter about y and scaled by 2");
}

TEST_F(Models, PlayersRefuseWhatTheyDoNotKnowAndChangeNothing) {
    ZQ3DRenderSingle player(store);
    EXPECT_FALSE(player.Play(L"Wave", 1, 0)) << "no model placed";
    EXPECT_FALSE(player.Entry(L"no such model", kOrigin));
    EXPECT_TRUE(player.empty());
    ASSERT_TRUE(player.Entry(L"arm", kOrigin));
    ASSERT_TRUE(player.Play(L"wave", 1, 0));
    Advance(player, 0.5f);
    EXPECT_FALSE(player.Play(L"Dance", 1, 0));
    EXPECT_FALSE(player.Entry(L"gone", D3DXVECTOR3(9, 9, 9)));
    ExpectNear(Origin(player, L"Forearm"), {2 - 2 * kRoot, 2 * kRoot, 0}, "the pose after refusals");
    EXPECT_FALSE(player.GetFrameMatrix(L"Elbow", nullptr));
    EXPECT_FALSE(player.IsFinished());
    Advance(player, 0.5f);
    EXPECT_TRUE(player.IsFinished());
    EXPECT_FLOAT_EQ(store->GetAnimationLength(L"arm", L"Slide"), 2.0f);
    EXPECT_EQ(store->GetAnimationLength(L"arm", L"Dance"), -1.0f);
    EXPECT_FALSE(store->Entry(L"missing", L"no-such-file.x"));
    EXPECT_EQ(store->Trans(L"missing"), nullptr);
    player.clear();
    EXPECT_TRUE(player.empty());

    ZQ3DRenderMulti multi(store);
    EXPECT_TRUE(multi.empty());
    const struct {
        const wchar_t *model, *animation;
        int loops;
        bool accepted;
    } entries[] = {{L"arm", L"Dance", 1, false},
                   {L"nothing", nullptr, 1, false},
                   {L"arm", L"Wave", 1, true},
                   {L"arm", nullptr, 0, true}};
    for (const auto& e : entries)
        EXPECT_EQ(multi.Entry(e.model, kOrigin, e.animation, e.loops), e.accepted);
    multi.OnFrameRender(nullptr, 0.0, 3.0f, nullptr);
    EXPECT_EQ(multi.size(), 2u) << "finished instances stay in their last pose";
}

TEST_F(Models, LongNamesAndThreeHundredChildrenLoad) {
    ZQ3DRenderSingle player(store);
    ASSERT_TRUE(player.Entry(L"long-names", kOrigin));
    ASSERT_TRUE(player.Play(L"Move", 1, 0)) << "the animation names its frame by all 60 characters";
    Advance(player, 0.5f);
    ExpectNear(Origin(player, (L"Frame_" + std::wstring(54, L'x')).c_str()), {0, 0.5f, 0}, "the long-named frame");
    ASSERT_TRUE(player.Entry(L"wide", kOrigin));
    ExpectNear(Origin(player, L"Child299"), {2.99f, 0, 0}, "the last of Hub's 300 children");
}

// box.x is a red cube of side 2, textured-box.x the same cube with a green texture.
TEST_F(Models, DrawnModelsShowTheirMaterialAndTextureAfterResetsAndSpritesAfterThemAreUnchanged) {
    ZQ3DRenderSingle red(store), green(store);
    red.Entry(L"box", D3DXVECTOR3(-1.5f, 0, 6));
    green.Entry(L"textured-box", D3DXVECTOR3(1.5f, 0, 6));
    ZQ::ZQVelisto* app = App();
    app->SetDeviceLostFunc([](void* context) { static_cast<ZQ3DObject*>(context)->OnLostDevice(context); });
    app->SetDeviceLostFuncUserContext(store);
    app->SetDeviceResetFunc([](IDirect3DDevice9* device, const D3DSURFACE_DESC* desc, void* context) {
        return static_cast<ZQ3DObject*>(context)->OnResetDevice(device, desc, context);
    });
    app->SetDeviceResetFuncUserContext(store);
    Draw(0.0f, red, green);
    const POINT r = Screen(D3DXVECTOR3(-1.5f, 0, 5)), g = Screen(D3DXVECTOR3(1.5f, 0, 5));
    const D3DCOLOR redPixel = BackBufferPixel(r.x, r.y), greenPixel = BackBufferPixel(g.x, g.y);
    EXPECT_TRUE((redPixel >> 16 & 0xFF) > 200 && (redPixel & 0xFFFF) < 0x2020) << std::hex << redPixel;
    EXPECT_TRUE((greenPixel >> 8 & 0xFF) > 200 && (greenPixel >> 16 & 0xFF) < 0x20) << std::hex << greenPixel;
    EXPECT_EQ(BackBufferPixel(160, 10) & 0xFFFFFF, 0u) << "nothing above the boxes";
    for (int size : {400, 320}) {
        Resize(size, size * 3 / 4);
        Draw(0.0f, red, green);
    }
    app->SetDeviceLostFunc(nullptr);
    app->SetDeviceResetFunc(nullptr);
    EXPECT_EQ(BackBufferPixel(r.x, r.y), redPixel) << "after two resets";
    EXPECT_EQ(BackBufferPixel(g.x, g.y), greenPixel);

    ZQ::ZQSprite sprite(Device());
    sprite.Entry(L"ribbon", Data(L"box-texture.png").c_str(), false);
    auto drawSprite = [&] {
        D3DXVECTOR3 at(10, 10, 0);
        D3DXCOLOR white(1, 1, 1, 1);
        ASSERT_NE(sprite.Render(L"ribbon", at, white, 0), nullptr);
    };
    auto spritePixels = [] {
        std::vector<D3DCOLOR> pixels;
        for (int y = 8; y < 28; ++y)
            for (int x = 8; x < 28; ++x)
                pixels.push_back(BackBufferPixel(x, y));
        return pixels;
    };
    BeginFrame();
    drawSprite();
    EndFrame();
    const std::vector<D3DCOLOR> alone = spritePixels();
    DrawThen(drawSprite, 0.0f, red);
    EXPECT_TRUE(spritePixels() == alone) << "the sprite's pixels after a model";
}

// skin.x: a bar from y 0 to 2 whose upper half follows Bone1; "Bend" turns Bone1 90° about z, so the
// top end goes from (0, 2, 0) to (-1, 1, 0).
TEST_F(Models, SkinnedMeshIsDeformedByItsBones) {
    for (const wchar_t* model : {L"skin", L"skin-bin"}) {
        SCOPED_TRACE(testing::Message() << model);
        ZQ3DRenderSingle bar(store);
        ASSERT_TRUE(bar.Entry(model, D3DXVECTOR3(0, -1, 5)));
        Draw(0.0f, bar);
        const POINT top = Screen(D3DXVECTOR3(0, 0.8f, 4.8f)), bent = Screen(D3DXVECTOR3(-0.8f, 0, 4.8f));
        EXPECT_NE(BackBufferPixel(top.x, top.y) & 0xFFFFFF, 0u) << "the upright top";
        EXPECT_EQ(BackBufferPixel(bent.x, bent.y) & 0xFFFFFF, 0u);

        bar.Play(L"Bend", 1, 0);
        Draw(1.0f, bar);
        EXPECT_EQ(BackBufferPixel(top.x, top.y) & 0xFFFFFF, 0u) << "the top has bent away";
        EXPECT_NE(BackBufferPixel(bent.x, bent.y) & 0xFFFFFF, 0u) << "to the left";
        float distance = 0;
        EXPECT_TRUE(bar.HitTest(Device(), bent.x, bent.y, &distance)) << "picking sees the skinned pose";
        EXPECT_FALSE(bar.HitTest(Device(), top.x, top.y, &distance));
    }
}

// The binary forms of arm and skin are posed in the tables above; box-bin64 (64-bit floats) is picked here.
TEST_F(Models, PickingFindsTheInstanceUnderAPoint) {
    ZQ3DRenderMulti multi(store);
    multi.Entry(L"box-bin64", D3DXVECTOR3(0, 0, 5), nullptr, 0);
    multi.Entry(L"arm", D3DXVECTOR3(2, 0, 6), L"Wave", -1);
    Draw(0.1f, multi);
    const POINT arm = Screen(D3DXVECTOR3(3.2f, 0, 6));
    float distance = 0;
    EXPECT_EQ(multi.HitTest(Device(), 160, 120, &distance), 0);
    EXPECT_NEAR(distance, 3.9f, 0.01f) << "from the near plane (0.1) to the box's front face (z 4)";
    EXPECT_EQ(multi.HitTest(Device(), arm.x, arm.y, &distance), 1);
    EXPECT_EQ(multi.HitTest(Device(), 160, 5, &distance), -1);
}

TEST_F(Models, ModelsLoadOnAWorkerWhileTheMainThreadDraws) {
    HANDLE thread = CreateThread(
        nullptr, 0,
        [](void* models) -> DWORD {
            for (int i = 0; i < 40; ++i)
                static_cast<ZQ3DObject*>(models)->Entry((L"worker" + std::to_wstring(i)).c_str(),
                                                        Data(i % 2 ? L"skin-bin.x" : L"arm.x").c_str());
            return 0;
        },
        store, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    ZQ3DRenderMulti multi(store);
    multi.Entry(L"skin", D3DXVECTOR3(0, -1, 6), L"Bend", -1);
    multi.Entry(L"arm", D3DXVECTOR3(1, 0, 6), L"Wave", -1);
    for (int frames = 0; WaitForSingleObject(thread, 0) == WAIT_TIMEOUT || frames < 10; ++frames)
        Draw(0.05f, multi);
    CloseHandle(thread);
    for (int i = 0; i < 40; ++i)
        EXPECT_NE(store->Trans((L"worker" + std::to_wstring(i)).c_str()), nullptr) << i;
}

TEST(ModelFiles, HostileFilesAreRefusedOrLoadedSoundlyAndNeverCrash) {
    ZQ3DObject store(Device());
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(Data(L"corpus\\*.x").c_str(), &found);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    int files = 0, loaded = 0;
    do {
        const std::wstring name = found.cFileName;
        const bool ok = store.Entry(name.c_str(), Data(L"corpus\\" + name).c_str());
        ++files;
        loaded += ok;
        if (ok) {
            // Whatever loads can be posed, drawn and picked.
            ZQ3DRenderMulti players(&store);
            EXPECT_TRUE(players.Entry(name.c_str(), D3DXVECTOR3(0, 0, 5), nullptr, 0));
            Draw(0.3f, players);
            float distance;
            players.HitTest(Device(), 160, 120, &distance);
        }
        for (const wchar_t* broken : {L"broken-index", L"broken-truncated", L"broken-compressed"})
            EXPECT_FALSE(ok && name.rfind(broken, 0) == 0) << "refused: " << std::string(name.begin(), name.end());
    } while (FindNextFileW(search, &found));
    FindClose(search);
    EXPECT_GT(files, 20);
    EXPECT_GT(loaded, 10) << "the valid models of the corpus";
}
