#pragma once
#include "stripChartCurve.h"
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QObject>
#include <deque>
#include <memory>

class QWidget;

namespace zorbin_qt_gui {
class curveIndex_t;

/// Draws one curve and keeps its points cut into closed segments with cached extremes.
///
/// A back end derives from it and answers the hooks, which tell exactly which points were added,
/// sealed into a segment, dissolved or removed. Indices are into stripChartCurveData_t::points at
/// the moment of the call. The curve owns its renderer. GUI thread only.
class ZORBIN_QT_GUI_EXPORT stripChartCurveRenderer_t : public QObject
{
    Q_OBJECT

public:
    /// A closed block of consecutive points. Its times and extremes include the first point after
    /// the block, so that drawing block by block leaves no hole.
    struct segment_t
    {
        quint32 id;        ///< never reused within a curve
        double startTime;  ///< time of the first point
        double startValue; ///< value of the first point
        double endTime;    ///< time of the point just after the last one
        double endValue;   ///< value of that point
        double minValue;   ///< least finite value from startTime to endTime, both included
        double maxValue;   ///< greatest finite value over the same range
        quint32 size;      ///< number of points covered
    };

    /// Makes a renderer for the curve whose record is \p data, which must outlive it.
    explicit stripChartCurveRenderer_t(stripChartCurveData_t* data);
    ~stripChartCurveRenderer_t() override;

    /// Attaches the renderer to a chart's drawing widget.
    virtual void chart(QWidget* widget) = 0;
    /// Points per segment, asked afresh before each block; 0 counts as 1.
    virtual unsigned segmentSize() const = 0;
    /// A segment now covers the points [\p first, \p last).
    virtual void segmentCreated(unsigned first, unsigned last, unsigned id) = 0;
    /// The segment that covered [\p first, \p last) is gone; \p last counts the points that it
    /// covered when it was made, whether or not they are still there.
    virtual void segmentRemoved(unsigned first, unsigned last, unsigned id) = 0;
    /// The newest points, not in any segment yet, are now [\p first, \p last).
    virtual void updateIncomingList(unsigned first, unsigned last) = 0;
    /// The oldest points, left over from a dissolved segment, are now [\p first, \p last).
    virtual void updateOutgoingList(unsigned first, unsigned last) = 0;
    /// \p count points were added: \p fromTime is that of the newest point before them (of the
    /// first point, if the curve was empty), \p toTime that of the newest one.
    virtual void pointsAdded(unsigned count, double fromTime, double toTime) = 0;
    /// \p count points were removed: \p fromTime is that of the oldest removed one, \p toTime that
    /// of the oldest one left (of the last one removed, if none is left).
    virtual void pointsRemoved(unsigned count, double fromTime, double toTime) = 0;

    /// Least finite value of the points from \p from to \p to, both included: the largest double
    /// if there is none, 0.0 if the curve is empty.
    double valueMin(double from, double to) const;
    /// Greatest finite value, likewise; minus the largest double if there is none.
    double valueMax(double from, double to) const;
    /// Seals incoming points into segments while there are more than segmentSize() of them.
    void maybeBuildSegments();
    /// Makes the segment over the points [\p first, \p last); \p last must be the index of a
    /// point. The caller owns it: it isn't appended to the curve's segments.
    segment_t* createSegment(unsigned first, unsigned last);
    /// Removes points older than the newest time minus the curve's data duration.
    void prunePoints();
    /// Dissolves the oldest segments until the outgoing count is positive.
    void maybeDestroySegments();
    /// Deletes \p segment.
    void removeSegment(segment_t* segment);

protected:
    stripChartCurveData_t* m_d; ///< the curve's record, not owned
};

/// The state of a curve, shared with its renderer.
///
/// `points` holds three zones: [0, outgoingCount) are left over from dissolved segments, then come
/// the points covered by `segments` in order, then the newest incomingCount points.
struct ZORBIN_QT_GUI_EXPORT stripChartCurveData_t
{
    stripChartCurveData_t(); ///< Makes the record of an empty curve without a colour.
    /// Deletes neither the renderer nor the segments; the curve does.
    ~stripChartCurveData_t();
    stripChartCurveData_t(const stripChartCurveData_t&) = delete;
    stripChartCurveData_t& operator=(const stripChartCurveData_t&) = delete;

    std::deque<stripChartCurve_t::point_t> points; ///< strictly increasing in time
    QColor color;                                  ///< the curve's colour
    double duration = 7200.0;                      ///< seconds kept behind the newest point
    double threshold = 1.1;                        ///< seconds; longer steps are gaps
    std::deque<stripChartCurveRenderer_t::segment_t*> segments; ///< oldest first, owned
    quint32 nextSegmentId = 0;                                  ///< id of the next segment made
    qint32 incomingCount = 0;                      ///< newest points not in a segment yet
    qint32 outgoingCount = 0;                      ///< oldest points not in a segment any more
    stripChartCurveRenderer_t* renderer = nullptr; ///< owned
    stripChartCurve_t* parent = nullptr;           ///< the curve
    bool* isDeleted = nullptr;                     ///< set when the curve goes, if anybody asks
    const std::unique_ptr<curveIndex_t> index;     ///< search aids over `points`, kept up lazily
};
} // namespace zorbin_qt_gui
