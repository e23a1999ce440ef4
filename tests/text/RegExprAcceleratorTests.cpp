#include "RegExprTestSupport.h"

#include "math/TRandomizer.h"

#include <QString>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

// A compiled program skips work whose outcome it knows: the scan passes over
// characters no match can begin with, and a greedy loop over one character
// test runs as one step. Patterns are compared here with forms of themselves
// that the same engine runs without those shortcuts: a leading "!\x01" (no
// text has that character) hides the first characters, a group around a loop's
// item hides the loop, and a leading "()??" makes the whole run checked.

namespace {

// Random patterns in two spellings: plain, and with every greedy loop's item
// in a group.
class PatternMaker
{
public:
    explicit PatternMaker(unsigned seed) : m_random(seed) {}

    void Make(std::string& plain, std::string& grouped)
    {
        plain.clear();
        grouped.clear();
        Alternatives(0, plain, grouped);
        if (m_random.Get(8) == 0) {
            plain += '$';
            grouped += '$';
        }
    }

    std::string Text()
    {
        static char const letters[] = "abc1 -";
        std::string text;
        int const length = m_random.Get(13);
        for (int i = 0; i < length; ++i)
            text += letters[m_random.Get(sizeof(letters) - 1)];
        return text;
    }

private:
    void Alternatives(int depth, std::string& plain, std::string& grouped)
    {
        int const count = m_random.Get(4) == 0 ? 2 + m_random.Get(2) : 1;
        for (int i = 0; i < count; ++i) {
            if (i) {
                plain += '|';
                grouped += '|';
            }
            int const items = 1 + m_random.Get(3);
            for (int j = 0; j < items; ++j)
                Item(depth, plain, grouped);
        }
    }

    void Item(int depth, std::string& plain, std::string& grouped)
    {
        static char const* const simple[] = {"a", "b", "c", ".", "[ab]", "[^a]", "[a-c]", "/d", "/D", "/l", "/w", "/s", "/S", " ", "-"};
        static char const* const quantifiers[] = {"", "", "", "*", "+", "?", "*?", "+?", "??"};
        std::string atomPlain;
        std::string atomGrouped;
        bool isSimple = false;
        int const kind = depth < 3 ? m_random.Get(10) : 0;
        if (kind <= 5) {
            atomPlain = atomGrouped = simple[m_random.Get(sizeof(simple) / sizeof(simple[0]))];
            isSimple = true;
        } else if (kind <= 7) {
            char const open = kind == 6 ? '(' : '{';
            char const close = kind == 6 ? ')' : '}';
            atomPlain = atomGrouped = std::string(1, open);
            Alternatives(depth + 1, atomPlain, atomGrouped);
            atomPlain += close;
            atomGrouped += close;
        } else {
            atomPlain = atomGrouped = "!";
            atomPlain += simple[m_random.Get(3)];
            atomGrouped = atomPlain;
        }
        std::string quantifier = quantifiers[m_random.Get(sizeof(quantifiers) / sizeof(quantifiers[0]))];
        // ?? enters a capture or a ! past its first instruction, after which
        // the stack holds words of the wrong kind: no longer the same run in
        // another form.
        if (quantifier == "??" && kind >= 7)
            quantifier = "?";
        plain += atomPlain + quantifier;
        if (isSimple && (quantifier == "*" || quantifier == "+"))
            grouped += "(" + atomGrouped + ")" + quantifier;
        else
            grouped += atomGrouped + quantifier;
    }

    TRandomizer m_random;
};

template <class T>
class RegExprAccelerator : public ::testing::Test
{
};

TYPED_TEST_SUITE(RegExprAccelerator, RegExprCharTypes, RegExprCharNames);

} // namespace

TYPED_TEST(RegExprAccelerator, ShortcutsChangeNoOutcome)
{
    using T = TypeParam;
    PatternMaker maker(4242);
    int compared = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string plain;
        std::string grouped;
        maker.Make(plain, grouped);
        bool const caseSensitive = round % 5 != 0;
        TRegExpr<T> fast;
        TRegExpr<T> slow;
        TRegExpr<T> checked;
        if (fast.Parse(Text<T>(plain.c_str()).c_str(), caseSensitive) != eParseErrorNone)
            continue;
        ASSERT_EQ(slow.Parse(Text<T>(("!\x01" + grouped).c_str()).c_str(), caseSensitive), eParseErrorNone) << grouped;
        ASSERT_EQ(checked.Parse(Text<T>(("()??" + plain).c_str()).c_str(), caseSensitive), eParseErrorNone) << plain;
        for (int i = 0; i < 4; ++i) {
            TString<T> const text = Text<T>(maker.Text().c_str());
            std::string const expected = Outcome(slow, text.c_str());
            ASSERT_EQ(Outcome(fast, text.c_str()), expected) << "pattern \"" << plain << "\" text \"" << text.qString().toStdString() << '"';
            ASSERT_EQ(Outcome(checked, text.c_str()), expected) << "pattern \"" << plain << "\" text \"" << text.qString().toStdString() << '"';
            ++compared;
        }
    }
    EXPECT_GT(compared, 6000);
}

TYPED_TEST(RegExprAccelerator, OneCompiledObjectServesManyThreads)
{
    using T = TypeParam;
    TRegExpr<T> expression;
    ASSERT_EQ(expression.Parse(Text<T>("{/w+}[ ,]*(=|:){[^;]*}").c_str(), false), eParseErrorNone);
    std::vector<TString<T>> texts;
    std::vector<std::string> expected;
    PatternMaker maker(99);
    for (int i = 0; i < 64; ++i) {
        std::string text = maker.Text() + (i % 3 ? "key = value;" : "A:b") + maker.Text();
        texts.push_back(Text<T>(text.c_str()));
        expected.push_back(Outcome(expression, texts.back().c_str()));
    }
    std::vector<int> mismatches(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int round = 0; round < 300; ++round)
                for (size_t i = 0; i < texts.size(); ++i)
                    if (Outcome(expression, texts[(i + t) % texts.size()].c_str()) != expected[(i + t) % texts.size()])
                        ++mismatches[t];
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}
