// The kiosk's animation screen: a coin turning for ever (a single player), an arrow hopping across
// (another single player, restarted when it is done), sparkles where the screen is touched (the multi
// player) and a star flying along a spline path.
#pragma once
#include <ZQVelisto.h>

class AnimationScene : public ZQ::ZQScene {
public:
    /// afterRender runs once the scene has drawn, before the frame is presented (screenshots); next
    /// moves on to the next screen (Enter or Space).
    AnimationScene(void (*afterRender)(IDirect3DDevice9*), void (*next)()) : m_afterRender(afterRender), m_next(next) {}
    ~AnimationScene() override { OnDestroyDevice(nullptr); }

    HRESULT OnCreateDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC*, void*) override;
    void OnDestroyDevice(void*) override;
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override;
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) override;
    void OnKeyboard(UINT key, bool down, bool alt, void* context) override;
    void OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context) override;

private:
    void (*m_afterRender)(IDirect3DDevice9*);
    void (*m_next)();
    ZQ::ZQSprite* m_sprite = nullptr;
    ZQ::ZQAnimate* m_animate = nullptr;
    ZQ::ZQRenderSingle* m_coin = nullptr;
    ZQ::ZQRenderSingle* m_arrow = nullptr;
    ZQ::ZQRenderMulti* m_sparkles = nullptr;
    ZQ::ZQSpline* m_paths = nullptr;
    float m_pathTime = 0.0f;
    float m_sparkleTime = 0.0f;
};
