// What the dialog's controls share: the hit rectangle of a chunk, reporting, colours and copying names.
#pragma once
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/twod/ZQSprite.h"

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

/// Copies the text, an empty one included (plain assignment keeps the old text when the new is empty).
inline void Assign(ZQString& to, const ZQString& from) {
    to.clear();
    to += from;
}

} // namespace ZQ
