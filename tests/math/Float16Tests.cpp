#include "math/TRandomizer.h"
#include "math/float16.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

static_assert(sizeof(float16) == 2, "one 16-bit field");

unsigned Bits(float16 h)
{
    unsigned short bits;
    std::memcpy(&bits, &h, 2);
    return bits;
}

float16 FromBits(unsigned bits)
{
    auto const raw = static_cast<unsigned short>(bits);
    float16 h;
    std::memcpy(static_cast<void*>(&h), &raw, 2);
    return h;
}

// The value of a bit pattern, worked out with double arithmetic.
double ReferenceValue(unsigned bits)
{
    double const sign = (bits & 0x8000) ? -1.0 : 1.0;
    int const exponent = (bits >> 10) & 0x1F;
    int const mantissa = bits & 0x3FF;
    if (exponent == 31)
        return mantissa == 0 ? sign * 65504.0 : 0.0;
    if (exponent == 0)
        return sign * std::ldexp(mantissa, -24);
    return sign * std::ldexp(1024 + mantissa, exponent - 25);
}

// Nearest half with ties away from zero, clamped to the largest finite one;
// below half the smallest subnormal, zero.
double ReferenceRounded(float value)
{
    double const magnitude = std::fabs(double(value));
    int exponent;
    std::frexp(magnitude, &exponent);
    double const ulp = magnitude < std::ldexp(1.0, -14) ? std::ldexp(1.0, -24) : std::ldexp(1.0, exponent - 11);
    double const rounded = std::min(std::floor(magnitude / ulp + 0.5) * ulp, 65504.0);
    return std::signbit(value) ? -rounded : rounded;
}

// Runs the checks once on computed conversions and once on the tables.
class Float16 : public ::testing::Test
{
protected:
    template <class Check> void BothWays(Check check)
    {
        float const* savedTo = float16::g_float16_32;
        unsigned short const* savedFrom = float16::g_float32_16;
        float16::g_float16_32 = nullptr;
        float16::g_float32_16 = nullptr;
        {
            SCOPED_TRACE("computed");
            check();
        }
        float16::InitTables(m_toFloat.data(), m_fromFloat.data());
        EXPECT_EQ(float16::g_float16_32, m_toFloat.data());
        {
            SCOPED_TRACE("tables");
            check();
        }
        float16::g_float16_32 = savedTo;
        float16::g_float32_16 = savedFrom;
    }

    std::vector<float> m_toFloat = std::vector<float>(65536);
    std::vector<unsigned short> m_fromFloat = std::vector<unsigned short>(512);
};

// Every finite half but -0 also survives the trip through float bit for bit.
TEST_F(Float16, EveryPatternReadsAsItsValueAndComesBack)
{
    BothWays([] {
        for (unsigned bits = 0; bits < 65536; ++bits) {
            float const value = FromBits(bits);
            ASSERT_EQ(double(value), ReferenceValue(bits)) << std::hex << bits;
            if (bits == 0x8000) {
                ASSERT_TRUE(std::signbit(value));
            } else if (((bits >> 10) & 0x1F) != 31) {
                ASSERT_EQ(Bits(float16(value)), bits) << std::hex << bits;
            }
        }
        EXPECT_EQ(float(float16(float16::EInfinitePos)), 65504.0f);
        EXPECT_EQ(float(float16(float16::EInfiniteNeg)), -65504.0f);
        EXPECT_EQ(float(float16(float16::ENanNeg)), 0.0f);
    });
}

TEST_F(Float16, OutOfRangeValuesClampAndNanBecomesZero)
{
    float const inf = std::numeric_limits<float>::infinity();
    float const nan = std::numeric_limits<float>::quiet_NaN();
    struct
    {
        float value;
        unsigned bits;
    } const cases[] = {
        { 65504.0f, 0x7BFF },
        { 65519.0f, 0x7BFF },
        { 65520.0f, 0x7BFF },
        { 1e10f, 0x7BFF },
        { -1e10f, 0xFBFF },
        { std::numeric_limits<float>::max(), 0x7BFF },
        { inf, 0x7BFF },
        { -inf, 0xFBFF },
        { nan, 0 },
        { -nan, 0 },
        // Too small even for a subnormal: zero without its sign.
        { -0.0f, 0 },
        { -1e-30f, 0 },
        { -std::ldexp(1.0f, -26), 0 },
        { std::ldexp(1.0f, -25), 0x0001 },
        { -std::ldexp(1.0f, -24), 0x8001 },
    };
    BothWays([&] {
        for (auto const& c : cases)
            EXPECT_EQ(Bits(float16(c.value)), c.bits) << c.value;
    });
}

TEST_F(Float16, RoundsToNearestWithTiesAwayFromZero)
{
    BothWays([] {
        // Midpoints between neighbours and the floats either side of them,
        // over the subnormal, normal and topmost ranges.
        for (unsigned bits = 1; bits < 0x7BFF; bits += 37) {
            for (unsigned sign : { 0u, 0x8000u }) {
                float const low = FromBits(bits | sign);
                float const high = FromBits((bits + 1) | sign);
                float const middle = float((double(low) + double(high)) / 2);
                for (float value : { middle, std::nextafter(middle, 0.0f), std::nextafter(middle, 2 * middle) }) {
                    ASSERT_EQ(double(float(float16(value))), ReferenceRounded(value)) << value;
                }
            }
        }
        TRandomizer random(3);
        for (int i = 0; i < 200000; ++i) {
            uint32_t const raw = (random.Next32() & 0x807FFFFFu) | (uint32_t(95 + random.Get(50)) << 23);
            float value;
            std::memcpy(&value, &raw, 4);
            ASSERT_EQ(double(float(float16(value))), ReferenceRounded(value)) << value;
        }
    });
}

} // namespace
