#pragma once
#include "zorbinExport.h"

#include <string>

namespace zorbin {

/// Reads latitudes and longitudes as latLonPrinter_t prints them, in any of its formats: up to
/// three fields (degrees, minutes, seconds), with its mark or a blank between one and the next,
/// decimals in the last one, and a sign before them, the hemisphere's letter behind them, or
/// neither. Texts are Latin-1, their degree sign is the byte 0xB0. Blanks may stand anywhere
/// between these. Doesn't depend on the locale.
class ZORBIN_EXPORT latLonParser_t
{
public:
    /// Reads a latitude into \p value, in degrees, south negative. Returns 0; or -1, with \p value
    /// left alone, for any other text: a field without digits, minutes or seconds of 60 and above,
    /// more than 90 degrees, the letter of a longitude, anything left over.
    int parseLatitude(const std::string& text, double& value) const;
    /// Reads a longitude, west negative, up to 180 degrees, likewise.
    int parseLongitude(const std::string& text, double& value) const;
};

} // namespace zorbin
