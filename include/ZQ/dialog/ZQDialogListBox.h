#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/core/ZQVector.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

class ZQTextTarget;

/// A text log of coloured lines: the newest lines that fit are shown, one per font height, the newest
/// in the last band. Drawn like a static, through a texture of the rectangle's size at its top-left
/// corner. Takes no input and sends no events.
class ZQ_API ZQDialogListBox : public ZQHeapObject {
public:
    ZQDialogListBox(ZQSprite* sprite, unsigned int id, ID3DXFont* font, ZQRect& rect);
    ZQDialogListBox(const ZQDialogListBox&) = delete;
    ZQDialogListBox& operator=(const ZQDialogListBox&) = delete;
    virtual ~ZQDialogListBox();

    /// Appends a line; at 4,000 lines the oldest are dropped so that the newest 200 remain first.
    void SetText(const wchar_t* text, D3DXCOLOR& colour);
    /// Line index (0 the oldest kept), or null past the last.
    const wchar_t* GetText(unsigned int index);
    /// Deletes every line and clears the texture.
    void Clear();
    void SetShadow(int offset, D3DXCOLOR& colour);
    void SetDisable(bool disable);
    bool GetDisable();
    unsigned int GetId();

    /// Remake and release the texture; forward the scene's callbacks.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);
    /// Draws the lines into the texture (nothing while there is none).
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// Draws the texture in white.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

private:
    struct Line;
    void DeleteLines(unsigned int count);
    void DrawLine(const Line& line, int band);

    ZQTextTarget* m_target; ///< the texture, its surface, the render-to-surface object and the text sprite
    ZQSprite* m_sprite;
    ID3DXFont* m_font;
    ZQRect m_rect;
    int m_visibleLines = 0, m_lineHeight = 0, m_shadowOffset = 0;
    D3DXCOLOR m_shadowColour = D3DXCOLOR(0.0f, 0.0f, 0.0f, 1.0f);
    ZQVector m_lines; ///< owned Line*
    bool m_disabled = false;
    [[maybe_unused]] bool m_visible = true; ///< kept in the layout; the list box is always drawn
    ZQCriticalSection m_lock;
    unsigned int m_id;
};

} // namespace ZQ
