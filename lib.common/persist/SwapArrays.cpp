#include "persist/SwapArrays.h"

#include "persist/ByteSwap.h"

#include "platform/PlatformCpu.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define COMMON_SHUFFLE_SWAP 1
#endif

namespace {

template <class T>
void SwapPlain(unsigned char* data, unsigned int count)
{
    for (unsigned int i = 0; i < count; ++i) {
        T value;
        std::memcpy(&value, data + i * sizeof(T), sizeof(T));
        value = SwapBytes(value);
        std::memcpy(data + i * sizeof(T), &value, sizeof(T));
    }
}

#ifdef COMMON_SHUFFLE_SWAP
// Below these counts the shuffle setup does not pay.
constexpr unsigned int kMinBlockBytes = 64;

__attribute__((target("ssse3"))) unsigned int SwapBlocks(unsigned char* data, unsigned int bytes, int width)
{
    __m128i mask;
    if (width == 2)
        mask = _mm_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14);
    else if (width == 4)
        mask = _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12);
    else
        mask = _mm_setr_epi8(7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8);
    unsigned int const blocks = bytes / 64;
    for (unsigned int b = 0; b < blocks; ++b) {
        auto* p = reinterpret_cast<__m128i*>(data + b * 64);
        __m128i x0 = _mm_loadu_si128(p);
        __m128i x1 = _mm_loadu_si128(p + 1);
        __m128i x2 = _mm_loadu_si128(p + 2);
        __m128i x3 = _mm_loadu_si128(p + 3);
        _mm_storeu_si128(p, _mm_shuffle_epi8(x0, mask));
        _mm_storeu_si128(p + 1, _mm_shuffle_epi8(x1, mask));
        _mm_storeu_si128(p + 2, _mm_shuffle_epi8(x2, mask));
        _mm_storeu_si128(p + 3, _mm_shuffle_epi8(x3, mask));
    }
    return blocks * 64;
}

bool HasShuffle()
{
    // Every processor with SSE4.1 has SSSE3's byte shuffle.
    static bool const has = (PlatformCpuFeatures() & eCpuSse41) != 0;
    return has;
}
#endif

template <class T>
void SwapArrayOf(void* data, unsigned int count)
{
    auto* bytes = static_cast<unsigned char*>(data);
    unsigned int done = 0;
#ifdef COMMON_SHUFFLE_SWAP
    unsigned int const total = count * sizeof(T);
    if (total >= kMinBlockBytes && HasShuffle())
        done = SwapBlocks(bytes, total, sizeof(T)) / sizeof(T);
#endif
    SwapPlain<T>(bytes + done * sizeof(T), count - done);
}

} // namespace

void SwapArray16(void* data, unsigned int count) { SwapArrayOf<uint16_t>(data, count); }
void SwapArray32(void* data, unsigned int count) { SwapArrayOf<uint32_t>(data, count); }
void SwapArray64(void* data, unsigned int count) { SwapArrayOf<uint64_t>(data, count); }
