#include "persist/TInputMemoryBitStream.h"

#include "math/FastMemory.h"

TInputMemoryBitStream::~TInputMemoryBitStream() = default;

bool TInputMemoryBitStream::OnExhaustedReading()
{
    return false;
}

bool TInputMemoryBitStream::HasBits(int count)
{
    if (m_position + count <= m_validBits)
        return true;
    // A refill that still leaves too few bits fails as well: reading on
    // would leave the data.
    return OnExhaustedReading() && m_position + count <= m_validBits;
}

bool TInputMemoryBitStream::ReadOneBit(bool* ok)
{
    if (!HasBits(1)) {
        if (ok)
            *ok = false;
        return false;
    }
    bool const bit = (static_cast<unsigned char>(m_data[m_position >> 3]) >> (m_position & 7)) & 1;
    ++m_position;
    if (ok)
        *ok = true;
    return bit;
}

int TInputMemoryBitStream::ReadBits(int count, bool signExtend, bool* ok)
{
    if (count > 32)
        count = 32;
    if (count < 0)
        count = 0;
    if (!HasBits(count)) {
        if (ok)
            *ok = false;
        return 0;
    }
    unsigned int value = 0;
    int filled = 0;
    while (filled < count) {
        int const offset = m_position & 7;
        int chunk = 8 - offset;
        if (chunk > count - filled)
            chunk = count - filled;
        unsigned int const byte = static_cast<unsigned char>(m_data[m_position >> 3]);
        value |= ((byte >> offset) & ((1u << chunk) - 1)) << filled;
        filled += chunk;
        m_position += chunk;
    }
    if (signExtend && count > 0 && count != 32 && (value >> (count - 1)) & 1)
        value |= ~0u << count;
    if (ok)
        *ok = true;
    return static_cast<int>(value);
}

int TInputMemoryBitStream::ReadRiceValue(int k, bool isSigned)
{
    unsigned int quotient = 0;
    for (;;) {
        bool ok;
        bool const bit = ReadOneBit(&ok);
        // Without this stop the run would count for ever on a stream that
        // cannot refill.
        if (!ok)
            return 0;
        if (bit)
            break;
        ++quotient;
    }
    unsigned int value = static_cast<unsigned int>(ReadBits(k, false, nullptr)) | quotient << (k & 31);
    if (isSigned && ReadOneBit(nullptr))
        value = 0u - value;
    return static_cast<int>(value);
}

int TInputMemoryBitStream::Discard(int bytes)
{
    int const validBytes = m_validBits / 8;
    if (bytes < 1)
        return validBytes;
    if (bytes > validBytes)
        bytes = validBytes;
    int const left = validBytes - bytes;
    FastMoveEx(m_data + bytes, m_data, left);
    m_position -= bytes * 8;
    if (m_position < 0)
        m_position = 0;
    return left;
}
