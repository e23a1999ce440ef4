#pragma once

#include "core/CommonExport.h"

#include <cstddef>

// Virtual memory straight from the operating system.

// Read once, on the first call.
COMMON_EXPORT unsigned PlatformPageSize();
// The alignment of a block from PlatformAllocPages; on Linux the page size.
COMMON_EXPORT unsigned PlatformAllocationGranularity();

// Committed, zeroed, page-aligned read/write memory; null when the system
// refuses it or for a size of 0.
COMMON_EXPORT void* PlatformAllocPages(size_t size);
// Releases a block of PlatformAllocPages whole. False, and nothing released,
// for a pointer that did not come from there.
COMMON_EXPORT bool PlatformFreePages(void* block);
