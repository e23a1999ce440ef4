#pragma once

#include "core/CommonExport.h"

// While a thread is inside an enabled scope, warning-mode failures on that
// thread do not reach the warning callback. Scopes do not nest: the first
// enabled scope to end clears the thread's entry.
class COMMON_EXPORT TBypassExceptionMessages
{
public:
    explicit TBypassExceptionMessages(bool enable);
    ~TBypassExceptionMessages();
    TBypassExceptionMessages(TBypassExceptionMessages const&) = delete;
    TBypassExceptionMessages& operator=(TBypassExceptionMessages const&) = delete;

    static bool IsCurrentThreadBypassed();

private:
    bool m_enabled;
};
