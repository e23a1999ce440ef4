#pragma once

#include "core/CommonExport.h"
#include "persist/ByteSwap.h"
#include "persist/TStream.h"

template <class T> class TString;

// Typed writing over one raw operation. Every write returns the stream
// position behind it. Numbers of more than one byte are reversed when the
// endian type asks for it; long and unsigned long take 4 bytes, as on every
// platform the stored forms were made on. Strings go out as their bytes,
// never reversed.
class COMMON_EXPORT TOutputStream : public TStream
{
public:
    explicit TOutputStream(EEndianType endianType = endianNoSwap) : TStream(endianType) {}

    // A null data advances by size without storing anything.
    virtual unsigned int WriteData(void const* data, unsigned int size) = 0;

    unsigned int Write(char value) { return WriteData(&value, 1); }
    unsigned int Write(signed char value) { return WriteData(&value, 1); }
    unsigned int Write(unsigned char value) { return WriteData(&value, 1); }
    unsigned int Write(bool value);
    unsigned int Write(short value) { return WriteNumber(value); }
    unsigned int Write(unsigned short value) { return WriteNumber(value); }
    unsigned int Write(int value) { return WriteNumber(value); }
    unsigned int Write(unsigned int value) { return WriteNumber(value); }
    // A value outside 32 bits is reported to LogNoGoZone and cut.
    unsigned int Write(long value);
    unsigned int Write(unsigned long value);
    unsigned int Write(float value) { return WriteNumber(value); }
    unsigned int Write(long long value) { return WriteNumber(value); }
    unsigned int Write(unsigned long long value) { return WriteNumber(value); }
    unsigned int Write(double value) { return WriteNumber(value); }

    // Arrays: one WriteData when nothing is to be reversed, else one write
    // per element.
    unsigned int Write(char const* values, unsigned int count) { return WriteData(values, count); }
    unsigned int Write(signed char const* values, unsigned int count) { return WriteData(values, count); }
    unsigned int Write(unsigned char const* values, unsigned int count) { return WriteData(values, count); }
    unsigned int Write(bool const* values, unsigned int count);
    unsigned int Write(short const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(unsigned short const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(int const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(unsigned int const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(long const* values, unsigned int count);
    unsigned int Write(unsigned long const* values, unsigned int count);
    unsigned int Write(float const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(long long const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(unsigned long long const* values, unsigned int count) { return WriteArray(values, count); }
    unsigned int Write(double const* values, unsigned int count) { return WriteArray(values, count); }

    // Advances without storing: the bytes are for later back-patching.
    unsigned int ReserveSpace(unsigned int size) { return WriteData(nullptr, size); }
    // In pieces of at most 128 characters; a count of 0 writes nothing.
    unsigned int WriteChars(char c, unsigned int count);
    unsigned int WriteWChars(char16_t c, unsigned int count);

    unsigned int WriteString(char const* text, bool withTerminator);
    unsigned int WriteString(TString<char> const& text, bool withTerminator);
    unsigned int WriteString(char16_t const* text, bool withTerminator);
    unsigned int WriteString(TString<char16_t> const& text, bool withTerminator);
    // The text, then CR LF.
    unsigned int WriteLine(char const* text);
    unsigned int WriteLine(TString<char> const& text);
    // The text, then the line end as two 32-bit integers 13 and 10: eight
    // bytes 0D 00 00 00 0A 00 00 00. Readers of the library expect exactly
    // that.
    unsigned int WriteLine(char16_t const* text);
    unsigned int WriteLine(TString<char16_t> const& text);

    // Tabs for the level, then <tag> or </tag> spelled by GetXmlWriteTag,
    // then CR LF if asked.
    unsigned int WriteXML(char const* tag, int index, EStartEnd startEnd, int level, bool lineEnd);
    // <tag>value</tag> and CR LF on one line, or the bare value with a null
    // tag. No escaping.
    unsigned int WriteXML(char const* tag, int index, char const* value, int level);
    // The same with the data in Base64.
    unsigned int WriteBinaryXML(char const* tag, int index, void const* data, int size, int level);

private:
    template <class T>
    unsigned int WriteNumber(T value);
    template <class T>
    unsigned int WriteArray(T const* values, unsigned int count);
    unsigned int WriteValueXML(char const* tag, int index, char const* value, int length, int level);
};

template <class T>
inline unsigned int TOutputStream::WriteNumber(T value)
{
    if (MustSwap())
        SwapInPlace(value);
    return WriteData(&value, sizeof(T));
}

template <class T>
inline unsigned int TOutputStream::WriteArray(T const* values, unsigned int count)
{
    if (!MustSwap())
        return WriteData(values, count * sizeof(T));
    unsigned int position = GetCurrentPosition();
    for (unsigned int i = 0; i < count; ++i)
        position = WriteNumber(values[i]);
    return position;
}

// Bare Base64 of the value's 4 or 8 little-endian bytes, then the separator
// byte unless it is 0.
COMMON_EXPORT unsigned int WriteXML(TOutputStream& stream, float value, char separator);
COMMON_EXPORT unsigned int WriteXML(TOutputStream& stream, double value, char separator);
// The text in its narrow form, bare.
COMMON_EXPORT unsigned int WriteXML(TOutputStream& stream, char16_t const* text);

// The XML spelling of a tag: the part before the first ":" and, for an index
// other than 0, "-" and the index: ("track:t", 3) gives "track-3".
COMMON_EXPORT TString<char> GetXmlWriteTag(char const* name, int index);
// The part before the first ":".
COMMON_EXPORT TString<char> GetXmlReadTag(char const* name);

// Library-internal: writes the XML spelling into buffer (room for the
// name's part and 12 more characters) and returns its length.
int SpellXmlTag(char const* name, int index, char* buffer);
// Length of the part of name before the first ":".
int XmlTagLength(char const* name);
