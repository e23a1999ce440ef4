#pragma once

// The threads that are inside a TBypassExceptionMessages scope. A thread
// appears at most once. Library-internal.
namespace BypassThreads {

using ThreadHandle = void*;

ThreadHandle CurrentThread();
void Add(ThreadHandle thread);
void Remove(ThreadHandle thread);
bool Contains(ThreadHandle thread);

} // namespace BypassThreads
