#include "ZQ/core/ZQRect.h"

namespace ZQ {

namespace {
bool Within(float v, float low, float high) {
    return low <= v && v <= high;
}
} // namespace

ZQRect::ZQRect(int l, int t, int r, int b)
    : left(static_cast<float>(l)), top(static_cast<float>(t)), right(static_cast<float>(r)),
      bottom(static_cast<float>(b)) {
    SetRect(&rect, l, t, r, b);
}

ZQRect::ZQRect(float l, float t, float r, float b) : left(l), top(t), right(r), bottom(b) {
    Refresh();
}

ZQRect::ZQRect(const float* p) : left(p[0]), top(p[1]), right(p[2]), bottom(p[3]) {
    Refresh();
}

ZQRect::ZQRect(const D3DXFLOAT16* p) {
    float edges[4];
    D3DXFloat16To32Array(edges, p, 4);
    left = edges[0];
    top = edges[1];
    right = edges[2];
    bottom = edges[3];
    Refresh();
}

ZQRect& ZQRect::operator=(const RECT& r) {
    left = static_cast<float>(r.left);
    top = static_cast<float>(r.top);
    right = static_cast<float>(r.right);
    bottom = static_cast<float>(r.bottom);
    rect = r;
    return *this;
}

ZQRect& ZQRect::Refresh() {
    SetRect(&rect, static_cast<int>(left), static_cast<int>(top), static_cast<int>(right), static_cast<int>(bottom));
    return *this;
}

ZQRect::operator RECT*() {
    Refresh();
    return &rect;
}

ZQRect& ZQRect::operator+=(float s) {
    left += s, top += s, right += s, bottom += s;
    return Refresh();
}

ZQRect& ZQRect::operator-=(float s) {
    left -= s, top -= s, right -= s, bottom -= s;
    return Refresh();
}

ZQRect& ZQRect::operator*=(float s) {
    left *= s, top *= s, right *= s, bottom *= s;
    return Refresh();
}

ZQRect& ZQRect::operator/=(float s) {
    const float inverse = static_cast<float>(1.0 / s);
    left *= inverse, top *= inverse, right *= inverse, bottom *= inverse;
    return Refresh();
}

ZQRect& ZQRect::operator+=(const D3DXVECTOR2& v) {
    left += v.x, top += v.y, right += v.x, bottom += v.y;
    return Refresh();
}

ZQRect& ZQRect::operator-=(const D3DXVECTOR2& v) {
    left -= v.x, top -= v.y, right -= v.x, bottom -= v.y;
    return Refresh();
}

ZQRect& ZQRect::operator*=(const D3DXVECTOR2& v) {
    left *= v.x, top *= v.y, right *= v.x, bottom *= v.y;
    return Refresh();
}

ZQRect& ZQRect::operator/=(const D3DXVECTOR2& v) {
    left /= v.x, top /= v.y, right /= v.x, bottom /= v.y;
    return Refresh();
}

ZQRect& ZQRect::operator+=(const ZQRect& r) {
    left += r.left, top += r.top, right += r.right, bottom += r.bottom;
    return Refresh();
}

ZQRect& ZQRect::operator-=(const ZQRect& r) {
    left -= r.left, top -= r.top, right -= r.right, bottom -= r.bottom;
    return Refresh();
}

ZQRect& ZQRect::operator*=(const ZQRect& r) {
    left *= r.left, top *= r.top, right *= r.right, bottom *= r.bottom;
    return Refresh();
}

ZQRect& ZQRect::operator/=(const ZQRect& r) {
    left /= r.left, top /= r.top, right /= r.right, bottom /= r.bottom;
    return Refresh();
}

// The binary forms set the floats only: their integer copy stays unset.
namespace {
ZQRect Floats(float l, float t, float r, float b) {
    ZQRect result;
    result.left = l, result.top = t, result.right = r, result.bottom = b;
    return result;
}
} // namespace

ZQRect ZQRect::operator+(const D3DXVECTOR2& v) const {
    return Floats(left + v.x, top + v.y, right + v.x, bottom + v.y);
}

ZQRect ZQRect::operator-(const D3DXVECTOR2& v) const {
    return Floats(left - v.x, top - v.y, right - v.x, bottom - v.y);
}

ZQRect ZQRect::operator*(const D3DXVECTOR2& v) const {
    return Floats(left * v.x, top * v.y, right * v.x, bottom * v.y);
}

ZQRect ZQRect::operator/(const D3DXVECTOR2& v) const {
    return Floats(left / v.x, top / v.y, right / v.x, bottom / v.y);
}

ZQRect ZQRect::operator+(const ZQRect& r) const {
    return Floats(left + r.left, top + r.top, right + r.right, bottom + r.bottom);
}

ZQRect ZQRect::operator-(const ZQRect& r) const {
    return Floats(left - r.left, top - r.top, right - r.right, bottom - r.bottom);
}

ZQRect ZQRect::operator*(const ZQRect& r) const {
    return Floats(left * r.left, top * r.top, right * r.right, bottom * r.bottom);
}

ZQRect ZQRect::operator/(const ZQRect& r) const {
    return Floats(left / r.left, top / r.top, right / r.right, bottom / r.bottom);
}

bool ZQRect::operator==(const ZQRect& r) const {
    return left == r.left && top == r.top && right == r.right && bottom == r.bottom;
}

bool ZQRect::isZero() const {
    return left == 0.0f && top == 0.0f && right == 0.0f && bottom == 0.0f;
}

bool ZQRect::isOverlap(int x, int y) const {
    return isOverlap(static_cast<float>(x), static_cast<float>(y));
}

bool ZQRect::isOverlap(float x, float y) const {
    return Within(x, left, right) && Within(y, top, bottom);
}

bool ZQRect::isOverlap(const D3DXVECTOR2& p) const {
    return isOverlap(p.x, p.y);
}

bool ZQRect::isOverlap(const ZQRect& r) const {
    return isOverlap(*this, r);
}

bool ZQRect::isOverlap(const ZQRect& a, const ZQRect& b) {
    return a.isOverlap(b.left, b.top) || a.isOverlap(b.left, b.bottom) || a.isOverlap(b.right, b.top) ||
           a.isOverlap(b.right, b.bottom) || b.isOverlap(a.left, a.top) || b.isOverlap(a.left, a.bottom) ||
           b.isOverlap(a.right, a.top) || b.isOverlap(a.right, a.bottom);
}

ZQRect ZQRect::lerp(const ZQRect& a, const ZQRect&, float) {
    return Floats(a.left, a.top, a.right, a.bottom);
}

} // namespace ZQ
