#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Rectangle of float edges (pixels, y down; right and bottom are edges, not sizes) with an
/// integer RECT copy, truncated toward zero, for platform calls. Compound operators refresh the
/// copy; binary operators return a temporary whose copy is not set (convert to RECT* to refresh).
struct ZQ_API ZQRect {
    float left = 0.0f;
    float top = 0.0f;
    float right = 0.0f;
    float bottom = 0.0f;
    RECT rect = {};

    ZQRect() = default;
    ZQRect(int l, int t, int r, int b);
    ZQRect(float l, float t, float r, float b);
    /// Four floats: left, top, right, bottom.
    explicit ZQRect(const float* p);
    /// Four half floats: left, top, right, bottom.
    explicit ZQRect(const D3DXFLOAT16* p);
    ZQRect& operator=(const RECT& r);

    ZQRect& operator+=(float s);
    ZQRect& operator-=(float s);
    ZQRect& operator*=(float s);
    /// Multiplies by the reciprocal of s (formed once, in double precision).
    ZQRect& operator/=(float s);
    /// x applies to left and right, y to top and bottom.
    ZQRect& operator+=(const D3DXVECTOR2& v);
    ZQRect& operator-=(const D3DXVECTOR2& v);
    ZQRect& operator*=(const D3DXVECTOR2& v);
    ZQRect& operator/=(const D3DXVECTOR2& v);
    /// Edge by edge.
    ZQRect& operator+=(const ZQRect& r);
    ZQRect& operator-=(const ZQRect& r);
    ZQRect& operator*=(const ZQRect& r);
    ZQRect& operator/=(const ZQRect& r);

    ZQRect operator+(const D3DXVECTOR2& v) const;
    ZQRect operator-(const D3DXVECTOR2& v) const;
    ZQRect operator*(const D3DXVECTOR2& v) const;
    ZQRect operator/(const D3DXVECTOR2& v) const;
    ZQRect operator+(const ZQRect& r) const;
    ZQRect operator-(const ZQRect& r) const;
    ZQRect operator*(const ZQRect& r) const;
    ZQRect operator/(const ZQRect& r) const;

    /// The four floats exactly equal; the integer copy is not compared.
    bool operator==(const ZQRect& r) const;
    bool isZero() const;
    float width() const { return right - left; }
    float height() const { return bottom - top; }
    float HalfWidth() const { return (right - left) * 0.5f; }
    float HalfHeight() const { return (bottom - top) * 0.5f; }

    /// The integer copy as stored.
    operator const RECT*() const { return &rect; }
    /// Refreshes the integer copy from the floats, then returns it.
    operator RECT*();

    /// The point lies within the edges, edges included.
    bool isOverlap(int x, int y) const;
    bool isOverlap(float x, float y) const;
    bool isOverlap(const D3DXVECTOR2& p) const;
    /// A corner of either rectangle lies in the other (edges included); a cross does not overlap.
    bool isOverlap(const ZQRect& r) const;
    static bool isOverlap(const ZQRect& a, const ZQRect& b);
    /// Returns a (b and t are not used).
    static ZQRect lerp(const ZQRect& a, const ZQRect& b, float t);

private:
    ZQRect& Refresh();
};

} // namespace ZQ
