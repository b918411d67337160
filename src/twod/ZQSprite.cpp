#include "ZQ/twod/ZQSprite.h"
#include "ZQ/core/ZQLock.h"

#include <algorithm>
#include <cmath>

namespace ZQ {

ZQSprite::ZQSprite(IDirect3DDevice9* device) : ZQTexture(device), ZQSpriteRender(device) {
    InitializeCriticalSection(&m_drawLock);
}

ZQSprite::~ZQSprite() {
    DeleteCriticalSection(&m_drawLock);
}

// Called under the drawing lock; the texture lock is taken inside, briefly.
_ZQTextureChunk_tag* ZQSprite::Find(const wchar_t* name) {
    if (!name || !ZQTexture::Getd3dDevice())
        return nullptr;
    return ZQTexture::Trans(name);
}

_ZQTextureChunk_tag* ZQSprite::DrawChunk(_ZQTextureChunk_tag* chunk, const ZQRect& dest, DWORD flags,
                                         const D3DXCOLOR& color, const D3DXVECTOR3* centre, float angle) {
    ZQRect tex = chunk->texcoord;
    if (flags & 1)
        std::swap(tex.left, tex.right);
    if (flags & 2)
        std::swap(tex.top, tex.bottom);
    return DrawQuad(chunk, dest, tex, color, centre, angle);
}

_ZQTextureChunk_tag* ZQSprite::DrawQuad(_ZQTextureChunk_tag* chunk, const ZQRect& dest, const ZQRect& tex,
                                        const D3DXCOLOR& color, const D3DXVECTOR3* centre, float angle) {
    Set(dest, tex, color);
    Draw(chunk->sharedTexture ? chunk->sharedTexture : chunk->texture, color, centre, angle);
    return chunk;
}

namespace {
// The chunk at natural size with its origin at pos.
ZQRect AtOrigin(const _ZQTextureChunk_tag& chunk, const D3DXVECTOR3& pos) {
    const float left = pos.x - chunk.originX, top = pos.y - chunk.originY;
    return ZQRect(left, top, left + (chunk.pixel.right - chunk.pixel.left),
                  top + (chunk.pixel.bottom - chunk.pixel.top));
}
} // namespace

_ZQTextureChunk_tag* ZQSprite::Render(const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& color, DWORD flags) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    return chunk ? DrawChunk(chunk, AtOrigin(*chunk, pos), flags, color, nullptr, 0.0f) : nullptr;
}

_ZQTextureChunk_tag* ZQSprite::Render(const wchar_t* name, D3DXVECTOR3& pos, float angle, D3DXCOLOR& color,
                                      DWORD flags) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    return chunk ? DrawChunk(chunk, AtOrigin(*chunk, pos), flags, color, &pos, angle) : nullptr;
}

_ZQTextureChunk_tag* ZQSprite::Render(const wchar_t* name, ZQRect& dest, D3DXCOLOR& color, DWORD flags) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    return chunk ? DrawChunk(chunk, dest, flags, color, nullptr, 0.0f) : nullptr;
}

_ZQTextureChunk_tag* ZQSprite::Render(const wchar_t* name, ZQRect& dest, float angle, D3DXCOLOR& color,
                                      DWORD flags) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    const D3DXVECTOR3 middle((dest.left + dest.right) * 0.5f, (dest.top + dest.bottom) * 0.5f, 0.0f);
    return chunk ? DrawChunk(chunk, dest, flags, color, &middle, angle) : nullptr;
}

_ZQTextureChunk_tag* ZQSprite::Render(const wchar_t* name, D3DXVECTOR3& pos, D3DXVECTOR3& centre, float angle,
                                      D3DXCOLOR& color, DWORD flags) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    return chunk ? DrawChunk(chunk, AtOrigin(*chunk, pos), flags, color, &centre, angle) : nullptr;
}

_ZQTextureChunk_tag* ZQSprite::Render(const wchar_t* name, ZQRect& dest, D3DXVECTOR3& centre, float angle,
                                      D3DXCOLOR& color, DWORD flags) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    return chunk ? DrawChunk(chunk, dest, flags, color, &centre, angle) : nullptr;
}

_ZQTextureChunk_tag* ZQSprite::RenderLerp(const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& color, float amount,
                                          DWORD mode) {
    ZQLock lock(&m_drawLock);
    _ZQTextureChunk_tag* chunk = Find(name);
    if (!chunk)
        return nullptr;
    const float a = std::min(std::fabs(amount), 1.0f);
    ZQRect dest = AtOrigin(*chunk, pos);
    ZQRect tex = chunk->texcoord;
    const float w = chunk->pixel.right - chunk->pixel.left, h = chunk->pixel.bottom - chunk->pixel.top;
    const float uLeft = tex.left, uRight = tex.right, vTop = tex.top, vBottom = tex.bottom;
    // The horizontal wipes grow with the amount, the vertical ones and the default shrink: deliberately.
    switch (mode) {
    case 1:
        dest.right = dest.left + a * w;
        tex.right = uLeft + a * (uRight - uLeft);
        break;
    case 2:
        dest.left = dest.left + w - a * w;
        tex.left = uRight - a * (uRight - uLeft);
        break;
    case 4:
        dest.bottom = dest.top + h - a * h;
        tex.bottom = vBottom - a * (vBottom - vTop);
        break;
    case 8:
        dest.top = dest.top + a * h;
        tex.top = vTop + a * (vBottom - vTop);
        break;
    default:
        dest.right = dest.left + w - a * w;
        tex.right = uRight - a * (uRight - uLeft);
        break;
    }
    return DrawQuad(chunk, dest, tex, color, nullptr, 0.0f);
}

void ZQSprite::Render(IDirect3DTexture9* texture, D3DXVECTOR3& pos, D3DXCOLOR& color) {
    ZQLock lock(&m_drawLock);
    ZQSpriteRender::Render(texture, pos, color);
}

} // namespace ZQ
