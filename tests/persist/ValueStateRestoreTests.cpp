#include "TaggedDocuments.h"

#include "persist/TSerializedData.h"
#include "persist/ValueState.h"
#include "persist/ValueStateRestore.h"
#include "text/TStringEx.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTimeZone>
#include <QUuid>
#include <QVariant>
#include <gtest/gtest.h>

#include <string>

namespace {

class ValueStateModes : public ::testing::TestWithParam<EStreamMode>
{
protected:
    // The calls of write, then 77 as "end", to show where the restores left off.
    template <class Write> QByteArray Ended(Write write)
    {
        return Document(GetParam(), [&](TTaggedOutputStream& out) {
            write(out);
            out.SetValue(77, "end");
        });
    }
};

// Restores into a fresh value, which must then equal expected.
template <class T, class Restore> void ExpectRestored(T const& expected, Restore restore)
{
    T value {};
    EXPECT_TRUE(restore(value));
    EXPECT_EQ(value, expected);
}

} // namespace

TEST_P(ValueStateModes, GeometryAndListsComeBack)
{
    QStringList const list{QStringLiteral("a"), QString(), QStringLiteral("\u00E9t\u00E9")};
    QMap<QString, QString> const map{{QStringLiteral("k1"), QStringLiteral("v1")},
                                     {QStringLiteral("k\u00FC"), QStringLiteral("v 2")}};
    QByteArray const document = Ended([&](TTaggedOutputStream& out) {
        WriteState(QRect(QPoint(-3, 4), QPoint(10, 20)), out, 0, "rect", 0);
        WriteState_QSize(QSize(640, 480), out, 0, "size", 1);
        WriteState_QPoint(QPoint(-1, 2), out, 0, "point", 0);
        WriteState(list, out, 0, "list", 0);
        WriteMapStringStringList(map, out, 0, "map", 0);
        WriteQStringList(QStringList{QStringLiteral("x"), QStringLiteral("y")}, out, 0, "vars", 0);
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    int const group = in.GetCurrentGroup();
    ExpectRestored(QRect(QPoint(-3, 4), QPoint(10, 20)), [&](QRect& v) { return RestoreState(v, in, 0, "rect", 0); });
    ExpectRestored(QSize(640, 480), [&](QSize& v) { return RestoreState_QSize(v, in, 0, "size", 1); });
    ExpectRestored(QPoint(-1, 2), [&](QPoint& v) { return RestoreState_QPoint(v, in, 0, "point", 0); });
    QStringList restored { QStringLiteral("old") }; // replaced, not added to
    EXPECT_TRUE(RestoreState(restored, in, 0, "list", 0));
    EXPECT_EQ(restored, list);
    EXPECT_EQ(RestoreMapStringStringList(in, 0, "map", 0), map);
    // The "var" items are not looked up: as many empty strings. A plain
    // document has no names, and the strings come in order.
    EXPECT_EQ(RestoreQStringList(in, 0, "vars", 0),
              GetParam() == streamModePlain ? (QStringList{QStringLiteral("x"), QStringLiteral("y")})
                                            : (QStringList{QString(), QString()}));
    EXPECT_EQ(in.GetCurrentGroup(), group);
    EXPECT_EQ(in.GetValue(0, "end"), 77);
}

TEST_P(ValueStateModes, SingleValuesAndCarriers)
{
    QDateTime const when(QDate(2024, 2, 29), QTime(23, 59, 58, 7), QTimeZone(3600));
    TSerializedData const data(3, 9, QUuid::fromString(QStringLiteral("{0c2b3a44-7d7f-4f8b-9a51-0d3c2b1a0f99}")),
                               QByteArray("\x00\x01opaque", 8));
    TStringEx<char16_t> const ex(u"caf\u00E9", -42);
    QByteArray const document = Ended([&](TTaggedOutputStream& out) {
        WriteState(true, out, 0, "b", 0);
        WriteState(-12, out, 0, "i", 0);
        WriteState(0.1, out, 0, "d", 0);
        WriteState_QString(QStringLiteral("\u4E2D text"), out, 0, "q", 0);
        WriteState_QByteArray(QByteArray("bytes"), out, 0, "ba", 0);
        WriteState(when, out, 0, "when", 0);
        WriteState_QVariant(QVariant(42), out, 0, "var", 0);
        data.WriteState(out, 0, "data", 0);
        TString<char>("narrow").WriteState(out, 0, "ns", 0);
        TString<char16_t>(u"wide \u00FC").WriteState(out, 0, "ws", 2);
        ex.WriteState(out, 0, "ex", 0);
    });
    TTaggedInputStream in(GetParam(), document, checksumOn);
    ExpectRestored(true, [&](bool& v) { return RestoreState(v, in, 0, "b", 0); });
    ExpectRestored(-12, [&](int& v) { return RestoreState(v, in, 0, "i", 0); });
    ExpectRestored(0.1, [&](double& v) { return RestoreState(v, in, 0, "d", 0); });
    ExpectRestored(QStringLiteral("\u4E2D text"), [&](QString& v) { return RestoreState_QString(v, in, 0, "q", 0); });
    ExpectRestored(QByteArray("bytes"), [&](QByteArray& v) { return RestoreState_QByteArray(v, in, 0, "ba", 0); });
    QDateTime restoredWhen;
    EXPECT_TRUE(RestoreState(restoredWhen, in, 0, "when", 0));
    EXPECT_EQ(restoredWhen, when);
    EXPECT_EQ(restoredWhen.offsetFromUtc(), 3600);
    QVariant variant;
    EXPECT_TRUE(RestoreState_QVariant(variant, in, 0, "var", 0));
    // XML keeps the text only.
    EXPECT_EQ(variant.type(), GetParam() == streamModeXml ? QVariant::String : QVariant::Int);
    EXPECT_EQ(variant.toInt(), 42);
    ExpectRestored(data, [&](TSerializedData& v) { return v.RestoreState(in, 0, "data", 0); });
    TString<char> narrow;
    EXPECT_TRUE(narrow.RestoreState(in, 0, "ns", 0));
    EXPECT_STREQ(narrow.c_str(), "narrow");
    TString<char16_t> wide;
    EXPECT_TRUE(wide.RestoreState(in, 0, "ws", 2));
    EXPECT_TRUE(wide == u"wide \u00FC");
    TStringEx<char16_t> restoredEx;
    EXPECT_TRUE(restoredEx.RestoreState(in, 0, "ex", 0));
    EXPECT_TRUE(restoredEx == u"caf\u00E9");
    EXPECT_EQ(restoredEx.GetValue(), -42);
    EXPECT_EQ(in.GetValue(0, "end"), 77);
}

INSTANTIATE_TEST_SUITE_P(AllModes, ValueStateModes,
                         ::testing::Values(streamModePlain, streamModeRawTags, streamModeXml), ModeName);

TEST(ValueStateRestore, MissingValuesKeepOrReset)
{
    TTaggedOutputStream out(streamModeRawTags, "V");
    WriteState_QByteArray(QByteArray(), out, 0, "empty", 0);
    QByteArray const document = out.GetAsByteArray();
    TTaggedInputStream in(streamModeRawTags, document, checksumOn);

    // Geometry goes back to its empty form; everything else keeps its value.
    QRect rect(1, 2, 3, 4);
    QSize size(5, 6);
    QPoint point(7, 8);
    EXPECT_FALSE(RestoreState(rect, in, 0, "none", 0));
    EXPECT_FALSE(RestoreState_QSize(size, in, 0, "none", 0));
    EXPECT_FALSE(RestoreState_QPoint(point, in, 0, "none", 0));
    EXPECT_EQ(rect, QRect());
    EXPECT_EQ(size, QSize(-1, -1));
    EXPECT_EQ(point, QPoint(0, 0));
    QStringList list{QStringLiteral("kept")};
    QString text = QStringLiteral("kept");
    TString<char> string("kept");
    QDateTime time = QDateTime::fromSecsSinceEpoch(5);
    EXPECT_FALSE(RestoreState(list, in, 0, "none", 0));
    EXPECT_TRUE(RestoreState_QString(text, in, 0, "none", 0));
    EXPECT_FALSE(string.RestoreState(in, 0, "none", 0));
    EXPECT_FALSE(RestoreState(time, in, 0, "none", 0));
    EXPECT_EQ(list, QStringList{QStringLiteral("kept")});
    EXPECT_EQ(text, QStringLiteral("kept"));
    EXPECT_STREQ(string.c_str(), "kept");
    EXPECT_EQ(time, QDateTime::fromSecsSinceEpoch(5));
    EXPECT_TRUE(RestoreQStringList(in, 0, "none", 0).isEmpty());
    EXPECT_TRUE(RestoreMapStringStringList(in, 0, "none", 0).isEmpty());
    // An empty array answers false and is cleared, stored or not.
    QByteArray bytes("old");
    EXPECT_FALSE(RestoreStateBA(bytes, in, 0, "empty", 0));
    EXPECT_TRUE(bytes.isEmpty());
    bytes = "old";
    EXPECT_FALSE(RestoreState_QByteArray(bytes, in, 0, "none", 0));
    EXPECT_TRUE(bytes.isEmpty());
}

TEST(ValueStateRestore, ListFromEitherGeneration)
{
    for (EStreamMode mode : {streamModeRawTags, streamModeXml}) {
        TTaggedOutputStream out(mode, "V");
        out.MoveDown("older");
        out.SetValue(2, "Siz");
        out.SetValue(QStringLiteral("one"), "E", 0);
        out.SetValue(QStringLiteral("two"), "E", 1);
        out.MoveUp();
        out.MoveDown("emptyOlder");
        out.SetValue(0, "Siz");
        out.MoveUp();
        WriteState(QStringList{QStringLiteral("new")}, out, 0, "newer", 0);
        QByteArray const document = out.GetAsByteArray();
        TTaggedInputStream in(mode, document, checksumOn);

        QStringList list;
        EXPECT_TRUE(RestoreStateTV(list, in, "newer", "older", 0));
        EXPECT_EQ(list, (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
        EXPECT_TRUE(RestoreStateTV(list, in, "newer", "missing", 0));
        EXPECT_EQ(list, QStringList{QStringLiteral("new")});
        EXPECT_TRUE(RestoreStateTV(list, in, "missing", "emptyOlder", 0));
        EXPECT_TRUE(list.isEmpty());
        EXPECT_FALSE(RestoreStateTV(list, in, "missing", "missing too", 0));
    }
}
