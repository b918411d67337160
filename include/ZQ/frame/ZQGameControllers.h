#pragma once
#include "ZQ/core/ZQConfig.h"

namespace ZQ {

/// Sets the vibration of every connected game controller to zero. Does nothing where the system has
/// no controller library (XInput is loaded at run time, not linked).
ZQ_API void ZQStopRumbleOnAllControllers();

} // namespace ZQ
