#include "ZQ/threed/ZQ3DSpline.h"

#include <initializer_list>
#include <new>

namespace ZQ {
namespace _3D {

namespace {

void DeleteVectors(ZQVector& vector) {
    for (unsigned int i = 0; i < vector.size(); ++i)
        delete static_cast<D3DXVECTOR3*>(vector[static_cast<int>(i)]);
    vector.clear();
}

D3DXVECTOR3& At(const ZQVector& vector, int index) {
    return *static_cast<D3DXVECTOR3*>(vector[index]);
}

// a * v with every product rounded to float as it is formed.
D3DXVECTOR3 Scale(float a, const D3DXVECTOR3& v) {
    return D3DXVECTOR3(a * v.x, a * v.y, a * v.z);
}

} // namespace

_ZQ3DTcbSpline_tag::_ZQ3DTcbSpline_tag()
    : position(0.0f, 0.0f, 0.0f), time(0.0f), tension(-1.0f), continuity(0.0f), bias(0.0f) {}

_ZQ3DTcbSpline_tag::_ZQ3DTcbSpline_tag(const D3DXVECTOR3& position, float time, float tension, float continuity,
                                       float bias)
    : position(position), time(time), tension(tension), continuity(continuity), bias(bias) {}

ZQ3DSpline::ZQ3DSpline() = default;

ZQ3DSpline::ZQ3DSpline(const ZQ3DSpline& other) {
    CopyFrom(other);
}

ZQ3DSpline& ZQ3DSpline::operator=(const ZQ3DSpline& other) {
    if (this != &other) {
        clear();
        CopyFrom(other);
    }
    return *this;
}

ZQ3DSpline::~ZQ3DSpline() {
    clear();
}

void ZQ3DSpline::CopyFrom(const ZQ3DSpline& other) {
    for (unsigned int i = 0; i < other.m_keys.size(); ++i)
        if (_ZQ3DTcbSpline_tag* key = new (std::nothrow) _ZQ3DTcbSpline_tag(other.Key(static_cast<int>(i))))
            m_keys.push_back(key);
    const ZQVector* from[] = {&other.m_a, &other.m_b, &other.m_c, &other.m_d};
    ZQVector* to[] = {&m_a, &m_b, &m_c, &m_d};
    for (int k = 0; k < 4; ++k)
        for (unsigned int i = 0; i < from[k]->size(); ++i)
            if (D3DXVECTOR3* vector = new (std::nothrow) D3DXVECTOR3(At(*from[k], static_cast<int>(i))))
                to[k]->push_back(vector);
}

const _ZQ3DTcbSpline_tag& ZQ3DSpline::Key(int index) const {
    return *static_cast<const _ZQ3DTcbSpline_tag*>(m_keys[index]);
}

void ZQ3DSpline::DeleteCoefficients() {
    DeleteVectors(m_a);
    DeleteVectors(m_b);
    DeleteVectors(m_c);
    DeleteVectors(m_d);
}

void ZQ3DSpline::push_back(const _ZQ3DTcbSpline_tag& key) {
    _ZQ3DTcbSpline_tag* copy = new (std::nothrow) _ZQ3DTcbSpline_tag(key);
    const unsigned int before = m_keys.size();
    if (copy)
        m_keys.push_back(copy);
    if (m_keys.size() == before) {
        delete copy; // the list is full
        return;
    }
    if (m_keys.size() < 4)
        return;
    // Only the last two segments depend on the new key: the one that ended at the old last key (whose
    // missing neighbour was that key itself) and the new one. Recomputing just those gives the same
    // coefficients as a full recomputation, and keeps a long path linear to load.
    const int n = static_cast<int>(m_keys.size());
    if (n > 4 && m_a.size() == static_cast<unsigned int>(n - 2) && AppendZeroSegment()) {
        ComputePoly(n - 4, n - 3, n - 2, n - 1);
        ComputePoly(n - 3, n - 2, n - 1, n - 1);
        return;
    }
    DeleteCoefficients();
    Initialize();
}

// One more zero place in each coefficient list, or none at all.
bool ZQ3DSpline::AppendZeroSegment() {
    ZQVector* lists[] = {&m_a, &m_b, &m_c, &m_d};
    const unsigned int before = m_a.size();
    for (ZQVector* coefficients : lists)
        if (D3DXVECTOR3* zero = new (std::nothrow) D3DXVECTOR3(0.0f, 0.0f, 0.0f)) {
            coefficients->push_back(zero);
            if (coefficients->size() == before)
                delete zero;
        }
    for (ZQVector* coefficients : lists)
        if (coefficients->size() != before + 1) {
            DeleteCoefficients();
            return false;
        }
    return true;
}

void ZQ3DSpline::clear() {
    for (unsigned int i = 0; i < m_keys.size(); ++i)
        delete static_cast<_ZQ3DTcbSpline_tag*>(m_keys[static_cast<int>(i)]);
    m_keys.clear();
    DeleteCoefficients();
}

bool ZQ3DSpline::isReady() const {
    return m_keys.size() >= 4;
}

_ZQ3DTcbSpline_tag* ZQ3DSpline::GetTable(int index) {
    if (index < 0 || index > static_cast<int>(m_keys.size()))
        return nullptr;
    return static_cast<_ZQ3DTcbSpline_tag*>(m_keys[index]);
}

bool ZQ3DSpline::Initialize() {
    const int n = static_cast<int>(m_keys.size());
    if (n < 4)
        return false;
    for (ZQVector* coefficients : {&m_a, &m_b, &m_c, &m_d})
        for (int i = 0; i < n - 1; ++i)
            if (D3DXVECTOR3* zero = new (std::nothrow) D3DXVECTOR3(0.0f, 0.0f, 0.0f))
                coefficients->push_back(zero);
    // Without all places (memory or the list's ceiling) no segment is computed: the path stays at the origin.
    for (ZQVector* coefficients : {&m_a, &m_b, &m_c, &m_d})
        if (coefficients->size() != static_cast<unsigned int>(n - 1)) {
            DeleteCoefficients();
            return false;
        }
    // The missing neighbour of an end segment is the end key itself.
    ComputePoly(0, 0, 1, 2);
    for (int i = 1; i <= n - 3; ++i)
        ComputePoly(i - 1, i, i + 1, i + 2);
    ComputePoly(n - 3, n - 2, n - 1, n - 1);
    return true;
}

void ZQ3DSpline::ComputePoly(int p0, int p1, int p2, int p3) {
    const _ZQ3DTcbSpline_tag& k0 = Key(p0);
    const _ZQ3DTcbSpline_tag& k1 = Key(p1);
    const _ZQ3DTcbSpline_tag& k2 = Key(p2);
    const _ZQ3DTcbSpline_tag& k3 = Key(p3);
    const D3DXVECTOR3 d = k2.position - k1.position;

    const float s1 = 2.0f * (k2.time - k1.time) / (k2.time - k0.time) * 0.5f * (1.0f - k1.tension);
    const D3DXVECTOR3 ts = Scale(s1 * (1.0f + k1.continuity) * (1.0f + k1.bias), k1.position - k0.position) +
                           Scale(s1 * (1.0f - k1.continuity) * (1.0f - k1.bias), d);
    const float s2 = 2.0f * (k2.time - k1.time) / (k3.time - k1.time) * 0.5f * (1.0f - k2.tension);
    const D3DXVECTOR3 td = Scale(s2 * (1.0f - k2.continuity) * (1.0f + k2.bias), d) +
                           Scale(s2 * (1.0f + k2.continuity) * (1.0f - k2.bias), k3.position - k2.position);

    At(m_a, p1) = k1.position;
    At(m_b, p1) = ts;
    At(m_c, p1) = Scale(3.0f, d) - Scale(2.0f, ts) - td;
    At(m_d, p1) = Scale(-2.0f, d) + ts + td;
}

void ZQ3DSpline::GetKeyInfo(float time, int& segment, float& localTime) const {
    const int n = static_cast<int>(m_keys.size());
    if (time <= Key(0).time) {
        segment = 0;
        localTime = 0.0f;
    } else if (time >= Key(n - 1).time) {
        segment = n - 2;
        localTime = Key(n - 1).time - Key(n - 2).time;
    } else {
        int key = 1;
        while (key < n - 1 && Key(key).time <= time)
            ++key;
        segment = key - 1;
        localTime = time - Key(segment).time;
    }
}

D3DXVECTOR3 ZQ3DSpline::GetPosition(float time) const {
    if (!isReady() || m_a.size() + 1 != m_keys.size())
        return D3DXVECTOR3(0.0f, 0.0f, 0.0f);
    int segment = 0;
    float localTime = 0.0f;
    GetKeyInfo(time, segment, localTime);
    const float u = localTime / (Key(segment + 1).time - Key(segment).time);
    const D3DXVECTOR3& a = At(m_a, segment);
    const D3DXVECTOR3& b = At(m_b, segment);
    const D3DXVECTOR3& c = At(m_c, segment);
    const D3DXVECTOR3& d = At(m_d, segment);
    return D3DXVECTOR3(a.x + u * (b.x + u * (c.x + d.x * u)), a.y + u * (b.y + u * (c.y + d.y * u)),
                       a.z + u * (b.z + u * (c.z + d.z * u)));
}

} // namespace _3D
} // namespace ZQ
