#include "valueRuler.h"
#include "texts.h"
#include "theme.h"

#include <QFontMetrics>
#include <QSignalBlocker>
#include <algorithm>

namespace survey_console {
namespace {

const int TICK_LENGTH = 6; // px
const int SPACING = 3;     // px
const int MAX_DECIMALS = 4;

} // namespace

valueRuler_t::valueRuler_t(kind_t kind, QWidget* parent) : ruler_t(parent), m_kind(kind)
{
    axisLocation(LEFT);
    tickTable({{1.0, 5}, {2.0, 4}, {5.0, 5}}, 10.0);
    tickLength(TICK_LENGTH);
    spacing(SPACING);
    theme::setUpRuler(this);
    // Takes the width that the layout gives it, not that of its present labels.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    connect(this, &ruler_t::boundsChanged, this, &valueRuler_t::choose);
}

void valueRuler_t::follow(double bottom, double top)
{
    const QSignalBlocker blocker(this);
    range(bottom, top);
}

// The ruler has the range already. One that is too small or too great is taken to its limit about
// the same centre.
void valueRuler_t::choose(double bottom, double top)
{
    const double center = 0.5 * (bottom + top);
    const double half = 0.5 * std::clamp(top - bottom, MIN_SPAN, MAX_SPAN);
    if (top - bottom != 2.0 * half) {
        bottom = center - half;
        top = center + half;
        follow(bottom, top);
    }
    Q_EMIT scaleChosen(bottom, top);
}

std::string valueRuler_t::textFromValue(double value) const
{
    QString text = m_kind == KIND_ANGLE
                       ? angleText(value, MAX_DECIMALS)
                       : valueText(m_kind == KIND_DEPTH ? -value : value, MAX_DECIMALS);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.toLatin1().toStdString();
}

QSize valueRuler_t::sizeHint() const
{
    const int label = QFontMetrics(font()).horizontalAdvance(QStringLiteral("-0000.0"));
    return {label + SPACING + TICK_LENGTH + 1, minimumSizeHint().height()};
}

} // namespace survey_console
