#include "LogCapture.h"

#include "diag/TException.h"
#include "math/Checksum.h"
#include "math/MemoryAlloc.h"
#include "math/TRandomizer.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "text/TString.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

QString const kDamaged = QStringLiteral("The file is damaged (or it is of the wrong format).");

QByteArray SmallDocument(EStreamMode mode)
{
    TTaggedOutputStream out(mode, "Doc");
    out.SetValue(11, "a");
    out.MoveDown("g");
    out.SetValue("text", "t");
    out.SetValue(2.5, "d");
    out.MoveUp();
    out.SetValue(33, "z");
    return out.GetAsByteArray();
}

int IntAt(QByteArray const& bytes, int at)
{
    int value;
    std::memcpy(&value, bytes.constData() + at, 4);
    return value;
}

void PutInt(QByteArray& bytes, int at, int value)
{
    std::memcpy(bytes.data() + at, &value, 4);
}

// Puts a fresh CRC in, so that only the tree check can refuse the bytes.
void Reseal(QByteArray& bytes)
{
    PutInt(bytes, 4, static_cast<int>(ComputeCrc32(bytes.constData() + 12, bytes.size() - 12)));
}

QString MessageOf(TException const& failure)
{
    return failure.Message() ? failure.Message()->qString() : QString();
}

// Opens with exceptions allowed and returns the message, or "" when the
// document opened.
QString OpenFailure(QByteArray const& bytes, EChecksum checksum, EStreamMode mode = streamModeRawTags)
{
    try {
        TTaggedInputStream in(mode, bytes, checksum, autoDeleteOff, canExceptionYes);
        EXPECT_TRUE(in.IsInitialized());
        return QString();
    } catch (TException const& failure) {
        return MessageOf(failure);
    }
}

// Offsets in SmallDocument's raw form: root, and its first child "a".
int Root(QByteArray const& bytes)
{
    return 12 + ((static_cast<int>(std::strlen(bytes.constData() + 12)) + 1 + 3) & ~3);
}

} // namespace

TEST(TaggedReaderDamage, ChecksumAndSize)
{
    QByteArray const good = SmallDocument(streamModeRawTags);
    EXPECT_EQ(OpenFailure(good, checksumOn), QString());

    QByteArray flipped = good;
    int const valueByte = good.indexOf("text");
    flipped[valueByte] = static_cast<char>(flipped[valueByte] ^ 0x04);
    EXPECT_EQ(OpenFailure(flipped, checksumOn), kDamaged + "\n\n");
    // Without the check the block opens and shows the change.
    {
        TTaggedInputStream in(streamModeRawTags, flipped, checksumOff);
        ASSERT_TRUE(in.IsInitialized());
        in.MoveDown("g");
        EXPECT_STREQ(in.GetValueA("", "t").c_str(), "pext");
    }
    // Without exceptions: false and defaults.
    TTaggedInputStream quiet(streamModeRawTags, flipped, checksumOn);
    EXPECT_FALSE(quiet.IsInitialized());
    EXPECT_FALSE(quiet.IsValid());
    EXPECT_EQ(quiet.GetValue(-1, "a"), -1);

    QByteArray tooLong = good;
    PutInt(tooLong, 8, good.size() + 4);
    EXPECT_EQ(OpenFailure(tooLong, checksumOn), kDamaged + "\n\n");
    EXPECT_EQ(OpenFailure(tooLong, checksumOff), QString());
    QByteArray tooShort = good;
    PutInt(tooShort, 8, 12);
    EXPECT_EQ(OpenFailure(tooShort, checksumOn), kDamaged + "\n\n");

    // Below 13 bytes nothing opens, checked or not.
    EXPECT_EQ(OpenFailure(good.left(12), checksumOff), kDamaged + "\n\n");
    EXPECT_EQ(OpenFailure(QByteArray(), checksumOff, streamModePlain), kDamaged + "\n\n");
    EXPECT_EQ(OpenFailure(SmallDocument(streamModePlain).left(13), checksumOff, streamModePlain), QString());
}

TEST(TaggedReaderDamage, TreeThatLeavesTheBlock)
{
    QByteArray const good = SmallDocument(streamModeRawTags);
    int const root = Root(good);
    int const first = IntAt(good, root + 12);
    ASSERT_GT(first, root);
    auto damaged = [&](auto change) {
        QByteArray bytes = good;
        change(bytes);
        Reseal(bytes);
        return OpenFailure(bytes, checksumOn);
    };
    EXPECT_EQ(damaged([&](QByteArray& b) { PutInt(b, root + 12, good.size()); }), kDamaged + "\n\n");
    EXPECT_EQ(damaged([&](QByteArray& b) { PutInt(b, root + 12, first + 2); }), kDamaged + "\n\n");
    EXPECT_EQ(damaged([&](QByteArray& b) { PutInt(b, root + 12, -first); }), kDamaged + "\n\n");
    // A sibling chain that comes back on itself.
    EXPECT_EQ(damaged([&](QByteArray& b) { PutInt(b, first, first); }), kDamaged + "\n\n");
    // A name that runs to the end of the block.
    EXPECT_EQ(damaged([&](QByteArray& b) {
                  PutInt(b, b.size() - 4, 0x7F7F7F7F);
                  b[first + 6] = static_cast<char>(b.size() - 4 - first);
              }),
              kDamaged + "\n\n");
    // A small value whose data would end behind the block.
    int const last = IntAt(good, root + 16);
    EXPECT_EQ(damaged([&](QByteArray& b) { b[last + 4] = static_cast<char>(200); }), kDamaged + "\n\n");
    // The check runs without the checksum as well.
    QByteArray looped = good;
    PutInt(looped, first, first);
    EXPECT_EQ(OpenFailure(looped, checksumOff), kDamaged + "\n\n");
}

TEST(TaggedReaderDamage, SharedNodesAreDamage)
{
    TTaggedOutputStream out(streamModeRawTags, "Doc");
    out.MoveDown("g1");
    out.SetValue(1, "a");
    out.SetValue(2, "b");
    out.MoveUp();
    out.MoveDown("g2");
    out.SetValue(3, "c");
    out.MoveUp();
    QByteArray bytes = out.GetAsByteArray();
    int const root = Root(bytes);
    int const g1 = IntAt(bytes, root + 12);
    int const g2 = IntAt(bytes, g1);
    int const b = IntAt(bytes, IntAt(bytes, g1 + 12));
    // g2's only child now leads on into g1's "b".
    PutInt(bytes, IntAt(bytes, g2 + 12), b);
    Reseal(bytes);
    EXPECT_EQ(OpenFailure(bytes, checksumOn), kDamaged + "\n\n");
}

TEST(TaggedReaderDamage, OddFormsOfTheWriterAreNoDamage)
{
    // A tag of 244 characters puts the int's data 256 bytes behind its node:
    // stored as offset 0, the node reads as a group named by the middle of
    // its name. An empty binary value last in the document has its name
    // offset behind its name, at the end of the block.
    std::string const longTag(244, 'n');
    TTaggedOutputStream out(streamModeRawTags, "Doc");
    out.SetValue(1, longTag.c_str());
    out.SetValue(2, "after");
    out.SetBinary(nullptr, 0, "e");
    QByteArray const bytes = out.GetAsByteArray();
    TTaggedInputStream in(streamModeRawTags, bytes, checksumOn, autoDeleteOff, canExceptionYes);
    ASSERT_TRUE(in.IsInitialized());
    EXPECT_EQ(in.GetValue(-1, longTag.c_str()), -1);
    EXPECT_EQ(in.GetValue(-1, "after"), 2);
    EXPECT_EQ(in.GetBinarySize("e"), 0);
    EXPECT_EQ(in.GetBinary(QByteArray("d"), "e"), QByteArray("d"));
    // Entering the would-be group and leaving it stays inside the block.
    EXPECT_TRUE(in.MoveDown(longTag.c_str() + 12));
    EXPECT_EQ(in.GetValue(-1, "after"), -1);
    in.MoveUp();
    in.MoveUp();
    EXPECT_EQ(in.GetValue(-1, "after"), -1);
}

TEST(TaggedReaderDamage, StoredSizesBeyondTheBlock)
{
    TTaggedOutputStream out(streamModePlain, "Doc");
    out.SetBinary("abc", 3, "b");
    QByteArray document = out.GetAsByteArray();
    int const lengthAt = document.indexOf("abc") - 4;
    PutInt(document, lengthAt, 0x7FFFFFF0);
    TTaggedInputStream in(streamModePlain, document, checksumOff);
    EXPECT_EQ(in.GetBinarySize("b"), 0x7FFFFFF0);
    // What the block holds, and no allocation for the rest.
    QByteArray const bytes = in.GetBinary(QByteArray(), "b");
    EXPECT_EQ(bytes, document.mid(lengthAt + 4));
    EXPECT_EQ(in.Input().GetPosition(), in.Size());
}

TEST(TaggedReaderDamage, FailedOpenFreesAnOwnedBlock)
{
    QByteArray const good = SmallDocument(streamModeRawTags);
    auto* block = static_cast<char*>(malloc_ex(good.size()));
    std::memcpy(block, good.constData(), static_cast<size_t>(good.size()));
    block[good.size() - 1] ^= 1;
    try {
        TTaggedInputStream in(streamModeRawTags, block, good.size(), checksumOn, autoDeleteOn, canExceptionYes);
        ADD_FAILURE() << "opened";
    } catch (TException const& failure) {
        EXPECT_EQ(MessageOf(failure), kDamaged + "\n\n");
    }
    // Converted XML is the stream's own block, whatever the caller said.
    QByteArray const xml = SmallDocument(streamModeXml);
    TTaggedInputStream in(streamModeXml, xml.constData(), xml.size(), checksumOn, autoDeleteOff);
    EXPECT_EQ(in.GetValue(0, "z"), 33);
}

TEST(TaggedReaderDamage, DocumentsThroughQFile)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    auto save = [&](QString const& name, QByteArray const& bytes) {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return dir.filePath(name);
    };
    QString const raw = save("raw.doc", SmallDocument(streamModeRawTags));
    // A UTF-8 mark before the declaration: read as XML whatever the mode.
    QString const xml = save("text.doc", "\xEF\xBB\xBF" + SmallDocument(streamModeXml));
    for (QString const& name : {raw, xml}) {
        TTaggedInputStream in(name == xml ? streamModePlain : streamModeRawTags, name, canExceptionYes);
        EXPECT_EQ(in.XmlConvert(), name == xml);
        EXPECT_EQ(in.GetValue(0, "z"), 33) << name.toStdString();
    }
    QString const missing = dir.filePath("missing.doc");
    try {
        TTaggedInputStream in(streamModeRawTags, missing, canExceptionYes);
        ADD_FAILURE() << "opened";
    } catch (TException const& failure) {
        EXPECT_EQ(MessageOf(failure), kDamaged + "\n\n" + missing);
    }
    TTaggedInputStream quiet(streamModeRawTags, missing);
    EXPECT_FALSE(quiet.IsInitialized());
}

// Damaged copies of real documents, some bytes changed at a time: whatever
// opens reads without leaving the block (the sanitizer builds watch that),
// and whatever does not open gives the defaults.
TEST(TaggedReaderDamage, RandomDamageNeverEscapes)
{
    LogCapture quiet; // damaged XML closes groups that were never opened
    TRandomizer random(77);
    int opened = 0;
    int refused = 0;
    for (EStreamMode mode : {streamModeRawTags, streamModeXml}) {
        QByteArray const good = SmallDocument(mode);
        for (int round = 0; round < 3000; ++round) {
            QByteArray bytes = good;
            for (int n = 1 + random.Get(4); n > 0; --n)
                bytes[random.Get(bytes.size())] = static_cast<char>(random.Get(256));
            TTaggedInputStream in(mode, bytes, checksumOff);
            if (!in.IsInitialized()) {
                ++refused;
                EXPECT_EQ(in.GetValue(-5, "a"), -5);
                continue;
            }
            ++opened;
            in.GetValue(0, "a");
            in.MoveDown("g");
            in.GetValueA("", "t");
            in.GetValue(u"", "t");
            in.GetValue(0.0, "d");
            in.GetBinary(QByteArray(), "t");
            in.ForEachGroup([](TTaggedInputStream* s, char const*, int, unsigned long long) {
                s->GetValue(0, "a");
                return true;
            }, 0);
            in.MoveUp();
            in.MoveUp();
            in.MoveDown("/g/t");
            EXPECT_EQ(in.GetValue(-9, "never written"), -9);
        }
    }
    EXPECT_GT(opened, 100);
    EXPECT_GT(refused, 100);
}
