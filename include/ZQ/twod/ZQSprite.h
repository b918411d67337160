#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQKalman.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/twod/ZQSpriteRender.h"
#include "ZQ/twod/ZQTexture.h"

namespace ZQ {

/// Draws named chunks of its own textures. Every Render returns the chunk drawn, or null (no device,
/// null name, unknown chunk: nothing drawn). color tints (red, green, blue) and fades (alpha).
/// flags: 1 mirrors left-right, 2 flips top-bottom, 3 turns by half a turn; other bits are ignored.
/// Positions are pixels (their z is ignored); angles are radians, counter-clockwise on the screen.
class ZQ_API ZQSprite : public ZQTexture, public ZQSpriteRender {
public:
    explicit ZQSprite(IDirect3DDevice9* device);
    ZQSprite(const ZQSprite&) = delete;
    ZQSprite& operator=(const ZQSprite&) = delete;
    virtual ~ZQSprite();

    using ZQTexture::Entry;
    using ZQTexture::Trans;

    /// At natural size, the chunk's origin at pos.
    _ZQTextureChunk_tag* Render(const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& color, DWORD flags);
    /// As above, turned by angle about pos.
    _ZQTextureChunk_tag* Render(const wchar_t* name, D3DXVECTOR3& pos, float angle, D3DXCOLOR& color, DWORD flags);
    /// Stretched into dest; the origin plays no part.
    _ZQTextureChunk_tag* Render(const wchar_t* name, ZQRect& dest, D3DXCOLOR& color, DWORD flags);
    /// Stretched into dest, turned by angle about the middle of dest.
    _ZQTextureChunk_tag* Render(const wchar_t* name, ZQRect& dest, float angle, D3DXCOLOR& color, DWORD flags);
    /// The origin at pos, turned by angle about the pixel position centre (the second vector).
    _ZQTextureChunk_tag* Render(const wchar_t* name, D3DXVECTOR3& pos, D3DXVECTOR3& centre, float angle,
                                D3DXCOLOR& color, DWORD flags);
    /// Stretched into dest, turned by angle about the pixel position centre.
    _ZQTextureChunk_tag* Render(const wchar_t* name, ZQRect& dest, D3DXVECTOR3& centre, float angle,
                                D3DXCOLOR& color, DWORD flags);
    /// A wipe: |amount| (at most 1) of the chunk along one edge. mode 1: the left part, a; 2: the right
    /// part, a; 4: the top part, 1 - a; 8: the bottom part, 1 - a; any other: the left part, 1 - a.
    _ZQTextureChunk_tag* RenderLerp(const wchar_t* name, D3DXVECTOR3& pos, D3DXCOLOR& color, float amount,
                                    DWORD mode);
    /// The whole texture at pos, under the drawing lock.
    void Render(IDirect3DTexture9* texture, D3DXVECTOR3& pos, D3DXCOLOR& color) override;
    using ZQSpriteRender::Render;

private:
    _ZQTextureChunk_tag* Find(const wchar_t* name);
    _ZQTextureChunk_tag* DrawChunk(_ZQTextureChunk_tag* chunk, const ZQRect& dest, DWORD flags,
                                   const D3DXCOLOR& color, const D3DXVECTOR3* centre, float angle);
    _ZQTextureChunk_tag* DrawQuad(_ZQTextureChunk_tag* chunk, const ZQRect& dest, const ZQRect& tex,
                                  const D3DXCOLOR& color, const D3DXVECTOR3* centre, float angle);

    ZQKalman m_filters[4];
    CRITICAL_SECTION m_drawLock;
};

} // namespace ZQ
