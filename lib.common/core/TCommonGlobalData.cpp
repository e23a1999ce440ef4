#include "core/TCommonGlobalData.h"

#include "core/TCommonExternData.h"
#include "core/TLibraryGuard.h"

#include <QThread>

namespace {

TCommonGlobalData* g_commonGlobalData = nullptr;
int g_libraryGuardCount = 0;
TCommonExternData* g_commonExternData = nullptr;

void EndLibrary()
{
    // The auto setting registry goes first, once settings exist.
    delete g_commonGlobalData;
    g_commonGlobalData = nullptr;
}

} // namespace

TCommonGlobalData::TCommonGlobalData()
    : mainThreadId(QThread::currentThreadId()),
      mainThread(QThread::currentThread()),
      m_frameExternData(new TCommonExternData)
{
    SetCommonExternalData(m_frameExternData);
}

TCommonGlobalData::~TCommonGlobalData()
{
    SetCommonExternalData(nullptr);
    delete m_frameExternData;
    // The multi-file buffers and the cached page memory are released here
    // once the buffered file classes exist.
    bypassThreads.SetNumBusySlots(0);
    bypassThreads.FreeMemory();
}

TCommonGlobalData* CommonGlobalData()
{
    return g_commonGlobalData;
}

TLibraryGuard::TLibraryGuard()
{
    if (g_libraryGuardCount == 0 && !g_commonGlobalData)
        g_commonGlobalData = new TCommonGlobalData;
    ++g_libraryGuardCount;
}

TLibraryGuard::~TLibraryGuard()
{
    if (--g_libraryGuardCount == 0)
        EndLibrary();
}

int TLibraryGuard::LiveCount()
{
    return g_libraryGuardCount;
}

void SetCommonExternalData(TCommonExternData* data)
{
    g_commonExternData = data;
}

TCommonExternData* CommonExternalData()
{
    return g_commonExternData;
}
