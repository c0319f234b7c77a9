#pragma once
#include "stripChartCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <limits>
#include <vector>

namespace zorbin_qt_gui {

/// Least and greatest of the finite values given to it; the largest double and its negative while
/// there was none.
struct extremes_t
{
    double min = std::numeric_limits<double>::max();
    double max = -std::numeric_limits<double>::max();

    /// Returns whether that changed anything.
    bool include(double value)
    {
        if ((value >= min && value <= max) || !std::isfinite(value))
            return false;
        min = std::min(min, value);
        max = std::max(max, value);
        return true;
    }
    void include(const extremes_t& other)
    {
        if (other.min < min)
            min = other.min;
        if (other.max > max)
            max = other.max;
    }
};

/// Whether a == b, decided without a call for the common case of equal fields.
bool sameColor(const QColor& a, const QColor& b);

/// Search aids over a curve's point queue, so that neither autoscale nor a repaint has to visit
/// every point: a pyramid of extremes, the extremes of the time window asked for last, and the
/// list of lines that can't be merged with the line before them.
///
/// The pyramid and the list are brought up to date when they are asked for. They number points
/// from the first one ever indexed, so that pruning the queue invalidates nothing; whoever removes
/// points from the front of the queue says so by dropOldest(). If the queue was changed behind
/// their back they start afresh.
class curveIndex_t
{
public:
    using points_t = std::deque<stripChartCurve_t::point_t>;

    /// Whoever keeps extremes that were asked for, and wants to know when they are out of date.
    class watcher_t
    {
    public:
        /// The extremes of the window may no longer be the same as when they were asked for last.
        virtual void extremesChanged() = 0;
        /// The index is being destroyed.
        virtual void indexEnds() = 0;

    protected:
        ~watcher_t() = default;
    };

    curveIndex_t() = default;
    ~curveIndex_t();
    curveIndex_t(const curveIndex_t&) = delete;
    curveIndex_t& operator=(const curveIndex_t&) = delete;

    /// Tells \p watcher, which isn't told yet, from now on.
    void watch(watcher_t* watcher) { m_watchers.push_back(watcher); }
    /// Tells \p watcher no longer.
    void unwatch(watcher_t* watcher);

    /// Extremes over the points [first, last), by index into \p points.
    extremes_t extremes(const points_t& points, size_t first, size_t last);

    /// Tells that \p count points are about to be removed from the front of \p points.
    void dropOldest(const points_t& points, size_t count);

    /// Brings the list of breaks up to date. A line is named by the index of its later point. Line
    /// n is special if its time step exceeds \p threshold or one of its values is not finite; it
    /// is a break if it or the line before it is special or if its colour differs from that of the
    /// line before it. Lines from one break up to the next one are therefore alike, and a special
    /// line is alone.
    void followBreaks(const points_t& points, double threshold);
    /// Index of the first break after line \p line, or \p end if none comes before it.
    size_t nextBreak(size_t line, size_t end) const;

    /// Whether every summary is what a scan of \p points gives, as far as they have been followed.
    /// For tests.
    bool isConsistent(const points_t& points) const;

    /// What tells one state of the queue from another: the number of points dropped so far, and
    /// how often the aids had to start afresh. A point keeps its place and its content as long as
    /// the second stays the same.
    quint64 dropped() const { return m_base; }
    quint64 generation() const { return m_generation; }

    /// The extremes of the time window [from, to] asked for last.
    struct window_t
    {
        bool known = false;
        double from = 0.0;
        double to = 0.0;
        extremes_t extremes;
    };
    const window_t& window() const { return m_window; }
    /// Remembers what was found for a window.
    void remember(const window_t& window)
    {
        m_window = window;
        tellWatchers();
    }
    /// Forgets it.
    void forgetWindow()
    {
        m_window.known = false;
        tellWatchers();
    }

    /// Tells that a newest point was appended: it widens the window's extremes if it lies inside.
    void pointAdded(double time, double value)
    {
        const bool isInside = m_window.from <= time && time <= m_window.to;
        if (!m_window.known || (isInside && m_window.extremes.include(value)))
            tellWatchers();
    }
    /// Tells that blocks of points were summarised or dissolved whose times reach up to \p time.
    void blocksChanged(double time)
    {
        if (!(time < m_window.from))
            forgetWindow();
    }

private:
    // One level of the pyramid: extremes of blocks of equal size, aligned to the numbering. Only
    // blocks with all their points in the queue have a node.
    struct level_t
    {
        quint64 first = 0; // number of the block of nodes.front()
        std::deque<extremes_t> nodes;

        quint64 end() const { return first + nodes.size(); }
        void dropBefore(quint64 block);
    };
    static constexpr unsigned levelCount = 5;
    static constexpr quint64 leafSize = 64; // points in a block of the lowest level
    static constexpr quint64 fanOut = 16;   // blocks of one level in a block of the next

    void tellWatchers() const
    {
        for (watcher_t* const watcher : m_watchers)
            watcher->extremesChanged();
    }
    void startAfresh();
    void followPoints(const points_t& points);

    std::array<level_t, levelCount> m_levels;
    quint64 m_base = 0; // number of points.front()
    quint64 m_generation = 0;
    double m_leafTime = 0.0; // time of the last point covered by the lowest level

    window_t m_window;
    std::vector<watcher_t*> m_watchers; // one for each chart that the curve is in

    std::deque<quint64> m_breaks; // numbers, ascending
    quint64 m_breaksEnd = 0;      // lines below this number were examined
    double m_breaksTime = 0.0;    // time of the last point examined
    double m_threshold = 0.0;     // gap threshold of the list
    bool m_lastSpecial = false;   // whether the last line examined is special
};

/// Index of the first point at or after \p time, the number of points if there is none. 0 for NaN.
size_t firstNotBefore(const curveIndex_t::points_t& points, double time);
/// Index of the first point after \p time, the number of points if there is none or for NaN.
size_t firstAfter(const curveIndex_t::points_t& points, double time);

/// The greatest and least value that \p curve has from \p from to \p to, as
/// stripChartCurve_t::valueMin() and valueMax() give them, in one pass.
extremes_t windowExtremes(const stripChartCurveData_t& curve, double from, double to);

/// The same over single points instead of whole blocks, as stripChartCurveRenderer_t::valueMin()
/// and valueMax() give them.
extremes_t pointExtremes(const stripChartCurveData_t& curve, double from, double to);

} // namespace zorbin_qt_gui
