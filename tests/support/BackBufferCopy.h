// The tests' copy of what the device drew: back buffer 0, row after row, read through system memory.
#pragma once
#include <ZQVelisto.h>

#include <vector>

namespace testsupport {

/// The X8R8G8B8 pixels of the back buffer (empty when it cannot be read); width receives its width.
inline std::vector<D3DCOLOR> CopyBackBuffer(IDirect3DDevice9* device, UINT& width) {
    std::vector<D3DCOLOR> pixels;
    IDirect3DSurface9* backBuffer = nullptr;
    IDirect3DSurface9* copy = nullptr;
    D3DSURFACE_DESC desc;
    D3DLOCKED_RECT locked;
    if (SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer)) &&
        SUCCEEDED(backBuffer->GetDesc(&desc)) &&
        SUCCEEDED(device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format, D3DPOOL_SYSTEMMEM, &copy,
                                                      nullptr)) &&
        SUCCEEDED(device->GetRenderTargetData(backBuffer, copy)) &&
        SUCCEEDED(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY))) {
        width = desc.Width;
        for (UINT y = 0; y < desc.Height; ++y) {
            const D3DCOLOR* row = reinterpret_cast<const D3DCOLOR*>(static_cast<const char*>(locked.pBits) +
                                                                    y * static_cast<size_t>(locked.Pitch));
            pixels.insert(pixels.end(), row, row + desc.Width);
        }
        copy->UnlockRect();
    }
    if (copy)
        copy->Release();
    if (backBuffer)
        backBuffer->Release();
    return pixels;
}

} // namespace testsupport
