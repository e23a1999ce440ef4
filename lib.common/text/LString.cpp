#include "text/LString.h"

template <class T>
int LString<T>::Compare(TObject const& other, long long mode) const
{
    return this->CompareWith(static_cast<LString const&>(other).c_str(), mode != 1);
}

template <class T>
TObject* LString<T>::CreateClone(void*) const
{
    return new LString(static_cast<TString<T> const&>(*this));
}

template <class T>
unsigned int LString<T>::GetHashedValue() const
{
    return this->GetHashValue();
}

template class LString<char>;
template class LString<char16_t>;
