#include "math/TRandomizer.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "text/TString.h"

#include <QByteArray>
#include <QString>
#include <QUuid>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

QUuid const kId = QUuid::fromString(QStringLiteral("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}"));

QByteArray Bytes(int count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    for (int i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 7 + 1);
    return bytes;
}

float FloatWithBits(uint32_t bits)
{
    float value;
    std::memcpy(&value, &bits, 4);
    return value;
}

// One value of every type, some inside groups, in the order a reader meets
// them.
void WriteEveryType(TTaggedOutputStream& out)
{
    out.SetValue(true, "yes");
    out.SetValue(false, "no");
    out.SetValue('x', "ch");
    out.SetValue(static_cast<signed char>(-5), "sc");
    out.SetValue(static_cast<unsigned char>(200), "uc");
    out.SetValue(static_cast<short>(-1234), "sh");
    out.SetValue(static_cast<unsigned short>(60000), "us");
    out.MoveDown("numbers");
    out.SetValue(INT_MIN, "i");
    out.SetValue(4000000000u, "ui");
    out.SetValue(-7L, "l");
    out.SetValue(4000000000UL, "ul");
    out.SetValue(LLONG_MIN + 1, "ll");
    out.SetValue(ULLONG_MAX, "ull");
    out.SetValue(1.5f, "f");
    out.SetValue(FloatWithBits(0x00000001u), "tiny"); // a denormal: the bytes must survive
    out.SetValue(-0.0, "negzero");
    out.SetValue(M_PI, "pi");
    out.MoveUp();
    out.MoveDown("texts", 3);
    out.SetValue("plain text", "a");
    out.SetValue("caf\xC3\xA9", "utf8");
    out.SetValue("", "empty");
    out.SetValue(u"wide \u00FC\u4E2D", "w");
    out.SetValue(QStringLiteral("qt \u00E9 text"), "q");
    out.MoveUp();
    out.SetValue(kId, "id");
    out.SetBinary(Bytes(255), "b255");
    out.SetBinary(Bytes(300), "b300");
    out.SetValue(42, "last");
}

void ExpectEveryType(TTaggedInputStream& in, bool xml)
{
    EXPECT_TRUE(in.GetValue(false, "yes"));
    EXPECT_FALSE(in.GetValue(true, "no"));
    EXPECT_EQ(in.GetValue('?', "ch"), 'x');
    EXPECT_EQ(in.GetValue(static_cast<signed char>(0), "sc"), -5);
    EXPECT_EQ(in.GetValue(static_cast<unsigned char>(0), "uc"), 200);
    EXPECT_EQ(in.GetValue(static_cast<short>(0), "sh"), -1234);
    EXPECT_EQ(in.GetValue(static_cast<unsigned short>(0), "us"), 60000);
    EXPECT_TRUE(in.MoveDown("numbers"));
    EXPECT_EQ(in.GetValue(0, "i"), INT_MIN);
    EXPECT_EQ(in.GetValue(0u, "ui"), 4000000000u);
    EXPECT_EQ(in.GetValue(0L, "l"), -7L);
    EXPECT_EQ(in.GetValue(0UL, "ul"), 4000000000UL);
    EXPECT_EQ(in.GetValue(0LL, "ll"), LLONG_MIN + 1);
    EXPECT_EQ(in.GetValue(0ULL, "ull"), ULLONG_MAX);
    EXPECT_EQ(in.GetValue(0.0f, "f"), 1.5f);
    float const tiny = in.GetValue(0.0f, "tiny");
    uint32_t tinyBits;
    std::memcpy(&tinyBits, &tiny, 4);
    EXPECT_EQ(tinyBits, 1u);
    double const negativeZero = in.GetValue(1.0, "negzero");
    EXPECT_EQ(negativeZero, 0.0);
    EXPECT_TRUE(std::signbit(negativeZero));
    EXPECT_EQ(in.GetValue(0.0, "pi"), M_PI);
    in.MoveUp();
    EXPECT_TRUE(in.MoveDown("texts", 3));
    EXPECT_STREQ(in.GetValueA("?", "a").c_str(), "plain text");
    EXPECT_STREQ(in.GetValueA("?", "utf8").c_str(), "caf\xC3\xA9");
    // XML drops an element without text: the default comes back.
    EXPECT_STREQ(in.GetValueA("?", "empty").c_str(), xml ? "?" : "");
    EXPECT_TRUE(in.GetValue(u"?", "w") == u"wide \u00FC\u4E2D");
    EXPECT_EQ(in.GetValue(QString(), "q"), QStringLiteral("qt \u00E9 text"));
    in.MoveUp();
    EXPECT_EQ(in.GetValue(QUuid(), "id"), kId);
    EXPECT_EQ(in.GetBinarySize("b255"), 255);
    EXPECT_EQ(in.GetBinary(QByteArray(), "b255"), Bytes(255));
    EXPECT_EQ(in.GetBinarySize("b300"), 300);
    EXPECT_EQ(in.GetBinary(QByteArray(), "b300"), Bytes(300));
    EXPECT_EQ(in.GetValue(0, "last"), 42);
}

QByteArray Document(EStreamMode mode, void (*write)(TTaggedOutputStream&))
{
    TTaggedOutputStream out(mode, "Test");
    write(out);
    return out.GetAsByteArray();
}

class TaggedReaderModes : public ::testing::TestWithParam<EStreamMode>
{
};

} // namespace

TEST_P(TaggedReaderModes, EveryTypeComesBackInOrder)
{
    QByteArray const document = Document(GetParam(), WriteEveryType);
    TTaggedInputStream in(GetParam(), document, checksumOn, autoDeleteOff, canExceptionYes);
    ASSERT_TRUE(in.IsInitialized());
    EXPECT_STREQ(in.GetFileType().c_str(), "Test");
    EXPECT_EQ(in.XmlConvert(), GetParam() == streamModeXml);
    ExpectEveryType(in, GetParam() == streamModeXml);
}

TEST_P(TaggedReaderModes, OwnedCopyOfAnArrayOutlivesIt)
{
    auto* in = [] {
        QByteArray const document = Document(GetParam(), WriteEveryType);
        return new TTaggedInputStream(GetParam(), document, checksumOn, autoDeleteOn);
    }();
    ASSERT_TRUE(in->IsInitialized());
    ExpectEveryType(*in, GetParam() == streamModeXml);
    delete in;
}

INSTANTIATE_TEST_SUITE_P(AllModes, TaggedReaderModes,
                         ::testing::Values(streamModePlain, streamModeRawTags, streamModeXml),
                         [](::testing::TestParamInfo<EStreamMode> const& info) {
                             return std::string(info.param == streamModePlain      ? "Plain"
                                                : info.param == streamModeRawTags ? "RawTags"
                                                                                  : "Xml");
                         });

class TaggedReaderTreeModes : public ::testing::TestWithParam<EStreamMode>
{
};

TEST_P(TaggedReaderTreeModes, AnyOrderAndMissingKeys)
{
    QByteArray const document = Document(GetParam(), [](TTaggedOutputStream& out) {
        for (int i = 0; i < 20; ++i)
            out.SetValue(i * 10, "v", i);
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    for (int i = 19; i >= 0; --i)
        EXPECT_EQ(in.GetValue(-1, "v", i), i * 10) << i;
    EXPECT_EQ(in.GetValue(-1, "v", 20), -1);
    // A miss leaves a hint of 0: the next search starts at the first child.
    EXPECT_EQ(in.GetValue(-1, "v", 0), 0);
    EXPECT_EQ(in.GetValue(-1, "v", 1), 10);
    EXPECT_TRUE(in.ExistKey("v", 7, 0));
    EXPECT_FALSE(in.ExistKey("v", 70, 0));
}

TEST_P(TaggedReaderTreeModes, TwoSpellingsOfATag)
{
    QByteArray const document = Document(GetParam(), [](TTaggedOutputStream& out) {
        out.MoveDown("track:T", 2);
        out.SetValue(7, "volume:v");
        out.MoveUp();
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    ASSERT_TRUE(in.MoveDown("track:T", 2));
    EXPECT_EQ(in.GetValue(0, "volume:v"), 7);
    // The other spelling alone names nothing.
    EXPECT_EQ(in.GetValue(0, GetParam() == streamModeXml ? "v" : "volume"), 0);
}

TEST_P(TaggedReaderTreeModes, PathsAndForEachGroup)
{
    QByteArray const document = Document(GetParam(), [](TTaggedOutputStream& out) {
        out.MoveDown("a");
        out.SetValue(1, "x");
        out.MoveDown("b");
        out.SetValue(2, "x");
        out.MoveUp();
        out.MoveDown("c", 4);
        out.SetValue(3, "x");
        out.MoveUp();
        out.MoveUp();
        out.MoveDown("d");
        out.SetValue(4, "x");
        out.MoveUp();
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    ASSERT_TRUE(in.MoveDown("a/b"));
    EXPECT_EQ(in.GetValue(0, "x"), 2);
    ASSERT_TRUE(in.MoveDown("/d"));
    EXPECT_EQ(in.GetValue(0, "x"), 4);
    ASSERT_TRUE(in.MoveDown("/"));
    EXPECT_TRUE(in.MoveDown("/a/c", 4));
    EXPECT_EQ(in.GetValue(0, "x"), 3);
    // A failing step keeps the steps before it.
    EXPECT_FALSE(in.MoveDown("/a/zz/b"));
    EXPECT_EQ(in.GetValue(0, "x"), 1);

    in.MoveDown("/");
    in.MoveDown("a");
    struct TSeen
    {
        std::vector<std::string> names;
        std::vector<int> counts;
        std::vector<int> values;
        int stopAt;
    } seen{{}, {}, {}, 99};
    auto record = [](TTaggedInputStream* stream, char const* name, int count, unsigned long long user) {
        auto* s = reinterpret_cast<TSeen*>(user);
        s->names.push_back(name);
        s->counts.push_back(count);
        s->values.push_back(stream->GetValue(0, "x"));
        return count + 1 < s->stopAt;
    };
    in.ForEachGroup(record, reinterpret_cast<unsigned long long>(&seen));
    EXPECT_EQ(seen.names, (std::vector<std::string>{"b", "c4"}));
    EXPECT_EQ(seen.counts, (std::vector<int>{0, 1}));
    EXPECT_EQ(seen.values, (std::vector<int>{2, 3}));
    // The walk ends in the group it began in.
    EXPECT_EQ(in.GetValue(0, "x"), 1);
    seen = TSeen{{}, {}, {}, 1};
    in.ForEachGroup(record, reinterpret_cast<unsigned long long>(&seen));
    EXPECT_EQ(seen.names.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(TreeModes, TaggedReaderTreeModes, ::testing::Values(streamModeRawTags, streamModeXml),
                         [](::testing::TestParamInfo<EStreamMode> const& info) {
                             return std::string(info.param == streamModeRawTags ? "RawTags" : "Xml");
                         });

TEST(TaggedReader, NoDocumentGivesDefaults)
{
    TTaggedInputStream in(streamModeRawTags);
    EXPECT_TRUE(in.IsInitialized());
    EXPECT_FALSE(in.IsValid());
    EXPECT_FALSE(in.MoveDown("a"));
    EXPECT_EQ(in.GetValue(5, "a"), 5);
    EXPECT_STREQ(in.GetValueA("d", "a").c_str(), "d");
    EXPECT_TRUE(in.GetValue(u"w", "a") == u"w");
    char out[3] = {};
    EXPECT_EQ(in.GetBinary(out, "xyz", 3, "a"), 3);
    EXPECT_EQ(std::string(out, 3), "xyz");
    EXPECT_EQ(in.GetBinarySize("a"), 0);
}

TEST(TaggedReader, BinarySizeLeavesThePosition)
{
    for (EStreamMode mode : {streamModePlain, streamModeRawTags, streamModeXml}) {
        QByteArray const document = Document(mode, [](TTaggedOutputStream& out) {
            out.SetBinary(Bytes(10), "b");
            out.SetValue(9, "after");
        });
        TTaggedInputStream in(mode, document, checksumOn);
        unsigned int const position = in.Input().GetPosition();
        EXPECT_EQ(in.GetBinarySize("b"), 10) << mode;
        EXPECT_EQ(in.Input().GetPosition(), position) << mode;
        // A short buffer gets its size, and a plain document still moves
        // past the whole value.
        char four[4];
        in.GetBinary(four, nullptr, 4, "b");
        EXPECT_EQ(QByteArray(four, 4), Bytes(4)) << mode;
        EXPECT_EQ(in.GetValue(0, "after"), 9) << mode;
    }
}

TEST(TaggedReader, WideTextFromEitherGeneration)
{
    QByteArray const document = Document(streamModeRawTags, [](TTaggedOutputStream& out) {
        out.SetValue(u"new", "wide");
        out.SetValue("old", "narrow");
        out.SetValue("both old", "n2");
        out.SetValue(u"both new", "w2");
    });
    TTaggedInputStream in(streamModeRawTags, document, checksumOn);
    EXPECT_TRUE(in.GetValue(u"def", "wide", "narrow", 0) == u"new");
    EXPECT_TRUE(in.GetValue(u"def", "nothing", "narrow", 0) == u"old");
    EXPECT_TRUE(in.GetValue(u"def", "w2", "n2", 0) == u"both new");
    // Neither tag: the empty string, not the default.
    EXPECT_TRUE(in.GetValue(u"def", "nothing", "none", 0).IsEmpty());
}

TEST(TaggedReader, StringCompatTellsTheGeneration)
{
    QByteArray const document = Document(streamModeRawTags, [](TTaggedOutputStream& out) {
        out.SetValue("caf\xC3\xA9", "new");
        out.SetValue("plain", "old");
    });
    TTaggedInputStream in(streamModeRawTags, document, checksumOn);
    bool usedOld = true;
    EXPECT_TRUE(in.GetStringCompat("d", "old", "new", 0, &usedOld) == u"caf\u00E9");
    EXPECT_FALSE(usedOld);
    EXPECT_TRUE(in.GetStringCompat("d", "old", "missing", 0, &usedOld) == u"plain");
    EXPECT_TRUE(usedOld);
    EXPECT_EQ(in.GetStringCompat(QStringLiteral("d"), "old", "new", 0, &usedOld), QStringLiteral("caf\u00E9"));
    EXPECT_FALSE(usedOld);
    EXPECT_EQ(in.GetStringCompat(QStringLiteral("d"), "gone", "missing", 0, &usedOld), QStringLiteral("d"));
    EXPECT_TRUE(usedOld);
    EXPECT_EQ(in.GetValueBS(QByteArray("x"), "new"), QByteArray("caf\xC3\xA9"));
}

TEST(TaggedReader, ByteSwappedDocument)
{
    // Written big-endian by hand: header; root at 20 (name at 40); group "g"
    // at 48 (name at 68); ints "x" at 72 and "y" at 88.
    auto be = [](std::vector<unsigned char>& b, int at, int value) {
        for (int i = 0; i < 4; ++i)
            b[static_cast<size_t>(at + i)] = static_cast<unsigned char>(static_cast<unsigned>(value) >> (24 - 8 * i));
    };
    std::vector<unsigned char> b(104, 0);
    std::memcpy(b.data(), "BE", 3);
    be(b, 8, 104);
    std::memcpy(b.data() + 12, "Test", 5);
    b[20 + 6] = 20;
    be(b, 20 + 12, 48);
    be(b, 20 + 16, 48);
    std::memcpy(b.data() + 40, "Root", 4);
    b[48 + 6] = 20;
    be(b, 48 + 8, 20);
    be(b, 48 + 12, 72);
    be(b, 48 + 16, 88);
    b[68] = 'g';
    auto value = [&](int at, int next, char name, int v) {
        be(b, at, next);
        b[static_cast<size_t>(at + 4)] = 4;
        b[static_cast<size_t>(at + 5)] = 12;
        b[static_cast<size_t>(at + 6)] = 8;
        b[static_cast<size_t>(at + 8)] = static_cast<unsigned char>(name);
        be(b, at + 12, v);
    };
    value(72, 88, 'x', 0x01020304);
    value(88, 0, 'y', -2);
    TTaggedInputStream in(streamModeRawTags, b.data(), 104, checksumOff);
    ASSERT_TRUE(in.IsInitialized());
    EXPECT_STREQ(in.GetFileType().c_str(), "Test");
    // The root's links are turned. The walk follows each link as it stood
    // before turning, so it never reaches the group's children: the group
    // is found, its children through their big-endian link are not.
    ASSERT_TRUE(in.MoveDown("g"));
    EXPECT_EQ(in.GetValue(-1, "x"), -1);
    // With the first link turned by hand the value reads in the document's
    // byte order; the next link was never turned.
    std::memcpy(b.data() + 48 + 12, "\x48\x00\x00\x00", 4);
    EXPECT_EQ(in.GetValue(-1, "x"), 0x01020304);
    EXPECT_EQ(in.GetValue(-1, "y"), -1);
}

TEST(TaggedReader, XmlNamesAndTextOddities)
{
    char const text[] = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<Doc>\r\n"
                        "\t<a-x>1</a-x>\r\n"
                        "\t<t>tab\there</t>\r\n"
                        "\t<lt>a<b</lt>\r\n"
                        "\t<tag>x<y>z</tag>\r\n"
                        "\t<after>5</after>\r\n"
                        "</Doc>\r\n";
    TTaggedInputStream in(streamModeXml, text, static_cast<int>(sizeof(text) - 1), checksumOff);
    ASSERT_TRUE(in.IsInitialized());
    EXPECT_STREQ(in.GetFileType().c_str(), "Doc");
    EXPECT_EQ(in.GetValue(0, "a"), 1);
    EXPECT_STREQ(in.GetValueA("", "t").c_str(), "tabhere");
    // A bare "<" stays text unless a ">" follows before the next "<".
    EXPECT_STREQ(in.GetValueA("", "lt").c_str(), "a<b");
    // Here "<y>" is a tag: "tag" becomes a group, and "y", pending when the
    // next element starts, becomes the group that takes it.
    EXPECT_EQ(in.GetValue(0, "after"), 0);
    ASSERT_TRUE(in.MoveDown("y"));
    EXPECT_EQ(in.GetValue(0, "after"), 5);
    EXPECT_TRUE(in.MoveDown("/tag"));
}

namespace {

// The search as a plain walk of the sibling list: from behind the hint's
// node when the hint is for this group, and over from the first child.
int ReferenceFind(unsigned char const* base, int group, int lastFound, int lastGroup, std::string const& name)
{
    auto intAt = [&](int at) {
        int value;
        std::memcpy(&value, base + at, 4);
        return value;
    };
    auto walk = [&](int node) {
        for (; node > 0; node = intAt(node))
            if (name == reinterpret_cast<char const*>(base + node + base[node + 6]))
                return node;
        return 0;
    };
    int const first = intAt(group + 12);
    if (group == lastGroup && lastFound > 0) {
        int const found = walk(intAt(lastFound));
        return found ? found : walk(first);
    }
    return walk(first);
}

} // namespace

// Long lists go through a name index; whatever the order and the hint, the
// node found is the one a walk finds, duplicates included.
TEST(TaggedReader, LookupsMatchAPlainWalk)
{
    TTaggedOutputStream out(streamModeRawTags, "Doc");
    out.MoveDown("list");
    for (int i = 0; i < 300; ++i) {
        out.SetValue(i, "v", i % 120); // names repeat
        if (i % 7 == 0)
            out.SetValue(-i, "dup");
    }
    out.MoveUp();
    QByteArray const document = out.GetAsByteArray();
    TTaggedInputStream in(streamModeRawTags, document, checksumOn);
    ASSERT_TRUE(in.MoveDown("list"));
    int const group = in.GetCurrentGroup();
    TRandomizer random(5);
    std::vector<int> seen{0};
    for (int round = 0; round < 3000; ++round) {
        int const which = random.Get(130);
        bool const dup = which >= 120 && which < 125;
        std::string const name = dup ? "dup" : "v" + (which == 0 ? std::string() : std::to_string(which));
        int lastFound;
        int lastGroup;
        in.GetSearchHint(&lastFound, &lastGroup);
        if (random.Get(10) == 0) {
            // A hint restored from earlier, as composite restores do.
            lastFound = seen[static_cast<size_t>(random.Get(static_cast<int>(seen.size())))];
            in.SetSearchHint(lastFound, lastGroup);
        }
        int const expected = ReferenceFind(in.Start(), group, lastFound, lastGroup, name);
        int node = -1;
        in.MoveToDataStart(dup ? "dup" : "v", dup ? 0 : which, &node);
        ASSERT_EQ(node, expected) << round;
        seen.push_back(node);
    }
}
