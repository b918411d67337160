// Matching wanted device settings against what the adapters offer: every enumerated combination of
// adapter, device type, formats and window state is checked against the values the caller requires,
// ranked against the values it prefers, and the best one is filled in with sizes, depth buffer,
// multisampling and timing of its own.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/frame/ZQFormats.h"

#include <cstdlib>
#include <cwchar>

namespace ZQ {

namespace {

const UINT kDefaultWidth = 640;
const UINT kDefaultHeight = 480;
const DWORD kVertexProcessingFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_SOFTWARE_VERTEXPROCESSING |
                                     D3DCREATE_MIXED_VERTEXPROCESSING | D3DCREATE_PUREDEVICE;

// What must hold for a combination to serve a request; the order is the order of the messages.
enum Requirement {
    kDesktopFormat,
    kAdapter,
    kDeviceType,
    kWindowed,
    kAdapterFormat,
    kVertexProcessing,
    kResolution,
    kRefreshRate,
    kBackBufferFormat,
    kMultiSample,
    kDepthStencil,
    kPresentInterval,
    kSwapChain,
    kAcceptance,
    kRequirementCount
};

struct DepthBits {
    D3DFORMAT format;
    int depth, stencil;
};
const DepthBits kDepthBits[] = {{D3DFMT_D16, 16, 0},   {D3DFMT_D15S1, 15, 1},  {D3DFMT_D24X8, 24, 0},
                                {D3DFMT_D24S8, 24, 8}, {D3DFMT_D24X4S4, 24, 4}, {D3DFMT_D32, 32, 0}};

DepthBits DepthBitsOf(D3DFORMAT format) {
    for (const DepthBits& bits : kDepthBits)
        if (bits.format == format)
            return bits;
    return {format, 0, 0};
}

int DepthDistance(D3DFORMAT a, D3DFORMAT b) {
    const DepthBits x = DepthBitsOf(a), y = DepthBitsOf(b);
    return std::abs(x.depth - y.depth) * 16 + std::abs(x.stencil - y.stencil);
}

int ColorDistance(D3DFORMAT a, D3DFORMAT b) {
    return std::abs(static_cast<int>(ZQD3DFormatBits(a)) - static_cast<int>(ZQD3DFormatBits(b))) * 4 +
           std::abs(static_cast<int>(ZQD3DFormatAlphaBits(a)) - static_cast<int>(ZQD3DFormatAlphaBits(b)));
}

template <typename T, size_t N> int IndexIn(const T (&list)[N], UINT count, T value) {
    for (UINT i = 0; i < count && i < N; ++i)
        if (list[i] == value)
            return static_cast<int>(i);
    return -1;
}

DWORD VertexProcessingOf(DWORD behavior) {
    return behavior & kVertexProcessingFlags;
}

// Quality levels of a multisample type in a combination, 0 when it does not offer the type.
DWORD QualityLevels(const _ZQEnumDeviceSettingsCombo_tag& combo, D3DMULTISAMPLE_TYPE type) {
    const int i = IndexIn(combo.MultiSampleTypes, combo.MultiSampleTypeCount, type);
    return i < 0 ? 0 : combo.MultiSampleQualityLevels[i];
}

bool Conflicts(const _ZQEnumDeviceSettingsCombo_tag& combo, D3DFORMAT depth, D3DMULTISAMPLE_TYPE type) {
    const int d = IndexIn(combo.DepthStencilFormats, combo.DepthStencilFormatCount, depth);
    return d >= 0 && (combo.DSMSConflicts[d] & (1u << type)) != 0;
}

bool HasMode(const ZQD3DEnumeration& enumeration, const _ZQEnumDeviceSettingsCombo_tag& combo, UINT width,
             UINT height, UINT refresh) {
    const ZQArray<_ZQEnumDisplayMode_tag>& modes = enumeration.GetDisplayModes();
    for (int i = 0; i < modes.GetSize(); ++i) {
        const _ZQEnumDisplayMode_tag& mode = modes[i];
        if (mode.AdapterOrdinal == combo.AdapterOrdinal && mode.Mode.Format == combo.AdapterFormat &&
            (!width || (mode.Mode.Width == width && mode.Mode.Height == height)) &&
            (!refresh || mode.Mode.RefreshRate == refresh))
            return true;
    }
    return false;
}

// Everything one search needs: what was asked, how strictly, and the values preferred where the
// caller left the choice to the library.
struct Search {
    const ZQD3DEnumeration& enumeration;
    const _ZQDeviceSettings_tag& wanted;
    const _ZQMatchOptions_tag& options;
    _ZQDeviceSettings_tag optimal;
    ZQCallbackIsDeviceAcceptable acceptable;
    void* context;

    bool Strict(ZQMatchType type) const { return type == ZQ_MATCH_PRESERVE; }

    bool Meets(Requirement requirement, const _ZQEnumDeviceSettingsCombo_tag& combo) const {
        const D3DPRESENT_PARAMETERS& pp = wanted.pp;
        switch (requirement) {
        case kDesktopFormat: {
            // The desktop may have changed format since it was enumerated.
            const _ZQEnumAdapter_tag* adapter = enumeration.GetAdapter(combo.AdapterOrdinal);
            return adapter && (!combo.Windowed || combo.AdapterFormat == adapter->Desktop.Format);
        }
        case kAdapter:
            return !Strict(options.AdapterOrdinal) || combo.AdapterOrdinal == wanted.AdapterOrdinal;
        case kDeviceType:
            return !Strict(options.DeviceType) || combo.DeviceType == wanted.DeviceType;
        case kWindowed:
            return !Strict(options.Windowed) || (combo.Windowed != FALSE) == (pp.Windowed != FALSE);
        case kAdapterFormat:
            return !Strict(options.AdapterFormat) || wanted.AdapterFormat == D3DFMT_UNKNOWN ||
                   combo.AdapterFormat == wanted.AdapterFormat;
        case kVertexProcessing:
            return !Strict(options.VertexProcessing) || !VertexProcessingOf(wanted.BehaviorFlags) ||
                   IndexIn(combo.VertexProcessings, combo.VertexProcessingCount,
                           VertexProcessingOf(wanted.BehaviorFlags)) >= 0;
        case kResolution:
            return combo.Windowed || !Strict(options.Resolution) || !pp.BackBufferWidth || !pp.BackBufferHeight ||
                   HasMode(enumeration, combo, pp.BackBufferWidth, pp.BackBufferHeight, 0);
        case kRefreshRate:
            return combo.Windowed || !Strict(options.RefreshRate) || !pp.FullScreen_RefreshRateInHz ||
                   HasMode(enumeration, combo, Strict(options.Resolution) ? pp.BackBufferWidth : 0,
                           Strict(options.Resolution) ? pp.BackBufferHeight : 0, pp.FullScreen_RefreshRateInHz);
        case kBackBufferFormat:
            return !Strict(options.BackBufferFormat) || pp.BackBufferFormat == D3DFMT_UNKNOWN ||
                   combo.BackBufferFormat == pp.BackBufferFormat;
        case kMultiSample:
            return !Strict(options.MultiSample) || QualityLevels(combo, pp.MultiSampleType) > pp.MultiSampleQuality;
        case kDepthStencil:
            if (!Strict(options.DepthStencilFormat) || !pp.EnableAutoDepthStencil)
                return true;
            return IndexIn(combo.DepthStencilFormats, combo.DepthStencilFormatCount, pp.AutoDepthStencilFormat) >= 0 &&
                   !(Strict(options.MultiSample) && Conflicts(combo, pp.AutoDepthStencilFormat, pp.MultiSampleType));
        case kPresentInterval:
            return !Strict(options.PresentInterval) ||
                   IndexIn(combo.PresentIntervals, combo.PresentIntervalCount, pp.PresentationInterval) >= 0;
        case kSwapChain: {
            // Multisampling needs the discard swap effect and a back buffer that cannot be locked.
            const bool multisampled = Strict(options.MultiSample) && pp.MultiSampleType != D3DMULTISAMPLE_NONE;
            if (multisampled && Strict(options.SwapEffect) && pp.SwapEffect != D3DSWAPEFFECT_DISCARD)
                return false;
            if (multisampled && Strict(options.PresentFlags) && (pp.Flags & D3DPRESENTFLAG_LOCKABLE_BACKBUFFER))
                return false;
            return !Strict(options.BackBufferCount) || pp.BackBufferCount <= D3DPRESENT_BACK_BUFFERS_MAX;
        }
        case kAcceptance: {
            const _ZQEnumDevice_tag* device = enumeration.GetDevice(combo.AdapterOrdinal, combo.DeviceType);
            return !acceptable ||
                   (device && acceptable(const_cast<D3DCAPS9*>(&device->Caps), combo.AdapterFormat,
                                         combo.BackBufferFormat, combo.Windowed != FALSE, context));
        }
        default:
            return true;
        }
    }

    bool MeetsAll(const _ZQEnumDeviceSettingsCombo_tag& combo) const {
        for (int r = 0; r < kRequirementCount; ++r)
            if (!Meets(static_cast<Requirement>(r), combo))
                return false;
        return true;
    }

    // How well a combination serves the preferred values: adapter, then device type, then window
    // state dominate; the rest add up.
    float Rank(const _ZQEnumDeviceSettingsCombo_tag& combo) const {
        const D3DPRESENT_PARAMETERS& best = optimal.pp;
        float rank = 0.0f;
        if (combo.AdapterOrdinal == optimal.AdapterOrdinal)
            rank += 1000.0f;
        if (combo.DeviceType == optimal.DeviceType)
            rank += 100.0f;
        if (combo.DeviceType == D3DDEVTYPE_HAL)
            rank += 0.1f;
        if ((combo.Windowed != FALSE) == (best.Windowed != FALSE))
            rank += 10.0f;
        rank += Closeness(ColorDistance(combo.AdapterFormat, optimal.AdapterFormat));
        rank += Closeness(ColorDistance(combo.BackBufferFormat, best.BackBufferFormat));
        if (combo.BackBufferFormat == combo.AdapterFormat)
            rank += 0.1f;
        if (IndexIn(combo.VertexProcessings, combo.VertexProcessingCount, VertexProcessingOf(optimal.BehaviorFlags)) >=
            0)
            rank += 1.0f;
        if (!combo.Windowed) {
            D3DDISPLAYMODE mode;
            if (enumeration.FindClosestMode(combo.AdapterOrdinal, combo.AdapterFormat, best.BackBufferWidth,
                                            best.BackBufferHeight, best.FullScreen_RefreshRateInHz, &mode)) {
                const long distance = std::labs(static_cast<long>(mode.Width) - static_cast<long>(best.BackBufferWidth)) +
                                      std::labs(static_cast<long>(mode.Height) - static_cast<long>(best.BackBufferHeight));
                rank += distance == 0 ? 1.0f : 0.9f / (1.0f + distance / 64.0f);
                if (mode.RefreshRate == best.FullScreen_RefreshRateInHz)
                    rank += 1.0f;
            }
        }
        if (QualityLevels(combo, best.MultiSampleType) > best.MultiSampleQuality)
            rank += 1.0f;
        if (IndexIn(combo.DepthStencilFormats, combo.DepthStencilFormatCount, best.AutoDepthStencilFormat) >= 0)
            rank += 1.0f;
        if (IndexIn(combo.PresentIntervals, combo.PresentIntervalCount, best.PresentationInterval) >= 0)
            rank += 1.0f;
        return rank;
    }

    static float Closeness(int distance) { return distance == 0 ? 1.0f : 0.9f / (1.0f + distance / 8.0f); }
};

// The values preferred for every field: the wanted one unless it is ignored (or left zero), else the
// library's choice: the desktop's format, size and refresh rate, hardware, vertical sync.
_ZQDeviceSettings_tag OptimalSettings(const _ZQDeviceSettings_tag& wanted, const _ZQMatchOptions_tag& options,
                                      const D3DDISPLAYMODE& desktop, UINT windowWidth, UINT windowHeight,
                                      int forceVsync) {
    const D3DPRESENT_PARAMETERS& in = wanted.pp;
    _ZQDeviceSettings_tag best = {};
    D3DPRESENT_PARAMETERS& pp = best.pp;
    best.AdapterOrdinal = options.AdapterOrdinal == ZQ_MATCH_IGNORE ? D3DADAPTER_DEFAULT : wanted.AdapterOrdinal;
    best.DeviceType = options.DeviceType == ZQ_MATCH_IGNORE || wanted.DeviceType != D3DDEVTYPE_REF ? D3DDEVTYPE_HAL
                                                                                                 : D3DDEVTYPE_REF;
    pp.Windowed = options.Windowed == ZQ_MATCH_IGNORE ? TRUE : in.Windowed;
    if (options.AdapterFormat != ZQ_MATCH_IGNORE && wanted.AdapterFormat != D3DFMT_UNKNOWN)
        best.AdapterFormat = wanted.AdapterFormat;
    else
        best.AdapterFormat = pp.Windowed || ZQD3DFormatBits(desktop.Format) >= 32 ? desktop.Format : D3DFMT_X8R8G8B8;
    best.BehaviorFlags = options.VertexProcessing != ZQ_MATCH_IGNORE && VertexProcessingOf(wanted.BehaviorFlags)
                             ? VertexProcessingOf(wanted.BehaviorFlags)
                             : D3DCREATE_HARDWARE_VERTEXPROCESSING;

    const bool sized = options.Resolution != ZQ_MATCH_IGNORE && in.BackBufferWidth && in.BackBufferHeight;
    if (pp.Windowed) {
        pp.BackBufferWidth = sized ? in.BackBufferWidth : (windowWidth ? windowWidth : kDefaultWidth);
        pp.BackBufferHeight = sized ? in.BackBufferHeight : (windowHeight ? windowHeight : kDefaultHeight);
    } else {
        pp.BackBufferWidth = sized ? in.BackBufferWidth : desktop.Width;
        pp.BackBufferHeight = sized ? in.BackBufferHeight : desktop.Height;
        pp.FullScreen_RefreshRateInHz = options.RefreshRate != ZQ_MATCH_IGNORE && in.FullScreen_RefreshRateInHz
                                            ? in.FullScreen_RefreshRateInHz
                                            : desktop.RefreshRate;
    }
    pp.BackBufferFormat = options.BackBufferFormat != ZQ_MATCH_IGNORE && in.BackBufferFormat != D3DFMT_UNKNOWN
                              ? in.BackBufferFormat
                              : best.AdapterFormat;
    pp.BackBufferCount = options.BackBufferCount != ZQ_MATCH_IGNORE ? in.BackBufferCount : 1;
    if (options.MultiSample != ZQ_MATCH_IGNORE) {
        pp.MultiSampleType = in.MultiSampleType;
        pp.MultiSampleQuality = in.MultiSampleQuality;
    }
    pp.SwapEffect = options.SwapEffect != ZQ_MATCH_IGNORE && in.SwapEffect ? in.SwapEffect : D3DSWAPEFFECT_DISCARD;
    pp.EnableAutoDepthStencil = options.DepthStencilFormat != ZQ_MATCH_IGNORE ? in.EnableAutoDepthStencil : TRUE;
    pp.AutoDepthStencilFormat = options.DepthStencilFormat != ZQ_MATCH_IGNORE && in.AutoDepthStencilFormat
                                    ? in.AutoDepthStencilFormat
                                    : D3DFMT_D24S8;
    pp.Flags = options.PresentFlags != ZQ_MATCH_IGNORE ? in.Flags : 0;
    if (options.PresentInterval != ZQ_MATCH_IGNORE)
        pp.PresentationInterval = in.PresentationInterval;
    else
        pp.PresentationInterval = forceVsync == 0 ? D3DPRESENT_INTERVAL_IMMEDIATE : D3DPRESENT_INTERVAL_DEFAULT;
    pp.hDeviceWindow = in.hDeviceWindow;
    return best;
}

const wchar_t* VertexProcessingName(DWORD flags) {
    if (flags & D3DCREATE_PUREDEVICE)
        return L"pure hardware";
    if (flags & D3DCREATE_HARDWARE_VERTEXPROCESSING)
        return L"hardware";
    if (flags & D3DCREATE_MIXED_VERTEXPROCESSING)
        return L"mixed";
    return L"software";
}

// The one requirement no combination meets, in words, for the message of a failed search.
void DescribeRequirement(Requirement requirement, const _ZQDeviceSettings_tag& wanted, wchar_t* text, size_t size) {
    const D3DPRESENT_PARAMETERS& pp = wanted.pp;
    switch (requirement) {
    case kDesktopFormat:
        std::swprintf(text, size, L"a window in the desktop's format");
        break;
    case kAdapter:
        std::swprintf(text, size, L"adapter %u", wanted.AdapterOrdinal);
        break;
    case kDeviceType:
        std::swprintf(text, size, L"the %ls device", wanted.DeviceType == D3DDEVTYPE_REF ? L"reference" : L"hardware");
        break;
    case kWindowed:
        std::swprintf(text, size, L"%ls", pp.Windowed ? L"a device in a window" : L"a full-screen device");
        break;
    case kAdapterFormat:
        std::swprintf(text, size, L"display format %ls", ZQD3DFormatName(wanted.AdapterFormat));
        break;
    case kVertexProcessing:
        std::swprintf(text, size, L"%ls vertex processing", VertexProcessingName(wanted.BehaviorFlags));
        break;
    case kResolution:
        std::swprintf(text, size, L"a full-screen mode of %u x %u", pp.BackBufferWidth, pp.BackBufferHeight);
        break;
    case kRefreshRate:
        std::swprintf(text, size, L"a refresh rate of %u Hz", pp.FullScreen_RefreshRateInHz);
        break;
    case kBackBufferFormat:
        std::swprintf(text, size, L"back-buffer format %ls", ZQD3DFormatName(pp.BackBufferFormat));
        break;
    case kMultiSample:
        std::swprintf(text, size, L"multisample type %d at quality %lu", static_cast<int>(pp.MultiSampleType),
                      pp.MultiSampleQuality);
        break;
    case kDepthStencil:
        std::swprintf(text, size, L"depth-stencil format %ls", ZQD3DFormatName(pp.AutoDepthStencilFormat));
        break;
    case kPresentInterval:
        std::swprintf(text, size, L"presentation interval 0x%x", pp.PresentationInterval);
        break;
    case kSwapChain:
        std::swprintf(text, size, L"swap effect %d with %u back buffers and flags 0x%lx", static_cast<int>(pp.SwapEffect),
                      pp.BackBufferCount, pp.Flags);
        break;
    default:
        std::swprintf(text, size, L"settings the acceptance function accepts");
        break;
    }
}

// Fills in what the chosen combination leaves open: size and refresh rate, back buffers, depth
// buffer, multisampling, vertex processing and presentation.
_ZQDeviceSettings_tag SettingsFrom(const Search& search, const _ZQEnumDeviceSettingsCombo_tag& combo) {
    const _ZQMatchOptions_tag& options = search.options;
    const D3DPRESENT_PARAMETERS& best = search.optimal.pp;
    _ZQDeviceSettings_tag result = {};
    result.AdapterOrdinal = combo.AdapterOrdinal;
    result.DeviceType = combo.DeviceType;
    result.AdapterFormat = combo.AdapterFormat;
    D3DPRESENT_PARAMETERS& pp = result.pp;
    pp.Windowed = combo.Windowed;
    pp.BackBufferFormat = combo.BackBufferFormat;
    pp.hDeviceWindow = best.hDeviceWindow;

    if (combo.Windowed) {
        pp.BackBufferWidth = best.BackBufferWidth;
        pp.BackBufferHeight = best.BackBufferHeight;
    } else {
        D3DDISPLAYMODE mode = {};
        search.enumeration.FindClosestMode(combo.AdapterOrdinal, combo.AdapterFormat, best.BackBufferWidth,
                                           best.BackBufferHeight, best.FullScreen_RefreshRateInHz, &mode);
        pp.BackBufferWidth = mode.Width;
        pp.BackBufferHeight = mode.Height;
        pp.FullScreen_RefreshRateInHz = mode.RefreshRate;
    }

    // Vertex processing: the preferred kind when offered, else it without the pure device, else
    // hardware, else software, which every device offers.
    const DWORD preferred = VertexProcessingOf(search.optimal.BehaviorFlags);
    const DWORD fallbacks[] = {preferred, static_cast<DWORD>(preferred & ~D3DCREATE_PUREDEVICE),
                               static_cast<DWORD>(D3DCREATE_HARDWARE_VERTEXPROCESSING)};
    DWORD behavior = D3DCREATE_SOFTWARE_VERTEXPROCESSING;
    for (int i = 2; i >= 0; --i)
        if (IndexIn(combo.VertexProcessings, combo.VertexProcessingCount, fallbacks[i]) >= 0)
            behavior = fallbacks[i];
    // Worker threads (timers, sound, serial) call into the device's owner.
    result.BehaviorFlags = behavior | D3DCREATE_MULTITHREADED;

    // Multisampling: the type asked for, or the most samples up to it the combination offers.
    D3DMULTISAMPLE_TYPE msType = D3DMULTISAMPLE_NONE;
    DWORD msQuality = 0;
    const bool wantsDepth = best.EnableAutoDepthStencil && combo.DepthStencilFormatCount > 0;
    for (int t = best.MultiSampleType; t >= D3DMULTISAMPLE_NONE && options.MultiSample != ZQ_MATCH_IGNORE; --t) {
        const D3DMULTISAMPLE_TYPE type = static_cast<D3DMULTISAMPLE_TYPE>(t);
        const DWORD levels = QualityLevels(combo, type);
        if (levels == 0 || (t == D3DMULTISAMPLE_NONMASKABLE && type != best.MultiSampleType))
            continue;
        // Only a type some depth-stencil format can go with.
        bool usable = !wantsDepth;
        for (UINT d = 0; d < combo.DepthStencilFormatCount && !usable; ++d)
            usable = !(combo.DSMSConflicts[d] & (1u << t));
        if (!usable)
            continue;
        msType = type;
        msQuality = best.MultiSampleQuality < levels ? best.MultiSampleQuality : levels - 1;
        break;
    }
    pp.MultiSampleType = msType;
    pp.MultiSampleQuality = msQuality;

    // Depth-stencil: the wanted format, else the nearest in depth and stencil bits that goes with the
    // multisampling chosen.
    if (wantsDepth) {
        int bestDistance = -1;
        for (UINT d = 0; d < combo.DepthStencilFormatCount; ++d) {
            if (combo.DSMSConflicts[d] & (1u << msType))
                continue;
            const int distance = DepthDistance(combo.DepthStencilFormats[d], best.AutoDepthStencilFormat);
            if (bestDistance < 0 || distance < bestDistance) {
                bestDistance = distance;
                pp.AutoDepthStencilFormat = combo.DepthStencilFormats[d];
            }
        }
        pp.EnableAutoDepthStencil = bestDistance >= 0;
    }

    const bool multisampled = msType != D3DMULTISAMPLE_NONE;
    pp.SwapEffect = multisampled ? D3DSWAPEFFECT_DISCARD : best.SwapEffect;
    pp.Flags = multisampled ? best.Flags & ~D3DPRESENTFLAG_LOCKABLE_BACKBUFFER : best.Flags;
    UINT count = best.BackBufferCount < 1 ? 1 : best.BackBufferCount;
    if (count > D3DPRESENT_BACK_BUFFERS_MAX)
        count = D3DPRESENT_BACK_BUFFERS_MAX;
    pp.BackBufferCount = pp.SwapEffect == D3DSWAPEFFECT_COPY ? 1 : count;
    pp.PresentationInterval =
        IndexIn(combo.PresentIntervals, combo.PresentIntervalCount, best.PresentationInterval) >= 0
            ? best.PresentationInterval
            : D3DPRESENT_INTERVAL_DEFAULT;

    return result;
}

// Says where the settings found differ from what was asked under "closest".
void ReportDifferences(const _ZQDeviceSettings_tag& wanted, const _ZQMatchOptions_tag& options,
                       const _ZQDeviceSettings_tag& found, UINT adapterCount) {
    if (options.AdapterOrdinal != ZQ_MATCH_IGNORE && found.AdapterOrdinal != wanted.AdapterOrdinal)
        ZQMessage(L"Device settings: adapter %u does not exist (%u adapters); adapter %u is used",
                  wanted.AdapterOrdinal, adapterCount, found.AdapterOrdinal);
    const DWORD asked = VertexProcessingOf(wanted.BehaviorFlags) & ~D3DCREATE_SOFTWARE_VERTEXPROCESSING;
    if (options.VertexProcessing != ZQ_MATCH_IGNORE && asked && (found.BehaviorFlags & asked) != asked)
        ZQMessage(L"Device settings: the device has no %ls vertex processing; %ls vertex processing is used",
                  VertexProcessingName(asked), VertexProcessingName(found.BehaviorFlags));
    const D3DPRESENT_PARAMETERS& in = wanted.pp;
    const D3DPRESENT_PARAMETERS& out = found.pp;
    if (!out.Windowed && options.Resolution != ZQ_MATCH_IGNORE && in.BackBufferWidth && in.BackBufferHeight &&
        (out.BackBufferWidth != in.BackBufferWidth || out.BackBufferHeight != in.BackBufferHeight))
        ZQMessage(L"Device settings: %u x %u is not a display mode of adapter %u; the closest, %u x %u, is used",
                  in.BackBufferWidth, in.BackBufferHeight, found.AdapterOrdinal, out.BackBufferWidth,
                  out.BackBufferHeight);
    if (options.MultiSample != ZQ_MATCH_IGNORE &&
        (out.MultiSampleType != in.MultiSampleType || out.MultiSampleQuality != in.MultiSampleQuality))
        ZQMessage(L"Device settings: multisample type %d at quality %lu is not offered; type %d at quality %lu is used",
                  static_cast<int>(in.MultiSampleType), in.MultiSampleQuality, static_cast<int>(out.MultiSampleType),
                  out.MultiSampleQuality);
}

} // namespace

_ZQMatchOptions_tag ZQDirect3d::KeepingOptions() {
    _ZQMatchOptions_tag options;
    options.BackBufferCount = options.MultiSample = options.SwapEffect = options.DepthStencilFormat =
        options.PresentFlags = options.PresentInterval = ZQ_MATCH_CLOSEST;
    return options;
}

HRESULT ZQDirect3d::FindValidDeviceSettings(_ZQDeviceSettings_tag* valid, const _ZQDeviceSettings_tag* wanted) {
    const _ZQMatchOptions_tag defaults;
    return FindValidDeviceSettings(valid, wanted, &defaults);
}

HRESULT ZQDirect3d::FindValidDeviceSettings(_ZQDeviceSettings_tag* valid, const _ZQDeviceSettings_tag* wanted,
                                            const _ZQMatchOptions_tag* options) {
    if (!valid || !wanted)
        return E_INVALIDARG;
    const _ZQMatchOptions_tag defaults;
    if (!options)
        options = &defaults;
    if (!GetD3D())
        return ZQ_E_NO_DIRECT3D;
    const ZQD3DEnumeration* enumeration = PrepareEnumerationObject();
    if (!enumeration || enumeration->GetAdapters().GetSize() == 0)
        return ZQ_E_NO_COMPATIBLE_DEVICES;

    // The preferred adapter's desktop decides the formats, size and refresh rate left to the library.
    const _ZQEnumAdapter_tag* adapter = enumeration->GetAdapter(wanted->AdapterOrdinal);
    if (!adapter || options->AdapterOrdinal == ZQ_MATCH_IGNORE)
        adapter = &enumeration->GetAdapters()[0];
    UINT windowWidth = 0, windowHeight = 0;
    RECT client;
    HWND hWnd = GethWndDeviceWindowed();
    if (hWnd && GetClientRect(hWnd, &client) && client.right > 0 && client.bottom > 0) {
        windowWidth = static_cast<UINT>(client.right);
        windowHeight = static_cast<UINT>(client.bottom);
    }
    Search search = {*enumeration,
                     *wanted,
                     *options,
                     OptimalSettings(*wanted, *options, adapter->Desktop, windowWidth, windowHeight,
                                     GetOverrideForceVsync()),
                     GetIsDeviceAcceptableFunc(),
                     GetIsDeviceAcceptableFuncUserContext()};

    const ZQArray<_ZQEnumDeviceSettingsCombo_tag>& combos = enumeration->GetSettingsCombos();
    int bestCombo = -1;
    float bestRank = -1.0f;
    for (int i = 0; i < combos.GetSize(); ++i) {
        if (!search.MeetsAll(combos[i]))
            continue;
        const float rank = search.Rank(combos[i]);
        if (rank > bestRank) {
            bestRank = rank;
            bestCombo = i;
        }
    }
    if (bestCombo < 0) {
        // Name the first requirement that, with the ones before it, no combination meets.
        wchar_t what[160] = L"";
        for (int r = 0; r < kRequirementCount && !what[0]; ++r) {
            bool anyMeets = false;
            for (int i = 0; i < combos.GetSize() && !anyMeets; ++i) {
                anyMeets = true;
                for (int earlier = 0; earlier <= r && anyMeets; ++earlier)
                    anyMeets = search.Meets(static_cast<Requirement>(earlier), combos[i]);
            }
            if (!anyMeets)
                DescribeRequirement(static_cast<Requirement>(r), *wanted, what, sizeof what / sizeof what[0]);
        }
        ZQMessage(L"Device settings: no device offers %ls", what);
        return ZQ_E_NO_COMPATIBLE_DEVICES;
    }
    *valid = SettingsFrom(search, combos[bestCombo]);
    ReportDifferences(*wanted, *options, *valid, enumeration->GetAdapterCount());
    return S_OK;
}

} // namespace ZQ
