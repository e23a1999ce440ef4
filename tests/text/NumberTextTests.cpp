#include "math/RoundToSignificantDigits.h"
#include "text/NumberText.h"
#include "text/TString.h"

#include <gtest/gtest.h>

#include <QString>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

namespace {

std::string Int(long long value, int width = 0, int options = 0)
{
    char narrow[96];
    char16_t wide[96];
    int length = Int64ToString(value, narrow, width, options);
    EXPECT_EQ(length, static_cast<int>(std::strlen(narrow)));
    int wideLength = Int64ToString(value, wide, width, options);
    EXPECT_EQ(QString::fromUtf16(wide, wideLength).toStdString(), narrow);
    if (value >= INT_MIN && value <= INT_MAX) {
        char viaInt[96];
        EXPECT_EQ(IntToString(static_cast<int>(value), viaInt, width, options), length);
        EXPECT_STREQ(viaInt, narrow);
    }
    return narrow;
}

std::string Float(double value, int options)
{
    char narrow[64];
    char16_t wide[64];
    int length = FloatToString(value, narrow, options);
    EXPECT_EQ(length, static_cast<int>(std::strlen(narrow)));
    FloatToString(value, wide, options);
    EXPECT_EQ(QString::fromUtf16(wide).toStdString(), narrow);
    return narrow;
}

int const sig3 = NumSignificantDigits(3);

TEST(IntToString, SignWidthAndGrouping)
{
    EXPECT_EQ(Int(0, 0, eNumPlusSign), "0");
    EXPECT_EQ(Int(42, 0, eNumPlusSign), "+42");
    EXPECT_EQ(Int(-42, 0, eNumPlusSign), "-42");
    EXPECT_EQ(Int(5, 2), "05");
    EXPECT_EQ(Int(5, 3, eNumLeadingSpaces), "  5");
    EXPECT_EQ(Int(0, 3, eNumLeadingSpaces), "  0");
    EXPECT_EQ(Int(120, 3, eNumLeadingSpaces), "120");
    EXPECT_EQ(Int(-5, 3), "-005");
    EXPECT_EQ(Int(-5, 3, eNumLeadingSpaces), "-005") << "a text that starts with its sign keeps its zeros";
    EXPECT_EQ(Int(12345, 3), "12345") << "width never cuts";
    EXPECT_EQ(Int(1234567, 0, eNumGroupDigits), "1 234 567");
    EXPECT_EQ(Int(-1234, 0, eNumGroupDigits), "-1 234");
    EXPECT_EQ(Int(123, 0, eNumGroupDigits), "123");
    EXPECT_EQ(Int(123456, 0, eNumGroupDigits), "123 456");
    EXPECT_EQ(Int(1234567, 9, eNumGroupDigits), "001234567") << "a width turns grouping off";
    EXPECT_EQ(Int(INT_MIN), "-2147483648");
    EXPECT_EQ(Int(INT_MAX, 0, eNumGroupDigits | eNumPlusSign), "+2 147 483 647");
    EXPECT_EQ(Int(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(Int(LLONG_MAX, 0, eNumGroupDigits), "9 223 372 036 854 775 807");
    EXPECT_EQ(Int(9, 0), "9");
    EXPECT_EQ(Int(10, 0), "10");
    EXPECT_EQ(Int(99, 0), "99");
    EXPECT_EQ(Int(100, 0), "100");
}

TEST(IntToString, RomanNumeralsAndTheirLimits)
{
    EXPECT_EQ(Int(1994, 0, eNumRoman), "mcmxciv");
    EXPECT_EQ(Int(1994, 0, eNumRoman | eNumRomanCapitals), "MCMXCIV");
    EXPECT_EQ(Int(3999, 0, eNumRoman), "mmmcmxcix");
    EXPECT_EQ(Int(444, 0, eNumRoman), "cdxliv");
    EXPECT_EQ(Int(1, 5, eNumRoman | eNumPlusSign), "i") << "no sign, no width";
    for (long long nothing : {0LL, -1LL, 4000LL, 1LL << 40}) {
        char buffer[8] = "xxxxxxx";
        EXPECT_EQ(Int64ToString(nothing, buffer, 0, eNumRoman), 0);
        EXPECT_STREQ(buffer, "");
    }
}

TEST(IntToString, DigitsMatchPrintfOverRandomValues)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        long long value = static_cast<long long>(random()) >> (random() % 64);
        int width = static_cast<int>(random() % 22);
        char expected[64];
        std::snprintf(expected, sizeof expected, "%0*llu", width, static_cast<unsigned long long>(std::llabs(value)));
        std::string text = Int(value, width);
        ASSERT_EQ(text, (value < 0 ? "-" : "") + std::string(expected)) << value << " width " << width;
    }
}

TEST(IntegerToZeroJustifiedString, MatchesPrintfWidthOfTheMaximum)
{
    struct { int maximum; char const* format; } const cases[] = {
        {0, "%d"}, {9, "%d"}, {10, "%02d"}, {99, "%02d"}, {100, "%03d"}, {59999, "%05d"},
        {999999999, "%09d"}, {1000000000, "%d"}, {INT_MAX, "%d"}, {-50, "%d"}};
    for (auto const& c : cases) {
        for (int value : {0, 7, -7, 42, 123456, -123456, INT_MIN}) {
            char expected[32], narrow[32];
            char16_t wide[32];
            std::snprintf(expected, sizeof expected, c.format, value);
            IntegerToZeroJustifiedString(narrow, value, c.maximum);
            IntegerToZeroJustifiedString(wide, value, c.maximum);
            EXPECT_STREQ(narrow, expected) << c.maximum << " " << value;
            EXPECT_EQ(QString::fromUtf16(wide).toStdString(), expected);
        }
    }
}

TEST(FloatToString, DecimalsRoundHalvesAwayFromZero)
{
    EXPECT_EQ(Float(-0.001, 2), "0") << "rounded to zero: no sign";
    EXPECT_EQ(Float(-0.004, eNumPlusSign | 2), "0");
    EXPECT_EQ(Float(-0.0, 0), "0");
    EXPECT_EQ(Float(2.5, 3), "2.5");
    EXPECT_EQ(Float(2.5, eNumKeepTrailingZeros | 3), "2.500");
    EXPECT_EQ(Float(0, eNumKeepTrailingZeros | 2), "0.00");
    EXPECT_EQ(Float(0, 2), "0");
    EXPECT_EQ(Float(2.5, 0), "3");
    EXPECT_EQ(Float(-0.5, 0), "-1");
    EXPECT_EQ(Float(9.996, 2), "10");
    EXPECT_EQ(Float(-9.996, eNumKeepTrailingZeros | 2), "-10.00");
    EXPECT_EQ(Float(3.14159, eNumPlusSign | 2), "+3.14");
    EXPECT_EQ(Float(0.05, 2), "0.05");
    EXPECT_EQ(Float(1234567.891, eNumGroupDigits | 2), "1 234 567.89");
    EXPECT_EQ(Float(1.5, eNumKeepTrailingZeros | 15), "1.500000000000000");
}

TEST(FloatToString, SignificantDigits)
{
    EXPECT_EQ(Float(1234.5, sig3), "1230");
    EXPECT_EQ(Float(0.012345, sig3), "0.0123");
    EXPECT_EQ(Float(-0.012345, sig3), "-0.0123");
    EXPECT_EQ(Float(0.1, sig3), "0.1");
    EXPECT_EQ(Float(0.1, sig3 | eNumKeepTrailingZeros), "0.100");
    EXPECT_EQ(Float(0.1, sig3 | eNumKeepTrailingZeros | 5), "0.10000") << "the larger of the two counts";
    EXPECT_EQ(Float(9.96, NumSignificantDigits(2)), "10");
    EXPECT_EQ(Float(123456789012.0, sig3 | eNumGroupDigits), "123 000 000 000");
    EXPECT_EQ(Float(1.23e-20, sig3), "0") << "decimals stop at 15";
    EXPECT_EQ(Float(0, sig3 | eNumKeepTrailingZeros), "0.00");
}

TEST(FloatToString, ExponentLargeAndNonFinite)
{
    EXPECT_EQ(Float(1234.5, eNumExponent | 2), "1.23e+03");
    EXPECT_EQ(Float(-0.00012, eNumExponent | 1), "-1.2e-04");
    EXPECT_EQ(Float(2147483646.4, 0), "2147483646");
    EXPECT_EQ(Float(2147483646.6, 0), "2147483647");
    EXPECT_EQ(Float(-4294967296.5, eNumGroupDigits | 1), "-4 294 967 296.5");
    EXPECT_EQ(Float(1e20, eNumGroupDigits), "100 000 000 000 000 000 000");
    EXPECT_EQ(Float(1e21, eNumKeepTrailingZeros | 2), "1e+21");
    EXPECT_EQ(Float(-1e300, 2), "-1e+300");
    EXPECT_EQ(Float(std::nan(""), 2), "nan");
    EXPECT_EQ(Float(INFINITY, eNumPlusSign), "+inf");
    EXPECT_EQ(Float(-INFINITY, eNumExponent), "-inf");
}

TEST(FloatToString, NeverOutgrowsItsBuffer)
{
    double const values[] = {0, 1e-320, 0.5, 2147483647.0, 9.2233720368547758e18, 1e19, 9.99999e20, 1e21,
                              DBL_MAX, -DBL_MAX, std::nan("")};
    for (double value : values) {
        for (int options : {0, 0xF, 0x10FF, 0x11FF, 0x13FF, 0x10F3, 0x8F0F}) {
            char buffer[128];
            std::memset(buffer, 'x', sizeof buffer);
            int length = FloatToString(-value, buffer, options);
            EXPECT_LT(length, 48) << value << " " << options << " " << buffer;
        }
    }
}

TEST(RoundToSignificantDigits, ValueAndExponentOfTheLastDigit)
{
    int exponent = 99;
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(1234.5, 3, &exponent), 1230);
    EXPECT_EQ(exponent, 1);
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(-0.012345, 3, &exponent), -0.0123);
    EXPECT_EQ(exponent, -4);
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(9.96, 2, &exponent), 10);
    EXPECT_EQ(exponent, 0) << "the carry adds a digit";
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(1000, 2, &exponent), 1000);
    EXPECT_EQ(exponent, 2);
    EXPECT_EQ(RoundToSignificantDigits(0, 3, &exponent), 0);
    EXPECT_EQ(exponent, -2);
    EXPECT_TRUE(std::isnan(RoundToSignificantDigits(std::nan(""), 3, &exponent)));
    EXPECT_EQ(exponent, 0);
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(123.456, 0), 100) << "digits clamp to 1";
    EXPECT_EQ(RoundToSignificantDigits(DBL_MAX, 17), DBL_MAX);
    EXPECT_GT(RoundToSignificantDigits(4.9406564584124654e-324, 3), 0);
}

TEST(RoundToSignificantDigits, DirectedModesIgnoreTheScalingHair)
{
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(1.21, 2, nullptr, eRoundTowardZero), 1.2);
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(1.21, 2, nullptr, eRoundAwayFromZero), 1.3);
    EXPECT_DOUBLE_EQ(RoundToSignificantDigits(-1.21, 2, nullptr, eRoundAwayFromZero), -1.3);
    // Exact decimals that scale to a hair off an integer stay as they are.
    for (double exact : {0.0123, 0.07, 1.1, 4.35, 0.000123})
        for (auto mode : {eRoundTowardZero, eRoundAwayFromZero})
            EXPECT_DOUBLE_EQ(RoundToSignificantDigits(exact, 3, nullptr, mode), exact) << exact << " " << mode;
}

TEST(NumberText, ResultForms)
{
    EXPECT_STREQ(AStringFromInt(1994, 0, eNumRoman | eNumRomanCapitals).c_str(), "MCMXCIV");
    EXPECT_STREQ(AStringFromInt64(-12345678901LL, 0, eNumGroupDigits).c_str(), "-12 345 678 901");
    EXPECT_EQ(AStringFromInt(-3, 100).GetLength(), 101);
    EXPECT_STREQ(AStringFromFloat(-0.001, 2).c_str(), "0");
    EXPECT_EQ(QStringFromInt(-1234567, 0, eNumGroupDigits), QStringLiteral("-1 234 567"));
    EXPECT_EQ(QStringFromInt64(5, 80).size(), 80);
    EXPECT_TRUE(QStringFromInt64(5, 80).endsWith(QStringLiteral("005")));
    EXPECT_EQ(QStringFromFloat(2.5, eNumKeepTrailingZeros | 2), QStringLiteral("2.50"));
}

} // namespace
