#include "text/CStringHelpers.h"
#include "text/StringSplit.h"

#include "LogCapture.h"
#include "math/MemoryAlloc.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

// ASCII test texts in either character type; n keeps embedded zeros.
template <class T>
std::basic_string<T> L(char const* text, size_t n = std::string::npos)
{
    return std::basic_string<T>(text, text + (n == std::string::npos ? std::strlen(text) : n));
}

template <class T>
std::string Narrow(TString<T> const& s)
{
    return std::string(s.c_str(), s.c_str() + s.GetLength());
}

template <class T>
Strings Pieces(TVector<TString<T>> const& strings)
{
    Strings pieces;
    for (TString<T> const& s : strings)
        pieces.push_back(Narrow(s));
    return pieces;
}

// Pieces of text split by ExplodeString (any of the separators, or a multi
// string when there are none) or by ExplodeStringEx (the whole separator).
template <class T>
Strings Explode(std::basic_string<T> const& text, char const* separators, bool trim, bool keepEmpty, bool whole = false)
{
    std::basic_string<T> const set = separators ? L<T>(separators) : std::basic_string<T>();
    TVector<TString<T>> out;
    out.Add(TString<T>("stale"));
    if (whole)
        ExplodeStringEx(out, text.c_str(), separators ? set.c_str() : nullptr, trim, keepEmpty);
    else
        ExplodeString(out, text.c_str(), separators ? set.c_str() : nullptr, trim, keepEmpty);
    return Pieces(out);
}

template <class T>
class StringSplit : public ::testing::Test
{
};

using CharTypes = ::testing::Types<char, char16_t>;
TYPED_TEST_SUITE(StringSplit, CharTypes);

} // namespace

TYPED_TEST(StringSplit, ExplodeAtAnySeparatorOrAtWholeOnes)
{
    using T = TypeParam;
    bool const trim = true, keepEmpty = true, whole = true;
    struct { char const* text; char const* separators; bool trim; bool keepEmpty; bool whole; Strings pieces; } const cases[] = {
        // Separators in a row count as one unless empty pieces are kept.
        {";a;;b;", ";", !trim, !keepEmpty, !whole, {"a", "b"}},
        {";a;;b;", ";", !trim, keepEmpty, !whole, {"", "a", "", "b", ""}},
        {";", ";", !trim, keepEmpty, !whole, {"", ""}},
        {"abc", ";", !trim, keepEmpty, !whole, {"abc"}},
        {"", ";", !trim, keepEmpty, !whole, {}},
        {"a,b;c,;d", ",;", !trim, !keepEmpty, !whole, {"a", "b", "c", "d"}},
        // More separators than are searched one by one.
        {"a1b2c3d4e5f6", "123456", !trim, keepEmpty, !whole, {"a", "b", "c", "d", "e", "f", ""}},
        // Trimming takes blanks and drops what becomes empty.
        {" a ;\t; b\t", ";", trim, !keepEmpty, !whole, {"a", "b"}},
        {" a ;\t; b\t", ";", trim, keepEmpty, !whole, {"a", "", "b"}},
        {" a ;\t; b\t", ";", !trim, !keepEmpty, !whole, {" a ", "\t", " b\t"}},
        {"a<>b<><>c", "<>", !trim, !keepEmpty, whole, {"a", "b", "c"}},
        {"a<>b<><>c<>", "<>", !trim, keepEmpty, whole, {"a", "b", "", "c", ""}},
        {"a<<>b<", "<>", !trim, !keepEmpty, whole, {"a<", "b<"}},
        {" a <> b ", "<>", trim, !keepEmpty, whole, {"a", "b"}},
        // Without a separator the whole text is one piece, even an empty one.
        {" a;b ", "", trim, !keepEmpty, whole, {"a;b"}},
        {"", nullptr, !trim, keepEmpty, whole, {""}},
        {"", nullptr, !trim, !keepEmpty, whole, {}},
        {"  ", nullptr, trim, !keepEmpty, whole, {}},
    };
    for (auto const& c : cases)
        EXPECT_EQ(Explode(L<T>(c.text), c.separators, c.trim, c.keepEmpty, c.whole), c.pieces)
            << '"' << c.text << "\" by \"" << (c.separators ? c.separators : "null") << '"';

    // Without separators the text is a multi string.
    EXPECT_EQ(Explode(L<T>("a\0bc\0\0z", 8), nullptr, false, true), (Strings{"a", "bc"}));
    EXPECT_EQ(Explode(L<T>("a\0bc\0\0z", 8), "", false, false), (Strings{"a", "bc"}));
    // The text may be one of the pieces that the output holds.
    TVector<TString<T>> pieces;
    pieces.Add(TString<T>("x"));
    pieces.Add(TString<T>("a;b"));
    ExplodeString(pieces, pieces[1].c_str() + 0, L<T>(";").c_str(), false, false);
    EXPECT_EQ(Pieces(pieces), (Strings{"a", "b"}));
}

TYPED_TEST(StringSplit, CrLfLeavesAnEmptyLineThatKeepEmptyKeeps)
{
    std::basic_string<TypeParam> const text = L<TypeParam>("one\r\ntwo\n\nthree");
    TVector<TString<TypeParam>> lines;
    TextToStringVector(text.c_str(), lines, false, true);
    EXPECT_EQ(Pieces(lines), (Strings{"one", "", "two", "", "three"}));
    TextToStringVector(text.c_str(), lines, false, false);
    EXPECT_EQ(Pieces(lines), (Strings{"one", "two", "three"}));
}

TYPED_TEST(StringSplit, ListFormGivesTheSamePieces)
{
    std::basic_string<TypeParam> const text = L<TypeParam>(" x ,, y,");
    std::basic_string<TypeParam> const comma = L<TypeParam>(",");
    TFlexList<LString<TypeParam>> list(autoDeleteOn);
    list.Append(new LString<TypeParam>(TString<TypeParam>("stale")));
    ExplodeString(list, text.c_str(), comma.c_str(), true, true);
    Strings pieces;
    for (LString<TypeParam> const* s : list)
        pieces.push_back(Narrow(*s));
    EXPECT_EQ(pieces, (Strings{"x", "", "y", ""}));
}

TYPED_TEST(StringSplit, JoiningUndoesSplittingWithEmptyPiecesKept)
{
    using T = TypeParam;
    std::basic_string<T> const sep = L<T>("::");
    for (char const* text : {"a::b", "::a::::b::", "::", "x"}) {
        std::basic_string<T> const t = L<T>(text);
        TVector<TString<T>> pieces;
        ExplodeStringEx(pieces, t.c_str(), sep.c_str(), false, true);
        EXPECT_EQ(Narrow(StringFromStringVector(pieces, sep.c_str())), text);
    }
    TVector<TString<T>> lines;
    lines.Add(TString<T>("a"));
    lines.Add(TString<T>("b"));
    EXPECT_EQ(Narrow(StringFromStringVector<T>(lines, nullptr, true)), "a\nb\n");
    EXPECT_TRUE(StringFromStringVector<T>(TVector<TString<T>>(), nullptr, true).IsEmpty());
}

TYPED_TEST(StringSplit, MultiStringsSkipEmptyItemsAndStopAtTheLimit)
{
    using T = TypeParam;
    TVector<TString<T>> items;
    T buffer[16];
    std::fill(buffer, buffer + 16, T('#'));
    EXPECT_EQ(BuildMultiString(items, buffer, 16), 2);
    EXPECT_EQ(std::string(buffer, buffer + 3), std::string("\0\0#", 3));

    for (char const* item : {"ab", "", "cde", "f"})
        items.Add(TString<T>(item));
    EXPECT_EQ(BuildMultiString<T>(items, nullptr, 0), 10);
    EXPECT_EQ(BuildMultiString(items, buffer, 10), 10);
    EXPECT_EQ(std::string(buffer, buffer + 10), std::string("ab\0cde\0f\0\0", 10));
    // One character short: "f" no longer fits with both zeros.
    std::fill(buffer, buffer + 16, T('#'));
    EXPECT_EQ(BuildMultiString(items, buffer, 9), 8);
    EXPECT_EQ(std::string(buffer, buffer + 9), std::string("ab\0cde\0\0#", 9));
    EXPECT_EQ(BuildMultiString(items, buffer, 1), 0);

    TVector<TString<T>> back;
    ExplodeString<T>(back, buffer, nullptr, false, true);
    EXPECT_EQ(Pieces(back), (Strings{"ab", "cde"}));
}

TYPED_TEST(StringSplit, DigitRunsBecomeNumbersWithoutSigns)
{
    using T = TypeParam;
    std::basic_string<T> const text = L<T>("12 ab 3-4,,0056 99999999999x7");
    int count = -1;
    int* values = StringToIntVector(text.c_str(), &count);
    ASSERT_EQ(count, 6);
    EXPECT_EQ(std::vector<int>(values, values + count), (std::vector<int>{12, 3, 4, 56, INT_MAX, 7}));
    free_ex(values);
    EXPECT_EQ(StringToIntVector(L<T>("none").c_str(), &count), nullptr);
    EXPECT_EQ(count, 0);

    int const numbers[] = {1, -20, 300};
    EXPECT_EQ(Narrow(StringFromIntVector(numbers, 3, T(','))), "1,-20,300");
    EXPECT_EQ(Narrow(StringFromIntVector(numbers, 3, T(0))), "1-20300");
    EXPECT_TRUE(StringFromIntVector(numbers, 0, T(',')).IsEmpty());
}

TEST(CStringHelpers, StrcpyStaysInsideTheTarget)
{
    char target[8];
    std::memset(target, 'x', sizeof target);
    Strcpy(target, "abc", 0u);
    EXPECT_EQ(target[0], 'x');
    Strcpy(target, "abc", 1u);
    EXPECT_STREQ(target, "");
    EXPECT_EQ(target[1], 'x');
    Strcpy(target, "abcdefgh", 4u);
    EXPECT_STREQ(target, "abc");
    EXPECT_EQ(target[4], 'x');
    Strcpy(target, "ab", 7u, true);
    EXPECT_EQ(std::string(target, 8), std::string("ab\0\0\0\0\0x", 8));

    char16_t wide[4];
    EXPECT_EQ(std::u16string(Strcpy(wide, u"wide", 4u)), u"wid");
}

TEST(CStringHelpers, MakeStringCopiesByLengthWithinSize)
{
    char target[6];
    std::memset(target, 'x', sizeof target);
    EXPECT_EQ(MakeString(target, 6, "a\0bcdefg", 3), 3);
    EXPECT_EQ(std::string(target, 5), std::string("a\0b\0x", 5));
    EXPECT_EQ(MakeString(target, 6, "abcdefg", 99), 5);
    EXPECT_STREQ(target, "abcde");
    EXPECT_EQ(MakeString(target, 6, "ab", -1), 2);
    EXPECT_STREQ(target, "ab");
    EXPECT_EQ(MakeString(target, 0, "ab", 2), 0);
    EXPECT_STREQ(target, "ab");
}

TEST(CStringHelpers, ChainsAndCopies)
{
    char text[16];
    char* end = StrcpyEx(text, "ab");
    end = StrcpyEx(end, "-");
    EXPECT_EQ(end - text, 3);
    end = StrcatEx(text, "cd");
    EXPECT_EQ(end - text, 5);
    EXPECT_STREQ(text, "ab-cd");

    char16_t* copy = Strnewdup(u"hello", 4);
    EXPECT_EQ(std::u16string(copy), u"hell");
    free_ex(copy);
    EXPECT_EQ(Strnewdup<char>(nullptr), nullptr);
}

TEST(CStringHelpers, CountingFindingAndReplacing)
{
    EXPECT_EQ(CountChar(u"banana", 'a'), 3);
    EXPECT_EQ(CountSubStrings("aaaa", "aa"), 2);
    EXPECT_EQ(CountSubStrings("Ab ab AB", "ab", false), 3);
    EXPECT_EQ(CountSubStrings("Ab ab AB", "ab", true), 1);
    EXPECT_EQ(CountSubStrings("abc", ""), 0);

    char const* path = "a/b\\c.d";
    EXPECT_EQ(FindLastOf(path, "/\\"), path + 3);
    EXPECT_EQ(FindLastOf(path, "*"), nullptr);

    char16_t text[] = u"a-b_c-d";
    EXPECT_EQ(ReplaceChar(text, '-', '+'), 2);
    EXPECT_EQ(ReplaceChars(text, u"+_", u"=:"), 3);
    EXPECT_EQ(std::u16string(text), u"a=b:c=d");
    EXPECT_EQ(ReplaceChars(text, u"=:", u"."), 3);
    EXPECT_EQ(std::u16string(text), u"a.b.c.d");
    LogCapture log;
    EXPECT_EQ(ReplaceChars(text, u"abc", u"xy"), 0);
    EXPECT_EQ(std::u16string(text), u"a.b.c.d");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "ReplaceChars 2"));

    char word[] = "stressed";
    EXPECT_STREQ(Inverse(word), "desserts");
    EXPECT_STREQ(Inverse(word, 3), "sedserts");
}

TEST(CStringHelpers, ComparisonTreatsNullAsEmptyAndBytesAsUnsigned)
{
    EXPECT_TRUE(AreEqual<char>(nullptr, ""));
    EXPECT_TRUE(AreEqual(u"Wave", u"wAVE", false));
    EXPECT_FALSE(AreEqual(u"Wave", u"wAVE", true));
    EXPECT_LT(Compare("abc", "abd"), 0);
    EXPECT_GT(Compare("abc", "ab"), 0);
    EXPECT_EQ(Compare("ABC", "abc", false), 0);
    EXPECT_GT(Compare("\xC3\xA9", "z"), 0);
    EXPECT_LT(Compare<char16_t>(nullptr, u"a"), 0);
}

TEST(CStringHelpers, TrimmedSubStringSides)
{
    int length = -1;
    char const* text = "  ab \t";
    EXPECT_EQ(FindTrimmedSubString(text, &length, nullptr, 1), text + 2);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(FindTrimmedSubString(text, &length, nullptr, 4), text);
    EXPECT_EQ(length, 4);
    EXPECT_EQ(FindTrimmedSubString(text, &length), text + 2);
    EXPECT_EQ(length, 2);
    FindTrimmedSubString(" \t ", &length);
    EXPECT_EQ(length, 0);
    char16_t const* dashes = u"--x-";
    EXPECT_EQ(FindTrimmedSubString(dashes, &length, u"-", 5), dashes + 2);
    EXPECT_EQ(length, 1);
    // An unterminated text is read only up to its length.
    char const unterminated[] = {' ', 'a', ' ', 'b', ' '};
    EXPECT_EQ(FindTrimmedSubString(unterminated, 3, &length, nullptr, 5), unterminated + 1);
    EXPECT_EQ(length, 1);
}

TEST(CStringHelpers, LinePositionsCountLineFeeds)
{
    char16_t const* text = u"ab\r\ncd\nef";
    for (auto [offset, line, column] : {std::tuple{0, 0, 0}, {2, 0, 2}, {5, 1, 1}, {7, 2, 0}, {1000, 2, 2}}) {
        EXPECT_EQ(FindLineIndex(text, offset), line) << offset;
        EXPECT_EQ(FindOffsetFromStartOfLine(text, offset), column) << offset;
    }
}
