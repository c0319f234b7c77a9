#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QPointer>
#include <QSize>
#include <QWidget>
#include <memory>

namespace zorbin_qt_gui {
class stripChartCurve_t;
class stripChartImpl_t;

/// A scrolling time/value chart: one or more curves of timed points against a horizontal time
/// axis (seconds, the caller's time base) and a vertical value axis (the caller's unit).
///
/// The chart reads no clock: the application stamps its points and moves the time window by
/// scrollTime(), usually once a frame. The value axis follows the visible data (autoscale, the
/// default) or stays as set by valueBounds(). Drawing is done by one of two back ends, chosen once
/// per process at the first chart or curve; see stripChartImpl_t::implementationType().
///
/// The chart owns the curves added to it and deletes those still in it when it is destroyed. A
/// curve may be deleted before its chart; it then leaves the chart by itself. Where curves overlap,
/// the one at the higher address is on top. GUI thread only.
///
/// Slots of timeBoundsChanged() and valueAutoscaleChanged() may delete the chart. Slots of
/// mousePos() and valueBoundsChanged(), and whatever those call, must use deleteLater() for the
/// chart and for the widgets that it is in: Qt may be painting, showing or resizing them, or be
/// telling them that the pointer has left. Slots of all signals may delete curves.
///
/// \image html stripChart.png
class ZORBIN_QT_GUI_EXPORT stripChart_t : public QWidget
{
    Q_OBJECT
    /// Whether the value axis follows the data in the visible time window, true at first.
    Q_PROPERTY(
        bool autoscaleValue READ autoscaleValue WRITE autoscaleValue NOTIFY valueAutoscaleChanged)

public:
    /// Makes an empty chart showing the time -15 s to 0 s and the values -1 to 1, autoscaling, on
    /// the widget's own QPalette::Window colour.
    explicit stripChart_t(QWidget* parent = nullptr);

    /// Deletes the drawing widget, then every curve still in the chart.
    ~stripChart_t() override;

    /// Shows \p curve in this chart, which owns it from now on. A curve is drawn in the chart it
    /// was last added to and leaves the one it was in before. Returns false, and changes nothing,
    /// for a null pointer and for a curve that is already in the chart. Bounds are not
    /// recalculated until the next point, size or bounds change.
    bool addCurve(stripChartCurve_t* curve);

    /// Takes \p curve out of the chart and gives its ownership back to the caller. Returns false,
    /// and changes nothing, for a null pointer and for a curve that is not in the chart.
    bool removeCurve(stripChartCurve_t* curve);

    /// Whether the value axis follows the data in the visible time window; true at first.
    bool autoscaleValue() const;

    /// Time at the left edge, in seconds; -15 at first.
    double minTimeBound() const;
    /// Time at the right edge, in seconds; 0 at first.
    double maxTimeBound() const;
    /// Value at the bottom edge; -1 at first.
    double minValueBound() const;
    /// Value at the top edge; 1 at first.
    double maxValueBound() const;

    /// Always 50 x 50 pixels.
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Moves the time window so that \p time_ (seconds) is at its right edge, keeping its span.
    /// The painter back end rounds the edge up to a whole pixel and shifts what is painted
    /// already. Times that are not finite are ignored.
    ///
    /// The time scale follows the chart's width only at a change of the time bounds: the first
    /// scroll after a resize still counts pixels by the former width and may put the edge too far
    /// ahead, and before the chart is first shown any scroll does. An application that minds sets
    /// other timeBounds() once after it was shown or resized.
    void scrollTime(double time_);

    /// Sets the time at the left and the right edge, in seconds. Emits timeBoundsChanged(), and
    /// valueBoundsChanged() if autoscale then moves the value bounds; nothing when both are as
    /// they were. Bounds that are not finite are ignored.
    void timeBounds(double min_, double max_);

    /// Switches autoscale off, then sets the values at the bottom and the top edge. Emits
    /// valueAutoscaleChanged(false) if autoscale was on, then valueBoundsChanged() if a bound
    /// differs. Bounds that are not finite are ignored, but autoscale is off all the same.
    void valueBounds(double min_, double max_);

    /// Sets the smallest span of values that autoscale may show, 2.0 at first.
    /// \warning A range of zero or less, or NaN, is a fatal error (qFatal()).
    void minValueRange(double range_);

    /// Switches the value axis between following the data (true) and standing still (false).
    /// Emits valueAutoscaleChanged() when that changes something.
    void autoscaleValue(bool enable_);

    /// Sets the colour behind the curves and repaints the chart. Does nothing when the colour is
    /// the same.
    void setBackgroundColor(QColor color_);

Q_SIGNALS:
    /// The time window moved: times at the left and the right edge, in seconds.
    void timeBoundsChanged(double left_, double right_);
    /// The value window moved: values at the bottom and the top edge. Also sent while the chart is
    /// shown or resized, so slots must use deleteLater() to delete it.
    void valueBoundsChanged(double bottom_, double top_);
    /// Autoscale was switched on or off.
    void valueAutoscaleChanged(bool enabled_);
    /// The pointer is over time \p x_ and value \p y_; NaN, NaN once it has left the chart. Also
    /// sent at the end of each repaint, because the same pixel may then show another time. Slots
    /// must use deleteLater() to delete the chart.
    void mousePos(double x_, double y_);

private:
    QPointer<QWidget> m_canvas; // the drawing widget; outlives m_d, whose end slots may hear of
    const std::unique_ptr<stripChartImpl_t> m_d;
};
} // namespace zorbin_qt_gui
