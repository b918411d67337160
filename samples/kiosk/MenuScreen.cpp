// The menu: Play (takes a credit and asks for the player's name), back to the attract loop, a check
// box for the music and a radio group choosing the title band's colour. The buttons click.
#include "Screens.h"

using namespace ZQ;

namespace {
enum MenuId : unsigned int { kPlayButton = 1, kAttractButton, kMusicBox, kGoldBanner, kWhiteBanner };
const int kBannerGroup = 1;
} // namespace

MenuScreen::MenuScreen(KioskApp& app)
    : KioskScreen(app, L"Choose", D3DCOLOR_XRGB(16, 80, 40), D3DCOLOR_XRGB(240, 200, 40)) {}

// Buttons are pixel-exact, with a click on press and on release.
void MenuScreen::Build() {
    D3DXVECTOR3 play(320.0f, 170.0f, 0.0f), attract(320.0f, 260.0f, 0.0f), music(200.0f, 360.0f, 0.0f);
    D3DXVECTOR3 gold(380.0f, 360.0f, 0.0f), white(480.0f, 360.0f, 0.0f);
    m_dialog->AddButton(kPlayButton, L"button", L"button_down", L"button_over", L"button", play, true);
    m_dialog->AddButton(kAttractButton, L"button", L"button_down", L"button_over", L"button", attract, true);
    m_dialog->GetButton(kPlayButton)->SetSound(L"Click", L"Click");
    m_dialog->GetButton(kAttractButton)->SetSound(L"Click", L"Click");
    m_dialog->AddCheckBox(kMusicBox, L"coin", L"star", L"coin", L"coin", music, false);
    m_dialog->GetCheckBox(kMusicBox)->SetSound(L"Click", nullptr);
    // The controls start as the kiosk is now: the music playing or not, the band's colour.
    m_dialog->GetCheckBox(kMusicBox)->SetChecked(m_app.Sound() && m_app.Sound()->isPlay(L"Music"));
    const bool whiteBand = m_banner == D3DCOLOR_XRGB(250, 250, 250);
    m_dialog->AddRadioButton(kGoldBanner, kBannerGroup, L"arrow", L"star", L"arrow", L"arrow", gold, true, false);
    m_dialog->AddRadioButton(kWhiteBanner, kBannerGroup, L"arrow", L"star", L"arrow", L"arrow", white, whiteBand,
                             false);
}

void MenuScreen::OnEvent(unsigned int id, int, int) {
    switch (id) {
    case kPlayButton:
        if (m_app.TakeCredit())
            m_app.Show(kName);
        break;
    case kAttractButton:
        m_app.Show(kAttract);
        break;
    case kMusicBox:
        m_app.Music(m_dialog->GetCheckBox(kMusicBox)->GetChecked());
        break;
    case kGoldBanner:
        m_banner = D3DCOLOR_XRGB(240, 200, 40);
        break;
    case kWhiteBanner:
        m_banner = D3DCOLOR_XRGB(250, 250, 250);
        break;
    default:
        break;
    }
}

void MenuScreen::Draw(IDirect3DDevice9*, double, float) {
    m_app.DrawLabel(L"Play", {240, 146, 400, 194}, DT_CENTER);
    m_app.DrawLabel(L"Attract loop", {240, 236, 400, 284}, DT_CENTER);
    m_app.DrawLabel(L"Music", {236, 344, 330, 376}, DT_LEFT);
    m_app.DrawLabel(L"Gold", {356, 384, 404, 408}, DT_CENTER);
    m_app.DrawLabel(L"White", {452, 384, 508, 408}, DT_CENTER);
}
