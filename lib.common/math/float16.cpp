#include "math/float16.h"

float const* float16::g_float16_32 = nullptr;
unsigned short const* float16::g_float32_16 = nullptr;

unsigned short float16::FromFloatOutsideNormal(uint32_t bits)
{
    unsigned const sign = (bits >> 16) & 0x8000;
    int const exponent = static_cast<int>((bits >> 23) & 0xFF);
    uint32_t mantissa = bits & 0x7FFFFF;
    int x = exponent - 112;
    if (x == 143) {
        if (mantissa != 0)
            return 0;
        return static_cast<unsigned short>(0x7BFF | sign);
    }
    if (x >= 1) {
        if (mantissa & 0x1000) {
            if (mantissa >= 0x7FE000) {
                mantissa = 0;
                ++x;
            } else {
                mantissa += 0x2000;
            }
        }
        if (x < 31)
            return static_cast<unsigned short>((mantissa >> 13) | (static_cast<unsigned>(x) << 10) | sign);
        return static_cast<unsigned short>(0x7BFF | sign);
    }
    if (x < -10)
        return 0;
    uint32_t v = (mantissa | 0x800000) >> (113 - exponent);
    if (v & 0x1000)
        v += 0x2000;
    return static_cast<unsigned short>((v >> 13) | sign);
}

float float16::ToFloat(unsigned short half)
{
    uint32_t const sign = static_cast<uint32_t>(half & 0x8000) << 16;
    uint32_t exponent = (half >> 10) & 0x1F;
    uint32_t mantissa = half & 0x3FF;
    uint32_t bits;
    if (exponent == 31) {
        // Infinities read as the largest finite value, NaNs as zero.
        bits = mantissa == 0 ? (sign | 0x477FE000u) : 0;
    } else if (exponent == 0) {
        if (mantissa == 0) {
            bits = sign;
        } else {
            // A subnormal: shift the leading one into the hidden place.
            exponent = 113;
            while (!(mantissa & 0x400)) {
                mantissa <<= 1;
                --exponent;
            }
            bits = sign | (exponent << 23) | ((mantissa & 0x3FF) << 13);
        }
    } else {
        bits = sign | ((exponent << 23) + 0x38000000u) | (mantissa << 13);
    }
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void float16::InitTables(float* toFloat, unsigned short* fromFloat)
{
    for (unsigned bits = 0; bits < 65536; ++bits)
        toFloat[bits] = ToFloat(static_cast<unsigned short>(bits));
    for (unsigned top = 0; top < 512; ++top)
        fromFloat[top] = static_cast<unsigned short>(BaseOf(top));
    g_float16_32 = toFloat;
    g_float32_16 = fromFloat;
}
