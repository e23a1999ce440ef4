#include "math/TRandomizer.h"

// splitmix64: full period over 64 bits and good mixing from any seed, 0 included.
uint32_t TRandomizer::Next32()
{
    uint64_t z = (m_state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return static_cast<uint32_t>((z ^ (z >> 31)) >> 32);
}

int TRandomizer::Get(int n)
{
    if (n <= 1)
        return 0;
    // Multiply-shift maps 32 random bits onto 0..n-1 without a division.
    return static_cast<int>((static_cast<uint64_t>(Next32()) * static_cast<uint32_t>(n)) >> 32);
}

double TRandomizer::GetDouble()
{
    return Next32() * (1.0 / 4294967296.0);
}
