#pragma once
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// The settings a Direct3D 9 device is created or reset with.
struct _ZQDeviceSettings_tag {
    UINT AdapterOrdinal;
    D3DDEVTYPE DeviceType;
    D3DFORMAT AdapterFormat;
    DWORD BehaviorFlags;
    D3DPRESENT_PARAMETERS pp;
};

/// How settings matching treats one wanted value.
enum ZQMatchType {
    ZQ_MATCH_IGNORE = 0,   ///< the wanted value does not matter: the library's own choice
    ZQ_MATCH_PRESERVE = 1, ///< exactly the wanted value, or no device at all
    ZQ_MATCH_CLOSEST = 2,  ///< the wanted value when offered, else the closest the hardware offers
};

/// One match type per field of the wanted settings. The defaults are the ones the two-argument
/// FindValidDeviceSettings uses: the window state kept; adapter, device type, vertex processing and
/// size as close as offered; everything else the library's choice.
struct _ZQMatchOptions_tag {
    ZQMatchType AdapterOrdinal = ZQ_MATCH_CLOSEST;
    ZQMatchType DeviceType = ZQ_MATCH_CLOSEST;
    ZQMatchType Windowed = ZQ_MATCH_PRESERVE;
    ZQMatchType AdapterFormat = ZQ_MATCH_IGNORE;
    ZQMatchType VertexProcessing = ZQ_MATCH_CLOSEST;
    ZQMatchType Resolution = ZQ_MATCH_CLOSEST; ///< back-buffer width and height
    ZQMatchType BackBufferFormat = ZQ_MATCH_IGNORE;
    ZQMatchType BackBufferCount = ZQ_MATCH_IGNORE;
    ZQMatchType MultiSample = ZQ_MATCH_IGNORE; ///< type and quality together
    ZQMatchType SwapEffect = ZQ_MATCH_IGNORE;
    ZQMatchType DepthStencilFormat = ZQ_MATCH_IGNORE; ///< with EnableAutoDepthStencil
    ZQMatchType PresentFlags = ZQ_MATCH_IGNORE;
    ZQMatchType RefreshRate = ZQ_MATCH_IGNORE; ///< full screen only
    ZQMatchType PresentInterval = ZQ_MATCH_IGNORE;
};

} // namespace ZQ
