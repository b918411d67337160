#pragma once
#include "ZQ/core/ZQConfig.h"

namespace ZQ {

/// A random integer from a to a + |b - a|, both ends included (so above a even when b < a).
/// Uses the C runtime's rand(); seeding is the application's business.
ZQ_API int ZQRand(int a, int b);
/// A random float from a to a + |b - a|; the far end only when rand() returns 32767.
ZQ_API float ZQRand(float a, float b);

} // namespace ZQ
