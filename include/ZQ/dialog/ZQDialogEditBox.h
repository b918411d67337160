#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

class ZQTextTarget;

/// A one-line text input of a dialog, typed into with the keyboard and the input method. Text is only
/// appended and removed from the end (Backspace, on committed text only); the box that has the focus
/// shows the caret "|" after its text. Drawn like a static, through a texture of the rectangle's size
/// at its top-left corner, optionally masked with "*" and shadowed. Sends no events.
class ZQ_API ZQDialogEditBox : public ZQHeapObject {
public:
    /// The maximum length is the rectangle's width in the font's characters (its description's Width),
    /// less one: a font made with width 0 lets nothing be typed. A rectangle lower than the font is made
    /// as high as the font.
    ZQDialogEditBox(ZQSprite* sprite, unsigned int id, ID3DXFont* font, ZQRect& rect, D3DXCOLOR& colour,
                    unsigned long format);
    ZQDialogEditBox(const ZQDialogEditBox&) = delete;
    ZQDialogEditBox& operator=(const ZQDialogEditBox&) = delete;
    virtual ~ZQDialogEditBox();

    /// true appends the caret (a second one on a box that has it); false removes it.
    void SetAcquire(bool acquire);
    bool GetAcquire();
    void SetPassword(bool password);
    bool GetPassword();
    void SetDisable(bool disable);
    bool GetDisable();
    void SetColor(D3DXCOLOR colour);
    D3DXCOLOR GetColor();
    void SetShadow(int offset, D3DXCOLOR& colour);
    ZQRect GetRect();
    /// The committed text, without caret.
    const wchar_t* GetText();
    /// What is drawn: the text (masked with "*" for a password) and the caret.
    const wchar_t* GetDisplay();
    /// With the focus: nothing but the caret; without: no text at all.
    bool empty();
    /// Empties every string; the caret comes back at the next rebuild.
    void Clear();
    /// Rebuilds the full and display strings from the committed and composed text; the caller holds
    /// the box's lock.
    void Convert_NoLock(bool withCaret);
    unsigned int GetId();

    /// With the focus and enabled: WM_CHAR appends a character the conversion mode lets through (in
    /// native mode letters and other characters above 127 belong to the input method; U+AD6D is always
    /// refused) or removes the last committed one (Backspace); WM_IME_COMPOSITION takes the input
    /// method's composition or commits its result, and then sets *noFurtherProcessing so that the result
    /// does not come back as characters; a composition that ends without a result (WM_IME_COMPOSITION
    /// with neither part, WM_IME_ENDCOMPOSITION) is removed. Returns the message number it was given.
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing, void* context);
    /// Remake and release the texture; forward the scene's callbacks.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);
    /// Draws the display text into the texture, its shadow first.
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    /// Draws the texture in the text colour.
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

private:
    void OnChar(HWND hWnd, wchar_t c);
    /// True when the input method's result was committed.
    bool OnComposition(HWND hWnd, LPARAM parts);
    /// Appends c when the committed and composed text together are shorter than the maximum.
    void Append(wchar_t c);

    ZQSprite* m_sprite;
    ZQTextTarget* m_target; ///< the texture, its surface, the render-to-surface object and the text sprite
    ID3DXFont* m_font;
    unsigned long m_format;
    ZQRect m_rect;   ///< on the screen
    ZQRect m_inside; ///< the same size at the texture's top-left corner
    ZQString m_display, m_full, m_composition, m_committed;
    D3DXCOLOR m_colour, m_shadowColour = D3DXCOLOR(0.0f, 0.0f, 0.0f, 1.0f);
    bool m_disabled = false, m_acquired = false, m_password = false;
    int m_maxLength = 0, m_shadowOffset = 0;
    ZQCriticalSection m_lock;
    unsigned int m_id;
};

} // namespace ZQ
