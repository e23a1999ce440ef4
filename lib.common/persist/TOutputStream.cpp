#include "persist/TOutputStream.h"

#include "diag/LogCategories.h"
#include "math/Base64.h"
#include "persist/ComposeBuffer.h"
#include "text/TString.h"
#include "text/WideChar.h"

#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>

namespace {

constexpr int kPieceSize = 128;

// Writes the tabs of a level; returns the end.
char* PutTabs(char* out, int level)
{
    if (level > 0) {
        std::memset(out, '\t', static_cast<size_t>(level));
        out += level;
    }
    return out;
}

char* PutTag(char* out, char const* tag, int index, bool closing)
{
    *out++ = '<';
    if (closing)
        *out++ = '/';
    out += SpellXmlTag(tag, index, out);
    *out++ = '>';
    return out;
}

} // namespace

int XmlTagLength(char const* name)
{
    return name ? static_cast<int>(std::strcspn(name, ":")) : 0;
}

int SpellXmlTag(char const* name, int index, char* buffer)
{
    int const length = XmlTagLength(name);
    std::memcpy(buffer, name, static_cast<size_t>(length));
    if (index == 0)
        return length;
    buffer[length] = '-';
    char* end = std::to_chars(buffer + length + 1, buffer + length + 12, index).ptr;
    return static_cast<int>(end - buffer);
}

TString<char> GetXmlWriteTag(char const* name, int index)
{
    TComposeBuffer buffer(static_cast<unsigned>(XmlTagLength(name)) + 12);
    return TString<char>(buffer.Data(), length_t(SpellXmlTag(name, index, buffer.Data())));
}

TString<char> GetXmlReadTag(char const* name)
{
    return name ? TString<char>(name, length_t(XmlTagLength(name))) : TString<char>();
}

unsigned int TOutputStream::Write(bool value)
{
    unsigned char const byte = value ? 1 : 0;
    return WriteData(&byte, 1);
}

unsigned int TOutputStream::Write(bool const* values, unsigned int count)
{
    static_assert(sizeof(bool) == 1, "one byte a bool");
    return WriteData(values, count);
}

unsigned int TOutputStream::Write(long value)
{
    if (value < INT32_MIN || value > INT32_MAX)
        qCWarning(LogNoGoZone) << "TOutputStream::Write" << 1;
    return WriteNumber(static_cast<int32_t>(value));
}

unsigned int TOutputStream::Write(unsigned long value)
{
    if (value > UINT32_MAX)
        qCWarning(LogNoGoZone) << "TOutputStream::Write" << 2;
    return WriteNumber(static_cast<uint32_t>(value));
}

namespace {

// long and unsigned long narrowed to their stored 4 bytes.
template <class Long, class Narrow>
unsigned int WriteLongArray(TOutputStream& stream, Long const* values, unsigned int count)
{
    if (stream.MustSwap() || count == 0) {
        unsigned int position = stream.GetCurrentPosition();
        for (unsigned int i = 0; i < count; ++i)
            position = stream.Write(values[i]);
        return position;
    }
    TComposeBuffer buffer(count * 4);
    auto* narrow = reinterpret_cast<char*>(buffer.Data());
    bool outside = false;
    for (unsigned int i = 0; i < count; ++i) {
        Narrow const value = static_cast<Narrow>(values[i]);
        outside |= static_cast<Long>(value) != values[i];
        std::memcpy(narrow + i * 4, &value, 4);
    }
    if (outside)
        qCWarning(LogNoGoZone) << "TOutputStream::Write" << 3;
    return stream.WriteData(narrow, count * 4);
}

} // namespace

unsigned int TOutputStream::Write(long const* values, unsigned int count)
{
    return WriteLongArray<long, int32_t>(*this, values, count);
}

unsigned int TOutputStream::Write(unsigned long const* values, unsigned int count)
{
    return WriteLongArray<unsigned long, uint32_t>(*this, values, count);
}

unsigned int TOutputStream::WriteChars(char c, unsigned int count)
{
    if (count == 0)
        return GetCurrentPosition();
    char block[kPieceSize];
    std::memset(block, c, sizeof(block));
    unsigned int position = 0;
    while (count > 0) {
        unsigned int const piece = count < kPieceSize ? count : kPieceSize;
        position = WriteData(block, piece);
        count -= piece;
    }
    return position;
}

unsigned int TOutputStream::WriteWChars(char16_t c, unsigned int count)
{
    if (count == 0)
        return GetCurrentPosition();
    char16_t block[kPieceSize];
    for (char16_t& slot : block)
        slot = c;
    unsigned int position = 0;
    while (count > 0) {
        unsigned int const piece = count < kPieceSize ? count : kPieceSize;
        position = WriteData(block, piece * 2);
        count -= piece;
    }
    return position;
}

unsigned int TOutputStream::WriteString(char const* text, bool withTerminator)
{
    if (!text)
        return withTerminator ? Write('\0') : GetCurrentPosition();
    return WriteData(text, static_cast<unsigned>(std::strlen(text)) + (withTerminator ? 1 : 0));
}

unsigned int TOutputStream::WriteString(TString<char> const& text, bool withTerminator)
{
    return WriteData(text.c_str(), static_cast<unsigned>(text.GetLength()) + (withTerminator ? 1 : 0));
}

unsigned int TOutputStream::WriteString(char16_t const* text, bool withTerminator)
{
    if (!text) {
        char16_t const zero = 0;
        return withTerminator ? WriteData(&zero, 2) : GetCurrentPosition();
    }
    return WriteData(text, (static_cast<unsigned>(WideLength(text)) + (withTerminator ? 1 : 0)) * 2);
}

unsigned int TOutputStream::WriteString(TString<char16_t> const& text, bool withTerminator)
{
    return WriteData(text.c_str(), (static_cast<unsigned>(text.GetLength()) + (withTerminator ? 1 : 0)) * 2);
}

unsigned int TOutputStream::WriteLine(char const* text)
{
    WriteString(text, false);
    return WriteData("\r\n", 2);
}

unsigned int TOutputStream::WriteLine(TString<char> const& text)
{
    WriteString(text, false);
    return WriteData("\r\n", 2);
}

unsigned int TOutputStream::WriteLine(char16_t const* text)
{
    WriteString(text, false);
    Write(13);
    return Write(10);
}

unsigned int TOutputStream::WriteLine(TString<char16_t> const& text)
{
    WriteString(text, false);
    Write(13);
    return Write(10);
}

unsigned int TOutputStream::WriteXML(char const* tag, int index, EStartEnd startEnd, int level, bool lineEnd)
{
    int const tabs = level > 0 ? level : 0;
    TComposeBuffer buffer(static_cast<unsigned>(tabs + XmlTagLength(tag) + 20));
    char* out = PutTabs(buffer.Data(), tabs);
    out = PutTag(out, tag, index, startEnd == xmlEnd);
    if (lineEnd) {
        *out++ = '\r';
        *out++ = '\n';
    }
    return WriteData(buffer.Data(), static_cast<unsigned>(out - buffer.Data()));
}

unsigned int TOutputStream::WriteValueXML(char const* tag, int index, char const* value, int length, int level)
{
    if (!tag)
        return length > 0 ? WriteData(value, static_cast<unsigned>(length)) : GetCurrentPosition();
    int const tabs = level > 0 ? level : 0;
    int const tagLength = XmlTagLength(tag);
    TComposeBuffer buffer(static_cast<unsigned>(tabs + 2 * tagLength + length + 40));
    char* out = PutTabs(buffer.Data(), tabs);
    out = PutTag(out, tag, index, false);
    if (length > 0) {
        std::memcpy(out, value, static_cast<size_t>(length));
        out += length;
    }
    out = PutTag(out, tag, index, true);
    *out++ = '\r';
    *out++ = '\n';
    return WriteData(buffer.Data(), static_cast<unsigned>(out - buffer.Data()));
}

unsigned int TOutputStream::WriteXML(char const* tag, int index, char const* value, int level)
{
    return WriteValueXML(tag, index, value, value ? static_cast<int>(std::strlen(value)) : 0, level);
}

unsigned int TOutputStream::WriteBinaryXML(char const* tag, int index, void const* data, int size, int level)
{
    int const textSize = Base64EncodedSize(size);
    TComposeBuffer text(static_cast<unsigned>(textSize) + 1);
    int const length = textSize > 0 ? EncodeBase64(data, size, text.Data()) : 0;
    return WriteValueXML(tag, index, text.Data(), length, level);
}

unsigned int WriteXML(TOutputStream& stream, float value, char separator)
{
    char text[16];
    int length = EncodeBase64(&value, 4, text);
    if (separator)
        text[length++] = separator;
    return stream.WriteData(text, static_cast<unsigned>(length));
}

unsigned int WriteXML(TOutputStream& stream, double value, char separator)
{
    char text[16];
    int length = EncodeBase64(&value, 8, text);
    if (separator)
        text[length++] = separator;
    return stream.WriteData(text, static_cast<unsigned>(length));
}

unsigned int WriteXML(TOutputStream& stream, char16_t const* text)
{
    TString<char> const narrow(text);
    return stream.WriteString(narrow, false);
}
