// The stream members of TString: Write and Read with a data format, and the
// tagged state.

#include "persist/TInputStream.h"
#include "persist/TOutputStream.h"
#include "persist/TTaggedOutputStream.h"
#include "text/TString.h"

template <class T>
unsigned TString<T>::Write(TOutputStream& stream, EDataFormat format) const
{
    if (format == dataFormatText) {
        if constexpr (std::is_same_v<T, char>)
            return stream.WriteString(*this, false);
        else
            return stream.WriteString(TString<char>(*this), false);
    }
    return stream.WriteString(*this, true);
}

template <class T>
unsigned TString<T>::Read(TInputStream& stream, EDataFormat)
{
    return stream.ReadString(*this);
}

template <class T>
void TString<T>::WriteState(TTaggedOutputStream& stream, long long, char const* tag, int index) const
{
    TScopedOutputGroup group(stream, tag, index);
    stream.SetValue(c_str(), "s", 0);
}

template unsigned TString<char>::Write(TOutputStream&, EDataFormat) const;
template unsigned TString<char16_t>::Write(TOutputStream&, EDataFormat) const;
template unsigned TString<char>::Read(TInputStream&, EDataFormat);
template unsigned TString<char16_t>::Read(TInputStream&, EDataFormat);
template void TString<char>::WriteState(TTaggedOutputStream&, long long, char const*, int) const;
template void TString<char16_t>::WriteState(TTaggedOutputStream&, long long, char const*, int) const;
