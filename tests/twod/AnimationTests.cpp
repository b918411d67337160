#include "TextureTestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace twodtest;
using ZQ::ZQAnimate;
using ZQ::ZQAnimateScene;
using ZQ::ZQRenderMulti;
using ZQ::ZQRenderSingle;

namespace {

const D3DCOLOR kRed = D3DCOLOR_XRGB(255, 0, 0), kBlack = D3DCOLOR_XRGB(0, 0, 0);
const wchar_t* const kLayouts[] = {L"anim\\narrow.am", L"anim\\wide.am", L"anim\\frames.ta"};

class AnimationTest : public ::testing::Test {
protected:
    void SetUp() override {
        sprite = new ZQ::ZQSprite(Device());
        sprite->Entry(Data(L"sprites.te").c_str());
        animate = new ZQAnimate(sprite);
        animate->Entry(Data(L"anim\\narrow.am").c_str());
    }
    void TearDown() override {
        delete animate;
        delete sprite;
    }
    // Runs one frame of the player, drawing into the back buffer.
    template <typename Player> void Frame(Player& player, float elapsed) {
        BeginFrame();
        player.OnFrameRender(Device(), 0.0, elapsed, nullptr);
        EndFrame();
    }
    ZQ::ZQSprite* sprite = nullptr;
    ZQAnimate* animate = nullptr;
};

} // namespace

TEST_F(AnimationTest, TheThreeLayoutsReadAlike) {
    for (const wchar_t* file : kLayouts) {
        SCOPED_TRACE(testing::Message() << file);
        ZQAnimate loaded(sprite);
        loaded.Entry(Data(file).c_str());
        ZQAnimateScene* blink = loaded.Trans(L"BLINK");
        ASSERT_NE(blink, nullptr);
        ASSERT_EQ(blink->GetFrames().size(), 2u) << "the first of two scenes named blink";
        const ZQ::_ZQAnimateFrame_tag* frame = blink->GetFrame(1);
        EXPECT_TRUE(frame->chunk == L"centred");
        EXPECT_TRUE(frame->placement == ZQ::ZQRect(2, 4, 34, 36));
        EXPECT_FLOAT_EQ(frame->duration, 0.1f);
        EXPECT_EQ(frame->sprite, sprite);
        const ZQ::_ZQAnimateFrame_tag* move = loaded.Trans(L"move")->GetFrame(0);
        EXPECT_EQ(move->anchor, D3DXVECTOR3(10, 0, 0));
        EXPECT_EQ(move->endAnchor, D3DXVECTOR3(14, 0, 0));
        EXPECT_EQ(static_cast<DWORD>(loaded.Trans(L"tinted")->GetFrame(0)->color), 0x80FF0000u);
        ASSERT_NE(loaded.Trans(L"empty"), nullptr);
        EXPECT_EQ(loaded.Trans(L"empty")->GetFrames().size(), 0u);
    }
}

TEST_F(AnimationTest, NamesAndFailuresOfTheLoaders) {
    // The extension is a substring test; anything else is ignored.
    CopyData(L"anim\\narrow.am", L"anim\\copy.am.bak");
    CopyData(L"anim\\narrow.am", L"anim\\copy.bin");
    ZQAnimate bak(sprite), other(sprite);
    bak.Entry(Data(L"anim\\copy.am.bak").c_str());
    other.Entry(Data(L"anim\\copy.bin").c_str());
    other.Entry(Data(L"anim\\missing.am").c_str());
    EXPECT_NE(bak.Trans(L"blink"), nullptr);
    EXPECT_EQ(other.Trans(L"blink"), nullptr);

    // A wrong magic: the ".AM" reader leaves its file open, the ".TA" reader closes it.
    const std::wstring badAm = CopyData(L"anim\\narrow.am", L"anim\\bad.am", -1, 0, 'X');
    const std::wstring badTa = CopyData(L"anim\\frames.ta", L"anim\\bad.ta", -1, 0, 'X');
    ZQAnimate bad(sprite);
    bad.Entry(badAm.c_str());
    bad.Entry(badTa.c_str());
    EXPECT_EQ(bad.Trans(L"blink"), nullptr);
    EXPECT_FALSE(DeleteFileW(badAm.c_str())) << "still open";
    EXPECT_TRUE(DeleteFileW(badTa.c_str()));

    // Counts bounded by the bytes: 2^31 scenes in a 40-byte file, none, a file cut inside the 2nd scene.
    struct Case {
        const wchar_t* from;
        const wchar_t* to;
        long cut, patchAt;
        unsigned char value;
        unsigned int scenes;
    } cases[] = {
        {L"anim\\narrow.am", L"anim\\huge.am", 40, 15, 0x7F, 0},
        {L"anim\\frames.ta", L"anim\\huge.ta", 40, 23, 0x7F, 0},
        {L"anim\\narrow.am", L"anim\\none.am", -1, 12, 0, 0},
        {L"anim\\narrow.am", L"anim\\cut.am", 16 + 56 + 2 * 396 + 56 + 100, -1, 0, 2},
        {L"anim\\wide.am", L"anim\\cut_wide.am", 16 + 88 + 2 * 428 + 88 + 100, -1, 0, 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.to);
        ZQAnimate cut(sprite);
        cut.Entry(CopyData(c.from, c.to, c.cut, c.patchAt, c.value).c_str());
        EXPECT_EQ(cut.Trans(L"blink") != nullptr, c.scenes >= 1);
        if (ZQAnimateScene* move = cut.Trans(L"move"))
            EXPECT_EQ(move->GetFrames().size(), 0u) << "its one frame is cut short";
        else
            EXPECT_LT(c.scenes, 2u);
    }
}

TEST_F(AnimationTest, StatusesLoopsAndCatchingUp) {
    ZQAnimateScene scene(sprite, D3DXVECTOR3(0, 0, 0));
    EXPECT_EQ(scene.OnFrameRender(Device(), 0, 0.1f, nullptr), ZQAnimateScene::NoFrames);
    scene.Borrow(*animate->Trans(L"blink"));
    EXPECT_EQ(scene.OnFrameRender(Device(), 0, 0.1f, nullptr), ZQAnimateScene::Finished) << "loops 0";
    scene.SetLoops(2);
    EXPECT_EQ(scene.OnFrameRender(Device(), 0, 0.1f, nullptr), ZQAnimateScene::Running) << "stopped";
    EXPECT_EQ(scene.GetTime(), 0.0f);
    scene.SetVisible(false);
    EXPECT_EQ(scene.OnFrameRender(Device(), 0, 0.1f, nullptr), ZQAnimateScene::Hidden);
    scene.SetVisible(true);
    scene.SetPlaying(true);

    // Two frames of 0.1 s and a second a call: one frame a call at most, and the time stays ahead.
    std::vector<int> statuses, frames, loops;
    for (int call = 0; call < 4; ++call) {
        statuses.push_back(scene.OnFrameRender(Device(), 0, 1.0f, nullptr));
        frames.push_back(scene.GetCurrentFrame());
        loops.push_back(scene.GetLoops());
    }
    EXPECT_EQ(statuses, (std::vector<int>{0, 0, 0, 1}));
    EXPECT_EQ(frames, (std::vector<int>{1, 0, 1, 0}));
    EXPECT_EQ(loops, (std::vector<int>{2, 1, 1, 0}));
    EXPECT_NEAR(scene.GetTime(), 4 * 1.0f - 4 * 0.1f, 1e-5);
    EXPECT_EQ(scene.OnFrameRender(Device(), 0, 1.0f, nullptr), ZQAnimateScene::Finished);
}

TEST_F(AnimationTest, SinglePlayerDrawsMovesAndRestarts) {
    ZQRenderSingle player(animate);
    EXPECT_FALSE(player.Entry(L"missing", D3DXVECTOR3(0, 0, 0), true, -1, false));

    // What is drawn: the chunk's top-left quadrant at the position, red; half faded red when tinted.
    ASSERT_TRUE(player.Entry(L"blink", D3DXVECTOR3(100, 50, 0), true, -1, false));
    Frame(player, 0.05f);
    EXPECT_TRUE(Near(BackBufferPixel(108, 58), kRed, 3));
    EXPECT_TRUE(Near(BackBufferPixel(96, 58), kBlack, 3));
    ASSERT_TRUE(player.Entry(L"tinted", D3DXVECTOR3(100, 50, 0), true, 1, false));
    Frame(player, 0.05f);
    EXPECT_TRUE(Near(BackBufferPixel(108, 58), D3DCOLOR_XRGB(128, 0, 0), 3));
    EXPECT_TRUE(Near(BackBufferPixel(124, 58), kBlack, 3)) << "green times red is black";

    // A running animation is left alone without restart; restarted at its new place with it.
    ASSERT_TRUE(player.Entry(L"blink", D3DXVECTOR3(10, 10, 0), true, -1, false));
    Frame(player, 0.15f);
    EXPECT_EQ(player.GetScene()->GetCurrentFrame(), 1);
    EXPECT_TRUE(player.Entry(L"blink", D3DXVECTOR3(200, 10, 0), true, -1, false));
    EXPECT_EQ(player.GetScene()->GetCurrentFrame(), 1);
    EXPECT_EQ(player.GetScene()->GetPosition(), D3DXVECTOR3(10, 10, 0));
    EXPECT_FALSE(player.Entry(L"missing", D3DXVECTOR3(0, 0, 0), true, -1, true));
    EXPECT_TRUE(player.Entry(L"blink", D3DXVECTOR3(200, 10, 0), true, -1, true));
    EXPECT_EQ(player.GetScene()->GetCurrentFrame(), 0);
    EXPECT_EQ(player.GetScene()->GetPosition(), D3DXVECTOR3(200, 10, 0));

    // Anchor (10, 0) to end anchor (14, 0) at scale 2 moves 8 pixels, and draws twice the size.
    ASSERT_TRUE(player.Entry(L"move", D3DXVECTOR3(100, 100, 0), true, 1, true));
    player.SetScale(2.0f);
    Frame(player, 0.05f);
    EXPECT_EQ(player.GetScene()->GetDrawPosition(), D3DXVECTOR3(80, 100, 0));
    EXPECT_TRUE(Near(BackBufferPixel(80 + 60, 100 + 60), D3DCOLOR_XRGB(255, 255, 255), 3)) << "a 64-pixel quad";
    Frame(player, 0.1f);
    EXPECT_EQ(player.GetScene()->GetPosition(), D3DXVECTOR3(108, 100, 0));
    EXPECT_TRUE(player.empty()) << "its one pass is over";

    // An unknown chunk draws nothing but takes its time.
    ASSERT_TRUE(player.Entry(L"ghost", D3DXVECTOR3(100, 50, 0), true, -1, true));
    Frame(player, 0.05f);
    EXPECT_TRUE(Near(BackBufferPixel(108, 58), kBlack, 3));
    Frame(player, 0.1f);
    EXPECT_EQ(player.GetScene()->GetCurrentFrame(), 1);
    Frame(player, 0.0f);
    EXPECT_TRUE(Near(BackBufferPixel(108, 58), kRed, 3));

    player.clear();
    EXPECT_TRUE(player.empty());
    EXPECT_TRUE(player.GetName().empty());
}

TEST_F(AnimationTest, MultiPlayerDeletesWhatFinishes) {
    ZQRenderMulti player(animate);
    EXPECT_FALSE(player.Entry(L"missing", D3DXVECTOR3(0, 0, 0), true, 1));
    EXPECT_TRUE(player.empty());
    for (int loops : {1, 2, -1, 0})
        ASSERT_TRUE(player.Entry(L"blink", D3DXVECTOR3(40.0f * loops + 100, 20, 0), true, loops));
    EXPECT_EQ(player.size(), 4u);
    std::vector<unsigned int> sizes;
    for (int call = 0; call < 5; ++call) {
        Frame(player, 0.15f);
        sizes.push_back(player.size());
    }
    // loops 0 goes at once; each pass is two calls of 0.15 s over frames of 0.1 s.
    EXPECT_EQ(sizes, (std::vector<unsigned int>{3, 2, 2, 1, 1}));
    EXPECT_TRUE(Near(BackBufferPixel(60 + 8, 20 + 8), kRed, 3)) << "the endless one is still drawn";
    EXPECT_FALSE(player.empty());
    player.clear();
    EXPECT_TRUE(player.empty());
}

// Every loader reads a stored name as format text with no arguments: "%%" is one "%", and a conversion
// that would read an argument stays as written (never read, never a crash).
TEST_F(AnimationTest, StoredNamesAreFormatTextReadTheSafeWay) {
    ZQ::ZQTexture atlas(Device()), wideAtlas(Device()), packed(Device()), single(Device());
    atlas.Entry(Data(L"percent.te").c_str());
    wideAtlas.Entry(Data(L"percent-wide.te").c_str());
    packed.Entry(Data(L"percent.om").c_str());
    for (const wchar_t* name : {L"V100%%", L"a%sb"})
        single.Entry(name, Data(L"chunk_a.png").c_str(), false);
    ZQAnimate narrow(sprite), wide(sprite);
    narrow.Entry(Data(L"anim\\percent.am").c_str());
    wide.Entry(Data(L"anim\\percent-wide.am").c_str());
    ZQ::ZQSpline paths(Data(L"anim\\percent.spl").c_str(), 7, 2);
    const char* const loaders[] = {"atlas",  "wide atlas",  "packed file", "single image",
                                   "scenes", "wide scenes", "paths"};
    const std::pair<const wchar_t*, bool> names[] = {{L"V100%", true}, {L"V100%%", false}, {L"a%sb", true}};
    for (const auto& name : names) {
        const bool found[] = {atlas.Trans(name.first) != nullptr,  wideAtlas.Trans(name.first) != nullptr,
                              packed.Trans(name.first) != nullptr, single.Trans(name.first) != nullptr,
                              narrow.Trans(name.first) != nullptr, wide.Trans(name.first) != nullptr,
                              paths.Trans(name.first) != nullptr};
        for (int i = 0; i < 7; ++i)
            EXPECT_EQ(found[i], name.second) << loaders[i] << ": " << name.first;
    }
}
