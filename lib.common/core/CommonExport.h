#pragma once

// Marks the library's interface. Everything else stays inside libcommon.
#if defined(_WIN32)
#  if defined(COMMON_BUILDING_LIBRARY)
#    define COMMON_EXPORT __declspec(dllexport)
#  else
#    define COMMON_EXPORT __declspec(dllimport)
#  endif
#else
#  define COMMON_EXPORT __attribute__((visibility("default")))
#endif
