#include "core/BypassThreads.h"

#include <QThread>

#include <algorithm>
#include <mutex>
#include <vector>

namespace BypassThreads {
namespace {

// Until the process-wide critical section exists this lock stands in for it;
// both are held only for a short list operation.
std::mutex& Lock()
{
    static std::mutex mutex;
    return mutex;
}

std::vector<ThreadHandle>& Threads()
{
    static std::vector<ThreadHandle> threads;
    return threads;
}

} // namespace

ThreadHandle CurrentThread()
{
    return QThread::currentThreadId();
}

void Add(ThreadHandle thread)
{
    std::lock_guard<std::mutex> guard(Lock());
    auto& threads = Threads();
    threads.erase(std::remove(threads.begin(), threads.end(), thread), threads.end());
    threads.push_back(thread);
}

void Remove(ThreadHandle thread)
{
    std::lock_guard<std::mutex> guard(Lock());
    auto& threads = Threads();
    threads.erase(std::remove(threads.begin(), threads.end(), thread), threads.end());
}

bool Contains(ThreadHandle thread)
{
    std::lock_guard<std::mutex> guard(Lock());
    auto const& threads = Threads();
    return std::find(threads.begin(), threads.end(), thread) != threads.end();
}

void Clear()
{
    std::lock_guard<std::mutex> guard(Lock());
    std::vector<ThreadHandle>().swap(Threads());
}

} // namespace BypassThreads
