#pragma once

#include "core/CommonExport.h"

#include <QByteArray>
#include <QString>

// The host's test mode; the library only stores it.
enum ETestMode : int
{
    eTestModeNone = 0,
};

// Process-wide flags: plain data, set by the host before it starts threads.
extern COMMON_EXPORT bool g_logToFile;
extern COMMON_EXPORT bool g_crashReport;
extern COMMON_EXPORT bool g_logEvents;
extern COMMON_EXPORT bool g_diagUserLoggingEnabled;
extern COMMON_EXPORT bool g_diagExtreme;
extern COMMON_EXPORT QByteArray g_diagLoggingRules;
extern COMMON_EXPORT QString g_diagCode1;
extern COMMON_EXPORT QString g_diagCode2;
extern COMMON_EXPORT bool g_oneShot;
extern COMMON_EXPORT bool g_isService;
extern COMMON_EXPORT ETestMode g_testMode;
extern COMMON_EXPORT bool g_runningOnWindows;
extern COMMON_EXPORT bool g_runningOnMac;
extern COMMON_EXPORT bool g_windowsFileCharCompatiblity;

// Whether a debugger was attached when the library loaded.
extern COMMON_EXPORT bool g_debuggerPresent;

// Settings are written unless the process is a one-shot job or a service.
COMMON_EXPORT bool CanWriteSettings();
COMMON_EXPORT bool IsBackgroundProcess();

// Whether the integer flag `name` of the flag file "tconfig.txt" beside the
// application is non-zero. The file is looked for once, at the first call.
COMMON_EXPORT bool IsFlagSet(char const* name);

// Masks every floating point exception on the calling thread.
COMMON_EXPORT void DisableFpuExceptions();
