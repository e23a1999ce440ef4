#include "StringPrinting.h"
#include "text/TString.h"

#include <gtest/gtest.h>

#include <iterator>

TEST(TStringEdit, KeepAndCutAtAndPastTheEnds)
{
    using Edit = AString& (AString::*)(int);
    struct { Edit edit; int argument; char const* result; } const cases[] = {
        {&AString::KeepLeft, 2, "ab"}, {&AString::KeepLeft, 7, "abcdef"}, {&AString::KeepLeft, 0, ""},
        {&AString::KeepLeft, -1, "abcdef"}, {&AString::KeepRight, 2, "ef"}, {&AString::KeepRight, 6, "abcdef"},
        {&AString::KeepFrom, 4, "ef"}, {&AString::KeepFrom, 6, ""}, {&AString::KeepFrom, 7, "abcdef"},
        {&AString::CutLeft, 2, "cdef"}, {&AString::CutLeft, 9, ""}, {&AString::CutLeft, -3, "abcdef"},
        {&AString::CutRight, 2, "abcd"}, {&AString::CutRight, 6, ""}, {&AString::CutFrom, 2, "ab"},
        {&AString::CutFrom, 6, "abcdef"}, {&AString::CutFrom, -1, "abcdef"}, // Find's -1 cuts nothing
        {&AString::CutOneChar, 5, "abcde"}, {&AString::CutOneChar, 6, "abcdef"},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        AString s("abcdef");
        (s.*cases[i].edit)(cases[i].argument);
        EXPECT_EQ(s, AString(cases[i].result)) << "case " << i; // the length too
    }

    AString s("abcdef");
    EXPECT_EQ(s.CutRange(1, 2), AString("adef"));
    EXPECT_EQ(s.CutRange(2, 100), AString("ad"));
    EXPECT_EQ(s.CutRange(2, 1), AString("ad"));
    EXPECT_EQ(s.CutRange(0, 0), AString("ad"));
    EXPECT_EQ(AString("abcdef").KeepRange(2, 3), AString("cde"));
    EXPECT_EQ(AString("abcdef").KeepRange(4, 9), AString("ef"));
    EXPECT_EQ(AString("abcdef").KeepRange(7, 1), AString("abcdef"));

    AString const source("abcdef");
    EXPECT_EQ(source.GetLeft(3), AString("abc"));
    EXPECT_EQ(source.GetLeft(10).c_str(), source.c_str()); // the whole text is shared
    EXPECT_EQ(source.GetRight(2), AString("ef"));
    EXPECT_EQ(source.GetRight(-2), AString(""));
    EXPECT_EQ(source.GetFrom(4), AString("ef"));
    EXPECT_EQ(source.GetFrom(6), AString(""));
    EXPECT_EQ(source.GetRange(1, 2), AString("bc"));
    EXPECT_EQ(source, AString("abcdef"));
}

TEST(TStringEdit, CutsOnASharedBufferLeaveTheOtherCopy)
{
    AString a("keep this whole");
    AString b(a);
    b.CutFrom(4);
    b.MakeUpper();
    EXPECT_EQ(a, AString("keep this whole"));
    EXPECT_EQ(b, AString("KEEP"));
    AString c(a);
    c.CutLeft(100);
    EXPECT_EQ(c.c_str(), AString::null().c_str());
    EXPECT_EQ(a, AString("keep this whole"));
}

TEST(TStringEdit, CutByContent)
{
    EXPECT_EQ(AString("a=b=c").CutFromFirstChar('='), AString("a"));
    EXPECT_EQ(AString("a=b=c").CutFromFirstChar('=', false), AString("a="));
    EXPECT_EQ(AString("a=b=c").CutFromLastChar('='), AString("a=b"));
    EXPECT_EQ(AString("a=b=c").CutUntilFirstChar('='), AString("b=c"));
    EXPECT_EQ(AString("a=b=c").CutUntilFirstChar('=', false), AString("=b=c"));
    EXPECT_EQ(AString("a=b=c").CutUntilLastChar('='), AString("c"));
    EXPECT_EQ(AString("a=b=c").CutUntilLastChar('#'), AString("a=b=c"));
    EXPECT_EQ(AString("x/y\\z").CutUntilLastOf("/\\", true), AString("z"));
    EXPECT_EQ(AString("x/y\\z").CutUntilLastOf("/\\", false), AString("\\z"));
    EXPECT_EQ(AString("x/y\\z").CutFromFirstOf("\\/"), AString("x"));
    EXPECT_EQ(AString("x/y\\z").CutFromLastOf("/", false), AString("x/"));
    EXPECT_EQ(AString("x/y\\z").CutUntilFirstOf("\\"), AString("z"));

    EXPECT_EQ(AString("Name:  value ").CutFromString("VALUE", false, true), AString("Name:"));
    EXPECT_EQ(AString("Name:  value ").KeepAfterString(":", true, true), AString("value"));
    EXPECT_EQ(AString("Name:  value ").KeepAfterString("?", true, true), AString("Name:  value "));
    EXPECT_EQ(AString("key = x").CutAfterString(" = "), AString("key = "));

    AString s("a,b,c,d");
    EXPECT_TRUE(s.CutAfterXthChar(',', 3));
    EXPECT_EQ(s, AString("a,b,c"));
    EXPECT_FALSE(s.CutAfterXthChar(',', 3));
    EXPECT_EQ(s, AString("a,b,c"));
}

TEST(TStringEdit, CutTextBetween)
{
    AString s("a[1]b[22]c[3]");
    EXPECT_EQ(s.CutTextBetween("[", "]", 1, false), 6);
    EXPECT_EQ(s, AString("a[1]b[]c[3]"));
    EXPECT_EQ(s.CutTextBetween("[", "]", 0, true), 1);
    EXPECT_EQ(s, AString("ab[]c[3]"));
    EXPECT_EQ(s.CutTextBetween("[", "]", 5, true), -1);
    EXPECT_EQ(s, AString("ab[]c[3]"));

    AString all("x<!--1-->y<!--2-->z<!--");
    EXPECT_EQ(all.CutTextBetween("<!--", "-->", -1, true), 2);
    EXPECT_EQ(all, AString("xyz<!--"));

    // Repeating without the delimiters empties every pair once and ends.
    AString inner("(ab)(cd)(ef");
    EXPECT_EQ(inner.CutTextBetween("(", ")", -1, false), 3);
    EXPECT_EQ(inner, AString("()()(ef"));
}

TEST(TStringEdit, SplitAtFirstOf)
{
    AString s("a, b");
    EXPECT_EQ(s.SplitAtFirstOf(","), AString("a"));
    EXPECT_EQ(s, AString(" b"));

    AString none("abc");
    EXPECT_EQ(none.SplitAtFirstOf(";"), AString(""));
    EXPECT_EQ(none, AString("abc"));

    AString runs(";;key;;value;;");
    EXPECT_EQ(runs.SplitAtFirstOf(";"), AString(""));
    EXPECT_EQ(runs, AString("key;;value"));
    EXPECT_EQ(runs.SplitAtFirstOf(";"), AString("key"));
    EXPECT_EQ(runs, AString("value"));
}

TEST(TStringEdit, TrimAndStrip)
{
    EXPECT_EQ(AString(" \t a b \t ").Trim(), AString("a b"));
    EXPECT_EQ(AString(" \t a b \t ").TrimLeft(), AString("a b \t "));
    EXPECT_EQ(AString(" \t a b \t ").TrimRight(), AString(" \t a b"));
    EXPECT_EQ(AString("xxaxx").Trim("x"), AString("a"));
    EXPECT_TRUE(AString("xxxx").Trim("x").IsEmpty());
    EXPECT_EQ(AString("--a--").TrimInt("-", 4), AString("--a"));
    EXPECT_EQ(AString("\"quoted\"").RemoveQuotes(), AString("quoted"));
    EXPECT_EQ(AString("a.b.c").StripChar('.'), AString("abc"));
    EXPECT_EQ(AString("a.b,c").StripAnyOf(".,"), AString("abc"));
    EXPECT_EQ(AString("a  b   c ").StripDoubloons(' '), AString("a b c "));
    EXPECT_EQ(AString("--1-2.3.4x").KeepOnlyDigits(), AString("1234"));
    EXPECT_EQ(AString("--1-2.3.4x").KeepOnlyDigits(true, true), AString("-12.34"));
    EXPECT_EQ(AString("a/* x */b/*y*/c").RemoveCComments(), AString("abc"));
    EXPECT_EQ(AString("a/* open").RemoveCComments(), AString("a"));
    EXPECT_EQ(AString("a */ b").RemoveCComments(), AString("a */ b"));

    WString w(u"  wide\t");
    EXPECT_EQ(w.Trim(), WString(u"wide"));
}

TEST(TStringEdit, CaseInTheCLocale)
{
    EXPECT_EQ(AString("abc XYZ \xC3\xA9").MakeUpper(), AString("ABC XYZ \xC3\xA9"));
    EXPECT_EQ(AString("ABC xyz").MakeLower(), AString("abc xyz"));
    EXPECT_EQ(AString("hELLO wORLD").MakeCapital(), AString("Hello world"));
    EXPECT_EQ(AString("hELLO wORLD").MakeCapital(true), AString("Hello World"));
    EXPECT_EQ(AString("a.b c").MakeUpperInitials(), AString("A.B C"));
    EXPECT_EQ(AString("word").MakeUpperInitials(), AString("word"));
    EXPECT_EQ(AString("j. r. smith x").MakeUpperInitials(), AString("J. R. smith X"));
    EXPECT_EQ(AString("Mixed").SetCase(eWordCaseUpper), AString("MIXED"));
    EXPECT_EQ(AString("Mixed").SetCase(eWordCaseMixed), AString("Mixed"));
    EXPECT_EQ(AString("abc").Inverse(), AString("cba"));
    EXPECT_EQ(WString(u"\u00E9t\u00E9").MakeUpper(), WString(u"\u00C9T\u00C9"));
    EXPECT_EQ(WString(u"\u0391\u0392").MakeLower(), WString(u"\u03B1\u03B2"));

    AString shared("lower");
    AString copy(shared);
    copy.MakeLower(); // nothing changes: stays shared
    EXPECT_EQ(copy.c_str(), shared.c_str());
}

TEST(TStringEdit, Delimiters)
{
    EXPECT_EQ(AString().SetDelimiters('"', '"'), AString("\"\""));
    EXPECT_EQ(AString("\"").SetDelimiters('"', '"'), AString("\""));
    EXPECT_EQ(AString("a").SetQuotes(), AString("\"a\""));
    EXPECT_EQ(AString("\"a").SetQuotes(), AString("\"a\""));
    EXPECT_EQ(AString("a").SetBrackets(), AString("<a>"));
    EXPECT_EQ(AString("a}").SetBraces(), AString("{a}"));
    EXPECT_EQ(AString("tag").SetXmlBraces(), AString("<tag>"));
    EXPECT_EQ(AString("tag").SetXmlBraces(false), AString("</tag>"));
    EXPECT_EQ(AString("x").Quoted(), AString("\"x\""));
    EXPECT_EQ(AString("/x").SetDelimiters("/\\"), AString("/x/"));
    EXPECT_EQ(AString("\\x").EnsureLastCharIs("/\\"), AString("\\x/"));
    EXPECT_EQ(AString("x\\").EnsureLastCharIs("/\\"), AString("x\\"));
    EXPECT_EQ(AString("x").EnsureFirstCharIs('.'), AString(".x"));
    EXPECT_EQ(AString().EnsureLastCharIs('/'), AString("/"));
}

TEST(TStringEdit, PadCountsTabsToTheirStops)
{
    EXPECT_EQ(AString("ab").Pad('.', 5), AString("ab..."));
    EXPECT_EQ(AString("ab").Pad('.', 5, 0, true), AString("...ab"));
    EXPECT_EQ(AString("abcdef").Pad('.', 5), AString("abcdef"));
    EXPECT_EQ(AString("\tab").Pad('.', 12, 8), AString("\tab.."));   // the tab reaches column 8
    EXPECT_EQ(AString("\tab").Pad('.', 12, 0), AString("\tab........."));
    EXPECT_EQ(AString("ab").Pad('\t', 9, 4), AString("ab\t\t\t"));   // 2 -> 4 -> 8 -> 12
    EXPECT_EQ(AString("ab").Pad('\t', 8, 4, true), AString("ab\t\t")); // tabs always at the end
    EXPECT_EQ(AString("abcd").Pad('\t', 4, 4), AString("abcd"));
}

TEST(TStringEdit, SpaceAndCountAndNiceInteger)
{
    EXPECT_EQ(AString("a b  c").Space(0), AString("abc"));
    EXPECT_EQ(AString("abc").Space(1), AString("a b c"));
    EXPECT_EQ(AString("ab").Space(3), AString("a   b"));
    EXPECT_EQ(AString("a").Space(2), AString("a"));

    EXPECT_EQ(AString("Take").AddCount(7, 120), AString("Take(007)"));
    EXPECT_EQ(AString("Take").AddCount(7, 120, " #%s", false), AString("Take #007"));
    EXPECT_EQ(AString("Take").AddCount(12, 5, "%s. ", true), AString("12. Take"));

    EXPECT_EQ(AString("1234567").SetNiceInteger(), AString("1 234 567"));
    EXPECT_EQ(AString("1234").SetNiceInteger(), AString("1 234"));
    EXPECT_EQ(AString("999").SetNiceInteger(), AString("999"));
    EXPECT_EQ(AString("-123").SetNiceInteger(), AString("- 123"));
    EXPECT_EQ(WString(u"123456").SetNiceInteger(), WString(u"123 456"));
}

TEST(TStringEdit, CharacterReplacement)
{
    EXPECT_EQ(AString("a\\b\\c").BackSlahesToSlashes(), AString("a/b/c"));
    EXPECT_EQ(AString("abc").ReplaceLastChar('!'), AString("ab!"));
    EXPECT_EQ(AString().ReplaceLastChar('!'), AString(""));
    EXPECT_EQ(AString("a:b|c").ReplaceAnyOf(":|", '_'), AString("a_b_c"));
    EXPECT_EQ(AString("abc").SetChar(1, 'X'), AString("aXc"));
    EXPECT_EQ(AString("abc").SetChar(3, 'X'), AString("abc"));
    EXPECT_EQ(AString("abcdef").Replace(1, 3, "XY"), AString("aXYef"));
    AString self("abc");
    EXPECT_EQ(self.Replace(0, 1, self.c_str() + 1), AString("bcbc"));
}
