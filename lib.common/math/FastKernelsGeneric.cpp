#include "math/FastKernels.h"

#include <cstring>

void* GenericCopy(void const* source, void* target, size_t size)
{
    return std::memcpy(target, source, size);
}

void* GenericMove(void const* source, void* target, size_t size)
{
    return std::memmove(target, source, size);
}

void GenericZero(void* target, size_t size)
{
    std::memset(target, 0, size);
}

void GenericFill(void* target, uint64_t pattern, size_t size)
{
    auto* t = static_cast<unsigned char*>(target);
    if (size >= 8) {
        size_t at = 0;
        for (; at + 8 <= size; at += 8)
            std::memcpy(t + at, &pattern, 8);
        // The last word may overlap: size is a multiple of the element size,
        // so the pattern lines up there too.
        if (at < size)
            std::memcpy(t + size - 8, &pattern, 8);
        return;
    }
    unsigned char bytes[8];
    std::memcpy(bytes, &pattern, 8);
    std::memcpy(t, bytes, size);
}

bool GenericIsZero(void const* data, size_t size)
{
    auto const* p = static_cast<unsigned char const*>(data);
    size_t at = 0;
    for (; at + 32 <= size; at += 32) {
        uint64_t w[4];
        std::memcpy(w, p + at, 32);
        if ((w[0] | w[1] | w[2] | w[3]) != 0)
            return false;
    }
    unsigned char rest = 0;
    for (; at < size; ++at)
        rest |= p[at];
    return rest == 0;
}
