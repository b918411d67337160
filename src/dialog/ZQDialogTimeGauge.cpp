#include "ZQ/dialog/ZQDialogTimeGauge.h"

namespace ZQ {

void ZQDialogTimeGauge::OnFrameMove(IDirect3DDevice9*, double, float elapsed, void*) {
    Move(elapsed, true);
}

} // namespace ZQ
