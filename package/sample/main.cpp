// The package's sample: one screen with a spinning coin and a button that clicks and quits, and the
// library's messages printed. The art (kiosk.te, click.wav) lies beside the program; bin/zqpack.exe
// makes kiosk.te from art/ again: zqpack te --center -o kiosk.te art
//
//   sample.exe [-windowed] [-constantframetime:S] [-quitafterframe:N] [-noerrormsgboxes]
#include <ZQVelisto.h>

#include <cmath>
#include <cstdio>

namespace {

ZQ::ZQVelisto* g_app = nullptr;

// What the library dropped or ignored, and why (a missing file, a misspelt option).
void CALLBACK PrintMessage(const wchar_t* message, void*) {
    std::printf("message: %ls\n", message);
}

class MenuScene : public ZQ::ZQScene, public ZQ::_ZQResponseDialog_tag {
public:
    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override {
        m_sprite = new ZQ::ZQSprite(device);
        m_sprite->Entry(L"kiosk.te");
        m_sound = new ZQ::ZQSound(g_app->GethWnd(), DSSCL_PRIORITY);
        m_sound->Entry(L"click", L"click.wav");
        m_dialog = new ZQ::ZQDialog(m_sprite, m_sound, this);
        D3DXVECTOR3 at(240, 360, 0);
        m_dialog->AddButton(1, L"button", L"button", L"button", L"button", at, true);
        m_dialog->GetButton(1)->SetSound(L"click", nullptr);
        return S_OK;
    }
    void OnDestroyDevice(void*) override { // called again when the library deletes the scene
        delete m_dialog;
        delete m_sound;
        delete m_sprite;
        m_dialog = nullptr;
        m_sound = nullptr;
        m_sprite = nullptr;
    }
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) override {
        device->Clear(0, nullptr, D3DCLEAR_TARGET, D3DCOLOR_XRGB(0, 0, 64), 1.0f, 0);
        if (FAILED(device->BeginScene()))
            return;
        D3DXVECTOR3 centre(320, 200, 0);
        D3DXCOLOR white(1, 1, 1, 1);
        m_drawn = m_sprite->Render(L"coin", centre, static_cast<float>(std::fmod(time, 6.2832)), white, 0) != nullptr;
        m_dialog->OnFrameRender(device, time, elapsed, context);
        device->EndScene();
    }
    void OnMouse(bool down, bool l, bool r, bool m, bool s1, bool s2, int w, int x, int y, void* c) override {
        m_dialog->OnMouse(down, down && l, down && r, down && m, s1, s2, w, x, y, c);
    }
    LRESULT OnMsgProc(HWND, UINT msg, WPARAM, LPARAM lParam, bool*, void* c) override {
        if (msg == WM_LBUTTONUP) // the dialog takes a release with the left flag set
            m_dialog->OnMouse(false, true, false, false, false, false, 0, static_cast<short>(LOWORD(lParam)),
                              static_cast<short>(HIWORD(lParam)), c);
        return 0;
    }
    void __stdcall OnEvent(unsigned int id, int, int) override {
        if (id == 1)
            g_app->Shutdown();
    }
    bool Drawn() const { return m_drawn; }

private:
    ZQ::ZQSprite* m_sprite = nullptr;
    ZQ::ZQSound* m_sound = nullptr;
    ZQ::ZQDialog* m_dialog = nullptr;
    bool m_drawn = false;
};

} // namespace

int main() {
    ZQ::ZQSetMessageFunc(PrintMessage, nullptr);
    ZQ::ZQVelisto app(L"ZQVelisto sample", 640, 480);
    g_app = &app;
    if (FAILED(app.Init(true, true, true, true)))
        return app.GetExitCode();
    if (FAILED(app.CreateWindow(L"ZQVelisto sample", nullptr, nullptr, nullptr, CW_USEDEFAULT, CW_USEDEFAULT)))
        return 1;
    if (FAILED(app.CreateDevice(0, true, 640, 480, nullptr, nullptr, nullptr)))
        return app.GetExitCode();
    MenuScene* menu = new MenuScene;
    app.Entry(L"Menu", menu);
    app.Trans(L"Menu");
    app.MainLoop(nullptr);
    std::printf("ZQVelisto %s: the sample ran %d frames and %s its coin\n", ZQ_VERSION_STRING,
                app.GetCurrentFrameNumber(), menu->Drawn() ? "drew" : "could not draw");
    return app.GetExitCode();
}
