#include "src/dialog/ZQDialogSupport.h"

#include "ZQ/core/ZQLock.h"
#include "ZQ/sound/ZQSound.h"

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

namespace {

void PlayNamed(ZQSound* sound, const wchar_t* name) {
    if (sound && name && *name)
        sound->Play(name, true, 0, 0);
}

} // namespace

void ReportUnlocked(_ZQResponseDialog_tag* response, CRITICAL_SECTION* lock, unsigned int id, int a, int b) {
    if (!response)
        return;
    ZQUnLock unlock(lock);
    response->OnEvent(id, a, b);
}

MouseStep TrackMouse(ClickState state, bool down, bool left, bool right, bool middle, bool active, bool over,
                     bool maskPasses) {
    if (active) {
        if (over && !state.over && !state.pressed)
            PlayNamed(state.sound, state.overSound);
        state.over = over;
    }
    if (down && left) {
        if (!active || !over || !maskPasses)
            return MouseStep::Nothing;
        if (!state.pressed)
            PlayNamed(state.sound, state.clickSound);
        state.pressed = true;
        return MouseStep::Press;
    }
    if (!down && left) {
        state.pressed = false;
        if (!active)
            return MouseStep::Nothing;
        if (!over)
            return MouseStep::ReleaseOutside;
        return maskPasses ? MouseStep::ReleaseOver : MouseStep::Nothing;
    }
    if (down || right || middle || !active || state.pressed)
        return MouseStep::Nothing;
    if (!over)
        return MouseStep::MoveOff;
    return maskPasses ? MouseStep::MoveOver : MouseStep::MoveOverClear;
}

} // namespace ZQ
