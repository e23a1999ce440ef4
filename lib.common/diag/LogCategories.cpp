#include "diag/LogCategories.h"

QLoggingCategory const& LogNoGoZone()
{
    static QLoggingCategory const category("Log.NoGoZone", QtWarningMsg);
    return category;
}
