#include "plainCurve.h"

#include "recordingRenderer.h"

#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

static const double largest = std::numeric_limits<double>::max();

void plainCurve_t::addPoint(double time, double value, const QColor& pointColor)
{
    addPoints({{time, value, pointColor}});
}

void plainCurve_t::addPoints(const points_t& batch)
{
    double fromTime = points.empty() ? 0.0 : points.back().time;
    int added = 0;
    for (const auto& point : batch) {
        if (!std::isfinite(point.time))
            continue;
        if (!points.empty() && !(point.time > points.back().time))
            continue;
        if (points.empty())
            fromTime = point.time;
        points.push_back(point);
        ++added;
    }
    if (added == 0)
        return;
    incomingCount += added;
    buildSegments();
    log(hookCall("updateIncomingList", size() - static_cast<unsigned>(incomingCount), size()));
    const double toTime = points.back().time;
    log(hookCall("pointsAdded", static_cast<unsigned>(added), fromTime, toTime));
    if (changed)
        changed(fromTime, toTime);
    prune();
}

void plainCurve_t::clear()
{
    if (points.empty())
        return;
    const double kept = std::exchange(duration, -1.0);
    prune();
    duration = kept;
}

double plainCurve_t::timeMin() const
{
    return points.empty() ? 0.0 : points.front().time;
}

double plainCurve_t::timeMax() const
{
    return points.empty() ? 0.0 : points.back().time;
}

double plainCurve_t::valueMin() const
{
    return points.empty() ? 0.0 : valueMin(timeMin(), timeMax());
}

double plainCurve_t::valueMax() const
{
    return points.empty() ? 0.0 : valueMax(timeMin(), timeMax());
}

double plainCurve_t::valueMin(double from, double to) const
{
    return extreme(from, to, false);
}

double plainCurve_t::valueMax(double from, double to) const
{
    return extreme(from, to, true);
}

double plainCurve_t::timeMin(double low, double high) const
{
    for (const auto& point : points) {
        if (point.value >= low && point.value <= high)
            return point.time;
    }
    return 0.0;
}

double plainCurve_t::timeMax(double low, double high) const
{
    for (auto point = points.rbegin(); point != points.rend(); ++point) {
        if (point->value >= low && point->value <= high)
            return point->time;
    }
    return 0.0;
}

QStringList plainCurve_t::takeCalls()
{
    return std::exchange(m_calls, QStringList());
}

double plainCurve_t::scan(double from, double to, bool greatest) const
{
    if (points.empty())
        return 0.0;
    double found = greatest ? -largest : largest;
    for (const auto& point : points) {
        if (point.time < from || point.time > to || !std::isfinite(point.value))
            continue;
        found = greatest ? std::max(found, point.value) : std::min(found, point.value);
    }
    return found;
}

double plainCurve_t::extreme(double from, double to, bool greatest) const
{
    if (segments.empty() || segments.front().startTime > to || from > segments.back().endTime)
        return scan(from, to, greatest);
    const auto better = [greatest](double a, double b) {
        return greatest ? std::max(a, b) : std::min(a, b);
    };
    double found = greatest ? -largest : largest;
    if (segments.front().startTime > from)
        found = better(found, scan(from, segments.front().startTime, greatest));
    if (to > segments.back().endTime)
        found = better(found, scan(segments.back().endTime, to, greatest));
    for (const segment_t& segment : segments) {
        if (!(from > segment.endTime) && segment.startTime < to)
            found = better(found, greatest ? segment.maxValue : segment.minValue);
    }
    return found;
}

void plainCurve_t::buildSegments()
{
    while (incomingCount > static_cast<int>(segmentSize)) {
        const unsigned first = size() - static_cast<unsigned>(incomingCount);
        const unsigned last = first + segmentSize;
        const auto& start = points[first];
        const auto& end = points[last];
        segments.push_back({nextSegmentId++, start.time, start.value, end.time, end.value,
                            scan(start.time, end.time, false), scan(start.time, end.time, true),
                            segmentSize});
        log(hookCall("segmentCreated", first, last, segments.back().id));
        incomingCount -= static_cast<int>(segmentSize);
    }
}

void plainCurve_t::prune()
{
    const double cutoff = points.back().time - duration;
    const double fromTime = points.front().time;
    double toTime = fromTime;
    int removed = 0;
    while (!points.empty() && points.front().time < cutoff) {
        toTime = points.front().time;
        points.pop_front();
        ++removed;
    }
    if (removed == 0)
        return;
    if (!points.empty())
        toTime = points.front().time;
    outgoingCount -= removed;
    destroySegments();
    if (outgoingCount < 0) {
        incomingCount += outgoingCount;
        outgoingCount = 0;
        log(hookCall("updateIncomingList", size() - static_cast<unsigned>(incomingCount), size()));
    }
    log(hookCall("updateOutgoingList", 0, static_cast<unsigned>(outgoingCount)));
    log(hookCall("pointsRemoved", static_cast<unsigned>(removed), fromTime, toTime));
    if (changed)
        changed(fromTime, toTime);
}

void plainCurve_t::destroySegments()
{
    while (!segments.empty() && outgoingCount <= 0) {
        const segment_t oldest = segments.front();
        segments.pop_front();
        unsigned index = 0;
        while (index < size() && points[index].time < oldest.startTime)
            ++index;
        log(hookCall("segmentRemoved", index, index + oldest.size, oldest.id));
        outgoingCount += static_cast<int>(oldest.size);
    }
}

void plainCurve_t::log(const QString& call)
{
    m_calls.append(
        call + hookState(points.size(), segments.size(), incomingCount, outgoingCount, duration));
}

int plainTruncated(double x)
{
    if (std::isnan(x))
        return 0;
    const double low = std::numeric_limits<int>::min();
    const double high = std::numeric_limits<int>::max();
    return static_cast<int>(std::trunc(std::min(std::max(x, low), high)));
}

void drawPlainly(const zorbin_qt_gui::simpleCurveRenderer_t::context_t& context,
                 const plainCurve_t::points_t& points, const QColor& color, double threshold)
{
    if (points.empty())
        return;
    std::size_t begin = 0;
    while (begin < points.size() && points[begin].time < context.drawMinTime)
        ++begin;
    if (begin > 0)
        --begin;
    std::size_t end = 0;
    while (end < points.size() - 1 && !(points[end].time > context.drawMaxTime))
        ++end;

    QPen pen(color, 2);
    context.painter->setPen(pen);
    for (std::size_t i = begin; i < end; ++i) {
        const auto& prev = points[i];
        const auto& next = points[i + 1];
        if (std::isnan(prev.value) || std::isnan(next.value))
            continue;
        QColor lineColor = next.color;
        if (next.time - prev.time > threshold)
            lineColor.setAlpha(lineColor.alpha() / 4);
        if (lineColor != pen.color()) {
            pen.setColor(lineColor);
            context.painter->setPen(pen);
        }
        const auto x = [&context](const auto& point) {
            return plainTruncated((point.time - context.minTime) * context.xScale);
        };
        const auto y = [&context](const auto& point) {
            return plainTruncated((context.maxValue - point.value) * context.yScale);
        };
        context.painter->drawLine(x(prev), y(prev), x(next), y(next));
    }
}
