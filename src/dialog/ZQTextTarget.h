// The texture a text control draws its text into, and what draws there: the control renders into it
// in OnFrameMove and draws it whole through the dialog's sprite in OnFrameRender.
#pragma once
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

class ZQTextTarget {
public:
    /// Makes the text sprite and, while the device is usable, the texture of width x height pixels, so
    /// that a control added between two resets draws at once.
    ZQTextTarget(IDirect3DDevice9* device, int width, int height);
    ZQTextTarget(const ZQTextTarget&) = delete;
    ZQTextTarget& operator=(const ZQTextTarget&) = delete;
    ~ZQTextTarget();

    /// Releases the default-pool texture, its surface and the render-to-surface object.
    void OnLostDevice();
    HRESULT OnResetDevice();

    /// Begins the texture's scene, cleared to transparent black, and the text sprite; false (nothing
    /// begun) without a texture or when the device refuses.
    bool Begin();
    /// Between Begin and End: text in where, preceded by its shadow moved by (offset, offset) when
    /// offset is not 0.
    void DrawText(ID3DXFont* font, const wchar_t* text, const ZQRect& where, DWORD format, const D3DXCOLOR& colour,
                  int shadowOffset, const D3DXCOLOR& shadowColour);
    void End();
    /// Clears the texture to transparent black outside any drawing.
    void Clear();
    /// The texture at pos through sprite.
    void Draw(ZQSprite* sprite, D3DXVECTOR3& pos, D3DXCOLOR& colour);

private:
    HRESULT CreateTarget();
    bool BeginScene();

    IDirect3DDevice9* m_device;
    IDirect3DTexture9* m_texture = nullptr;
    IDirect3DSurface9* m_surface = nullptr;
    ID3DXRenderToSurface* m_renderToSurface = nullptr;
    ID3DXSprite* m_textSprite = nullptr;
    unsigned int m_width, m_height;
};

} // namespace ZQ

/// OnResetDevice and OnLostDevice of a text control: passed to its m_target under its m_lock.
#define ZQ_TEXT_TARGET_DEVICE(Class)                                                                                  \
    HRESULT Class::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {                                  \
        ZQLock lock(m_lock);                                                                                          \
        return m_target ? m_target->OnResetDevice() : E_OUTOFMEMORY;                                                  \
    }                                                                                                                 \
    void Class::OnLostDevice(void*) {                                                                                 \
        ZQLock lock(m_lock);                                                                                          \
        if (m_target)                                                                                                 \
            m_target->OnLostDevice();                                                                                 \
    }
