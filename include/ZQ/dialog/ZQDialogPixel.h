#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/twod/ZQTextureChunk.h"

namespace ZQ {

/// Per-pixel hit mask of a clickable control: one byte per pixel of its chunk, 1 where the chunk's
/// alpha is not zero. Copies get a mask of their own.
class ZQ_API ZQDialogPixel : public ZQHeapObject {
public:
    ZQDialogPixel() = default;
    ZQDialogPixel(const ZQDialogPixel& other);
    ZQDialogPixel& operator=(const ZQDialogPixel& other);
    virtual ~ZQDialogPixel();

    /// Builds the mask of chunk as drawn with its top-left corner at position (own or shared texture).
    void GetTexImage(_ZQTextureChunk_tag* chunk, D3DXVECTOR3& position);
    /// True when screen point (x, y) lies on an opaque pixel; false without a mask or outside it.
    bool check(int x, int y);

private:
    void CopyFrom(const ZQDialogPixel& other);

    unsigned char* m_mask = nullptr;
    float m_maskLeft = 0.0f, m_maskTop = 0.0f, m_maskRight = 0.0f, m_maskBottom = 0.0f;
    /// The chunk's size: a row's length in the mask. Not the rectangle's, which truncation can shorten.
    int m_maskWidth = 0, m_maskHeight = 0;
};

} // namespace ZQ
