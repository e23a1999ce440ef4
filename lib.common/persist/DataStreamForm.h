#pragma once

// Library-internal: values stored as the bytes of their QDataStream form,
// in a pinned version, since the stored form must not follow Qt.

#include <QByteArray>
#include <QDataStream>

constexpr int kStoredDataStreamVersion = QDataStream::Qt_5_15;

template <class T>
QByteArray DataStreamBytes(T const& value)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(kStoredDataStreamVersion);
    out << value;
    return bytes;
}

// False, and value as it was, for no bytes or bytes that don't read whole.
template <class T>
bool ReadDataStreamBytes(QByteArray const& bytes, T& value)
{
    if (bytes.isEmpty())
        return false;
    QDataStream in(bytes);
    in.setVersion(kStoredDataStreamVersion);
    T restored;
    in >> restored;
    if (in.status() != QDataStream::Ok)
        return false;
    value = restored;
    return true;
}
