#include "ZQ/twod/ZQFont.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/frame/ZQMediaSearch.h"

namespace ZQ {

ZQFont::ZQFont(IDirect3DDevice9* device) : m_device(device) {
    Entry(0, L"Arial", 20, 8, 700, 1, FALSE, DEFAULT_CHARSET, 0, 0, 0);
}

ZQFont::~ZQFont() {
    for (int i = 0; i < m_fonts.GetSize(); ++i)
        m_fonts[i].font->Release();
    m_fonts.SetSize(0);
}

void ZQFont::Entry(int id, const wchar_t* face, UINT height, UINT width, UINT weight, UINT mipLevels, int italic,
                   DWORD charSet, DWORD outputPrecision, DWORD quality, DWORD pitchAndFamily) {
    if (!m_device)
        return;
    _ZQFontList_tag entry = {};
    entry.id = id;
    if (FAILED(D3DXCreateFontW(m_device, static_cast<INT>(height), width, weight, mipLevels, italic != 0, charSet,
                               outputPrecision, quality, pitchAndFamily, face, &entry.font)))
        return;
    entry.font->GetDescW(&entry.desc);
    Remove(id);
    // A list that cannot grow drops the new font without releasing it, as the old one dropped by Remove.
    m_fonts.Add(entry);
}

void ZQFont::Entry(int id, const wchar_t* file, const wchar_t* face, UINT height, UINT width, UINT weight,
                   UINT mipLevels, int italic, DWORD charSet, DWORD outputPrecision, DWORD quality,
                   DWORD pitchAndFamily) {
    wchar_t path[MAX_PATH];
    if (file && FAILED(ZQFindDXSDKMediaFileCch(path, MAX_PATH, file)))
        ZQMessage(L"ZQFont::Entry: %ls: not found; the face \"%ls\" is made from the fonts installed", file,
                  face ? face : L"");
    else if (file && AddFontResourceExW(path, FR_PRIVATE, nullptr) == 0)
        ZQMessage(L"ZQFont::Entry: %ls: not a font file the system takes", file);
    Entry(id, face, height, width, weight, mipLevels, italic, charSet, outputPrecision, quality, pitchAndFamily);
}

void ZQFont::Remove(int id) {
    for (int i = 0; i < m_fonts.GetSize(); ++i)
        if (m_fonts[i].id == id) {
            m_fonts.Remove(i);
            return;
        }
}

_ZQFontList_tag* ZQFont::Find(int id) {
    for (int i = 0; i < m_fonts.GetSize(); ++i)
        if (m_fonts[i].id == id)
            return &m_fonts[i];
    return nullptr;
}

ID3DXFont* ZQFont::Get(int id) {
    _ZQFontList_tag* entry = Find(id);
    return entry ? entry->font : nullptr;
}

int ZQFont::height(int id) {
    _ZQFontList_tag* entry = Find(id);
    return entry ? entry->desc.Height : -1;
}

UINT ZQFont::width(int id) {
    _ZQFontList_tag* entry = Find(id);
    return entry ? entry->desc.Width : 0;
}

UINT ZQFont::weight(int id) {
    _ZQFontList_tag* entry = Find(id);
    return entry ? entry->desc.Weight : 0;
}

int ZQFont::DrawTextW(ID3DXSprite* sprite, const wchar_t* text, int count, RECT* rect, DWORD format, DWORD color) {
    if (m_fonts.GetSize() == 0)
        return -1;
    return m_fonts[0].font->DrawTextW(sprite, text, count, rect, format, color);
}

int ZQFont::DrawTextW(int id, ID3DXSprite* sprite, const wchar_t* text, int count, RECT* rect, DWORD format,
                      DWORD color) {
    _ZQFontList_tag* entry = Find(id);
    return entry ? entry->font->DrawTextW(sprite, text, count, rect, format, color) : -1;
}

HRESULT ZQFont::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    for (int i = 0; i < m_fonts.GetSize(); ++i)
        m_fonts[i].font->OnResetDevice();
    return S_OK;
}

void ZQFont::OnLostDevice(void*) {
    for (int i = 0; i < m_fonts.GetSize(); ++i)
        m_fonts[i].font->OnLostDevice();
}

} // namespace ZQ
