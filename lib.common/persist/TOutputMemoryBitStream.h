#pragma once

#include "core/CommonExport.h"

// Writes bits least significant first, into a block of the C heap that it
// grows by a fixed step. Bits are ORed in, so everything ahead of the
// position is kept zero. Copies share the block (the pointer is copied, the
// data is not): only one of them may be destroyed.
class COMMON_EXPORT TOutputMemoryBitStream
{
public:
    // A step of max(growth, 32) bytes. If the first block cannot be had, the
    // capacity is 0 and the first write grows.
    explicit TOutputMemoryBitStream(int growth = 32, bool mayThrow = true);
    virtual ~TOutputMemoryBitStream();
    TOutputMemoryBitStream(TOutputMemoryBitStream const&) = default;
    TOutputMemoryBitStream& operator=(TOutputMemoryBitStream const&) = default;

    char* Start() { return m_data; }
    char const* ConstStart() const { return m_data; }
    int GetNumWrittenBits() const { return m_position; }
    int GetCapacityBits() const { return m_capacity; }
    void AlignOnByte() { m_position = (m_position + 7) & ~7; }

    // false if the block could not grow.
    bool WriteOneBit(bool bit);
    // The low count bits of value, bit 0 first. A value of 0 only advances.
    bool WriteBits(int value, int count);
    // Golomb-Rice code of parameter k: value >> k zero bits, a 1 bit, the k
    // low bits of the value's magnitude (lowest first), and with isSigned a
    // bit that is 1 for a negative value.
    bool WriteRiceValue(int value, int k, bool isSigned);

protected:
    // Called when a write needs more room: grows by one step. On failure it
    // throws the plain integer 0 if mayThrow, else answers false.
    virtual bool OnOverflow(bool mayThrow);
    // Drops bytes from the front of the used bytes: the rest moves to the
    // start, the freed bytes are zeroed and the position falls by 8 bits a
    // byte. Returns the used bytes left; with a count below 1 the capacity
    // in bytes.
    int Discard(int bytes);
    // One step more, zeroed. On failure "Out of memory" if the stream may
    // throw, else false.
    bool Realloc();

    char* m_data;
    int m_position;
    int m_capacity;
    int m_growthStep;
    bool m_mayThrow;

private:
    bool EnsureRoom(int count);
};
