#include "persist/ValueStateRestore.h"

#include "persist/DataStreamForm.h"
#include "text/TString.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace {

QByteArray ReadBytes(TTaggedInputStream& stream, char const* tag, int index)
{
    return stream.GetBinary(QByteArray(), tag, index);
}

} // namespace

bool RestoreState(QRect& rect, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    rect = QRect();
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    int const left = stream.GetValue(rect.left(), "L");
    int const top = stream.GetValue(rect.top(), "T");
    int const right = stream.GetValue(rect.right(), "R");
    int const bottom = stream.GetValue(rect.bottom(), "B");
    rect.setCoords(left, top, right, bottom);
    return true;
}

bool RestoreState_QSize(QSize& size, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    size = QSize();
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    int const width = stream.GetValue(size.width(), "w");
    int const height = stream.GetValue(size.height(), "h");
    size = QSize(width, height);
    return true;
}

bool RestoreState_QPoint(QPoint& point, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    point = QPoint();
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    int const x = stream.GetValue(point.x(), "x");
    int const y = stream.GetValue(point.y(), "y");
    point = QPoint(x, y);
    return true;
}

bool RestoreState(QStringList& list, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    int const count = stream.GetValue(list.size(), "num");
    QStringList items;
    items.reserve(count > 0 ? count : 0);
    for (int i = 0; i < count; ++i)
        items.append(stream.GetValue(i < list.size() ? list[i] : QString(), "s", i));
    list = items;
    return true;
}

QStringList RestoreQStringList(TTaggedInputStream& stream, long long, char const* tag, int index)
{
    QStringList list;
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return list;
    int const count = stream.GetValue(0, "cnt");
    for (int i = 0; i < count; ++i)
        list.append(stream.GetValue(QString(), "s", i));
    return list;
}

QMap<QString, QString> RestoreMapStringStringList(TTaggedInputStream& stream, long long, char const* tag,
                                                  int index)
{
    QMap<QString, QString> map;
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return map;
    int const count = stream.GetValue(0, "cnt");
    for (int i = 0; i < count; ++i) {
        QString const key = stream.GetValue(QString(), "k", i);
        map.insert(key, stream.GetValue(QString(), "s", i));
    }
    return map;
}

bool RestoreStateTV(QStringList& list, TTaggedInputStream& stream, char const* tag, char const* oldTag, int index)
{
    if (!stream.ExistKey(oldTag, 0, 0))
        return RestoreState(list, stream, 0, tag, index);
    TScopedInputGroup group(stream, oldTag, 0);
    int const count = stream.GetValue(0, "Siz");
    QStringList items;
    for (int i = 0; i < count; ++i) {
        QString item;
        RestoreState_QString(item, stream, 0, "E", i);
        items.append(item);
    }
    list = items;
    return true;
}

bool RestoreState_QString(QString& text, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    text = stream.GetValue(text, tag, index);
    return true;
}

bool RestoreState_QByteArray(QByteArray& bytes, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    bytes = ReadBytes(stream, tag, index);
    return !bytes.isEmpty();
}

bool RestoreStateBA(QByteArray& bytes, TTaggedInputStream& stream, long long version, char const* tag, int index)
{
    return RestoreState_QByteArray(bytes, stream, version, tag, index);
}

bool RestoreState(QDateTime& time, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    return ReadDataStreamBytes(ReadBytes(stream, tag, index), time);
}

void WriteState_QVariant(QVariant const& value, TTaggedOutputStream& stream, long long version, char const* tag,
                         int index)
{
    if (stream.XML()) {
        TString<char>(value.toString()).WriteState(stream, version, tag, index);
        return;
    }
    stream.SetBinary(DataStreamBytes(value), tag, index);
}

bool RestoreState_QVariant(QVariant& value, TTaggedInputStream& stream, long long version, char const* tag,
                           int index)
{
    if (stream.XmlConvert()) {
        TString<char> text;
        if (!text.RestoreState(stream, version, tag, index))
            return false;
        value = QVariant(text.qString());
        return true;
    }
    return ReadDataStreamBytes(ReadBytes(stream, tag, index), value);
}
