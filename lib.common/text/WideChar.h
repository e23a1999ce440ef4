#pragma once

#include "core/CommonExport.h"

// The C library's wide functions work on wchar_t, which is 32 bits here while
// the library's wide text is UTF-16. These are their char16_t counterparts.
// ASCII stays inline; everything above goes by Unicode character data.

COMMON_EXPORT int WideLength(char16_t const* text);
COMMON_EXPORT char16_t const* WideFindChar(char16_t const* text, char16_t c);
COMMON_EXPORT char16_t const* WideFindString(char16_t const* text, char16_t const* needle);
COMMON_EXPORT int WideCompare(char16_t const* a, char16_t const* b);
COMMON_EXPORT int WideCompareNoCase(char16_t const* a, char16_t const* b);
COMMON_EXPORT int WideCompareNoCase(char16_t const* a, char16_t const* b, int count);

COMMON_EXPORT char16_t WideToUpperSlow(char16_t c);
COMMON_EXPORT char16_t WideToLowerSlow(char16_t c);
COMMON_EXPORT bool WideIsAlphaSlow(char16_t c);
COMMON_EXPORT bool WideIsDigitSlow(char16_t c);
COMMON_EXPORT bool WideIsSpaceSlow(char16_t c);

inline char16_t WideToUpper(char16_t c)
{
    if (c < 0x80)
        return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
    return WideToUpperSlow(c);
}

inline char16_t WideToLower(char16_t c)
{
    if (c < 0x80)
        return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
    return WideToLowerSlow(c);
}

inline bool WideIsDigit(char16_t c)
{
    return c < 0x80 ? c >= u'0' && c <= u'9' : WideIsDigitSlow(c);
}

inline bool WideIsAlpha(char16_t c)
{
    if (c < 0x80)
        return (c | 0x20) >= u'a' && (c | 0x20) <= u'z';
    return WideIsAlphaSlow(c);
}

inline bool WideIsAlnum(char16_t c)
{
    return WideIsAlpha(c) || WideIsDigit(c);
}

inline bool WideIsSpace(char16_t c)
{
    if (c < 0x80)
        return c == u' ' || (c >= u'\t' && c <= u'\r');
    return WideIsSpaceSlow(c);
}
