#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/dialog/ZQResponseDialog.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

class ZQAnimate;
class ZQRenderSingle;

/// A marker moving in a straight line from (left, top) to (right, bottom) of its rectangle as the value
/// goes from 0 to the range, over an optional background chunk at (left, top). The marker is a chunk
/// (sprite form) or an animation played in a loop and moved along the line (animation form).
/// Driven by the application with SetPos. Sends OnEvent(id, 0, 0) once on reaching the range, until
/// Reset; a gauge without a callback never counts as finished.
class ZQ_API ZQDialogGauge : public ZQDialogResponseEvent {
public:
    ZQDialogGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
                  _ZQResponseDialog_tag* response);
    ZQDialogGauge(ZQSprite* sprite, unsigned int id, const wchar_t* marker, const wchar_t* background, ZQRect& rect,
                  float range, _ZQResponseDialog_tag* response);
    /// The animation form: marker names an animation of animate, background a chunk of its sprite.
    ZQDialogGauge(ZQAnimate* animate, unsigned int id, const wchar_t* marker, ZQRect& rect, float range,
                  _ZQResponseDialog_tag* response);
    ZQDialogGauge(ZQAnimate* animate, unsigned int id, const wchar_t* marker, const wchar_t* background,
                  ZQRect& rect, float range, _ZQResponseDialog_tag* response);
    ZQDialogGauge(const ZQDialogGauge&) = delete;
    ZQDialogGauge& operator=(const ZQDialogGauge&) = delete;
    virtual ~ZQDialogGauge();

    /// Not clamped here; the next frame clamps values past the range.
    void SetPos(float value);
    float GetPos();
    void SetRange(float range);
    float GetRange();
    /// A hidden gauge still moves and reports.
    void SetVisible(bool visible);
    bool GetVisible();
    /// Acts only on a change: half alpha when disabled; a disabled gauge is frozen.
    void SetDisable(bool disable);
    bool GetDisable();
    /// A non-null name replaces the marker; a marker animation already started restarts on it in place.
    void SetSprite(const wchar_t* marker);
    /// Value 0, visible, full alpha, enabled, and the end may be reported again.
    void Reset();
    /// The marker's position.
    D3DXVECTOR3 Delta();
    unsigned int GetId();

    /// Clamps the value at the range, reports, places the marker; nothing while disabled.
    virtual void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// The background, then the marker, when visible.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

protected:
    /// One frame's move: the value grows by elapsed first when timed.
    void Move(float elapsed, bool timed);

private:
    ZQAnimate* m_animate;
    ZQSprite* m_sprite;
    ZQRenderSingle* m_player; ///< owned; animation form only
    ZQString m_marker, m_background;
    ZQRect m_rect;
    float m_range, m_value = 0.0f;
    D3DXVECTOR3 m_markerPosition = D3DXVECTOR3(0.0f, 0.0f, 0.0f);
    D3DXCOLOR m_colour = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    bool m_disabled = false, m_visible = true, m_markerStarted = false, m_finished = false;
    ZQCriticalSection m_lock;
    unsigned int m_id;
};

} // namespace ZQ
