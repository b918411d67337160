// What the dialog's controls share: the hit rectangle of a chunk, reporting, colours and copying names.
#pragma once
#include "ZQ/core/ZQLock.h"
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/twod/ZQSprite.h"
#include "src/core/ZQLockedAccessors.h"

namespace ZQ {

/// The hit rectangle of chunk name drawn at pos: its trim rectangle moved to pos less the origin, or
/// the whole chunk at pos when it has no trim; all zero (never hit) when the sprite does not know it.
ZQRect ChunkHitRect(ZQSprite* sprite, const wchar_t* name, const D3DXVECTOR3& pos,
                    _ZQTextureChunk_tag** chunk = nullptr);

/// (x, y) on the hit rectangle, edges included. The all-zero rectangle of a chunk the sprite did not
/// know is never hit, not even at (0, 0).
inline bool IsOver(const ZQRect& hit, int x, int y) {
    return !hit.isZero() && hit.isOverlap(x, y);
}

/// Sends OnEvent(id, a, b) to response when there is one, with the control's own lock released
/// around the call (the handler may call the control back, also from another thread).
void ReportUnlocked(_ZQResponseDialog_tag* response, CRITICAL_SECTION* lock, unsigned int id, int a, int b);

const D3DXCOLOR kEnabledColour(1.0f, 1.0f, 1.0f, 1.0f);
const D3DXCOLOR kDisabledColour(1.0f, 1.0f, 1.0f, 0.5f);

/// Disabling fades colour to half alpha, enabling restores it; false, changing nothing, when disabled
/// already is disable.
inline bool SetDisabled(bool& disabled, D3DXCOLOR& colour, bool disable) {
    if (disable == disabled)
        return false;
    disabled = disable;
    colour = disable ? kDisabledColour : kEnabledColour;
    return true;
}

/// Copies the text, an empty one included (plain assignment keeps the old text when the new is empty).
inline void Assign(ZQString& to, const ZQString& from) {
    to.clear();
    to += from;
}

} // namespace ZQ

/// SetVisible and GetVisible of m_visible, SetDisable and GetDisable of m_disabled, disabling fading
/// m_colour (the number, bars and gauges).
#define ZQ_VISIBLE_AND_DISABLE(Class)                                                                                 \
    ZQ_LOCKED_ACCESSORS(Class, bool, Visible, m_visible)                                                              \
    void Class::SetDisable(bool disable) {                                                                            \
        ZQLock lock(m_lock);                                                                                          \
        SetDisabled(m_disabled, m_colour, disable);                                                                   \
    }                                                                                                                 \
    bool Class::GetDisable() {                                                                                        \
        return m_lock.Read(m_disabled);                                                                               \
    }

/// Reset of a bar or gauge: empty, shown, enabled and able to report again.
#define ZQ_BAR_RESET(Class)                                                                                           \
    void Class::Reset() {                                                                                             \
        ZQLock lock(m_lock);                                                                                          \
        m_value = 0.0f;                                                                                               \
        m_visible = true;                                                                                             \
        m_colour = kEnabledColour;                                                                                    \
        m_disabled = false;                                                                                           \
        m_finished = false;                                                                                           \
    }
