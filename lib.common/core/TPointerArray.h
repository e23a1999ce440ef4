#pragma once

#include "core/TSlotSequence.h"

// A slot sequence of plain pointers, read and written as such. The pointers
// are never owned.
class COMMON_EXPORT TPointerArray : public TSlotSequence
{
public:
    explicit TPointerArray(int initialSlots = 20, int expansionSize = 20)
        : TSlotSequence(sizeof(void*), initialSlots, expansionSize)
    {
    }

    void* operator[](int index) const { return Data()[index]; }
    void* At(int index) const { return Data()[index]; }
    void Set(int index, void* pointer) { Data()[index] = pointer; }
    void Add(void* pointer) { *static_cast<void**>(AppendSlot()) = pointer; }
    void Insert(void* pointer, int index) { InsertSlot(&pointer, index); }
    void Cut(int index) { CutSlots(index, 1); }

    int IndexOf(void const* pointer) const
    {
        for (int i = 0; i < m_count; ++i)
            if (Data()[i] == pointer)
                return i;
        return -1;
    }
    bool Contains(void const* pointer) const { return IndexOf(pointer) >= 0; }
    // Cuts the first occurrence; false when there is none.
    bool Remove(void const* pointer)
    {
        int const index = IndexOf(pointer);
        if (index < 0)
            return false;
        Cut(index);
        return true;
    }

private:
    void** Data() const { return reinterpret_cast<void**>(m_slots); }
};
