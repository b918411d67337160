// The library as a program of the other ABI sees it: classes derived, copied and deleted across the DLL
// boundary, inline header code, the C runtime's formatting, and the library calling back into the
// program's overrides from its own threads and its frame. Runs with the kiosk's artwork beside it and
// the serial line's COM7 and COM8; prints "N passed, N failed".
#include <ZQVelisto.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>

// The program's own new and delete count their calls, as a Debug runtime's heap would see them.
long g_hostNews = 0;
long g_hostDeletes = 0;

void* operator new(size_t bytes) {
    ++g_hostNews;
    return std::malloc(bytes ? bytes : 1);
}
void operator delete(void* memory) noexcept {
    g_hostDeletes += memory != nullptr;
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    operator delete(memory);
}

using namespace ZQ;

namespace {

int g_passed = 0;
int g_failed = 0;

void Check(bool ok, const char* what, int line, const char* shown = "") {
    (ok ? g_passed : g_failed)++;
    if (!ok)
        std::printf("FAILED line %d: %s %s\n", line, what, shown);
}
#define CHECK(condition) Check((condition), #condition, __LINE__)
#define CHECK_SHOWING(condition, shown) Check((condition), #condition, __LINE__, (shown))

// ---- Strings: the library formats with the universal C runtime, whose wide %s differs from MinGW's.

void StringsAndFormatting() {
    ZQString mixed(L"%s|%ls|%hs|%d|%5.2f", L"wide", L"ls", "narrow", 7, 3.14159);
    ZQString narrow("%s=%u", "credits", 12u);
    CHECK(mixed == L"wide|ls|narrow|7| 3.14" && narrow == L"credits=12");
    CHECK(std::strcmp(static_cast<char*>(narrow), "credits=12") == 0);
    CHECK(narrow.size() == 10 && !narrow.empty() && narrow[0] == L'c');

    ZQString copy(mixed);
    copy += L"!";
    ZQString assigned;
    assigned = copy;
    CHECK(mixed == L"wide|ls|narrow|7| 3.14" && assigned == L"wide|ls|narrow|7| 3.14!");
    CHECK(ZQString(L"Coin").upper() == L"COIN");
}

// ---- Value classes, templates and inline members compiled into the program.

void ValuesAndTemplates() {
    ZQRect rect(10, 20, 110, 70);
    ZQRect moved = rect + D3DXVECTOR2(5.0f, 5.0f);
    CHECK(rect.width() == 100.0f && rect.HalfHeight() == 25.0f && moved.left == 15.0f && rect.left == 10.0f);
    CHECK(rect.isOverlap(50, 40) && !rect.isOverlap(5, 40));

    ZQArray<int> numbers;
    for (int i = 0; i < 5; ++i)
        numbers.Add(i * i);
    ZQArray<int> numbersCopy(numbers);
    CHECK(numbersCopy.GetSize() == 5 && numbersCopy.IndexOf(9) == 3 && numbersCopy.Contains(16));

    ZQMapper names;
    ZQString coinName(L"Coin");
    int coin = 5;
    names.insert(coinName, &coin);
    int walked = 0;
    for (ZQMapper::iterator it = names.begin(); it != names.end(); ++it)
        ++walked;
    CHECK(names.find("COIN") == &coin && names.find(L"coin") == &coin && walked == 1);

    ZQVector list;
    list.push_back(&coin);
    ZQVector listCopy(list);
    CHECK(listCopy.size() == 1 && listCopy[0] == &coin && *listCopy.begin() == &coin);

    _3D::ZQ3DSpline path;
    for (int i = 0; i < 5; ++i)
        path.push_back(_3D::_ZQ3DTcbSpline_tag(D3DXVECTOR3(static_cast<float>(i), 0.0f, 0.0f), static_cast<float>(i)));
    _3D::ZQ3DSpline pathCopy(path);
    path.clear();
    const float middle = pathCopy.GetPosition(2.0f).x;
    CHECK(pathCopy.isReady() && path.GetKeyCount() == 0 && middle > 1.99f && middle < 2.01f);

    ZQKalman filter(10.0, 4.0);
    ZQKalman filterCopy(filter);
    filterCopy.Normal(20.0, 4.0);
    CHECK(filter.GetEstimate() == 10.0 && filterCopy.GetEstimate() > 10.0 && filterCopy.GetEstimate() < 20.0);

    ZQTimer timer;
    timer.Start();
    const bool running = !timer.IsStopped();
    timer.Stop();
    CHECK(running && timer.IsStopped());
}

// ---- Files beside the program (the kiosk's), read by the library for the program.

void FilesBesideTheProgram() {
    ZQWaveFile wave;
    wchar_t click[] = L"click.wav";
    CHECK(SUCCEEDED(wave.Open(click, nullptr, 1)) && wave.GetFormat() && wave.GetFormat()->nSamplesPerSec == 22050 &&
          wave.GetSize() > 0);
    wave.Close();

    ZQSpline paths(L"kiosk.spl", 0x5A51, 1);
    _3D::ZQ3DSpline* swoop = paths.GetSpline(L"swoop");
    CHECK(swoop && swoop->GetKeyCount() >= 4 && paths.GetTime(L"swoop") > 0.0f);

    ZQSQUEUE queue;
    unsigned char bytes[4] = {1, 2, 3, 4};
    unsigned char out[2180] = {};
    CHECK(queue.push(bytes, 4) == 4 && queue.pop(out) == 4 && out[3] == 4 && queue.empty());
}

// ---- Scenes the library calls and deletes, and objects the program makes and deletes: all on the library's
// heap, whatever the program's own new and delete.

char g_sceneLog[256];

// A screen that records each call the library makes on it: its letter, then + (device made), - (device
// gone) or ~ (deleted).
class LoggingScene : public ZQScene {
public:
    explicit LoggingScene(char letter) : m_letter(letter) {}
    HRESULT OnCreateDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) override { return Record('+'); }
    void OnDestroyDevice(void*) override { Record('-'); }
    ~LoggingScene() override { Record('~'); }

private:
    HRESULT Record(char event) {
        const char entry[4] = {m_letter, event, ' ', '\0'};
        strcat_s(g_sceneLog, sizeof g_sceneLog, entry);
        return S_OK;
    }
    char m_letter;
};

void ScenesAndObjectsOnTheLibrarysHeap() {
    const long news = g_hostNews, deletes = g_hostDeletes;
    g_sceneLog[0] = '\0';
    {
        ZQSceneManager scenes;
        scenes.Entry(L"Title", new LoggingScene('T'));
        LoggingScene* game = new LoggingScene('G');
        scenes.Entry(L"Game", game);
        scenes.Trans(L"title");
        scenes.Dispatcher(nullptr, nullptr, nullptr);
        scenes.Trans(L"GAME");
        scenes.Dispatcher(nullptr, nullptr, nullptr);
        CHECK(scenes.GetCurrent() == game);
        LoggingScene copy(*game); // the base's inline copy; the copy logs its own end
        copy = *game;
        delete new ZQKalman;
        delete[] new ZQWaveFile[2];
        delete new _3D::ZQ3DSpline;
        delete new _3D::ZQ3DObject(nullptr);
    }
    CHECK_SHOWING(std::strcmp(g_sceneLog, "T+ T- G+ G~ T- T~ G- G~ ") == 0, g_sceneLog);
    char counts[64];
    std::snprintf(counts, sizeof counts, "(new ran %ld times, delete %ld)", g_hostNews - news, g_hostDeletes - deletes);
    CHECK_SHOWING(g_hostNews == news && g_hostDeletes == deletes, counts);
}

// ---- Library threads running the program's overrides: a worker, and the serial port's responder.

class Worker : public ZQThread {
public:
    void Run() { SetStart(&m_input); }
    bool Done() { return GetFinish(); }
    void OnThread(void* param) override {
        m_result = *static_cast<int*>(param) * 2;
        m_threadId = GetCurrentThreadId();
        SetFinish(true);
    }
    int m_input = 21;
    int m_result = 0;
    DWORD m_threadId = 0;
};

class PortResponder : public _ZQResponseClass_tag {
public:
    void OnClassInit(void*) override { InterlockedIncrement(&m_inits); }
    void OnClassRecv(void*) override { InterlockedIncrement(&m_receives); }
    volatile LONG m_inits = 0;
    volatile LONG m_receives = 0;
};

void LibraryThreads() {
    Worker worker;
    worker.Run();
    for (int i = 0; i < 500 && !worker.Done(); ++i)
        Sleep(10);
    CHECK(worker.Done() && worker.m_result == 42 && worker.m_threadId && worker.m_threadId != GetCurrentThreadId());

    PortResponder machineEvents, acceptorEvents;
    ZQRS232 machine(&machineEvents);
    ZQRS232 acceptor;
    acceptor.SetResponse(&acceptorEvents);
    CHECK(machine.Open(L"COM7", 9600, 8, ONESTOPBIT, NOPARITY) &&
          acceptor.Open(L"COM8", 9600, 8, ONESTOPBIT, NOPARITY));
    CHECK(machineEvents.m_inits == 1 && acceptorEvents.m_inits == 1 && acceptor.GetResponse() == &acceptorEvents);
    unsigned char coin[3] = {0x02, 0x64, 0x03};
    CHECK(acceptor.send(coin, 3) == 3);
    unsigned char received[2180] = {};
    int length = 0;
    for (int i = 0; i < 500 && (length = machine.recv(received)) == 0; ++i)
        Sleep(10);
    CHECK(length == 3 && std::memcmp(received, coin, 3) == 0 && machineEvents.m_receives >= 1);
    machine.Close();
    acceptor.Close();
}

// ---- The application: frames, a sprite and a dialog whose button reports to the program, an animation,
// a 3D prize and a render target; the checks run in the library's calls.

const unsigned int kButtonId = 7;

template <typename... Objects> void Delete(Objects*&... objects) {
    ((delete objects, objects = nullptr), ...);
}

class Screen : public ZQScene, public _ZQResponseDialog_tag {
public:
    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override {
        m_sprite = new ZQSprite(device);
        m_sprite->Entry(L"kiosk.te");
        m_dialog = new ZQDialog(m_sprite, nullptr, this);
        D3DXVECTOR3 position(100.0f, 100.0f, 0.0f);
        m_dialog->AddButton(kButtonId, L"button", L"button_down", L"button_over", L"button", position, false);
        D3DXVECTOR3 barPosition(10.0f, 10.0f, 0.0f);
        m_dialog->AddTimeBar(1, L"bar", barPosition, 4.0f, 0);
        D3DXVECTOR3 numberPosition(300.0f, 10.0f, 0.0f);
        m_dialog->AddNumber(2, L"digit", numberPosition, 2.0f, DT_RIGHT);
        m_animate = new ZQAnimate(m_sprite);
        m_animate->Entry(L"kiosk.am");
        m_player = new ZQRenderSingle(m_animate);
        CHECK(m_player->Entry(L"coin_spin", D3DXVECTOR3(40.0f, 150.0f, 0.0f), true, -1, true));
        m_playerCopy = new ZQRenderSingle(*m_player);
        m_models = new _3D::ZQ3DObject(device);
        m_camera = new _3D::ZQ3DCamera(device);
        m_prize = new _3D::ZQ3DRenderSingle(m_models);
        CHECK(m_models->Entry(L"prize", L"prize.x") && m_prize->Entry(L"PRIZE", D3DXVECTOR3(0, 0, 8)) &&
              m_prize->Play(L"Open", 1, 0.1f) && !m_prize->Play(L"Dance", 1, 0.0f));
        m_target = new ZQRenderTarget(device, 64, 64);
        m_sprite->EntryShared(L"snapshot", m_target->GetChunk());
        return S_OK;
    }
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) override {
        return m_target ? m_target->OnResetDevice(device, backBuffer, context) : S_OK;
    }
    void OnLostDevice(void* context) override {
        if (m_target)
            m_target->OnLostDevice(context);
    }
    void OnDestroyDevice(void*) override {
        Delete(m_target, m_prize, m_camera, m_models, m_playerCopy, m_player, m_animate, m_dialog, m_sprite);
    }
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        if (!m_dialog)
            return;
        if (++m_frames == 3) {
            m_dialog->OnMouse(true, true, false, false, false, false, 0, 120, 110, context);
            m_dialog->OnMouse(false, true, false, false, false, false, 0, 121, 111, context);
            CHECK(m_events == 1 && m_eventId == kButtonId && m_eventX == 121 && m_eventY == 111);
            // A copy made by the program reports to the same response, from its own position.
            ZQDialogButton copy(*m_dialog->GetButton(kButtonId));
            copy.OnMouse(false, true, false, false, false, false, 0, 130, 112, context);
            CHECK(m_events == 2 && m_eventX == 130 && copy.GetId() == kButtonId);
            m_dialog->GetNumber(2)->Plus(5000000000ULL);
            CHECK(m_dialog->GetNumber(2)->GetNumber() == 5000000000ULL && m_dialog->GetTimeBar(1)->GetfTime() == 4.0f);
            CHECK(m_playerCopy->GetName() == L"coin_spin" && !m_playerCopy->empty());
            // Half a second on, a copy's lid has turned up about its hinge.
            D3DXMATRIX lid;
            _3D::ZQ3DRenderSingle prizeCopy(*m_prize);
            prizeCopy.OnFrameRender(nullptr, time, 0.5f, nullptr);
            CHECK(prizeCopy.GetFrameMatrix(L"Lid", &lid) && !prizeCopy.empty() && lid._22 < 0.99f);
        }
        m_dialog->OnFrameMove(device, time, elapsed, context);
    }
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(0, 0, 64), 1.0f, 0);
        if (!m_dialog || FAILED(device->BeginScene()))
            return;
        m_dialog->OnFrameRender(device, time, elapsed, context);
        m_player->OnFrameRender(device, time, elapsed, context);
        m_playerCopy->OnFrameRender(device, time, elapsed, context);
        m_camera->BeginScene(elapsed);
        m_prize->OnFrameRender(device, time, elapsed, context);
        m_camera->EndScene();
        // A render target drawn into, then drawn by name in the left half of a viewport.
        const bool began = m_target->Begin();
        device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(255, 0, 0), 1.0f, 0);
        m_target->End();
        ZQViewport half(0, 0, 160, 240);
        D3DXVECTOR3 corner(0.0f, 0.0f, 0.0f);
        D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
        CHECK(began && half.Begin(device) && m_sprite->ReadViewport() &&
              m_sprite->Render(L"snapshot", corner, white, 0) == m_target->GetChunk());
        half.End();
        m_sprite->ReadViewport();
        device->EndScene();
    }
    void __stdcall OnEvent(unsigned int id, int x, int y) override {
        ++m_events;
        m_eventId = id;
        m_eventX = x;
        m_eventY = y;
    }

    ZQSprite* m_sprite = nullptr;
    ZQDialog* m_dialog = nullptr;
    ZQAnimate* m_animate = nullptr;
    ZQRenderSingle *m_player = nullptr, *m_playerCopy = nullptr;
    _3D::ZQ3DObject* m_models = nullptr;
    _3D::ZQ3DCamera* m_camera = nullptr;
    _3D::ZQ3DRenderSingle* m_prize = nullptr;
    ZQRenderTarget* m_target = nullptr;
    int m_frames = 0, m_events = 0, m_eventX = 0, m_eventY = 0;
    unsigned int m_eventId = 0;
};

class App : public ZQVelisto {
public:
    App() : ZQVelisto(L"ABI test", 320, 240) {}
    void Create() override { ++m_creates; }
    int m_creates = 0;
};

void ApplicationAndDialog() {
    App app;
    static_cast<ZQVelisto&>(app).Create();
    CHECK(app.m_creates == 1);
    // Settings with their match options, as a Visual Studio host fills them: the most samples up to 8.
    _ZQDeviceSettings_tag wanted = {};
    wanted.pp.Windowed = TRUE;
    wanted.pp.BackBufferWidth = 320;
    wanted.pp.BackBufferHeight = 240;
    wanted.pp.MultiSampleType = D3DMULTISAMPLE_8_SAMPLES;
    _ZQMatchOptions_tag options;
    options.MultiSample = ZQ_MATCH_CLOSEST;
    const bool ready = SUCCEEDED(app.Init(false, false, true, true)) &&
                       SUCCEEDED(app.CreateWindow(L"ABI test", GetModuleHandleW(nullptr), nullptr, nullptr, 0, 0)) &&
                       SUCCEEDED(app.CreateDeviceFromSettings(&wanted, &options));
    CHECK(ready && app.GetDeviceSettings().pp.MultiSampleType == D3DMULTISAMPLE_4_SAMPLES);
    if (!ready)
        return;
    Screen* screen = new Screen;
    app.Entry(L"Screen", screen);
    app.Trans(L"Screen");
    app.SetOverrideQuitAfterFrame(10);
    app.MainLoop(nullptr);
    CHECK(app.GetExitCode() == 0 && screen->m_frames >= 5);
    CHECK(screen->m_events == 2);
    CHECK(app.GetDevice() == nullptr || app.GetDevice() == app.GetD3DDevice());
}

// ---- The start-up's edge paths, in a DLL of its own: an attach that fails undoes itself once (DllMain's
// detach, the global's destructor) and the loader's detach after it does nothing; a normal load and
// unload runs each step once.

void StartupEdgePaths() {
    wchar_t log[MAX_PATH];
    GetTempPathW(MAX_PATH, log);
    wcscat_s(log, MAX_PATH, L"zq-startup-probe.log");
    DeleteFileW(log);
    SetEnvironmentVariableW(L"ZQ_STARTUP_LOG", log);
    const wchar_t* const failures[] = {L"1", nullptr};
    for (const wchar_t* fail : failures) {
        SetEnvironmentVariableW(L"ZQ_STARTUP_FAIL", fail);
        HMODULE probe = LoadLibraryW(L"startup_probe.dll");
        CHECK((probe == nullptr) == (fail != nullptr));
        if (probe)
            FreeLibrary(probe);
        char steps[256] = {};
        if (FILE* file = _wfopen(log, L"rb")) {
            std::fread(steps, 1, sizeof steps - 1, file);
            std::fclose(file);
        }
        DeleteFileW(log);
        CHECK_SHOWING(std::strcmp(steps, "construct attach detach destruct ") == 0, steps);
    }
}

} // namespace

int main() {
    // Unbuffered, so that a crash still shows which group it happened in.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    // The start-up's paths first, while no other thread of the program runs: the attaches and detaches seen
    // are the probe's own.
    const struct {
        const char* name;
        void (*run)();
    } groups[] = {{"start-up edge paths", StartupEdgePaths},
                  {"strings and formatting", StringsAndFormatting},
                  {"values and templates", ValuesAndTemplates},
                  {"files beside the program", FilesBesideTheProgram},
                  {"scenes and objects on the library's heap", ScenesAndObjectsOnTheLibrarysHeap},
                  {"library threads", LibraryThreads},
                  {"application and dialog", ApplicationAndDialog}};
    for (const auto& group : groups) {
        std::printf("%s\n", group.name);
        group.run();
    }
    std::printf("%d passed, %d failed\n", g_passed, g_failed);
    return g_failed == 0 ? 0 : 1;
}
