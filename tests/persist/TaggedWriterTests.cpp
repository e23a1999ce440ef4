#include "ByteOracles.h"
#include "LogCapture.h"
#include "TaggedDocuments.h"

#include "math/MemoryAlloc.h"
#include "persist/TScopedTag.h"
#include "persist/TTaggedOutputStream.h"
#include "text/TString.h"

#include <QByteArray>
#include <QString>
#include <QUuid>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

// Expected documents, byte by byte.
class Layout
{
public:
    Layout& Byte(int value)
    {
        m_bytes.push_back(static_cast<unsigned char>(value));
        return *this;
    }
    Layout& Int(int32_t value)
    {
        for (int i = 0; i < 4; ++i)
            Byte((static_cast<uint32_t>(value) >> (8 * i)) & 0xFF);
        return *this;
    }
    Layout& Append(Bytes const& bytes)
    {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }
    Layout& Text(std::string const& text) { return Append(Bytes(text.begin(), text.end())); }
    Layout& Name(std::string const& text) { return Text(text).Byte(0); }
    Layout& Zeros(int count) { return Append(Bytes(static_cast<size_t>(count), 0)); }
    Layout& PadTo4() { return Zeros(static_cast<int>((4 - m_bytes.size() % 4) % 4)); }
    // next, size byte, data offset, name offset, 0
    Layout& Head(int next, int size, int dataOffset, int nameOffset)
    {
        return Int(next).Byte(size).Byte(dataOffset).Byte(nameOffset).Byte(0);
    }
    Layout& Group(int next, int parent, int first, int last)
    {
        return Head(next, 0, 0, 20).Int(parent).Int(first).Int(last);
    }
    Layout& Header(std::string const& fileType) { return Text("LE").Zeros(2).Int(0).Int(0).Name(fileType); }
    // Header "T" and a root whose only child follows at 44.
    Layout& OneChildRoot() { return Header("T").PadTo4().Group(0, 0, 44, 44).Name("Root").PadTo4(); }
    // Pads to 4 and fills in CRC and size as the writer's end does.
    Bytes Finished()
    {
        PadTo4();
        Bytes bytes = m_bytes;
        uint32_t const crc = ReferenceCrc32(bytes.data() + 12, bytes.size() - 12);
        uint32_t const size = static_cast<uint32_t>(bytes.size());
        std::memcpy(bytes.data() + 4, &crc, 4);
        std::memcpy(bytes.data() + 8, &size, 4);
        return bytes;
    }

private:
    Bytes m_bytes;
};

std::string const kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n";

// The calls of the layouts below.
void WriteSample(TTaggedOutputStream& stream)
{
    stream.SetValue(5, "a");
    stream.MoveDown("grp:g", 0);
    stream.SetValue(true, "flag");
    stream.SetValue(static_cast<short>(-2), "sh", 1);
    stream.SetValue(1.5, "d");
    stream.MoveUp();
    stream.SetValue("hi", "t");
}

} // namespace

TEST(TaggedWriterRaw, EmptyDocumentIsHeaderAndRoot)
{
    TTaggedOutputStream stream(streamModeRawTags, "T");
    EXPECT_EQ(stream.Size(), 41u);
    EXPECT_EQ(Document(stream), Layout().Header("T").PadTo4().Group(0, 0, 0, 0).Name("Root").Finished());
    EXPECT_TRUE(stream.EndedWithoutContents());
    EXPECT_EQ(stream.Size(), 44u);
}

TEST(TaggedWriterRaw, SampleDocumentByteByByte)
{
    TTaggedOutputStream stream(streamModeRawTags, "Doc");
    WriteSample(stream);
    Layout expected;
    expected.Header("Doc"); // 0..15
    expected.Group(0, 0, 44, 136).Name("Root").PadTo4(); // root at 16
    expected.Head(60, 4, 12, 8).Name("a").Zeros(2).Int(5); // 44
    expected.Group(136, 16, 84, 116).Name("g").Zeros(2); // 60
    expected.Head(100, 1, 13, 8).Name("flag").Byte(1).Zeros(2); // 84
    expected.Head(116, 2, 12, 8).Name("sh1").Byte(0xFE).Byte(0xFF).Zeros(2); // 100
    expected.Head(0, 8, 12, 8).Name("d").Zeros(2).Zeros(6).Byte(0xF8).Byte(0x3F); // 116
    expected.Head(0, 3, 12, 8).Name("t").Zeros(2).Name("hi"); // 136
    EXPECT_EQ(Document(stream), expected.Finished());
    EXPECT_FALSE(stream.EndedWithoutContents());
}

TEST(TaggedWriterPlain, SampleDocumentIsBareValues)
{
    TTaggedOutputStream stream(streamModePlain, "Docs");
    WriteSample(stream);
    stream.SetBinary("\x01\x02", 2, "bin");
    stream.SetValue(u"w", "wide");
    Layout expected;
    expected.Header("Docs").Int(5).Byte(1).Byte(0xFE).Byte(0xFF).Zeros(6).Byte(0xF8).Byte(0x3F).Name("hi");
    expected.Int(2).Byte(1).Byte(2).Byte('w').Zeros(3);
    EXPECT_EQ(Document(stream), expected.Finished());
    EXPECT_EQ(stream.Size() % 4, 0u);
}

TEST(TaggedWriterXml, SampleDocumentAsText)
{
    TTaggedOutputStream stream(streamModeXml, "Doc");
    WriteSample(stream);
    EXPECT_EQ(Text(stream),
        kDeclaration
            + "<Doc>\r\n"
              "\t<a>5</a>\r\n"
              "\t<grp>\r\n"
              "\t\t<flag>1</flag>\r\n"
              "\t\t<sh-1>-2</sh-1>\r\n"
              "\t\t<d>AAAAAAAA+D8=</d>\r\n"
              "\t</grp>\r\n"
              "\t<t>hi</t>\r\n"
              "</Doc>\r\n");
}

TEST(TaggedWriterXml, EmptyDocumentAndIndexSpelling)
{
    TTaggedOutputStream empty(streamModeXml, "Settings:s");
    EXPECT_EQ(Text(empty), kDeclaration + "<Settings>\r\n</Settings>\r\n");
    EXPECT_TRUE(empty.EndedWithoutContents());

    TTaggedOutputStream stream(streamModeXml, "X");
    stream.SetValue(1, "abcd", 12);
    stream.MoveDown("track", 3);
    stream.MoveUp();
    EXPECT_EQ(Text(stream), kDeclaration + "<X>\r\n\t<abcd-12>1</abcd-12>\r\n\t<track-3>\r\n\t</track-3>\r\n</X>\r\n");
}

TEST(TaggedWriterRaw, BinaryOf255IsSmallAnd256IsBig)
{
    Bytes data(256);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<unsigned char>(i * 7);
    for (int size : { 255, 256 }) {
        TTaggedOutputStream stream(streamModeRawTags, "T");
        stream.SetBinary(data.data(), size, "b");
        Layout expected;
        if (size == 255)
            expected.OneChildRoot().Head(0, 255, 12, 8).Name("b").Zeros(2);
        else
            expected.OneChildRoot().Head(0, 0, 16, 12).Int(256).Name("b").Zeros(2);
        expected.Append(Bytes(data.begin(), data.begin() + size));
        EXPECT_EQ(Document(stream), expected.Finished()) << size;
    }
}

TEST(TaggedWriterRaw, OddBranchesOfTheValueHeads)
{
    // An empty binary gets the name offset of a big value, its name at 8.
    TTaggedOutputStream empty(streamModeRawTags, "T");
    empty.SetBinary(nullptr, 0, "z");
    EXPECT_EQ(Document(empty), Layout().OneChildRoot().Head(0, 0, 12, 12).Name("z").Zeros(2).Finished());

    // A data offset of exactly 256 is stored as 0 with name offset 20.
    TTaggedOutputStream small(streamModeRawTags, "T");
    small.SetValue(7, std::string(247, 'x').c_str());
    std::vector<Node> nodes = Children(Document(small), 16);
    ASSERT_EQ(nodes.size(), 1u);
    EXPECT_EQ(std::vector<int>({ nodes[0].dataOffset, nodes[0].nameOffset, nodes[0].sizeByte }),
        std::vector<int>({ 0, 20, 4 }));
    EXPECT_EQ(small.Start()[44 + 256], 7);

    Bytes const data(300, 0x5A);
    TTaggedOutputStream big(streamModeRawTags, "T");
    big.SetBinary(data.data(), 300, std::string(243, 'y').c_str());
    nodes = Children(Document(big), 16);
    EXPECT_EQ(std::vector<int>({ nodes[0].dataOffset, nodes[0].nameOffset }), std::vector<int>({ 0, 20 }));
    EXPECT_EQ(IntAt(big.Start(), 44 + 8), 300);
    EXPECT_EQ(big.Start()[44 + 256], 0x5A);
}

TEST(TaggedWriterRaw, IndexedNamesKeep200CharactersOfTheTag)
{
    std::string const tag(230, 'q');
    TTaggedOutputStream stream(streamModeRawTags, "T");
    stream.SetValue(1, tag.c_str(), 45);
    stream.SetValue(2, tag.c_str(), 0);
    stream.SetValue(3, "abcd", 12);
    EXPECT_EQ(Names(Children(Document(stream), 16)), (Strings { std::string(200, 'q') + "45", tag, "abcd12" }));
}

TEST(TaggedWriterRaw, EveryValueType)
{
    TTaggedOutputStream stream(streamModeRawTags, "T");
    QUuid const id("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}");
    stream.SetValue(true, "b");
    stream.SetValue('c', "c");
    stream.SetValue(static_cast<signed char>(-3), "sc");
    stream.SetValue(static_cast<unsigned char>(200), "uc");
    stream.SetValue(static_cast<short>(-300), "s");
    stream.SetValue(static_cast<unsigned short>(60000), "us");
    stream.SetValue(-70000, "i");
    stream.SetValue(4000000000u, "ui");
    stream.SetValue(-5L, "l");
    stream.SetValue(6UL, "ul");
    stream.SetValue(-(1LL << 40), "ll");
    stream.SetValue(~0ULL, "ull");
    stream.SetValue(0.25f, "f");
    stream.SetValue(-2.5, "dbl");
    stream.SetValue("txt", "n");
    stream.SetValue(u"\u00e9", "w");
    stream.SetValue(QString::fromUtf8("\xC3\xA9"), "q");
    stream.SetValue(id, "id");
    stream.SetBinary(QByteArray("\x00\x01", 2), "ba");
    std::vector<Node> const nodes = Children(Document(stream), 16);
    ASSERT_EQ(nodes.size(), 19u);
    QByteArray const rawId = id.toRfc4122();
    std::vector<Bytes> const expected = { { 1 }, { 'c' }, { 0xFD }, { 200 }, BytesOf<short>(-300),
        BytesOf<unsigned short>(60000), BytesOf(-70000), BytesOf(4000000000u), BytesOf<int32_t>(-5),
        BytesOf<int32_t>(6), BytesOf(-(1LL << 40)), BytesOf(~0ULL), BytesOf(0.25f), BytesOf(-2.5), { 't', 'x', 't', 0 },
        { 0xE9, 0, 0, 0 }, { 0xC3, 0xA9, 0 }, Bytes(rawId.begin(), rawId.end()), { 0, 1 } };
    for (size_t i = 0; i < nodes.size(); ++i) {
        EXPECT_EQ(nodes[i].data, expected[i]) << nodes[i].name;
        EXPECT_EQ(nodes[i].offset % 4, 0) << nodes[i].name;
        size_t const size = expected[i].size();
        size_t const alignment = size >= 4 ? 4 : size == 2 ? 2 : 1;
        EXPECT_EQ((nodes[i].offset + nodes[i].dataOffset) % alignment, 0u) << nodes[i].name;
    }
}

TEST(TaggedWriterXml, EveryValueTypeAndTheCDataRules)
{
    TTaggedOutputStream stream(streamModeXml, "T");
    stream.SetValue(false, "b");
    stream.SetValue('A', "c");
    stream.SetValue(static_cast<unsigned char>(200), "uc"); // as the signed byte
    stream.SetValue(static_cast<unsigned short>(60000), "us");
    stream.SetValue(4000000000u, "ui");
    stream.SetValue(-5L, "l");
    stream.SetValue(-(1LL << 40), "ll");
    stream.SetValue(0.25f, "f");
    stream.SetBinary("\x01\x02\x03", 3, "bin");
    stream.SetValue("a<b & c", "bare");
    stream.SetValue(QString::fromUtf8("\xC3\xA9"), "utf");
    stream.SetValue("tab\there", "tab");
    stream.SetValue("x]]>y\r\n", "split");
    stream.SetValue(u"plain", "wide");
    stream.SetValue("", "empty");
    stream.SetValue(QUuid(), "id");
    EXPECT_EQ(Text(stream),
        kDeclaration
            + "<T>\r\n"
              "\t<b>0</b>\r\n"
              "\t<c>65</c>\r\n"
              "\t<uc>-56</uc>\r\n"
              "\t<us>-5536</us>\r\n"
              "\t<ui>-294967296</ui>\r\n"
              "\t<l>-5</l>\r\n"
              "\t<ll>-1099511627776</ll>\r\n"
              "\t<f>AACAPg==</f>\r\n"
              "\t<bin>AQID</bin>\r\n"
              "\t<bare>a<b & c</bare>\r\n"
              "\t<utf><![CDATA[\xC3\xA9]]></utf>\r\n"
              "\t<tab><![CDATA[tab\there]]></tab>\r\n"
              "\t<split><![CDATA[x]]>y\r\n]]></split>\r\n"
              "\t<wide><![CDATA[plain]]></wide>\r\n"
              "\t<empty></empty>\r\n"
              "\t<id>AAAAAAAAAAAAAAAAAAAAAA==</id>\r\n"
              "</T>\r\n");
}

TEST(TaggedWriterXml, PureAsciiIsThePrintableRange)
{
    EXPECT_TRUE(IsPureAscii("") && IsPureAscii(" ~\x7F<&"));
    for (char const* text : { "\x1F", "line\n", "\x80" })
        EXPECT_FALSE(IsPureAscii(text)) << text;
}

// In XML every entry is an element of its own; how the raw tree finds
// groups again is checked against a model in the tree tests.
TEST(TaggedWriterXml, GroupsAreNotReentered)
{
    TTaggedOutputStream xml(streamModeXml, "T");
    for (int i = 0; i < 2; ++i) {
        xml.MoveDown("g");
        xml.MoveUp();
    }
    EXPECT_EQ(Text(xml), kDeclaration + "<T>\r\n\t<g>\r\n\t</g>\r\n\t<g>\r\n\t</g>\r\n</T>\r\n");
}

TEST(TaggedWriterRaw, SlashTagsArePaths)
{
    TTaggedOutputStream stream(streamModeRawTags, "T");
    stream.MoveDown("a/b", 3);
    stream.SetValue(1, "deep");
    stream.MoveDown("/c");
    stream.SetValue(2, "top");
    stream.MoveDown("/");
    stream.SetValue(3, "root");
    stream.MoveDown("/a//b3/"); // empty pieces name nothing; b3 is found again
    stream.SetValue(4, "again");
    Bytes const bytes = Document(stream);
    std::vector<Node> const top = Children(bytes, 16);
    ASSERT_EQ(Names(top), (Strings { "a", "c", "root" }));
    std::vector<Node> const a = Children(bytes, top[0].offset);
    ASSERT_EQ(Names(a), Strings { "b3" });
    EXPECT_EQ(Names(Children(bytes, a[0].offset)), (Strings { "deep", "again" }));
    EXPECT_EQ(Names(Children(bytes, top[1].offset)), Strings { "top" });

    // XML takes the path into the tag as it stands.
    TTaggedOutputStream xml(streamModeXml, "T");
    xml.MoveDown("a/b", 2);
    xml.MoveUp();
    EXPECT_EQ(Text(xml), kDeclaration + "<T>\r\n\t<a/b-2>\r\n\t</a/b-2>\r\n</T>\r\n");
}

TEST(TaggedWriterRaw, MisuseIsReportedAndTheTreeStaysSound)
{
    LogCapture log;
    TTaggedOutputStream stream(streamModeRawTags, "T");
    stream.MoveUp(); // at the root
    stream.SetValue(1, "v");
    stream.MoveDown("v"); // a value's name: a group is made beside it
    stream.SetValue(2, "inner");
    Bytes const bytes = Document(stream);
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TTaggedOutputStream::MoveUp 1"));
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TTaggedOutputStream::MoveDown 1"));
    EXPECT_EQ(std::string(reinterpret_cast<char const*>(bytes.data()) + 12), "T");
    std::vector<Node> const top = Children(bytes, 16);
    ASSERT_EQ(top.size(), 2u);
    EXPECT_EQ(top[0].data, BytesOf(1));
    EXPECT_EQ(Children(bytes, top[1].offset)[0].data, BytesOf(2));
}

TEST(TaggedWriterPlain, LongsKeepFourBytesAndReportWhatDoesNotFit)
{
    LogCapture log;
    TTaggedOutputStream stream(streamModePlain, "T");
    stream.SetValue(-1L, "fits");
    EXPECT_TRUE(log.Lines().isEmpty());
    stream.SetValue((1L << 40) + 7, "big");
    stream.SetValue(0x100000003UL, "ubig");
    EXPECT_EQ(Document(stream), Layout().Header("T").Int(-1).Int(7).Int(3).Finished());
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TTaggedOutputStream::SetValue 1"));
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TTaggedOutputStream::SetValue 2"));
}

TEST(TaggedWriterRaw, AGroupOffsetOutsideTheDocumentWritesNothingOutside)
{
    LogCapture log;
    TTaggedOutputStream stream(streamModeRawTags, "T");
    int const root = stream.GetCurrentGroup();
    stream.SetCurrentGroup(1 << 20);
    stream.SetValue(1, "lost");
    stream.MoveDown("g");
    stream.MoveUp();
    stream.MoveUp();
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TTaggedOutputStream::Link 1"));
    stream.SetCurrentGroup(root);
    stream.SetValue(2, "kept");
    EXPECT_EQ(Names(Children(Document(stream), root)), Strings { "kept" });
}

TEST(TaggedWriterClose, SecondCloseChangesNothingAndEqualityComparesTheBytes)
{
    TTaggedOutputStream stream(streamModeRawTags, "T");
    stream.SetValue(1.0f, "f");
    Bytes const first = Document(stream);
    EXPECT_EQ(Document(stream), first);
    QByteArray const copy = stream.GetAsByteArray();
    EXPECT_EQ(Bytes(copy.begin(), copy.end()), first);
    EXPECT_EQ(ReferenceCrc32(first.data() + 12, first.size() - 12), static_cast<uint32_t>(IntAt(first.data(), 4)));

    TTaggedOutputStream a(streamModeRawTags, "T");
    TTaggedOutputStream b(streamModeRawTags, "T");
    TTaggedOutputStream c(streamModeRawTags, "T");
    for (TTaggedOutputStream* s : { &a, &b, &c })
        WriteSample(*s);
    c.SetValue(0, "extra");
    for (TTaggedOutputStream* s : { &a, &b, &c })
        s->CloseWriting();
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_TRUE(a != c);
}

TEST(TaggedWriterClose, AutoDeleteOffLeavesTheBufferWithTheCaller)
{
    unsigned char* block = nullptr;
    unsigned int size = 0;
    {
        TTaggedOutputStream stream(streamModePlain, "Kept", autoDeleteOff);
        stream.SetValue(9, "n");
        size = stream.CloseWriting();
        block = stream.Start();
    }
    ASSERT_EQ(size, 24u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(block) + 12), "Kept");
    EXPECT_EQ(block[17], 9);
    free_ex(block);
}

TEST(TaggedWriterScopedTag, BigValueAroundHandWrittenBytes)
{
    TTaggedOutputStream stream(streamModeRawTags, "T");
    {
        TScopedTag scoped(stream, "rect");
        for (int i = 1; i <= 4; ++i)
            stream.Output().Write(i);
    }
    Layout expected;
    expected.OneChildRoot().Head(0, 0, 20, 12).Int(16).Name("rect").PadTo4().Int(1).Int(2).Int(3).Int(4);
    EXPECT_EQ(Document(stream), expected.Finished());

    TTaggedOutputStream plain(streamModePlain, "T");
    {
        TScopedTag scoped(plain, "rect");
        plain.Output().Write(7);
    }
    EXPECT_EQ(Document(plain), Layout().Header("T").Int(7).Finished());

    LogCapture log;
    TTaggedOutputStream xml(streamModeXml, "T");
    {
        TScopedTag scoped(xml, "rect");
    }
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TScopedTag 1"));
    EXPECT_EQ(Text(xml), kDeclaration + "<T>\r\n</T>\r\n");
}

TEST(TaggedWriterState, StringsWriteAGroupWithS)
{
    TTaggedOutputStream xml(streamModeXml, "T");
    TString<char>("text").WriteState(xml, 0, "name", 2);
    TString<char16_t>(u"w").WriteState(xml, 0, "wide", 0);
    EXPECT_EQ(Text(xml),
        kDeclaration
            + "<T>\r\n"
              "\t<name-2>\r\n\t\t<s>text</s>\r\n\t</name-2>\r\n"
              "\t<wide>\r\n\t\t<s><![CDATA[w]]></s>\r\n\t</wide>\r\n"
              "</T>\r\n");

    TTaggedOutputStream raw(streamModeRawTags, "T");
    raw.MoveDown("outer");
    int const outer = raw.GetCurrentGroup();
    TString<char>("text").WriteState(raw, 0, "name", 2);
    EXPECT_EQ(raw.GetCurrentGroup(), outer);
    Bytes const bytes = Document(raw);
    std::vector<Node> const name = Children(bytes, outer);
    ASSERT_EQ(Names(name), Strings { "name2" });
    std::vector<Node> const s = Children(bytes, name[0].offset);
    ASSERT_EQ(Names(s), Strings { "s" });
    EXPECT_EQ(s[0].data, (Bytes { 't', 'e', 'x', 't', 0 }));
}
