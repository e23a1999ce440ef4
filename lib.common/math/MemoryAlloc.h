#pragma once

#include "core/CommonExport.h"

class QByteArray;

// Allocation with one failure rule: exhausted memory throws "Out of memory".
COMMON_EXPORT void* malloc_ex(int size);
COMMON_EXPORT void* realloc_ex(void* pointer, int size);
COMMON_EXPORT void free_ex(void* pointer);
COMMON_EXPORT void FreeHL(void** pointer);
COMMON_EXPORT void CopyHL(void const* source, int size, void** target, int* targetSize);
COMMON_EXPORT QByteArray QByteArrayFrom(void const* data, int size);
