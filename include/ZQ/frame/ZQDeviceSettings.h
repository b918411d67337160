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

} // namespace ZQ
