#pragma once

// Inside the library: the two-digit table of the number functions, for the
// writers of fixed-width fields that can skip the general path.

extern char const g_decimalDigitPairs[201]; // "00" "01" ... "99"

template <class T>
inline T* PutTwoDigits(T* out, unsigned value) // value < 100
{
    out[0] = static_cast<T>(g_decimalDigitPairs[value * 2]);
    out[1] = static_cast<T>(g_decimalDigitPairs[value * 2 + 1]);
    return out + 2;
}
