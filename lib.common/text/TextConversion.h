#pragma once

#include "core/CommonExport.h"

class QString;
template <class T> class TString;

// Between the two string forms. Bytes that are valid UTF-8 (strictly: no
// overlong forms, no surrogates, nothing above U+10FFFF) decode as UTF-8;
// other bytes are local text: widened one by one while no code page is set,
// else decoded by that page. The wide direction likewise: UTF-16 becomes
// UTF-8 unless it ends in a lone high surrogate, which makes it local text.
// A length of -1 runs to the terminator.
COMMON_EXPORT TString<char16_t> ConvertBytes(char const* bytes, int length);
COMMON_EXPORT TString<char> ConvertWideChars(char16_t const* text, int length);

// Strict conversions that always give UTF-8 or UTF-16: what can't be
// converted becomes U+FFFD.
COMMON_EXPORT TString<char> ConvertToUtf8(char16_t const* text);
COMMON_EXPORT TString<char> ConvertToUtf8(QString const& text);
COMMON_EXPORT TString<char> ConvertToUtf8(TString<char16_t> const& text);
COMMON_EXPORT TString<char16_t> ConvertFromUtf8(char const* text);
COMMON_EXPORT TString<char16_t> ConvertFromUtf8(TString<char> const& text);

// The page for local text; 0 means none. SetCodePage returns the old one.
COMMON_EXPORT int SetCodePage(int codePage);
COMMON_EXPORT int GetCodePage();

// One byte a character; both stop at a terminator and return the count.
// Wide characters above 0xFF become '?'.
COMMON_EXPORT int FastAnsiToWide(char const* source, char16_t* target, int length);
COMMON_EXPORT int FastWideToAnsi(char16_t const* source, char* target, int length);

// UTF-16 units for valid UTF-8, else -1; UTF-8 bytes for convertible
// UTF-16, else -1.
COMMON_EXPORT int MeasureUtf8(char const* bytes, int length);
COMMON_EXPORT int MeasureUtf16(char16_t const* text, int length);
