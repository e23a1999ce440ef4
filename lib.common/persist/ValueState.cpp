#include "persist/ValueState.h"

#include "persist/DataStreamForm.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

void WriteState(QRect const& rect, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(rect.left(), "L");
    stream.SetValue(rect.top(), "T");
    stream.SetValue(rect.right(), "R");
    stream.SetValue(rect.bottom(), "B");
}

void WriteState_QSize(QSize const& size, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(size.width(), "w");
    stream.SetValue(size.height(), "h");
}

void WriteState_QPoint(QPoint const& point, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(point.x(), "x");
    stream.SetValue(point.y(), "y");
}

void WriteState(QStringList const& list, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(list.size(), "num");
    for (int i = 0; i < list.size(); ++i)
        stream.SetValue(list[i], "s", i);
}

void WriteQStringList(QStringList const& list, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    if (list.isEmpty())
        return;
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(list.size(), "cnt");
    for (int i = 0; i < list.size(); ++i)
        stream.SetValue(list[i], "var", i);
}

void WriteMapStringStringList(QMap<QString, QString> const& map, TTaggedOutputStream& stream, long long,
                              char const* tag, int index)
{
    if (map.isEmpty())
        return;
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(map.size(), "cnt");
    int i = 0;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it, ++i) {
        stream.SetValue(it.key(), "k", i);
        stream.SetValue(it.value(), "s", i);
    }
}

void WriteState_QString(QString const& text, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    stream.SetValue(text, tag, index);
}

void WriteState_QByteArray(QByteArray const& bytes, TTaggedOutputStream& stream, long long, char const* tag,
                           int index)
{
    stream.SetBinary(bytes, tag, index);
}

void WriteStateBA(QByteArray const& bytes, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    stream.SetBinary(bytes, tag, index);
}

void WriteState(QDateTime const& time, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    stream.SetBinary(DataStreamBytes(time), tag, index);
}
