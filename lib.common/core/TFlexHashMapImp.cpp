#include "core/TFlexHashMapImp.h"

#include "diag/FailureReporting.h"
#include "diag/LogCategories.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"

#include <algorithm>
#include <climits>
#include <iterator>

namespace {

int const s_tableSizes[] = {
    3, 7, 13, 31, 61, 127, 251, 509, 1021, 2017, 4093, 5987, 9551, 15683, 19609, 31397,
    65521, 131071, 262139, 524287, 1048573, 2097143, 4194301, 8388593, 16777213, 33554393,
    67108859, 134217689, 268435399, 536870909, 1073741789,
};

THashableElement* AsHashable(TListElement* e)
{
    return static_cast<THashableElement*>(e);
}

} // namespace

int TFlexHashMapImp::TableSizeFor(int wanted)
{
    int const* size = std::upper_bound(std::begin(s_tableSizes), std::end(s_tableSizes), wanted);
    return size == std::end(s_tableSizes) ? 0 : *size;
}

TFlexHashMapImp::TFlexHashMapImp(int expectedCount, EAutoDelete autoDelete, TObjectFactory factory)
    : TDoubleList(autoDelete, factory)
    , m_buckets(nullptr)
    , m_numSlots(0)
    , m_autoSize(true)
    , m_slotReciprocal(0)
{
    if (expectedCount > 0)
        if (int const size = TableSizeFor(expectedCount))
            RebuildTable(size);
}

TFlexHashMapImp::TFlexHashMapImp(TFlexHashMapImp const& other)
    : TDoubleList(other, nullptr)
    , m_buckets(nullptr)
    , m_numSlots(other.m_numSlots)
    , m_autoSize(other.m_autoSize)
    , m_slotReciprocal(0)
{
    Remap(-1, true);
}

TFlexHashMapImp& TFlexHashMapImp::operator=(TFlexHashMapImp const& other)
{
    if (&other == this)
        return *this;
    Clear();
    TDoubleList::Assign(other, nullptr);
    m_autoSize = other.m_autoSize;
    Remap(-1, true);
    return *this;
}

TFlexHashMapImp::~TFlexHashMapImp()
{
    FreeTable();
}

void TFlexHashMapImp::SetTable(THashableElement** buckets, int numSlots)
{
    m_buckets = buckets;
    m_numSlots = numSlots;
    m_slotReciprocal = UINT64_MAX / static_cast<unsigned>(numSlots) + 1;
}

void TFlexHashMapImp::FreeTable()
{
    free_ex(m_buckets);
    m_buckets = nullptr;
    m_numSlots = 0;
    m_slotReciprocal = 0;
}

THashableElement* TFlexHashMapImp::Add(THashableElement* e)
{
    if (!m_buckets || (m_autoSize && m_count >= m_numSlots))
        Remap(-1, true);
    if (!m_buckets) {
        // No table could be made: keep the element, unhashed, rather than lose it.
        TDoubleList::Append(e);
        return e;
    }
    return PureAdd(e);
}

THashableElement* TFlexHashMapImp::PureAdd(THashableElement* e)
{
    unsigned const bucket = BucketOf(e->GetHashedValue());
    e->slot = static_cast<int>(bucket);
    THashableElement*& head = m_buckets[bucket];
    if (head) {
        Chain().InsertAfter(e, head);
    } else {
        Chain().Append(e);
        head = e;
    }
    ++m_count;
    return e;
}

THashableElement* TFlexHashMapImp::AddUnique(THashableElement* e, bool* existed)
{
    if (THashableElement* found = FindEqual(*e)) {
        if (existed)
            *existed = true;
        if (ShouldDeleteElements() && found != e)
            e->DeleteSelf();
        return found;
    }
    if (existed)
        *existed = false;
    return Add(e);
}

void TFlexHashMapImp::Add(TFlexHashMapImp const& other)
{
    // Cloned first, so that adding a map to itself sees only the old elements.
    TDoubleList clones(autoDeleteOff);
    for (TListElement* x = other.m_first; x; x = x->next)
        if (TObject* clone = x->CreateClone(nullptr))
            clones.Append(static_cast<THashableElement*>(clone));
    while (TListElement* clone = clones.DetachFirst())
        Add(AsHashable(clone));
}

void TFlexHashMapImp::Absorb(TFlexHashMapImp& other)
{
    if (&other == this)
        return;
    while (other.m_first)
        Add(other.Detach(AsHashable(other.m_first)));
}

THashableElement* TFlexHashMapImp::Detach(THashableElement* e)
{
    if (!e)
        return nullptr;
    if (m_buckets && static_cast<unsigned>(e->slot) < static_cast<unsigned>(m_numSlots) && m_buckets[e->slot] == e) {
        THashableElement* next = AsHashable(e->next);
        m_buckets[e->slot] = next && next->slot == e->slot ? next : nullptr;
    }
    TDoubleList::Detach(e);
    return e;
}

void TFlexHashMapImp::Delete(THashableElement* e)
{
    if (e)
        Detach(e)->DeleteSelf();
}

void TFlexHashMapImp::DetachAll()
{
    TDoubleList::DetachAll();
    FreeTable();
}

void TFlexHashMapImp::DeleteAll()
{
    FreeTable();
    TDoubleList::DeleteAll();
}

void TFlexHashMapImp::Clear()
{
    if (ShouldDeleteElements())
        DeleteAll();
    else
        DetachAll();
}

THashableElement* TFlexHashMapImp::FindEqualOrCreate(THashableElement const& key)
{
    if (THashableElement* found = FindEqual(key))
        return found;
    auto* clone = static_cast<THashableElement*>(key.CreateClone(nullptr));
    return clone ? Add(clone) : nullptr;
}

int TFlexHashMapImp::FindNumEqual(THashableElement const& key) const
{
    return ForEachEqual(key, [](THashableElement*, void*) {}, nullptr);
}

int TFlexHashMapImp::ForEachEqual(THashableElement const& key, TElementFn fn, void* data) const
{
    if (!m_buckets)
        return 0;
    int const bucket = static_cast<int>(BucketOf(key.GetHashedValue()));
    int count = 0;
    for (THashableElement* x = m_buckets[bucket]; x && x->slot == bucket;) {
        THashableElement* next = AsHashable(x->next);
        if (x->IsEqual(key, m_compareMode)) {
            ++count;
            fn(x, data);
        }
        x = next;
    }
    return count;
}

int TFlexHashMapImp::DeleteAllEqual(THashableElement const& key)
{
    // The key may be one of the map's own elements: it goes last, as it is
    // compared with all the others first.
    struct TDeletion
    {
        TFlexHashMapImp* map;
        THashableElement const* key;
        THashableElement* deferred;
    } deletion{this, &key, nullptr};
    int const count = ForEachEqual(key, [](THashableElement* e, void* data) {
        auto* d = static_cast<TDeletion*>(data);
        if (e == d->key)
            d->deferred = e;
        else
            d->map->Delete(e);
    }, &deletion);
    Delete(deletion.deferred);
    return count;
}

void TFlexHashMapImp::NotifyReHashed(THashableElement* e)
{
    if (!e)
        return;
    if (FindIndexOfElement(e) >= 0)
        Detach(e);
    Add(e);
}

void TFlexHashMapImp::Remap(int wanted, bool growOnly)
{
    int size = TableSizeFor(wanted <= 0 ? m_count : wanted);
    if (size <= 0)
        return;
    if (m_buckets) {
        if (size == m_numSlots || (size < m_numSlots && growOnly))
            return;
    } else if (growOnly && m_numSlots > size) {
        // A copy keeps its source's table size. It has no table yet, and must
        // not be left without one.
        size = m_numSlots;
    }
    try {
        RebuildTable(size);
    } catch (...) {
        qCWarning(LogNoGoZone) << "Remap" << 383;
    }
}

void TFlexHashMapImp::RebuildTable(int numSlots)
{
    size_t const bytes = static_cast<size_t>(numSlots) * sizeof(THashableElement*);
    if (bytes > static_cast<size_t>(INT_MAX))
        ThrowIfNoMemory(nullptr);
    auto** table = static_cast<THashableElement**>(malloc_ex(static_cast<int>(bytes)));
    FastZeroEx(table, static_cast<int>(bytes));
    FreeTable();
    SetTable(table, numSlots);

    // Re-add in list order. On a failure the elements not yet re-added go
    // back behind the others, unhashed, so that none is lost.
    TListElement* x = m_first;
    TListElement* const oldLast = m_last;
    int remaining = m_count;
    TDoubleList::DetachAll();
    try {
        while (x) {
            TListElement* next = x->next;
            PureAdd(AsHashable(x));
            --remaining;
            x = x == oldLast ? nullptr : next;
        }
    } catch (...) {
        Chain().Splice(x, oldLast, nullptr);
        m_count += remaining;
        throw;
    }
}
