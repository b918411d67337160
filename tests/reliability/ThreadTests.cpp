// Lookups that may run on several threads at once, each repeated long enough to show a race, checking
// every answer: a player started on a worker thread while another starts its own, sprites and paths
// looked up from four threads.
#include "ReliabilitySupport.h"
#include "twod/TextureTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

using twodtest::Data;
using twodtest::Device;

namespace {

// Runs body(thread, i) for i below count on each of threads threads; returns the number of wrong answers.
int WrongAnswersFrom(int threads, int count, const std::function<bool(int, int)>& body) {
    std::atomic<int> wrong{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            for (int i = 0; i < count; ++i)
                if (!body(t, i))
                    ++wrong;
        });
    for (std::thread& worker : workers)
        worker.join();
    return wrong;
}

class ThreadTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { reliability::ReportCrashes(); }
    void SetUp() override {
        sprite = new ZQ::ZQSprite(Device());
        sprite->Entry(Data(L"sprites.te").c_str());
        animate = new ZQ::ZQAnimate(sprite);
        animate->Entry(Data(L"anim\\narrow.am").c_str());
    }
    void TearDown() override {
        delete animate;
        delete sprite;
    }
    ZQ::ZQSprite* sprite = nullptr;
    ZQ::ZQAnimate* animate = nullptr;
};

} // namespace

// Each thread starts its own player, on one shared animate, alternating two scenes of its own: every
// start must find the scene it named, never none or the one the other thread asked for.
TEST_F(ThreadTest, PlayersStartedOnTwoThreadsEachFindTheirOwnScene) {
    reliability::g_doing = L"starting players on two threads";
    const wchar_t* names[2][2] = {{L"blink", L"tinted"}, {L"move", L"ghost"}};
    const ZQ::ZQAnimateScene* scenes[2][2];
    for (int t = 0; t < 2; ++t)
        for (int k = 0; k < 2; ++k)
            ASSERT_NE(scenes[t][k] = animate->Trans(names[t][k]), nullptr) << names[t][k];
    ZQ::ZQRenderSingle first(animate), second(animate);
    ZQ::ZQRenderSingle* players[2] = {&first, &second};
    const D3DXVECTOR3 at(0.0f, 0.0f, 0.0f);
    const int wrong = WrongAnswersFrom(2, 100000, [&](int t, int i) {
        const int k = i % 2;
        return players[t]->Entry(names[t][k], at, true, 1, true) &&
               players[t]->GetScene()->GetBorrowed() == scenes[t][k];
    });
    EXPECT_EQ(wrong, 0) << "starts that found no scene or another thread's";
}

// Instances of one player list added from two threads at once all arrive, each with its own scene.
TEST_F(ThreadTest, InstancesAddedFromTwoThreadsAllArrive) {
    reliability::g_doing = L"adding instances on two threads";
    ZQ::ZQRenderMulti multi(animate);
    const wchar_t* names[2] = {L"blink", L"move"};
    const int wrong = WrongAnswersFrom(2, 4000, [&](int t, int) {
        return multi.Entry(names[t], D3DXVECTOR3(0.0f, 0.0f, 0.0f), true, 1);
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(multi.size(), 8000u);
}

// Chunk, scene and path lookups from four threads answer what one thread answered.
TEST_F(ThreadTest, LookupsFromFourThreadsAnswerAsFromOne) {
    reliability::g_doing = L"looking up chunks, scenes and paths on four threads";
    ZQ::ZQSpline paths(Data(L"anim\\paths.spl").c_str(), 7, 2);
    const wchar_t* chunkNames[] = {L"quad", L"centred", L"QUAD", L"missing"};
    const wchar_t* sceneNames[] = {L"blink", L"MOVE", L"tinted", L"none"};
    const wchar_t* pathNames[] = {L"arc", L"three", L"ARC", L"gone"};
    const void* chunks[4];
    const void* scenes[4];
    float times[4];
    for (int k = 0; k < 4; ++k) {
        chunks[k] = sprite->Trans(chunkNames[k]);
        scenes[k] = animate->Trans(sceneNames[k]);
        times[k] = paths.GetTime(pathNames[k]);
    }
    ASSERT_NE(chunks[0], nullptr);
    ASSERT_NE(scenes[0], nullptr);
    ASSERT_NE(times[0], 0.0f);
    const int wrong = WrongAnswersFrom(4, 100000, [&](int t, int i) {
        const int k = (i + t) % 4;
        return sprite->Trans(chunkNames[k]) == chunks[k] && animate->Trans(sceneNames[k]) == scenes[k] &&
               paths.GetTime(pathNames[k]) == times[k];
    });
    EXPECT_EQ(wrong, 0);
}
