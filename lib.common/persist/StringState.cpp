// The tagged state of the strings: a group under the caller's tag with the
// text as "s" (TStringEx adds its number as "v64"). The writing half of
// TString lives with its stream members.

#include "persist/TTaggedInputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "text/TString.h"
#include "text/TStringEx.h"

#include <type_traits>

namespace {

template <class T>
TString<T> ReadText(TTaggedInputStream& stream)
{
    if constexpr (std::is_same_v<T, char>)
        return stream.GetValueA("", "s");
    else
        return stream.GetValue(u"", "s");
}

} // namespace

template <class T>
bool TString<T>::RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    *this = ReadText<T>(stream);
    return true;
}

template <class T>
void TStringEx<T>::WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(this->c_str(), "s");
    stream.SetValue(m_value, "v64");
}

template <class T>
bool TStringEx<T>::RestoreState(TTaggedInputStream& stream, long long, char const* tag, int index)
{
    TScopedInputGroup group(stream, tag, index);
    if (!group.Found())
        return false;
    TString<T>::operator=(ReadText<T>(stream));
    m_value = stream.GetValue(m_value, "v64");
    return true;
}

template bool TString<char>::RestoreState(TTaggedInputStream&, long long, char const*, int);
template bool TString<char16_t>::RestoreState(TTaggedInputStream&, long long, char const*, int);
template class COMMON_EXPORT TStringEx<char>;
template class COMMON_EXPORT TStringEx<char16_t>;
