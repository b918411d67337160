#include "ZQ/core/ZQKalman.h"

namespace ZQ {

ZQKalman::~ZQKalman() = default;

double ZQKalman::Normal(double measurement, double noise) {
    const double p = m_spread * m_spread;
    const double r = noise * noise;
    const double d = p + r;
    const double numerator = p * measurement + r * m_estimate;
    m_estimate = d == 0.0 ? numerator : numerator / d;
    const double pr = p * r;
    m_spread = pr == 0.0 ? d : d / pr;
    return m_estimate;
}

} // namespace ZQ
