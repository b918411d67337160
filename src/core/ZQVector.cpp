#include "ZQ/core/ZQVector.h"
#include "src/formats/ZQListCeiling.h"

#include <cstdlib>
#include <cstring>

namespace ZQ {

namespace {
const unsigned int kInitialPlaces = 32;
const unsigned int kMaxPlaces = formats::kListCeiling;
} // namespace

ZQVector::ZQVector() {
    Allocate(kInitialPlaces);
}

ZQVector::ZQVector(const ZQVector& other) {
    if (!Allocate(other.m_capacity ? other.m_capacity : kInitialPlaces))
        return;
    m_count = other.m_count < m_capacity ? other.m_count : m_capacity;
    std::memcpy(m_items, other.m_items, sizeof(void*) * m_count);
    m_end = m_items + m_count;
}

ZQVector& ZQVector::operator=(const ZQVector& other) {
    if (this == &other)
        return *this;
    if (m_capacity < other.m_count && !resize(other.m_count))
        return *this;
    m_count = other.m_count;
    std::memset(m_items, 0, sizeof(void*) * m_places);
    std::memset(m_scratch, 0, sizeof(void*) * m_places);
    std::memcpy(m_items, other.m_items, sizeof(void*) * m_count);
    m_end = m_items + m_count;
    return *this;
}

ZQVector::~ZQVector() {
    std::free(m_items);
    m_items = m_scratch = m_end = nullptr;
}

// An empty vector of n places; emptied even when they cannot be had.
bool ZQVector::Allocate(unsigned int n) {
    clear();
    return resize(n);
}

// The capacity grows by one place at a time, but the block under it grows by half again, so that
// filling a long list is not quadratic. Items and scratch share one zeroed block of 2 x places;
// every item place from count on reads null.
bool ZQVector::resize(unsigned int n) {
    if (n == 0 || n > kMaxPlaces)
        return false;
    if (n <= m_places) {
        if (n < m_count) {
            std::memset(m_items + n, 0, sizeof(void*) * (m_count - n));
            m_count = n;
        }
        m_capacity = n;
        m_end = m_items + m_count;
        return true;
    }
    unsigned int places = m_places + m_places / 2;
    places = places < n ? n : places > kMaxPlaces ? kMaxPlaces : places;
    void** block = static_cast<void**>(std::calloc(static_cast<size_t>(places) * 2, sizeof(void*)));
    if (!block)
        return false;
    if (m_items)
        std::memcpy(block, m_items, sizeof(void*) * m_count);
    std::free(m_items);
    m_items = block;
    m_scratch = block + places;
    m_places = places;
    m_capacity = n;
    m_end = m_items + m_count;
    return true;
}

void ZQVector::push_back(void* value) {
    // A full vector (after insert or a refused growth) grows first instead of writing past its end.
    if (m_count >= m_capacity && !resize(m_count + 1))
        return;
    *m_end++ = value;
    ++m_count;
    if (m_count == m_capacity)
        resize(m_capacity + 1);
}

void ZQVector::insert(void* value, unsigned int n) {
    if (n == 0 || n > kMaxPlaces - m_count || !resize(m_count + n))
        return;
    char* bytes = static_cast<char*>(value);
    for (unsigned int i = 0; i < n; ++i) {
        *m_end++ = bytes + i;
        ++m_count;
    }
}

void ZQVector::erase(void* value) {
    for (unsigned int i = 0; i < m_count; ++i) {
        if (m_items[i] == value) {
            m_items[i] = nullptr;
            return;
        }
    }
}

void ZQVector::erase(iterator& it) {
    // end() and iterators of another vector stand on no entry of this one.
    void** place = it.m_place + it.m_index;
    if (it.m_index < it.m_count && place >= m_items && place < m_items + m_count)
        *place = nullptr;
}

void ZQVector::swap() {
    if (m_count == 0)
        return;
    std::memset(m_scratch, 0, sizeof(void*) * m_count);
    unsigned int kept = 0;
    for (unsigned int i = 0; i < m_count; ++i)
        if (m_items[i])
            m_scratch[kept++] = m_items[i];
    std::memset(m_items, 0, sizeof(void*) * m_capacity);
    std::memcpy(m_items, m_scratch, sizeof(void*) * m_count);
    m_count = kept;
    m_end = m_items + kept;
}

void ZQVector::clear() {
    if (m_items)
        std::memset(m_items, 0, sizeof(void*) * m_count);
    m_end = m_items;
    m_count = 0;
}

void ZQVector::reserve(unsigned int n) {
    // No places at all would leave nowhere to push: reserve(0) empties and keeps the places.
    if (n == 0 || !Allocate(n))
        clear();
}

} // namespace ZQ
