#pragma once

#include "core/CommonExport.h"

// Reads bits most significant first: bit position p is bit 7 - p % 8 of
// byte p / 8. There is no bound check: the size is kept for the caller and
// never consulted, so the caller must not read past the data.
class COMMON_EXPORT TInputMemoryBitStreamLR
{
public:
    TInputMemoryBitStreamLR(char const* data, int size, int startBit = 0)
        : m_data(data), m_position(startBit), m_size(size)
    {
    }

    int GetOneBit()
    {
        int const bit = (static_cast<unsigned char>(m_data[m_position >> 3]) >> (7 - (m_position & 7))) & 1;
        ++m_position;
        return bit;
    }
    // count bits, the first read being the highest; 0 for a count below 1.
    unsigned int GetBits(int count);

    int GetPosition() const { return m_position; }
    int GetSize() const { return m_size; }

private:
    char const* m_data;
    int m_position;
    int m_size;
};
