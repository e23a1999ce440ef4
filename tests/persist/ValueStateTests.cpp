#include "TaggedDocuments.h"

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

// The stored forms of the values, in XML where they can be read.
TEST(ValueStateWrite, XmlFormsOfEveryKind)
{
    QDateTime const time(QDate(2024, 2, 29), QTime(13, 14, 15, 16), Qt::UTC);
    QByteArray timeData; // a date and time is its data stream form
    QDataStream timeStream(&timeData, QIODevice::WriteOnly);
    timeStream.setVersion(QDataStream::Qt_5_15);
    timeStream << time;
    QMap<QString, QString> map;
    map.insert("k2", "two");
    map.insert("k1", "one");

    TTaggedOutputStream stream(streamModeXml, "T");
    WriteState(QRect(1, 2, 3, 4), stream, 0, "r", 0);
    WriteState_QSize(QSize(5, -1), stream, 0, "sz", 1);
    WriteState_QPoint(QPoint(-7, 8), stream, 0, "p", 0);
    WriteState(QStringList { "a", "b<", "\xC3\xA9" }, stream, 0, "l", 0);
    WriteQStringList(QStringList { "x", "y" }, stream, 0, "q", 0);
    WriteQStringList(QStringList(), stream, 0, "none", 0);
    WriteMapStringStringList(map, stream, 0, "m", 0);
    WriteMapStringStringList(QMap<QString, QString>(), stream, 0, "none", 0);
    WriteState(true, stream, 0, "b", 0);
    WriteState(-3, stream, 0, "i", 2);
    WriteState(1.0, stream, 0, "d", 0);
    WriteState_QString(QString("text"), stream, 0, "s", 0);
    WriteState_QByteArray(QByteArray("\x01\x02", 2), stream, 0, "ba", 0);
    WriteStateBA(QByteArray(), stream, 0, "empty", 0);
    WriteState(time, stream, 0, "t", 0);
    EXPECT_EQ(Text(stream),
        "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n<T>\r\n"
        "\t<r>\r\n\t\t<L>1</L>\r\n\t\t<T>2</T>\r\n\t\t<R>3</R>\r\n\t\t<B>5</B>\r\n\t</r>\r\n"
        "\t<sz-1>\r\n\t\t<w>5</w>\r\n\t\t<h>-1</h>\r\n\t</sz-1>\r\n"
        "\t<p>\r\n\t\t<x>-7</x>\r\n\t\t<y>8</y>\r\n\t</p>\r\n"
        "\t<l>\r\n\t\t<num>3</num>\r\n\t\t<s>a</s>\r\n\t\t<s-1>b<</s-1>\r\n"
        "\t\t<s-2><![CDATA[\xC3\xA9]]></s-2>\r\n\t</l>\r\n"
        "\t<q>\r\n\t\t<cnt>2</cnt>\r\n\t\t<var>x</var>\r\n\t\t<var-1>y</var-1>\r\n\t</q>\r\n"
        "\t<m>\r\n\t\t<cnt>2</cnt>\r\n\t\t<k>k1</k>\r\n\t\t<s>one</s>\r\n"
        "\t\t<k-1>k2</k-1>\r\n\t\t<s-1>two</s-1>\r\n\t</m>\r\n"
        "\t<b>1</b>\r\n\t<i-2>-3</i-2>\r\n\t<d>AAAAAAAA8D8=</d>\r\n\t<s>text</s>\r\n"
        "\t<ba>AQI=</ba>\r\n\t<empty></empty>\r\n"
        "\t<t>"
            + timeData.toBase64().toStdString() + "</t>\r\n</T>\r\n");
}
