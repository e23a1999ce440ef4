#include "persist/TScopedTag.h"

#include "diag/LogCategories.h"
#include "persist/TTaggedOutputStream.h"

TScopedTag::TScopedTag(TTaggedOutputStream& stream, char const* tag, int index)
    : m_stream(stream), m_node(0), m_dataStart(0)
{
    if (stream.XML()) {
        qCWarning(LogNoGoZone) << "TScopedTag" << 1;
        return;
    }
    if (!stream.UseRawTags())
        return;
    m_node = static_cast<int>(stream.m_output.Align(4));
    stream.m_output.ReserveSpace(12);
    m_dataStart = static_cast<int>(stream.WriteTag(tag, index, 4));
}

TScopedTag::~TScopedTag()
{
    if (m_node != 0)
        m_stream.WriteValueNodeEx(m_node, m_dataStart);
}
