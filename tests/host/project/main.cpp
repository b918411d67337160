// A host program that knows the library only through its installed header and import library.
#include <ZQVelisto.h>

#include <cstdio>
#include <string>

using namespace ZQ;

namespace {

std::string g_log;
int g_failures = 0;

void Expect(bool ok, const char* what) {
    if (!ok) {
        std::printf("FAILED: %s\n", what);
        ++g_failures;
    }
}

// A screen that writes each call the library makes on it into the log, under its name.
class LoggingScene : public ZQScene {
public:
    explicit LoggingScene(const char* name) : m_name(name) {}
    HRESULT OnCreateDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) override {
        Log("+ ");
        return S_OK;
    }
    void OnDestroyDevice(void*) override { Log("- "); }
    void OnFrameMove(IDirect3DDevice9*, double, float, void*) override { Log(".move "); }
    ~LoggingScene() override { Log("~ "); }

private:
    void Log(const char* what) { g_log += std::string(m_name) + what; }
    const char* m_name;
};

} // namespace

int main() {
    {
        ZQSceneManager scenes;
        scenes.Entry(L"Title", new LoggingScene("title"));
        LoggingScene* game = new LoggingScene("game");
        scenes.Entry(L"Game", game);
        scenes.Trans(L"title");
        scenes.Dispatcher(nullptr, nullptr, nullptr);
        if (ZQScene* current = scenes.GetCurrent())
            current->OnFrameMove(nullptr, 0.0, 0.0f, nullptr);
        scenes.Trans(L"GAME");
        scenes.Dispatcher(nullptr, nullptr, nullptr);
        Expect(scenes.GetCurrent() == game, "the game scene is current");
    }
    Expect(g_log == "title+ title.move title- game+ title- title~ game- game~ ", "callback order");

    ZQString caption(L"Score %d", 1200);
    Expect(caption == L"Score 1200", "formatted caption");
    Expect(std::string(static_cast<char*>(caption)) == "Score 1200", "narrow copy");

    ZQMapper names;
    ZQString key(L"Coin");
    int coin = 5;
    names.insert(key, &coin);
    Expect(names.find("COIN") == &coin && names.find(L"coin") == &coin, "case-insensitive map");

    Expect(ZQ_VERSION >= 100 && ZQ_VERSION_STRING[0] != '\0', "version macros");
    std::printf("ZQVelisto %s\n", ZQ_VERSION_STRING);
    std::printf("%s\n%s\n", g_log.c_str(), g_failures ? "host program FAILED" : "host program ok");
    return g_failures ? 1 : 0;
}
