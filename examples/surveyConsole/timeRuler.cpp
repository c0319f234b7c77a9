#include "timeRuler.h"
#include "texts.h"
#include "theme.h"

#include <cmath>

namespace survey_console {
namespace {

const int TICK_LENGTH = 6; // px
const int SPACING = 1;     // px
const char NO_BREAK_SPACE = '\xa0';
const double BASE = 60.0; // from seconds to minutes to hours

} // namespace

timeRuler_t::timeRuler_t(QWidget* parent) : ruler_t(parent)
{
    tickTable({{1.0, 6}, {2.0, 4}, {5.0, 5}, {10.0, 10}, {15.0, 3}, {30.0, 6}}, BASE);
    tickLength(TICK_LENGTH);
    spacing(SPACING);
    theme::setUpRuler(this);
    setToolTip(tr("Time (UTC)"));
}

std::string timeRuler_t::textFromValue(double value) const
{
    // To the millisecond: a tick a hair before its second belongs to it.
    const QString text = timeText(std::round(value * 1000.0) / 1000.0);
    if (text == noValueText())
        return {};
    return NO_BREAK_SPACE + text.toStdString() + NO_BREAK_SPACE;
}

void timeRuler_t::point(double time_)
{
    if (std::isnan(time_))
        clearIndicator();
    else
        indicator(time_);
}

} // namespace survey_console
