// Matching wanted device settings against what the adapter offers.
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/core/ZQDiagnostics.h"

namespace ZQ {

namespace {

const D3DFORMAT kFullScreenFormats[] = {D3DFMT_X8R8G8B8, D3DFMT_A2R10G10B10, D3DFMT_R5G6B5, D3DFMT_X1R5G5B5};
const D3DFORMAT kDepthFormats[] = {D3DFMT_D24S8, D3DFMT_D24X8, D3DFMT_D16};
const UINT kDefaultWidth = 640;
const UINT kDefaultHeight = 480;

} // namespace

HRESULT ZQDirect3d::FindValidDeviceSettings(_ZQDeviceSettings_tag* valid, const _ZQDeviceSettings_tag* wanted) {
    IDirect3D9* d3d = GetD3D();
    if (!valid || !wanted)
        return E_INVALIDARG;
    if (!d3d)
        return ZQ_E_NO_DIRECT3D;
    const ZQD3DEnumeration* enumeration = PrepareEnumerationObject();
    if (!enumeration)
        return ZQ_E_NO_COMPATIBLE_DEVICES;
    const UINT adapter = wanted->AdapterOrdinal < enumeration->GetAdapterCount() ? wanted->AdapterOrdinal : 0;
    if (adapter != wanted->AdapterOrdinal)
        ZQMessage(L"Device settings: adapter %u does not exist (%u adapters); adapter 0 is used", wanted->AdapterOrdinal,
                  enumeration->GetAdapterCount());
    const D3DDEVTYPE type = wanted->DeviceType == D3DDEVTYPE_REF ? D3DDEVTYPE_REF : D3DDEVTYPE_HAL;
    const bool windowed = wanted->pp.Windowed != FALSE;
    D3DDISPLAYMODE desktop;
    if (FAILED(d3d->GetAdapterDisplayMode(adapter, &desktop)))
        return ZQ_E_NO_COMPATIBLE_DEVICES;

    D3DCAPS9 caps;
    if (FAILED(d3d->GetDeviceCaps(adapter, type, &caps)))
        return ZQ_E_NO_COMPATIBLE_DEVICES;

    // Windowed devices use the desktop's format; full screen prefers 32-bit colour.
    D3DFORMAT candidates[1 + sizeof kFullScreenFormats / sizeof kFullScreenFormats[0]];
    int candidateCount = 0;
    candidates[candidateCount++] = windowed ? desktop.Format : D3DFMT_X8R8G8B8;
    if (!windowed)
        for (D3DFORMAT format : kFullScreenFormats)
            if (format != candidates[0])
                candidates[candidateCount++] = format;

    D3DFORMAT adapterFormat = D3DFMT_UNKNOWN;
    D3DFORMAT backBufferFormat = D3DFMT_UNKNOWN;
    ZQCallbackIsDeviceAcceptable acceptable = GetIsDeviceAcceptableFunc();
    void* context = GetIsDeviceAcceptableFuncUserContext();
    for (int i = 0; i < candidateCount && adapterFormat == D3DFMT_UNKNOWN; ++i) {
        const D3DFORMAT backBuffers[] = {candidates[i], D3DFMT_A8R8G8B8};
        for (D3DFORMAT backBuffer : backBuffers) {
            if (FAILED(d3d->CheckDeviceType(adapter, type, candidates[i], backBuffer, windowed)))
                continue;
            if (acceptable && !acceptable(&caps, candidates[i], backBuffer, windowed, context))
                continue;
            adapterFormat = candidates[i];
            backBufferFormat = backBuffer;
            break;
        }
    }
    if (adapterFormat == D3DFMT_UNKNOWN) {
        ZQMessage(L"Device settings: no display and back-buffer format that the %ls device takes %ls (or that the "
                  L"acceptance function accepts)",
                  type == D3DDEVTYPE_REF ? L"reference" : L"hardware", windowed ? L"in a window" : L"full screen");
        return ZQ_E_NO_COMPATIBLE_DEVICES;
    }

    _ZQDeviceSettings_tag result = {};
    result.AdapterOrdinal = adapter;
    result.DeviceType = type;
    result.AdapterFormat = adapterFormat;

    const bool hardwareTnL = (caps.DevCaps & D3DDEVCAPS_HWTRANSFORMANDLIGHT) != 0;
    DWORD behavior = wanted->BehaviorFlags &
                     (D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_SOFTWARE_VERTEXPROCESSING |
                      D3DCREATE_MIXED_VERTEXPROCESSING | D3DCREATE_PUREDEVICE);
    if (!hardwareTnL || behavior == 0)
        behavior = hardwareTnL ? D3DCREATE_HARDWARE_VERTEXPROCESSING : D3DCREATE_SOFTWARE_VERTEXPROCESSING;
    if ((behavior & D3DCREATE_PUREDEVICE) && !(caps.DevCaps & D3DDEVCAPS_PUREDEVICE))
        behavior &= ~D3DCREATE_PUREDEVICE;
    const DWORD asked = wanted->BehaviorFlags & (D3DCREATE_HARDWARE_VERTEXPROCESSING |
                                                 D3DCREATE_MIXED_VERTEXPROCESSING | D3DCREATE_PUREDEVICE);
    if (asked && (behavior & asked) != asked)
        ZQMessage(L"Device settings: the device has no %ls; %ls vertex processing is used",
                  hardwareTnL ? L"pure device" : L"hardware vertex processing",
                  (behavior & D3DCREATE_HARDWARE_VERTEXPROCESSING) ? L"hardware" : L"software");
    // Worker threads (timers, sound, serial) call into the device's owner.
    result.BehaviorFlags = behavior | D3DCREATE_MULTITHREADED;

    D3DPRESENT_PARAMETERS& pp = result.pp;
    pp.Windowed = windowed;
    pp.BackBufferFormat = backBufferFormat;
    pp.BackBufferCount = 1;
    pp.SwapEffect = D3DSWAPEFFECT_DISCARD;
    pp.hDeviceWindow = wanted->pp.hDeviceWindow;
    pp.MultiSampleType = D3DMULTISAMPLE_NONE;
    pp.PresentationInterval = GetOverrideForceVsync() == 0 ? D3DPRESENT_INTERVAL_IMMEDIATE : D3DPRESENT_INTERVAL_DEFAULT;
    for (D3DFORMAT depth : kDepthFormats) {
        if (SUCCEEDED(d3d->CheckDeviceFormat(adapter, type, adapterFormat, D3DUSAGE_DEPTHSTENCIL, D3DRTYPE_SURFACE,
                                             depth)) &&
            SUCCEEDED(d3d->CheckDepthStencilMatch(adapter, type, adapterFormat, backBufferFormat, depth))) {
            pp.EnableAutoDepthStencil = TRUE;
            pp.AutoDepthStencilFormat = depth;
            break;
        }
    }

    if (windowed) {
        UINT width = wanted->pp.BackBufferWidth, height = wanted->pp.BackBufferHeight;
        RECT client;
        HWND hWnd = GethWndDeviceWindowed();
        if ((width == 0 || height == 0) && hWnd && GetClientRect(hWnd, &client) && client.right > 0 &&
            client.bottom > 0) {
            width = static_cast<UINT>(client.right);
            height = static_cast<UINT>(client.bottom);
        }
        pp.BackBufferWidth = width ? width : kDefaultWidth;
        pp.BackBufferHeight = height ? height : kDefaultHeight;
    } else {
        const UINT width = wanted->pp.BackBufferWidth ? wanted->pp.BackBufferWidth : desktop.Width;
        const UINT height = wanted->pp.BackBufferHeight ? wanted->pp.BackBufferHeight : desktop.Height;
        D3DDISPLAYMODE mode = desktop;
        if (!enumeration->FindClosestMode(adapter, adapterFormat, width, height, desktop.RefreshRate, &mode) &&
            adapterFormat != desktop.Format) {
            ZQMessage(L"Device settings: adapter %u has no full-screen display mode", adapter);
            return ZQ_E_NO_COMPATIBLE_DEVICES;
        }
        if (mode.Width != width || mode.Height != height)
            ZQMessage(L"Device settings: %u x %u is not a display mode of adapter %u; the closest, %u x %u, is used",
                      width, height, adapter, mode.Width, mode.Height);
        pp.BackBufferWidth = mode.Width;
        pp.BackBufferHeight = mode.Height;
        pp.FullScreen_RefreshRateInHz = mode.RefreshRate;
    }
    *valid = result;
    return S_OK;
}

} // namespace ZQ
