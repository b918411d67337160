#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQVector.h"

namespace ZQ {
namespace _3D {

/// One key of a TCB spline. The default tension is -1, which doubles both tangents.
struct ZQ_API _ZQ3DTcbSpline_tag {
    _ZQ3DTcbSpline_tag();
    _ZQ3DTcbSpline_tag(const D3DXVECTOR3& position, float time, float tension = -1.0f, float continuity = 0.0f,
                       float bias = 0.0f);

    D3DXVECTOR3 position;
    float time; ///< keys must be strictly increasing in time
    float tension;
    float continuity;
    float bias;
};

/// Kochanek-Bartels (tension, continuity, bias) spline through timed keys, one cubic per segment
/// between neighbouring keys, evaluated in 32-bit floats. Ready from four keys on. Copies are deep.
class ZQ_API ZQ3DSpline : public ZQHeapObject {
public:
    ZQ3DSpline();
    ZQ3DSpline(const ZQ3DSpline& other);
    ZQ3DSpline& operator=(const ZQ3DSpline& other);
    virtual ~ZQ3DSpline();

    /// Appends a copy of the key; from four keys on, the spline holds every segment for the current keys.
    void push_back(const _ZQ3DTcbSpline_tag& key);
    void clear();
    /// At least four keys.
    bool isReady() const;
    /// The point at time: (0, 0, 0) until ready; the first key before it, the last key after the end.
    D3DXVECTOR3 GetPosition(float time) const;
    /// Key index, or null for index < 0 or index > count. index == count passes (the bound is inclusive)
    /// and reads the empty place after the last key: null.
    _ZQ3DTcbSpline_tag* GetTable(int index);
    /// Number of keys.
    int GetKeyCount() const { return static_cast<int>(m_keys.size()); }

private:
    bool Initialize();
    void ComputePoly(int p0, int p1, int p2, int p3);
    void GetKeyInfo(float time, int& segment, float& localTime) const;
    const _ZQ3DTcbSpline_tag& Key(int index) const;
    void DeleteCoefficients();
    bool AppendZeroSegment();
    void CopyFrom(const ZQ3DSpline& other);

    ZQVector m_keys;
    ZQVector m_a;
    ZQVector m_b;
    ZQVector m_c;
    ZQVector m_d;
};

} // namespace _3D
} // namespace ZQ
