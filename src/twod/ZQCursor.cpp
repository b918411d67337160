#include "ZQ/twod/ZQCursor.h"
#include "ZQ/core/ZQLock.h"
#include "src/core/ZQLockedAccessors.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderSingle.h"
#include "ZQ/twod/ZQSprite.h"

#include <new>

namespace ZQ {

ZQCursor::ZQCursor(ZQSprite* sprite)
    : m_sprite(sprite), m_animate(nullptr), m_player(nullptr), m_position(0.0f, 0.0f, 0.0f),
      m_overlayColor(1.0f, 1.0f, 1.0f, 1.0f), m_visible(true), m_disabled(false) {
}

ZQCursor::ZQCursor(ZQAnimate* animate)
    : m_sprite(animate ? animate->GetSprite() : nullptr), m_animate(animate),
      m_player(animate ? new (std::nothrow) ZQRenderSingle(animate) : nullptr), m_position(0.0f, 0.0f, 0.0f),
      m_overlayColor(1.0f, 1.0f, 1.0f, 1.0f), m_visible(true), m_disabled(false) {
}

ZQCursor::ZQCursor(const ZQCursor& other) : m_sprite(nullptr), m_animate(nullptr), m_player(nullptr) {
    CopyFrom(other);
}

ZQCursor& ZQCursor::operator=(const ZQCursor& other) {
    if (this != &other)
        CopyFrom(other);
    return *this;
}

ZQCursor::~ZQCursor() {
    delete m_player;
}

void ZQCursor::CopyFrom(const ZQCursor& other) {
    ZQLock lock(m_lock);
    ZQLock otherLock(const_cast<ZQCriticalSection&>(other.m_lock));
    m_sprite = other.m_sprite;
    if (m_animate != other.m_animate) {
        delete m_player;
        m_player = other.m_animate ? new (std::nothrow) ZQRenderSingle(other.m_animate) : nullptr;
        m_animate = other.m_animate;
    }
    // Empty names are copied too: a string's own assignment would keep its old text.
    ZQString* mine[] = {&m_current, &m_normal, &m_left, &m_right, &m_middle, &m_side1, &m_side2, &m_overlay};
    const ZQString* theirs[] = {&other.m_current, &other.m_normal, &other.m_left,  &other.m_right,
                                &other.m_middle,  &other.m_side1,  &other.m_side2, &other.m_overlay};
    for (size_t i = 0; i < sizeof mine / sizeof mine[0]; ++i) {
        mine[i]->clear();
        *mine[i] = *theirs[i];
    }
    m_area = other.m_area;
    m_position = other.m_position;
    m_overlayColor = other.m_overlayColor;
    m_visible = other.m_visible;
    m_disabled = other.m_disabled;
    StartPlayer();
}

void ZQCursor::StartPlayer() {
    if (m_player && !m_current.empty())
        m_player->Entry(m_current, m_position, true, -1, true);
}

void ZQCursor::Entry(ZQRect& area, const wchar_t* normal, const wchar_t* pressed, const wchar_t* right,
                     const wchar_t* middle, const wchar_t* side1, const wchar_t* side2) {
    ZQLock lock(m_lock);
    m_area = area;
    m_current = normal;
    m_normal = normal;
    m_left = pressed;
    m_right = pressed;
    m_middle = pressed;
    m_side1 = pressed;
    m_side2 = pressed;
    if (right)
        m_right = right;
    if (middle)
        m_middle = middle;
    if (side1)
        m_side1 = side1;
    if (side2)
        m_side2 = side2;
    StartPlayer();
}

void ZQCursor::SetSprite(const wchar_t* overlay, D3DXCOLOR& color) {
    ZQLock lock(m_lock);
    m_overlay = overlay;
    m_overlayColor = color;
}

ZQ_LOCKED_ACCESSORS(ZQCursor, bool, Visible, m_visible)

ZQ_LOCKED_ACCESSORS(ZQCursor, bool, Disable, m_disabled)

void ZQCursor::OnMouse(bool buttonDown, bool left, bool right, bool middle, bool side1, bool side2, int, int x,
                       int y, void*) {
    ZQLock lock(m_lock);
    if (m_disabled)
        return;
    m_position = D3DXVECTOR3(static_cast<float>(x), static_cast<float>(y), 0.0f);
    const float fx = static_cast<float>(x), fy = static_cast<float>(y);
    if (fx < m_area.left || fx > m_area.right || fy < m_area.top || fy > m_area.bottom) {
        m_visible = false;
        return;
    }
    m_visible = true;
    if (!buttonDown) {
        m_current = m_normal;
        return;
    }
    if (left)
        m_current = m_left;
    else if (right)
        m_current = m_right;
    else if (middle)
        m_current = m_middle;
    else if (side1)
        m_current = m_side1;
    else if (side2)
        m_current = m_side2;
    else
        m_current = m_normal;
    m_overlay.clear();
}

void ZQCursor::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {
    ZQLock lock(m_lock);
    if (!m_visible || m_disabled || !m_sprite)
        return;
    if (!m_overlay.empty())
        m_sprite->Render(m_overlay, m_position, m_overlayColor, 0);
    if (m_player) {
        m_player->OnFrameRender(device, time, elapsed, context);
        return;
    }
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
    m_sprite->Render(m_current, m_position, white, 0);
}

} // namespace ZQ
