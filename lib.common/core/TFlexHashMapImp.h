#pragma once

#include "core/TDoubleList.h"
#include "core/THashableElement.h"

#include <cstdint>

// A hash table that is also one list: the elements of a bucket stand next to
// each other in the list, and the table points at the first of each run.
// Iterating the map is iterating the list (GetFirst, GetNext). The load
// factor stays at or below one; the table sizes are primes.
class COMMON_EXPORT TFlexHashMapImp : public TDoubleList
{
public:
    using TElementFn = void (*)(THashableElement* element, void* data);

    // With an expected count above 0 the table is made at once.
    explicit TFlexHashMapImp(int expectedCount = 0, EAutoDelete autoDelete = autoDeleteOff,
                             TObjectFactory factory = nullptr);
    // Clones the elements and rebuilds the table.
    TFlexHashMapImp(TFlexHashMapImp const& other);
    TFlexHashMapImp& operator=(TFlexHashMapImp const& other);
    ~TFlexHashMapImp() override;

    // Grows the table when the count has reached the number of slots.
    THashableElement* Add(THashableElement* e);
    // Adds into the existing table, behind the first element of its bucket.
    THashableElement* PureAdd(THashableElement* e);
    THashableElement* AddUnique(THashableElement* e, bool* existed = nullptr);
    // Adds a clone of each of other's elements.
    void Add(TFlexHashMapImp const& other);
    // Moves each of other's elements here.
    void Absorb(TFlexHashMapImp& other);

    THashableElement* Detach(THashableElement* e);
    // Always deletes, owning or not.
    void Delete(THashableElement* e);
    void DetachAll();
    void DeleteAll();
    void Clear();
    // Returns the number deleted.
    int DeleteAllEqual(THashableElement const& key);

    // The oldest equal element of the key's bucket. Inline: finds are the
    // map's hot path.
    THashableElement* FindEqual(THashableElement const& key) const
    {
        if (!m_buckets)
            return nullptr;
        int const bucket = static_cast<int>(BucketOf(key.GetHashedValue()));
        for (THashableElement* x = m_buckets[bucket]; x && x->slot == bucket; x = static_cast<THashableElement*>(x->next))
            if (x->IsEqual(key, m_compareMode))
                return x;
        return nullptr;
    }
    THashableElement* FindEqualOrCreate(THashableElement const& key);
    int FindNumEqual(THashableElement const& key) const;
    // Calls fn on each equal element, which it may detach or delete; returns
    // the count.
    int ForEachEqual(THashableElement const& key, TElementFn fn, void* data) const;

    // For an element whose key changed while in the map; adds it when it was
    // not in the map.
    void NotifyReHashed(THashableElement* e);
    // Resizes the table for wanted elements (the count when 0 or less). A
    // failure is logged and swallowed, the map left as far as it got.
    void Remap(int wanted, bool growOnly);

    int GetNumSlots() const { return m_numSlots; }
    bool HasTable() const { return m_buckets != nullptr; }
    void SetAutoSize(bool on) { m_autoSize = on; }
    bool GetAutoSize() const { return m_autoSize; }
    // The first table size above wanted, or 0 when there is none.
    static int TableSizeFor(int wanted);
    // Clears by the ownership rule, restores as a list, then rebuilds the
    // table. Defined with the tagged streams, in persist/.
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

private:
    // Operations of the list that would leave the table behind.
    using TDoubleList::Append;
    using TDoubleList::Prepend;
    using TDoubleList::Push;
    using TDoubleList::InsertAfter;
    using TDoubleList::InsertBefore;
    using TDoubleList::InsertInSortedList;
    using TDoubleList::Pop;
    using TDoubleList::DetachFirst;
    using TDoubleList::DetachLast;
    using TDoubleList::DetachEqual;
    using TDoubleList::DeleteFirst;
    using TDoubleList::DeleteLast;
    using TDoubleList::DeleteEqual;
    using TDoubleList::DeleteDuplicates;
    using TDoubleList::Swap;
    using TDoubleList::MoveAt;
    using TDoubleList::MoveToFront;
    using TDoubleList::MoveToEnd;
    using TDoubleList::Replace;
    using TDoubleList::Reverse;
    using TDoubleList::Sort;
    using TDoubleList::Shuffle;
    using TDoubleList::Assign;
    using TDoubleList::Insert;
    using TDoubleList::AbsorbAndSort;
    using TDoubleList::Split;
    using TDoubleList::SwapWith;
    using TDoubleList::operator+=;

    // Lemire's fast remainder by the reciprocal: exact for every 32-bit value
    // and divisor, two multiplications instead of a division.
    unsigned BucketOf(unsigned hash) const
    {
        uint64_t const low = m_slotReciprocal * hash;
#if defined(__SIZEOF_INT128__)
        return static_cast<unsigned>((static_cast<unsigned __int128>(low) * static_cast<unsigned>(m_numSlots)) >> 64);
#else
        uint64_t const high = (low >> 32) * static_cast<unsigned>(m_numSlots);
        uint64_t const rest = ((low & 0xFFFFFFFFu) * static_cast<unsigned>(m_numSlots)) >> 32;
        return static_cast<unsigned>((high + rest) >> 32);
#endif
    }
    void SetTable(THashableElement** buckets, int numSlots);
    void FreeTable();
    void RebuildTable(int numSlots);

    THashableElement** m_buckets;
    int m_numSlots;
    bool m_autoSize;
    // UINT64_MAX / m_numSlots + 1, for BucketOf.
    uint64_t m_slotReciprocal;
};
