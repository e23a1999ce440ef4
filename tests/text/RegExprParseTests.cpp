#include "LogCapture.h"
#include "RegExprTestSupport.h"

#include "math/TRandomizer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <vector>

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
    struct { EParseError error; std::vector<char const*> patterns; } const groups[] = {
        {eParseErrorNone, {"", "a", "(a*)?", "()", "{}", "a**", "+a", "*?", "a)b", "/b*", "[-]", "[/]]", "()??", "()?",
                           "(a|b)+", "{a/1}"}}, // a reference to a capture opened, if not closed
        {eParseErrorUnclosedCapture, {"{a", "{", "{a)b}", "({a)"}},
        {eParseErrorUnclosedGroup, {"(a", "(", "(a}b)", "x(y(z)"}},
        {eParseErrorUnclosedClass, {"[a", "[", "[^", "[a/", "[a-", "[a-]", "x[/]"}},
        {eParseErrorEmptyClass, {"[]", "[^]", "[]a]"}},
        {eParseErrorBackReference, {"/1", "{a}/2", "/1{a}", "({a}/3)"}},
        {eParseErrorRangeOrder, {"[z-a]", "[a-/t]", "[b-a-]"}},
        {eParseErrorEmptyLoop, {"(a*)*", "()+", "(a?)+", "{}*", "(!a)*", "()*?", "()+?", "(a|b*)+", "{a?b?}+"}},
    };
    for (auto const& group : groups)
        for (char const* pattern : group.patterns)
            EXPECT_EQ(this->P(pattern), group.error) << pattern;
    EXPECT_EQ(this->P("/1", eRegex2ModeReduced), eParseErrorNone);

    TRegExpr<T> expression;
    EXPECT_EQ(expression.Parse(nullptr), eParseErrorNullPattern);
    EXPECT_EQ(expression.GetLastParseError(), eParseErrorNullPattern);
    EXPECT_EQ(MatchOf(expression, Text<T>("").c_str()), "none");
    EXPECT_EQ(expression.Parse(Text<T>("[z-a]").c_str()), eParseErrorRangeOrder);
    EXPECT_EQ(expression.GetLastParseError(), eParseErrorRangeOrder);
    EXPECT_EQ(MatchOf(expression, Text<T>("z").c_str()), "none"); // nothing runs after an error

    // Text behind a stray closer is ignored.
    ExpectMatches<T>({{"a)b", "xab", "1-2"}, {"a]b", "xab", "1-2"}, {"a}b", "xab", "1-2"}, {")a", "a", "0-0"}});
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
    ExpectMatches<TypeParam>({
        {"/D/W", "1a.", "1-3", eRegex2ModeFull, false}, {"/Ab", "xAB", "none", eRegex2ModeFull, false},
        {"//B", "a/b", "none", eRegex2ModeFull, false}, // B stands behind a slash
        {"[/N]", "n", "none", eRegex2ModeFull, false},  // N too: no lowered n in the class
        {"{A}/1", "xaA", "1-3 1-2", eRegex2ModeFull, false},
    });
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

TEST(RegExprParse, AnyTextCompilesOrReportsAKnownErrorAndBothFormsAgree)
{
    static char const alphabet[] = "ab/()[]{}|!*+?^$.-dDlLwWsSbBzuiqeyYvVfFxX12nt ";
    static char const letters[] = "abAB 1-_*\t";
    auto const known = [](int error) { return error == eParseErrorNone || (error >= 2 && error <= 9); };
    std::set<int> seen;
    TRandomizer randomizer(20240611);
    LogCapture log; // odd programs warn; keep it off the console
    for (int round = 0; round < 8000; ++round) {
        // Every fourth pattern is of any bytes, each read as one character.
        bool const bytes = round % 4 == 0;
        std::string pattern;
        std::string text;
        int const length = static_cast<int>(randomizer.Get(24));
        for (int i = 0; i < length; ++i)
            pattern += bytes ? static_cast<char>(1 + randomizer.Get(255)) : alphabet[randomizer.Get(sizeof(alphabet) - 1)];
        int const textLength = static_cast<int>(randomizer.Get(12));
        for (int i = 0; i < textLength; ++i)
            text += letters[randomizer.Get(sizeof(letters) - 1)];
        bool const caseSensitive = round % 3 != 0;
        ERegex2Mode const mode = static_cast<ERegex2Mode>(randomizer.Get(3));
        TRegExpr<char> narrow(mode);
        TRegExpr<char16_t> wide(mode);
        std::u16string widePattern;
        for (char c : pattern)
            widePattern += static_cast<char16_t>(static_cast<unsigned char>(c));
        int const error = narrow.Parse(pattern.c_str(), caseSensitive);
        int const wideError = wide.Parse(widePattern.c_str(), caseSensitive);
        ASSERT_TRUE(known(error) && known(wideError)) << pattern << " gave " << error << " and " << wideError;
        std::string const narrowOutcome = Outcome(narrow, AString(text.c_str()).c_str()); // must end
        std::string const wideOutcome = Outcome(wide, WString(text.c_str()).c_str());
        if (bytes)
            continue; // a byte above 127 is a piece of UTF-8 in the one form, a character in the other
        ASSERT_EQ(error, wideError) << pattern;
        ASSERT_EQ(narrowOutcome, wideOutcome) << "pattern \"" << pattern << "\" text \"" << text << "\" mode " << mode;
        if (error != eParseErrorNone)
            seen.insert(error);
    }
    EXPECT_GE(seen.size(), 5u); // the patterns reach most of the errors
}
