#include "LogCapture.h"
#include "RegExprTestSupport.h"
#include "StringPrinting.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

template <class T>
class RegExprMatch : public ::testing::Test
{
};

TYPED_TEST_SUITE(RegExprMatch, RegExprCharTypes, RegExprCharNames);

} // namespace

TYPED_TEST(RegExprMatch, ScanStartsEverywhereButAtTheEndOfANonEmptyText)
{
    ExpectMatches<TypeParam>({
        {"", "abc", "0-0"}, {"", "", "0-0"}, {"a*", "", "0-0"}, {"a", "", "none"}, {"$", "abc", "none"},
        {"$", "", "0-0"}, {"c$", "abc", "2-3"}, {"b$", "abc", "none"}, {"bc", "abcbc", "1-3"},
        // ^ and $ are anchors only at the ends of the whole pattern.
        {"^ab", "xab", "none"}, {"^ab", "abx", "0-2"}, {"a^", "ba^", "1-3"}, {"a$b", "xa$b", "1-4"},
        {"(a$)", "a$", "0-2"},
    });
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
    ExpectMatches<TypeParam>({{"a/D", "a", "0-1"}, {"a.", "a", "none"}, {"/D", "", "0-0"}, {"/D", "5a", "1-2"},
                              {"a/Db", "a5b", "none"}});
    for (char const* pattern : {"x/L", "x/W", "x/V", "x/Y", "x/S"})
        EXPECT_EQ(MatchOf<TypeParam>(pattern, "x"), "0-1") << pattern;
    // Not of that kind: they need a character.
    for (char const* pattern : {"x/F", "x/X", "x[^a]", "x/d", "x/x"})
        EXPECT_EQ(MatchOf<TypeParam>(pattern, "x"), "none") << pattern;
}

TYPED_TEST(RegExprMatch, ClassesEscapesAndBoundaries)
{
    ExpectMatches<TypeParam>({
        {"[a-c]+", "xxbcay", "2-5"}, {"[^a-c]+", "abxyc", "2-4"}, {"[/]]", "a]", "1-2"}, {"[a/-z]", "b-", "1-2"},
        {"[-a]+", "x-a", "1-3"}, {"[/n]", "n\n", "1-2"}, {"[/t/r]+", "a\t\r", "1-3"},
        {"[/n]", "\nn", "1-2", modeReduced}, {"[/n]", "\nn", "1-2", modeOther},
        // Outside a class /n is the letter, // the slash, and a slash at the
        // end stands for itself.
        {"/n", "\nn", "1-2"}, {"a//b", "a/b", "0-3"}, {"a/", "ba/", "1-3"}, {"/*/+/?", "a*+?", "1-4"},
        // A boundary takes nothing at the start and a blank elsewhere.
        {"/b", "ab", "0-0"}, {"/ba", " a", "none"}, {"/ba", "x a", "1-3"}, {"/bb", "a\tb", "1-3"},
        {"x/b", "x", "none"},
    });
}

TYPED_TEST(RegExprMatch, LetterEscapesAndAbbreviationsByMode)
{
    ExpectMatches<TypeParam>({
        {"/x+", "ab", "0-2"}, {"/w+", "a1_", "0-2"}, {"/y+", "a1_-", "0-3"}, {"/v/y*", "1_a2 b", "1-4"},
        {"/s+", "a \t b", "1-4"}, {"/f+", "ab*cd", "0-2"}, {"/F", "ab*", "2-3"}, {"/l+/d", "--ab1", "2-5"},
        // Mode 1 keeps only /d /l /w and their negations; the rest are letters.
        {"/s", " s", "1-2", modeReduced}, {"/b", "ab", "1-2", modeReduced}, {"/d+", "x42", "1-3", modeReduced},
        {"a/1", "a1", "0-2", modeReduced},
        // Another mode value is "not 1" for the letters but not "0" for the rest.
        {"/s", "s ", "1-2", modeOther}, {"{a}/1", "aa1", "1-3 1-2", modeOther},

        {"/z", "12ab3", "2-4"}, {"/u", "ab123c", "2-5"}, {"/i", "x-12", "1-4"}, {"/i", "+5", "0-2"},
        {"/q", "x\"ab\"y", "1-5"}, {"/q", "'ab'", "none"}, // the single-quoted form is never reached
        {"/e", "1_a2 b", "1-4"}, {"/z+", "ab12", "0-2"}, {"{/u}./u", "v1.25", "1-5 1-2"},
        // /z and the others work in every mode; /e only in mode 0.
        {"/z", "12ab3", "2-4", modeReduced}, {"/e", "_ae", "2-3", modeReduced}, {"/e", "_ae", "2-3", modeOther},
    });
}

TYPED_TEST(RegExprMatch, AlternativesAreTriedInOrder)
{
    ExpectMatches<TypeParam>({
        {"ab|cd", "xcd", "1-3"}, {"a|ab", "ab", "0-1"}, {"ab|a", "ab", "0-2"}, {"(a|b)c", "xbc", "1-3"},
        {"x(ab|cd|ef)y", "xefy", "0-4"}, {"(a|bc)+", "abca", "0-4"}, {"a|bc|d", "cd", "1-2"},
        {"{a}|{b}", "b", "0-1 - 0-1"}, {"abc|abd|x", "abd", "0-3"},
        // An empty last alternative compiles to nothing and leaves the jump
        // from the one before it open: failing there ends the whole search.
        {"a|", "a", "0-1"}, {"a|", "xa", "none"},
    });
}

TYPED_TEST(RegExprMatch, GreedyAndLazyQuantifiers)
{
    ExpectMatches<TypeParam>({
        {"a*", "aaab", "0-3"}, {"a+", "baab", "1-3"}, {"a?b", "aab", "1-3"}, {"a*?", "aaab", "0-0"},
        {"a+?", "aaab", "0-1"}, {"a??b", "ab", "0-2"}, {"a??b", "b", "0-1"}, {"{a*}{a*}", "aaa", "0-3 0-3 3-3"},
        {"{a*?}{a*}", "aaa", "0-3 0-0 0-3"}, {"{a+?}b", "aab", "0-3 0-2"}, {"a*ab", "aaab", "0-4"},
        {"{(a|b)*}c", "abac", "0-4 0-3"}, {"({a|b})*c", "abc", "0-3 1-2"}, {"(a|b)+c", "xabc", "1-4"},
        // Counted items can't loop without moving, even when only one
        // alternative can be empty.
        {"(a?b?)+c", "c", "parse error 9"}, {"(a|b?)+c", "abc", "parse error 9"},
        // A loop over one character gives back only what the rest needs.
        {"[a-c]*c", "abcabcx", "0-6"}, {"{[a-z]+}@{[a-z]+}", "ab cd@ef", "3-8 3-5 6-8"},
        {"{a+}{a+}", "aaaa", "0-4 0-3 3-4"}, {"/d+$", "12a345", "3-6"}, {"/D*1", "ab1", "0-3"},
        {"(x|{b*})c", "bbc", "0-3 0-2"}, {".*.*=.*", "a=b", "0-3"},
    });
}

TYPED_TEST(RegExprMatch, LazyLoopsResumeWhereTheRestFailed)
{
    ExpectMatches<TypeParam>({
        // Backtracking into a lazy loop restores only the instruction, not the
        // position: the item is tried where the rest of the pattern gave up.
        {".*?bc", "abbc", "2-4"}, {".*?c", "abc", "0-3"},
        // ?? enters a longer item at its second instruction: a group's Fail,
        // so the group is taken after all ...
        {"(ab)??c", "c", "none"}, {"(ab)??c", "xabc", "1-4"},
        // ... and a capture past its save, whose restore then finds nothing of
        // its own to restore: it restores nothing, and the run goes on.
        {"{a}??b", "ab", "0-2 0-1"}, {"{a}??b", "cab", "1-3 1-2"}, {"{a}??b", "b", "none"},
    });
    // ... and a ! past the cell that keeps its position: the position read
    // back is null, which ends the run.
    LogCapture log;
    EXPECT_EQ(MatchOf<TypeParam>("!a??", "x"), "none");
    EXPECT_TRUE(log.Contains("Log.NoGoZone", "Match 983"));
}

TYPED_TEST(RegExprMatch, LoopsEndWhenATurnTakesNothing)
{
    ExpectMatches<TypeParam>({
        // A lazy loop's item that succeeds in place (a negative class at the
        // end, a boundary at the start) would otherwise be taken for ever.
        {"/D*?ab", "xa", "none"}, {"/D*?b", "xab", "0-3"}, {"/b*?x", "ab", "none"}, {"(/b|a)+?b", "aab", "0-3"},
        // A greedy loop whose item has an alternative that matches nothing,
        // backtracked into after a later turn.
        {"(x |a*)+b", "x ab", "0-4"}, {"{ +?| *?|a.+.*?}+/l? +?", "a- c --1", "0-5 0-4"},
    });
}

TYPED_TEST(RegExprMatch, NotAndBackReferences)
{
    ExpectMatches<TypeParam>({
        // ! succeeds where its expression fails.
        {"!a.", "ab", "1-2"}, {"a!b", "ab", "none"}, {"a!b", "ac", "0-1"}, {"x!a", "x", "0-1"},
        {"!!a.", "ba", "1-2"}, {"(!/d.)+", "ab1", "0-2"}, {"!(ab)a.", "abac", "2-4"},

        {"{a+}b/1", "aabaa", "0-5 0-2"}, {"{.}/1", "abccd", "2-4 2-3"}, {"{a}{b}/2/1", "abba", "0-4 0-1 1-2"},
        {"{a*}b/1c", "bc", "0-2 0-0"}, {"{a}/1", "aA", "0-2 0-1", eRegex2ModeFull, false},
        // Inside its own capture the reference has no end yet.
        {"{a/1}", "aa", "none"}, {"{ab}/1", "abab", "0-4 0-2"}, {"{ab}/1", "aba", "none"},
        // Captures are numbered by their opening braces.
        {"{a{b}}{c}", "abc", "0-3 0-2 1-2 2-3"}, {"{}a", "a", "0-1 0-0"}, {"(){a}", "a", "0-1 0-1"},
        {"{a}+", "aaa", "0-3 2-3"}, {"{a}*b", "b", "0-1 -"},
    });
}

TYPED_TEST(RegExprMatch, CaseBlindPatternsRunOverALoweredCopy)
{
    using T = TypeParam;
    ExpectMatches<T>({
        {"ABC", "xaBc", "1-4", eRegex2ModeFull, false}, {"[A-C]", "xB", "1-2", eRegex2ModeFull, false},
        {"/A", "Aa", "none", eRegex2ModeFull, false}, // kept upper behind a slash
        {"/D+", "AB1", "0-2", eRegex2ModeFull, false},
    });
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

TYPED_TEST(RegExprMatch, FindFunctions)
{
    using T = TypeParam;
    TRegExpr<T> expression;
    int pos = 7;
    // Pattern, text, capture (-2 for FindFirst, -3 for FindFirstCapture),
    // then the text found and its position.
    struct { char const* pattern; char const* text; int capture; char const* found; int pos; } const cases[] = {
        {"x*", "abc", -2, "", 0}, // found, and empty
        {"q", "abc", -2, "", -1}, {"q", nullptr, -2, "", -1}, {"{[0-9]+}-", "ab12-", -3, "12", 2},
        {"{[0-9]+}-", "ab", -3, "", -1}, {"[0-9]+", "ab12-", -3, "12", 2}, {"{a}{b*}c", "xabc", 1, "b", 2},
        {"{a}{b*}c", "xabc", -1, "abc", 1}, {"{a}{b*}c", "xabc", 2, "", -1},
        {"{a}{b*}c", "xac", 1, "", -1}, // an empty capture
        {"{a}{b*}c", "xyz", 0, "", -1},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.pattern << " on " << (c.text ? c.text : "null") << " capture " << c.capture);
        ASSERT_EQ(expression.Parse(Text<T>(c.pattern).c_str()), eParseErrorNone);
        TString<T> const text = c.text ? Text<T>(c.text) : TString<T>();
        T const* const at = c.text ? text.c_str() : nullptr;
        TString<T> const found = c.capture == -2 ? expression.FindFirst(at, &pos)
                               : c.capture == -3 ? expression.FindFirstCapture(at, &pos)
                                                 : expression.FindCapture(at, c.capture, &pos);
        EXPECT_EQ(found, Text<T>(c.found));
        EXPECT_EQ(pos, c.pos);
    }
    // The whole match comes with the capture, and is emptied on a miss.
    ASSERT_EQ(expression.Parse(Text<T>("{[0-9]+}-").c_str()), eParseErrorNone);
    TString<T> whole = Text<T>("old");
    expression.FindFirstCapture(Text<T>("ab12-").c_str(), &pos, &whole);
    EXPECT_EQ(whole, Text<T>("12-"));
    expression.FindFirstCapture(Text<T>("ab").c_str(), &pos, &whole);
    EXPECT_EQ(whole, Text<T>(""));
}

TYPED_TEST(RegExprMatch, TokenizeCollectsMatchesUntilOneDoesNotMoveOn)
{
    using T = TypeParam;
    // A pattern that matches empty where it stands would find the same place
    // again and again: "[a-z]*" stops at the blank, "x*" at once.
    struct { char const* pattern; bool caseSensitive; char const* text; std::vector<char const*> tokens; } const cases[] = {
        {"{[a-z]+}[ ,]*", true, "ab, cd ef", {"ab", "cd", "ef"}}, {"[0-9]+", true, "1 22, 333x", {"1", "22", "333"}},
        {"[A-Z]+", false, "Ab-cD", {"Ab", "cD"}}, {"[a-z]*", true, "ab 12", {"ab"}}, {"x*", true, "abc", {}},
    };
    TRegExpr<T> expression;
    TVector<TString<T>> tokens;
    for (auto const& c : cases) {
        ASSERT_EQ(expression.Parse(Text<T>(c.pattern).c_str(), c.caseSensitive), eParseErrorNone);
        ASSERT_EQ(expression.Tokenize(Text<T>(c.text).c_str(), tokens), static_cast<int>(c.tokens.size())) << c.pattern;
        ASSERT_EQ(tokens.Count(), static_cast<int>(c.tokens.size())) << c.pattern;
        for (int i = 0; i < tokens.Count(); ++i)
            EXPECT_EQ(tokens[i], Text<T>(c.tokens[static_cast<size_t>(i)])) << c.pattern << " token " << i;
    }
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
    for (int i = 0; i < 4; ++i) {
        int pos = 5;
        EXPECT_EQ(assigned.GetMatch(i, &pos), -1);
        EXPECT_EQ(pos, -1);
    }
}

TEST(RegExprMatchForms, NarrowClassesTakeUtf8BytesAndWideOnesUnicode)
{
    // "é" is C3 A9, "è" C3 A8; D9 A4 is ARABIC-INDIC DIGIT FOUR.
    ExpectMatches<char>({
        {"[éè]+", "xéè", "1-5"}, {"[^é]+", "éa", "2-3"}, {"[^a]", "é", "0-1"}, {"/X+", "aé", "1-3"},
        {"/l", "é", "none"}, {"/d", "\xd9\xa4", "none"}, {"é", "aé", "1-3"},
        {"É", "é", "none", eRegex2ModeFull, false}, // only ASCII has a case
    });
    ExpectMatches<char16_t>({
        {"[éè]+", "xéè", "1-3"}, {"/l+", "1éa", "1-3"}, {"/X", "aé", "1-2"}, {"/d", "x\xd9\xa4", "1-2"},
        {"[α-ω]+", "aβγ", "1-3"}, {"[^α-ω]", "βa", "1-2"}, {"Σ+", "aσΣ", "1-3", eRegex2ModeFull, false},
        {"É", "é", "0-1", eRegex2ModeFull, false},
    });
}
