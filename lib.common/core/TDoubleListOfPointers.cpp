#include "core/TDoubleListOfPointers.h"

#include "core/OrderSearch.h"
#include "math/MemoryAlloc.h"
#include "math/TRandomizer.h"

#include <utility>

namespace {

TListNode* const kNoNode = nullptr;

TListNode* NextOf(TListNode* node)
{
    return node->next;
}

void* DataOf(TListNode const* node)
{
    return node ? node->data : nullptr;
}

} // namespace

TListOfPointersIteratorImp::TListOfPointersIteratorImp(TDoubleListOfPointers const& list, bool fromEnd)
    : m_node(fromEnd ? list.GetLastNode() : list.GetFirstNode())
{
}

TDoubleListOfPointers::TDoubleListOfPointers(EAutoDelete autoDelete)
    : TCollectionOfPointers(autoDelete)
    , m_first(nullptr)
    , m_last(nullptr)
{
}

TDoubleListOfPointers::TDoubleListOfPointers(TDoubleListOfPointers const& other, void* context)
    : TCollectionOfPointers(other)
    , m_first(nullptr)
    , m_last(nullptr)
{
    Insert(other, nullptr, context);
}

TDoubleListOfPointers& TDoubleListOfPointers::operator=(TDoubleListOfPointers const& other)
{
    Assign(other, nullptr);
    return *this;
}

TDoubleListOfPointers::~TDoubleListOfPointers()
{
    FreeAllNodes(ShouldDeleteElements());
}

TListNode* TDoubleListOfPointers::NewNode(void* e)
{
    auto* node = static_cast<TListNode*>(malloc_ex(sizeof(TListNode)));
    node->data = e;
    return node;
}

void* TDoubleListOfPointers::DetachNode(TListNode* node)
{
    Chain().Unlink(node);
    --m_count;
    void* e = node->data;
    free_ex(node);
    return e;
}

void TDoubleListOfPointers::InsertNodeBefore(TListNode* node, TListNode* where)
{
    Chain().InsertBefore(node, where);
    ++m_count;
}

void TDoubleListOfPointers::FreeAllNodes(bool callDeleter)
{
    TListNode* node = m_first;
    m_first = nullptr;
    m_last = nullptr;
    m_count = 0;
    while (node) {
        TListNode* next = node->next;
        if (callDeleter)
            DeletePointer(node->data);
        free_ex(node);
        node = next;
    }
}

TListNode* TDoubleListOfPointers::FindNode(void const* e) const
{
    for (TListNode* node = m_first; node; node = node->next)
        if (node->data == e)
            return node;
    return nullptr;
}

void* TDoubleListOfPointers::GetNext(void const* e) const
{
    TListNode* node = FindNode(e);
    return node && node->next ? node->next->data : nullptr;
}

void* TDoubleListOfPointers::GetPrev(void const* e) const
{
    TListNode* node = FindNode(e);
    return node && node->prev ? node->prev->data : nullptr;
}

void* TDoubleListOfPointers::operator[](int index) const
{
    TListNode* node = Chain().Nth(index);
    return node ? node->data : nullptr;
}

void* TDoubleListOfPointers::Element(int index) const
{
    TListNode* node = FindNode(index);
    return node ? node->data : nullptr;
}

void* TDoubleListOfPointers::Append(void* e)
{
    InsertNodeBefore(NewNode(e), nullptr);
    return e;
}

void* TDoubleListOfPointers::Prepend(void* e)
{
    InsertNodeBefore(NewNode(e), m_first);
    return e;
}

void* TDoubleListOfPointers::AddUnique(void* e, bool* existed)
{
    if (void* found = FindEqual(e)) {
        if (existed)
            *existed = true;
        if (ShouldDeleteElements() && found != e)
            DeletePointer(e);
        return found;
    }
    if (existed)
        *existed = false;
    return Append(e);
}

void* TDoubleListOfPointers::InsertAfter(void* e, void const* where)
{
    TListNode* node = NewNode(e);
    Chain().InsertAfter(node, where ? FindNode(where) : nullptr);
    ++m_count;
    return e;
}

void* TDoubleListOfPointers::InsertBefore(void* e, void const* where)
{
    InsertNodeBefore(NewNode(e), where ? FindNode(where) : nullptr);
    return e;
}

void* TDoubleListOfPointers::InsertInSortedList(void* e)
{
    TListNode* x = m_first;
    while (x && ComparePointers(e, x->data) >= 0)
        x = x->next;
    InsertNodeBefore(NewNode(e), x);
    return e;
}

void* TDoubleListOfPointers::Detach(void const* e)
{
    TListNode* node = e ? FindNode(e) : nullptr;
    return node ? DetachNode(node) : nullptr;
}

void TDoubleListOfPointers::DetachAll()
{
    FreeAllNodes(false);
}

bool TDoubleListOfPointers::DetachEqual(void const* target)
{
    TListNode* node = m_first;
    while (node && ComparePointers(node->data, target) != 0)
        node = node->next;
    if (!node)
        return false;
    DetachNode(node);
    return true;
}

void TDoubleListOfPointers::Delete(void const* e)
{
    if (TListNode* node = e ? FindNode(e) : nullptr)
        DeletePointer(DetachNode(node));
}

void TDoubleListOfPointers::Delete(int index)
{
    if (TListNode* node = FindNode(index))
        DeletePointer(DetachNode(node));
}

void TDoubleListOfPointers::DeleteFirst()
{
    if (m_first)
        DeletePointer(DetachNode(m_first));
}

void TDoubleListOfPointers::DeleteLast()
{
    if (m_last)
        DeletePointer(DetachNode(m_last));
}

void TDoubleListOfPointers::DeleteAll()
{
    FreeAllNodes(true);
}

bool TDoubleListOfPointers::DeleteEqual(void const* target)
{
    TListNode* node = m_first;
    while (node && ComparePointers(node->data, target) != 0)
        node = node->next;
    if (!node)
        return false;
    DeletePointer(DetachNode(node));
    return true;
}

void TDoubleListOfPointers::DeleteDuplicates()
{
    TListNode* node = m_first;
    while (node) {
        TListNode* next = node->next;
        for (TListNode* later = next; later; later = later->next) {
            if (ComparePointers(node->data, later->data) == 0) {
                DeletePointer(DetachNode(node));
                break;
            }
        }
        node = next;
    }
}

void TDoubleListOfPointers::Clear()
{
    FreeAllNodes(ShouldDeleteElements());
}

void TDoubleListOfPointers::Swap(void const* a, void const* b)
{
    TListNode* nodeA = FindNode(a);
    TListNode* nodeB = FindNode(b);
    if (nodeA && nodeB)
        std::swap(nodeA->data, nodeB->data);
}

void TDoubleListOfPointers::MoveAt(void const* e, void const* where)
{
    TListNode* node = FindNode(e);
    TListNode* whereNode = FindNode(where);
    if (node && whereNode)
        Chain().MoveAt(node, whereNode);
}

void TDoubleListOfPointers::MoveToFront(void const* e)
{
    if (TListNode* node = FindNode(e)) {
        Chain().Unlink(node);
        Chain().Prepend(node);
    }
}

void TDoubleListOfPointers::MoveToEnd(void const* e)
{
    if (TListNode* node = FindNode(e)) {
        Chain().Unlink(node);
        Chain().Append(node);
    }
}

void* TDoubleListOfPointers::Replace(void const* old, void* replacement, bool deleteOld)
{
    if (old == replacement)
        return replacement;
    if (TListNode* node = FindNode(old)) {
        void* previous = node->data;
        node->data = replacement;
        if (deleteOld)
            DeletePointer(previous);
    }
    return replacement;
}

void TDoubleListOfPointers::Sort()
{
    SetSortedFlag(true);
    if (m_count < 2)
        return;
    Chain().Sort(m_count, [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data) < 1; });
}

void TDoubleListOfPointers::Shuffle(int seed)
{
    if (m_count < 2)
        return;
    TRandomizer randomizer(static_cast<uint64_t>(static_cast<int64_t>(seed)));
    TListNode* cursor = m_last;
    for (int i = 0; i < m_count && cursor; ++i) {
        TListNode* picked = Chain().Nth(randomizer.Get(m_count - i));
        TListNode* before = cursor->prev;
        Chain().Swap(picked, cursor);
        cursor = before;
    }
}

void TDoubleListOfPointers::ExchangeElements(TDoubleListOfPointers& listA, void const* a, TDoubleListOfPointers& listB, void const* b)
{
    TListNode* nodeA = listA.FindNode(a);
    TListNode* nodeB = listB.FindNode(b);
    if (nodeA && nodeB)
        std::swap(nodeA->data, nodeB->data);
}

void* TDoubleListOfPointers::FindEqual(void const* target) const
{
    for (TListNode* node = m_first; node; node = node->next)
        if (ComparePointers(node->data, target) == 0)
            return node->data;
    return nullptr;
}

int TDoubleListOfPointers::FindIndexOfEqual(void const* target) const
{
    int index = 0;
    for (TListNode* node = m_first; node; node = node->next, ++index)
        if (ComparePointers(node->data, target) == 0)
            return index;
    return -1;
}

int TDoubleListOfPointers::FindIndexOfElement(void const* e) const
{
    int index = 0;
    for (TListNode* node = m_first; node; node = node->next, ++index)
        if (node->data == e)
            return index;
    return -1;
}

// The searches by order compare with the list's comparer: node with node,
// and node with target.
void* TDoubleListOfPointers::FindSmallest() const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    return DataOf(FindExtreme(m_first, kNoNode, NextOf, -1, order));
}

void* TDoubleListOfPointers::FindGreatest() const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    return DataOf(FindExtreme(m_first, kNoNode, NextOf, 1, order));
}

void* TDoubleListOfPointers::FindClosestSmaller(void const* target) const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    auto const toTarget = [this, target](TListNode* node) { return ComparePointers(node->data, target); };
    return DataOf(FindClosest(m_first, kNoNode, NextOf, -1, false, toTarget, order));
}

void* TDoubleListOfPointers::FindEqualOrSmaller(void const* target) const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    auto const toTarget = [this, target](TListNode* node) { return ComparePointers(node->data, target); };
    return DataOf(FindClosest(m_first, kNoNode, NextOf, -1, true, toTarget, order));
}

void* TDoubleListOfPointers::FindClosestGreater(void const* target) const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    auto const toTarget = [this, target](TListNode* node) { return ComparePointers(node->data, target); };
    return DataOf(FindClosest(m_first, kNoNode, NextOf, 1, false, toTarget, order));
}

void* TDoubleListOfPointers::FindEqualOrGreater(void const* target) const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    auto const toTarget = [this, target](TListNode* node) { return ComparePointers(node->data, target); };
    return DataOf(FindClosest(m_first, kNoNode, NextOf, 1, true, toTarget, order));
}

void* TDoubleListOfPointers::FindFirstThat(TPredicate predicate, void* data) const
{
    for (TListNode* node = m_first; node; node = node->next)
        if (predicate(node->data, data))
            return node->data;
    return nullptr;
}

void* TDoubleListOfPointers::FindLastThat(TPredicate predicate, void* data) const
{
    for (TListNode* node = m_last; node; node = node->prev)
        if (predicate(node->data, data))
            return node->data;
    return nullptr;
}

void TDoubleListOfPointers::ForEach(TElementFn fn, void* data) const
{
    for (TListNode* node = m_first; node;) {
        TListNode* next = node->next;
        fn(node->data, data);
        node = next;
    }
}

void TDoubleListOfPointers::Assign(TDoubleListOfPointers const& other, void* context)
{
    if (&other == this)
        return;
    Clear();
    TCollectionOfPointers::operator=(other);
    Insert(other, nullptr, context);
}

void TDoubleListOfPointers::Insert(TDoubleListOfPointers const& other, void const* where, void* context)
{
    TListNode* whereNode = where ? FindNode(where) : nullptr;
    int remaining = other.m_count;
    for (TListNode* node = other.m_first; node && remaining > 0; node = node->next, --remaining)
        InsertNodeBefore(NewNode(ClonePointer(node->data, context)), whereNode);
}

void TDoubleListOfPointers::Absorb(TDoubleListOfPointers& other, void const* where)
{
    if (&other == this || !other.m_first)
        return;
    Chain().Splice(other.m_first, other.m_last, where ? FindNode(where) : nullptr);
    m_count += other.m_count;
    other.m_first = nullptr;
    other.m_last = nullptr;
    other.m_count = 0;
}

void TDoubleListOfPointers::AbsorbAndSort(TDoubleListOfPointers& other)
{
    if (&other == this)
        return;
    if (IsSortedFlagSet() && other.IsSortedFlagSet()) {
        Chain().MergeFrom(other.m_first, other.m_last, [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data) < 1; });
        m_count += other.m_count;
        other.m_first = nullptr;
        other.m_last = nullptr;
        other.m_count = 0;
        return;
    }
    while (other.m_first) {
        TListNode* node = other.m_first;
        other.Chain().Unlink(node);
        --other.m_count;
        TListNode* x = m_first;
        while (x && ComparePointers(node->data, x->data) >= 0)
            x = x->next;
        InsertNodeBefore(node, x);
    }
}

void TDoubleListOfPointers::Split(TDoubleListOfPointers& other, void const* e)
{
    if (&other == this)
        return;
    other.Clear();
    int kept = 0;
    TListNode* node = m_first;
    for (; node && node->data != e; node = node->next)
        ++kept;
    if (!node)
        return;
    Chain().MoveTailTo(node, other.Chain());
    other.m_count = m_count - kept;
    m_count = kept;
}

void TDoubleListOfPointers::SwapWith(TDoubleListOfPointers& other)
{
    TCollectionOfPointers::SwapWith(other);
    std::swap(m_first, other.m_first);
    std::swap(m_last, other.m_last);
}

bool TDoubleListOfPointers::IsSorted() const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    return IsInOrder(m_first, kNoNode, NextOf, 1, order);
}

bool TDoubleListOfPointers::IsSortedBackwards() const
{
    auto const order = [this](TListNode* a, TListNode* b) { return ComparePointers(a->data, b->data); };
    return IsInOrder(m_first, kNoNode, NextOf, -1, order);
}
