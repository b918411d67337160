// The tests' copy of what the device drew (back buffer 0) or saved (a PNG), row after row, read through
// system memory.
#pragma once
#include <ZQVelisto.h>

#include <vector>

namespace testsupport {

/// The pixels of a system-memory surface, row after row (empty when it cannot be locked).
inline std::vector<D3DCOLOR> SurfaceRows(IDirect3DSurface9* surface, UINT width, UINT height) {
    std::vector<D3DCOLOR> pixels;
    D3DLOCKED_RECT locked;
    if (surface && SUCCEEDED(surface->LockRect(&locked, nullptr, D3DLOCK_READONLY))) {
        for (UINT y = 0; y < height; ++y) {
            const D3DCOLOR* row = reinterpret_cast<const D3DCOLOR*>(static_cast<const char*>(locked.pBits) +
                                                                    y * static_cast<size_t>(locked.Pitch));
            pixels.insert(pixels.end(), row, row + width);
        }
        surface->UnlockRect();
    }
    return pixels;
}

/// A PNG of width x height read back as A8R8G8B8 pixels (empty when it cannot be read).
inline std::vector<D3DCOLOR> ReadPng(IDirect3DDevice9* device, const wchar_t* path, UINT width, UINT height) {
    std::vector<D3DCOLOR> pixels;
    IDirect3DSurface9* surface = nullptr;
    if (SUCCEEDED(device->CreateOffscreenPlainSurface(width, height, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM, &surface,
                                                      nullptr)) &&
        SUCCEEDED(D3DXLoadSurfaceFromFileW(surface, nullptr, nullptr, path, nullptr, D3DX_FILTER_NONE, 0, nullptr)))
        pixels = SurfaceRows(surface, width, height);
    if (surface)
        surface->Release();
    return pixels;
}

/// The X8R8G8B8 pixels of the back buffer (empty when it cannot be read); width receives its width.
inline std::vector<D3DCOLOR> CopyBackBuffer(IDirect3DDevice9* device, UINT& width) {
    std::vector<D3DCOLOR> pixels;
    IDirect3DSurface9* backBuffer = nullptr;
    IDirect3DSurface9* copy = nullptr;
    D3DSURFACE_DESC desc;
    if (SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer)) &&
        SUCCEEDED(backBuffer->GetDesc(&desc)) &&
        SUCCEEDED(device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format, D3DPOOL_SYSTEMMEM, &copy,
                                                      nullptr)) &&
        SUCCEEDED(device->GetRenderTargetData(backBuffer, copy))) {
        width = desc.Width;
        pixels = SurfaceRows(copy, desc.Width, desc.Height);
    }
    if (copy)
        copy->Release();
    if (backBuffer)
        backBuffer->Release();
    return pixels;
}

} // namespace testsupport
