#include "LogCapture.h"
#include "RegExprTestSupport.h"
#include "StringPrinting.h"

#include <gtest/gtest.h>

namespace {

template <class T>
class RegExprMatch : public ::testing::Test
{
protected:
    static std::string M(char const* pattern, char const* text, bool caseSensitive = true)
    {
        return MatchOf<T>(pattern, text, caseSensitive);
    }
    static std::string M1(char const* pattern, char const* text) { return MatchOf<T>(pattern, text, true, eRegex2ModeReduced); }
    static std::string M2(char const* pattern, char const* text)
    {
        return MatchOf<T>(pattern, text, true, static_cast<ERegex2Mode>(2));
    }
};

TYPED_TEST_SUITE(RegExprMatch, RegExprCharTypes, RegExprCharNames);

} // namespace

TYPED_TEST(RegExprMatch, ScanStartsEverywhereButAtTheEndOfANonEmptyText)
{
    EXPECT_EQ(this->M("", "abc"), "0-0");
    EXPECT_EQ(this->M("", ""), "0-0");
    EXPECT_EQ(this->M("a*", ""), "0-0"); // an empty text is tried once
    EXPECT_EQ(this->M("a", ""), "none");
    EXPECT_EQ(this->M("$", "abc"), "none");
    EXPECT_EQ(this->M("$", ""), "0-0");
    EXPECT_EQ(this->M("c$", "abc"), "2-3");
    EXPECT_EQ(this->M("b$", "abc"), "none");
    EXPECT_EQ(this->M("bc", "abcbc"), "1-3");

    // ^ and $ are anchors only at the ends of the whole pattern.
    EXPECT_EQ(this->M("^ab", "xab"), "none");
    EXPECT_EQ(this->M("^ab", "abx"), "0-2");
    EXPECT_EQ(this->M("a^", "ba^"), "1-3");
    EXPECT_EQ(this->M("a$b", "xa$b"), "1-4");
    EXPECT_EQ(this->M("(a$)", "a$"), "0-2");
}

TYPED_TEST(RegExprMatch, NullTextFailsAndReportsNoEnd)
{
    using T = TypeParam;
    TRegExpr<T> expression;
    ASSERT_EQ(expression.Parse(Text<T>("a").c_str()), eParseErrorNone);
    TMatchContext<T> context(nullptr);
    TString<T> const sentinel = Text<T>("x");
    T const* end = sentinel.c_str();
    EXPECT_FALSE(expression.Match(context, &end));
    EXPECT_EQ(end, nullptr);

    // Where the run stopped: the end of a match, or of the text when none.
    TString<T> const text = Text<T>("xay");
    TMatchContext<T> found(text.c_str());
    EXPECT_TRUE(expression.Match(found, &end));
    EXPECT_EQ(end, text.c_str() + 2);
    TString<T> const other = Text<T>("xyz");
    TMatchContext<T> missed(other.c_str());
    EXPECT_FALSE(expression.Match(missed, &end));
    EXPECT_EQ(end, other.c_str() + 3);
}

TYPED_TEST(RegExprMatch, NegativeClassesGoOnAtTheEndWithoutMoving)
{
    EXPECT_EQ(this->M("a/D", "a"), "0-1");
    EXPECT_EQ(this->M("a.", "a"), "none");
    EXPECT_EQ(this->M("/D", ""), "0-0");
    EXPECT_EQ(this->M("/D", "5a"), "1-2");
    EXPECT_EQ(this->M("a/Db", "a5b"), "none");
    for (char const* pattern : {"x/L", "x/W", "x/V", "x/Y", "x/S"})
        EXPECT_EQ(this->M(pattern, "x"), "0-1") << pattern;
    // Not of that kind: they need a character.
    for (char const* pattern : {"x/F", "x/X", "x[^a]", "x/d", "x/x"})
        EXPECT_EQ(this->M(pattern, "x"), "none") << pattern;
}

TYPED_TEST(RegExprMatch, BoundaryTakesNothingAtTheStartAndABlankElsewhere)
{
    EXPECT_EQ(this->M("/b", "ab"), "0-0");
    EXPECT_EQ(this->M("/ba", " a"), "none");
    EXPECT_EQ(this->M("/ba", "x a"), "1-3");
    EXPECT_EQ(this->M("/bb", "a\tb"), "1-3");
    EXPECT_EQ(this->M("x/b", "x"), "none");
}

TYPED_TEST(RegExprMatch, ClassesAndTheirEscapes)
{
    EXPECT_EQ(this->M("[a-c]+", "xxbcay"), "2-5");
    EXPECT_EQ(this->M("[^a-c]+", "abxyc"), "2-4");
    EXPECT_EQ(this->M("[/]]", "a]"), "1-2");
    EXPECT_EQ(this->M("[a/-z]", "b-"), "1-2");
    EXPECT_EQ(this->M("[-a]+", "x-a"), "1-3");
    EXPECT_EQ(this->M("[/n]", "n\n"), "1-2");
    EXPECT_EQ(this->M("[/t/r]+", "a\t\r"), "1-3");
    EXPECT_EQ(this->M1("[/n]", "\nn"), "1-2");
    EXPECT_EQ(this->M2("[/n]", "\nn"), "1-2");
    // Outside a class /n is the letter, // the slash, and a slash at the end
    // stands for itself.
    EXPECT_EQ(this->M("/n", "\nn"), "1-2");
    EXPECT_EQ(this->M("a//b", "a/b"), "0-3");
    EXPECT_EQ(this->M("a/", "ba/"), "1-3");
    EXPECT_EQ(this->M("/*/+/?", "a*+?"), "1-4");
}

TYPED_TEST(RegExprMatch, LetterEscapesByMode)
{
    EXPECT_EQ(this->M("/x+", "ab"), "0-2");
    EXPECT_EQ(this->M("/w+", "a1_"), "0-2");
    EXPECT_EQ(this->M("/y+", "a1_-"), "0-3");
    EXPECT_EQ(this->M("/v/y*", "1_a2 b"), "1-4");
    EXPECT_EQ(this->M("/s+", "a \t b"), "1-4");
    EXPECT_EQ(this->M("/f+", "ab*cd"), "0-2");
    EXPECT_EQ(this->M("/F", "ab*"), "2-3");
    EXPECT_EQ(this->M("/l+/d", "--ab1"), "2-5");

    // Mode 1 keeps only /d /l /w and their negations; the rest are letters.
    EXPECT_EQ(this->M1("/s", " s"), "1-2");
    EXPECT_EQ(this->M1("/b", "ab"), "1-2");
    EXPECT_EQ(this->M1("/d+", "x42"), "1-3");
    EXPECT_EQ(this->M1("a/1", "a1"), "0-2");
    // Another mode value is "not 1" for the letters but not "0" for the rest.
    EXPECT_EQ(this->M2("/s", "s "), "1-2");
    EXPECT_EQ(this->M2("{a}/1", "aa1"), "1-3 1-2");
}

TYPED_TEST(RegExprMatch, Abbreviations)
{
    EXPECT_EQ(this->M("/z", "12ab3"), "2-4");
    EXPECT_EQ(this->M("/u", "ab123c"), "2-5");
    EXPECT_EQ(this->M("/i", "x-12"), "1-4");
    EXPECT_EQ(this->M("/i", "+5"), "0-2");
    EXPECT_EQ(this->M("/q", "x\"ab\"y"), "1-5");
    EXPECT_EQ(this->M("/q", "'ab'"), "none"); // the single-quoted form is never reached
    EXPECT_EQ(this->M("/e", "1_a2 b"), "1-4");
    EXPECT_EQ(this->M("/z+", "ab12"), "0-2");
    EXPECT_EQ(this->M("{/u}./u", "v1.25"), "1-5 1-2");

    // /z and the others work in every mode; /e only in mode 0.
    EXPECT_EQ(this->M1("/z", "12ab3"), "2-4");
    EXPECT_EQ(this->M1("/e", "_ae"), "2-3");
    EXPECT_EQ(this->M2("/e", "_ae"), "2-3");
}

TYPED_TEST(RegExprMatch, AlternativesAreTriedInOrder)
{
    EXPECT_EQ(this->M("ab|cd", "xcd"), "1-3");
    EXPECT_EQ(this->M("a|ab", "ab"), "0-1");
    EXPECT_EQ(this->M("ab|a", "ab"), "0-2");
    EXPECT_EQ(this->M("(a|b)c", "xbc"), "1-3");
    EXPECT_EQ(this->M("x(ab|cd|ef)y", "xefy"), "0-4");
    EXPECT_EQ(this->M("(a|bc)+", "abca"), "0-4");
    EXPECT_EQ(this->M("a|bc|d", "cd"), "1-2");
    EXPECT_EQ(this->M("{a}|{b}", "b"), "0-1 - 0-1");
    EXPECT_EQ(this->M("abc|abd|x", "abd"), "0-3");
    // An empty last alternative compiles to nothing and leaves the jump from
    // the one before it open: failing there ends the whole search.
    EXPECT_EQ(this->M("a|", "a"), "0-1");
    EXPECT_EQ(this->M("a|", "xa"), "none");
}

TYPED_TEST(RegExprMatch, GreedyAndLazyQuantifiers)
{
    EXPECT_EQ(this->M("a*", "aaab"), "0-3");
    EXPECT_EQ(this->M("a+", "baab"), "1-3");
    EXPECT_EQ(this->M("a?b", "aab"), "1-3");
    EXPECT_EQ(this->M("a*?", "aaab"), "0-0");
    EXPECT_EQ(this->M("a+?", "aaab"), "0-1");
    EXPECT_EQ(this->M("a??b", "ab"), "0-2");
    EXPECT_EQ(this->M("a??b", "b"), "0-1");
    EXPECT_EQ(this->M("{a*}{a*}", "aaa"), "0-3 0-3 3-3");
    EXPECT_EQ(this->M("{a*?}{a*}", "aaa"), "0-3 0-0 0-3");
    EXPECT_EQ(this->M("{a+?}b", "aab"), "0-3 0-2");
    EXPECT_EQ(this->M("a*ab", "aaab"), "0-4");
    EXPECT_EQ(this->M("{(a|b)*}c", "abac"), "0-4 0-3");
    EXPECT_EQ(this->M("({a|b})*c", "abc"), "0-3 1-2");
    // Counted items can't loop without moving.
    EXPECT_EQ(this->M("(a?b?)+c", "c"), "parse error 9");
    EXPECT_EQ(this->M("(a|b?)+c", "abc"), "parse error 9"); // one alternative can be empty
    EXPECT_EQ(this->M("(a|b)+c", "xabc"), "1-4");
}

TYPED_TEST(RegExprMatch, LazyLoopsResumeWhereTheRestFailed)
{
    // Backtracking into a lazy loop restores only the instruction, not the
    // position: the item is tried where the rest of the pattern gave up.
    EXPECT_EQ(this->M(".*?bc", "abbc"), "2-4");
    EXPECT_EQ(this->M(".*?c", "abc"), "0-3");

    // ?? enters a longer item at its second instruction: a group's Fail, so
    // the group is taken after all ...
    EXPECT_EQ(this->M("(ab)??c", "c"), "none");
    EXPECT_EQ(this->M("(ab)??c", "xabc"), "1-4");
    // ... and a capture past its save, whose restore then finds nothing of
    // its own to restore: it restores nothing, and the run goes on.
    EXPECT_EQ(this->M("{a}??b", "ab"), "0-2 0-1");
    EXPECT_EQ(this->M("{a}??b", "cab"), "1-3 1-2");
    EXPECT_EQ(this->M("{a}??b", "b"), "none");
    // ... and a ! past the cell that keeps its position: the position read
    // back is null, which ends the run.
    LogCapture log;
    EXPECT_EQ(this->M("!a??", "x"), "none");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "Match 983"));
}

TYPED_TEST(RegExprMatch, LoopsEndWhenATurnTakesNothing)
{
    // A lazy loop's item that succeeds in place (a negative class at the end,
    // a boundary at the start) would otherwise be taken again for ever.
    EXPECT_EQ(this->M("/D*?ab", "xa"), "none");
    EXPECT_EQ(this->M("/D*?b", "xab"), "0-3");
    EXPECT_EQ(this->M("/b*?x", "ab"), "none");
    EXPECT_EQ(this->M("(/b|a)+?b", "aab"), "0-3");
    // A greedy loop whose item has an alternative that matches nothing,
    // backtracked into after a later turn.
    EXPECT_EQ(this->M("(x |a*)+b", "x ab"), "0-4");
    EXPECT_EQ(this->M("{ +?| *?|a.+.*?}+/l? +?", "a- c --1"), "0-5 0-4");
}

TYPED_TEST(RegExprMatch, NotSucceedsWhereItsExpressionFails)
{
    EXPECT_EQ(this->M("!a.", "ab"), "1-2");
    EXPECT_EQ(this->M("a!b", "ab"), "none");
    EXPECT_EQ(this->M("a!b", "ac"), "0-1");
    EXPECT_EQ(this->M("x!a", "x"), "0-1");
    EXPECT_EQ(this->M("!!a.", "ba"), "1-2");
    EXPECT_EQ(this->M("(!/d.)+", "ab1"), "0-2");
    EXPECT_EQ(this->M("!(ab)a.", "abac"), "2-4");
}

TYPED_TEST(RegExprMatch, BackReferences)
{
    EXPECT_EQ(this->M("{a+}b/1", "aabaa"), "0-5 0-2");
    EXPECT_EQ(this->M("{.}/1", "abccd"), "2-4 2-3");
    EXPECT_EQ(this->M("{a}{b}/2/1", "abba"), "0-4 0-1 1-2");
    EXPECT_EQ(this->M("{a*}b/1c", "bc"), "0-2 0-0");
    EXPECT_EQ(this->M("{a}/1", "aA", false), "0-2 0-1");
    // Inside its own capture the reference has no end yet.
    EXPECT_EQ(this->M("{a/1}", "aa"), "none");
    EXPECT_EQ(this->M("{ab}/1", "abab"), "0-4 0-2");
    EXPECT_EQ(this->M("{ab}/1", "aba"), "none");
}

TYPED_TEST(RegExprMatch, CaseBlindPatternsRunOverALoweredCopy)
{
    using T = TypeParam;
    EXPECT_EQ(this->M("ABC", "xaBc", false), "1-4");
    EXPECT_EQ(this->M("[A-C]", "xB", false), "1-2");
    EXPECT_EQ(this->M("/A", "Aa", false), "none"); // kept upper behind a slash
    EXPECT_EQ(this->M("/D+", "AB1", false), "0-2");

    TRegExpr<T> expression;
    ASSERT_EQ(expression.Parse(Text<T>("B+").c_str(), false), eParseErrorNone);
    int pos = -1;
    EXPECT_EQ(expression.FindFirst(Text<T>("aBbC").c_str(), &pos), Text<T>("Bb")); // the original's text
    EXPECT_EQ(pos, 1);

    // A capture that took no part: its null pointers are shifted with the
    // rest, so it reads as empty rather than unset.
    for (bool const caseSensitive : {true, false}) {
        ASSERT_EQ(expression.Parse(Text<T>("{x}?a").c_str(), caseSensitive), eParseErrorNone);
        TString<T> const text = Text<T>("a");
        TMatchContext<T> context(text.c_str());
        ASSERT_TRUE(expression.Match(context));
        EXPECT_EQ(context.GetMatch(0, nullptr), caseSensitive ? -1 : 0);
        EXPECT_EQ(context.GetMatch(-1, nullptr), 1);
    }
}

TYPED_TEST(RegExprMatch, CapturesAreNumberedByTheirOpeningBraces)
{
    EXPECT_EQ(this->M("{a{b}}{c}", "abc"), "0-3 0-2 1-2 2-3");
    EXPECT_EQ(this->M("{}a", "a"), "0-1 0-0");
    EXPECT_EQ(this->M("(){a}", "a"), "0-1 0-1");
    EXPECT_EQ(this->M("{a}+", "aaa"), "0-3 2-3");
    EXPECT_EQ(this->M("{a}*b", "b"), "0-1 -");
}

TYPED_TEST(RegExprMatch, FindFunctions)
{
    using T = TypeParam;
    TRegExpr<T> expression;
    int pos = 7;

    ASSERT_EQ(expression.Parse(Text<T>("x*").c_str()), eParseErrorNone);
    EXPECT_EQ(expression.FindFirst(Text<T>("abc").c_str(), &pos), Text<T>(""));
    EXPECT_EQ(pos, 0); // found, and empty
    ASSERT_EQ(expression.Parse(Text<T>("q").c_str()), eParseErrorNone);
    EXPECT_EQ(expression.FindFirst(Text<T>("abc").c_str(), &pos), Text<T>(""));
    EXPECT_EQ(pos, -1);
    EXPECT_EQ(expression.FindFirst(nullptr, &pos), Text<T>(""));
    EXPECT_EQ(pos, -1);

    ASSERT_EQ(expression.Parse(Text<T>("{[0-9]+}-").c_str()), eParseErrorNone);
    TString<T> whole = Text<T>("old");
    EXPECT_EQ(expression.FindFirstCapture(Text<T>("ab12-").c_str(), &pos, &whole), Text<T>("12"));
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(whole, Text<T>("12-"));
    EXPECT_EQ(expression.FindFirstCapture(Text<T>("ab").c_str(), &pos, &whole), Text<T>(""));
    EXPECT_EQ(pos, -1);
    EXPECT_EQ(whole, Text<T>(""));
    ASSERT_EQ(expression.Parse(Text<T>("[0-9]+").c_str()), eParseErrorNone);
    EXPECT_EQ(expression.FindFirstCapture(Text<T>("ab12-").c_str(), &pos), Text<T>("12"));
    EXPECT_EQ(pos, 2);

    ASSERT_EQ(expression.Parse(Text<T>("{a}{b*}c").c_str()), eParseErrorNone);
    EXPECT_EQ(expression.FindCapture(Text<T>("xabc").c_str(), 1, &pos), Text<T>("b"));
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(expression.FindCapture(Text<T>("xabc").c_str(), -1, &pos), Text<T>("abc"));
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(expression.FindCapture(Text<T>("xabc").c_str(), 2, &pos), Text<T>(""));
    EXPECT_EQ(pos, -1);
    EXPECT_EQ(expression.FindCapture(Text<T>("xac").c_str(), 1, &pos), Text<T>("")); // empty capture
    EXPECT_EQ(pos, -1);
    EXPECT_EQ(expression.FindCapture(Text<T>("xyz").c_str(), 0, &pos), Text<T>(""));
    EXPECT_EQ(pos, -1);
}

TYPED_TEST(RegExprMatch, TokenizeCollectsMatchesUntilOneDoesNotMoveOn)
{
    using T = TypeParam;
    TRegExpr<T> expression;
    TVector<TString<T>> tokens;

    ASSERT_EQ(expression.Parse(Text<T>("{[a-z]+}[ ,]*").c_str()), eParseErrorNone);
    ASSERT_EQ(expression.Tokenize(Text<T>("ab, cd ef").c_str(), tokens), 3);
    EXPECT_EQ(tokens[0], Text<T>("ab"));
    EXPECT_EQ(tokens[1], Text<T>("cd"));
    EXPECT_EQ(tokens[2], Text<T>("ef"));

    ASSERT_EQ(expression.Parse(Text<T>("[0-9]+").c_str()), eParseErrorNone);
    ASSERT_EQ(expression.Tokenize(Text<T>("1 22, 333x").c_str(), tokens), 3);
    EXPECT_EQ(tokens[2], Text<T>("333"));

    ASSERT_EQ(expression.Parse(Text<T>("[A-Z]+").c_str(), false), eParseErrorNone);
    ASSERT_EQ(expression.Tokenize(Text<T>("Ab-cD").c_str(), tokens), 2);
    EXPECT_EQ(tokens[0], Text<T>("Ab"));
    EXPECT_EQ(tokens[1], Text<T>("cD"));

    // A pattern that matches empty where it stands would find the same
    // place again and again.
    ASSERT_EQ(expression.Parse(Text<T>("[a-z]*").c_str()), eParseErrorNone);
    ASSERT_EQ(expression.Tokenize(Text<T>("ab 12").c_str(), tokens), 1);
    EXPECT_EQ(tokens[0], Text<T>("ab"));
    ASSERT_EQ(expression.Parse(Text<T>("x*").c_str()), eParseErrorNone);
    EXPECT_EQ(expression.Tokenize(Text<T>("abc").c_str(), tokens), 0);
    EXPECT_EQ(tokens.Count(), 0);
}

TYPED_TEST(RegExprMatch, MatchContextCopiesMoveTheCaptures)
{
    using T = TypeParam;
    TRegExpr<T> expression;
    ASSERT_EQ(expression.Parse(Text<T>("{a}{b}").c_str()), eParseErrorNone);
    TString<T> const text = Text<T>("xab");
    TMatchContext<T> source(text.c_str());
    ASSERT_TRUE(expression.Match(source));

    TMatchContext<T> const& constSource = source;
    TMatchContext<T> copied(constSource);
    EXPECT_EQ(copied.GetMatch(1), Text<T>("b"));
    EXPECT_EQ(source.GetMatch(1), Text<T>("b"));

    TMatchContext<T> moved(std::move(source));
    EXPECT_EQ(moved.GetMatch(0), Text<T>("a"));
    EXPECT_EQ(source.GetMatch(0), Text<T>("a"));

    TMatchContext<T> taken(source); // from a non-const context: takes them
    EXPECT_EQ(taken.GetMatch(0), Text<T>("a"));
    EXPECT_EQ(source.GetMatch(0, nullptr), -1);
    EXPECT_EQ(source.GetMatch(-1), Text<T>("ab")); // the whole match stays

    TMatchContext<T> assigned(text.c_str());
    ASSERT_TRUE(expression.Match(assigned));
    assigned = taken;
    EXPECT_EQ(assigned.GetMatch(1), Text<T>("b"));
    EXPECT_EQ(taken.GetCaptureCount(), 0);

    EXPECT_TRUE(assigned.Initialize(3));
    EXPECT_EQ(assigned.GetCaptureCount(), 3);
    for (int i = 0; i < 3; ++i) {
        int pos = 5;
        EXPECT_EQ(assigned.GetMatch(i, &pos), -1);
        EXPECT_EQ(pos, -1);
    }
    EXPECT_EQ(assigned.GetMatch(3, nullptr), -1);
}

TEST(RegExprNarrow, BytesAboveAsciiInClassesAreTheirUtf8Bytes)
{
    // "é" is C3 A9, "è" C3 A8.
    EXPECT_EQ(MatchOf<char>("[éè]+", "xéè"), "1-5");
    EXPECT_EQ(MatchOf<char>("[^é]+", "éa"), "2-3");
    EXPECT_EQ(MatchOf<char>("[^a]", "é"), "0-1");
    EXPECT_EQ(MatchOf<char>("/X+", "aé"), "1-3");
    EXPECT_EQ(MatchOf<char>("/l", "é"), "none");
    EXPECT_EQ(MatchOf<char>("/d", "\xd9\xa4"), "none");
    EXPECT_EQ(MatchOf<char>("é", "aé"), "1-3");
    EXPECT_EQ(MatchOf<char>("É", "é", false), "none"); // only ASCII has a case
}

TEST(RegExprWide, ClassesFollowUnicode)
{
    EXPECT_EQ(MatchOf<char16_t>("[éè]+", "xéè"), "1-3");
    EXPECT_EQ(MatchOf<char16_t>("/l+", "1éa"), "1-3");
    EXPECT_EQ(MatchOf<char16_t>("/X", "aé"), "1-2");
    EXPECT_EQ(MatchOf<char16_t>("/d", "x\xd9\xa4"), "1-2"); // ARABIC-INDIC DIGIT FOUR
    EXPECT_EQ(MatchOf<char16_t>("[α-ω]+", "aβγ"), "1-3");
    EXPECT_EQ(MatchOf<char16_t>("[^α-ω]", "βa"), "1-2");
    EXPECT_EQ(MatchOf<char16_t>("Σ+", "aσΣ", false), "1-3");
    EXPECT_EQ(MatchOf<char16_t>("É", "é", false), "0-1");
}
