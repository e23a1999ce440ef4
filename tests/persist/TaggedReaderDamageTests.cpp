#include "LogCapture.h"
#include "TaggedDocuments.h"

#include "diag/TException.h"
#include "math/Checksum.h"
#include "math/MemoryAlloc.h"
#include "math/TRandomizer.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

QString const kDamaged = QStringLiteral("The file is damaged (or it is of the wrong format).\n\n");

// Root at 16; "a" at 44, group "g" at 60 with "t" and "d"; "z" last.
QByteArray SmallDocument(EStreamMode mode)
{
    return Document(
        mode,
        [](TTaggedOutputStream& out) {
            out.SetValue(11, "a");
            out.MoveDown("g");
            out.SetValue("text", "t");
            out.SetValue(2.5, "d");
            out.MoveUp();
            out.SetValue(33, "z");
        },
        "Doc");
}

void PutInt(QByteArray& bytes, int at, int value)
{
    std::memcpy(bytes.data() + at, &value, 4);
}

// The message of a refused document with exceptions allowed, "" when it
// opens. reseal puts a fresh CRC in, so that only the tree check can refuse.
QString OpenFailure(QByteArray bytes, EChecksum checksum, bool reseal = false, EStreamMode mode = streamModeRawTags)
{
    if (reseal)
        PutInt(bytes, 4, static_cast<int>(ComputeCrc32(bytes.constData() + 12, bytes.size() - 12)));
    try {
        TTaggedInputStream in(mode, bytes, checksum, autoDeleteOn, canExceptionYes);
        EXPECT_TRUE(in.IsInitialized());
        return QString();
    } catch (TException const& failure) {
        return failure.Message() ? failure.Message()->qString() : QStringLiteral("no message");
    }
}

} // namespace

TEST(TaggedReaderDamage, ChecksumAndSize)
{
    QByteArray const good = SmallDocument(streamModeRawTags);
    EXPECT_EQ(OpenFailure(good, checksumOn), QString());
    QByteArray flipped = good;
    flipped[good.indexOf("text")] = 'p';
    EXPECT_EQ(OpenFailure(flipped, checksumOn), kDamaged);
    // Without the check the block opens and shows the change.
    TTaggedInputStream unchecked(streamModeRawTags, flipped, checksumOff);
    unchecked.MoveDown("g");
    EXPECT_STREQ(unchecked.GetValueA("", "t").c_str(), "pext");
    // Without exceptions: false, and defaults from then on.
    TTaggedInputStream quiet(streamModeRawTags, flipped, checksumOn);
    EXPECT_FALSE(quiet.IsInitialized());
    EXPECT_EQ(quiet.GetValue(-1, "a"), -1);

    QByteArray sized = good;
    PutInt(sized, 8, good.size() + 4);
    EXPECT_EQ(OpenFailure(sized, checksumOn), kDamaged);
    EXPECT_EQ(OpenFailure(sized, checksumOff), QString());
    PutInt(sized, 8, 12);
    EXPECT_EQ(OpenFailure(sized, checksumOn), kDamaged);
    // Below 13 bytes nothing opens, checked or not.
    EXPECT_EQ(OpenFailure(good.left(12), checksumOff), kDamaged);
    EXPECT_EQ(OpenFailure(SmallDocument(streamModePlain).left(13), checksumOff, false, streamModePlain), QString());
}

TEST(TaggedReaderDamage, TreesThatLeaveTheBlockOrMeetThemselves)
{
    QByteArray const good = SmallDocument(streamModeRawTags);
    int const root = 16;
    int const first = IntAt(good.constData(), root + 12);
    int const group = IntAt(good.constData(), first);
    ASSERT_EQ(good.mid(root + 20, 4), QByteArray("Root"));
    auto damaged = [&](auto change) {
        QByteArray bytes = good;
        change(bytes);
        return OpenFailure(bytes, checksumOn, true) == kDamaged;
    };
    EXPECT_TRUE(damaged([&](QByteArray& b) { PutInt(b, root + 12, good.size()); }));
    EXPECT_TRUE(damaged([&](QByteArray& b) { PutInt(b, root + 12, first + 2); }));
    EXPECT_TRUE(damaged([&](QByteArray& b) { PutInt(b, root + 12, -first); }));
    EXPECT_TRUE(damaged([&](QByteArray& b) { PutInt(b, first, first); }));
    // The group's last child leads on into the root's "z": met twice.
    EXPECT_TRUE(
        damaged([&](QByteArray& b) { PutInt(b, IntAt(b.constData(), group + 16), IntAt(b.constData(), root + 16)); }));
    // A name that runs to the end of the block; data that ends behind it.
    EXPECT_TRUE(damaged([&](QByteArray& b) {
        PutInt(b, b.size() - 4, 0x7F7F7F7F);
        b[first + 6] = static_cast<char>(b.size() - 4 - first);
    }));
    EXPECT_TRUE(damaged([&](QByteArray& b) { b[IntAt(b.constData(), root + 16) + 4] = static_cast<char>(200); }));
    // The tree is checked without the checksum as well.
    QByteArray looped = good;
    PutInt(looped, first, first);
    EXPECT_EQ(OpenFailure(looped, checksumOff), kDamaged);
}

TEST(TaggedReaderDamage, OddFormsOfTheWriterAreNoDamage)
{
    // A tag of 244 characters puts the int's data 256 bytes behind its node:
    // stored as offset 0, the node reads as a group named by the middle of
    // its name. An empty binary value last has its name offset at the end
    // of the block.
    std::string const longTag(244, 'n');
    TTaggedOutputStream out(streamModeRawTags, "Doc");
    out.SetValue(1, longTag.c_str());
    out.SetValue(2, "after");
    out.SetBinary(nullptr, 0, "e");
    QByteArray const bytes = out.GetAsByteArray();
    TTaggedInputStream in(streamModeRawTags, bytes, checksumOn, autoDeleteOff, canExceptionYes);
    EXPECT_EQ(in.GetValue(-1, longTag.c_str()), -1);
    EXPECT_EQ(in.GetValue(-1, "after"), 2);
    EXPECT_EQ(in.GetBinary(QByteArray("d"), "e"), QByteArray("d"));
    // In and out of the would-be group, staying inside the block.
    EXPECT_TRUE(in.MoveDown(longTag.c_str() + 12));
    EXPECT_EQ(in.GetValue(-1, "after"), -1);
    in.MoveUp();
    in.MoveUp();
    EXPECT_EQ(in.GetValue(-1, "after"), -1);
}

TEST(TaggedReaderDamage, StoredSizeBeyondTheBlock)
{
    TTaggedOutputStream out(streamModePlain, "Doc");
    out.SetBinary("abc", 3, "b");
    QByteArray document = out.GetAsByteArray();
    int const lengthAt = document.indexOf("abc") - 4;
    PutInt(document, lengthAt, 0x7FFFFFF0);
    TTaggedInputStream in(streamModePlain, document, checksumOff);
    EXPECT_EQ(in.GetBinarySize("b"), 0x7FFFFFF0);
    // What the block holds, and no allocation for the rest.
    EXPECT_EQ(in.GetBinary(QByteArray(), "b"), document.mid(lengthAt + 4));
}

TEST(TaggedReaderDamage, DocumentsThroughQFile)
{
    QTemporaryDir dir;
    auto save = [&](QString const& name, QByteArray const& bytes) {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return dir.filePath(name);
    };
    TTaggedInputStream raw(streamModeRawTags, save("raw", SmallDocument(streamModeRawTags)));
    EXPECT_EQ(raw.GetValue(0, "z"), 33);
    // A UTF-8 mark before the declaration: XML whatever the mode.
    TTaggedInputStream xml(streamModePlain, save("xml", "\xEF\xBB\xBF" + SmallDocument(streamModeXml)));
    EXPECT_TRUE(xml.XmlConvert());
    EXPECT_EQ(xml.GetValue(0, "z"), 33);
    QString const missing = dir.filePath("missing");
    try {
        TTaggedInputStream in(streamModeRawTags, missing, canExceptionYes);
        ADD_FAILURE() << "opened";
    } catch (TException const& failure) {
        EXPECT_EQ(failure.Message()->qString(), kDamaged + missing);
    }
}

// Damaged copies of real documents: whatever opens reads without leaving
// the block (the sanitizer builds watch that), the rest gives defaults.
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
            in.MoveDown("g");
            in.GetValueA("", "t");
            in.GetValue(u"", "t");
            in.GetValue(0.0, "d");
            in.GetBinary(QByteArray(), "t");
            in.MoveUp();
            in.MoveUp();
            in.MoveDown("/g/t");
            EXPECT_EQ(in.GetValue(-9, "never written"), -9);
        }
    }
    EXPECT_GT(opened, 100);
    EXPECT_GT(refused, 100);
}
