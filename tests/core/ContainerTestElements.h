#pragma once

#include "core/THashableElement.h"

#include <gtest/gtest.h>

#include <vector>

// Elements for the container tests. `key` orders and hashes, `tag` tells
// equal keys apart, and `deaths` counts deletions.
template <class Base>
class Keyed : public Base
{
public:
    explicit Keyed(int key, int tag = 0, int* deaths = nullptr) : key(key), tag(tag), deaths(deaths) {}
    // Public, so that search keys can live on the stack.
    ~Keyed() override
    {
        if (deaths)
            ++*deaths;
    }

    int key;
    int tag;
    int* deaths;
};

class Item : public Keyed<TListElement>
{
public:
    using Keyed::Keyed;
    // Mode 1 orders backwards.
    int Compare(TObject const& other, long long mode) const override
    {
        int const order = key - static_cast<Item const&>(other).key;
        return mode == 1 ? -order : order;
    }
    TObject* CreateClone(void* context) const override
    {
        return new Item(key, context ? *static_cast<int*>(context) : tag, deaths);
    }
};

class HashItem : public Keyed<THashableElement>
{
public:
    using Keyed::Keyed;
    unsigned int GetHashedValue() const override { return static_cast<unsigned>(key); }
    bool IsEqual(TObject const& other, long long) const override { return key == static_cast<HashItem const&>(other).key; }
    int Compare(TObject const& other, long long) const override { return key - static_cast<HashItem const&>(other).key; }
    TObject* CreateClone(void*) const override { return new HashItem(key, tag, deaths); }
};

// Keys (or tags) front to back, read through the public links.
template <class List, class T = Item>
std::vector<int> Keys(List const& list, bool tags = false)
{
    std::vector<int> keys;
    for (TListElement const* e = list.GetFirst(); e; e = e->GetNext())
        keys.push_back(tags ? static_cast<T const*>(e)->tag : static_cast<T const*>(e)->key);
    return keys;
}

template <class List, class T = Item>
std::vector<int> Tags(List const& list)
{
    return Keys<List, T>(list, true);
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

// The keys front to back, with the links checked on the way.
template <class List, class T = Item>
::testing::AssertionResult HasKeys(List const& list, std::vector<int> const& keys)
{
    if (!LinksAreConsistent(list))
        return ::testing::AssertionFailure() << "the links do not agree";
    std::vector<int> const actual = Keys<List, T>(list);
    if (actual != keys)
        return ::testing::AssertionFailure() << "the keys are " << ::testing::PrintToString(actual);
    return ::testing::AssertionSuccess();
}
