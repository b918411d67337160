#pragma once
#include "ZQ/dialog/ZQDialogGauge.h"

namespace ZQ {

/// A gauge driven by time: each frame adds its elapsed seconds to the value, so the range is a
/// duration. Everything else is the gauge's.
class ZQ_API ZQDialogTimeGauge : public ZQDialogGauge {
public:
    using ZQDialogGauge::ZQDialogGauge;

    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override;
};

} // namespace ZQ
