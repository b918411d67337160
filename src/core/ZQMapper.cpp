#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQMapper.h"

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <new>

namespace ZQ {

namespace {
const unsigned int kFanOut = 8;
// The longest text a ZQString holds; a longer name cannot be a key.
const size_t kLongestName = 2047;

// The sum of code units that places a name is shared by every anagram and by most names of one
// length and alphabet; this hash tells them apart.
uint32_t NameHash(const wchar_t* text, unsigned int length) {
    uint32_t hash = 2166136261u;
    for (unsigned int i = 0; i < length; ++i)
        hash = (hash ^ static_cast<uint16_t>(text[i])) * 16777619u;
    return hash;
}

unsigned int KeyOf(const wchar_t* text, unsigned int length) {
    unsigned int sum = 0;
    for (unsigned int i = 0; i < length; ++i)
        sum += static_cast<unsigned short>(text[i]);
    return sum;
}

bool SameName(const ZQNode& node, const wchar_t* text, unsigned int length) {
    const wchar_t* name = node.name;
    return name && node.name.size() == length && std::wmemcmp(name, text, length) == 0;
}
} // namespace

// Beside the trie, so that neither insertion nor lookup walks a long chain: the first node of every
// name (the one a lookup returns) and the last node of every chain (where an insertion appends).
// Open addressing with linear probing, grown at half load. The trie, the chains and the order list stay
// exactly as they are; without an index (it could not be allocated) the chains are walked instead.
class ZQMapper::Index {
public:
    ~Index() {
        delete[] m_names.slots;
        delete[] m_ends.slots;
    }

    ZQNode* FirstNamed(const wchar_t* text, unsigned int length, uint32_t hash) const {
        return m_names.Find(hash, [&](const Slot& slot) { return SameName(*slot.node, text, length); });
    }
    bool AddNamed(ZQNode* node, uint32_t hash) {
        const wchar_t* text = node->name;
        const unsigned int length = node->name.size();
        return m_names.Add(hash, node, [&](const Slot& slot) { return SameName(*slot.node, text, length); });
    }
    ZQNode* ChainEnd(unsigned int key) const {
        return m_ends.Find(key, [](const Slot&) { return true; });
    }
    bool SetChainEnd(unsigned int key, ZQNode* node) {
        return m_ends.Add(key, node, [](const Slot&) { return true; }, true);
    }

private:
    struct Slot {
        uint32_t hash;
        ZQNode* node; ///< null: free
    };
    struct Table {
        Slot* slots = nullptr;
        size_t size = 0; // a power of two
        size_t used = 0;

        template <typename Match> Slot* Probe(uint32_t hash, Match match) const {
            for (size_t i = hash * 2654435769u & (size - 1);; i = (i + 1) & (size - 1))
                if (!slots[i].node || (slots[i].hash == hash && match(slots[i])))
                    return &slots[i];
        }
        template <typename Match> ZQNode* Find(uint32_t hash, Match match) const {
            return size ? Probe(hash, match)->node : nullptr;
        }
        // Keeps the entry already there unless replace; false when out of memory.
        template <typename Match> bool Add(uint32_t hash, ZQNode* node, Match match, bool replace = false) {
            if ((used + 1) * 2 > size && !Grow())
                return false;
            Slot* slot = Probe(hash, match);
            if (!slot->node)
                ++used;
            else if (!replace)
                return true;
            *slot = Slot{hash, node};
            return true;
        }
        bool Grow() {
            const size_t bigger = size ? size * 2 : 64;
            Slot* fresh = new (std::nothrow) Slot[bigger]();
            if (!fresh)
                return false;
            Slot* old = slots;
            const size_t oldSize = size;
            slots = fresh;
            size = bigger;
            // Entries of one table never compare equal, so each simply takes the first free slot.
            for (size_t i = 0; i < oldSize; ++i)
                if (old[i].node)
                    *Probe(old[i].hash, [](const Slot&) { return false; }) = old[i];
            delete[] old;
            return true;
        }
    };

    Table m_names;
    Table m_ends;
};

ZQNode::~ZQNode() {
    children = next = chain = nullptr;
    value = nullptr;
}

ZQMapper::ZQMapper()
    : m_fanOut(kFanOut), m_count(0), m_root(nullptr), m_head(nullptr), m_tail(nullptr), m_index(nullptr) {}

ZQMapper::~ZQMapper() {
    clear();
}

ZQNode* ZQMapper::NewLevel() const {
    return new (std::nothrow) ZQNode[kFanOut];
}

// The path spells the key's octal digits from the least significant; the place is the most
// significant one. Keys of 2^27 and more simply go deeper instead of indexing past a level.
// A lookup that meets a missing level stays on the current one but still drops the digit.
ZQNode* ZQMapper::Place(unsigned int key, bool create) const {
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
    if (!m_root) {
        if (!(m_root = NewLevel()))
            return;
        m_index = new (std::nothrow) Index;
    }
    ZQNode* place = Place(key, true);
    if (!place)
        return;
    ZQNode* entry = place;
    if (place->value) {
        ZQNode* last = m_index ? m_index->ChainEnd(key) : nullptr;
        if (!last)
            last = place;
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
    if (m_index) {
        const bool indexed =
            (entry == place || m_index->SetChainEnd(key, entry)) &&
            (entry->name.empty() || m_index->AddNamed(entry, NameHash(entry->name, entry->name.size())));
        if (!indexed) {
            delete m_index;
            m_index = nullptr;
        }
    }
}

void ZQMapper::insert(ZQString& name, void* value) {
    name.upper();
    Add(name.key(), &name, value);
}

void ZQMapper::insert(unsigned int key, void* value) {
    Add(key, nullptr, value);
}

ZQNode* ZQMapper::Lookup(ZQString& name) const {
    name.upper();
    return LookupUpper(name, name.size());
}

ZQNode* ZQMapper::LookupUpper(const wchar_t* name, unsigned int length) const {
    if (!m_root)
        return nullptr;
    ZQNode* node = Place(KeyOf(name, length), false);
    if (!node->value)
        return nullptr;
    // The empty name (key 0) also matches numeric entries, which the index does not hold.
    if (m_index && length > 0)
        return m_index->FirstNamed(name, length, NameHash(name, length));
    for (; node; node = node->chain) {
        if (!static_cast<const wchar_t*>(node->name))
            continue;
        if (length == 0 ? node->name.size() == 0 : SameName(*node, name, length))
            return node;
    }
    return nullptr;
}

void* ZQMapper::find(ZQString& name) {
    ZQNode* node = Lookup(name);
    return node ? node->value : nullptr;
}

// A name the lookup key cannot hold would leave the previous name in it and find that one.
void* ZQMapper::find(const char* name) {
    if (name && strnlen(name, kLongestName + 1) > kLongestName)
        return nullptr;
    m_lookupKey = name;
    return find(m_lookupKey);
}

void* ZQMapper::find(const wchar_t* name) {
    if (name && wcsnlen(name, kLongestName + 1) > kLongestName)
        return nullptr;
    m_lookupKey = name;
    return find(m_lookupKey);
}

void* ZQMapper::find_name(const wchar_t* name) const {
    if (!name)
        return nullptr;
    const size_t length = wcsnlen(name, kLongestName + 1);
    if (length > kLongestName)
        return nullptr;
    // Upper-cased by the same rule as the stored names; ASCII, the usual case, without the runtime's call.
    wchar_t upper[kLongestName + 1];
    bool ascii = true;
    for (size_t i = 0; i < length; ++i) {
        const wchar_t c = name[i];
        ascii = ascii && c < 0x80;
        upper[i] = c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - (L'a' - L'A')) : c;
    }
    upper[length] = 0;
    if (!ascii)
        _wcsupr(upper);
    ZQNode* node = LookupUpper(upper, static_cast<unsigned int>(length));
    return node ? node->value : nullptr;
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
    delete m_index;
    m_count = 0;
    m_root = m_head = m_tail = nullptr;
    m_index = nullptr;
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
