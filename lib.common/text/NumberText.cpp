#include "text/NumberText.h"

#include "math/RoundToSignificantDigits.h"
#include "platform/PlatformLocale.h"
#include "text/NumberTextDigits.h"
#include "text/TString.h"

#include <QString>

#include <cmath>
#include <cstdint>
#include <cstdio>

char const g_decimalDigitPairs[201] = "00010203040506070809"
                                      "10111213141516171819"
                                      "20212223242526272829"
                                      "30313233343536373839"
                                      "40414243444546474849"
                                      "50515253545556575859"
                                      "60616263646566676869"
                                      "70717273747576777879"
                                      "80818283848586878889"
                                      "90919293949596979899";

namespace {

char const* const s_digitPairs = g_decimalDigitPairs;

uint64_t const s_powersOfTen[20] = {1ull,
                                    10ull,
                                    100ull,
                                    1000ull,
                                    10000ull,
                                    100000ull,
                                    1000000ull,
                                    10000000ull,
                                    100000000ull,
                                    1000000000ull,
                                    10000000000ull,
                                    100000000000ull,
                                    1000000000000ull,
                                    10000000000000ull,
                                    100000000000000ull,
                                    1000000000000000ull,
                                    10000000000000000ull,
                                    100000000000000000ull,
                                    1000000000000000000ull,
                                    10000000000000000000ull};

inline int DigitCount(uint64_t value)
{
    // bits × log10(2) estimates the count; one comparison corrects it.
    int estimate = ((64 - __builtin_clzll(value | 1)) * 1233) >> 12;
    int count = estimate - (value < s_powersOfTen[estimate]) + 1;
    return count > 0 ? count : 1;
}

template <class T>
T* WriteAscii(T* out, char const* text)
{
    while (*text)
        *out++ = static_cast<T>(*text++);
    return out;
}

// Writes the digits of value, zero-padded to width, and returns the end.
// Values that fit 32 bits run the loop on 32-bit arithmetic, which is
// cheaper to divide by 100.
template <class T, class U>
inline T* WriteDigitsOf(T* out, U value, int count, int width)
{
    int length = count < width ? width : count;
    T* end = out + length;
    T* p = end;
    while (value >= 100) {
        unsigned pair = static_cast<unsigned>(value % 100) * 2;
        value /= 100;
        *--p = static_cast<T>(s_digitPairs[pair + 1]);
        *--p = static_cast<T>(s_digitPairs[pair]);
    }
    if (value >= 10) {
        unsigned pair = static_cast<unsigned>(value) * 2;
        *--p = static_cast<T>(s_digitPairs[pair + 1]);
        *--p = static_cast<T>(s_digitPairs[pair]);
    } else {
        *--p = static_cast<T>('0' + value);
    }
    while (p > out)
        *--p = static_cast<T>('0');
    return end;
}

template <class T>
inline T* WriteDigits(T* out, uint64_t value, int width)
{
    int count = DigitCount(value);
    if (value <= 0xFFFFFFFFu)
        return WriteDigitsOf(out, static_cast<uint32_t>(value), count, width);
    return WriteDigitsOf(out, value, count, width);
}

// "1 234 567": a space after every third digit from the right.
template <class T>
T* WriteGroupedDigits(T* out, uint64_t value)
{
    int count = DigitCount(value);
    T* end = out + count + (count - 1) / 3;
    T* p = end;
    int inGroup = 0;
    do {
        if (inGroup == 3) {
            *--p = static_cast<T>(' ');
            inGroup = 0;
        }
        *--p = static_cast<T>('0' + value % 10);
        value /= 10;
        ++inGroup;
    } while (value);
    return end;
}

struct TRomanDigit
{
    int value;
    char letters[3];
};

TRomanDigit const s_romanDigits[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"},
                                     {90, "xc"},  {50, "l"},   {40, "xl"},  {10, "x"},   {9, "ix"},
                                     {5, "v"},    {4, "iv"},   {1, "i"}};

template <class T>
int WriteRoman(long long value, T* buffer, bool capitals)
{
    T* p = buffer;
    if (value > 0 && value < 4000) {
        int rest = static_cast<int>(value);
        char shift = capitals ? 'a' - 'A' : 0;
        for (TRomanDigit const& digit : s_romanDigits) {
            while (rest >= digit.value) {
                for (char const* letter = digit.letters; *letter; ++letter)
                    *p++ = static_cast<T>(*letter - shift);
                rest -= digit.value;
            }
        }
    }
    *p = 0;
    return static_cast<int>(p - buffer);
}

template <class T>
inline int WriteInteger(long long value, T* buffer, int width, int options)
{
    if (options & eNumRoman)
        return WriteRoman(value, buffer, (options & eNumRomanCapitals) != 0);
    T* p = buffer;
    uint64_t magnitude;
    if (value < 0) {
        *p++ = static_cast<T>('-');
        magnitude = 0 - static_cast<uint64_t>(value);
    } else {
        if (value > 0 && (options & eNumPlusSign))
            *p++ = static_cast<T>('+');
        magnitude = static_cast<uint64_t>(value);
    }
    if (width <= 0 && (options & eNumGroupDigits))
        p = WriteGroupedDigits(p, magnitude);
    else
        p = WriteDigits(p, magnitude, width);
    *p = 0;
    if ((options & eNumLeadingSpaces) && buffer[0] == '0') {
        for (T* q = buffer; q + 1 < p && *q == '0'; ++q)
            *q = static_cast<T>(' ');
    }
    return static_cast<int>(p - buffer);
}

// Integer parts from 2147483647 on. Below 2^63 they are exact long longs;
// up to 1e21 printf gives their exact digits; beyond, a digit string would
// outgrow any reasonable buffer, so they take the exponent form.
template <class T>
T* WriteLargeInteger(T* out, double integer, int options)
{
    if (integer < 9223372036854775808.0) {
        return out + Int64ToString(static_cast<long long>(integer), out, 0, options & eNumGroupDigits);
    }
    char digits[40];
    if (integer < 1e21) {
        int count = std::snprintf(digits, sizeof digits, "%.0f", integer);
        if (!(options & eNumGroupDigits))
            return WriteAscii(out, digits);
        for (int i = 0; i < count; ++i) {
            if (i > 0 && (count - i) % 3 == 0)
                *out++ = static_cast<T>(' ');
            *out++ = static_cast<T>(digits[i]);
        }
        return out;
    }
    TCNumericScope const numbers;
    std::snprintf(digits, sizeof digits, "%.15g", integer);
    return WriteAscii(out, digits);
}

template <class T>
int WriteNonFinite(double value, T* buffer, int options)
{
    T* p = buffer;
    if (std::isnan(value)) {
        p = WriteAscii(p, "nan");
    } else {
        if (value < 0)
            *p++ = static_cast<T>('-');
        else if (options & eNumPlusSign)
            *p++ = static_cast<T>('+');
        p = WriteAscii(p, "inf");
    }
    *p = 0;
    return static_cast<int>(p - buffer);
}

template <class T>
int WriteExponentForm(double value, T* buffer, int decimals)
{
    char text[40];
    TCNumericScope const numbers;
    std::snprintf(text, sizeof text, "%.*e", decimals, value);
    T* end = WriteAscii(buffer, text);
    *end = 0;
    return static_cast<int>(end - buffer);
}

int ZeroJustifiedWidth(int maximum)
{
    if (maximum < 10 || maximum >= 1000000000)
        return 0;
    return DigitCount(static_cast<uint64_t>(maximum));
}

} // namespace

template <class T>
int IntToString(int value, T* buffer, int width, int options)
{
    return WriteInteger<T>(value, buffer, width, options);
}

template <class T>
int Int64ToString(long long value, T* buffer, int width, int options)
{
    return WriteInteger<T>(value, buffer, width, options);
}

template <class T>
int FloatToString(double value, T* buffer, int options)
{
    if (!std::isfinite(value))
        return WriteNonFinite(value, buffer, options);
    int decimals = options & eNumDecimalsMask;
    if (options & eNumExponent)
        return WriteExponentForm(value, buffer, decimals);

    int significant = (options & eNumSignificantMask) >> 4;
    double magnitude = std::fabs(value);
    double integer;
    long long fraction = 0;
    long long scale;
    if (significant == 0) {
        scale = static_cast<long long>(PowerOfTen(decimals));
        double v = magnitude + 0.5 / static_cast<double>(scale);
        integer = std::floor(v);
        if (decimals)
            fraction = static_cast<long long>((v - integer) * static_cast<double>(scale));
    } else {
        int lastDigit = 0;
        double v = RoundToSignificantDigits(magnitude, significant, &lastDigit);
        if (!std::isfinite(v)) // rounding up next to the largest double
            v = magnitude;
        decimals = lastDigit < 0 ? -lastDigit : 0;
        if ((options & eNumKeepTrailingZeros) && decimals < (options & eNumDecimalsMask))
            decimals = options & eNumDecimalsMask;
        if (decimals > 15)
            decimals = 15;
        scale = static_cast<long long>(PowerOfTen(decimals));
        integer = std::floor(v);
        if (decimals)
            fraction = std::llround((v - integer) * static_cast<double>(scale));
    }
    if (fraction >= scale) {
        integer += 1;
        fraction -= scale;
    }
    if (!(options & eNumKeepTrailingZeros) && fraction != 0) {
        while (fraction % 10 == 0) {
            fraction /= 10;
            --decimals;
        }
    }

    T* p = buffer;
    if (integer != 0 || fraction != 0) {
        if (value < 0)
            *p++ = static_cast<T>('-');
        else if (options & eNumPlusSign)
            *p++ = static_cast<T>('+');
    }
    if (integer < 2147483647.0) {
        p += IntToString(static_cast<int>(integer), p, 0, options & eNumGroupDigits);
    } else {
        p = WriteLargeInteger(p, integer, options);
        if (integer >= 1e21)
            decimals = 0;
    }
    if (decimals > 0 && (fraction > 0 || (options & eNumKeepTrailingZeros))) {
        *p++ = static_cast<T>('.');
        p = WriteDigits(p, static_cast<uint64_t>(fraction), decimals);
    }
    *p = 0;
    return static_cast<int>(p - buffer);
}

template <class T>
void IntegerToZeroJustifiedString(T* buffer, int value, int maximum)
{
    int width = ZeroJustifiedWidth(maximum);
    if (value < 0 && width > 0)
        --width; // printf counts the sign in the width
    IntToString(value, buffer, width, 0);
}

namespace {

// An integer's text of width characters at least: in a buffer on the stack
// for the usual widths, beyond them straight in the result's own storage.
// room is the most the number itself takes.
template <int room, class Write>
TString<char> NarrowInteger(int width, Write write)
{
    if (width > 64) {
        TString<char> result(length_t(width + 2));
        return result.SetEnd(write(result.Buffer()));
    }
    char text[room + 64];
    return TString<char>(text, length_t(write(text)));
}

template <int room, class Write>
QString QtInteger(int width, Write write)
{
    if (width > 64) {
        QString result(width + 2, Qt::Uninitialized);
        result.truncate(write(reinterpret_cast<char16_t*>(result.data())));
        return result;
    }
    char16_t text[room + 64];
    int const length = write(text);
    return QString::fromUtf16(text, length);
}

} // namespace

TString<char> AStringFromInt(int value, int width, int options)
{
    return NarrowInteger<24>(width, [&](char* text) { return IntToString(value, text, width, options); });
}

TString<char> AStringFromInt64(long long value, int width, int options)
{
    return NarrowInteger<32>(width, [&](char* text) { return Int64ToString(value, text, width, options); });
}

TString<char> AStringFromFloat(double value, int options)
{
    char text[64];
    return TString<char>(text, length_t(FloatToString(value, text, options)));
}

QString QStringFromInt(int value, int width, int options)
{
    return QtInteger<24>(width, [&](char16_t* text) { return IntToString(value, text, width, options); });
}

QString QStringFromInt64(long long value, int width, int options)
{
    return QtInteger<32>(width, [&](char16_t* text) { return Int64ToString(value, text, width, options); });
}

QString QStringFromFloat(double value, int options)
{
    char16_t text[64];
    int length = FloatToString(value, text, options);
    return QString::fromUtf16(text, length);
}

template COMMON_EXPORT int IntToString<char>(int, char*, int, int);
template COMMON_EXPORT int IntToString<char16_t>(int, char16_t*, int, int);
template COMMON_EXPORT int Int64ToString<char>(long long, char*, int, int);
template COMMON_EXPORT int Int64ToString<char16_t>(long long, char16_t*, int, int);
template COMMON_EXPORT int FloatToString<char>(double, char*, int);
template COMMON_EXPORT int FloatToString<char16_t>(double, char16_t*, int);
template COMMON_EXPORT void IntegerToZeroJustifiedString<char>(char*, int, int);
template COMMON_EXPORT void IntegerToZeroJustifiedString<char16_t>(char16_t*, int, int);
