#pragma once
#include "stripChartCurveRenderer.h"
#include "zorbinQtGuiExport.h"

#include <QPointer>
#include <map>
#include <vector>

namespace zorbin_qt_gui {
class glStripChartWidget_t;

/// Draws one curve with OpenGL: a display list for every segment, made once, and arrays for the
/// loose points at both ends. Lines are one pixel wide, in the curve's colour, at a quarter of its
/// opacity across a gap; the points' own colours aren't shown.
///
/// Vertices are floats relative to a point of the segment or the zone, so times of any magnitude
/// keep their precision. Without a chart nothing here touches OpenGL.
class ZORBIN_QT_GUI_EXPORT glCurveRenderer_t : public stripChartCurveRenderer_t
{
    Q_OBJECT

public:
    /// What a segment holds in the chart's context.
    struct glSegment_t
    {
        unsigned list; ///< the name of its display list
    };

    /// Makes a renderer without a chart. \p data is the record of its curve and must outlive it.
    explicit glCurveRenderer_t(stripChartCurveData_t* data);
    ~glCurveRenderer_t() override;

    /// Draws all of the curve relative to a centre, under the current matrices, in the chart's
    /// context, which is current. Makes lists that are missing.
    void draw(double xCenter, double yCenter);
    /// Releases all that is held in the chart's context, frees the arrays of loose points and
    /// forgets the chart.
    void prepareToDelete();

    /// Emits the points \p first to \p last, both included, relative to the reference, into the
    /// line strip that is begun.
    void drawSubset(double refTime, double refValue, unsigned first, unsigned last);
    /// Fits the size of later segments to the number of points.
    void calcSegmentThreshold();
    /// Makes the list of the points \p first to \p last, both included. Null without a chart, or
    /// when the context isn't usable or has no list left, for which a debug message is written. The
    /// caller owns it.
    glSegment_t* createGLSegment(unsigned first, unsigned last);
    /// Deletes a list; does nothing without a chart. \p segment may be null.
    void removeGLSegment(glSegment_t* segment);

    /// Attaches to a glStripChartWidget_t and takes the curve out of the chart it was in before;
    /// any other widget is ignored.
    void chart(QWidget* widget) override;
    /// The square root of ten times the number of points at the last repaint, at least 100.
    unsigned segmentSize() const override;
    void segmentCreated(unsigned first, unsigned last, unsigned id) override; ///< makes its list
    void segmentRemoved(unsigned first, unsigned last, unsigned id) override; ///< deletes its list
    void updateIncomingList(unsigned first, unsigned last) override; ///< takes the newest points
    void updateOutgoingList(unsigned first, unsigned last) override; ///< takes the oldest points
    /// Repaints the chart; nothing while the curve is in none.
    void pointsAdded(unsigned count, double fromTime, double toTime) override;
    /// Repaints the chart; nothing while the curve is in none.
    void pointsRemoved(unsigned count, double fromTime, double toTime) override;

private:
    friend class glStripChartWidget_t;

    // Points at one end of the curve that aren't in a segment. What they look like is decided when
    // they change, the arrays are filled when they are next drawn.
    struct loosePoints_t
    {
        void take(const stripChartCurveData_t& data);
        void fill(const stripChartCurveData_t& data, unsigned first, unsigned count);
        void draw(unsigned count, double xCenter, double yCenter) const;
        void release();

        QColor color;
        double threshold = 0.0; // seconds; longer steps are gaps
        bool isStale = true;    // the arrays don't hold the points yet
        double refTime = 0.0;   // of the first one
        double refValue = 0.0;
        std::vector<float> points; // 4 floats for each vertex
        std::vector<float> colors; // 4 floats for each vertex
    };

    void releaseLists();
    void releaseListsOfAnotherColor();
    void draw(double xCenter, double yCenter, double reach);
    void drawSegments(double xCenter, double yCenter, double reach);
    void drawJoint(double xCenter, double yCenter) const;

    // By segment id; null where there is no list (yet).
    std::map<unsigned, glSegment_t*> m_segments;
    QColor m_listColor; // for which the lists were made
    quint32 m_segmentThreshold = 100;
    QPointer<glStripChartWidget_t> m_chart;
    loosePoints_t m_outgoing;
    loosePoints_t m_incoming;
};
} // namespace zorbin_qt_gui
