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
#include <vector>

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

TEST(IntToString, SignWidthGroupingAndRomanNumerals)
{
    int const roman = eNumRoman;
    int const group = eNumGroupDigits;
    struct { long long value; int width; int options; char const* text; } const cases[] = {
        {0, 0, eNumPlusSign, "0"}, {42, 0, eNumPlusSign, "+42"}, {-42, 0, eNumPlusSign, "-42"}, {5, 2, 0, "05"},
        {5, 3, eNumLeadingSpaces, "  5"}, {0, 3, eNumLeadingSpaces, "  0"}, {120, 3, eNumLeadingSpaces, "120"},
        {-5, 3, eNumLeadingSpaces, "-005"}, // a text that starts with its sign keeps its zeros
        {1234567, 0, group, "1 234 567"}, {-1234, 0, group, "-1 234"}, {123, 0, group, "123"},
        {123456, 0, group, "123 456"}, {1234567, 9, group, "001234567"}, // a width turns grouping off
        {INT_MAX, 0, group | eNumPlusSign, "+2 147 483 647"}, {LLONG_MAX, 0, group, "9 223 372 036 854 775 807"},
        {LLONG_MIN, 0, group, "-9 223 372 036 854 775 808"},
        {1994, 0, roman, "mcmxciv"}, {1994, 0, roman | eNumRomanCapitals, "MCMXCIV"}, {3999, 0, roman, "mmmcmxcix"},
        {444, 0, roman, "cdxliv"}, {1, 5, roman | eNumPlusSign, "i"}, // no sign, no width
    };
    for (auto const& c : cases)
        EXPECT_EQ(Int(c.value, c.width, c.options), c.text) << c.value << " width " << c.width << " options " << c.options;
    // Roman numerals stop at 3999 and have no zero: nothing is written.
    for (long long nothing : {0LL, -1LL, 4000LL, 1LL << 40}) {
        char buffer[8] = "xxxxxxx";
        EXPECT_EQ(Int64ToString(nothing, buffer, 0, eNumRoman), 0);
        EXPECT_STREQ(buffer, "");
    }
}

TEST(IntToString, DigitsMatchPrintfAtEveryPowerOfTenAndOverRandomValues)
{
    std::vector<long long> values = {LLONG_MIN, LLONG_MAX, INT_MIN, INT_MAX};
    for (long long p = 1; p <= LLONG_MAX / 10; p *= 10)
        values.insert(values.end(), {p - 1, p, 1 - p, -p});
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i)
        values.push_back(static_cast<long long>(random()) >> (random() % 64));
    for (long long value : values) {
        int width = static_cast<int>(random() % 22);
        unsigned long long const magnitude = value < 0 ? 0ULL - static_cast<unsigned long long>(value) : value;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%s%0*llu", value < 0 ? "-" : "", width, magnitude);
        ASSERT_EQ(Int(value, width), expected) << value << " width " << width;
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

TEST(FloatToString, DecimalsSignificantDigitsExponentsAndNonFinite)
{
    int const keep = eNumKeepTrailingZeros;
    int const plus = eNumPlusSign;
    int const group = eNumGroupDigits;
    int const exponent = eNumExponent;
    struct { double value; int options; char const* text; } const cases[] = {
        // Decimals round halves away from zero; what rounds to zero has no sign.
        {-0.001, 2, "0"}, {-0.004, plus | 2, "0"}, {-0.0, 0, "0"}, {2.5, 3, "2.5"}, {2.5, keep | 3, "2.500"},
        {0, keep | 2, "0.00"}, {0, 2, "0"}, {2.5, 0, "3"}, {-0.5, 0, "-1"}, {9.996, 2, "10"},
        {-9.996, keep | 2, "-10.00"}, {3.14159, plus | 2, "+3.14"}, {0.05, 2, "0.05"},
        {1234567.891, group | 2, "1 234 567.89"}, {1.5, keep | 15, "1.500000000000000"},
        // Significant digits; with trailing zeros kept the larger of the two
        // counts wins, and decimals stop at 15.
        {1234.5, sig3, "1230"}, {0.012345, sig3, "0.0123"}, {-0.012345, sig3, "-0.0123"}, {0.1, sig3, "0.1"},
        {0.1, sig3 | keep, "0.100"}, {0.1, sig3 | keep | 5, "0.10000"}, {9.96, NumSignificantDigits(2), "10"},
        {123456789012.0, sig3 | group, "123 000 000 000"}, {1.23e-20, sig3, "0"}, {0, sig3 | keep, "0.00"},
        // Exponents, large values and what is not finite.
        {1234.5, exponent | 2, "1.23e+03"}, {-0.00012, exponent | 1, "-1.2e-04"}, {2147483646.4, 0, "2147483646"},
        {2147483646.6, 0, "2147483647"}, {-4294967296.5, group | 1, "-4 294 967 296.5"},
        {1e20, group, "100 000 000 000 000 000 000"}, {1e21, keep | 2, "1e+21"}, {-1e300, 2, "-1e+300"},
        {std::nan(""), 2, "nan"}, {INFINITY, plus, "+inf"}, {-INFINITY, exponent, "-inf"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(Float(c.value, c.options), c.text) << c.value << " options " << std::hex << c.options;
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
    struct { double value; int digits; double rounded; int exponent; } const cases[] = {
        {1234.5, 3, 1230, 1}, {-0.012345, 3, -0.0123, -4}, {9.96, 2, 10, 0}, // the carry adds a digit
        {1000, 2, 1000, 2}, {0, 3, 0, -2}};
    int exponent = 99;
    for (auto const& c : cases) {
        EXPECT_DOUBLE_EQ(RoundToSignificantDigits(c.value, c.digits, &exponent), c.rounded) << c.value;
        EXPECT_EQ(exponent, c.exponent) << c.value;
    }
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
