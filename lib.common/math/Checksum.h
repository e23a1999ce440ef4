#pragma once

#include "core/CommonExport.h"

// CRC-16/ARC: reflected, polynomial 0xA001, start 0, no final inversion.
COMMON_EXPORT unsigned short ComputeCrc16(void const* data, unsigned int size);
// The CRC-32 of IEEE 802.3 (reflected 0xEDB88320, start and end inverted),
// the checksum of the document format. 0 for no bytes.
COMMON_EXPORT unsigned int ComputeCrc32(void const* data, unsigned int size);
// The CRC-32 of the bytes in the low half and that of the same bytes read
// from the last to the first in the high half.
COMMON_EXPORT unsigned long long ComputeCrc32Ex(void const* data, unsigned int size);

// The CRC-32 of data that arrives in pieces: the pieces fed one after the
// other give what ComputeCrc32 gives for them joined.
class COMMON_EXPORT TOfficialCrc32
{
public:
    void ComputeNextBuffer(void const* data, int size);
    unsigned int GetResult() const { return ~m_value; }

private:
    unsigned int m_value = 0xFFFFFFFFu;
};
