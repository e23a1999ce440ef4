#pragma once

#include "core/CommonExport.h"

// A set of bits in a byte array; bit 0 is the lowest bit of byte 0. No range
// checks. The array is generous: the bit count rounded up to a multiple of 8
// is allocated as a count of bytes.
class COMMON_EXPORT TBitSet
{
public:
    explicit TBitSet(int bits);
    TBitSet(TBitSet const& other);
    TBitSet& operator=(TBitSet const& other);
    virtual ~TBitSet();

    static int GetLocation(int bit) { return bit / 8; }
    static unsigned char GetMask(int bit) { return s_masks[bit & 7]; }

    bool IsSet(int bit) const { return (m_bytes[GetLocation(bit)] & GetMask(bit)) != 0; }
    void Enable(int bit) { m_bytes[GetLocation(bit)] |= GetMask(bit); }
    void Disable(int bit) { m_bytes[GetLocation(bit)] &= static_cast<unsigned char>(~GetMask(bit)); }
    void Set(int bit, bool on)
    {
        if (on)
            Enable(bit);
        else
            Disable(bit);
    }

    // Over this set's bytes; bytes the other set lacks count as clear.
    TBitSet& operator&=(TBitSet const& other);
    TBitSet& operator|=(TBitSet const& other);
    TBitSet operator~() const;
    void Negate();
    bool IsEmpty() const;

    int GetNumBits() const { return m_numBits; }
    int GetNumBytes() const { return m_numBytes; }
    unsigned char const* Bytes() const { return m_bytes; }

private:
    static unsigned char const s_masks[8];

    unsigned char* m_bytes;
    int m_numBytes;
    int m_numBits;
};

// A set of the 256 byte values.
class COMMON_EXPORT TCharSet : public TBitSet
{
public:
    TCharSet();
    // Each character up to the terminator, taken as a signed value: only
    // characters below 128 belong here, and others are skipped.
    explicit TCharSet(char const* chars);
    TCharSet(TBitSet const& other) : TBitSet(other) {}
};
