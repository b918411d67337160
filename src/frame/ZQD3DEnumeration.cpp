#include "ZQ/frame/ZQD3DEnumeration.h"

#include <climits>
#include <cstdlib>

namespace ZQ {

namespace {
// The formats Direct3D 9 accepts as a full-screen display format.
const D3DFORMAT kDisplayFormats[] = {D3DFMT_X8R8G8B8, D3DFMT_A2R10G10B10, D3DFMT_R5G6B5, D3DFMT_X1R5G5B5};
const D3DFORMAT kDepthFormats[] = {D3DFMT_D16, D3DFMT_D15S1, D3DFMT_D24X8, D3DFMT_D24S8, D3DFMT_D24X4S4, D3DFMT_D32};
} // namespace

ZQD3DEnumeration::ZQD3DEnumeration() : m_adapterCount(0), m_enumerated(false) {}

HRESULT ZQD3DEnumeration::Enumerate(IDirect3D9* d3d) {
    if (!d3d)
        return E_INVALIDARG;
    m_modes.SetSize(0);
    m_conflicts.SetSize(0);
    m_enumerated = false;
    m_adapterCount = d3d->GetAdapterCount();
    for (UINT adapter = 0; adapter < m_adapterCount; ++adapter) {
        for (D3DFORMAT format : kDisplayFormats) {
            const UINT count = d3d->GetAdapterModeCount(adapter, format);
            for (UINT i = 0; i < count; ++i) {
                _ZQEnumDisplayMode_tag mode = {adapter, {}};
                if (FAILED(d3d->EnumAdapterModes(adapter, format, i, &mode.Mode)))
                    continue;
                const HRESULT hr = m_modes.Add(mode);
                if (FAILED(hr))
                    return hr;
            }
        }
    }
    const HRESULT hr = EnumerateConflicts(d3d);
    if (FAILED(hr))
        return hr;
    m_enumerated = true;
    return S_OK;
}

HRESULT ZQD3DEnumeration::EnumerateConflicts(IDirect3D9* d3d) {
    D3DDISPLAYMODE desktop;
    if (m_adapterCount == 0 || FAILED(d3d->GetAdapterDisplayMode(0, &desktop)))
        return S_OK;
    for (D3DFORMAT depth : kDepthFormats) {
        if (FAILED(d3d->CheckDepthStencilMatch(0, D3DDEVTYPE_HAL, desktop.Format, desktop.Format, depth)))
            continue;
        for (int samples = D3DMULTISAMPLE_NONMASKABLE; samples <= D3DMULTISAMPLE_16_SAMPLES; ++samples) {
            const D3DMULTISAMPLE_TYPE type = static_cast<D3DMULTISAMPLE_TYPE>(samples);
            if (FAILED(d3d->CheckDeviceMultiSampleType(0, D3DDEVTYPE_HAL, desktop.Format, TRUE, type, nullptr)) ||
                SUCCEEDED(d3d->CheckDeviceMultiSampleType(0, D3DDEVTYPE_HAL, depth, TRUE, type, nullptr)))
                continue;
            const HRESULT hr = m_conflicts.Add({depth, type});
            if (FAILED(hr))
                return hr;
        }
    }
    return S_OK;
}

bool ZQD3DEnumeration::FindClosestMode(UINT adapter, D3DFORMAT format, UINT width, UINT height, UINT refresh,
                                       D3DDISPLAYMODE* best) const {
    long long bestScore = LLONG_MAX;
    for (int i = 0; i < m_modes.GetSize(); ++i) {
        const _ZQEnumDisplayMode_tag& candidate = m_modes[i];
        if (candidate.AdapterOrdinal != adapter || candidate.Mode.Format != format)
            continue;
        const D3DDISPLAYMODE& mode = candidate.Mode;
        const long long score = std::llabs(static_cast<long long>(mode.Width) - width) +
                                std::llabs(static_cast<long long>(mode.Height) - height) +
                                (mode.RefreshRate == refresh ? 0 : 1);
        if (score < bestScore) {
            bestScore = score;
            *best = mode;
        }
    }
    return bestScore != LLONG_MAX;
}

} // namespace ZQ
