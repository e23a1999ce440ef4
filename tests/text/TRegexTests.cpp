#include "StringPrinting.h"
#include "text/TRegex.h"

#include <QString>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

TEST(TRegex, CompilesOrSaysWhyNot)
{
    TRegex regex("a(b|c)+d");
    EXPECT_TRUE(regex.IsValid());
    EXPECT_EQ(regex.CaptureCount(), 1);
    EXPECT_TRUE(regex.ErrorMessage().isEmpty());
    EXPECT_EQ(regex.ErrorOffset(), -1);

    TRegex bad("ab(c");
    EXPECT_FALSE(bad.IsValid());
    EXPECT_FALSE(bad.ErrorMessage().isEmpty());
    EXPECT_EQ(bad.ErrorOffset(), 4);
    EXPECT_FALSE(bad.Match("ab(c"));
    EXPECT_EQ(bad.CaptureCount(), 0);

    TRegex none(static_cast<char const*>(nullptr));
    EXPECT_FALSE(none.IsValid());
    EXPECT_FALSE(none.ErrorMessage().isEmpty());
    TRegex empty;
    EXPECT_FALSE(empty.IsValid());
    EXPECT_FALSE(empty.Match("x"));

    // A pattern that isn't valid UTF-8 is refused, not guessed at.
    EXPECT_FALSE(TRegex("a\xff").IsValid());
    ASSERT_TRUE(regex.Compile(u"x+"));
    EXPECT_TRUE(regex.Match("axx"));
}

TEST(TRegex, GroupsAndTheirOffsets)
{
    TRegex regex(R"((\d+)-(\d+)?(x)?)");
    TRegexMatch match;
    ASSERT_TRUE(regex.Match("ab12-", &match));
    EXPECT_EQ(match.GroupCount(), 4);
    EXPECT_EQ(match.Start(), 2);
    EXPECT_EQ(match.End(), 5);
    EXPECT_EQ(match.Start(1), 2);
    EXPECT_EQ(match.Length(1), 2);
    EXPECT_FALSE(match.HasGroup(2));
    EXPECT_EQ(match.Start(2), -1);
    EXPECT_EQ(match.Length(3), -1);
    EXPECT_EQ(match.Start(4), -1);
    EXPECT_EQ(match.Start(-1), -1);

    TRegexMatch copy(match);
    EXPECT_FALSE(regex.Match("none", &match));
    EXPECT_EQ(match.GroupCount(), 0);
    EXPECT_EQ(copy.End(1), 4);

    EXPECT_EQ(regex.Find("x7-8y", 2), AString("8"));
    EXPECT_EQ(regex.Find("x7-y", 2), AString(""));
    EXPECT_EQ(regex.Find("xy"), AString(""));

    TRegex named("(?<key>\\w+)=(?<value>\\w*)");
    EXPECT_EQ(named.GroupNumber("value"), 2);
    EXPECT_EQ(named.GroupNumber("nothing"), -1);
    EXPECT_EQ(named.Find("  a=b", named.GroupNumber("value")), AString("b"));
}

TEST(TRegex, OptionsByValue)
{
    // 4 is how the XML parser asks for "dot matches all".
    EXPECT_FALSE(TRegex("a.b").Match("a\nb"));
    EXPECT_TRUE(TRegex("a.b", 4).Match("a\nb"));
    EXPECT_TRUE(TRegex("a.b", eRegexDotAll).Match(u"a\nb"));

    EXPECT_TRUE(TRegex("ABC", eRegexCaseless).Match("xabc"));
    EXPECT_FALSE(TRegex("ABC").Match("xabc"));
    EXPECT_TRUE(TRegex("^b$", eRegexMultiline).Match("a\nb\nc"));
    EXPECT_FALSE(TRegex("^b$").Match("a\nb\nc"));
    EXPECT_TRUE(TRegex("a b # comment", eRegexExtended).Match("ab"));
    EXPECT_FALSE(TRegex("b", eRegexAnchored).Match("ab"));
    EXPECT_TRUE(TRegex("b", eRegexAnchored).Match("ab", nullptr, 1));
    EXPECT_FALSE(TRegex("a$", eRegexDollarEndOnly).Match("a\n"));
    EXPECT_TRUE(TRegex("a$").Match("a\n"));
    EXPECT_EQ(TRegex("a+", eRegexUngreedy).Find("aaa"), AString("a"));
    EXPECT_EQ(TRegex("(a)(?<n>b)", eRegexNoAutoCapture).CaptureCount(), 1);
    EXPECT_FALSE(TRegex("^\\w$").Match(u"é"));
    EXPECT_TRUE(TRegex("^\\w$", eRegexUnicodeClasses).Match(u"é"));
}

TEST(TRegex, NarrowAndWideTextCountTheirOwnUnits)
{
    // The same pattern on both widths: offsets are bytes of UTF-8 on the one,
    // UTF-16 units on the other.
    for (TRegex const& regex : {TRegex("é(x+)"), TRegex(u"é(x+)")}) {
        TRegexMatch match;
        ASSERT_TRUE(regex.Match("aéxx", &match));
        EXPECT_EQ(match.Start(), 1);
        EXPECT_EQ(match.Start(1), 3);
        EXPECT_EQ(match.End(1), 5);
        ASSERT_TRUE(regex.Match(u"aéxx", &match));
        EXPECT_EQ(match.Start(1), 2);
        EXPECT_EQ(match.End(1), 4);
        EXPECT_EQ(regex.Find(u"éxxx", 1), WString(u"xxx"));
    }
    TRegex dot("^.$");
    EXPECT_TRUE(dot.Match("é"));   // one character, two bytes
    EXPECT_TRUE(dot.Match(u"é"));
    EXPECT_TRUE(dot.Match(u"😀")); // one character, two units
}

TEST(TRegex, StartLengthAndBadText)
{
    TRegex regex("b+");
    TRegexMatch match;
    ASSERT_TRUE(regex.Match("abbcbbb", &match, 3));
    EXPECT_EQ(match.Start(), 4);
    EXPECT_FALSE(regex.Match("abbcbbb", &match, 8));
    EXPECT_FALSE(regex.Match("abbcbbb", &match, -1));
    EXPECT_FALSE(regex.Match("abbcbbb", &match, 0, 1));
    ASSERT_TRUE(regex.Match("a\0bb", &match, 0, 4)); // a length reads past a terminator
    EXPECT_EQ(match.Start(), 2);
    EXPECT_FALSE(regex.Match(static_cast<char const*>(nullptr)));
    // A text with a byte that isn't UTF-8 is searched around it.
    ASSERT_TRUE(regex.Match("a\xff\xfe" "bb", &match));
    EXPECT_EQ(match.Start(), 3);
    EXPECT_FALSE(TRegex("a.b").Match("a\xff" "b"));
}

TEST(TRegex, CopiesShareCodeAcrossThreads)
{
    TRegex original(u"(\\w+)@(\\w+)\\.org");
    TRegex copy(original);
    TRegex moved(std::move(copy));
    EXPECT_FALSE(copy.IsValid());
    TRegex assigned;
    assigned = moved;
    original.Compile("other");
    EXPECT_EQ(assigned.CaptureCount(), 2);

    // The narrow code is compiled on first use, possibly by several threads
    // at once.
    std::atomic<int> found{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                TRegexMatch match;
                if (assigned.Match("mail me at joe@example.org today", &match) && match.Start(2) == 15
                    && assigned.Match(u"joe@example.org", &match) && match.End(1) == 3)
                    ++found;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found.load(), 2000);
}
