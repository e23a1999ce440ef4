#include "math/Checksum.h"

#include "math/FastKernels.h"

#include <cstdint>
#include <cstring>

namespace {

struct TCrc16Table
{
    uint16_t entry[256];
};

constexpr TCrc16Table MakeCrc16Table()
{
    TCrc16Table table {};
    for (uint32_t i = 0; i < 256; ++i)
        table.entry[i] = static_cast<uint16_t>(ReflectedCrcOfByte(i, 0xA001u));
    return table;
}

constexpr TCrc16Table s_crc16 = MakeCrc16Table();

uint32_t RunCrc32(uint32_t crc, void const* data, size_t size)
{
    return FastKernels().crc32(crc, data, size);
}

// The register over the bytes from the last to the first, reversed in
// stack-sized pieces so that the fast kernel does the work.
uint32_t RunCrc32Backward(uint32_t crc, unsigned char const* data, size_t size)
{
    constexpr size_t kPiece = 4096;
    alignas(64) unsigned char reversed[kPiece];
    unsigned char const* end = data + size;
    while (size > 0) {
        size_t const n = size < kPiece ? size : kPiece;
        size_t at = 0;
        for (; at + 8 <= n; at += 8) {
            uint64_t word;
            std::memcpy(&word, end - at - 8, 8);
            word = __builtin_bswap64(word);
            std::memcpy(reversed + at, &word, 8);
        }
        for (; at < n; ++at)
            reversed[at] = end[-1 - static_cast<ptrdiff_t>(at)];
        crc = RunCrc32(crc, reversed, n);
        end -= n;
        size -= n;
    }
    return crc;
}

} // namespace

unsigned short ComputeCrc16(void const* data, unsigned int size)
{
    auto const* p = static_cast<unsigned char const*>(data);
    unsigned crc = 0;
    for (unsigned i = 0; i < size; ++i)
        crc = s_crc16.entry[(crc ^ p[i]) & 0xFF] ^ (crc >> 8);
    return static_cast<unsigned short>(crc);
}

unsigned int ComputeCrc32(void const* data, unsigned int size)
{
    if (size == 0)
        return 0;
    return ~RunCrc32(0xFFFFFFFFu, data, size);
}

unsigned long long ComputeCrc32Ex(void const* data, unsigned int size)
{
    if (size == 0)
        return 0;
    uint32_t const forward = ~RunCrc32(0xFFFFFFFFu, data, size);
    uint32_t const backward = ~RunCrc32Backward(0xFFFFFFFFu, static_cast<unsigned char const*>(data), size);
    return (static_cast<unsigned long long>(backward) << 32) | forward;
}

void TOfficialCrc32::ComputeNextBuffer(void const* data, int size)
{
    if (size <= 0)
        return;
    m_value = RunCrc32(m_value, data, static_cast<size_t>(size));
}
