// The round: hit the coin (click it, or press Space) to score. The score counter is drawn with the
// digit chunks; a gauge climbs with the hits towards a bonus; a time gauge and a time bar run for the
// round's length, and the time bar's event ends the round. A 3D prize turns beside the coin and opens
// on the bonus, while the camera shakes.
#include "Screens.h"

#include <cwchar>

using namespace ZQ;

namespace {
enum PlayId : unsigned int { kPlayer = 1, kScoreLabel, kTimeLabel, kCoinButton, kScore, kHits, kClock, kTime };
const float kRoundSeconds = 20.0f, kDemoRoundSeconds = 3.0f;
const float kHitsForBonus = 8.0f;
const unsigned kPointsPerHit = 10, kBonusPoints = 50;
// In the demo the coin is hit this often.
const float kDemoHitSeconds = 0.3f;
} // namespace

PlayScreen::PlayScreen(KioskApp& app)
    : KioskScreen(app, L"Play", D3DCOLOR_XRGB(110, 60, 10), D3DCOLOR_XRGB(250, 250, 250)) {}

void PlayScreen::Build() {
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f), gold(1.0f, 0.85f, 0.3f, 1.0f);
    wchar_t player[64];
    std::swprintf(player, 64, L"Player: %ls", m_app.PlayerName());
    ZQRect playerRect(20.0f, 76.0f, 620.0f, 110.0f), scoreRect(20.0f, 130.0f, 200.0f, 160.0f);
    ZQRect timeRect(20.0f, 396.0f, 150.0f, 422.0f);
    m_dialog->AddStatic(kPlayer, m_app.NameFont(), player, playerRect, white, DT_LEFT | DT_VCENTER);
    m_dialog->AddStatic(kScoreLabel, m_app.TextFont(), L"Score", scoreRect, gold, DT_LEFT | DT_VCENTER);
    m_dialog->AddStatic(kTimeLabel, m_app.TextFont(), L"Time", timeRect, gold, DT_LEFT | DT_VCENTER);

    D3DXVECTOR3 coin(320.0f, 250.0f, 0.0f), score(320.0f, 130.0f, 0.0f);
    m_dialog->AddButton(kCoinButton, L"coin", L"coin", L"star", L"coin", coin, true);
    m_dialog->GetButton(kCoinButton)->SetSound(L"Click", nullptr);
    m_dialog->AddNumber(kScore, L"digit", score, 4.0f, DT_CENTER);

    // The hits towards the bonus climb up the right side; the round's clock climbs the left.
    ZQRect hits(560.0f, 340.0f, 560.0f, 180.0f), clock(80.0f, 340.0f, 80.0f, 180.0f);
    m_dialog->AddGauge(kHits, L"marker", L"track_up", hits, kHitsForBonus);
    m_dialog->AddTimeGauge(kClock, L"marker", L"track_up", clock, m_app.Demo() ? kDemoRoundSeconds : kRoundSeconds);
    D3DXVECTOR3 bar(166.0f, 400.0f, 0.0f), frame(162.0f, 396.0f, 0.0f);
    m_dialog->AddTimeBar(kTime, L"bar", L"barframe", bar, frame, m_app.Demo() ? kDemoRoundSeconds : kRoundSeconds, 1);
    m_over = false;
    m_demoHitTime = 0.0f;

    // Left of the coin, its hinge at the back, seen a little from above; the camera stays at the origin
    // looking along +z.
    m_camera = new _3D::ZQ3DCamera(m_app.GetDevice());
    m_prize = new _3D::ZQ3DRenderSingle(m_app.Models());
    if (m_prize->Entry(L"prize", D3DXVECTOR3(-2.9f, -0.9f, 12.0f))) {
        m_prize->SetRotation(D3DX_PI, 0.35f, 0.0f);
        m_prize->Play(L"Spin", -1, 0.0f);
    }
    m_shake.SetAction(false);
}

void PlayScreen::Leave() {
    delete m_prize;
    m_prize = nullptr;
    delete m_camera;
    m_camera = nullptr;
}

void PlayScreen::Draw(IDirect3DDevice9* device, double time, float elapsed) {
    if (!m_prize)
        return;
    m_camera->SetPosition(m_shake.GetPosition());
    m_camera->BeginScene(elapsed);
    m_prize->OnFrameRender(device, time, elapsed, nullptr);
    m_camera->EndScene();
}

void PlayScreen::Hit() {
    if (m_over || !m_dialog)
        return;
    m_dialog->GetNumber(kScore)->Plus(kPointsPerHit);
    ZQDialogGauge* hits = m_dialog->GetGauge(kHits);
    hits->SetPos(hits->GetPos() + 1.0f);
}

void PlayScreen::OnEvent(unsigned int id, int, int) {
    switch (id) {
    case kCoinButton:
        Hit();
        break;
    case kHits:
        m_dialog->GetNumber(kScore)->Plus(kBonusPoints);
        if (m_prize) {
            m_prize->Play(L"Open", 1, 0.25f);
            m_shake.SetAction(true);
        }
        m_app.Log(D3DXCOLOR(1.0f, 0.85f, 0.3f, 1.0f), L"Bonus for %ls", m_app.PlayerName());
        break;
    case kTime:
        // The round is over: once, even if the bar were to report again.
        if (m_over)
            break;
        m_over = true;
        m_app.Log(D3DXCOLOR(0.6f, 1.0f, 0.6f, 1.0f), L"%ls scored %u", m_app.PlayerName(),
                  static_cast<unsigned>(m_dialog->GetNumber(kScore)->GetNumber()));
        m_app.Show(kAttract);
        break;
    default:
        break;
    }
}

void PlayScreen::Move(double, float elapsed) {
    m_shake.SetTime(elapsed);
    if (!m_app.Demo())
        return;
    m_demoHitTime += elapsed;
    if (m_demoHitTime >= kDemoHitSeconds) {
        m_demoHitTime = 0.0f;
        Hit();
    }
}

void PlayScreen::Key(UINT key) {
    if (key == VK_SPACE) {
        m_app.Click();
        Hit();
    }
}
