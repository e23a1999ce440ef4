#pragma once

// The stored form of plain values in tagged documents: each value type has a
// WriteState that names it by tag and index. Composite values are a group
// with short child names; single values are one node.

#include "core/CommonExport.h"
#include "persist/TTaggedOutputStream.h"

#include <type_traits>

class QByteArray;
class QDateTime;
class QPoint;
class QRect;
class QSize;
class QString;
class QStringList;
template <class Key, class T> class QMap;

// Groups with "L", "T", "R", "B" / "w", "h" / "x", "y" as int.
COMMON_EXPORT void WriteState(QRect const& rect, TTaggedOutputStream& stream, long long version, char const* tag,
                              int index);
COMMON_EXPORT void WriteState_QSize(QSize const& size, TTaggedOutputStream& stream, long long version,
                                    char const* tag, int index);
COMMON_EXPORT void WriteState_QPoint(QPoint const& point, TTaggedOutputStream& stream, long long version,
                                     char const* tag, int index);

// A group with the count "num" and the items "s", "s1", "s2"...
COMMON_EXPORT void WriteState(QStringList const& list, TTaggedOutputStream& stream, long long version,
                              char const* tag, int index);
// A group with the count "cnt" and the items "var", "var1"... Nothing for
// an empty list. Its reading counterpart looks for "s" items: a list that
// must come back whole goes through WriteState instead.
COMMON_EXPORT void WriteQStringList(QStringList const& list, TTaggedOutputStream& stream, long long version,
                                    char const* tag, int index);
// A group with the count "cnt" and the pairs "k" and "s" of the same index.
// Nothing for an empty map.
COMMON_EXPORT void WriteMapStringStringList(QMap<QString, QString> const& map, TTaggedOutputStream& stream,
                                            long long version, char const* tag, int index);

// Single nodes: the text as UTF-8, the bytes as binary, the date and time
// as the binary of its QDataStream form (version Qt_5_15).
COMMON_EXPORT void WriteState_QString(QString const& text, TTaggedOutputStream& stream, long long version,
                                      char const* tag, int index);
COMMON_EXPORT void WriteState_QByteArray(QByteArray const& bytes, TTaggedOutputStream& stream, long long version,
                                         char const* tag, int index);
COMMON_EXPORT void WriteStateBA(QByteArray const& bytes, TTaggedOutputStream& stream, long long version,
                                char const* tag, int index);
COMMON_EXPORT void WriteState(QDateTime const& time, TTaggedOutputStream& stream, long long version,
                              char const* tag, int index);

// bool, int and double: one value node.
template <class T, class = std::enable_if_t<std::is_same_v<T, bool> || std::is_same_v<T, int>
                                            || std::is_same_v<T, double>>>
void WriteState(T value, TTaggedOutputStream& stream, long long, char const* tag, int index)
{
    stream.SetValue(value, tag, index);
}
