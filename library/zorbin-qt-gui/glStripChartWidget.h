#pragma once
#include "glWidgetBase.h"
#include "zorbinQtGuiExport.h"

#include <QPointer>
#include <set>

class QOpenGLContext;

namespace zorbin_qt_gui {
class glCurveRenderer_t;
class glStripChartImpl_t;
class stripChartCurve_t;

/// The widget that the OpenGL back end draws in. Any change repaints all of it. The chart's canvas
/// colour is taken when the context is set up; later changes don't show.
class ZORBIN_QT_GUI_EXPORT glStripChartWidget_t : public glWidgetBase_t
{
    Q_OBJECT

public:
    /// Makes a widget without a parent that draws what \p impl, its owner, says.
    explicit glStripChartWidget_t(glStripChartImpl_t* impl);
    /// Releases what curves hold in the context before that goes.
    ~glStripChartWidget_t() override;

    /// Takes \p curve out of the chart; see stripChartImpl_t::removeCurve().
    bool removeCurve(stripChartCurve_t* curve);
    /// Recalculates the bounds and repaints. The times are not used.
    void updateChart(double fromTime, double toTime);

Q_SIGNALS:
    /// The pointer is over time \p x_ and value \p y_; NaN, NaN once it has left. Also sent after
    /// every repaint.
    void mousePos(double x_, double y_);

protected:
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void initializeGL() override;                  ///< takes the canvas colour
    void resizeGL(int width, int height) override; ///< sets up the view and tells the chart
    void paintGL() override;                       ///< draws all curves

private:
    friend class glCurveRenderer_t;

    void publishPointerPos();
    bool makeOwnContextCurrent();
    void setUpView(QSize size);
    void releaseLists();
    double visibleReach() const;

    glStripChartImpl_t* const m_impl; // the creating implementation, which owns this
    double m_lastPointerX = 0.0;      // widget pixels
    double m_lastPointerY = 0.0;
    bool m_pointerInView = false;
    QPointer<QOpenGLContext> m_context;       // in which there may be lists
    std::set<glCurveRenderer_t*> m_renderers; // that are attached, also of curves taken out since
};
} // namespace zorbin_qt_gui
