#include "src/dialog/ZQDialogSupport.h"

#include "ZQ/core/ZQLock.h"

namespace ZQ {

ZQRect ChunkHitRect(ZQSprite* sprite, const wchar_t* name, const D3DXVECTOR3& pos, _ZQTextureChunk_tag** found) {
    _ZQTextureChunk_tag* chunk = sprite && name ? sprite->Trans(name) : nullptr;
    if (found)
        *found = chunk;
    if (!chunk)
        return ZQRect();
    if (chunk->trim.isZero())
        return ZQRect(pos.x, pos.y, pos.x + chunk->pixel.width(), pos.y + chunk->pixel.height());
    const ZQRect at(pos.x, pos.y, pos.x, pos.y);
    const ZQRect origin(chunk->originX, chunk->originY, chunk->originX, chunk->originY);
    ZQRect hit = chunk->trim + at - origin;
    (void)static_cast<RECT*>(hit); // refreshes the integer copy
    return hit;
}

void ReportUnlocked(_ZQResponseDialog_tag* response, CRITICAL_SECTION* lock, unsigned int id, int a, int b) {
    if (!response)
        return;
    ZQUnLock unlock(lock);
    response->OnEvent(id, a, b);
}

} // namespace ZQ
