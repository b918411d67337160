#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"
#include "ZQ/sound/ZQSound.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// One member of a radio group, drawn from four chunks (normal, selected, over, disabled). A release
/// over it sends OnEvent(id, x, y) before the dialog moves the group's selection to it, so the handler
/// still sees the previous GetSelect. A selected button stays pressed: no over picture, no over sound.
class ZQ_API ZQDialogRadioButton : public ZQDialogResponseEvent, public ZQDialogPixel {
public:
    /// Starts unselected; the hit rectangle comes from the normal chunk.
    ZQDialogRadioButton(ZQSprite* sprite, ZQSound* sound, unsigned int id, unsigned int group, const wchar_t* normal,
                        const wchar_t* selected, const wchar_t* over, const wchar_t* disabled, D3DXVECTOR3& position,
                        _ZQResponseDialog_tag* response, bool pixelExact);
    /// Copies every member; the copy has a lock and a mask of its own.
    ZQDialogRadioButton(const ZQDialogRadioButton& other) = default;
    ZQDialogRadioButton& operator=(const ZQDialogRadioButton& other) = default;
    virtual ~ZQDialogRadioButton();
    unsigned int GetId();
    unsigned int GetGroup();
    /// Acts only on a change: disabled picture at half alpha, or selected/normal at full alpha.
    void SetDisable(bool disable);
    bool GetDisable();
    bool GetShow();

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnMouse(bool down, bool left, bool right, bool middle, bool side1, bool side2, int wheel, int x, int y,
                 void* context);

    /// Selects or deselects this button alone (the others of the group are left as they are).
    void SetSelect(bool select);
    bool GetSelect();
    /// True for a pixel-exact button.
    bool GetMask();
    /// The hit rectangle.
    ZQRect GetRect();

private:
    ZQDialogClickable m_core;
    unsigned int m_group;
};

} // namespace ZQ
