#include "diag/TExceptionThrower.h"

#include "diag/FailureReporting.h"
#include "diag/TBypassExceptionMessages.h"

#include <QString>

namespace {

char16_t const* Wide(QString const& text)
{
    return reinterpret_cast<char16_t const*>(text.utf16());
}

} // namespace

void TExceptionThrower::SetAndThrow()
{
    TException exception;
    if (!m_warnOnly)
        throw exception;
    if (CB_WarnUser callback = WarnUserCallback())
        callback(exception, true);
}

void TExceptionThrower::SetAndThrow(TException const& exception)
{
    if (!m_warnOnly)
        throw exception;
    CB_WarnUser callback = WarnUserCallback();
    if (callback && !TBypassExceptionMessages::IsCurrentThreadBypassed())
        callback(exception, true);
}

void TExceptionThrower::SetAndThrow(char16_t const* message)
{
    SetAndThrow(TException(message));
}

void TExceptionThrower::SetAndThrow(QString const& message)
{
    SetAndThrow(Wide(message));
}

void TExceptionThrower::SetAndThrow(char16_t const* message, char16_t const* detail)
{
    SetAndThrow(TException(message, detail));
}

void TExceptionThrower::SetAndThrow(char16_t const* message, unsigned code)
{
    SetAndThrow(TException(message, code));
}

void TExceptionThrower::SetAndThrow(QString const& message, unsigned code)
{
    SetAndThrow(Wide(message), code);
}

void TExceptionThrower::SetAndThrow(char16_t const* message, char16_t const* detail, unsigned code)
{
    SetAndThrow(TException(message, detail, code));
}

void TExceptionThrower::SetAndThrow(QString const& message, QString const& detail, unsigned code)
{
    SetAndThrow(Wide(message), Wide(detail), code);
}
