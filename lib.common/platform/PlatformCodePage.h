#pragma once

// Text in a named 8-bit or multi-byte code page, the counterparts of
// MultiByteToWideChar and WideCharToMultiByte. Page 0 is the system's local
// encoding. Both return false for a page that this system can't convert.

class QByteArray;
class QString;

// Whether the local encoding is a double-byte one; never on Linux.
bool PlatformNowUsingDbcsCodePage();
// The result is precomposed (normalization form C).
bool PlatformMultiByteToWideChar(int codePage, char const* bytes, int length, QString& result);
bool PlatformWideCharToMultiByte(int codePage, char16_t const* text, int length, QByteArray& result);
