#pragma once

#include "core/TMemoryBlock.h"
#include "core/TSlotSequence.h"

#include <atomic>

// The free blocks of one size class, plus a count of the blocks that exist
// for the class. The owner locks; only the count is atomic, so it may be read
// without the lock.
class COMMON_EXPORT TMemoryBlockArray
{
public:
    using TRelease = void (*)(TMemoryBlock const& block);

    TMemoryBlockArray();
    TMemoryBlockArray(TMemoryBlockArray const&) = delete;
    TMemoryBlockArray& operator=(TMemoryBlockArray const&) = delete;
    ~TMemoryBlockArray();

    int NumFree() const { return m_free.GetNumBusySlots(); }
    int NumAllocated() const { return m_allocated.load(std::memory_order_relaxed); }
    void AddToAllocated(int delta) { m_allocated.fetch_add(delta, std::memory_order_relaxed); }

    // Keeps block as free and empties it.
    void Push(TMemoryBlock& block);
    // The last free block into block; false, with block empty, when none.
    bool Pop(TMemoryBlock& block);
    // Hands every free block to release and forgets it; with freeSlots the
    // array's own memory goes too. Returns the number released; the count
    // of allocated blocks is the owner's to adjust.
    int ReleaseAll(TRelease release, bool freeSlots);

private:
    TSlotSequence m_free;
    std::atomic<int> m_allocated;
};
