#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

using ZQ::ZQScene;
using ZQ::ZQSceneManager;

namespace {

// Every callback of every scene, in the order they arrive: "name.callback".
std::vector<std::string> g_calls;

class RecordingScene : public ZQScene {
public:
    explicit RecordingScene(std::string name) : m_name(std::move(name)) {}
    ~RecordingScene() override { Log("deleted"); }

    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) override {
        lastDevice = device;
        lastBackBuffer = backBuffer;
        lastContext = context;
        Log("create");
        if (onCreate)
            onCreate();
        return E_FAIL; // failure is ignored: the scene becomes current all the same
    }
    HRESULT OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) override {
        Log("reset");
        return S_OK;
    }
    void OnLostDevice(void* context) override {
        lastContext = context;
        Log("lost");
    }
    void OnDestroyDevice(void*) override { Log("destroy"); }

    IDirect3DDevice9* lastDevice = nullptr;
    const D3DSURFACE_DESC* lastBackBuffer = nullptr;
    void* lastContext = nullptr;
    void (*onCreate)() = nullptr;

private:
    void Log(const char* what) { g_calls.push_back(m_name + "." + what); }
    std::string m_name;
};

class SceneManagerTest : public ::testing::Test {
protected:
    SceneManagerTest() { SetUpScenes(); }
    void SetUpScenes() {
        g_calls.clear();
        manager = new ZQSceneManager;
        for (const char* name : {"Title", "Game", "Result"}) {
            scenes.push_back(new RecordingScene(name));
            std::wstring wide(name, name + strlen(name));
            manager->Entry(wide.c_str(), scenes.back());
        }
    }
    ~SceneManagerTest() override { delete manager; }

    std::vector<std::string> TakeCalls() {
        std::vector<std::string> calls;
        calls.swap(g_calls);
        return calls;
    }
    void Dispatch() { manager->Dispatcher(nullptr, nullptr, nullptr); }

    ZQSceneManager* manager;
    std::vector<RecordingScene*> scenes;
    using Calls = std::vector<std::string>;
};

} // namespace

TEST(ZQSceneDefaults, DoNothingAndAccept) {
    ZQScene scene;
    EXPECT_TRUE(scene.IsDeviceAcceptable(nullptr, D3DFMT_X8R8G8B8, D3DFMT_X8R8G8B8, true, nullptr));
    EXPECT_TRUE(scene.ModifyDeviceSettings(nullptr, nullptr, nullptr));
    EXPECT_EQ(scene.OnCreateDevice(nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(scene.OnResetDevice(nullptr, nullptr, nullptr), S_OK);
    bool noFurtherProcessing = false;
    EXPECT_EQ(scene.OnMsgProc(nullptr, WM_KEYDOWN, 0, 0, &noFurtherProcessing, nullptr), LRESULT(WM_KEYDOWN));
    EXPECT_FALSE(noFurtherProcessing);
}

TEST_F(SceneManagerTest, NothingIsCurrentUntilTheFirstDispatch) {
    EXPECT_EQ(manager->GetCurrent(), nullptr);
    manager->Trans(L"title");
    EXPECT_EQ(manager->GetCurrent(), nullptr);
    EXPECT_TRUE(TakeCalls().empty()) << "Entry and Trans call no scene";

    IDirect3DDevice9* device = reinterpret_cast<IDirect3DDevice9*>(0x1000);
    D3DSURFACE_DESC backBuffer = {};
    int context = 0;
    manager->Dispatcher(device, &backBuffer, &context);
    EXPECT_EQ(manager->GetCurrent(), scenes[0]);
    EXPECT_EQ(TakeCalls(), (Calls{"Title.create", "Title.reset"}));
    EXPECT_EQ(scenes[0]->lastDevice, device);
    EXPECT_EQ(scenes[0]->lastBackBuffer, &backBuffer);
    EXPECT_EQ(scenes[0]->lastContext, &context);

    Dispatch();
    EXPECT_TRUE(TakeCalls().empty()) << "the pending name is cleared by the switch";
}

// Each pass dispatches after the Trans calls listed for it; the calls of the last pass and the scene
// left current are what a host sees.
TEST_F(SceneManagerTest, SwitchesByName) {
    const struct {
        const char* name;
        std::vector<std::vector<const wchar_t*>> passes;
        Calls lastCalls;
        int current; ///< index into scenes, -1 for none
    } cases[] = {
        {"the old scene is told first; names in any case",
         {{L"Title"}, {L"GAME"}},
         {"Title.lost", "Title.destroy", "Game.create", "Game.reset"},
         1},
        {"a trans to the current scene does nothing", {{L"Title"}, {L"Title"}, {}}, {}, 0},
        {"an unknown name leaves no scene and tells nobody", {{L"Title"}, {L"Missing"}}, {}, -1},
        {"a known name after it", {{L"Title"}, {L"Missing"}, {L"Result"}}, {"Result.create", "Result.reset"}, 2},
        {"only the last trans before a pass counts", {{L"Title", L"Result"}}, {"Result.create", "Result.reset"}, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        delete manager;
        scenes.clear();
        SetUpScenes();
        int context = 0;
        for (const auto& pass : c.passes) {
            TakeCalls();
            for (const wchar_t* name : pass)
                manager->Trans(name);
            manager->Dispatcher(nullptr, nullptr, &context);
        }
        EXPECT_EQ(TakeCalls(), c.lastCalls);
        EXPECT_EQ(manager->GetCurrent(), c.current < 0 ? nullptr : scenes[c.current]);
        if (c.current == 1) {
            EXPECT_EQ(scenes[0]->lastContext, &context) << "the old scene's lost call gets the context";
        }
    }
}

TEST_F(SceneManagerTest, ARepeatedNameResolvesToTheFirstScene) {
    RecordingScene* shadow = new RecordingScene("Shadow");
    manager->Entry(L"TITLE", shadow);
    manager->Trans(L"title");
    Dispatch();
    EXPECT_EQ(manager->GetCurrent(), scenes[0]);
}

TEST_F(SceneManagerTest, TransFromInsideAFrameTakesEffectAtTheNextPass) {
    class Jumper : public ZQScene {
    public:
        explicit Jumper(ZQSceneManager* manager) : m_manager(manager) {}
        void OnFrameMove(IDirect3DDevice9*, double, float, void*) override { m_manager->Trans(L"Game"); }
        ZQSceneManager* m_manager;
    };
    Jumper* jumper = new Jumper(manager);
    manager->Entry(L"Jumper", jumper);
    manager->Trans(L"Jumper");
    Dispatch();
    manager->GetCurrent()->OnFrameMove(nullptr, 0.0, 0.0f, nullptr);
    EXPECT_EQ(manager->GetCurrent(), jumper);
    Dispatch();
    EXPECT_EQ(manager->GetCurrent(), scenes[1]);
}

namespace {
ZQSceneManager* g_manager;
std::atomic<bool> g_otherThreadDone;
std::thread g_otherThread;
} // namespace

TEST_F(SceneManagerTest, OtherThreadsWaitWhileASwitchRuns) {
    g_manager = manager;
    g_otherThreadDone = false;
    scenes[1]->onCreate = [] {
        g_otherThread = std::thread([] {
            g_manager->Trans(L"Result");
            g_otherThreadDone = true;
        });
        Sleep(200);
        EXPECT_FALSE(g_otherThreadDone) << "Trans from another thread waits for the switch";
    };
    manager->Trans(L"Game");
    Dispatch();
    g_otherThread.join();
    EXPECT_TRUE(g_otherThreadDone);
    EXPECT_EQ(manager->GetCurrent(), scenes[1]);
    TakeCalls();
    Dispatch();
    EXPECT_EQ(manager->GetCurrent(), scenes[2]) << "the waiting Trans is not lost";
}

TEST_F(SceneManagerTest, DestructionTellsAndDeletesEverySceneInOrder) {
    manager->Trans(L"Game");
    Dispatch();
    TakeCalls();
    delete manager;
    manager = nullptr;
    EXPECT_EQ(TakeCalls(), (Calls{"Title.lost", "Title.destroy", "Title.deleted", "Game.lost", "Game.destroy",
                                  "Game.deleted", "Result.lost", "Result.destroy", "Result.deleted"}));
}

TEST_F(SceneManagerTest, ASceneRegisteredTwiceIsDeletedOnce) {
    manager->Entry(L"Alias", scenes[0]);
    delete manager;
    manager = nullptr;
    int deleted = 0;
    for (const std::string& call : TakeCalls())
        deleted += call == "Title.deleted";
    EXPECT_EQ(deleted, 1);
}
