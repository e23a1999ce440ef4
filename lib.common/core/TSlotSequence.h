#pragma once

#include "core/TCollection.h"

#include <cstddef>

namespace SlabHeap {
class THeap;
}

// A growable array of fixed-size slots of raw bytes, moved by memcpy. The
// count of TCollection is the number of busy slots. The capacity grows
// linearly, by whole multiples of the expansion size.
class COMMON_EXPORT TSlotSequence : public TCollection
{
public:
    using TComparer = int (*)(void const* a, void const* b);

    explicit TSlotSequence(int slotSize, int initialSlots = 20, int expansionSize = 20,
                           EAutoDelete autoDelete = autoDeleteOff, TObjectFactory factory = nullptr,
                           SlabHeap::THeap* heap = nullptr);
    // With copyContent the capacity and the busy slots are copied; without,
    // an empty sequence of the same shape.
    TSlotSequence(TSlotSequence const& other, bool copyContent = true);
    TSlotSequence& operator=(TSlotSequence const& other);
    ~TSlotSequence() override;

    // Read
    int GetNumBusySlots() const { return m_count; }
    int GetNumSlots() const { return m_numSlots; }
    bool IsFull() const { return m_count >= m_numSlots; }
    SlabHeap::THeap* GetHeap() const { return m_heap; }
    int GetSlotSize() const { return m_slotSize; }
    int GetExpansionSize() const { return m_expansionSize; }
    int GetInitialSlots() const { return m_initialSlots; }
    void* SlotPtr(int index) { return m_slots + static_cast<std::ptrdiff_t>(index) * m_slotSize; }
    void const* ConstSlotPtr(int index) const { return m_slots + static_cast<std::ptrdiff_t>(index) * m_slotSize; }
    void* FirstSlot() { return m_slots; }
    void const* GetFirstSlot() const { return m_slots; }
    int GetRangeSize(int numSlots) const { return numSlots * m_slotSize; }
    bool HasAllocatedMemory() const { return m_slots != nullptr; }

    // Size
    void SetExpansionSize(int expansionSize) { m_expansionSize = expansionSize; }
    // Grows, rounded to the expansion size; never shrinks.
    void EnsureNumSlots(int numSlots) { ResizeSlotBuffer(numSlots, true); }
    // Grows exactly to n slots and makes them busy; 0 does nothing.
    void AllocateBusySlots(int numSlots);
    // No check against the capacity.
    void SetNumBusySlots(int numSlots) { m_count = numSlots; }
    void IncNumBusySlots(int by = 1) { m_count += by; }
    void DecNumBusySlots(int by = 1) { m_count -= by; }
    // Shrinks the block to the busy slots but keeps reporting the old
    // capacity: for sequences that no longer grow.
    void OptimizeSize();
    void FreeMemory();
    // Zeroes the bytes of the busy slots; the count stays.
    void ClearAll();
    void ResizeSlotBuffer(int numSlots, bool round);

    // Add
    // A new busy slot at the end, its bytes undefined.
    void* AppendSlot()
    {
        if (m_count >= m_numSlots || m_count >= m_allocatedSlots)
            GrowForOneMore();
        return m_slots + static_cast<std::ptrdiff_t>(m_count++) * m_slotSize;
    }
    void* AppendSlot(void const* source);
    // With a null source the new slot's bytes are left as they are.
    void* InsertSlot(void const* source, int index);
    void FillSlot(int index, void const* source);
    TSlotSequence& operator+=(TSlotSequence const& other)
    {
        Append(other);
        return *this;
    }
    void Append(TSlotSequence const& other) { Insert(other, m_count, false); }
    // Opens a gap of other's count at position, the capacity grown exactly.
    // reserveOnly leaves the gap unfilled and the count as it was.
    void Insert(TSlotSequence const& other, int position, bool reserveOnly);
    // Takes other's shape and, with copyContent, a copy of its whole block.
    // The busy count is 0 afterwards either way; the copy forms set it.
    void Assign(TSlotSequence const& other, bool copyContent);
    // Inserts other's slots and frees other.
    void Absorb(TSlotSequence& other, int position);

    // Remove. No range check.
    void CutSlots(int position, int count);

    // Order
    // Sorts the busy slots as the C library's qsort does; equal slots keep
    // their order.
    void Sort(TComparer comparer);
    void Reverse();
    void InverseOrder();
    void Shuffle(int seed);
    void SwapWith(TSlotSequence& other);

protected:
    void GrowForOneMore();
    // Moves count slots from one index to another; the ranges may overlap.
    void MoveSlots(int from, int to, int count);
    void ReleaseBlock();

    unsigned char* m_slots;
    int m_numSlots;
    int m_expansionSize;
    int m_initialSlots;
    int m_slotSize;
    SlabHeap::THeap* m_heap;
    // The real size of the block. Below m_numSlots after OptimizeSize, which
    // keeps reporting the old capacity; above it when a large block keeps a
    // reserve.
    int m_allocatedSlots;
};
