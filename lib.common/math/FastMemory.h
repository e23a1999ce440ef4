#pragma once

#include "core/CommonExport.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Byte moves, source before target (the reverse of memcpy). Sizes below 64
// are handled inline; larger ones go to kernels picked for the processor.

#if defined(__GNUC__)
#define COMMON_ALWAYS_INLINE inline __attribute__((always_inline))
#else
#define COMMON_ALWAYS_INLINE inline
#endif

// The kernels of one dispatch level.
struct TFastMemoryKernels
{
    void* (*copy)(void const* source, void* target, size_t size);
    void* (*move)(void const* source, void* target, size_t size);
    void (*zero)(void* target, size_t size);
    // Fills size bytes with an 8-byte pattern whose period divides 8 and
    // divides size: the pattern of one element repeated.
    void (*fill)(void* target, uint64_t pattern, size_t size);
};

// One row per level, indexed by the one process-wide level number; row 0
// picks the level on its first use and calls on. Read inline, so that a
// large move costs one indirect call, as a call of the C library does.
extern COMMON_EXPORT TFastMemoryKernels const g_fastMemoryKernels[];
extern COMMON_EXPORT std::atomic<int> g_fastMemoryLevel;

inline TFastMemoryKernels const& FastMemoryKernels()
{
    return g_fastMemoryKernels[g_fastMemoryLevel.load(std::memory_order_relaxed)];
}

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
#if defined(__GNUC__)
    // Held in one vector register.
    typedef unsigned char TBlock16 __attribute__((vector_size(16)));
#else
    struct TBlock16
    {
        unsigned char bytes[16];
    };
#endif

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
    COMMON_ALWAYS_INLINE static void CopyUpTo32(void const* source, void* target, int size)
    {
        auto const* s = static_cast<unsigned char const*>(source);
        auto* t = static_cast<unsigned char*>(target);
        switch (size) {
            COMMON_FAST_RUN_CASES(COMMON_FAST_COPY_CASE)
        default:
            return;
        }
    }

    COMMON_ALWAYS_INLINE static void ZeroUpTo32(void* target, int size)
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

    // Two 32-byte moves that overlap in the middle cover any size from 33 to
    // 64 without a call; the ranges of a copy don't overlap, so the order of
    // the loads and stores doesn't matter.
    COMMON_ALWAYS_INLINE static void Copy33To63(void const* source, void* target, int size)
    {
        auto const* s = static_cast<unsigned char const*>(source);
        auto* t = static_cast<unsigned char*>(target);
        TBlock16 a, b, c, d;
        std::memcpy(&a, s, 16);
        std::memcpy(&b, s + 16, 16);
        std::memcpy(&c, s + size - 32, 16);
        std::memcpy(&d, s + size - 16, 16);
        std::memcpy(t, &a, 16);
        std::memcpy(t + 16, &b, 16);
        std::memcpy(t + size - 32, &c, 16);
        std::memcpy(t + size - 16, &d, 16);
    }

    // size is 1 to 63. Every load comes before every store, so the ranges
    // may overlap either way: a head and a tail block of the largest width
    // that fits cover the range. Above 32 bytes the C library's wider moves
    // win when a move reads what the last one wrote, so it keeps those.
    COMMON_ALWAYS_INLINE static void MoveUpTo63(void const* source, void* target, int size)
    {
        auto const* s = static_cast<unsigned char const*>(source);
        auto* t = static_cast<unsigned char*>(target);
        if (size > 32) {
            std::memmove(t, s, Opaque(size));
        } else if (size >= 16) {
            MoveHeadTail<TBlock16>(s, t, size);
        } else if (size >= 8) {
            MoveHeadTail<uint64_t>(s, t, size);
        } else if (size >= 4) {
            MoveHeadTail<uint32_t>(s, t, size);
        } else if (size >= 2) {
            MoveHeadTail<uint16_t>(s, t, size);
        } else {
            *t = *s;
        }
    }

    // Knowing that a size is 33 to 63, the compiler may replace the call of
    // the C library by a string instruction that is slower at such sizes.
    static size_t Opaque(int size)
    {
        size_t n = static_cast<size_t>(size);
#if defined(__GNUC__)
        __asm__("" : "+r"(n));
#endif
        return n;
    }

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
    // sizeof(W) <= size <= 2 * sizeof(W).
    template <class W> COMMON_ALWAYS_INLINE static void MoveHeadTail(unsigned char const* s, unsigned char* t, int size)
    {
        W head, tail;
        std::memcpy(&head, s, sizeof(W));
        std::memcpy(&tail, s + size - sizeof(W), sizeof(W));
        std::memcpy(t, &head, sizeof(W));
        std::memcpy(t + size - sizeof(W), &tail, sizeof(W));
    }

    static constexpr size_t Step(size_t n)
    {
        return n >= 16 ? 16 : n >= 8 ? 8 : n >= 4 ? 4 : n >= 2 ? 2 : 1;
    }
};

// The result is target. Only the low 32 bits of size, read as a signed
// number, choose the path: with bit 31 set nothing is copied.
COMMON_ALWAYS_INLINE void* FastCopyEx(void const* source, void* target, size_t size)
{
    if (source == target)
        return target;
    int const low = static_cast<int>(static_cast<uint32_t>(size));
    if (low >= 64)
        return FastMemoryKernels().copy(source, target, size);
    if (low > 32)
        TFastMemoryRun::Copy33To63(source, target, low);
    else if (low > 0)
        TFastMemoryRun::CopyUpTo32(source, target, low);
    return target;
}

// The ranges may overlap.
COMMON_ALWAYS_INLINE void* FastMoveEx(void const* source, void* target, int size)
{
    if (source == target)
        return target;
    if (size >= 64)
        return FastMemoryKernels().move(source, target, static_cast<size_t>(size));
    if (size > 0)
        TFastMemoryRun::MoveUpTo63(source, target, size);
    return target;
}

COMMON_ALWAYS_INLINE void FastZeroEx(void* target, int size)
{
    if (!target)
        return;
    if (size >= 64)
        FastMemoryKernels().zero(target, static_cast<size_t>(size));
    else if (size > 32)
        std::memset(target, 0, TFastMemoryRun::Opaque(size));
    else if (size > 0)
        TFastMemoryRun::ZeroUpTo32(target, size);
}

// For char, short, int, long long, float and double.
template <class T> inline void FastFill(T* target, T value, int count)
{
    if (count <= 0)
        return;
    FastMemoryKernels().fill(target, TFastMemoryRun::Pattern(value), static_cast<size_t>(count) * sizeof(T));
}
