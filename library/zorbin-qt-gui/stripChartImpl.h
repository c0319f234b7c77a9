#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QObject>
#include <memory>
#include <set>
#include <string>

class QWidget;

namespace zorbin_qt_gui {
class curveExtents_t;
class stripChartCurve_t;
class stripChartCurveRenderer_t;
struct stripChartCurveData_t;

/// The part of a strip chart that does not draw: time and value bounds, scales, autoscale and the
/// set of curves. A back end derives from it and adds the drawing widget.
///
/// Applications use stripChart_t; this class is for writing back ends. Times are seconds, scales
/// are pixels per second and pixels per value unit. GUI thread only, except implementationType().
class ZORBIN_QT_GUI_EXPORT stripChartImpl_t : public QObject
{
    Q_OBJECT

public:
    /// What the value axis does.
    enum rescaleMode_t
    {
        RESCALE_AUTO = 0,  ///< it follows the data in the visible time window
        RESCALE_MANUAL = 1 ///< it stays as set by valueBounds()
    };

    /// Makes a chart without curves that shows the time -15 s to 0 s and the values -1 to 1 and
    /// autoscales.
    explicit stripChartImpl_t(QObject* parent = nullptr);

    /// Deletes every curve still in the chart. The back end has deleted its widget before.
    ~stripChartImpl_t() override;

    /// The widget that the back end draws in; owned by the back end, which deletes it first.
    virtual QWidget* widget() = 0;

    /// Moves the time window, keeping its span, so that \p t is at its right edge.
    virtual void scrollTime(double t);

    /// Makes a chart implementation of the process's back end, a child of \p parent.
    static stripChartImpl_t* createChartImpl(QWidget* parent);
    /// Makes a curve renderer of the process's back end; the caller owns it.
    static stripChartCurveRenderer_t* createCurveRenderer(stripChartCurveData_t* data);
    /// The back end of this process, "simple" (QPainter) or "gl" (OpenGL). Decided at the first
    /// call, from any thread, and never changed: the environment variable
    /// `ZORBIN_QT_STRIPCHART_TYPE` if it is set, else what the machine supports. Any other value
    /// of the variable gives "simple" and a debug message.
    static std::string implementationType();

    /// Shows \p curve, which this chart owns from now on. False for null and for a curve that is
    /// already here. Neither recalculates bounds nor emits a signal.
    bool addCurve(stripChartCurve_t* curve);
    /// Gives \p curve back to the caller. False for null and for a curve that is not here.
    bool removeCurve(stripChartCurve_t* curve);
    /// A copy of the set of curves.
    std::set<stripChartCurve_t*> curves() const;

    /// Sets the times at the left and the right edge; see stripChart_t::timeBounds().
    void timeBounds(double min, double max);
    double minTimeBound() const; ///< time at the left edge
    double maxTimeBound() const; ///< time at the right edge

    /// Sets the values at the bottom and the top edge; see stripChart_t::valueBounds().
    void valueBounds(double min, double max);
    double minValueBound() const; ///< value at the bottom edge
    double maxValueBound() const; ///< value at the top edge
    /// Sets the smallest span that autoscale may show; fatal unless it is positive.
    void minValueRange(double range);
    /// Switches the value axis's mode; emits valueAutoscaleChanged() when it changes.
    void valueRescaleMode(const rescaleMode_t& mode);
    /// The value axis's mode, RESCALE_AUTO at first.
    const rescaleMode_t& valueRescaleMode() const;

    /// Sets the colour behind the curves; emits colorChanged() when it differs.
    void canvasColor(const QColor& color);
    /// The colour behind the curves.
    const QColor& canvasColor() const;
    /// Pixels that autoscale keeps free above and below the data, 3 at first.
    unsigned margin() const;
    /// Sets the margin; takes effect at the next recalculation.
    void margin(unsigned pixels);

    double xScaleFactor() const; ///< pixels per second
    double yScaleFactor() const; ///< pixels per value unit
    double xCenter() const;      ///< time in the middle of the window
    double yCenter() const;      ///< value in the middle of the window

    /// Tells the drawing widget's size in pixels. The value scale follows at once, the time scale
    /// at the next change of the time bounds.
    void updateSize(unsigned width, unsigned height);
    /// Autoscales: fits the value bounds to the data in the time window, with a hysteresis that
    /// leaves them alone while the data lies inside and fills at least half of the usable height.
    /// With autoscale off it only brings the value scale up to date. Emits valueBoundsChanged()
    /// when the bounds move. Returns whether the chart survived that: false once a slot has deleted
    /// it.
    bool recalculateBounds();

Q_SIGNALS:
    void mousePos(double x_, double y_);               ///< see stripChart_t::mousePos()
    void colorChanged();                               ///< the canvas colour differs now
    void timeBoundsChanged(double min_, double max_);  ///< the time window moved
    void valueBoundsChanged(double min_, double max_); ///< the value window moved
    void valueAutoscaleChanged(bool enabled_);         ///< autoscale was switched

public Q_SLOTS:
    /// Forgets the sending curve, which is being destroyed.
    void cleanupCurve();

private:
    bool autoscale();

    std::set<stripChartCurve_t*> m_curves;
    QColor m_color;
    quint32 m_width = 1;
    quint32 m_height = 1;
    quint32 m_margin = 3;
    rescaleMode_t m_yRescaleMode = RESCALE_AUTO;
    double m_xScale = 1.0;
    double m_yScale = 1.0;
    double m_xCenter = 0.0;
    double m_yCenter = 0.0;
    double m_timeMin = -15.0;
    double m_timeMax = 0.0;
    double m_valueMin = -1.0;
    double m_valueMax = 1.0;
    double m_minRange = 2.0;

    bool m_isEnding = false; // the back end is gone already
    // While set, and as long as no curve's extremes change, autoscaling changes nothing: the last
    // time it did not, and nothing else that it looks at was touched since.
    bool m_isSettled = false;
    const std::unique_ptr<curveExtents_t> m_extents; // of m_curves, over the time window
};
} // namespace zorbin_qt_gui
