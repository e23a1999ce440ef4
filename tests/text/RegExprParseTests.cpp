#include "LogCapture.h"
#include "RegExprTestSupport.h"

#include "math/TRandomizer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>

namespace {

template <class T>
class RegExprParse : public ::testing::Test
{
protected:
    static EParseError P(char const* pattern, ERegex2Mode mode = eRegex2ModeFull) { return ParseOf<T>(pattern, mode); }
};

TYPED_TEST_SUITE(RegExprParse, RegExprCharTypes, RegExprCharNames);

std::string Repeat(char const* piece, int count)
{
    std::string out;
    for (int i = 0; i < count; ++i)
        out += piece;
    return out;
}

// The deepest nesting of ( ) that the parser takes.
template <class T>
int DeepestNesting()
{
    int depth = 1;
    while (ParseOf<T>((Repeat("(", depth) + "a" + Repeat(")", depth)).c_str()) == eParseErrorNone)
        ++depth;
    return depth - 1;
}

} // namespace

TYPED_TEST(RegExprParse, EveryErrorValue)
{
    using T = TypeParam;
    for (char const* pattern : {"", "a", "(a*)?", "()", "{}", "a**", "+a", "*?", "a)b", "/b*", "[-]", "[/]]"})
        EXPECT_EQ(this->P(pattern), eParseErrorNone) << pattern;

    for (char const* pattern : {"{a", "{", "{a)b}", "({a)"})
        EXPECT_EQ(this->P(pattern), eParseErrorUnclosedCapture) << pattern;
    for (char const* pattern : {"(a", "(", "(a}b)", "x(y(z)"})
        EXPECT_EQ(this->P(pattern), eParseErrorUnclosedGroup) << pattern;
    for (char const* pattern : {"[a", "[", "[^", "[a/", "[a-", "[a-]", "x[/]"})
        EXPECT_EQ(this->P(pattern), eParseErrorUnclosedClass) << pattern;
    for (char const* pattern : {"[]", "[^]", "[]a]"})
        EXPECT_EQ(this->P(pattern), eParseErrorEmptyClass) << pattern;
    for (char const* pattern : {"/1", "{a}/2", "/1{a}", "({a}/3)"})
        EXPECT_EQ(this->P(pattern), eParseErrorBackReference) << pattern;
    EXPECT_EQ(this->P("{a/1}"), eParseErrorNone); // opened, if not closed
    EXPECT_EQ(this->P("/1", eRegex2ModeReduced), eParseErrorNone);
    for (char const* pattern : {"[z-a]", "[a-/t]", "[b-a-]"})
        EXPECT_EQ(this->P(pattern), eParseErrorRangeOrder) << pattern;
    for (char const* pattern : {"(a*)*", "()+", "(a?)+", "{}*", "(!a)*", "()*?", "()+?", "(a|b*)+", "{a?b?}+"})
        EXPECT_EQ(this->P(pattern), eParseErrorEmptyLoop) << pattern;
    for (char const* pattern : {"()??", "()?", "(a*)?", "(a|b)+"})
        EXPECT_EQ(this->P(pattern), eParseErrorNone) << pattern;

    TRegExpr<T> expression;
    EXPECT_EQ(expression.Parse(nullptr), eParseErrorNullPattern);
    EXPECT_EQ(expression.GetLastParseError(), eParseErrorNullPattern);
    EXPECT_EQ(MatchOf(expression, Text<T>("").c_str()), "none");
    EXPECT_EQ(expression.Parse(Text<T>("[z-a]").c_str()), eParseErrorRangeOrder);
    EXPECT_EQ(expression.GetLastParseError(), eParseErrorRangeOrder);
    EXPECT_EQ(MatchOf(expression, Text<T>("z").c_str()), "none"); // nothing runs after an error
}

TYPED_TEST(RegExprParse, TextBehindAStrayCloserIsIgnored)
{
    for (char const* pattern : {"a)b", "a]b", "a}b"})
        EXPECT_EQ(MatchOf<TypeParam>(pattern, "xab"), "1-2") << pattern;
    EXPECT_EQ(MatchOf<TypeParam>(")a", "a"), "0-0");
}

TYPED_TEST(RegExprParse, CountersAndModeStayWithTheObject)
{
    using T = TypeParam;
    TRegExpr<T> expression(eRegex2ModeReduced);
    EXPECT_EQ(expression.GetMode(), eRegex2ModeReduced);
    ASSERT_EQ(expression.Parse(Text<T>("{a}(b{c}d)*").c_str(), false), eParseErrorNone);
    EXPECT_EQ(expression.GetCaptureCount(), 2);
    EXPECT_FALSE(expression.IsCaseSensitive());

    // A copy keeps its program when the original compiles something else.
    TRegExpr<T> copy(expression);
    ASSERT_EQ(expression.Parse(Text<T>("x").c_str()), eParseErrorNone);
    EXPECT_EQ(expression.GetCaptureCount(), 0);
    EXPECT_EQ(MatchOf(copy, Text<T>("zABCD").c_str()), "1-5 1-2 3-4");
    EXPECT_EQ(MatchOf(expression, Text<T>("zABCD").c_str()), "none");
    copy = expression;
    EXPECT_EQ(MatchOf(copy, Text<T>("yx").c_str()), "1-2");
}

TYPED_TEST(RegExprParse, DeepNestingIsRefusedAsUnclosed)
{
    using T = TypeParam;
    int const deepest = DeepestNesting<T>();
    EXPECT_GE(deepest, 100);
    int const tooDeep = deepest + 1;
    EXPECT_EQ(ParseOf<T>((Repeat("(", tooDeep) + "a" + Repeat(")", tooDeep)).c_str()), eParseErrorUnclosedGroup);
    EXPECT_EQ(ParseOf<T>((Repeat("{", tooDeep) + "a" + Repeat("}", tooDeep)).c_str()), eParseErrorUnclosedCapture);
    EXPECT_EQ(ParseOf<T>(Repeat("(", 100000).c_str()), eParseErrorUnclosedGroup);

    // Long runs that the parser walks rather than recurses over.
    EXPECT_EQ(ParseOf<T>((Repeat("!", 100000) + "a").c_str()), eParseErrorNone);
    EXPECT_EQ(ParseOf<T>(Repeat("a|", 50000).append("a").c_str()), eParseErrorNone);
    EXPECT_EQ(ParseOf<T>(Repeat("ab", 100000).c_str()), eParseErrorNone);
    EXPECT_EQ(MatchOf<T>(Repeat("!", 1001).append("a").c_str(), "ba"), "0-0");
    EXPECT_EQ(MatchOf<T>(Repeat("x|", 3000).append("a").c_str(), "ba"), "1-2");
}

TYPED_TEST(RegExprParse, AnAbbreviationThatCannotCompileWarnsWithItsTable)
{
    using T = TypeParam;
    // At the deepest nesting the abbreviation's own group is one too many.
    int const deepest = DeepestNesting<T>();
    std::string const open = Repeat("(", deepest);
    std::string const close = Repeat(")", deepest);
    {
        LogCapture log;
        EXPECT_EQ(ParseOf<T>((open + "/z" + close).c_str()), eParseErrorAbbreviation);
        EXPECT_TRUE(log.Contains("Log.NoGoZone", "ParseAbbreviation 1363"));
    }
    {
        LogCapture log;
        EXPECT_EQ(ParseOf<T>((open + "/e" + close).c_str()), eParseErrorAbbreviation);
        EXPECT_TRUE(log.Contains("Log.NoGoZone", "ParseAbbreviation 1384"));
    }
    // In mode 1 /e is a letter and nothing is compiled.
    EXPECT_EQ(ParseOf<T>((open + "/e" + close).c_str(), eRegex2ModeReduced), eParseErrorNone);
}

TYPED_TEST(RegExprParse, NestedPlusLoopsStopGrowingTheProgram)
{
    using T = TypeParam;
    // Each + keeps a copy of its item and adds one: the program doubles per
    // level, and forty levels would be far beyond any memory.
    std::string pattern = "a";
    for (int i = 0; i < 40; ++i)
        pattern = "(" + pattern + "+)";
    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(ParseOf<T>(pattern.c_str()), eParseErrorEmptyLoop);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));

    std::string small = "a";
    for (int i = 0; i < 8; ++i)
        small = "(" + small + "+)";
    EXPECT_EQ(MatchOf<T>(small.c_str(), "baaab"), "1-4");
}

TYPED_TEST(RegExprParse, LoweringSparesTheCharacterBehindASlash)
{
    using T = TypeParam;
    EXPECT_EQ(MatchOf<T>("/D/W", "1a.", false), "1-3");
    EXPECT_EQ(MatchOf<T>("/Ab", "xAB", false), "none");
    EXPECT_EQ(MatchOf<T>("//B", "a/b", false), "none"); // B stands behind a slash
    EXPECT_EQ(MatchOf<T>("[/N]", "n", false), "none");  // N too: no lowered n in the class
    EXPECT_EQ(MatchOf<T>("{A}/1", "xaA", false), "1-3 1-2");
}

TYPED_TEST(RegExprParse, ClassDataNeverRunsAsCode)
{
    using T = TypeParam;
    // ?? enters a class at its first data slot; that counts as an unknown
    // instruction, and the backtracking then takes the class itself.
    LogCapture log;
    EXPECT_EQ(MatchOf<T>("[ab]??c", "xbc"), "1-3");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "Match 970"));
    EXPECT_EQ(MatchOf<T>("[ab]??c", "c"), "none");
}

TYPED_TEST(RegExprParse, AnyTextEitherCompilesOrReportsAnError)
{
    using T = TypeParam;
    static char const alphabet[] = "ab/()[]{}|!*+?^$.-dDlLwWsSbzuiqe19n";
    TRandomizer randomizer(20240611);
    std::set<int> const known = {0, 2, 3, 4, 5, 6, 7, 8, 9};
    std::set<int> seen;
    LogCapture log; // odd programs warn; keep it off the console
    for (int round = 0; round < 4000; ++round) {
        std::string pattern;
        int const length = static_cast<int>(randomizer.Get(24));
        for (int i = 0; i < length; ++i)
            pattern += round % 4 == 0 ? static_cast<char>(1 + randomizer.Get(255))
                                      : alphabet[randomizer.Get(sizeof(alphabet) - 1)];
        TString<T> text;
        for (int i = 0; i < 12; ++i)
            text += T(alphabet[randomizer.Get(6)]);
        for (ERegex2Mode mode : {eRegex2ModeFull, eRegex2ModeReduced}) {
            TRegExpr<T> expression(mode);
            std::basic_string<T> wide;
            for (char c : pattern)
                wide += static_cast<T>(static_cast<unsigned char>(c));
            int const error = expression.Parse(wide.c_str(), round % 3 != 0);
            ASSERT_TRUE(known.count(error)) << pattern << " gave " << error;
            seen.insert(error);
            if (error == eParseErrorNone)
                MatchOf(expression, text.c_str()); // must end
        }
    }
    EXPECT_GE(seen.size(), 6u); // the texts reach most of the errors
}

TEST(RegExprParse, BothFormsAgreeOnAsciiPatterns)
{
    static char const alphabet[] = "ab/()[]{}|!*+?$.-dDlLwWsSbBzuiqeyYvVfFxX12nt ";
    static char const letters[] = "abAB 1-_*\t";
    TRandomizer randomizer(777);
    for (int round = 0; round < 3000; ++round) {
        std::string pattern;
        int const length = 1 + static_cast<int>(randomizer.Get(14));
        for (int i = 0; i < length; ++i)
            pattern += alphabet[randomizer.Get(sizeof(alphabet) - 1)];
        std::string text;
        int const textLength = static_cast<int>(randomizer.Get(10));
        for (int i = 0; i < textLength; ++i)
            text += letters[randomizer.Get(sizeof(letters) - 1)];
        bool const caseSensitive = round % 2 == 0;
        ERegex2Mode const mode = static_cast<ERegex2Mode>(randomizer.Get(3));
        LogCapture log;
        std::string const narrow = MatchOf<char>(pattern.c_str(), text.c_str(), caseSensitive, mode);
        std::string const wide = MatchOf<char16_t>(pattern.c_str(), text.c_str(), caseSensitive, mode);
        ASSERT_EQ(narrow, wide) << "pattern \"" << pattern << "\" text \"" << text << "\" mode " << mode;
    }
}
