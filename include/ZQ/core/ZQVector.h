#pragma once
#include "ZQ/core/ZQConfig.h"

namespace ZQ {

/// List of untyped pointers with deferred removal: erase nulls a place, swap squeezes the nulls out,
/// so iteration in between must skip nulls. Grows by one place whenever it fills up; holds at most
/// 10,240 places (pushes past that are ignored). The values are not owned.
class ZQ_API ZQVector {
public:
    /// A place of the vector; ++ moves to the next place.
    class ZQ_API iterator {
    public:
        iterator(void** place = nullptr, unsigned int count = 0, unsigned int index = 0)
            : m_place(place), m_count(count), m_index(index) {}
        void*& operator*() const { return m_place[m_index]; }
        iterator& operator++() {
            ++m_place;
            return *this;
        }
        bool operator==(const iterator& other) const { return m_place + m_index == other.m_place + other.m_index; }
        bool operator!=(const iterator& other) const { return !(*this == other); }

    private:
        friend class ZQVector;
        void** m_place;
        unsigned int m_count;
        unsigned int m_index;
    };

    /// 32 places, empty.
    ZQVector();
    ZQVector(const ZQVector& other);
    ZQVector& operator=(const ZQVector& other);
    ~ZQVector();

    /// Appends; when the vector is then full it grows by exactly one place.
    void push_back(void* value);
    /// Appends n values: value, value + 1, ..., value + n - 1 (counted in bytes).
    void insert(void* value, unsigned int n);
    /// Nulls the first place holding value; count and order are unchanged.
    void erase(void* value);
    /// Nulls the place the iterator stands on.
    void erase(iterator& it);
    /// Squeezes the nulls out, keeping the order of the others.
    void swap();
    /// Empties the vector; capacity is kept.
    void clear();
    /// Empties the vector (deliberately) and gives it n places (its places stay when n is 0 or past the ceiling).
    void reserve(unsigned int n);

    /// Entry i, null once erased; no bounds check.
    void* operator[](int i) const { return m_items[i]; }
    iterator begin() const { return iterator(m_items, m_count, 0); }
    iterator end() const { return iterator(m_end, m_count, 0); }
    /// Places in use, erased ones included until swap.
    unsigned int size() const { return m_count; }
    bool empty() const { return m_count == 0; }
    unsigned int capacity() const { return m_capacity; }

private:
    bool resize(unsigned int n);
    bool Allocate(unsigned int n);

    unsigned int m_capacity = 0;
    unsigned int m_count = 0;
    void** m_end = nullptr;
    void** m_items = nullptr;
    void** m_scratch = nullptr;
    unsigned int m_places = 0; ///< allocated for items (and again for scratch); at least the capacity
};

} // namespace ZQ
