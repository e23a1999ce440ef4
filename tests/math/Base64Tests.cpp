#include "ByteOracles.h"
#include "KernelLevels.h"

#include "math/Base64.h"
#include "text/TString.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

std::string Encode(QByteArray const& bytes)
{
    std::string text(size_t(Base64EncodedSize(bytes.size())), '?');
    EXPECT_EQ(EncodeBase64(bytes.constData(), bytes.size(), text.data()), int(text.size()));
    return text;
}

QByteArray Decode(std::string const& text)
{
    QByteArray bytes(Base64DecodedMaxSize(int(std::strlen(text.c_str()))), Qt::Uninitialized);
    bytes.resize(DecodeBase64(text.c_str(), bytes.data()));
    return bytes;
}

// The rules read one character at a time, as plainly as they are stated.
QByteArray PlainDecode(std::string const& text)
{
    static std::string const alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    QByteArray bytes;
    std::vector<int> group;
    auto flush = [&] {
        group.resize(4, -1);
        unsigned bits = 0;
        for (int v : group)
            bits = (bits << 6) | unsigned(v < 0 ? 0 : v);
        int const count = group[3] >= 0 ? 3 : group[2] >= 0 ? 2 : 1;
        for (int k = 0; k < count; ++k)
            bytes.append(char(bits >> (16 - 8 * k)));
        group.clear();
    };
    for (char c : text) {
        if (c == '\0')
            break;
        if (c == '=')
            group.push_back(-1);
        else if (alphabet.find(c) != std::string::npos)
            group.push_back(int(alphabet.find(c)));
        if (group.size() == 4)
            flush();
    }
    if (!group.empty())
        flush();
    return bytes;
}

TEST(Base64, EncodesLikeTheStandardForEveryLength)
{
    ForEachKernelLevel([] {
        for (int size = 0; size <= 200; ++size) {
            QByteArray const bytes = RandomBytes<QByteArray>(size_t(size), uint64_t(size) + 1);
            std::string const text = Encode(bytes);
            ASSERT_EQ(text, bytes.toBase64().toStdString()) << "size " << size;
            ASSERT_EQ(Base64EncodedSize(size), 4 * (size / 3) + (size % 3 ? 4 : 0));
            ASSERT_EQ(Decode(text), bytes) << "size " << size;
        }
        QByteArray const large = RandomBytes<QByteArray>(100003, 99);
        EXPECT_EQ(Decode(Encode(large)), large);
        // Foreign characters breaking up runs that would otherwise be fast.
        QByteArray const bytes = RandomBytes<QByteArray>(3000, 5);
        std::string text = Encode(bytes);
        for (size_t at = 7; at < text.size(); at += 97)
            text.insert(at, "\n");
        EXPECT_EQ(Decode(text), bytes);
    });
    EXPECT_EQ(EncodeBase64("x", 0, nullptr), 0);
    EXPECT_EQ(Base64EncodedSize(-3), 0);
    EXPECT_EQ(DecodeBase64(nullptr, nullptr), 0);
}

TEST(Base64, AnyByteInsideALongRunIsClassifiedLikeTheRules)
{
    std::string const clean = Encode(RandomBytes<QByteArray>(72, 17));
    ForEachKernelLevel([&] {
        for (int c = 1; c < 256; ++c)
            for (size_t at : { 0u, 5u, 31u, 32u, 63u, 95u }) {
                std::string text = clean;
                text[at] = char(c);
                ASSERT_EQ(Decode(text), PlainDecode(text)) << "byte " << c << " at " << at;
            }
    });
}

TEST(Base64, ForeignCharactersFillersAndShortGroups)
{
    struct
    {
        char const* text;
        QByteArray bytes;
    } const cases[] = {
        { "Zm9v\r\nYmFy", "foobar" }, { " Z m 9 v*Y-m_F.y ", "foobar" }, { "!!!", "" }, { "", "" }, { "Zm8=", "fo" },
        { "Zg==", "f" }, { "Zg=A", QByteArray("f\0\0", 3) }, // "=" third but not fourth: zero bits
        { "Zg==Zm8=", "ffo" }, // a filled group does not end the text
        { "=AAA", QByteArray(3, '\0') }, { "Zm9vYmE", "fooba" }, { "Zm9vYg", "foob" },
        { "Zm9vY", "foo\x60" }, // one digit alone: its six bits and two zero bits
    };
    for (auto const& c : cases) {
        EXPECT_EQ(Decode(c.text), c.bytes) << c.text;
        EXPECT_EQ(PlainDecode(c.text), c.bytes) << c.text;
    }
    // The length form stops at a terminator inside its range.
    char const embedded[] = "Zm9v\0YmFy";
    QByteArray out(9, '\0');
    EXPECT_EQ(DecodeBase64(embedded, 9, out.data()), 3);
    EXPECT_EQ(out.left(3), QByteArray("foo"));
    EXPECT_EQ(DecodeBase64(embedded + 5, 4, out.data()), 3);
    EXPECT_EQ(out.left(3), QByteArray("bar"));
}

TEST(Base64, ValuesAreEncodedInMemoryOrder)
{
    EXPECT_TRUE(EncodeBase64(0.0f) == "AAAAAA==");
    EXPECT_TRUE(EncodeBase64(-2.5f) == "AAAgwA==");
    EXPECT_TRUE(EncodeBase64(1.0) == "AAAAAAAA8D8=");
    double back = 0;
    ASSERT_EQ(DecodeBase64(EncodeBase64(-0.1).c_str(), &back), 8);
    EXPECT_EQ(back, -0.1);
}

} // namespace
