#pragma once

#include "core/TListElement.h"
#include "text/TString.h"

// A string that can stand in a TFlexList. Compare mode 0 orders by character
// value, mode 1 without regard to case.
template <class T>
class COMMON_EXPORT LString : public TString<T>, public TListElement
{
public:
    LString() = default;
    LString(T const* text) : TString<T>(text) {}
    LString(T const* text, length_t length) : TString<T>(text, length) {}
    LString(TString<T> const& text) : TString<T>(text) {}
    LString(LString const& other) = default;
    // Only the text: an element keeps its place in its list.
    LString& operator=(LString const& other)
    {
        TString<T>::operator=(other);
        return *this;
    }
    using TString<T>::operator=;
    ~LString() override = default;

    int Compare(TObject const& other, long long mode) const override;
    TObject* CreateClone(void* context) const override;
    unsigned int GetHashedValue() const override;
};

extern template class COMMON_EXPORT LString<char>;
extern template class COMMON_EXPORT LString<char16_t>;
