#include "text/TextConversion.h"

#include "platform/PlatformCodePage.h"
#include "text/CharOps.h"
#include "text/TString.h"

#include <QByteArray>
#include <QString>

#include <atomic>

namespace {

std::atomic<int> g_codePage{0};

bool IsContinuation(unsigned char c)
{
    return (c & 0xC0) == 0x80;
}

// Bytes in a valid sequence starting at text[0], or 0 if it isn't one.
int ValidSequenceLength(unsigned char const* text, int left)
{
    unsigned char const lead = text[0];
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    int const size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (left < size)
        return 0;
    unsigned char const second = text[1];
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead == 0xE0)
        low = 0xA0;
    else if (lead == 0xED)
        high = 0x9F; // surrogates
    else if (lead == 0xF0)
        low = 0x90;
    else if (lead == 0xF4)
        high = 0x8F;
    if (second < low || second > high)
        return 0;
    for (int i = 2; i < size; ++i)
        if (!IsContinuation(text[i]))
            return 0;
    return size;
}

char32_t DecodeSequence(unsigned char const* text, int size)
{
    switch (size) {
    case 1:
        return text[0];
    case 2:
        return ((text[0] & 0x1Fu) << 6) | (text[1] & 0x3Fu);
    case 3:
        return ((text[0] & 0x0Fu) << 12) | ((text[1] & 0x3Fu) << 6) | (text[2] & 0x3Fu);
    default:
        return ((text[0] & 0x07u) << 18) | ((text[1] & 0x3Fu) << 12) | ((text[2] & 0x3Fu) << 6) | (text[3] & 0x3Fu);
    }
}

char16_t* PutCodePoint(char16_t* out, char32_t code)
{
    if (code < 0x10000) {
        *out++ = static_cast<char16_t>(code);
    } else {
        code -= 0x10000;
        *out++ = static_cast<char16_t>(0xD800 + (code >> 10));
        *out++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    }
    return out;
}

// Decodes; an invalid byte becomes U+FFFD. Returns the units written, at
// most length.
int DecodeUtf8(char const* bytes, int length, char16_t* out)
{
    auto const* text = reinterpret_cast<unsigned char const*>(bytes);
    char16_t* const start = out;
    int i = 0;
    while (i < length) {
        if (text[i] < 0x80) {
            *out++ = text[i++];
            continue;
        }
        int const size = ValidSequenceLength(text + i, length - i);
        if (size == 0) {
            *out++ = 0xFFFD;
            ++i;
            continue;
        }
        out = PutCodePoint(out, DecodeSequence(text + i, size));
        i += size;
    }
    return static_cast<int>(out - start);
}

bool IsHighSurrogate(char16_t c)
{
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLowSurrogate(char16_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

// Encodes; a surrogate that isn't part of a pair becomes U+FFFD. Returns
// the bytes written.
int EncodeUtf8(char16_t const* text, int length, char* bytes)
{
    auto* out = reinterpret_cast<unsigned char*>(bytes);
    unsigned char* const start = out;
    for (int i = 0; i < length; ++i) {
        char32_t code = text[i];
        if (code < 0x80) {
            *out++ = static_cast<unsigned char>(code);
            continue;
        }
        if (IsHighSurrogate(text[i]) && i + 1 < length && IsLowSurrogate(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[i + 1] - 0xDC00u);
            ++i;
        } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
            code = 0xFFFD;
        }
        if (code < 0x800) {
            *out++ = static_cast<unsigned char>(0xC0 | (code >> 6));
        } else if (code < 0x10000) {
            *out++ = static_cast<unsigned char>(0xE0 | (code >> 12));
            *out++ = static_cast<unsigned char>(0x80 | ((code >> 6) & 0x3F));
        } else {
            *out++ = static_cast<unsigned char>(0xF0 | (code >> 18));
            *out++ = static_cast<unsigned char>(0x80 | ((code >> 12) & 0x3F));
            *out++ = static_cast<unsigned char>(0x80 | ((code >> 6) & 0x3F));
        }
        *out++ = static_cast<unsigned char>(0x80 | (code & 0x3F));
    }
    return static_cast<int>(out - start);
}

int Utf8Size(char16_t const* text, int length)
{
    int size = 0;
    for (int i = 0; i < length; ++i) {
        char16_t const c = text[i];
        if (c < 0x80)
            size += 1;
        else if (c < 0x800)
            size += 2;
        else if (IsHighSurrogate(c) && i + 1 < length && IsLowSurrogate(text[i + 1]))
            size += 4, ++i;
        else
            size += 3;
    }
    return size;
}

bool UsesPlainBytes()
{
    return !PlatformNowUsingDbcsCodePage() && GetCodePage() == 0;
}

TString<char16_t> LocalToWide(char const* bytes, int length)
{
    QString decoded;
    if (!UsesPlainBytes() && PlatformMultiByteToWideChar(GetCodePage(), bytes, length, decoded))
        return TString<char16_t>(decoded);
    TString<char16_t> result{length_t(static_cast<unsigned>(length))};
    result.SetEnd(FastAnsiToWide(bytes, result.Buffer(), length));
    return result;
}

TString<char> WideToLocal(char16_t const* text, int length)
{
    QByteArray encoded;
    if (!UsesPlainBytes() && PlatformWideCharToMultiByte(GetCodePage(), text, length, encoded))
        return TString<char>(encoded);
    TString<char> result{length_t(static_cast<unsigned>(length))};
    result.SetEnd(FastWideToAnsi(text, result.Buffer(), length));
    return result;
}

} // namespace

int MeasureUtf8(char const* bytes, int length)
{
    auto const* text = reinterpret_cast<unsigned char const*>(bytes);
    int units = 0;
    int i = 0;
    while (i < length) {
        if (text[i] < 0x80) {
            ++i, ++units;
            continue;
        }
        int const size = ValidSequenceLength(text + i, length - i);
        if (size == 0)
            return -1;
        i += size;
        units += size == 4 ? 2 : 1;
    }
    return units;
}

int MeasureUtf16(char16_t const* text, int length)
{
    // A high surrogate with nothing behind it: a pair cut in two, or no UTF-16.
    if (length > 0 && IsHighSurrogate(text[length - 1]))
        return -1;
    return Utf8Size(text, length);
}

TString<char16_t> ConvertBytes(char const* bytes, int length)
{
    if (!bytes)
        return TString<char16_t>();
    if (length < 0)
        length = TextLength(bytes);
    if (length == 0)
        return TString<char16_t>();
    int const units = MeasureUtf8(bytes, length);
    if (units < 0)
        return LocalToWide(bytes, length);
    TString<char16_t> result{length_t(static_cast<unsigned>(units))};
    result.SetEnd(DecodeUtf8(bytes, length, result.Buffer()));
    return result;
}

TString<char> ConvertWideChars(char16_t const* text, int length)
{
    if (!text)
        return TString<char>();
    if (length < 0)
        length = TextLength(text);
    if (length == 0)
        return TString<char>();
    int const size = MeasureUtf16(text, length);
    if (size < 0)
        return WideToLocal(text, length);
    TString<char> result{length_t(static_cast<unsigned>(size))};
    result.SetEnd(EncodeUtf8(text, length, result.Buffer()));
    return result;
}

namespace {

TString<char> Utf8Of(char16_t const* text, int length)
{
    if (!text || length <= 0)
        return TString<char>();
    TString<char> result{length_t(static_cast<unsigned>(Utf8Size(text, length)))};
    result.SetEnd(EncodeUtf8(text, length, result.Buffer()));
    return result;
}

TString<char16_t> Utf16Of(char const* bytes, int length)
{
    if (!bytes || length <= 0)
        return TString<char16_t>();
    TString<char16_t> result{length_t(static_cast<unsigned>(length))};
    result.SetEnd(DecodeUtf8(bytes, length, result.Buffer()));
    return result;
}

} // namespace

TString<char> ConvertToUtf8(char16_t const* text)
{
    return Utf8Of(text, text ? TextLength(text) : 0);
}

TString<char> ConvertToUtf8(QString const& text)
{
    return Utf8Of(reinterpret_cast<char16_t const*>(text.utf16()), text.size());
}

TString<char> ConvertToUtf8(TString<char16_t> const& text)
{
    return Utf8Of(text.c_str(), text.GetLength());
}

TString<char16_t> ConvertFromUtf8(char const* text)
{
    return Utf16Of(text, text ? TextLength(text) : 0);
}

TString<char16_t> ConvertFromUtf8(TString<char> const& text)
{
    return Utf16Of(text.c_str(), text.GetLength());
}

int SetCodePage(int codePage)
{
    return g_codePage.exchange(codePage);
}

int GetCodePage()
{
    return g_codePage.load(std::memory_order_relaxed);
}

int FastAnsiToWide(char const* source, char16_t* target, int length)
{
    int i = 0;
    for (; i < length && source[i]; ++i)
        target[i] = static_cast<unsigned char>(source[i]);
    target[i] = 0;
    return i;
}

int FastWideToAnsi(char16_t const* source, char* target, int length)
{
    int i = 0;
    for (; i < length && source[i]; ++i)
        target[i] = source[i] <= 0xFF ? static_cast<char>(source[i]) : '?';
    target[i] = 0;
    return i;
}
