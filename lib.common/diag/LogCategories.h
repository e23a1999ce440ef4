#pragma once

#include "core/CommonExport.h"

#include <QLoggingCategory>

// The library's logging categories, each made on its first call and enabled
// from warnings up. Test a category before building a message:
//   qCWarning(LogNoGoZone) << "Place" << 12;
COMMON_EXPORT QLoggingCategory const& LogProcess();
COMMON_EXPORT QLoggingCategory const& LogStartup();
COMMON_EXPORT QLoggingCategory const& LogQuitting();
COMMON_EXPORT QLoggingCategory const& LogEvents();
COMMON_EXPORT QLoggingCategory const& LogCommandLine();
COMMON_EXPORT QLoggingCategory const& LogPaths();
COMMON_EXPORT QLoggingCategory const& LogFlow();
COMMON_EXPORT QLoggingCategory const& LogBenchmark();
COMMON_EXPORT QLoggingCategory const& LogSystemInfo();
COMMON_EXPORT QLoggingCategory const& LogCustomEvent();
// States that should not occur: the place's name and a number.
COMMON_EXPORT QLoggingCategory const& LogNoGoZone();
COMMON_EXPORT QLoggingCategory const& BenchGeneric();
