// The statistics texts: frame rate, presentation settings and device.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/frame/ZQFormats.h"
#include "ZQ/core/ZQLock.h"

#include <cwchar>

namespace ZQ {

void ZQDirect3d::UpdateFrameStats() {
    if (GetNoStats())
        return;
    const DWORD frames = GetLastStatsUpdateFrames() + 1;
    SetLastStatsUpdateFrames(frames);
    ZQTimer* timer = GetTimer();
    if (!timer)
        return;
    const double now = timer->GetAbsoluteTime();
    const double since = now - GetLastStatsUpdateTime();
    if (since <= 1.0)
        return;
    const float fps = static_cast<float>(frames / since);
    SetFPS(fps);
    SetLastStatsUpdateTime(now);
    SetLastStatsUpdateFrames(0);
    ZQLock lock(&m_stateLock);
    _snwprintf(m_FPSStats, 64, L"%0.2f fps", fps);
    m_FPSStats[63] = 0;
}

const wchar_t* ZQDirect3d::GetFrameStats(bool showFPS) {
    ZQLock lock(&m_stateLock);
    _snwprintf(m_frameStats, 256, L"%ls %ls", showFPS ? m_FPSStats : L"", m_StaticFrameStats);
    m_frameStats[255] = 0;
    return m_frameStats;
}

void ZQDirect3d::UpdateStaticFrameStats() {
    if (GetNoStats())
        return;
    const _ZQDeviceSettings_tag settings = GetDeviceSettings();
    const D3DPRESENT_PARAMETERS& pp = settings.pp;
    wchar_t formats[100];
    if (pp.BackBufferFormat == settings.AdapterFormat)
        _snwprintf(formats, 100, L"%ls", ZQD3DFormatName(settings.AdapterFormat));
    else
        _snwprintf(formats, 100, L"backbuf %ls, adapter %ls", ZQD3DFormatName(pp.BackBufferFormat),
                   ZQD3DFormatName(settings.AdapterFormat));
    formats[99] = 0;
    wchar_t depth[32] = L"";
    if (pp.EnableAutoDepthStencil)
        _snwprintf(depth, 32, L" (%ls)", ZQD3DFormatName(pp.AutoDepthStencilFormat));
    depth[31] = 0;
    wchar_t multisample[40] = L"";
    if (pp.MultiSampleType == D3DMULTISAMPLE_NONMASKABLE)
        wcscpy(multisample, L" (Nonmaskable Multisample)");
    else if (pp.MultiSampleType != D3DMULTISAMPLE_NONE)
        _snwprintf(multisample, 40, L" (%dx Multisample)", static_cast<int>(pp.MultiSampleType));
    multisample[39] = 0;
    const bool vsync = pp.PresentationInterval != D3DPRESENT_INTERVAL_IMMEDIATE;
    ZQLock lock(&m_stateLock);
    _snwprintf(m_StaticFrameStats, 256, L"Vsync %ls (%dx%d), %ls%ls%ls", vsync ? L"On" : L"Off",
               static_cast<int>(pp.BackBufferWidth), static_cast<int>(pp.BackBufferHeight), formats, depth,
               multisample);
    m_StaticFrameStats[255] = 0;
}

#define ZQ_DEFINE_TEXT_ACCESSORS(name, capacity)                                                                    \
    wchar_t* ZQDirect3d::Get##name() {                                                                                \
        ZQLock lock(&m_stateLock);                                                                                    \
        return m_##name;                                                                                              \
    }                                                                                                                 \
    void ZQDirect3d::Set##name(const wchar_t* text) {                                                                 \
        ZQLock lock(&m_stateLock);                                                                                    \
        if (text == m_##name)                                                                                         \
            return;                                                                                                   \
        m_##name[0] = 0;                                                                                              \
        if (text)                                                                                                     \
            wcsncpy(m_##name, text, capacity - 1);                                                                    \
        m_##name[capacity - 1] = 0;                                                                                   \
    }
ZQ_DIRECT3D_TEXTS(ZQ_DEFINE_TEXT_ACCESSORS)
#undef ZQ_DEFINE_TEXT_ACCESSORS

void ZQDirect3d::UpdateDeviceStats() {
    const _ZQDeviceSettings_tag settings = GetDeviceSettings();
    D3DCAPS9 caps = {};
    {
        ZQLock lock(&m_stateLock);
        if (m_Caps)
            caps = *m_Caps;
    }
    const wchar_t* type = settings.DeviceType == D3DDEVTYPE_HAL   ? L"HAL"
                          : settings.DeviceType == D3DDEVTYPE_REF ? L"REF"
                                                                  : L"SW";
    const DWORD behavior = settings.BehaviorFlags;
    const bool hardwareTnL = (caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT) != 0;
    const wchar_t* processing = L" (sw vp)";
    if (behavior & D3DCREATE_HARDWARE_VERTEXPROCESSING)
        processing = (behavior & D3DCREATE_PUREDEVICE) ? (hardwareTnL ? L" (pure hw vp)" : L" (simulated pure hw vp)")
                                                       : (hardwareTnL ? L" (hw vp)" : L" (simulated hw vp)");
    else if (behavior & D3DCREATE_MIXED_VERTEXPROCESSING)
        processing = hardwareTnL ? L" (mixed vp)" : L" (simulated mixed vp)";
    D3DADAPTER_IDENTIFIER9 identifier = {};
    if (IDirect3D9* d3d = GetD3D())
        d3d->GetAdapterIdentifier(settings.AdapterOrdinal, 0, &identifier);
    ZQLock lock(&m_stateLock);
    _snwprintf(m_DeviceStats, 256, L"%ls%ls: %hs", type, processing, identifier.Description);
    m_DeviceStats[255] = 0;
}

} // namespace ZQ
