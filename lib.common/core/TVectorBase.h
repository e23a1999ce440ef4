#pragma once

#include "core/TSlotSequence.h"

// An array of TObject pointers over TSlotSequence (8-byte slots, general
// heap). Owning vectors delete by DeleteSelf. Index arguments are not
// checked. The binary finds need the vector sorted in the same compare mode.
class COMMON_EXPORT TVectorBase : public TSlotSequence
{
public:
    using TElementFn = void (*)(TObject* element, void* data);
    using TPredicate = bool (*)(TObject* element, void* data);

    explicit TVectorBase(int initialSlots = 20, int expansionSize = 20, EAutoDelete autoDelete = autoDeleteOff,
                         TObjectFactory factory = nullptr);
    // Clones every element by CreateClone(context).
    TVectorBase(TVectorBase const& other, void* context = nullptr);
    TVectorBase& operator=(TVectorBase const& other);
    ~TVectorBase() override;

    // Read: element access is one multiplication.
    TObject* operator[](int index) const { return Data()[index]; }
    TObject* At(int index) const { return Data()[index]; }
    TObject* const& ConstAt(int index) const { return Data()[index]; }
    TObject** First() { return Data(); }
    TObject* const* ConstFirst() const { return Data(); }
    TObject** Last() { return Data() + m_count - 1; }
    TObject* const* ConstLast() const { return Data() + m_count - 1; }
    TObject** End() { return Data() + m_count; }
    TObject* const* ConstEnd() const { return Data() + m_count; }

    // Add
    TObject* Add(TObject* e)
    {
        *static_cast<TObject**>(AppendSlot()) = e;
        return e;
    }
    TObject* Append(TObject* e) { return Add(e); }
    TObject* Push(TObject* e) { return Add(e); }
    TVectorBase& operator+=(TObject* e)
    {
        Add(e);
        return *this;
    }
    TObject* Prepend(TObject* e) { return Insert(e, 0); }
    TObject* Insert(TObject* e, int index);
    // After the last element that is not greater, so equals keep their order
    // of arrival. Returns the index.
    int InsertInSortedArray(TObject* e);
    // The index InsertInSortedArray would use.
    int SimulInsertInSortedArray(TObject const* e) const;
    // An equal element wins: e is deleted if the vector owns and the element
    // found is returned. A new element is always inserted in order.
    TObject* AddUnique(TObject* e, bool* existed = nullptr);
    // Appends clones of model (or the factory's default elements) up to n.
    void EnsureNumElements(int n, TObject const* model = nullptr);
    // Returns the previous element, or null when deleteOld deleted it.
    TObject* Replace(TObject* e, int index, bool deleteOld);
    void Assign(TVectorBase const& other, void* context = nullptr);
    TVectorBase& operator+=(TVectorBase const& other)
    {
        Append(other, nullptr);
        return *this;
    }
    void Append(TVectorBase const& other, void* context = nullptr) { Insert(other, m_count, context); }
    // Clones of other's elements at index, in order.
    void Insert(TVectorBase const& other, int index, void* context = nullptr);
    // Moves other's elements to the end; other ends empty.
    void Absorb(TVectorBase& other) { TSlotSequence::Absorb(other, m_count); }
    void Absorb(TVectorBase& other, int index) { TSlotSequence::Absorb(other, index); }
    void AbsorbAndSort(TVectorBase& other);

    // Remove. Cut... and Pop hand elements back; Delete... always deletes;
    // Clear follows the ownership bit.
    TObject* Pop() { return Data()[--m_count]; }
    TObject* CutDetach(int index);
    void CutDelete(int index);
    void CutRange(int index, int count, bool deleteElements);
    void Clear();
    // From the last to the first, whatever the ownership bit.
    void DeleteAll(bool freeMemory);

    // Order
    // Quicksort: middle pivot, Hoare partitions. Not stable.
    void Sort();
    void MoveAt(int from, int to);
    bool IsSorted() const;
    bool IsSortedBackwards() const;
    void SetCompareMode(long long mode) { m_compareMode = mode; }
    long long GetCompareMode() const { return m_compareMode; }
    void SwapWith(TVectorBase& other);

    // Find. Each stores the index (or -1) through index when it is given.
    bool HasElement(TObject const* e) const { return FindElementIndex(e) >= 0; }
    int FindElementIndex(TObject const* e) const;
    TObject* LinearFindEqual(TObject const& target, int* index = nullptr) const;
    TObject* LinearFindSmallest(int* index = nullptr) const;
    TObject* LinearFindGreatest(int* index = nullptr) const;
    TObject* LinearFindClosestSmaller(TObject const& target, int* index = nullptr) const;
    TObject* LinearFindEqualOrSmaller(TObject const& target, int* index = nullptr) const;
    TObject* LinearFindClosestGreater(TObject const& target, int* index = nullptr) const;
    TObject* LinearFindEqualOrGreater(TObject const& target, int* index = nullptr) const;
    // Any of a run of equals, as the midpoints fall.
    TObject* BinaryFindEqual(TObject const& target, int* index = nullptr) const;
    TObject* BinaryFindEqualOrGreater(TObject const& target, int* index = nullptr) const;
    // The first element greater than target.
    TObject* BinaryFindClosestGreater(TObject const& target, int* index = nullptr) const;
    // The last element smaller than target.
    TObject* BinaryFindClosestSmaller(TObject const& target, int* index = nullptr) const;
    TObject* BinaryFindEqualOrSmaller(TObject const& target, int* index = nullptr) const;
    void ForEach(TElementFn fn, void* data) const;
    TObject* FindFirstThat(TPredicate predicate, void* data, int* index = nullptr) const;
    TObject* FindLastThat(TPredicate predicate, void* data, int* index = nullptr) const;

    // The count that a save writes as "Siz".
    int CountWritableElements(long long context) const;
    // The state of a list; "Siz" leaves out what CanWrite refuses, but every
    // element is written. Defined with the tagged streams, in persist/.
    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

protected:
    TObject** Data() const { return reinterpret_cast<TObject**>(m_slots); }

    long long m_compareMode;
};
