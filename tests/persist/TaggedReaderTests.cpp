#include "TaggedDocuments.h"

#include "math/TRandomizer.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"

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

QByteArray Pattern(int count)
{
    QByteArray bytes(count, 0);
    for (int i = 0; i < count; ++i)
        bytes[i] = static_cast<char>(i * 7 + 1);
    return bytes;
}

// One value of every type, some in groups.
void WriteEveryType(TTaggedOutputStream& out)
{
    float denormal;
    std::memcpy(&denormal, "\x01\x00\x00\x00", 4);
    out.SetValue(true, "yes");
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
    out.SetValue(denormal, "f");
    out.SetValue(-0.0, "d");
    out.MoveUp();
    out.MoveDown("texts", 3);
    out.SetValue("caf\xC3\xA9", "utf8");
    out.SetValue("", "empty");
    out.SetValue(u"wide \u00FC\u4E2D", "w");
    out.SetValue(QStringLiteral("qt \u00E9"), "q");
    out.MoveUp();
    out.SetValue(kId, "id");
    out.SetBinary(Pattern(255), "b255");
    out.SetBinary(Pattern(300), "b300");
    out.SetValue(42, "last");
}

class TaggedReaderModes : public ::testing::TestWithParam<EStreamMode>
{
};

} // namespace

TEST_P(TaggedReaderModes, EveryTypeComesBack)
{
    bool const xml = GetParam() == streamModeXml;
    // An owned copy of the array: the array may go first.
    auto* in = new TTaggedInputStream(
        GetParam(), Document(GetParam(), WriteEveryType), checksumOn, autoDeleteOn, canExceptionYes);
    ASSERT_TRUE(in->IsInitialized());
    EXPECT_STREQ(in->GetFileType().c_str(), "Test");
    EXPECT_EQ(in->XmlConvert(), xml);
    EXPECT_TRUE(in->GetValue(false, "yes"));
    EXPECT_EQ(in->GetValue('?', "ch"), 'x');
    EXPECT_EQ(in->GetValue(static_cast<signed char>(0), "sc"), -5);
    EXPECT_EQ(in->GetValue(static_cast<unsigned char>(0), "uc"), 200);
    EXPECT_EQ(in->GetValue(static_cast<short>(0), "sh"), -1234);
    EXPECT_EQ(in->GetValue(static_cast<unsigned short>(0), "us"), 60000);
    EXPECT_TRUE(in->MoveDown("numbers"));
    EXPECT_EQ(in->GetValue(0, "i"), INT_MIN);
    EXPECT_EQ(in->GetValue(0u, "ui"), 4000000000u);
    EXPECT_EQ(in->GetValue(0L, "l"), -7L);
    // long keeps 4 bytes: in XML too the text is cut to them.
    EXPECT_EQ(in->GetValue(0UL, "ul"), 4000000000UL);
    EXPECT_EQ(in->GetValue(0LL, "ll"), LLONG_MIN + 1);
    EXPECT_EQ(in->GetValue(0ULL, "ull"), ULLONG_MAX);
    float const denormal = in->GetValue(0.0f, "f");
    EXPECT_EQ(std::memcmp(&denormal, "\x01\x00\x00\x00", 4), 0);
    EXPECT_TRUE(std::signbit(in->GetValue(1.0, "d")));
    in->MoveUp();
    EXPECT_TRUE(in->MoveDown("texts", 3));
    EXPECT_STREQ(in->GetValueA("?", "utf8").c_str(), "caf\xC3\xA9");
    // XML drops an element without text: the default comes back.
    EXPECT_STREQ(in->GetValueA("?", "empty").c_str(), xml ? "?" : "");
    EXPECT_TRUE(in->GetValue(u"?", "w") == u"wide \u00FC\u4E2D");
    EXPECT_EQ(in->GetValue(QString(), "q"), QStringLiteral("qt \u00E9"));
    in->MoveUp();
    EXPECT_EQ(in->GetValue(QUuid(), "id"), kId);
    EXPECT_EQ(in->GetBinarySize("b255"), 255);
    EXPECT_EQ(in->GetBinary(QByteArray(), "b255"), Pattern(255));
    EXPECT_EQ(in->GetBinary(QByteArray(), "b300"), Pattern(300));
    EXPECT_EQ(in->GetValue(0, "last"), 42);
    delete in;
}

INSTANTIATE_TEST_SUITE_P(
    AllModes, TaggedReaderModes, ::testing::Values(streamModePlain, streamModeRawTags, streamModeXml), ModeName);

class TaggedReaderTreeModes : public ::testing::TestWithParam<EStreamMode>
{
};

TEST_P(TaggedReaderTreeModes, AnyOrderMissingKeysAndSpellings)
{
    QByteArray const document = Document(GetParam(), [](TTaggedOutputStream& out) {
        for (int i = 0; i < 20; ++i)
            out.SetValue(i * 10, "v", i);
        out.MoveDown("track:T", 2);
        out.SetValue(7, "volume:v");
        out.MoveUp();
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    for (int i = 19; i >= 0; --i)
        EXPECT_EQ(in.GetValue(-1, "v", i), i * 10) << i;
    EXPECT_EQ(in.GetValue(-1, "v", 20), -1);
    // A miss leaves a hint of 0: the next search starts at the first child.
    EXPECT_EQ(in.GetValue(-1, "v", 0), 0);
    EXPECT_FALSE(in.ExistKey("v", 70, 0));
    // One tag constant serves both forms; the other spelling alone does not.
    ASSERT_TRUE(in.MoveDown("track:T", 2));
    EXPECT_EQ(in.GetValue(0, "volume:v"), 7);
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
        out.SetValue(9, "value");
        out.MoveDown("c", 4);
        out.SetValue(3, "x");
        out.MoveUp();
        out.MoveUp();
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    ASSERT_TRUE(in.MoveDown("a/b"));
    EXPECT_EQ(in.GetValue(0, "x"), 2);
    ASSERT_TRUE(in.MoveDown("/a/c", 4));
    EXPECT_EQ(in.GetValue(0, "x"), 3);
    // A failing step keeps the steps before it.
    EXPECT_FALSE(in.MoveDown("/a/zz/b"));
    EXPECT_EQ(in.GetValue(0, "x"), 1);

    std::vector<std::string> seen;
    auto record = [](TTaggedInputStream* stream, char const* name, int count, unsigned long long user) {
        auto* s = reinterpret_cast<std::vector<std::string>*>(user);
        s->push_back(name + std::to_string(count) + "=" + std::to_string(stream->GetValue(0, "x")));
        return s->size() < 2;
    };
    in.ForEachGroup(record, reinterpret_cast<unsigned long long>(&seen));
    EXPECT_EQ(seen, (std::vector<std::string> { "b0=2", "c41=3" }));
    EXPECT_EQ(in.GetValue(0, "x"), 1);
    seen = { "stop at the first" };
    in.ForEachGroup(record, reinterpret_cast<unsigned long long>(&seen));
    EXPECT_EQ(seen.size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(
    TreeModes, TaggedReaderTreeModes, ::testing::Values(streamModeRawTags, streamModeXml), ModeName);

TEST(TaggedReader, NoDocumentGivesDefaults)
{
    TTaggedInputStream in(streamModeRawTags);
    EXPECT_TRUE(in.IsInitialized());
    EXPECT_FALSE(in.MoveDown("a"));
    EXPECT_EQ(in.GetValue(5, "a"), 5);
    EXPECT_STREQ(in.GetValueA("d", "a").c_str(), "d");
    char out[3] = {};
    EXPECT_EQ(in.GetBinary(out, "xyz", 3, "a"), 3);
    EXPECT_EQ(std::string(out, 3), "xyz");
}

TEST(TaggedReader, BinarySizeLeavesThePosition)
{
    for (EStreamMode mode : { streamModePlain, streamModeRawTags, streamModeXml }) {
        QByteArray const document = Document(mode, [](TTaggedOutputStream& out) {
            out.SetBinary(Pattern(10), "b");
            out.SetValue(9, "after");
        });
        TTaggedInputStream in(mode, document, checksumOn);
        unsigned int const position = in.Input().GetPosition();
        EXPECT_EQ(in.GetBinarySize("b"), 10) << mode;
        EXPECT_EQ(in.Input().GetPosition(), position) << mode;
        // A short buffer gets its size; a plain document moves past it all.
        char four[4];
        in.GetBinary(four, nullptr, 4, "b");
        EXPECT_EQ(QByteArray(four, 4), Pattern(4)) << mode;
        EXPECT_EQ(in.GetValue(0, "after"), 9) << mode;
    }
}

TEST(TaggedReader, TextOfOlderGenerations)
{
    QByteArray const document = Document(streamModeRawTags, [](TTaggedOutputStream& out) {
        out.SetValue(u"new", "wide");
        out.SetValue("old \xE9", "narrow");
        out.SetValue("caf\xC3\xA9", "utf8");
    });
    TTaggedInputStream in(streamModeRawTags, document, checksumOn);
    EXPECT_TRUE(in.GetValue(u"def", "wide", "narrow", 0) == u"new");
    EXPECT_TRUE(in.GetValue(u"def", "nothing", "utf8", 0) == u"caf\u00E9");
    // Neither tag: the empty string, not the default.
    EXPECT_TRUE(in.GetValue(u"def", "nothing", "none", 0).IsEmpty());
    bool usedOld = true;
    EXPECT_TRUE(in.GetStringCompat("d", "narrow", "utf8", 0, &usedOld) == u"caf\u00E9");
    EXPECT_FALSE(usedOld);
    // The older text is in the local 8-bit code page.
    EXPECT_EQ(
        in.GetStringCompat(QStringLiteral("d"), "narrow", "missing", 0, &usedOld), QString::fromLocal8Bit("old \xE9"));
    EXPECT_TRUE(usedOld);
    EXPECT_EQ(in.GetValueBS(QByteArray("x"), "utf8"), QByteArray("caf\xC3\xA9"));
}

TEST(TaggedReader, ByteSwappedDocument)
{
    // Big-endian by hand: header; root at 20 (name at 40); group "g" at 48
    // (name at 68); ints "x" at 72 and "y" at 88.
    std::vector<unsigned char> b(104, 0);
    auto be = [&](int at, int value) {
        for (int i = 0; i < 4; ++i)
            b[static_cast<size_t>(at + i)] = static_cast<unsigned char>(static_cast<unsigned>(value) >> (24 - 8 * i));
    };
    auto value = [&](int at, int next, char name, int v) {
        be(at, next);
        std::memcpy(b.data() + at + 4, "\x04\x0C\x08", 3);
        b[static_cast<size_t>(at + 8)] = static_cast<unsigned char>(name);
        be(at + 12, v);
    };
    std::memcpy(b.data(), "BE", 3);
    std::memcpy(b.data() + 12, "Test", 5);
    b[26] = b[54] = 20;
    be(32, 48);
    be(36, 48);
    std::memcpy(b.data() + 40, "Root", 4);
    be(56, 20);
    be(60, 72);
    be(64, 88);
    b[68] = 'g';
    value(72, 88, 'x', 0x01020304);
    value(88, 0, 'y', -2);
    TTaggedInputStream in(streamModeRawTags, b.data(), 104, checksumOff);
    ASSERT_TRUE(in.IsInitialized());
    // The root's links are turned. The walk follows each link as it stood
    // before turning, so it never reaches the group's children.
    ASSERT_TRUE(in.MoveDown("g"));
    EXPECT_EQ(in.GetValue(-1, "x"), -1);
    // Through a link turned by hand the value reads in the document's order;
    // the next link was never turned.
    std::memcpy(b.data() + 60, "\x48\x00\x00\x00", 4);
    EXPECT_EQ(in.GetValue(-1, "x"), 0x01020304);
    EXPECT_EQ(in.GetValue(-1, "y"), -1);
}

TEST(TaggedReader, XmlNamesAndTextOddities)
{
    char const text[]
        = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<Doc>\r\n\t<a-x>1</a-x>\r\n"
          "\t<t>tab\there</t>\r\n\t<lt>a<b</lt>\r\n\t<tag>x<y>z</tag>\r\n\t<after>5</after>\r\n</Doc>\r\n";
    TTaggedInputStream in(streamModeXml, text, static_cast<int>(sizeof(text) - 1), checksumOff);
    EXPECT_STREQ(in.GetFileType().c_str(), "Doc");
    EXPECT_EQ(in.GetValue(0, "a"), 1);
    EXPECT_STREQ(in.GetValueA("", "t").c_str(), "tabhere");
    // A bare "<" stays text unless a ">" follows before the next "<".
    EXPECT_STREQ(in.GetValueA("", "lt").c_str(), "a<b");
    // Here "<y>" is a tag: "tag" becomes a group, and "y", still pending
    // when the next element starts, becomes the group that takes it.
    EXPECT_EQ(in.GetValue(0, "after"), 0);
    ASSERT_TRUE(in.MoveDown("y"));
    EXPECT_EQ(in.GetValue(0, "after"), 5);
}

// Long lists go through a name index; whatever the order and the hint, the
// node found is the one a plain walk of the list finds, duplicates too.
TEST(TaggedReader, LookupsMatchAPlainWalk)
{
    TTaggedOutputStream out(streamModeRawTags, "Doc");
    out.MoveDown("list");
    for (int i = 0; i < 300; ++i) {
        out.SetValue(i, "v", i % 120);
        if (i % 7 == 0)
            out.SetValue(-i, "dup");
    }
    out.MoveUp();
    QByteArray const document = out.GetAsByteArray();
    TTaggedInputStream in(streamModeRawTags, document, checksumOn);
    ASSERT_TRUE(in.MoveDown("list"));
    unsigned char const* base = in.Start();
    auto next = [&](int node) { return IntAt(base, node); };
    auto walk = [&](int node, std::string const& name) {
        for (; node > 0; node = next(node))
            if (name == reinterpret_cast<char const*>(base + node + base[node + 6]))
                return node;
        return 0;
    };
    int const first = next(in.GetCurrentGroup() + 12);
    TRandomizer random(5);
    std::vector<int> seen { 0 };
    for (int round = 0; round < 3000; ++round) {
        int const which = random.Get(130);
        bool const dup = which >= 120 && which < 125;
        std::string const name = dup ? "dup" : "v" + (which == 0 ? std::string() : std::to_string(which));
        int lastFound;
        int lastGroup;
        in.GetSearchHint(&lastFound, &lastGroup);
        if (random.Get(10) == 0) {
            // A hint put back from earlier, as composite restores do.
            lastFound = seen[static_cast<size_t>(random.Get(static_cast<int>(seen.size())))];
            in.SetSearchHint(lastFound, lastGroup);
        }
        int expected = lastFound > 0 && lastGroup == in.GetCurrentGroup() ? walk(next(lastFound), name) : 0;
        if (expected == 0)
            expected = walk(first, name);
        int node = -1;
        in.MoveToDataStart(dup ? "dup" : "v", dup ? 0 : which, &node);
        ASSERT_EQ(node, expected) << round;
        seen.push_back(node);
    }
}
