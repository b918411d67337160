#include "ZQ/dialog/ZQDialogStatic.h"

#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQDialogStatic::ZQDialogStatic(ZQSprite* sprite, unsigned int id, ID3DXFont* font, const wchar_t* text, ZQRect& rect,
                               D3DXCOLOR& colour, unsigned long format)
    : m_sprite(sprite), m_font(font), m_format(format), m_position(rect.left, rect.top, 0.0f), m_colour(colour),
      m_rect(rect), m_id(id) {
    InitializeCriticalSection(&m_lock);
    m_text = text;
}

ZQDialogStatic::~ZQDialogStatic() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogStatic::SetText(const wchar_t* text, D3DXCOLOR& colour) {
    ZQLock lock(&m_lock);
    m_text.clear();
    m_text = text;
    m_colour = colour;
}

void ZQDialogStatic::SetShadow(int offset, D3DXCOLOR& colour) {
    ZQLock lock(&m_lock);
    m_shadowOffset = offset;
    m_shadowColour = colour;
}

void ZQDialogStatic::SetPos(D3DXVECTOR3 position) {
    ZQLock lock(&m_lock);
    m_position = position;
}

D3DXVECTOR3 ZQDialogStatic::GetPos() {
    ZQLock lock(&m_lock);
    return m_position;
}

void ZQDialogStatic::SetVisible(bool visible) {
    ZQLock lock(&m_lock);
    m_visible = visible;
}

bool ZQDialogStatic::GetVisible() {
    ZQLock lock(&m_lock);
    return m_visible;
}

void ZQDialogStatic::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    m_disabled = disable;
    m_colour.a = m_shadowColour.a = disable ? 0.5f : 1.0f;
}

bool ZQDialogStatic::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

D3DXCOLOR ZQDialogStatic::GetColor() {
    ZQLock lock(&m_lock);
    return m_colour;
}

unsigned int ZQDialogStatic::GetId() {
    return m_id;
}

HRESULT ZQDialogStatic::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQDialogStatic::OnLostDevice(void*) {}

void ZQDialogStatic::OnFrameMove(IDirect3DDevice9*, double, float, void*) {}

void ZQDialogStatic::OnFrameRender(IDirect3DDevice9*, double, float, void*) {}

} // namespace ZQ
