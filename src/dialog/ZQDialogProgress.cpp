#include "ZQ/dialog/ZQDialogProgress.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

namespace ZQ {

ZQDialogProgress::ZQDialogProgress(ZQSprite* sprite, unsigned int id, const wchar_t* bar, const wchar_t* background,
           D3DXVECTOR3& barPosition, D3DXVECTOR3& backgroundPosition, float full, unsigned long direction,
           _ZQResponseDialog_tag* response)
    : m_sprite(sprite), m_full(full), m_barPosition(barPosition), m_backgroundPosition(backgroundPosition),
      m_direction(direction), m_id(id) {
    SetResponse(response);
    m_bar = bar;
    m_background = background;
    if (_ZQTextureChunk_tag* chunk = sprite && bar ? sprite->Trans(bar) : nullptr) {
        const int x = static_cast<int>(barPosition.x), y = static_cast<int>(barPosition.y);
        m_barRect = ZQRect(x, y, x + static_cast<int>(chunk->pixel.width()), y + static_cast<int>(chunk->pixel.height()));
    }
}

ZQDialogProgress::ZQDialogProgress(const ZQDialogProgress& other) : ZQDialogResponseEvent(other) {
    CopyFrom(other);
}

ZQDialogProgress& ZQDialogProgress::operator=(const ZQDialogProgress& other) {
    if (this != &other) {
        ZQDialogResponseEvent::operator=(other);
        CopyFrom(other);
    }
    return *this;
}

void ZQDialogProgress::CopyFrom(const ZQDialogProgress& other) {
    m_sprite = other.m_sprite;
    Assign(m_bar, other.m_bar);
    Assign(m_background, other.m_background);
    m_barRect = other.m_barRect;
    m_full = other.m_full;
    m_value = other.m_value;
    m_tip = other.m_tip;
    m_barPosition = other.m_barPosition;
    m_backgroundPosition = other.m_backgroundPosition;
    m_colour = other.m_colour;
    m_disabled = other.m_disabled;
    m_visible = other.m_visible;
    m_finished = other.m_finished;
    m_direction = other.m_direction;
    m_id = other.m_id;
}

ZQDialogProgress::~ZQDialogProgress() {
}

ZQ_LOCKED_ACCESSORS(ZQDialogProgress, float, Pos, m_value)

ZQ_LOCKED_ACCESSORS(ZQDialogProgress, float, Range, m_full)

void ZQDialogProgress::SetSprite(const wchar_t* bar, const wchar_t* background) {
    ZQLock lock(m_lock);
    m_bar = bar;
    m_background = background;
}

ZQ_VISIBLE_AND_DISABLE(ZQDialogProgress)

ZQ_BAR_RESET(ZQDialogProgress)

D3DXVECTOR3 ZQDialogProgress::Delta() {
    return m_lock.Read(m_tip);
}

unsigned int ZQDialogProgress::GetId() {
    return m_id;
}

float ZQDialogProgress::Fraction() const {
    return m_value / m_full;
}

void ZQDialogProgress::Step(float step) {
    ZQLock lock(m_lock);
    m_value += step;
    if (m_value < 0.0f)
        m_value = 0.0f;
}

void ZQDialogProgress::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    Move(elapsed, false);
}

void ZQDialogProgress::Move(float elapsed, bool timed) {
    ZQLock lock(m_lock);
    if (m_disabled)
        return;
    if (timed)
        m_value += elapsed;
    if (Fraction() >= 1.0f) {
        m_value = m_full;
        if (!m_finished && GetResponse()) {
            m_finished = true;
            ReportUnlocked(GetResponse(), m_lock, m_id, 0, 0);
        }
    }
    const float t = Fraction();
    const ZQRect& r = m_barRect;
    const float middleX = r.left + (r.right - r.left) * 0.5f, middleY = r.top + (r.bottom - r.top) * 0.5f;
    D3DXVECTOR3 from(r.left, r.top, 0.0f), to(r.right, r.bottom, 0.0f);
    switch (m_direction) {
    case 1: from = D3DXVECTOR3(r.left, middleY, 0.0f); to = D3DXVECTOR3(r.right, middleY, 0.0f); break;
    case 2: from = D3DXVECTOR3(r.right, middleY, 0.0f); to = D3DXVECTOR3(r.left, middleY, 0.0f); break;
    case 4: from = D3DXVECTOR3(middleX, r.bottom, 0.0f); to = D3DXVECTOR3(middleX, r.top, 0.0f); break;
    case 8: from = D3DXVECTOR3(middleX, r.top, 0.0f); to = D3DXVECTOR3(middleX, r.bottom, 0.0f); break;
    default: break;
    }
    m_tip = from + (to - from) * t;
    m_tip.z = 0.0f;
}

void ZQDialogProgress::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    if (!m_visible || !m_sprite)
        return;
    if (!m_background.empty())
        m_sprite->Render(m_background, m_backgroundPosition, m_colour, 0);
    if (!m_bar.empty())
        m_sprite->RenderLerp(m_bar, m_barPosition, m_colour, Fraction(), m_direction);
}

} // namespace ZQ
