#pragma once

#include "core/TDoubleList.h"
#include "core/TListIterator.h"

#include <type_traits>

// TDoubleList retyped to T. No field and no behaviour of its own.
template <class T>
class TFlexList : public TDoubleList
{
public:
    using TFn = void (*)(T* element, void* data);
    using TTest = bool (*)(T* element, void* data);

    explicit TFlexList(EAutoDelete autoDelete = autoDeleteOff, TObjectFactory factory = nullptr)
        : TDoubleList(autoDelete, factory)
    {
        SetPlainElements(PlainElements());
    }
    TFlexList(TFlexList const& other, void* context = nullptr) : TDoubleList(other, context)
    {
        SetPlainElements(PlainElements());
    }
    TFlexList& operator=(TFlexList const& other)
    {
        Assign(other, nullptr);
        return *this;
    }

    TDoubleList& BaseList() { return *this; }
    TDoubleList const& BaseList() const { return *this; }

    T* GetFirst() const { return Cast(m_first); }
    T* GetLast() const { return Cast(m_last); }
    static T* GetNext(T const* e) { return Cast(e->next); }
    static T* GetPrev(T const* e) { return Cast(e->prev); }
    T* operator[](int index) const { return Cast(TDoubleList::operator[](index)); }
    T* Element(int index) const { return Cast(TDoubleList::Element(index)); }

    T* Add(T* e) { return Cast(TDoubleList::Append(e)); }
    T* Append(T* e) { return Cast(TDoubleList::Append(e)); }
    T* Prepend(T* e) { return Cast(TDoubleList::Prepend(e)); }
    T* Push(T* e) { return Cast(TDoubleList::Prepend(e)); }
    T* AddUnique(T* e, bool* existed = nullptr) { return Cast(TDoubleList::AddUnique(e, existed)); }
    T* InsertAfter(T* e, T* where) { return Cast(TDoubleList::InsertAfter(e, where)); }
    T* InsertBefore(T* e, T* where) { return Cast(TDoubleList::InsertBefore(e, where)); }
    T* InsertInSortedList(T* e) { return Cast(TDoubleList::InsertInSortedList(e)); }

    T* Detach(T* e) { return Cast(TDoubleList::Detach(e)); }
    T* Pop() { return Cast(TDoubleList::DetachFirst()); }
    T* DetachFirst() { return Cast(TDoubleList::DetachFirst()); }
    T* DetachLast() { return Cast(TDoubleList::DetachLast()); }
    bool DetachEqual(T const& target) { return TDoubleList::DetachEqual(target); }
    void Delete(T* e) { TDoubleList::Delete(e); }
    void Delete(int index) { TDoubleList::Delete(index); }
    bool DeleteEqual(T const& target) { return TDoubleList::DeleteEqual(target); }

    void Swap(T* a, T* b) { TDoubleList::Swap(a, b); }
    void MoveAt(T* e, T* where) { TDoubleList::MoveAt(e, where); }
    void MoveToFront(T* e) { TDoubleList::MoveToFront(e); }
    void MoveToEnd(T* e) { TDoubleList::MoveToEnd(e); }
    T* Replace(T* old, T* replacement, bool deleteOld) { return Cast(TDoubleList::Replace(old, replacement, deleteOld)); }
    static void ExchangeElements(TFlexList& listA, T* a, TFlexList& listB, T* b)
    {
        TDoubleList::ExchangeElements(listA, a, listB, b);
    }

    T* FindEqual(T const& target) const { return Cast(TDoubleList::FindEqual(target)); }
    int FindIndexOfEqual(T const& target) const { return TDoubleList::FindIndexOfEqual(target); }
    int FindIndexOfElement(T const* e) const { return TDoubleList::FindIndexOfElement(e); }
    bool HasElement(T const* e) const { return TDoubleList::HasElement(e); }
    T* FindSmallest() const { return Cast(TDoubleList::FindSmallest()); }
    T* FindGreatest() const { return Cast(TDoubleList::FindGreatest()); }
    T* FindClosestSmaller(T const& target) const { return Cast(TDoubleList::FindClosestSmaller(target)); }
    T* FindEqualOrSmaller(T const& target) const { return Cast(TDoubleList::FindEqualOrSmaller(target)); }
    T* FindClosestGreater(T const& target) const { return Cast(TDoubleList::FindClosestGreater(target)); }
    T* FindEqualOrGreater(T const& target) const { return Cast(TDoubleList::FindEqualOrGreater(target)); }
    T* FindFirstThat(TTest test, void* data) const
    {
        TClosure<TTest> closure{test, data};
        return Cast(TDoubleList::FindFirstThat(&CallTest, &closure));
    }
    T* FindLastThat(TTest test, void* data) const
    {
        TClosure<TTest> closure{test, data};
        return Cast(TDoubleList::FindLastThat(&CallTest, &closure));
    }
    // The callback may delete the element it is given.
    void ForEach(TFn fn, void* data) const
    {
        TClosure<TFn> closure{fn, data};
        TDoubleList::ForEach(&CallFn, &closure);
    }

    void Assign(TFlexList const& other, void* context = nullptr) { TDoubleList::Assign(other, context); }
    void Add(TFlexList const& other, void* context = nullptr) { TDoubleList::Append(other, context); }
    void Append(TFlexList const& other, void* context = nullptr) { TDoubleList::Append(other, context); }
    TFlexList& operator+=(TFlexList const& other)
    {
        TDoubleList::Append(other);
        return *this;
    }
    void Insert(TFlexList const& other, T* where, void* context = nullptr) { TDoubleList::Insert(other, where, context); }
    void Absorb(TFlexList& other, T* where = nullptr) { TDoubleList::Absorb(other, where); }
    void AbsorbAndSort(TFlexList& other) { TDoubleList::AbsorbAndSort(other); }
    void Split(TFlexList& other, T* e) { TDoubleList::Split(other, e); }
    void SwapWith(TFlexList& other) { TDoubleList::SwapWith(other); }

    // for (T* e : list)
    using iterator = TListIterator<T>;
    iterator begin() const { return iterator(m_first); }
    iterator end() const { return iterator(nullptr); }

private:
    // Asked in the constructors, where T is complete: a class may hold a
    // container of itself.
    static constexpr bool PlainElements()
    {
        static_assert(std::is_base_of_v<TListElement, T>, "TFlexList holds TListElement classes");
        return UsesDefaultStreamIdentity<T>();
    }
    template <class F>
    struct TClosure
    {
        F fn;
        void* data;
    };
    static T* Cast(TListElement* e) { return static_cast<T*>(e); }
    static bool CallTest(TListElement* e, void* closure)
    {
        auto* c = static_cast<TClosure<TTest>*>(closure);
        return c->fn(Cast(e), c->data);
    }
    static void CallFn(TListElement* e, void* closure)
    {
        auto* c = static_cast<TClosure<TFn>*>(closure);
        c->fn(Cast(e), c->data);
    }
};
