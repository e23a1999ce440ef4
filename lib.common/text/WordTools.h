#pragma once

#include "core/CommonExport.h"
#include "text/EWordCase.h"

// Whether text[start..end) stands as a word of its own: neither the
// character before start nor the one at end is a letter, a digit or "_".
template <class T>
COMMON_EXPORT bool IsWholeWord(T const* text, int start, int end);

// The case of the letters of a text; a negative length runs to the
// terminator. Capital means that only the first character is upper case.
template <class T>
COMMON_EXPORT EWordCase FindTextCase(T const* text, int length);

extern template COMMON_EXPORT bool IsWholeWord<char>(char const*, int, int);
extern template COMMON_EXPORT bool IsWholeWord<char16_t>(char16_t const*, int, int);
extern template COMMON_EXPORT EWordCase FindTextCase<char>(char const*, int);
extern template COMMON_EXPORT EWordCase FindTextCase<char16_t>(char16_t const*, int);
