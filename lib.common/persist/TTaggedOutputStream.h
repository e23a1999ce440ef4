#pragma once

#include "core/CommonExport.h"
#include "core/EAutoDelete.h"
#include "core/TVector.h"
#include "persist/TOutputMemoryStream.h"
#include "persist/TTaggedStream.h"
#include "text/TString.h"

class QByteArray;
class QString;
class QUuid;
class TNodeNameIndex;

// Writes a tagged document: named groups (MoveDown, MoveUp) holding named,
// typed values (SetValue, SetBinary), in one of three modes.
//
// Modes 0 and 1 start with a header: "LE", 0, a padding byte, the CRC-32 of
// the bytes from offset 12 on, the total size, and the file type with its
// zero. Mode 0 then holds the bare values in call order, mode 1 a tree of
// nodes (see TTaggedStream) under a group named "Root". Mode 2 is XML text:
// a declaration, the file type as outermost element, a line per group tag
// and per value, indented by tabs, with no attributes and no escaping.
//
// A tag may hold two spellings, "long:short": XML uses the part before the
// ":", raw tags the part behind. An index other than 0 is appended, in raw
// tags directly ("E12"), in XML after a "-" ("E-12"). In mode 1 a tag with
// "/" is a path of groups; a leading "/" starts at the root.
class COMMON_EXPORT TTaggedOutputStream : public TTaggedStream
{
public:
    // autoDelete goes to the memory stream: with autoDeleteOff the finished
    // block is the caller's, to free with free_ex.
    TTaggedOutputStream(EStreamMode mode, char const* fileType, EAutoDelete autoDelete = autoDeleteOn);
    ~TTaggedOutputStream() override;

    // Enters the group of that name in the current group, or makes it. In
    // mode 1 entering an existing group extends it; in mode 2 every entry
    // is a new element.
    void MoveDown(char const* tag, int index = 0);
    void MoveUp() override;
    // The XML half of MoveDown and MoveUp.
    void EnterXmlSection(char const* tag, int index);
    void ExitXmlSection();

    // Numbers: 1 to 8 bytes as their type has, long as 4. The unsigned
    // types are written as the signed type of their width (so in XML as a
    // signed number).
    void SetValue(bool value, char const* tag, int index = 0);
    void SetValue(char value, char const* tag, int index = 0);
    void SetValue(signed char value, char const* tag, int index = 0);
    void SetValue(unsigned char value, char const* tag, int index = 0);
    void SetValue(short value, char const* tag, int index = 0);
    void SetValue(unsigned short value, char const* tag, int index = 0);
    void SetValue(int value, char const* tag, int index = 0);
    void SetValue(unsigned int value, char const* tag, int index = 0);
    void SetValue(long value, char const* tag, int index = 0);
    void SetValue(unsigned long value, char const* tag, int index = 0);
    void SetValue(long long value, char const* tag, int index = 0);
    void SetValue(unsigned long long value, char const* tag, int index = 0);
    void SetValue(float value, char const* tag, int index = 0);
    void SetValue(double value, char const* tag, int index = 0);
    // Text with its terminator (UTF-8, or UTF-16 for the wide form). In XML
    // narrow text goes out bare when IsPureAscii, else in CDATA; wide text
    // always in CDATA.
    void SetValue(char const* text, char const* tag, int index = 0);
    void SetValue(char16_t const* text, char const* tag, int index = 0);
    void SetValue(QString const& text, char const* tag, int index = 0);
    // The 16 bytes of toRfc4122, as binary.
    void SetValue(QUuid const& id, char const* tag, int index = 0);
    // Opaque bytes; Base64 in XML.
    void SetBinary(void const* data, int size, char const* tag, int index = 0);
    void SetBinary(QByteArray const& data, char const* tag, int index = 0);

    // Ends the document: aligns to 4, puts CRC-32 and size in the header
    // (modes 0, 1) or closes the file type element (mode 2). Returns the
    // size; a second call returns it again and changes nothing.
    unsigned int CloseWriting();
    // CloseWriting, then a copy of the document.
    QByteArray GetAsByteArray();
    // The bytes so far; after CloseWriting the whole document.
    unsigned int Size() const { return m_output.GetPosition(); }
    unsigned char* Start() { return m_output.Start(); }
    unsigned char const* Start() const { return m_output.Start(); }
    bool operator==(TTaggedOutputStream const& other) const;
    bool operator!=(TTaggedOutputStream const& other) const { return !(*this == other); }

    // Known after CloseWriting: nothing was written behind the header.
    bool EndedWithoutContents() const { return m_endedWithoutContents; }
    bool IsClosed() const { return m_closed; }
    int GetXmlLevel() const { return m_xmlLevel; }
    // For values written by hand (TScopedTag, the XML text forms).
    TOutputMemoryStream& Output() { return m_output; }

protected:
    // Writes the raw name of tag and index and its zero, pads a name shorter
    // than 4 bytes to 4, then aligns to alignment. Returns where the data
    // begins.
    unsigned int WriteTag(char const* tag, int index, int alignment);
    // Appends a node to the current group.
    void Link(int node);
    // Fills the head of a small value, whose data runs from dataStart to the
    // position. Two old branches stay: an empty value gets the name offset
    // 12 of a big value; a data offset that is a multiple of 256 is stored
    // as 0 with the name offset 20, so that the node reads as a group.
    void WriteValueNode(int node, int dataStart);
    // The same for a big value: size byte 0, name offset 12 (or 20 as
    // above), the 32-bit size at +8.
    void WriteValueNodeEx(int node, int dataStart);

private:
    friend class TScopedTag;

    void Init(char const* fileType);
    void MakeGroup(char const* tag, int index);
    void MoveDownPath(char const* path, int index);
    // A whole value node in one step.
    void WriteRawValue(char const* tag, int index, void const* data, unsigned int size, int alignment);
    int FindChildForMoveDown(char const* tag, int index);
    template <class T>
    void SetNumber(T value, char const* tag, int index);
    // text ends in a zero; length is its length.
    void SetXmlText(char const* tag, int index, char const* text, int length, bool cdata);

    TOutputMemoryStream m_output;
    TVector<TString<char>> m_xmlTags;
    TNodeNameIndex* m_index;
    bool m_irregularNames; // a value of 0 bytes exists: searches walk
    int m_xmlLevel;
    unsigned int m_finalSize;
    unsigned int m_headerSize;
    bool m_endedWithoutContents;
    bool m_closed;
};

// True when every byte lies between 32 and 127: such text goes into XML
// bare. So "<" and "&" go bare and unescaped; tabs and line ends do not.
COMMON_EXPORT bool IsPureAscii(char const* text);

// Remembers the current group, enters a group, and on leaving puts the
// remembered group back and, in XML, closes the element: the frame of
// every WriteState of a composite value.
class COMMON_EXPORT TScopedOutputGroup
{
public:
    TScopedOutputGroup(TTaggedOutputStream& stream, char const* tag, int index)
        : m_stream(stream), m_group(stream.GetCurrentGroup())
    {
        stream.MoveDown(tag, index);
    }
    ~TScopedOutputGroup()
    {
        m_stream.SetCurrentGroup(m_group);
        if (m_stream.XML())
            m_stream.ExitXmlSection();
    }
    TScopedOutputGroup(TScopedOutputGroup const&) = delete;
    TScopedOutputGroup& operator=(TScopedOutputGroup const&) = delete;

private:
    TTaggedOutputStream& m_stream;
    int m_group;
};
