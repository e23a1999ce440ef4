#pragma once

#include "core/CommonExport.h"

// Reads bits least significant first: bit position p is bit p % 8 of byte
// p / 8, and a value's bit 0 comes first. Reading past the valid bits asks
// OnExhaustedReading, where a subclass refills the data (by Discard and
// SetNumValidBits) and answers true.
class COMMON_EXPORT TInputMemoryBitStream
{
public:
    TInputMemoryBitStream(char* data, int validBits, int startBit = 0)
        : m_data(data), m_position(startBit), m_validBits(validBits)
    {
    }
    virtual ~TInputMemoryBitStream();

    void SetNumValidBits(int validBits) { m_validBits = validBits; }
    int GetNumValidBits() const { return m_validBits; }
    int GetNumReadBits() const { return m_position; }
    void AlignOnByte() { m_position = (m_position + 7) & ~7; }

    // false when the bits ran out; *ok (if given) tells the same.
    bool ReadOneBit(bool* ok = nullptr);
    // Up to 32 bits, the first read being the lowest. With signExtend the
    // top one of the count bits is the sign. 0 when the bits ran out.
    int ReadBits(int count, bool signExtend = false, bool* ok = nullptr);
    // Golomb-Rice code of parameter k (see TOutputMemoryBitStream). A run
    // of zeros that meets the end of the bits gives 0.
    int ReadRiceValue(int k, bool isSigned);

protected:
    // The base class has nothing to refill with.
    virtual bool OnExhaustedReading();
    // Drops bytes from the front: the valid bytes behind them move to the
    // start and the position falls by 8 bits a byte. The valid-bit count
    // stays for the caller to set. Returns the valid bytes left; with a
    // count below 1 the valid bytes.
    int Discard(int bytes);

    char* m_data;
    int m_position;
    int m_validBits;

private:
    bool HasBits(int count);
};
