#include "persist/TInputStream.h"

#include "persist/ByteSwap.h"
#include "persist/SwapArrays.h"
#include "text/TString.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

void TInputStream::SwapValues(void* values, unsigned int count, unsigned int width)
{
    if (count == 1) {
        if (width == 2)
            SwapInPlace(*static_cast<uint16_t*>(values));
        else if (width == 4)
            SwapInPlace(*static_cast<uint32_t*>(values));
        else
            SwapInPlace(*static_cast<uint64_t*>(values));
        return;
    }
    if (width == 2)
        SwapArray16(values, count);
    else if (width == 4)
        SwapArray32(values, count);
    else
        SwapArray64(values, count);
}

namespace {

// The stored 4-byte values fill the front of the array; they are widened
// from the last one down so that none is overwritten before it is read.
template <class Long, class Narrow>
unsigned int ReadLongs(TInputStream& stream, Long* values, unsigned int count)
{
    static_assert(sizeof(Long) >= 4, "room for the stored form");
    unsigned int const position = stream.ReadData(values, count * 4);
    auto* bytes = reinterpret_cast<unsigned char*>(values);
    for (unsigned int i = count; i-- > 0;) {
        uint32_t bits;
        std::memcpy(&bits, bytes + i * 4, 4);
        if (stream.MustSwap())
            bits = SwapBytes(bits);
        Narrow narrow;
        std::memcpy(&narrow, &bits, 4);
        Long const wide = narrow;
        std::memcpy(bytes + i * sizeof(Long), &wide, sizeof(Long));
    }
    return position;
}

} // namespace

unsigned int TInputStream::Read(long* values, unsigned int count)
{
    return ReadLongs<long, int32_t>(*this, values, count);
}

unsigned int TInputStream::Read(unsigned long* values, unsigned int count)
{
    return ReadLongs<unsigned long, uint32_t>(*this, values, count);
}

unsigned int Read(int* value, TInputStream& stream, EDataFormat format)
{
    if (format != dataFormatText)
        return stream.Read(value, 1);
    TString<char> text;
    unsigned int const position = stream.ReadString(text);
    *value = static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
    return position;
}
