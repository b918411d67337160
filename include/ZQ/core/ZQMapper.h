#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQString.h"

namespace ZQ {

/// One entry of a ZQMapper: a place of the trie that is also a member of the
/// insertion-order list (next) and of its collision chain (chain).
class ZQ_API ZQNode {
public:
    ZQNode() = default;
    /// Copies the links and the value as they are, the name by assignment.
    ZQNode(const ZQNode& other) = default;
    ZQNode& operator=(const ZQNode& other) = default;
    ~ZQNode();

    ZQNode* children = nullptr; ///< next trie level (eight nodes) or null
    ZQNode* next = nullptr;     ///< the entry inserted after this one, or null
    ZQNode* chain = nullptr;    ///< the next entry whose key is equal, or null
    ZQString name;              ///< upper-case name; empty for numeric entries
    void* value = nullptr;      ///< the stored pointer; null marks an empty place
};

/// Case-insensitive name (or number) to pointer map. Values are not owned. The first
/// entry under a name wins lookups; later duplicates are kept, counted and iterated.
/// Copies share one node structure (shallow): only one of them may be cleared or destroyed.
/// Not thread-safe, not even for lookups (find writes the lookup key).
class ZQ_API ZQMapper {
public:
    /// Walks entries in insertion order; null is the end.
    class ZQ_API iterator {
    public:
        iterator(ZQNode* node = nullptr) : m_node(node) {}
        ZQNode& operator*() const { return *m_node; }
        ZQNode* operator->() const { return m_node; }
        /// Follows the node's next link.
        iterator& operator++() {
            m_node = m_node->next;
            return *this;
        }
        bool operator==(const iterator& other) const { return m_node == other.m_node; }
        bool operator!=(const iterator& other) const { return m_node != other.m_node; }
        ZQNode* node() const { return m_node; }

    private:
        ZQNode* m_node;
    };

    ZQMapper();
    /// Memberwise: the copy shares the node structure.
    ZQMapper(const ZQMapper& other) = default;
    ZQMapper& operator=(const ZQMapper& other) = default;
    ~ZQMapper();

    /// Adds an entry; upper-cases the caller's name in place. A null value is ignored
    /// (it would be invisible to lookups).
    void insert(ZQString& name, void* value);
    /// Adds an entry under a number; numbers should stay below 2^27 to have places of their own.
    void insert(unsigned int key, void* value);
    /// Value of the first entry with this name (upper-cased in place first), or null.
    void* find(ZQString& name);
    /// As above through the lookup key; null looks up the previous name again. A name longer than the
    /// key holds (2,048 characters or more) finds nothing.
    void* find(const char* name);
    void* find(const wchar_t* name);
    /// As find(const wchar_t*), but the lookup key is left alone: null, or a name longer than a ZQString
    /// holds, finds nothing. Lookups need not copy the name: the fast way for callers such as textures.
    void* find_name(const wchar_t* name) const;
    /// Value in the place of this number, or null; no chain walk.
    void* find_key(unsigned int key);
    iterator find_itr(ZQString& name);
    iterator find_itr(unsigned int key);

    iterator begin() const { return iterator(m_head); }
    iterator end() const { return iterator(); }
    bool empty() const { return m_count == 0; }
    /// Number of entries inserted since the last clear, duplicates included.
    unsigned int size() const { return m_count; }
    /// Releases every node; the values are not touched.
    void clear();

private:
    class Index;
    ZQNode* Place(unsigned int key, bool create) const;
    ZQNode* Lookup(ZQString& name) const;
    ZQNode* LookupUpper(const wchar_t* name, unsigned int length) const;
    void Add(unsigned int key, ZQString* name, void* value);
    ZQNode* NewLevel() const;
    void Remove(ZQNode* level);
    void RemoveCenter(ZQNode* node);

    [[maybe_unused]] unsigned int m_fanOut; ///< kept in the layout; the map does not read it
    unsigned int m_count;
    ZQNode* m_root;
    ZQNode* m_head;
    ZQString m_lookupKey;
    ZQNode* m_tail;   ///< last entry of the insertion-order list, so that adding never walks it
    Index* m_index;   ///< first node of each name and last node of each chain; null: walk the chains
};

} // namespace ZQ
