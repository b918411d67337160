#pragma once
#include "ZQ/core/ZQPlatform.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace ZQ {

/// Growable array of plain records, copied by value (no element constructors or destructors run).
/// Operations that can fail return S_OK, E_INVALIDARG or E_OUTOFMEMORY and never throw.
template <typename T> class ZQArray {
    static_assert(std::is_trivially_copyable<T>::value, "ZQArray holds plain records only");

public:
    ZQArray() = default;
    /// Appends every element of other; an element whose growth fails is skipped.
    ZQArray(const ZQArray& other) { AppendAll(other); }
    ~ZQArray() {
        std::free(m_data);
        m_data = nullptr;
        m_size = m_maxSize = 0;
    }
    ZQArray& operator=(const ZQArray& other) {
        if (this == &other)
            return *this;
        std::free(m_data);
        m_data = nullptr;
        m_size = m_maxSize = 0;
        AppendAll(other);
        return *this;
    }

    /// Sets the allocated places, never the number of elements in use; SetSize(0) empties the array.
    HRESULT SetSize(int n) { return SetSizeInternal(n); }
    HRESULT Add(const T& value) {
        const HRESULT hr = SetSizeInternal(m_size + 1);
        if (FAILED(hr))
            return hr;
        m_data[m_size++] = value;
        return S_OK;
    }
    /// E_INVALIDARG unless 0 <= i < size.
    HRESULT SetAt(int i, const T& value) {
        if (i < 0 || i >= m_size)
            return E_INVALIDARG;
        m_data[i] = value;
        return S_OK;
    }
    /// No bounds check.
    T& GetAt(int i) const { return m_data[i]; }
    T& operator[](int i) const { return m_data[i]; }
    /// Index of the first element equal to value (compared as bytes), or -1.
    int IndexOf(const T& value) const { return m_size > 0 ? IndexOf(value, 0, m_size) : -1; }
    /// As above within [start, start + count); -1 for a range outside the elements or count 0.
    int IndexOf(const T& value, int start, int count) const {
        if (start < 0 || start >= m_size || count <= 0 || count > m_size - start)
            return -1;
        for (int i = start; i < start + count; ++i)
            if (std::memcmp(&m_data[i], &value, sizeof(T)) == 0)
                return i;
        return -1;
    }
    bool Contains(const T& value) const { return IndexOf(value) != -1; }
    /// Moves the elements behind i down one place; the allocation is kept. E_INVALIDARG for a bad index.
    HRESULT Remove(int i) {
        if (i < 0 || i >= m_size)
            return E_INVALIDARG;
        std::memmove(&m_data[i], &m_data[i + 1], sizeof(T) * (m_size - i - 1));
        --m_size;
        return S_OK;
    }

    /// Elements in use.
    int GetSize() const { return m_size; }
    /// Places allocated.
    int GetMaxSize() const { return m_maxSize; }
    T* GetData() const { return m_data; }

protected:
    /// The one growth rule: doubling (16 at first), or n itself when that is more.
    HRESULT SetSizeInternal(int n) {
        if (n < 0)
            return E_INVALIDARG;
        if (n == 0) {
            std::free(m_data);
            m_data = nullptr;
            m_maxSize = m_size = 0;
            return S_OK;
        }
        if (m_data && n <= m_maxSize)
            return S_OK;
        int places = m_maxSize == 0 ? 16 : (m_maxSize > INT_MAX / 2 ? INT_MAX : m_maxSize + m_maxSize);
        if (n > places)
            places = n;
        if (static_cast<size_t>(places) > SIZE_MAX / sizeof(T))
            return E_OUTOFMEMORY;
        T* data = static_cast<T*>(std::realloc(m_data, sizeof(T) * static_cast<size_t>(places)));
        if (!data)
            return E_OUTOFMEMORY;
        m_data = data;
        m_maxSize = places;
        return S_OK;
    }

private:
    void AppendAll(const ZQArray& other) {
        for (int i = 0; i < other.m_size; ++i)
            Add(other.m_data[i]);
    }

    T* m_data = nullptr;
    int m_size = 0;
    int m_maxSize = 0;
};

} // namespace ZQ
