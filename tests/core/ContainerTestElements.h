#pragma once

#include "core/THashableElement.h"

#include <vector>

// Elements for the container tests. `key` orders and hashes, `tag` tells
// equal keys apart, and `deaths` counts deletions.
class Item : public TListElement
{
public:
    explicit Item(int key, int tag = 0, int* deaths = nullptr) : key(key), tag(tag), deaths(deaths) {}

    // Mode 1 orders backwards.
    int Compare(TObject const& other, long long mode) const override
    {
        int const order = key - static_cast<Item const&>(other).key;
        return mode == 1 ? -order : order;
    }
    TObject* CreateClone(void* context) const override
    {
        auto* clone = new Item(key, tag, deaths);
        if (context)
            clone->tag = *static_cast<int*>(context);
        return clone;
    }

    // Public, so that search keys can live on the stack.
    ~Item() override
    {
        if (deaths)
            ++*deaths;
    }

    int key;
    int tag;
    int* deaths;
};

class HashItem : public THashableElement
{
public:
    explicit HashItem(int key, int tag = 0, int* deaths = nullptr) : key(key), tag(tag), deaths(deaths) {}

    unsigned int GetHashedValue() const override { return static_cast<unsigned>(key); }
    bool IsEqual(TObject const& other, long long) const override { return key == static_cast<HashItem const&>(other).key; }
    int Compare(TObject const& other, long long) const override { return key - static_cast<HashItem const&>(other).key; }
    TObject* CreateClone(void*) const override { return new HashItem(key, tag, deaths); }

    ~HashItem() override
    {
        if (deaths)
            ++*deaths;
    }

    int key;
    int tag;
    int* deaths;
};

// Keys (or tags) front to back, read through the public links.
template <class List, class T = Item>
std::vector<int> Keys(List const& list)
{
    std::vector<int> keys;
    for (TListElement const* e = list.GetFirst(); e; e = e->GetNext())
        keys.push_back(static_cast<T const*>(e)->key);
    return keys;
}

template <class List, class T = Item>
std::vector<int> Tags(List const& list)
{
    std::vector<int> tags;
    for (TListElement const* e = list.GetFirst(); e; e = e->GetNext())
        tags.push_back(static_cast<T const*>(e)->tag);
    return tags;
}

// True when prev mirrors next, the ends are right and the count matches.
template <class List>
bool LinksAreConsistent(List const& list)
{
    int count = 0;
    TListElement const* prev = nullptr;
    for (TListElement const* e = list.GetFirst(); e; e = e->GetNext()) {
        if (e->GetPrev() != prev)
            return false;
        prev = e;
        ++count;
    }
    return prev == list.GetLast() && count == list.Count();
}
