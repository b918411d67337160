#include "ZQ/dialog/ZQDialogTimeGauge.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

namespace ZQ {

ZQDialogTimeGauge::ZQDialogTimeGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
           _ZQResponseDialog_tag* response)
    : ZQDialogTimeGauge(sprite, id, marker, nullptr, rect, range, response) {}

ZQDialogTimeGauge::ZQDialogTimeGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect,
           float range, _ZQResponseDialog_tag* response)
    : m_sprite(sprite), m_rect(rect), m_range(range), m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_marker = marker;
    m_background = background;
}

ZQDialogTimeGauge::ZQDialogTimeGauge(const ZQDialogTimeGauge& other) : ZQDialogResponseEvent(other) {
    InitializeCriticalSection(&m_lock);
    CopyFrom(other);
}

ZQDialogTimeGauge& ZQDialogTimeGauge::operator=(const ZQDialogTimeGauge& other) {
    if (this != &other) {
        ZQDialogResponseEvent::operator=(other);
        CopyFrom(other);
    }
    return *this;
}

void ZQDialogTimeGauge::CopyFrom(const ZQDialogTimeGauge& other) {
    m_sprite = other.m_sprite;
    Assign(m_marker, other.m_marker);
    Assign(m_background, other.m_background);
    m_rect = other.m_rect;
    m_range = other.m_range;
    m_value = other.m_value;
    m_markerPosition = other.m_markerPosition;
    m_colour = other.m_colour;
    m_disabled = other.m_disabled;
    m_visible = other.m_visible;
    m_finished = other.m_finished;
    m_id = other.m_id;
}

ZQDialogTimeGauge::~ZQDialogTimeGauge() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogTimeGauge::SetPos(float value) {
    ZQLock lock(&m_lock);
    m_value = value;
}

float ZQDialogTimeGauge::GetPos() {
    ZQLock lock(&m_lock);
    return m_value;
}

void ZQDialogTimeGauge::SetRange(float range) {
    ZQLock lock(&m_lock);
    m_range = range;
}

float ZQDialogTimeGauge::GetRange() {
    ZQLock lock(&m_lock);
    return m_range;
}

void ZQDialogTimeGauge::SetVisible(bool visible) {
    ZQLock lock(&m_lock);
    m_visible = visible;
}

bool ZQDialogTimeGauge::GetVisible() {
    ZQLock lock(&m_lock);
    return m_visible;
}

void ZQDialogTimeGauge::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogTimeGauge::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogTimeGauge::SetSprite(const wchar_t* marker) {
    ZQLock lock(&m_lock);
    m_marker = marker;
}

void ZQDialogTimeGauge::Reset() {
    ZQLock lock(&m_lock);
    m_value = 0.0f;
    m_visible = true;
    m_colour = kEnabledColour;
    m_disabled = false;
    m_finished = false;
}

D3DXVECTOR3 ZQDialogTimeGauge::Delta() {
    ZQLock lock(&m_lock);
    return m_markerPosition;
}

unsigned int ZQDialogTimeGauge::GetId() {
    return m_id;
}

void ZQDialogTimeGauge::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    ZQLock lock(&m_lock);
    if (m_disabled)
        return;
    m_value += elapsed;
    if (m_value / m_range >= 1.0f) {
        m_value = m_range;
        if (!m_finished && GetResponse()) {
            m_finished = true;
            _ZQResponseDialog_tag* response = GetResponse();
            ZQUnLock unlock(&m_lock);
            response->OnEvent(m_id, 0, 0);
        }
    }
    const float t = m_value / m_range;
    m_markerPosition = D3DXVECTOR3(m_rect.left + t * (m_rect.right - m_rect.left),
                                   m_rect.top + t * (m_rect.bottom - m_rect.top), 0.0f);
}

void ZQDialogTimeGauge::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(&m_lock);
    if (!m_visible || !m_sprite)
        return;
    if (!m_background.empty()) {
        D3DXVECTOR3 corner(m_rect.left, m_rect.top, 0.0f);
        m_sprite->Render(m_background, corner, m_colour, 0);
    }
    m_sprite->Render(m_marker, m_markerPosition, m_colour, 0);
}

} // namespace ZQ
