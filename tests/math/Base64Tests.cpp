#include "math/Base64.h"
#include "math/TRandomizer.h"

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
    for (int size = 0; size <= 200; ++size) {
        QByteArray const bytes = RandomBytes(size, uint64_t(size) + 1);
        std::string const text = Encode(bytes);
        ASSERT_EQ(text, bytes.toBase64().toStdString()) << "size " << size;
        ASSERT_EQ(Base64EncodedSize(size), 4 * (size / 3) + (size % 3 ? 4 : 0));
        ASSERT_EQ(Decode(text.c_str()), bytes) << "size " << size;
    }
    QByteArray const large = RandomBytes(100003, 99);
    EXPECT_EQ(Decode(Encode(large).c_str()), large);
    EXPECT_EQ(Encode(QByteArray("foobar")), "Zm9vYmFy");
    EXPECT_EQ(Encode(QByteArray("fo")), "Zm8=");
    EXPECT_EQ(Encode(QByteArray("f")), "Zg==");
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

TEST(Base64, DecodedSizeCoversAnyText)
{
    EXPECT_EQ(Base64DecodedMaxSize(0), 0);
    EXPECT_EQ(Base64DecodedMaxSize(4), 3);
    EXPECT_EQ(Base64DecodedMaxSize(5), 6);
    EXPECT_EQ(Base64DecodedMaxSize(8), 6);
}

} // namespace
