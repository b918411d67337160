#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/core/ZQVector.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// An unsigned 64-bit counter drawn with digit chunks named prefix + "00" to prefix + "09".
/// alignment: 0 left edge at the position, 1 (roughly) centred on it, 2 right edge at it; other
/// values draw nothing. Sends no events.
class ZQ_API ZQDialogNumber : public ZQHeapObject {
public:
    ZQDialogNumber(ZQSprite* sprite, unsigned int id, const wchar_t* prefix, D3DXVECTOR3& position, float spacing,
                   unsigned long alignment);
    ZQDialogNumber(const ZQDialogNumber&) = delete;
    ZQDialogNumber& operator=(const ZQDialogNumber&) = delete;
    virtual ~ZQDialogNumber();

    /// Rebuilds the chunk names: prefix + ",", "-", "," (for '.'), "/", and "00" to "09".
    void SetSprite(const wchar_t* prefix);
    void Reset(unsigned __int64 value);
    void Plus(unsigned __int64 value);
    /// Wraps below 0.
    void Minus(unsigned __int64 value);
    unsigned __int64 GetNumber();
    void SetVisible(bool visible);
    bool GetVisible();
    /// Acts only on a change: half alpha when disabled.
    void SetDisable(bool disable);
    bool GetDisable();
    unsigned int GetId();

    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void DrawTextLeft(unsigned __int64 value, D3DXVECTOR3& position, float spacing);
    /// Deliberately not exactly centred: the first digit counts half and the total is halved again.
    void DrawTextCenter(unsigned __int64 value, D3DXVECTOR3& position, float spacing);
    void DrawTextRight(unsigned __int64 value, D3DXVECTOR3& position, float spacing);

private:
    void ClearNames();
    /// The decimal digits of value into digits (no terminator); returns their count.
    static int Digits(unsigned __int64 value, char* digits);
    /// The chunk name of digit character c, or null.
    const wchar_t* Name(char c);
    float Width(char c);
    void Draw(char c, float x, const D3DXVECTOR3& position);

    ZQSprite* m_sprite;
    ZQCriticalSection m_lock;
    ZQVector m_names; ///< 14 owned ZQString*, by character code - 44
    unsigned long m_alignment;
    float m_spacing;
    unsigned __int64 m_value = 0;
    D3DXVECTOR3 m_position;
    D3DXCOLOR m_colour = D3DXCOLOR(1.0f, 1.0f, 1.0f, 1.0f);
    bool m_disabled = false, m_visible = true;
    unsigned int m_id;
};

} // namespace ZQ
