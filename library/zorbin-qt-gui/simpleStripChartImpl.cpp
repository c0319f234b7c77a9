#include "simpleStripChartImpl.h"

#include "simpleStripChartWidget.h"

#include <QPointer>
#include <algorithm>
#include <cmath>

namespace zorbin_qt_gui {

simpleStripChartImpl_t::simpleStripChartImpl_t(QWidget* parent)
    : stripChartImpl_t(parent), m_widget(std::make_unique<simpleStripChartWidget_t>(this))
{
    connect(m_widget.get(), &simpleStripChartWidget_t::mousePos, this, &stripChartImpl_t::mousePos);
}

simpleStripChartImpl_t::~simpleStripChartImpl_t() = default;

QWidget* simpleStripChartImpl_t::widget()
{
    return m_widget.get();
}

void simpleStripChartImpl_t::scrollTime(double t)
{
    if (!std::isfinite(t))
        return;
    const double timeMin = minTimeBound();
    const double timeMax = maxTimeBound();
    const double span = timeMax - timeMin;
    const double xScale = xScaleFactor();
    if (t < timeMin || t > timeMax + span || !(xScale > 0.0) || !std::isfinite(xScale)) {
        timeBounds(t - span, t);
        return;
    }

    // Inside the window the edge stays; that its computation may be rounded otherwise must neither
    // repaint the whole widget at every call nor creep.
    constexpr double roundingPixels = 1e-6;
    const int width = m_widget->width();
    int pixels = width;
    double newMax = timeMin + pixels / xScale;
    if (t <= std::max(timeMax, newMax) && std::abs(newMax - timeMax) * xScale < roundingPixels) {
        m_widget->timeScroll(0);
        return;
    }
    // The first whole-pixel position at or after t; it is never far.
    while (t > newMax) {
        ++pixels;
        newMax = timeMin + pixels / xScale;
    }
    const QPointer<simpleStripChartImpl_t> self(this);
    m_widget->timeScroll(width - pixels);
    timeBounds(newMax - span, newMax);
    if (!self)
        return;
    m_widget->timeScroll(0); // not for later bounds, should these have been the same
    // After a resize the scale is that of the former width until the bounds change; what was
    // painted with it can't be shifted into place.
    if (std::abs(span * xScale - width) >= 0.5)
        m_widget->update();
}

} // namespace zorbin_qt_gui
