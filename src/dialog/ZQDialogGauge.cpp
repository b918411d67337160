#include "ZQ/dialog/ZQDialogGauge.h"

#include "ZQ/core/ZQLock.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderSingle.h"
#include "src/dialog/ZQDialogSupport.h"

#include <new>

namespace ZQ {

ZQDialogGauge::ZQDialogGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
                             _ZQResponseDialog_tag* response)
    : ZQDialogGauge(sprite, id, marker, nullptr, rect, range, response) {}

ZQDialogGauge::ZQDialogGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, const wchar_t* background,
                             ZQRect& rect, float range, _ZQResponseDialog_tag* response)
    : m_animate(nullptr), m_sprite(sprite), m_player(nullptr), m_rect(rect), m_range(range), m_id(id) {
    SetResponse(response);
    m_marker = marker;
    m_background = background;
}

ZQDialogGauge::ZQDialogGauge(ZQAnimate* animate, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
                             _ZQResponseDialog_tag* response)
    : ZQDialogGauge(animate, id, marker, nullptr, rect, range, response) {}

ZQDialogGauge::ZQDialogGauge(ZQAnimate* animate, unsigned int id, const wchar_t* marker, const wchar_t* background,
                             ZQRect& rect, float range, _ZQResponseDialog_tag* response)
    : ZQDialogGauge(animate ? animate->GetSprite() : nullptr, id, marker, background, rect, range, response) {
    m_animate = animate;
    m_player = animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr;
}

ZQDialogGauge::~ZQDialogGauge() {
    delete m_player;
}

ZQ_LOCKED_ACCESSORS(ZQDialogGauge, float, Pos, m_value)

ZQ_LOCKED_ACCESSORS(ZQDialogGauge, float, Range, m_range)

ZQ_VISIBLE_AND_DISABLE(ZQDialogGauge)

void ZQDialogGauge::SetSprite(const wchar_t* marker) {
    ZQLock lock(m_lock);
    if (!marker)
        return;
    m_marker.clear();
    m_marker += marker;
    if (m_markerStarted)
        m_player->Entry(m_marker, m_markerPosition, true, -1, true);
}

ZQ_BAR_RESET(ZQDialogGauge)

D3DXVECTOR3 ZQDialogGauge::Delta() {
    return m_lock.Read(m_markerPosition);
}

unsigned int ZQDialogGauge::GetId() {
    return m_id;
}

void ZQDialogGauge::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    Move(elapsed, false);
}

void ZQDialogGauge::Move(float elapsed, bool timed) {
    ZQLock lock(m_lock);
    if (m_disabled)
        return;
    if (timed)
        m_value += elapsed;
    if (m_value / m_range >= 1.0f) {
        m_value = m_range;
        if (!m_finished && GetResponse()) {
            m_finished = true;
            ReportUnlocked(GetResponse(), m_lock, m_id, 0, 0);
        }
    }
    const float t = m_value / m_range;
    m_markerPosition = D3DXVECTOR3(m_rect.left + t * (m_rect.right - m_rect.left),
                                   m_rect.top + t * (m_rect.bottom - m_rect.top), 0.0f);
    if (!m_player)
        return;
    if (!m_markerStarted)
        m_markerStarted = m_player->Entry(m_marker, m_markerPosition, true, -1, true);
    else
        m_player->SetMove(m_markerPosition);
}

void ZQDialogGauge::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(m_lock);
    if (!m_visible || !m_sprite)
        return;
    if (!m_background.empty()) {
        D3DXVECTOR3 corner(m_rect.left, m_rect.top, 0.0f);
        m_sprite->Render(m_background, corner, m_colour, 0);
    }
    if (m_markerStarted)
        m_player->OnFrameRender(device, time, elapsed, context);
    else
        m_sprite->Render(m_marker, m_markerPosition, m_colour, 0);
}

} // namespace ZQ
