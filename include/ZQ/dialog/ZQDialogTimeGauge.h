#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// A marker chunk moving in a straight line from (left, top) to (right, bottom) of its rectangle as
/// the value goes from 0 to the range, over an optional background chunk at (left, top).
/// Driven by time: each frame adds its elapsed seconds, so the range is a duration. Sends OnEvent(id, 0, 0) once on reaching the range, until Reset.
class ZQ_API ZQDialogTimeGauge : public ZQDialogResponseEvent {
public:
    ZQDialogTimeGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
         _ZQResponseDialog_tag* response);
    ZQDialogTimeGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect,
         float range, _ZQResponseDialog_tag* response);
    ZQDialogTimeGauge(const ZQDialogTimeGauge& other);
    ZQDialogTimeGauge& operator=(const ZQDialogTimeGauge& other);
    virtual ~ZQDialogTimeGauge();

    /// Not clamped here; the next frame clamps values past the range.
    void SetPos(float value);
    float GetPos();
    void SetRange(float range);
    float GetRange();
    void SetVisible(bool visible);
    bool GetVisible();
    /// Acts only on a change: half alpha when disabled; a disabled gauge is frozen.
    void SetDisable(bool disable);
    bool GetDisable();
    /// A non-null name replaces the marker.
    void SetSprite(const wchar_t* marker);
    /// Value 0, visible, full alpha, enabled, and the end may be reported again.
    void Reset();
    /// The marker's position.
    D3DXVECTOR3 Delta();
    unsigned int GetId();

    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

private:
    void CopyFrom(const ZQDialogTimeGauge& other);

    ZQSprite* m_sprite;
    ZQString m_marker, m_background;
    ZQRect m_rect;
    float m_range, m_value = 0.0f;
    D3DXVECTOR3 m_markerPosition = D3DXVECTOR3(0.0f, 0.0f, 0.0f);
    D3DXCOLOR m_colour = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    bool m_disabled = false, m_visible = true, m_finished = false;
    CRITICAL_SECTION m_lock;
    unsigned int m_id;
};

} // namespace ZQ
