#pragma once

#include <utility>

// A pointer and the size of the block behind it. On the read path blocks are
// exchanged, not copied; the value itself never frees anything.
struct TMemoryBlock
{
    void* data = nullptr;
    unsigned int size = 0;

    TMemoryBlock() = default;
    TMemoryBlock(void* blockData, unsigned int blockSize) : data(blockData), size(blockSize) {}

    bool IsEmpty() const { return data == nullptr; }
    void Clear()
    {
        data = nullptr;
        size = 0;
    }
    void Exchange(TMemoryBlock& other)
    {
        std::swap(data, other.data);
        std::swap(size, other.size);
    }
    // Takes other's block and leaves other empty.
    void TakeFrom(TMemoryBlock& other)
    {
        data = other.data;
        size = other.size;
        other.Clear();
    }
};
