#pragma once

#include "core/CommonExport.h"

template <class T> class TString;

// Base64 with the standard alphabet, "=" as filler and no line breaks.

// 4 characters for every 3 bytes begun; 0 for a size below 1.
COMMON_EXPORT int Base64EncodedSize(int size);
// Writes Base64EncodedSize(size) characters, without a terminator, and
// returns their number.
COMMON_EXPORT int EncodeBase64(void const* data, int size, char* text);
// The 8 or 4 bytes of the value in memory order.
COMMON_EXPORT TString<char> EncodeBase64(double value);
COMMON_EXPORT TString<char> EncodeBase64(float value);

// Room enough for decoding a text of this many characters.
COMMON_EXPORT int Base64DecodedMaxSize(int textLength);
// Decodes up to the terminator and returns the number of bytes written.
// Characters outside the alphabet and "=" are skipped. Each group of four
// gives 3 bytes, 2 when its fourth character is "=", 1 when its third is too;
// "=" elsewhere counts as zero bits. A group cut short by the end is read as
// if filled up with "=".
COMMON_EXPORT int DecodeBase64(char const* text, void* data);
// The same over length characters, stopping early at a terminator.
COMMON_EXPORT int DecodeBase64(char const* text, int length, void* data);
