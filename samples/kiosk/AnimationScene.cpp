#include "AnimationScene.h"

#include <cmath>

using namespace ZQ;

namespace {
// The identification words the kiosk's ".SPL" files carry ("ZQ", version 1).
const WORD kPathWord = 0x5A51, kPathVersion = 1;
} // namespace

HRESULT AnimationScene::OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) {
    if (!device || m_sprite)
        return S_OK;
    m_sprite = new ZQSprite(device);
    m_sprite->Entry(L"kiosk.te");
    m_animate = new ZQAnimate(m_sprite);
    m_animate->Entry(L"kiosk.am");
    m_coin = new ZQRenderSingle(m_animate);
    m_coin->Entry(L"coin_spin", D3DXVECTOR3(320.0f, 170.0f, 0.0f), true, -1, false);
    m_arrow = new ZQRenderSingle(m_animate);
    m_sparkles = new ZQRenderMulti(m_animate);
    m_paths = new ZQSpline(L"kiosk.spl", kPathWord, kPathVersion);
    return S_OK;
}

void AnimationScene::OnDestroyDevice(void*) {
    // Players before the animate whose frames they borrow, the animate before its sprite.
    delete m_sparkles;
    delete m_arrow;
    delete m_coin;
    delete m_animate;
    delete m_sprite;
    delete m_paths;
    m_sparkles = nullptr;
    m_arrow = m_coin = nullptr;
    m_animate = nullptr;
    m_sprite = nullptr;
    m_paths = nullptr;
}

void AnimationScene::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    if (!m_paths)
        return;
    // Round the path again and again; a sparkle now and then even without a touch.
    const float total = m_paths->GetTime(L"swoop");
    m_pathTime = total > 0.0f ? std::fmod(m_pathTime + elapsed, total) : 0.0f;
    m_sparkleTime += elapsed;
    if (m_sparkleTime > 0.35f) {
        m_sparkleTime = 0.0f;
        const float angle = m_pathTime * 2.7f;
        m_sparkles->Entry(L"sparkle", D3DXVECTOR3(320.0f + 150.0f * std::cos(angle), 170.0f + 60.0f * std::sin(angle), 0.0f),
                          true, 1);
    }
    if (m_arrow->empty())
        m_arrow->Entry(L"hop", D3DXVECTOR3(40.0f, 440.0f, 0.0f), true, 24, true);
}

void AnimationScene::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    if (!device || FAILED(device->BeginScene()))
        return;
    device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, D3DCOLOR_XRGB(40, 16, 72), 1.0f, 0);
    if (m_sprite) {
        m_coin->OnFrameRender(device, time, elapsed, context);
        m_arrow->OnFrameRender(device, time, elapsed, context);
        m_sparkles->OnFrameRender(device, time, elapsed, context);
        if (_3D::ZQ3DSpline* path = m_paths->GetSpline(L"swoop")) {
            D3DXVECTOR3 at = path->GetPosition(m_pathTime);
            D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
            m_sprite->Render(L"star", at, m_pathTime * 3.0f, white, 0);
        }
    }
    device->EndScene();
    if (m_afterRender)
        m_afterRender(device);
}

void AnimationScene::OnKeyboard(UINT key, bool down, bool, void*) {
    if (down && (key == VK_RETURN || key == VK_SPACE) && m_next)
        m_next();
}

void AnimationScene::OnMouse(bool buttonDown, bool left, bool, bool, bool, bool, int, int x, int y, void*) {
    if (buttonDown && left && m_sparkles)
        m_sparkles->Entry(L"sparkle", D3DXVECTOR3(static_cast<float>(x), static_cast<float>(y), 0.0f), true, 1);
}
