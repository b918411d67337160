#include "ZQ/dialog/ZQDialogAniButton.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

#include <new>

namespace ZQ {

ZQDialogAniButton::ZQDialogAniButton(ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* normal,
                                     const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled,
                                     ZQRect& rect, _ZQResponseDialog_tag* response, const wchar_t* maskChunk)
    : m_animate(animate), m_sprite(animate ? animate->GetSprite() : nullptr),
      m_player(animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr), m_sound(sound),
      m_position(rect.left, rect.top, 0.0f), m_hit(rect), m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_normal = normal;
    m_second = pressed;
    m_overName = over;
    m_disabledName = disabled;
    Show(m_normal);
    InitAniHit(*this, m_sprite, maskChunk, m_position, m_maskChunk, m_hit, m_pixelExact);
}

ZQDialogAniButton::~ZQDialogAniButton() {
    delete m_player;
    DeleteCriticalSection(&m_lock);
}

void ZQDialogAniButton::Show(const ZQString& name) {
    if (m_shown == name && !m_shown.empty())
        return;
    Assign(m_shown, name);
    if (m_player)
        m_player->Entry(m_shown, m_position, true, -1, true);
}

void ZQDialogAniButton::SetSprite(const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                                  const wchar_t* disabled) {
    ZQLock lock(&m_lock);
    m_normal = normal;
    m_second = pressed;
    m_overName = over;
    m_disabledName = disabled;
}

void ZQDialogAniButton::SetSound(const wchar_t* click, const wchar_t* over) {
    ZQLock lock(&m_lock);
    if (click)
        m_clickSound = click;
    if (over)
        m_overSound = over;
}

void ZQDialogAniButton::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    Show(disable ? m_disabledName : m_normal);
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogAniButton::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogAniButton::SetShow(bool show) {
    ZQLock lock(&m_lock);
    m_show = show;
}

bool ZQDialogAniButton::GetShow() {
    ZQLock lock(&m_lock);
    return m_show;
}

bool ZQDialogAniButton::GetOvered() {
    ZQLock lock(&m_lock);
    return m_over;
}

unsigned int ZQDialogAniButton::GetId() {
    return m_id;
}

void ZQDialogAniButton::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(&m_lock);
    if (m_show && m_player)
        m_player->OnFrameRender(device, time, elapsed, context);
}

void ZQDialogAniButton::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y,
                                void*) {
    ZQLock lock(&m_lock);
    const bool over = IsOver(m_hit, x, y);
    const bool maskPasses = !m_pixelExact || check(x, y);
    switch (TrackMouse({m_over, m_pressed, m_sound, m_overSound, m_clickSound}, down, left, right, middle,
                       !m_disabled && m_show, over, maskPasses)) {
    case MouseStep::Press:
        Show(m_second);
        break;
    case MouseStep::ReleaseOutside:
    case MouseStep::MoveOverClear:
    case MouseStep::MoveOff:
        Show(m_normal);
        break;
    case MouseStep::MoveOver:
        Show(m_overName);
        break;
    case MouseStep::ReleaseOver:
        Show(m_overName);
        ReportUnlocked(GetResponse(), &m_lock, m_id, x, y);
        break;
    case MouseStep::Nothing:
        break;
    }
}

} // namespace ZQ
