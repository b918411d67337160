#pragma once
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// The frame's own result codes; each has a fixed message and process exit code.
const HRESULT ZQ_E_NO_DIRECT3D = static_cast<HRESULT>(0x80040901);       ///< exit code 2
const HRESULT ZQ_E_NO_COMPATIBLE_DEVICES = static_cast<HRESULT>(0x80040902); ///< exit code 3
const HRESULT ZQ_E_MEDIA_NOT_FOUND = static_cast<HRESULT>(0x80040903);   ///< exit code 4
const HRESULT ZQ_E_NONZERO_REFCOUNT = static_cast<HRESULT>(0x80040904);  ///< exit code 5
const HRESULT ZQ_E_CREATING_DEVICE = static_cast<HRESULT>(0x80040905);   ///< exit code 6
const HRESULT ZQ_E_RESETTING_DEVICE = static_cast<HRESULT>(0x80040906);  ///< exit code 7
const HRESULT ZQ_E_CREATING_DEVICE_OBJECTS = static_cast<HRESULT>(0x80040907); ///< exit code 8
const HRESULT ZQ_E_RESETTING_DEVICE_OBJECTS = static_cast<HRESULT>(0x80040908); ///< exit code 9
const HRESULT ZQ_E_INCORRECT_VERSION = static_cast<HRESULT>(0x80040909); ///< exit code 10

} // namespace ZQ
