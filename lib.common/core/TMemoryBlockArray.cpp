#include "core/TMemoryBlockArray.h"

TMemoryBlockArray::TMemoryBlockArray()
    : m_free(sizeof(TMemoryBlock), 8, 8)
    , m_allocated(0)
{
}

TMemoryBlockArray::~TMemoryBlockArray() = default;

void TMemoryBlockArray::Push(TMemoryBlock& block)
{
    m_free.AppendSlot(&block);
    block.Clear();
}

bool TMemoryBlockArray::Pop(TMemoryBlock& block)
{
    int const count = m_free.GetNumBusySlots();
    if (count == 0) {
        block.Clear();
        return false;
    }
    block = *static_cast<TMemoryBlock const*>(m_free.ConstSlotPtr(count - 1));
    m_free.DecNumBusySlots();
    return true;
}

int TMemoryBlockArray::ReleaseAll(TRelease release, bool freeSlots)
{
    int const count = m_free.GetNumBusySlots();
    for (int i = 0; i < count; ++i)
        release(*static_cast<TMemoryBlock const*>(m_free.ConstSlotPtr(i)));
    m_free.SetNumBusySlots(0);
    if (freeSlots)
        m_free.FreeMemory();
    return count;
}
