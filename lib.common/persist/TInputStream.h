#pragma once

#include "core/CommonExport.h"
#include "persist/TStream.h"

template <class T> class TString;
template <class T, bool> class TVector;

// Typed reading over one raw operation. The typed reads return what
// ReadData returned: the position behind the data. Numbers are reversed in
// place when the endian type asks for it; long and unsigned long are read
// from their stored 4 bytes.
class COMMON_EXPORT TInputStream : public TStream
{
public:
    explicit TInputStream(EEndianType endianType = endianNoSwap) : TStream(endianType) {}

    virtual unsigned int ReadData(void* data, unsigned int size) = 0;
    // Narrow form: ends at LF, CR, CR LF or a zero, which it consumes; a
    // zero also sets *atEnd (if given). At most maxChars characters; the
    // rest of a longer line comes with the next call.
    // Wide form, kept as it always was: it moves the stream only when the
    // limit ends the line, so a line that ends by CR, LF or zero leaves the
    // position where it was; maxChars counts about bytes (a character
    // takes 2) and below 2 reads nothing; at a zero *atEnd keeps its value.
    virtual void ReadLine(TString<char16_t>& line, int maxChars, bool* atEnd) = 0;
    virtual void ReadLine(TString<char>& line, int maxChars, bool* atEnd) = 0;
    // The text up to and with its terminator. The char and char16_t forms
    // write into a buffer that the caller sized by FindStringLen.
    virtual unsigned int ReadString(char16_t* text) = 0;
    virtual unsigned int ReadString(TString<char16_t>& text) = 0;
    virtual unsigned int ReadString(char* text) = 0;
    virtual unsigned int ReadString(TString<char>& text) = 0;
    // Length of the string at the current position, without moving.
    virtual int FindStringLenA() const = 0;
    virtual int FindStringLenW() const = 0;
    // ReadString, then the text split at any of the delimiters into result
    // (TVector<TString<char>>), empty pieces kept so that fields keep their
    // places.
    virtual void ReadTokens(TVector<TString<char>, false>& result, char const* delimiters) = 0;

    unsigned int Read(char* values, unsigned int count = 1) { return ReadData(values, count); }
    unsigned int Read(signed char* values, unsigned int count = 1) { return ReadData(values, count); }
    unsigned int Read(unsigned char* values, unsigned int count = 1) { return ReadData(values, count); }
    // Raw bytes: a stored byte other than 0 and 1 is not a valid bool.
    unsigned int Read(bool* values, unsigned int count = 1) { return ReadData(values, count); }
    unsigned int Read(short* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(unsigned short* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(int* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(unsigned int* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(long* values, unsigned int count = 1);
    unsigned int Read(unsigned long* values, unsigned int count = 1);
    unsigned int Read(float* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(long long* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(unsigned long long* values, unsigned int count = 1) { return ReadNumbers(values, count); }
    unsigned int Read(double* values, unsigned int count = 1) { return ReadNumbers(values, count); }

private:
    template <class T>
    unsigned int ReadNumbers(T* values, unsigned int count)
    {
        unsigned int const position = ReadData(values, count * static_cast<unsigned>(sizeof(T)));
        if (MustSwap())
            SwapValues(values, count, sizeof(T));
        return position;
    }
    static void SwapValues(void* values, unsigned int count, unsigned int width);
};

// Binary form: one int. Text form: a string read as a base-10 number.
COMMON_EXPORT unsigned int Read(int* value, TInputStream& stream, EDataFormat format);
