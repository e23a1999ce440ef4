#include "core/BypassThreads.h"

#include "core/TCommonGlobalData.h"

#include <QMutexLocker>
#include <QThread>

namespace BypassThreads {
namespace {

// The list lives in the common block; before the library has loaded and
// after it has ended there is none, and no thread bypasses.
int IndexOf(TSlotSequence const& threads, ThreadHandle thread)
{
    for (int i = 0; i < threads.GetNumBusySlots(); ++i)
        if (*static_cast<ThreadHandle const*>(threads.ConstSlotPtr(i)) == thread)
            return i;
    return -1;
}

// A thread stands in the list at most once: any old entry goes first.
void Edit(ThreadHandle thread, bool add)
{
    TCommonGlobalData* block = CommonGlobalData();
    if (!block)
        return;
    QMutexLocker lock(&block->bypassLock);
    int const index = IndexOf(block->bypassThreads, thread);
    if (index >= 0)
        block->bypassThreads.CutSlots(index, 1);
    if (add)
        block->bypassThreads.AppendSlot(&thread);
}

} // namespace

ThreadHandle CurrentThread()
{
    return QThread::currentThreadId();
}

void Add(ThreadHandle thread)
{
    Edit(thread, true);
}

void Remove(ThreadHandle thread)
{
    Edit(thread, false);
}

bool Contains(ThreadHandle thread)
{
    TCommonGlobalData* block = CommonGlobalData();
    if (!block)
        return false;
    QMutexLocker lock(&block->bypassLock);
    return IndexOf(block->bypassThreads, thread) >= 0;
}

} // namespace BypassThreads
