#pragma once

// One spelling per character operation for both string forms, so that the
// string code is written once. The narrow form behaves as the C library in
// the "C" locale on signed characters: only ASCII letters have a case.
// Internal to the library.

#include "text/WideChar.h"

#include <cstring>

inline int TextLength(char const* text)
{
    return static_cast<int>(std::strlen(text));
}

inline int TextLength(char16_t const* text)
{
    return WideLength(text);
}

inline char UpperOf(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

inline char16_t UpperOf(char16_t c)
{
    return WideToUpper(c);
}

inline char LowerOf(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

inline char16_t LowerOf(char16_t c)
{
    return WideToLower(c);
}

inline bool IsUpperChar(char c)
{
    return c >= 'A' && c <= 'Z';
}

inline bool IsUpperChar(char16_t c)
{
    return WideToLower(c) != c;
}

inline bool IsLowerChar(char c)
{
    return c >= 'a' && c <= 'z';
}

inline bool IsLowerChar(char16_t c)
{
    return WideToUpper(c) != c;
}

inline bool IsDigitChar(char c)
{
    return c >= '0' && c <= '9';
}

inline bool IsDigitChar(char16_t c)
{
    return WideIsDigit(c);
}

inline bool IsAlnumChar(char c)
{
    return IsDigitChar(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
}

inline bool IsAlnumChar(char16_t c)
{
    return WideIsAlnum(c);
}

// The value a character adds to a hash: narrow characters count as signed.
inline int HashValueOf(char c)
{
    return static_cast<signed char>(c);
}

inline int HashValueOf(char16_t c)
{
    return c;
}

template <class T>
inline bool SameChar(T a, T b, bool caseSensitive)
{
    return a == b || (!caseSensitive && UpperOf(a) == UpperOf(b));
}

// Position of c within text[0..length), or -1.
inline int FindCharIn(char const* text, int length, char c)
{
    void const* hit = length > 0 ? std::memchr(text, c, static_cast<size_t>(length)) : nullptr;
    return hit ? static_cast<int>(static_cast<char const*>(hit) - text) : -1;
}

inline int FindCharIn(char16_t const* text, int length, char16_t c)
{
    for (int i = 0; i < length; ++i)
        if (text[i] == c)
            return i;
    return -1;
}

template <class T>
inline bool IsInSet(T c, T const* set)
{
    for (; *set; ++set)
        if (*set == c)
            return true;
    return false;
}
