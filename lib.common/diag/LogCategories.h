#pragma once

#include "core/CommonExport.h"

#include <QLoggingCategory>

// Logging categories of the library. A category is tested before a message is
// built: qCWarning(LogNoGoZone) << "Place" << 12;
COMMON_EXPORT QLoggingCategory const& LogNoGoZone();
