#pragma once

#include "core/CommonExport.h"
#include "diag/ECanException.h"

class QByteArray;

// Allocation with one failure rule: exhausted memory throws "Out of memory".

// Null for a size of 0.
COMMON_EXPORT void* malloc_ex(int size);
// A size of 0 frees pointer and gives null; a null pointer allocates.
COMMON_EXPORT void* realloc_ex(void* pointer, int size);
COMMON_EXPORT void free_ex(void* pointer);
// Frees *pointer and stores null there.
COMMON_EXPORT void FreeHL(void** pointer);
// Replaces *target by a copy of size bytes of source; *targetSize, when
// asked for, gets size whether or not anything was copied.
COMMON_EXPORT void CopyHL(void const* source, int size, void** target, int* targetSize);
// Empty for a null pointer or a size below 1.
COMMON_EXPORT QByteArray QByteArrayFrom(void const* data, int size);

// Zeroed whole pages straight from the system, for buffers of unbuffered
// file access. Null for a size of 0; on failure throws "Out of memory" when
// allowed, else gives null.
COMMON_EXPORT void* AllocPageAlignedMemory(unsigned int size, ECanException canException);
// Null does nothing.
COMMON_EXPORT void FreePageAlignedMemory(void* block);

// Hands out blocks of size bytes from count slots, refilling all of them
// when none holds a block. The caller owns what it is given.
COMMON_EXPORT void* ConstSlotPtr(int size, void** slots, int count);
