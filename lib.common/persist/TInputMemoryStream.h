#pragma once

#include "core/CommonExport.h"
#include "math/FastMemory.h"
#include "persist/TInputStream.h"
#include "persist/TMemoryStream.h"

// The byte stream that reads a block it does not own. Nothing here reads
// outside the block: a read that runs past the end yields zeros for the
// missing bytes and still moves the position by the full count, a string
// without a terminator ends at the end of the block, and GetChar answers -1
// there. The block of TFile::LoadFile ends in a zero for the string reads.
class COMMON_EXPORT TInputMemoryStream : public TInputStream, public TMemoryStream
{
public:
    TInputMemoryStream() = default;
    TInputMemoryStream(void const* data, unsigned int size, EEndianType endianType = endianNoSwap)
        : TInputStream(endianType), TMemoryStream(data, size)
    {
    }

    void SetInputMemory(void* data, unsigned int size)
    {
        m_start = m_current = static_cast<unsigned char*>(data);
        m_size = size;
    }
    unsigned int Size() const { return m_size; }

    unsigned int GetCurrentPosition() const override { return GetPosition(); }
    void SetCurrentPosition(unsigned int position) override { SetPosition(position); }

    unsigned int ReadData(void* data, unsigned int size) override
    {
        if (size <= GetSizeLeft()) {
            FastCopyEx(m_current, data, size);
            m_current += size;
            return GetPosition();
        }
        return ReadDataPastEnd(data, size);
    }
    void ReadLine(TString<char16_t>& line, int maxChars, bool* atEnd) override;
    void ReadLine(TString<char>& line, int maxChars, bool* atEnd) override;
    unsigned int ReadString(char16_t* text) override;
    unsigned int ReadString(TString<char16_t>& text) override;
    unsigned int ReadString(char* text) override;
    unsigned int ReadString(TString<char>& text) override;
    int FindStringLenA() const override;
    int FindStringLenW() const override;
    void ReadTokens(TVector<TString<char>, false>& result, char const* delimiters) override;

    // The byte at the position as 0 to 255, or -1 at the end (the position
    // stays then).
    int GetChar()
    {
        if (IsEnd())
            return -1;
        return *m_current++;
    }
    // Steps back one byte and stores c there; nothing at the start.
    void UngetChar(char c);
    // Skips to a multiple of alignment; nothing below 2.
    unsigned int Align(int alignment);
    // The counterparts of TOutputMemoryStream::WriteStringThenAlign: a narrow
    // string takes its length + 1 rounded up to 4, a wide one 2 length + 2
    // rounded up to 4.
    unsigned int ReadStringThenAlign(char* text);
    unsigned int ReadStringThenAlign(char16_t* text);
    void ReadStringThenAlign(TString<char>& text);
    void ReadStringThenAlign(TString<char16_t>& text);

private:
    unsigned int ReadDataPastEnd(void* data, unsigned int size);
    // Characters before the terminator or the end of the block.
    int MeasureNarrow() const;
    int MeasureWide() const;
    unsigned int SkipAligned(unsigned int consumed);
};
