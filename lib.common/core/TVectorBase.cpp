#include "core/TVectorBase.h"

#include "core/OrderSearch.h"

#include <utility>

namespace {

enum class EOnEqual
{
    stop,
    goLeft,
    goRight,
};

// One binary search for the five tie-break rules: which outcomes note the
// midpoint as the current answer, and where an equal element sends the
// search. target is on the left of Compare.
template <bool noteLess, bool noteGreater, EOnEqual onEqual>
int BinarySearch(TObject* const* elements, int count, TObject const& target, long long mode)
{
    int low = 0;
    int high = count - 1;
    int found = -1;
    while (low <= high) {
        int const mid = (low + high) >> 1;
        int const order = target.Compare(*elements[mid], mode);
        if (order < 0) {
            if (noteLess)
                found = mid;
            high = mid - 1;
        } else if (order > 0) {
            if (noteGreater)
                found = mid;
            low = mid + 1;
        } else if (onEqual == EOnEqual::stop) {
            return mid;
        } else if (onEqual == EOnEqual::goLeft) {
            high = mid - 1;
        } else {
            low = mid + 1;
        }
    }
    return found;
}

TObject* Found(TObject* const* elements, int found, int* index)
{
    if (index)
        *index = found;
    return found >= 0 ? elements[found] : nullptr;
}

// The linear searches by order walk indexes; the end index means none.
int NextIndex(int i)
{
    return i + 1;
}

struct TByOrder
{
    TObject* const* elements;
    long long mode;
    int operator()(int a, int b) const { return elements[a]->Compare(*elements[b], mode); }
};

struct TToTarget
{
    TObject* const* elements;
    TObject const& target;
    long long mode;
    int operator()(int i) const { return elements[i]->Compare(target, mode); }
};

// Recurses on the left part and loops on the right. The scans are bounded
// so that a Compare that never answers 0 or above cannot run off the range;
// with a consistent Compare the bounds are never reached.
void QuickSort(TObject** first, TObject** last, long long mode)
{
    while (first < last) {
        TObject* const pivot = first[(last - first) / 2];
        TObject** i = first;
        TObject** j = last;
        do {
            while (i < last && (*i)->Compare(*pivot, mode) < 0)
                ++i;
            while (j > first && pivot->Compare(**j, mode) < 0)
                --j;
            if (i <= j) {
                std::swap(*i, *j);
                ++i;
                --j;
            }
        } while (i <= j);
        if (first < j)
            QuickSort(first, j, mode);
        first = i;
    }
}

} // namespace

TVectorBase::TVectorBase(int initialSlots, int expansionSize, EAutoDelete autoDelete, TObjectFactory factory)
    : TSlotSequence(sizeof(TObject*), initialSlots, expansionSize, autoDelete, factory, nullptr)
    , m_compareMode(0)
{
}

TVectorBase::TVectorBase(TVectorBase const& other, void* context)
    : TSlotSequence(other, false)
    , m_compareMode(other.m_compareMode)
{
    Insert(other, 0, context);
}

TVectorBase& TVectorBase::operator=(TVectorBase const& other)
{
    Assign(other, nullptr);
    return *this;
}

TVectorBase::~TVectorBase()
{
    Clear();
}

TObject* TVectorBase::Insert(TObject* e, int index)
{
    InsertSlot(&e, index);
    return e;
}

int TVectorBase::InsertInSortedArray(TObject* e)
{
    int const index = SimulInsertInSortedArray(e);
    Insert(e, index);
    return index;
}

int TVectorBase::SimulInsertInSortedArray(TObject const* e) const
{
    int index = -1;
    BinaryFindClosestGreater(*e, &index);
    return index < 0 ? m_count : index;
}

TObject* TVectorBase::AddUnique(TObject* e, bool* existed)
{
    if (IsMarkedAsSorted() && !BinaryFindEqual(*e)) {
        InsertInSortedArray(e);
        if (existed)
            *existed = false;
        return e;
    }
    if (TObject* found = LinearFindEqual(*e)) {
        if (existed)
            *existed = true;
        if (ShouldDeleteElements() && found != e)
            e->DeleteSelf();
        return found;
    }
    InsertInSortedArray(e);
    if (existed)
        *existed = false;
    return e;
}

void TVectorBase::EnsureNumElements(int n, TObject const* model)
{
    ResizeSlotBuffer(n, true);
    while (m_count < n) {
        TObject* e = model ? model->CreateClone(nullptr) : (m_factory ? m_factory(0, 0, nullptr) : nullptr);
        if (!e)
            return; // nothing to make elements from
        Add(e);
    }
}

TObject* TVectorBase::Replace(TObject* e, int index, bool deleteOld)
{
    TObject* old = Data()[index];
    Data()[index] = e;
    if (!deleteOld)
        return old;
    DeleteSelf(old);
    return nullptr;
}

void TVectorBase::Assign(TVectorBase const& other, void* context)
{
    if (&other == this)
        return;
    Clear();
    TCollection::operator=(other);
    m_expansionSize = other.m_expansionSize;
    m_initialSlots = other.m_initialSlots;
    m_compareMode = other.m_compareMode;
    Insert(other, 0, context);
}

void TVectorBase::Insert(TVectorBase const& other, int index, void* context)
{
    int const added = other.m_count;
    if (added <= 0)
        return;
    int const tail = m_count - index;
    TSlotSequence::Insert(other, index, true);
    // Own elements behind the gap moved by `added`.
    auto source = [&](int i) { return &other == this && i >= index ? Data()[i + added] : other.Data()[i]; };
    int filled = 0;
    auto closeGap = [&] {
        if (filled < added)
            MoveSlots(index + added, index + filled, tail);
    };
    try {
        for (int i = 0; i < added; ++i) {
            if (TObject* clone = source(i)->CreateClone(context)) {
                Data()[index + filled++] = clone;
                ++m_count;
            }
        }
    } catch (...) {
        closeGap();
        throw;
    }
    closeGap();
}

void TVectorBase::AbsorbAndSort(TVectorBase& other)
{
    Absorb(other);
    Sort();
}

TObject* TVectorBase::CutDetach(int index)
{
    TObject* e = Data()[index];
    CutSlots(index, 1);
    return e;
}

void TVectorBase::CutDelete(int index)
{
    DeleteSelf(CutDetach(index));
}

void TVectorBase::CutRange(int index, int count, bool deleteElements)
{
    if (deleteElements)
        for (int i = index; i < index + count; ++i)
            DeleteSelf(Data()[i]);
    CutSlots(index, count);
}

void TVectorBase::Clear()
{
    if (ShouldDeleteElements())
        DeleteAll(true);
    else
        FreeMemory();
}

void TVectorBase::DeleteAll(bool freeMemory)
{
    while (m_count > 0)
        DeleteSelf(Data()[--m_count]);
    if (freeMemory)
        FreeMemory();
}

void TVectorBase::Sort()
{
    if (m_count >= 2)
        QuickSort(Data(), Data() + m_count - 1, m_compareMode);
}

void TVectorBase::MoveAt(int from, int to)
{
    if (from == to)
        return;
    TObject* e = Data()[from];
    if (from < to)
        MoveSlots(from + 1, from, to - from);
    else
        MoveSlots(to, to + 1, from - to);
    Data()[to] = e;
}

bool TVectorBase::IsSorted() const
{
    return IsInOrder(0, m_count, NextIndex, 1, TByOrder{Data(), m_compareMode});
}

bool TVectorBase::IsSortedBackwards() const
{
    return IsInOrder(0, m_count, NextIndex, -1, TByOrder{Data(), m_compareMode});
}

void TVectorBase::SwapWith(TVectorBase& other)
{
    TSlotSequence::SwapWith(other);
    std::swap(m_compareMode, other.m_compareMode);
}

int TVectorBase::FindElementIndex(TObject const* e) const
{
    for (int i = 0; i < m_count; ++i)
        if (Data()[i] == e)
            return i;
    return -1;
}

TObject* TVectorBase::LinearFindEqual(TObject const& target, int* index) const
{
    int found = -1;
    for (int i = 0; i < m_count && found < 0; ++i)
        if (target.IsEqual(*Data()[i], m_compareMode))
            found = i;
    return Found(Data(), found, index);
}

TObject* TVectorBase::LinearFindSmallest(int* index) const
{
    int const found = FindExtreme(0, m_count, NextIndex, -1, TByOrder{Data(), m_compareMode});
    return Found(Data(), found < m_count ? found : -1, index);
}

TObject* TVectorBase::LinearFindGreatest(int* index) const
{
    int const found = FindExtreme(0, m_count, NextIndex, 1, TByOrder{Data(), m_compareMode});
    return Found(Data(), found < m_count ? found : -1, index);
}

TObject* TVectorBase::LinearFindClosestSmaller(TObject const& target, int* index) const
{
    int const found = FindClosest(0, m_count, NextIndex, -1, false, TToTarget{Data(), target, m_compareMode},
                                  TByOrder{Data(), m_compareMode});
    return Found(Data(), found < m_count ? found : -1, index);
}

TObject* TVectorBase::LinearFindEqualOrSmaller(TObject const& target, int* index) const
{
    int const found = FindClosest(0, m_count, NextIndex, -1, true, TToTarget{Data(), target, m_compareMode},
                                  TByOrder{Data(), m_compareMode});
    return Found(Data(), found < m_count ? found : -1, index);
}

TObject* TVectorBase::LinearFindClosestGreater(TObject const& target, int* index) const
{
    int const found = FindClosest(0, m_count, NextIndex, 1, false, TToTarget{Data(), target, m_compareMode},
                                  TByOrder{Data(), m_compareMode});
    return Found(Data(), found < m_count ? found : -1, index);
}

TObject* TVectorBase::LinearFindEqualOrGreater(TObject const& target, int* index) const
{
    int const found = FindClosest(0, m_count, NextIndex, 1, true, TToTarget{Data(), target, m_compareMode},
                                  TByOrder{Data(), m_compareMode});
    return Found(Data(), found < m_count ? found : -1, index);
}

TObject* TVectorBase::BinaryFindEqual(TObject const& target, int* index) const
{
    return Found(Data(), BinarySearch<false, false, EOnEqual::stop>(Data(), m_count, target, m_compareMode), index);
}

TObject* TVectorBase::BinaryFindEqualOrGreater(TObject const& target, int* index) const
{
    return Found(Data(), BinarySearch<true, false, EOnEqual::stop>(Data(), m_count, target, m_compareMode), index);
}

TObject* TVectorBase::BinaryFindClosestGreater(TObject const& target, int* index) const
{
    return Found(Data(), BinarySearch<true, false, EOnEqual::goRight>(Data(), m_count, target, m_compareMode), index);
}

TObject* TVectorBase::BinaryFindClosestSmaller(TObject const& target, int* index) const
{
    return Found(Data(), BinarySearch<false, true, EOnEqual::goLeft>(Data(), m_count, target, m_compareMode), index);
}

TObject* TVectorBase::BinaryFindEqualOrSmaller(TObject const& target, int* index) const
{
    return Found(Data(), BinarySearch<false, true, EOnEqual::stop>(Data(), m_count, target, m_compareMode), index);
}

void TVectorBase::ForEach(TElementFn fn, void* data) const
{
    for (int i = 0; i < m_count; ++i)
        fn(Data()[i], data);
}

TObject* TVectorBase::FindFirstThat(TPredicate predicate, void* data, int* index) const
{
    for (int i = 0; i < m_count; ++i)
        if (predicate(Data()[i], data))
            return Found(Data(), i, index);
    return Found(Data(), -1, index);
}

TObject* TVectorBase::FindLastThat(TPredicate predicate, void* data, int* index) const
{
    for (int i = m_count - 1; i >= 0; --i)
        if (predicate(Data()[i], data))
            return Found(Data(), i, index);
    return Found(Data(), -1, index);
}

int TVectorBase::CountWritableElements(long long context) const
{
    if (HasPlainElements())
        return m_count;
    int count = 0;
    for (int i = 0; i < m_count; ++i)
        count += Data()[i]->CanWrite(context) ? 1 : 0;
    return count;
}
