#include "stripChartCurveRenderer.h"

#include "curveIndex_p.h"

#include <algorithm>

namespace zorbin_qt_gui {

stripChartCurveData_t::stripChartCurveData_t() : index(std::make_unique<curveIndex_t>())
{
}

stripChartCurveData_t::~stripChartCurveData_t() = default;

stripChartCurveRenderer_t::stripChartCurveRenderer_t(stripChartCurveData_t* data) : m_d(data)
{
}

stripChartCurveRenderer_t::~stripChartCurveRenderer_t() = default;

double stripChartCurveRenderer_t::valueMin(double from, double to) const
{
    return pointExtremes(*m_d, from, to).min;
}

double stripChartCurveRenderer_t::valueMax(double from, double to) const
{
    return pointExtremes(*m_d, from, to).max;
}

void stripChartCurveRenderer_t::maybeBuildSegments()
{
    unsigned size = std::max(1u, segmentSize());
    if (m_d->incomingCount <= static_cast<qint64>(size))
        return;
    auto first =
        static_cast<unsigned>(m_d->points.size()) - static_cast<unsigned>(m_d->incomingCount);
    while (m_d->incomingCount > static_cast<qint64>(size)) {
        const unsigned last = first + size;
        segment_t* const segment = createSegment(first, last);
        m_d->segments.push_back(segment);
        m_d->index->blocksChanged(segment->endTime);
        segmentCreated(first, last, segment->id);
        first = last;
        m_d->incomingCount -= static_cast<qint32>(size);
        size = std::max(1u, segmentSize());
    }
}

stripChartCurveRenderer_t::segment_t* stripChartCurveRenderer_t::createSegment(unsigned first,
                                                                               unsigned last)
{
    const auto& points = m_d->points;
    Q_ASSERT(first < last && last < points.size());
    const stripChartCurve_t::point_t& start = points[first];
    const stripChartCurve_t::point_t& end = points[last];
    const extremes_t extremes = m_d->index->extremes(points, first, size_t(last) + 1);
    return new segment_t{m_d->nextSegmentId++, start.time,   start.value, end.time, end.value,
                         extremes.min,         extremes.max, last - first};
}

void stripChartCurveRenderer_t::prunePoints()
{
    auto& points = m_d->points;
    if (points.empty())
        return;
    size_t dropped = 0;
    if (m_d->duration < 0.0) {
        // Every point is older than a cut-off in the future. With times so large that adding the
        // duration is lost in rounding, the cut-off wouldn't say so.
        dropped = points.size();
    } else {
        // The newest point stays. Looking at each is faster than a search: the memory that they
        // leave, which the next points are given, is then in the cache.
        const double cutoff = points.back().time - m_d->duration;
        for (auto point = points.begin(); point->time < cutoff; ++point)
            ++dropped;
    }
    if (dropped == 0)
        return;

    const double fromTime = points.front().time;
    const double toTime = points[std::min(dropped, points.size() - 1)].time;
    m_d->index->dropOldest(points, dropped);
    if (dropped == 1)
        points.pop_front(); // faster
    else
        points.erase(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(dropped));
    const auto count = static_cast<unsigned>(dropped);
    m_d->outgoingCount -= static_cast<qint32>(count);
    maybeDestroySegments();
    if (m_d->outgoingCount < 0) {
        if (-m_d->outgoingCount > m_d->incomingCount)
            qFatal("Too many points removed");
        m_d->incomingCount += m_d->outgoingCount;
        m_d->outgoingCount = 0;
        const auto size = static_cast<unsigned>(points.size());
        updateIncomingList(size - static_cast<unsigned>(m_d->incomingCount), size);
    }
    updateOutgoingList(0, static_cast<unsigned>(m_d->outgoingCount));
    pointsRemoved(count, fromTime, toTime);
}

void stripChartCurveRenderer_t::maybeDestroySegments()
{
    while (!m_d->segments.empty() && m_d->outgoingCount <= 0) {
        segment_t* const segment = m_d->segments.front();
        const auto first = static_cast<unsigned>(firstNotBefore(m_d->points, segment->startTime));
        const quint32 size = segment->size;
        const quint32 id = segment->id;
        m_d->index->blocksChanged(segment->endTime);
        removeSegment(segment);
        m_d->segments.pop_front();
        segmentRemoved(first, first + size, id);
        m_d->outgoingCount += static_cast<qint32>(size);
    }
}

void stripChartCurveRenderer_t::removeSegment(segment_t* segment)
{
    delete segment;
}

} // namespace zorbin_qt_gui
