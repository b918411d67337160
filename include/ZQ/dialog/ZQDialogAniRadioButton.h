#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderSingle.h"

namespace ZQ {

/// Radio button of an animation dialog: as ZQDialogRadioButton, with animations for normal, selected,
/// over and disabled, played endlessly by a player of the button's own and restarted only when the
/// picture changes. With a mask chunk it is pixel-exact and its hit rectangle is that chunk's;
/// otherwise the hit rectangle is rect.
class ZQ_API ZQDialogAniRadioButton : public ZQDialogResponseEvent, public ZQDialogPixel {
public:
    ZQDialogAniRadioButton(ZQAnimate* animate, ZQSound* sound, unsigned int id, unsigned int group,
                           const wchar_t* normal, const wchar_t* selected, const wchar_t* over,
                           const wchar_t* disabled, ZQRect& rect, _ZQResponseDialog_tag* response,
                           const wchar_t* maskChunk);
    /// Copies every member; the copy has a lock, a mask and a player of its own, on the same animate and
    /// showing the same animation from its start.
    ZQDialogAniRadioButton(const ZQDialogAniRadioButton& other) = default;
    ZQDialogAniRadioButton& operator=(const ZQDialogAniRadioButton& other) = default;
    virtual ~ZQDialogAniRadioButton();
    unsigned int GetId();
    unsigned int GetGroup();
    void SetDisable(bool disable);
    bool GetDisable();
    bool GetShow();

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);

    /// Selects or deselects this button alone.
    void SetSelect(bool select);
    bool GetSelect();
    bool GetMask();
    ZQRect GetRect();

private:
    ZQDialogClickable m_core;
    unsigned int m_group;
};

} // namespace ZQ
