#include "persist/TNodeNameIndex.h"

#include "math/MemoryAlloc.h"
#include "persist/TTaggedStream.h"

#include <cstring>

namespace {

// A name hash never takes this value: it marks the entry that holds how
// far a group's children have been indexed.
constexpr uint32_t kCursorHash = 0xFFFFFFFFu;
constexpr int kWalkLimit = 64;

uint32_t HashName(char const* name, int length)
{
    uint32_t hash = 2166136261u;
    for (int i = 0; i < length; ++i)
        hash = (hash ^ static_cast<unsigned char>(name[i])) * 16777619u;
    return hash == kCursorHash ? 0 : hash;
}

unsigned int Slot(int group, uint32_t hash)
{
    return (hash ^ (static_cast<uint32_t>(group) * 0x9E3779B1u)) * 0x85EBCA6Bu;
}

int IntAt(unsigned char const* base, unsigned int offset)
{
    int value;
    std::memcpy(&value, base + offset, 4);
    return value;
}

// The name of a node as a search reads it, or -1 when it does not lie
// within the document.
int NameLength(unsigned char const* base, unsigned int size, unsigned int node, unsigned int* nameAt)
{
    *nameAt = node + base[node + TTaggedStream::kNodeNameOffset];
    if (*nameAt + 4 > size)
        return -1;
    void const* zero = std::memchr(base + *nameAt, 0, size - *nameAt);
    return zero ? static_cast<int>(static_cast<unsigned char const*>(zero) - (base + *nameAt)) : -1;
}

bool SameName(unsigned char const* base, int node, char const* name, int length)
{
    unsigned int const nameAt = static_cast<unsigned>(node) + base[node + TTaggedStream::kNodeNameOffset];
    return std::memcmp(base + nameAt, name, static_cast<size_t>(length)) == 0 && base[nameAt + length] == 0;
}

} // namespace

TNodeNameIndex::~TNodeNameIndex()
{
    free_ex(m_entries);
}

void TNodeNameIndex::Grow()
{
    TEntry* const old = m_entries;
    unsigned int const oldCapacity = old ? m_mask + 1 : 0;
    unsigned int const capacity = oldCapacity ? oldCapacity * 2 : 256;
    m_entries = static_cast<TEntry*>(malloc_ex(static_cast<int>(capacity * sizeof(TEntry))));
    std::memset(m_entries, 0, capacity * sizeof(TEntry));
    m_mask = capacity - 1;
    m_used = 0;
    for (unsigned int i = 0; i < oldCapacity; ++i)
        if (old[i].group != 0)
            Insert(old[i].group, old[i].hash, old[i].node);
    free_ex(old);
}

void TNodeNameIndex::Insert(int group, uint32_t hash, int node)
{
    if (!m_entries || (m_used + 1) * 2 > m_mask + 1)
        Grow();
    unsigned int slot = Slot(group, hash) & m_mask;
    while (m_entries[slot].group != 0)
        slot = (slot + 1) & m_mask;
    m_entries[slot] = {group, hash, node};
    ++m_used;
}

TNodeNameIndex::TEntry* TNodeNameIndex::Lookup(unsigned char const* base, int group, uint32_t hash, char const* name,
                                               int length)
{
    if (!m_entries)
        return nullptr;
    for (unsigned int slot = Slot(group, hash) & m_mask; m_entries[slot].group != 0; slot = (slot + 1) & m_mask) {
        TEntry& entry = m_entries[slot];
        if (entry.group == group && entry.hash == hash && (hash == kCursorHash || SameName(base, entry.node, name, length)))
            return &entry;
    }
    return nullptr;
}

void TNodeNameIndex::IndexNewChildren(unsigned char const* base, unsigned int size, int group)
{
    TEntry* cursor = Lookup(base, group, kCursorHash, nullptr, 0);
    int const scanned = cursor ? cursor->node : 0;
    int node = scanned ? IntAt(base, static_cast<unsigned>(scanned) + TTaggedStream::kNodeNext)
                       : IntAt(base, static_cast<unsigned>(group) + TTaggedStream::kGroupFirstChild);
    int last = scanned;
    for (unsigned int steps = size / 8 + 1; node > 0 && steps > 0; --steps) {
        auto const at = static_cast<unsigned int>(node);
        if (at % 4 != 0 || at + 8 > size)
            break;
        unsigned int nameAt;
        int const length = NameLength(base, size, at, &nameAt);
        if (length >= 0) {
            auto const* name = reinterpret_cast<char const*>(base + nameAt);
            uint32_t const hash = HashName(name, length);
            if (!Lookup(base, group, hash, name, length))
                Insert(group, hash, node);
        }
        last = node;
        node = IntAt(base, at + TTaggedStream::kNodeNext);
    }
    if (last == scanned)
        return;
    cursor = Lookup(base, group, kCursorHash, nullptr, 0);
    if (cursor)
        cursor->node = last;
    else
        Insert(group, kCursorHash, last);
}

int TNodeNameIndex::Find(unsigned char const* base, unsigned int size, int group, char const* name, int length)
{
    if (group <= 0 || static_cast<unsigned>(group) + TTaggedStream::kGroupNameOffset > size)
        return 0;
    if (!Lookup(base, group, kCursorHash, nullptr, 0)) {
        // Short lists are walked: hashing every child costs more than a few
        // walks. A group whose list grows long is indexed from then on.
        int node = IntAt(base, static_cast<unsigned>(group) + TTaggedStream::kGroupFirstChild);
        for (int visited = 0; node > 0; ++visited) {
            auto const at = static_cast<unsigned int>(node);
            if (at % 4 != 0 || at + 8 > size)
                return 0;
            if (visited == kWalkLimit)
                break;
            unsigned int nameAt;
            if (NameLength(base, size, at, &nameAt) == length
                && std::memcmp(base + nameAt, name, static_cast<size_t>(length)) == 0)
                return node;
            node = IntAt(base, at + TTaggedStream::kNodeNext);
        }
        if (node <= 0)
            return 0;
    }
    IndexNewChildren(base, size, group);
    TEntry const* entry = Lookup(base, group, HashName(name, length), name, length);
    return entry ? entry->node : 0;
}
