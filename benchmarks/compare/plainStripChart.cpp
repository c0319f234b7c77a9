#include "plainStripChart.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {
const int blockSize = 1000;
const int margin = 3;             // pixels kept free by autoscale above and below the data
const double minValueRange = 2.0; // autoscale shows at least this
const double largest = std::numeric_limits<double>::max();

// Toward zero; beyond the limits of int the limits, and 0 for NaN.
int truncated(double x)
{
    if (std::isnan(x))
        return 0;
    if (x <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    if (x >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    return static_cast<int>(x);
}

double lesser(double a, double b)
{
    return std::min(a, b);
}

double greater(double a, double b)
{
    return std::max(a, b);
}

bool isEarlier(const plainCurve_t::point_t& point, double time)
{
    return point.time < time;
}

bool isLater(double time, const plainCurve_t::point_t& point)
{
    return time < point.time;
}
} // namespace

bool plainCurve_t::append(const point_t& point)
{
    if (!m_points.empty() && !(point.time > m_points.back().time))
        return false;
    m_points.push_back(point);
    ++m_incoming;
    return true;
}

void plainCurve_t::sealBlocks()
{
    while (m_incoming > blockSize) {
        const auto first = m_points.size() - static_cast<std::size_t>(m_incoming);
        const double start = m_points[first].time;
        const double end = m_points[first + blockSize].time;
        m_blocks.push_back(
            {start, end, scan(start, end, largest, lesser), scan(start, end, -largest, greater)});
        m_incoming -= blockSize;
    }
}

int plainCurve_t::prune(double* from, double* to)
{
    const double cutoff = m_points.back().time - duration;
    int count = 0;
    *from = m_points.front().time;
    while (!m_points.empty() && m_points.front().time < cutoff) {
        *to = m_points.front().time;
        m_points.pop_front();
        ++count;
    }
    if (!m_points.empty())
        *to = m_points.front().time;
    m_outgoing -= count;
    while (!m_blocks.empty() && m_outgoing <= 0 && count > 0) {
        m_blocks.pop_front();
        m_outgoing += blockSize;
    }
    if (m_outgoing < 0) {
        m_incoming += m_outgoing;
        m_outgoing = 0;
    }
    return count;
}

double plainCurve_t::scan(double from, double to, double worst, better_t better) const
{
    if (m_points.empty())
        return 0.0;
    const auto first = std::lower_bound(m_points.begin(), m_points.end(), from, isEarlier);
    const auto last = std::upper_bound(m_points.begin(), m_points.end(), to, isLater);
    double best = worst;
    for (auto point = first; point < last; ++point)
        best = better(best, point->value);
    return best;
}

double plainCurve_t::extreme(double from, double to, double worst, better_t better,
                             double block_t::*cached) const
{
    if (m_blocks.empty() || m_blocks.front().startTime > to || from > m_blocks.back().endTime)
        return scan(from, to, worst, better);
    double best = worst;
    if (m_blocks.front().startTime > from)
        best = better(best, scan(from, m_blocks.front().startTime, worst, better));
    if (to > m_blocks.back().endTime)
        best = better(best, scan(m_blocks.back().endTime, to, worst, better));
    auto block = m_blocks.begin();
    while (block != m_blocks.end() && from > block->endTime)
        ++block;
    for (; block != m_blocks.end() && block->startTime < to; ++block)
        best = better(best, (*block).*cached);
    return best;
}

double plainCurve_t::valueMin(double from, double to) const
{
    return extreme(from, to, largest, lesser, &block_t::minValue);
}

double plainCurve_t::valueMax(double from, double to) const
{
    return extreme(from, to, -largest, greater, &block_t::maxValue);
}

plainStripChart_t::plainStripChart_t(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_MouseTracking);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

int plainStripChart_t::addCurve(const QColor& color, double duration)
{
    m_curves.emplace_back();
    m_curves.back().color = color;
    m_curves.back().duration = duration;
    return static_cast<int>(m_curves.size()) - 1;
}

void plainStripChart_t::addPoints(int curve, const std::vector<plainCurve_t::point_t>& points)
{
    plainCurve_t& target = m_curves[static_cast<std::size_t>(curve)];
    if (points.empty())
        return;
    const bool wasEmpty = target.points().empty();
    const double fromTime = (wasEmpty ? points.front() : target.points().back()).time;
    int added = 0;
    for (const plainCurve_t::point_t& point : points)
        added += target.append(point) ? 1 : 0;
    if (added > 0)
        pointsAppended(&target, fromTime);
}

void plainStripChart_t::addPoint(int curve, const plainCurve_t::point_t& point)
{
    plainCurve_t& target = m_curves[static_cast<std::size_t>(curve)];
    const double fromTime = target.points().empty() ? point.time : target.points().back().time;
    if (target.append(point))
        pointsAppended(&target, fromTime);
}

void plainStripChart_t::pointsAppended(plainCurve_t* curve, double fromTime)
{
    curve->sealBlocks();
    updateColumns(fromTime, curve->points().back().time);
    double prunedFrom = 0.0;
    double prunedTo = 0.0;
    if (curve->prune(&prunedFrom, &prunedTo) > 0)
        updateColumns(prunedFrom, prunedTo);
}

void plainStripChart_t::updateColumns(double fromTime, double toTime)
{
    recalculateBounds();
    if (!(fromTime <= m_timeMax && m_timeMin <= toTime))
        return;
    // Deliberate: the width is measured from the chart's left edge, so more is painted on the
    // right than was touched.
    update(truncated((fromTime - m_timeMin) * m_xScale), 0,
           truncated(m_xScale * (toTime - m_timeMin)), height());
}

void plainStripChart_t::scrollTime(double time)
{
    const double span = m_timeMax - m_timeMin;
    if (time < m_timeMin || time > m_timeMax + span) {
        timeBounds(time - span, time);
        return;
    }
    int columns = width();
    double newMax = m_timeMin + columns / m_xScale;
    while (time > newMax) {
        ++columns;
        newMax = m_timeMin + columns / m_xScale;
    }
    if (columns == width() && std::abs(newMax - m_timeMax) * m_xScale < 1e-6)
        return; // the same edge but for rounding
    moveTime(newMax - span, newMax, width() - columns);
}

void plainStripChart_t::timeBounds(double min, double max)
{
    moveTime(min, max, 0);
}

void plainStripChart_t::moveTime(double min, double max, int shift)
{
    if (min == m_timeMin && max == m_timeMax)
        return;
    m_timeMin = min;
    m_timeMax = max;
    m_xScale = m_width / (max - min);
    if (shift != 0)
        scroll(shift, 0);
    else
        update();
    recalculateBounds();
}

void plainStripChart_t::valueBounds(double min, double max)
{
    m_autoscale = false;
    if (min == m_valueMin && max == m_valueMax)
        return;
    m_valueMin = min;
    m_valueMax = max;
    m_yScale = m_height / (max - min);
    update();
}

void plainStripChart_t::recalculateBounds()
{
    if (!m_autoscale) {
        m_yScale = m_height / (m_valueMax - m_valueMin);
        return;
    }
    double low = 0.0;
    double high = 0.0;
    if (!m_curves.empty()) {
        low = largest;
        high = -largest;
        for (const plainCurve_t& curve : m_curves) {
            low = std::min(low, curve.valueMin(m_timeMin, m_timeMax));
            high = std::max(high, curve.valueMax(m_timeMin, m_timeMax));
        }
        if (low > high)
            low = high = 0.0;
    }
    double range = high - low;
    const double middle = (high + low) * 0.5;
    if (minValueRange > range) {
        low = middle - minValueRange * 0.5;
        high = middle + minValueRange * 0.5;
        range = high - low;
    }
    const int usable = m_height - 2 * margin;
    const bool fits = low >= m_valueMin && high <= m_valueMax;
    double newMin = m_valueMin;
    double newMax = m_valueMax;
    if (usable != 0 && !(fits && truncated(m_yScale * range) >= usable * 0.5)) {
        const double centre = (high + low) * 0.5;
        const double half = 0.5 * m_height * (1.2 * range / usable);
        newMin = centre - half;
        newMax = centre + half;
    }
    m_yScale = m_height / (newMax - newMin);
    if (newMin == m_valueMin && newMax == m_valueMax)
        return;
    m_valueMin = newMin;
    m_valueMax = newMax;
    update();
}

void plainStripChart_t::resizeEvent(QResizeEvent*)
{
    m_width = width();
    m_height = height();
    // Deliberate: the time scale follows only when the time bounds change.
    recalculateBounds();
}

void plainStripChart_t::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setBackground(palette().color(QPalette::Window));
    for (const QRect& rect : event->region()) {
        painter.eraseRect(rect);
        const double drawMin = m_timeMin + rect.left() / m_xScale;
        const double drawMax = m_timeMin + (rect.right() + 1) / m_xScale;
        for (const plainCurve_t& curve : m_curves)
            drawCurve(&painter, curve, drawMin, drawMax);
    }
}

void plainStripChart_t::drawCurve(QPainter* painter, const plainCurve_t& curve, double drawMin,
                                  double drawMax) const
{
    const std::deque<plainCurve_t::point_t>& points = curve.points();
    if (points.empty())
        return;
    auto prev = std::lower_bound(points.begin(), points.end(), drawMin, isEarlier);
    if (prev != points.begin())
        --prev;
    auto end = std::upper_bound(points.begin(), points.end(), drawMax, isLater);
    if (end == points.end())
        --end;
    QPen pen(curve.color, 2);
    painter->setPen(pen);
    const auto position = [this](const plainCurve_t::point_t& point) {
        return QPoint(truncated((point.time - m_timeMin) * m_xScale),
                      truncated((m_valueMax - point.value) * m_yScale));
    };
    for (; prev != end; ++prev) {
        const auto next = prev + 1;
        QColor color = next->color;
        if (next->time - prev->time > curve.gap)
            color.setAlpha(color.alpha() / 4);
        if (color != pen.color()) {
            pen.setColor(color);
            painter->setPen(pen);
        }
        painter->drawLine(position(*prev), position(*next));
    }
}
