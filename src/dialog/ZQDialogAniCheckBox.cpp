#include "ZQ/dialog/ZQDialogAniCheckBox.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

#include <new>

namespace ZQ {

ZQDialogAniCheckBox::ZQDialogAniCheckBox(ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* normal,
                                     const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled,
                                     ZQRect& rect, _ZQResponseDialog_tag* response, const wchar_t* maskChunk)
    : m_animate(animate), m_sprite(animate ? animate->GetSprite() : nullptr),
      m_player(animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr), m_sound(sound),
      m_position(rect.left, rect.top, 0.0f), m_hit(rect),
      m_markPlayer(animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr), m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_normal = normal;
    m_second = pressed;
    m_overName = over;
    m_disabledName = disabled;
    Show(m_normal);
    InitAniHit(*this, m_sprite, maskChunk, m_position, m_maskChunk, m_hit, m_pixelExact);
}

ZQDialogAniCheckBox::~ZQDialogAniCheckBox() {
    delete m_markPlayer;
    delete m_player;
    DeleteCriticalSection(&m_lock);
}

void ZQDialogAniCheckBox::Show(const ZQString& name) {
    if (m_shown == name && !m_shown.empty())
        return;
    Assign(m_shown, name);
    if (m_player)
        m_player->Entry(m_shown, m_position, true, -1, true);
}

void ZQDialogAniCheckBox::SetChecked(bool checked) {
    ZQLock lock(&m_lock);
    if (checked) {
        if (m_shownMark == m_second && !m_shownMark.empty())
            return;
        Assign(m_shownMark, m_second);
        if (m_markPlayer)
            m_markPlayer->Entry(m_shownMark, m_position, true, -1, true);
    } else {
        m_shownMark.clear();
        if (m_markPlayer)
            m_markPlayer->clear();
    }
}

bool ZQDialogAniCheckBox::GetChecked() {
    ZQLock lock(&m_lock);
    return !m_shownMark.empty();
}

void ZQDialogAniCheckBox::SetSprite(const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                                  const wchar_t* disabled) {
    ZQLock lock(&m_lock);
    m_normal = normal;
    m_second = pressed;
    m_overName = over;
    m_disabledName = disabled;
}

void ZQDialogAniCheckBox::SetSound(const wchar_t* click, const wchar_t* over) {
    ZQLock lock(&m_lock);
    if (click)
        m_clickSound = click;
    if (over)
        m_overSound = over;
}

void ZQDialogAniCheckBox::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    Show(disable ? m_disabledName : m_normal);
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogAniCheckBox::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogAniCheckBox::SetShow(bool show) {
    ZQLock lock(&m_lock);
    m_show = show;
}

bool ZQDialogAniCheckBox::GetShow() {
    ZQLock lock(&m_lock);
    return m_show;
}

bool ZQDialogAniCheckBox::GetOvered() {
    ZQLock lock(&m_lock);
    return m_over;
}

unsigned int ZQDialogAniCheckBox::GetId() {
    return m_id;
}

void ZQDialogAniCheckBox::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(&m_lock);
    if (!m_show)
        return;
    if (m_player)
        m_player->OnFrameRender(device, time, elapsed, context);
    if (m_markPlayer && !m_shownMark.empty())
        m_markPlayer->OnFrameRender(device, time, elapsed, context);
}

void ZQDialogAniCheckBox::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y,
                                void*) {
    ZQLock lock(&m_lock);
    const bool over = IsOver(m_hit, x, y);
    const bool maskPasses = !m_pixelExact || check(x, y);
    switch (TrackMouse({m_over, m_pressed, m_sound, m_overSound, m_clickSound}, down, left, right, middle,
                       !m_disabled && m_show, over, maskPasses)) {
    case MouseStep::Press:
        SetChecked(m_shownMark.empty()); // the lock is re-entrant
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
