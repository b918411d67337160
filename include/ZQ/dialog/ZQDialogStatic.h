#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

class ZQTextTarget;

/// A line of text of a dialog, in a font the caller keeps, optionally with a drop shadow. Each frame
/// the text is drawn into a texture of the rectangle's size, which is then drawn at the position
/// (first the rectangle's top-left corner). Sends no events.
class ZQ_API ZQDialogStatic : public ZQHeapObject {
public:
    ZQDialogStatic(ZQSprite* sprite, unsigned int id, ID3DXFont* font, const wchar_t* text, ZQRect& rect,
                   D3DXCOLOR& colour, unsigned long format);
    ZQDialogStatic(const ZQDialogStatic&) = delete;
    ZQDialogStatic& operator=(const ZQDialogStatic&) = delete;
    virtual ~ZQDialogStatic();

    void SetText(const wchar_t* text, D3DXCOLOR& colour);
    /// offset 0 draws no shadow; a negative one puts it up and to the left.
    void SetShadow(int offset, D3DXCOLOR& colour);
    void SetPos(D3DXVECTOR3 position);
    D3DXVECTOR3 GetPos();
    void SetVisible(bool visible);
    bool GetVisible();
    /// Text and shadow at half alpha when disabled, full alpha when enabled.
    void SetDisable(bool disable);
    bool GetDisable();
    /// The text colour (its alpha follows SetDisable).
    D3DXCOLOR GetColor();
    unsigned int GetId();

    /// Remake and release the texture; forward the scene's callbacks.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);
    /// Draws the text into the texture, when visible.
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// Draws the texture at the position in the text colour, when visible.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

private:
    ZQTextTarget* m_target; ///< the texture, its surface, the render-to-surface object and the text sprite
    ZQSprite* m_sprite;
    ID3DXFont* m_font;
    unsigned long m_format;
    D3DXVECTOR3 m_position;
    D3DXCOLOR m_colour, m_shadowColour = D3DXCOLOR(0.0f, 0.0f, 0.0f, 1.0f);
    ZQString m_text;
    ZQRect m_rect; ///< where the text lies in the texture: the whole texture
    bool m_disabled = false, m_visible = true;
    int m_shadowOffset = 0;
    ZQCriticalSection m_lock;
    unsigned int m_id;
};

} // namespace ZQ
