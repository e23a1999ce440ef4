#pragma once

#include "core/CommonExport.h"

#include <cstdint>
#include <cstring>

// An IEEE 754 binary16 number for audio data. Conversions never give an
// infinity or a NaN: values beyond the range become the largest finite half
// of their sign, NaN becomes 0, and a stored infinity reads as +-65504.
class COMMON_EXPORT float16
{
public:
    // clang-format off
    enum EZero_ { EZero };
    enum EMin_ { EMin };
    enum EMax_ { EMax };
    enum EMinNeg_ { EMinNeg };
    enum EMinPos_ { EMinPos };
    enum EEpsilon_ { EEpsilon };
    enum EInfinitePos_ { EInfinitePos };
    enum EInfiniteNeg_ { EInfiniteNeg };
    enum ENanPos_ { ENanPos };
    enum ENanNeg_ { ENanNeg };

    float16() = default;
    constexpr float16(EZero_) : m_bits(0x0000) {}
    constexpr float16(EMin_) : m_bits(0xFBFF) {}
    constexpr float16(EMax_) : m_bits(0x7BFF) {}
    constexpr float16(EMinNeg_) : m_bits(0x8001) {}
    constexpr float16(EMinPos_) : m_bits(0x0001) {}
    constexpr float16(EEpsilon_) : m_bits(0x1000) {}
    constexpr float16(EInfinitePos_) : m_bits(0x7C00) {}
    constexpr float16(EInfiniteNeg_) : m_bits(0xFC00) {}
    constexpr float16(ENanPos_) : m_bits(0x7E00) {}
    constexpr float16(ENanNeg_) : m_bits(0xFE00) {}
    // clang-format on

    float16(float value)
        : float16(FromFloat(value), ERaw)
    { }
    float16& operator=(float value) { return *this = float16(value); }

    operator float() const { return g_float16_32 ? g_float16_32[Bits()] : ToFloat(Bits()); }

    // Fills the two tables, 65536 floats and 512 base values, and makes the
    // conversions use them. The caller owns them and keeps them for as long
    // as the type is used; call it before other threads use the type.
    static void InitTables(float* toFloat, unsigned short* fromFloat);

    // The published tables: a float for every bit pattern, and the base of
    // the result for the top nine bits (sign and exponent) of a float.
    static float const* g_float16_32;
    static unsigned short const* g_float32_16;

private:
    enum ERaw_
    {
        ERaw
    };
    constexpr float16(unsigned short bits, ERaw_)
        : m_bits(bits)
    { }
    constexpr unsigned short Bits() const { return m_bits; }

    static unsigned short FromFloat(float value)
    {
        // Minus zero too: its sign is not kept.
        if (value == 0.0f)
            return 0;
        uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        unsigned const top = bits >> 23;
        unsigned const base = g_float32_16 ? g_float32_16[top] : BaseOf(top);
        if (base != 0)
            return static_cast<unsigned short>(base + (((bits & 0x7FFFFF) + 0x1000) >> 13));
        return FromFloatOutsideNormal(bits);
    }

    // The base table's entry for the top nine bits of a float.
    static constexpr unsigned BaseOf(unsigned top)
    {
        unsigned const exponent = top & 0xFF;
        if (exponent < 113 || exponent > 141)
            return 0;
        return ((exponent - 112) << 10) | ((top & 0x100) << 7);
    }

    static unsigned short FromFloatOutsideNormal(uint32_t bits);
    static float ToFloat(unsigned short bits);

    unsigned short m_bits;
};
