#pragma once

#include "core/CommonExport.h"

class QString;
class TException;

using CB_WarnUser = void (*)(TException const&, bool);
using CB_WarnMessage = void (*)(QString const& text, QString const& title);
using CB_AskMessage = bool (*)(QString const& text, QString const& title);
using CB_ChooseMessage = int (*)(QString const& text, QString const& title);

// Set at start-up by the host; a null pointer switches the callback off.
COMMON_EXPORT void SetWarnUserCallback(CB_WarnUser callback);
// Only the warning box is used; the other two are accepted for the host's API.
COMMON_EXPORT void SetMessCallbacks(CB_WarnMessage warn, CB_AskMessage ask, CB_ChooseMessage choose);

// Throws "Out of memory" when pointer is null.
COMMON_EXPORT void ThrowIfNoMemory(void const* pointer);
// Makes operator new throw TException("Out of memory") instead of bad_alloc.
COMMON_EXPORT void InitExceptionHandler();

// Library-internal: the host's warning box, if one was installed.
void ShowWarningMessage(QString const& text, QString const& title);
CB_WarnUser WarnUserCallback();
