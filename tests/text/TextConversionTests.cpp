#include "math/TRandomizer.h"
#include "StringPrinting.h"
#include "text/TString.h"
#include "text/TextConversion.h"

#include <QString>

#include <gtest/gtest.h>

#include <set>

namespace {

// Restores the process-wide code page whatever a test does.
class CodePageGuard
{
public:
    explicit CodePageGuard(int page) : m_previous(SetCodePage(page)) {}
    ~CodePageGuard() { SetCodePage(m_previous); }

private:
    int m_previous;
};

} // namespace

TEST(TextConversion, ValidUtf8DecodesIncludingPairs)
{
    WString w("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5");
    EXPECT_EQ(w, WString(u"a\u00E9\u20AC\U0001F3B5"));
    EXPECT_EQ(w.GetLength(), 5);
    AString back(w);
    EXPECT_EQ(back, AString("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5"));
    EXPECT_EQ(w.to_astr(), back);
    EXPECT_EQ(back.to_wstr(), w);
    EXPECT_EQ(w.qString(), QString::fromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5"));
    EXPECT_EQ(back.qString(), w.qString());
}

TEST(TextConversion, InvalidUtf8IsLocalTextWidenedByteByByte)
{
    CodePageGuard none(0);
    EXPECT_EQ(WString("caf\xE9"), WString(u"caf\u00E9"));        // lone 0xE9
    EXPECT_EQ(WString("\xC0\xAF"), WString(u"\u00C0\u00AF"));    // overlong "/"
    EXPECT_EQ(WString("\xE0\x80\xAF"), WString(u"\u00E0\u0080\u00AF"));
    EXPECT_EQ(WString("\xED\xA0\x80"), WString(u"\u00ED\u00A0\u0080")); // encoded surrogate
    EXPECT_EQ(WString("\xF4\x90\x80\x80"), WString(u"\u00F4\u0090\u0080\u0080")); // above U+10FFFF
    EXPECT_EQ(WString("\xF5\x80"), WString(u"\u00F5\u0080"));
    EXPECT_EQ(WString("\xC3"), WString(u"\u00C3"));             // cut sequence
    EXPECT_EQ(WString("ab\xE9\0cd", length_t(6)), WString(u"ab\u00E9")); // widening stops at a terminator
    EXPECT_EQ(WString("ok\0x", length_t(4)).GetLength(), 4);     // valid UTF-8 keeps it
}

TEST(TextConversion, InvalidUtf8UsesTheCodePageWhenOneIsSet)
{
    CodePageGuard greek(1253);
    EXPECT_EQ(GetCodePage(), 1253);
    EXPECT_EQ(WString("\xE1\xE2"), WString(u"\u03B1\u03B2"));
    EXPECT_EQ(WString("\xC3\xA9"), WString(u"\u00E9")); // valid UTF-8 still wins
    EXPECT_EQ(SetCodePage(850), 1253);
    EXPECT_EQ(WString("\x82"), WString(u"\u00E9"));
}

TEST(TextConversion, WideToNarrowSurrogates)
{
    CodePageGuard none(0);
    char16_t const pair[] = {u'a', 0xD83C, 0xDFB5, 0};
    EXPECT_EQ(AString(pair), AString("a\xF0\x9F\x8E\xB5"));
    char16_t const loneLow[] = {u'a', 0xDC00, u'b', 0};
    EXPECT_EQ(AString(loneLow), AString("a\xEF\xBF\xBD" "b"));
    char16_t const loneHighInside[] = {0xD800, u'b', 0};
    EXPECT_EQ(AString(loneHighInside), AString("\xEF\xBF\xBD" "b"));
    // A high surrogate at the very end makes the text local: one byte each.
    char16_t const loneHighAtEnd[] = {u'\u00E9', 0x263A, 0xD800, 0};
    EXPECT_EQ(AString(loneHighAtEnd), AString("\xE9??"));
}

TEST(TextConversion, StrictFormsAlwaysGiveUtfAndLocalFormsDoNot)
{
    EXPECT_EQ(ConvertFromUtf8("a\xE9" "b"), WString(u"a\uFFFDb"));
    EXPECT_EQ(ConvertFromUtf8(AString("\xC3\xA9")), WString(u"\u00E9"));
    char16_t const loneHighAtEnd[] = {u'x', 0xD800, 0};
    EXPECT_EQ(ConvertToUtf8(loneHighAtEnd), AString("x\xEF\xBF\xBD"));
    EXPECT_EQ(ConvertToUtf8(QString::fromUtf8("\xC3\xA9")), AString("\xC3\xA9"));
    EXPECT_EQ(ConvertToUtf8(WString(u"\u20AC")), AString("\xE2\x82\xAC"));
    EXPECT_EQ(ConvertFromUtf8(static_cast<char const*>(nullptr)), WString());

    // The local forms, with the code page left as it is.
    AString narrow;
    narrow.SetFromDbcs("caf\xE9");
    EXPECT_EQ(narrow, AString("caf\xC3\xA9"));
    WString wide;
    wide.SetFromDbcs("caf\xE9");
    EXPECT_EQ(wide, WString(u"caf\u00E9"));
    AString ascii("plain");
    EXPECT_EQ(ascii.ToDbcs(), AString("plain"));
}

TEST(TextConversion, HashesPinnedFromTheFormulas)
{
    // hash * 31 + toupper(c), characters signed
    struct { char const* text; unsigned seed; unsigned hash; } const blind[] = {
        {"ab", 0, 2081u}, {"AB", 0, 2081u}, {"Ab", 7, 8808u}, {"\xE9" "a", 0, 4294966648u},
        {"Hello World", 0, 568232580u}, {"", 99, 99u}};
    for (auto const& c : blind)
        EXPECT_EQ(AString(c.text).GetHashValue(false, c.seed), c.hash) << c.text;
    EXPECT_EQ(WString(u"hello world").GetHashValue(false), 568232580u);
    EXPECT_EQ(WString(u"\u00E9").GetHashValue(false), 0xC9u);
    EXPECT_EQ(AString().GetHashValue(true, 99), 99u);
    EXPECT_NE(AString("same").GetHashValue(true), AString("Same").GetHashValue(true));

    // shift-and-fold, over a length (-1 for all) into a table size (0 for none)
    struct { char const* text; int length; unsigned tableSize; bool caseSensitive; unsigned hash; } const folded[] = {
        {"ab", -1, 0xFFFFFFFFu, true, 1650u}, {"ab", -1, 100u, true, 50u}, {"ab", -1, 0xFFFFFFFFu, false, 1106u},
        {"\xFF", 1, 0xFFFFFFFFu, true, 0x0FFFFF0Fu}, {"abcdefghij", -1, 0xFFFFFFFFu, true, 180004458u},
        {"abcdefghij", -1, 1021u, true, 116u}, {"Sample.WAV", -1, 0xFFFFFFFFu, false, 84102470u},
        {"abcdefghij", 2, 0xFFFFFFFFu, true, 1650u}, {"ab", -1, 0u, true, 1650u}};
    for (auto const& c : folded)
        EXPECT_EQ(GetHashValue(c.text, c.length, c.tableSize, c.caseSensitive), c.hash) << c.text << " " << c.tableSize;
    EXPECT_EQ(GetHashValue(u"sample.wav", -1, 0xFFFFFFFFu, false), 84102470u);
}

TEST(TextConversion, TextToNumbers)
{
    EXPECT_EQ(AString("42abc").to_int(), 42);
    EXPECT_EQ(AString("ff").to_int(16), 255);
    EXPECT_EQ(AString("abc").to_int(), 0);
    EXPECT_EQ(AString("70000").to_int16(), static_cast<int16_t>(70000));
    EXPECT_EQ(AString("-1").to_uint(), 0xFFFFFFFFu);
    EXPECT_EQ(AString("300").to_uchar(), 44);
    EXPECT_EQ(AString("-9000000000").to_int64(), -9000000000LL);
    EXPECT_DOUBLE_EQ(AString("2.5e3").to_double(), 2500.0);
    EXPECT_FLOAT_EQ(AString("0.1").to_float(), 0.1f);
    EXPECT_TRUE(AString("2").to_bool());
    EXPECT_FALSE(AString("0.9").to_bool());
    EXPECT_EQ(WString(u"  -17").to_int(), -17);
    EXPECT_EQ(WString(u"0x1F").to_int(16), 31);
    EXPECT_DOUBLE_EQ(WString(u"1.25").to_double(), 1.25);
}

TEST(TextConversion, FormatNarrowAndWide)
{
    AString s;
    EXPECT_EQ(s.Format("%d-%s-%.1f", 7, "x", 2.25), AString("7-x-2.2"));
    s.Format("%s", std::string(3000, 'a').c_str());
    EXPECT_EQ(s.GetLength(), 2047);
    s = "self";
    s.Format("[%s]", s.c_str());
    EXPECT_EQ(s, AString("[self]"));

    WString w;
    EXPECT_EQ(w.Format(u"%s=%d", u"wide", 12), WString(u"wide=12"));
    EXPECT_EQ(w.Format(u"%hs|%S|%ls", "n\xC3\xA9", "b", u"w"), WString(u"n\u00E9|b|w"));
    EXPECT_EQ(w.Format(u"%c%hc%C", u'\u00E9', 'a', 'b'), WString(u"\u00E9ab"));
    EXPECT_EQ(w.Format(u"[%5s][%-4s][%.2s]", u"ab", u"cd", u"efgh"), WString(u"[   ab][cd  ][ef]"));
    EXPECT_EQ(w.Format(u"%05.1f|%x|%lld|%u%%|%*d", 3.14159, 255u, -5LL, 7u, 3, 4), WString(u"003.1|ff|-5|7%|  4"));
    EXPECT_EQ(w.Format(u"%zu %ld %hd", static_cast<size_t>(9), -8L, 3), WString(u"9 -8 3"));
    EXPECT_EQ(w.Format(u"100%"), WString(u"100%")); // a lone "%" stays
    EXPECT_EQ(w.Format(u"%q"), WString(u"%q"));
    w.Format(u"%s", std::u16string(3000, u'b').c_str());
    EXPECT_EQ(w.GetLength(), 2047);
}

TEST(TextConversion, RandomizeLengthsAndAlphabet)
{
    TRandomizer randomizer(11);
    std::set<int> lengths;
    AString s;
    for (int i = 0; i < 200; ++i) {
        s.Randomize(randomizer, 2, 5);
        lengths.insert(s.GetLength());
        for (int j = 0; j < s.GetLength(); ++j)
            EXPECT_TRUE(isalnum(static_cast<unsigned char>(s[j])));
    }
    EXPECT_EQ(lengths, (std::set<int>{2, 3, 4, 5}));
    s.Randomize(randomizer, 5, 4);
    EXPECT_TRUE(s.IsEmpty());
    s.Randomize(randomizer, 6, 6, "ab");
    EXPECT_EQ(s.GetLength(), 6);
    EXPECT_EQ(s.FindFirstNotOf("ab"), -1);
    WString w;
    w.Randomize(randomizer, 3, 3, u"\u00E9");
    EXPECT_EQ(w, WString(u"\u00E9\u00E9\u00E9"));

    TRandomizer first(5);
    TRandomizer second(5);
    EXPECT_EQ(AString().Randomize(first, 8, 16), AString().Randomize(second, 8, 16));
}
