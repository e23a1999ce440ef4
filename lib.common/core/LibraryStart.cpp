// The library's load and unload sequence. One static object runs the steps
// in their fixed order while the process loads the library, on the loading
// thread; its destructor undoes them in reverse. Nothing else in the library
// depends on the construction order of statics.

#include "core/LibraryFlags.h"
#include "core/TLibraryGuard.h"
#include "diag/FailureReporting.h"
#include "diag/LogCategories.h"
#include "math/FastMemory.h"
#include "platform/PlatformMemory.h"
#include "platform/PlatformProcess.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace {

class TLibraryStart
{
public:
    TLibraryStart()
    {
        OpenTraceChannel();                                  // 1
        g_debuggerPresent = PlatformIsDebuggerPresent();     // 2
        LogSystemInfo();                                     // 3
        // 4: m_functionSlots, three empty actions.
        BuildExperienceSetting();                            // 5
        AddGuards(2);                                        // 6: the common block exists from here
        BuildCommonGlobalSetting();                          // 7
        AddGuards(2);
        BuildFileNotifierAndReaderHeap();
        RegisterCoreCategories();                            // 8
        PickMemoryKernels();                                 // 9
        LogCustomEvent();                                    // 10
        AddGuards(1);
        BuildNullOperationTemplate();
        AddGuards(1);
        BuildFileNameStatics();
        InitExceptionHandler();                              // 11
        BuildPathConstants();                                // 12
        AddGuards(2);                                        // 13
        AddGuards(1);
        // 14: the ks_ constants are static data that need no step.
        AddGuards(1);                                        // 15
        BuildMainThreadVitalMessageManager();
        BuildLateServices();                                 // 16
    }

    ~TLibraryStart()
    {
        // Guards go in reverse; the last one ends the library.
        while (!m_guards.empty())
            m_guards.pop_back();
    }

private:
    void AddGuards(int count)
    {
        for (int i = 0; i < count; ++i)
            m_guards.push_back(std::make_unique<TLibraryGuard>());
    }

    static void RegisterCoreCategories()
    {
        LogProcess();
        LogStartup();
        LogQuitting();
        LogEvents();
        LogCommandLine();
        LogPaths();
        LogFlow();
        LogBenchmark();
    }

    static void PickMemoryKernels()
    {
        InitFastMemoryDispatch();
        PlatformPageSize();
        PlatformAllocationGranularity();
    }

    // Seams: each step joins the sequence with the classes it builds.
    static void OpenTraceChannel() {}                      // trace channel
    static void BuildExperienceSetting() {}                // auto setting "experience_board"
    static void BuildCommonGlobalSetting() {}              // auto setting "CommonGlobal"
    static void BuildFileNotifierAndReaderHeap() {}        // "GlobalFileNotifier", "FileReaderHeap"
    static void BuildNullOperationTemplate() {}            // operation template "__Null__"
    static void BuildFileNameStatics() {}                  // TFileName statics, "__GlobalMap__"
    static void BuildPathConstants() {}                    // separators, TFileName::null, "AA_FileNameListCache"
    static void BuildMainThreadVitalMessageManager() {}    // g_mainThreadVitalMessageManager
    static void BuildLateServices() {}                     // tick clock, change signaler, randomizer

    std::array<std::function<void()>, 3> m_functionSlots;
    std::vector<std::unique_ptr<TLibraryGuard>> m_guards;
};

TLibraryStart const s_libraryStart;

} // namespace
