#include "math/FastMemory.h"

void* FastCopyKernel(void const* source, void* target, size_t size)
{
    return std::memcpy(target, source, size);
}

void* FastMoveKernel(void const* source, void* target, size_t size)
{
    return std::memmove(target, source, size);
}

void FastZeroKernel(void* target, size_t size)
{
    std::memset(target, 0, size);
}
