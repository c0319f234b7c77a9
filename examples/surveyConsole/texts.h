#pragma once
#include <QGeoCoordinate>
#include <QString>

namespace survey_console {

/// What stands where there is no value.
QString noValueText();

/// Time of day in UTC, "00:03:25" or with \p decimals (up to 3) "00:03:25.4", cut, not rounded.
/// noValueText() for a time that is not finite or outside the years 1970 to 9999.
QString timeText(double time, int decimals = 0);
/// Date in UTC, "2014-08-01"; noValueText() likewise.
QString dateText(double time);
/// "1:05:09" for 3909.7 s.
QString durationText(double seconds);

/// \p value with \p decimals, never "-0"; noValueText() if not finite.
QString valueText(double value, int decimals);
/// An angle brought to 0 up to below 360 deg as it is shown: 359.96 is "0.0" with one decimal.
QString angleText(double degrees, int decimals);
/// A bearing as it is spoken, in three digits and a decimal: "039.2°"; noValueText() if not finite.
QString bearingText(double degrees);

/// A distance in metres: "523 m", from one nautical mile on "1.23 nmi"; noValueText() if not
/// finite.
QString rangeText(double metres);

/// "22°00.110' S  017°56.359' W"; noValueText() for an invalid position.
QString positionText(const QGeoCoordinate& position);

} // namespace survey_console
