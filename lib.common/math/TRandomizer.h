#pragma once

#include "core/CommonExport.h"

#include <cstdint>

// A small seeded generator: the same seed gives the same sequence on every
// platform, which shuffles and generated test data rely on.
class COMMON_EXPORT TRandomizer
{
public:
    explicit TRandomizer(uint64_t seed = 1) { SetSeed(seed); }

    void SetSeed(uint64_t seed) { m_state = seed; }
    // Uniform in 0 to n - 1; 0 for n of 1 or less.
    int Get(int n);
    uint32_t Next32();
    // Uniform in [0, 1).
    double GetDouble();

private:
    uint64_t m_state;
};
