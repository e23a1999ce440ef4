#include "core/TDoubleList.h"

#include "core/OrderSearch.h"
#include "math/TRandomizer.h"

#include <utility>

namespace {

TListElement* const kNoElement = nullptr;

TListElement* NextOf(TListElement* e)
{
    return e->next;
}

struct TByOrder
{
    long long mode;
    int operator()(TListElement const* a, TListElement const* b) const { return a->Compare(*b, mode); }
};

struct TToTarget
{
    TListElement const& target;
    long long mode;
    int operator()(TListElement const* e) const { return e->Compare(target, mode); }
};

} // namespace

TDoubleList::TDoubleList(EAutoDelete autoDelete, TObjectFactory factory)
    : TCollection(autoDelete, factory)
    , m_compareMode(0)
    , m_first(nullptr)
    , m_last(nullptr)
{
}

TDoubleList::TDoubleList(TDoubleList const& other, void* context)
    : TCollection(other)
    , m_compareMode(other.m_compareMode)
    , m_first(nullptr)
    , m_last(nullptr)
{
    Insert(other, nullptr, context);
}

TDoubleList& TDoubleList::operator=(TDoubleList const& other)
{
    Assign(other, nullptr);
    return *this;
}

TDoubleList::~TDoubleList()
{
    if (ShouldDeleteElements() && m_first)
        DeleteAll();
}

TListElement* TDoubleList::operator[](int index) const
{
    return Chain().Nth(index);
}

TListElement* TDoubleList::Element(int index) const
{
    return IsValidIndex(index) ? Chain().Nth(index) : nullptr;
}

TListElement* TDoubleList::Append(TListElement* e)
{
    Chain().Append(e);
    ++m_count;
    return e;
}

TListElement* TDoubleList::Prepend(TListElement* e)
{
    Chain().Prepend(e);
    ++m_count;
    return e;
}

TListElement* TDoubleList::InsertAfter(TListElement* e, TListElement* where)
{
    Chain().InsertAfter(e, where);
    ++m_count;
    return e;
}

TListElement* TDoubleList::InsertBefore(TListElement* e, TListElement* where)
{
    Chain().InsertBefore(e, where);
    ++m_count;
    return e;
}

TListElement* TDoubleList::AddUnique(TListElement* e, bool* existed)
{
    if (TListElement* found = FindEqual(*e)) {
        if (existed)
            *existed = true;
        if (ShouldDeleteElements() && found != e)
            e->DeleteSelf();
        return found;
    }
    if (existed)
        *existed = false;
    return Append(e);
}

TListElement* TDoubleList::InsertInSortedList(TListElement* e)
{
    TListElement* x = m_first;
    while (x && e->Compare(*x, m_compareMode) >= 0)
        x = x->next;
    return InsertBefore(e, x);
}

TListElement* TDoubleList::Detach(TListElement* e)
{
    if (!e)
        return nullptr;
    Chain().Unlink(e);
    e->next = nullptr;
    e->prev = nullptr;
    --m_count;
    return e;
}

void TDoubleList::DetachAll()
{
    m_first = nullptr;
    m_last = nullptr;
    m_count = 0;
}

bool TDoubleList::DetachEqual(TListElement const& target)
{
    TListElement* found = FindEqual(target);
    Detach(found);
    return found != nullptr;
}

void TDoubleList::Delete(TListElement* e)
{
    if (!e)
        return;
    Detach(e);
    e->DeleteSelf();
}

void TDoubleList::Delete(int index)
{
    Delete(Element(index));
}

void TDoubleList::DeleteAll()
{
    TListElement* x = m_first;
    DetachAll();
    while (x) {
        TListElement* next = x->next;
        x->DeleteSelf();
        x = next;
    }
}

bool TDoubleList::DeleteEqual(TListElement const& target)
{
    TListElement* found = FindEqual(target);
    Delete(found);
    return found != nullptr;
}

void TDoubleList::DeleteDuplicates()
{
    TListElement* x = m_first;
    while (x) {
        TListElement* next = x->next;
        for (TListElement* later = next; later; later = later->next) {
            if (x->Compare(*later, m_compareMode) == 0) {
                Delete(x);
                break;
            }
        }
        x = next;
    }
}

void TDoubleList::Clear()
{
    if (ShouldDeleteElements())
        DeleteAll();
    else
        DetachAll();
}

void TDoubleList::Swap(TListElement* a, TListElement* b)
{
    Chain().Swap(a, b);
}

void TDoubleList::MoveAt(TListElement* e, TListElement* where)
{
    Chain().MoveAt(e, where);
}

void TDoubleList::MoveToFront(TListElement* e)
{
    if (e == m_first)
        return;
    Chain().Unlink(e);
    Chain().Prepend(e);
}

void TDoubleList::MoveToEnd(TListElement* e)
{
    if (e == m_last)
        return;
    Chain().Unlink(e);
    Chain().Append(e);
}

TListElement* TDoubleList::Replace(TListElement* old, TListElement* replacement, bool deleteOld)
{
    if (old == replacement)
        return replacement;
    Chain().InsertBefore(replacement, old);
    Chain().Unlink(old);
    old->next = nullptr;
    old->prev = nullptr;
    if (deleteOld)
        old->DeleteSelf();
    return replacement;
}

void TDoubleList::Reverse()
{
    Chain().Reverse();
}

int TDoubleList::Sort(int index)
{
    SetSortedFlag(true);
    if (m_count < 2)
        return index;
    TListElement const* noted = IsValidIndex(index) ? Chain().Nth(index) : nullptr;
    long long const mode = m_compareMode;
    Chain().Sort(m_count, [mode](TListElement* a, TListElement* b) { return a->Compare(*b, mode) < 1; });
    return noted ? Chain().IndexOf(noted) : index;
}

void TDoubleList::Shuffle(int seed)
{
    if (m_count < 2)
        return;
    TRandomizer randomizer(static_cast<uint64_t>(static_cast<int64_t>(seed)));
    TListElement* cursor = m_last;
    // The cursor steps to the predecessor it had before the swap: when the
    // pick was that predecessor, the cursor stays on the placed element.
    for (int i = 0; i < m_count && cursor; ++i) {
        TListElement* picked = Chain().Nth(randomizer.Get(m_count - i));
        TListElement* before = cursor->prev;
        Chain().Swap(picked, cursor);
        cursor = before;
    }
}

void TDoubleList::ExchangeElements(TDoubleList& listA, TListElement* a, TDoubleList& listB, TListElement* b)
{
    if (&listA == &listB) {
        listA.Swap(a, b);
        return;
    }
    TListElement* afterA = a->next;
    TListElement* afterB = b->next;
    listA.Chain().Unlink(a);
    listB.Chain().Unlink(b);
    listA.Chain().InsertBefore(b, afterA);
    listB.Chain().InsertBefore(a, afterB);
}

TListElement* TDoubleList::FindEqual(TListElement const& target) const
{
    for (TListElement* x = m_first; x; x = x->next)
        if (x->IsEqual(target, m_compareMode))
            return x;
    return nullptr;
}

int TDoubleList::FindIndexOfEqual(TListElement const& target) const
{
    int index = 0;
    for (TListElement* x = m_first; x; x = x->next, ++index)
        if (x->Compare(target, m_compareMode) == 0)
            return index;
    return -1;
}

int TDoubleList::FindIndexOfElement(TListElement const* e) const
{
    return Chain().IndexOf(e);
}

TListElement* TDoubleList::FindSmallest() const
{
    return FindExtreme(m_first, kNoElement, NextOf, -1, TByOrder{m_compareMode});
}

TListElement* TDoubleList::FindGreatest() const
{
    return FindExtreme(m_first, kNoElement, NextOf, 1, TByOrder{m_compareMode});
}

TListElement* TDoubleList::FindClosestSmaller(TListElement const& target) const
{
    return FindClosest(m_first, kNoElement, NextOf, -1, false, TToTarget{target, m_compareMode},
                       TByOrder{m_compareMode});
}

TListElement* TDoubleList::FindEqualOrSmaller(TListElement const& target) const
{
    return FindClosest(m_first, kNoElement, NextOf, -1, true, TToTarget{target, m_compareMode},
                       TByOrder{m_compareMode});
}

TListElement* TDoubleList::FindClosestGreater(TListElement const& target) const
{
    return FindClosest(m_first, kNoElement, NextOf, 1, false, TToTarget{target, m_compareMode},
                       TByOrder{m_compareMode});
}

TListElement* TDoubleList::FindEqualOrGreater(TListElement const& target) const
{
    return FindClosest(m_first, kNoElement, NextOf, 1, true, TToTarget{target, m_compareMode},
                       TByOrder{m_compareMode});
}

TListElement* TDoubleList::FindFirstThat(TPredicate predicate, void* data) const
{
    for (TListElement* x = m_first; x; x = x->next)
        if (predicate(x, data))
            return x;
    return nullptr;
}

TListElement* TDoubleList::FindLastThat(TPredicate predicate, void* data) const
{
    for (TListElement* x = m_last; x; x = x->prev)
        if (predicate(x, data))
            return x;
    return nullptr;
}

void TDoubleList::ForEach(TElementFn fn, void* data) const
{
    for (TListElement* x = m_first; x;) {
        TListElement* next = x->next;
        fn(x, data);
        x = next;
    }
}

void TDoubleList::Assign(TDoubleList const& other, void* context)
{
    if (&other == this)
        return;
    Clear();
    TCollection::operator=(other);
    m_compareMode = other.m_compareMode;
    Insert(other, nullptr, context);
}

void TDoubleList::Insert(TDoubleList const& other, TListElement* where, void* context)
{
    // Bounded by the count taken now, so inserting a list into itself ends.
    int remaining = other.m_count;
    for (TListElement* x = other.m_first; x && remaining > 0; x = x->next, --remaining)
        if (TListElement* clone = static_cast<TListElement*>(x->CreateClone(context)))
            InsertBefore(clone, where);
}

void TDoubleList::Absorb(TDoubleList& other, TListElement* where)
{
    if (&other == this || !other.m_first)
        return;
    Chain().Splice(other.m_first, other.m_last, where);
    m_count += other.m_count;
    other.DetachAll();
}

void TDoubleList::AbsorbAndSort(TDoubleList& other)
{
    if (&other == this)
        return;
    if (IsSortedFlagSet() && other.IsSortedFlagSet()) {
        long long const mode = m_compareMode;
        Chain().MergeFrom(other.m_first, other.m_last, [mode](TListElement* a, TListElement* b) { return a->Compare(*b, mode) < 1; });
        m_count += other.m_count;
        other.DetachAll();
        return;
    }
    while (TListElement* e = other.DetachFirst())
        InsertInSortedList(e);
}

void TDoubleList::Split(TDoubleList& other, TListElement* e)
{
    if (&other == this)
        return;
    other.Clear();
    int kept = 0;
    TListElement* x = m_first;
    for (; x && x != e; x = x->next)
        ++kept;
    if (!x)
        return;
    Chain().MoveTailTo(e, other.Chain());
    other.m_count = m_count - kept;
    m_count = kept;
}

void TDoubleList::SwapWith(TDoubleList& other)
{
    TCollection::SwapWith(other);
    std::swap(m_compareMode, other.m_compareMode);
    std::swap(m_first, other.m_first);
    std::swap(m_last, other.m_last);
}

bool TDoubleList::IsSorted() const
{
    return IsInOrder(m_first, kNoElement, NextOf, 1, TByOrder{m_compareMode});
}

bool TDoubleList::IsSortedBackwards() const
{
    return IsInOrder(m_first, kNoElement, NextOf, -1, TByOrder{m_compareMode});
}

int TDoubleList::CountWritableElements(long long context) const
{
    if (HasPlainElements())
        return m_count;
    int count = 0;
    for (TListElement* x = m_first; x; x = x->next)
        count += x->CanWrite(context) ? 1 : 0;
    return count;
}
