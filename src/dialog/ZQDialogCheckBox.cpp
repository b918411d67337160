#include "ZQ/dialog/ZQDialogCheckBox.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

namespace ZQ {

ZQDialogCheckBox::ZQDialogCheckBox(ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* box,
                                   const wchar_t* mark, const wchar_t* over, const wchar_t* disabled,
                                   D3DXVECTOR3& position, _ZQResponseDialog_tag* response, bool pixelExact)
    : m_sprite(sprite), m_sound(sound), m_colour(kEnabledColour), m_position(position), m_pixelExact(pixelExact),
      m_id(id) {
    InitializeCriticalSection(&m_lock);
    SetResponse(response);
    m_box = box;
    m_markName = mark;
    m_overName = over;
    m_disabledName = disabled;
    m_shown = box;
    _ZQTextureChunk_tag* chunk = nullptr;
    m_hit = ChunkHitRect(sprite, box, position, &chunk);
    if (pixelExact && chunk)
        GetTexImage(chunk, m_position);
}

ZQDialogCheckBox::ZQDialogCheckBox(const ZQDialogCheckBox& other)
    : ZQDialogResponseEvent(other), ZQDialogPixel(other), m_pixelExact(other.m_pixelExact) {
    InitializeCriticalSection(&m_lock);
    CopyFrom(other);
}

ZQDialogCheckBox& ZQDialogCheckBox::operator=(const ZQDialogCheckBox& other) {
    if (this != &other) {
        ZQDialogResponseEvent::operator=(other);
        ZQDialogPixel::operator=(other);
        CopyFrom(other);
    }
    return *this;
}

void ZQDialogCheckBox::CopyFrom(const ZQDialogCheckBox& other) {
    m_sprite = other.m_sprite;
    m_sound = other.m_sound;
    Assign(m_box, other.m_box);
    Assign(m_markName, other.m_markName);
    Assign(m_overName, other.m_overName);
    Assign(m_disabledName, other.m_disabledName);
    Assign(m_shown, other.m_shown);
    Assign(m_shownMark, other.m_shownMark);
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

ZQDialogCheckBox::~ZQDialogCheckBox() {
    DeleteCriticalSection(&m_lock);
}

void ZQDialogCheckBox::SetChecked(bool checked) {
    ZQLock lock(&m_lock);
    if (checked)
        Assign(m_shownMark, m_markName);
    else
        m_shownMark.clear();
}

bool ZQDialogCheckBox::GetChecked() {
    ZQLock lock(&m_lock);
    return !m_shownMark.empty();
}

void ZQDialogCheckBox::SetSprite(const wchar_t* box, const wchar_t* mark, const wchar_t* over,
                                 const wchar_t* disabled) {
    ZQLock lock(&m_lock);
    m_box = box;
    m_markName = mark;
    m_overName = over;
    m_disabledName = disabled;
}

void ZQDialogCheckBox::SetSound(const wchar_t* click, const wchar_t* over) {
    ZQLock lock(&m_lock);
    if (click)
        m_clickSound = click;
    if (over)
        m_overSound = over;
}

void ZQDialogCheckBox::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    if (disable == m_disabled)
        return;
    m_disabled = disable;
    Assign(m_shown, disable ? m_disabledName : m_box);
    m_colour = disable ? kDisabledColour : kEnabledColour;
}

bool ZQDialogCheckBox::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

void ZQDialogCheckBox::SetShow(bool show) {
    ZQLock lock(&m_lock);
    m_show = show;
}

bool ZQDialogCheckBox::GetShow() {
    ZQLock lock(&m_lock);
    return m_show;
}

bool ZQDialogCheckBox::GetOvered() {
    ZQLock lock(&m_lock);
    return m_over;
}

unsigned int ZQDialogCheckBox::GetId() {
    return m_id;
}

void ZQDialogCheckBox::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(&m_lock);
    if (!m_show || !m_sprite)
        return;
    m_sprite->Render(m_shown, m_position, m_colour, 0);
    if (!m_shownMark.empty())
        m_sprite->Render(m_shownMark, m_position, m_colour, 0);
}

void ZQDialogCheckBox::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y, void*) {
    ZQLock lock(&m_lock);
    const bool over = IsOver(m_hit, x, y);
    const bool maskPasses = !m_pixelExact || check(x, y);
    switch (TrackMouse({m_over, m_pressed, m_sound, m_overSound, m_clickSound}, down, left, right, middle,
                       !m_disabled && m_show, over, maskPasses)) {
    case MouseStep::Press:
        if (m_shownMark.empty())
            Assign(m_shownMark, m_markName);
        else
            m_shownMark.clear();
        break;
    case MouseStep::ReleaseOutside:
    case MouseStep::MoveOverClear:
    case MouseStep::MoveOff:
        Assign(m_shown, m_box);
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
