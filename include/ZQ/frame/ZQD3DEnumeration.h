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

/// One adapter: what the driver says it is, its monitor and its desktop mode when enumerated.
struct _ZQEnumAdapter_tag {
    UINT AdapterOrdinal;
    D3DADAPTER_IDENTIFIER9 Identifier;
    HMONITOR Monitor;
    D3DDISPLAYMODE Desktop;
};

/// One device type of one adapter with its caps.
struct _ZQEnumDevice_tag {
    UINT AdapterOrdinal;
    D3DDEVTYPE DeviceType;
    D3DCAPS9 Caps;
};

/// The fixed lists a settings combination chooses from.
enum {
    ZQ_ENUM_MAX_DEPTH_FORMATS = 6,
    ZQ_ENUM_MAX_MULTISAMPLE_TYPES = 17, ///< none, non-maskable, 2 to 16 samples
    ZQ_ENUM_MAX_PRESENT_INTERVALS = 6,
    ZQ_ENUM_MAX_VERTEX_PROCESSING = 4,
};

/// An adapter format, back-buffer format and windowed state that one device type of one adapter
/// accepts, with everything that can go with them. Plain record: fixed lists with their counts.
struct _ZQEnumDeviceSettingsCombo_tag {
    UINT AdapterOrdinal;
    D3DDEVTYPE DeviceType;
    D3DFORMAT AdapterFormat;
    D3DFORMAT BackBufferFormat;
    BOOL Windowed;
    UINT DepthStencilFormatCount;
    D3DFORMAT DepthStencilFormats[ZQ_ENUM_MAX_DEPTH_FORMATS];
    /// Bit n of entry i: depth-stencil format i cannot go with multisample type n.
    DWORD DSMSConflicts[ZQ_ENUM_MAX_DEPTH_FORMATS];
    UINT MultiSampleTypeCount;
    D3DMULTISAMPLE_TYPE MultiSampleTypes[ZQ_ENUM_MAX_MULTISAMPLE_TYPES];
    /// Quality levels of each type: valid qualities are 0 to this minus one.
    DWORD MultiSampleQualityLevels[ZQ_ENUM_MAX_MULTISAMPLE_TYPES];
    UINT PresentIntervalCount;
    UINT PresentIntervals[ZQ_ENUM_MAX_PRESENT_INTERVALS];
    /// Creation flags: hardware (with pure device), hardware, mixed, software.
    UINT VertexProcessingCount;
    DWORD VertexProcessings[ZQ_ENUM_MAX_VERTEX_PROCESSING];
};

/// What the adapters of a Direct3D object offer: every adapter with its monitor and the full-screen
/// display modes of every display format; the hardware and reference devices with their caps; and
/// every adapter and back-buffer format pair each device takes windowed and full screen, with
/// depth-stencil formats, multisample types and quality levels, their conflicts, presentation
/// intervals and vertex processing. Read by Enumerate and kept until it runs again.
class ZQ_API ZQD3DEnumeration {
public:
    ZQD3DEnumeration();

    /// Reads the adapters of d3d, replacing what an earlier call read; E_INVALIDARG without d3d.
    HRESULT Enumerate(IDirect3D9* d3d);
    /// True once Enumerate has succeeded.
    bool HasEnumerated() const { return m_enumerated; }
    UINT GetAdapterCount() const { return m_adapterCount; }
    const ZQArray<_ZQEnumAdapter_tag>& GetAdapters() const { return m_adapters; }
    /// The adapter enumerated under ordinal, or null.
    const _ZQEnumAdapter_tag* GetAdapter(UINT ordinal) const;
    const ZQArray<_ZQEnumDevice_tag>& GetDevices() const { return m_devices; }
    /// The device of that adapter and type, or null when the adapter does not offer it.
    const _ZQEnumDevice_tag* GetDevice(UINT ordinal, D3DDEVTYPE type) const;
    const ZQArray<_ZQEnumDeviceSettingsCombo_tag>& GetSettingsCombos() const { return m_combos; }
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
    HRESULT EnumerateAdapter(IDirect3D9* d3d, UINT adapter);
    HRESULT EnumerateCombos(IDirect3D9* d3d, const _ZQEnumDevice_tag& device);
    void DescribeCombo(IDirect3D9* d3d, const D3DCAPS9& caps, _ZQEnumDeviceSettingsCombo_tag* combo) const;
    HRESULT EnumerateConflicts();

    ZQArray<_ZQEnumAdapter_tag> m_adapters;
    ZQArray<_ZQEnumDevice_tag> m_devices;
    ZQArray<_ZQEnumDeviceSettingsCombo_tag> m_combos;
    ZQArray<_ZQEnumDisplayMode_tag> m_modes;
    ZQArray<_ZQD3DEnumDSMSConflict_tag> m_conflicts;
    UINT m_adapterCount;
    bool m_enumerated;
};

} // namespace ZQ
