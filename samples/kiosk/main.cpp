// The sample kiosk: four screens that take turns on a key, a click or a timer, drawing artwork from
// an atlas that the build packs from samples/kiosk/art with zqpack.
//
//   kiosk.exe [-windowed] [-quitafterframe:N] [-constantframetime:S] [-screenshots:DIR]
//
// With -screenshots:DIR it saves the back buffer as PNG every 15 frames and prints each path.
#include <ZQVelisto.h>

#include "AnimationScene.h"

#include <shellapi.h>

#include <cmath>
#include <cstdio>
#include <cwchar>

using namespace ZQ;

namespace {

const wchar_t* const kSceneNames[] = {L"Attract", L"Menu", L"Ticket", L"Show"};
const int kSceneCount = 4;
const float kSceneSeconds = 1.5f;
// One screenshot in the middle of each screen's turn (1.5 s at the 0.1 s frames of a headless run).
const int kScreenshotEvery = 15;
const int kScreenshotAt = 7;

class KioskApp;
KioskApp* g_app = nullptr;

// A screen: a background colour, a banner, and artwork from the atlas drawn with the sprite's forms.
// The menu screen is a dialog: buttons that change screens, a music check box and a banner radio group.
class KioskScene : public ZQScene, public _ZQResponseDialog_tag {
public:
    KioskScene(int index, D3DCOLOR background, D3DCOLOR banner) : m_index(index), m_background(background), m_banner(banner) {}
    ~KioskScene() override { OnDestroyDevice(nullptr); }

    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override {
        if (!device || m_sprite)
            return S_OK;
        m_sprite = new ZQSprite(device);
        m_sprite->Entry(L"kiosk.te");
        // The banner's title, in a font file that ships beside the program.
        m_font = new ZQFont(device);
        m_font->Entry(1, L"DejaVuSans.ttf", L"DejaVu Sans", 32, 0, 700, 1, FALSE, DEFAULT_CHARSET, 0,
                      ANTIALIASED_QUALITY, 0);
        if (m_index == 1)
            CreateMenu();
        return S_OK;
    }
    HRESULT OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC* backBuffer, void*) override {
        if (backBuffer)
            m_backBuffer = *backBuffer;
        if (m_font)
            m_font->OnResetDevice(nullptr, backBuffer, nullptr);
        return S_OK;
    }
    void OnLostDevice(void*) override {
        if (m_font)
            m_font->OnLostDevice(nullptr);
    }
    void OnDestroyDevice(void*) override {
        delete m_menu;
        m_menu = nullptr;
        delete m_font;
        m_font = nullptr;
        delete m_sprite;
        m_sprite = nullptr;
    }
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        m_time = static_cast<float>(time);
        if (m_sprite)
            m_sprite->OnFrameMove(device, time, elapsed, context);
        if (m_menu)
            m_menu->OnFrameMove(device, time, elapsed, context);
    }
    void OnFrameRender(IDirect3DDevice9* device, double, float, void*) override;
    void OnKeyboard(UINT key, bool down, bool, void*) override;
    void OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context) override;
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                      void* context) override;
    void __stdcall OnEvent(unsigned int id, int x, int y) override;

private:
    void CreateMenu();
    void DrawAttract();
    void DrawMenu();
    void DrawTicket();

    int m_index;
    D3DCOLOR m_background, m_banner;
    D3DSURFACE_DESC m_backBuffer = {};
    ZQSprite* m_sprite = nullptr;
    ZQDialog* m_menu = nullptr;
    ZQFont* m_font = nullptr;
    float m_time = 0.0f;
};

class KioskApp : public ZQVelisto {
public:
    KioskApp() : ZQVelisto(L"ZQVelisto sample kiosk", 640, 480) {}

    void Next() {
        m_current = (m_current + 1) % kSceneCount;
        Trans(kSceneNames[m_current]);
    }

    // The click of buttons and screen changes, and the music under everything (made by the build).
    void StartSound() {
        m_sound = new ZQSound(GethWnd(), DSSCL_PRIORITY);
        m_sound->Entry(L"Click", L"click.wav");
        m_sound->Entry(L"Music", L"music.mp3");
        m_sound->Play(L"Music", false, 0, DSBPLAY_LOOPING);
    }
    ZQSound* Sound() { return m_sound; }
    void Music(bool on) {
        if (!m_sound)
            return;
        if (on)
            m_sound->Play(L"Music", false, 0, DSBPLAY_LOOPING);
        else
            m_sound->Stop(L"Music");
    }
    void Click() {
        if (m_sound)
            m_sound->Play(L"Click", true, 0, 0);
    }
    ~KioskApp() override { delete m_sound; }

    static void CALLBACK OnTimer(UINT, void* context) { static_cast<KioskApp*>(context)->Next(); }

    // Called by the scenes once they have drawn, before the frame is presented.
    void MaybeScreenshot(IDirect3DDevice9* device) {
        if (m_screenshots[0] && GetCurrentFrameNumber() % kScreenshotEvery == kScreenshotAt)
            SaveScreenshot(device);
    }

    void SaveScreenshot(IDirect3DDevice9* device) {
        IDirect3DSurface9* backBuffer = nullptr;
        IDirect3DSurface9* copy = nullptr;
        D3DSURFACE_DESC desc;
        if (SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer)) &&
            SUCCEEDED(backBuffer->GetDesc(&desc)) &&
            SUCCEEDED(device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format, D3DPOOL_SYSTEMMEM,
                                                          &copy, nullptr)) &&
            SUCCEEDED(device->GetRenderTargetData(backBuffer, copy))) {
            wchar_t path[MAX_PATH];
            _snwprintf(path, MAX_PATH, L"%ls\\kiosk-%03d.png", m_screenshots, ++m_shotCount);
            path[MAX_PATH - 1] = 0;
            if (SUCCEEDED(D3DXSaveSurfaceToFileW(path, D3DXIFF_PNG, copy, nullptr, nullptr)))
                std::printf("screenshot: %ls\n", path);
        }
        if (copy)
            copy->Release();
        if (backBuffer)
            backBuffer->Release();
    }

    void ReadOptions() {
        int count = 0;
        wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
        for (int i = 1; arguments && i < count; ++i)
            if (_wcsnicmp(arguments[i], L"-screenshots:", 13) == 0)
                std::wcsncpy(m_screenshots, arguments[i] + 13, MAX_PATH - 1);
        LocalFree(arguments);
        if (m_screenshots[0])
            CreateDirectoryW(m_screenshots, nullptr);
    }

    wchar_t m_screenshots[MAX_PATH] = {};

private:
    int m_current = 0;
    int m_shotCount = 0;
    ZQSound* m_sound = nullptr;
};

void KioskScene::OnFrameRender(IDirect3DDevice9* device, double, float, void*) {
    if (!device || FAILED(device->BeginScene()))
        return;
    device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, m_background, 1.0f, 0);
    const D3DRECT banner = {0, 24, static_cast<LONG>(m_backBuffer.Width), 72};
    device->Clear(1, &banner, D3DCLEAR_TARGET, m_banner, 1.0f, 0);
    if (m_font) {
        static const wchar_t* const kTitles[] = {L"Welcome", L"Choose", L"Your ticket"};
        RECT title = {banner.x1, banner.y1, banner.x2, banner.y2};
        m_font->DrawTextW(1, nullptr, kTitles[m_index < 2 ? m_index : 2], -1, &title,
                          DT_CENTER | DT_VCENTER | DT_SINGLELINE, D3DCOLOR_XRGB(20, 20, 60));
    }
    if (m_sprite) {
        switch (m_index) {
        case 0: DrawAttract(); break;
        case 1: DrawMenu(); break;
        default: DrawTicket(); break;
        }
    }
    device->EndScene();
    g_app->MaybeScreenshot(device);
}

// Coins turning and fading in a row, a star pulsing in the middle.
void KioskScene::DrawAttract() {
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
    for (int i = 0; i < 5; ++i) {
        D3DXVECTOR3 at(96.0f + 112.0f * static_cast<float>(i), 180.0f, 0.0f);
        D3DXCOLOR fade(1.0f, 1.0f, 1.0f, 0.35f + 0.13f * static_cast<float>(i));
        m_sprite->Render(L"coin", at, m_time * (1.0f + 0.3f * static_cast<float>(i)), fade, 0);
    }
    D3DXVECTOR3 middle(320.0f, 330.0f, 0.0f);
    const float pulse = 0.5f + 0.5f * std::sin(m_time * 4.0f);
    ZQRect star(320.0f - 24.0f - 24.0f * pulse, 330.0f - 24.0f - 24.0f * pulse, 320.0f + 24.0f + 24.0f * pulse,
                330.0f + 24.0f + 24.0f * pulse);
    m_sprite->Render(L"star", star, white, 0);
    m_sprite->Render(L"arrow", middle, white, 0);
}

enum MenuId : unsigned int { kNextButton = 1, kAttractButton, kMusicBox, kGoldBanner, kWhiteBanner };

// Two buttons (pixel-exact, with click and hover sounds), a check box for the music, and a radio group
// choosing the banner's colour.
void KioskScene::CreateMenu() {
    m_menu = new ZQDialog(m_sprite, g_app->Sound(), this);
    D3DXVECTOR3 next(320.0f, 170.0f, 0.0f), attract(320.0f, 260.0f, 0.0f), music(200.0f, 360.0f, 0.0f);
    D3DXVECTOR3 gold(360.0f, 360.0f, 0.0f), white(440.0f, 360.0f, 0.0f);
    m_menu->AddButton(kNextButton, L"button", L"ticket", L"star", L"button", next, true);
    m_menu->AddButton(kAttractButton, L"button", L"ticket", L"star", L"button", attract, true);
    m_menu->GetButton(kNextButton)->SetSound(L"Click", L"Click");
    m_menu->GetButton(kAttractButton)->SetSound(L"Click", L"Click");
    m_menu->AddCheckBox(kMusicBox, L"coin", L"star", L"coin", L"coin", music, false);
    m_menu->GetCheckBox(kMusicBox)->SetChecked(true);
    m_menu->AddRadioButton(kGoldBanner, 1, L"arrow", L"star", L"arrow", L"arrow", gold, true, false);
    m_menu->AddRadioButton(kWhiteBanner, 1, L"arrow", L"star", L"arrow", L"arrow", white, false, false);
}

void KioskScene::OnEvent(unsigned int id, int, int) {
    switch (id) {
    case kNextButton: g_app->Next(); break;
    case kAttractButton: g_app->Trans(kSceneNames[0]); break;
    case kMusicBox: g_app->Music(m_menu->GetCheckBox(kMusicBox)->GetChecked()); break;
    case kGoldBanner: m_banner = D3DCOLOR_XRGB(240, 200, 40); break;
    case kWhiteBanner: m_banner = D3DCOLOR_XRGB(250, 250, 250); break;
    default: break;
    }
}

void KioskScene::DrawMenu() {
    if (m_menu)
        m_menu->OnFrameRender(nullptr, m_time, 0.0f, nullptr);
    if (m_font) {
        RECT next = {240, 146, 400, 194}, attract = {240, 236, 400, 284};
        const DWORD centred = DT_CENTER | DT_VCENTER | DT_SINGLELINE;
        m_font->DrawTextW(0, nullptr, L"Next screen", -1, &next, centred, D3DCOLOR_XRGB(255, 255, 255));
        m_font->DrawTextW(0, nullptr, L"Attract loop", -1, &attract, centred, D3DCOLOR_XRGB(255, 255, 255));
    }
}

// A ticket printed by a wipe, and a turned copy of it below.
void KioskScene::DrawTicket() {
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
    D3DXVECTOR3 printing(320.0f, 180.0f, 0.0f), turned(320.0f, 330.0f, 0.0f);
    const float printed = std::fmod(m_time, 2.0f) / 2.0f;
    m_sprite->RenderLerp(L"ticket", printing, white, printed, 1);
    m_sprite->Render(L"ticket", turned, 0.2f, white, 3);
    D3DXVECTOR3 coin(470.0f, 330.0f, 0.0f);
    m_sprite->Render(L"coin", coin, white, 0);
}

void KioskScene::OnKeyboard(UINT key, bool down, bool, void*) {
    if (down && (key == VK_RETURN || key == VK_SPACE)) {
        g_app->Click();
        g_app->Next();
    }
}

void KioskScene::OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x,
                         int y, void* context) {
    if (m_menu) {
        m_menu->OnMouse(buttonDown, left, right, middle, side1, side2, wheel, x, y, context);
    } else if (buttonDown && left) {
        g_app->Click();
        g_app->Next();
    }
}

// The frame reports a left release with the left flag clear (the key state after it); the dialog takes
// a release as down false with left true.
LRESULT KioskScene::OnMsgProc(HWND, UINT msg, WPARAM, LPARAM lParam, bool*, void* context) {
    if (m_menu && msg == WM_LBUTTONUP)
        m_menu->OnMouse(false, true, false, false, false, false, 0, static_cast<short>(LOWORD(lParam)),
                        static_cast<short>(HIWORD(lParam)), context);
    return msg;
}

} // namespace

int main() {
    KioskApp app;
    g_app = &app;
    app.ReadOptions();
    if (FAILED(app.Init(true, true, true, true)))
        return app.GetExitCode();
    if (FAILED(app.CreateWindow(L"ZQVelisto sample kiosk", nullptr, nullptr, nullptr, CW_USEDEFAULT, CW_USEDEFAULT))) {
        std::printf("the kiosk could not open its window (is it running already?)\n");
        return 1;
    }
    if (FAILED(app.CreateDevice(0, true, 640, 480, nullptr, nullptr, nullptr)))
        return app.GetExitCode();

    app.Entry(kSceneNames[0], new KioskScene(0, D3DCOLOR_XRGB(16, 32, 96), D3DCOLOR_XRGB(240, 200, 40)));
    app.Entry(kSceneNames[1], new KioskScene(1, D3DCOLOR_XRGB(16, 80, 40), D3DCOLOR_XRGB(250, 250, 250)));
    app.Entry(kSceneNames[2], new KioskScene(2, D3DCOLOR_XRGB(110, 60, 10), D3DCOLOR_XRGB(20, 20, 20)));
    app.Entry(kSceneNames[3], new AnimationScene([](IDirect3DDevice9* device) { g_app->MaybeScreenshot(device); },
                                                 [] { g_app->Next(); }));
    app.Trans(kSceneNames[0]);
    app.StartSound();
    app.AddTimer(KioskApp::OnTimer, kSceneSeconds, nullptr, &app);
    app.MainLoop(nullptr);
    std::printf("the kiosk ran %d frames\n", app.GetCurrentFrameNumber());
    return app.GetExitCode();
}
