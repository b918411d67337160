#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// A chunk drawn from 0 to 100 % of its extent in one direction (1 left to right, 2 right to left,
/// 4 bottom to top, 8 top to bottom, anything else diagonal) over an optional background chunk.
/// Filled by the application with SetPos. Sends OnEvent(id, 0, 0) once when full, until Reset.
class ZQ_API ZQDialogProgress : public ZQDialogResponseEvent {
public:
    /// background may be null (nothing drawn under the bar).
    ZQDialogProgress(ZQSprite* sprite, unsigned int id, const wchar_t* bar, const wchar_t* background,
         D3DXVECTOR3& barPosition, D3DXVECTOR3& backgroundPosition, float range, unsigned long direction,
         _ZQResponseDialog_tag* response);
    ZQDialogProgress(const ZQDialogProgress& other);
    ZQDialogProgress& operator=(const ZQDialogProgress& other);
    virtual ~ZQDialogProgress();

    void SetPos(float value);
    float GetPos();
    void SetRange(float value);
    float GetRange();
    /// Replaces the names; a null bar or background name leaves that name as it is.
    void SetSprite(const wchar_t* bar, const wchar_t* background);
    void SetVisible(bool visible);
    bool GetVisible();
    /// Acts only on a change: half alpha when disabled; a disabled bar is frozen.
    void SetDisable(bool disable);
    bool GetDisable();
    /// Value 0, visible, full alpha, enabled, and the end may be reported again.
    void Reset();
    /// The tip of the bar, where the drawn part ends.
    D3DXVECTOR3 Delta();
    unsigned int GetId();

    /// Clamps the value at the full value, reports, places the tip; nothing while disabled.
    virtual void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// The background, then the filled part of the bar, when visible.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

protected:
    /// One frame's move: the value grows by elapsed first when timed.
    void Move(float elapsed, bool timed);
    /// Adds step to the value; a result below 0 becomes 0.
    void Step(float step);

private:
    void CopyFrom(const ZQDialogProgress& other);
    float Fraction() const;

    ZQSprite* m_sprite;
    ZQString m_bar, m_background;
    ZQRect m_barRect;
    float m_full, m_value = 0.0f;
    D3DXVECTOR3 m_tip = D3DXVECTOR3(0.0f, 0.0f, 0.0f), m_barPosition, m_backgroundPosition;
    D3DXCOLOR m_colour = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    bool m_disabled = false, m_visible = true, m_finished = false;
    unsigned long m_direction;
    ZQCriticalSection m_lock;
    unsigned int m_id;
};

} // namespace ZQ
