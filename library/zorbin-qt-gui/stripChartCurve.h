#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QMetaType>
#include <QObject>
#include <deque>
#include <memory>

namespace zorbin_qt_gui {
class stripChartCurveRenderer_t;
struct stripChartCurveData_t;

/// One data series of a strip chart: points in strictly increasing time, the newest
/// dataDuration() seconds of them.
///
/// Points whose time is not finite or not later than the newest point's are dropped silently. A
/// value that is not finite is kept: infinities are drawn clipped at the chart's edge, NaN
/// interrupts the curve, and neither takes part in autoscale. Points come from other threads
/// through queued connections to the slots. GUI thread only.
///
/// The application owns a curve until it adds it to a stripChart_t, which then owns it.
class ZORBIN_QT_GUI_EXPORT stripChartCurve_t : public QObject
{
    Q_OBJECT
    /// The curve's colour, invalid at first. The painter back end draws points in their own
    /// colours.
    Q_PROPERTY(QColor color READ color WRITE color NOTIFY colorChanged)

public:
    /// One timed value.
    struct point_t
    {
        /// A point at \p time_, in seconds.
        point_t(double time_, double value_, QColor color_)
            : time(time_), value(value_), color(color_)
        {
        }

        /// Orders by time alone.
        bool operator<(const point_t& other) const { return time < other.time; }

        double time;  ///< seconds, caller's time base
        double value; ///< caller's unit
        QColor color; ///< colour of the line that ends here; an invalid colour paints black
    };

    /// Makes an empty curve that keeps 7200 s of points, has an invalid colour and fades lines
    /// between points more than 1.1 s apart.
    explicit stripChartCurve_t(QObject* parent = nullptr);
    ~stripChartCurve_t() override;

    double timeMin() const;  ///< time of the oldest point; 0.0 when empty
    double timeMax() const;  ///< time of the newest point; 0.0 when empty
    double valueMin() const; ///< least value of all; 0.0 when empty
    double valueMax() const; ///< greatest value of all; 0.0 when empty

    /// Least finite value with a time from \p from to \p to. Blocks of points that only partly
    /// overlap the range count whole. The largest double if there is none in the range, 0.0 if
    /// the curve is empty.
    double valueMin(double from, double to) const;
    /// Greatest finite value, likewise; minus the largest double if there is none in the range.
    double valueMax(double from, double to) const;
    /// Time of the oldest point whose \e value lies in [\p low, \p high]; 0.0 if there is none.
    double timeMin(double low, double high) const;
    /// Time of the newest point whose \e value lies in [\p low, \p high]; 0.0 if there is none.
    double timeMax(double low, double high) const;

    /// Sets how many seconds of points are kept behind the newest one, 7200 at first. Takes effect
    /// when the next point arrives.
    void dataDuration(double seconds);
    /// Sets the time step above which the line between two points is drawn faded, 1.1 s at first.
    void gapThreshold(double seconds);

    /// The curve's colour. The painter back end draws each line in the colour of its later point.
    const QColor& color() const;

    /// The curve's renderer, owned by the curve.
    stripChartCurveRenderer_t* renderer();

Q_SIGNALS:
    /// The curve's colour was changed.
    void colorChanged(QColor color_);

public Q_SLOTS:
    /// Adds one point whose line is drawn in \p color_.
    void addPoint(double time_, double value_, QColor color_);
    /// Adds one point without a colour; its line paints black in the painter back end.
    void addPoint(double time_, double value_);
    /// Adds a batch; cheaper than adding its points one by one. The batch type is registered with
    /// the meta-type system, so queued connections can carry it.
    void addPoints(std::deque<point_t> points_);
    /// Sets the curve's colour; emits colorChanged() when it differs.
    void color(QColor color_);
    /// Removes all points, and with them what slots add meanwhile.
    void clear();

private:
    friend class stripChartImpl_t;

    const std::unique_ptr<stripChartCurveData_t> m_d;
};
} // namespace zorbin_qt_gui

Q_DECLARE_METATYPE(std::deque<zorbin_qt_gui::stripChartCurve_t::point_t>)
