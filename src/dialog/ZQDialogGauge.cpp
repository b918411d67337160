#include "ZQ/dialog/ZQDialogGauge.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

namespace ZQ {

ZQDialogGauge::ZQDialogGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
           _ZQResponseDialog_tag* response)
    : ZQDialogGauge(sprite, id, marker, nullptr, rect, range, response) {}

ZQDialogGauge::ZQDialogGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect,
           float range, _ZQResponseDialog_tag* response)
    : m_sprite(sprite), m_rect(rect), m_range(range), m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_marker = marker;
    m_background = background;
}

ZQDialogGauge::ZQDialogGauge(const ZQDialogGauge& other) : ZQDialogResponseEvent(other) {
    InitializeCriticalSection(&m_lock);
    CopyFrom(other);
}

ZQDialogGauge& ZQDialogGauge::operator=(const ZQDialogGauge& other) {
    if (this != &other) {
        ZQDialogResponseEvent::operator=(other);
        CopyFrom(other);
    }
    return *this;
}

void ZQDialogGauge::CopyFrom(const ZQDialogGauge& other) {
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

ZQDialogGauge::~ZQDialogGauge() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogGauge::SetPos(float value) {
    ZQLock lock(&m_lock);
    m_value = value;
}

float ZQDialogGauge::GetPos() {
    ZQLock lock(&m_lock);
    return m_value;
}

void ZQDialogGauge::SetRange(float range) {
    ZQLock lock(&m_lock);
    m_range = range;
}

float ZQDialogGauge::GetRange() {
    ZQLock lock(&m_lock);
    return m_range;
}

void ZQDialogGauge::SetVisible(bool visible) {
    ZQLock lock(&m_lock);
    m_visible = visible;
}

bool ZQDialogGauge::GetVisible() {
    ZQLock lock(&m_lock);
    return m_visible;
}

void ZQDialogGauge::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogGauge::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogGauge::SetSprite(const wchar_t* marker) {
    ZQLock lock(&m_lock);
    m_marker = marker;
}

void ZQDialogGauge::Reset() {
    ZQLock lock(&m_lock);
    m_value = 0.0f;
    m_visible = true;
    m_colour = kEnabledColour;
    m_disabled = false;
    m_finished = false;
}

D3DXVECTOR3 ZQDialogGauge::Delta() {
    ZQLock lock(&m_lock);
    return m_markerPosition;
}

unsigned int ZQDialogGauge::GetId() {
    return m_id;
}

void ZQDialogGauge::OnFrameMove(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(&m_lock);
    if (m_disabled)
        return;
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

void ZQDialogGauge::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
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
