#include "LogCapture.h"
#include "TaggedDocuments.h"

#include "core/TVector.h"
#include "math/MemoryAlloc.h"
#include "persist/TInputMemoryStream.h"
#include "persist/TOutputMemoryStream.h"
#include "text/TString.h"

#include <QString>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

Bytes Written(TOutputMemoryStream const& stream)
{
    return Bytes(stream.Start(), stream.Start() + stream.GetPosition());
}

Bytes B(std::string const& text)
{
    return Bytes(text.begin(), text.end());
}

// Counts the raw writes that reach the stream.
class CountingStream : public TOutputMemoryStream
{
public:
    unsigned int WriteData(void const* data, unsigned int size) override
    {
        sizes.push_back(size);
        return TOutputMemoryStream::WriteData(data, size);
    }
    std::vector<unsigned int> sizes;
};

void WriteMixed(TOutputStream& out)
{
    out.Write('A');
    out.Write(static_cast<short>(0x0102));
    out.Write(static_cast<unsigned short>(0xA0B0));
    out.Write(0x01020304);
    out.Write(0x8090A0B0u);
    out.Write(-2L);
    out.Write(1.0f);
    out.Write(0x0102030405060708LL);
    out.Write(-1.0);
}

} // namespace

TEST(ByteStreamWrite, ArraysAreOneWriteUnlessSwapped)
{
    int const values[3] = {1, -2, 0x7F000000};
    CountingStream plain;
    EXPECT_EQ(plain.Write(values, 3), 12u);
    EXPECT_EQ(plain.sizes, (std::vector<unsigned int>{12}));

    CountingStream swapped;
    swapped.SetEndianType(endianSwap);
    swapped.Write(values, 3);
    EXPECT_EQ(swapped.sizes, (std::vector<unsigned int>{4, 4, 4}));
    EXPECT_EQ(Written(swapped), Hex("00000001 FFFFFFFE 7F000000"));

    long const longs[2] = {-1, 7};
    CountingStream narrowed;
    narrowed.Write(longs, 2);
    EXPECT_EQ(Written(narrowed), Hex("FFFFFFFF 07000000"));
}

TEST(ByteStreamWrite, LongOutside32BitsIsReportedAndCut)
{
    LogCapture log;
    TOutputMemoryStream out;
    out.Write(0x100000002L);
    out.Write(0x1FFFFFFFFUL);
    EXPECT_EQ(Written(out), Hex("02000000 FFFFFFFF"));
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TOutputStream::Write 1"));
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TOutputStream::Write 2"));
}

TEST(ByteStreamWrite, CharsGoOutInPiecesOf128)
{
    CountingStream out;
    EXPECT_EQ(out.WriteChars('x', 0), 0u);
    EXPECT_TRUE(out.sizes.empty());
    EXPECT_EQ(out.WriteChars('x', 300), 300u);
    EXPECT_EQ(out.sizes, (std::vector<unsigned int>{128, 128, 44}));
    out.sizes.clear();
    out.WriteWChars(u'\x263A', 130);
    EXPECT_EQ(out.sizes, (std::vector<unsigned int>{256, 4}));
    EXPECT_EQ(out.Start()[300], 0x3A);
    EXPECT_EQ(out.Start()[301], 0x26);
}

TEST(ByteStreamWrite, StringsAndLines)
{
    TOutputMemoryStream out;
    out.WriteString("ab", true);
    out.WriteString(TString<char>("c"), false);
    out.WriteString(u"d", true);
    out.WriteLine("e");
    out.WriteLine(u"f");
    EXPECT_EQ(Written(out), B(std::string("ab\0cd\0\0\0e\r\nf\0\r\0\0\0\n\0\0\0", 21)));
}

TEST(ByteStreamWrite, GrowthIsByAConstantStepOfAtLeast32)
{
    TOutputMemoryStream out(1);
    EXPECT_EQ(out.GetGrowthStep(), 32u);
    EXPECT_EQ(out.GetAllocatedSize(), 0u);
    out.Write('a');
    EXPECT_EQ(out.GetAllocatedSize(), 32u);
    out.WriteChars('b', 32);
    EXPECT_EQ(out.GetAllocatedSize(), 64u);
    out.WriteChars('c', 100); // beyond one step: exactly what is needed
    EXPECT_EQ(out.GetAllocatedSize(), 133u);
    out.ReserveSpace(3);
    EXPECT_EQ(out.GetPosition(), 136u);
    EXPECT_EQ(out.Start()[0], 'a');
    EXPECT_EQ(out.Start()[132], 'c');
}

TEST(ByteStreamWrite, FixedBufferOverflowLeavesTheCallersBlockAlone)
{
    LogCapture log;
    unsigned char block[8];
    std::memset(block, 0xEE, sizeof(block));
    {
        TOutputMemoryStream out(block, 4);
        out.Write(0x04030201);
        EXPECT_EQ(out.Start(), block);
        EXPECT_TRUE(log.Lines().isEmpty());
        out.Write('z');
        EXPECT_NE(out.Start(), block);
        EXPECT_EQ(Written(out), (Bytes{1, 2, 3, 4, 'z'}));
    }
    EXPECT_EQ(block[4], 0xEE);
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "TOutputMemoryStream::WriteData 1"));
}

TEST(ByteStreamWrite, AppendsBehindAnAdoptedBlock)
{
    auto* block = static_cast<unsigned char*>(malloc_ex(3));
    std::memcpy(block, "xyz", 3);
    TOutputMemoryStream out(0, autoDeleteOn, block, 3);
    EXPECT_EQ(out.GetGrowthStep(), 32u);
    EXPECT_EQ(out.Write('!'), 4u);
    EXPECT_EQ(Written(out), B("xyz!"));
}

TEST(ByteStreamWrite, StringThenAlignPadsByTheStringLength)
{
    TOutputMemoryStream out;
    out.Write('#'); // an odd position does not matter
    EXPECT_EQ(out.WriteStringThenAlign("abc"), 5u);
    EXPECT_EQ(out.WriteStringThenAlign("abcd"), 13u);
    EXPECT_EQ(out.WriteStringThenAlign(""), 17u);
    EXPECT_EQ(Written(out), (Bytes{'#', 'a', 'b', 'c', 0, 'a', 'b', 'c', 'd', 0, 0, 0, 0, 0, 0, 0, 0}));

    TInputMemoryStream in(out.Start() + 1, 16);
    char text[8];
    EXPECT_EQ(in.ReadStringThenAlign(text), 4u);
    EXPECT_STREQ(text, "abc");
    TString<char> second;
    in.ReadStringThenAlign(second);
    EXPECT_EQ(second, "abcd");
    EXPECT_EQ(in.GetPosition(), 12u);
}

TEST(ByteStreamWrite, WideStringThenAlignTakesTwoBytesACharacter)
{
    char16_t const data[] = {u'a', 0, u'b', u'c', 0, 0, u'z', 0};
    TInputMemoryStream in(data, sizeof(data));
    char16_t text[4];
    EXPECT_EQ(in.ReadStringThenAlign(text), 4u); // 2 + 2
    EXPECT_EQ(text[0], u'a');
    TString<char16_t> second;
    in.ReadStringThenAlign(second); // 4 + 2 rounded up to 8
    EXPECT_EQ(second, u"bc");
    EXPECT_EQ(in.GetPosition(), 12u);
}

TEST(ByteStreamWrite, AlignInitBlockExtendAndReserve)
{
    TOutputMemoryStream out;
    out.Write('a');
    EXPECT_EQ(out.Align(1, 0x55), 1u);
    EXPECT_EQ(out.Align(4, 0x55), 4u);
    EXPECT_EQ(out.Align(4, 0x55), 4u);
    EXPECT_EQ(Written(out), (Bytes{'a', 0x55, 0x55, 0x55}));
    out.Write('b');
    EXPECT_EQ(out.Align(8, 0, true), 8u);
    EXPECT_EQ(out.GetAllocatedSize(), 8u);

    EXPECT_EQ(out.InitBlock(0x11, 3), 8u);
    EXPECT_EQ(out.GetPosition(), 8u);
    EXPECT_EQ(out.Start()[10], 0x11);

    unsigned int const capacity = out.GetAllocatedSize();
    EXPECT_EQ(out.ExtendInternalBuffer(16), capacity);
    EXPECT_EQ(out.GetAllocatedSize(), capacity + 16);
    EXPECT_EQ(out.GetPosition(), capacity);
    EXPECT_EQ(Bytes(out.Start() + capacity, out.Start() + capacity + 16), Bytes(16, 0));

    TOutputMemoryStream fresh;
    fresh.Reserve(100);
    EXPECT_EQ(fresh.GetAllocatedSize(), 100u);
    EXPECT_EQ(fresh.GetPosition(), 0u);
    fresh.WriteChars('q', 100);
    EXPECT_EQ(fresh.GetAllocatedSize(), 100u);
}

TEST(ByteStreamWrite, CutSectionAndOptimizeSize)
{
    TOutputMemoryStream out;
    out.WriteString("0123456789", false);
    unsigned int const capacity = out.GetAllocatedSize();
    out.CutSection(2, 3);
    EXPECT_EQ(out.GetPosition(), 2u);
    EXPECT_EQ(out.GetAllocatedSize(), capacity - 3);
    EXPECT_EQ(std::memcmp(out.Start(), "0156789", 7), 0);

    out.CutSection(5, 1000); // cut at the end of the block
    EXPECT_EQ(out.GetAllocatedSize(), 5u);

    out.SetPosition(4);
    out.OptimizeSize();
    EXPECT_EQ(out.GetAllocatedSize(), 4u);
    EXPECT_EQ(out.GetPosition(), 4u);
    EXPECT_EQ(std::memcmp(out.Start(), "0156", 4), 0);
    out.Write('!'); // the stream stays usable
    EXPECT_EQ(std::memcmp(out.Start(), "0156!", 5), 0);
}

// Reads the next value, compares it and answers the position.
template <class T> unsigned int ExpectNext(TInputMemoryStream& in, T expected)
{
    T value {};
    unsigned int const position = in.Read(&value);
    EXPECT_EQ(value, expected) << sizeof(T) << "-byte value";
    return position;
}

TEST(ByteStream, TypedValuesInBothOrders)
{
    // 'A', short, unsigned short, int, unsigned int, long, float, long long, double
    Bytes const little = Hex("41 0201 B0A0 04030201 B0A09080 FEFFFFFF 0000803F 0807060504030201 000000000000F0BF");
    Bytes const big = Hex("41 0102 A0B0 01020304 8090A0B0 FFFFFFFE 3F800000 0102030405060708 BFF0000000000000");
    for (EEndianType order : { endianNoSwap, endianSwap }) {
        TOutputMemoryStream out(32, autoDeleteOn, order);
        WriteMixed(out);
        EXPECT_EQ(Written(out), order == endianSwap ? big : little);
        TInputMemoryStream in(out.Start(), out.GetPosition(), order);
        ExpectNext(in, 'A');
        ExpectNext(in, static_cast<short>(0x0102));
        ExpectNext(in, static_cast<unsigned short>(0xA0B0));
        ExpectNext(in, 0x01020304);
        ExpectNext(in, 0x8090A0B0u);
        ExpectNext(in, -2L);
        ExpectNext(in, 1.0f);
        ExpectNext(in, 0x0102030405060708LL);
        EXPECT_EQ(ExpectNext(in, -1.0), 37u);
        EXPECT_TRUE(in.IsEnd());
    }
}

// Lengths around the block size of the shuffle path, and odd tails.
template <class T>
void CheckArraySwap(T seed)
{
    for (unsigned int count : {2u, 3u, 7u, 8u, 15u, 16u, 31u, 32u, 33u, 65u, 200u}) {
        std::vector<T> values(count);
        for (unsigned int n = 0; n < count; ++n)
            values[n] = static_cast<T>(seed * static_cast<T>(n + 1) + static_cast<T>(n));
        TOutputMemoryStream out(32, autoDeleteOn, endianSwap);
        out.Write(values.data(), count);
        std::vector<T> back(count);
        TInputMemoryStream in(out.Start(), out.GetPosition(), endianSwap);
        EXPECT_EQ(in.Read(back.data(), count), count * sizeof(T));
        EXPECT_EQ(back, values) << sizeof(T) << " bytes, count " << count;
        // And the stored bytes really are reversed, element by element.
        Bytes reversed;
        for (T value : values) {
            Bytes const native = BytesOf(value);
            reversed.insert(reversed.end(), native.rbegin(), native.rend());
        }
        EXPECT_EQ(Bytes(out.Start(), out.Start() + out.GetPosition()), reversed);
    }
}

TEST(ByteStreamRead, ArraysSwapInPlaceAtEveryLength)
{
    CheckArraySwap<short>(0x0123);
    CheckArraySwap<unsigned int>(0x01234567u);
    CheckArraySwap<long long>(0x0123456789ABLL);
    CheckArraySwap<double>(1.25);
}

TEST(ByteStreamRead, LongsWidenFromFourBytes)
{
    unsigned char const data[] = {0xFE, 0xFF, 0xFF, 0xFF, 5, 0, 0, 0, 0, 0, 0, 0x80};
    long signedValues[3];
    TInputMemoryStream in(data, sizeof(data));
    EXPECT_EQ(in.Read(signedValues, 3), 12u);
    EXPECT_EQ(signedValues[0], -2L);
    EXPECT_EQ(signedValues[1], 5L);
    EXPECT_EQ(signedValues[2], static_cast<long>(INT32_MIN));

    unsigned long unsignedValue;
    TInputMemoryStream swapped(data, 4, endianSwap);
    swapped.Read(&unsignedValue);
    EXPECT_EQ(unsignedValue, 0xFEFFFFFFul);
}

TEST(ByteStreamRead, NothingIsReadOutsideTheBlock)
{
    unsigned char const data[] = {1, 2, 3};
    TInputMemoryStream in(data, sizeof(data));
    int value = -1;
    EXPECT_EQ(in.Read(&value), 4u);
    EXPECT_EQ(value, 0x030201);
    EXPECT_EQ(in.GetSizeLeft(), 0u);
    EXPECT_EQ(in.ReadData(&value, 4), 8u);
    EXPECT_EQ(value, 0);

    char const text[] = {'a', 'b', 'c'}; // no terminator
    TInputMemoryStream strings(text, sizeof(text));
    EXPECT_EQ(strings.FindStringLenA(), 3);
    char buffer[8];
    EXPECT_EQ(strings.ReadString(buffer), 3u);
    EXPECT_STREQ(buffer, "abc");
    strings.Reset();
    EXPECT_EQ(strings.FindStringLenW(), 1);
    TString<char16_t> wide;
    EXPECT_EQ(strings.ReadString(wide), 2u);
    EXPECT_EQ(wide.GetLength(), 1);
}

TEST(ByteStreamRead, GetCharStopsAtTheEnd)
{
    char data[] = {'x', static_cast<char>(0xF0)};
    TInputMemoryStream in(data, 2);
    EXPECT_EQ(in.GetChar(), 'x');
    EXPECT_EQ(in.GetChar(), 0xF0);
    EXPECT_EQ(in.GetChar(), -1);
    EXPECT_EQ(in.GetPosition(), 2u);
    in.UngetChar('y');
    EXPECT_EQ(in.GetPosition(), 1u);
    EXPECT_EQ(data[1], 'y');
    EXPECT_EQ(in.GetChar(), 'y');
    in.Reset();
    in.UngetChar('q'); // nothing before the start
    EXPECT_EQ(in.GetPosition(), 0u);
    EXPECT_EQ(data[0], 'x');
}

TEST(ByteStreamRead, StringsAndTokens)
{
    TOutputMemoryStream out;
    out.WriteString("first", true);
    out.WriteString(u"wide", true);
    out.WriteString("1,,3", true);
    out.WriteString("-42", true);
    TInputMemoryStream in(out.Start(), out.GetPosition());
    EXPECT_EQ(in.FindStringLenA(), 5);
    TString<char> narrow;
    EXPECT_EQ(in.ReadString(narrow), 6u);
    EXPECT_EQ(narrow, "first");
    EXPECT_EQ(in.FindStringLenW(), 4);
    char16_t wide[8];
    EXPECT_EQ(in.ReadString(wide), 16u);
    EXPECT_EQ(TString<char16_t>(wide), u"wide");
    TVector<TString<char>> tokens;
    in.ReadTokens(tokens, ",");
    Strings texts;
    for (int i = 0; i < tokens.Count(); ++i)
        texts.push_back(tokens[i].c_str());
    EXPECT_EQ(texts, (Strings { "1", "", "3" }));
    int value = 0;
    Read(&value, in, dataFormatText);
    EXPECT_EQ(value, -42);
    EXPECT_TRUE(in.IsEnd());
}

TEST(ByteStreamRead, NarrowReadLineEndsAtEachLineEnd)
{
    char const text[] = "a\r\nb\rc\nlonger line\0z";
    TInputMemoryStream in(text, sizeof(text) - 1);
    TString<char> line;
    bool atEnd = false;
    auto next = [&](int maxChars, bool* end) {
        in.ReadLine(line, maxChars, end);
        return std::string(line.c_str());
    };
    EXPECT_EQ(next(100, &atEnd), "a");
    EXPECT_EQ(next(100, &atEnd), "b");
    EXPECT_EQ(next(100, &atEnd), "c");
    EXPECT_EQ(next(6, &atEnd), "longer");
    EXPECT_FALSE(atEnd);
    EXPECT_EQ(next(100, &atEnd), " line");
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(next(0, nullptr), "");
    EXPECT_EQ(in.GetPosition(), sizeof(text) - 2);
    atEnd = false;
    EXPECT_EQ(next(100, &atEnd), "z"); // the block ends without a terminator
    EXPECT_TRUE(atEnd);
    EXPECT_TRUE(in.IsEnd());
}

TEST(ByteStreamRead, WideReadLineKeepsItsOldWays)
{
    char16_t const text[] = u"ab\ncd";
    TInputMemoryStream in(text, sizeof(text));
    TString<char16_t> line;
    bool atEnd = false;
    auto next = [&](int maxChars, bool* end) {
        in.ReadLine(line, maxChars, end);
        return line.qString();
    };
    EXPECT_EQ(next(100, &atEnd), "ab");
    EXPECT_EQ(in.GetPosition(), 0u); // ended by LF: the position stays
    EXPECT_EQ(next(1, &atEnd), ""); // below 2 reads nothing
    EXPECT_EQ(next(2, &atEnd), "a"); // the limit ends it: the position moves
    EXPECT_EQ(in.GetPosition(), 2u);
    EXPECT_EQ(next(4, &atEnd), "b");
    EXPECT_EQ(in.GetPosition(), 2u);
    in.SetPosition(6);
    EXPECT_EQ(next(100, &atEnd), "cd"); // ends at the zero
    EXPECT_FALSE(atEnd); // never raised
    atEnd = true;
    next(100, &atEnd);
    EXPECT_TRUE(atEnd);
    EXPECT_EQ(next(100, nullptr), "cd");
}

TEST(ByteStreamXml, TagsAndValues)
{
    TOutputMemoryStream out;
    out.WriteXML("track:t", 3, xmlStart, 2, true);
    out.WriteXML("name", 0, "a<b", 3);
    out.WriteXML(nullptr, 0, "bare", 1);
    out.WriteBinaryXML("bin", 12, "\x01\x02\x03\x04", 4, 0);
    out.WriteXML("track:t", 3, xmlEnd, 2, false);
    EXPECT_EQ(Written(out), B("\t\t<track-3>\r\n"
                              "\t\t\t<name>a<b</name>\r\n"
                              "bare"
                              "<bin-12>AQIDBA==</bin-12>\r\n"
                              "\t\t</track-3>"));
}

TEST(ByteStreamXml, FreeWritersAndTagSpelling)
{
    TOutputMemoryStream out;
    WriteXML(out, 1.0f, ',');
    WriteXML(out, 1.0, 0);
    WriteXML(out, u"\u00e9t\u00e9");
    EXPECT_EQ(Written(out), B("AACAPw==,AAAAAAAA8D8=\xC3\xA9t\xC3\xA9"));

    EXPECT_EQ(GetXmlWriteTag("abcd", 12), "abcd-12");
    EXPECT_EQ(GetXmlWriteTag("long:s", 0), "long");
    EXPECT_EQ(GetXmlWriteTag("a:b:c", -1), "a--1");
    EXPECT_EQ(GetXmlReadTag("long:s"), "long");
    EXPECT_EQ(GetXmlReadTag("plain"), "plain");
}

TEST(ByteStreamStrings, TStringWriteAndReadInBothFormats)
{
    TOutputMemoryStream out;
    TString<char> const narrow("n\xC3\xA9");
    TString<char16_t> const wide(u"w\u00e9");
    narrow.Write(out, dataFormatBinary);
    wide.Write(out, dataFormatBinary);
    narrow.Write(out, dataFormatText);
    wide.Write(out, dataFormatText);
    EXPECT_EQ(Written(out), B(std::string("n\xC3\xA9\0w\0\xE9\0\0\0n\xC3\xA9w\xC3\xA9", 16)));

    TInputMemoryStream in(out.Start(), 10);
    TString<char> narrowBack;
    TString<char16_t> wideBack;
    narrowBack.Read(in, dataFormatBinary);
    wideBack.Read(in, dataFormatBinary);
    EXPECT_EQ(narrowBack, narrow);
    EXPECT_EQ(wideBack, wide);
}
