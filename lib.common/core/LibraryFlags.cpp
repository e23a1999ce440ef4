#include "core/LibraryFlags.h"

#include "platform/PlatformProcess.h"

#include <QFileInfo>

bool g_logToFile = true;
bool g_crashReport = false;
bool g_logEvents = false;
bool g_diagUserLoggingEnabled = false;
bool g_diagExtreme = false;
QByteArray g_diagLoggingRules;
QString g_diagCode1;
QString g_diagCode2;
bool g_oneShot = false;
bool g_isService = false;
ETestMode g_testMode = eTestModeNone;
#if defined(_WIN32)
bool g_runningOnWindows = true;
#else
// The library was first defined on Windows, where this starts true; here it
// tells the host the truth.
bool g_runningOnWindows = false;
#endif
#if defined(__APPLE__)
bool g_runningOnMac = true;
#else
bool g_runningOnMac = false;
#endif
bool g_windowsFileCharCompatiblity = true;
bool g_debuggerPresent = false;

bool CanWriteSettings()
{
    return !g_oneShot && !g_isService;
}

bool IsBackgroundProcess()
{
    return g_oneShot || g_isService;
}

namespace {

// Latched at the first call and never looked at again: a flag file that
// appears later has no effect.
bool g_flagFileLatched = false;
bool g_flagFileFound = false;

} // namespace

bool IsFlagSet(char const* name)
{
    if (!g_flagFileLatched) {
        g_flagFileLatched = true;
        try {
            g_flagFileFound = QFileInfo::exists(PlatformApplicationFolder() + QStringLiteral("/tconfig.txt"));
        } catch (...) {
            g_flagFileFound = false;
        }
    }
    if (!g_flagFileFound || !name)
        return false;
    // Seam: the flags are read through a configuration tree over the file,
    // which arrives with the configuration classes.
    return false;
}

void DisableFpuExceptions()
{
    PlatformMaskFpuExceptions();
}
