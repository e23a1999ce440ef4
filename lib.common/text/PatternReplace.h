#pragma once

#include "core/TVector.h"
#include "text/TString.h"

// Replacing by TRegExpr patterns.
//
// Matches are searched one after the other, each in the text behind the one
// before, as TRegExpr::Tokenize does. In the replacement "/0" stands for the
// whole match, "/1" to "/9" for captures 0 to 8 (numbered as the back
// references of the dialect count them), and "/c" for any other character c,
// so "//" is a slash. Empty matches replace nothing. The callback is the one
// of TString::Replace: asked before each replacement with the position,
// length, line and offset in the line of the match, it skips the match by
// returning false. Returns the number of replacements; a pattern that doesn't
// compile, or an empty one, replaces nothing and gives 0.
template <class T>
COMMON_EXPORT int ReplaceAllPatterns(TString<T>& text, T const* pattern, T const* replacement, bool caseSensitive = true,
                                     CB_Replace callback = nullptr, void* data = nullptr);

// The numbers of text by the pattern "-?[0-9]+", so that here a minus sign
// belongs to the number that follows it. Values beyond the range of int give
// its nearest end. out is replaced; returns its count.
template <class T>
COMMON_EXPORT int StringToIntVector(T const* text, TVector<int>& out);

#define COMMON_PATTERN_REPLACE(T)                                                                                   \
    extern template COMMON_EXPORT int ReplaceAllPatterns<T>(TString<T>&, T const*, T const*, bool, CB_Replace,      \
                                                            void*);                                                 \
    extern template COMMON_EXPORT int StringToIntVector<T>(T const*, TVector<int>&);
COMMON_PATTERN_REPLACE(char)
COMMON_PATTERN_REPLACE(char16_t)
#undef COMMON_PATTERN_REPLACE
