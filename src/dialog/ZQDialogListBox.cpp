#include "ZQ/dialog/ZQDialogListBox.h"

#include "ZQ/core/ZQLock.h"

#include <new>

namespace ZQ {

struct ZQDialogListBox::Line {
    ZQString text;
    D3DXCOLOR colour;
};

ZQDialogListBox::ZQDialogListBox(ZQSprite* sprite, unsigned int id, ID3DXFont* font, ZQRect& rect)
    : m_sprite(sprite), m_font(font), m_rect(rect), m_id(id) {
    InitializeCriticalSection(&m_lock);
    D3DXFONT_DESCW desc = {};
    if (font && SUCCEEDED(font->GetDescW(&desc)) && desc.Height > 0) {
        m_lineHeight = desc.Height;
        m_visibleLines = static_cast<int>((rect.bottom - rect.top) / static_cast<float>(desc.Height));
    }
}

ZQDialogListBox::~ZQDialogListBox() {
    DeleteLines(m_lines.size());
    DeleteCriticalSection(&m_lock);
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
    ZQLock lock(&m_lock);
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
    ZQLock lock(&m_lock);
    if (index >= m_lines.size())
        return nullptr;
    return static_cast<Line*>(m_lines[static_cast<int>(index)])->text;
}

void ZQDialogListBox::Clear() {
    ZQLock lock(&m_lock);
    DeleteLines(m_lines.size());
}

void ZQDialogListBox::SetShadow(int offset, D3DXCOLOR& colour) {
    ZQLock lock(&m_lock);
    m_shadowOffset = offset;
    m_shadowColour = colour;
}

void ZQDialogListBox::SetDisable(bool disable) {
    ZQLock lock(&m_lock);
    m_disabled = disable;
}

bool ZQDialogListBox::GetDisable() {
    ZQLock lock(&m_lock);
    return m_disabled;
}

unsigned int ZQDialogListBox::GetId() {
    return m_id;
}

HRESULT ZQDialogListBox::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQDialogListBox::OnLostDevice(void*) {}

void ZQDialogListBox::OnFrameMove(IDirect3DDevice9*, double, float, void*) {}

void ZQDialogListBox::OnFrameRender(IDirect3DDevice9*, double, float, void*) {}

} // namespace ZQ
