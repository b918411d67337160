#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/threed/ZQ3DCamera.h"

namespace ZQ {

/// Draws textured quads in pixel coordinates: one quad of four vertices (position, normal, texture
/// coordinates; FVF 274) seen by a fixed camera, so that pixel (0, 0) is the viewport's top-left corner.
/// The camera shake of the base moves everything drawn while it runs (advance it with OnFrameMove).
/// The result colour is the texture times the colour argument, alpha included: the camera lights the
/// quad with one white directional light straight on and no ambient light, so the colour is exact.
class ZQ_API ZQSpriteRender : public _3D::ZQ3DQuake {
public:
    explicit ZQSpriteRender(IDirect3DDevice9* device);
    ZQSpriteRender(const ZQSpriteRender&) = delete;
    ZQSpriteRender& operator=(const ZQSpriteRender&) = delete;
    virtual ~ZQSpriteRender();

    /// The _NoLock forms do the same work without taking the lock.
    /// The 128-byte managed vertex buffer; true on success.
    bool CreateVertexBuffer();
    bool CreateVertexBuffer_NoLock();
    /// Fills the quad: dest in pixels (edges truncated, then half a pixel up and left), tex in texture
    /// coordinates. The colour is not used here.
    void Set(ZQRect dest, ZQRect tex, D3DXCOLOR color);
    void Set_NoLock(ZQRect dest, ZQRect tex, D3DXCOLOR color);
    /// View from eye to at, projection pi/4, world offset so that pixels map onto the viewport.
    void Camera(D3DXVECTOR3& eye, D3DXVECTOR3& at, D3DXVECTOR3& up);
    void Camera_NoLock(D3DXVECTOR3& eye, D3DXVECTOR3& at, D3DXVECTOR3& up);
    /// The whole texture at its natural size, its top-left corner at pos.
    virtual void Render(IDirect3DTexture9* texture, D3DXVECTOR3& pos, D3DXCOLOR& color);
    /// The tex part of the texture into dest.
    void Render(IDirect3DTexture9* texture, ZQRect& dest, ZQRect& tex, D3DXCOLOR& color);
    /// Advances the camera shake by elapsed seconds.
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// Reads the device's current viewport again, as the constructor does, so that pixel (0, 0) is its
    /// top-left corner at one pixel a pixel: after ZQViewport::Begin or ZQRenderTarget::Begin, again after
    /// their End, or after a reset (the sprite never reads it by itself). False (nothing changed) without
    /// a device or for a viewport of no height.
    bool ReadViewport();

protected:
    /// Draws the quad last Set: the standard camera, then (with a centre) a turn by angle about that
    /// pixel position, the blend and stage states, the material colour, the draw.
    void Draw(IDirect3DTexture9* texture, const D3DXCOLOR& color, const D3DXVECTOR3* centre = nullptr,
              float angle = 0.0f);

private:
    IDirect3DDevice9* m_device;
    IDirect3DVertexBuffer9* m_vertexBuffer;
    unsigned char* m_vertices;
    float m_viewportWidth;
    float m_viewportHeight;
    float m_aspect;
    D3DMATERIAL9 m_material;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
