#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQAnimate.h"
#include "ZQ/twod/ZQRenderSingle.h"

namespace ZQ {

/// Push button of an animation dialog: as ZQDialogButton, with animations for normal, pressed, over and
/// disabled. They are animations of the animate, played endlessly by a player of the button's own and
/// restarted only when the picture changes. With a mask chunk it is pixel-exact and its hit rectangle
/// is that chunk's; otherwise the hit rectangle is rect.
class ZQ_API ZQDialogAniButton : public ZQDialogResponseEvent, public ZQDialogPixel {
public:
    ZQDialogAniButton(ZQAnimate* animate, ZQSound* sound, unsigned int id, const wchar_t* normal,
                      const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled, ZQRect& rect,
                      _ZQResponseDialog_tag* response, const wchar_t* maskChunk);
    /// Copies every member; the copy has a lock, a mask and a player of its own, on the same animate and
    /// showing the same animation from its start.
    ZQDialogAniButton(const ZQDialogAniButton& other) = default;
    ZQDialogAniButton& operator=(const ZQDialogAniButton& other) = default;
    virtual ~ZQDialogAniButton();
    unsigned int GetId();

    void SetSprite(const wchar_t* normal, const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled);
    /// Click sound first, then over sound; a null name leaves that sound as it is.
    void SetSound(const wchar_t* click, const wchar_t* over);
    void SetDisable(bool disable);
    void SetShow(bool show);
    bool GetShow();
    bool GetDisable();
    bool GetOvered();

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);

private:
    ZQDialogClickable m_core;
};

} // namespace ZQ
