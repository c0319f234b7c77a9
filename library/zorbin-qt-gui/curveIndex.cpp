#include "curveIndex_p.h"

#include "stripChartCurveRenderer.h"

#include <cstring>
#include <type_traits>
#include <utility>

namespace zorbin_qt_gui {
namespace {

using point_t = stripChartCurve_t::point_t;

quint64 roundedUp(quint64 x, quint64 unit)
{
    return (x + unit - 1) / unit * unit;
}

bool isSpecial(const point_t& earlier, const point_t& later, double threshold)
{
    return later.time - earlier.time > threshold || !std::isfinite(later.value) ||
           !std::isfinite(earlier.value);
}

} // namespace

bool sameColor(const QColor& a, const QColor& b)
{
    // A QColor is its kind and five parts; what follows them in memory is never written.
    constexpr size_t fields = sizeof(QColor::Spec) + 5 * sizeof(ushort);
    static_assert(std::is_standard_layout_v<QColor> && sizeof(QColor) >= fields &&
                  sizeof(QColor) - fields < alignof(QColor));
    const bool hasSameFields =
        std::memcmp(static_cast<const void*>(&a), static_cast<const void*>(&b), fields) == 0;
    // Parts of an extended colour may be NaN or infinite, and then it doesn't equal itself.
    return (hasSameFields && a.spec() != QColor::ExtendedRgb) || a == b;
}

curveIndex_t::~curveIndex_t()
{
    for (watcher_t* const watcher : std::exchange(m_watchers, {}))
        watcher->indexEnds();
}

void curveIndex_t::unwatch(watcher_t* watcher)
{
    const auto found = std::find(m_watchers.begin(), m_watchers.end(), watcher);
    if (found != m_watchers.end())
        m_watchers.erase(found);
}

void curveIndex_t::level_t::dropBefore(quint64 block)
{
    while (!nodes.empty() && first < block) {
        nodes.pop_front();
        ++first;
    }
    if (nodes.empty())
        first = std::max(first, block);
}

void curveIndex_t::startAfresh()
{
    for (level_t& level : m_levels) {
        level.nodes.clear();
        level.first = 0;
    }
    m_base = 0;
    ++m_generation;
    m_breaks.clear();
    m_breaksEnd = 0;
    forgetWindow();
}

void curveIndex_t::followPoints(const points_t& points)
{
    level_t& leaves = m_levels.front();
    if (!leaves.nodes.empty()) {
        const quint64 covered = leaves.end() * leafSize - m_base;
        if (covered > points.size() || points[covered - 1].time != m_leafTime)
            startAfresh();
    }

    const quint64 end = m_base + points.size();
    if ((leaves.end() + 1) * leafSize > end)
        return;
    auto point = points.begin() + static_cast<std::ptrdiff_t>(leaves.end() * leafSize - m_base);
    while ((leaves.end() + 1) * leafSize <= end) {
        extremes_t leaf;
        for (quint64 i = 0; i < leafSize; ++i, ++point)
            leaf.include(point->value);
        leaves.nodes.push_back(leaf);
    }
    m_leafTime = (point - 1)->time;

    for (unsigned i = 1; i < levelCount; ++i) {
        const level_t& below = m_levels[i - 1];
        level_t& level = m_levels[i];
        while ((level.end() + 1) * fanOut <= below.end()) {
            extremes_t node;
            const quint64 child = level.end() * fanOut - below.first;
            for (quint64 j = 0; j < fanOut; ++j)
                node.include(below.nodes[child + j]);
            level.nodes.push_back(node);
        }
    }
}

extremes_t curveIndex_t::extremes(const points_t& points, size_t first, size_t last)
{
    extremes_t result;
    const auto includePoints = [&](quint64 from, quint64 to) {
        auto point = points.begin() + static_cast<std::ptrdiff_t>(from - m_base);
        for (quint64 i = from; i < to; ++i, ++point)
            result.include(point->value);
    };

    if (last - first >= 2 * leafSize)
        followPoints(points); // may renumber
    quint64 from = m_base + first;
    quint64 to = m_base + last;
    if (to - from < 2 * leafSize) {
        includePoints(from, to);
        return result;
    }
    includePoints(from, roundedUp(from, leafSize));
    includePoints(to / leafSize * leafSize, to);
    from = roundedUp(from, leafSize) / leafSize;
    to = to / leafSize;

    for (unsigned i = 0;; ++i) {
        const level_t& level = m_levels[i];
        const auto includeNodes = [&](quint64 begin, quint64 end) {
            for (quint64 block = begin; block < end; ++block)
                result.include(level.nodes[block - level.first]);
        };
        if (to - from < 2 * fanOut || i + 1 == levelCount) {
            includeNodes(from, to);
            return result;
        }
        includeNodes(from, roundedUp(from, fanOut));
        includeNodes(to / fanOut * fanOut, to);
        from = roundedUp(from, fanOut) / fanOut;
        to = to / fanOut;
    }
}

void curveIndex_t::dropOldest(const points_t& points, size_t count)
{
    // Losing a point that is no extreme leaves the extremes alone. Looking at each is worth while
    // for the few points that age out at a time.
    constexpr size_t fewPoints = 64;
    if (count == 0)
        return;
    if (count == points.size()) {
        forgetWindow(); // an empty curve has other extremes than an empty window
    } else if (count > fewPoints) {
        blocksChanged(points[count - 1].time);
    } else if (!(points[count - 1].time < m_window.from)) {
        for (size_t i = 0; i < count && m_window.known; ++i) {
            const point_t& point = points[i];
            const extremes_t& extremes = m_window.extremes;
            const bool isInside = point.value > extremes.min && point.value < extremes.max;
            if (!isInside && std::isfinite(point.value))
                blocksChanged(point.time);
        }
    }

    const quint64 firstLeaf = roundedUp(m_base, leafSize);
    m_base += count;
    if (roundedUp(m_base, leafSize) != firstLeaf) {
        quint64 size = leafSize;
        for (level_t& level : m_levels) {
            level.dropBefore(roundedUp(m_base, size) / size);
            size *= fanOut;
        }
    }
    while (!m_breaks.empty() && m_breaks.front() <= m_base)
        m_breaks.pop_front();
    m_breaksEnd = std::max(m_breaksEnd, m_base);
}

bool curveIndex_t::isConsistent(const points_t& points) const
{
    const quint64 end = m_base + points.size();
    quint64 size = leafSize;
    for (const level_t& level : m_levels) {
        if (level.first * size < m_base || (!level.nodes.empty() && level.end() * size > end))
            return false;
        for (quint64 block = level.first; block < level.end(); ++block) {
            extremes_t wanted;
            for (quint64 i = block * size; i < (block + 1) * size; ++i)
                wanted.include(points[i - m_base].value);
            const extremes_t& node = level.nodes[block - level.first];
            if (node.min != wanted.min || node.max != wanted.max)
                return false;
        }
        size *= fanOut;
    }

    std::deque<quint64> wantedBreaks;
    bool wasSpecial = false;
    for (quint64 line = m_base + 1; line < std::min(m_breaksEnd, end); ++line) {
        const point_t& earlier = points[line - 1 - m_base];
        const point_t& later = points[line - m_base];
        const bool special = isSpecial(earlier, later, m_threshold);
        if (special || wasSpecial || earlier.color != later.color)
            wantedBreaks.push_back(line);
        wasSpecial = special;
    }
    // Whether the oldest line is a break depends on the line before it, which may have been
    // dropped. Nobody asks: nextBreak() looks for later ones.
    const auto withoutOldest = [this](std::deque<quint64> breaks) {
        if (!breaks.empty() && breaks.front() == m_base + 1)
            breaks.pop_front();
        return breaks;
    };
    return withoutOldest(m_breaks) == withoutOldest(wantedBreaks);
}

void curveIndex_t::followBreaks(const points_t& points, double threshold)
{
    if (std::isnan(threshold))
        threshold = std::numeric_limits<double>::infinity(); // no step exceeds either
    if (m_breaksEnd > m_base) {
        const quint64 examined = m_breaksEnd - m_base;
        if (examined > points.size() || points[examined - 1].time != m_breaksTime)
            startAfresh();
    }
    if (threshold != m_threshold) {
        m_breaks.clear();
        m_breaksEnd = m_base;
        m_threshold = threshold;
        ++m_generation;
    }
    const quint64 end = m_base + points.size();
    if (end < m_base + 2 || m_breaksEnd == end)
        return;
    if (m_breaksEnd <= m_base) {
        m_breaksEnd = m_base + 1; // no line ends at the oldest point
        m_lastSpecial = false;
    }

    auto later = points.begin() + static_cast<std::ptrdiff_t>(m_breaksEnd - m_base);
    auto earlier = later - 1;
    for (; m_breaksEnd < end; ++m_breaksEnd, earlier = later, ++later) {
        const bool special = isSpecial(*earlier, *later, threshold);
        if (special || m_lastSpecial || !sameColor(earlier->color, later->color))
            m_breaks.push_back(m_breaksEnd);
        m_lastSpecial = special;
    }
    m_breaksTime = points.back().time;
}

size_t curveIndex_t::nextBreak(size_t line, size_t end) const
{
    const auto next = std::upper_bound(m_breaks.begin(), m_breaks.end(), m_base + line);
    return next == m_breaks.end() ? end
                                  : static_cast<size_t>(std::min<quint64>(*next - m_base, end));
}

namespace {

// Index of the first point for which isFound holds, as it does for all later ones; the number of
// points if there is none. What is looked for is mostly near one of the ends, so the search goes
// from both ends inwards, in steps that double.
template <typename isFound_t>
size_t firstWhere(const curveIndex_t::points_t& points, const isFound_t& isFound)
{
    size_t low = 0; // before it, none is found
    size_t high = points.size();
    for (size_t step = 1; low + 2 * step < high; step *= 2) {
        if (isFound(points[low + step - 1])) {
            high = low + step - 1;
            break;
        }
        low += step;
        if (!isFound(points[high - step])) {
            low = high - step + 1;
            break;
        }
        high -= step;
    }
    while (low < high) {
        const size_t middle = low + (high - low) / 2;
        if (isFound(points[middle]))
            high = middle;
        else
            low = middle + 1;
    }
    return low;
}

} // namespace

size_t firstNotBefore(const curveIndex_t::points_t& points, double time)
{
    return firstWhere(points, [time](const point_t& point) { return !(point.time < time); });
}

size_t firstAfter(const curveIndex_t::points_t& points, double time)
{
    return firstWhere(points, [time](const point_t& point) { return time < point.time; });
}

extremes_t pointExtremes(const stripChartCurveData_t& curve, double from, double to)
{
    const auto& points = curve.points;
    if (points.empty())
        return {0.0, 0.0};

    const size_t first = firstNotBefore(points, from);
    const size_t last = firstAfter(points, to);
    return first < last ? curve.index->extremes(points, first, last) : extremes_t();
}

extremes_t windowExtremes(const stripChartCurveData_t& curve, double from, double to)
{
    const auto& points = curve.points;
    const auto& segments = curve.segments;
    if (points.empty())
        return {0.0, 0.0};
    const curveIndex_t::window_t& window = curve.index->window();
    if (window.known && window.from == from && window.to == to)
        return window.extremes;

    extremes_t result;
    if (segments.empty() || segments.front()->startTime > to || from > segments.back()->endTime) {
        result = pointExtremes(curve, from, to);
    } else {
        if (segments.front()->startTime > from)
            result.include(pointExtremes(curve, from, segments.front()->startTime));
        if (to > segments.back()->endTime)
            result.include(pointExtremes(curve, segments.back()->endTime, to));

        // The segments that touch the window, each counted whole, cover consecutive points; the
        // extremes of those points are the least and the greatest of the segments' own.
        using segment_t = stripChartCurveRenderer_t::segment_t;
        const auto isBefore = [&](const segment_t* segment) { return from > segment->endTime; };
        const auto hasBegun = [&](const segment_t* segment) { return segment->startTime < to; };
        const auto first = std::partition_point(segments.begin(), segments.end(), isBefore);
        const auto last = std::partition_point(first, segments.end(), hasBegun);
        if (first != last) {
            // The counts tell where the first and the last segment are, except inside a hook, where
            // they may be behind.
            const auto indexOf = [&](double time, qint64 guess) {
                if (guess >= 0 && static_cast<size_t>(guess) < points.size() &&
                    points[static_cast<size_t>(guess)].time == time)
                    return static_cast<size_t>(guess);
                return firstNotBefore(points, time);
            };
            const auto size = static_cast<qint64>(points.size());
            const size_t begin = indexOf((*first)->startTime, curve.outgoingCount);
            const size_t end = indexOf((*(last - 1))->endTime, size - curve.incomingCount);
            result.include(curve.index->extremes(points, begin, end + 1));
        }
    }
    curve.index->remember({true, from, to, result});
    return result;
}

} // namespace zorbin_qt_gui
