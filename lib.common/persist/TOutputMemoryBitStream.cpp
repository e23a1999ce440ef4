#include "persist/TOutputMemoryBitStream.h"

#include "diag/FailureReporting.h"
#include "math/FastMemory.h"

#include <cstdlib>

TOutputMemoryBitStream::TOutputMemoryBitStream(int growth, bool mayThrow)
    : m_data(nullptr), m_position(0), m_capacity(0), m_growthStep(growth > 32 ? growth : 32), m_mayThrow(mayThrow)
{
    m_data = static_cast<char*>(std::calloc(static_cast<size_t>(m_growthStep), 1));
    if (m_data)
        m_capacity = m_growthStep * 8;
}

TOutputMemoryBitStream::~TOutputMemoryBitStream()
{
    std::free(m_data);
}

bool TOutputMemoryBitStream::Realloc()
{
    int const oldBytes = m_capacity / 8;
    auto* grown = static_cast<char*>(std::realloc(m_data, static_cast<size_t>(oldBytes + m_growthStep)));
    if (!grown) {
        if (m_mayThrow)
            ThrowIfNoMemory(nullptr);
        return false;
    }
    FastZeroEx(grown + oldBytes, m_growthStep);
    m_data = grown;
    m_capacity += m_growthStep * 8;
    return true;
}

bool TOutputMemoryBitStream::OnOverflow(bool mayThrow)
{
    if (Realloc())
        return true;
    if (mayThrow)
        throw 0;
    return false;
}

bool TOutputMemoryBitStream::EnsureRoom(int count)
{
    // One step may not be enough for a long run of zeros: grow until it
    // fits rather than write past the block.
    while (m_position + count > m_capacity)
        if (!OnOverflow(m_mayThrow))
            return false;
    return true;
}

bool TOutputMemoryBitStream::WriteOneBit(bool bit)
{
    if (!EnsureRoom(1))
        return false;
    if (bit)
        m_data[m_position >> 3] = static_cast<char>(m_data[m_position >> 3] | (1 << (m_position & 7)));
    ++m_position;
    return true;
}

bool TOutputMemoryBitStream::WriteBits(int value, int count)
{
    if (count <= 0)
        return true;
    if (!EnsureRoom(count))
        return false;
    if (value == 0) {
        m_position += count;
        return true;
    }
    while (count > 0) {
        int const offset = m_position & 7;
        int chunk = 8 - offset;
        if (chunk > count)
            chunk = count;
        unsigned int const bits = static_cast<unsigned int>(value) & ((1u << chunk) - 1);
        m_data[m_position >> 3] = static_cast<char>(static_cast<unsigned char>(m_data[m_position >> 3]) | bits << offset);
        value >>= chunk;
        m_position += chunk;
        count -= chunk;
    }
    return true;
}

bool TOutputMemoryBitStream::WriteRiceValue(int value, int k, bool isSigned)
{
    unsigned int const shift = static_cast<unsigned int>(k) & 31;
    bool const negative = isSigned && value < 0;
    unsigned int const magnitude = negative ? 0u - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
    unsigned int const quotient = magnitude >> shift;
    unsigned int const rest = magnitude & ((1u << shift) - 1);
    unsigned long long const total = quotient + static_cast<unsigned long long>(k) + (isSigned ? 1 : 0) + 1;
    if (total <= 32) {
        unsigned int const code = (((rest | static_cast<unsigned int>(negative) << shift) << 1) | 1) << quotient;
        return WriteBits(static_cast<int>(code), static_cast<int>(total));
    }
    if (!WriteBits(0, static_cast<int>(quotient)) || !WriteOneBit(true) || !WriteBits(static_cast<int>(rest), k))
        return false;
    return !isSigned || WriteOneBit(negative);
}

int TOutputMemoryBitStream::Discard(int bytes)
{
    if (bytes < 1)
        return m_capacity / 8;
    int const used = (m_position + 7) / 8;
    if (bytes > used)
        bytes = used;
    int const left = used - bytes;
    FastMoveEx(m_data + bytes, m_data, left);
    FastZeroEx(m_data + left, bytes);
    m_position -= bytes * 8;
    if (m_position < 0)
        m_position = 0;
    return left;
}
