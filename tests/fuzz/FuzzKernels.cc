// Portable stand-ins for the vector kernels, which the fuzz build leaves out
// (see CMakeLists.txt): whatever level the dispatch picks, the portable code
// runs.

#include "math/FastKernels.h"

#if COMMON_X86_KERNELS

void* Avx2Copy(void const* source, void* target, size_t size)
{
    return GenericCopy(source, target, size);
}

void* Avx2Move(void const* source, void* target, size_t size)
{
    return GenericMove(source, target, size);
}

void Avx2Zero(void* target, size_t size)
{
    GenericZero(target, size);
}

void Avx2Fill(void* target, uint64_t pattern, size_t size)
{
    GenericFill(target, pattern, size);
}

bool Avx2IsZero(void const* data, size_t size)
{
    return GenericIsZero(data, size);
}

void* Avx512Copy(void const* source, void* target, size_t size)
{
    return GenericCopy(source, target, size);
}

void* Avx512Move(void const* source, void* target, size_t size)
{
    return GenericMove(source, target, size);
}

uint32_t Crc32Pclmul(uint32_t crc, void const* data, size_t size)
{
    return Crc32Tables(crc, data, size);
}

uint32_t Crc32Vpclmul(uint32_t crc, void const* data, size_t size)
{
    return Crc32Tables(crc, data, size);
}

size_t Avx2Base64Encode(unsigned char const*, size_t, char*)
{
    return 0; // the caller encodes all of it
}

size_t Avx2Base64Decode(unsigned char const*, size_t, unsigned char*)
{
    return 0;
}

#endif
