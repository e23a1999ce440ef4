#pragma once

#include "core/CommonExport.h"

// How the digit behind the last one kept is treated.
enum ESignificantRounding : int
{
    eRoundToNearest = 0,  // halves away from zero
    eRoundTowardZero = 1, // cut
    eRoundAwayFromZero = 2,
};

// Rounds value to digits significant digits (1 to 17; others are clamped)
// and reports in *lastDigitExponent the power of ten of the last digit kept:
// 1234.5 to 3 digits gives 1230 and 1, 0.012345 gives 0.0123 and -4. A carry
// that adds a digit (9.96 to 2 digits gives 10) moves the exponent up.
// Zero gives 0 and 1 - digits, as if its digits were all zeros; NaN and the
// infinities come back unchanged with an exponent of 0.
COMMON_EXPORT double RoundToSignificantDigits(double value, int digits, int* lastDigitExponent = nullptr,
                                              ESignificantRounding mode = eRoundToNearest);

// 10 to the power n, exact for 0 <= n <= 22 and through pow otherwise.
COMMON_EXPORT double PowerOfTen(int n);
