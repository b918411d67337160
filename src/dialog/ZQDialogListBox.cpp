#include "ZQ/dialog/ZQDialogListBox.h"

#include "ZQ/core/ZQLock.h"
#include "src/core/ZQLockedAccessors.h"
#include "src/dialog/ZQTextTarget.h"

#include <new>

namespace ZQ {

struct ZQDialogListBox::Line {
    ZQString text;
    D3DXCOLOR colour;
};

ZQDialogListBox::ZQDialogListBox(ZQSprite* sprite, unsigned int id, ID3DXFont* font, ZQRect& rect)
    : m_target(new (std::nothrow) ZQTextTarget(sprite ? sprite->Getd3dDevice() : nullptr,
                                               static_cast<int>(rect.right - rect.left),
                                               static_cast<int>(rect.bottom - rect.top))),
      m_sprite(sprite), m_font(font), m_rect(rect), m_id(id) {
    D3DXFONT_DESCW desc = {};
    if (font && SUCCEEDED(font->GetDescW(&desc)) && desc.Height > 0) {
        m_lineHeight = desc.Height;
        m_visibleLines = static_cast<int>((rect.bottom - rect.top) / static_cast<float>(desc.Height));
    }
}

ZQDialogListBox::~ZQDialogListBox() {
    DeleteLines(m_lines.size());
    delete m_target;
}

// Deletes the oldest count lines and closes the gap.
void ZQDialogListBox::DeleteLines(unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) {
        Line* line = static_cast<Line*>(m_lines[static_cast<int>(i)]);
        m_lines.erase(line);
        delete line;
    }
    m_lines.swap();
}

void ZQDialogListBox::SetText(const wchar_t* text, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    // The log is trimmed in large steps, not line by line.
    if (m_lines.size() >= 4000)
        DeleteLines(m_lines.size() - 200);
    Line* line = new (std::nothrow) Line;
    if (!line)
        return;
    line->text = text;
    line->colour = colour;
    m_lines.push_back(line);
}

const wchar_t* ZQDialogListBox::GetText(unsigned int index) {
    ZQLock lock(m_lock);
    if (index >= m_lines.size())
        return nullptr;
    return static_cast<Line*>(m_lines[static_cast<int>(index)])->text;
}

void ZQDialogListBox::Clear() {
    ZQLock lock(m_lock);
    DeleteLines(m_lines.size());
    if (m_target)
        m_target->Clear();
}

void ZQDialogListBox::SetShadow(int offset, D3DXCOLOR& colour) {
    ZQLock lock(m_lock);
    m_shadowOffset = offset;
    m_shadowColour = colour;
}

ZQ_LOCKED_ACCESSORS(ZQDialogListBox, bool, Disable, m_disabled)

unsigned int ZQDialogListBox::GetId() {
    return m_id;
}

ZQ_TEXT_TARGET_DEVICE(ZQDialogListBox)

// Band 0 is the top line-height strip of the texture.
void ZQDialogListBox::DrawLine(const Line& line, int band) {
    const float top = static_cast<float>(band * m_lineHeight);
    ZQRect where(0.0f, top, m_rect.right - m_rect.left, top + static_cast<float>(m_lineHeight));
    m_target->DrawText(m_font, line.text, where, DT_VCENTER, line.colour, m_shadowOffset, m_shadowColour);
}

void ZQDialogListBox::OnFrameMove(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    const int count = static_cast<int>(m_lines.size());
    if (count == 0 || !m_font || !m_target || !m_target->Begin())
        return;
    if (count < m_visibleLines) {
        for (int i = 0; i < count; ++i)
            DrawLine(*static_cast<Line*>(m_lines[i]), i);
    } else {
        for (int band = 0; band < m_visibleLines; ++band)
            DrawLine(*static_cast<Line*>(m_lines[count - m_visibleLines + band]), band);
    }
    m_target->End();
}

void ZQDialogListBox::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    D3DXVECTOR3 corner(m_rect.left, m_rect.top, 0.0f);
    D3DXCOLOR white(1.0f, 1.0f, 1.0f, 1.0f);
    if (m_target)
        m_target->Draw(m_sprite, corner, white);
}

} // namespace ZQ
