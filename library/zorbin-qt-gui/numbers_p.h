#pragma once
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

} // namespace zorbin_qt_gui
