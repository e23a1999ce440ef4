#pragma once

#include "core/TDoubleListOfPointers.h"

// TDoubleListOfPointers retyped to T*. The comparer, cloner and deleter stay
// untyped function pointers; SetTypedDeleter installs `delete` for T.
template <class T>
class TListOfPointers : public TDoubleListOfPointers
{
public:
    using TFn = void (*)(T* element, void* data);
    using TTest = bool (*)(T* element, void* data);

    explicit TListOfPointers(EAutoDelete autoDelete = autoDeleteOff) : TDoubleListOfPointers(autoDelete) {}
    TListOfPointers(TListOfPointers const& other, void* context = nullptr) : TDoubleListOfPointers(other, context) {}
    TListOfPointers& operator=(TListOfPointers const& other)
    {
        Assign(other, nullptr);
        return *this;
    }

    void SetTypedDeleter()
    {
        SetDeleter([](void* e) { delete static_cast<T*>(e); });
    }

    T* GetFirst() const { return Cast(TDoubleListOfPointers::GetFirst()); }
    T* GetLast() const { return Cast(TDoubleListOfPointers::GetLast()); }
    T* GetNext(T const* e) const { return Cast(TDoubleListOfPointers::GetNext(e)); }
    T* GetPrev(T const* e) const { return Cast(TDoubleListOfPointers::GetPrev(e)); }
    T* operator[](int index) const { return Cast(TDoubleListOfPointers::operator[](index)); }
    T* Element(int index) const { return Cast(TDoubleListOfPointers::Element(index)); }
    static T* Get(TListOfPointersIteratorImp const& position) { return Cast(TDoubleListOfPointers::Get(position)); }

    T* Add(T* e) { return Cast(TDoubleListOfPointers::Append(e)); }
    T* Append(T* e) { return Cast(TDoubleListOfPointers::Append(e)); }
    void Add(TListOfPointers const& other, void* context = nullptr) { TDoubleListOfPointers::Append(other, context); }
    void Append(TListOfPointers const& other, void* context = nullptr) { TDoubleListOfPointers::Append(other, context); }
    T* Prepend(T* e) { return Cast(TDoubleListOfPointers::Prepend(e)); }
    T* Push(T* e) { return Cast(TDoubleListOfPointers::Prepend(e)); }
    T* AddUnique(T* e, bool* existed = nullptr) { return Cast(TDoubleListOfPointers::AddUnique(e, existed)); }
    T* InsertAfter(T* e, T const* where) { return Cast(TDoubleListOfPointers::InsertAfter(e, where)); }
    T* InsertBefore(T* e, T const* where) { return Cast(TDoubleListOfPointers::InsertBefore(e, where)); }
    T* InsertInSortedList(T* e) { return Cast(TDoubleListOfPointers::InsertInSortedList(e)); }

    T* Detach(T const* e) { return Cast(TDoubleListOfPointers::Detach(e)); }
    T* Pop() { return Cast(TDoubleListOfPointers::DetachFirst()); }
    T* DetachFirst() { return Cast(TDoubleListOfPointers::DetachFirst()); }
    T* DetachLast() { return Cast(TDoubleListOfPointers::DetachLast()); }
    T* Replace(T const* old, T* replacement, bool deleteOld)
    {
        return Cast(TDoubleListOfPointers::Replace(old, replacement, deleteOld));
    }

    T* FindEqual(T const* target) const { return Cast(TDoubleListOfPointers::FindEqual(target)); }
    T* FindSmallest() const { return Cast(TDoubleListOfPointers::FindSmallest()); }
    T* FindGreatest() const { return Cast(TDoubleListOfPointers::FindGreatest()); }
    T* FindClosestSmaller(T const* target) const { return Cast(TDoubleListOfPointers::FindClosestSmaller(target)); }
    T* FindEqualOrSmaller(T const* target) const { return Cast(TDoubleListOfPointers::FindEqualOrSmaller(target)); }
    T* FindClosestGreater(T const* target) const { return Cast(TDoubleListOfPointers::FindClosestGreater(target)); }
    T* FindEqualOrGreater(T const* target) const { return Cast(TDoubleListOfPointers::FindEqualOrGreater(target)); }
    T* FindFirstThat(TTest test, void* data) const
    {
        TClosure<TTest> closure{test, data};
        return Cast(TDoubleListOfPointers::FindFirstThat(&CallTest, &closure));
    }
    T* FindLastThat(TTest test, void* data) const
    {
        TClosure<TTest> closure{test, data};
        return Cast(TDoubleListOfPointers::FindLastThat(&CallTest, &closure));
    }
    void ForEach(TFn fn, void* data) const
    {
        TClosure<TFn> closure{fn, data};
        TDoubleListOfPointers::ForEach(&CallFn, &closure);
    }

private:
    template <class F>
    struct TClosure
    {
        F fn;
        void* data;
    };
    static T* Cast(void* e) { return static_cast<T*>(e); }
    static bool CallTest(void* e, void* closure)
    {
        auto* c = static_cast<TClosure<TTest>*>(closure);
        return c->fn(Cast(e), c->data);
    }
    static void CallFn(void* e, void* closure)
    {
        auto* c = static_cast<TClosure<TFn>*>(closure);
        c->fn(Cast(e), c->data);
    }
};
