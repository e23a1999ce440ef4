#pragma once

#include "core/CommonExport.h"
#include "core/TFlexList.h"
#include "core/TVector.h"
#include "text/LString.h"
#include "text/TString.h"

// Splitting text into pieces and joining them again, for char and char16_t.
//
// ExplodeString replaces the content of out by the pieces of text between
// separator characters. An empty text gives no piece. A null or empty set of
// separators reads text as a multi-string: items ended by a zero, the whole
// ended by two. Without keepEmpty a piece that is empty (after trimming, with
// trim) is dropped, so separators in a row count as one; with keepEmpty every
// separator ends a piece, and one at the very end leaves an empty last piece.
// trim takes spaces and tabs off both sides of each piece.
template <class T>
COMMON_EXPORT void ExplodeString(TVector<TString<T>>& out, T const* text, T const* separators, bool trim, bool keepEmpty);
// The same into a list, which should own its elements: it is cleared first.
template <class T>
COMMON_EXPORT void ExplodeString(TFlexList<LString<T>>& out, T const* text, T const* separators, bool trim, bool keepEmpty);

// One separator of several characters. With a null or empty separator the
// whole text is one piece, dropped when it is empty and keepEmpty is false:
// so an empty text with keepEmpty gives one empty piece here.
template <class T>
COMMON_EXPORT void ExplodeStringEx(TVector<TString<T>>& out, T const* text, T const* separator, bool trim, bool keepEmpty);

// ExplodeString by CR and LF: a CR LF pair leaves an empty line between them,
// which keepEmpty keeps.
template <class T>
COMMON_EXPORT void TextToStringVector(T const* text, TVector<TString<T>>& out, bool trim, bool keepEmpty);

// Joins with separator (null: "\n"); terminate puts one more separator behind
// a result that isn't empty.
template <class T>
COMMON_EXPORT TString<T> StringFromStringVector(TVector<TString<T>> const& strings, T const* separator = nullptr,
                                                bool terminate = false);

// Writes the non-empty strings as a multi-string: each ended by a zero, and
// one more zero behind the last. The first string that would leave no room
// for its zero and the final one within size ends the copy. Returns the
// characters used, final zero included; nothing to write still gives two
// zeros and 2. A null buffer only counts, with no size limit. A buffer of
// fewer than 2 characters gets nothing and the result is 0.
template <class T>
COMMON_EXPORT int BuildMultiString(TVector<TString<T>> const& strings, T* buffer, int size);

// The runs of the digits 0 to 9 as numbers, every other character separates;
// a minus sign is no part of a number. Runs above 2147483647 give that value.
// The array comes from malloc_ex (free_ex releases it) and is null when
// there is no number; count, if given, gets the number of values. The form
// into a TVector<int>, which reads minus signs, is in PatternReplace.h.
template <class T>
COMMON_EXPORT int* StringToIntVector(T const* text, int* count);

// Decimal values, separated by separator; a zero separator puts nothing
// between them.
template <class T>
COMMON_EXPORT TString<T> StringFromIntVector(int const* values, int count, T separator);

#define COMMON_STRING_SPLIT(T)                                                                                       \
    extern template COMMON_EXPORT void ExplodeString<T>(TVector<TString<T>>&, T const*, T const*, bool, bool);       \
    extern template COMMON_EXPORT void ExplodeString<T>(TFlexList<LString<T>>&, T const*, T const*, bool, bool);     \
    extern template COMMON_EXPORT void ExplodeStringEx<T>(TVector<TString<T>>&, T const*, T const*, bool, bool);     \
    extern template COMMON_EXPORT void TextToStringVector<T>(T const*, TVector<TString<T>>&, bool, bool);            \
    extern template COMMON_EXPORT TString<T> StringFromStringVector<T>(TVector<TString<T>> const&, T const*, bool);  \
    extern template COMMON_EXPORT int BuildMultiString<T>(TVector<TString<T>> const&, T*, int);                      \
    extern template COMMON_EXPORT int* StringToIntVector<T>(T const*, int*);                                         \
    extern template COMMON_EXPORT TString<T> StringFromIntVector<T>(int const*, int, T);
COMMON_STRING_SPLIT(char)
COMMON_STRING_SPLIT(char16_t)
#undef COMMON_STRING_SPLIT
