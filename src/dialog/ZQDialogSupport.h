// What the clickable controls share: the hit rectangle of a chunk and the mouse report's kinds.
#pragma once
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

class ZQSound;

/// The hit rectangle of chunk name drawn at pos: its trim rectangle moved to pos less the origin, or
/// the whole chunk at pos when it has no trim; all zero (never hit) when the sprite does not know it.
ZQRect ChunkHitRect(ZQSprite* sprite, const wchar_t* name, const D3DXVECTOR3& pos,
                    _ZQTextureChunk_tag** chunk = nullptr);

/// (x, y) on the hit rectangle, edges included. The all-zero rectangle of a chunk the sprite did not
/// know is never hit, not even at (0, 0).
inline bool IsOver(const ZQRect& hit, int x, int y) {
    return !hit.isZero() && hit.isOverlap(x, y);
}

/// What a mouse report means to a clickable control, after the rules they all share.
enum class MouseStep {
    Nothing,
    Press,             ///< a left press over an opaque pixel of an active control
    ReleaseOutside,    ///< a left release elsewhere
    ReleaseOver,       ///< a left release over an opaque pixel: the control reports
    MoveOver,          ///< a plain move over an opaque pixel, not pressed
    MoveOverClear,     ///< a plain move over a transparent pixel, not pressed
    MoveOff,           ///< a plain move elsewhere, not pressed
};

/// The state every clickable control keeps for the mouse, and its sounds.
struct ClickState {
    bool& over;    ///< the pointer was over the hit rectangle at the last report
    bool& pressed; ///< a press was taken and no release seen since
    ZQSound* sound;
    const wchar_t* overSound;
    const wchar_t* clickSound;
};

/// Sends OnEvent(id, a, b) to response when there is one, with the control's own lock released
/// around the call (the handler may call the control back, also from another thread).
void ReportUnlocked(_ZQResponseDialog_tag* response, CRITICAL_SECTION* lock, unsigned int id, int a, int b);

/// Plays the over sound on entering and the click sound on a first press, keeps the over and pressed
/// flags (any left release clears pressed), and says what the report means; active is enabled and shown.
MouseStep TrackMouse(ClickState state, bool down, bool left, bool right, bool middle, bool active, bool over,
                     bool maskPasses);

const D3DXCOLOR kEnabledColour(1.0f, 1.0f, 1.0f, 1.0f);
const D3DXCOLOR kDisabledColour(1.0f, 1.0f, 1.0f, 0.5f);

} // namespace ZQ

namespace ZQ {

/// Copies the text, an empty one included (plain assignment keeps the old text when the new is empty).
inline void Assign(ZQString& to, const ZQString& from) {
    to.clear();
    to += from;
}

} // namespace ZQ

#include "ZQ/dialog/ZQDialogPixel.h"

namespace ZQ {

/// The hit rectangle and mask of an animated control: from the mask chunk when one is named and the
/// sprite knows it (pixel-exact then), else rect as given. A named chunk the sprite lacks leaves the
/// control pixel-exact without a mask: it cannot be hit.
inline void InitAniHit(ZQDialogPixel& pixel, ZQSprite* sprite, const wchar_t* maskChunk, D3DXVECTOR3& position,
                       ZQString& maskName, ZQRect& hit, bool& pixelExact) {
    if (!maskChunk || !*maskChunk)
        return;
    maskName = maskChunk;
    pixelExact = true;
    _ZQTextureChunk_tag* chunk = nullptr;
    const ZQRect fromChunk = ChunkHitRect(sprite, maskChunk, position, &chunk);
    if (!chunk)
        return;
    hit = fromChunk;
    pixel.GetTexImage(chunk, position);
}

} // namespace ZQ
