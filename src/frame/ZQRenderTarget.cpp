#include "ZQ/frame/ZQRenderTarget.h"
#include "src/core/ZQComRelease.h"

namespace ZQ {

namespace {

bool BackBufferSize(IDirect3DDevice9* device, UINT& width, UINT& height) {
    IDirect3DSurface9* backBuffer = nullptr;
    D3DSURFACE_DESC desc;
    const bool read = SUCCEEDED(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer)) &&
                      SUCCEEDED(backBuffer->GetDesc(&desc));
    ZQSafeRelease(backBuffer);
    if (read) {
        width = desc.Width;
        height = desc.Height;
    }
    return read;
}

// The depth format the device draws the back buffer with, so that 3D behaves the same in the target.
D3DFORMAT DepthFormat(IDirect3DDevice9* device) {
    IDirect3DSurface9* depth = nullptr;
    D3DSURFACE_DESC desc;
    const bool read = SUCCEEDED(device->GetDepthStencilSurface(&depth)) && SUCCEEDED(depth->GetDesc(&desc));
    ZQSafeRelease(depth);
    return read ? desc.Format : D3DFMT_D16;
}

} // namespace

ZQRenderTarget::ZQRenderTarget(IDirect3DDevice9* device, UINT width, UINT height, D3DFORMAT format)
    : m_device(device), m_wantedWidth(width), m_wantedHeight(height), m_format(format), m_chunk() {
    if (device && device->TestCooperativeLevel() == D3D_OK)
        OnResetDevice(device, nullptr, nullptr);
}

ZQRenderTarget::~ZQRenderTarget() {
    ZQLock lock(m_lock);
    Release_NoLock();
}

HRESULT ZQRenderTarget::Create_NoLock(UINT width, UINT height) {
    HRESULT hr = m_device->CreateTexture(width, height, 1, D3DUSAGE_RENDERTARGET, m_format, D3DPOOL_DEFAULT, &m_texture,
                                         nullptr);
    if (SUCCEEDED(hr))
        hr = m_texture->GetSurfaceLevel(0, &m_surface);
    if (SUCCEEDED(hr))
        hr = m_device->CreateDepthStencilSurface(width, height, DepthFormat(m_device), D3DMULTISAMPLE_NONE, 0, FALSE,
                                                 &m_depth, nullptr);
    if (FAILED(hr)) {
        Release_NoLock();
        return hr;
    }
    m_width = width;
    m_height = height;
    m_chunk.pixel = ZQRect(0, 0, static_cast<int>(width), static_cast<int>(height));
    m_chunk.texcoord = ZQRect(0.0f, 0.0f, 1.0f, 1.0f);
    m_chunk.sharedTexture = m_texture;
    return S_OK;
}

void ZQRenderTarget::Release_NoLock() {
    Restore_NoLock();
    ZQSafeRelease(m_depth);
    ZQSafeRelease(m_surface);
    ZQSafeRelease(m_texture);
    m_width = m_height = 0;
    m_chunk.pixel = ZQRect(0, 0, 0, 0);
    m_chunk.sharedTexture = nullptr;
}

bool ZQRenderTarget::Begin() {
    ZQLock lock(m_lock);
    if (m_begun || !m_surface || FAILED(m_device->GetViewport(&m_savedViewport)))
        return false;
    m_begun = true;
    // A device without a depth buffer answers with none: End sets none again.
    m_device->GetDepthStencilSurface(&m_savedDepth);
    if (FAILED(m_device->GetRenderTarget(0, &m_savedTarget)) || FAILED(m_device->SetRenderTarget(0, m_surface))) {
        Restore_NoLock();
        return false;
    }
    m_device->SetDepthStencilSurface(m_depth);
    const D3DVIEWPORT9 whole = {0, 0, m_width, m_height, 0.0f, 1.0f};
    m_device->SetViewport(&whole);
    return true;
}

void ZQRenderTarget::End() {
    ZQLock lock(m_lock);
    Restore_NoLock();
}

// Setting a render target resets the viewport to all of it, so the saved viewport goes last.
void ZQRenderTarget::Restore_NoLock() {
    if (!m_begun)
        return;
    if (m_savedTarget) {
        m_device->SetRenderTarget(0, m_savedTarget);
        m_device->SetViewport(&m_savedViewport);
    }
    m_device->SetDepthStencilSurface(m_savedDepth);
    ZQSafeRelease(m_savedTarget);
    ZQSafeRelease(m_savedDepth);
    m_begun = false;
}

void ZQRenderTarget::OnLostDevice(void*) {
    ZQLock lock(m_lock);
    Release_NoLock();
}

HRESULT ZQRenderTarget::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC* backBuffer, void*) {
    ZQLock lock(m_lock);
    if (!m_device)
        return E_FAIL;
    UINT width = m_wantedWidth, height = m_wantedHeight;
    if (width == 0 || height == 0) {
        if (backBuffer) {
            width = backBuffer->Width;
            height = backBuffer->Height;
        } else if (!BackBufferSize(m_device, width, height)) {
            return E_FAIL;
        }
    }
    if (width == 0 || height == 0)
        return E_FAIL;
    if (m_texture && width == m_width && height == m_height)
        return S_OK;
    Release_NoLock();
    return Create_NoLock(width, height);
}

IDirect3DTexture9* ZQRenderTarget::GetTexture() {
    ZQLock lock(m_lock);
    return m_texture;
}

_ZQTextureChunk_tag* ZQRenderTarget::GetChunk() {
    return &m_chunk;
}

UINT ZQRenderTarget::GetWidth() {
    ZQLock lock(m_lock);
    return m_width;
}

UINT ZQRenderTarget::GetHeight() {
    ZQLock lock(m_lock);
    return m_height;
}

} // namespace ZQ
