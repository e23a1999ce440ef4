#include "platform/PlatformCpu.h"

namespace {

unsigned DetectCpuFeatures()
{
    unsigned features = 0;
#if defined(__x86_64__) || defined(__i386__)
    // The builtins also check that the system saves the wider registers.
    __builtin_cpu_init();
    if (__builtin_cpu_supports("sse4.1"))
        features |= eCpuSse41;
    if (__builtin_cpu_supports("pclmul"))
        features |= eCpuPclmul;
    if (__builtin_cpu_supports("avx2"))
        features |= eCpuAvx2;
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl"))
        features |= eCpuAvx512;
    if (__builtin_cpu_supports("vpclmulqdq"))
        features |= eCpuVpclmul;
#endif
    return features;
}

} // namespace

unsigned PlatformCpuFeatures()
{
    static unsigned const features = DetectCpuFeatures();
    return features;
}
