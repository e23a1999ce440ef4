#pragma once

#include "core/CommonExport.h"

// Held as a static object by every module that needs the common block. The
// first guard builds the block; the last one to go ends the library. Guards
// are made and destroyed only while the process loads and unloads, on the
// loading thread, so the count is a plain integer.
class COMMON_EXPORT TLibraryGuard
{
public:
    TLibraryGuard();
    ~TLibraryGuard();
    TLibraryGuard(TLibraryGuard const&) = delete;
    TLibraryGuard& operator=(TLibraryGuard const&) = delete;

    static int LiveCount();
};
