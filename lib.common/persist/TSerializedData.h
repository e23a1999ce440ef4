#pragma once

#include "core/CommonExport.h"

#include <QByteArray>
#include <QUuid>

class TTaggedInputStream;
class TTaggedOutputStream;

// A block of opaque state with two version numbers and an id: "Ver", "myv",
// "id" and "byt" in a group.
class COMMON_EXPORT TSerializedData
{
public:
    TSerializedData() = default;
    TSerializedData(int version, int myVersion, QUuid const& id, QByteArray const& data)
        : m_version(version), m_myVersion(myVersion), m_id(id), m_data(data)
    {
    }

    int GetVersion() const { return m_version; }
    int GetMyVersion() const { return m_myVersion; }
    QUuid const& GetId() const { return m_id; }
    QByteArray const& GetData() const { return m_data; }
    void SetVersion(int version) { m_version = version; }
    void SetMyVersion(int version) { m_myVersion = version; }
    void SetId(QUuid const& id) { m_id = id; }
    void SetData(QByteArray const& data) { m_data = data; }
    bool operator==(TSerializedData const& other) const
    {
        return m_version == other.m_version && m_myVersion == other.m_myVersion && m_id == other.m_id
               && m_data == other.m_data;
    }
    bool operator!=(TSerializedData const& other) const { return !(*this == other); }

    void WriteState(TTaggedOutputStream& stream, long long version, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long version, char const* tag, int index);

private:
    int m_version = 0;
    int m_myVersion = 0;
    QUuid m_id;
    QByteArray m_data;
};
