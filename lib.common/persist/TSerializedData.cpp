#include "persist/TSerializedData.h"

#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"

void TSerializedData::WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(m_version, "Ver");
    stream.SetValue(m_myVersion, "myv");
    stream.SetValue(m_id, "id");
    stream.SetBinary(m_data, "byt");
}

bool TSerializedData::RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    m_version = stream.GetValue(m_version, "Ver");
    m_myVersion = stream.GetValue(m_myVersion, "myv");
    m_id = stream.GetValue(m_id, "id");
    m_data = stream.GetBinary(m_data, "byt");
    return true;
}
