// The name entry: a prompt, an edit box that takes typed text and the input method's compositions
// (the first edit box of a dialog has the focus at once), and the kiosk's event log: coins, names and
// screen changes, newest at the bottom. Return takes the name and starts the round.
#include "Screens.h"

#include <imm.h>

using namespace ZQ;

namespace {
enum NameId : unsigned int { kPrompt = 1, kNameBox, kLog };
} // namespace

NameScreen::NameScreen(KioskApp& app)
    : KioskScreen(app, L"Your name", D3DCOLOR_XRGB(60, 30, 90), D3DCOLOR_XRGB(120, 200, 250)) {}

void NameScreen::Build() {
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f), shadow(0.0f, 0.0f, 0.0f, 0.8f);
    ZQRect prompt(100.0f, 80.0f, 540.0f, 110.0f), name(120.0f, 120.0f, 520.0f, 160.0f),
        log(100.0f, 190.0f, 540.0f, 430.0f);
    m_dialog->AddStatic(kPrompt, m_app.TextFont(), L"Type your name, then press Return", prompt, white, DT_CENTER);
    m_dialog->AddEditBox(kNameBox, m_app.NameFont(), name, white, DT_LEFT | DT_VCENTER | DT_SINGLELINE);
    m_dialog->GetEditBox(kNameBox)->SetShadow(2, shadow);
    m_dialog->AddListBox(kLog, m_app.TextFont(), log);
    ZQDialogListBox* listBox = m_dialog->GetListBox(kLog);
    listBox->SetShadow(1, shadow);
    for (int i = 0; i < m_app.LogCount(); ++i) {
        const KioskApp::LogLine& line = m_app.LogAt(i);
        D3DXCOLOR colour = line.colour;
        listBox->SetText(line.text, colour);
    }
    m_app.SetLiveLog(listBox);
    // Letters go straight into the box until the customer turns the input method's native mode on
    // (a new input context may start in it, where the box leaves letters to the composition).
    HWND hWnd = m_app.GethWnd();
    if (HIMC context = ImmGetContext(hWnd)) {
        ImmSetConversionStatus(context, IME_CMODE_ALPHANUMERIC, IME_SMODE_NONE);
        ImmReleaseContext(hWnd, context);
    }
}

// Dark panels under the name and the log.
void NameScreen::Backdrop(IDirect3DDevice9* device) {
    static const D3DRECT kPanels[] = {{112, 116, 528, 164}, {92, 186, 548, 434}};
    device->Clear(2, kPanels, D3DCLEAR_TARGET, D3DCOLOR_XRGB(24, 10, 40), 1.0f, 0);
}

// Only a built screen has handed its list box to the log (and the application may be gone when the
// screen is deleted).
void NameScreen::Leave() {
    if (m_dialog)
        m_app.SetLiveLog(nullptr);
}

void NameScreen::Key(UINT key) {
    ZQDialogEditBox* name = m_dialog ? m_dialog->GetEditBox(kNameBox) : nullptr;
    if (key != VK_RETURN || !name)
        return;
    m_app.Click();
    m_app.SetPlayerName(name->GetText());
    m_app.Show(kPlay);
}
