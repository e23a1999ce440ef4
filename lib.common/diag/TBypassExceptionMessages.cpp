#include "diag/TBypassExceptionMessages.h"

#include "core/BypassThreads.h"

TBypassExceptionMessages::TBypassExceptionMessages(bool enable)
    : m_enabled(enable)
{
    if (m_enabled)
        BypassThreads::Add(BypassThreads::CurrentThread());
}

TBypassExceptionMessages::~TBypassExceptionMessages()
{
    if (m_enabled)
        BypassThreads::Remove(BypassThreads::CurrentThread());
}

bool TBypassExceptionMessages::IsCurrentThreadBypassed()
{
    return BypassThreads::Contains(BypassThreads::CurrentThread());
}
