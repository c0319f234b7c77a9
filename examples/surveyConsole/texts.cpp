#include "texts.h"

#include <QDateTime>
#include <QTimeZone>
#include <cmath>

namespace survey_console {
namespace {

const double LAST_TIME = 253402300799.0; // 9999-12-31 23:59:59 UTC
const double NAUTICAL_MILE = 1852.0;     // m

bool isShowable(double time)
{
    return time >= 0.0 && time <= LAST_TIME;
}

QDateTime utc(double time)
{
    static const QTimeZone zone = QTimeZone::utc();
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::floor(time * 1000.0 + 1e-3)),
                                          zone);
}

double rounded(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale + 0.0; // turns -0 into 0
}

// Degrees and minutes to 0.001', rounded as a whole so that minutes never read 60.000.
QString angleOfPosition(double degrees, int digits, QChar positive, QChar negative)
{
    const qint64 thousandths = std::llround(std::fabs(degrees) * 60000.0);
    return QStringLiteral("%1\u00b0%2' %3")
        .arg(thousandths / 60000, digits, 10, QLatin1Char('0'))
        .arg(static_cast<double>(thousandths % 60000) / 1000.0, 6, 'f', 3, QLatin1Char('0'))
        .arg(degrees < 0.0 ? negative : positive);
}

} // namespace

QString noValueText()
{
    return QStringLiteral("\u2013");
}

QString timeText(double time, int decimals)
{
    if (!isShowable(time))
        return noValueText();
    const QString text = utc(time).toString(QStringLiteral("HH:mm:ss.zzz"));
    return decimals > 0 ? text.left(9 + decimals) : text.left(8);
}

QString dateText(double time)
{
    return isShowable(time) ? utc(time).toString(QStringLiteral("yyyy-MM-dd")) : noValueText();
}

QString durationText(double seconds)
{
    if (!isShowable(seconds))
        return noValueText();
    const auto whole = static_cast<qint64>(seconds);
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QString valueText(double value, int decimals)
{
    return std::isfinite(value) ? QString::number(rounded(value, decimals), 'f', decimals)
                                : noValueText();
}

QString angleText(double degrees, int decimals)
{
    if (!std::isfinite(degrees))
        return noValueText();
    const double turn = std::fmod(rounded(degrees, decimals), 360.0);
    return valueText(rounded(turn < 0.0 ? turn + 360.0 : turn, decimals), decimals);
}

QString bearingText(double degrees)
{
    if (!std::isfinite(degrees))
        return noValueText();
    return angleText(degrees, 1).rightJustified(5, QLatin1Char('0')) + QStringLiteral("\u00b0");
}

QString rangeText(double metres)
{
    if (!std::isfinite(metres))
        return noValueText();
    return metres < NAUTICAL_MILE ? valueText(metres, 0) + QStringLiteral(" m")
                                  : valueText(metres / NAUTICAL_MILE, 2) + QStringLiteral(" nmi");
}

QString positionText(const QGeoCoordinate& position)
{
    if (!position.isValid())
        return noValueText();
    return angleOfPosition(position.latitude(), 2, QLatin1Char('N'), QLatin1Char('S')) +
           QStringLiteral("  ") +
           angleOfPosition(position.longitude(), 3, QLatin1Char('E'), QLatin1Char('W'));
}

} // namespace survey_console
