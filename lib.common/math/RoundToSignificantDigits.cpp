#include "math/RoundToSignificantDigits.h"

#include <cmath>

namespace {

constexpr double s_powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// value × 10^n, as one exact multiplication or division where the power is
// exact, so that a decimal step doesn't pick up the error of pow.
double ScaleByPowerOfTen(double value, int n)
{
    if (n >= 0 && n <= 22)
        return value * s_powersOfTen[n];
    if (n < 0 && n >= -22)
        return value / s_powersOfTen[-n];
    // Beyond the table the two halves keep the intermediate finite for
    // subnormal and near-maximal values.
    int half = n / 2;
    return value * std::pow(10.0, half) * std::pow(10.0, n - half);
}

double RoundMantissa(double mantissa, ESignificantRounding mode)
{
    double nearest = std::round(mantissa);
    if (mode == eRoundToNearest)
        return nearest;
    // The scaled value of an exact decimal can land a hair off an integer;
    // a directed rounding must not take that hair for a digit.
    if (std::fabs(mantissa - nearest) <= mantissa * 1e-15)
        return nearest;
    return mode == eRoundTowardZero ? std::floor(mantissa) : std::ceil(mantissa);
}

} // namespace

double PowerOfTen(int n)
{
    return ScaleByPowerOfTen(1.0, n);
}

double RoundToSignificantDigits(double value, int digits, int* lastDigitExponent, ESignificantRounding mode)
{
    if (digits < 1)
        digits = 1;
    else if (digits > 17)
        digits = 17;
    if (value == 0 || !std::isfinite(value)) {
        if (lastDigitExponent)
            *lastDigitExponent = value == 0 ? 1 - digits : 0;
        return value;
    }
    double magnitude = std::fabs(value);
    int exponent = static_cast<int>(std::floor(std::log10(magnitude))) - digits + 1;
    double low = s_powersOfTen[digits - 1];
    double high = s_powersOfTen[digits];
    double mantissa = ScaleByPowerOfTen(magnitude, -exponent);
    // log10 may be one off next to a power of ten.
    if (mantissa >= high) {
        ++exponent;
        mantissa = ScaleByPowerOfTen(magnitude, -exponent);
    } else if (mantissa < low) {
        --exponent;
        mantissa = ScaleByPowerOfTen(magnitude, -exponent);
    }
    mantissa = RoundMantissa(mantissa, mode);
    double rounded = ScaleByPowerOfTen(mantissa, exponent);
    if (mantissa >= high)
        ++exponent;
    if (lastDigitExponent)
        *lastDigitExponent = exponent;
    return value < 0 ? -rounded : rounded;
}
