#include <ZQVelisto.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <functional>
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
    std::function<void()> onCreate;

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

// Each pass dispatches after the Trans calls listed for it; the calls of the last pass and the scene
// left current are what a host sees.
TEST_F(SceneManagerTest, SwitchesByName) {
    const struct {
        const char* name;
        std::vector<std::vector<const wchar_t*>> passes;
        Calls lastCalls;
        int current; ///< index into scenes, -1 for none
    } cases[] = {
        {"nothing is current before the first pass", {}, {}, -1},
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
        IDirect3DDevice9* device = reinterpret_cast<IDirect3DDevice9*>(0x1000);
        D3DSURFACE_DESC backBuffer = {};
        int context = 0;
        for (const auto& pass : c.passes) {
            TakeCalls();
            for (const wchar_t* name : pass)
                manager->Trans(name);
            manager->Dispatcher(device, &backBuffer, &context);
        }
        EXPECT_EQ(TakeCalls(), c.lastCalls);
        EXPECT_EQ(manager->GetCurrent(), c.current < 0 ? nullptr : scenes[c.current]);
        if (c.current >= 0) {
            EXPECT_EQ(scenes[c.current]->lastDevice, device);
            EXPECT_EQ(scenes[c.current]->lastBackBuffer, &backBuffer);
        }
        if (c.current == 1) {
            EXPECT_EQ(scenes[0]->lastContext, &context) << "the old scene's lost call gets the context";
        }
    }
}

TEST_F(SceneManagerTest, OtherThreadsWaitWhileASwitchRuns) {
    std::atomic<bool> otherThreadDone(false);
    std::thread otherThread;
    scenes[1]->onCreate = [&] {
        otherThread = std::thread([&] {
            manager->Trans(L"Result");
            otherThreadDone = true;
        });
        Sleep(200);
        EXPECT_FALSE(otherThreadDone) << "Trans from another thread waits for the switch";
    };
    manager->Trans(L"Game");
    Dispatch();
    otherThread.join();
    EXPECT_TRUE(otherThreadDone);
    EXPECT_EQ(manager->GetCurrent(), scenes[1]);
    Dispatch();
    EXPECT_EQ(manager->GetCurrent(), scenes[2]) << "the waiting Trans is not lost";
}

// One scene registered under two names is told and deleted once.
TEST_F(SceneManagerTest, DestructionTellsAndDeletesEverySceneOnceInOrder) {
    manager->Entry(L"Alias", scenes[0]);
    manager->Trans(L"Game");
    Dispatch();
    TakeCalls();
    delete manager;
    manager = nullptr;
    EXPECT_EQ(TakeCalls(), (Calls{"Title.lost", "Title.destroy", "Title.deleted", "Game.lost", "Game.destroy",
                                  "Game.deleted", "Result.lost", "Result.destroy", "Result.deleted"}));
}
