#pragma once
#include "ZQ/core/ZQArray.h"
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// One font of a ZQFont: its description as created, the font (owned by the ZQFont) and the caller's id.
struct _ZQFontList_tag {
    D3DXFONT_DESCW desc;
    ID3DXFont* font;
    int id;
};

/// The text fonts of an application under small integer ids. Id 0 is a default font (Arial, height 20,
/// width 8, weight 700) made by the constructor. Lookups take the first entry of an id; a replaced id moves
/// to the end of the list. Forward the device's lost and reset notifications to it.
class ZQ_API ZQFont : public ZQHeapObject {
public:
    explicit ZQFont(IDirect3DDevice9* device);
    // Copies would share and release the same fonts twice.
    ZQFont(const ZQFont&) = delete;
    ZQFont& operator=(const ZQFont&) = delete;
    /// Releases every font of the list.
    virtual ~ZQFont();

    /// Creates a font by face name and puts it under id, replacing any font of that id (moved to the end);
    /// a font that cannot be created changes nothing.
    void Entry(int id, const wchar_t* face, UINT height, UINT width, UINT weight, UINT mipLevels, int italic,
               DWORD charSet, DWORD outputPrecision, DWORD quality, DWORD pitchAndFamily);
    /// As above after registering the font file (found by the media search) for this process only; the
    /// file stays registered until the process ends.
    void Entry(int id, const wchar_t* file, const wchar_t* face, UINT height, UINT width, UINT weight,
               UINT mipLevels, int italic, DWORD charSet, DWORD outputPrecision, DWORD quality,
               DWORD pitchAndFamily);
    /// Takes the first entry of id out of the list without releasing its font; an absent id does nothing.
    void Remove(int id);

    /// The font of id, or null.
    ID3DXFont* Get(int id);
    /// The height of id's font, or -1 when absent.
    int height(int id);
    /// The width of id's font, or 0 when absent.
    UINT width(int id);
    /// The weight of id's font, or 0 when absent.
    UINT weight(int id);

    /// Draws with the first font of the list; -1 when there is none, else ID3DXFont::DrawTextW's result.
    int DrawTextW(ID3DXSprite* sprite, const wchar_t* text, int count, RECT* rect, DWORD format, DWORD color);
    /// Draws with id's font; -1 when the id is absent.
    int DrawTextW(int id, ID3DXSprite* sprite, const wchar_t* text, int count, RECT* rect, DWORD format,
                  DWORD color);

    /// Resets every font; returns 0.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    /// Tells every font the device is lost.
    void OnLostDevice(void* context);

private:
    _ZQFontList_tag* Find(int id);

    IDirect3DDevice9* m_device;
    ZQArray<_ZQFontList_tag> m_fonts;
};

} // namespace ZQ
