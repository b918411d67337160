#include "ZQ/dialog/ZQDialogButton.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

namespace ZQ {

ZQDialogButton::ZQDialogButton(ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* normal,
                               const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled,
                               D3DXVECTOR3& position, _ZQResponseDialog_tag* response, bool pixelExact)
    : m_sprite(sprite), m_sound(sound), m_colour(kEnabledColour), m_position(position), m_pixelExact(pixelExact),
      m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_normal = normal;
    m_pressedName = pressed;
    m_overName = over;
    m_disabledName = disabled;
    m_shown = normal;
    _ZQTextureChunk_tag* chunk = nullptr;
    m_hit = ChunkHitRect(sprite, normal, position, &chunk);
    if (pixelExact && chunk)
        GetTexImage(chunk, m_position);
}

ZQDialogButton::ZQDialogButton(const ZQDialogButton& other)
    : ZQDialogResponseEvent(other), ZQDialogPixel(other), m_pixelExact(other.m_pixelExact) {
    InitializeCriticalSection(&m_lock);
    CopyFrom(other);
}

ZQDialogButton& ZQDialogButton::operator=(const ZQDialogButton& other) {
    if (this != &other) {
        ZQDialogResponseEvent::operator=(other);
        ZQDialogPixel::operator=(other);
        CopyFrom(other);
    }
    return *this;
}

void ZQDialogButton::CopyFrom(const ZQDialogButton& other) {
    m_sprite = other.m_sprite;
    m_sound = other.m_sound;
    Assign(m_normal, other.m_normal);
    Assign(m_pressedName, other.m_pressedName);
    Assign(m_overName, other.m_overName);
    Assign(m_disabledName, other.m_disabledName);
    Assign(m_shown, other.m_shown);
    Assign(m_overSound, other.m_overSound);
    Assign(m_clickSound, other.m_clickSound);
    m_colour = other.m_colour;
    m_position = other.m_position;
    m_hit = other.m_hit;
    m_show = other.m_show;
    m_disabled = other.m_disabled;
    m_pressed = other.m_pressed;
    m_pixelExact = other.m_pixelExact;
    m_over = other.m_over;
    m_id = other.m_id;
}

ZQDialogButton::~ZQDialogButton() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogButton::SetSprite(const wchar_t* normal, const wchar_t* pressed, const wchar_t* over,
                               const wchar_t* disabled) {
    ZQLock lock(&m_lock);
    m_normal = normal;
    m_pressedName = pressed;
    m_overName = over;
    m_disabledName = disabled;
}

void ZQDialogButton::SetSound(const wchar_t* click, const wchar_t* over) {
    ZQLock lock(&m_lock);
    if (click)
        m_clickSound = click;
    if (over)
        m_overSound = over;
}

void ZQDialogButton::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    Assign(m_shown, disable ? m_disabledName : m_normal);
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogButton::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogButton::SetShow(bool show) {
    ZQLock lock(&m_lock);
    m_show = show;
}

bool ZQDialogButton::GetShow() {
    ZQLock lock(&m_lock);
    return m_show;
}

bool ZQDialogButton::GetOvered() {
    ZQLock lock(&m_lock);
    return m_over;
}

unsigned int ZQDialogButton::GetId() {
    return m_id;
}

void ZQDialogButton::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(&m_lock);
    if (m_show && m_sprite)
        m_sprite->Render(m_shown, m_position, m_colour, 0);
}

void ZQDialogButton::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y, void*) {
    ZQLock lock(&m_lock);
    const bool over = IsOver(m_hit, x, y);
    const bool maskPasses = !m_pixelExact || check(x, y);
    switch (TrackMouse({m_over, m_pressed, m_sound, m_overSound, m_clickSound}, down, left, right, middle,
                       !m_disabled && m_show, over, maskPasses)) {
    case MouseStep::Press:
        Assign(m_shown, m_pressedName);
        break;
    case MouseStep::ReleaseOutside:
    case MouseStep::MoveOverClear:
    case MouseStep::MoveOff:
        Assign(m_shown, m_normal);
        break;
    case MouseStep::MoveOver:
        Assign(m_shown, m_overName);
        break;
    case MouseStep::ReleaseOver:
        Assign(m_shown, m_overName);
        ReportUnlocked(GetResponse(), &m_lock, m_id, x, y);
        break;
    case MouseStep::Nothing:
        break;
    }
}

} // namespace ZQ
