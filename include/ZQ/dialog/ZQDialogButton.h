#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// Push button drawn from four chunks (normal, pressed, over, disabled). A left press over it shows
/// pressed and plays the click sound; a left release over it shows over and sends OnEvent(id, x, y),
/// wherever the press was. Pixel-exact buttons ignore presses and releases over transparent pixels.
class ZQ_API ZQDialogButton : public ZQDialogResponseEvent, public ZQDialogPixel {
public:
    /// The hit rectangle comes from the normal chunk (empty when the sprite does not know it).
    ZQDialogButton(ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* normal, const wchar_t* pressed,
                   const wchar_t* over, const wchar_t* disabled, D3DXVECTOR3& position,
                   _ZQResponseDialog_tag* response, bool pixelExact);
    /// Copies every member; the copy has a lock and a mask of its own.
    ZQDialogButton(const ZQDialogButton& other) = default;
    ZQDialogButton& operator=(const ZQDialogButton& other) = default;
    virtual ~ZQDialogButton();
    unsigned int GetId();

    /// Replaces the four names; what is shown changes at the next state change.
    void SetSprite(const wchar_t* normal, const wchar_t* pressed, const wchar_t* over, const wchar_t* disabled);
    /// Click sound first, then over sound; a null name leaves that sound as it is.
    void SetSound(const wchar_t* click, const wchar_t* over);
    /// Acts only on a change: disabled picture at half alpha, or normal picture at full alpha.
    void SetDisable(bool disable);
    void SetShow(bool show);
    bool GetShow();
    bool GetDisable();
    /// The pointer was over the button at the last mouse report (the pixel mask not considered).
    bool GetOvered();

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);

private:
    ZQDialogClickable m_core;
};

} // namespace ZQ
