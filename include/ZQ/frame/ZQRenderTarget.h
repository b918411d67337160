#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/twod/ZQTextureChunk.h"

namespace ZQ {

/// A texture to draw into instead of the back buffer, with a depth buffer of its own: sprites, dialogs,
/// text and 3D drawn between Begin and End land in it, and it draws like any chunk (GetChunk, or by name
/// through ZQTexture::EntryShared) with every sprite effect. Both live in the default pool: forward the
/// scene's OnLostDevice and OnResetDevice, which release and make them again; what the texture held
/// before a reset is lost (its content is undefined until drawn again).
class ZQ_API ZQRenderTarget : public ZQHeapObject {
public:
    /// A size of 0 (either side) follows the back buffer's at every reset. format: the texture's, X8R8G8B8
    /// (opaque) by default. The texture is made at once while the device is usable.
    explicit ZQRenderTarget(IDirect3DDevice9* device, UINT width = 0, UINT height = 0,
                            D3DFORMAT format = D3DFMT_X8R8G8B8);
    ZQRenderTarget(const ZQRenderTarget&) = delete;
    ZQRenderTarget& operator=(const ZQRenderTarget&) = delete;
    /// Ends a Begin still open and releases the texture and depth buffer.
    virtual ~ZQRenderTarget();

    /// Saves the device's render target, depth buffer and viewport, then sets this texture, its depth
    /// buffer and its whole area as the viewport. Call inside the device scene. False (nothing changed)
    /// when already begun or without a texture (lost, or it could not be made).
    bool Begin();
    /// Restores what Begin saved; does nothing without a successful Begin.
    void End();

    /// Releases the texture and depth buffer (ending a Begin first).
    void OnLostDevice(void* context);
    /// Makes them again at the wanted size (for size 0 backBuffer's, or the device's back buffer's when it
    /// is null); keeps them when they are there at that size. The device made at construction is used.
    /// S_OK, E_FAIL without a size, or the device's failure.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);

    /// The texture, or null while lost. Changes at every reset: ask again rather than keep it.
    IDirect3DTexture9* GetTexture();
    /// The whole texture as a chunk (origin 0, 0): its address stays, its texture follows every reset
    /// (null while lost, when it draws untextured). Owned by the target.
    _ZQTextureChunk_tag* GetChunk();
    /// The texture's size in pixels (0 while lost).
    UINT GetWidth();
    UINT GetHeight();

private:
    HRESULT Create_NoLock(UINT width, UINT height);
    void Release_NoLock();
    void Restore_NoLock();

    IDirect3DDevice9* m_device;
    UINT m_wantedWidth, m_wantedHeight;
    D3DFORMAT m_format;
    UINT m_width = 0, m_height = 0;
    IDirect3DTexture9* m_texture = nullptr;
    IDirect3DSurface9* m_surface = nullptr;
    IDirect3DSurface9* m_depth = nullptr;
    // What Begin found, restored and let go by End.
    IDirect3DSurface9* m_savedTarget = nullptr;
    IDirect3DSurface9* m_savedDepth = nullptr;
    D3DVIEWPORT9 m_savedViewport = {};
    bool m_begun = false;
    _ZQTextureChunk_tag m_chunk;
    ZQCriticalSection m_lock;
};

} // namespace ZQ
