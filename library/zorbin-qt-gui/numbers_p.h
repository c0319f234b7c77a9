#pragma once
#include <cfloat>
#include <cmath>
#include <limits>

// How doubles become integers here. Each rule is defined for every double, NaN included; a bare
// cast of a NaN or of a number beyond the integer's range is undefined behaviour.

namespace zorbin_qt_gui {

/// Drops the fraction. Beyond the range of an int the nearest int comes back, for NaN 0.
inline int truncated(double x)
{
    if (x > -2147483649.0 && x < 2147483648.0)
        return static_cast<int>(x);
    if (x > 0.0)
        return std::numeric_limits<int>::max();
    return x < 0.0 ? std::numeric_limits<int>::min() : 0;
}

/// Drops the fraction. Above the range of an unsigned int its greatest value comes back, below it
/// and for NaN 0.
inline unsigned truncatedToUnsigned(double x)
{
    if (x < 4294967296.0)
        return x > 0.0 ? static_cast<unsigned>(x) : 0;
    return x > 0.0 ? std::numeric_limits<unsigned>::max() : 0;
}

/// The first whole number beyond the range of a 32-bit integer, 2^31.
constexpr double firstBeyondInt = 2147483648.0;

/// Drops the fraction. Beyond the range of an int, from 2^31 on and below -2^31, and for NaN the
/// least int comes back.
inline int truncatedOrLeast(double x)
{
    if (x >= -firstBeyondInt && x < firstBeyondInt)
        return static_cast<int>(x);
    return std::numeric_limits<int>::min();
}

/// Rounds a number from 0 to 2^51 to the nearest whole one, halves to the even one.
inline double rounded(double x)
{
#if FLT_EVAL_METHOD == 0
    constexpr double unit = 4503599627370496.0; // 2^52, from which on doubles have no fraction
    return (x + unit) - unit; // unlike the function below no call, so that loops can be vectorised
#else
    return std::nearbyint(x);
#endif
}

} // namespace zorbin_qt_gui
