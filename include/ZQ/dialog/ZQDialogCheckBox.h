#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// On/off box drawn as two layers: the box (normal, over or disabled chunk) and, when checked, the
/// check mark on top. The state toggles at the left press; the release over the box sends
/// OnEvent(id, x, y), so the handler reads the new state. Otherwise it behaves as a ZQDialogButton.
class ZQ_API ZQDialogCheckBox : public ZQDialogResponseEvent, public ZQDialogPixel {
public:
    /// Starts unchecked; the hit rectangle comes from the box chunk.
    ZQDialogCheckBox(ZQSprite* sprite, ZQSound* sound, unsigned int id, const wchar_t* box, const wchar_t* mark,
                     const wchar_t* over, const wchar_t* disabled, D3DXVECTOR3& position,
                     _ZQResponseDialog_tag* response, bool pixelExact);
    /// Copies every member; the copy has a lock and a mask of its own.
    ZQDialogCheckBox(const ZQDialogCheckBox& other) = default;
    ZQDialogCheckBox& operator=(const ZQDialogCheckBox& other) = default;
    virtual ~ZQDialogCheckBox();
    unsigned int GetId();

    /// Shows or hides the mark; no event, no sound.
    void SetChecked(bool checked);
    bool GetChecked();
    /// Replaces the four names; what is shown changes at the next state change.
    void SetSprite(const wchar_t* box, const wchar_t* mark, const wchar_t* over, const wchar_t* disabled);
    /// Click sound first, then over sound; a null name leaves that sound as it is.
    void SetSound(const wchar_t* click, const wchar_t* over);
    void SetShow(bool show);
    bool GetShow();
    bool GetDisable();
    bool GetOvered();
    /// Acts only on a change, on the box layer; the mark stays.
    void SetDisable(bool disable);

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);

private:
    ZQDialogClickable m_core;
    ZQDialogPicture m_mark; ///< the check mark when checked, else nothing
};

} // namespace ZQ
