#pragma once
#include "simpleCurveRenderer.h"
#include "stripChartCurve.h"

#include <QStringList>
#include <deque>
#include <functional>

/// What a strip chart curve does, written as plainly as its rules can be told: every question is
/// answered by walking over the points or segments. The library is compared with it.
struct plainCurve_t
{
    using points_t = std::deque<zorbin_qt_gui::stripChartCurve_t::point_t>;

    struct segment_t
    {
        unsigned id;
        double startTime;
        double startValue;
        double endTime;
        double endValue;
        double minValue;
        double maxValue;
        unsigned size;
    };

    void addPoint(double time, double value, const QColor& pointColor = QColor());
    void addPoints(const points_t& batch);
    void clear();

    double timeMin() const;
    double timeMax() const;
    double valueMin() const;
    double valueMax() const;
    double valueMin(double from, double to) const;
    double valueMax(double from, double to) const;
    double timeMin(double low, double high) const;
    double timeMax(double low, double high) const;

    /// The calls that a back end's hooks got, as recordingRenderer_t logs them, since the last
    /// time this was asked.
    QStringList takeCalls();

    points_t points;
    QColor color;
    double duration = 7200.0;
    double threshold = 1.1;
    std::deque<segment_t> segments;
    unsigned nextSegmentId = 0;
    int incomingCount = 0;
    int outgoingCount = 0;

    unsigned segmentSize = 1000;
    std::function<void(double fromTime, double toTime)> changed; ///< what a chart is told

private:
    unsigned size() const { return static_cast<unsigned>(points.size()); }
    double scan(double from, double to, bool greatest) const;
    double extreme(double from, double to, bool greatest) const;
    void buildSegments();
    void prune();
    void destroySegments();
    void log(const QString& call);

    QStringList m_calls;
};

/// Drops the fraction; beyond the range of an int the nearest int, for NaN 0.
int plainTruncated(double x);

/// Draws every line of a curve by itself.
void drawPlainly(const zorbin_qt_gui::simpleCurveRenderer_t::context_t& context,
                 const plainCurve_t::points_t& points, const QColor& color, double threshold);
