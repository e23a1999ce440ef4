#pragma once

#include "core/TCollection.h"
#include "core/TLinkChain.h"
#include "core/TListElement.h"

// Intrusive doubly linked list of TListElement. Elements carry the links, so
// an element stands in one list at a time. Owning lists delete by DeleteSelf.
// Element arguments are never null unless a function says otherwise.
class COMMON_EXPORT TDoubleList : public TCollection
{
public:
    using TElementFn = void (*)(TListElement* element, void* data);
    using TPredicate = bool (*)(TListElement* element, void* data);

    explicit TDoubleList(EAutoDelete autoDelete = autoDeleteOff, TObjectFactory factory = nullptr);
    // Clones every element by CreateClone(context).
    TDoubleList(TDoubleList const& other, void* context = nullptr);
    TDoubleList& operator=(TDoubleList const& other);
    ~TDoubleList() override;

    // Read
    TListElement* GetFirst() const { return m_first; }
    TListElement* GetLast() const { return m_last; }
    static TListElement* GetNext(TListElement const* e) { return e->next; }
    static TListElement* GetPrev(TListElement const* e) { return e->prev; }
    // Walks from the front; an index below 1 gives the first. Null past the end.
    TListElement* operator[](int index) const;
    // Null for an invalid index.
    TListElement* Element(int index) const;

    // Add. Insertions overwrite both links of e and return e.
    TListElement* Add(TListElement* e) { return Append(e); }
    TListElement* Append(TListElement* e);
    TListElement* Prepend(TListElement* e);
    TListElement* Push(TListElement* e) { return Prepend(e); }
    // An equal element wins: e is then deleted if the list owns, and the
    // element found is returned.
    TListElement* AddUnique(TListElement* e, bool* existed = nullptr);
    // A null where prepends.
    TListElement* InsertAfter(TListElement* e, TListElement* where);
    // A null where appends.
    TListElement* InsertBefore(TListElement* e, TListElement* where);
    // Before the first greater element, so equals keep their order of arrival.
    TListElement* InsertInSortedList(TListElement* e);

    // Remove. Detach hands the element back; Delete always deletes; only Clear
    // and the destructor look at the ownership bit.
    TListElement* Detach(TListElement* e);
    TListElement* Pop() { return DetachFirst(); }
    TListElement* DetachFirst() { return Detach(m_first); }
    TListElement* DetachLast() { return Detach(m_last); }
    // Forgets the elements; their links stay as they were.
    void DetachAll();
    bool DetachEqual(TListElement const& target);
    void Delete(TListElement* e);
    void Delete(int index);
    void DeleteFirst() { Delete(m_first); }
    void DeleteLast() { Delete(m_last); }
    void DeleteAll();
    bool DeleteEqual(TListElement const& target);
    // Of a set of equals the last one survives.
    void DeleteDuplicates();
    void Clear();

    // Reorder
    void Swap(TListElement* a, TListElement* b);
    // e takes where's position.
    void MoveAt(TListElement* e, TListElement* where);
    void MoveToFront(TListElement* e);
    void MoveToEnd(TListElement* e);
    TListElement* Replace(TListElement* old, TListElement* replacement, bool deleteOld);
    void Reverse();
    // Stable merge sort. Returns the new index of the element that stood at
    // index, or index itself when it was not valid.
    int Sort(int index = -1);
    void Shuffle(int seed);
    // Each element goes to the other's place in the other list.
    static void ExchangeElements(TDoubleList& listA, TListElement* a, TDoubleList& listB, TListElement* b);

    // Find
    TListElement* FindEqual(TListElement const& target) const;
    int FindIndexOfEqual(TListElement const& target) const;
    int FindIndexOfElement(TListElement const* e) const;
    bool HasElement(TListElement const* e) const { return FindIndexOfElement(e) >= 0; }
    TListElement* FindSmallest() const;
    TListElement* FindGreatest() const;
    TListElement* FindClosestSmaller(TListElement const& target) const;
    TListElement* FindEqualOrSmaller(TListElement const& target) const;
    TListElement* FindClosestGreater(TListElement const& target) const;
    TListElement* FindEqualOrGreater(TListElement const& target) const;
    TListElement* FindFirstThat(TPredicate predicate, void* data) const;
    TListElement* FindLastThat(TPredicate predicate, void* data) const;
    // The callback may delete the element it is given.
    void ForEach(TElementFn fn, void* data) const;

    // Whole lists
    void Assign(TDoubleList const& other, void* context = nullptr);
    void Add(TDoubleList const& other, void* context = nullptr) { Append(other, context); }
    void Append(TDoubleList const& other, void* context = nullptr) { Insert(other, nullptr, context); }
    TDoubleList& operator+=(TDoubleList const& other)
    {
        Append(other);
        return *this;
    }
    // Clones of other's elements in front of where (null: at the end).
    void Insert(TDoubleList const& other, TListElement* where, void* context = nullptr);
    // Moves all of other in front of where (null: at the end) in one step.
    void Absorb(TDoubleList& other, TListElement* where = nullptr);
    // Merges when both lists carry the sorted flag, otherwise inserts each of
    // other's elements in order. Other ends empty.
    void AbsorbAndSort(TDoubleList& other);
    // Moves e and all that follows into other, which is cleared first.
    void Split(TDoubleList& other, TListElement* e);
    void SwapWith(TDoubleList& other);

    // State
    bool IsSorted() const;
    bool IsSortedBackwards() const;
    void SetCompareMode(long long mode) { m_compareMode = mode; }
    long long GetCompareMode() const { return m_compareMode; }
    // The count that a save writes as "Siz".
    int CountWritableElements(long long context) const;
    // A group with the count "Siz" and the elements "E", "E1"..., each after
    // its "IDS" or "ID" when it names its class. Restoring appends what the
    // factory makes. Defined with the tagged streams, in persist/.
    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

protected:
    TLinkChain<TListElement> Chain() const
    {
        auto* self = const_cast<TDoubleList*>(this);
        return {self->m_first, self->m_last};
    }

    long long m_compareMode;
    TListElement* m_first;
    TListElement* m_last;
};
