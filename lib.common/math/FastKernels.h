#pragma once

// Library-internal: the kernels beside the exported byte moves, one row per
// dispatch level, indexed by the same number as g_fastMemoryKernels.

#include <cstddef>
#include <cstdint>

struct TFastKernels
{
    bool (*isZero)(void const* data, size_t size);
    // Runs the reflected CRC-32 register over the bytes, without the
    // inversions at start and end.
    uint32_t (*crc32)(uint32_t crc, void const* data, size_t size);
    // Bulk Base64: as many whole blocks as can be done quickly; the caller
    // does the rest. They return the input consumed: a multiple of 3 bytes,
    // and a multiple of 4 characters that are all digits.
    size_t (*base64Encode)(unsigned char const* data, size_t size, char* text);
    size_t (*base64Decode)(unsigned char const* text, size_t length, unsigned char* data);
};

// The register of a reflected CRC after the eight bits of one byte: the
// entry of that byte in a byte-at-a-time table.
constexpr uint32_t ReflectedCrcOfByte(uint32_t byte, uint32_t polynomial)
{
    uint32_t c = byte;
    for (int bit = 0; bit < 8; ++bit)
        c = (c & 1) ? (c >> 1) ^ polynomial : c >> 1;
    return c;
}

// The kernels of the current level; picks the level on first use.
TFastKernels const& FastKernels();

// Portable kernels: level 1, and the tails of the others.
void* GenericCopy(void const* source, void* target, size_t size);
void* GenericMove(void const* source, void* target, size_t size);
void GenericZero(void* target, size_t size);
void GenericFill(void* target, uint64_t pattern, size_t size);
bool GenericIsZero(void const* data, size_t size);
uint32_t Crc32Tables(uint32_t crc, void const* data, size_t size);
size_t Base64EncodeWords(unsigned char const* data, size_t size, char* text);
size_t Base64DecodeWords(unsigned char const* text, size_t length, unsigned char* data);

#if defined(__x86_64__) || defined(__i386__)
#define COMMON_X86_KERNELS 1
void* Avx2Copy(void const* source, void* target, size_t size);
void* Avx2Move(void const* source, void* target, size_t size);
void Avx2Zero(void* target, size_t size);
void Avx2Fill(void* target, uint64_t pattern, size_t size);
bool Avx2IsZero(void const* data, size_t size);
void* Avx512Copy(void const* source, void* target, size_t size);
void* Avx512Move(void const* source, void* target, size_t size);
uint32_t Crc32Pclmul(uint32_t crc, void const* data, size_t size);
uint32_t Crc32Vpclmul(uint32_t crc, void const* data, size_t size);
size_t Avx2Base64Encode(unsigned char const* data, size_t size, char* text);
size_t Avx2Base64Decode(unsigned char const* text, size_t length, unsigned char* data);
#endif
