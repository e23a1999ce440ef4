// The portable CRC-32: sixteen bytes per step through sixteen tables, each
// table the one before advanced by one more byte of zeros.

#include "math/FastKernels.h"

#include <cstring>

namespace {

struct TCrc32Tables
{
    uint32_t entry[16][256];
};

constexpr TCrc32Tables MakeCrc32Tables()
{
    TCrc32Tables tables {};
    for (uint32_t i = 0; i < 256; ++i)
        tables.entry[0][i] = ReflectedCrcOfByte(i, 0xEDB88320u);
    for (int k = 1; k < 16; ++k)
        for (int i = 0; i < 256; ++i) {
            uint32_t const before = tables.entry[k - 1][i];
            tables.entry[k][i] = (before >> 8) ^ tables.entry[0][before & 0xFF];
        }
    return tables;
}

constexpr TCrc32Tables s_crc32 = MakeCrc32Tables();

inline uint32_t Load32(unsigned char const* p)
{
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

} // namespace

uint32_t Crc32Tables(uint32_t crc, void const* data, size_t size)
{
    auto const* p = static_cast<unsigned char const*>(data);
    auto const& t = s_crc32.entry;
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    for (; size >= 16; size -= 16, p += 16) {
        uint32_t const a = crc ^ Load32(p);
        uint32_t const b = Load32(p + 4);
        uint32_t const c = Load32(p + 8);
        uint32_t const d = Load32(p + 12);
        crc = t[15][a & 0xFF] ^ t[14][(a >> 8) & 0xFF] ^ t[13][(a >> 16) & 0xFF] ^ t[12][a >> 24] ^ t[11][b & 0xFF]
            ^ t[10][(b >> 8) & 0xFF] ^ t[9][(b >> 16) & 0xFF] ^ t[8][b >> 24] ^ t[7][c & 0xFF] ^ t[6][(c >> 8) & 0xFF]
            ^ t[5][(c >> 16) & 0xFF] ^ t[4][c >> 24] ^ t[3][d & 0xFF] ^ t[2][(d >> 8) & 0xFF] ^ t[1][(d >> 16) & 0xFF]
            ^ t[0][d >> 24];
    }
#endif
    for (; size > 0; --size, ++p)
        crc = t[0][(crc ^ *p) & 0xFF] ^ (crc >> 8);
    return crc;
}
