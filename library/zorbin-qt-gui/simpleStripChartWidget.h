#pragma once
#include "zorbinQtGuiExport.h"

#include <QWidget>

namespace zorbin_qt_gui {
class simpleStripChartImpl_t;
class stripChartCurve_t;

/// The widget that the QPainter back end draws in. Opaque; repaints only what changed.
class ZORBIN_QT_GUI_EXPORT simpleStripChartWidget_t : public QWidget
{
    Q_OBJECT

public:
    /// Makes a widget without a parent that draws what \p impl, its owner, says.
    explicit simpleStripChartWidget_t(simpleStripChartImpl_t* impl);
    ~simpleStripChartWidget_t() override;

    /// Takes \p curve out of the chart; see stripChartImpl_t::removeCurve().
    bool removeCurve(stripChartCurve_t* curve);
    /// Recalculates the bounds and repaints the columns of the times \p fromTime to \p toTime, as
    /// far as they are in view.
    void updateChart(double fromTime, double toTime);
    /// Announces by how many pixels (negative: to the left) the next change of the time bounds
    /// shifts what is painted.
    void timeScroll(int pixels);

Q_SIGNALS:
    /// The pointer is over time \p x_ and value \p y_; NaN, NaN once it has left.
    void mousePos(double x_, double y_);

public Q_SLOTS:
    /// Follows new time bounds: shifts the pixels as announced, or repaints everything.
    void scrollWindow();

protected:
    bool event(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct columns_t
    {
        int left = 0;
        int right = 0;
    };

    void publishPointerPos();
    void requestRepaint(int left, int right);
    void forgetRequests();

    simpleStripChartImpl_t* const m_impl; // the creating implementation, which owns this
    qint32 m_scroll = 0;                  // pixels to shift at the next time bounds
    double m_lastPointerX = 0.0;          // widget pixels
    double m_lastPointerY = 0.0;
    bool m_pointerInView = false;
    // Columns [left, right) that are sure to be repainted already; empty when none are. Two,
    // because points come in at one end of a curve and age out at the other.
    columns_t m_requested[2];
    bool m_forgetPosted = false; // whether an event is on its way that empties them
};
} // namespace zorbin_qt_gui
