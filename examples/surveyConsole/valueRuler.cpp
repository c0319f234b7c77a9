#include "valueRuler.h"
#include "texts.h"
#include "theme.h"

#include <QFontMetrics>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

namespace survey_console {
namespace {

const int TICK_LENGTH = 6; // px
const int SPACING = 3;     // px
const int MAX_DECIMALS = 4;
const QChar NO_BREAK_SPACE(0xa0);

} // namespace

valueRuler_t::valueRuler_t(kind_t kind, QWidget* parent) : ruler_t(parent), m_kind(kind)
{
    axisLocation(LEFT);
    tickTable({{1.0, 5}, {2.0, 4}, {5.0, 5}}, 10.0);
    tickLength(TICK_LENGTH);
    spacing(SPACING);
    theme::setUpRuler(this);
    connect(this, &ruler_t::boundsChanged, this, &valueRuler_t::choose);
}

void valueRuler_t::moveTo(location_t location)
{
    const double from = start();
    const double to = end();
    axisLocation(location);
    follow(0.0, 0.0); // a ruler lays its ticks out on its new edge at a change of its range
    follow(from, to);
    updateGeometry();
}

void valueRuler_t::follow(double start, double end)
{
    const QSignalBlocker blocker(this);
    range(start, end);
}

// The ruler has the range already. One that is too small or too great is taken to its limit about
// the same centre.
void valueRuler_t::choose(double start, double end)
{
    const double center = 0.5 * (start + end);
    const double span = std::abs(end - start);
    if (!(span >= MIN_SPAN && span <= MAX_SPAN)) {
        const double half = std::copysign(0.5 * std::clamp(span, MIN_SPAN, MAX_SPAN), end - start);
        start = center - half;
        end = center + half;
        follow(start, end);
    }
    Q_EMIT scaleChosen(start, end);
}

std::string valueRuler_t::textFromValue(double value) const
{
    QString text;
    switch (m_kind) {
    case KIND_PLAIN:
        text = valueText(value, MAX_DECIMALS);
        break;
    case KIND_DEPTH:
        text = valueText(-value, MAX_DECIMALS);
        break;
    case KIND_ANGLE:
        text = angleText(value, MAX_DECIMALS);
        break;
    case KIND_RANGE:
        text = valueText(std::abs(value), MAX_DECIMALS);
        break;
    }
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    if (axisLocation() == TOP || axisLocation() == BOTTOM) // keeps labels apart
        text = NO_BREAK_SPACE + text + NO_BREAK_SPACE;
    return text.toLatin1().toStdString();
}

QSize valueRuler_t::sizeHint() const
{
    const QFontMetrics metrics(font());
    if (axisLocation() == TOP || axisLocation() == BOTTOM)
        return {0, metrics.height() + minimumSizeHint().height()};
    const int label = metrics.horizontalAdvance(QStringLiteral("-0000.0"));
    return {label + minimumSizeHint().width(), 0};
}

} // namespace survey_console
