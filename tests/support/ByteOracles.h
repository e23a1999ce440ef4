#pragma once

#include "math/TRandomizer.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// Seeded bytes in any container with a size constructor and a value_type:
// std::vector<unsigned char> by default, QByteArray where Qt wants one.
template <class Bytes = std::vector<unsigned char>> Bytes RandomBytes(size_t size, uint64_t seed)
{
    TRandomizer random(seed);
    Bytes bytes(static_cast<decltype(Bytes().size())>(size), 0);
    for (auto& b : bytes)
        b = static_cast<typename Bytes::value_type>(random.Next32());
    return bytes;
}

// CRC-32 of IEEE 802.3 a bit at a time, straight from the polynomial: it
// shares nothing with the library's tables or folding.
inline uint32_t ReferenceCrc32(unsigned char const* data, size_t size)
{
    uint32_t crc = 0xFFFFFFFFu;
    for (size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}
