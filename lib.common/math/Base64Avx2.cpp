// Base64 with 32-byte vectors: 24 bytes to 32 characters and back per step,
// by the byte-shuffle method. A block holding anything but digits is left to
// the careful path of the caller.
//
// As in the other AVX2 file, nothing here is an inline function that code
// built for another processor could end up sharing.

#include "math/FastKernels.h"

#if COMMON_X86_KERNELS

#include <immintrin.h>

#pragma GCC push_options
#pragma GCC target("avx2")

namespace {

// Each 3-byte group of a lane spread over 4 bytes, then each 6-bit field
// moved to the low bits of its own byte.
inline __m256i SplitSextets(__m256i bytes)
{
    __m256i const in = _mm256_shuffle_epi8(bytes,
        _mm256_setr_epi8(
            1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10, 1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
    __m256i const t0 = _mm256_and_si256(in, _mm256_set1_epi32(0x0FC0FC00));
    __m256i const t1 = _mm256_mulhi_epu16(t0, _mm256_set1_epi32(0x04000040));
    __m256i const t2 = _mm256_and_si256(in, _mm256_set1_epi32(0x003F03F0));
    __m256i const t3 = _mm256_mullo_epi16(t2, _mm256_set1_epi32(0x01000010));
    return _mm256_or_si256(t1, t3);
}

// Sextets to characters: one offset per range of the alphabet.
inline __m256i ToDigits(__m256i sextets)
{
    __m256i const offsets = _mm256_setr_epi8(65, 71, -4, -4, -4, -4, -4, -4, -4, -4, -4, -4, -19, -16, 0, 0, 65, 71, -4,
        -4, -4, -4, -4, -4, -4, -4, -4, -4, -19, -16, 0, 0);
    __m256i range = _mm256_subs_epu8(sextets, _mm256_set1_epi8(51));
    range = _mm256_sub_epi8(range, _mm256_cmpgt_epi8(sextets, _mm256_set1_epi8(25)));
    return _mm256_add_epi8(sextets, _mm256_shuffle_epi8(offsets, range));
}

} // namespace

size_t Avx2Base64Encode(unsigned char const* data, size_t size, char* text)
{
    size_t done = 0;
    // Each step reads 28 bytes: 12 for the low lane, 16 from byte 12 on.
    for (; size - done >= 28; done += 24, text += 32) {
        unsigned char const* p = data + done;
        __m256i const bytes
            = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<__m128i const*>(p))),
                _mm_loadu_si128(reinterpret_cast<__m128i const*>(p + 12)), 1);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(text), ToDigits(SplitSextets(bytes)));
    }
    return done + Base64EncodeWords(data + done, size - done, text);
}

size_t Avx2Base64Decode(unsigned char const* text, size_t length, unsigned char* data)
{
    // A character is a digit when the classes of its two nibbles share no
    // bit; the roll table then turns it into its value.
    __m256i const lowClasses
        = _mm256_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B,
            0x1A, 0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A);
    __m256i const highClasses
        = _mm256_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10,
            0x10, 0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10);
    __m256i const roll = _mm256_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 19, 4, -65,
        -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    __m256i const slashes = _mm256_set1_epi8(0x2F);
    __m256i const gather = _mm256_setr_epi8(
        2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1, 2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    __m256i const pack = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, -1, -1);

    size_t done = 0;
    for (; length - done >= 32; done += 32, data += 24) {
        __m256i const chars = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(text + done));
        __m256i const high = _mm256_and_si256(_mm256_srli_epi32(chars, 4), slashes);
        __m256i const low = _mm256_and_si256(chars, slashes);
        __m256i const lowClass = _mm256_shuffle_epi8(lowClasses, low);
        __m256i const highClass = _mm256_shuffle_epi8(highClasses, high);
        if (!_mm256_testz_si256(lowClass, highClass))
            break;
        __m256i const isSlash = _mm256_cmpeq_epi8(chars, slashes);
        __m256i const values = _mm256_add_epi8(chars, _mm256_shuffle_epi8(roll, _mm256_add_epi8(isSlash, high)));
        __m256i const pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
        __m256i const words = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
        __m256i const bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(words, gather), pack);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(data), _mm256_castsi256_si128(bytes));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(data + 16), _mm256_extracti128_si256(bytes, 1));
    }
    return done + Base64DecodeWords(text + done, length - done, data);
}

#pragma GCC pop_options

#endif
