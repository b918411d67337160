#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// A rectangle of the current render target (the back buffer or a ZQRenderTarget) made the device's
/// viewport for the drawing between Begin and End: clears without rectangles, 2D and 3D land inside it.
/// ZQ3DCamera::BeginScene takes its aspect from the viewport by itself; a sprite keeps the viewport it
/// was made in, so call its ReadViewport after Begin and again after End. Begins nest (each restores
/// the viewport it found). Entry may be called from any thread; Begin and End from the drawing thread.
class ZQ_API ZQViewport {
public:
    /// An empty rectangle: Begin refuses it until Entry.
    ZQViewport();
    ZQViewport(int x, int y, int width, int height);

    /// The rectangle in pixels of the render target (x, y its top-left corner), used from the next Begin.
    void Entry(int x, int y, int width, int height);
    /// Saves the device's viewport and sets the rectangle, clipped to the current render target, with
    /// the saved depth range. False (nothing changed) without a device, when already begun or when
    /// nothing of the rectangle is inside the render target.
    bool Begin(IDirect3DDevice9* device);
    /// Restores the viewport Begin saved; does nothing without a successful Begin.
    void End();
    /// The viewport Begin set, or zeros when not begun.
    D3DVIEWPORT9 GetViewport();

private:
    IDirect3DDevice9* m_device;
    int m_x, m_y, m_width, m_height;
    bool m_begun;
    D3DVIEWPORT9 m_saved;
    D3DVIEWPORT9 m_set;
    ZQCriticalSection m_lock;
};

} // namespace ZQ
