#include "persist/TNodeFinder.h"

#include "math/MemoryAlloc.h"
#include "persist/TTaggedStream.h"

#include <cstring>

namespace {

int IntAt(unsigned char const* base, unsigned int offset)
{
    int value;
    std::memcpy(&value, base + offset, 4);
    return value;
}

uint32_t HashName(char const* name, int length)
{
    uint32_t hash = 2166136261u;
    for (int i = 0; i < length; ++i)
        hash = (hash ^ static_cast<unsigned char>(name[i])) * 16777619u;
    return hash;
}

unsigned int Mix(uint32_t value)
{
    value ^= value >> 16;
    value *= 0x85EBCA6Bu;
    value ^= value >> 13;
    return value;
}

// The name a search sees at a node, or -1 when no search can match it: the
// name must lie in the block with its zero, and a name shorter than 4 bytes
// must be padded with zeros, as the search compares the first 4 bytes as
// one word.
int SearchableName(unsigned char const* base, unsigned int size, unsigned int node, unsigned int* nameAt)
{
    *nameAt = node + base[node + TTaggedStream::kNodeNameOffset];
    if (*nameAt + 4 > size)
        return -1;
    void const* zero = std::memchr(base + *nameAt, 0, size - *nameAt);
    if (!zero)
        return -1;
    int const length = static_cast<int>(static_cast<unsigned char const*>(zero) - (base + *nameAt));
    for (int i = length; i < 4; ++i)
        if (base[*nameAt + static_cast<unsigned>(i)] != 0)
            return -1;
    return length;
}

template <class T>
T* NewTable(unsigned int capacity)
{
    auto* table = static_cast<T*>(malloc_ex(static_cast<int>(capacity * sizeof(T))));
    std::memset(static_cast<void*>(table), 0, capacity * sizeof(T));
    return table;
}

} // namespace

TNodeFinder::~TNodeFinder()
{
    for (unsigned int i = 0; m_groups && i <= m_groupMask; ++i) {
        free_ex(m_groups[i].children);
        free_ex(m_groups[i].nextSame);
        free_ex(m_groups[i].names);
    }
    free_ex(m_groups);
}

TNodeFinder::TGroup* TNodeFinder::GroupOf(unsigned char const* base, unsigned int size, int group)
{
    if (!m_groups || (m_groupCount + 1) * 2 > m_groupMask + 1) {
        TGroup* const old = m_groups;
        unsigned int const oldCapacity = old ? m_groupMask + 1 : 0;
        unsigned int const capacity = oldCapacity ? oldCapacity * 2 : 16;
        m_groups = NewTable<TGroup>(capacity);
        m_groupMask = capacity - 1;
        for (unsigned int i = 0; i < oldCapacity; ++i) {
            if (old[i].group == 0)
                continue;
            unsigned int slot = Mix(static_cast<uint32_t>(old[i].group)) & m_groupMask;
            while (m_groups[slot].group != 0)
                slot = (slot + 1) & m_groupMask;
            m_groups[slot] = old[i];
        }
        free_ex(old);
    }
    unsigned int slot = Mix(static_cast<uint32_t>(group)) & m_groupMask;
    for (; m_groups[slot].group != 0; slot = (slot + 1) & m_groupMask)
        if (m_groups[slot].group == group)
            return &m_groups[slot];
    TGroup& entry = m_groups[slot];
    entry.group = group;
    ++m_groupCount;
    Build(base, size, entry);
    return &entry;
}

// The children as a search walks them: links that leave the block or miss
// the 4-byte grid end the list.
void TNodeFinder::Build(unsigned char const* base, unsigned int size, TGroup& entry)
{
    int count = 0;
    int node = IntAt(base, static_cast<unsigned>(entry.group) + TTaggedStream::kGroupFirstChild);
    bool rising = true;
    for (unsigned int steps = size / 8 + 1; node > 0 && steps > 0; --steps) {
        auto const at = static_cast<unsigned int>(node);
        if (at % 4 != 0 || at + 8 > size)
            break;
        ++count;
        int const next = IntAt(base, at + TTaggedStream::kNodeNext);
        rising = rising && (next <= 0 || next > node);
        node = next;
    }
    entry.count = count;
    entry.usable = rising && count > 0;
    if (!entry.usable)
        return;
    unsigned int capacity = 8;
    while (capacity < static_cast<unsigned>(count) * 2)
        capacity *= 2;
    entry.nameMask = capacity - 1;
    entry.names = static_cast<TName*>(malloc_ex(static_cast<int>(capacity * sizeof(TName))));
    std::memset(static_cast<void*>(entry.names), 0xFF, capacity * sizeof(TName));
    entry.children = static_cast<int*>(malloc_ex(count * static_cast<int>(sizeof(int))));
    entry.nextSame = static_cast<int*>(malloc_ex(count * static_cast<int>(sizeof(int))));
    node = IntAt(base, static_cast<unsigned>(entry.group) + TTaggedStream::kGroupFirstChild);
    for (int ordinal = 0; ordinal < count; ++ordinal) {
        entry.children[ordinal] = node;
        entry.nextSame[ordinal] = -1;
        unsigned int nameAt;
        int const length = SearchableName(base, size, static_cast<unsigned>(node), &nameAt);
        if (length >= 0) {
            auto const* name = reinterpret_cast<char const*>(base + nameAt);
            uint32_t const hash = HashName(name, length);
            if (TName* same = Lookup(base, entry, hash, name, length)) {
                entry.nextSame[same->last] = ordinal;
                same->last = ordinal;
            } else {
                unsigned int slot = Mix(hash) & entry.nameMask;
                while (entry.names[slot].first >= 0)
                    slot = (slot + 1) & entry.nameMask;
                entry.names[slot] = {hash, ordinal, ordinal};
            }
        }
        node = IntAt(base, static_cast<unsigned>(node) + TTaggedStream::kNodeNext);
    }
}

TNodeFinder::TName* TNodeFinder::Lookup(unsigned char const* base, TGroup const& entry, uint32_t hash,
                                        char const* name, int length)
{
    for (unsigned int slot = Mix(hash) & entry.nameMask; entry.names[slot].first >= 0;
         slot = (slot + 1) & entry.nameMask) {
        TName& candidate = entry.names[slot];
        if (candidate.hash != hash)
            continue;
        auto const node = static_cast<unsigned int>(entry.children[candidate.first]);
        unsigned char const* known = base + node + base[node + TTaggedStream::kNodeNameOffset];
        if (std::memcmp(known, name, static_cast<size_t>(length)) == 0 && known[length] == 0)
            return &candidate;
    }
    return nullptr;
}

int TNodeFinder::OrdinalOf(TGroup const& entry, int node)
{
    int low = 0;
    int high = entry.count - 1;
    while (low <= high) {
        int const middle = (low + high) / 2;
        if (entry.children[middle] == node)
            return middle;
        if (entry.children[middle] < node)
            low = middle + 1;
        else
            high = middle - 1;
    }
    return -1;
}

int TNodeFinder::Find(unsigned char const* base, unsigned int size, int group, int start, bool wrap, char const* name,
                      int length)
{
    TGroup const* entry = GroupOf(base, size, group);
    if (!entry->usable)
        return -1;
    int const from = start == 0 ? entry->count : OrdinalOf(*entry, start);
    if (from < 0)
        return -1;
    TName const* found = Lookup(base, *entry, HashName(name, length), name, length);
    if (!found)
        return 0;
    int ordinal = found->first;
    while (ordinal >= 0 && ordinal < from)
        ordinal = entry->nextSame[ordinal];
    if (ordinal >= 0)
        return entry->children[ordinal];
    return wrap ? entry->children[found->first] : 0;
}
