#include "math/FastMemory.h"

#include "math/FastKernels.h"
#include "platform/PlatformCpu.h"
#include "platform/PlatformMemory.h"

#include <atomic>

namespace {

// Row 0 serves calls made before the level is picked: it picks it and calls
// on. So the library works whether or not its start has run yet.
void* PickThenCopy(void const* source, void* target, size_t size)
{
    InitFastMemoryDispatch();
    return FastMemoryKernels().copy(source, target, size);
}

void* PickThenMove(void const* source, void* target, size_t size)
{
    InitFastMemoryDispatch();
    return FastMemoryKernels().move(source, target, size);
}

void PickThenZero(void* target, size_t size)
{
    InitFastMemoryDispatch();
    FastMemoryKernels().zero(target, size);
}

void PickThenFill(void* target, uint64_t pattern, size_t size)
{
    InitFastMemoryDispatch();
    FastMemoryKernels().fill(target, pattern, size);
}

bool PickThenIsZero(void const* data, size_t size)
{
    InitFastMemoryDispatch();
    return FastKernels().isZero(data, size);
}

uint32_t PickThenCrc32(uint32_t crc, void const* data, size_t size)
{
    InitFastMemoryDispatch();
    return FastKernels().crc32(crc, data, size);
}

size_t PickThenEncode(unsigned char const* data, size_t size, char* text)
{
    InitFastMemoryDispatch();
    return FastKernels().base64Encode(data, size, text);
}

size_t PickThenDecode(unsigned char const* text, size_t length, unsigned char* data)
{
    InitFastMemoryDispatch();
    return FastKernels().base64Decode(text, length, data);
}

constexpr TFastKernels s_kernels[] = {
    { PickThenIsZero, PickThenCrc32, PickThenEncode, PickThenDecode },
    { GenericIsZero, Crc32Tables, Base64EncodeWords, Base64DecodeWords },
#if COMMON_X86_KERNELS
    { Avx2IsZero, Crc32Pclmul, Avx2Base64Encode, Avx2Base64Decode },
    { Avx2IsZero, Crc32Vpclmul, Avx2Base64Encode, Avx2Base64Decode },
#endif
};

constexpr int kLevelCount = static_cast<int>(sizeof(s_kernels) / sizeof(s_kernels[0]));

bool CanRunLevel(int level)
{
    if (level < 1 || level >= kLevelCount)
        return false;
    unsigned const features = PlatformCpuFeatures();
    unsigned const level2 = eCpuSse41 | eCpuPclmul | eCpuAvx2;
    unsigned const level3 = level2 | eCpuAvx512 | eCpuVpclmul;
    switch (level) {
    case 2:
        return (features & level2) == level2;
    case 3:
        return (features & level3) == level3;
    default:
        return true;
    }
}

} // namespace

TFastMemoryKernels const g_fastMemoryKernels[] = {
    { PickThenCopy, PickThenMove, PickThenZero, PickThenFill },
    { GenericCopy, GenericMove, GenericZero, GenericFill },
#if COMMON_X86_KERNELS
    { Avx2Copy, Avx2Move, Avx2Zero, Avx2Fill },
    { Avx512Copy, Avx512Move, Avx2Zero, Avx2Fill },
#endif
};

static_assert(sizeof(g_fastMemoryKernels) / sizeof(g_fastMemoryKernels[0]) == kLevelCount, "one row per level");

std::atomic<int> g_fastMemoryLevel { 0 };

TFastKernels const& FastKernels()
{
    return s_kernels[g_fastMemoryLevel.load(std::memory_order_relaxed)];
}

int BestFastMemoryDispatchLevel()
{
    int level = kLevelCount - 1;
    while (level > 1 && !CanRunLevel(level))
        --level;
    return level;
}

void InitFastMemoryDispatch()
{
    PlatformPageSize();
    // Racing callers store the same number.
    g_fastMemoryLevel.store(BestFastMemoryDispatchLevel(), std::memory_order_relaxed);
}

int FastMemoryDispatchLevel()
{
    if (g_fastMemoryLevel.load(std::memory_order_relaxed) == 0)
        InitFastMemoryDispatch();
    return g_fastMemoryLevel.load(std::memory_order_relaxed);
}

bool SetFastMemoryDispatchLevel(int level)
{
    if (!CanRunLevel(level))
        return false;
    g_fastMemoryLevel.store(level, std::memory_order_relaxed);
    return true;
}

bool IsZeroedMemory(void const* data, int size)
{
    if (size < 1)
        return true;
    return FastKernels().isZero(data, static_cast<size_t>(size));
}

void SwapBinaryData(void* a, void* b, int size)
{
    if (size < 1 || a == b)
        return;
    auto* x = static_cast<unsigned char*>(a);
    auto* y = static_cast<unsigned char*>(b);
    size_t const n = static_cast<size_t>(size);
    size_t at = 0;
    // Whole words only where the ranges are apart; overlapping ones keep the
    // outcome of the byte-by-byte exchange.
    auto const xa = reinterpret_cast<uintptr_t>(x);
    auto const ya = reinterpret_cast<uintptr_t>(y);
    bool const apart = xa + n <= ya || ya + n <= xa;
    if (apart) {
        for (; at + 8 <= n; at += 8) {
            uint64_t u, v;
            std::memcpy(&u, x + at, 8);
            std::memcpy(&v, y + at, 8);
            std::memcpy(x + at, &v, 8);
            std::memcpy(y + at, &u, 8);
        }
    }
    for (; at < n; ++at) {
        unsigned char const t = x[at];
        x[at] = y[at];
        y[at] = t;
    }
}
