// The statistics texts: frame rate, presentation settings and device.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQLock.h"

#include <cwchar>

namespace ZQ {

namespace {
// Every format by its name without the "D3DFMT_" prefix.
struct FormatNameEntry {
    D3DFORMAT format;
    const wchar_t* name;
};
#define ZQ_WIDE(text) L##text
#define ZQ_FORMAT(name) {D3DFMT_##name, ZQ_WIDE(#name)},
const FormatNameEntry kFormatNames[] = {
    ZQ_FORMAT(UNKNOWN) ZQ_FORMAT(R8G8B8) ZQ_FORMAT(A8R8G8B8) ZQ_FORMAT(X8R8G8B8) ZQ_FORMAT(R5G6B5)
    ZQ_FORMAT(X1R5G5B5) ZQ_FORMAT(A1R5G5B5) ZQ_FORMAT(A4R4G4B4) ZQ_FORMAT(R3G3B2) ZQ_FORMAT(A8) ZQ_FORMAT(A8R3G3B2)
    ZQ_FORMAT(X4R4G4B4) ZQ_FORMAT(A2B10G10R10) ZQ_FORMAT(A8B8G8R8) ZQ_FORMAT(X8B8G8R8) ZQ_FORMAT(G16R16)
    ZQ_FORMAT(A2R10G10B10) ZQ_FORMAT(A16B16G16R16) ZQ_FORMAT(A8P8) ZQ_FORMAT(P8) ZQ_FORMAT(L8) ZQ_FORMAT(A8L8)
    ZQ_FORMAT(A4L4) ZQ_FORMAT(V8U8) ZQ_FORMAT(L6V5U5) ZQ_FORMAT(X8L8V8U8) ZQ_FORMAT(Q8W8V8U8) ZQ_FORMAT(V16U16)
    ZQ_FORMAT(A2W10V10U10) ZQ_FORMAT(UYVY) ZQ_FORMAT(YUY2) ZQ_FORMAT(DXT1) ZQ_FORMAT(DXT2) ZQ_FORMAT(DXT3)
    ZQ_FORMAT(DXT4) ZQ_FORMAT(DXT5) ZQ_FORMAT(MULTI2_ARGB8) ZQ_FORMAT(G8R8_G8B8) ZQ_FORMAT(R8G8_B8G8)
    ZQ_FORMAT(D16_LOCKABLE) ZQ_FORMAT(D32) ZQ_FORMAT(D15S1) ZQ_FORMAT(D24S8) ZQ_FORMAT(D24X8) ZQ_FORMAT(D24X4S4)
    ZQ_FORMAT(D16) ZQ_FORMAT(L16) ZQ_FORMAT(D32F_LOCKABLE) ZQ_FORMAT(D24FS8) ZQ_FORMAT(D32_LOCKABLE)
    ZQ_FORMAT(S8_LOCKABLE) ZQ_FORMAT(VERTEXDATA) ZQ_FORMAT(INDEX16) ZQ_FORMAT(INDEX32) ZQ_FORMAT(Q16W16V16U16)
    ZQ_FORMAT(R16F) ZQ_FORMAT(G16R16F) ZQ_FORMAT(A16B16G16R16F) ZQ_FORMAT(R32F) ZQ_FORMAT(G32R32F)
    ZQ_FORMAT(A32B32G32R32F) ZQ_FORMAT(CxV8U8) ZQ_FORMAT(A1) ZQ_FORMAT(A2B10G10R10_XR_BIAS) ZQ_FORMAT(BINARYBUFFER)
};
#undef ZQ_FORMAT
#undef ZQ_WIDE

const wchar_t* FormatName(D3DFORMAT format) {
    for (const FormatNameEntry& entry : kFormatNames)
        if (entry.format == format)
            return entry.name;
    return L"Unknown format";
}
} // namespace

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
        _snwprintf(formats, 100, L"%ls", FormatName(settings.AdapterFormat));
    else
        _snwprintf(formats, 100, L"backbuf %ls, adapter %ls", FormatName(pp.BackBufferFormat),
                   FormatName(settings.AdapterFormat));
    formats[99] = 0;
    wchar_t depth[32] = L"";
    if (pp.EnableAutoDepthStencil)
        _snwprintf(depth, 32, L" (%ls)", FormatName(pp.AutoDepthStencilFormat));
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
