#include "ZQ/dialog/ZQDialogEditBox.h"

#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQDialogEditBox::ZQDialogEditBox(ZQSprite* sprite, unsigned int id, ID3DXFont* font, ZQRect& rect, D3DXCOLOR& colour,
                                 unsigned long format)
    : m_sprite(sprite), m_font(font), m_format(format), m_rect(rect), m_colour(colour), m_id(id) {
    InitializeCriticalSection(&m_lock);
    D3DXFONT_DESCW desc = {};
    // A font that reports no character width gives no room rather than a division by zero.
    if (font && SUCCEEDED(font->GetDescW(&desc))) {
        if (desc.Width > 0)
            m_maxLength = static_cast<int>(rect.right - rect.left) / static_cast<int>(desc.Width) - 1;
        if (m_rect.bottom - m_rect.top < static_cast<float>(desc.Height))
            m_rect.bottom = m_rect.top + static_cast<float>(desc.Height);
    }
}

ZQDialogEditBox::~ZQDialogEditBox() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogEditBox::SetAcquire(bool acquire) {
    ZQLock lock(&m_lock);
    m_acquired = acquire;
    if (acquire) {
        m_full += L"|";
        m_display += L"|";
    } else {
        Convert_NoLock(false);
    }
}

bool ZQDialogEditBox::GetAcquire() {
    ZQLock lock(&m_lock);
    return m_acquired;
}

void ZQDialogEditBox::SetPassword(bool password) {
    ZQLock lock(&m_lock);
    m_password = password;
}

bool ZQDialogEditBox::GetPassword() {
    ZQLock lock(&m_lock);
    return m_password;
}

void ZQDialogEditBox::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    m_disabled = disable;
}

bool ZQDialogEditBox::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogEditBox::SetColor(D3DXCOLOR colour) {
    ZQLock lock(&m_lock);
    m_colour = colour;
}

D3DXCOLOR ZQDialogEditBox::GetColor() {
    ZQLock lock(&m_lock);
    return m_colour;
}

void ZQDialogEditBox::SetShadow(int offset, D3DXCOLOR& colour) {
    ZQLock lock(&m_lock);
    m_shadowOffset = offset;
    m_shadowColour = colour;
}

ZQRect ZQDialogEditBox::GetRect() {
    ZQLock lock(&m_lock);
    return m_rect;
}

const wchar_t* ZQDialogEditBox::GetText() {
    ZQLock lock(&m_lock);
    return m_committed;
}

const wchar_t* ZQDialogEditBox::GetDisplay() {
    ZQLock lock(&m_lock);
    return m_display;
}

bool ZQDialogEditBox::empty() {
    ZQLock lock(&m_lock);
    return m_acquired ? m_full.size() < 2 : m_full.empty();
}

void ZQDialogEditBox::Clear() {
    ZQLock lock(&m_lock);
    m_display.clear();
    m_full.clear();
    m_composition.clear();
    m_committed.clear();
}

void ZQDialogEditBox::Convert_NoLock(bool withCaret) {
    m_full.clear();
    m_full += m_committed;
    m_full += m_composition;
    m_display.clear();
    m_display += m_full;
    if (m_password)
        m_display.password();
    if (withCaret && m_acquired) {
        m_full += L"|";
        m_display += L"|";
    }
}

unsigned int ZQDialogEditBox::GetId() {
    return m_id;
}

LRESULT ZQDialogEditBox::OnMsgProc(HWND, UINT msg, WPARAM, LPARAM, bool*, void*) {
    return msg;
}

HRESULT ZQDialogEditBox::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQDialogEditBox::OnLostDevice(void*) {}

void ZQDialogEditBox::OnFrameMove(IDirect3DDevice9*, double, float, void*) {}

void ZQDialogEditBox::OnFrameRender(IDirect3DDevice9*, double, float, void*) {}

} // namespace ZQ
