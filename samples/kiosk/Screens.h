// The kiosk's four screens, one source file each.
#pragma once
#include "Kiosk.h"

class AttractScreen : public KioskScreen {
public:
    explicit AttractScreen(KioskApp& app);
    ~AttractScreen() override { Leave(); }
    void OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context) override;

protected:
    void Build() override;
    void Move(double time, float elapsed) override;
    void Draw(IDirect3DDevice9* device, double time, float elapsed) override;
    void Leave() override;
    void Key(UINT key) override;

private:
    ZQ::ZQRenderSingle* m_coin = nullptr;
    ZQ::ZQRenderSingle* m_ticket = nullptr;
    ZQ::ZQRenderSingle* m_arrow = nullptr;
    ZQ::ZQRenderMulti* m_sparkles = nullptr;
    ZQ::_3D::ZQ3DSpline* m_path = nullptr;
    float m_pathLength = 0.0f, m_pathTime = 0.0f, m_sparkleTime = 0.0f;
    D3DXVECTOR3 m_star = D3DXVECTOR3(0.0f, 0.0f, 0.0f);
};

class MenuScreen : public KioskScreen {
public:
    explicit MenuScreen(KioskApp& app);
    void __stdcall OnEvent(unsigned int id, int x, int y) override;

protected:
    void Build() override;
    void Draw(IDirect3DDevice9* device, double time, float elapsed) override;
};

class NameScreen : public KioskScreen {
public:
    explicit NameScreen(KioskApp& app);
    ~NameScreen() override { Leave(); }

protected:
    void Build() override;
    void Backdrop(IDirect3DDevice9* device) override;
    void Leave() override;
    void Key(UINT key) override;
};

class PlayScreen : public KioskScreen {
public:
    explicit PlayScreen(KioskApp& app);
    ~PlayScreen() override { Leave(); }
    void __stdcall OnEvent(unsigned int id, int x, int y) override;

protected:
    void Build() override;
    void Move(double time, float elapsed) override;
    void Draw(IDirect3DDevice9* device, double time, float elapsed) override;
    void Leave() override;
    void Key(UINT key) override;

private:
    void Hit();
    float m_demoHitTime = 0.0f;
    bool m_over = false;
    // The prize: a gift box that turns while the round runs and opens, with a jolt of the view, on the bonus.
    ZQ::_3D::ZQ3DCamera* m_camera = nullptr;
    ZQ::_3D::ZQ3DRenderSingle* m_prize = nullptr;
    ZQ::_3D::ZQ3DQuake m_shake;
};
