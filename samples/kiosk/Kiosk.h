// The kiosk application and the base of its screens.
//
// The application owns what every screen shares, made once per device: the atlas (kiosk.te), its
// animations (kiosk.am), the motion paths (kiosk.spl), the fonts, the cursor, the credit counter and
// the render target that keeps the screen being left for the crossfade; and, for the whole run, the
// sounds, the coin acceptor on the serial port and the event log.
#pragma once
#include <ZQVelisto.h>

#include "CoinAcceptor.h"

enum KioskScreenId { kAttract, kMenu, kName, kPlay, kScreenCount };

class KioskApp : public ZQ::ZQVelisto {
public:
    KioskApp();
    ~KioskApp() override;

    /// Reads -demo, -screenshots:DIR, -soak:N, -visits:N and -coinport:NAME (the frame reads the other
    /// options in Init).
    void ReadOptions();
    /// After CreateDevice: the screens, the sounds, the coin acceptor, the demo's script.
    void Start();

    void Show(KioskScreenId screen);
    ZQ::ZQSprite* Sprite() { return m_sprite; }
    ZQ::ZQAnimate* Animate() { return m_animate; }
    ZQ::ZQSpline* Paths() { return m_paths; }
    ZQ::_3D::ZQ3DObject* Models() { return m_models; }
    ZQ::ZQSound* Sound() { return m_sound; }
    ID3DXFont* TextFont() { return m_fonts ? m_fonts->Get(kTextFont) : nullptr; }
    ID3DXFont* NameFont() { return m_fonts ? m_fonts->Get(kNameFont) : nullptr; }
    bool Demo() const { return m_demo; }

    void Click();
    /// Starts or stops the music, and keeps the choice in the kiosk's settings.
    void Music(bool on);
    /// The kiosk's settings in the current user's registry.
    static ZQ::ZQRegistry Settings() { return ZQ::ZQRegistry(L"Software\\ZQVelisto\\Sample kiosk"); }
    /// Takes one credit for a round; false when there is none (rounds are free without a coin acceptor
    /// and in the demo).
    bool TakeCredit();

    /// One line of the event log, with its colour; the name screen's list box shows the newest.
    struct LogLine {
        wchar_t text[64];
        D3DXCOLOR colour;
    };
    void Log(D3DXCOLOR colour, const wchar_t* format, ...);
    int LogCount() const { return m_logCount < kLogLines ? m_logCount : kLogLines; }
    /// Line index of the kept lines, 0 the oldest.
    const LogLine& LogAt(int index) const;

    void SetPlayerName(const wchar_t* name);
    const wchar_t* PlayerName() const { return m_playerName; }

    /// While the name screen is up, the log's new lines go to its list box too (null: none).
    void SetLiveLog(ZQ::ZQDialogListBox* listBox) { m_liveLog = listBox; }

    /// The screens draw their title and labels with these.
    void DrawTitle(const wchar_t* title, const RECT& band);
    void DrawLabel(const wchar_t* text, RECT rect, DWORD format);
    /// The screen just left, fading out over the new one; runs down by elapsed.
    void DrawCrossfade(float elapsed);
    /// Credits and the cursor, on top of every screen, inside its device scene.
    void DrawOverlay(IDirect3DDevice9* device, double time, float elapsed);
    /// After the screen's device scene: the demo's screenshot of each screen.
    void AfterFrame(IDirect3DDevice9* device);

private:
    enum { kTitleFont = 1, kTextFont = 2, kNameFont = 3, kLogLines = 32 };

    static HRESULT CALLBACK OnDeviceCreated(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void* context);
    static HRESULT CALLBACK OnDeviceReset(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    static void CALLBACK OnDeviceLost(void* context);
    static void CALLBACK OnDeviceDestroyed(void* context);
    static void CALLBACK OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    static void CALLBACK OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel,
                                 int x, int y, void* context);
    static LRESULT CALLBACK OnWindowMessage(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam,
                                            bool* noFurtherProcessing, void* context);
    void DemoStep();
    void CaptureLeaving();
    void ReleaseShared();
    void ReportSoak();

    ZQ::ZQSprite* m_sprite = nullptr;
    ZQ::ZQAnimate* m_animate = nullptr;
    ZQ::_3D::ZQ3DObject* m_models = nullptr;
    ZQ::ZQSpline* m_paths = nullptr;
    ZQ::ZQFont* m_fonts = nullptr;
    ZQ::ZQCursor* m_cursor = nullptr;
    ZQ::ZQDialogNumber* m_credits = nullptr;
    ZQ::ZQRenderTarget* m_leaving = nullptr;
    float m_fadeLeft = 0.0f;
    ZQ::ZQSound* m_sound = nullptr;
    CoinAcceptor m_acceptor;
    // -coinport:NAME: the acceptor's port; "none" for free play without one.
    wchar_t m_coinPort[32] = L"COM7";
    long m_coinsCounted = 0;
    unsigned m_creditCount = 0;
    bool m_freePlay = true;

    LogLine m_log[kLogLines] = {};
    int m_logCount = 0;
    ZQ::ZQDialogListBox* m_liveLog = nullptr;
    wchar_t m_playerName[32] = {};

    KioskScreenId m_screen = kAttract;
    int m_framesOnScreen = 0;
    bool m_demo = false;
    // -soak:N: a line of the process's memory and handle counts every N visits (a visit ends when a
    // round returns to the attract loop).
    int m_soakEvery = 0;
    long m_visits = 0;
    // -visits:N: the kiosk ends after N visits.
    long m_visitLimit = 0;
    wchar_t m_screenshots[MAX_PATH] = {};
    bool m_shot[kScreenCount] = {};
};

/// A screen of the kiosk: a background, a title band, the screen's own drawing, a dialog with its
/// controls (the dialog answers to this screen's OnEvent), the overlay. Derived screens fill Build,
/// Move, Backdrop, Draw and Leave; Leave must be safe to repeat.
class KioskScreen : public ZQ::ZQScene, public ZQ::_ZQResponseDialog_tag {
public:
    KioskScreen(KioskApp& app, const wchar_t* title, D3DCOLOR background, D3DCOLOR banner);
    ~KioskScreen() override;

    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) override;
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context) override;
    void OnLostDevice(void* context) override;
    void OnDestroyDevice(void* context) override;
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override;
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) override;
    void OnKeyboard(UINT key, bool down, bool alt, void* context) override;
    void OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context) override;
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                      void* context) override;
    /// The screen without the overlay, inside a device scene the caller began.
    void DrawScreen(IDirect3DDevice9* device, double time, float elapsed, void* context);

protected:
    virtual void Build() {}
    virtual void Move(double, float) {}
    /// Under the dialog's controls.
    virtual void Backdrop(IDirect3DDevice9*) {}
    /// Over them.
    virtual void Draw(IDirect3DDevice9*, double, float) {}
    virtual void Leave() {}
    /// A key pressed (not a repeat) that the dialog did not take.
    virtual void Key(UINT) {}

    KioskApp& m_app;
    ZQ::ZQDialog* m_dialog = nullptr;
    D3DCOLOR m_banner;

private:
    const wchar_t* m_title;
    D3DCOLOR m_background;
    D3DSURFACE_DESC m_backBuffer = {};
};
