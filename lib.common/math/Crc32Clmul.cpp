// CRC-32 by folding with carry-less multiplication. A 128-bit block A, with
// its first byte lowest, followed by D more bits of data, is congruent to
// lo(A) * x^(D+32) + hi(A) * x^(D-32) placed under the next block; so each
// register is folded forward and the data D bits on is added to it. The last
// register goes through the tables, which is the final reduction.

#include "math/FastKernels.h"

#if COMMON_X86_KERNELS

#include <immintrin.h>

namespace {

// x^n mod P, bit-reflected over 33 bits: the operand that carry-less
// multiplication of reflected data needs.
constexpr uint64_t FoldConstant(unsigned n)
{
    uint64_t r = 1;
    for (unsigned i = 0; i < n; ++i) {
        r <<= 1;
        if (r & 0x100000000ull)
            r ^= 0x104C11DB7ull;
    }
    uint64_t reflected = 0;
    for (int k = 0; k <= 32; ++k)
        if (r & (1ull << k))
            reflected |= 1ull << (32 - k);
    return reflected;
}

// Low and high half of the operand that folds a block D bits forward.
template <unsigned D> struct TFold
{
    static constexpr long long lo = static_cast<long long>(FoldConstant(D + 32));
    static constexpr long long hi = static_cast<long long>(FoldConstant(D - 32));
};

} // namespace

#pragma GCC push_options
#pragma GCC target("sse4.1,pclmul")

namespace {

inline __m128i Load128(unsigned char const* p)
{
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
}

inline __m128i Fold128(__m128i x, __m128i k)
{
    return _mm_xor_si128(_mm_clmulepi64_si128(x, k, 0x00), _mm_clmulepi64_si128(x, k, 0x11));
}

template <unsigned D> inline __m128i Constant128()
{
    return _mm_set_epi64x(TFold<D>::hi, TFold<D>::lo);
}

// One register and whole 16-byte blocks, then the tables.
inline uint32_t Finish128(__m128i x, unsigned char const* p, size_t size)
{
    __m128i const k = Constant128<128>();
    for (; size >= 16; size -= 16, p += 16)
        x = _mm_xor_si128(Fold128(x, k), Load128(p));
    alignas(16) unsigned char last[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(last), x);
    return Crc32Tables(Crc32Tables(0, last, 16), p, size);
}

} // namespace

uint32_t Crc32Pclmul(uint32_t crc, void const* data, size_t size)
{
    if (size < 64)
        return Crc32Tables(crc, data, size);
    auto const* p = static_cast<unsigned char const*>(data);
    __m128i x0 = _mm_xor_si128(Load128(p), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i x1 = Load128(p + 16);
    __m128i x2 = Load128(p + 32);
    __m128i x3 = Load128(p + 48);
    p += 64;
    size -= 64;
    __m128i const k4 = Constant128<512>();
    for (; size >= 64; size -= 64, p += 64) {
        x0 = _mm_xor_si128(Fold128(x0, k4), Load128(p));
        x1 = _mm_xor_si128(Fold128(x1, k4), Load128(p + 16));
        x2 = _mm_xor_si128(Fold128(x2, k4), Load128(p + 32));
        x3 = _mm_xor_si128(Fold128(x3, k4), Load128(p + 48));
    }
    __m128i const k1 = Constant128<128>();
    __m128i x = _mm_xor_si128(Fold128(x0, k1), x1);
    x = _mm_xor_si128(Fold128(x, k1), x2);
    x = _mm_xor_si128(Fold128(x, k1), x3);
    return Finish128(x, p, size);
}

#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("sse4.1,pclmul,avx2,avx512f,avx512bw,avx512vl,vpclmulqdq")

namespace {

inline __m512i Load512(unsigned char const* p)
{
    return _mm512_loadu_si512(p);
}

inline __m512i Fold512(__m512i x, __m512i k, __m512i next)
{
    return _mm512_ternarylogic_epi64(
        _mm512_clmulepi64_epi128(x, k, 0x00), _mm512_clmulepi64_epi128(x, k, 0x11), next, 0x96);
}

template <unsigned D> inline __m512i Constant512()
{
    return _mm512_set_epi64(
        TFold<D>::hi, TFold<D>::lo, TFold<D>::hi, TFold<D>::lo, TFold<D>::hi, TFold<D>::lo, TFold<D>::hi, TFold<D>::lo);
}

} // namespace

uint32_t Crc32Vpclmul(uint32_t crc, void const* data, size_t size)
{
    if (size < 256)
        return Crc32Pclmul(crc, data, size);
    auto const* p = static_cast<unsigned char const*>(data);
    __m512i z0 = _mm512_xor_si512(Load512(p), _mm512_maskz_set1_epi32(1, static_cast<int>(crc)));
    __m512i z1 = Load512(p + 64);
    __m512i z2 = Load512(p + 128);
    __m512i z3 = Load512(p + 192);
    p += 256;
    size -= 256;
    __m512i const k4 = Constant512<2048>();
    for (; size >= 256; size -= 256, p += 256) {
        z0 = Fold512(z0, k4, Load512(p));
        z1 = Fold512(z1, k4, Load512(p + 64));
        z2 = Fold512(z2, k4, Load512(p + 128));
        z3 = Fold512(z3, k4, Load512(p + 192));
    }
    __m512i const k1 = Constant512<512>();
    __m512i z = Fold512(z0, k1, z1);
    z = Fold512(z, k1, z2);
    z = Fold512(z, k1, z3);
    for (; size >= 64; size -= 64, p += 64)
        z = Fold512(z, k1, Load512(p));

    // The four lanes into one: each folded by its distance to the last.
    __m512i const lanes = _mm512_set_epi64(
        0, 0, TFold<128>::hi, TFold<128>::lo, TFold<256>::hi, TFold<256>::lo, TFold<384>::hi, TFold<384>::lo);
    // Lane 3 has no distance to go: its constant is 0 and the lane itself is
    // added instead.
    alignas(64) __m128i folded[4];
    _mm512_store_si512(folded, Fold512(z, lanes, _mm512_maskz_mov_epi64(0xC0, z)));
    __m128i const x = _mm_ternarylogic_epi64(folded[0], folded[1], _mm_xor_si128(folded[2], folded[3]), 0x96);
    return Finish128(x, p, size);
}

#pragma GCC pop_options

#endif
