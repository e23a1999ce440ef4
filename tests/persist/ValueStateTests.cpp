#include "persist/ValueState.h"

#include <QByteArray>
#include <QDataStream>
#include <QDateTime>
#include <QMap>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

#include <string>

namespace {

std::string Body(TTaggedOutputStream& stream)
{
    unsigned int const size = stream.CloseWriting();
    std::string const text(reinterpret_cast<char const*>(stream.Start()), size);
    std::string const head = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<T>\r\n";
    std::string const tail = "</T>\r\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
    return text.substr(head.size(), text.size() - head.size() - tail.size());
}

} // namespace

TEST(ValueStateWrite, GeometryGroups)
{
    TTaggedOutputStream stream(streamModeXml, "T");
    WriteState(QRect(1, 2, 3, 4), stream, 0, "r", 0);
    WriteState_QSize(QSize(5, -1), stream, 0, "sz", 1);
    WriteState_QPoint(QPoint(-7, 8), stream, 0, "p", 0);
    EXPECT_EQ(Body(stream), "\t<r>\r\n\t\t<L>1</L>\r\n\t\t<T>2</T>\r\n\t\t<R>3</R>\r\n\t\t<B>5</B>\r\n\t</r>\r\n"
                            "\t<sz-1>\r\n\t\t<w>5</w>\r\n\t\t<h>-1</h>\r\n\t</sz-1>\r\n"
                            "\t<p>\r\n\t\t<x>-7</x>\r\n\t\t<y>8</y>\r\n\t</p>\r\n");
}

TEST(ValueStateWrite, StringListsInTheirTwoForms)
{
    TTaggedOutputStream stream(streamModeXml, "T");
    QStringList const list{"a", "b<", "\xC3\xA9"};
    WriteState(list, stream, 0, "l", 0);
    WriteQStringList(QStringList{"x", "y"}, stream, 0, "q", 0);
    WriteQStringList(QStringList(), stream, 0, "none", 0);
    EXPECT_EQ(Body(stream), "\t<l>\r\n\t\t<num>3</num>\r\n\t\t<s>a</s>\r\n\t\t<s-1>b<</s-1>\r\n"
                            "\t\t<s-2><![CDATA[\xC3\xA9]]></s-2>\r\n\t</l>\r\n"
                            "\t<q>\r\n\t\t<cnt>2</cnt>\r\n\t\t<var>x</var>\r\n\t\t<var-1>y</var-1>\r\n\t</q>\r\n");
}

TEST(ValueStateWrite, MapsPairKeysAndValues)
{
    TTaggedOutputStream stream(streamModeXml, "T");
    QMap<QString, QString> map;
    map.insert("k2", "two");
    map.insert("k1", "one");
    WriteMapStringStringList(map, stream, 0, "m", 0);
    WriteMapStringStringList(QMap<QString, QString>(), stream, 0, "empty", 0);
    EXPECT_EQ(Body(stream), "\t<m>\r\n\t\t<cnt>2</cnt>\r\n\t\t<k>k1</k>\r\n\t\t<s>one</s>\r\n"
                            "\t\t<k-1>k2</k-1>\r\n\t\t<s-1>two</s-1>\r\n\t</m>\r\n");
}

TEST(ValueStateWrite, SingleNodes)
{
    TTaggedOutputStream stream(streamModeXml, "T");
    WriteState(true, stream, 0, "b", 0);
    WriteState(-3, stream, 0, "i", 2);
    WriteState(1.0, stream, 0, "d", 0);
    WriteState_QString(QString("text"), stream, 0, "s", 0);
    WriteState_QByteArray(QByteArray("\x01\x02", 2), stream, 0, "ba", 0);
    WriteStateBA(QByteArray(), stream, 0, "none", 0);
    EXPECT_EQ(Body(stream), "\t<b>1</b>\r\n\t<i-2>-3</i-2>\r\n\t<d>AAAAAAAA8D8=</d>\r\n\t<s>text</s>\r\n"
                            "\t<ba>AQI=</ba>\r\n\t<none></none>\r\n");
}

TEST(ValueStateWrite, DateTimeIsItsDataStreamForm)
{
    QDateTime const time(QDate(2024, 2, 29), QTime(13, 14, 15, 16), Qt::UTC);
    QByteArray expected;
    QDataStream out(&expected, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << time;

    TTaggedOutputStream stream(streamModeXml, "T");
    WriteState(time, stream, 0, "t", 0);
    EXPECT_EQ(Body(stream), "\t<t>" + expected.toBase64().toStdString() + "</t>\r\n");
}
