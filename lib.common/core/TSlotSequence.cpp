#include "core/TSlotSequence.h"

#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"
#include "math/TRandomizer.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

// Blocks from this size on grow geometrically behind their reported capacity.
constexpr int64_t kReserveThreshold = 64 * 1024;

// A step below 1 would divide by zero; it means no rounding.
int RoundUp(int value, int step)
{
    return step > 0 ? (value + step - 1) / step * step : value;
}

template <class Word>
void ReverseWords(void* slots, int count)
{
    auto* words = static_cast<Word*>(slots);
    for (int i = 0, j = count - 1; i < j; ++i, --j)
        std::swap(words[i], words[j]);
}

template <class Word>
void StableSortWords(void* slots, int count, TSlotSequence::TComparer comparer)
{
    auto* words = static_cast<Word*>(slots);
    std::stable_sort(words, words + count, [comparer](Word const& a, Word const& b) { return comparer(&a, &b) < 0; });
}

} // namespace

TSlotSequence::TSlotSequence(int slotSize, int initialSlots, int expansionSize, EAutoDelete autoDelete,
                             TObjectFactory factory, SlabHeap::THeap* heap)
    : TCollection(autoDelete, factory)
    , m_slots(nullptr)
    , m_numSlots(0)
    , m_expansionSize(expansionSize)
    , m_initialSlots(initialSlots)
    , m_slotSize(slotSize)
    , m_heap(heap)
    , m_allocatedSlots(0)
{
}

TSlotSequence::TSlotSequence(TSlotSequence const& other, bool copyContent)
    : TCollection(other)
    , m_slots(nullptr)
    , m_numSlots(0)
    , m_expansionSize(other.m_expansionSize)
    , m_initialSlots(other.m_initialSlots)
    , m_slotSize(other.m_slotSize)
    , m_heap(other.m_heap)
    , m_allocatedSlots(0)
{
    if (copyContent) {
        Assign(other, true);
        m_count = other.m_count;
    }
}

TSlotSequence& TSlotSequence::operator=(TSlotSequence const& other)
{
    if (&other != this) {
        Assign(other, true);
        m_count = other.m_count;
    }
    return *this;
}

TSlotSequence::~TSlotSequence()
{
    ReleaseBlock();
}

void TSlotSequence::ReleaseBlock()
{
    free_ex(m_slots);
    m_slots = nullptr;
    m_numSlots = 0;
    m_allocatedSlots = 0;
}

void TSlotSequence::ResizeSlotBuffer(int numSlots, bool round)
{
    int target;
    if (!m_slots)
        target = round ? RoundUp(numSlots, m_expansionSize) : numSlots;
    else if (numSlots > m_numSlots)
        target = m_numSlots + (round ? RoundUp(numSlots - m_numSlots, m_expansionSize) : numSlots - m_numSlots);
    else if (numSlots > m_allocatedSlots)
        target = m_numSlots; // after OptimizeSize: give back what it still reports
    else
        return;
    if (target <= 0)
        return;
    if (target > m_allocatedSlots) {
        // The reported capacity grows by the linear rule. A large block grown
        // a step at a time gets half its size again behind the scenes, so
        // that appending stays amortised constant instead of quadratic.
        int64_t allocate = target;
        int64_t const blockBytes = static_cast<int64_t>(m_allocatedSlots) * m_slotSize;
        if (round && blockBytes >= kReserveThreshold)
            allocate = std::max<int64_t>(allocate, m_allocatedSlots + m_allocatedSlots / 2);
        allocate = std::min<int64_t>(allocate, std::max<int64_t>(target, INT_MAX / m_slotSize));
        m_slots = static_cast<unsigned char*>(realloc_ex(m_slots, static_cast<int>(allocate * m_slotSize)));
        m_allocatedSlots = static_cast<int>(allocate);
    }
    m_numSlots = std::max(m_numSlots, target);
}

void TSlotSequence::GrowForOneMore()
{
    ResizeSlotBuffer(m_count + 1, true);
}

void TSlotSequence::MoveSlots(int from, int to, int count)
{
    FastMoveEx(SlotPtr(from), SlotPtr(to), GetRangeSize(count));
}

void TSlotSequence::AllocateBusySlots(int numSlots)
{
    if (numSlots == 0)
        return;
    ResizeSlotBuffer(numSlots, false);
    m_count = numSlots;
}

void TSlotSequence::OptimizeSize()
{
    if (m_count == 0) {
        FreeMemory();
        return;
    }
    if (m_count >= m_allocatedSlots)
        return;
    m_slots = static_cast<unsigned char*>(realloc_ex(m_slots, m_count * m_slotSize));
    m_allocatedSlots = m_count;
}

void TSlotSequence::FreeMemory()
{
    if (!m_slots)
        return;
    ReleaseBlock();
    m_count = 0;
}

void TSlotSequence::ClearAll()
{
    FastZeroEx(m_slots, m_count * m_slotSize);
}

void* TSlotSequence::AppendSlot(void const* source)
{
    void* slot = AppendSlot();
    FastCopyEx(source, slot, static_cast<size_t>(m_slotSize));
    return slot;
}

void* TSlotSequence::InsertSlot(void const* source, int index)
{
    ResizeSlotBuffer(m_count + 1, true);
    void* slot = SlotPtr(index);
    FastMoveEx(slot, SlotPtr(index + 1), (m_count - index) * m_slotSize);
    if (source)
        FastCopyEx(source, slot, static_cast<size_t>(m_slotSize));
    ++m_count;
    return slot;
}

void TSlotSequence::FillSlot(int index, void const* source)
{
    FastCopyEx(source, SlotPtr(index), static_cast<size_t>(m_slotSize));
}

void TSlotSequence::Insert(TSlotSequence const& other, int position, bool reserveOnly)
{
    int const added = other.m_count;
    if (added <= 0)
        return;
    ResizeSlotBuffer(m_count + added, false);
    FastMoveEx(SlotPtr(position), SlotPtr(position + added), (m_count - position) * m_slotSize);
    if (reserveOnly)
        return;
    if (&other == this) {
        // Own slots now stand on both sides of the gap.
        FastCopyEx(SlotPtr(0), SlotPtr(position), static_cast<size_t>(GetRangeSize(position)));
        FastCopyEx(SlotPtr(position + added), SlotPtr(2 * position), static_cast<size_t>(GetRangeSize(added - position)));
    } else {
        FastCopyEx(other.m_slots, SlotPtr(position), static_cast<size_t>(GetRangeSize(added)));
    }
    m_count += added;
}

void TSlotSequence::Assign(TSlotSequence const& other, bool copyContent)
{
    if (&other == this)
        return;
    ReleaseBlock();
    TCollection::operator=(other);
    m_expansionSize = other.m_expansionSize;
    m_initialSlots = other.m_initialSlots;
    m_slotSize = other.m_slotSize;
    m_heap = other.m_heap;
    if (!copyContent || !other.m_slots || other.m_numSlots <= 0)
        return;
    // The block may be smaller than the reported capacity (after
    // OptimizeSize) or larger (a reserve): copy what both have.
    int const bytes = other.m_numSlots * m_slotSize;
    try {
        m_slots = static_cast<unsigned char*>(malloc_ex(bytes));
    } catch (...) {
        m_slots = nullptr;
        m_numSlots = 0;
        throw;
    }
    m_numSlots = other.m_numSlots;
    m_allocatedSlots = other.m_numSlots;
    FastCopyEx(other.m_slots, m_slots, static_cast<size_t>(std::min(other.m_allocatedSlots, other.m_numSlots)) * m_slotSize);
}

void TSlotSequence::Absorb(TSlotSequence& other, int position)
{
    if (&other == this)
        return;
    Insert(other, position, false);
    other.FreeMemory();
    other.m_count = 0;
}

void TSlotSequence::CutSlots(int position, int count)
{
    m_count -= count;
    FastMoveEx(SlotPtr(position + count), SlotPtr(position), (m_count - position) * m_slotSize);
}

void TSlotSequence::Sort(TComparer comparer)
{
    if (m_count < 2)
        return;
    // qsort leaves the order of equal slots to the C library; the one here
    // sorts by a stable merge. For word-sized slots std::stable_sort gives
    // that same order, calling comparer the same way, in less time.
    if (m_slotSize == 4)
        StableSortWords<uint32_t>(m_slots, m_count, comparer);
    else if (m_slotSize == 8)
        StableSortWords<uint64_t>(m_slots, m_count, comparer);
    else
        std::qsort(m_slots, static_cast<size_t>(m_count), static_cast<size_t>(m_slotSize), comparer);
}

void TSlotSequence::Reverse()
{
    for (int i = 0, j = m_count - 1; i < j; ++i, --j)
        SwapBinaryData(SlotPtr(i), SlotPtr(j), m_slotSize);
}

void TSlotSequence::InverseOrder()
{
    if (m_slotSize == 4)
        ReverseWords<uint32_t>(m_slots, m_count);
    else if (m_slotSize == 8)
        ReverseWords<uint64_t>(m_slots, m_count);
    else
        Reverse();
}

void TSlotSequence::Shuffle(int seed)
{
    if (m_count <= 1)
        return;
    TRandomizer randomizer(static_cast<uint64_t>(static_cast<int64_t>(seed)));
    for (int i = 0, j = m_count - 1; i < m_count - 1; ++i, --j)
        SwapBinaryData(SlotPtr(randomizer.Get(m_count - i)), SlotPtr(j), m_slotSize);
}

void TSlotSequence::SwapWith(TSlotSequence& other)
{
    TCollection::SwapWith(other);
    std::swap(m_slots, other.m_slots);
    std::swap(m_numSlots, other.m_numSlots);
    std::swap(m_expansionSize, other.m_expansionSize);
    std::swap(m_initialSlots, other.m_initialSlots);
    std::swap(m_slotSize, other.m_slotSize);
    std::swap(m_heap, other.m_heap);
    std::swap(m_allocatedSlots, other.m_allocatedSlots);
}
