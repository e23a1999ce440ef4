#pragma once

#include "core/ThisThread.h"

#include <QThreadStorage>

class QThread;
class TCommonExternData;

// The one block of global data, built by the first TLibraryGuard and torn
// down by the last. Library-internal.
class TCommonGlobalData
{
public:
    TCommonGlobalData();
    ~TCommonGlobalData();
    TCommonGlobalData(TCommonGlobalData const&) = delete;
    TCommonGlobalData& operator=(TCommonGlobalData const&) = delete;

    void* const mainThreadId;
    ThisThread::TCommonData mainThreadData{true};
    QThreadStorage<ThisThread::TCommonData*> threadData;
    // The main thread's TThread object "MainThread", the page memory cache and
    // the process-wide parallel reader and writer join the block with the
    // thread and parallel file classes.
    QThread* const mainThread;

private:
    TCommonExternData* m_frameExternData;
};

// Null before the first guard and after the last.
TCommonGlobalData* CommonGlobalData();
