#include "ZQ/core/ZQRand.h"

#include <cmath>
#include <cstdlib>

namespace ZQ {

int ZQRand(int a, int b) {
    if (a == b)
        return a;
    // In 64 bits so that the widest spans neither overflow nor divide by zero.
    const long long span = std::llabs(static_cast<long long>(b) - a) + 1;
    return static_cast<int>(std::rand() % span + a);
}

float ZQRand(float a, float b) {
    if (a == b)
        return a;
    const float unit = static_cast<float>(std::rand() / 32767.0);
    return unit * std::fabs(b - a) + a;
}

} // namespace ZQ
