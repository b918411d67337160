// The kiosk application: shared resources, sounds, coins, the event log, the demo's script and its
// screenshots; and the frame of every screen (KioskScreen).
#include "Kiosk.h"
#include "ProcessCounters.h"
#include "Screens.h"

#include <imm.h>
#include <shellapi.h>

#include <cstdarg>
#include <cstdio>
#include <cwchar>

using namespace ZQ;

namespace {

const wchar_t* const kScreenNames[kScreenCount] = {L"Attract", L"Menu", L"Name", L"Play"};
const wchar_t* const kShotNames[kScreenCount] = {L"attract", L"menu", L"name", L"play"};
// The frame of each screen's turn in the demo on which its screenshot is taken.
const int kShotFrame[kScreenCount] = {15, 15, 14, 28};
const D3DXCOLOR kCoinColour(1.0f, 0.85f, 0.3f, 1.0f);
const D3DXCOLOR kScreenColour(0.7f, 0.8f, 1.0f, 1.0f);
const float kCrossfadeSeconds = 0.5f;

void PostMouse(HWND hWnd, UINT msg, WPARAM keys, int x, int y) {
    PostMessageW(hWnd, msg, keys, MAKELPARAM(x, y));
}

} // namespace

KioskApp::KioskApp() : ZQVelisto(L"ZQVelisto sample kiosk", 640, 480) {
    SetDeviceCreatedFunc(OnDeviceCreated);
    SetDeviceCreatedFuncUserContext(this);
    SetDeviceResetFunc(OnDeviceReset);
    SetDeviceResetFuncUserContext(this);
    SetDeviceLostFunc(OnDeviceLost);
    SetDeviceLostFuncUserContext(this);
    SetDeviceDestroyedFunc(OnDeviceDestroyed);
    SetDeviceDestroyedFuncUserContext(this);
    SetFrameMoveFunc(OnFrameMove);
    SetFrameMoveFuncUserContext(this);
    SetMouseFunc(OnMouse);
    SetMouseFuncUserContext(this);
    SetWindowMsgFunc(OnWindowMessage);
    SetWindowMsgFuncUserContext(this);
}

KioskApp::~KioskApp() {
    ReleaseShared();
    delete m_paths;
    delete m_sound;
}

void KioskApp::ReadOptions() {
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; arguments && i < count; ++i) {
        if (_wcsnicmp(arguments[i], L"-screenshots:", 13) == 0) {
            std::wcsncpy(m_screenshots, arguments[i] + 13, MAX_PATH - 1);
            m_demo = true;
        } else if (_wcsicmp(arguments[i], L"-demo") == 0) {
            m_demo = true;
        } else if (_wcsnicmp(arguments[i], L"-soak:", 6) == 0) {
            m_soakEvery = _wtoi(arguments[i] + 6);
            m_demo = m_demo || m_soakEvery > 0;
        } else if (_wcsnicmp(arguments[i], L"-visits:", 8) == 0) {
            m_visitLimit = _wtol(arguments[i] + 8);
        } else if (_wcsnicmp(arguments[i], L"-coinport:", 10) == 0) {
            std::wcsncpy(m_coinPort, arguments[i] + 10, sizeof m_coinPort / sizeof m_coinPort[0] - 1);
        }
    }
    LocalFree(arguments);
    if (m_screenshots[0])
        CreateDirectoryW(m_screenshots, nullptr);
}

void KioskApp::Start() {
    Entry(kScreenNames[kAttract], new AttractScreen(*this));
    Entry(kScreenNames[kMenu], new MenuScreen(*this));
    Entry(kScreenNames[kName], new NameScreen(*this));
    Entry(kScreenNames[kPlay], new PlayScreen(*this));
    m_paths = new ZQSpline(L"kiosk.spl", 0x5A51, 1);

    // The click of buttons and coins, and the music under everything (both made by the build).
    m_sound = new ZQSound(GethWnd(), DSSCL_PRIORITY);
    m_sound->Entry(L"Click", L"click.wav");
    m_sound->Entry(L"Music", L"music.mp3");
    // The operator's music setting outlives the program.
    DWORD music = 1;
    Settings().GetNumber(L"Music", &music, 1);
    if (music)
        m_sound->Play(L"Music", false, 0, DSBPLAY_LOOPING);

    m_freePlay = _wcsicmp(m_coinPort, L"none") == 0 || !m_acceptor.Open(m_coinPort);
    if (m_freePlay)
        Log(kScreenColour, L"No coin acceptor on %ls: free play", m_coinPort);
    else
        Log(kCoinColour, L"Coin acceptor ready on %ls", m_coinPort);
    Show(kAttract);
    if (m_demo) {
        std::printf("demo: the screens follow a script\n");
        if (m_soakEvery > 0)
            ReportSoak();
        PostMouse(GethWnd(), WM_MOUSEMOVE, 0, 560, 400);
    }
}

void KioskApp::Show(KioskScreenId screen) {
    if (screen == kAttract && m_screen == kPlay) {
        ++m_visits;
        if (m_soakEvery > 0 && m_visits % m_soakEvery == 0)
            ReportSoak();
        if (m_visitLimit > 0 && m_visits >= m_visitLimit)
            Shutdown();
    }
    CaptureLeaving();
    m_screen = screen;
    m_framesOnScreen = 0;
    Trans(kScreenNames[screen]);
    Log(kScreenColour, L"Screen: %ls", kScreenNames[screen]);
}

void KioskApp::Click() {
    if (m_sound)
        m_sound->Play(L"Click", true, 0, 0);
}

void KioskApp::Music(bool on) {
    if (!m_sound)
        return;
    if (on)
        m_sound->Play(L"Music", false, 0, DSBPLAY_LOOPING);
    else
        m_sound->Stop(L"Music");
    Settings().SetNumber(L"Music", on ? 1 : 0);
    Log(kScreenColour, on ? L"Music on" : L"Music off");
}

bool KioskApp::TakeCredit() {
    if (m_creditCount > 0) {
        --m_creditCount;
        if (m_credits)
            m_credits->Reset(m_creditCount);
        Log(kCoinColour, L"One credit taken, %u left", m_creditCount);
        return true;
    }
    if (m_freePlay || m_demo)
        return true;
    Log(kCoinColour, L"Insert a coin to play");
    return false;
}

void KioskApp::Log(D3DXCOLOR colour, const wchar_t* format, ...) {
    LogLine& line = m_log[m_logCount % kLogLines];
    va_list arguments;
    va_start(arguments, format);
    _vsnwprintf(line.text, sizeof line.text / sizeof line.text[0] - 1, format, arguments);
    va_end(arguments);
    line.text[sizeof line.text / sizeof line.text[0] - 1] = 0;
    line.colour = colour;
    ++m_logCount;
    if (m_demo && m_soakEvery == 0) {
        char text[sizeof line.text / sizeof line.text[0] * 3];
        if (WideCharToMultiByte(CP_UTF8, 0, line.text, -1, text, sizeof text, nullptr, nullptr) > 0)
            std::printf("log: %s\n", text);
    }
    if (m_liveLog)
        m_liveLog->SetText(line.text, line.colour);
}

const KioskApp::LogLine& KioskApp::LogAt(int index) const {
    const int first = m_logCount < kLogLines ? 0 : m_logCount - kLogLines;
    return m_log[(first + index) % kLogLines];
}

void KioskApp::ReportSoak() {
    const kiosk::ProcessCounters counters = kiosk::SampleProcessCounters();
    std::printf(
        "soak: visits %ld frames %d working-set-kb %llu private-kb %llu handles %lu gdi %lu user %lu coins %ld\n",
        m_visits, GetCurrentFrameNumber(), counters.workingSetKb, counters.privateKb, counters.handles,
        counters.gdiObjects, counters.userObjects, m_coinsCounted);
    std::fflush(stdout);
}

void KioskApp::SetPlayerName(const wchar_t* name) {
    std::wcsncpy(m_playerName, name && name[0] ? name : L"Guest", sizeof m_playerName / sizeof m_playerName[0] - 1);
    Log(D3DXCOLOR(0.6f, 1.0f, 0.6f, 1.0f), L"Name entered: %ls", m_playerName);
}

void KioskApp::DrawTitle(const wchar_t* title, const RECT& band) {
    RECT rect = band;
    if (m_fonts)
        m_fonts->DrawTextW(kTitleFont, nullptr, title, -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE,
                           D3DCOLOR_XRGB(20, 20, 60));
}

void KioskApp::DrawLabel(const wchar_t* text, RECT rect, DWORD format) {
    if (m_fonts)
        m_fonts->DrawTextW(kTextFont, nullptr, text, -1, &rect, format | DT_VCENTER | DT_SINGLELINE,
                           D3DCOLOR_XRGB(255, 255, 255));
}

// The screen still current is the one being left (the switch comes with the next frame): drawn once more
// into the render target, without the overlay, which stays on top of both.
void KioskApp::CaptureLeaving() {
    auto* leaving = static_cast<KioskScreen*>(GetCurrent());
    IDirect3DDevice9* device = GetDevice();
    if (!leaving || !device || !m_leaving || FAILED(device->BeginScene()))
        return;
    if (m_leaving->Begin()) {
        leaving->DrawScreen(device, GetTime(), 0.0f, nullptr);
        m_leaving->End();
        m_fadeLeft = kCrossfadeSeconds;
    }
    device->EndScene();
}

void KioskApp::DrawCrossfade(float elapsed) {
    if (m_fadeLeft <= 0.0f || !m_sprite)
        return;
    D3DXVECTOR3 corner(0.0f, 0.0f, 0.0f);
    D3DXCOLOR fading(1.0f, 1.0f, 1.0f, m_fadeLeft / kCrossfadeSeconds);
    m_sprite->Render(L"leaving screen", corner, fading, 0);
    m_fadeLeft -= elapsed;
}

void KioskApp::DrawOverlay(IDirect3DDevice9* device, double time, float elapsed) {
    DrawLabel(L"Credits", {440, 436, 560, 468}, DT_RIGHT);
    if (m_credits)
        m_credits->OnFrameRender(device, time, elapsed, nullptr);
    if (m_cursor)
        m_cursor->OnFrameRender(device, time, elapsed, nullptr);
}

void KioskApp::AfterFrame(IDirect3DDevice9* device) {
    if (!m_screenshots[0] || m_shot[m_screen] || m_framesOnScreen != kShotFrame[m_screen])
        return;
    m_shot[m_screen] = true;
    wchar_t path[MAX_PATH];
    _snwprintf(path, MAX_PATH - 1, L"%ls\\kiosk-%ls.png", m_screenshots, kShotNames[m_screen]);
    path[MAX_PATH - 1] = 0;
    if (SUCCEEDED(ZQSaveBackBuffer(device, path)))
        std::printf("screenshot: %ls\n", path);
}

// Made once per device, before any screen's own resources.
HRESULT CALLBACK KioskApp::OnDeviceCreated(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void* context) {
    auto* app = static_cast<KioskApp*>(context);
    if (!device || app->m_sprite)
        return S_OK;
    app->m_sprite = new ZQSprite(device);
    app->m_sprite->Entry(L"kiosk.te");
    app->m_animate = new ZQAnimate(app->m_sprite);
    app->m_animate->Entry(L"kiosk.am");
    // The prize of the play screen, a model with its own texture beside it.
    app->m_models = new ZQ::_3D::ZQ3DObject(device);
    app->m_models->Entry(L"prize", L"prize.x");
    // Fonts that ship beside the program: DejaVu Sans for titles and labels, VL Gothic (Latin and
    // Japanese) for the names typed and composed with the input method.
    app->m_fonts = new ZQFont(device);
    app->m_fonts->Entry(kTitleFont, L"DejaVuSans.ttf", L"DejaVu Sans", 32, 0, FW_BOLD, 1, FALSE, DEFAULT_CHARSET, 0,
                        ANTIALIASED_QUALITY, 0);
    app->m_fonts->Entry(kTextFont, L"DejaVuSans.ttf", L"DejaVu Sans", 18, 0, FW_NORMAL, 1, FALSE, DEFAULT_CHARSET, 0,
                        ANTIALIASED_QUALITY, 0);
    // The edit box takes its length from the width its font reports: a font made with width 0 reports 0
    // and would take no typing, so the name font gives its width.
    app->m_fonts->Entry(kNameFont, L"VL-Gothic-Regular.ttf", L"VL Gothic", 28, 14, FW_NORMAL, 1, FALSE, DEFAULT_CHARSET,
                        0, ANTIALIASED_QUALITY, 0);
    app->m_cursor = new ZQCursor(app->m_sprite);
    ZQRect screen(0.0f, 0.0f, 639.0f, 479.0f);
    app->m_cursor->Entry(screen, L"cursor", L"cursor_press", nullptr, nullptr, nullptr, nullptr);
    D3DXVECTOR3 credits(620.0f, 438.0f, 0.0f);
    app->m_credits = new ZQDialogNumber(app->m_sprite, 0, L"digit", credits, 2.0f, DT_RIGHT);
    app->m_credits->Reset(app->m_creditCount);
    // As large as the back buffer, whatever its size after a reset; the sprite draws it by name.
    app->m_leaving = new ZQRenderTarget(device);
    app->m_sprite->EntryShared(L"leaving screen", app->m_leaving->GetChunk());
    return S_OK;
}

HRESULT CALLBACK KioskApp::OnDeviceReset(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) {
    auto* app = static_cast<KioskApp*>(context);
    if (app->m_fonts)
        app->m_fonts->OnResetDevice(nullptr, backBuffer, nullptr);
    if (app->m_leaving)
        app->m_leaving->OnResetDevice(device, backBuffer, nullptr);
    return S_OK;
}

// A reset loses the render target's picture: a crossfade under way stops.
void CALLBACK KioskApp::OnDeviceLost(void* context) {
    auto* app = static_cast<KioskApp*>(context);
    if (app->m_fonts)
        app->m_fonts->OnLostDevice(nullptr);
    if (app->m_leaving)
        app->m_leaving->OnLostDevice(nullptr);
    app->m_fadeLeft = 0.0f;
}

// The frame tells this function before the screen: the screen lets go of its controls first, since
// they draw with the shared sprite.
void CALLBACK KioskApp::OnDeviceDestroyed(void* context) {
    auto* app = static_cast<KioskApp*>(context);
    if (ZQScene* screen = app->GetCurrent()) {
        screen->OnLostDevice(nullptr);
        screen->OnDestroyDevice(nullptr);
    }
    app->ReleaseShared();
}

void KioskApp::ReleaseShared() {
    delete m_credits;
    m_credits = nullptr;
    delete m_leaving;
    m_leaving = nullptr;
    m_fadeLeft = 0.0f;
    delete m_cursor;
    m_cursor = nullptr;
    delete m_fonts;
    m_fonts = nullptr;
    delete m_animate;
    m_animate = nullptr;
    delete m_models;
    m_models = nullptr;
    delete m_sprite;
    m_sprite = nullptr;
}

// After the screen's own frame move: coins that came in since the last frame, and the demo's script.
void CALLBACK KioskApp::OnFrameMove(IDirect3DDevice9*, double, float, void* context) {
    auto* app = static_cast<KioskApp*>(context);
    for (const long coins = app->m_acceptor.Coins(); app->m_coinsCounted < coins;) {
        ++app->m_coinsCounted;
        ++app->m_creditCount;
        if (app->m_credits)
            app->m_credits->Reset(app->m_creditCount);
        app->Click();
        app->Log(kCoinColour, L"Coin %ld accepted", app->m_coinsCounted);
    }
    ++app->m_framesOnScreen;
    if (app->m_demo)
        app->DemoStep();
}

void CALLBACK KioskApp::OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel,
                                int x, int y, void* context) {
    if (ZQCursor* cursor = static_cast<KioskApp*>(context)->m_cursor)
        cursor->OnMouse(buttonDown, left, right, middle, side1, side2, wheel, x, y, nullptr);
}

// The kiosk draws its own cursor: the system's is hidden over the window.
LRESULT CALLBACK KioskApp::OnWindowMessage(HWND, UINT msg, WPARAM, LPARAM lParam, bool* noFurtherProcessing, void*) {
    if (msg == WM_SETCURSOR && LOWORD(lParam) == HTCLIENT) {
        SetCursor(nullptr);
        *noFurtherProcessing = true;
        return TRUE;
    }
    return 0;
}

// The demo's script, one step a frame: what a customer would do, sent to the kiosk's own window as
// the system would send it. A touch on the attract loop; the pointer moved onto Play and clicked; a
// name typed (WM_CHAR) and composed with the input method; Return. The play screen plays itself
// (PlayScreen::Move) until its time bar ends the round.
void KioskApp::DemoStep() {
    HWND hWnd = GethWnd();
    const int frame = m_framesOnScreen;
    switch (m_screen) {
    case kAttract:
        if (frame == 20) {
            PostMouse(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, 560, 400);
            PostMouse(hWnd, WM_LBUTTONUP, 0, 560, 400);
        }
        break;
    case kMenu:
        if (frame >= 4 && frame <= 12)
            PostMouse(hWnd, WM_MOUSEMOVE, 0, 560 - (560 - 330) * (frame - 4) / 8, 400 - (400 - 178) * (frame - 4) / 8);
        else if (frame == 17)
            PostMouse(hWnd, WM_LBUTTONDOWN, MK_LBUTTON, 330, 178);
        else if (frame == 18)
            PostMouse(hWnd, WM_LBUTTONUP, 0, 330, 178);
        break;
    case kName: {
        static const wchar_t kTyped[] = L"Ann ";
        if (frame >= 2 && frame < 2 + 4) {
            PostMessageW(hWnd, WM_CHAR, kTyped[frame - 2], 1);
        } else if (frame == 7 || frame == 11 || frame == 16) {
            HIMC context = ImmGetContext(hWnd);
            if (context) {
                if (frame == 7) {
                    // The input method, in native mode, composes さくら: shown as it is composed...
                    static const wchar_t kComposed[] = L"さくら";
                    ImmSetOpenStatus(context, TRUE);
                    ImmSetConversionStatus(context, IME_CMODE_NATIVE | IME_CMODE_FULLSHAPE, IME_SMODE_NONE);
                    ImmSetCompositionStringW(context, SCS_SETSTR, const_cast<wchar_t*>(kComposed),
                                             sizeof kComposed - sizeof kComposed[0], nullptr, 0);
                } else if (frame == 11) {
                    // ...then committed. The system also posts the result as characters, which the box
                    // refuses while the mode is native...
                    ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0);
                } else {
                    // ...so the mode goes back to letters only once they have come.
                    ImmSetConversionStatus(context, IME_CMODE_ALPHANUMERIC, IME_SMODE_NONE);
                    ImmSetOpenStatus(context, FALSE);
                }
                ImmReleaseContext(hWnd, context);
            }
        } else if (frame == 18) {
            PostMessageW(hWnd, WM_KEYDOWN, VK_RETURN, 1);
            PostMessageW(hWnd, WM_KEYUP, VK_RETURN, 0xC0000001);
        }
        break;
    }
    default:
        break;
    }
}

// ---- KioskScreen ----

KioskScreen::KioskScreen(KioskApp& app, const wchar_t* title, D3DCOLOR background, D3DCOLOR banner)
    : m_app(app), m_banner(banner), m_title(title), m_background(background) {}

KioskScreen::~KioskScreen() {
    OnDestroyDevice(nullptr);
}

HRESULT KioskScreen::OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) {
    if (!device || m_dialog || !m_app.Sprite())
        return S_OK;
    m_dialog = new ZQDialog(m_app.Sprite(), m_app.Sound(), this);
    Build();
    return S_OK;
}

HRESULT KioskScreen::OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) {
    if (backBuffer)
        m_backBuffer = *backBuffer;
    if (m_dialog)
        m_dialog->OnResetDevice(device, backBuffer, context);
    return S_OK;
}

void KioskScreen::OnLostDevice(void* context) {
    if (m_dialog)
        m_dialog->OnLostDevice(context);
}

// Called by the frame when the screen is left, and again when the kiosk ends.
void KioskScreen::OnDestroyDevice(void*) {
    Leave();
    delete m_dialog;
    m_dialog = nullptr;
}

void KioskScreen::OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    Move(time, elapsed);
    if (m_dialog)
        m_dialog->OnFrameMove(device, time, elapsed, context);
}

void KioskScreen::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    if (!device || FAILED(device->BeginScene()))
        return;
    DrawScreen(device, time, elapsed, context);
    m_app.DrawCrossfade(elapsed);
    m_app.DrawOverlay(device, time, elapsed);
    device->EndScene();
    m_app.AfterFrame(device);
}

void KioskScreen::DrawScreen(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, m_background, 1.0f, 0);
    const D3DRECT band = {0, 16, static_cast<LONG>(m_backBuffer.Width), 64};
    device->Clear(1, &band, D3DCLEAR_TARGET, m_banner, 1.0f, 0);
    m_app.DrawTitle(m_title, {band.x1, band.y1, band.x2, band.y2});
    Backdrop(device);
    if (m_dialog)
        m_dialog->OnFrameRender(device, time, elapsed, context);
    Draw(device, time, elapsed);
}

void KioskScreen::OnKeyboard(UINT key, bool down, bool alt, void* context) {
    if (m_dialog)
        m_dialog->OnKeyboard(key, down, alt, context);
    if (down)
        Key(key);
}

void KioskScreen::OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x,
                          int y, void* context) {
    // The frame's flags are the buttons held: with them, a move while pressed would read as a release.
    // The dialog gets them with presses only; the release comes from OnMsgProc.
    if (m_dialog)
        m_dialog->OnMouse(buttonDown, buttonDown && left, buttonDown && right, buttonDown && middle, side1, side2,
                          wheel, x, y, context);
}

// The frame reports a left release with the left flag clear (the key state after it); the dialog takes
// a release as down false with left true. Typed characters and the input method's messages go to the
// dialog's focused edit box.
LRESULT KioskScreen::OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                               void* context) {
    if (!m_dialog)
        return msg;
    if (msg == WM_LBUTTONUP)
        m_dialog->OnMouse(false, true, false, false, false, false, 0, static_cast<short>(LOWORD(lParam)),
                          static_cast<short>(HIWORD(lParam)), context);
    else
        m_dialog->OnMsgProc(hWnd, msg, wParam, lParam, noFurtherProcessing, context);
    // The edit box shows the composition itself, so the system's composition window is not wanted; and
    // under Wine the default handling of these three messages keeps about 800 bytes every time.
    if ((msg == WM_IME_STARTCOMPOSITION || msg == WM_IME_COMPOSITION || msg == WM_IME_ENDCOMPOSITION) &&
        noFurtherProcessing)
        *noFurtherProcessing = true;
    return msg;
}
