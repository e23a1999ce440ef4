#pragma once

#include "core/CommonExport.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Byte moves, source before target (the reverse of memcpy). Sizes below 64
// are handled inline; larger ones go to kernels picked for the processor.

COMMON_EXPORT void* FastCopyKernel(void const* source, void* target, size_t size);
COMMON_EXPORT void* FastMoveKernel(void const* source, void* target, size_t size);
COMMON_EXPORT void FastZeroKernel(void* target, size_t size);
// Fills size bytes with an 8-byte pattern whose period divides 8 and divides
// size: the pattern of one element repeated.
COMMON_EXPORT void FastFillKernel(void* target, uint64_t pattern, size_t size);

// Picks the kernels for this processor. The library's start calls it; until
// then the first kernel call does, so calling it is never required.
COMMON_EXPORT void InitFastMemoryDispatch();
// The kernel set in use: 1 portable, 2 AVX2 and PCLMULQDQ, 3 with AVX-512 and
// VPCLMULQDQ as well.
COMMON_EXPORT int FastMemoryDispatchLevel();
COMMON_EXPORT int BestFastMemoryDispatchLevel();
// For tests and measurements: false, and nothing changed, when the processor
// cannot run the level.
COMMON_EXPORT bool SetFastMemoryDispatchLevel(int level);

COMMON_EXPORT void SwapBinaryData(void* a, void* b, int size);
COMMON_EXPORT bool IsZeroedMemory(void const* data, int size);

// The straight runs for sizes 1 to 32: the largest moves first, each of a
// size known to the compiler, so that none is a call.
class TFastMemoryRun
{
public:
    template <size_t N> static void Copy(unsigned char const* source, unsigned char* target)
    {
        constexpr size_t step = Step(N);
        if constexpr (step == 16)
            std::memmove(target, source, 16);
        else
            std::memcpy(target, source, step);
        if constexpr (N > step)
            Copy<N - step>(source + step, target + step);
    }

    template <size_t N> static void Zero(unsigned char* target)
    {
        constexpr size_t step = Step(N);
        std::memset(target, 0, step);
        if constexpr (N > step)
            Zero<N - step>(target + step);
    }

    // clang-format off
#define COMMON_FAST_RUN_CASES(X) \
    X(1)  X(2)  X(3)  X(4)  X(5)  X(6)  X(7)  X(8)  X(9)  X(10) X(11) X(12) X(13) X(14) X(15) X(16) \
    X(17) X(18) X(19) X(20) X(21) X(22) X(23) X(24) X(25) X(26) X(27) X(28) X(29) X(30) X(31) X(32)
#define COMMON_FAST_COPY_CASE(n) case n: Copy<n>(s, t); return;
#define COMMON_FAST_ZERO_CASE(n) case n: Zero<n>(t); return;
    // clang-format on

    // size is 1 to 32.
    static void CopyUpTo32(void const* source, void* target, int size)
    {
        auto const* s = static_cast<unsigned char const*>(source);
        auto* t = static_cast<unsigned char*>(target);
        switch (size) {
            COMMON_FAST_RUN_CASES(COMMON_FAST_COPY_CASE)
        default:
            return;
        }
    }

    static void ZeroUpTo32(void* target, int size)
    {
        auto* t = static_cast<unsigned char*>(target);
        switch (size) {
            COMMON_FAST_RUN_CASES(COMMON_FAST_ZERO_CASE)
        default:
            return;
        }
    }
#undef COMMON_FAST_ZERO_CASE
#undef COMMON_FAST_COPY_CASE
#undef COMMON_FAST_RUN_CASES

    // One element repeated over 8 bytes.
    template <class T> static uint64_t Pattern(T value)
    {
        static_assert(std::is_arithmetic_v<T> && 8 % sizeof(T) == 0, "FastFill takes plain numbers");
        unsigned char bytes[8];
        for (size_t at = 0; at < 8; at += sizeof(T))
            std::memcpy(bytes + at, &value, sizeof(T));
        uint64_t pattern;
        std::memcpy(&pattern, bytes, 8);
        return pattern;
    }

private:
    static constexpr size_t Step(size_t n)
    {
        return n >= 16 ? 16 : n >= 8 ? 8 : n >= 4 ? 4 : n >= 2 ? 2 : 1;
    }
};

// The result is target. Only the low 32 bits of size, read as a signed
// number, choose the path: with bit 31 set nothing is copied.
inline void* FastCopyEx(void const* source, void* target, size_t size)
{
    if (source == target)
        return target;
    int const low = static_cast<int>(static_cast<uint32_t>(size));
    if (low >= 64)
        return FastCopyKernel(source, target, size);
    if (low <= 0)
        return target;
    if (low <= 32)
        TFastMemoryRun::CopyUpTo32(source, target, low);
    else
        std::memcpy(target, source, static_cast<size_t>(low));
    return target;
}

// The ranges may overlap.
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
    else if (size > 32)
        std::memset(target, 0, static_cast<size_t>(size));
    else if (size > 0)
        TFastMemoryRun::ZeroUpTo32(target, size);
}

// For char, short, int, long long, float and double.
template <class T> inline void FastFill(T* target, T value, int count)
{
    if (count <= 0)
        return;
    FastFillKernel(target, TFastMemoryRun::Pattern(value), static_cast<size_t>(count) * sizeof(T));
}
