#include "persist/TTaggedOutputStream.h"

#include "diag/LogCategories.h"
#include "math/Base64.h"
#include "math/Checksum.h"
#include "math/FastMemory.h"
#include "persist/ComposeBuffer.h"
#include "persist/TNodeNameIndex.h"
#include "persist/TaggedNodeWalk.h"
#include "text/TextConversion.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <charconv>
#include <climits>
#include <cstring>

namespace {

constexpr unsigned int kGrowthStep = 32000;
constexpr int kHeaderCrc = 4;
constexpr int kHeaderSize = 8;
constexpr int kHeaderChecked = 12;
constexpr int kGroupHead = 20;
constexpr int kSmallHead = 8;
constexpr int kBigHead = 12;
constexpr unsigned int kMaxSmallValue = 255;

char const kXmlDeclaration[] = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
char const kCDataOpen[] = "<![CDATA[";
char const kCDataClose[] = "]]>";

// alignment is a power of 2.
unsigned int RoundUp(unsigned int value, unsigned int alignment)
{
    return (value + alignment - 1) & ~(alignment - 1);
}

// The raw spelling of a tag: the part behind its first ":". One pass gives
// it and its length.
char const* RawPart(char const* tag, size_t* length)
{
    char const* start = tag;
    char const* p = tag;
    for (; *p; ++p)
        if (*p == ':') {
            start = p + 1;
            p = start + std::strlen(start);
            break;
        }
    *length = static_cast<size_t>(p - start);
    return start;
}

// The name a search looks for: the tag as given, cut and followed by the
// index if there is one. Returns the name, in buffer or in tag.
void PutInt(unsigned char* at, int value)
{
    std::memcpy(at, &value, 4);
}

int GetInt(unsigned char const* at)
{
    int value;
    std::memcpy(&value, at, 4);
    return value;
}

// The 8 bytes of a value head: next 0, size byte, data offset, name offset.
// A data offset that is a multiple of 256 reads as 0, a group, with the
// name offset of a group.
void PutValueHead(unsigned char* head, int dataOffset, unsigned char sizeByte, unsigned char nameOffset)
{
    if (dataOffset % 256 == 0)
        nameOffset = TTaggedStream::kGroupNameOffset;
    unsigned char const bytes[8] = {0, 0, 0, 0, sizeByte, static_cast<unsigned char>(dataOffset), nameOffset, 0};
    std::memcpy(head, bytes, 8);
}

// Appends node to the children of group.
void LinkChild(TOutputMemoryStream& out, int group, int node)
{
    if (group <= 0 || static_cast<unsigned>(group) + kGroupHead > out.GetPosition()) {
        // A group restored to an offset that holds none: linking would
        // write outside the tree.
        qCWarning(LogNoGoZone) << "TTaggedOutputStream::Link" << 1;
        return;
    }
    unsigned char* base = out.Start();
    int const last = GetInt(base + group + TTaggedStream::kGroupLastChild);
    PutInt(base + (last == 0 ? group + TTaggedStream::kGroupFirstChild : last + TTaggedStream::kNodeNext), node);
    PutInt(base + group + TTaggedStream::kGroupLastChild, node);
}

// The head of a value whose data runs from dataStart to the position.
void FillSmallHead(TOutputMemoryStream& out, int node, int dataStart)
{
    auto const size = static_cast<unsigned char>(out.GetPosition() - static_cast<unsigned>(dataStart));
    PutValueHead(out.Start() + node, dataStart - node, size,
                 size != 0 ? TTaggedStream::kSmallNameOffset : TTaggedStream::kBigNameOffset);
}

void FillBigHead(TOutputMemoryStream& out, int node, int dataStart)
{
    unsigned char* head = out.Start() + node;
    PutValueHead(head, dataStart - node, 0, TTaggedStream::kBigNameOffset);
    PutInt(head + TTaggedStream::kBigValueSize, static_cast<int>(out.GetPosition() - static_cast<unsigned>(dataStart)));
}

// The decimal digits of an index; most indexes are small.
unsigned int SpellIndex(int index, char* digits)
{
    if (index > 0 && index < 10) {
        digits[0] = static_cast<char>('0' + index);
        return 1;
    }
    if (index >= 10 && index < 100) {
        digits[0] = static_cast<char>('0' + index / 10);
        digits[1] = static_cast<char>('0' + index % 10);
        return 2;
    }
    return static_cast<unsigned>(std::to_chars(digits, digits + 12, index).ptr - digits);
}

void CopyShort(unsigned char* target, char const* source, size_t size)
{
    if (size > 16) {
        std::memcpy(target, source, size);
        return;
    }
    for (size_t i = 0; i < size; ++i)
        target[i] = static_cast<unsigned char>(source[i]);
}

// The bytes of Align(4), the head, WriteTag(tag, index, alignment) and room
// for size bytes of data, laid out at once. Returns where the data goes.
unsigned char* LayoutValue(TOutputMemoryStream& out, char const* tag, int index, unsigned int size, int alignment,
                           int* node, int* dataStart)
{
    size_t rawLength;
    char const* raw = RawPart(tag, &rawLength);
    char digits[16];
    unsigned int digitCount = 0;
    if (index != 0) {
        if (rawLength > TTaggedStream::kMaxIndexedTag)
            rawLength = TTaggedStream::kMaxIndexedTag;
        digitCount = SpellIndex(index, digits);
    }
    auto const length = static_cast<unsigned int>(rawLength) + digitCount;

    unsigned int const head = size > kMaxSmallValue ? kBigHead : kSmallHead;
    unsigned int const position = out.GetPosition();
    unsigned int const at = RoundUp(position, 4);
    unsigned int const nameAt = at + head;
    unsigned int const nameEnd = length + 1 < 4 ? nameAt + 4 : nameAt + length + 1;
    unsigned int const start = alignment > 1 ? RoundUp(nameEnd, static_cast<unsigned>(alignment)) : nameEnd;
    unsigned int const end = start + size;

    // 8 bytes of slack let the padding go out as whole words.
    out.MakeRoom(end - position + 8);
    unsigned char* base = out.Start();
    static constexpr unsigned char kZeros[8] = {};
    std::memcpy(base + position, kZeros, 4);
    CopyShort(base + nameAt, raw, rawLength);
    for (unsigned int i = 0; i < digitCount; ++i)
        base[nameAt + rawLength + i] = static_cast<unsigned char>(digits[i]);
    std::memcpy(base + nameAt + length, kZeros, 8);
    out.Advance(end - position);
    *node = static_cast<int>(at);
    *dataStart = static_cast<int>(start);
    return base + start;
}

// long is stored in 4 bytes everywhere.
int NarrowLong(long value, int place)
{
    if (value < INT_MIN || value > INT_MAX)
        qCWarning(LogNoGoZone) << "TTaggedOutputStream::SetValue" << place;
    return static_cast<int>(value);
}

} // namespace

bool IsPureAscii(char const* text)
{
    if (!text)
        return true;
    for (auto const* p = reinterpret_cast<unsigned char const*>(text); *p; ++p)
        if (*p < 32 || *p > 127)
            return false;
    return true;
}

TTaggedOutputStream::TTaggedOutputStream(EStreamMode mode, char const* fileType, EAutoDelete autoDelete)
    : TTaggedStream(mode), m_output(kGrowthStep, autoDelete), m_xmlTags(20, 20), m_index(nullptr),
      m_irregularNames(false), m_xmlLevel(0), m_finalSize(0), m_headerSize(0), m_endedWithoutContents(false),
      m_closed(false)
{
    m_stream = &m_output;
    m_growing = true;
    Init(fileType ? fileType : "");
}

TTaggedOutputStream::~TTaggedOutputStream()
{
    delete m_index;
}

void TTaggedOutputStream::Init(char const* fileType)
{
    m_output.SetPosition(0);
    if (XML()) {
        m_output.WriteLine(kXmlDeclaration);
        EnterXmlSection(fileType, 0);
    } else {
        m_output.WriteString("LE", true);
        m_output.Align(4);
        m_output.Write(0);
        m_output.Write(0);
        m_output.WriteString(fileType, true);
    }
    if (UseRawTags()) {
        int const root = static_cast<int>(m_output.Align(4));
        unsigned char* head = m_output.MakeRoom(kGroupHead);
        FastZeroEx(head, kGroupHead);
        head[kNodeNameOffset] = kGroupNameOffset;
        m_output.Advance(kGroupHead);
        WriteTag("Root", 0, 0);
        m_root = m_currentGroup = root;
    }
    m_headerSize = m_output.GetPosition();
}

unsigned int TTaggedOutputStream::WriteTag(char const* tag, int index, int alignment)
{
    char const* raw = RawTagPart(tag);
    unsigned int const nameStart = m_output.GetPosition();
    if (index != 0) {
        char name[kMaxIndexedTag + 16];
        int const length = SpellIndexedName(raw, index, name);
        name[length] = 0;
        m_output.WriteData(name, static_cast<unsigned>(length) + 1);
    } else {
        m_output.WriteString(raw, true);
    }
    if (m_output.GetPosition() - nameStart < 4)
        m_output.Align(4);
    if (alignment > 1)
        m_output.Align(alignment);
    return m_output.GetPosition();
}

void TTaggedOutputStream::Link(int node)
{
    LinkChild(m_output, m_currentGroup, node);
}

void TTaggedOutputStream::WriteValueNode(int node, int dataStart)
{
    LinkChild(m_output, m_currentGroup, node);
    FillSmallHead(m_output, node, dataStart);
}

void TTaggedOutputStream::WriteValueNodeEx(int node, int dataStart)
{
    LinkChild(m_output, m_currentGroup, node);
    FillBigHead(m_output, node, dataStart);
}

void TTaggedOutputStream::WriteRawValue(char const* tag, int index, void const* data, unsigned int size, int alignment)
{
    int node;
    int dataStart;
    unsigned char* target = LayoutValue(m_output, tag, index, size, alignment, &node, &dataStart);
    if (size)
        std::memcpy(target, data, size);
    LinkChild(m_output, m_currentGroup, node);
    if (size > kMaxSmallValue) {
        FillBigHead(m_output, node, dataStart);
        return;
    }
    if (size == 0)
        m_irregularNames = true;
    FillSmallHead(m_output, node, dataStart);
}

void TTaggedOutputStream::SetXmlText(char const* tag, int index, char const* text, int length, bool cdata)
{
    if (!cdata) {
        m_output.WriteXML(tag, index, text, m_xmlLevel);
        return;
    }
    int const total = length + static_cast<int>(sizeof(kCDataOpen) + sizeof(kCDataClose)) - 2;
    TComposeBuffer value(static_cast<unsigned>(total) + 1);
    char* out = value.Data();
    std::memcpy(out, kCDataOpen, sizeof(kCDataOpen) - 1);
    out += sizeof(kCDataOpen) - 1;
    FastCopyEx(text, out, static_cast<unsigned>(length));
    out += length;
    std::memcpy(out, kCDataClose, sizeof(kCDataClose));
    m_output.WriteXML(tag, index, value.Data(), m_xmlLevel);
}

template <class T>
void TTaggedOutputStream::SetNumber(T value, char const* tag, int index)
{
    switch (m_mode) {
    case streamModePlain:
        m_output.Write(value);
        break;
    case streamModeRawTags: {
        int node;
        int dataStart;
        unsigned char* target = LayoutValue(m_output, tag, index, sizeof(T),
                                            sizeof(T) >= 4 ? 4 : static_cast<int>(sizeof(T)), &node, &dataStart);
        std::memcpy(target, &value, sizeof(T));
        LinkChild(m_output, m_currentGroup, node);
        FillSmallHead(m_output, node, dataStart);
        break;
    }
    case streamModeXml: {
        char text[32];
        int length;
        if constexpr (std::is_floating_point_v<T>) {
            length = EncodeBase64(&value, sizeof(T), text);
        } else {
            // The plain decimal of TString::LongToString, without a string.
            length = static_cast<int>(std::to_chars(text, text + sizeof(text), static_cast<long long>(value)).ptr - text);
        }
        text[length] = 0;
        m_output.WriteXML(tag, index, text, m_xmlLevel);
        break;
    }
    }
}

void TTaggedOutputStream::SetValue(bool value, char const* tag, int index)
{
    SetNumber(static_cast<char>(value ? 1 : 0), tag, index);
}

void TTaggedOutputStream::SetValue(char value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(signed char value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(unsigned char value, char const* tag, int index)
{
    SetNumber(static_cast<signed char>(value), tag, index);
}

void TTaggedOutputStream::SetValue(short value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(unsigned short value, char const* tag, int index)
{
    SetNumber(static_cast<short>(value), tag, index);
}

void TTaggedOutputStream::SetValue(int value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(unsigned int value, char const* tag, int index)
{
    SetNumber(static_cast<int>(value), tag, index);
}

void TTaggedOutputStream::SetValue(long value, char const* tag, int index)
{
    SetNumber(NarrowLong(value, 1), tag, index);
}

void TTaggedOutputStream::SetValue(unsigned long value, char const* tag, int index)
{
    if (value > UINT_MAX)
        qCWarning(LogNoGoZone) << "TTaggedOutputStream::SetValue" << 2;
    SetNumber(static_cast<int>(static_cast<unsigned int>(value)), tag, index);
}

void TTaggedOutputStream::SetValue(long long value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(unsigned long long value, char const* tag, int index)
{
    SetNumber(static_cast<long long>(value), tag, index);
}

void TTaggedOutputStream::SetValue(float value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(double value, char const* tag, int index)
{
    SetNumber(value, tag, index);
}

void TTaggedOutputStream::SetValue(char const* text, char const* tag, int index)
{
    if (!text)
        text = "";
    int const length = static_cast<int>(std::strlen(text));
    switch (m_mode) {
    case streamModePlain:
        m_output.WriteData(text, static_cast<unsigned>(length) + 1);
        break;
    case streamModeRawTags:
        WriteRawValue(tag, index, text, static_cast<unsigned>(length) + 1, 4);
        break;
    case streamModeXml:
        SetXmlText(tag, index, text, length, !IsPureAscii(text));
        break;
    }
}

void TTaggedOutputStream::SetValue(char16_t const* text, char const* tag, int index)
{
    if (!text)
        text = u"";
    if (XML()) {
        TString<char> const utf8 = ConvertToUtf8(text);
        SetXmlText(tag, index, utf8.c_str(), utf8.GetLength(), true);
        return;
    }
    int length = 0;
    while (text[length])
        ++length;
    unsigned int const size = (static_cast<unsigned>(length) + 1) * 2;
    if (UseRawTags())
        WriteRawValue(tag, index, text, size, 4);
    else
        m_output.WriteData(text, size);
}

void TTaggedOutputStream::SetValue(QString const& text, char const* tag, int index)
{
    QByteArray const utf8 = text.toUtf8();
    SetValue(utf8.constData(), tag, index);
}

void TTaggedOutputStream::SetValue(QUuid const& id, char const* tag, int index)
{
    SetBinary(id.toRfc4122(), tag, index);
}

void TTaggedOutputStream::SetBinary(void const* data, int size, char const* tag, int index)
{
    if (size < 0)
        size = 0;
    switch (m_mode) {
    case streamModePlain:
        m_output.Write(size);
        m_output.WriteData(data, static_cast<unsigned>(size));
        break;
    case streamModeRawTags:
        WriteRawValue(tag, index, data, static_cast<unsigned>(size), 4);
        break;
    case streamModeXml:
        m_output.WriteBinaryXML(tag, index, data, size, m_xmlLevel);
        break;
    }
}

void TTaggedOutputStream::SetBinary(QByteArray const& data, char const* tag, int index)
{
    SetBinary(data.constData(), data.size(), tag, index);
}

void TTaggedOutputStream::EnterXmlSection(char const* tag, int index)
{
    TString<char> spelled = GetXmlWriteTag(tag, index);
    if (m_xmlLevel < m_xmlTags.Count())
        m_xmlTags[m_xmlLevel] = spelled;
    else
        m_xmlTags.Add(spelled);
    m_output.WriteXML(spelled.c_str(), 0, xmlStart, m_xmlLevel, true);
    ++m_xmlLevel;
}

void TTaggedOutputStream::ExitXmlSection()
{
    if (m_xmlLevel <= 0) {
        qCWarning(LogNoGoZone) << "TTaggedOutputStream::ExitXmlSection" << 1;
        return;
    }
    --m_xmlLevel;
    m_output.WriteXML(m_xmlTags[m_xmlLevel].c_str(), 0, xmlEnd, m_xmlLevel, true);
}

void TTaggedOutputStream::MakeGroup(char const* tag, int index)
{
    int const group = static_cast<int>(m_output.Align(4));
    m_output.ReserveSpace(kGroupHead);
    WriteTag(tag, index, 0);
    Link(group);
    unsigned char* head = Base() + group;
    FastZeroEx(head, kGroupHead);
    head[kNodeNameOffset] = kGroupNameOffset;
    WriteInt(group + kGroupParent, m_currentGroup);
    m_currentGroup = group;
}

void TTaggedOutputStream::MoveDown(char const* tag, int index)
{
    if (XML()) {
        EnterXmlSection(tag, index);
        return;
    }
    if (!UseRawTags() || !tag)
        return;
    if (std::strchr(tag, '/')) {
        MoveDownPath(tag, index);
        return;
    }
    int const found = FindChildForMoveDown(tag, index);
    if (found == 0) {
        MakeGroup(tag, index);
        return;
    }
    if (Base()[found + kNodeDataOffset] != 0) {
        // A value of that name: entering it would link children into its
        // data. A group of the same name is made beside it instead.
        qCWarning(LogNoGoZone) << "TTaggedOutputStream::MoveDown" << 1;
        MakeGroup(tag, index);
        return;
    }
    m_currentGroup = found;
}

int TTaggedOutputStream::FindChildForMoveDown(char const* tag, int index)
{
    // The search of FindNode(tag, index, 0), through the index while every
    // name stays where it was written.
    if (m_irregularNames)
        return FindNode(tag, index, 0);
    TLookupName const name(tag, index);
    if (!m_index)
        m_index = new TNodeNameIndex;
    return m_index->Find(m_output.Start(), m_output.GetPosition(), m_currentGroup, name.Text(), name.Length());
}

void TTaggedOutputStream::MoveDownPath(char const* path, int index)
{
    WalkGroupPath(path, index, m_currentGroup, m_root, [this](char const* name, int step) {
        MoveDown(name, step);
        return true;
    });
}

void TTaggedOutputStream::MoveUp()
{
    if (XML()) {
        ExitXmlSection();
        return;
    }
    if (!UseRawTags())
        return;
    if (m_currentGroup == m_root) {
        // The root has no parent; group 0 would link into the header.
        qCWarning(LogNoGoZone) << "TTaggedOutputStream::MoveUp" << 1;
        return;
    }
    TTaggedStream::MoveUp();
}

unsigned int TTaggedOutputStream::CloseWriting()
{
    if (m_closed)
        return m_finalSize;
    m_endedWithoutContents = m_output.GetPosition() == m_headerSize;
    if (XML()) {
        while (m_xmlLevel > 1) {
            // Groups left open would leave the document unbalanced.
            qCWarning(LogNoGoZone) << "TTaggedOutputStream::CloseWriting" << 1;
            ExitXmlSection();
        }
        ExitXmlSection();
    } else {
        m_output.Align(4);
    }
    unsigned int const size = m_output.GetPosition();
    if (!XML()) {
        unsigned int const crc = ComputeCrc32(m_output.Start() + kHeaderChecked, size - kHeaderChecked);
        WriteInt(kHeaderCrc, static_cast<int>(crc));
        WriteInt(kHeaderSize, static_cast<int>(size));
        m_output.SetPosition(size);
    }
    m_finalSize = size;
    m_closed = true;
    return size;
}

QByteArray TTaggedOutputStream::GetAsByteArray()
{
    unsigned int const size = CloseWriting();
    return QByteArray(reinterpret_cast<char const*>(m_output.Start()), static_cast<int>(size));
}

bool TTaggedOutputStream::operator==(TTaggedOutputStream const& other) const
{
    unsigned int const size = Size();
    return size == other.Size() && (size == 0 || std::memcmp(Start(), other.Start(), size) == 0);
}
