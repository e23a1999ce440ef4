#pragma once

#include "core/CommonExport.h"

// Instruction set extensions that the kernels of the library can use, as
// reported by the processor and enabled by the operating system.
enum ECpuFeature : unsigned
{
    eCpuSse41 = 1u << 0,
    eCpuPclmul = 1u << 1,
    eCpuAvx2 = 1u << 2,
    eCpuAvx512 = 1u << 3, // F, BW and VL together
    eCpuVpclmul = 1u << 4,
};

// A set of ECpuFeature bits, read once.
COMMON_EXPORT unsigned PlatformCpuFeatures();
