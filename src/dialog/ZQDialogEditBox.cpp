#include "ZQ/dialog/ZQDialogEditBox.h"

#include "ZQ/core/ZQLock.h"
#include "src/core/ZQLockedAccessors.h"
#include "src/dialog/ZQTextTarget.h"

#include <imm.h>

#include <new>

namespace ZQ {

ZQDialogEditBox::ZQDialogEditBox(ZQSprite* sprite, unsigned int id, ID3DXFont* font, ZQRect& rect, D3DXCOLOR& colour,
                                 unsigned long format)
    : m_sprite(sprite), m_target(nullptr), m_font(font), m_format(format), m_rect(rect), m_colour(colour), m_id(id) {
    D3DXFONT_DESCW desc = {};
    // A font that reports no character width gives no room rather than a division by zero.
    if (font && SUCCEEDED(font->GetDescW(&desc))) {
        if (desc.Width > 0)
            m_maxLength = static_cast<int>(rect.right - rect.left) / static_cast<int>(desc.Width) - 1;
        if (m_rect.bottom - m_rect.top < static_cast<float>(desc.Height))
            m_rect.bottom = m_rect.top + static_cast<float>(desc.Height);
    }
    const int width = static_cast<int>(m_rect.right - m_rect.left), height = static_cast<int>(m_rect.bottom - m_rect.top);
    m_inside = ZQRect(0.0f, 0.0f, static_cast<float>(width), static_cast<float>(height));
    m_target = new (std::nothrow) ZQTextTarget(sprite ? sprite->Getd3dDevice() : nullptr, width, height);
}

ZQDialogEditBox::~ZQDialogEditBox() {
    delete m_target;
}

void ZQDialogEditBox::SetAcquire(bool acquire) {
    ZQLock lock(m_lock);
    m_acquired = acquire;
    if (acquire) {
        m_full += L"|";
        m_display += L"|";
    } else {
        Convert_NoLock(false);
    }
}

bool ZQDialogEditBox::GetAcquire() {
    return m_lock.Read(m_acquired);
}

ZQ_LOCKED_ACCESSORS(ZQDialogEditBox, bool, Password, m_password)

ZQ_LOCKED_ACCESSORS(ZQDialogEditBox, bool, Disable, m_disabled)

ZQ_LOCKED_ACCESSORS(ZQDialogEditBox, D3DXCOLOR, Color, m_colour)

void ZQDialogEditBox::SetShadow(int offset, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    m_shadowOffset = offset;
    m_shadowColour = colour;
}

ZQRect ZQDialogEditBox::GetRect() {
    return m_lock.Read(m_rect);
}

const wchar_t* ZQDialogEditBox::GetText() {
    ZQLock lock(m_lock);
    return m_committed;
}

const wchar_t* ZQDialogEditBox::GetDisplay() {
    ZQLock lock(m_lock);
    return m_display;
}

bool ZQDialogEditBox::empty() {
    ZQLock lock(m_lock);
    return m_acquired ? m_full.size() < 2 : m_full.empty();
}

void ZQDialogEditBox::Clear() {
    ZQLock lock(m_lock);
    m_display.clear();
    m_full.clear();
    m_composition.clear();
    m_committed.clear();
}

void ZQDialogEditBox::Convert_NoLock(bool withCaret) {
    m_full.clear();
    m_full += m_committed;
    m_full += m_composition;
    m_display.clear();
    m_display += m_full;
    if (m_password)
        m_display.password();
    if (withCaret && m_acquired) {
        m_full += L"|";
        m_display += L"|";
    }
}

unsigned int ZQDialogEditBox::GetId() {
    return m_id;
}

void ZQDialogEditBox::Append(wchar_t c) {
    if (static_cast<int>(m_committed.size() + m_composition.size()) >= m_maxLength)
        return;
    const wchar_t text[2] = {c, L'\0'};
    m_committed += text;
}

void ZQDialogEditBox::OnChar(HWND hWnd, wchar_t c) {
    HIMC context = ImmGetContext(hWnd);
    DWORD conversion = 0, sentence = 0;
    if (ImmGetConversionStatus(context, &conversion, &sentence)) {
        const bool native = (conversion & IME_CMODE_NATIVE) != 0;
        if (c == 8) {
            m_committed.backspace();
        } else if (c == 9 || c == 13) {
            // Tab and Return move the dialog's focus.
        } else if (c >= 32 && c <= 64) {
            Append(c);
        } else if (c < 32) {
            if (!native) // control characters are deliberately let through
                Append(c);
        } else if ((c >= 65 && c <= 90) || (c >= 97 && c <= 122)) {
            if (!native) // in native mode letters go to the composition
                Append(c);
        } else if (c <= 127) {
            Append(c);
        } else if (c != 44397 && !native) { // U+AD6D is always refused
            Append(c);
        }
    }
    ImmReleaseContext(hWnd, context);
}

namespace {

// At most 512 bytes of the context's string, terminated.
void ReadString(HIMC context, DWORD part, wchar_t (&text)[257]) {
    const LONG bytes = ImmGetCompositionStringW(context, part, text, 512);
    text[bytes < 0 ? 0 : bytes > 512 ? 256 : bytes / 2] = L'\0';
}

} // namespace

bool ZQDialogEditBox::OnComposition(HWND hWnd, LPARAM parts) {
    HIMC context = ImmGetContext(hWnd);
    // Far off the screen, so that only the box shows the composition.
    COMPOSITIONFORM form = {};
    form.dwStyle = CFS_POINT;
    form.ptCurrentPos.x = 3000;
    form.ptCurrentPos.y = 3000;
    ImmSetCompositionWindow(context, &form);
    wchar_t text[257] = {};
    bool committed = false;
    if ((parts & GCS_RESULTSTR) && !(parts & GCS_COMPSTR)) {
        ReadString(context, GCS_RESULTSTR, text);
        m_committed += text; // the maximum length is not checked for what the input method commits
        m_composition.clear();
        committed = true;
    } else {
        // Without either part the composition is read again: a cancel has emptied it.
        ReadString(context, GCS_COMPSTR, text);
        m_composition.clear();
        m_composition += text;
    }
    ImmReleaseContext(hWnd, context);
    return committed;
}

LRESULT ZQDialogEditBox::OnMsgProc(HWND hWnd, UINT msg, WPARAM wParam, LPARAM lParam, bool* noFurtherProcessing,
                                   void*) {
    ZQLock lock(m_lock);
    if (!m_acquired || m_disabled)
        return msg;
    switch (msg) {
    case WM_CHAR:
        OnChar(hWnd, static_cast<wchar_t>(LOWORD(wParam)));
        break;
    case WM_IME_COMPOSITION:
        // The default handling would send the result again as WM_IME_CHAR and WM_CHAR, and the ASCII
        // characters among them would pass the filter a second time.
        if (OnComposition(hWnd, lParam) && noFurtherProcessing)
            *noFurtherProcessing = true;
        break;
    case WM_IME_ENDCOMPOSITION:
        // After a result the composition is empty already; without one it was cancelled.
        m_composition.clear();
        break;
    default:
        return msg;
    }
    Convert_NoLock(true);
    return msg;
}

ZQ_TEXT_TARGET_DEVICE(ZQDialogEditBox)

void ZQDialogEditBox::OnFrameMove(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    if (!m_font || !m_target || !m_target->Begin())
        return;
    m_target->DrawText(m_font, m_display, m_inside, m_format, m_colour, m_shadowOffset, m_shadowColour);
    m_target->End();
}

void ZQDialogEditBox::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    D3DXVECTOR3 corner(m_rect.left, m_rect.top, 0.0f);
    if (m_target)
        m_target->Draw(m_sprite, corner, m_colour);
}

} // namespace ZQ
