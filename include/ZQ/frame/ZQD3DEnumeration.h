#pragma once
#include "ZQ/core/ZQArray.h"
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// One full-screen display mode of one adapter.
struct _ZQEnumDisplayMode_tag {
    UINT AdapterOrdinal;
    D3DDISPLAYMODE Mode;
};

/// A depth-stencil format and a multisample type that cannot be combined, though the back buffer
/// supports the multisample type.
struct _ZQD3DEnumDSMSConflict_tag {
    D3DFORMAT DSFormat;
    D3DMULTISAMPLE_TYPE MSType;
};

/// What the adapters of a Direct3D object offer: their count and the full-screen display modes of
/// every display format, and the depth-stencil and multisample conflicts of the first adapter's hardware
/// device in its current display format, read by Enumerate and kept until it runs again.
class ZQ_API ZQD3DEnumeration {
public:
    ZQD3DEnumeration();

    /// Reads the adapters of d3d, replacing what an earlier call read; E_INVALIDARG without d3d.
    HRESULT Enumerate(IDirect3D9* d3d);
    /// True once Enumerate has succeeded.
    bool HasEnumerated() const { return m_enumerated; }
    UINT GetAdapterCount() const { return m_adapterCount; }
    /// The display modes read, adapter by adapter.
    const ZQArray<_ZQEnumDisplayMode_tag>& GetDisplayModes() const { return m_modes; }
    /// Windowed, in the first adapter's display format: the depth-stencil formats that match it and the
    /// multisample types its back buffer supports but the depth-stencil format does not.
    const ZQArray<_ZQD3DEnumDSMSConflict_tag>& GetDSMSConflicts() const { return m_conflicts; }
    /// The adapter's mode in format closest in size to width x height (refresh breaks ties);
    /// false when the adapter has no mode in that format.
    bool FindClosestMode(UINT adapter, D3DFORMAT format, UINT width, UINT height, UINT refresh,
                         D3DDISPLAYMODE* best) const;

private:
    HRESULT EnumerateConflicts(IDirect3D9* d3d);

    ZQArray<_ZQEnumDisplayMode_tag> m_modes;
    ZQArray<_ZQD3DEnumDSMSConflict_tag> m_conflicts;
    UINT m_adapterCount;
    bool m_enumerated;
};

} // namespace ZQ
