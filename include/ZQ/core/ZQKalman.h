#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"

namespace ZQ {

/// One-value smoothing filter for noisy readings.
class ZQ_API ZQKalman : public ZQHeapObject {
public:
    ZQKalman() = default;
    ZQKalman(double estimate, double spread) : m_estimate(estimate), m_spread(spread) {}
    virtual ~ZQKalman();

    /// Folds in one measurement with its noise and returns the new estimate. The spread then holds
    /// 1/P + 1/R (the sum of the inverse variances), which the next call squares again.
    double Normal(double measurement, double noise);

    double GetEstimate() const { return m_estimate; }
    double GetSpread() const { return m_spread; }

private:
    double m_estimate = 0.0;
    double m_spread = 0.0;
};

} // namespace ZQ
