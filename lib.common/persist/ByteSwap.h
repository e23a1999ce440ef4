#pragma once

// Library-internal: byte order reversal for the streams.

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

// Arrays of count elements of 2, 4 or 8 bytes, in place. Long arrays go
// 64 bytes at a time with byte shuffles where the processor has them.
void SwapArray16(void* data, unsigned int count);
void SwapArray32(void* data, unsigned int count);
void SwapArray64(void* data, unsigned int count);

template <class T>
inline void SwapArray(T* data, unsigned int count)
{
    if constexpr (sizeof(T) == 2)
        SwapArray16(data, count);
    else if constexpr (sizeof(T) == 4)
        SwapArray32(data, count);
    else
        SwapArray64(data, count);
}
