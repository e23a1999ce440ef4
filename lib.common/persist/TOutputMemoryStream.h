#pragma once

#include "core/CommonExport.h"
#include "core/EAutoDelete.h"
#include "persist/TMemoryStream.h"
#include "persist/TOutputStream.h"

// The byte stream that writes into memory. It grows by a constant step
// (malloc_ex, realloc_ex), not by doubling. It frees its block when it ends
// only if it owns the block and auto-delete is on; with auto-delete off the
// finished block is the caller's (Start()).
class COMMON_EXPORT TOutputMemoryStream : public TOutputStream, public TMemoryStream
{
public:
    // Grows by max(growth, 32) bytes, from no block.
    explicit TOutputMemoryStream(unsigned int growth = 32, EAutoDelete autoDelete = autoDeleteOn,
                                 EEndianType endianType = endianNoSwap);
    // Over a caller's block of fixed size, never freed here. Writing past
    // its end is a caller's mistake: it is reported to LogNoGoZone and the
    // stream goes on in a copy on the heap that it owns, leaving the
    // caller's block alone.
    TOutputMemoryStream(void* buffer, unsigned int size, EEndianType endianType = endianNoSwap);
    // Takes over a heap block (malloc_ex) that holds size bytes of data and
    // appends behind them.
    TOutputMemoryStream(unsigned int growth, EAutoDelete autoDelete, void* buffer, unsigned int size,
                        EEndianType endianType = endianNoSwap);
    ~TOutputMemoryStream() override;
    TOutputMemoryStream(TOutputMemoryStream const&) = delete;
    TOutputMemoryStream& operator=(TOutputMemoryStream const&) = delete;

    void SetAutoDelete(EAutoDelete autoDelete) { m_autoDelete = autoDelete; }
    EAutoDelete GetAutoDelete() const { return m_autoDelete; }
    unsigned int GetGrowthStep() const { return m_growthStep; }

    unsigned int GetCurrentPosition() const override { return GetPosition(); }
    void SetCurrentPosition(unsigned int position) override { SetPosition(position); }
    unsigned int WriteData(void const* data, unsigned int size) override;

    // A fresh block of size bytes becomes the stream's, at position 0. The
    // old block is neither copied nor freed: for a stream not written to.
    void Reserve(int size);
    // Writes count bytes of value and puts the position back; returns it.
    unsigned int InitBlock(unsigned char value, int count);
    // Grows the block by size zeroed bytes at once and moves the position to
    // where they begin; returns that position.
    unsigned int ExtendInternalBuffer(int size);
    // Pads with fill up to a multiple of alignment (nothing below 2); with
    // setSize the size becomes the position. Returns the position.
    unsigned int Align(int alignment, unsigned char fill = 0, bool setSize = false);
    // The text and its terminator, then zeros until the length written is a
    // multiple of 4, wherever the stream stood.
    unsigned int WriteStringThenAlign(char const* text);

    // Makes room for size bytes behind the position without moving it, and
    // returns where they begin: for writers that fill a known span at once.
    unsigned char* MakeRoom(unsigned int size)
    {
        if (m_size - GetPosition() < size || GetPosition() > m_size)
            Grow(size);
        return m_current;
    }
    void Advance(unsigned int size) { m_current += size; }

private:
    void Grow(unsigned int size);

    EAutoDelete m_autoDelete;
    unsigned int m_growthStep;
    bool m_owning;
};
