#pragma once

#include "core/TCollectionOfPointers.h"
#include "core/TLinkChain.h"

// A node of TDoubleListOfPointers, owned by the list.
struct TListNode
{
    TListNode* next;
    TListNode* prev;
    void* data;
};

class TDoubleListOfPointers;

// A position in a TDoubleListOfPointers. It stays valid while its node is in
// the list.
class COMMON_EXPORT TListOfPointersIteratorImp
{
public:
    explicit TListOfPointersIteratorImp(TDoubleListOfPointers const& list, bool fromEnd = false);
    explicit TListOfPointersIteratorImp(TListNode* node) : m_node(node) {}

    bool IsValid() const { return m_node != nullptr; }
    void Next() { m_node = m_node->next; }
    void Prev() { m_node = m_node->prev; }
    TListNode* Node() const { return m_node; }

private:
    TListNode* m_node;
};

// A doubly linked list of untyped pointers in nodes of its own. Operations
// that take an element look its node up first, a linear search that takes
// the first match.
class COMMON_EXPORT TDoubleListOfPointers : public TCollectionOfPointers
{
public:
    using TElementFn = void (*)(void* element, void* data);
    using TPredicate = bool (*)(void* element, void* data);

    explicit TDoubleListOfPointers(EAutoDelete autoDelete = autoDeleteOff);
    // Clones every pointer by the cloner, handing it context.
    TDoubleListOfPointers(TDoubleListOfPointers const& other, void* context = nullptr);
    TDoubleListOfPointers& operator=(TDoubleListOfPointers const& other);
    ~TDoubleListOfPointers() override;

    // Read
    TListNode* GetFirstNode() const { return m_first; }
    TListNode* GetLastNode() const { return m_last; }
    void* GetFirst() const { return m_first ? m_first->data : nullptr; }
    void* GetLast() const { return m_last ? m_last->data : nullptr; }
    void* GetNext(void const* e) const;
    void* GetPrev(void const* e) const;
    // Walks from the front; an index below 1 gives the first. Null past the end.
    void* operator[](int index) const;
    void* Element(int index) const;
    TListNode* FindNode(void const* e) const;
    TListNode* FindNode(int index) const { return IsValidIndex(index) ? Chain().Nth(index) : nullptr; }
    static void* Get(TListOfPointersIteratorImp const& position) { return position.Node()->data; }

    // Add
    void* Add(void* e) { return Append(e); }
    void* Append(void* e);
    void* Prepend(void* e);
    void* Push(void* e) { return Prepend(e); }
    void* AddUnique(void* e, bool* existed = nullptr);
    // A where that is null or absent prepends.
    void* InsertAfter(void* e, void const* where);
    // A where that is null or absent appends.
    void* InsertBefore(void* e, void const* where);
    void* InsertInSortedList(void* e);

    // Remove. Detach frees the node and returns the pointer; Delete also calls
    // the deleter.
    void* Detach(void const* e);
    void* Pop() { return DetachFirst(); }
    void* DetachFirst() { return m_first ? DetachNode(m_first) : nullptr; }
    void* DetachLast() { return m_last ? DetachNode(m_last) : nullptr; }
    void DetachAll();
    bool DetachEqual(void const* target);
    void Delete(void const* e);
    void Delete(int index);
    void DeleteFirst();
    void DeleteLast();
    void DeleteAll();
    bool DeleteEqual(void const* target);
    void DeleteDuplicates();
    void Clear();

    // Reorder
    void Swap(void const* a, void const* b);
    void MoveAt(void const* e, void const* where);
    void MoveToFront(void const* e);
    void MoveToEnd(void const* e);
    void* Replace(void const* old, void* replacement, bool deleteOld);
    void Reverse() { Chain().Reverse(); }
    // Stable merge sort by the comparer.
    void Sort();
    void Shuffle(int seed);
    static void ExchangeElements(TDoubleListOfPointers& listA, void const* a, TDoubleListOfPointers& listB, void const* b);

    // Find
    void* FindEqual(void const* target) const;
    int FindIndexOfEqual(void const* target) const;
    int FindIndexOfElement(void const* e) const;
    bool HasElement(void const* e) const { return FindNode(e) != nullptr; }
    void* FindSmallest() const;
    void* FindGreatest() const;
    void* FindClosestSmaller(void const* target) const;
    void* FindEqualOrSmaller(void const* target) const;
    void* FindClosestGreater(void const* target) const;
    void* FindEqualOrGreater(void const* target) const;
    void* FindFirstThat(TPredicate predicate, void* data) const;
    void* FindLastThat(TPredicate predicate, void* data) const;
    // The callback may delete the element it is given.
    void ForEach(TElementFn fn, void* data) const;

    // Whole lists
    void Assign(TDoubleListOfPointers const& other, void* context = nullptr);
    void Add(TDoubleListOfPointers const& other, void* context = nullptr) { Insert(other, nullptr, context); }
    void Append(TDoubleListOfPointers const& other, void* context = nullptr) { Insert(other, nullptr, context); }
    TDoubleListOfPointers& operator+=(TDoubleListOfPointers const& other)
    {
        Insert(other, nullptr, nullptr);
        return *this;
    }
    void Insert(TDoubleListOfPointers const& other, void const* where, void* context = nullptr);
    void Absorb(TDoubleListOfPointers& other, void const* where = nullptr);
    void AbsorbAndSort(TDoubleListOfPointers& other);
    void Split(TDoubleListOfPointers& other, void const* e);
    void SwapWith(TDoubleListOfPointers& other);

    bool IsSorted() const;
    bool IsSortedBackwards() const;

protected:
    TLinkChain<TListNode> Chain() const
    {
        auto* self = const_cast<TDoubleListOfPointers*>(this);
        return {self->m_first, self->m_last};
    }
    TListNode* NewNode(void* e);
    void* DetachNode(TListNode* node);
    void InsertNodeBefore(TListNode* node, TListNode* where);
    void FreeAllNodes(bool callDeleter);

    TListNode* m_first;
    TListNode* m_last;
};
