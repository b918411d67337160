#include "ZQ/frame/ZQD3DEnumeration.h"

#include <climits>
#include <cstdlib>

namespace ZQ {

namespace {
// The formats Direct3D 9 accepts as a display format, and the back buffers that can go with them.
const D3DFORMAT kDisplayFormats[] = {D3DFMT_X8R8G8B8, D3DFMT_A2R10G10B10, D3DFMT_R5G6B5, D3DFMT_X1R5G5B5};
const D3DFORMAT kBackBufferFormats[] = {D3DFMT_A8R8G8B8, D3DFMT_X8R8G8B8, D3DFMT_A2R10G10B10,
                                        D3DFMT_R5G6B5,   D3DFMT_A1R5G5B5, D3DFMT_X1R5G5B5};
const D3DFORMAT kDepthFormats[ZQ_ENUM_MAX_DEPTH_FORMATS] = {D3DFMT_D16,   D3DFMT_D15S1,   D3DFMT_D24X8,
                                                            D3DFMT_D24S8, D3DFMT_D24X4S4, D3DFMT_D32};
const D3DDEVTYPE kDeviceTypes[] = {D3DDEVTYPE_HAL, D3DDEVTYPE_REF};
// Windowed devices can only wait for one vertical blank at most.
const UINT kPresentIntervals[ZQ_ENUM_MAX_PRESENT_INTERVALS] = {
    D3DPRESENT_INTERVAL_IMMEDIATE, D3DPRESENT_INTERVAL_DEFAULT, D3DPRESENT_INTERVAL_ONE,
    D3DPRESENT_INTERVAL_TWO,       D3DPRESENT_INTERVAL_THREE,   D3DPRESENT_INTERVAL_FOUR};
} // namespace

ZQD3DEnumeration::ZQD3DEnumeration() : m_adapterCount(0), m_enumerated(false) {}

HRESULT ZQD3DEnumeration::Enumerate(IDirect3D9* d3d) {
    if (!d3d)
        return E_INVALIDARG;
    m_adapters.SetSize(0);
    m_devices.SetSize(0);
    m_combos.SetSize(0);
    m_modes.SetSize(0);
    m_conflicts.SetSize(0);
    m_enumerated = false;
    m_adapterCount = d3d->GetAdapterCount();
    for (UINT adapter = 0; adapter < m_adapterCount; ++adapter) {
        const HRESULT hr = EnumerateAdapter(d3d, adapter);
        if (FAILED(hr))
            return hr;
    }
    const HRESULT hr = EnumerateConflicts();
    if (FAILED(hr))
        return hr;
    m_enumerated = true;
    return S_OK;
}

HRESULT ZQD3DEnumeration::EnumerateAdapter(IDirect3D9* d3d, UINT ordinal) {
    _ZQEnumAdapter_tag adapter = {};
    adapter.AdapterOrdinal = ordinal;
    // An adapter that cannot describe itself or its desktop is not one a device can be made on.
    if (FAILED(d3d->GetAdapterIdentifier(ordinal, 0, &adapter.Identifier)) ||
        FAILED(d3d->GetAdapterDisplayMode(ordinal, &adapter.Desktop)))
        return S_OK;
    adapter.Monitor = d3d->GetAdapterMonitor(ordinal);
    HRESULT hr = m_adapters.Add(adapter);
    if (FAILED(hr))
        return hr;

    for (D3DFORMAT format : kDisplayFormats) {
        const UINT count = d3d->GetAdapterModeCount(ordinal, format);
        for (UINT i = 0; i < count; ++i) {
            _ZQEnumDisplayMode_tag mode = {ordinal, {}};
            if (FAILED(d3d->EnumAdapterModes(ordinal, format, i, &mode.Mode)))
                continue;
            hr = m_modes.Add(mode);
            if (FAILED(hr))
                return hr;
        }
    }
    for (D3DDEVTYPE type : kDeviceTypes) {
        _ZQEnumDevice_tag device = {ordinal, type, {}};
        if (FAILED(d3d->GetDeviceCaps(ordinal, type, &device.Caps)))
            continue;
        hr = m_devices.Add(device);
        if (SUCCEEDED(hr))
            hr = EnumerateCombos(d3d, device);
        if (FAILED(hr))
            return hr;
    }
    return S_OK;
}

HRESULT ZQD3DEnumeration::EnumerateCombos(IDirect3D9* d3d, const _ZQEnumDevice_tag& device) {
    const _ZQEnumAdapter_tag* adapter = GetAdapter(device.AdapterOrdinal);
    for (D3DFORMAT adapterFormat : kDisplayFormats) {
        bool hasModes = false;
        for (int i = 0; i < m_modes.GetSize() && !hasModes; ++i)
            hasModes = m_modes[i].AdapterOrdinal == device.AdapterOrdinal && m_modes[i].Mode.Format == adapterFormat;
        for (D3DFORMAT backBuffer : kBackBufferFormats) {
            for (BOOL windowed = FALSE; windowed <= TRUE; ++windowed) {
                // Windowed devices present in the desktop's format; full screen needs a mode in it.
                if (windowed ? adapterFormat != adapter->Desktop.Format : !hasModes)
                    continue;
                if (FAILED(d3d->CheckDeviceType(device.AdapterOrdinal, device.DeviceType, adapterFormat, backBuffer,
                                                windowed)))
                    continue;
                _ZQEnumDeviceSettingsCombo_tag combo = {};
                combo.AdapterOrdinal = device.AdapterOrdinal;
                combo.DeviceType = device.DeviceType;
                combo.AdapterFormat = adapterFormat;
                combo.BackBufferFormat = backBuffer;
                combo.Windowed = windowed;
                DescribeCombo(d3d, device.Caps, &combo);
                const HRESULT hr = m_combos.Add(combo);
                if (FAILED(hr))
                    return hr;
            }
        }
    }
    return S_OK;
}

void ZQD3DEnumeration::DescribeCombo(IDirect3D9* d3d, const D3DCAPS9& caps,
                                     _ZQEnumDeviceSettingsCombo_tag* combo) const {
    const UINT adapter = combo->AdapterOrdinal;
    const D3DDEVTYPE type = combo->DeviceType;
    for (D3DFORMAT depth : kDepthFormats)
        if (SUCCEEDED(d3d->CheckDeviceFormat(adapter, type, combo->AdapterFormat, D3DUSAGE_DEPTHSTENCIL,
                                             D3DRTYPE_SURFACE, depth)) &&
            SUCCEEDED(d3d->CheckDepthStencilMatch(adapter, type, combo->AdapterFormat, combo->BackBufferFormat, depth)))
            combo->DepthStencilFormats[combo->DepthStencilFormatCount++] = depth;

    for (int samples = D3DMULTISAMPLE_NONE; samples <= D3DMULTISAMPLE_16_SAMPLES; ++samples) {
        const D3DMULTISAMPLE_TYPE ms = static_cast<D3DMULTISAMPLE_TYPE>(samples);
        DWORD levels = 0;
        if (FAILED(d3d->CheckDeviceMultiSampleType(adapter, type, combo->BackBufferFormat, combo->Windowed, ms,
                                                   &levels)))
            continue;
        const UINT n = combo->MultiSampleTypeCount++;
        combo->MultiSampleTypes[n] = ms;
        combo->MultiSampleQualityLevels[n] = levels > 0 ? levels : 1;
        for (UINT d = 0; d < combo->DepthStencilFormatCount; ++d)
            if (FAILED(d3d->CheckDeviceMultiSampleType(adapter, type, combo->DepthStencilFormats[d], combo->Windowed,
                                                       ms, nullptr)))
                combo->DSMSConflicts[d] |= 1u << samples;
    }

    for (UINT interval : kPresentIntervals) {
        const bool always = interval == D3DPRESENT_INTERVAL_DEFAULT;
        if (combo->Windowed && interval != D3DPRESENT_INTERVAL_IMMEDIATE && interval != D3DPRESENT_INTERVAL_ONE &&
            !always)
            continue;
        if (always || (caps.PresentationIntervals & interval))
            combo->PresentIntervals[combo->PresentIntervalCount++] = interval;
    }

    if (caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT) {
        if (caps.DevCaps & D3DDEVCAPS_PUREDEVICE)
            combo->VertexProcessings[combo->VertexProcessingCount++] =
                D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_PUREDEVICE;
        combo->VertexProcessings[combo->VertexProcessingCount++] = D3DCREATE_HARDWARE_VERTEXPROCESSING;
        combo->VertexProcessings[combo->VertexProcessingCount++] = D3DCREATE_MIXED_VERTEXPROCESSING;
    }
    combo->VertexProcessings[combo->VertexProcessingCount++] = D3DCREATE_SOFTWARE_VERTEXPROCESSING;
}

HRESULT ZQD3DEnumeration::EnumerateConflicts() {
    const _ZQEnumAdapter_tag* first = GetAdapter(0);
    if (!first)
        return S_OK;
    for (int i = 0; i < m_combos.GetSize(); ++i) {
        const _ZQEnumDeviceSettingsCombo_tag& combo = m_combos[i];
        if (combo.AdapterOrdinal != 0 || combo.DeviceType != D3DDEVTYPE_HAL || !combo.Windowed ||
            combo.BackBufferFormat != first->Desktop.Format)
            continue;
        for (UINT d = 0; d < combo.DepthStencilFormatCount; ++d)
            for (UINT m = 0; m < combo.MultiSampleTypeCount; ++m)
                if (combo.DSMSConflicts[d] & (1u << combo.MultiSampleTypes[m])) {
                    const HRESULT hr = m_conflicts.Add({combo.DepthStencilFormats[d], combo.MultiSampleTypes[m]});
                    if (FAILED(hr))
                        return hr;
                }
    }
    return S_OK;
}

const _ZQEnumAdapter_tag* ZQD3DEnumeration::GetAdapter(UINT ordinal) const {
    for (int i = 0; i < m_adapters.GetSize(); ++i)
        if (m_adapters[i].AdapterOrdinal == ordinal)
            return &m_adapters[i];
    return nullptr;
}

const _ZQEnumDevice_tag* ZQD3DEnumeration::GetDevice(UINT ordinal, D3DDEVTYPE type) const {
    for (int i = 0; i < m_devices.GetSize(); ++i)
        if (m_devices[i].AdapterOrdinal == ordinal && m_devices[i].DeviceType == type)
            return &m_devices[i];
    return nullptr;
}

bool ZQD3DEnumeration::FindClosestMode(UINT adapter, D3DFORMAT format, UINT width, UINT height, UINT refresh,
                                       D3DDISPLAYMODE* best) const {
    long long bestScore = LLONG_MAX;
    for (int i = 0; i < m_modes.GetSize(); ++i) {
        const _ZQEnumDisplayMode_tag& candidate = m_modes[i];
        if (candidate.AdapterOrdinal != adapter || candidate.Mode.Format != format)
            continue;
        const D3DDISPLAYMODE& mode = candidate.Mode;
        // Size first; among equal sizes the refresh rate nearest the one wanted.
        const long long score = (std::llabs(static_cast<long long>(mode.Width) - width) +
                                 std::llabs(static_cast<long long>(mode.Height) - height)) *
                                    65536 +
                                std::llabs(static_cast<long long>(mode.RefreshRate) - refresh);
        if (score < bestScore) {
            bestScore = score;
            *best = mode;
        }
    }
    return bestScore != LLONG_MAX;
}

} // namespace ZQ
