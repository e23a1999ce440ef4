#pragma once

// Library-internal: byte order reversal of whole arrays.

// Arrays of count elements of 2, 4 or 8 bytes, in place. Long arrays go
// 64 bytes at a time with byte shuffles where the processor has them.
void SwapArray16(void* data, unsigned int count);
void SwapArray32(void* data, unsigned int count);
void SwapArray64(void* data, unsigned int count);
