#include "ZQ/dialog/ZQDialogNumber.h"

#include "ZQ/core/ZQLock.h"
#include "src/dialog/ZQDialogSupport.h"

#include <cwchar>
#include <new>

namespace ZQ {

ZQDialogNumber::ZQDialogNumber(ZQSprite* sprite, unsigned int id, const wchar_t* prefix, D3DXVECTOR3& position,
                               float spacing, unsigned long alignment)
    : m_sprite(sprite), m_alignment(alignment), m_spacing(spacing), m_position(position), m_id(id) {
    SetSprite(prefix);
}

ZQDialogNumber::~ZQDialogNumber() {
    ClearNames();
}

void ZQDialogNumber::ClearNames() {
    for (unsigned int i = 0; i < m_names.size(); ++i)
        delete static_cast<ZQString*>(m_names[static_cast<int>(i)]);
    m_names.clear();
}

void ZQDialogNumber::SetSprite(const wchar_t* prefix) {
    ZQLock lock(m_lock);
    ClearNames();
    const wchar_t* start = prefix ? prefix : L"";
    static const wchar_t* const kMarks[4] = {L"%ls,", L"%ls-", L"%ls,", L"%ls/"};
    wchar_t name[256];
    for (int i = 0; i < 14; ++i) {
        if (i < 4)
            std::swprintf(name, 256, kMarks[i], start);
        else
            std::swprintf(name, 256, L"%ls%02d", start, i - 4);
        ZQString* text = new (std::nothrow) ZQString;
        if (text)
            *text = name;
        m_names.push_back(text);
    }
}

void ZQDialogNumber::Reset(unsigned __int64 value) {
    m_lock.Write(m_value, value);
}

void ZQDialogNumber::Plus(unsigned __int64 value) {
    ZQLock lock(m_lock);
    m_value += value;
}

void ZQDialogNumber::Minus(unsigned __int64 value) {
    ZQLock lock(m_lock);
    m_value -= value;
}

unsigned __int64 ZQDialogNumber::GetNumber() {
    return m_lock.Read(m_value);
}

ZQ_VISIBLE_AND_DISABLE(ZQDialogNumber)

unsigned int ZQDialogNumber::GetId() {
    return m_id;
}

void ZQDialogNumber::OnFrameRender(IDirect3DDevice9*, double, float, void*) {
    ZQLock lock(m_lock);
    if (!m_visible)
        return;
    if (m_alignment == DT_LEFT)
        DrawTextLeft(m_value, m_position, m_spacing);
    else if (m_alignment == DT_CENTER)
        DrawTextCenter(m_value, m_position, m_spacing);
    else if (m_alignment == DT_RIGHT)
        DrawTextRight(m_value, m_position, m_spacing);
}

int ZQDialogNumber::Digits(unsigned __int64 value, char* digits) {
    char reversed[20];
    int count = 0;
    do {
        reversed[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value);
    for (int i = 0; i < count; ++i)
        digits[i] = reversed[count - 1 - i];
    return count;
}

const wchar_t* ZQDialogNumber::Name(char c) {
    const int index = c - 44;
    if (index < 0 || index >= static_cast<int>(m_names.size()) || !m_names[index])
        return nullptr;
    return *static_cast<ZQString*>(m_names[index]);
}

float ZQDialogNumber::Width(char c) {
    const wchar_t* name = Name(c);
    _ZQTextureChunk_tag* chunk = m_sprite && name ? m_sprite->Trans(name) : nullptr;
    return chunk ? chunk->pixel.width() : 0.0f;
}

void ZQDialogNumber::Draw(char c, float x, const D3DXVECTOR3& position) {
    D3DXVECTOR3 at(x, position.y, position.z);
    if (m_sprite)
        m_sprite->Render(Name(c), at, m_colour, 0);
}

void ZQDialogNumber::DrawTextLeft(unsigned __int64 value, D3DXVECTOR3& position, float spacing) {
    ZQLock lock(m_lock);
    char digits[20];
    const int count = Digits(value, digits);
    float x = position.x;
    for (int i = 0; i < count; ++i) {
        Draw(digits[i], x, position);
        x += Width(digits[i]) + spacing;
    }
}

void ZQDialogNumber::DrawTextCenter(unsigned __int64 value, D3DXVECTOR3& position, float spacing) {
    ZQLock lock(m_lock);
    char digits[20];
    const int count = Digits(value, digits);
    float total = 0.5f * Width(digits[0]);
    for (int i = 1; i < count; ++i)
        total += Width(digits[i]) + spacing;
    D3DXVECTOR3 start(position.x - 0.5f * total, position.y, position.z);
    DrawTextLeft(value, start, spacing);
}

void ZQDialogNumber::DrawTextRight(unsigned __int64 value, D3DXVECTOR3& position, float spacing) {
    ZQLock lock(m_lock);
    char digits[20];
    const int count = Digits(value, digits);
    float x = position.x;
    for (int i = count - 1; i >= 0; --i) {
        x -= Width(digits[i]) + (i == count - 1 ? 0.0f : spacing);
        Draw(digits[i], x, position);
    }
}

} // namespace ZQ
