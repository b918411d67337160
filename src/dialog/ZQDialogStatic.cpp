#include "ZQ/dialog/ZQDialogStatic.h"

#include "ZQ/core/ZQLock.h"
#include "src/core/ZQLockedAccessors.h"
#include "src/dialog/ZQTextTarget.h"

#include <new>

namespace ZQ {

ZQDialogStatic::ZQDialogStatic(ZQSprite* sprite, unsigned int id, ID3DXFont* font, const wchar_t* text, ZQRect& rect,
                               D3DXCOLOR& colour, unsigned long format)
    : m_target(new (std::nothrow) ZQTextTarget(sprite ? sprite->Getd3dDevice() : nullptr,
                                               static_cast<int>(rect.right - rect.left),
                                               static_cast<int>(rect.bottom - rect.top))),
      m_sprite(sprite), m_font(font), m_format(format), m_position(rect.left, rect.top, 0.0f), m_colour(colour),
      m_rect(0.0f, 0.0f, static_cast<float>(static_cast<int>(rect.right - rect.left)),
             static_cast<float>(static_cast<int>(rect.bottom - rect.top))),
      m_id(id) {
    m_text = text;
}

ZQDialogStatic::~ZQDialogStatic() {
    delete m_target;
}

void ZQDialogStatic::SetText(const wchar_t* text, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    m_text.clear();
    m_text = text;
    m_colour = colour;
}

void ZQDialogStatic::SetShadow(int offset, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    m_shadowOffset = offset;
    m_shadowColour = colour;
}

ZQ_LOCKED_ACCESSORS(ZQDialogStatic, D3DXVECTOR3, Pos, m_position)

ZQ_LOCKED_ACCESSORS(ZQDialogStatic, bool, Visible, m_visible)

void ZQDialogStatic::SetDisable(bool disable) {
    ZQLock lock(m_lock);
    m_disabled = disable;
    m_colour.a = m_shadowColour.a = disable ? 0.5f : 1.0f;
}

bool ZQDialogStatic::GetDisable() {
    return m_lock.Read(m_disabled);
}

D3DXCOLOR ZQDialogStatic::GetColor() {
    return m_lock.Read(m_colour);
}

unsigned int ZQDialogStatic::GetId() {
    return m_id;
}

ZQ_TEXT_TARGET_DEVICE(ZQDialogStatic)

void ZQDialogStatic::OnFrameMove(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    if (!m_visible || !m_font || !m_target || !m_target->Begin())
        return;
    m_target->DrawText(m_font, m_text, m_rect, m_format, m_colour, m_shadowOffset, m_shadowColour);
    m_target->End();
}

void ZQDialogStatic::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    if (m_visible && m_target)
        m_target->Draw(m_sprite, m_position, m_colour);
}

} // namespace ZQ
