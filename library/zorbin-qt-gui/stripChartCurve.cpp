#include "stripChartCurve.h"

#include "curveIndex_p.h"
#include "stripChartCurveRenderer.h"
#include "stripChartImpl.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zorbin_qt_gui {
namespace {

using batch_t = std::deque<stripChartCurve_t::point_t>;

// Queued connections look the batch type up by the name in the signal or slot, which may leave out
// what the declaring scope makes obvious.
void registerBatchType()
{
    static const bool isRegistered = [] {
        qRegisterMetaType<batch_t>();
        qRegisterMetaType<batch_t>("std::deque<point_t>");
        qRegisterMetaType<batch_t>("std::deque<stripChartCurve_t::point_t>");
        return true;
    }();
    Q_UNUSED(isRegistered)
}

double newestTime(const batch_t& points)
{
    return points.empty() ? -std::numeric_limits<double>::infinity() : points.back().time;
}

// Runs what may call the application's slots, which may delete the curve. Returns whether it is
// still there.
template <typename call_t>
bool survives(stripChartCurveData_t* data, const call_t& call)
{
    bool isDeleted = false;
    bool* const outer = std::exchange(data->isDeleted, &isDeleted);
    call();
    if (!isDeleted)
        data->isDeleted = outer;
    else if (outer != nullptr)
        *outer = true;
    return !isDeleted;
}

// What follows once the newest `count` points are in the queue.
void announceAdded(stripChartCurveData_t* data, unsigned count, double fromTime)
{
    stripChartCurveRenderer_t* const renderer = data->renderer;
    data->incomingCount += static_cast<qint32>(count);
    renderer->maybeBuildSegments();
    const auto size = static_cast<unsigned>(data->points.size());
    renderer->updateIncomingList(size - static_cast<unsigned>(data->incomingCount), size);
    const double toTime = data->points.back().time;
    if (survives(data, [&] { renderer->pointsAdded(count, fromTime, toTime); }))
        renderer->prunePoints();
}

} // namespace

stripChartCurve_t::stripChartCurve_t(QObject* parent)
    : QObject(parent), m_d(std::make_unique<stripChartCurveData_t>())
{
    registerBatchType();
    m_d->renderer = stripChartImpl_t::createCurveRenderer(m_d.get());
    m_d->parent = this;
}

stripChartCurve_t::~stripChartCurve_t()
{
    delete m_d->renderer;
    for (const stripChartCurveRenderer_t::segment_t* segment : m_d->segments)
        delete segment;
    if (m_d->isDeleted != nullptr)
        *m_d->isDeleted = true;
}

double stripChartCurve_t::timeMin() const
{
    return m_d->points.empty() ? 0.0 : m_d->points.front().time;
}

double stripChartCurve_t::timeMax() const
{
    return m_d->points.empty() ? 0.0 : m_d->points.back().time;
}

double stripChartCurve_t::valueMin() const
{
    return m_d->points.empty() ? 0.0 : valueMin(timeMin(), timeMax());
}

double stripChartCurve_t::valueMax() const
{
    return m_d->points.empty() ? 0.0 : valueMax(timeMin(), timeMax());
}

double stripChartCurve_t::valueMin(double from, double to) const
{
    return windowExtremes(*m_d, from, to).min;
}

double stripChartCurve_t::valueMax(double from, double to) const
{
    return windowExtremes(*m_d, from, to).max;
}

// Deliberate: the two-argument forms look at the points' values, not at their times.
double stripChartCurve_t::timeMin(double low, double high) const
{
    const auto& points = m_d->points;
    const auto isInside = [=](const point_t& p) { return p.value >= low && p.value <= high; };
    const auto found = std::find_if(points.begin(), points.end(), isInside);
    return found == points.end() ? 0.0 : found->time;
}

double stripChartCurve_t::timeMax(double low, double high) const
{
    const auto& points = m_d->points;
    const auto isInside = [=](const point_t& p) { return p.value >= low && p.value <= high; };
    const auto found = std::find_if(points.rbegin(), points.rend(), isInside);
    return found == points.rend() ? 0.0 : found->time;
}

void stripChartCurve_t::dataDuration(double seconds)
{
    m_d->duration = seconds;
}

void stripChartCurve_t::gapThreshold(double seconds)
{
    m_d->threshold = seconds;
}

const QColor& stripChartCurve_t::color() const
{
    return m_d->color;
}

stripChartCurveRenderer_t* stripChartCurve_t::renderer()
{
    return m_d->renderer;
}

void stripChartCurve_t::addPoint(double time_, double value_, QColor color_)
{
    auto& points = m_d->points;
    if (!(std::isfinite(time_) && time_ > newestTime(points)))
        return;
    const double fromTime = points.empty() ? time_ : points.back().time;
    points.emplace_back(time_, value_, color_);
    m_d->index->pointAdded(time_, value_);
    announceAdded(m_d.get(), 1, fromTime);
}

void stripChartCurve_t::addPoint(double time_, double value_)
{
    addPoint(time_, value_, QColor());
}

void stripChartCurve_t::addPoints(std::deque<point_t> points_)
{
    auto& points = m_d->points;
    const size_t sizeBefore = points.size();
    double newest = newestTime(points);
    double fromTime = newest;
    for (const point_t& point : points_) {
        if (!(std::isfinite(point.time) && point.time > newest))
            continue;
        if (points.empty())
            fromTime = point.time;
        points.push_back(point);
        newest = point.time;
        m_d->index->pointAdded(point.time, point.value);
    }
    if (points.size() != sizeBefore)
        announceAdded(m_d.get(), static_cast<unsigned>(points.size() - sizeBefore), fromTime);
}

void stripChartCurve_t::color(QColor color_)
{
    if (m_d->color == color_)
        return;
    m_d->color = color_;
    Q_EMIT colorChanged(color_);
}

void stripChartCurve_t::clear()
{
    if (m_d->points.empty())
        return;
    // An ordinary prune with a cut-off later than every point.
    const double duration = m_d->duration;
    m_d->duration = -1.0;
    if (survives(m_d.get(), [this] { m_d->renderer->prunePoints(); }))
        m_d->duration = duration;
}

} // namespace zorbin_qt_gui
