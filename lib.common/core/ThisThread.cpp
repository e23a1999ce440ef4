#include "core/ThisThread.h"

#include "core/TCommonGlobalData.h"

#include <QThread>

namespace ThisThread {

TCommonData& CommonData()
{
    TCommonGlobalData* block = CommonGlobalData();
    if (!block) {
        // Before the library has loaded or after it has ended: a record of
        // the thread's own keeps the call from failing.
        thread_local TCommonData orphan(false);
        return orphan;
    }
    if (QThread::currentThreadId() == block->mainThreadId)
        return block->mainThreadData;
    if (!block->threadData.hasLocalData())
        block->threadData.setLocalData(new TCommonData(false));
    return *block->threadData.localData();
}

} // namespace ThisThread

bool IsMainThread()
{
    TCommonGlobalData* block = CommonGlobalData();
    return block && QThread::currentThreadId() == block->mainThreadId;
}

void SkipThreadFileHook(bool skip)
{
    ThisThread::CommonData().skipFileHook += skip ? 1 : -1;
}
