#include "KernelLevels.h"

#include "math/Base64.h"
#include "math/TRandomizer.h"
#include "text/TString.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

QByteArray RandomBytes(int size, uint64_t seed)
{
    TRandomizer random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& b : bytes)
        b = static_cast<char>(random.Next32());
    return bytes;
}

std::string Encode(QByteArray const& bytes)
{
    std::string text(size_t(Base64EncodedSize(bytes.size())), '?');
    int const written = EncodeBase64(bytes.constData(), bytes.size(), text.data());
    EXPECT_EQ(written, int(text.size()));
    return text;
}

QByteArray Decode(char const* text)
{
    QByteArray bytes(Base64DecodedMaxSize(int(std::strlen(text))), Qt::Uninitialized);
    bytes.resize(DecodeBase64(text, bytes.data()));
    return bytes;
}

TEST(Base64, EncodesLikeTheStandardForEveryLength)
{
    ForEachKernelLevel([] {
        for (int size = 0; size <= 200; ++size) {
            QByteArray const bytes = RandomBytes(size, uint64_t(size) + 1);
            std::string const text = Encode(bytes);
            ASSERT_EQ(text, bytes.toBase64().toStdString()) << "size " << size;
            ASSERT_EQ(Base64EncodedSize(size), 4 * (size / 3) + (size % 3 ? 4 : 0));
            ASSERT_EQ(Decode(text.c_str()), bytes) << "size " << size;
        }
        QByteArray const large = RandomBytes(100003, 99);
        EXPECT_EQ(Decode(Encode(large).c_str()), large);
    });
    EXPECT_EQ(EncodeBase64("x", 0, nullptr), 0);
    EXPECT_EQ(Base64EncodedSize(-3), 0);
}

TEST(Base64, DecoderSkipsForeignCharactersAnywhere)
{
    EXPECT_EQ(Decode("Zm9v\r\nYmFy"), QByteArray("foobar"));
    EXPECT_EQ(Decode(" Z m 9 v*Y-m_F.y "), QByteArray("foobar"));
    EXPECT_EQ(Decode("!!!"), QByteArray());
    EXPECT_EQ(Decode(""), QByteArray());
    EXPECT_EQ(DecodeBase64(nullptr, nullptr), 0);
    // Foreign characters inside a run that would otherwise be fast.
    QByteArray const bytes = RandomBytes(3000, 5);
    std::string text = Encode(bytes);
    for (size_t at = 7; at < text.size(); at += 97)
        text.insert(at, "\n");
    EXPECT_EQ(Decode(text.c_str()), bytes);
}

// The rules read one character at a time, as plainly as they are stated.
QByteArray PlainDecode(std::string const& text)
{
    static std::string const alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    QByteArray bytes;
    std::vector<int> group;
    auto flush = [&] {
        while (group.size() < 4)
            group.push_back(-1);
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

TEST(Base64, AnyByteInsideALongRunIsClassifiedLikeTheRules)
{
    std::string const clean = Encode(RandomBytes(72, 17));
    ForEachKernelLevel([&] {
        for (int c = 1; c < 256; ++c)
            for (size_t at : { 0u, 5u, 31u, 32u, 63u, 95u }) {
                std::string text = clean;
                text[at] = char(c);
                ASSERT_EQ(Decode(text.c_str()), PlainDecode(text)) << "byte " << c << " at " << at;
            }
    });
}

TEST(Base64, FillerDecidesTheCountOnlyAtTheEndOfAGroup)
{
    EXPECT_EQ(Decode("Zm8="), QByteArray("fo"));
    EXPECT_EQ(Decode("Zg=="), QByteArray("f"));
    // "=" third but not fourth: three bytes, the filler counting as zero.
    EXPECT_EQ(Decode("Zg=A"), QByteArray("f\0\0", 3));
    // A filled group does not end the text.
    EXPECT_EQ(Decode("Zg==Zm8="), QByteArray("ffo"));
    // "=" first counts as zero bits.
    EXPECT_EQ(Decode("=AAA"), QByteArray(3, '\0'));
}

TEST(Base64, GroupCutShortReadsAsFilled)
{
    EXPECT_EQ(Decode("Zm9vYmE"), QByteArray("fooba"));
    EXPECT_EQ(Decode("Zm9vYg"), QByteArray("foob"));
    // One digit alone still gives a byte: its six bits and two zero bits.
    EXPECT_EQ(Decode("Zm9vY"), QByteArray("foo\x60"));
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
    TString<char> const text = EncodeBase64(-0.1);
    double back = 0;
    ASSERT_EQ(DecodeBase64(text.c_str(), &back), 8);
    EXPECT_EQ(back, -0.1);
}

} // namespace
