#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

// Screenshots as PNG, for hosts that check their screens without a display (CI, kiosks under test).
// Each returns E_INVALIDARG for a null argument, or the failure of the Direct3D or D3DX call that stopped it
// (a path that cannot be written fails); every object made on the way is released on every path.

/// Saves a surface as PNG: a render target (default pool, multisampled or not) is copied to system memory
/// first; any other surface is saved as it is.
ZQ_API HRESULT ZQSaveRenderTarget(IDirect3DDevice9* device, IDirect3DSurface9* target, const wchar_t* path);

/// Saves back buffer 0 of swap chain 0 as PNG (what the next Present shows).
ZQ_API HRESULT ZQSaveBackBuffer(IDirect3DDevice9* device, const wchar_t* path);

/// Saves level 0 of a texture as PNG: a render-target texture, a managed or a system-memory one.
ZQ_API HRESULT ZQSaveTexture(IDirect3DDevice9* device, IDirect3DTexture9* texture, const wchar_t* path);

} // namespace ZQ
