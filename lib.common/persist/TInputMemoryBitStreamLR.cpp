#include "persist/TInputMemoryBitStreamLR.h"

unsigned int TInputMemoryBitStreamLR::GetBits(int count)
{
    unsigned int value = 0;
    for (int bit = count - 1; bit >= 0; --bit)
        value |= static_cast<unsigned int>(GetOneBit()) << (bit & 31);
    return value;
}
