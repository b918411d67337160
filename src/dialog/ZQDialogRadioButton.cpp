#include "ZQ/dialog/ZQDialogRadioButton.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

namespace ZQ {

ZQDialogRadioButton::ZQDialogRadioButton(ZQSprite* sprite, ZQSound* sound, unsigned int id, unsigned int group,
                                         const wchar_t* normal, const wchar_t* selected, const wchar_t* over,
                                         const wchar_t* disabled, D3DXVECTOR3& position,
                                         _ZQResponseDialog_tag* response, bool pixelExact)
    : m_sprite(sprite), m_sound(sound), m_colour(kEnabledColour), m_position(position), m_pixelExact(pixelExact),
      m_group(group), m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_normal = normal;
    m_selectedName = selected;
    m_overName = over;
    m_disabledName = disabled;
    m_shown = normal;
    _ZQTextureChunk_tag* chunk = nullptr;
    m_hit = ChunkHitRect(sprite, normal, position, &chunk);
    if (pixelExact && chunk)
        GetTexImage(chunk, m_position);
}

ZQDialogRadioButton::ZQDialogRadioButton(const ZQDialogRadioButton& other)
    : ZQDialogResponseEvent(other), ZQDialogPixel(other), m_pixelExact(other.m_pixelExact) {
    InitializeCriticalSection(&m_lock);
    CopyFrom(other);
}

ZQDialogRadioButton& ZQDialogRadioButton::operator=(const ZQDialogRadioButton& other) {
    if (this != &other) {
        ZQDialogResponseEvent::operator=(other);
        ZQDialogPixel::operator=(other);
        CopyFrom(other);
    }
    return *this;
}

void ZQDialogRadioButton::CopyFrom(const ZQDialogRadioButton& other) {
    m_sprite = other.m_sprite;
    m_sound = other.m_sound;
    Assign(m_normal, other.m_normal);
    Assign(m_selectedName, other.m_selectedName);
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
    m_selected = other.m_selected;
    m_group = other.m_group;
    m_id = other.m_id;
}

ZQDialogRadioButton::~ZQDialogRadioButton() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogRadioButton::SetSelect(bool select) {
    ZQLock lock(&m_lock);
    m_selected = select;
    Assign(m_shown, select ? m_selectedName : m_disabled ? m_disabledName : m_normal);
    m_pressed = select;
}

bool ZQDialogRadioButton::GetSelect() {
    ZQLock lock(&m_lock);
    return m_selected;
}

bool ZQDialogRadioButton::GetMask() {
    ZQLock lock(&m_lock);
    return m_pixelExact;
}

ZQRect ZQDialogRadioButton::GetRect() {
    ZQLock lock(&m_lock);
    return m_hit;
}

void ZQDialogRadioButton::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    Assign(m_shown, disable ? m_disabledName : m_selected ? m_selectedName : m_normal);
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogRadioButton::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

bool ZQDialogRadioButton::GetShow() {
    ZQLock lock(&m_lock);
    return m_show;
}

unsigned int ZQDialogRadioButton::GetId() {
    return m_id;
}

unsigned int ZQDialogRadioButton::GetGroup() {
    return m_group;
}

void ZQDialogRadioButton::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(&m_lock);
    if (m_show && m_sprite)
        m_sprite->Render(m_shown, m_position, m_colour, 0);
}

// The sound names stay empty (a radio button has no sound setter), so a radio button plays nothing.
void ZQDialogRadioButton::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y,
                                  void*) {
    ZQLock lock(&m_lock);
    const bool over = IsOver(m_hit, x, y);
    const bool maskPasses = !m_pixelExact || check(x, y);
    switch (TrackMouse({m_over, m_pressed, m_sound, m_overSound, m_clickSound}, down, left, right, middle,
                       !m_disabled && m_show, over, maskPasses)) {
    case MouseStep::Press:
        Assign(m_shown, m_selectedName);
        break;
    case MouseStep::ReleaseOutside:
        Assign(m_shown, m_selected ? m_selectedName : m_normal);
        m_pressed = m_selected;
        break;
    case MouseStep::MoveOver:
        Assign(m_shown, m_overName);
        break;
    case MouseStep::MoveOverClear:
        Assign(m_shown, m_normal);
        break;
    case MouseStep::MoveOff:
        Assign(m_shown, m_selected ? m_selectedName : m_normal);
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
