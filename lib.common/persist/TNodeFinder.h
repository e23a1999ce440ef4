#pragma once

// Library-internal: answers the search of a tagged document that is being
// read without walking long sibling lists. A search walks a group's children
// from a start node for the first one of a name, and over from the first
// child if that finds nothing; reading in writing order takes one step, but
// groups read back by restore functions start again and again from the same
// node, which makes a long list quadratic. A group's children are indexed by
// name the first time a walk in it runs long, and the index gives the node
// that the walk would have found.

#include <cstdint>

class TNodeFinder
{
public:
    TNodeFinder() = default;
    ~TNodeFinder();
    TNodeFinder(TNodeFinder const&) = delete;
    TNodeFinder& operator=(TNodeFinder const&) = delete;

    // The first child of group named name from start on (start 0: none),
    // and if there is none and wrap is set, the first one of all; 0 when
    // there is none. -1 when the index can't tell: the group's list is not
    // in the order of the block, or start is none of its children.
    int Find(unsigned char const* base, unsigned int size, int group, int start, bool wrap, char const* name,
             int length);

private:
    struct TName
    {
        uint32_t hash;
        int first; // the first and last child of that name; -1: free
        int last;
    };
    // Each group has a table of its own, small enough to stay in cache.
    struct TGroup
    {
        int group; // 0: free
        int count;
        int* children; // in list order, rising offsets
        int* nextSame; // the next child of the same name, or -1
        TName* names;
        unsigned int nameMask;
        bool usable;
    };

    TGroup* GroupOf(unsigned char const* base, unsigned int size, int group);
    static void Build(unsigned char const* base, unsigned int size, TGroup& entry);
    static TName* Lookup(unsigned char const* base, TGroup const& entry, uint32_t hash, char const* name, int length);
    static int OrdinalOf(TGroup const& entry, int node);

    TGroup* m_groups = nullptr;
    unsigned int m_groupMask = 0;
    unsigned int m_groupCount = 0;
};
