#include "plainChart.h"

#include <QPaintEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

class plainCanvas_t : public QWidget
{
public:
    explicit plainCanvas_t(plainChart_t* chart) : QWidget(chart), m_chart(chart)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        painter.setBackground(QBrush(m_chart->m_color, Qt::SolidPattern));
        for (const QRect& rect : event->region()) {
            painter.eraseRect(rect);
            zorbin_qt_gui::simpleCurveRenderer_t::context_t context;
            context.painter = &painter;
            context.drawMinTime = m_chart->timeMin + rect.left() / m_chart->m_xScale;
            context.drawMaxTime = m_chart->timeMin + (rect.right() + 1) / m_chart->m_xScale;
            context.minTime = m_chart->timeMin;
            context.maxValue = m_chart->valueMax;
            context.xScale = m_chart->m_xScale;
            context.yScale = m_chart->m_yScale;
            context.width = static_cast<unsigned>(width());
            context.height = static_cast<unsigned>(height());
            for (const plainCurve_t* const curve : m_chart->m_curves)
                drawPlainly(context, curve->points, curve->color, curve->threshold);
        }
    }

    void resizeEvent(QResizeEvent*) override { m_chart->updateSize(width(), height()); }

private:
    plainChart_t* const m_chart;
};

plainChart_t::plainChart_t()
    : m_canvas(new plainCanvas_t(this)), m_color(palette().color(QPalette::Window))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_canvas);
}

void plainChart_t::addCurve(plainCurve_t* curve)
{
    m_curves.push_back(curve);
    curve->changed = [this](double fromTime, double toTime) { updateChart(fromTime, toTime); };
}

void plainChart_t::removeCurve(plainCurve_t* curve)
{
    m_curves.erase(std::find(m_curves.begin(), m_curves.end(), curve));
}

void plainChart_t::scrollTime(double time)
{
    const double span = timeMax - timeMin;
    if (time < timeMin || time > timeMax + span) {
        timeBounds(time - span, time);
        return;
    }
    int k = m_canvas->width();
    double newMax = timeMin + k / m_xScale;
    if (time <= timeMax && std::abs(newMax - timeMax) * m_xScale < 1e-6)
        return;
    while (time > newMax) {
        ++k;
        newMax = timeMin + k / m_xScale;
    }
    if (k == m_canvas->width() && std::abs(newMax - timeMax) * m_xScale < 1e-6)
        return;
    // What was painted with the scale of a former width can't be shifted into place.
    const bool isStretched = std::abs(span * m_xScale - m_canvas->width()) >= 0.5;
    m_scroll = m_canvas->width() - k;
    timeBounds(newMax - span, newMax);
    m_scroll = 0; // also when these were the bounds already
    if (isStretched)
        m_canvas->update();
}

void plainChart_t::timeBounds(double min, double max)
{
    if (min == timeMin && max == timeMax)
        return;
    timeMin = min;
    timeMax = max;
    m_xScale = m_width / (max - min);
    m_signals.append(boundsSignal("timeBoundsChanged", min, max));
    if (m_scroll != 0)
        m_canvas->scroll(m_scroll, 0);
    else
        m_canvas->update();
    m_scroll = 0;
    recalculateBounds();
}

void plainChart_t::valueBounds(double min, double max)
{
    autoscaleValue(false);
    if (min == valueMin && max == valueMax)
        return;
    valueMin = min;
    valueMax = max;
    m_yScale = m_height / (max - min);
    m_signals.append(boundsSignal("valueBoundsChanged", min, max));
    m_canvas->update();
    recalculateBounds();
}

void plainChart_t::minValueRange(double range)
{
    m_minRange = range;
    recalculateBounds();
}

void plainChart_t::autoscaleValue(bool enable)
{
    if (m_autoscale == enable)
        return;
    m_autoscale = enable;
    m_signals.append(QStringLiteral("valueAutoscaleChanged(%1)").arg(enable));
    recalculateBounds();
}

void plainChart_t::setBackgroundColor(const QColor& color)
{
    m_color = color;
    m_canvas->update();
}

QStringList plainChart_t::takeSignals()
{
    return std::exchange(m_signals, QStringList());
}

void plainChart_t::updateSize(int width, int height)
{
    m_width = width;
    m_height = height;
    recalculateBounds();
}

void plainChart_t::updateChart(double fromTime, double toTime)
{
    recalculateBounds();
    if (!(fromTime <= timeMax && timeMin <= toTime))
        return;
    const int x0 = plainTruncated((fromTime - timeMin) * m_xScale);
    const int w = plainTruncated(m_xScale * (toTime - timeMin));
    m_canvas->update(QRect(x0, 0, w, m_canvas->height()));
}

void plainChart_t::recalculateBounds()
{
    if (!m_autoscale) {
        m_yScale = m_height / (valueMax - valueMin);
        return;
    }
    double lo = std::numeric_limits<double>::max();
    double hi = -lo;
    for (const plainCurve_t* const curve : m_curves) {
        lo = std::min(lo, curve->valueMin(timeMin, timeMax));
        hi = std::max(hi, curve->valueMax(timeMin, timeMax));
    }
    if (lo > hi)
        lo = hi = 0.0;
    double range = hi - lo;
    if (m_minRange > range) {
        const double mid = (hi + lo) * 0.5;
        lo = mid - m_minRange * 0.5;
        hi = mid + m_minRange * 0.5;
        range = hi - lo;
    }
    const int usable = m_height - 2 * 3; // the margin is 3 pixels
    double newMin = valueMin;
    double newMax = valueMax;
    const bool fits =
        lo >= valueMin && hi <= valueMax && plainTruncated(m_yScale * range) >= usable * 0.5;
    if (!fits && usable != 0) {
        const double mid = (hi + lo) * 0.5;
        const double half = 0.5 * m_height * (1.2 * range / usable);
        newMin = mid - half;
        newMax = mid + half;
    }
    m_yScale = m_height / (newMax - newMin);
    if (newMin == valueMin && newMax == valueMax)
        return;
    valueMin = newMin;
    valueMax = newMax;
    m_signals.append(boundsSignal("valueBoundsChanged", newMin, newMax));
    m_canvas->update();
}

QString boundsSignal(const char* name, double min, double max)
{
    return QStringLiteral("%1(%2, %3)")
        .arg(QLatin1String(name))
        .arg(min, 0, 'g', 17)
        .arg(max, 0, 'g', 17);
}
