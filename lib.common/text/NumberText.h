#pragma once

#include "core/CommonExport.h"

class QString;
template <class T>
class TString;

// The option word of the number functions. The time and audio value
// functions take the same word and hand their share of it on.
enum ENumberTextOption : int
{
    eNumDecimalsMask = 0x0000F,      // FloatToString: decimals, at most 15
    eNumSignificantMask = 0x000F0,   // FloatToString: significant digits; 0: the decimals rule
    eNumGroupDigits = 0x00100,       // "1 234 567"
    eNumPlusSign = 0x00200,          // "+" in front of a positive number
    eNumKeepTrailingZeros = 0x01000, // FloatToString: "2.500" rather than "2.5"
    eNumLeadingSpaces = 0x04000,     // IntToString: "  5" rather than "005"
    eNumExponent = 0x08000,          // FloatToString: "%.*e" with the decimals
    eNumRoman = 0x10000,             // IntToString: Roman numeral, 1 to 3999
    eNumRomanCapitals = 0x20000,     // with eNumRoman
};

constexpr int NumDecimals(int decimals)
{
    return decimals & eNumDecimalsMask;
}
constexpr int NumSignificantDigits(int digits)
{
    return (digits << 4) & eNumSignificantMask;
}

// All write into the caller's buffer, end it with a zero and return the
// number of characters before the zero. T is char or char16_t.
//
// IntToString: "-" for a negative value, "+" for a positive one under
// eNumPlusSign, never a sign on zero. A width above 0 pads the digits (not
// the sign) with zeros and turns grouping off; the buffer must then hold
// width + 2 characters, and 24 otherwise. eNumLeadingSpaces turns the
// leading zeros of a text that starts with "0" into spaces, keeping the last
// digit; a text that starts with a sign is left alone. A Roman numeral is
// written for 1 to 3999; anything else gives an empty text and 0.
template <class T>
COMMON_EXPORT int IntToString(int value, T* buffer, int width, int options);
template <class T>
COMMON_EXPORT int Int64ToString(long long value, T* buffer, int width, int options);

// Rounds halves away from zero to the decimals of the options, or to their
// significant digits; the decimals that significant digits need are capped
// at 15. Trailing zeros of the fraction go unless eNumKeepTrailingZeros, and
// a value that rounds to zero has no sign. From 2147483647 on the integer
// part is written digit by digit up to 1e21 and as "%.15g" from there, with
// no fraction. NaN gives "nan", the infinities "inf" with their sign. The
// longest text, with grouping and 15 decimals, is under 48 characters.
template <class T>
COMMON_EXPORT int FloatToString(double value, T* buffer, int options);

// value as "%0Nd" where N is the number of digits of maximum, for a maximum
// of 10 to 999999999, and as "%d" otherwise. As in printf, a minus sign
// counts in the width.
template <class T>
COMMON_EXPORT void IntegerToZeroJustifiedString(T* buffer, int value, int maximum);

COMMON_EXPORT TString<char> AStringFromInt(int value, int width = 0, int options = 0);
COMMON_EXPORT TString<char> AStringFromInt64(long long value, int width = 0, int options = 0);
COMMON_EXPORT TString<char> AStringFromFloat(double value, int options);
COMMON_EXPORT QString QStringFromInt(int value, int width = 0, int options = 0);
COMMON_EXPORT QString QStringFromInt64(long long value, int width = 0, int options = 0);
COMMON_EXPORT QString QStringFromFloat(double value, int options);
