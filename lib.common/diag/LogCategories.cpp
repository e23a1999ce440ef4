#include "diag/LogCategories.h"

#define COMMON_LOG_CATEGORY(function, name)                           \
    QLoggingCategory const& function()                                \
    {                                                                 \
        static QLoggingCategory const category(name, QtWarningMsg);   \
        return category;                                              \
    }

COMMON_LOG_CATEGORY(LogProcess, "Log.Process")
COMMON_LOG_CATEGORY(LogStartup, "Log.Startup")
COMMON_LOG_CATEGORY(LogQuitting, "Log.Quitting")
COMMON_LOG_CATEGORY(LogEvents, "Log.Events")
COMMON_LOG_CATEGORY(LogCommandLine, "Log.CommandLine")
COMMON_LOG_CATEGORY(LogPaths, "Log.Paths")
COMMON_LOG_CATEGORY(LogFlow, "Log.Flow")
COMMON_LOG_CATEGORY(LogBenchmark, "Log.Benchmark")
COMMON_LOG_CATEGORY(LogSystemInfo, "Log.SystemInfo")
COMMON_LOG_CATEGORY(LogCustomEvent, "Log.CustomEvent")
COMMON_LOG_CATEGORY(LogNoGoZone, "Log.NoGoZone")
COMMON_LOG_CATEGORY(BenchGeneric, "Bench.Generic")
