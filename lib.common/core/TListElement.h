#pragma once

#include "core/TObject.h"

// Element base of the intrusive lists. An element is in one list at a time
// and does not unlink itself: whoever deletes it detaches it first.
class COMMON_EXPORT TListElement : public TObject
{
public:
    TListElement() = default;
    // Copies carry the source's links on purpose: insertion overwrites both
    // links without reading them, so a copy can be inserted directly.
    TListElement(TListElement const& other) = default;
    TListElement& operator=(TListElement const& other) = default;
    ~TListElement() override = default;

    TListElement* GetNext() const { return next; }
    TListElement* GetPrev() const { return prev; }

    TListElement* next = nullptr;
    TListElement* prev = nullptr;
};
