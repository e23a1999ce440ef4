#pragma once

#include "core/TListElement.h"

// Element base of TFlexHashMapImp. A concrete class overrides
// GetHashedValue() and IsEqual().
class COMMON_EXPORT THashableElement : public TListElement
{
public:
    int slot = 0; // the bucket the element is in
};
