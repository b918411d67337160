#include "ZQ/dialog/ZQDialogPixel.h"

#include <cstring>

namespace ZQ {

ZQDialogPixel::ZQDialogPixel(const ZQDialogPixel& other) {
    CopyFrom(other);
}

ZQDialogPixel& ZQDialogPixel::operator=(const ZQDialogPixel& other) {
    if (this != &other)
        CopyFrom(other);
    return *this;
}

ZQDialogPixel::~ZQDialogPixel() {
    if (m_mask)
        GlobalFree(m_mask);
}

// A shared pointer would be freed twice by the two destructors: the copy gets its own bytes.
void ZQDialogPixel::CopyFrom(const ZQDialogPixel& other) {
    if (m_mask)
        GlobalFree(m_mask);
    m_mask = nullptr;
    m_maskLeft = other.m_maskLeft;
    m_maskTop = other.m_maskTop;
    m_maskRight = other.m_maskRight;
    m_maskBottom = other.m_maskBottom;
    m_maskWidth = other.m_maskWidth;
    m_maskHeight = other.m_maskHeight;
    const SIZE_T bytes = other.m_mask ? GlobalSize(other.m_mask) : 0;
    if (bytes && (m_mask = static_cast<unsigned char*>(GlobalAlloc(GMEM_FIXED, bytes))) != nullptr)
        std::memcpy(m_mask, other.m_mask, bytes);
}

void ZQDialogPixel::GetTexImage(_ZQTextureChunk_tag* chunk, D3DXVECTOR3& position) {
    if (!chunk)
        return;
    const int width = static_cast<int>(chunk->pixel.right - chunk->pixel.left);
    const int height = static_cast<int>(chunk->pixel.bottom - chunk->pixel.top);
    if (width <= 0 || height <= 0)
        return;
    m_maskLeft = static_cast<float>(static_cast<int>(position.x));
    m_maskTop = static_cast<float>(static_cast<int>(position.y));
    m_maskRight = static_cast<float>(static_cast<int>(position.x + static_cast<float>(width)));
    m_maskBottom = static_cast<float>(static_cast<int>(position.y + static_cast<float>(height)));

    const SIZE_T bytes = static_cast<SIZE_T>(width) * static_cast<SIZE_T>(height);
    void* grown = m_mask ? GlobalReAlloc(m_mask, bytes, GMEM_MOVEABLE | GMEM_ZEROINIT)
                         : GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, bytes);
    if (!grown)
        return;
    m_mask = static_cast<unsigned char*>(grown);
    m_maskWidth = width;
    m_maskHeight = height;
    std::memset(m_mask, 0, bytes);

    // A chunk with a texture of its own starts at that texture's corner; one in a shared atlas at its
    // source rectangle.
    IDirect3DTexture9* texture = chunk->texture ? chunk->texture : chunk->sharedTexture;
    const int left = chunk->texture ? 0 : static_cast<int>(chunk->pixel.left);
    const int top = chunk->texture ? 0 : static_cast<int>(chunk->pixel.top);
    D3DSURFACE_DESC desc;
    D3DLOCKED_RECT locked;
    if (!texture || FAILED(texture->GetLevelDesc(0, &desc)))
        return;
    // Only A8R8G8B8 carries alpha in the fourth byte; any other picture counts as opaque throughout.
    if (desc.Format != D3DFMT_A8R8G8B8) {
        std::memset(m_mask, 1, bytes);
        return;
    }
    if (FAILED(texture->LockRect(0, &locked, nullptr, D3DLOCK_READONLY)))
        return;
    const int rows = top + height <= static_cast<int>(desc.Height) ? height : static_cast<int>(desc.Height) - top;
    const int columns = left + width <= static_cast<int>(desc.Width) ? width : static_cast<int>(desc.Width) - left;
    for (int r = 0; r < rows; ++r) {
        const unsigned char* row =
            static_cast<const unsigned char*>(locked.pBits) + static_cast<size_t>(top + r) * locked.Pitch;
        for (int c = 0; c < columns; ++c)
            m_mask[static_cast<size_t>(r) * width + c] = row[static_cast<size_t>(left + c) * 4 + 3] != 0 ? 1 : 0;
    }
    texture->UnlockRect(0);
}

bool ZQDialogPixel::check(int x, int y) {
    if (!m_mask)
        return false;
    const int dx = x - static_cast<int>(m_maskLeft);
    const int dy = y - static_cast<int>(m_maskTop);
    if (dx >= m_maskWidth || dy >= m_maskHeight || dx < 0 || dy < 0)
        return false;
    return m_mask[static_cast<size_t>(dy) * m_maskWidth + dx] != 0;
}

} // namespace ZQ
