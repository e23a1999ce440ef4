#include "StringPrinting.h"
#include "text/NumberText.h"
#include "text/TString.h"
#include "text/WideChar.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#if defined(__unix__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

int References(AString const& s)
{
    return s.GetStringRef()->m_references.load();
}

std::string Std(AString const& s)
{
    return std::string(s.c_str(), static_cast<size_t>(s.GetLength()));
}

} // namespace

TEST(TStringCore, EmptyStringsShareOneBufferAndAllocateNothing)
{
    AString const& null = AString::null();
    AString a;
    AString b(nullptr);
    AString c("");
    AString d("text");
    d.Clear();
    for (AString const* s : {&a, &b, &c, &d}) {
        EXPECT_EQ(s->c_str(), null.c_str());
        EXPECT_EQ(s->GetLength(), 0);
        EXPECT_STREQ(s->c_str(), "");
        EXPECT_TRUE(s->IsEmpty());
        EXPECT_FALSE(s->HasStuff());
        EXPECT_TRUE(!*s);
    }
    int const before = References(null);
    {
        AString e;
        EXPECT_EQ(References(null), before + 1);
    }
    EXPECT_EQ(References(null), before);
    EXPECT_EQ(WString(nullptr).c_str(), WString::null().c_str());
    EXPECT_EQ(g_nullWchar[0], u'\0');
}

TEST(TStringCore, ExactCapacitiesRoundToEightBytes)
{
    EXPECT_EQ(AString::RoundBufferSize(0), 8u);
    EXPECT_EQ(AString::RoundBufferSize(1), 8u);
    EXPECT_EQ(AString::RoundBufferSize(8), 8u);
    EXPECT_EQ(AString::RoundBufferSize(9), 16u);
    EXPECT_EQ(AString("1234567").InternalBufferSize(), 8);
    EXPECT_EQ(AString("12345678").InternalBufferSize(), 16);
    EXPECT_EQ(WString(u"abc").InternalBufferSize(), 8);
    EXPECT_EQ(WString(u"abcd").InternalBufferSize(), 16);
    EXPECT_EQ(AString(length_t(20)).InternalBufferSize(), 24);
    EXPECT_EQ(AString(length_t(~0u)).InternalBufferSize(), 8);
    EXPECT_EQ(WString(length_t(~0u)).InternalBufferSize(), 8);
    EXPECT_TRUE(AString(length_t(20)).IsEmpty());
}

TEST(TStringCore, GrowthAddsTenPercentAndNeverDoubles)
{
    AString s(std::string(100, 'x').c_str());
    ASSERT_EQ(s.InternalBufferSize(), 104);
    s.Append("abc"); // 103 characters and the terminator still fit
    EXPECT_EQ(s.InternalBufferSize(), 104);
    s.Append('d');
    EXPECT_EQ(s.InternalBufferSize(), 120); // RoundBufferSize(103 + 10 + 1 + 1)

    AString full(std::string(100, 'x').c_str());
    full.EnsureBufferSize(100);
    ASSERT_EQ(full.InternalBufferSize(), 104);
    full.Append("1234"); // 104 + 1 > 104
    EXPECT_EQ(full.InternalBufferSize(), 120); // RoundBufferSize(100 + 10 + 4 + 1)

    WString wide(std::u16string(100, u'x').c_str());
    ASSERT_EQ(wide.InternalBufferSize(), 208);
    wide.Append(std::u16string(3, u'y').c_str());
    EXPECT_EQ(wide.InternalBufferSize(), 208);
    wide.Append(u'z');
    EXPECT_EQ(wide.InternalBufferSize(), 2 * 120);

    // One character at a time reallocates about every tenth of the length.
    AString grown;
    int changes = 0;
    int capacity = grown.InternalBufferSize();
    for (int i = 0; i < 10000; ++i) {
        grown.Append('a');
        if (grown.InternalBufferSize() != capacity)
            ++changes, capacity = grown.InternalBufferSize();
    }
    EXPECT_EQ(grown.GetLength(), 10000);
    EXPECT_LT(capacity, 10000 * 11 / 10 + 16);
    EXPECT_GT(changes, 40);
}

TEST(TStringCore, GrowthCountsTheLengthBeforeTheInsert)
{
    AString s{length_t(0)};
    s.Append(std::string(100, 'z').c_str());
    EXPECT_EQ(s.InternalBufferSize(), 104); // RoundBufferSize(0 + 0 + 100 + 1)
    s.Append("123");                        // 103 + 1 fits
    EXPECT_EQ(s.InternalBufferSize(), 104);
    s.Append("4567"); // from 103: RoundBufferSize(103 + 10 + 4 + 1)
    EXPECT_EQ(s.InternalBufferSize(), 120);
    EXPECT_EQ(s.GetLength(), 107);
}

TEST(TStringCore, CopiesShareUntilOneIsWritten)
{
    AString a("shared text");
    AString b(a);
    AString c;
    c = b;
    EXPECT_EQ(a.c_str(), b.c_str());
    EXPECT_EQ(b.c_str(), c.c_str());
    EXPECT_EQ(References(a), 3);

    char* buffer = b.Buffer();
    EXPECT_NE(buffer, a.c_str());
    buffer[0] = 'S';
    b.SetEnd(6);
    EXPECT_STREQ(a.c_str(), "shared text");
    EXPECT_STREQ(c.c_str(), "shared text");
    EXPECT_STREQ(b.c_str(), "Shared");
    EXPECT_EQ(References(a), 2);
    EXPECT_EQ(References(b), 1);

    c.Append('!');
    EXPECT_STREQ(a.c_str(), "shared text");
    EXPECT_STREQ(c.c_str(), "shared text!");

    AString unshared(true, a);
    EXPECT_NE(unshared.c_str(), a.c_str());
    AString sharedAgain(false, a);
    EXPECT_EQ(sharedAgain.c_str(), a.c_str());
}

TEST(TStringCore, DuplicateKeepsTheLargerCapacity)
{
    AString a{length_t(100)};
    a.Append("abc");
    AString b(a);
    b.Append('d');
    EXPECT_EQ(b.InternalBufferSize(), a.InternalBufferSize());
    EXPECT_STREQ(a.c_str(), "abc");
    EXPECT_STREQ(b.c_str(), "abcd");
}

TEST(TStringCore, SetEndRules)
{
    AString s;
    s.EnsureBufferSize(10);
    ASSERT_EQ(s.InternalBufferSize(), 16);
    char* buffer = s.Buffer();
    std::strcpy(buffer, "hello");
    s.SetEnd(-1);
    EXPECT_EQ(s.GetLength(), 5);
    s.SetEnd(16); // not smaller than the capacity: ignored
    EXPECT_EQ(s.GetLength(), 5);
    s.SetEnd(2);
    EXPECT_STREQ(s.c_str(), "he");

    WString w;
    w.EnsureBufferSize(3); // 8 bytes: four wide characters with the terminator
    ASSERT_EQ(w.InternalBufferSize(), 8);
    w.SetEnd(4); // would write past the block
    EXPECT_EQ(w.GetLength(), 0);
    w.SetEnd(3);
    EXPECT_EQ(w.GetLength(), 3);
}

TEST(TStringCore, EmbeddedTerminatorsCountByLengthOnly)
{
    AString s("ab", length_t(2));
    s.Append("\0cd", 3u);
    EXPECT_EQ(s.GetLength(), 5);
    EXPECT_EQ(Std(s), std::string("ab\0cd", 5));
    EXPECT_EQ(s.qByteArray(), QByteArray("ab"));
    EXPECT_EQ(s.qString(), QString("ab"));
    EXPECT_EQ(s.Find("cd"), -1); // search stops at the first terminator
    EXPECT_EQ(Std(s.GetRange(3, 2)), "cd");
    s.Trim();
    EXPECT_EQ(s.GetLength(), 2);

    WString w(u"a\0b", length_t(3));
    EXPECT_EQ(w.GetLength(), 3);
    EXPECT_EQ(w.qString(), QString::fromUtf16(u"a\0b", 3));
}

TEST(TStringCore, ConstructionForms)
{
    EXPECT_STREQ(AString("abcdef", offset_t(2), length_t(3)).c_str(), "cde");
    AString whole("abcdef");
    EXPECT_STREQ(AString(whole, offset_t(4), length_t(10)).c_str(), "ef");
    EXPECT_EQ(AString(whole, offset_t(0), length_t(6)).c_str(), whole.c_str());
    EXPECT_STREQ(AString("ab", "cd").c_str(), "abcd");
    EXPECT_STREQ(AString(nullptr, "cd").c_str(), "cd");
    EXPECT_STREQ(AString("ab", static_cast<char const*>(nullptr)).c_str(), "ab");
    EXPECT_STREQ(AString('x', count_t(3)).c_str(), "xxx");
    EXPECT_TRUE(AString('x', count_t(0)).IsEmpty());
    EXPECT_STREQ(AString("a-b_c", TCharFilter<char>{"-_", ' '}).c_str(), "a b c");
    EXPECT_STREQ(AString(QByteArray("bytes")).c_str(), "bytes");
    EXPECT_STREQ(AString(QString::fromUtf8("\xC3\xA9t\xC3\xA9")).c_str(), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(WString(QString("qt")), WString(u"qt"));
    AString* heap = AString::New("heap");
    EXPECT_STREQ(heap->c_str(), "heap");
    delete heap;
}

TEST(TStringCore, NumbersAsText)
{
    EXPECT_STREQ(AString(-42).c_str(), "-42");
    EXPECT_STREQ(AString(255, "%04x").c_str(), "00ff");
    EXPECT_TRUE(AString(7, "").IsEmpty());
    EXPECT_STREQ(AString(4000000000u).c_str(), "4000000000");
    EXPECT_STREQ(AString(static_cast<short>(-5)).c_str(), "-5");
    EXPECT_STREQ(AString(static_cast<unsigned short>(65535)).c_str(), "65535");
    EXPECT_STREQ(AString(-9000000000LL).c_str(), "-9000000000");
    EXPECT_STREQ(AString(18446744073709551615ULL).c_str(), "18446744073709551615");
    EXPECT_STREQ(AString(1.0 / 3).c_str(), "0.33");
    EXPECT_STREQ(AString(2.5f).c_str(), "2.50");
    EXPECT_STREQ(AString(2.5, "%.3f").c_str(), "2.500");
    EXPECT_STREQ(AString::LongToString(-7).c_str(), "-7");
    EXPECT_EQ(WString(12), WString(u"12"));
}

// A host in a decimal-comma locale (a QCoreApplication takes it from the
// environment) still reads and writes numbers with a point.
TEST(TStringCore, NumbersIgnoreTheHostsLocale)
{
    std::string const previous = std::setlocale(LC_ALL, nullptr);
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8"))
        GTEST_SKIP() << "no de_DE.UTF-8 locale here (scripts/setup.sh makes it)";
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 1.5);
    EXPECT_STREQ(probe, "1,5"); // the locale really is in force
    EXPECT_DOUBLE_EQ(AString("1.5").to_double(), 1.5);
    EXPECT_FLOAT_EQ(WString(u"-2.25").to_float(), -2.25f);
    EXPECT_STREQ(AString(2.5).c_str(), "2.50");
    EXPECT_STREQ(AString().Format("%.1f|%g", 0.5, 1e-3).c_str(), "0.5|0.001");
    EXPECT_EQ(WString().Format(u"%.2f", 3.25), WString(u"3.25"));
    char16_t exponent[64];
    FloatToString(12345.0, exponent, eNumExponent | 2);
    EXPECT_EQ(WString(exponent), WString(u"1.23e+04"));
    std::setlocale(LC_ALL, previous.c_str());
}

TEST(TStringCore, AssignmentFromCStrings)
{
    AString s("old");
    s = "new text";
    EXPECT_STREQ(s.c_str(), "new text");
    EXPECT_EQ(s.InternalBufferSize(), 16);
    s = "";
    EXPECT_EQ(s.c_str(), AString::null().c_str());
    s = "again";
    s = nullptr;
    EXPECT_EQ(s.c_str(), AString::null().c_str());
    s = "self-assigned";
    s = s.c_str() + 5; // from its own buffer
    EXPECT_STREQ(s.c_str(), "assigned");
    s.Set("abcdef", 3);
    EXPECT_STREQ(s.c_str(), "abc");
    s = u"wide";
    EXPECT_STREQ(s.c_str(), "wide");
    AString moved(std::move(s));
    EXPECT_STREQ(moved.c_str(), "wide");
    EXPECT_TRUE(s.IsEmpty());
}

TEST(TStringCore, FreeUnusedMemoryShrinksToTheExactSize)
{
    AString s{length_t(200)};
    s.Append("short");
    EXPECT_EQ(s.InternalBufferSize(), 208);
    s.FreeUnusedMemory();
    EXPECT_EQ(s.InternalBufferSize(), 8);
    EXPECT_STREQ(s.c_str(), "short");
}

TEST(TStringCore, InsertPositionsAndCounts)
{
    AString s("ace");
    s.Insert(1, 'b');
    s.Insert(3, "d", AString::s_end);
    s.Insert(0x7fffffff, 'f', 2);
    EXPECT_STREQ(s.c_str(), "abcdeff");
    s.Insert(0, "xyz", 2);
    EXPECT_STREQ(s.c_str(), "xyabcdeff");
    s.Insert(2, AString("123"), 1);
    EXPECT_STREQ(s.c_str(), "xy1abcdeff");
    s.Insert(-1, '!'); // past the end: appends
    EXPECT_STREQ(s.c_str(), "xy1abcdeff!");
    s.Append(s.c_str(), 2u); // from its own buffer
    EXPECT_STREQ(s.c_str(), "xy1abcdeff!xy");
    s.Append(s);
    EXPECT_STREQ(s.c_str(), "xy1abcdeff!xyxy1abcdeff!xy");
    AString empty;
    AString shared("share me");
    empty += shared;
    EXPECT_EQ(empty.c_str(), shared.c_str());
    EXPECT_STREQ((AString("a") + "b" + AString("c") + 'd').c_str(), "abcd");
    EXPECT_STREQ(("x" + AString("y")).c_str(), "xy");
    AString p("b");
    p.Prepend('a').Prepend("_");
    EXPECT_STREQ(p.c_str(), "_ab");
}

// Every way of appending, at every start length and piece length around the
// 8- and 16-byte blocks short appends move, against std::string.
TEST(TStringCore, AppendsMatchAModelAtEveryLength)
{
    std::string const source = "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHIJ";
    for (size_t start = 0; start <= 24; ++start) {
        for (size_t piece = 0; piece <= 20; ++piece) {
            SCOPED_TRACE(testing::Message() << "start " << start << " piece " << piece);
            std::string const expected = source.substr(0, start) + source.substr(start, piece);
            std::string const pieceText = source.substr(start, piece);

            AString byText(source.substr(0, start).c_str());
            byText.Append(pieceText.c_str());
            AString byCount(source.substr(0, start).c_str());
            byCount.Append(source.c_str() + start, static_cast<unsigned>(piece)); // ends inside a longer text
            AString byString(source.substr(0, start).c_str());
            AString const other(pieceText.c_str());
            byString.Append(other);
            AString roomy(length_t(64));
            roomy.Append(source.substr(0, start).c_str());
            AString const keeper(roomy);
            roomy.Append(pieceText.c_str()); // shared: the copy must stay as it was

            for (AString const* s : {&byText, &byCount, &byString, &roomy}) {
                EXPECT_EQ(Std(*s), expected);
                EXPECT_EQ(s->c_str()[s->GetLength()], '\0');
                EXPECT_LE(static_cast<size_t>(s->GetLength()) + 1, static_cast<size_t>(s->InternalBufferSize()));
            }
            EXPECT_EQ(Std(keeper), source.substr(0, start));

            WString wide(QString::fromStdString(source.substr(0, start)).toStdU16String().c_str());
            std::u16string const widePiece = QString::fromStdString(pieceText).toStdU16String();
            wide.Append(widePiece.c_str());
            wide.Append(WString(widePiece.c_str()));
            EXPECT_EQ(wide.qString(), QString::fromStdString(expected + pieceText));
        }
    }
    AString self("abc");
    self.Append(self.c_str() + 1, 2u); // from its own buffer, no reallocation
    EXPECT_EQ(Std(self), "abcbc");
}

#if defined(__unix__)
// Appends may copy in blocks, but a text that ends just before an unreadable
// page must be read only up to its end.
TEST(TStringCore, ShortAppendsNeverReadIntoTheNextPage)
{
    long const page = sysconf(_SC_PAGESIZE);
    auto* pages = static_cast<char*>(mmap(nullptr, static_cast<size_t>(2 * page), PROT_READ | PROT_WRITE,
                                          MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(pages, MAP_FAILED);
    ASSERT_EQ(mprotect(pages + page, static_cast<size_t>(page), PROT_NONE), 0);
    for (int length = 0; length < 16; ++length) {
        char* text = pages + page - length - 1;
        std::memset(text, 'q', static_cast<size_t>(length));
        text[length] = '\0';
        AString s(length_t(40));
        s.Append(text);
        s.Append(text, static_cast<unsigned>(length));
        EXPECT_EQ(Std(s), std::string(static_cast<size_t>(2 * length), 'q'));
        auto* wideText = reinterpret_cast<char16_t*>(pages + page) - length - 1;
        for (int i = 0; i < length; ++i)
            wideText[i] = u'w';
        wideText[length] = 0;
        WString w(length_t(40));
        w.Append(wideText);
        EXPECT_EQ(w.GetLength(), length);
    }
    munmap(pages, static_cast<size_t>(2 * page));
}
#endif

// The case-sensitive hash is qHashBits over the characters; the other one
// folds signed upper-case characters by 31.
TEST(TStringCore, HashesAgreeWithTheirDefinitions)
{
    uint32_t seed = 12345;
    auto next = [&seed] {
        seed = seed * 1103515245u + 12345u;
        return seed >> 16;
    };
    for (int length = 0; length <= 70; ++length) {
        std::string narrow;
        std::u16string wide;
        for (int i = 0; i < length; ++i) {
            narrow += static_cast<char>(next() & 0xFF ? next() & 0xFF : 'a');
            wide += static_cast<char16_t>(next() % 0x3000 + 1);
        }
        AString const a(narrow.c_str(), length_t(static_cast<unsigned>(length)));
        WString const w(wide.c_str(), length_t(static_cast<unsigned>(length)));
        for (unsigned hashSeed : {0u, 1u, 0x9e3779b9u}) {
            SCOPED_TRACE(testing::Message() << "length " << length << " seed " << hashSeed);
            EXPECT_EQ(a.GetHashValue(true, hashSeed), qHashBits(narrow.data(), narrow.size(), hashSeed));
            EXPECT_EQ(w.GetHashValue(true, hashSeed), qHashBits(wide.data(), wide.size() * 2, hashSeed));
            unsigned folded = hashSeed;
            for (char c : narrow) {
                char const upper = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
                folded = folded * 31 + static_cast<unsigned>(static_cast<signed char>(upper));
            }
            EXPECT_EQ(a.GetHashValue(false, hashSeed), folded);
        }
    }
}

TEST(TStringCore, ComparisonOperators)
{
    EXPECT_TRUE(AString("abc") == "abc");
    EXPECT_TRUE(AString("abc") != AString("abd"));
    EXPECT_TRUE(AString("abc") < AString("abd"));
    EXPECT_EQ(AString("ABC").CompareWith("abd", false), -1);
    EXPECT_EQ(AString("abc").CompareWith("ABC", false), 0);
    EXPECT_EQ(WString(u"\u00C9t\u00E9").CompareWith(u"\u00E9T\u00C9", false), 0);
    EXPECT_TRUE(AString() == static_cast<char const*>(nullptr));
}

// Case-blind wide comparison lowers both sides, as the C library's does: "_"
// sorts before letters, which an upper-casing comparison would turn round.
TEST(TStringCore, WideCaseBlindComparisonLowersBothSides)
{
    struct Case
    {
        char16_t const* a;
        char16_t const* b;
        int count;
        int expected;
    } const cases[] = {
        {u"abc", u"ABC", 0x7fffffff, 0},      {u"_", u"A", 0x7fffffff, -1},
        {u"a", u"B", 0x7fffffff, -1},         {u"ab", u"abc", 0x7fffffff, -1},
        {u"abd", u"ABC", 0x7fffffff, 1},      {u"abcX", u"ABCy", 3, 0},
        {u"abcX", u"ABCy", 4, -1},            {u"\u00C9t\u00E9", u"\u00E9T\u00C9", 0x7fffffff, 0},
        {u"", u"", 0x7fffffff, 0},            {u"x", u"y", 0, 0},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE((QString::fromStdU16String(c.a) + " / " + QString::fromStdU16String(c.b)).toStdString());
        EXPECT_EQ(WideCompareNoCase(c.a, c.b, c.count), c.expected);
        if (c.count == 0x7fffffff) {
            EXPECT_EQ(WideCompareNoCase(c.a, c.b), c.expected);
            EXPECT_EQ(WideCompareNoCase(c.b, c.a), -c.expected);
        }
    }
}

TEST(TStringCore, CopiesOnManyThreadsKeepTheCountRight)
{
    AString const shared("one text for all threads");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&shared] {
            for (int i = 0; i < 20000; ++i) {
                AString copy(shared);
                if (i % 7 == 0)
                    copy.Append('x');
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(References(shared), 1);
    EXPECT_STREQ(shared.c_str(), "one text for all threads");
}
