#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderSingle.h"

namespace ZQ {

/// Check box of an animation dialog: as ZQDialogCheckBox, with animations for box, check mark, over and
/// disabled. The box and the mark each play on a player of their own, the mark's over the box's,
/// restarted only when the picture changes. With a mask chunk it is pixel-exact and its hit rectangle
/// is that chunk's; otherwise the hit rectangle is rect.
class ZQ_API ZQDialogAniCheckBox : public ZQDialogResponseEvent, public ZQDialogPixel {
public:
    ZQDialogAniCheckBox(ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* box, const wchar_t* mark,
                        const wchar_t* over, const wchar_t* disabled, ZQRect& rect, _ZQResponseDialog_tag* response,
                        const wchar_t* maskChunk);
    /// Copies every member; the copy has a lock, a mask and players of its own, on the same animate and
    /// showing the same animations from their start.
    ZQDialogAniCheckBox(const ZQDialogAniCheckBox& other) = default;
    ZQDialogAniCheckBox& operator=(const ZQDialogAniCheckBox& other) = default;
    virtual ~ZQDialogAniCheckBox();
    unsigned int GetId();

    void SetChecked(bool checked);
    bool GetChecked();
    void SetSprite(const wchar_t* box, const wchar_t* mark, const wchar_t* over, const wchar_t* disabled);
    /// Click sound first, then over sound; a null name leaves that sound as it is.
    void SetSound(const wchar_t* click, const wchar_t* over);
    void SetShow(bool show);
    bool GetShow();
    bool GetDisable();
    bool GetOvered();
    void SetDisable(bool disable);

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);

private:
    ZQDialogClickable m_core;
    ZQDialogPicture m_mark; ///< the check mark when checked, on a player of its own
};

} // namespace ZQ
