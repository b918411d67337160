#include "ZQ/dialog/ZQDialogClickable.h"

#include "ZQ/core/ZQLock.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderSingle.h"
#include "src/dialog/ZQDialogSupport.h"

#include <new>

namespace ZQ {

namespace {

/// What a mouse report means to a clickable control.
enum class MouseStep {
    Nothing,
    Press,          ///< a left press over an opaque pixel of an active control
    ReleaseOutside, ///< a left release elsewhere
    ReleaseOver,    ///< a left release over an opaque pixel: the control reports
    MoveOver,       ///< a plain move over an opaque pixel, not pressed
    MoveOverClear,  ///< a plain move over a transparent pixel, not pressed
    MoveOff,        ///< a plain move elsewhere, not pressed
};

void PlayNamed(ZQSound* sound, const wchar_t* name) {
    if (sound && name && *name)
        sound->Play(name, true, 0, 0);
}

} // namespace

ZQDialogPicture::ZQDialogPicture(ZQAnimate* animate)
    : m_animate(animate), m_player(animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr) {}

ZQDialogPicture::ZQDialogPicture(const ZQDialogPicture& other) : ZQDialogPicture(other.m_animate) {
    *this = other;
}

// A shared player would be deleted twice and restarted by either layer: a copy gets its own, on the
// same animate, showing the same animation. An empty name is copied too (a string's own assignment
// would keep the old text).
ZQDialogPicture& ZQDialogPicture::operator=(const ZQDialogPicture& other) {
    if (this == &other)
        return *this;
    if (m_animate != other.m_animate) {
        delete m_player;
        m_animate = other.m_animate;
        m_player = m_animate ? new (std::nothrow) ZQRenderSingle(m_animate) : nullptr;
    }
    Assign(m_name, other.m_name);
    m_position = other.m_position;
    if (m_player && m_name.empty())
        m_player->clear();
    else if (m_player)
        m_player->Entry(m_name, m_position, true, -1, true);
    return *this;
}

ZQDialogPicture::~ZQDialogPicture() {
    delete m_player;
}

void ZQDialogPicture::Show(const ZQString& name, const D3DXVECTOR3& position) {
    if (m_name == name && !m_name.empty())
        return;
    Assign(m_name, name);
    m_position = position;
    if (m_player)
        m_player->Entry(m_name, m_position, true, -1, true);
}

void ZQDialogPicture::clear() {
    m_name.clear();
    if (m_player)
        m_player->clear();
}

void ZQDialogPicture::OnFrameRender(ZQSprite* sprite, D3DXCOLOR& colour, IDirect3DDevice9* device, double time,
                                    float elapsed, void* context) {
    if (m_animate) {
        if (m_player)
            m_player->OnFrameRender(device, time, elapsed, context);
    } else if (sprite) {
        sprite->Render(m_name, m_position, colour, 0);
    }
}

ZQDialogClickable::ZQDialogClickable(ZQDialogPixel& pixel, ZQDialogResponseEvent& control,
                                     _ZQResponseDialog_tag* response, ZQSprite* sprite, ZQSound* sound,
                                     unsigned int id, const wchar_t* normal, const wchar_t* second,
                                     const wchar_t* over, const wchar_t* disabled, const D3DXVECTOR3& position,
                                     bool pixelExact)
    : m_sprite(sprite), m_sound(sound), m_colour(kEnabledColour), m_position(position), m_pixelExact(pixelExact),
      m_id(id) {
    control.SetResponse(response);
    SetSprite(normal, second, over, disabled);
    m_shown.Show(m_normal, m_position);
    _ZQTextureChunk_tag* chunk = nullptr;
    m_hit = ChunkHitRect(sprite, normal, position, &chunk);
    if (pixelExact && chunk)
        pixel.GetTexImage(chunk, m_position);
}

// A mask chunk the sprite lacks leaves the control pixel-exact without a mask: it cannot be hit.
ZQDialogClickable::ZQDialogClickable(ZQDialogPixel& pixel, ZQDialogResponseEvent& control,
                                     _ZQResponseDialog_tag* response, ZQAnimate* animate, ZQSound* sound,
                                     unsigned int id, const wchar_t* normal, const wchar_t* second,
                                     const wchar_t* over, const wchar_t* disabled, const ZQRect& rect,
                                     const wchar_t* maskChunk)
    : m_sprite(animate ? animate->GetSprite() : nullptr), m_sound(sound), m_shown(animate),
      m_colour(kEnabledColour), m_position(rect.left, rect.top, 0.0f), m_hit(rect),
      m_pixelExact(maskChunk && *maskChunk), m_id(id) {
    control.SetResponse(response);
    SetSprite(normal, second, over, disabled);
    m_shown.Show(m_normal, m_position);
    m_maskChunk = maskChunk;
    _ZQTextureChunk_tag* chunk = nullptr;
    const ZQRect fromChunk = m_pixelExact ? ChunkHitRect(m_sprite, maskChunk, m_position, &chunk) : ZQRect();
    if (!chunk)
        return;
    m_hit = fromChunk;
    pixel.GetTexImage(chunk, m_position);
}

// Names are copied even when empty, as the copy constructor does: a string's own assignment would keep
// the target's old name. The lock stays the target's own.
ZQDialogClickable& ZQDialogClickable::operator=(const ZQDialogClickable& other) {
    if (this == &other)
        return *this;
    m_sprite = other.m_sprite;
    m_sound = other.m_sound;
    ZQString* const mine[] = {&m_normal,    &m_second,    &m_overName,  &m_disabledName,
                              &m_maskChunk, &m_overSound, &m_clickSound};
    const ZQString* const theirs[] = {&other.m_normal,    &other.m_second,    &other.m_overName, &other.m_disabledName,
                                      &other.m_maskChunk, &other.m_overSound, &other.m_clickSound};
    for (size_t i = 0; i < sizeof mine / sizeof mine[0]; ++i)
        Assign(*mine[i], *theirs[i]);
    m_shown = other.m_shown;
    m_colour = other.m_colour;
    m_position = other.m_position;
    m_hit = other.m_hit;
    m_show = other.m_show;
    m_disabled = other.m_disabled;
    m_pressed = other.m_pressed;
    m_pixelExact = other.m_pixelExact;
    m_over = other.m_over;
    m_selected = other.m_selected;
    m_id = other.m_id;
    return *this;
}

void ZQDialogClickable::SetSprite(const wchar_t* normal, const wchar_t* second, const wchar_t* over,
                                  const wchar_t* disabled) {
    ZQLock lock(m_lock);
    m_normal = normal;
    m_second = second;
    m_overName = over;
    m_disabledName = disabled;
}

void ZQDialogClickable::SetSound(const wchar_t* click, const wchar_t* over) {
    ZQLock lock(m_lock);
    if (click)
        m_clickSound = click;
    if (over)
        m_overSound = over;
}

void ZQDialogClickable::SetDisable(bool disable) {
    ZQLock lock(m_lock);
    if (SetDisabled(m_disabled, m_colour, disable))
        m_shown.Show(disable ? m_disabledName : Resting(), m_position);
}

void ZQDialogClickable::SetSelect(bool select) {
    ZQLock lock(m_lock);
    m_selected = select;
    m_shown.Show(select ? m_second : m_disabled ? m_disabledName : m_normal, m_position);
    m_pressed = select;
}

void ZQDialogClickable::SetChecked(ZQDialogPicture& mark, bool checked) {
    ZQLock lock(m_lock);
    if (checked)
        mark.Show(m_second, m_position);
    else
        mark.clear();
}

bool ZQDialogClickable::GetChecked(const ZQDialogPicture& mark) {
    ZQLock lock(m_lock);
    return !mark.GetName().empty();
}

const ZQString& ZQDialogClickable::Resting() const {
    return m_selected ? m_second : m_normal;
}

void ZQDialogClickable::OnFrameRender(ZQDialogPicture* mark, IDirect3DDevice9* device, double time, float elapsed,
                                      void* context) {
    ZQLock lock(m_lock);
    if (!m_show)
        return;
    m_shown.OnFrameRender(m_sprite, m_colour, device, time, elapsed, context);
    if (mark && !mark->GetName().empty())
        mark->OnFrameRender(m_sprite, m_colour, device, time, elapsed, context);
}

namespace {

/// Plays the over sound on entering and the click sound on a first press, keeps the over and pressed
/// flags (any left release clears pressed), and says what the report means; active is enabled and shown.
MouseStep TrackMouse(bool& overFlag, bool& pressed, ZQSound* sound, const wchar_t* overSound,
                     const wchar_t* clickSound, bool down, bool left, bool right, bool middle, bool active, bool over,
                     bool maskPasses) {
    if (active) {
        if (over && !overFlag && !pressed)
            PlayNamed(sound, overSound);
        overFlag = over;
    }
    if (down && left) {
        if (!active || !over || !maskPasses)
            return MouseStep::Nothing;
        if (!pressed)
            PlayNamed(sound, clickSound);
        pressed = true;
        return MouseStep::Press;
    }
    if (!down && left) {
        pressed = false;
        if (!active)
            return MouseStep::Nothing;
        if (!over)
            return MouseStep::ReleaseOutside;
        return maskPasses ? MouseStep::ReleaseOver : MouseStep::Nothing;
    }
    if (down || right || middle || !active || pressed)
        return MouseStep::Nothing;
    if (!over)
        return MouseStep::MoveOff;
    return maskPasses ? MouseStep::MoveOver : MouseStep::MoveOverClear;
}

} // namespace

// A radio button has no sound setter: its names stay empty and it plays nothing.
void ZQDialogClickable::OnMouse(ZQDialogPixel& pixel, ZQDialogResponseEvent& control, ZQDialogPicture* mark,
                                bool down, bool left, bool right, bool middle, int x, int y) {
    ZQLock lock(m_lock);
    const bool over = IsOver(m_hit, x, y);
    const bool maskPasses = !m_pixelExact || pixel.check(x, y);
    switch (TrackMouse(m_over, m_pressed, m_sound, m_overSound, m_clickSound, down, left, right, middle,
                       !m_disabled && m_show, over, maskPasses)) {
    case MouseStep::Press:
        if (!mark)
            m_shown.Show(m_second, m_position);
        else if (mark->GetName().empty())
            mark->Show(m_second, m_position);
        else
            mark->clear();
        break;
    case MouseStep::ReleaseOutside:
        m_shown.Show(Resting(), m_position);
        m_pressed = m_selected;
        break;
    case MouseStep::MoveOff:
        m_shown.Show(Resting(), m_position);
        break;
    case MouseStep::MoveOverClear:
        m_shown.Show(m_normal, m_position);
        break;
    case MouseStep::MoveOver:
        m_shown.Show(m_overName, m_position);
        break;
    case MouseStep::ReleaseOver:
        m_shown.Show(m_overName, m_position);
        ReportUnlocked(control.GetResponse(), m_lock, m_id, x, y);
        break;
    case MouseStep::Nothing:
        break;
    }
}

} // namespace ZQ
