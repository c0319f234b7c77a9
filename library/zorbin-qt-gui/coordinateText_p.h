#pragma once
#include <QString>
#include <optional>

namespace zorbin_qt_gui {

/// A latitude or a longitude as somebody else wrote it.
struct coordinateText_t
{
    double value;          ///< degrees; positive if there is no hemisphere
    bool hasHemisphere;    ///< by a sign or a letter, or as one of a pair
    bool isPlainMagnitude; ///< no more than a number, which may be a piece of something else
    bool isOfPair;         ///< the text holds the other coordinate, too
};

/// Reads a latitude from the forms that are usual elsewhere:
/// - degrees, minutes and seconds in fields with typographic or plain marks, colons, blanks or
///   hyphens, with a sign or a letter before or behind them: -12.575, 12°34′30″N, N 12 34.5,
///   12:34:30 S, 12-34.5S
/// - with the letters d, m and a small s for marks: 12d34m30sN
/// - with a comma for the point, where that is clear: 12°34,5'N
/// - without separators, given a sign or a letter: +1234.5, 1234.5N, 1234.5,N
/// - named: lat 12.575
/// - the latitude of a pair: 12.575, -45.2 or +1234.5-04512.3/ or E45 N12, named coordinates, a geo
///   URI (geo:12.575,-45.2) or a point in well-known text, whose longitude comes first: POINT(-45.2
///   12.575)
///
/// Gives nothing for anything else, which includes what can be read in two ways (12,5) and what is
/// beyond the limits.
std::optional<coordinateText_t> readLatitude(const QString& text);
/// Reads a longitude in the same way.
std::optional<coordinateText_t> readLongitude(const QString& text);

} // namespace zorbin_qt_gui
