#pragma once

#include "core/CommonExport.h"

#include <type_traits>

// Helpers on plain C strings, for char and char16_t with one body each.
// A null text reads as the empty text. Lengths of -1 run to the terminator.
// Single characters are not deduced, so CountChar(wideText, u'x') and
// CountChar(wideText, 'x') both work.
template <class T>
using TCharArg = std::common_type_t<T>;

// Copies at most size - 1 characters and ends them. zeroRest zeroes the whole
// rest of the target, for buffers that are written out as they are. A size of
// 0 writes nothing.
template <class T>
COMMON_EXPORT T* Strcpy(T* target, T const* source, unsigned size, bool zeroRest = false);

// Copies length characters, or size - 1 if that is smaller, terminators
// included, and ends them; a negative length runs to the terminator. Returns
// the characters copied; a size below 1 writes nothing.
template <class T>
COMMON_EXPORT int MakeString(T* target, int size, T const* source, int length);

// Unbounded copy and append that return the new end (the terminator), so
// that several pieces chain without measuring the target again.
template <class T>
COMMON_EXPORT T* StrcpyEx(T* target, T const* source);
template <class T>
COMMON_EXPORT T* StrcatEx(T* target, T const* source);

// A terminated copy from malloc_ex, to be released by free_ex. Null for a
// null source.
template <class T>
COMMON_EXPORT T* Strnewdup(T const* source, int length = -1);

template <class T>
COMMON_EXPORT int CountChar(T const* text, TCharArg<T> c);
// Hits that don't overlap: "aaaa" holds "aa" twice. An empty needle counts 0.
template <class T>
COMMON_EXPORT int CountSubStrings(T const* text, T const* needle, bool caseSensitive = true);
// The last character of text that is in set, or null.
template <class T>
COMMON_EXPORT T const* FindLastOf(T const* text, T const* set);

// In place; both return the number of characters replaced. ReplaceChars maps
// each character of from to the one at the same place in to, or to the single
// character of to when it has one. Other lengths of to are a caller's fault:
// logged, and nothing changes.
template <class T>
COMMON_EXPORT int ReplaceChar(T* text, TCharArg<T> from, TCharArg<T> to);
template <class T>
COMMON_EXPORT int ReplaceChars(T* text, T const* from, T const* to);

// Reverses the characters in place and returns text.
template <class T>
COMMON_EXPORT T* Inverse(T* text, int length = -1);

// Ordering by character value; without case sensitivity by upper case.
template <class T>
COMMON_EXPORT bool AreEqual(T const* a, T const* b, bool caseSensitive = true);
template <class T>
COMMON_EXPORT int Compare(T const* a, T const* b, bool caseSensitive = true);

// The part of text without characters of set (null: space and tab) at the
// sides asked for: 1 the start, 4 the end, 5 both. Returns its start and
// stores its length. The second form reads textLength characters of a text
// that need not be ended.
template <class T>
COMMON_EXPORT T const* FindTrimmedSubString(T const* text, int* length, TCharArg<T> const* set = nullptr, int sides = 5);
template <class T>
COMMON_EXPORT T const* FindTrimmedSubString(T const* text, int textLength, int* length, TCharArg<T> const* set,
                                            int sides);

// Position in text lines, counted from 0: a line ends after each LF, so the
// CR of a CR LF pair is the last character of its line. A position past the
// terminator counts as the terminator's.
template <class T>
COMMON_EXPORT int FindLineIndex(T const* text, int position);
template <class T>
COMMON_EXPORT int FindOffsetFromStartOfLine(T const* text, int position);

#define COMMON_CSTRING_HELPERS(T)                                                                        \
    extern template COMMON_EXPORT T* Strcpy<T>(T*, T const*, unsigned, bool);                            \
    extern template COMMON_EXPORT int MakeString<T>(T*, int, T const*, int);                             \
    extern template COMMON_EXPORT T* StrcpyEx<T>(T*, T const*);                                          \
    extern template COMMON_EXPORT T* StrcatEx<T>(T*, T const*);                                          \
    extern template COMMON_EXPORT T* Strnewdup<T>(T const*, int);                                        \
    extern template COMMON_EXPORT int CountChar<T>(T const*, T);                                         \
    extern template COMMON_EXPORT int CountSubStrings<T>(T const*, T const*, bool);                      \
    extern template COMMON_EXPORT T const* FindLastOf<T>(T const*, T const*);                            \
    extern template COMMON_EXPORT int ReplaceChar<T>(T*, T, T);                                          \
    extern template COMMON_EXPORT int ReplaceChars<T>(T*, T const*, T const*);                           \
    extern template COMMON_EXPORT T* Inverse<T>(T*, int);                                                \
    extern template COMMON_EXPORT bool AreEqual<T>(T const*, T const*, bool);                            \
    extern template COMMON_EXPORT int Compare<T>(T const*, T const*, bool);                              \
    extern template COMMON_EXPORT T const* FindTrimmedSubString<T>(T const*, int*, T const*, int);       \
    extern template COMMON_EXPORT T const* FindTrimmedSubString<T>(T const*, int, int*, T const*, int);  \
    extern template COMMON_EXPORT int FindLineIndex<T>(T const*, int);                                   \
    extern template COMMON_EXPORT int FindOffsetFromStartOfLine<T>(T const*, int);
COMMON_CSTRING_HELPERS(char)
COMMON_CSTRING_HELPERS(char16_t)
#undef COMMON_CSTRING_HELPERS
