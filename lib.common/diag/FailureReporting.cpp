#include "diag/FailureReporting.h"

#include "diag/TExceptionThrower.h"

#include <QString>

#include <exception>
#include <new>

namespace {

CB_WarnUser g_warnUserCallback = nullptr;
CB_WarnMessage g_warnMessageCallback = nullptr;

// Built from static data: it must exist when the heap is exhausted.
QString const& OutOfMemoryText()
{
    static QString const text = QStringLiteral("Out of memory");
    return text;
}

[[noreturn]] void ThrowOutOfMemory()
{
    TExceptionThrower(false).SetAndThrow(OutOfMemoryText());
    throw std::bad_alloc(); // not reached: the thrower above is not in warning mode
}

void NewHandler()
{
    ThrowOutOfMemory();
}

} // namespace

void SetWarnUserCallback(CB_WarnUser callback)
{
    g_warnUserCallback = callback;
}

CB_WarnUser WarnUserCallback()
{
    return g_warnUserCallback;
}

void SetMessCallbacks(CB_WarnMessage warn, CB_AskMessage, CB_ChooseMessage)
{
    g_warnMessageCallback = warn;
}

void ShowWarningMessage(QString const& text, QString const& title)
{
    if (g_warnMessageCallback)
        g_warnMessageCallback(text, title);
}

void ThrowIfNoMemory(void const* pointer)
{
    if (!pointer)
        ThrowOutOfMemory();
}

// The run-time library's unexpected handler no longer exists in C++17; only
// the new handler is installed.
void InitExceptionHandler()
{
    std::set_new_handler(NewHandler);
}
