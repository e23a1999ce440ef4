#pragma once

// Library-internal: strtoll(text, nullptr, 10), with the short plain numbers
// of documents read without the C library's general parser.

#include <cstdlib>

inline long long ParseDecimal(char const* text)
{
    char const* p = text;
    bool const negative = *p == '-';
    p += negative;
    if (static_cast<unsigned>(*p - '0') > 9)
        return std::strtoll(text, nullptr, 10);
    long long value = 0;
    for (int digits = 0; static_cast<unsigned>(*p - '0') <= 9; ++p, ++digits) {
        // Beyond 18 digits the value may leave the range: the C library
        // knows how that ends.
        if (digits == 18)
            return std::strtoll(text, nullptr, 10);
        value = value * 10 + (*p - '0');
    }
    return negative ? -value : value;
}
