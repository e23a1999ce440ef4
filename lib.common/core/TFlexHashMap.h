#pragma once

#include "core/TFlexHashMapImp.h"
#include "core/TListIterator.h"

#include <type_traits>

// TFlexHashMapImp retyped to T. No field and no behaviour of its own.
template <class T>
class TFlexHashMap : public TFlexHashMapImp
{
public:
    using TFn = void (*)(T* element, void* data);

    explicit TFlexHashMap(int expectedCount = 0, EAutoDelete autoDelete = autoDeleteOff, TObjectFactory factory = nullptr)
        : TFlexHashMapImp(expectedCount, autoDelete, factory)
    {
        SetPlainElements(PlainElements());
    }
    TFlexHashMap(TFlexHashMap const& other) : TFlexHashMapImp(other)
    {
        SetPlainElements(PlainElements());
    }
    TFlexHashMap& operator=(TFlexHashMap const& other)
    {
        TFlexHashMapImp::operator=(other);
        return *this;
    }

    T* GetFirst() const { return Cast(m_first); }
    T* GetLast() const { return Cast(m_last); }
    static T* GetNext(T const* e) { return Cast(e->next); }
    static T* GetPrev(T const* e) { return Cast(e->prev); }

    T* Add(T* e) { return Cast(TFlexHashMapImp::Add(e)); }
    T* PureAdd(T* e) { return Cast(TFlexHashMapImp::PureAdd(e)); }
    T* AddUnique(T* e, bool* existed = nullptr) { return Cast(TFlexHashMapImp::AddUnique(e, existed)); }
    void Add(TFlexHashMap const& other) { TFlexHashMapImp::Add(other); }
    void Absorb(TFlexHashMap& other) { TFlexHashMapImp::Absorb(other); }
    T* Detach(T* e) { return Cast(TFlexHashMapImp::Detach(e)); }
    void Delete(T* e) { TFlexHashMapImp::Delete(e); }
    int DeleteAllEqual(T const& key) { return TFlexHashMapImp::DeleteAllEqual(key); }

    T* FindEqual(T const& key) const { return Cast(TFlexHashMapImp::FindEqual(key)); }
    T* FindEqualOrCreate(T const& key) { return Cast(TFlexHashMapImp::FindEqualOrCreate(key)); }
    int FindNumEqual(T const& key) const { return TFlexHashMapImp::FindNumEqual(key); }
    int ForEachEqual(T const& key, TFn fn, void* data) const
    {
        TClosure closure{fn, data};
        return TFlexHashMapImp::ForEachEqual(key, &CallFn, &closure);
    }
    void NotifyReHashed(T* e) { TFlexHashMapImp::NotifyReHashed(e); }

    // for (T* e : map): list order.
    using iterator = TListIterator<T>;
    iterator begin() const { return iterator(m_first); }
    iterator end() const { return iterator(nullptr); }

private:
    // Asked in the constructors, where T is complete: a class may hold a
    // container of itself.
    static constexpr bool PlainElements()
    {
        static_assert(std::is_base_of_v<THashableElement, T>, "TFlexHashMap holds THashableElement classes");
        return UsesDefaultStreamIdentity<T>();
    }
    struct TClosure
    {
        TFn fn;
        void* data;
    };
    static T* Cast(TListElement* e) { return static_cast<T*>(e); }
    static void CallFn(THashableElement* e, void* closure)
    {
        auto* c = static_cast<TClosure*>(closure);
        c->fn(Cast(e), c->data);
    }
};
