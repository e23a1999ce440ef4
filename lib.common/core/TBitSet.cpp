#include "core/TBitSet.h"

#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"

unsigned char const TBitSet::s_masks[8] = {1, 2, 4, 8, 16, 32, 64, 128};

TBitSet::TBitSet(int bits)
    : m_bytes(nullptr)
    , m_numBytes(0)
    , m_numBits(bits < 1 ? 1 : bits)
{
    m_numBytes = (m_numBits + 7) / 8 * 8;
    m_bytes = static_cast<unsigned char*>(malloc_ex(m_numBytes));
    FastZeroEx(m_bytes, m_numBytes);
}

TBitSet::TBitSet(TBitSet const& other)
    : m_bytes(static_cast<unsigned char*>(malloc_ex(other.m_numBytes)))
    , m_numBytes(other.m_numBytes)
    , m_numBits(other.m_numBits)
{
    FastCopyEx(other.m_bytes, m_bytes, static_cast<size_t>(m_numBytes));
}

TBitSet& TBitSet::operator=(TBitSet const& other)
{
    if (&other == this)
        return *this;
    if (m_numBytes != other.m_numBytes) {
        auto* bytes = static_cast<unsigned char*>(malloc_ex(other.m_numBytes));
        free_ex(m_bytes);
        m_bytes = bytes;
        m_numBytes = other.m_numBytes;
    }
    m_numBits = other.m_numBits;
    FastCopyEx(other.m_bytes, m_bytes, static_cast<size_t>(m_numBytes));
    return *this;
}

TBitSet::~TBitSet()
{
    free_ex(m_bytes);
}

TBitSet& TBitSet::operator&=(TBitSet const& other)
{
    for (int i = 0; i < m_numBytes; ++i)
        m_bytes[i] &= i < other.m_numBytes ? other.m_bytes[i] : 0;
    return *this;
}

TBitSet& TBitSet::operator|=(TBitSet const& other)
{
    int const common = m_numBytes < other.m_numBytes ? m_numBytes : other.m_numBytes;
    for (int i = 0; i < common; ++i)
        m_bytes[i] |= other.m_bytes[i];
    return *this;
}

TBitSet TBitSet::operator~() const
{
    // Made with numBytes / 8 bits, which sizes it right only up to 8 bits;
    // the complement covers all of this set's bytes, so it gets their size.
    TBitSet result(m_numBytes / 8);
    if (result.m_numBytes != m_numBytes) {
        free_ex(result.m_bytes);
        result.m_bytes = static_cast<unsigned char*>(malloc_ex(m_numBytes));
        result.m_numBytes = m_numBytes;
    }
    for (int i = 0; i < m_numBytes; ++i)
        result.m_bytes[i] = static_cast<unsigned char>(~m_bytes[i]);
    return result;
}

void TBitSet::Negate()
{
    for (int i = 0; i < m_numBytes; ++i)
        m_bytes[i] = static_cast<unsigned char>(~m_bytes[i]);
}

bool TBitSet::IsEmpty() const
{
    for (int i = 0; i < m_numBytes; ++i)
        if (m_bytes[i])
            return false;
    return true;
}

TCharSet::TCharSet() : TBitSet(256) {}

TCharSet::TCharSet(char const* chars) : TBitSet(256)
{
    for (; *chars; ++chars) {
        int const bit = static_cast<signed char>(*chars);
        // A negative bit would land before the array.
        if (bit >= 0)
            Enable(bit);
    }
}
