#pragma once

#include "core/CommonExport.h"

#include <QByteArray>

#include <vector>

namespace ThisThread {

// The per-thread record. The main thread's lives in the common block; the
// others' are made on first use and deleted when their thread ends.
class COMMON_EXPORT TCommonData
{
public:
    explicit TCommonData(bool isMainThread) : isMainThread(isMainThread) {}
    TCommonData(TCommonData const&) = delete;
    TCommonData& operator=(TCommonData const&) = delete;

    // The thread-owned subscription groups join this record with the events.
    std::vector<QByteArray> contextTags; // stack of scoped context tags
    int skipFileHook = 0;                // TFile skips its hook while non-zero
    int compareNesting = 0;              // kept by TConfigKey::Compare
    bool const isMainThread;
};

// The calling thread's record. Never fails.
COMMON_EXPORT TCommonData& CommonData();

} // namespace ThisThread

// True on the thread that loaded the library.
COMMON_EXPORT bool IsMainThread();

// Nests: every true needs a false before the file hook runs again.
COMMON_EXPORT void SkipThreadFileHook(bool skip);
