#pragma once
#include "zorbinExport.h"

#include <string>

namespace zorbin {

/// Prints a latitude or a longitude in degrees, degrees and minutes, or degrees, minutes and
/// seconds. Texts are Latin-1, their degree sign is the byte 0xB0; they don't depend on the locale.
///
/// Degrees have two digits for a latitude and three for a longitude, minutes and seconds two.
/// Values are rounded to the nearest last place, and carried: there are never 60 minutes or
/// seconds. What rounds to zero is printed as positive, north or east.
class ZORBIN_EXPORT latLonPrinter_t
{
public:
    /// The fields of a text.
    enum coordFormat_t
    {
        CF_D = 0,  ///< degrees
        CF_DM = 1, ///< degrees, minutes
        CF_DMS = 2 ///< degrees, minutes, seconds
    };

    /// How the hemisphere is told.
    enum hemiFormat_t
    {
        HF_NEG_PREFIX = 0,  ///< "-" before a negative value
        HF_SIGN_PREFIX = 1, ///< "+" or "-" before any value
        HF_CHAR_SUFFIX = 2  ///< "N", "S", "E" or "W" as the last character
    };

    /// What comes after a field.
    enum sepFormat_t
    {
        SF_SPACE = 0,     ///< a space: 12 34.5 N
        SF_MARK = 1,      ///< its mark: 12°34.5'N
        SF_MARK_SPACE = 2 ///< its mark and a space: 12° 34.5' N
    };

    /// Sets the fields, CF_D at first.
    void coordFormat(const coordFormat_t& format);
    /// Sets how the hemisphere is told, HF_NEG_PREFIX at first.
    void hemisphereFormat(const hemiFormat_t& format);
    /// Sets the separators, SF_MARK at first.
    void separatorFormat(const sepFormat_t& format);
    /// Sets the decimals of the last field, 6 at first; at most the 15 significant decimals of a
    /// degree, 13 of a minute or 11 of a second are printed.
    void precision(unsigned int decimals);

    /// Prints a latitude in degrees, north positive. One whose degrees don't fit into two digits,
    /// or that is no number, gives no digits, only a plus or a hemisphere: an empty field is no
    /// wrong position.
    std::string printLatitude(double value) const;
    /// Prints a longitude in degrees, east positive, likewise with three digits.
    std::string printLongitude(double value) const;

private:
    std::string print(double value, bool isLatitude) const;

    coordFormat_t m_coordFormat = CF_D;
    hemiFormat_t m_hemiFormat = HF_NEG_PREFIX;
    sepFormat_t m_sepFormat = SF_MARK;
    unsigned m_precision = 6;
};

} // namespace zorbin
