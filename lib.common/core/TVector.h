#pragma once

#include "core/TVectorBase.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

// Whether a T may move to another address by a copy of its bytes, as slots
// move. That is the library's model, and true of its value classes (a
// reference-counted string, structs of such); a class that points into
// itself says false here, and a TVector of it then fails to compile.
template <class T>
struct TRelocatable : std::true_type {};

// TVector<T> for a TObject class is TVectorBase retyped to T*: an array of
// pointers whose ownership follows the EAutoDelete bit. For any other T
// (int, TString) it is an array of values in slots of sizeof(T).
template <class T, bool = std::is_base_of_v<TObject, T>>
class TVector;

template <class T>
class TVector<T, true> : public TVectorBase
{
public:
    using TFn = void (*)(T* element, void* data);
    using TTest = bool (*)(T* element, void* data);

    explicit TVector(int initialSlots = 20, int expansionSize = 20, EAutoDelete autoDelete = autoDeleteOff,
                     TObjectFactory factory = nullptr)
        : TVectorBase(initialSlots, expansionSize, autoDelete, factory)
    {
        SetPlainElements(UsesDefaultStreamIdentity<T>());
    }
    TVector(TVector const& other, void* context = nullptr) : TVectorBase(other, context)
    {
        SetPlainElements(UsesDefaultStreamIdentity<T>());
    }
    TVector& operator=(TVector const& other)
    {
        TVectorBase::Assign(other, nullptr);
        return *this;
    }

    T* operator[](int index) const { return Cast(TVectorBase::At(index)); }
    T* At(int index) const { return Cast(TVectorBase::At(index)); }
    // for (T* e : vector). The slots hold TObject pointers, which each step
    // converts: T need not have TObject at offset 0.
    class iterator
    {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = T*;
        using difference_type = std::ptrdiff_t;
        using pointer = T* const*;
        using reference = T*;

        explicit iterator(TObject* const* at) : m_at(at) {}
        T* operator*() const { return Cast(*m_at); }
        T* operator[](difference_type n) const { return Cast(m_at[n]); }
        iterator& operator++()
        {
            ++m_at;
            return *this;
        }
        iterator& operator--()
        {
            --m_at;
            return *this;
        }
        iterator& operator+=(difference_type n)
        {
            m_at += n;
            return *this;
        }
        iterator operator+(difference_type n) const { return iterator(m_at + n); }
        difference_type operator-(iterator const& other) const { return m_at - other.m_at; }
        bool operator==(iterator const& other) const { return m_at == other.m_at; }
        bool operator!=(iterator const& other) const { return m_at != other.m_at; }
        bool operator<(iterator const& other) const { return m_at < other.m_at; }

    private:
        TObject* const* m_at;
    };
    iterator begin() const { return iterator(ConstFirst()); }
    iterator end() const { return iterator(ConstEnd()); }

    T* Add(T* e) { return Cast(TVectorBase::Add(e)); }
    T* Append(T* e) { return Cast(TVectorBase::Add(e)); }
    T* Push(T* e) { return Cast(TVectorBase::Add(e)); }
    TVector& operator+=(T* e)
    {
        TVectorBase::Add(e);
        return *this;
    }
    T* Prepend(T* e) { return Cast(TVectorBase::Prepend(e)); }
    T* Insert(T* e, int index) { return Cast(TVectorBase::Insert(e, index)); }
    int InsertInSortedArray(T* e) { return TVectorBase::InsertInSortedArray(e); }
    int SimulInsertInSortedArray(T const* e) const { return TVectorBase::SimulInsertInSortedArray(e); }
    T* AddUnique(T* e, bool* existed = nullptr) { return Cast(TVectorBase::AddUnique(e, existed)); }
    void EnsureNumElements(int n, T const* model = nullptr) { TVectorBase::EnsureNumElements(n, model); }
    T* Replace(T* e, int index, bool deleteOld) { return Cast(TVectorBase::Replace(e, index, deleteOld)); }
    void Assign(TVector const& other, void* context = nullptr) { TVectorBase::Assign(other, context); }
    TVector& operator+=(TVector const& other)
    {
        TVectorBase::Append(other, nullptr);
        return *this;
    }
    void Append(TVector const& other, void* context = nullptr) { TVectorBase::Append(other, context); }
    void Insert(TVector const& other, int index, void* context = nullptr) { TVectorBase::Insert(other, index, context); }
    void Absorb(TVector& other) { TVectorBase::Absorb(other); }
    void Absorb(TVector& other, int index) { TVectorBase::Absorb(other, index); }
    void AbsorbAndSort(TVector& other) { TVectorBase::AbsorbAndSort(other); }

    T* Pop() { return Cast(TVectorBase::Pop()); }
    T* CutDetach(int index) { return Cast(TVectorBase::CutDetach(index)); }
    void SwapWith(TVector& other) { TVectorBase::SwapWith(other); }

    bool HasElement(T const* e) const { return TVectorBase::HasElement(e); }
    int FindElementIndex(T const* e) const { return TVectorBase::FindElementIndex(e); }
    T* LinearFindEqual(T const& target, int* index = nullptr) const { return Cast(TVectorBase::LinearFindEqual(target, index)); }
    T* LinearFindSmallest(int* index = nullptr) const { return Cast(TVectorBase::LinearFindSmallest(index)); }
    T* LinearFindGreatest(int* index = nullptr) const { return Cast(TVectorBase::LinearFindGreatest(index)); }
    T* LinearFindClosestSmaller(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::LinearFindClosestSmaller(target, index));
    }
    T* LinearFindEqualOrSmaller(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::LinearFindEqualOrSmaller(target, index));
    }
    T* LinearFindClosestGreater(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::LinearFindClosestGreater(target, index));
    }
    T* LinearFindEqualOrGreater(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::LinearFindEqualOrGreater(target, index));
    }
    T* BinaryFindEqual(T const& target, int* index = nullptr) const { return Cast(TVectorBase::BinaryFindEqual(target, index)); }
    T* BinaryFindEqualOrGreater(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::BinaryFindEqualOrGreater(target, index));
    }
    T* BinaryFindClosestGreater(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::BinaryFindClosestGreater(target, index));
    }
    T* BinaryFindClosestSmaller(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::BinaryFindClosestSmaller(target, index));
    }
    T* BinaryFindEqualOrSmaller(T const& target, int* index = nullptr) const
    {
        return Cast(TVectorBase::BinaryFindEqualOrSmaller(target, index));
    }
    void ForEach(TFn fn, void* data) const
    {
        TClosure<TFn> closure{fn, data};
        TVectorBase::ForEach(&CallFn, &closure);
    }
    T* FindFirstThat(TTest test, void* data, int* index = nullptr) const
    {
        TClosure<TTest> closure{test, data};
        return Cast(TVectorBase::FindFirstThat(&CallTest, &closure, index));
    }
    T* FindLastThat(TTest test, void* data, int* index = nullptr) const
    {
        TClosure<TTest> closure{test, data};
        return Cast(TVectorBase::FindLastThat(&CallTest, &closure, index));
    }

private:
    template <class F>
    struct TClosure
    {
        F fn;
        void* data;
    };
    static T* Cast(TObject* e) { return static_cast<T*>(e); }
    static bool CallTest(TObject* e, void* closure)
    {
        auto* c = static_cast<TClosure<TTest>*>(closure);
        return c->fn(Cast(e), c->data);
    }
    static void CallFn(TObject* e, void* closure)
    {
        auto* c = static_cast<TClosure<TFn>*>(closure);
        c->fn(Cast(e), c->data);
    }
};

// The slot sequence is a protected base: its byte-wise copies would share
// what values own.
template <class T>
class TVector<T, false> : protected TSlotSequence
{
    static_assert(TRelocatable<T>::value, "TVector moves values by their bytes, which T does not allow");

public:
    using TSlotSequence::Count;
    using TSlotSequence::EndIndex;
    using TSlotSequence::EnsureNumSlots;
    using TSlotSequence::GetNumSlots;
    using TSlotSequence::HasStuff;
    using TSlotSequence::IsEmpty;
    using TSlotSequence::IsValidIndex;
    using TSlotSequence::LastIndex;
    using TSlotSequence::Reverse;
    using TSlotSequence::SetExpansionSize;
    using TSlotSequence::Shuffle;

    explicit TVector(int initialSlots = 20, int expansionSize = 20)
        : TSlotSequence(sizeof(T), initialSlots, expansionSize)
    {
    }
    TVector(TVector const& other) : TSlotSequence(other, false) { Append(other); }
    TVector& operator=(TVector const& other)
    {
        if (&other != this) {
            Clear();
            Append(other);
        }
        return *this;
    }
    ~TVector() override { Clear(); }

    T& operator[](int index) { return Data()[index]; }
    T const& operator[](int index) const { return Data()[index]; }
    T& At(int index) { return Data()[index]; }
    T const& At(int index) const { return Data()[index]; }
    T& Last() { return Data()[m_count - 1]; }
    T const& Last() const { return Data()[m_count - 1]; }
    T* First() { return Data(); }
    T* End() { return Data() + m_count; }
    T* begin() { return Data(); }
    T* end() { return Data() + m_count; }
    T const* begin() const { return Data(); }
    T const* end() const { return Data() + m_count; }

    T& Add(T const& value)
    {
        // value may live in this vector: copy it before the block moves.
        T copy(value);
        return *new (AppendSlot()) T(std::move(copy));
    }
    T& Append(T const& value) { return Add(value); }
    T& Push(T const& value) { return Add(value); }
    TVector& operator+=(T const& value)
    {
        Add(value);
        return *this;
    }
    T& Insert(T const& value, int index)
    {
        T copy(value);
        return *new (InsertSlot(nullptr, index)) T(std::move(copy));
    }
    void Append(TVector const& other)
    {
        int const count = other.m_count;
        ResizeSlotBuffer(m_count + count, false);
        for (int i = 0; i < count; ++i)
            Add(other.Data()[i]);
    }
    // Default values up to n; never shrinks.
    void EnsureNumElements(int n)
    {
        ResizeSlotBuffer(n, true);
        while (m_count < n)
            new (AppendSlot()) T();
    }

    T Pop()
    {
        T value(std::move(Data()[m_count - 1]));
        Data()[--m_count].~T();
        return value;
    }
    void Cut(int index) { CutRange(index, 1); }
    void CutRange(int index, int count)
    {
        for (int i = index; i < index + count; ++i)
            Data()[i].~T();
        CutSlots(index, count);
    }
    void Clear()
    {
        while (m_count > 0)
            Data()[--m_count].~T();
        FreeMemory();
    }

    int IndexOf(T const& value) const
    {
        for (int i = 0; i < m_count; ++i)
            if (Data()[i] == value)
                return i;
        return -1;
    }
    bool Contains(T const& value) const { return IndexOf(value) >= 0; }
    void Sort() { std::sort(Data(), Data() + m_count); }
    void SwapWith(TVector& other) { TSlotSequence::SwapWith(other); }

private:
    T* Data() const { return reinterpret_cast<T*>(m_slots); }
};
