#pragma once

// Byte order reversal of single values, for the streams.

#include <cstdint>
#include <cstring>

inline uint16_t SwapBytes(uint16_t value) { return __builtin_bswap16(value); }
inline uint32_t SwapBytes(uint32_t value) { return __builtin_bswap32(value); }
inline uint64_t SwapBytes(uint64_t value) { return __builtin_bswap64(value); }

// Reverses the bytes of one value of any 2, 4 or 8-byte type in place.
template <class T>
inline void SwapInPlace(T& value)
{
    static_assert(sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8, "2, 4 or 8 bytes");
    if constexpr (sizeof(T) == 2) {
        uint16_t bits;
        std::memcpy(&bits, &value, 2);
        bits = SwapBytes(bits);
        std::memcpy(&value, &bits, 2);
    } else if constexpr (sizeof(T) == 4) {
        uint32_t bits;
        std::memcpy(&bits, &value, 4);
        bits = SwapBytes(bits);
        std::memcpy(&value, &bits, 4);
    } else {
        uint64_t bits;
        std::memcpy(&bits, &value, 8);
        bits = SwapBytes(bits);
        std::memcpy(&value, &bits, 8);
    }
}
