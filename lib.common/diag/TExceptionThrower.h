#pragma once

#include "core/CommonExport.h"
#include "diag/TException.h"

class QString;

// Decides what "throw" means at one place. With warnOnly false SetAndThrow
// throws; with warnOnly true it shows the failure through the warning
// callback (unless the thread bypasses it) and returns.
class COMMON_EXPORT TExceptionThrower
{
public:
    explicit TExceptionThrower(bool warnOnly) : m_warnOnly(warnOnly) {}

    // In warning mode this form calls the callback even inside a bypass scope.
    void SetAndThrow();
    void SetAndThrow(TException const& exception);
    void SetAndThrow(char16_t const* message);
    void SetAndThrow(QString const& message);
    void SetAndThrow(char16_t const* message, char16_t const* detail);
    void SetAndThrow(char16_t const* message, unsigned code);
    void SetAndThrow(QString const& message, unsigned code);
    void SetAndThrow(char16_t const* message, char16_t const* detail, unsigned code);
    void SetAndThrow(QString const& message, QString const& detail, unsigned code);

private:
    bool m_warnOnly;
};
