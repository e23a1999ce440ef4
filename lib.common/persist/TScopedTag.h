#pragma once

#include "core/CommonExport.h"

class TTaggedOutputStream;

// A raw-tag value whose bytes the caller writes straight onto the stream
// (stream.Output()) while the guard lives: it opens a big value node and
// closes it with the size of what was written. In mode 0 it does nothing.
// XML has its own text forms: callers write those with WriteXML, and a
// guard in mode 2 only reports the mistake to LogNoGoZone.
class COMMON_EXPORT TScopedTag
{
public:
    TScopedTag(TTaggedOutputStream& stream, char const* tag, int index = 0);
    ~TScopedTag();
    TScopedTag(TScopedTag const&) = delete;
    TScopedTag& operator=(TScopedTag const&) = delete;

private:
    TTaggedOutputStream& m_stream;
    int m_node;
    int m_dataStart;
};
