#include "ZQ/frame/ZQScreenshot.h"

#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/frame/ZQFormats.h"
#include "src/core/ZQComRelease.h"

namespace ZQ {

namespace {

// Owns one reference of a COM pointer: the one place each screenshot object is released.
template <class T> class Held {
public:
    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { ZQSafeRelease(m_object); }
    T** operator&() { return &m_object; }
    T* get() const { return m_object; }

private:
    T* m_object = nullptr;
};

HRESULT SavePng(IDirect3DSurface9* surface, const wchar_t* path) {
    return D3DXSaveSurfaceToFileW(path, D3DXIFF_PNG, surface, nullptr, nullptr);
}

HRESULT SaveSurface(IDirect3DDevice9* device, IDirect3DSurface9* target, const D3DSURFACE_DESC& desc,
                    const wchar_t* path) {
    HRESULT hr;
    if (!(desc.Usage & D3DUSAGE_RENDERTARGET) || desc.Pool != D3DPOOL_DEFAULT)
        return SavePng(target, path);

    // GetRenderTargetData refuses a multisampled source: resolve it into a plain render target first.
    IDirect3DSurface9* source = target;
    Held<IDirect3DSurface9> resolved;
    if (desc.MultiSampleType != D3DMULTISAMPLE_NONE) {
        hr = device->CreateRenderTarget(desc.Width, desc.Height, desc.Format, D3DMULTISAMPLE_NONE, 0, FALSE,
                                        &resolved, nullptr);
        if (SUCCEEDED(hr))
            hr = device->StretchRect(target, nullptr, resolved.get(), nullptr, D3DTEXF_NONE);
        if (FAILED(hr))
            return hr;
        source = resolved.get();
    }
    Held<IDirect3DSurface9> copy;
    hr = device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format, D3DPOOL_SYSTEMMEM, &copy,
                                             nullptr);
    if (SUCCEEDED(hr))
        hr = device->GetRenderTargetData(source, copy.get());
    if (SUCCEEDED(hr))
        hr = SavePng(copy.get(), path);
    return hr;
}

} // namespace

HRESULT ZQSaveRenderTarget(IDirect3DDevice9* device, IDirect3DSurface9* target, const wchar_t* path) {
    if (!device || !target || !path || !path[0])
        return E_INVALIDARG;
    D3DSURFACE_DESC desc = {};
    HRESULT hr = target->GetDesc(&desc);
    if (SUCCEEDED(hr))
        hr = SaveSurface(device, target, desc, path);
    if (FAILED(hr))
        ZQMessage(L"Screenshot: %ls: a %u x %u %ls surface could not be saved: %ls (%ls)", path, desc.Width,
                  desc.Height, ZQD3DFormatName(desc.Format), ZQResultName(hr), ZQResultDescription(hr));
    return hr;
}

HRESULT ZQSaveBackBuffer(IDirect3DDevice9* device, const wchar_t* path) {
    if (!device || !path || !path[0])
        return E_INVALIDARG;
    Held<IDirect3DSurface9> backBuffer;
    HRESULT hr = device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &backBuffer);
    return SUCCEEDED(hr) ? ZQSaveRenderTarget(device, backBuffer.get(), path) : hr;
}

HRESULT ZQSaveTexture(IDirect3DDevice9* device, IDirect3DTexture9* texture, const wchar_t* path) {
    if (!device || !texture || !path || !path[0])
        return E_INVALIDARG;
    Held<IDirect3DSurface9> level;
    HRESULT hr = texture->GetSurfaceLevel(0, &level);
    return SUCCEEDED(hr) ? ZQSaveRenderTarget(device, level.get(), path) : hr;
}

} // namespace ZQ
