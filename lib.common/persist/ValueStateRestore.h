#pragma once

// Reading plain values back from tagged documents: the counterparts of
// ValueState.h, with the same tags. A composite value is read from its
// group, each child with the value's present part as default; a missing
// group leaves the value as it was, except that QRect, QSize and QPoint are
// reset to their empty forms first. The current group and the search hint
// are the same after the call as before.

#include "core/CommonExport.h"
#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"

#include <type_traits>

class QDateTime;
class QPoint;
class QRect;
class QSize;
class QString;
class QStringList;
class QVariant;
template <class Key, class T> class QMap;

// Groups with "L", "T", "R", "B" / "w", "h" / "x", "y"; true when the group
// was there.
COMMON_EXPORT bool RestoreState(QRect& rect, TTaggedInputStream& stream, long long version, char const* tag,
                                int index);
COMMON_EXPORT bool RestoreState_QSize(QSize& size, TTaggedInputStream& stream, long long version, char const* tag,
                                      int index);
COMMON_EXPORT bool RestoreState_QPoint(QPoint& point, TTaggedInputStream& stream, long long version,
                                       char const* tag, int index);

// "num" and the items "s", "s1"...: the counterpart of WriteState.
COMMON_EXPORT bool RestoreState(QStringList& list, TTaggedInputStream& stream, long long version, char const* tag,
                                int index);
// "cnt" and the items "s", "s1"...; empty when the group is missing or the
// count below 1. WriteQStringList names its items "var": a list that went
// through that pair comes back as as many empty strings.
COMMON_EXPORT QStringList RestoreQStringList(TTaggedInputStream& stream, long long version, char const* tag,
                                             int index);
COMMON_EXPORT QMap<QString, QString> RestoreMapStringStringList(TTaggedInputStream& stream, long long version,
                                                                char const* tag, int index);
// Reads a list from its present group tag, or from the older form under
// oldTag: a group with "Siz" and the items "E", "E1"... True when either
// was there.
COMMON_EXPORT bool RestoreStateTV(QStringList& list, TTaggedInputStream& stream, char const* tag,
                                  char const* oldTag, int index);

// Single values. The text keeps its value when missing and answers true;
// the bytes answer whether at least one byte came, and are cleared
// otherwise.
COMMON_EXPORT bool RestoreState_QString(QString& text, TTaggedInputStream& stream, long long version,
                                        char const* tag, int index);
COMMON_EXPORT bool RestoreState_QByteArray(QByteArray& bytes, TTaggedInputStream& stream, long long version,
                                           char const* tag, int index);
COMMON_EXPORT bool RestoreStateBA(QByteArray& bytes, TTaggedInputStream& stream, long long version,
                                  char const* tag, int index);
COMMON_EXPORT bool RestoreState(QDateTime& time, TTaggedInputStream& stream, long long version, char const* tag,
                                int index);

// A variant: in XML its text (a group with "s"), which comes back as a
// string; otherwise the binary of its QDataStream form, type and all.
COMMON_EXPORT void WriteState_QVariant(QVariant const& value, TTaggedOutputStream& stream, long long version,
                                       char const* tag, int index);
COMMON_EXPORT bool RestoreState_QVariant(QVariant& value, TTaggedInputStream& stream, long long version,
                                         char const* tag, int index);

// bool, int and double: the stored value, or the value kept; always true.
template <class T, class = std::enable_if_t<std::is_same_v<T, bool> || std::is_same_v<T, int>
                                            || std::is_same_v<T, double>>>
bool RestoreState(T& value, TTaggedInputStream& stream, long long, char const* tag, int index)
{
    value = stream.GetValue(value, tag, index);
    return true;
}
