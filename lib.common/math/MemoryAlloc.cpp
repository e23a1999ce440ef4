#include "math/MemoryAlloc.h"

#include "diag/FailureReporting.h"
#include "math/FastMemory.h"

#include <QByteArray>

#include <cstdlib>

void* malloc_ex(int size)
{
    if (size == 0)
        return nullptr;
    void* block = std::malloc(static_cast<size_t>(static_cast<unsigned>(size)));
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
    void* block = std::realloc(pointer, static_cast<size_t>(static_cast<unsigned>(size)));
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
