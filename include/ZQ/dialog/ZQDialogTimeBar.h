#pragma once
#include "ZQ/dialog/ZQDialogProgress.h"

namespace ZQ {

/// A progress bar that fills itself with time: its full value is a duration in seconds (fTime) and
/// each frame adds its elapsed seconds. Everything else is the progress bar's, under the names below.
class ZQ_API ZQDialogTimeBar : public ZQDialogProgress {
public:
    /// background may be null (nothing drawn under the bar).
    ZQDialogTimeBar(ZQSprite* sprite, unsigned int id, const wchar_t* bar, const wchar_t* background,
                    D3DXVECTOR3& barPosition, D3DXVECTOR3& backgroundPosition, float fTime, unsigned long direction,
                    _ZQResponseDialog_tag* response);

    /// The seconds counted so far.
    void SetfElapsedTime(float value) { SetPos(value); }
    float GetfElapsedTime() { return GetPos(); }
    /// The duration.
    void SetfTime(float value) { SetRange(value); }
    float GetfTime() { return GetRange(); }
    /// Adds step seconds; a result below 0 becomes 0 (no upper clamp here).
    void SetStep(float step) { Step(step); }

    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context) override;
};

} // namespace ZQ
