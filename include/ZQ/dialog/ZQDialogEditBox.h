#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/twod/ZQSprite.h"

namespace ZQ {

/// A one-line text input of a dialog. Text is only appended and removed from the end; the box that has
/// the focus shows the caret "|" after its text. Sends no events. In this version it keeps its text,
/// caret and focus but neither draws nor takes typing.
class ZQ_API ZQDialogEditBox {
public:
    /// The maximum length is the rectangle's width in the font's characters, less one; a rectangle lower
    /// than the font is made as high as the font.
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

    /// Returns the message number it was given.
    LRESULT OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing, void* context);
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);
    void OnFrameMove(IDirect3DDevice9* device, double time, float elapsed, void* context);
    void OnFrameRender(IDirect3DDevice9* device, double time, float elapsed, void* context);

private:
    ZQSprite* m_sprite;
    ID3DXFont* m_font;
    unsigned long m_format;
    ZQRect m_rect;
    ZQString m_display, m_full, m_composition, m_committed;
    D3DXCOLOR m_colour, m_shadowColour = D3DXCOLOR(0.0f, 0.0f, 0.0f, 1.0f);
    bool m_disabled = false, m_acquired = false, m_password = false;
    int m_maxLength = 0, m_shadowOffset = 0;
    CRITICAL_SECTION m_lock;
    unsigned int m_id;
};

} // namespace ZQ
