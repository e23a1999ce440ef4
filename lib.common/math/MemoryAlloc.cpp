#include "math/MemoryAlloc.h"

#include "diag/FailureReporting.h"
#include "diag/LogCategories.h"
#include "math/FastMemory.h"
#include "platform/PlatformMemory.h"

#include <QByteArray>

#include <cstdlib>

// A negative size reaches malloc as a huge number that no heap can give; it
// fails the same way here without asking.
void* malloc_ex(int size)
{
    if (size == 0)
        return nullptr;
    if (size < 0) {
        ThrowIfNoMemory(nullptr);
        return nullptr;
    }
    void* block = std::malloc(static_cast<size_t>(size));
    if (!block)
        ThrowIfNoMemory(nullptr);
    return block;
}

void* realloc_ex(void* pointer, int size)
{
    if (!pointer)
        return size > 0 ? malloc_ex(size) : nullptr;
    if (size == 0) {
        std::free(pointer);
        return nullptr;
    }
    if (size < 0) {
        ThrowIfNoMemory(nullptr);
        return nullptr;
    }
    void* block = std::realloc(pointer, static_cast<size_t>(size));
    if (!block)
        ThrowIfNoMemory(nullptr);
    return block;
}

void free_ex(void* pointer)
{
    std::free(pointer);
}

void FreeHL(void** pointer)
{
    if (!pointer || !*pointer)
        return;
    std::free(*pointer);
    *pointer = nullptr;
}

void CopyHL(void const* source, int size, void** target, int* targetSize)
{
    FreeHL(target);
    if (source && size > 0 && target) {
        *target = malloc_ex(size);
        FastCopyEx(source, *target, static_cast<size_t>(size));
    }
    if (targetSize)
        *targetSize = size;
}

QByteArray QByteArrayFrom(void const* data, int size)
{
    if (!data || size < 1)
        return QByteArray();
    return QByteArray(static_cast<char const*>(data), size);
}

void* AllocPageAlignedMemory(unsigned int size, ECanException canException)
{
    if (size == 0)
        return nullptr;
    void* block = PlatformAllocPages(size);
    if (!block && canException)
        if (!block)
            ThrowIfNoMemory(nullptr);
    return block;
}

void FreePageAlignedMemory(void* block)
{
    if (block && !PlatformFreePages(block))
        qCWarning(LogNoGoZone) << "FreePageAlignedMemory" << 1;
}

void* ConstSlotPtr(int size, void** slots, int count)
{
    // Without slots, or with blocks of no bytes, the refill would find
    // nothing to take for ever: null instead.
    if (!slots || count <= 0)
        return nullptr;
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = 0; i < count; ++i) {
            if (void* block = slots[i]) {
                slots[i] = nullptr;
                return block;
            }
        }
        if (pass == 0)
            for (int i = count - 1; i >= 0; --i)
                slots[i] = malloc_ex(size);
    }
    return nullptr;
}
