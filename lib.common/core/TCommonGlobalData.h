#pragma once

#include "core/TSlotSequence.h"
#include "core/ThisThread.h"

#include <QMutex>
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
    // Threads inside a TBypassExceptionMessages scope, one slot each, under
    // bypassLock. The lock stands in for the process-wide critical section
    // until the lock classes exist; both are held only for a list operation.
    TSlotSequence bypassThreads{static_cast<int>(sizeof(void*)), 20, 20};
    QMutex bypassLock;

private:
    TCommonExternData* m_frameExternData;
};

// Null before the first guard and after the last.
TCommonGlobalData* CommonGlobalData();
