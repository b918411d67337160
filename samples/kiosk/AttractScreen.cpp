// The attract loop, shown while nobody plays: a turning coin and a ticket ride a spline path (players
// moved along it every frame), a star follows them, an arrow hops along the bottom, sparkles appear
// now and then. The music plays under it. A touch or a key leads to the menu.
#include "Screens.h"

#include <cmath>

using namespace ZQ;

namespace {
const wchar_t* const kPath = L"swoop";
// The ticket and the star ride the same path, a little behind the coin.
const float kTicketLag = 1.2f, kStarLag = 0.5f;

// Where a rider that is lag seconds behind the path's clock is now.
D3DXVECTOR3 OnPath(_3D::ZQ3DSpline* path, float time, float total, float lag) {
    return path->GetPosition(std::fmod(time - lag + total, total));
}
} // namespace

AttractScreen::AttractScreen(KioskApp& app)
    : KioskScreen(app, L"Insert coin", D3DCOLOR_XRGB(16, 32, 96), D3DCOLOR_XRGB(240, 200, 40)) {}

void AttractScreen::Build() {
    ZQAnimate* animate = m_app.Animate();
    m_coin = new ZQRenderSingle(animate);
    m_coin->Entry(L"coin_spin", D3DXVECTOR3(0.0f, 0.0f, 0.0f), true, -1, false);
    m_ticket = new ZQRenderSingle(animate);
    m_ticket->Entry(L"ticket_bob", D3DXVECTOR3(0.0f, 0.0f, 0.0f), true, -1, false);
    m_arrow = new ZQRenderSingle(animate);
    m_sparkles = new ZQRenderMulti(animate);
    ZQRect prompt(0.0f, 90.0f, 640.0f, 120.0f);
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
    m_dialog->AddStatic(1, m_app.TextFont(), L"Touch the screen to start", prompt, white, DT_CENTER | DT_VCENTER);
    // Looked up once: the riders stay where they are without the path.
    ZQSpline* paths = m_app.Paths();
    m_path = paths ? paths->GetSpline(kPath) : nullptr;
    m_pathLength = paths ? paths->GetTime(kPath) : 0.0f;
    if (m_pathLength <= 0.0f)
        m_path = nullptr;
    m_pathTime = 0.0f;
}

// Players before the animate whose frames they borrow; the animate is the application's.
void AttractScreen::Leave() {
    delete m_sparkles;
    delete m_arrow;
    delete m_ticket;
    delete m_coin;
    m_sparkles = nullptr;
    m_arrow = m_ticket = m_coin = nullptr;
}

void AttractScreen::Move(double, float elapsed) {
    if (!m_coin)
        return;
    if (m_path) {
        m_pathTime = std::fmod(m_pathTime + elapsed, m_pathLength);
        D3DXVECTOR3 coin = OnPath(m_path, m_pathTime, m_pathLength, 0.0f);
        D3DXVECTOR3 ticket = OnPath(m_path, m_pathTime, m_pathLength, kTicketLag);
        m_coin->SetMove(coin);
        m_ticket->SetMove(ticket);
        m_star = OnPath(m_path, m_pathTime, m_pathLength, kStarLag);
    }
    m_sparkleTime += elapsed;
    if (m_sparkleTime > 0.35f) {
        m_sparkleTime = 0.0f;
        const float angle = m_pathTime * 2.7f;
        D3DXVECTOR3 at(320.0f + 200.0f * std::cos(angle), 260.0f + 80.0f * std::sin(angle), 0.0f);
        m_sparkles->Entry(L"sparkle", at, true, 1);
    }
    if (m_arrow->empty())
        m_arrow->Entry(L"hop", D3DXVECTOR3(40.0f, 440.0f, 0.0f), true, 24, true);
}

void AttractScreen::Draw(IDirect3DDevice9* device, double time, float elapsed) {
    if (!m_coin)
        return;
    m_ticket->OnFrameRender(device, time, elapsed, nullptr);
    m_coin->OnFrameRender(device, time, elapsed, nullptr);
    m_arrow->OnFrameRender(device, time, elapsed, nullptr);
    m_sparkles->OnFrameRender(device, time, elapsed, nullptr);
    if (m_path) {
        D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
        m_app.Sprite()->Render(L"star", m_star, m_pathTime * 3.0f, white, 0);
    }
}

void AttractScreen::OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int wheel,
                            int x, int y, void* context) {
    KioskScreen::OnMouse(buttonDown, left, right, middle, side1, side2, wheel, x, y, context);
    if (buttonDown && left) {
        m_app.Click();
        m_app.Show(kMenu);
    }
}

void AttractScreen::Key(UINT key) {
    if (key == VK_RETURN || key == VK_SPACE) {
        m_app.Click();
        m_app.Show(kMenu);
    }
}
