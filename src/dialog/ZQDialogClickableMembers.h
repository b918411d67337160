// The public operations that the six clickable controls hand to their ZQDialogClickable, defined once.
// The controls keep the bases their headers declare, so the operations cannot be inherited.
#pragma once
#include "ZQ/dialog/ZQDialogClickable.h"

/// Every clickable control; mark is its mark layer, or nullptr.
#define ZQ_CLICKABLE_MEMBERS(Control, mark)                                                                           \
    Control::~Control() = default;                                                                                    \
    void Control::SetDisable(bool disable) { m_core.SetDisable(disable); }                                            \
    bool Control::GetDisable() { return m_core.GetDisable(); }                                                        \
    bool Control::GetShow() { return m_core.GetShow(); }                                                              \
    unsigned int Control::GetId() { return m_core.GetId(); }                                                          \
    void Control::OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context) {                \
        m_core.OnFrameRender(mark, device, time, elapsed, context);                                                   \
    }                                                                                                                 \
    void Control::OnMouse(bool down, bool left, bool right, bool middle, bool, bool, int, int x, int y, void*) {      \
        m_core.OnMouse(*this, *this, mark, down, left, right, middle, x, y);                                          \
    }

/// Buttons and check boxes: their names, sounds and visibility can be changed.
#define ZQ_CLICKABLE_LOOKS(Control)                                                                                   \
    void Control::SetSprite(const wchar_t* normal, const wchar_t* second, const wchar_t* over,                        \
                            const wchar_t* disabled) {                                                                \
        m_core.SetSprite(normal, second, over, disabled);                                                             \
    }                                                                                                                 \
    void Control::SetSound(const wchar_t* click, const wchar_t* over) { m_core.SetSound(click, over); }               \
    void Control::SetShow(bool show) { m_core.SetShow(show); }                                                        \
    bool Control::GetOvered() { return m_core.GetOvered(); }

/// Check boxes: the mark layer m_mark.
#define ZQ_CLICKABLE_MARK(Control)                                                                                    \
    void Control::SetChecked(bool checked) { m_core.SetChecked(m_mark, checked); }                                    \
    bool Control::GetChecked() { return m_core.GetChecked(m_mark); }

/// Radio buttons: a selection and a group.
#define ZQ_CLICKABLE_SELECTION(Control)                                                                               \
    void Control::SetSelect(bool select) { m_core.SetSelect(select); }                                                \
    bool Control::GetSelect() { return m_core.GetSelect(); }                                                          \
    bool Control::GetMask() { return m_core.GetMask(); }                                                              \
    ZQRect Control::GetRect() { return m_core.GetRect(); }                                                            \
    unsigned int Control::GetGroup() { return m_group; }
