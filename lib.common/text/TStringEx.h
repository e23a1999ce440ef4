#pragma once

#include "text/TString.h"

// A string with a number beside it. Its state is a group under the caller's
// tag with the values "s" (the text) and "v64" (the number).
template <class T>
class TStringEx : public TString<T>
{
public:
    TStringEx() = default;
    TStringEx(T const* text, long long value = 0) : TString<T>(text), m_value(value) {}
    TStringEx(TString<T> const& text, long long value = 0) : TString<T>(text), m_value(value) {}
    using TString<T>::operator=;

    long long GetValue() const { return m_value; }
    void SetValue(long long value) { m_value = value; }

    // With the tagged streams, in persist/.
    void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

protected:
    long long m_value = 0;
};
