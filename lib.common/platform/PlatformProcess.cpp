#include "platform/PlatformProcess.h"

#include <cfenv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

QString PlatformApplicationFolder()
{
    char path[4096];
    ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (length <= 0)
        return QString();
    QString file = QString::fromUtf8(path, static_cast<int>(length));
    return file.left(file.lastIndexOf(QLatin1Char('/')));
}

bool PlatformIsDebuggerPresent()
{
    FILE* status = std::fopen("/proc/self/status", "r");
    if (!status)
        return false;
    char line[256];
    bool traced = false;
    while (std::fgets(line, sizeof(line), status)) {
        if (std::strncmp(line, "TracerPid:", 10) == 0) {
            traced = std::atoi(line + 10) != 0;
            break;
        }
    }
    std::fclose(status);
    return traced;
}

void PlatformMaskFpuExceptions()
{
#if defined(__GLIBC__)
    fedisableexcept(FE_ALL_EXCEPT);
#endif
}
