#pragma once

#include "core/CommonExport.h"

// A typed handle through which modules outside the library reach data that
// the host attaches. The frame makes one empty instance at load and frees
// only that one; a host may publish another.
class COMMON_EXPORT TCommonExternData
{
public:
    TCommonExternData() = default;
    virtual ~TCommonExternData() = default;
};

COMMON_EXPORT void SetCommonExternalData(TCommonExternData* data);
COMMON_EXPORT TCommonExternData* CommonExternalData();
