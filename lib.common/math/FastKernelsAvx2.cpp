// Memory kernels with 32-byte moves. Blocks up to 16 KiB are done here
// without the C library's size dispatch; larger ones go to it, since it picks
// string instructions or streaming stores by cache size there.
//
// This file holds no inline function that another file could share: code
// built for AVX2 must not be picked for a caller on another processor.

#include "math/FastKernels.h"

#if COMMON_X86_KERNELS

#include <immintrin.h>

#include <cstring>

#pragma GCC push_options
#pragma GCC target("avx2")

namespace {

// Helpers are always expanded in place: taken out of line they would pass
// vector registers through the stack.
#define COMMON_VECTOR_INLINE inline __attribute__((always_inline))

constexpr size_t kLargeBlock = 16384;

COMMON_VECTOR_INLINE __m256i Load(unsigned char const* p)
{
    return _mm256_loadu_si256(reinterpret_cast<__m256i const*>(p));
}

COMMON_VECTOR_INLINE void Store(unsigned char* p, __m256i v)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
}

struct TChunk
{
    __m256i a, b, c, d;
};

COMMON_VECTOR_INLINE TChunk LoadChunk(unsigned char const* p)
{
    return { Load(p), Load(p + 32), Load(p + 64), Load(p + 96) };
}

COMMON_VECTOR_INLINE void StoreChunk(unsigned char* p, TChunk const& v)
{
    Store(p, v.a);
    Store(p + 32, v.b);
    Store(p + 64, v.c);
    Store(p + 96, v.d);
}

// 64 to 256 bytes: everything is loaded before anything is stored, so the
// ranges may overlap.
COMMON_VECTOR_INLINE void MoveUpTo256(unsigned char const* s, unsigned char* t, size_t size)
{
    if (size <= 128) {
        __m256i const a = Load(s), b = Load(s + 32);
        __m256i const c = Load(s + size - 64), d = Load(s + size - 32);
        Store(t, a);
        Store(t + 32, b);
        Store(t + size - 64, c);
        Store(t + size - 32, d);
        return;
    }
    TChunk const head = LoadChunk(s);
    TChunk const tail = LoadChunk(s + size - 128);
    StoreChunk(t, head);
    StoreChunk(t + size - 128, tail);
}

COMMON_VECTOR_INLINE void StoreChunkAligned(unsigned char* p, TChunk const& v)
{
    auto* q = reinterpret_cast<__m256i*>(p);
    _mm256_store_si256(q, v.a);
    _mm256_store_si256(q + 1, v.b);
    _mm256_store_si256(q + 2, v.c);
    _mm256_store_si256(q + 3, v.d);
}

// Over 256 bytes, ascending, with aligned stores. The ends are read first and
// written last, so a target below an overlapping source is safe too.
COMMON_VECTOR_INLINE void MoveForward(unsigned char const* s, unsigned char* t, size_t size)
{
    __m256i const head = Load(s);
    TChunk const tail = LoadChunk(s + size - 128);
    size_t at = 32 - (reinterpret_cast<uintptr_t>(t) & 31);
    for (; at + 128 < size; at += 128)
        StoreChunkAligned(t + at, LoadChunk(s + at));
    Store(t, head);
    StoreChunk(t + size - 128, tail);
}

// Over 256 bytes, descending, for a target above an overlapping source.
COMMON_VECTOR_INLINE void MoveBackward(unsigned char const* s, unsigned char* t, size_t size)
{
    TChunk const head = LoadChunk(s);
    __m256i const tail = Load(s + size - 32);
    size_t end = size - (reinterpret_cast<uintptr_t>(t + size) & 31);
    for (; end > 128; end -= 128)
        StoreChunkAligned(t + end - 128, LoadChunk(s + end - 128));
    StoreChunk(t, head);
    Store(t + size - 32, tail);
}

COMMON_VECTOR_INLINE void StoreRepeated(unsigned char* t, __m256i v, size_t size)
{
    if (size <= 64) {
        Store(t, v);
        Store(t + size - 32, v);
        return;
    }
    size_t at = 0;
    for (; at + 128 <= size; at += 128) {
        Store(t + at, v);
        Store(t + at + 32, v);
        Store(t + at + 64, v);
        Store(t + at + 96, v);
    }
    for (; at + 32 <= size; at += 32)
        Store(t + at, v);
    if (at < size)
        Store(t + size - 32, v);
}

#undef COMMON_VECTOR_INLINE

} // namespace

void* Avx2Copy(void const* source, void* target, size_t size)
{
    if (size < 64 || size > kLargeBlock)
        return std::memcpy(target, source, size);
    auto const* s = static_cast<unsigned char const*>(source);
    auto* t = static_cast<unsigned char*>(target);
    if (size <= 256)
        MoveUpTo256(s, t, size);
    else
        MoveForward(s, t, size);
    return target;
}

void* Avx2Move(void const* source, void* target, size_t size)
{
    if (size < 64 || size > kLargeBlock)
        return std::memmove(target, source, size);
    auto const* s = static_cast<unsigned char const*>(source);
    auto* t = static_cast<unsigned char*>(target);
    if (size <= 256)
        MoveUpTo256(s, t, size);
    else if (reinterpret_cast<uintptr_t>(t) - reinterpret_cast<uintptr_t>(s) < size)
        MoveBackward(s, t, size);
    else
        MoveForward(s, t, size);
    return target;
}

void Avx2Zero(void* target, size_t size)
{
    if (size < 32 || size > kLargeBlock) {
        std::memset(target, 0, size);
        return;
    }
    StoreRepeated(static_cast<unsigned char*>(target), _mm256_setzero_si256(), size);
}

void Avx2Fill(void* target, uint64_t pattern, size_t size)
{
    if (size < 32) {
        GenericFill(target, pattern, size);
        return;
    }
    StoreRepeated(static_cast<unsigned char*>(target), _mm256_set1_epi64x(static_cast<long long>(pattern)), size);
}

bool Avx2IsZero(void const* data, size_t size)
{
    if (size < 32)
        return GenericIsZero(data, size);
    auto const* p = static_cast<unsigned char const*>(data);
    size_t at = 0;
    for (; at + 128 <= size; at += 128) {
        __m256i const any = _mm256_or_si256(
            _mm256_or_si256(Load(p + at), Load(p + at + 32)), _mm256_or_si256(Load(p + at + 64), Load(p + at + 96)));
        if (!_mm256_testz_si256(any, any))
            return false;
    }
    for (; at + 32 <= size; at += 32) {
        __m256i const v = Load(p + at);
        if (!_mm256_testz_si256(v, v))
            return false;
    }
    if (at < size) {
        __m256i const v = Load(p + size - 32);
        return _mm256_testz_si256(v, v);
    }
    return true;
}

#pragma GCC pop_options

#endif
