#pragma once

// Library-internal: finds a child of a group by name in a document that is
// being written, without walking all siblings on every call. A group's
// children are hashed once, when a search first comes to them: nodes are
// only appended and their names never change, so the first child of a name
// stays the first. (A value of 0 bytes breaks that: its name offset points
// behind its own name; the writer walks instead once one exists.)

#include <cstdint>

class TNodeNameIndex
{
public:
    TNodeNameIndex() = default;
    ~TNodeNameIndex();
    TNodeNameIndex(TNodeNameIndex const&) = delete;
    TNodeNameIndex& operator=(TNodeNameIndex const&) = delete;

    // The first child of group whose name (at the node's name offset)
    // equals name, or 0. base and size: the document written so far.
    int Find(unsigned char const* base, unsigned int size, int group, char const* name, int length);

private:
    struct TEntry
    {
        int group; // 0: free
        uint32_t hash;
        int node;
    };

    void IndexNewChildren(unsigned char const* base, unsigned int size, int group);
    TEntry* Lookup(unsigned char const* base, int group, uint32_t hash, char const* name, int length);
    void Insert(int group, uint32_t hash, int node);
    void Grow();

    TEntry* m_entries = nullptr;
    unsigned int m_mask = 0; // capacity - 1, capacity a power of 2
    unsigned int m_used = 0;
};
