#include "ZQ/dialog/ZQDialogAniRadioButton.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

#include <new>

namespace ZQ {

ZQDialogAniRadioButton::ZQDialogAniRadioButton(ZQAnimate* animate, ZQSound* sound, unsigned int id,
                                               unsigned int group, const wchar_t* normal,
                                     const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled,
                                     ZQRect& rect, _ZQResponseDialog_tag* response, const wchar_t* maskChunk)
    : m_animate(animate), m_sprite(animate ? animate->GetSprite() : nullptr),
      m_player(animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr), m_sound(sound),
      m_position(rect.left, rect.top, 0.0f), m_hit(rect), m_group(group), m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_normal = normal;
    m_second = pressed;
    m_overName = over;
    m_disabledName = disabled;
    Show(m_normal);
    InitAniHit(*this, m_sprite, maskChunk, m_position, m_maskChunk, m_hit, m_pixelExact);
}

ZQDialogAniRadioButton::~ZQDialogAniRadioButton() {
    delete m_player;
    DeleteCriticalSection(&m_lock);
}

void ZQDialogAniRadioButton::Show(const ZQString& name) {
    if (m_shown == name && !m_shown.empty())
        return;
    Assign(m_shown, name);
    if (m_player)
        m_player->Entry(m_shown, m_position, true, -1, true);
}



void ZQDialogAniRadioButton::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    Show(disable ? m_disabledName : m_selected ? m_second : m_normal);
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogAniRadioButton::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}


bool ZQDialogAniRadioButton::GetShow() {
    ZQLock lock(&m_lock);
    return m_show;
}


void ZQDialogAniRadioButton::SetSelect(bool select) {
    ZQLock lock(&m_lock);
    m_selected = select;
    Show(select ? m_second : m_disabled ? m_disabledName : m_normal);
    m_pressed = select;
}

bool ZQDialogAniRadioButton::GetSelect() {
    ZQLock lock(&m_lock);
    return m_selected;
}

bool ZQDialogAniRadioButton::GetMask() {
    ZQLock lock(&m_lock);
    return m_pixelExact;
}

ZQRect ZQDialogAniRadioButton::GetRect() {
    ZQLock lock(&m_lock);
    return m_hit;
}

unsigned int ZQDialogAniRadioButton::GetGroup() {
    return m_group;
}

unsigned int ZQDialogAniRadioButton::GetId() {
    return m_id;
}

void ZQDialogAniRadioButton::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(&m_lock);
    if (m_show && m_player)
        m_player->OnFrameRender(device, time, elapsed, context);
}

// The sound names stay empty (a radio button has no sound setter), so a radio button plays nothing.
void ZQDialogAniRadioButton::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y,
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
        Show(m_selected ? m_second : m_normal);
        m_pressed = m_selected;
        break;
    case MouseStep::MoveOver:
        Show(m_overName);
        break;
    case MouseStep::MoveOverClear:
        Show(m_normal);
        break;
    case MouseStep::MoveOff:
        Show(m_selected ? m_second : m_normal);
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
