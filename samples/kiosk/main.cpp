// The sample kiosk: three screens that take turns on a key, a click or a timer.
//
//   kiosk.exe [-windowed] [-quitafterframe:N] [-constantframetime:S] [-screenshots:DIR]
//
// With -screenshots:DIR it saves the back buffer as PNG every 10 frames and prints each path.
#include <ZQVelisto.h>

#include <shellapi.h>

#include <cstdio>
#include <cwchar>

using namespace ZQ;

namespace {

const wchar_t* const kSceneNames[] = {L"Attract", L"Menu", L"Ticket"};
const int kSceneCount = 3;
const float kSceneSeconds = 1.5f;
const int kScreenshotEvery = 10;

class KioskApp;
KioskApp* g_app = nullptr;

// A screen drawn from a background colour, a banner and a button-like panel.
class ColourScene : public ZQScene {
public:
    ColourScene(int index, D3DCOLOR background, D3DCOLOR banner, D3DCOLOR panel)
        : m_index(index), m_background(background), m_banner(banner), m_panel(panel) {}

    void OnFrameRender(IDirect3DDevice9* device, double, float, void*) override {
        if (!device)
            return;
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, m_background, 1.0f, 0);
        D3DSURFACE_DESC desc = m_backBuffer;
        const LONG w = static_cast<LONG>(desc.Width), h = static_cast<LONG>(desc.Height);
        const D3DRECT banner = {0, h / 10, w, h / 4};
        device->Clear(1, &banner, D3DCLEAR_TARGET, m_banner, 1.0f, 0);
        // Each screen puts its panel somewhere else, so the screenshots tell them apart.
        const LONG left = w / 8 + m_index * w / 4;
        const D3DRECT panel = {left, h / 2, left + w / 4, h / 2 + h / 4};
        device->Clear(1, &panel, D3DCLEAR_TARGET, m_panel, 1.0f, 0);
        AfterRender(device);
    }
    HRESULT OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC* backBuffer, void*) override {
        if (backBuffer)
            m_backBuffer = *backBuffer;
        return S_OK;
    }
    void OnKeyboard(UINT key, bool down, bool, void*) override;
    void AfterRender(IDirect3DDevice9* device);
    void OnMouse(bool buttonDown, bool left, bool, bool, bool, bool, int, int, int, void*) override;

private:
    int m_index;
    D3DCOLOR m_background, m_banner, m_panel;
    D3DSURFACE_DESC m_backBuffer = {};
};

class KioskApp : public ZQVelisto {
public:
    KioskApp() : ZQVelisto(L"ZQVelisto sample kiosk", 640, 480) {}

    void Next() {
        m_current = (m_current + 1) % kSceneCount;
        Trans(kSceneNames[m_current]);
    }

    static void CALLBACK OnTimer(UINT, void* context) { static_cast<KioskApp*>(context)->Next(); }

    // Called by the scenes once they have drawn, before the frame is presented.
    void MaybeScreenshot(IDirect3DDevice9* device) {
        if (m_screenshots[0] && GetCurrentFrameNumber() % kScreenshotEvery == kScreenshotEvery - 1)
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
};

void ColourScene::AfterRender(IDirect3DDevice9* device) {
    g_app->MaybeScreenshot(device);
}

void ColourScene::OnKeyboard(UINT key, bool down, bool, void*) {
    if (down && (key == VK_RETURN || key == VK_SPACE))
        g_app->Next();
}

void ColourScene::OnMouse(bool buttonDown, bool left, bool, bool, bool, bool, int, int, int, void*) {
    if (buttonDown && left)
        g_app->Next();
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

    app.Entry(kSceneNames[0], new ColourScene(0, D3DCOLOR_XRGB(16, 32, 96), D3DCOLOR_XRGB(240, 200, 40),
                                              D3DCOLOR_XRGB(220, 220, 230)));
    app.Entry(kSceneNames[1], new ColourScene(1, D3DCOLOR_XRGB(16, 80, 40), D3DCOLOR_XRGB(250, 250, 250),
                                              D3DCOLOR_XRGB(40, 160, 240)));
    app.Entry(kSceneNames[2], new ColourScene(2, D3DCOLOR_XRGB(110, 60, 10), D3DCOLOR_XRGB(20, 20, 20),
                                              D3DCOLOR_XRGB(250, 120, 30)));
    app.Trans(kSceneNames[0]);
    app.AddTimer(KioskApp::OnTimer, kSceneSeconds, nullptr, &app);
    app.MainLoop(nullptr);
    std::printf("the kiosk ran %d frames\n", app.GetCurrentFrameNumber());
    return app.GetExitCode();
}
