#pragma once

#include "core/CommonExport.h"

#include <cstddef>
#include <cstring>

// Byte moves, source before target (the reverse of memcpy). Sizes below 64
// are handled inline; larger ones go to the kernels picked for the processor.

COMMON_EXPORT void* FastCopyKernel(void const* source, void* target, size_t size);
COMMON_EXPORT void* FastMoveKernel(void const* source, void* target, size_t size);
COMMON_EXPORT void FastZeroKernel(void* target, size_t size);

// A size whose low 32 bits read as a negative number copies nothing.
inline void* FastCopyEx(void const* source, void* target, size_t size)
{
    if (source == target)
        return target;
    int const small = static_cast<int>(static_cast<unsigned>(size));
    if (small >= 64)
        return FastCopyKernel(source, target, size);
    if (small > 0)
        std::memcpy(target, source, static_cast<size_t>(small));
    return target;
}

inline void* FastMoveEx(void const* source, void* target, int size)
{
    if (source == target)
        return target;
    if (size >= 64)
        return FastMoveKernel(source, target, static_cast<size_t>(size));
    if (size > 0)
        std::memmove(target, source, static_cast<size_t>(size));
    return target;
}

inline void FastZeroEx(void* target, int size)
{
    if (!target)
        return;
    if (size >= 64)
        FastZeroKernel(target, static_cast<size_t>(size));
    else if (size > 0)
        std::memset(target, 0, static_cast<size_t>(size));
}
