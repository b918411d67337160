#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQMapper.h"

#include <cwchar>
#include <new>

namespace ZQ {

namespace {
const unsigned int kFanOut = 8;
} // namespace

ZQNode::~ZQNode() {
    children = next = chain = nullptr;
    value = nullptr;
}

ZQMapper::ZQMapper() : m_fanOut(kFanOut), m_count(0), m_root(nullptr), m_head(nullptr), m_tail(nullptr) {}

ZQMapper::~ZQMapper() {
    clear();
}

ZQNode* ZQMapper::NewLevel() const {
    return new (std::nothrow) ZQNode[kFanOut];
}

// The path spells the key's octal digits from the least significant; the place is the most
// significant one. Keys of 2^27 and more simply go deeper instead of indexing past a level.
// A lookup that meets a missing level stays on the current one but still drops the digit.
ZQNode* ZQMapper::Place(unsigned int key, bool create) {
    ZQNode* level = m_root;
    while (key >= kFanOut) {
        ZQNode& branch = level[key % kFanOut];
        if (!branch.children && create && !(branch.children = NewLevel()))
            return nullptr;
        if (branch.children)
            level = branch.children;
        key /= kFanOut;
    }
    return &level[key];
}

void ZQMapper::Add(unsigned int key, ZQString* name, void* value) {
    // A null value would leave a place that lookups skip but the order list already holds.
    if (!value)
        return;
    if (!m_root && !(m_root = NewLevel()))
        return;
    ZQNode* place = Place(key, true);
    if (!place)
        return;
    ZQNode* entry = place;
    if (place->value) {
        ZQNode* last = place;
        while (last->chain)
            last = last->chain;
        entry = new (std::nothrow) ZQNode;
        if (!entry)
            return;
        last->chain = entry;
    }
    entry->value = value;
    if (name)
        entry->name = *name;
    if (m_head)
        m_tail->next = entry;
    else
        m_head = entry;
    m_tail = entry;
    ++m_count;
}

void ZQMapper::insert(ZQString& name, void* value) {
    name.upper();
    Add(name.key(), &name, value);
}

void ZQMapper::insert(unsigned int key, void* value) {
    Add(key, nullptr, value);
}

ZQNode* ZQMapper::Lookup(ZQString& name) {
    name.upper();
    if (!m_root)
        return nullptr;
    ZQNode* node = Place(name.key(), false);
    if (!node->value)
        return nullptr;
    for (; node; node = node->chain) {
        const wchar_t* text = node->name;
        if (!text)
            continue;
        if (name.empty() ? node->name.size() == 0
                         : node->name.size() == name.size() && std::wcsncmp(text, name, name.size()) == 0)
            return node;
    }
    return nullptr;
}

void* ZQMapper::find(ZQString& name) {
    ZQNode* node = Lookup(name);
    return node ? node->value : nullptr;
}

void* ZQMapper::find(const char* name) {
    m_lookupKey = name;
    return find(m_lookupKey);
}

void* ZQMapper::find(const wchar_t* name) {
    m_lookupKey = name;
    return find(m_lookupKey);
}

void* ZQMapper::find_key(unsigned int key) {
    return m_root ? Place(key, false)->value : nullptr;
}

ZQMapper::iterator ZQMapper::find_itr(ZQString& name) {
    return iterator(Lookup(name));
}

ZQMapper::iterator ZQMapper::find_itr(unsigned int key) {
    if (!m_root)
        return end();
    ZQNode* place = Place(key, false);
    return iterator(place->value ? place : nullptr);
}

void ZQMapper::clear() {
    if (m_root)
        Remove(m_root);
    m_count = 0;
    m_root = m_head = m_tail = nullptr;
}

void ZQMapper::Remove(ZQNode* level) {
    for (unsigned int i = 0; i < kFanOut; ++i) {
        if (level[i].children)
            Remove(level[i].children);
        if (level[i].chain)
            RemoveCenter(level[i].chain);
    }
    delete[] level;
}

// Chains can be long (many names with one sum); freeing them front to back needs no recursion.
void ZQMapper::RemoveCenter(ZQNode* node) {
    while (node) {
        ZQNode* following = node->chain;
        delete node;
        node = following;
    }
}

} // namespace ZQ
